#include "platform/odbc/odbc_session.h"

#include <algorithm>
#include <limits>

#include "platform/error.h"
#include "platform/odbc/start_statements.h"
#include "platform/odbc/utf16.h"

namespace kestrova::odbc {
namespace {

constexpr const char* kLostMessage = "The connection to the database is lost: ";

SQLSMALLINT units(const std::u16string& text) {
  if (text.size() > static_cast<std::size_t>(std::numeric_limits<SQLSMALLINT>::max())) {
    throw InvalidArgument("The connection string is too long.");
  }
  return static_cast<SQLSMALLINT>(text.size());
}

// A text that a function of the driver writes: in a buffer of 16-bit units, of which it tells the
// number of bytes. "" when it cannot tell.
template <class Call>
std::string text_of_utf16(Call call) {
  char16_t buffer[512] = {};
  SQLSMALLINT bytes = 0;
  if (!SQL_SUCCEEDED(call(wide(buffer), SQLSMALLINT{sizeof buffer}, &bytes))) return {};
  const auto most = static_cast<SQLSMALLINT>(sizeof buffer - sizeof(char16_t));
  return to_utf8({buffer, static_cast<std::size_t>(std::clamp<SQLSMALLINT>(bytes, 0, most)) /
                              sizeof(char16_t)});
}

template <class Call>
std::string text_of_utf8(Call call) {
  char buffer[1024] = {};
  SQLSMALLINT bytes = 0;
  if (!SQL_SUCCEEDED(call(narrow(buffer), SQLSMALLINT{sizeof buffer}, &bytes))) return {};
  const auto most = static_cast<SQLSMALLINT>(sizeof buffer - 1);
  return {buffer, static_cast<std::size_t>(std::clamp<SQLSMALLINT>(bytes, 0, most))};
}

}  // namespace

Session::Session(const std::string& connection_string, const OdbcOptions& options) {
  start_statements(options, ConnectionKind::kSqlServer);  // bad options before any network
  mask_ = SecretMask(parse_connection_string(connection_string));
  connect(connection_string, options);
  connected_ = true;
  try {
    find_text_form();
    read_traits();
    query_timeout_ = static_cast<SQLULEN>(options.query_timeout.count());
    std::size_t index = 0;
    for (const std::string& sql : start_statements(options, traits_.kind)) {
      const StatementHandle statement = new_statement();
      const std::string name = name_of(index++, sql);
      run(statement, sql, name);
      last_row_count(statement, name);
    }
  } catch (...) {
    SQLDisconnect(connection_.get());
    throw;
  }
}

Session::~Session() {
  if (!connected_) return;
  if (SQL_SUCCEEDED(SQLDisconnect(connection_.get()))) return;
  // A transaction that was left open keeps the connection.
  SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_ROLLBACK);
  SQLDisconnect(connection_.get());
}

void Session::connect(const std::string& connection_string, const OdbcOptions& options) {
  SQLHANDLE handle = nullptr;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &handle))) {
    throw DatabaseError("The ODBC driver manager cannot be used.", "HY001");
  }
  environment_ = EnvironmentHandle(handle);
  SQLSetEnvAttr(environment_.get(), SQL_ATTR_ODBC_VERSION, attribute_value(SQL_OV_ODBC3_80), 0);
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_DBC, environment_.get(), &handle))) {
    fail(SQL_HANDLE_ENV, environment_.get(), "");
  }
  connection_ = ConnectionHandle(handle);
  const auto timeout = static_cast<std::uintptr_t>(options.login_timeout.count());
  SQLSetConnectAttr(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT, attribute_value(timeout), 0);
  if (options.read_only) {
    SQLSetConnectAttr(connection_.get(), SQL_ATTR_ACCESS_MODE, attribute_value(SQL_MODE_READ_ONLY),
                      0);
  }
  std::u16string text =
      to_utf16(options.read_only ? with_read_only_intent(connection_string) : connection_string);
  const SQLRETURN result = SQLDriverConnectW(connection_.get(), nullptr, wide(text.data()),
                                             units(text), nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  std::fill(text.begin(), text.end(), u'\0');
  if (!SQL_SUCCEEDED(result)) fail(SQL_HANDLE_DBC, connection_.get(), "");
}

