// Statements that change data or tables.
#include <algorithm>
#include <set>

#include "platform/error.h"
#include "platform/sqlite/sql_convert.h"
#include "platform/sqlite/sql_scope_guard.h"
#include "platform/sqlite/sql_translator.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

// What makes the embedded database number the rows.
constexpr const char* kNumberedByDatabase = " AUTOINCREMENT";

// New tables named #name live with the connection.
Table new_table(const std::string& name) {
  return {name.starts_with('#') ? "temp" : "main", name, {}};
}

// Column name, type and what the type demands of its values. Identity columns are left to the
// embedded database, which numbers only columns that are declared exactly so.
std::string typed_column(const std::string& name, const SqlType& type) {
  // Quoted, because "(max)" is no size that the embedded database reads.
  std::string result = quoted_name(name) + " " + quoted_name(type.declaration());
  if (type.is_text() || type.type_class() == TypeClass::kGuid) {
    result += " COLLATE " + std::string(kTextCollation);
  }
  if (type.is_text() && type.size > 0) {
    result += " CONSTRAINT " + quoted_name("length of " + name) + " CHECK (length(rtrim(" +
              quoted_name(name) + ")) <= " + std::to_string(type.size) + ")";
  }
  return result;
}

std::string column_list(const std::vector<std::pair<TableName, bool>>& columns,
                        const Table& table) {
  std::string result;
  for (const auto& [name, descending] : columns) {
    const std::size_t position = table.find(name.name);
    if (position == table.columns.size()) {
      throw DatabaseError("Column name '" + name.name + "' does not exist in the target table.",
                          "42S22", 1911);
    }
    if (!result.empty()) result += ", ";
    result += quoted_name(table.columns[position].name);
    if (descending) result += " DESC";
  }
  return result;
}

}  // namespace

std::vector<Command> Translator::select_into(const SelectStatement& statement) {
  const TableName& target = *statement.into;
  if (schema_.find(target.name)) {
    throw DatabaseError("There is already an object named '" + target.name + "' in the database.",
                        "42S01", 2714);
  }
  const WrittenQuery written = write_query(*statement.query, Naming::kFree, false, true);
  check_names(written.names, target.name);
  const Table created = new_table(target.name);
  std::string columns;
  for (std::size_t i = 0; i < written.items.size(); ++i) {
    SqlType type = written.items[i].type;
    if (type.type_class() == TypeClass::kNull) type = {TypeId::kInt, 0, 0};
    if (!columns.empty()) columns += ", ";
    columns += typed_column(written.names[i], type);
  }
  return {{"CREATE TABLE " + created.sql_name() + " (" + columns + ")", false},
          {"INSERT INTO " + created.sql_name() + " " + written.sql, false}};
}

std::size_t Translator::column_position(const Table& target, const TableName& name) {
  const std::size_t position = target.find(name.name);
  if (position == target.columns.size()) {
    throw DatabaseError("Invalid column name '" + name.name + "'.", "42S22", 207);
  }
  return position;
}

std::vector<std::size_t> Translator::insert_targets(const InsertStatement& statement,
                                                    const Table& target) {
  const bool identity_allowed = text::equal_ignoring_case(identity_insert_, target.name);
  std::vector<std::size_t> targets;
  if (statement.columns.empty()) {
    for (std::size_t i = 0; i < target.columns.size(); ++i) {
      if (!target.columns[i].identity || identity_allowed) targets.push_back(i);
    }
    return targets;
  }
  for (const TableName& name : statement.columns) {
    const std::size_t position = column_position(target, name);
    if (std::find(targets.begin(), targets.end(), position) != targets.end()) {
      fail("The column name '" + name.name + "' is specified more than once in the column list.",
           name.offset, 264);
    }
    if (target.columns[position].identity && !identity_allowed) {
      throw DatabaseError("Cannot insert explicit value for identity column in table '" +
                              target.name + "' when IDENTITY_INSERT is set to OFF.",
                          "23000", 544);
    }
    targets.push_back(position);
  }
  for (std::size_t i = 0; i < target.columns.size(); ++i) {
    const bool given = std::find(targets.begin(), targets.end(), i) != targets.end();
    if (target.columns[i].row_key && !given)
      throw missing_value(target.name + "." + target.columns[i].name);
  }
  return targets;
}

// The embedded database would number the row itself where the server refuses a missing key.
std::string Translator::stored_in(Fragment from, const Table& target, const Column& column,
                                  std::size_t offset) {
  const Fragment assigned = assign(std::move(from), column.type, offset);
  if (!column.row_key || assigned.number_literal) return assigned.sql;
  return "ifnull(" + assigned.sql + ", server_missing_key(" +
         stored_literal(target.name + "." + column.name) + "))";
}

