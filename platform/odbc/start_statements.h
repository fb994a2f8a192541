// What is run at the start of a connection, and which database answers on it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/odbc/odbc_connection.h"

namespace kestrova::odbc {

// By the name that the driver gives its database (SQL_DBMS_NAME).
ConnectionKind kind_of(std::string_view dbms_name);

// The SET statements of the options and the host's own, in the order in which they have to run.
// Raises InvalidArgument for an order of dates that does not exist and a negative time.
std::vector<std::string> start_statements(const OdbcOptions& options, ConnectionKind kind);

}  // namespace kestrova::odbc
