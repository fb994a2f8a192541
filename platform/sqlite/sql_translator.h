// Turns the tree of a statement into statements of the embedded database: resolves names, finds the
// type of every expression and writes each conversion that the server would make on its own.
//
// Whatever has no exact counterpart is a DatabaseError; nothing is ever left out or guessed.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/date_time.h"
#include "platform/sqlite/sql_ast.h"
#include "platform/sqlite/sql_schema.h"

namespace kestrova::sql {

// The collation of all texts: no regard to case or trailing blanks.
inline constexpr std::string_view kTextCollation = "server_text";

// The arguments by which the embedded database's conversion functions know a type.
std::string type_arguments(const SqlType& type);

// An expression in the embedded database's SQL with its type.
struct Fragment {
  std::string sql;
  SqlType type;
  // Compares by the text collation without being told so.
  bool collated = false;
  // The text of a text literal, whose conversion is done once and not per row.
  std::optional<std::string> text_literal;
  // Whole-number arithmetic before its result is checked against the type: what longer arithmetic
  // goes on from, so that a chain is checked once.
  std::string unchecked;
  // A number literal.
  bool number_literal = false;
  // Name of the table column that it stands for, if any.
  std::string column;
  // The digits of a decimal literal that has too many of them to be stored, else "".
  std::string long_number;
};

struct OutputColumn {
  std::string name;
  SqlType type;
  std::string source_column;  // column of the one table that the rows come from, or ""
};

struct TranslatedQuery {
  std::string sql;
  std::vector<OutputColumn> columns;
  // Set when each row is one row of one table; a further column then holds its row number.
  std::optional<Table> row_table;
};

// The name, quoted, under which a query hands out the item at the position: "u0", "u1", ...
std::string item_name(std::size_t position);

// A statement in the embedded database's SQL. What it changes counts as changed rows if counted.
struct Command {
  std::string sql;
  bool counted = false;
};

class Translator {
 public:
  // identity_insert is the table whose identity column may be written, or "". Errors give positions
  // in the batch.
  Translator(Schema& schema, std::string_view batch, const DateTime& now,
             std::string identity_insert)
      : schema_(schema), batch_(batch), now_(now), identity_insert_(std::move(identity_insert)) {}

  // with_row_number asks for TranslatedQuery::row_table.
  TranslatedQuery query(const Query& query, bool with_row_number);

  std::vector<Command> select_into(const SelectStatement& statement);
  std::vector<Command> insert(const InsertStatement& statement);
  std::vector<Command> update(const UpdateStatement& statement);
  std::vector<Command> delete_(const DeleteStatement& statement);
  std::vector<Command> create_table(const CreateTableStatement& statement);
  std::vector<Command> create_index(const CreateIndexStatement& statement);
  std::vector<Command> drop_table(const DropTableStatement& statement);
  std::vector<Command> drop_index(const DropIndexStatement& statement);
  // A query with one row and column: 1 when the condition is met.
  std::string condition_query(const Expr& condition);

  // The table of this name. Raises DatabaseError 42S02.
  const Table& table(const TableName& name);

 private:
  struct SourceColumn {
    std::string name;
    std::string upper_name;
    SqlType type;
    bool of_table = false;
  };

  // What a FROM element contributes: a table or a derived table under its name.
  struct Source {
    std::string name;
    std::string upper_name;
    std::vector<SourceColumn> columns;
    const Table* table = nullptr;
  };

  enum class Phase { kRows, kGroups };

  // The names that one SELECT can use, inside those of the statement around it.
  struct Scope {
    Scope* outer = nullptr;
    std::vector<Source> sources;
    std::size_t first_visible = 0;
    Phase phase = Phase::kRows;
    bool grouped = false;
    bool in_aggregate = false;
    std::vector<std::string> group_keys;
    // Columns that are neither grouped by nor aggregated, in the expression being read.
    std::vector<std::string> ungrouped;
  };

  class ScopeGuard;

  // A SELECT whose parts are written but not yet put together.
  struct Block {
    std::unique_ptr<Scope> scope;
    bool distinct = false;
    std::optional<std::int64_t> top;
    std::vector<Fragment> items;
    std::vector<std::string> names;
    std::string tail;  // from FROM to HAVING
    bool single_row = false;
  };

  struct WrittenQuery {
    std::string sql;
    std::vector<Fragment> items;
    std::vector<std::string> names;
    bool single_row = false;  // never more than one
    const Table* row_table = nullptr;
  };

  enum class Naming { kFree, kNamed };

