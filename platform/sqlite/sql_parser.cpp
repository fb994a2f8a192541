#include "platform/sqlite/sql_parser.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "platform/error.h"
#include "platform/sqlite/sql_lexer.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

// Words that name nothing unless they stand in brackets.
// clang-format off
constexpr std::array<std::string_view, 180> kReserved = {
    "ADD", "ALL", "ALTER", "AND", "ANY", "AS", "ASC", "AUTHORIZATION", "BACKUP", "BEGIN", "BETWEEN",
    "BREAK", "BROWSE", "BULK", "BY", "CASCADE", "CASE", "CHECK", "CHECKPOINT", "CLOSE", "CLUSTERED",
    "COALESCE", "COLLATE", "COLUMN", "COMMIT", "COMPUTE", "CONSTRAINT", "CONTAINS", "CONTAINSTABLE",
    "CONTINUE", "CONVERT", "CREATE", "CROSS", "CURRENT", "CURRENT_DATE", "CURRENT_TIME",
    "CURRENT_TIMESTAMP", "CURRENT_USER", "CURSOR", "DATABASE", "DBCC", "DEALLOCATE", "DECLARE",
    "DEFAULT", "DELETE", "DENY", "DESC", "DISK", "DISTINCT", "DISTRIBUTED", "DOUBLE", "DROP", "DUMP",
    "ELSE", "END", "ERRLVL", "ESCAPE", "EXCEPT", "EXEC", "EXECUTE", "EXISTS", "EXIT", "EXTERNAL",
    "FETCH", "FILE", "FILLFACTOR", "FOR", "FOREIGN", "FREETEXT", "FREETEXTTABLE", "FROM", "FULL",
    "FUNCTION", "GOTO", "GRANT", "GROUP", "HAVING", "HOLDLOCK", "IDENTITY", "IDENTITYCOL",
    "IDENTITY_INSERT", "IF", "IN", "INDEX", "INNER", "INSERT", "INTERSECT", "INTO", "IS", "JOIN", "KEY",
    "KILL", "LEFT", "LIKE", "LINENO", "LOAD", "MERGE", "NATIONAL", "NOCHECK", "NONCLUSTERED", "NOT",
    "NULL", "NULLIF", "OF", "OFF", "OFFSETS", "ON", "OPEN", "OPENDATASOURCE", "OPENQUERY", "OPENROWSET",
    "OPENXML", "OPTION", "OR", "ORDER", "OUTER", "OVER", "PERCENT", "PIVOT", "PLAN", "PRECISION",
    "PRIMARY", "PRINT", "PROC", "PROCEDURE", "PUBLIC", "RAISERROR", "READ", "READTEXT", "RECONFIGURE",
    "REFERENCES", "REPLICATION", "RESTORE", "RESTRICT", "RETURN", "REVERT", "REVOKE", "RIGHT",
    "ROLLBACK", "ROWCOUNT", "ROWGUIDCOL", "RULE", "SAVE", "SCHEMA", "SECURITYAUDIT", "SELECT",
    "SESSION_USER", "SET", "SETUSER", "SHUTDOWN", "SOME", "STATISTICS", "SYSTEM_USER", "TABLE",
    "TABLESAMPLE", "TEXTSIZE", "THEN", "TO", "TOP", "TRAN", "TRANSACTION", "TRIGGER", "TRUNCATE",
    "TSEQUAL", "UNION", "UNIQUE", "UNPIVOT", "UPDATE", "UPDATETEXT", "USE", "USER", "VALUES", "VARYING",
    "VIEW", "WAITFOR", "WHEN", "WHERE", "WHILE", "WITH", "WRITETEXT",
};
// clang-format on
static_assert(std::is_sorted(kReserved.begin(), kReserved.end()));

// Reserved words that are called like functions.
constexpr std::array<std::string_view, 4> kReservedFunctions = {"COALESCE", "LEFT", "NULLIF",
                                                                "RIGHT"};
constexpr std::array<std::string_view, 8> kComparisons = {"=",  "<>", "!=", "<",
                                                          "<=", ">",  ">=", "!<"};

bool is_reserved(const Token& token) {
  return token.kind == TokenKind::kWord &&
         std::binary_search(kReserved.begin(), kReserved.end(), text::upper(token.text));
}

