// A user's session with a database: the connection, the suite's services on it and the caller
// context, made from the options of the command line.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/kes_var.h"
#include "platform/suite.h"
#include "tools/options.h"
#include "tools/values.h"

namespace kestrova::tool {

struct Session {
  KesVar context;
  ValueFormat format;

  Connection& connection() const { return connection_of(context); }

  // One value of a query that answers exactly one row.
  Value single_value(std::string_view sql) const;
};

// Opens the database and installs the host's services. Raises UsageError without a database or for
// a kind of database that the program does not know, DatabaseError for a file that is missing or
// is no database.
Session open_session(const GlobalOptions& options);

// 's' with its apostrophes doubled and between apostrophes.
std::string sql_literal(std::string_view s);

}  // namespace kestrova::tool
