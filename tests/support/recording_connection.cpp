#include "tests/support/recording_connection.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/text.h"

namespace kestrova {

void PrintTo(const Value& value, std::ostream* out) {
  *out << (value.is_null() ? "NULL" : "'" + value.text() + "'");
}

namespace test {
namespace {

std::string text_of(const Value& value) { return value.is_null() ? "NULL" : value.text(); }

std::string_view name_of(CursorType cursor) {
  switch (cursor) {
    case CursorType::kForwardOnly:
      return "forward-only";
    case CursorType::kKeyset:
      return "keyset";
    case CursorType::kDynamic:
      return "dynamic";
    case CursorType::kStatic:
      return "static";
    case CursorType::kUnspecified:
      break;
  }
  return "unspecified";
}

std::string_view name_of(LockType lock) {
  switch (lock) {
    case LockType::kReadOnly:
      return "read-only";
    case LockType::kPessimistic:
      return "pessimistic";
    case LockType::kOptimistic:
      return "optimistic";
    case LockType::kUnspecified:
      break;
  }
  return "unspecified";
}

bool is_writable(LockType lock) {
  return lock == LockType::kPessimistic || lock == LockType::kOptimistic;
}

}  // namespace

struct RecordingConnection::Result {
  Result(const std::string& source, Columns its_columns, Rows its_rows)
      : columns(std::move(its_columns)), rows(std::move(its_rows)) {
    for (const Row& row : rows) {
      if (row.size() != columns.size()) {
        throw InvalidArgument("A scripted row has not one value per column: " + source);
      }
    }
  }

  Columns columns;
  Rows rows;
};

// Reads its own copy of the rows, as they were when it was opened, and writes into the script.
class RecordingConnection::RecordedRows : public Recordset {
 public:
  RecordedRows(RecordingConnection& connection, std::size_t number, std::shared_ptr<Result> result,
               CursorType cursor, LockType lock)
      : connection_(connection),
        number_(number),
        result_(std::move(result)),
        rows_(result_->rows),
        cursor_(cursor),
        lock_(lock) {
    ++connection_.open_recordsets_;
  }

  ~RecordedRows() override { RecordedRows::close(); }

  bool eof() const override {
    check_open();
    return row_ >= rows_.size();
  }

  void move_first() override {
    call("move_first");
    leave_row();
    if (cursor_ == CursorType::kForwardOnly && moved_) rows_ = result_->rows;
    row_ = 0;
  }

  void move_next() override {
    call("move_next");
    check_row();
    leave_row();
    ++row_;
    moved_ = true;
  }

  void find(std::string_view criterion) override {
    call("find " + std::string(criterion));
    const FindCriterion wanted = parse_find_criterion(criterion);
    const std::size_t column = position_of(wanted.column);
    const auto from = rows_.begin() + static_cast<std::ptrdiff_t>(std::min(row_, rows_.size()));
    const auto found =
        std::find_if(from, rows_.end(), [&](const Row& row) { return meets(wanted, row[column]); });
    if (found == from && found != rows_.end()) return;
    leave_row();
    row_ = static_cast<std::size_t>(found - rows_.begin());
    moved_ = true;
  }

  std::size_t column_count() const override {
    check_open();
    return result_->columns.size();
  }

  std::string column_name(std::size_t position) const override {
    check_open();
    return column_at(position).name;
  }

  Value value(std::string_view name) const override {
    call("value " + std::string(name));
    return value_at(position_of(name));
  }

  Value value(std::size_t position) const override {
    call("value " + std::to_string(position));
    column_at(position);
    return value_at(position);
  }

  FieldType type(std::string_view name) const override {
    call("type " + std::string(name));
    return column_at(position_of(name)).type;
  }

  FieldType type(std::size_t position) const override {
    call("type " + std::to_string(position));
    return column_at(position).type;
  }

  void set_value(std::string_view name, const Value& value) override {
    call("set_value " + std::string(name) + " = " + text_of(value));
    check_writable();
    check_row();
    changes_[position_of(name)] = value;
  }

  void update() override {
    call("update");
    check_writable();
    check_row();
    for (const auto& [column, value] : changes_) {
      rows_[row_][column] = value;
      result_->rows[row_][column] = value;
    }
    leave_row();
  }

  void close() override {
    if (!open_) return;
    connection_.log_->push_back(prefix() + "close");
    open_ = false;
    --connection_.open_recordsets_;
    rows_.clear();
  }

 private:
  std::string prefix() const { return "#" + std::to_string(number_) + " "; }

  void call(const std::string& entry) const {
    check_open();
    connection_.call(prefix() + entry);
  }

  void check_open() const {
    if (!open_) throw ObjectNotSet("The row set is closed.");
  }

  void check_row() const {
    if (row_ >= rows_.size()) throw NoCurrentRecord("The row set stands at its end.");
  }

  void check_writable() const {
    if (!is_writable(lock_)) throw DatabaseError("The row set was opened read-only.");
  }

  void leave_row() { changes_.clear(); }