class Parser {
 public:
  explicit Parser(std::string_view batch) : batch_(batch), tokens_(tokenize(batch)) {}

  std::vector<Statement> run() {
    std::vector<Statement> statements;
    for (;;) {
      while (accept(";") || accept_kind(TokenKind::kBatchEnd)) {
      }
      if (peek().kind == TokenKind::kEnd) return statements;
      statements.push_back(statement());
    }
  }

 private:
  // Counts the levels of recursion, so that no input overflows the stack.
  class Nested {
   public:
    explicit Nested(Parser& parser) : parser_(parser) {
      if (++parser_.nesting_ > kMaxNesting) {
        --parser_.nesting_;
        throw_syntax_error(
            "The statement is nested more than " + std::to_string(kMaxNesting) + " levels deep",
            parser_.batch_, parser_.peek().offset, 191);
      }
    }
    ~Nested() { --parser_.nesting_; }
    Nested(const Nested&) = delete;
    Nested& operator=(const Nested&) = delete;

   private:
    Parser& parser_;
  };

  // --- tokens ---

  const Token& peek(std::size_t ahead = 0) const {
    return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
  }
  const Token& take() {
    const Token& token = peek();
    if (at_ + 1 < tokens_.size()) ++at_;
    return token;
  }
  bool accept(std::string_view word) {
    if (!peek().is(word)) return false;
    take();
    return true;
  }
  bool accept_kind(TokenKind kind) {
    if (peek().kind != kind) return false;
    take();
    return true;
  }
  void expect(std::string_view word) {
    if (!accept(word)) fail_expecting(std::string(word));
  }

  [[noreturn]] void fail_expecting(const std::string& what) {
    throw_syntax_error(near() + ", expected " + what, batch_, peek().offset);
  }
  [[noreturn]] void fail() { throw_syntax_error(near(), batch_, peek().offset); }
  [[noreturn]] void fail_unsupported(const std::string& construct, std::size_t offset) {
    throw_syntax_error(construct + " is not supported", batch_, offset);
  }
  std::string near() const {
    if (peek().kind == TokenKind::kEnd) return "Incorrect syntax near the end";
    return "Incorrect syntax near '" + std::string(text::left(peek().text, 60)) + "'";
  }

  bool at_name() const {
    return peek().kind == TokenKind::kQuotedName ||
           (peek().kind == TokenKind::kWord && !is_reserved(peek()));
  }
  TableName name() {
    if (!at_name()) fail_expecting("a name");
    const Token& token = take();
    return {token.kind == TokenKind::kQuotedName ? unquoted(token) : std::string(token.text),
            token.offset};
  }
  std::int64_t integer() {
    if (peek().kind != TokenKind::kInteger) fail_expecting("a whole number");
    const auto number = parse_integer(peek().text);
    if (!number) fail();
    take();
    return *number;
  }

  // "T", "dbo.T", "tempdb..#T", "DB.dbo.T": one database and one schema are served.
  TableName table_name() {
    TableName result = name();
    while (accept(".")) {
      while (accept(".")) {
      }
      result = name();
    }
    return result;
  }

  // --- statements ---

  Statement statement() {
    const Nested nested(*this);
    const std::size_t begin = peek().offset;
    Statement result;
    result.body = statement_body();
    const Token& last = tokens_[at_ - 1];
    const std::size_t end = at_ + 1 == tokens_.size() && peek().kind != TokenKind::kEnd
                                ? batch_.size()
                                : last.offset + last.text.size();
    result.text = batch_.substr(begin, end - begin);
    return result;
  }

  decltype(Statement::body) statement_body() {
    if (peek().is("SELECT") || peek().is("(")) return select_statement();
    if (peek().is("INSERT")) return insert();
    if (peek().is("UPDATE")) return update();
    if (peek().is("DELETE")) return delete_();
    if (peek().is("TRUNCATE")) return truncate();
    if (peek().is("CREATE")) return create();
    if (peek().is("DROP")) return drop();
    if (peek().is("IF")) return if_();
    if (peek().is("SET")) return set();
    if (peek().is("BEGIN") || peek().is("COMMIT") || peek().is("ROLLBACK")) return begin_or_end();
    if (is_reserved(peek())) fail_unsupported("'" + text::upper(peek().text) + "'", peek().offset);
    fail();
  }