std::vector<Command> Translator::insert(const InsertStatement& statement) {
  const Table& target = table(statement.table);
  const auto targets = insert_targets(statement, target);
  std::string sql = "INSERT INTO " + target.sql_name() + " (";
  for (std::size_t i = 0; i < targets.size(); ++i) {
    sql += (i > 0 ? ", " : "") + quoted_name(target.columns[targets[i]].name);
  }
  sql += ") ";
  if (!statement.query) {
    sql += "VALUES ";
    for (std::size_t i = 0; i < statement.rows.size(); ++i) {
      sql += (i > 0 ? ", " : "") + values_row(statement, statement.rows[i], target, targets);
    }
    return {{std::move(sql), true}};
  }
  WrittenQuery source = write_query(*statement.query, Naming::kNamed, false, true);
  if (source.items.size() != targets.size()) {
    fail("The select list for the INSERT statement does not have as many items as the insert list.",
         statement.query->offset, 121);
  }
  std::string converted;
  bool needed = false;
  for (std::size_t i = 0; i < targets.size(); ++i) {
    Fragment item;
    item.sql = item_name(i);
    item.type = source.items[i].type;
    const std::string plain = item.sql;
    const std::string stored =
        stored_in(std::move(item), target, target.columns[targets[i]], statement.query->offset);
    needed = needed || stored != plain;
    converted += (i > 0 ? ", " : "") + stored;
  }
  sql += needed ? "SELECT " + converted + " FROM (" + source.sql + ")" : source.sql;
  return {{std::move(sql), true}};
}

std::string Translator::values_row(const InsertStatement& statement,
                                   const std::vector<ExprPtr>& row, const Table& target,
                                   const std::vector<std::size_t>& targets) {
  if (row.size() != targets.size()) {
    fail("The number of values for the INSERT statement does not match the number of columns.",
         statement.table.offset, 110);
  }
  Scope scope;
  const ScopeGuard guard(scope_, scope);
  std::string sql = "(";
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (!row[i]) fail("DEFAULT as a value is not supported.", statement.table.offset, 156);
    sql += (i > 0 ? ", " : "") +
           stored_in(value(*row[i]), target, target.columns[targets[i]], row[i]->offset);
  }
  return sql + ")";
}

std::string Translator::table_scope(Scope& scope, const TableName& name) {
  const Table& target = table(name);
  Source source;
  source.name = target.name;
  source.upper_name = text::upper(target.name);
  source.table = &target;
  for (const Column& c : target.columns) {
    source.columns.push_back({c.name, text::upper(c.name), c.type, true});
  }
  scope.sources.push_back(std::move(source));
  return target.sql_name() + " AS " + quoted_name(target.name);
}

std::vector<Command> Translator::update(const UpdateStatement& statement) {
  Scope scope;
  const ScopeGuard guard(scope_, scope);
  std::string sql = "UPDATE " + table_scope(scope, statement.table) + " SET ";
  const Table& target = table(statement.table);
  std::set<std::size_t> seen;
  for (const auto& [name, expr] : statement.assignments) {
    const std::size_t position = column_position(target, name);
    const Column& changed = target.columns[position];
    if (changed.identity) {
      throw DatabaseError("Cannot update identity column '" + changed.name + "'.", "42000", 8102);
    }
    if (!seen.insert(position).second) {
      fail("The column name '" + name.name + "' is specified more than once in the SET clause.",
           name.offset, 264);
    }
    if (!expr) fail("DEFAULT as a value is not supported.", name.offset, 156);
    if (seen.size() > 1) sql += ", ";
    sql +=
        quoted_name(changed.name) + " = " + stored_in(value(*expr), target, changed, expr->offset);
  }
  if (statement.where) sql += " WHERE " + condition(*statement.where);
  return {{std::move(sql), true}};
}

std::vector<Command> Translator::delete_(const DeleteStatement& statement) {
  Scope scope;
  const ScopeGuard guard(scope_, scope);
  std::string sql = "DELETE FROM " + table_scope(scope, statement.table);
  if (statement.where) sql += " WHERE " + condition(*statement.where);
  return {{std::move(sql), true}};
}

std::string Translator::column_definition(const ColumnDefinition& column, bool not_null) {
  std::string result = typed_column(column.name.name, column.type);
  if (column.not_null || not_null) result += " NOT NULL";
  if (column.unique) result += " UNIQUE";
  if (column.default_value) {
    Scope scope;
    const ScopeGuard guard(scope_, scope);
    const Expr& expr = *column.default_value;
    Fragment written;
    if (expr.kind == ExprKind::kFunction && expr.text == "GETDATE") {
      written.sql = "server_now()";
      written.type = {TypeId::kDateTime, 0, 0};
    } else {
      written = value(expr);
    }
    result += " DEFAULT (" + assign(std::move(written), column.type, expr.offset).sql + ")";
  }
  return result;
}

Table Translator::described_table(const CreateTableStatement& statement) {
  Table result = new_table(statement.table.name);
  for (const ColumnDefinition& column : statement.columns) {
    if (result.find(column.name.name) < result.columns.size()) {
      throw DatabaseError("Column names in each table must be unique. Column name '" +
                              column.name.name + "' in table '" + result.name +
                              "' is specified more than once.",
                          "42S21", 2705);
    }
    if (column.identity && result.has_identity()) {
      throw DatabaseError("Multiple identity columns specified for table '" + result.name +
                              "'. Only one identity column per table is allowed.",
                          "42000", 2744);
    }
    if (column.identity && column.type.id != TypeId::kInt) {
      fail("IDENTITY on another type than int is not supported.", column.name.offset, 2749);
    }
    result.columns.push_back(
        {column.name.name, column.type, column.identity, column.not_null, false});
  }
  if (result.columns.empty()) {
    fail("The table '" + result.name + "' has no column.", statement.table.offset, 102);
  }
  return result;
}

