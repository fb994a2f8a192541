// An ODBC driver for tests, on the embedded database. It behaves as SQL Server does on a plain
// connection where the adapter has to cope with it: the server's dialect, batches and type codes,
// one open result per connection, values fetched in the order of their columns and not again,
// keyset cursors that can be updated beside other results, and texts in bytes only.
//
// With "Like=FreeTDS" in the connection string it behaves as that driver does: no cursors, no names
// of the tables and columns that a result shows, and an error behind rows of a block is a note of a
// success, behind which the result is at its end. A text that holds "(NAME fails)" has the function
// of that name answer an error in such a note, behind a warning.
//
// No server is needed, so the adapter and the command line program run here in the server's
// dialect from the driver manager on. It stands for no server in what SQL means there.
#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/error.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/utf16.h"
#include "platform/single_select.h"
#include "platform/sql_text.h"
#include "platform/sqlite/sqlite_connection.h"
#include "platform/text.h"

namespace kestrova {
namespace {

struct Diagnostic {
  std::string state;
  int native = 0;
  std::string text;
};

struct Object {
  virtual ~Object() = default;
  std::vector<Diagnostic> diagnostics;
};

struct Environment : Object {};

struct Statement;

struct Source : Object {
  std::shared_ptr<Connection> connection;
  bool like_freetds = false;
  std::map<std::string, std::string> keys;  // the key column of each table made on this connection
  const Statement* busy = nullptr;          // whose result has not been fetched to its end
};

struct Binding {
  SQLSMALLINT c_type = 0;
  std::byte* data = nullptr;
  SQLLEN width = 0;
  SQLLEN* indicators = nullptr;
};

struct Statement : Object {
  explicit Statement(Source& of) : source(of) {}
  ~Statement() override { close(); }

  void close() {
    if (source.busy == this) source.busy = nullptr;
    rows.reset();
    started = broken = false;
  }
  bool updatable() const { return concurrency != SQL_CONCUR_READ_ONLY; }