  SelectStatement select_statement() {
    SelectStatement result{query(), std::nullopt};
    if (auto* first = std::get_if<Select>(&result.query->members[0].body)) {
      std::swap(result.into, first->into);
    }
    return result;
  }

  InsertStatement insert() {
    expect("INSERT");
    accept("INTO");
    InsertStatement result;
    result.table = table_name();
    if (peek().is("(") && !peek(1).is("SELECT") && !peek(1).is("(")) {
      take();
      do {
        result.columns.push_back(name());
      } while (accept(","));
      expect(")");
    }
    if (accept("VALUES")) {
      do {
        result.rows.push_back(value_row());
      } while (accept(","));
    } else if (peek().is("SELECT") || peek().is("(")) {
      result.query = query();
    } else {
      fail_expecting("VALUES or SELECT");
    }
    return result;
  }

  std::vector<ExprPtr> value_row() {
    std::vector<ExprPtr> row;
    expect("(");
    do {
      row.push_back(accept("DEFAULT") ? nullptr : additive());
    } while (accept(","));
    expect(")");
    return row;
  }

  UpdateStatement update() {
    expect("UPDATE");
    UpdateStatement result;
    result.table = table_name();
    expect("SET");
    do {
      TableName column = name();
      if (accept(".")) column = name();
      expect("=");
      result.assignments.emplace_back(std::move(column), accept("DEFAULT") ? nullptr : additive());
    } while (accept(","));
    if (peek().is("FROM")) fail_unsupported("UPDATE with FROM", peek().offset);
    if (accept("WHERE")) result.where = condition();
    return result;
  }

  DeleteStatement delete_() {
    expect("DELETE");
    accept("FROM");
    DeleteStatement result;
    result.table = table_name();
    if (peek().is("FROM")) fail_unsupported("DELETE with a second FROM", peek().offset);
    if (accept("WHERE")) result.where = condition();
    return result;
  }

  DeleteStatement truncate() {
    expect("TRUNCATE");
    expect("TABLE");
    return {table_name(), nullptr};
  }

  decltype(Statement::body) create() {
    expect("CREATE");
    if (accept("TABLE")) return create_table();
    CreateIndexStatement result;
    result.unique = accept("UNIQUE");
    if (!accept("CLUSTERED")) accept("NONCLUSTERED");
    if (!peek().is("INDEX")) {
      fail_unsupported("CREATE " + text::upper(peek().text), peek().offset);
    }
    take();
    result.index = name();
    expect("ON");
    result.table = table_name();
    result.columns = key_columns();
    file_group();
    return result;
  }

  // "ON [PRIMARY]": where the server keeps the data.
  void file_group() {
    if (!peek().is("ON")) return;
    take();
    name();
  }

  std::vector<std::pair<TableName, bool>> key_columns() {
    std::vector<std::pair<TableName, bool>> columns;
    expect("(");
    do {
      TableName column = name();
      const bool descending = accept("DESC");
      if (!descending) accept("ASC");
      columns.emplace_back(std::move(column), descending);
    } while (accept(","));
    expect(")");
    return columns;
  }

  CreateTableStatement create_table() {
    CreateTableStatement result;
    result.table = table_name();
    expect("(");
    do {
      if (peek().is(")")) break;  // a comma behind the last column is allowed
      if (at_key()) {
        result.keys.push_back(key());
      } else {
        result.columns.push_back(column());
      }
    } while (accept(","));
    expect(")");
    file_group();
    return result;
  }

  bool at_key() const {
    return peek().is("CONSTRAINT") || peek().is("PRIMARY") || peek().is("UNIQUE");
  }

  KeyDefinition key() {
    if (accept("CONSTRAINT")) name();
    KeyDefinition result;
    result.primary = accept("PRIMARY");
    if (result.primary) {
      expect("KEY");
    } else {
      if (!peek().is("UNIQUE")) {
        fail_unsupported("The table constraint " + text::upper(peek().text), peek().offset);
      }
      take();
    }
    if (!accept("CLUSTERED")) accept("NONCLUSTERED");
    result.columns = key_columns();
    file_group();
    return result;
  }