  // --- queries (sql_queries.cpp) ---
  WrittenQuery write_query(const Query& query, Naming naming, bool with_row_number, bool top_level);
  Block write_block(const Select& select, const std::vector<OrderItem>& order_by);
  void add_items(Block& block, const SelectItem& item);
  void check_names(const std::vector<std::string>& names, const std::string& object);
  std::string write_member(const Member& member, Block& block, Naming naming);
  std::string put_together(const Block& block, Naming naming, const std::string& extra_item);
  std::string write_order(const std::vector<OrderItem>& order_by, Block& block, bool single);
  std::string order_term(const OrderItem& item, Block& block, bool single);
  std::string write_union(const Query& query, std::vector<Block>& blocks, Naming naming);
  std::string write_from(const FromItem& item);
  std::string write_join(const FromItem& item);
  void add_source(Source source, std::size_t offset);
  static bool has_aggregate(const Expr& expr);

  // --- expressions (sql_expressions.cpp) ---
  Fragment value(const Expr& expr);
  Fragment comparand(const Expr& expr);
  void refuse_long(const Fragment& number, std::size_t offset) const;
  std::string condition(const Expr& expr);
  std::string item_condition(const Expr& expr);
  Fragment item_value(const Expr& expr);
  void check_grouped(std::size_t offset);
  Fragment value_of(const Expr& expr);
  std::string condition_of(const Expr& expr);
  Fragment literal(const Expr& expr);
  Fragment column(const Expr& expr);
  Fragment minus(const Expr& expr);
  Fragment arithmetic(const Expr& expr);
  Fragment date_arithmetic(const Expr& expr, Fragment left, Fragment right);
  Fragment case_(const Expr& expr);
  Fragment cast(const Expr& expr);
  Fragment scalar_query(const Expr& expr);
  std::vector<std::string> conditions(const Expr& chain);
  std::string like(const Expr& expr);
  std::string between(const Expr& expr);
  std::string in(const Expr& expr);
  std::string in_query(const Expr& expr);
  std::string compare(Fragment left, const std::string& op, Fragment right, std::size_t offset);
  void bring_together(Fragment& left, Fragment& right, std::size_t offset);
  Fragment convert(Fragment from, const SqlType& to, std::size_t offset);
  Fragment convert_literal(const Fragment& from, const SqlType& to, std::size_t offset);
  Fragment assign(Fragment from, const SqlType& to, std::size_t offset);
  Fragment as_text(Fragment from);
  std::string text_of_size(const Fragment& from, const SqlType& to);
  Fragment as_date(Fragment from, std::size_t offset);
  void check_style(int style, const SqlType& from, const SqlType& to, std::size_t offset) const;
  static std::string collated(const Fragment& fragment);

  // --- functions (sql_functions.cpp) ---
  friend struct FunctionTable;
  Fragment function(const Expr& expr);
  Fragment isnull(const Expr& expr);
  Fragment coalesce(const Expr& expr);
  Fragment nullif(const Expr& expr);
  Fragment trim(const Expr& expr);
  Fragment len(const Expr& expr);
  Fragment change_case(const Expr& expr);
  Fragment substring(const Expr& expr);
  Fragment left_or_right(const Expr& expr);
  Fragment replace(const Expr& expr);
  Fragment charindex(const Expr& expr);
  Fragment number_function(const Expr& expr);
  Fragment round(const Expr& expr);
  Fragment date_piece(const Expr& expr);
  Fragment dateadd(const Expr& expr);
  Fragment datediff(const Expr& expr);
  Fragment datepart(const Expr& expr);
  Fragment getdate(const Expr& expr);
  Fragment object_id(const Expr& expr);
  Fragment aggregate(const Expr& expr);
  Fragment number_argument(const Expr& expr, std::size_t index, TypeId type);
  std::string date_part_code(const Expr& expr, const SqlType& date);

  // --- statements (sql_statements.cpp) ---
  std::string values_row(const InsertStatement& statement, const std::vector<ExprPtr>& row,
                         const Table& table, const std::vector<std::size_t>& targets);
  std::vector<std::size_t> insert_targets(const InsertStatement& statement, const Table& table);
  std::size_t column_position(const Table& table, const TableName& name);
  std::string table_scope(Scope& scope, const TableName& name);
  std::string column_definition(const ColumnDefinition& column, bool not_null);
  Table described_table(const CreateTableStatement& statement);
  std::string stored_in(Fragment from, const Table& target, const Column& column,
                        std::size_t offset);

  // Throw DatabaseError with the position added.
  [[noreturn]] void fail(const std::string& message, std::size_t offset, int native_code,
                         const std::string& sqlstate = "42000") const;

  Schema& schema_;
  std::string_view batch_;
  DateTime now_;
  std::string identity_insert_;
  Scope* scope_ = nullptr;
};

}  // namespace kestrova::sql
