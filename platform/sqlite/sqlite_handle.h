// The two handles of the embedded database as C++ objects.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

namespace kestrova::sql {

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
using DatabaseHandle = std::unique_ptr<sqlite3, CloseDatabase>;

struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using StatementHandle = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

// A name as the embedded database writes it.
std::string quoted_name(const std::string& name);

}  // namespace kestrova::sql