  ColumnDefinition column() {
    ColumnDefinition result;
    result.name = name();
    result.type = type();
    for (;;) {
      if (accept("CONSTRAINT")) name();
      if (accept("IDENTITY")) {
        result.identity = true;
        if (accept("(")) {
          if (integer() != 1) fail_unsupported("IDENTITY with another start than 1", peek().offset);
          expect(",");
          if (integer() != 1) fail_unsupported("IDENTITY with another step than 1", peek().offset);
          expect(")");
        }
      } else if (accept("NOT")) {
        expect("NULL");
        result.not_null = true;
      } else if (accept("NULL")) {
      } else if (accept("DEFAULT")) {
        result.default_value = additive();
      } else if (accept("PRIMARY")) {
        expect("KEY");
        if (!accept("CLUSTERED")) accept("NONCLUSTERED");
        result.primary_key = true;
      } else if (accept("UNIQUE")) {
        result.unique = true;
      } else if (peek().is(",") || peek().is(")")) {
        return result;
      } else if (is_reserved(peek())) {
        fail_unsupported("The column property " + text::upper(peek().text), peek().offset);
      } else {
        fail();
      }
    }
  }

  SqlType type() {
    const Token token = peek();
    const TableName named = name();
    std::string declaration = named.name;
    if (accept("(")) {
      declaration += "(";
      if (accept("MAX")) {
        declaration += "max";
      } else {
        declaration += std::to_string(integer());
        if (accept(",")) declaration += "," + std::to_string(integer());
      }
      declaration += ")";
      expect(")");
    }
    const auto result = parse_declaration(declaration);
    if (!result) {
      throw_syntax_error("Cannot find data type '" + named.name + "'", batch_, token.offset, 2715);
    }
    const bool sized = result->is_text() || result->type_class() == TypeClass::kBinary;
    if (result->is_decimal() &&
        (result->size < 1 || result->size > kMaxPrecision || result->scale > result->size)) {
      throw_syntax_error("Invalid precision of data type '" + declaration + "'", batch_,
                         token.offset, 1002);
    }
    if (sized && (result->size < 0 || result->size > 8000)) {
      throw_syntax_error("Invalid size of data type '" + declaration + "'", batch_, token.offset,
                         131);
    }
    return *result;
  }

  decltype(Statement::body) drop() {
    expect("DROP");
    if (accept("INDEX")) {
      DropIndexStatement result;
      result.index = name();
      if (accept(".")) {
        result.table = result.index;
        result.index = name();
      } else {
        expect("ON");
        result.table = table_name();
      }
      return result;
    }
    if (!peek().is("TABLE")) fail_unsupported("DROP " + text::upper(peek().text), peek().offset);
    take();
    DropTableStatement result;
    if (accept("IF")) {
      expect("EXISTS");
      result.if_exists = true;
    }
    do {
      result.tables.push_back(table_name());
    } while (accept(","));
    return result;
  }

  IfStatement if_() {
    expect("IF");
    IfStatement result;
    result.condition = condition();
    result.then_branch = std::make_unique<Statement>(statement());
    if (peek().is(";") && peek(1).is("ELSE")) take();
    if (accept("ELSE")) result.else_branch = std::make_unique<Statement>(statement());
    return result;
  }

  decltype(Statement::body) set() {
    const std::size_t begin = take().offset;
    if (accept("IDENTITY_INSERT")) {
      IdentityInsertStatement result;
      result.table = table_name();
      result.on = accept("ON");
      if (!result.on) expect("OFF");
      return result;
    }
    const Token setting = take();
    if (setting.is("NOCOUNT") || setting.is("ANSI_NULLS") || setting.is("QUOTED_IDENTIFIER")) {
      // The embedded database always behaves as with ANSI_NULLS and QUOTED_IDENTIFIER switched on.
      if (!accept("ON")) {
        if (!setting.is("NOCOUNT")) fail_expecting("ON");
        expect("OFF");
      }
      return SettingStatement{};
    }
    fail_unsupported("SET " + text::upper(setting.text), begin);
  }

