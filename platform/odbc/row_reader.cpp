#include "platform/odbc/row_reader.h"

#include <algorithm>
#include <cstring>

#include "platform/error.h"
#include "platform/odbc/column_values.h"

namespace kestrova::odbc {
namespace {

// A block is as large as the processor's cache likes it; more rows save no further round trip.
constexpr std::size_t kBlockBytes = 256 * 1024;
constexpr std::size_t kMostRowsInBlock = 1000;

constexpr std::size_t kPieceBytes = 64 * 1024;

// Reads a value of the row on which the statement stands into the buffer; false for NULL.
bool read_pieces(Session& session, const StatementHandle& statement, ReadAs read_as,
                 std::size_t position, const std::string& name, std::vector<std::byte>& bytes) {
  const std::size_t terminator = terminator_size(read_as);
  std::size_t read = 0;
  for (;;) {
    bytes.resize(read + kPieceBytes);
    SQLLEN length = 0;
    const SQLRETURN result =
        SQLGetData(statement.get(), static_cast<SQLUSMALLINT>(position + 1), c_type(read_as),
                   bytes.data() + read, SQLLEN{kPieceBytes}, &length);
    if (!session.has_data(result, statement, name)) break;
    if (length == SQL_NULL_DATA) return false;
    const bool is_last =
        length != SQL_NO_TOTAL && static_cast<std::size_t>(length) + terminator <= kPieceBytes;
    read += is_last ? static_cast<std::size_t>(length) : kPieceBytes - terminator;
    if (is_last) break;
  }
  bytes.resize(read);
  return true;
}

// The buffer of one column for all rows of a block.
struct BoundColumn {
  std::size_t width = 0;  // bytes per row
  std::size_t terminator = 0;
  bool has_length = false;  // it may be shorter than its width
  std::vector<std::byte> data;
  std::vector<SQLLEN> indicators;

  bool is_cut_off(std::size_t row) const {
    const SQLLEN length = indicators[row];
    if (!has_length) return false;
    return length == SQL_NO_TOTAL ||
           (length >= 0 && static_cast<std::size_t>(length) + terminator > width);
  }
};

class BlockReader {
 public:
  BlockReader(Session& session, const StatementHandle& statement,
              const std::vector<ResultColumn>& columns, const std::string& name)
      : session_(session),
        statement_(statement),
        columns_(columns),
        name_(name),
        row_(columns.size()),
        whole_(columns.size()) {
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
    ResultRows rows(columns_);
    std::size_t before = 0;  // rows of earlier blocks
    while (session_.has_data(SQLFetch(statement_.get()), statement_, name_)) {
      if (fetched_ == 0) {
        throw DatabaseError("The driver does not tell how many rows it has read.", "HY000");
      }
      for (std::size_t i = 0; i < fetched_; ++i) {
        if (status_[i] == SQL_ROW_DELETED) continue;
        if (status_[i] == SQL_ROW_ERROR) session_.fail(statement_, name_);
        for (std::size_t column = 0; column < columns_.size(); ++column) {
          row_[column] = raw_value(column, i);
        }
        rows.add_row(before + i + 1, row_);
      }
      before += fetched_;
    }
    return rows;
  }