// A driver without UTF-16 functions gets its statements from the driver manager, which loses
// letters on the way: those outside of the process's locale, or beyond 16 bits. Whether it does so
// shows when a text is sent to the driver to be translated and comes back.
void Session::find_text_form() {
  std::u16string sent = u"SELECT '\u00E4\u0142\U0001F332'";
  char16_t received[64] = {};
  SQLINTEGER length = 0;
  const SQLRETURN result =
      SQLNativeSqlW(connection_.get(), wide(sent.data()), static_cast<SQLINTEGER>(sent.size()),
                    wide(received), static_cast<SQLINTEGER>(std::size(received)), &length);
  utf16_ = !SQL_SUCCEEDED(result) || std::u16string_view(received) == sent;
}

void Session::read_traits() {
  const std::string product = info_text(SQL_DBMS_NAME);
  if (product.empty()) fail(SQL_HANDLE_DBC, connection_.get(), "kind of the database");
  traits_.kind = kind_of(product);
  const bool is_server = traits_.kind == ConnectionKind::kSqlServer;
  // Brackets are always names there; double quotes only as the session is set.
  traits_.quote = is_server ? "[" : info_text(SQL_IDENTIFIER_QUOTE_CHAR);
  traits_.updatable_cursors =
      (info_number(SQL_KEYSET_CURSOR_ATTRIBUTES1) & SQL_CA1_POS_UPDATE) != 0;
  constexpr SQLUINTEGER kReread = SQL_GD_BLOCK | SQL_GD_BOUND;
  traits_.rereads_blocks = (info_number(SQL_GETDATA_EXTENSIONS) & kReread) == kReread;
  traits_.sizes_hold = is_server || traits_.kind == ConnectionKind::kOracle;
}

std::string Session::info_text(SQLUSMALLINT what) {
  return text_of_utf16([&](SQLWCHAR* buffer, SQLSMALLINT size, SQLSMALLINT* bytes) {
    return SQLGetInfoW(connection_.get(), what, buffer, size, bytes);
  });
}

SQLUINTEGER Session::info_number(SQLUSMALLINT what) {
  SQLUINTEGER number = 0;
  const SQLRETURN result =
      SQLGetInfoW(connection_.get(), what, &number, SQLSMALLINT{sizeof number}, nullptr);
  return SQL_SUCCEEDED(result) ? number : 0;
}

StatementHandle Session::new_statement() {
  SQLHANDLE handle = nullptr;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection_.get(), &handle))) {
    fail(SQL_HANDLE_DBC, connection_.get(), "");
  }
  StatementHandle statement(handle);
  if (query_timeout_ != 0) {
    SQLSetStmtAttr(statement.get(), SQL_ATTR_QUERY_TIMEOUT, attribute_value(query_timeout_), 0);
  }
  return statement;
}

void Session::run(const StatementHandle& statement, std::string_view sql, const std::string& name) {
  if (sql.size() > static_cast<std::size_t>(std::numeric_limits<SQLINTEGER>::max())) {
    throw DatabaseError("The statement is longer than a driver can take.", "HY090");
  }
  std::u16string utf16 = to_utf16(sql);  // also checks what is sent as UTF-8
  SQLRETURN result = SQL_SUCCESS;
  if (utf16_) {
    result =
        SQLExecDirectW(statement.get(), wide(utf16.data()), static_cast<SQLINTEGER>(utf16.size()));
  } else {
    std::string utf8(sql);
    result =
        SQLExecDirect(statement.get(), narrow(utf8.data()), static_cast<SQLINTEGER>(utf8.size()));
  }
  has_data(result, statement, name);  // none is what an UPDATE or DELETE answers that meets no row
}