  decltype(Statement::body) begin_or_end() {
    const Token verb = take();
    if (accept("TRANSACTION") || accept("TRAN") || !verb.is("BEGIN")) {
      return TransactionStatement{verb.is("BEGIN")    ? TransactionVerb::kBegin
                                  : verb.is("COMMIT") ? TransactionVerb::kCommit
                                                      : TransactionVerb::kRollback};
    }
    BlockStatement result;
    while (!accept("END")) {
      while (accept(";")) {
      }
      if (peek().is("END")) continue;
      result.statements.push_back(statement());
    }
    return result;
  }

  // --- queries ---

  QueryPtr query() {
    const Nested nested(*this);
    auto result = std::make_unique<Query>();
    result->offset = peek().offset;
    result->members.push_back(member());
    for (;;) {
      if (peek().is("EXCEPT") || peek().is("INTERSECT")) {
        fail_unsupported(text::upper(peek().text), peek().offset);
      }
      if (!accept("UNION")) break;
      const bool all = accept("ALL");
      result->members.push_back(member());
      result->members.back().all = all;
    }
    if (accept("ORDER")) {
      expect("BY");
      do {
        OrderItem item;
        item.expr = additive();
        item.descending = accept("DESC");
        if (!item.descending) accept("ASC");
        result->order_by.push_back(std::move(item));
      } while (accept(","));
    }
    if (peek().is("OPTION") || peek().is("FOR")) {
      fail_unsupported(text::upper(peek().text), peek().offset);
    }
    return result;
  }

  Member member() {
    Member result;
    if (accept("(")) {
      result.body = query();
      expect(")");
    } else {
      result.body = select();
    }
    return result;
  }

  Select select() {
    expect("SELECT");
    Select result;
    result.distinct = accept("DISTINCT");
    if (!result.distinct) accept("ALL");
    if (accept("TOP")) {
      const bool in_parentheses = accept("(");
      result.top = integer();
      if (in_parentheses) expect(")");
      if (peek().is("PERCENT")) fail_unsupported("TOP ... PERCENT", peek().offset);
      if (peek().is("WITH")) fail_unsupported("TOP ... WITH TIES", peek().offset);
    }
    do {
      result.items.push_back(select_item());
    } while (accept(","));
    if (accept("INTO")) result.into = table_name();
    if (accept("FROM")) {
      do {
        result.from.push_back(from_item());
      } while (accept(","));
    }
    if (accept("WHERE")) result.where = condition();
    if (accept("GROUP")) {
      expect("BY");
      do {
        result.group_by.push_back(additive());
      } while (accept(","));
    }
    if (accept("HAVING")) result.having = condition();
    return result;
  }

  SelectItem select_item() {
    SelectItem result;
    result.offset = peek().offset;
    if (accept("*")) return result;
    if (at_name() && peek(1).is(".") && peek(2).is("*")) {
      result.star_qualifier = name().name;
      take();
      take();
      return result;
    }
    result.expr = additive();
    if (accept("AS")) {
      result.alias = alias();
    } else if (at_name()) {
      result.alias = name().name;
    }
    return result;
  }

  // An alias may also be written as a text.
  std::string alias() {
    if (peek().kind == TokenKind::kText && peek().text.size() > 2) return unquoted(take());
    return name().name;
  }

  std::unique_ptr<FromItem> from_item() {
    const Nested nested(*this);
    auto result = from_primary();
    while (at_join()) result = join(std::move(result));
    return result;
  }

  bool at_join() const {
    return peek().is("JOIN") || peek().is("INNER") || peek().is("LEFT") || peek().is("RIGHT") ||
           peek().is("FULL") || peek().is("CROSS");
  }

  std::unique_ptr<FromItem> join(std::unique_ptr<FromItem> left) {
    const Nested nested(*this);
    auto result = std::make_unique<FromItem>();
    result->offset = peek().offset;
    result->join = join_kind();
    result->left = std::move(left);
    result->right = from_primary();
    // "A JOIN B JOIN C ON ... ON ...": the inner pair comes first.
    while (result->join != JoinKind::kCross && at_join()) {
      result->right = join(std::move(result->right));
    }
    result->depth = std::max(result->left->depth, result->right->depth) + 1;
    if (result->depth > kMaxJoined) {
      throw_syntax_error("More than " + std::to_string(kMaxJoined) + " tables are joined", batch_,
                         result->offset, 106);
    }
    if (result->join == JoinKind::kCross) return result;
    expect("ON");
    result->on = condition();
    return result;
  }

