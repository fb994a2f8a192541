#include "platform/sqlite/sql_schema.h"

#include "platform/sqlite/sql_lexer.h"
#include "platform/sqlite/sqlite_error.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

StatementHandle prepare(sqlite3* database, const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(database, sql.c_str(), static_cast<int>(sql.size()), &statement,
                         nullptr) != SQLITE_OK) {
    throw refusal(sqlite3_extended_errcode(database), sqlite3_errmsg(database));
  }
  return StatementHandle(statement);
}

bool step(sqlite3* database, sqlite3_stmt* statement) {
  const int code = sqlite3_step(statement);
  if (code != SQLITE_ROW && code != SQLITE_DONE) {
    const DatabaseError error = refusal(code, sqlite3_errmsg(database));
    sqlite3_reset(statement);
    throw error;
  }
  return code == SQLITE_ROW;
}

std::string column_text(sqlite3_stmt* statement, int column) {
  const auto* text = sqlite3_column_text(statement, column);
  return text ? std::string(reinterpret_cast<const char*>(text),
                            static_cast<std::size_t>(sqlite3_column_bytes(statement, column)))
              : std::string();
}

}  // namespace

std::string quoted_name(const std::string& name) { return quoted(name, '"'); }

std::string index_name(const Table& table, std::string_view index) {
  return table.name + "." + std::string(index);
}

std::size_t Table::find(std::string_view column) const {
  const std::string wanted = text::upper(column);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (text::upper(columns[i].name) == wanted) return i;
  }
  return columns.size();
}

std::string Table::sql_name() const { return database + "." + quoted_name(name); }

bool Table::has_identity() const {
  for (const Column& column : columns) {
    if (column.identity) return true;
  }
  return false;
}

const Table* Schema::find(std::string_view name) {
  if (!names_loaded_) load_names();
  const auto found = tables_.find(text::upper(name));
  if (found == tables_.end()) return nullptr;
  Table& table = found->second;
  if (table.columns.empty()) table = load(table.database, table.name);
  return &table;
}

bool Schema::has_index(const Table& table, std::string_view index) {
  const auto query = prepare(
      database_, "SELECT name FROM " + table.database + ".sqlite_schema WHERE type = 'index'");
  const std::string wanted = text::upper(index_name(table, index));
  while (step(database_, query.get())) {
    if (text::upper(column_text(query.get(), 0)) == wanted) return true;
  }
  return false;
}

void Schema::forget() {
  names_loaded_ = false;
  tables_.clear();
}

void Schema::refresh() {
  if (!version_query_) version_query_ = prepare(database_, "PRAGMA main.schema_version");
  step(database_, version_query_.get());
  const std::int64_t version = sqlite3_column_int64(version_query_.get(), 0);
  sqlite3_reset(version_query_.get());
  if (version != version_) forget();
  version_ = version;
}

void Schema::load_names() {
  tables_.clear();
  for (const std::string database : {"main", "temp"}) {
    const auto query = prepare(
        database_,
        "SELECT name FROM " + database +
            ".sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'");
    while (step(database_, query.get())) {
      const std::string name = column_text(query.get(), 0);
      tables_[text::upper(name)] = Table{database, name, {}};
    }
  }
  names_loaded_ = true;
}

// Whether the embedded database numbers the table's rows, as the server does an identity column's.
bool Schema::is_numbered(const std::string& database, const std::string& name) {
  const auto query = prepare(
      database_, "SELECT COUNT(*) FROM " + database +
                     ".sqlite_schema WHERE type = 'table' AND name = " + quoted(name, '\'') +
                     " AND sql LIKE '%\" INTEGER PRIMARY KEY AUTOINCREMENT%'");
  step(database_, query.get());
  return sqlite3_column_int(query.get(), 0) != 0;
}

Table Schema::load(const std::string& database, const std::string& name) {
  Table table{database, name, {}};
  const bool numbered = is_numbered(database, name);
  const auto query =
      prepare(database_, "PRAGMA " + database + ".table_info(" + quoted_name(name) + ")");
  while (step(database_, query.get())) {
    Column column;
    column.name = column_text(query.get(), 1);
    const std::string declaration = column_text(query.get(), 2);
    const auto type = parse_declaration(declaration);
    if (!type) {
      throw DatabaseError("The column '" + column.name + "' of the table '" + name +
                              "' has the unknown type '" + declaration + "'.",
                          "42000", 2715);
    }
    column.type = *type;
    column.not_null = sqlite3_column_int(query.get(), 3) != 0;
    if (declaration == "INTEGER" && sqlite3_column_int(query.get(), 5) != 0) {
      (numbered ? column.identity : column.row_key) = true;
    }
    table.columns.push_back(column);
  }
  return table;
}

}  // namespace kestrova::sql