  Source& source;
  std::unique_ptr<Recordset> rows;
  std::string sql;
  std::map<SQLUSMALLINT, Binding> parameters;
  std::int64_t changed = 0;
  bool broken = false;   // an error has ended the result
  bool started = false;  // stands on a row, or behind the last
  std::map<SQLUSMALLINT, Binding> bindings;
  std::vector<bool> writable;
  SQLULEN cursor = SQL_CURSOR_FORWARD_ONLY;
  SQLULEN concurrency = SQL_CONCUR_READ_ONLY;
  SQLULEN array_size = 1;
  SQLULEN* fetched = nullptr;
  SQLUSMALLINT* status = nullptr;
  SQLUSMALLINT piece_column = 0;  // of the value that is fetched in pieces
  std::vector<std::byte> piece_bytes;
  std::size_t piece_offset = 0;
};

template <class T>
T* as(SQLHANDLE handle) {
  return static_cast<T*>(static_cast<Object*>(handle));
}

SQLRETURN fail(Object& object, const std::string& state, int native, const std::string& text) {
  object.diagnostics.push_back({state, native, "[Dialect]" + text});
  return SQL_ERROR;
}

// A note of a success that tells an error behind a warning.
SQLRETURN add_error_note(Object& object, SQLRETURN result) {
  fail(object, "01003", 8153, "Null value is eliminated by an aggregate");
  fail(object, "22012", 8134, "Divide by zero error encountered.");
  return result == SQL_SUCCESS ? SQL_SUCCESS_WITH_INFO : result;
}

// A call on an object: its diagnostics begin anew, and errors become diagnostics.
template <class Call>
SQLRETURN guarded(Object& object, Call call) {
  object.diagnostics.clear();
  try {
    return call();
  } catch (const DatabaseError& error) {
    return fail(object, error.sqlstate(), error.native_code(), error.what());
  } catch (const std::exception& error) {
    return fail(object, "HY000", 0, error.what());
  }
}

// The same of a statement's function of this name, which fails when the text says so.
template <class Call>
SQLRETURN guarded(Statement& statement, const std::string& function, Call call) {
  const SQLRETURN result = guarded(statement, call);
  const bool fails = statement.sql.find("(" + function + " fails)") != std::string::npos;
  return fails ? add_error_note(statement, result) : result;
}

std::string text_of(const SQLCHAR* text, SQLINTEGER length) {
  const auto* begin = reinterpret_cast<const char*>(text);
  return length == SQL_NTS ? std::string(begin)
                           : std::string(begin, static_cast<std::size_t>(length));
}

SQLRETURN give_text(const std::string& text, SQLPOINTER buffer, SQLSMALLINT size,
                    SQLSMALLINT* length) {
  if (length != nullptr) *length = static_cast<SQLSMALLINT>(text.size());
  if (buffer == nullptr || size <= 0) return SQL_SUCCESS;
  const std::size_t count = std::min(text.size(), static_cast<std::size_t>(size) - 1);
  std::memcpy(buffer, text.data(), count);
  static_cast<char*>(buffer)[count] = 0;
  return count < text.size() ? SQL_SUCCESS_WITH_INFO : SQL_SUCCESS;
}

// --- Types and values

struct ServerType {
  FieldType type;
  SQLSMALLINT code;
  const char* name;
  SQLULEN size;
  SQLSMALLINT digits;
};

// clang-format off
constexpr ServerType kServerTypes[] = {
    {FieldType::kBoolean,         -7,  "bit",              1,          0},
    {FieldType::kUnsignedTinyInt, -6,  "tinyint",          3,          0},
    {FieldType::kSmallInt,        5,   "smallint",         5,          0},
    {FieldType::kInteger,         4,   "int",              10,         0},
    {FieldType::kBigInt,          -5,  "bigint",           19,         0},
    {FieldType::kDouble,          6,   "float",            53,         0},
    {FieldType::kNumeric,         2,   "numeric",          38,         10},
    {FieldType::kDBTimeStamp,     93,  "datetime",         23,         3},
    {FieldType::kDBDate,          91,  "date",             10,         0},
    {FieldType::kChar,            1,   "char",             8000,       0},
    {FieldType::kWChar,           -8,  "nchar",            4000,       0},
    {FieldType::kVarChar,         12,  "varchar",          8000,       0},
    {FieldType::kVarWChar,        -9,  "nvarchar",         4000,       0},
    {FieldType::kLongVarChar,     -1,  "text",             2147483647, 0},
    {FieldType::kLongVarWChar,    -10, "ntext",            1073741823, 0},
    {FieldType::kVarBinary,       -3,  "varbinary",        8000,       0},
    {FieldType::kLongVarBinary,   -4,  "image",            2147483647, 0},
};
// clang-format on

const ServerType& server_type(FieldType type) {
  const auto* const row = std::find_if(std::begin(kServerTypes), std::end(kServerTypes),
                                       [type](const ServerType& t) { return t.type == type; });
  if (row == std::end(kServerTypes)) throw DatabaseError("No such type.");
  return *row;
}

template <class T>
std::vector<std::byte> raw(const T& value) {
  const auto* begin = reinterpret_cast<const std::byte*>(&value);
  return {begin, begin + sizeof value};
}

std::vector<std::byte> raw_text(const std::string& text) {
  const auto* begin = reinterpret_cast<const std::byte*>(text.data());
  return {begin, begin + text.size()};
}

std::vector<std::byte> converted(const Value& value, SQLSMALLINT c_type) {
  switch (c_type) {
    case SQL_C_BIT:
      return raw(static_cast<unsigned char>(value.boolean() ? 1 : 0));
    case SQL_C_SBIGINT:
      return raw(SQLBIGINT{*value.get_if<std::int64_t>()});
    case SQL_C_DOUBLE:
      return raw(SQLDOUBLE{*value.get_if<double>()});
    case SQL_C_TYPE_TIMESTAMP: {
      const DateTime& d = *value.get_if<DateTime>();
      SQL_TIMESTAMP_STRUCT t{};
      t.year = static_cast<SQLSMALLINT>(d.year);
      t.month = static_cast<SQLUSMALLINT>(d.month);
      t.day = static_cast<SQLUSMALLINT>(d.day);
      t.hour = static_cast<SQLUSMALLINT>(d.hour);
      t.minute = static_cast<SQLUSMALLINT>(d.minute);
      t.second = static_cast<SQLUSMALLINT>(d.second);
      t.fraction = static_cast<SQLUINTEGER>(d.nanosecond);
      return raw(t);
    }
    case SQL_C_WCHAR: {
      const std::u16string units = odbc::to_utf16(value.text());
      const auto* begin = reinterpret_cast<const std::byte*>(units.data());
      return {begin, begin + units.size() * sizeof(char16_t)};
    }
    case SQL_C_BINARY:
      return *value.get_if<Bytes>();
    case SQL_C_CHAR: {
      // As the server's own driver does, without a zero before the point.
      const std::string text = value.text();
      if (text.starts_with("0.")) return raw_text(text.substr(1));
      if (text.starts_with("-0.")) return raw_text("-" + text.substr(2));
      return raw_text(text);
    }
    default:
      throw DatabaseError("No such C type.", "HY003");
  }
}

Value from_bound(const Binding& bound) {
  const SQLLEN length = *bound.indicators;
  if (length == SQL_NULL_DATA) return {};
  const auto size = static_cast<std::size_t>(length);
  const auto read = [&](auto type) {
    std::memcpy(&type, bound.data, sizeof type);
    return type;
  };
  switch (bound.c_type) {
    case SQL_C_BIT:
      return *bound.data != std::byte{0};
    case SQL_C_SBIGINT:
      return static_cast<std::int64_t>(read(SQLBIGINT{}));
    case SQL_C_DOUBLE:
      return read(SQLDOUBLE{});
    case SQL_C_TYPE_TIMESTAMP: {
      const auto t = read(SQL_TIMESTAMP_STRUCT{});
      return DateTime{t.year,
                      t.month,
                      t.day,
                      t.hour,
                      t.minute,
                      t.second,
                      static_cast<std::int32_t>(t.fraction)};
    }
    case SQL_C_CHAR:
      return Decimal{std::string(reinterpret_cast<const char*>(bound.data), size)};
    case SQL_C_WCHAR: {
      std::u16string units(size / sizeof(char16_t), u'\0');
      if (size > 0) std::memcpy(units.data(), bound.data, size);
      return odbc::to_utf8(units);
    }
    default:
      return Bytes(bound.data, bound.data + size);
  }
}

std::size_t terminator(SQLSMALLINT c_type) {
  return c_type == SQL_C_WCHAR ? 2 : c_type == SQL_C_CHAR ? 1 : 0;
}

// Copies what fits behind the offset; the indicator tells what was left before. Whether all fitted.
bool give(const std::vector<std::byte>& bytes, std::size_t offset, SQLSMALLINT c_type,
          std::byte* data, SQLLEN width, SQLLEN* indicator) {
  const std::size_t left = bytes.size() - offset;
  *indicator = static_cast<SQLLEN>(left);
  const std::size_t end = terminator(c_type);
  const bool has_length = end > 0 || c_type == SQL_C_BINARY;
  const std::size_t room = has_length ? static_cast<std::size_t>(width) - end : left;
  const std::size_t count = std::min(left, room);
  if (count > 0) std::memcpy(data, bytes.data() + offset, count);
  for (std::size_t i = 0; i < end; ++i) data[count + i] = std::byte{0};
  return count == left;
}

// --- Fetching

// To the next row; false at the end. An error behind other rows of the block is a note of them.
bool step_on(Statement& s, bool step, SQLULEN rows_before) {
  if (s.broken) return false;
  try {
    if (step && s.started && !s.rows->eof()) s.rows->move_next();
    s.started = true;
    return !s.rows->eof();
  } catch (const DatabaseError& error) {
    if (!s.source.like_freetds || rows_before == 0) throw;
    s.broken = true;
    fail(s, error.sqlstate(), error.native_code(), error.what());
    return false;
  }
}

SQLRETURN fetch_rowset(Statement& s, bool step) {
  SQLULEN count = 0;
  bool all_fitted = true;
  for (; count < s.array_size; ++count) {
    if (!step_on(s, step, count)) break;
    for (const auto& [column, bound] : s.bindings) {
      const Value value = s.rows->value(std::size_t{column} - 1U);
      SQLLEN* const indicator = bound.indicators + count;
      if (value.is_null()) {
        *indicator = SQL_NULL_DATA;
        continue;
      }
      all_fitted &=
          give(converted(value, bound.c_type), 0, bound.c_type,
               bound.data + static_cast<SQLLEN>(count) * bound.width, bound.width, indicator);
    }
    if (s.status != nullptr) s.status[count] = SQL_ROW_SUCCESS;
  }
  s.piece_column = 0;
  if (s.fetched != nullptr) *s.fetched = count;
  for (SQLULEN i = count; s.status != nullptr && i < s.array_size; ++i) {
    s.status[i] = SQL_ROW_NOROW;
  }
  if (count == 0) {
    if (s.source.busy == &s) s.source.busy = nullptr;
    return SQL_NO_DATA;
  }
  return all_fitted && s.diagnostics.empty() ? SQL_SUCCESS : SQL_SUCCESS_WITH_INFO;
}

// A keyset cursor on rows that cannot be told apart becomes read-only.
void find_writable(Statement& s) {
  s.writable.assign(s.rows->column_count(), false);
  if (!s.updatable()) return;
  bool any = false;
  for (std::size_t i = 0; i < s.writable.size() && !s.rows->eof(); ++i) {
    try {
      s.rows->set_value(s.rows->column_name(i), s.rows->value(i));
      s.writable[i] = any = true;
    } catch (const DatabaseError&) {
      continue;
    }
  }
  s.rows->move_first();
  if (!any) s.concurrency = SQL_CONCUR_READ_ONLY;
}

bool is_query(const std::string& sql) {
  try {
    single_select(sql);
    return true;
  } catch (const DatabaseError&) {
    return false;
  }
}

std::string literal(const Value& value) {
  if (value.is_null()) return "NULL";
  if (value.get_if<Bytes>() != nullptr) return "0x" + value.text();
  if (const auto* truth = value.get_if<bool>()) return *truth ? "1" : "0";
  const bool is_quoted =
      value.get_if<std::string>() != nullptr || value.get_if<DateTime>() != nullptr;
  return is_quoted ? "N'" + text::replace_all(value.text(), "'", "''") + "'" : value.text();
}

// The text with its parameters in their places.
std::string with_parameters(const Statement& s, const std::string& sql) {
  std::string result;
  SQLUSMALLINT number = 0;
  for (std::size_t at = 0; at < sql.size();) {
    const std::size_t end = std::max(end_of_quoted(sql, at), at + 1);
    const bool is_parameter = sql[at] == '?';
    result +=
        is_parameter ? literal(from_bound(s.parameters.at(++number))) : sql.substr(at, end - at);
    at = end;
  }
  return result;
}

// "CREATE TABLE T (..., ID int NOT NULL PRIMARY KEY, ...)"
void remember_key(Source& source, const std::string& sql) {
  constexpr std::string_view kCreate = "CREATE TABLE ";
  const std::size_t key = sql.find(" PRIMARY KEY");
  if (!sql.starts_with(kCreate) || key == std::string::npos) return;
  const std::size_t column = sql.find_last_of("(,", key) + 1;
  const std::size_t begin = sql.find_first_not_of(' ', column);
  source.keys[sql.substr(kCreate.size(), sql.find(' ', kCreate.size()) - kCreate.size())] =
      sql.substr(begin, sql.find(' ', begin) - begin);
}

SQLRETURN execute(Statement& s, const std::string& sql) {
  if (s.source.busy != nullptr && s.source.busy != &s) {
    return fail(s, "HY000", 0, "Connection is busy with results for another command");
  }
  s.close();
  if (sql == "SET NOCOUNT OFF") return SQL_SUCCESS;
  if (sql.starts_with("SET DATEFORMAT ")) return SQL_SUCCESS;  // dmy is all that it knows
  remember_key(s.source, sql);
  if (!is_query(sql)) {
    s.changed = s.source.connection->execute(sql);
    return s.changed == 0 && text::starts_with_ignoring_case(sql, "DELETE") ? SQL_NO_DATA
                                                                            : SQL_SUCCESS;
  }
  s.rows = s.source.connection->open(sql, CursorType::kStatic,
                                     s.updatable() ? LockType::kOptimistic : LockType::kReadOnly);
  find_writable(s);
  if (!s.updatable()) s.source.busy = &s;
  return SQL_SUCCESS;
}

}  // namespace
}  // namespace kestrova