  JoinKind join_kind() {
    if (accept("CROSS")) {
      if (peek().is("APPLY")) fail_unsupported("CROSS APPLY", peek().offset);
      expect("JOIN");
      return JoinKind::kCross;
    }
    JoinKind kind = JoinKind::kInner;
    if (accept("LEFT")) {
      kind = JoinKind::kLeft;
    } else if (accept("RIGHT")) {
      kind = JoinKind::kRight;
    } else if (accept("FULL")) {
      kind = JoinKind::kFull;
    } else {
      accept("INNER");
    }
    if (kind != JoinKind::kInner) accept("OUTER");
    expect("JOIN");
    return kind;
  }

  std::unique_ptr<FromItem> from_primary() {
    auto result = std::make_unique<FromItem>();
    result->offset = peek().offset;
    if (peek().is("(")) {
      if (!opens_query()) {
        take();
        result = from_item();
        expect(")");
        return result;
      }
      take();
      result->query = query();
      expect(")");
      accept("AS");
      result->alias = name().name;
      if (peek().is("(")) fail_unsupported("A column list of a derived table", peek().offset);
      return result;
    }
    result->table = table_name();
    if (peek().is("(")) fail_unsupported("A table function", peek().offset);
    if (accept("AS") || at_name()) result->alias = name().name;
    if (accept("WITH")) table_hints();
    return result;
  }

  // "WITH (NOLOCK)" asks a server to read without locks; there are none here.
  void table_hints() {
    expect("(");
    do {
      if (!peek().is("NOLOCK") && !peek().is("READUNCOMMITTED")) {
        fail_unsupported("The table hint " + text::upper(peek().text), peek().offset);
      }
      take();
    } while (accept(","));
    expect(")");
  }

  // Whether the parentheses that open here hold a query: "((SELECT ...) UNION ...)" does,
  // "((SELECT ...) + 1)" and "((SELECT ...) A JOIN ...)" do not.
  bool opens_query() const {
    std::size_t ahead = 0;
    while (peek(ahead).is("(")) ++ahead;
    if (ahead == 0 || !peek(ahead).is("SELECT")) return false;
    if (ahead > kMaxNesting) return false;
    // Behind each closing parenthesis but the last the query must go on or close.
    for (std::size_t open = ahead, lowest = ahead; lowest > 1; ++ahead) {
      if (peek(ahead).kind == TokenKind::kEnd) return true;
      if (peek(ahead).is("(")) ++open;
      if (peek(ahead).is(")") && --open < lowest) {
        lowest = open;
        const Token& next = peek(ahead + 1);
        if (!next.is(")") && !next.is("UNION") && !next.is("ORDER")) return false;
      }
    }
    return true;
  }

  // --- expressions ---

  ExprPtr make(ExprKind kind, std::size_t offset, std::string written = {}) {
    auto expr = std::make_unique<Expr>();
    expr->kind = kind;
    expr->offset = offset;
    expr->text = std::move(written);
    return expr;
  }

  void add_part(Expr& expr, ExprPtr part) {
    expr.depth = std::max(expr.depth, part->depth + 1);
    if (expr.depth > kMaxDepth) {
      throw_syntax_error("The expression has more than " + std::to_string(kMaxDepth) + " levels",
                         batch_, expr.offset, 8631);
    }
    expr.parts.push_back(std::move(part));
  }

  template <class... Parts>
  ExprPtr make_with(ExprKind kind, std::size_t offset, std::string written, Parts... parts) {
    ExprPtr expr = make(kind, offset, std::move(written));
    (add_part(*expr, std::move(parts)), ...);
    return expr;
  }

  // A chain of ORs, whose members are chains of ANDs. Any number of members is one level.
  ExprPtr condition() {
    const Nested nested(*this);
    return or_chain();
  }

  ExprPtr or_chain() {
    ExprPtr first = and_chain();
    if (!peek().is("OR")) return first;
    ExprPtr result = make(ExprKind::kOr, first->offset);
    add_part(*result, std::move(first));
    while (accept("OR")) add_part(*result, and_chain());
    return result;
  }

