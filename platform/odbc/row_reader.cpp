#include "platform/odbc/row_reader.h"

#include <algorithm>
#include <memory>

#include "platform/error.h"
#include "platform/odbc/column_values.h"

namespace kestrova::odbc {
namespace {

// A block is as large as the processor's cache likes it; more rows save no further round trip.
constexpr std::size_t kBlockBytes = 256 * 1024;
constexpr std::size_t kMostRowsInBlock = 1000;

constexpr std::size_t kPieceBytes = 64 * 1024;

// The buffer of one column for all rows of a block.
struct BoundColumn {
  std::size_t width = 0;  // bytes per row
  std::size_t terminator = 0;
  std::vector<std::byte> data;
  std::vector<SQLLEN> indicators;

  bool is_cut_off(std::size_t row) const {
    const SQLLEN length = indicators[row];
    return length == SQL_NO_TOTAL ||
           (length >= 0 && static_cast<std::size_t>(length) + terminator > width);
  }
};

class BlockReader {
 public:
  BlockReader(Session& session, const StatementHandle& statement,
              const std::vector<ResultColumn>& columns, const std::string& name)
      : session_(session), statement_(statement), columns_(columns), name_(name) {
    bind();
  }

  // The driver must not write into buffers that are gone.
  ~BlockReader() {
    SQLFreeStmt(statement_.get(), SQL_UNBIND);
    SQLSetStmtAttr(statement_.get(), SQL_ATTR_ROW_ARRAY_SIZE, attribute_value(1), 0);
    SQLSetStmtAttr(statement_.get(), SQL_ATTR_ROWS_FETCHED_PTR, nullptr, 0);
    SQLSetStmtAttr(statement_.get(), SQL_ATTR_ROW_STATUS_PTR, nullptr, 0);
  }
  BlockReader(const BlockReader&) = delete;
  BlockReader& operator=(const BlockReader&) = delete;

  ResultRows read_all() {
    ResultRows rows;
    std::size_t before = 0;  // rows of earlier blocks
    for (;;) {
      const SQLRETURN result = SQLFetch(statement_.get());
      if (result == SQL_NO_DATA) return rows;
      session_.check(result, statement_, name_);
      for (std::size_t i = 0; i < fetched_; ++i) {
        if (status_[i] == SQL_ROW_DELETED || status_[i] == SQL_ROW_NOROW) continue;
        if (status_[i] == SQL_ROW_ERROR) session_.fail(statement_, name_);
        rows.positions.push_back(before + i + 1);
        for (std::size_t column = 0; column < columns_.size(); ++column) {
          rows.values.push_back(value(column, i));
        }
      }
      before += fetched_;
    }
  }

 private:
  void bind() {
    std::size_t row_bytes = 0;
    for (const ResultColumn& column : columns_) {
      BoundColumn& bound = bound_.emplace_back();
      bound.width = buffer_size(column.type.read_as, column.size);
      bound.terminator = terminator_size(column.type.read_as);
      row_bytes += bound.width + sizeof(SQLLEN);
    }
    const DriverTraits& traits = session_.traits();
    const bool can_block = traits.sizes_hold || traits.rereads_blocks;
    const std::size_t rows =
        can_block ? std::clamp<std::size_t>(kBlockBytes / row_bytes, 1, kMostRowsInBlock) : 1;
    status_.assign(rows, SQL_ROW_NOROW);
    set(SQL_ATTR_ROW_ARRAY_SIZE, attribute_value(rows));
    set(SQL_ATTR_ROWS_FETCHED_PTR, &fetched_);
    set(SQL_ATTR_ROW_STATUS_PTR, status_.data());
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      BoundColumn& bound = bound_[i];
      bound.data.resize(bound.width * rows);
      bound.indicators.assign(rows, SQL_NULL_DATA);
      session_.check(SQLBindCol(statement_.get(), static_cast<SQLUSMALLINT>(i + 1),
                                c_type(columns_[i].type.read_as), bound.data.data(),
                                static_cast<SQLLEN>(bound.width), bound.indicators.data()),
                     statement_, name_);
    }
  }

  void set(SQLINTEGER attribute, SQLPOINTER value) {
    session_.check(SQLSetStmtAttr(statement_.get(), attribute, value, 0), statement_, name_);
  }

