#include "platform/odbc/odbc_recordset.h"

#include <algorithm>
#include <utility>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova::odbc {

OdbcRecordset::OdbcRecordset(std::shared_ptr<Session> session, std::string query, CursorType cursor,
                             LockType lock)
    : session_(std::move(session)),
      query_(std::move(query)),
      name_(session_->name_of(0, query_)),
      lock_(lock),
      forward_only_(cursor == CursorType::kForwardOnly || cursor == CursorType::kUnspecified),
      updatable_(lock == LockType::kPessimistic || lock == LockType::kOptimistic) {
  open_query();
}

void OdbcRecordset::open_query() {
  // When the query fails, there are no rows: never rows under the columns of another result.
  cursor_.reset();
  rows_ = {};
  current_ = 0;
  changes_.clear();
  target_.reset();
  StatementHandle statement = session_->new_statement();
  if (updatable_) ask_for_cursor(*session_, statement, lock_);
  session_->run(statement, query_, name_);
  columns_ = read_columns(*session_, statement, name_);
  if (columns_.empty()) throw DatabaseError("The text returns no rows. [" + name_ + "]", "24000");
  sources_.clear();
  for (std::size_t i = 0; updatable_ && i < columns_.size(); ++i) {
    sources_.push_back(session_->source_of(statement, i));
  }
  rows_ = read_rows(*session_, statement, columns_, name_);
  if (updatable_ && session_->traits().updatable_cursors && has_cursor(statement)) {
    cursor_ = std::move(statement);
  } else {
    while (session_->next_result(statement, name_)) {  // for an error behind the rows
    }
  }
  moved_ = false;
}

void OdbcRecordset::check_open() const {
  if (!open_) throw ObjectNotSet("The row set is closed.");
}

void OdbcRecordset::check_current() const {
  if (eof()) throw NoCurrentRecord("The row set is at its end: there is no current row.");
}

bool OdbcRecordset::eof() const {
  check_open();
  return current_ >= rows_.size();
}

void OdbcRecordset::move_first() {
  check_open();
  changes_.clear();
  if (forward_only_ && moved_) {
    open_query();
  } else {
    current_ = 0;
  }
}

void OdbcRecordset::move_next() {
  check_current();
  if (!changes_.empty()) changes_.clear();
  moved_ = true;
  ++current_;
}

void OdbcRecordset::find(std::string_view criterion) {
  check_open();
  const FindCriterion wanted = parse_find_criterion(criterion);
  const std::size_t position = position_of(wanted.column);
  while (!eof() && !meets(wanted, rows_.value(current_, position))) move_next();
}

std::size_t OdbcRecordset::column_count() const {
  check_open();
  return columns_.size();
}

std::string OdbcRecordset::column_name(std::size_t position) const { return column(position).name; }

Value OdbcRecordset::value(std::string_view name) const { return value(position_of(name)); }

Value OdbcRecordset::value(std::size_t position) const {
  column(position);
  check_current();
  if (changes_.empty()) return rows_.value(current_, position);
  const auto change = changes_.find(position);
  return change == changes_.end() ? rows_.value(current_, position) : change->second;
}

FieldType OdbcRecordset::type(std::string_view name) const { return type(position_of(name)); }

FieldType OdbcRecordset::type(std::size_t position) const { return column(position).type.type; }

const ResultColumn& OdbcRecordset::column(std::size_t position) const {
  check_open();
  if (position >= columns_.size()) {
    throw ItemNotFound("The row set has no column at position " + std::to_string(position) + ".");
  }
  return columns_[position];
}

std::size_t OdbcRecordset::position_of(std::string_view name) const {
  check_open();
  const auto found = std::find_if(columns_.begin(), columns_.end(), [&](const ResultColumn& c) {
    return text::equal_ignoring_case(c.name, name);
  });
  if (found == columns_.end()) {
    throw ItemNotFound("The row set has no column '" + std::string(name) + "'.");
  }
  return static_cast<std::size_t>(found - columns_.begin());
}

// Asks the database for the key only when a row is about to be written.
void OdbcRecordset::check_writable() {
  if (!updatable_) throw DatabaseError("The row set was opened read-only.", "HY092");
  if (!cursor_ && !target_) target_ = find_target(*session_, query_, columns_, sources_);
}

bool OdbcRecordset::is_writable(std::size_t position) const {
  return cursor_ ? !sources_[position].table.table.empty() : target_->has_column(position);
}

void OdbcRecordset::set_value(std::string_view name, const Value& value) {
  const std::size_t position = position_of(name);
  check_current();
  check_writable();
  if (!is_writable(position)) {
    throw DatabaseError(
        "The column '" + columns_[position].name + "' cannot be changed through this row set.",
        "HY092");
  }
  changes_[position] = value;
}

void OdbcRecordset::update() {
  check_current();
  check_writable();
  if (changes_.empty()) return;
  const Row row = rows_.row(current_);
  Row written = cursor_ ? write_through_cursor(*session_, cursor_, columns_,
                                               rows_.position(current_), row, changes_, name_)
                        : write_by_key(*session_, *target_, columns_, row, changes_);
  rows_.replace(current_, std::move(written));
  changes_.clear();
}

void OdbcRecordset::close() {
  open_ = false;
  cursor_.reset();
  rows_ = {};
  changes_.clear();
}

}  // namespace kestrova::odbc