 private:
  void bind() {
    std::size_t row_bytes = 0;
    for (const ResultColumn& column : columns_) {
      BoundColumn& bound = bound_.emplace_back();
      bound.width = buffer_size(column.type.read_as, column.size);
      bound.terminator = terminator_size(column.type.read_as);
      bound.has_length = bound.terminator > 0 || column.type.read_as == ReadAs::kBytes;
      row_bytes += bound.width + sizeof(SQLLEN);
    }
    const DriverTraits& traits = session_.traits();
    const bool can_block = traits.sizes_hold || traits.rereads_blocks;
    const std::size_t rows =
        can_block ? std::clamp<std::size_t>(kBlockBytes / row_bytes, 1, kMostRowsInBlock) : 1;
    status_.assign(rows, SQL_ROW_SUCCESS);  // also of a driver that does not tell
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

  RawValue raw_value(std::size_t column, std::size_t row) {
    const BoundColumn& bound = bound_[column];
    if (bound.indicators[row] == SQL_NULL_DATA) return std::nullopt;
    if (bound.is_cut_off(row)) return whole_value(column, row);
    // Of a value of fixed size some drivers tell no length.
    const std::size_t length =
        bound.has_length ? static_cast<std::size_t>(bound.indicators[row]) : bound.width;
    return std::span(bound.data).subspan(row * bound.width, length);
  }

  // A value that is longer than its column says.
  RawValue whole_value(std::size_t column, std::size_t row) {
    if (session_.traits().rereads_blocks) {
      session_.check(SQLSetPos(statement_.get(), static_cast<SQLSETPOSIROW>(row + 1), SQL_POSITION,
                               SQL_LOCK_NO_CHANGE),
                     statement_, name_);
    } else if (status_.size() > 1) {
      throw DatabaseError("A value of the column '" + columns_[column].name +
                              "' is longer than the driver says that the column is.",
                          "22001");
    }
    std::vector<std::byte>& whole = whole_[column];
    const ReadAs read_as = columns_[column].type.read_as;
    const bool has_value = read_pieces(session_, statement_, read_as, column, name_, whole);
    return has_value ? RawValue(whole) : std::nullopt;
  }

  Session& session_;
  const StatementHandle& statement_;
  const std::vector<ResultColumn>& columns_;
  const std::string& name_;
  std::vector<BoundColumn> bound_;
  std::vector<RawValue> row_;
  std::vector<std::vector<std::byte>> whole_;  // values of the row that did not fit
  std::vector<SQLUSMALLINT> status_;
  SQLULEN fetched_ = 0;
};

ResultRows read_in_pieces(Session& session, const StatementHandle& statement,
                          const std::vector<ResultColumn>& columns, const std::string& name) {
  ResultRows rows(columns);
  std::vector<RawValue> row(columns.size());
  std::vector<std::vector<std::byte>> bytes(columns.size());
  for (std::size_t position = 1; session.has_data(SQLFetch(statement.get()), statement, name);
       ++position) {
    // In the order of the columns, which is all that many drivers allow.
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const bool has_value =
          read_pieces(session, statement, columns[i].type.read_as, i, name, bytes[i]);
      row[i] = has_value ? RawValue(bytes[i]) : std::nullopt;
    }
    rows.add_row(position, row);
  }
  return rows;
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

Row read_row(Session& session, const StatementHandle& statement,
             const std::vector<ResultColumn>& columns, const std::string& name) {
  Row row;
  std::vector<std::byte> bytes;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const ReadAs read_as = columns[i].type.read_as;
    const bool has_value = read_pieces(session, statement, read_as, i, name, bytes);
    row.push_back(has_value ? to_value(read_as, bytes.data(), bytes.size()) : Value());
  }
  return row;
}

ResultRows::ResultRows(const std::vector<ResultColumn>& columns) {
  for (const ResultColumn& column : columns) kinds_.push_back(column.type.read_as);
}

void ResultRows::add_row(std::size_t position, std::span<const RawValue> values) {
  if (size() % kChunkRows == 0) add_chunk();
  positions_.push_back(position);
  Chunk& chunk = chunks_.back();
  std::size_t end = chunk.bytes.size();
  std::size_t length = 0;
  for (const RawValue& value : values) length += value ? value->size() : 0;
  chunk.bytes.resize(end + length);
  for (const RawValue& value : values) {
    if (!value) {
      chunk.starts.back() |= kNull;
    } else if (!value->empty()) {
      std::memcpy(chunk.bytes.data() + end, value->data(), value->size());
      end += value->size();
    }
    chunk.starts.push_back(end);
  }
}

void ResultRows::add_chunk() {
  // A chunk is about as large as the one before it.
  const std::size_t expected = chunks_.empty() ? 0 : chunks_.back().bytes.size();
  Chunk& chunk = chunks_.emplace_back();
  chunk.bytes.reserve(expected + expected / 8);
  chunk.starts.reserve(kChunkRows * kinds_.size() + 1);
  chunk.starts.push_back(0);
}

Value ResultRows::value(std::size_t row, std::size_t column) const {
  if (!replaced_.empty()) {
    const auto replaced = replaced_.find(row);
    if (replaced != replaced_.end()) return replaced->second[column];
  }
  const Chunk& chunk = chunks_[row / kChunkRows];
  const std::uint64_t* const start = &chunk.starts[row % kChunkRows * kinds_.size() + column];
  if ((start[0] & kNull) != 0) return {};
  const std::uint64_t end = start[1] & ~kNull;
  return to_value(kinds_[column], chunk.bytes.data() + start[0], end - start[0]);
}

Row ResultRows::row(std::size_t row) const {
  Row values;
  for (std::size_t i = 0; i < kinds_.size(); ++i) values.push_back(value(row, i));
  return values;
}

}  // namespace kestrova::odbc