  Value value(std::size_t column, std::size_t row) {
    const BoundColumn& bound = bound_[column];
    if (bound.indicators[row] == SQL_NULL_DATA) return {};
    if (bound.is_cut_off(row)) return whole_value(column, row);
    return to_value(columns_[column].type.read_as, bound.data.data() + row * bound.width,
                    static_cast<std::size_t>(bound.indicators[row]));
  }

  // A value that is longer than its column says.
  Value whole_value(std::size_t column, std::size_t row) {
    if (session_.traits().rereads_blocks) {
      session_.check(SQLSetPos(statement_.get(), static_cast<SQLSETPOSIROW>(row + 1), SQL_POSITION,
                               SQL_LOCK_NO_CHANGE),
                     statement_, name_);
    } else if (status_.size() > 1) {
      throw DatabaseError("A value of the column '" + columns_[column].name +
                              "' is longer than the driver says that the column is.",
                          "22001");
    }
    return read_value(session_, statement_, columns_[column], column, name_);
  }

  Session& session_;
  const StatementHandle& statement_;
  const std::vector<ResultColumn>& columns_;
  const std::string& name_;
  std::vector<BoundColumn> bound_;
  std::vector<SQLUSMALLINT> status_;
  SQLULEN fetched_ = 0;
};

ResultRows read_in_pieces(Session& session, const StatementHandle& statement,
                          const std::vector<ResultColumn>& columns, const std::string& name) {
  ResultRows rows;
  for (std::size_t position = 1;; ++position) {
    const SQLRETURN result = SQLFetch(statement.get());
    if (result == SQL_NO_DATA) return rows;
    session.check(result, statement, name);
    rows.positions.push_back(position);
    // In the order of the columns, which is all that many drivers allow.
    for (std::size_t i = 0; i < columns.size(); ++i) {
      rows.values.push_back(read_value(session, statement, columns[i], i, name));
    }
  }
}

}  // namespace

std::vector<ResultColumn> read_columns(Session& session, const StatementHandle& statement,
                                       const std::string& name) {
  std::vector<ResultColumn> columns;
  const std::size_t count = session.column_count(statement, name);
  for (std::size_t i = 0; i < count; ++i) {
    DescribedColumn described = session.describe(statement, i, name);
    const ColumnType type = column_type({.sql_type = described.sql_type,
                                         .name = described.type_name,
                                         .is_unsigned = described.is_unsigned,
                                         .size = described.size});
    columns.push_back({std::move(described.name), type, described.size, described.digits});
  }
  return columns;
}

ResultRows read_rows(Session& session, const StatementHandle& statement,
                     const std::vector<ResultColumn>& columns, const std::string& name) {
  const bool has_long = std::any_of(columns.begin(), columns.end(),
                                    [](const ResultColumn& column) { return column.type.is_long; });
  if (has_long) return read_in_pieces(session, statement, columns, name);
  return BlockReader(session, statement, columns, name).read_all();
}

Value read_value(Session& session, const StatementHandle& statement, const ResultColumn& column,
                 std::size_t position, const std::string& name) {
  const ReadAs read_as = column.type.read_as;
  const std::size_t terminator = terminator_size(read_as);
  std::vector<std::byte> whole;
  const auto piece = std::make_unique<std::byte[]>(kPieceBytes);
  for (;;) {
    SQLLEN length = 0;
    const SQLRETURN result = SQLGetData(statement.get(), static_cast<SQLUSMALLINT>(position + 1),
                                        c_type(read_as), piece.get(), SQLLEN{kPieceBytes}, &length);
    if (result == SQL_NO_DATA) break;
    session.check(result, statement, name);
    if (length == SQL_NULL_DATA) return {};
    const bool is_last =
        length != SQL_NO_TOTAL && static_cast<std::size_t>(length) + terminator <= kPieceBytes;
    const std::size_t received =
        is_last ? static_cast<std::size_t>(length) : kPieceBytes - terminator;
    if (is_last && whole.empty()) return to_value(read_as, piece.get(), received);
    whole.insert(whole.end(), piece.get(), piece.get() + received);
    if (is_last) break;
  }
  return to_value(read_as, whole.data(), whole.size());
}

}  // namespace kestrova::odbc
