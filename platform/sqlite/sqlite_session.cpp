#include "platform/sqlite/sqlite_session.h"

#include <algorithm>
#include <thread>

#include "platform/error.h"
#include "platform/sqlite/sql_convert.h"
#include "platform/sqlite/sql_parser.h"
#include "platform/sqlite/sqlite_error.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

template <class... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

// Optimisations of the embedded database, as its test control for them numbers them.
// A Bloom filter looks at the bytes of texts, and so loses rows whose texts are equal only by the
// collation.
constexpr int kBloomFilter = 0x00080000;
// Constants are taken out of the rows' loop, each after a comparison with all before it: in a
// statement of ten thousands of them that takes minutes.
constexpr int kConstantsOnce = 0x00000008;
constexpr std::size_t kManyConstants = 100'000;  // in characters of the statement

// How long a lock of another program is waited for.
constexpr std::chrono::milliseconds kMostWait{5'000};

bool is_temporary(const TableName& table) { return table.name.starts_with('#'); }

// Whether a statement changes the file, and not only the connection's own tables.
bool writes_file(const Statement& statement) {
  return std::visit(Overloaded{
                        [](const SelectStatement& s) { return s.into && !is_temporary(*s.into); },
                        [](const InsertStatement& s) { return !is_temporary(s.table); },
                        [](const UpdateStatement& s) { return !is_temporary(s.table); },
                        [](const DeleteStatement& s) { return !is_temporary(s.table); },
                        [](const CreateTableStatement& s) { return !is_temporary(s.table); },
                        [](const CreateIndexStatement& s) { return !is_temporary(s.table); },
                        [](const DropTableStatement& s) {
                          return !std::all_of(s.tables.begin(), s.tables.end(), is_temporary);
                        },
                        [](const DropIndexStatement& s) { return !is_temporary(s.table); },
                        [](const IdentityInsertStatement&) { return false; },
                        [](const TransactionStatement&) { return false; },
                        [](const SettingStatement&) { return false; },
                        [](const BlockStatement& s) {
                          return std::any_of(s.statements.begin(), s.statements.end(), writes_file);
                        },
                        [](const IfStatement& s) {
                          return writes_file(*s.then_branch) ||
                                 (s.else_branch && writes_file(*s.else_branch));
                        },
                    },
                    statement.body);
}

// How the embedded database's refusals are told.
DatabaseError constraint_error(const std::string& message) {
  const std::string detail = message.substr(message.find(": ") + 2);
  if (message.starts_with("NOT NULL")) return missing_value(detail);
  if (detail.starts_with("length of ")) {
    return DatabaseError(
        "String or binary data would be truncated in column '" + detail.substr(10) + "'.", "22001",
        8152);
  }
  return DatabaseError("Cannot insert a duplicate key: " + detail + " must be unique.", "23000",
                       2627);
}

std::string shortened(std::string_view sql) {
  constexpr std::size_t kShown = 300;
  if (text::length(sql) <= kShown) return std::string(sql);
  return std::string(text::left(sql, kShown)) + " ...";
}

// How errors name a statement.
std::string statement_name(std::size_t index, const Statement& statement) {
  return "statement " + std::to_string(index + 1) + ": " + shortened(statement.text);
}

// Runs a part of a statement's work; an error gets the statement's name.
template <class Function>
auto naming(const std::string& name, Function function) {
  try {
    return function();
  } catch (const DatabaseError& error) {
    throw in_statement(error, name);
  }
}

}  // namespace

DatabaseError in_statement(const DatabaseError& error, const std::string& name) {
  return DatabaseError(std::string(error.what()) + " [" + name + "]", error.sqlstate(),
                       error.native_code());
}

