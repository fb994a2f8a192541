#include "platform/odbc/row_writer.h"

#include <algorithm>

#include "platform/error.h"
#include "platform/odbc/parameter.h"
#include "platform/odbc/plain_query.h"
#include "platform/text.h"

namespace kestrova::odbc {
namespace {

[[noreturn]] void report_changed() {
  throw DatabaseError("The row has been changed in the meantime; nothing was written.", "01001");
}

[[noreturn]] void report_deleted() {
  throw DatabaseError("The row has been deleted in the meantime; nothing was written.", "01001");
}

// A cursor notices that its row is no longer there as it was, but not why.
[[noreturn]] void report_conflict() {
  throw DatabaseError("The row has been changed or deleted in the meantime; nothing was written.",
                      "01001");
}

// --- Through the cursor

// Where the driver tells what became of the cursor's row. Every call on a statement forgets the
// diagnostics of the one before, so an error has to be raised while this lives.
class RowStatus {
 public:
  explicit RowStatus(const StatementHandle& cursor) : cursor_(cursor) {
    SQLSetStmtAttr(cursor_.get(), SQL_ATTR_ROW_STATUS_PTR, &status_, 0);
  }
  ~RowStatus() { SQLSetStmtAttr(cursor_.get(), SQL_ATTR_ROW_STATUS_PTR, nullptr, 0); }
  RowStatus(const RowStatus&) = delete;
  RowStatus& operator=(const RowStatus&) = delete;

  bool is(SQLUSMALLINT status) const { return status_ == status; }

 private:
  const StatementHandle& cursor_;
  SQLUSMALLINT status_ = SQL_ROW_NOROW;
};

// Puts the cursor on the row and reads it again, since a keyset cursor shows what is there now.
Row fetch_again(Session& session, const StatementHandle& cursor,
                const std::vector<ResultColumn>& columns, std::size_t position,
                const std::string& name) {
  const RowStatus status(cursor);
  const SQLRETURN result =
      SQLFetchScroll(cursor.get(), SQL_FETCH_ABSOLUTE, static_cast<SQLLEN>(position));
  if (status.is(SQL_ROW_DELETED) || !session.has_data(result, cursor, name)) report_deleted();
  return read_row(session, cursor, columns, name);
}

// The new values, bound only while their row is written.
class BoundChanges {
 public:
  BoundChanges(Session& session, const StatementHandle& cursor, const Changes& changes,
               const std::vector<ResultColumn>& columns, const std::string& name)
      : cursor_(cursor) {
    parameters_.reserve(changes.size());
    for (const auto& [position, value] : changes) {
      Parameter& p = parameters_.emplace_back(make_parameter(value, columns[position]));
      session.check(SQLBindCol(cursor.get(), static_cast<SQLUSMALLINT>(position + 1), p.c_type,
                               p.data.data(), static_cast<SQLLEN>(p.data.size()), &p.indicator),
                    cursor, name);
    }
  }
  ~BoundChanges() { SQLFreeStmt(cursor_.get(), SQL_UNBIND); }
  BoundChanges(const BoundChanges&) = delete;
  BoundChanges& operator=(const BoundChanges&) = delete;

 private:
  const StatementHandle& cursor_;
  std::vector<Parameter> parameters_;
};

// --- By the key

constexpr const char* kNotOneTable = "the query does not answer the rows of one table";

[[noreturn]] void refuse_target(const std::string& reason) {
  throw DatabaseError("The rows of this row set cannot be told apart: " + reason + ".", "HY092");
}

// The table and columns that the driver names; no table when it names none.
UpdateTarget named_target(const std::vector<SourceColumn>& sources) {
  UpdateTarget target;
  for (const SourceColumn& source : sources) {
    const bool has_table = !source.table.table.empty();
    target.columns.push_back(has_table ? source.column : "");
    if (!has_table) continue;
    if (target.table.table.empty()) target.table = source.table;
    if (source.table != target.table) refuse_target(kNotOneTable);
  }
  return target;
}

UpdateTarget target_of(const PlainQuery& query, const std::vector<ResultColumn>& columns) {
  std::vector<std::string> names;
  for (const ResultColumn& column : columns) names.push_back(column.name);
  return {.table = query.table, .key = {}, .columns = source_columns(query, names)};
}

class ParameterList {
 public:
  void add(const Value& value, const ResultColumn& column) {
    parameters_.push_back(make_parameter(value, column));
  }
  // A NULL is no parameter of a condition.
  void add_condition(const Value& value, const ResultColumn& column) {
    if (!value.is_null()) add(value, column);
  }
  void run(Session& session, const StatementHandle& statement, const std::string& sql) {
    const std::string name = session.name_of(0, sql);
    for (std::size_t i = 0; i < parameters_.size(); ++i) {
      session.check(parameters_[i].bind(statement, i + 1), statement, name);
    }
    session.run(statement, sql, name);
  }