using namespace kestrova;

extern "C" {

SQLRETURN SQL_API SQLAllocHandle(SQLSMALLINT type, SQLHANDLE parent, SQLHANDLE* handle) {
  Object* object = nullptr;
  if (type == SQL_HANDLE_ENV) object = new Environment;
  if (type == SQL_HANDLE_DBC) object = new Source;
  if (type == SQL_HANDLE_STMT) object = new Statement(*as<Source>(parent));
  *handle = object;
  return object == nullptr ? SQL_ERROR : SQL_SUCCESS;
}

SQLRETURN SQL_API SQLFreeHandle(SQLSMALLINT, SQLHANDLE handle) {
  delete as<Object>(handle);
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT what) {
  Statement& s = *as<Statement>(handle);
  if (what == SQL_CLOSE) s.close();
  if (what == SQL_UNBIND) s.bindings.clear();
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER) { return SQL_SUCCESS; }

SQLRETURN SQL_API SQLSetConnectAttr(SQLHDBC, SQLINTEGER, SQLPOINTER, SQLINTEGER) {
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLDriverConnect(SQLHDBC handle, SQLHWND, SQLCHAR* text, SQLSMALLINT length,
                                   SQLCHAR*, SQLSMALLINT, SQLSMALLINT*, SQLUSMALLINT) {
  Source& source = *as<Source>(handle);
  return guarded(source, [&]() -> SQLRETURN {
    SqliteOptions options;
    std::string file = ":memory:";
    for (const auto& attribute : odbc::parse_connection_string(text_of(text, length))) {
      if (attribute.name == "Database") file = attribute.value;
      if (attribute.name == "Like") source.like_freetds = attribute.value == "FreeTDS";
      if (attribute.name == "ApplicationIntent") options.read_only = attribute.value == "ReadOnly";
    }
    source.connection = open_sqlite(file, options);
    return SQL_SUCCESS;
  });
}

SQLRETURN SQL_API SQLDisconnect(SQLHDBC handle) {
  as<Source>(handle)->connection.reset();
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLEndTran(SQLSMALLINT, SQLHANDLE, SQLSMALLINT) { return SQL_SUCCESS; }

SQLRETURN SQL_API SQLGetInfo(SQLHDBC handle, SQLUSMALLINT what, SQLPOINTER buffer, SQLSMALLINT size,
                             SQLSMALLINT* length) {
  switch (what) {
    case SQL_DBMS_NAME:
      return give_text("Microsoft SQL Server", buffer, size, length);
    case SQL_DRIVER_ODBC_VER:
      return give_text("03.80", buffer, size, length);
    case SQL_IDENTIFIER_QUOTE_CHAR:
      return give_text("\"", buffer, size, length);
    case SQL_KEYSET_CURSOR_ATTRIBUTES1:
      *static_cast<SQLUINTEGER*>(buffer) =
          as<Source>(handle)->like_freetds ? 0 : SQL_CA1_ABSOLUTE | SQL_CA1_POS_UPDATE;
      return SQL_SUCCESS;
    case SQL_GETDATA_EXTENSIONS:
      *static_cast<SQLUINTEGER*>(buffer) = 0;
      return SQL_SUCCESS;
    default:
      return SQL_ERROR;
  }
}

SQLRETURN SQL_API SQLNativeSql(SQLHDBC, SQLCHAR* sql, SQLINTEGER length, SQLCHAR* buffer,
                               SQLINTEGER size, SQLINTEGER* written) {
  const std::string text = text_of(sql, length);
  if (written != nullptr) *written = static_cast<SQLINTEGER>(text.size());
  return give_text(text, buffer, static_cast<SQLSMALLINT>(size), nullptr);
}

SQLRETURN SQL_API SQLSetStmtAttr(SQLHSTMT handle, SQLINTEGER what, SQLPOINTER value, SQLINTEGER) {
  Statement& s = *as<Statement>(handle);
  const auto number = reinterpret_cast<SQLULEN>(value);
  if (what == SQL_ATTR_CURSOR_TYPE && !s.source.like_freetds) s.cursor = number;
  if (what == SQL_ATTR_CONCURRENCY && !s.source.like_freetds) s.concurrency = number;
  if (what == SQL_ATTR_ROW_ARRAY_SIZE) s.array_size = number;
  if (what == SQL_ATTR_ROWS_FETCHED_PTR) s.fetched = static_cast<SQLULEN*>(value);
  if (what == SQL_ATTR_ROW_STATUS_PTR) s.status = static_cast<SQLUSMALLINT*>(value);
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLGetStmtAttr(SQLHSTMT handle, SQLINTEGER what, SQLPOINTER value, SQLINTEGER,
                                 SQLINTEGER*) {
  const Statement& s = *as<Statement>(handle);
  if (what == SQL_ATTR_CURSOR_TYPE) {
    *static_cast<SQLULEN*>(value) = s.cursor;
  } else if (what == SQL_ATTR_CONCURRENCY) {
    *static_cast<SQLULEN*>(value) = s.concurrency;
  } else {
    *static_cast<SQLPOINTER*>(value) = nullptr;  // descriptors
  }
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLExecDirect(SQLHSTMT handle, SQLCHAR* sql, SQLINTEGER length) {
  Statement& s = *as<Statement>(handle);
  s.sql = with_parameters(s, text_of(sql, length));
  return guarded(s, "SQLExecDirect", [&]() -> SQLRETURN { return execute(s, s.sql); });
}

SQLRETURN SQL_API SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT* count) {
  const Statement& s = *as<Statement>(handle);
  *count = s.rows ? static_cast<SQLSMALLINT>(s.rows->column_count()) : SQLSMALLINT{0};
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLRowCount(SQLHSTMT handle, SQLLEN* count) {
  *count = as<Statement>(handle)->changed;
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLMoreResults(SQLHSTMT handle) {
  Statement& s = *as<Statement>(handle);
  s.diagnostics.clear();
  s.close();
  const bool fails = s.sql.find("(SQLMoreResults fails)") != std::string::npos;
  s.sql.clear();  // once
  return fails ? add_error_note(s, SQL_SUCCESS) : SQL_NO_DATA;
}

SQLRETURN SQL_API SQLBindParameter(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT,
                                   SQLSMALLINT c_type, SQLSMALLINT, SQLULEN, SQLSMALLINT,
                                   SQLPOINTER data, SQLLEN width, SQLLEN* indicator) {
  as<Statement>(handle)->parameters[number] = {c_type, static_cast<std::byte*>(data), width,
                                               indicator};
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLPrimaryKeys(SQLHSTMT handle, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT,
                                 SQLCHAR* table, SQLSMALLINT length) {
  Statement& s = *as<Statement>(handle);
  return guarded(s, [&]() -> SQLRETURN {
    const std::string name = text_of(table, length);
    const auto key = s.source.keys.find(name);
    const bool has_key = key != s.source.keys.end();
    return execute(s, "SELECT " + std::string(has_key ? "" : "TOP 0 ") + "NULL, 'dbo', '" + name +
                          "', '" + (has_key ? key->second : "") + "', 1, 'PK'");
  });
}

SQLRETURN SQL_API SQLDescribeCol(SQLHSTMT handle, SQLUSMALLINT column, SQLCHAR* name,
                                 SQLSMALLINT size, SQLSMALLINT* length, SQLSMALLINT* type,
                                 SQLULEN* column_size, SQLSMALLINT* digits, SQLSMALLINT* nullable) {
  Statement& s = *as<Statement>(handle);
  return guarded(s, [&]() -> SQLRETURN {
    const std::size_t position = column - 1U;
    const ServerType& t = server_type(s.rows->type(position));
    give_text(s.rows->column_name(position), name, size, length);
    *type = t.code;
    *column_size = t.size;
    *digits = t.digits;
    *nullable = SQL_NULLABLE_UNKNOWN;
    return SQL_SUCCESS;
  });
}

SQLRETURN SQL_API SQLColAttribute(SQLHSTMT handle, SQLUSMALLINT column, SQLUSMALLINT field,
                                  SQLPOINTER text, SQLSMALLINT size, SQLSMALLINT* length,
                                  SQLLEN* number) {
  Statement& s = *as<Statement>(handle);
  return guarded(s, [&]() -> SQLRETURN {
    const std::size_t position = column - 1U;
    const ServerType& type = server_type(s.rows->type(position));
    const std::string name = s.rows->column_name(position);
    switch (field) {
      case SQL_DESC_BASE_COLUMN_NAME:
        return give_text(s.source.like_freetds ? "" : name, text, size, length);
      case SQL_DESC_NAME:
        return give_text(name, text, size, length);
      case SQL_DESC_TYPE_NAME:
        return give_text(type.name, text, size, length);
      case SQL_DESC_BASE_TABLE_NAME:
        return give_text(s.writable[position] ? "a table" : "", text, size, length);
      case SQL_DESC_UNSIGNED:
        *number = type.type == FieldType::kUnsignedTinyInt ? SQL_TRUE : SQL_FALSE;
        return SQL_SUCCESS;
      default:
        return give_text("", text, size, length);
    }
  });
}

SQLRETURN SQL_API SQLBindCol(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT c_type,
                             SQLPOINTER data, SQLLEN width, SQLLEN* indicators) {
  as<Statement>(handle)->bindings[column] = {c_type, static_cast<std::byte*>(data), width,
                                             indicators};
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLFetch(SQLHSTMT handle) {
  Statement& s = *as<Statement>(handle);
  return guarded(s, "SQLFetch", [&]() -> SQLRETURN { return fetch_rowset(s, true); });
}

SQLRETURN SQL_API SQLFetchScroll(SQLHSTMT handle, SQLSMALLINT how, SQLLEN row) {
  Statement& s = *as<Statement>(handle);
  return guarded(s, [&]() -> SQLRETURN {
    if (how != SQL_FETCH_ABSOLUTE) return fetch_rowset(s, true);
    s.rows->move_first();
    for (SQLLEN i = 1; i < row; ++i) s.rows->move_next();
    return fetch_rowset(s, false);
  });
}

SQLRETURN SQL_API SQLGetData(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT c_type,
                             SQLPOINTER data, SQLLEN width, SQLLEN* indicator) {
  Statement& s = *as<Statement>(handle);
  return guarded(s, "SQLGetData", [&]() -> SQLRETURN {
    const SQLUSMALLINT last_bound =
        s.bindings.empty() ? SQLUSMALLINT{0} : s.bindings.rbegin()->first;
    if (column < s.piece_column || column <= last_bound || s.array_size > 1) {
      return fail(s, "07009", 0, "Invalid Descriptor Index");
    }
    if (column > s.piece_column) {
      const Value value = s.rows->value(std::size_t{column} - 1U);
      if (value.is_null()) {
        *indicator = SQL_NULL_DATA;
        return SQL_SUCCESS;
      }
      s.piece_column = column;
      s.piece_bytes = converted(value, c_type);
      s.piece_offset = 0;
    }
    const std::vector<std::byte>& bytes = s.piece_bytes;
    if (s.piece_offset > 0 && s.piece_offset == bytes.size()) return SQL_NO_DATA;
    auto* const buffer = static_cast<std::byte*>(data);
    if (give(bytes, s.piece_offset, c_type, buffer, width, indicator)) {
      s.piece_offset = bytes.size();
      return SQL_SUCCESS;
    }
    s.piece_offset += static_cast<std::size_t>(width) - terminator(c_type);
    s.diagnostics.push_back({"01004", 0, "[Dialect]String data, right truncation"});
    return SQL_SUCCESS_WITH_INFO;
  });
}

SQLRETURN SQL_API SQLSetPos(SQLHSTMT handle, SQLSETPOSIROW, SQLUSMALLINT what, SQLUSMALLINT) {
  Statement& s = *as<Statement>(handle);
  return guarded(s, "SQLSetPos", [&]() -> SQLRETURN {
    if (what != SQL_UPDATE || !s.updatable()) return fail(s, "HY092", 0, "Invalid attribute");
    for (const auto& [column, bound] : s.bindings) {
      s.rows->set_value(s.rows->column_name(std::size_t{column} - 1U), from_bound(bound));
    }
    s.rows->update();
    if (s.status != nullptr) *s.status = SQL_ROW_UPDATED;
    return SQL_SUCCESS;
  });
}

SQLRETURN SQL_API SQLGetDiagRec(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT number, SQLCHAR* state,
                                SQLINTEGER* native, SQLCHAR* text, SQLSMALLINT size,
                                SQLSMALLINT* length) {
  const auto& diagnostics = as<Object>(handle)->diagnostics;
  const auto index = static_cast<std::size_t>(number) - 1;
  if (index >= diagnostics.size()) return SQL_NO_DATA;
  std::memcpy(state, diagnostics[index].state.c_str(), 6);
  *native = diagnostics[index].native;
  return give_text(diagnostics[index].text, text, size, length);
}

// The driver manager asks for records only of a driver that has this, too.
SQLRETURN SQL_API SQLGetDiagField(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT, SQLSMALLINT field,
                                  SQLPOINTER value, SQLSMALLINT, SQLSMALLINT*) {
  if (field != SQL_DIAG_NUMBER) return SQL_ERROR;
  *static_cast<SQLINTEGER*>(value) =
      static_cast<SQLINTEGER>(as<Object>(handle)->diagnostics.size());
  return SQL_SUCCESS;
}

}  // extern "C"