  ExprPtr and_chain() {
    ExprPtr first = negation();
    if (!peek().is("AND")) return first;
    ExprPtr result = make(ExprKind::kAnd, first->offset);
    add_part(*result, std::move(first));
    while (accept("AND")) add_part(*result, negation());
    return result;
  }

  ExprPtr negation() {
    if (!peek().is("NOT")) return predicate();
    const Nested nested(*this);
    const std::size_t offset = take().offset;
    return make_with(ExprKind::kNot, offset, {}, negation());
  }

  ExprPtr predicate() {
    if (peek().is("EXISTS")) {
      ExprPtr result = make(ExprKind::kExists, take().offset);
      result->query = query_in_parentheses();
      return result;
    }
    ExprPtr left = additive();
    const Token token = peek();
    if (token.is("!>") || token.is("!<") ||
        std::any_of(kComparisons.begin(), kComparisons.end(),
                    [&](std::string_view op) { return token.is(op); })) {
      take();
      if (peek().is("ALL") || peek().is("ANY") || peek().is("SOME")) {
        fail_unsupported(text::upper(peek().text), peek().offset);
      }
      std::string op(token.text);
      if (op == "!=") op = "<>";
      if (op == "!<") op = ">=";
      if (op == "!>") op = "<=";
      return make_with(ExprKind::kCompare, token.offset, op, std::move(left), additive());
    }
    if (accept("IS")) {
      ExprPtr result = make_with(ExprKind::kIsNull, token.offset, {}, std::move(left));
      result->negated = accept("NOT");
      expect("NULL");
      return result;
    }
    const bool negated = accept("NOT");
    if (accept("LIKE")) {
      ExprPtr result = make_with(ExprKind::kLike, token.offset, {}, std::move(left), additive());
      result->negated = negated;
      if (accept("ESCAPE")) add_part(*result, additive());
      return result;
    }
    if (accept("BETWEEN")) {
      ExprPtr result = make_with(ExprKind::kBetween, token.offset, {}, std::move(left), additive());
      result->negated = negated;
      expect("AND");
      add_part(*result, additive());
      return result;
    }
    if (accept("IN")) return in(std::move(left), token.offset, negated);
    if (negated) fail_expecting("LIKE, BETWEEN or IN");
    return left;
  }

  ExprPtr in(ExprPtr left, std::size_t offset, bool negated) {
    ExprPtr result;
    if (peek().is("(") && opens_query()) {
      result = make_with(ExprKind::kInQuery, offset, {}, std::move(left));
      result->query = query_in_parentheses();
    } else {
      result = make_with(ExprKind::kIn, offset, {}, std::move(left));
      expect("(");
      do {
        add_part(*result, additive());
      } while (accept(","));
      expect(")");
    }
    result->negated = negated;
    return result;
  }

  QueryPtr query_in_parentheses() {
    expect("(");
    QueryPtr result = query();
    expect(")");
    return result;
  }

  ExprPtr additive() {
    const Nested nested(*this);
    ExprPtr left = multiplicative();
    while (peek().is("+") || peek().is("-")) {
      const Token op = take();
      left = make_with(ExprKind::kArithmetic, op.offset, std::string(op.text), std::move(left),
                       multiplicative());
    }
    if (peek().is("&") || peek().is("|") || peek().is("^")) {
      fail_unsupported("The operator " + std::string(peek().text), peek().offset);
    }
    return left;
  }

  ExprPtr multiplicative() {
    ExprPtr left = signed_primary();
    while (peek().is("*") || peek().is("/") || peek().is("%")) {
      const Token op = take();
      left = make_with(ExprKind::kArithmetic, op.offset, std::string(op.text), std::move(left),
                       signed_primary());
    }
    return left;
  }

  ExprPtr signed_primary() {
    if (accept("+")) {
      const Nested nested(*this);
      return signed_primary();
    }
    if (!peek().is("-")) return primary();
    const Nested nested(*this);
    const std::size_t offset = take().offset;
    return make_with(ExprKind::kMinus, offset, {}, signed_primary());
  }