 private:
  std::vector<Parameter> parameters_;
};

class KeyWriter {
 public:
  KeyWriter(Session& session, const UpdateTarget& target, const std::vector<ResultColumn>& columns,
            const Row& row, const Changes& changes)
      : session_(session), target_(target), columns_(columns), row_(row), changes_(changes) {
    update_.table = target.table;
    for (const auto& [position, value] : changes) {
      update_.changed.push_back(target.columns[position]);
    }
    update_.key = old_values(target.key, row);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const bool is_key = std::find(target.key.begin(), target.key.end(), i) != target.key.end();
      if (!is_key && target.has_column(i) && columns[i].type.comparable) others_.push_back(i);
    }
    update_.others = old_values(others_, row);
  }

  void write() {
    ParameterList parameters;
    for (const auto& [position, value] : changes_) parameters.add(value, columns_[position]);
    add_conditions(parameters, target_.key);
    add_conditions(parameters, others_);
    add_conditions(parameters, target_.key);
    const std::string sql = update_text(update_, quote());
    const StatementHandle statement = session_.new_statement();
    parameters.run(session_, statement, sql);
    const std::int64_t written = session_.last_row_count(statement, session_.name_of(0, sql));
    if (written < 0) {
      throw DatabaseError("The database does not tell whether the row was written.", "HY000");
    }
    if (written == 0) report_failure();
    if (written != 1) {
      throw DatabaseError("The database has changed " + std::to_string(written) +
                              " rows instead of the current one.",
                          "HY000");
    }
  }

  Row read_again() {
    Row row = row_;
    for (const auto& [position, value] : changes_) row[position] = value;
    std::vector<std::size_t> positions;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (!target_.has_column(i)) continue;
      positions.push_back(i);
      names.push_back(target_.columns[i]);
    }
    ParameterList parameters;
    for (const std::size_t position : target_.key) {
      parameters.add_condition(row[position], columns_[position]);
    }
    const std::string sql =
        select_text(target_.table, names, old_values(target_.key, row), quote());
    const std::string name = session_.name_of(0, sql);
    const StatementHandle statement = session_.new_statement();
    parameters.run(session_, statement, sql);
    const auto columns = read_columns(session_, statement, name);
    const ResultRows rows = read_rows(session_, statement, columns, name);
    if (rows.size() == 1 && columns.size() == positions.size()) {
      for (std::size_t i = 0; i < positions.size(); ++i) row[positions[i]] = rows.value(0, i);
    }
    return row;
  }

 private:
  std::vector<OldValue> old_values(const std::vector<std::size_t>& positions,
                                   const Row& row) const {
    std::vector<OldValue> values;
    for (const std::size_t position : positions) {
      values.push_back({target_.columns[position], row[position].is_null()});
    }
    return values;
  }

  void add_conditions(ParameterList& parameters, const std::vector<std::size_t>& positions) const {
    for (const std::size_t position : positions) {
      parameters.add_condition(row_[position], columns_[position]);
    }
  }

  [[noreturn]] void report_failure() {
    ParameterList parameters;
    add_conditions(parameters, target_.key);
    const std::string sql = count_text(update_, quote());
    const StatementHandle statement = session_.new_statement();
    parameters.run(session_, statement, sql);
    const std::string name = session_.name_of(0, sql);
    const ResultRows rows =
        read_rows(session_, statement, read_columns(session_, statement, name), name);
    const std::int32_t count = rows.value(0, 0).integer();
    if (count == 0) report_deleted();
    if (count == 1) report_changed();
    throw DatabaseError("The key of the row names " + std::to_string(count) + " rows of " +
                            target_.table.table + "; nothing was written.",
                        "HY000");
  }