std::vector<Command> Translator::create_table(const CreateTableStatement& statement) {
  if (schema_.find(statement.table.name)) {
    throw DatabaseError(
        "There is already an object named '" + statement.table.name + "' in the database.", "42S01",
        2714);
  }
  Table created = described_table(statement);
  // The keys as lists of column positions; the primary one first.
  std::vector<std::vector<std::size_t>> keys;
  std::vector<std::size_t> primary;
  const auto add_key = [&](bool is_primary, std::vector<std::size_t> key) {
    if (!is_primary) return keys.push_back(std::move(key));
    if (!primary.empty()) {
      throw DatabaseError(
          "Cannot add multiple PRIMARY KEY constraints to table '" + created.name + "'.", "42000",
          8110);
    }
    primary = std::move(key);
  };
  for (std::size_t i = 0; i < statement.columns.size(); ++i) {
    if (statement.columns[i].primary_key) add_key(true, {i});
  }
  for (const KeyDefinition& key : statement.keys) {
    std::vector<std::size_t> positions;
    for (const auto& [name, descending] : key.columns) {
      positions.push_back(column_position(created, name));
    }
    add_key(key.primary, std::move(positions));
  }
  if (!primary.empty()) keys.insert(keys.begin(), primary);

  // The identity column or a plain whole-number key is the embedded database's own row number: it
  // needs no index beside the table.
  std::size_t row_key = created.columns.size();
  for (std::size_t i = 0; i < created.columns.size(); ++i) {
    if (created.columns[i].identity) row_key = i;
  }
  if (!created.has_identity() && primary.size() == 1 &&
      created.columns[primary[0]].type.id == TypeId::kInt &&
      !statement.columns[primary[0]].default_value) {
    row_key = primary[0];
  }
  std::string definitions;
  for (std::size_t i = 0; i < created.columns.size(); ++i) {
    if (i > 0) definitions += ", ";
    const bool in_primary = std::find(primary.begin(), primary.end(), i) != primary.end();
    definitions += i != row_key ? column_definition(statement.columns[i], in_primary)
                                : quoted_name(created.columns[i].name) + " INTEGER PRIMARY KEY" +
                                      (created.columns[i].identity ? kNumberedByDatabase : "");
  }
  bool may_be_primary = row_key == created.columns.size();
  for (const std::vector<std::size_t>& key : keys) {
    if (key == std::vector<std::size_t>{row_key}) continue;
    definitions += may_be_primary && key == primary ? ", PRIMARY KEY (" : ", UNIQUE (";
    may_be_primary = may_be_primary && key != primary;
    for (std::size_t i = 0; i < key.size(); ++i) {
      definitions += (i > 0 ? ", " : "") + quoted_name(created.columns[key[i]].name);
    }
    definitions += ")";
  }
  return {{"CREATE TABLE " + created.sql_name() + " (" + definitions + ")", false}};
}

std::vector<Command> Translator::create_index(const CreateIndexStatement& statement) {
  const Table& target = table(statement.table);
  if (schema_.has_index(target, statement.index.name)) {
    throw DatabaseError("The operation failed because an index or statistics with name '" +
                            statement.index.name + "' already exists on table '" + target.name +
                            "'.",
                        "42S11", 1913);
  }
  return {{std::string(statement.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") +
               target.database + "." + quoted_name(index_name(target, statement.index.name)) +
               " ON " + quoted_name(target.name) + " (" + column_list(statement.columns, target) +
               ")",
           false}};
}

std::vector<Command> Translator::drop_table(const DropTableStatement& statement) {
  std::vector<Command> commands;
  for (const TableName& name : statement.tables) {
    const Table* found = schema_.find(name.name);
    if (!found && statement.if_exists) continue;
    if (!found) {
      throw DatabaseError("Cannot drop the table '" + name.name +
                              "', because it does not exist or you do not have permission.",
                          "42S02", 3701);
    }
    commands.push_back({"DROP TABLE " + found->sql_name(), false});
  }
  return commands;
}

std::vector<Command> Translator::drop_index(const DropIndexStatement& statement) {
  const Table& target = table(statement.table);
  if (!schema_.has_index(target, statement.index.name)) {
    throw DatabaseError("Cannot drop the index '" + target.name + "." + statement.index.name +
                            "', because it does not exist or you do not have permission.",
                        "42S12", 3701);
  }
  return {{"DROP INDEX " + target.database + "." +
               quoted_name(index_name(target, statement.index.name)),
           false}};
}

std::string Translator::condition_query(const Expr& expr) {
  Scope scope;
  const ScopeGuard guard(scope_, scope);
  return "SELECT CASE WHEN " + condition(expr) + " THEN 1 ELSE 0 END";
}

}  // namespace kestrova::sql
