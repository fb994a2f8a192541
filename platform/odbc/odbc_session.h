// One connection to a data source, shared by the connection object and its row sets: the handles,
// what the driver tells of itself, running statements, and errors without secrets.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/diagnostics.h"
#include "platform/odbc/odbc_connection.h"
#include "platform/odbc/odbc_handle.h"
#include "platform/odbc/searched_update.h"

namespace kestrova::odbc {

// What a driver can do, as far as the adapter asks.
struct DriverTraits {
  ConnectionKind kind = ConnectionKind::kOther;
  std::string quote;  // around names; "[" for brackets
  bool updatable_cursors = false;
  bool rereads_blocks = false;  // a value cut off in a block of rows can be read again
  bool sizes_hold = false;      // no value is longer than its column says
};

// A result column as the driver describes it.
struct DescribedColumn {
  std::string name;
  int sql_type = 0;
  std::string type_name;
  bool is_unsigned = false;
  std::size_t size = 0;
  int digits = 0;  // behind the point, or of a second's fraction
};

// The column of a table that a result column shows, as far as the driver tells. An expression has
// no table.
struct SourceColumn {
  TableName table;
  std::string column;
};

class Session {
 public:
  Session(const std::string& connection_string, const OdbcOptions& options);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  const DriverTraits& traits() const { return traits_; }

  // A new statement; its name in errors is for run() to give.
  StatementHandle new_statement();
  // The statement as errors name it, without secrets.
  std::string name_of(std::size_t index, std::string_view sql) const;

  // Runs SQL on the statement. Raises DatabaseError.
  void run(const StatementHandle& statement, std::string_view sql, const std::string& name);
  // To the next result; false when there is none.
  bool next_result(const StatementHandle& statement, const std::string& name);
  std::size_t column_count(const StatementHandle& statement, const std::string& name);
  // Reads all results and answers the count of the last one that has one: those before it may be a
  // trigger's. Below 0 when none tells a number. A failure of a later result is raised.
  std::int64_t last_row_count(const StatementHandle& statement, const std::string& name);
  // Columns count from 0.
  DescribedColumn describe(const StatementHandle& statement, std::size_t column,
                           const std::string& name);
  SourceColumn source_of(const StatementHandle& statement, std::size_t column);

  // The names of a table's key columns; none when it has no key, the driver cannot tell, or there
  // are several tables of the name.
  std::vector<std::string> primary_key(const TableName& table);

  // Raises what the driver says when the call did not succeed, and also when it did but one of its
  // notes is no warning: a driver may call the rows before an error a success. False when there is
  // no data (more).
  bool has_data(SQLRETURN result, const StatementHandle& statement, const std::string& name);
  // The same where data must be.
  void check(SQLRETURN result, const StatementHandle& statement, const std::string& name);
  [[noreturn]] void fail(const StatementHandle& statement, const std::string& name);

 private:
  void connect(const std::string& connection_string, const OdbcOptions& options);
  void read_traits();
  void find_text_form();
  std::string info_text(SQLUSMALLINT what);
  SQLUINTEGER info_number(SQLUSMALLINT what);
  std::string column_text(const StatementHandle& statement, SQLUSMALLINT column,
                          SQLUSMALLINT field);
  SQLLEN column_number(const StatementHandle& statement, SQLUSMALLINT column, SQLUSMALLINT field);
  std::vector<DiagnosticRecord> records_of(SQLSMALLINT type, SQLHANDLE handle) const;
  bool connection_is_dead() const;
  [[noreturn]] void fail(SQLSMALLINT type, SQLHANDLE handle, const std::string& name);

  EnvironmentHandle environment_;
  ConnectionHandle connection_;
  bool connected_ = false;
  // Texts go to the driver in UTF-16, or in UTF-8 to a driver for which the driver manager would
  // have to turn them into something less.
  bool utf16_ = true;
  SecretMask mask_;
  DriverTraits traits_;
  SQLULEN query_timeout_ = 0;
};

}  // namespace kestrova::odbc