bool Session::next_result(const StatementHandle& statement, const std::string& name) {
  return has_data(SQLMoreResults(statement.get()), statement, name);
}

std::size_t Session::column_count(const StatementHandle& statement, const std::string& name) {
  SQLSMALLINT count = 0;
  check(SQLNumResultCols(statement.get(), &count), statement, name);
  return static_cast<std::size_t>(count);
}

std::int64_t Session::last_row_count(const StatementHandle& statement, const std::string& name) {
  std::int64_t last = -1;
  do {
    if (column_count(statement, name) > 0) continue;
    SQLLEN count = 0;
    check(SQLRowCount(statement.get(), &count), statement, name);
    if (count >= 0) last = count;
  } while (next_result(statement, name));
  return last;
}

// A secret goes before the text is shortened, which might leave a part of it.
std::string Session::name_of(std::size_t index, std::string_view sql) const {
  return statement_name(index, mask_.apply(std::string(sql)));
}

std::string Session::column_text(const StatementHandle& statement, SQLUSMALLINT column,
                                 SQLUSMALLINT field) {
  if (utf16_) {
    return text_of_utf16([&](SQLWCHAR* buffer, SQLSMALLINT size, SQLSMALLINT* bytes) {
      return SQLColAttributeW(statement.get(), column, field, buffer, size, bytes, nullptr);
    });
  }
  return text_of_utf8([&](SQLCHAR* buffer, SQLSMALLINT size, SQLSMALLINT* bytes) {
    return SQLColAttribute(statement.get(), column, field, buffer, size, bytes, nullptr);
  });
}

SQLLEN Session::column_number(const StatementHandle& statement, SQLUSMALLINT column,
                              SQLUSMALLINT field) {
  SQLLEN number = 0;
  const SQLRETURN result =
      SQLColAttributeW(statement.get(), column, field, nullptr, 0, nullptr, &number);
  return SQL_SUCCEEDED(result) ? number : 0;
}

DescribedColumn Session::describe(const StatementHandle& statement, std::size_t column,
                                  const std::string& name) {
  const auto number = static_cast<SQLUSMALLINT>(column + 1);
  DescribedColumn result;
  SQLWCHAR ignored[1] = {};
  SQLSMALLINT name_length = 0, sql_type = 0, digits = 0, nullable = 0;
  SQLULEN size = 0;
  check(SQLDescribeColW(statement.get(), number, ignored, 0, &name_length, &sql_type, &size,
                        &digits, &nullable),
        statement, name);
  result.name = column_text(statement, number, SQL_DESC_NAME);
  result.sql_type = sql_type;
  result.size = size;
  result.digits = digits;
  result.type_name = column_text(statement, number, SQL_DESC_TYPE_NAME);
  result.is_unsigned = column_number(statement, number, SQL_DESC_UNSIGNED) == SQL_TRUE;
  return result;
}

SourceColumn Session::source_of(const StatementHandle& statement, std::size_t column) {
  const auto number = static_cast<SQLUSMALLINT>(column + 1);
  return {{column_text(statement, number, SQL_DESC_CATALOG_NAME),
           column_text(statement, number, SQL_DESC_SCHEMA_NAME),
           column_text(statement, number, SQL_DESC_BASE_TABLE_NAME)},
          column_text(statement, number, SQL_DESC_BASE_COLUMN_NAME)};
}

