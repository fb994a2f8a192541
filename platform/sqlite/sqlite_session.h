// The state of one connection to the embedded database, shared by the connection and its row sets:
// the handle, the tables known so far, transactions and the row sets that are still being read.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/sqlite/sql_translator.h"
#include "platform/sqlite/sqlite_functions.h"
#include "platform/sqlite/sqlite_handle.h"

namespace kestrova::sql {

// A row set that still reads from the database. Before a statement changes anything it reads the
// rest, so that statements and open row sets never meet.
class RowReader {
 public:
  virtual void read_rest() = 0;

 protected:
  ~RowReader() = default;
};

// A query that has been prepared to be read.
struct OpenedQuery {
  StatementHandle statement;
  TranslatedQuery query;
  std::string name;  // how errors name it
};

// The error with the statement that it occurred in added to its message.
DatabaseError in_statement(const DatabaseError& error, const std::string& name);

class Session {
 public:
  Session(const std::string& file, int flags, std::function<DateTime()> clock);

  // See Connection::execute.
  std::int64_t execute(std::string_view batch);
  // Runs all statements of the batch but the last, which must be a SELECT, and prepares that one.
  OpenedQuery open(std::string_view batch, bool with_row_number);
  // See check_sqlite.
  void check(std::string_view batch);

  // Steps a statement; false behind the last row. Raises DatabaseError.
  bool step(sqlite3_stmt* statement);
  StatementHandle prepare(const std::string& sql);
  // Runs one statement of the embedded database; returns the number of changed rows.
  std::int64_t run(const std::string& sql);
  std::int64_t changed_rows() const;

  // See Connection::set_time_limit.
  void set_time_limit(std::chrono::milliseconds limit);

  void add_reader(RowReader& reader) { readers_.push_back(&reader); }
  void remove_reader(RowReader& reader);
  void read_rest();

 private:
  void run_statements(const std::vector<Statement>& statements, std::size_t count,
                      std::string_view batch);
  void run_statement(const Statement& statement, std::string_view batch);
  void run_commands(const std::vector<Command>& commands);
  void run_transaction(TransactionVerb verb);
  void run_select(const SelectStatement& statement, Translator& translator);
  void check_statement(const Statement& statement, std::string_view batch);
  Translator translator(std::string_view batch);
  void begin_batch(bool writes);
  void end_batch();
  void commit();
  bool wait_for_lock(bool first_try);
  void require_text_joins();
  [[noreturn]] void fail(int code);

  FunctionState functions_;  // must outlive the handle
  DatabaseHandle database_;
  Schema schema_;
  std::function<DateTime()> clock_;
  std::string identity_insert_;
  std::int64_t changed_ = 0;
  int open_transactions_ = 0;
  bool batch_transaction_ = false;
  std::vector<RowReader*> readers_;
  std::chrono::milliseconds time_limit_{0};
  std::chrono::steady_clock::time_point step_began_;
  std::chrono::steady_clock::time_point lock_met_;
};

}  // namespace kestrova::sql
