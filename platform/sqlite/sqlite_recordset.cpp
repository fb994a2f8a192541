#include "platform/sqlite/sqlite_recordset.h"

#include <algorithm>
#include <utility>

#include "platform/error.h"
#include "platform/sqlite/sql_convert.h"
#include "platform/text.h"

namespace kestrova::sql {
namespace {

void bind(sqlite3_stmt* statement, int index, const Value& stored) {
  if (const auto* text = stored.get_if<std::string>()) {
    sqlite3_bind_text64(statement, index, text->data(), text->size(), SQLITE_TRANSIENT,
                        SQLITE_UTF8);
  } else if (const auto* number = stored.get_if<double>()) {
    sqlite3_bind_double(statement, index, *number);
  } else if (const auto* integer = stored.get_if<std::int64_t>()) {
    sqlite3_bind_int64(statement, index, *integer);
  } else if (const auto* bytes = stored.get_if<Bytes>()) {
    sqlite3_bind_blob64(statement, index, bytes->data(), bytes->size(), SQLITE_TRANSIENT);
  } else {
    sqlite3_bind_null(statement, index);
  }
}

}  // namespace

SqliteRecordset::SqliteRecordset(std::shared_ptr<Session> session, std::string source,
                                 CursorType cursor, LockType lock)
    : session_(std::move(session)),
      source_(std::move(source)),
      forward_only_(cursor == CursorType::kForwardOnly || cursor == CursorType::kUnspecified),
      updatable_(lock == LockType::kPessimistic || lock == LockType::kOptimistic) {
  open_query();
}

SqliteRecordset::~SqliteRecordset() { stop_reading(); }

void SqliteRecordset::open_query() {
  stop_reading();
  rows_.clear();
  changes_.clear();
  pending_error_ = nullptr;
  current_ = 0;
  moved_ = false;
  query_ = session_->open(source_, updatable_);
  if (forward_only_) {
    session_->add_reader(*this);
    fetch();
  } else {
    while (fetch()) {
    }
  }
}

// Reads one row more; false when there is none.
bool SqliteRecordset::fetch() {
  if (!query_.statement) return false;
  try {
    if (session_->step(query_.statement.get())) {
      rows_.push_back(read_row());
      return true;
    }
  } catch (const DatabaseError& error) {
    stop_reading();
    throw in_statement(error, query_.name);
  }
  stop_reading();
  return false;
}

SqliteRecordset::Row SqliteRecordset::read_row() {
  Row row;
  const std::size_t count = query_.query.columns.size();
  row.values.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    row.values.push_back(
        stored_to_host(read_value(static_cast<int>(i)), query_.query.columns[i].type));
  }
  if (query_.query.row_table) {
    row.number = sqlite3_column_int64(query_.statement.get(), static_cast<int>(count));
  }
  return row;
}

Value SqliteRecordset::read_value(int column) const {
  sqlite3_stmt* const statement = query_.statement.get();
  const auto bytes = [&] {
    return static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
  };
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER:
      return std::int64_t{sqlite3_column_int64(statement, column)};
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement, column);
    case SQLITE_BLOB: {
      const auto* data = static_cast<const std::byte*>(sqlite3_column_blob(statement, column));
      return data ? Bytes(data, data + bytes()) : Bytes();
    }
    default: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
      return std::string(text, bytes());
    }
  }
}

void SqliteRecordset::stop_reading() {
  session_->remove_reader(*this);
  query_.statement.reset();
}

void SqliteRecordset::read_rest() {
  try {
    while (fetch()) {
    }
  } catch (...) {
    pending_error_ = std::current_exception();
  }
}

void SqliteRecordset::check_open() const {
  if (!open_) throw ObjectNotSet("The row set is closed.");
}

void SqliteRecordset::check_current() const {
  if (eof()) throw NoCurrentRecord("The row set is at its end: there is no current row.");
}

bool SqliteRecordset::eof() const {
  check_open();
  return current_ >= rows_.size();
}

void SqliteRecordset::move_first() {
  check_open();
  changes_.clear();
  if (!forward_only_) {
    current_ = 0;
  } else if (moved_) {
    open_query();
  }
}

