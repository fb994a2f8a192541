// A database connection that answers from a script and writes down what it was asked.
//
//   RecordingConnection connection;
//   connection.answer("SELECT ID FROM LAGER", {{"ID", FieldType::kInteger}}, {{1}, {2}});
//   ... code under test ...
//   EXPECT_EQ(connection.log(), (std::vector<std::string>{
//       "open SELECT ID FROM LAGER [forward-only, read-only]", "#1 value ID", "#1 close"}));
//
// A row set's number in the log is the number of its open, failed ones counted: "#2 move_next"
// belongs to the second open. Calls that ask nothing of a database (eof, column_count, column_name)
// are not written down; the destructor of an open row set is, as its close.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/database.h"
#include "platform/error.h"
#include "tests/support/call_log.h"

namespace kestrova {

// How a value is shown when an expectation on it fails.
void PrintTo(const Value& value, std::ostream* out);

namespace test {

struct Column {
  std::string name;
  FieldType type = FieldType::kVarWChar;
};

using Columns = std::vector<Column>;
using Row = std::vector<Value>;
using Rows = std::vector<Row>;

class RecordingConnection : public Connection {
 public:
  explicit RecordingConnection(ConnectionKind kind = ConnectionKind::kSqlServer,
                               CallLog log = make_call_log());
  ~RecordingConnection() override;

  // --- The script. Each row has one value per column; anything else raises InvalidArgument.

  // Answers the next open of exactly this text. Several answers and failures of one text are used
  // in the order in which they were scripted; the last one stays valid.
  void answer(std::string sql, Columns columns, Rows rows = {});

  // Answers the next execute of exactly this text.
  void answer_execute(std::string sql, std::int64_t rows_affected);
  // What every execute of a text without a script answers from now on; 0 at first.
  void answer_executes(std::int64_t rows_affected) { rows_affected_ = rows_affected; }

  // Lets the next open or execute of exactly this text fail.
  void fail(std::string sql, DatabaseError error);

  // Answers opens of a bare table name. A later table of that name replaces it.
  void table(std::string name, Columns columns, Rows rows = {});

  void set_kind(ConnectionKind kind) { kind_ = kind; }

  // --- Failures by position. Calls are counted from 1 over open, execute, move_first, move_next,
  // find, value, type, set_value and update. The failing call changes nothing.

  // Only the k-th call fails; 0 for none.
  void fail_on_call(std::size_t k);
  // The connection is lost: the k-th call and all later ones fail.
  void fail_from_call(std::size_t k);

  // --- What was asked.

  std::size_t calls_made() const { return calls_made_; }
  const std::vector<std::string>& log() const { return *log_; }
  // Only the texts of open and execute.
  const std::vector<std::string>& statements() const { return statements_; }
  std::size_t open_recordsets() const { return open_recordsets_; }
  // The present rows of a scripted table. Raises ItemNotFound.
  const Rows& rows_of(std::string_view table) const;

  // Forgets the log, the statements and the count of calls. Row sets keep their numbers.
  void clear_log();

  // --- Connection. An open of a text without a script raises a DatabaseError that quotes it.

  std::unique_ptr<Recordset> open(std::string_view source, CursorType cursor,
                                  LockType lock) override;
  std::int64_t execute(std::string_view batch) override;
  ConnectionKind kind() const override { return kind_; }

 private:
  struct Result;
  class RecordedRows;
  using Answer = std::variant<std::shared_ptr<Result>, std::int64_t, DatabaseError>;

  struct Answers {
    std::vector<Answer> in_order;
    std::size_t next = 0;
  };

  // Writes a call down and counts it, and lets it fail if it is its turn.
  void call(std::string entry);
  // The answer whose turn it is; nullptr for a text without a script.
  const Answer* next_answer(std::string_view sql);
  std::shared_ptr<Result> find_table(std::string_view name) const;
  std::shared_ptr<Result> result_of(std::string_view source);

  ConnectionKind kind_;
  CallLog log_;
  std::vector<std::string> statements_;
  std::map<std::string, Answers, std::less<>> answers_;
  std::map<std::string, std::shared_ptr<Result>> tables_;  // by upper-cased name
  std::int64_t rows_affected_ = 0;
  std::size_t calls_made_ = 0;
  std::size_t first_failing_call_ = 0;  // 0: none
  std::size_t last_failing_call_ = 0;
  std::size_t opens_made_ = 0;
  std::size_t open_recordsets_ = 0;
};

}  // namespace test
}  // namespace kestrova