std::vector<std::string> Session::primary_key(const TableName& table) {
  const StatementHandle statement = new_statement();
  const auto call = [&statement](auto function, auto pointer, auto& c, auto& s, auto& t) {
    const auto part = [&pointer](auto& text) {
      return text.empty() ? nullptr : pointer(text.data());
    };
    return function(statement.get(), part(c), static_cast<SQLSMALLINT>(c.size()), part(s),
                    static_cast<SQLSMALLINT>(s.size()), part(t),
                    static_cast<SQLSMALLINT>(t.size()));
  };
  SQLRETURN result = SQL_ERROR;
  if (utf16_) {
    std::u16string c = to_utf16(table.catalog);
    std::u16string s = to_utf16(table.schema);
    std::u16string t = to_utf16(table.table);
    result = call(SQLPrimaryKeysW, wide, c, s, t);
  } else {
    TableName copy = table;
    auto& [c, s, t] = copy;
    result = call(SQLPrimaryKeys, narrow, c, s, t);
  }
  const std::string name = "key of " + table.table;
  // A driver may know no keys; a part of a key, or a lost connection, is no such answer.
  if (!SQL_SUCCEEDED(result)) {
    if (connection_is_dead()) fail(statement, name);
    return {};
  }
  const auto text = [&](SQLUSMALLINT column) {
    char16_t buffer[512] = {};
    SQLLEN bytes = 0;
    check(SQLGetData(statement.get(), column, SQL_C_WCHAR, buffer, SQLLEN{sizeof buffer}, &bytes),
          statement, name);
    return to_utf8(std::u16string_view(buffer));
  };
  std::vector<std::string> columns;
  TableName first;
  while (has_data(SQLFetch(statement.get()), statement, name)) {
    const TableName owner{text(1), text(2), text(3)};
    if (columns.empty()) first = owner;
    if (owner != first) return {};
    columns.push_back(text(4));
  }
  return columns;
}

bool Session::has_data(SQLRETURN result, const StatementHandle& statement,
                       const std::string& name) {
  if (result == SQL_SUCCESS) return true;
  const bool is_note = result == SQL_SUCCESS_WITH_INFO || result == SQL_NO_DATA;
  if (!is_note || hold_error(records_of(SQL_HANDLE_STMT, statement.get()))) fail(statement, name);
  return result != SQL_NO_DATA;
}

void Session::check(SQLRETURN result, const StatementHandle& statement, const std::string& name) {
  if (!has_data(result, statement, name)) fail(statement, name);
}

void Session::fail(const StatementHandle& statement, const std::string& name) {
  fail(SQL_HANDLE_STMT, statement.get(), name);
}

void Session::fail(SQLSMALLINT type, SQLHANDLE handle, const std::string& name) {
  std::vector<DiagnosticRecord> records = records_of(type, handle);
  for (DiagnosticRecord& record : records) record.text = mask_.apply(record.text);
  const DatabaseError error = error_of(records, name);
  const bool is_lost = connected_ && (error.sqlstate().starts_with("08") || connection_is_dead());
  throw DatabaseError(std::string(is_lost ? kLostMessage : "") + error.what(),
                      is_lost ? "08S01" : error.sqlstate(), error.native_code());
}

bool Session::connection_is_dead() const {
  SQLUINTEGER dead = SQL_CD_FALSE;
  const SQLRETURN result =
      SQLGetConnectAttrW(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &dead, 0, nullptr);
  return SQL_SUCCEEDED(result) && dead == SQL_CD_TRUE;
}

std::vector<DiagnosticRecord> Session::records_of(SQLSMALLINT type, SQLHANDLE handle) const {
  constexpr SQLSMALLINT kMostRecords = 50;
  std::vector<DiagnosticRecord> records;
  for (SQLSMALLINT i = 1; i <= kMostRecords; ++i) {
    DiagnosticRecord record;
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    if (utf16_) {
      char16_t state[6] = {}, text[2048] = {};
      if (!SQL_SUCCEEDED(SQLGetDiagRecW(type, handle, i, wide(state), &native, wide(text),
                                        SQLSMALLINT{std::size(text)}, &length))) {
        break;
      }
      record = {to_utf8(std::u16string_view(state)), native, to_utf8(std::u16string_view(text))};
    } else {
      char state[6] = {}, text[2048] = {};
      if (!SQL_SUCCEEDED(SQLGetDiagRec(type, handle, i, narrow(state), &native, narrow(text),
                                       SQLSMALLINT{std::size(text)}, &length))) {
        break;
      }
      record = {state, native, text};
    }
    records.push_back(std::move(record));
  }
  return records;
}

}  // namespace kestrova::odbc
