// The embedded database: Connection and Recordset on a SQLite file or in memory.
//
// It runs SQL Server's dialect, as this library makes it, so that the library has one dialect only.
// What it cannot run as the server would is a DatabaseError; README.md lists what it runs.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "platform/date_time.h"

namespace kestrova {

struct SqliteOptions {
  // Makes the file when it is missing; without it, a missing file is a DatabaseError.
  bool create = false;
  // Nothing is changed. What a program that was broken off while writing left half done is undone
  // first, if the file may be written.
  bool read_only = false;
  // What GETDATE() answers; asked once per statement.
  std::function<DateTime()> clock = local_now;
};

// Opens a database file, or with ":memory:" an empty database that lives as long as the connection.
// The connection's kind is kSqlServer. Raises DatabaseError when the file is missing, cannot be
// read or is no database.
//
// A file that another program has locked is waited for, five seconds for each statement; what is
// still locked then is a DatabaseError of SQLSTATE "40001", and nothing of the statement is done.
std::shared_ptr<Connection> open_sqlite(const std::string& file_or_memory,
                                        SqliteOptions options = {});

// Checks that the statements would run, without running them: syntax, tables, columns and types, on
// the tables as they are now. Raises DatabaseError as running them would. The connection must come
// from open_sqlite, else InvalidArgument.
void check_sqlite(Connection& connection, std::string_view sql);

}  // namespace kestrova
