// SQL Server, Azure SQL and other databases through ODBC 3.8: the driver manager of the system
// (unixODBC on Linux) and the driver that the connection string names.
//
// Statements go to the driver as they are; the adapter does not translate SQL.
//
// Memory: every result is read whole, in blocks, before open() answers, so that row sets of one
// connection coexist with each other and with statements on a server that allows one result at a
// time. A row set holds all its rows until it is closed: 8 bytes per value, and its bytes, of which
// a letter of a text takes two.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"

namespace kestrova {

struct OdbcOptions {
  // How long connecting may take, and how long a statement; 0 waits without end. A statement that
  // takes longer is a DatabaseError with the SQLSTATE HYT00.
  std::chrono::seconds login_timeout{15};
  std::chrono::seconds query_timeout{0};

  // Tells driver and server that nothing will be changed (ApplicationIntent=ReadOnly, access mode
  // read-only). An intent, no protection: that is the matter of the login's rights.
  bool read_only = false;

  // SQL Server only. A new login has the language and the order of dates that its administrator
  // gave it, and '01.02.2024' is the first of February or the second of January by that; so both
  // are set at the start. "" leaves what the login has; date_format is "dmy", "mdy", "ymd", "ydm",
  // "myd" or "dym".
  std::string language = "";
  std::string date_format = "dmy";
  // How long a statement waits for a lock before it fails; without a value, without end.
  std::optional<std::chrono::milliseconds> lock_timeout{};

  // Run behind those, on any database, each as a statement of its own.
  std::vector<std::string> start_statements{};
};

// Connects. The string is the driver manager's: "Driver={ODBC Driver 18 for SQL Server};Server=...;
// Database=...;UID=...;PWD=..." or "DSN=...". The kind of the connection is what the driver answers
// for its database.
//
// Raises InvalidArgument for a string or an option that cannot be read, and DatabaseError when the
// driver is missing, the server cannot be reached in time or refuses the login, or a start
// statement fails.
//
// Errors of this connection, those of connecting included, tell every diagnostic record of the
// driver (text, SQLSTATE, native code) and the statement; passwords and other secrets of the
// connection string are replaced by "***" in them. A note beside a success that is no warning is an
// error, too: some drivers tell so that a result has broken off behind its last row. An SQLSTATE
// that begins with "08" means that there is no connection any more; every later call raises it
// again.
//
// Updating row sets (keyset or any cursor with an optimistic or pessimistic lock) write through the
// driver's cursor where it grants one that can be updated. Else update() is an UPDATE by the
// primary key, which the driver must know, and the row's old values. A driver that names neither
// table nor columns (FreeTDS) leaves them to be read in the query: "*", or columns under their own
// names. Rows of a query that joins, groups or unites are refused with the reason. Either way
// exactly one row is written, or none and an error is raised: also when the row was changed or
// deleted by somebody else in the meantime. A value is sent as what it is and turned into the
// column's type by the server.
std::shared_ptr<Connection> open_odbc(const std::string& connection_string,
                                      const OdbcOptions& options = {});

// The connection string with "***" in place of each secret, for people to read. A string that
// cannot be read becomes "***" as a whole.
std::string masked_connection_string(std::string_view connection_string);

}  // namespace kestrova
