// The tables of a connection: their names and columns, read from the database when first asked for.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sqlite/sql_types.h"
#include "platform/sqlite/sqlite_handle.h"

namespace kestrova::sql {

struct Column {
  std::string name;
  SqlType type;
  bool identity = false;
  bool not_null = false;
  // Primary key of whole numbers that is the embedded database's own row number.
  bool row_key = false;
};

struct Table {
  std::string database;  // "main", or "temp" for #names
  std::string name;
  std::vector<Column> columns;

  // Position of a column, names compared without regard to case; columns.size() when there is none.
  std::size_t find(std::string_view name) const;
  // Its name in a statement of the embedded database.
  std::string sql_name() const;
  bool has_identity() const;
};

class Schema {
 public:
  explicit Schema(sqlite3* database) : database_(database) {}

  // The table of this name in any case, or nullptr. Valid until forget().
  const Table* find(std::string_view name);

  bool has_index(const Table& table, std::string_view index);

  // Forgets what was read, because tables may have changed.
  void forget();

  // Calls forget() when another connection has changed the tables of the file.
  void refresh();

 private:
  void load_names();
  bool is_numbered(const std::string& database, const std::string& name);
  Table load(const std::string& database, const std::string& name);

  sqlite3* database_;
  StatementHandle version_query_;
  std::int64_t version_ = -1;
  bool names_loaded_ = false;
  // By upper-case name; a table without columns has not been read yet.
  std::map<std::string, Table, std::less<>> tables_;
};

// The name under which an index is kept: index names are per table on the server, but per database
// in the embedded one.
std::string index_name(const Table& table, std::string_view index);

}  // namespace kestrova::sql