Session::Session(const std::string& file, int flags, std::function<DateTime()> clock)
    : schema_(nullptr), clock_(std::move(clock)) {
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(file.c_str(), &handle, flags, nullptr);
  database_.reset(handle);
  if (code != SQLITE_OK) {
    throw DatabaseError(
        "Cannot open the database file '" + file + "': " + sqlite3_errstr(code) + ".", "08001",
        code);
  }
  sqlite3_extended_result_codes(handle, 1);
  sqlite3_busy_handler(
      handle,
      [](void* session, int tries) {
        return static_cast<Session*>(session)->wait_for_lock(tries == 0) ? 1 : 0;
      },
      this);
  sqlite3_limit(handle, SQLITE_LIMIT_SQL_LENGTH, 1'000'000'000);
  // A name in double quotes that no table knows must not turn into a text.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  register_functions(handle, functions_);
  require_text_joins();
  schema_ = Schema(handle);
  // A file that is no database shows when it is first read.
  run("SELECT COUNT(*) FROM sqlite_schema");
}

// Two texts that differ in blanks only, joined as the embedded database joins what has no index.
// That it does so by the collation cannot be read from its version, nor from the answer of its test
// control, which some builds leave out.
void Session::require_text_joins() {
  const std::string collation = " COLLATE " + std::string(kTextCollation);
  const StatementHandle query = prepare(
      "WITH RECURSIVE A(K, I) AS (SELECT 'x', 1 UNION ALL SELECT K, I + 1 FROM A WHERE I < 3), "
      "B(K, I) AS (SELECT 'x ', 1 UNION ALL SELECT K, I + 1 FROM B WHERE I < 3) "
      "SELECT COUNT(*) FROM A JOIN B ON B.K" +
      collation + " = A.K" + collation);
  step(query.get());
  if (sqlite3_column_int(query.get(), 0) == 9) return;
  throw DatabaseError("SQLite " + std::string(sqlite3_libversion()) +
                          " joins texts by their bytes: rows would be lost.",
                      "HYC00");
}

std::int64_t Session::execute(std::string_view batch) {
  const std::vector<Statement> statements = parse_batch(batch);
  changed_ = 0;
  run_statements(statements, statements.size(), batch);
  return changed_;
}

OpenedQuery Session::open(std::string_view batch, bool with_row_number) {
  const std::vector<Statement> statements = parse_batch(batch);
  const auto* select =
      statements.empty() ? nullptr : std::get_if<SelectStatement>(&statements.back().body);
  if (!select || select->into) {
    throw DatabaseError("The text returns no rows: " + shortened(batch), "24000");
  }
  if (statements.size() > 1) run_statements(statements, statements.size() - 1, batch);
  OpenedQuery result;
  result.name = statement_name(statements.size() - 1, statements.back());
  naming(result.name, [&] {
    result.query = translator(batch).query(*select->query, with_row_number);
    result.statement = prepare(result.query.sql);
  });
  return result;
}

void Session::check(std::string_view batch) {
  const std::vector<Statement> statements = parse_batch(batch);
  for (std::size_t i = 0; i < statements.size(); ++i) {
    naming(statement_name(i, statements[i]), [&] { check_statement(statements[i], batch); });
  }
}

void Session::run_statements(const std::vector<Statement>& statements, std::size_t count,
                             std::string_view batch) {
  read_rest();
  begin_batch(std::any_of(statements.begin(),
                          statements.begin() + static_cast<std::ptrdiff_t>(count), writes_file));
  try {
    for (std::size_t i = 0; i < count; ++i) {
      naming(statement_name(i, statements[i]), [&] { run_statement(statements[i], batch); });
    }
  } catch (...) {
    end_batch();  // what ran before stays done
    throw;
  }
  end_batch();
}

// One transaction around the whole batch: thousands of statements cost one write to the disk. One
// that will write takes the lock for it at once: who has read already is refused without waiting,
// because two who read and wait to write would wait for each other.
void Session::begin_batch(bool writes) {
  if (sqlite3_get_autocommit(database_.get()) == 0) return;
  run(writes ? "BEGIN IMMEDIATE" : "BEGIN");
  batch_transaction_ = true;
}

void Session::end_batch() {
  if (!batch_transaction_) return;
  batch_transaction_ = false;
  if (sqlite3_get_autocommit(database_.get()) == 0) commit();
}

void Session::commit() {
  try {
    run("COMMIT");
  } catch (const DatabaseError&) {
    // A transaction that stayed open would swallow everything that follows.
    if (sqlite3_get_autocommit(database_.get()) == 0) run("ROLLBACK");
    schema_.forget();
    throw;
  }
}

Translator Session::translator(std::string_view batch) {
  schema_.refresh();
  functions_.now = clock_();
  return Translator(schema_, batch, functions_.now, identity_insert_);
}

void Session::run_statement(const Statement& statement, std::string_view batch) {
  Translator t = translator(batch);
  std::visit(Overloaded{
                 [&](const SelectStatement& s) { run_select(s, t); },
                 [&](const InsertStatement& s) { run_commands(t.insert(s)); },
                 [&](const UpdateStatement& s) { run_commands(t.update(s)); },
                 [&](const DeleteStatement& s) { run_commands(t.delete_(s)); },
                 [&](const CreateTableStatement& s) { run_commands(t.create_table(s)); },
                 [&](const CreateIndexStatement& s) { run_commands(t.create_index(s)); },
                 [&](const DropTableStatement& s) { run_commands(t.drop_table(s)); },
                 [&](const DropIndexStatement& s) { run_commands(t.drop_index(s)); },
                 [&](const IdentityInsertStatement& s) {
                   const Table& table = t.table(s.table);
                   if (!table.has_identity()) {
                     throw DatabaseError(
                         "Table '" + table.name +
                             "' does not have the identity property. Cannot perform SET "
                             "operation.",
                         "42000", 8106);
                   }
                   identity_insert_ = s.on ? table.name : "";
                 },
                 [&](const TransactionStatement& s) { run_transaction(s.verb); },
                 [](const SettingStatement&) {},
                 [&](const BlockStatement& s) {
                   for (const Statement& inner : s.statements) run_statement(inner, batch);
                 },
                 [&](const IfStatement& s) {
                   const StatementHandle query = prepare(t.condition_query(*s.condition));
                   step(query.get());
                   const bool met = sqlite3_column_int(query.get(), 0) != 0;
                   const auto& branch = met ? s.then_branch : s.else_branch;
                   sqlite3_reset(query.get());
                   if (branch) run_statement(*branch, batch);
                 },
             },
             statement.body);
}

void Session::check_statement(const Statement& statement, std::string_view batch) {
  Translator t = translator(batch);
  const auto check_commands = [&](const std::vector<Command>& commands) {
    // Later commands of a statement may need the first one done; it is the first that can fail.
    if (!commands.empty()) prepare(commands.front().sql);
  };
  std::visit(Overloaded{
                 [&](const SelectStatement& s) {
                   if (s.into) t.select_into(s);
                   prepare(t.query(*s.query, false).sql);
                 },
                 [&](const InsertStatement& s) { check_commands(t.insert(s)); },
                 [&](const UpdateStatement& s) { check_commands(t.update(s)); },
                 [&](const DeleteStatement& s) { check_commands(t.delete_(s)); },
                 [&](const CreateTableStatement& s) { check_commands(t.create_table(s)); },
                 [&](const CreateIndexStatement& s) { check_commands(t.create_index(s)); },
                 [&](const DropTableStatement& s) { check_commands(t.drop_table(s)); },
                 [&](const DropIndexStatement& s) { check_commands(t.drop_index(s)); },
                 [&](const IdentityInsertStatement& s) { t.table(s.table); },
                 [](const TransactionStatement&) {},
                 [](const SettingStatement&) {},
                 [&](const BlockStatement& s) {
                   for (const Statement& inner : s.statements) check_statement(inner, batch);
                 },
                 [&](const IfStatement& s) {
                   prepare(t.condition_query(*s.condition));
                   check_statement(*s.then_branch, batch);
                   if (s.else_branch) check_statement(*s.else_branch, batch);
                 },
             },
             statement.body);
}

void Session::run_select(const SelectStatement& statement, Translator& t) {
  if (!statement.into) {
    const StatementHandle query = prepare(t.query(*statement.query, false).sql);
    while (step(query.get())) {
    }
    return;
  }
  // Either the new table with all its rows, or nothing.
  run("SAVEPOINT select_into");
  try {
    run_commands(t.select_into(statement));
  } catch (...) {
    if (sqlite3_get_autocommit(database_.get()) == 0) {
      run("ROLLBACK TO select_into");
      run("RELEASE select_into");
    }
    schema_.forget();
    throw;
  }
  run("RELEASE select_into");
}

void Session::run_commands(const std::vector<Command>& commands) {
  for (const Command& command : commands) {
    const std::int64_t changed = run(command.sql);
    if (command.counted) {
      changed_ = changed;
    } else {
      schema_.forget();
    }
  }
}

void Session::run_transaction(TransactionVerb verb) {
  if (verb == TransactionVerb::kBegin) {
    if (open_transactions_ == 0) {
      end_batch();
      run("BEGIN IMMEDIATE");
    }
    ++open_transactions_;  // inner ones only count
    return;
  }
  if (open_transactions_ == 0) {
    const std::string name = verb == TransactionVerb::kCommit ? "COMMIT" : "ROLLBACK";
    throw DatabaseError(
        "The " + name + " TRANSACTION request has no corresponding BEGIN TRANSACTION.", "25000",
        verb == TransactionVerb::kCommit ? 3902 : 3903);
  }
  if (verb == TransactionVerb::kCommit) {
    if (--open_transactions_ == 0) commit();
    return;
  }
  open_transactions_ = 0;
  if (sqlite3_get_autocommit(database_.get()) == 0) run("ROLLBACK");
  schema_.forget();
}

StatementHandle Session::prepare(const std::string& sql) {
  sqlite3_test_control(SQLITE_TESTCTRL_OPTIMIZATIONS, database_.get(),
                       sql.size() > kManyConstants ? kBloomFilter | kConstantsOnce : kBloomFilter);
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v2(database_.get(), sql.c_str(), static_cast<int>(sql.size()),
                                      &statement, nullptr);
  if (code != SQLITE_OK) fail(code);
  return StatementHandle(statement);
}

bool Session::step(sqlite3_stmt* statement) {
  functions_.failure.reset();
  step_began_ = std::chrono::steady_clock::now();
  const int code = sqlite3_step(statement);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  // The failed statement must not stay open, or it would keep its transaction open too.
  const std::string message = sqlite3_errmsg(database_.get());
  const auto failure = functions_.failure;
  sqlite3_reset(statement);
  if (failure) throw DatabaseError(*failure);
  if ((code & 0xFF) == SQLITE_INTERRUPT) {
    throw DatabaseError("The statement takes longer than its time limit.", "HYT00", code);
  }
  if ((code & 0xFF) == SQLITE_CONSTRAINT) throw constraint_error(message);
  throw refusal(code, message + ".");
}

// Waiting is no work of the statement. Under a time limit the wait is as short as that.
bool Session::wait_for_lock(bool first_try) {
  constexpr std::chrono::milliseconds kPause{10};
  const auto now = std::chrono::steady_clock::now();
  if (first_try) lock_met_ = now;
  const auto most = time_limit_.count() > 0 ? std::min(time_limit_, kMostWait) : kMostWait;
  if (now - lock_met_ >= most) return false;
  std::this_thread::sleep_for(kPause);
  step_began_ += std::chrono::steady_clock::now() - now;
  return true;
}

void Session::set_time_limit(std::chrono::milliseconds limit) {
  constexpr int kInstructionsBetweenLooks = 1000;
  time_limit_ = limit;
  const auto is_overdue = [](void* session) {
    const Session& self = *static_cast<Session*>(session);
    return std::chrono::steady_clock::now() - self.step_began_ > self.time_limit_ ? 1 : 0;
  };
  sqlite3_progress_handler(database_.get(), kInstructionsBetweenLooks,
                           limit.count() > 0 ? +is_overdue : nullptr, this);
}

std::int64_t Session::run(const std::string& sql) {
  const StatementHandle statement = prepare(sql);
  while (step(statement.get())) {
  }
  return changed_rows();
}

std::int64_t Session::changed_rows() const { return sqlite3_changes64(database_.get()); }

void Session::fail(int code) {
  throw refusal(code, "The embedded database cannot run the statement: " +
                          std::string(sqlite3_errmsg(database_.get())) + ".");
}

void Session::remove_reader(RowReader& reader) {
  readers_.erase(std::remove(readers_.begin(), readers_.end(), &reader), readers_.end());
}

void Session::read_rest() {
  const std::vector<RowReader*> readers = std::move(readers_);
  readers_.clear();
  for (RowReader* reader : readers) reader->read_rest();
}

}  // namespace kestrova::sql
