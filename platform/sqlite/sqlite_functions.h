// The functions and the collation that translated statements call.
#pragma once

#include <sqlite3.h>

#include <optional>

#include "platform/date_time.h"
#include "platform/error.h"

namespace kestrova::sql {

// What the functions of one connection share with it.
struct FunctionState {
  // The time of the running statement.
  DateTime now;
  // The error that a function raised; the embedded database itself passes on only a text.
  std::optional<DatabaseError> failure;
};

// Registers all functions and the collation; state must outlive the connection.
void register_functions(sqlite3* database, FunctionState& state);

}  // namespace kestrova::sql