  ExprPtr primary() {
    const Token token = peek();
    switch (token.kind) {
      case TokenKind::kInteger:
        return literal(ExprKind::kInteger);
      case TokenKind::kDecimal:
        return literal(ExprKind::kDecimal);
      case TokenKind::kFloat:
        return literal(ExprKind::kFloat);
      case TokenKind::kText:
        take();
        return make(ExprKind::kText, token.offset, unquoted(token));
      case TokenKind::kWideText:
        take();
        return make(ExprKind::kWideText, token.offset, unquoted(token));
      case TokenKind::kBinary:
        take();
        return make(ExprKind::kBinary, token.offset, std::string(token.text.substr(2)));
      default:
        break;
    }
    if (accept("NULL")) return make(ExprKind::kNull, token.offset);
    if (peek().is("(")) return parenthesised();
    if (peek().is("CASE")) return case_();
    if (token.is("CAST") && peek(1).is("(")) return cast();
    if (token.is("CONVERT") && peek(1).is("(")) return convert();
    const bool reserved_function =
        std::any_of(kReservedFunctions.begin(), kReservedFunctions.end(),
                    [&](std::string_view function) { return token.is(function); });
    if (peek(1).is("(") && (reserved_function || token.kind == TokenKind::kWord) &&
        (reserved_function || !is_reserved(token))) {
      return function();
    }
    if (token.is("CURRENT_TIMESTAMP")) {
      take();
      return make(ExprKind::kFunction, token.offset, "GETDATE");
    }
    if (!at_name()) fail();
    return column_reference();
  }

  ExprPtr literal(ExprKind kind) {
    const Token& token = take();
    return make(kind, token.offset, std::string(token.text));
  }

  ExprPtr parenthesised() {
    if (opens_query()) {
      ExprPtr result = make(ExprKind::kScalarQuery, peek().offset);
      result->query = query_in_parentheses();
      return result;
    }
    take();
    ExprPtr result = condition();
    expect(")");
    return result;
  }

  ExprPtr case_() {
    const std::size_t offset = take().offset;
    ExprPtr result = make(ExprKind::kCase, offset);
    const bool simple = !peek().is("WHEN");
    if (simple) {
      result->kind = ExprKind::kSimpleCase;
      add_part(*result, additive());
    }
    do {
      expect("WHEN");
      add_part(*result, simple ? additive() : condition());
      expect("THEN");
      add_part(*result, additive());
    } while (peek().is("WHEN"));
    if (accept("ELSE")) {
      result->has_else = true;
      add_part(*result, additive());
    }
    expect("END");
    return result;
  }

  ExprPtr cast() {
    const std::size_t offset = take().offset;
    expect("(");
    ExprPtr result = make_with(ExprKind::kCast, offset, "CAST", additive());
    expect("AS");
    result->type = cast_type();
    expect(")");
    return result;
  }

  ExprPtr convert() {
    ExprPtr result = make(ExprKind::kCast, take().offset, "CONVERT");
    expect("(");
    result->type = cast_type();
    expect(",");
    add_part(*result, additive());
    if (accept(",")) add_part(*result, additive());
    expect(")");
    return result;
  }

  // Without a size a text or binary type means 30 here and not 1 as in a column.
  SqlType cast_type() {
    SqlType result = type();
    const bool sized = tokens_[at_ - 1].is(")");
    if (!sized && result.size == 1) result.size = 30;
    return result;
  }

  ExprPtr function() {
    const Token token = take();
    ExprPtr result = make(ExprKind::kFunction, token.offset, text::upper(token.text));
    expect("(");
    if (accept("*")) {
      result->star = true;
    } else if (!peek().is(")")) {
      result->distinct = accept("DISTINCT");
      do {
        add_part(*result, additive());
      } while (accept(","));
    }
    expect(")");
    if (peek().is("OVER")) fail_unsupported("OVER", peek().offset);
    return result;
  }

  ExprPtr column_reference() {
    TableName column = name();
    const std::size_t offset = column.offset;
    std::string qualifier;
    while (accept(".")) {
      while (accept(".")) {
      }
      qualifier = std::move(column.name);
      column = name();
    }
    ExprPtr result = make(ExprKind::kColumn, offset, std::move(column.name));
    result->qualifier = std::move(qualifier);
    return result;
  }

  std::string_view batch_;
  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  int nesting_ = 0;
};

}  // namespace

std::vector<Statement> parse_batch(std::string_view batch) { return Parser(batch).run(); }

}  // namespace kestrova::sql