  const std::string& quote() const { return session_.traits().quote; }

  Session& session_;
  const UpdateTarget& target_;
  const std::vector<ResultColumn>& columns_;
  const Row& row_;
  const Changes& changes_;
  SearchedUpdate update_;
  std::vector<std::size_t> others_;
};

// The row as it is read after it was written. It is written then, whatever becomes of the reading:
// a cursor may lose a row whose key has changed.
template <class Read>
Row or_as_written(const Row& row, const Changes& changes, const Read& read) {
  try {
    return read();
  } catch (const DatabaseError&) {
    Row written = row;
    for (const auto& [position, value] : changes) written[position] = value;
    return written;
  }
}

}  // namespace

void ask_for_cursor(Session& session, const StatementHandle& statement, LockType lock) {
  if (!session.traits().updatable_cursors) return;
  const SQLULEN concurrency = lock == LockType::kPessimistic ? SQL_CONCUR_LOCK : SQL_CONCUR_ROWVER;
  // A driver that cannot do either chooses something else, which has_cursor finds out.
  SQLSetStmtAttr(statement.get(), SQL_ATTR_CURSOR_TYPE, attribute_value(SQL_CURSOR_KEYSET_DRIVEN),
                 0);
  SQLSetStmtAttr(statement.get(), SQL_ATTR_CONCURRENCY, attribute_value(concurrency), 0);
}

bool has_cursor(const StatementHandle& statement) {
  SQLULEN type = SQL_CURSOR_FORWARD_ONLY;
  SQLULEN concurrency = SQL_CONCUR_READ_ONLY;
  const bool known =
      SQL_SUCCEEDED(SQLGetStmtAttr(statement.get(), SQL_ATTR_CURSOR_TYPE, &type, 0, nullptr)) &&
      SQL_SUCCEEDED(
          SQLGetStmtAttr(statement.get(), SQL_ATTR_CONCURRENCY, &concurrency, 0, nullptr));
  return known && type != SQL_CURSOR_FORWARD_ONLY && concurrency != SQL_CONCUR_READ_ONLY;
}

Row write_through_cursor(Session& session, const StatementHandle& cursor,
                         const std::vector<ResultColumn>& columns, std::size_t position,
                         const Row& row, const Changes& changes, const std::string& name) {
  if (fetch_again(session, cursor, columns, position, name) != row) report_changed();
  {
    const BoundChanges bound(session, cursor, changes, columns, name);
    const RowStatus status(cursor);
    session.check(SQLSetPos(cursor.get(), 1, SQL_UPDATE, SQL_LOCK_NO_CHANGE), cursor, name);
    if (!status.is(SQL_ROW_UPDATED)) report_conflict();
  }
  return or_as_written(row, changes,
                       [&] { return fetch_again(session, cursor, columns, position, name); });
}

UpdateTarget find_target(Session& session, std::string_view query,
                         const std::vector<ResultColumn>& columns,
                         const std::vector<SourceColumn>& sources) {
  const std::optional<PlainQuery> plain = plain_query(query);
  if (!plain) refuse_target(kNotOneTable);
  UpdateTarget target = named_target(sources);
  if (target.table.table.empty()) {
    target = target_of(*plain, columns);
  } else if (!text::equal_ignoring_case(target.table.table, plain->table.table)) {
    refuse_target(kNotOneTable);
  }
  const std::string& table = target.table.table;
  for (const std::string& column : session.primary_key(target.table)) {
    const auto found = std::find_if(
        target.columns.begin(), target.columns.end(),
        [&column](const std::string& c) { return text::equal_ignoring_case(c, column); });
    if (found == target.columns.end()) {
      refuse_target("the column " + column + " of the key of " + table + " is not among them");
    }
    target.key.push_back(static_cast<std::size_t>(found - target.columns.begin()));
  }
  if (target.key.empty()) refuse_target("the driver names no primary key of " + table);
  return target;
}

Row write_by_key(Session& session, const UpdateTarget& target,
                 const std::vector<ResultColumn>& columns, const Row& row, const Changes& changes) {
  KeyWriter writer(session, target, columns, row, changes);
  writer.write();
  return or_as_written(row, changes, [&] { return writer.read_again(); });
}

}  // namespace kestrova::odbc
