// The tree that the parser makes of a batch. Names and literals stand in it as they were written;
// nothing is resolved yet.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/sqlite/sql_types.h"

namespace kestrova::sql {

struct Expr;
struct Query;
using ExprPtr = std::unique_ptr<Expr>;
using QueryPtr = std::unique_ptr<Query>;

enum class ExprKind {
  // values
  kInteger,      // text: the digits
  kDecimal,      // text
  kFloat,        // text
  kText,         // text: the decoded text
  kWideText,     // text
  kBinary,       // text: the hexadecimal digits
  kNull,         //
  kColumn,       // qualifier (may be empty), text
  kMinus,        // parts: operand
  kArithmetic,   // text: one of + - * / %; parts: left, right
  kCase,         // parts: condition, result, condition, result ..., else (if has_else)
  kSimpleCase,   // parts: operand, then as kCase
  kCast,         // type, parts: operand, style literal if any
  kFunction,     // text: upper-case name; parts: arguments; distinct, star
  kScalarQuery,  // query
  // conditions
  kAnd,      // parts: two or more
  kOr,       // parts: two or more
  kNot,      // parts: operand
  kCompare,  // text: operator; parts: left, right
  kLike,     // parts: operand, pattern, escape if any; negated
  kBetween,  // parts: operand, low, high; negated
  kIn,       // parts: operand, members; negated
  kInQuery,  // parts: operand; query; negated
  kIsNull,   // parts: operand; negated
  kExists,   // query
};

struct Expr {
  ExprKind kind = ExprKind::kNull;
  std::size_t offset = 0;
  int depth = 1;
  std::string text;
  std::string qualifier;
  bool negated = false;
  bool distinct = false;
  bool star = false;
  bool has_else = false;
  SqlType type;
  std::vector<ExprPtr> parts;
  QueryPtr query;
};

// A table name with the database or schema it was qualified with left out: only one is served.
struct TableName {
  std::string name;
  std::size_t offset = 0;
};

enum class JoinKind { kInner, kLeft, kRight, kFull, kCross };

// One element of a FROM clause: a table, a derived table or a join of two elements.
struct FromItem {
  TableName table;    // table
  std::string alias;  // table, derived table
  std::size_t offset = 0;
  QueryPtr query;  // derived table
  int depth = 1;
  JoinKind join = JoinKind::kInner;
  std::unique_ptr<FromItem> left, right;  // join
  ExprPtr on;                             // join, none when crossed
};

struct SelectItem {
  ExprPtr expr;  // none: all columns
  std::string star_qualifier;
  std::string alias;
  std::size_t offset = 0;
};

struct Select {
  bool distinct = false;
  std::optional<std::int64_t> top;
  std::vector<SelectItem> items;
  std::optional<TableName> into;
  std::vector<std::unique_ptr<FromItem>> from;
  ExprPtr where;
  std::vector<ExprPtr> group_by;
  ExprPtr having;
};

// One member of a UNION: a SELECT or a query in parentheses.
struct Member {
  std::variant<Select, QueryPtr> body;
  bool all = false;  // joined to the members before it by UNION ALL
};

struct OrderItem {
  ExprPtr expr;
  bool descending = false;
};

struct Query {
  std::vector<Member> members;
  std::vector<OrderItem> order_by;
  std::size_t offset = 0;
};

struct SelectStatement {
  QueryPtr query;
  std::optional<TableName> into;  // taken from the first SELECT of the query
};

struct InsertStatement {
  TableName table;
  std::vector<TableName> columns;
  std::vector<std::vector<ExprPtr>> rows;  // an empty pointer stands for DEFAULT
  QueryPtr query;
};

struct UpdateStatement {
  TableName table;
  std::vector<std::pair<TableName, ExprPtr>> assignments;
  ExprPtr where;
};

struct DeleteStatement {
  TableName table;
  ExprPtr where;
};

struct ColumnDefinition {
  TableName name;
  SqlType type;
  bool identity = false;
  bool not_null = false;
  bool primary_key = false;
  bool unique = false;
  ExprPtr default_value;
};

struct KeyDefinition {
  bool primary = false;
  std::vector<std::pair<TableName, bool>> columns;  // the flag: descending
};

struct CreateTableStatement {
  TableName table;
  std::vector<ColumnDefinition> columns;
  std::vector<KeyDefinition> keys;
};

struct CreateIndexStatement {
  TableName index;
  TableName table;
  bool unique = false;
  std::vector<std::pair<TableName, bool>> columns;
};

struct DropTableStatement {
  std::vector<TableName> tables;
  bool if_exists = false;
};

struct DropIndexStatement {
  TableName index;
  TableName table;
};

struct IdentityInsertStatement {
  TableName table;
  bool on = false;
};

enum class TransactionVerb { kBegin, kCommit, kRollback };

struct TransactionStatement {
  TransactionVerb verb = TransactionVerb::kBegin;
};

// A setting that only changes how a server talks: SET NOCOUNT ON.
struct SettingStatement {};

struct Statement;

struct BlockStatement {
  std::vector<Statement> statements;
};

struct IfStatement {
  ExprPtr condition;
  std::unique_ptr<Statement> then_branch, else_branch;
};

struct Statement {
  std::string_view text;  // in the batch
  std::variant<SelectStatement, InsertStatement, UpdateStatement, DeleteStatement,
               CreateTableStatement, CreateIndexStatement, DropTableStatement, DropIndexStatement,
               IdentityInsertStatement, TransactionStatement, SettingStatement, BlockStatement,
               IfStatement>
      body;
};

}  // namespace kestrova::sql
