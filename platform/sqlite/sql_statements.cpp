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

std::string column_list(const std::vector<std::pair<TableName, bool>>& columns, const Table& table,
                        bool with_order) {
  std::string result;
  for (const auto& [name, descending] : columns) {
    const std::size_t position = table.find(name.name);
    if (position == table.columns.size()) {
      throw DatabaseError("Column name '" + name.name + "' does not exist in the target table.",
                          "42S22", 1911);
    }
    if (!result.empty()) result += ", ";
    result += quoted_name(table.columns[position].name);
    if (with_order && descending) result += " DESC";
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
  return targets;
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
    const Fragment assigned =
        assign(std::move(item), target.columns[targets[i]].type, statement.query->offset);
    needed = needed || assigned.sql != plain;
    converted += (i > 0 ? ", " : "") + assigned.sql;
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
    const Fragment assigned =
        assign(value(*row[i]), target.columns[targets[i]].type, row[i]->offset);
    sql += (i > 0 ? ", " : "") + assigned.sql;
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
    sql += quoted_name(changed.name) + " = " + assign(value(*expr), changed.type, expr->offset).sql;
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

std::string Translator::column_definition(const ColumnDefinition& column) {
  if (column.identity) {
    if (column.type.id != TypeId::kInt) {
      fail("IDENTITY on another type than int is not supported.", column.name.offset, 2749);
    }
    return quoted_name(column.name.name) + " INTEGER PRIMARY KEY AUTOINCREMENT";
  }
  std::string result = typed_column(column.name.name, column.type);
  if (column.not_null || column.primary_key) result += " NOT NULL";
  if (column.unique) result += " UNIQUE";
  if (column.default_value) {
    Scope scope;
    const ScopeGuard guard(scope_, scope);
    const Expr& expr = *column.default_value;
    const bool is_now = expr.kind == ExprKind::kFunction && expr.text == "GETDATE";
    Fragment written =
        is_now ? Fragment{"server_now()", {TypeId::kDateTime, 0, 0}, false, {}, false, {}}
               : value(expr);
    result += " DEFAULT (" + assign(std::move(written), column.type, expr.offset).sql + ")";
  }
  return result;
}

std::vector<Command> Translator::create_table(const CreateTableStatement& statement) {
  if (schema_.find(statement.table.name)) {
    throw DatabaseError(
        "There is already an object named '" + statement.table.name + "' in the database.", "42S01",
        2714);
  }
  Table created = new_table(statement.table.name);
  std::string columns;
  std::string identity;
  std::size_t primary_keys = 0;
  std::string primary_column;
  for (const ColumnDefinition& column : statement.columns) {
    if (created.find(column.name.name) < created.columns.size()) {
      throw DatabaseError("Column names in each table must be unique. Column name '" +
                              column.name.name + "' in table '" + statement.table.name +
                              "' is specified more than once.",
                          "42S21", 2705);
    }
    if (column.identity && !identity.empty()) {
      throw DatabaseError("Multiple identity columns specified for table '" + statement.table.name +
                              "'. Only one identity column per table is allowed.",
                          "42000", 2744);
    }
    if (!columns.empty()) columns += ", ";
    columns += column_definition(column);
    if (column.identity) identity = column.name.name;
    if (column.primary_key) {
      ++primary_keys;
      primary_column = column.name.name;
    }
    created.columns.push_back({column.name.name, column.type, column.identity, column.not_null});
  }
  if (created.columns.empty()) {
    fail("The table '" + statement.table.name + "' has no column.", statement.table.offset, 102);
  }
  if (primary_keys == 1 && primary_column != identity) {
    columns += ", " + std::string(identity.empty() ? "PRIMARY KEY (" : "UNIQUE (") +
               quoted_name(primary_column) + ")";
  }
  for (const KeyDefinition& key : statement.keys) {
    if (key.primary) ++primary_keys;
    const std::string list = column_list(key.columns, created, false);
    // An identity column is the embedded database's own key already.
    if (!identity.empty() && list == quoted_name(identity)) continue;
    columns += ", " + std::string(key.primary && identity.empty() ? "PRIMARY KEY (" : "UNIQUE (") +
               list + ")";
    if (!key.primary) continue;
    for (const auto& [name, descending] : key.columns) {
      columns += ", CONSTRAINT " + quoted_name("key column " + name.name) + " CHECK (" +
                 quoted_name(created.columns[created.find(name.name)].name) + " IS NOT NULL)";
    }
  }
  if (primary_keys > 1) {
    throw DatabaseError(
        "Cannot add multiple PRIMARY KEY constraints to table '" + statement.table.name + "'.",
        "42000", 8110);
  }
  return {{"CREATE TABLE " + created.sql_name() + " (" + columns + ")", false}};
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
               " ON " + quoted_name(target.name) + " (" +
               column_list(statement.columns, target, true) + ")",
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