void SqliteRecordset::move_next() {
  check_current();
  changes_.clear();
  moved_ = true;
  if (!forward_only_) {
    ++current_;
    return;
  }
  rows_.pop_front();
  if (!rows_.empty()) return;
  if (pending_error_) std::rethrow_exception(std::exchange(pending_error_, nullptr));
  fetch();
}

void SqliteRecordset::find(std::string_view criterion) {
  check_open();
  const FindCriterion wanted = parse_find_criterion(criterion);
  const std::size_t position = position_of(wanted.column);
  while (!eof() && !meets(wanted, rows_[current_].values[position])) move_next();
}

std::size_t SqliteRecordset::column_count() const {
  check_open();
  return query_.query.columns.size();
}

std::string SqliteRecordset::column_name(std::size_t position) const {
  return column(position).name;
}

Value SqliteRecordset::value(std::string_view name) const { return value(position_of(name)); }

Value SqliteRecordset::value(std::size_t position) const {
  column(position);
  check_current();
  const auto change = changes_.find(position);
  return change == changes_.end() ? rows_[current_].values[position] : change->second.value;
}

FieldType SqliteRecordset::type(std::string_view name) const { return type(position_of(name)); }

FieldType SqliteRecordset::type(std::size_t position) const { return column(position).type.code(); }

const OutputColumn& SqliteRecordset::column(std::size_t position) const {
  check_open();
  if (position >= query_.query.columns.size()) {
    throw ItemNotFound("The row set has no column at position " + std::to_string(position) + ".");
  }
  return query_.query.columns[position];
}

std::size_t SqliteRecordset::position_of(std::string_view name) const {
  check_open();
  const auto& columns = query_.query.columns;
  const std::string wanted = text::upper(name);
  const auto found = std::find_if(columns.begin(), columns.end(), [&](const OutputColumn& c) {
    return text::upper(c.name) == wanted;
  });
  if (found == columns.end()) {
    throw ItemNotFound("The row set has no column '" + std::string(name) + "'.");
  }
  return static_cast<std::size_t>(found - columns.begin());
}

void SqliteRecordset::set_value(std::string_view name, const Value& value) {
  const std::size_t position = position_of(name);
  const OutputColumn& changed = column(position);
  check_current();
  if (!updatable_) throw DatabaseError("The row set was opened read-only.", "HY092");
  if (!query_.query.row_table || changed.source_column.empty()) {
    throw DatabaseError("The column '" + changed.name + "' cannot be changed through this row set.",
                        "HY092");
  }
  const Value stored = host_to_stored(value, changed.type);
  changes_[position] = {stored, stored_to_host(stored, changed.type)};
}

void SqliteRecordset::update() {
  check_current();
  if (!updatable_) throw DatabaseError("The row set was opened read-only.", "HY092");
  if (!query_.query.row_table) {
    throw DatabaseError("The rows of this row set cannot be told apart.", "HY092");
  }
  if (changes_.empty()) return;
  session_->read_rest();
  std::string sql;
  for (const auto& [position, change] : changes_) {
    sql += sql.empty() ? "UPDATE " + query_.query.row_table->sql_name() + " SET " : ", ";
    sql += quoted_name(column(position).source_column) + " = ?";
  }
  const StatementHandle statement = session_->prepare(sql + " WHERE _rowid_ = ?");
  int parameter = 0;
  for (const auto& [position, change] : changes_) {
    bind(statement.get(), ++parameter, change.stored);
  }
  sqlite3_bind_int64(statement.get(), ++parameter, rows_[current_].number);
  while (session_->step(statement.get())) {
  }
  if (session_->changed_rows() != 1) {
    throw DatabaseError("The row has been deleted in the meantime.", "HY000");
  }
  for (const auto& [position, change] : changes_) {
    rows_[current_].values[position] = change.value;
  }
  changes_.clear();
}

void SqliteRecordset::close() {
  stop_reading();
  open_ = false;
  rows_.clear();
}

}  // namespace kestrova::sql