  const Column& column_at(std::size_t position) const {
    if (position >= result_->columns.size()) {
      throw ItemNotFound("There is no column at position " + std::to_string(position) + ".");
    }
    return result_->columns[position];
  }

  std::size_t position_of(std::string_view name) const {
    const Columns& columns = result_->columns;
    const auto column = std::find_if(columns.begin(), columns.end(), [name](const Column& c) {
      return text::equal_ignoring_case(c.name, name);
    });
    if (column == columns.end()) throw ItemNotFound("There is no column " + std::string(name));
    return static_cast<std::size_t>(column - columns.begin());
  }

  Value value_at(std::size_t position) const {
    check_row();
    const auto change = changes_.find(position);
    return change == changes_.end() ? rows_[row_][position] : change->second;
  }

  RecordingConnection& connection_;
  std::size_t number_;
  std::shared_ptr<Result> result_;
  Rows rows_;
  CursorType cursor_;
  LockType lock_;
  std::size_t row_ = 0;
  bool moved_ = false;
  bool open_ = true;
  std::map<std::size_t, Value> changes_;  // of the current row, by column position
};

RecordingConnection::RecordingConnection(ConnectionKind kind, CallLog log)
    : kind_(kind), log_(std::move(log)) {}

RecordingConnection::~RecordingConnection() = default;

void RecordingConnection::answer(std::string sql, Columns columns, Rows rows) {
  auto result = std::make_shared<Result>(sql, std::move(columns), std::move(rows));
  answers_[std::move(sql)].in_order.emplace_back(std::move(result));
}

void RecordingConnection::answer_execute(std::string sql, std::int64_t rows_affected) {
  answers_[std::move(sql)].in_order.emplace_back(rows_affected);
}

void RecordingConnection::fail(std::string sql, DatabaseError error) {
  answers_[std::move(sql)].in_order.emplace_back(std::move(error));
}

void RecordingConnection::table(std::string name, Columns columns, Rows rows) {
  tables_[text::upper(name)] = std::make_shared<Result>(name, std::move(columns), std::move(rows));
}

void RecordingConnection::fail_on_call(std::size_t k) {
  first_failing_call_ = k;
  last_failing_call_ = k;
}

void RecordingConnection::fail_from_call(std::size_t k) {
  first_failing_call_ = k;
  last_failing_call_ = std::numeric_limits<std::size_t>::max();
}

const Rows& RecordingConnection::rows_of(std::string_view table) const {
  const auto result = find_table(table);
  if (!result) throw ItemNotFound("There is no scripted table " + std::string(table));
  return result->rows;
}

void RecordingConnection::clear_log() {
  log_->clear();
  statements_.clear();
  calls_made_ = 0;
}

std::unique_ptr<Recordset> RecordingConnection::open(std::string_view source, CursorType cursor,
                                                     LockType lock) {
  const std::size_t number = ++opens_made_;
  statements_.emplace_back(source);
  call("open " + std::string(source) + " [" + std::string(name_of(cursor)) + ", " +
       std::string(name_of(lock)) + "]");
  return std::make_unique<RecordedRows>(*this, number, result_of(source), cursor, lock);
}

std::int64_t RecordingConnection::execute(std::string_view batch) {
  statements_.emplace_back(batch);
  call("execute " + std::string(batch));
  const Answer* answer = next_answer(batch);
  if (answer == nullptr) return rows_affected_;
  const auto* rows_affected = std::get_if<std::int64_t>(answer);
  return rows_affected != nullptr ? *rows_affected : 0;
}

void RecordingConnection::call(std::string entry) {
  ++calls_made_;
  log_->push_back(entry);
  if (first_failing_call_ == 0) return;
  if (calls_made_ < first_failing_call_ || calls_made_ > last_failing_call_) return;
  throw DatabaseError("scripted failure of call " + std::to_string(calls_made_) + ": " + entry);
}

const RecordingConnection::Answer* RecordingConnection::next_answer(std::string_view sql) {
  const auto found = answers_.find(sql);
  if (found == answers_.end()) return nullptr;
  Answers& answers = found->second;
  const Answer& answer = answers.in_order[answers.next];
  if (answers.next + 1 < answers.in_order.size()) ++answers.next;
  if (const auto* error = std::get_if<DatabaseError>(&answer)) throw *error;
  return &answer;
}

std::shared_ptr<RecordingConnection::Result> RecordingConnection::find_table(
    std::string_view name) const {
  const auto table = tables_.find(text::upper(name));
  return table == tables_.end() ? nullptr : table->second;
}

std::shared_ptr<RecordingConnection::Result> RecordingConnection::result_of(
    std::string_view source) {
  const Answer* answer = next_answer(source);
  const auto* scripted = answer != nullptr ? std::get_if<std::shared_ptr<Result>>(answer) : nullptr;
  if (scripted != nullptr) return *scripted;
  if (auto table = find_table(source)) return table;
  throw DatabaseError("Nothing is scripted for the open of: " + std::string(source), "42S02");
}

}  // namespace test
}  // namespace kestrova
