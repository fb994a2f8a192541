// Reads a result whole: in blocks of rows, or row by row and piece by piece where a value has no
// upper bound.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/odbc/column_types.h"
#include "platform/odbc/odbc_session.h"
#include "platform/value.h"

namespace kestrova::odbc {

struct ResultColumn {
  std::string name;
  ColumnType type;
  std::size_t size = 0;
  int digits = 0;
};

// The columns of the statement's present result.
std::vector<ResultColumn> read_columns(Session& session, const StatementHandle& statement,
                                       const std::string& name);

using Row = std::vector<Value>;

// The bytes of a value as the driver gave them; nothing for NULL.
using RawValue = std::optional<std::span<const std::byte>>;

// All rows, as the driver gave them: a value becomes one of the port when it is asked for, which is
// faster than to keep it as one, and takes less memory.
class ResultRows {
 public:
  ResultRows() = default;
  explicit ResultRows(const std::vector<ResultColumn>& columns);

  std::size_t size() const { return positions_.size(); }
  // The row's position in the result, counted from 1; rows that were deleted while it was read are
  // left out.
  std::size_t position(std::size_t row) const { return positions_[row]; }
  // Raises DatabaseError (22008) for a date that the port cannot hold.
  Value value(std::size_t row, std::size_t column) const;
  Row row(std::size_t row) const;

  // A value for each column.
  void add_row(std::size_t position, std::span<const RawValue> values);
  void replace(std::size_t row, Row values) { replaced_[row] = std::move(values); }

 private:
  // The values of some rows one behind the other: value i reaches from starts[i] to starts[i + 1].
  struct Chunk {
    std::vector<std::byte> bytes;
    std::vector<std::uint64_t> starts;  // with kNull added for a NULL
  };
  void add_chunk();

  static constexpr std::size_t kChunkRows = 1024;
  static constexpr std::uint64_t kNull = std::uint64_t{1} << 63U;

  std::vector<ReadAs> kinds_;
  std::vector<Chunk> chunks_;
  std::vector<std::size_t> positions_;
  std::map<std::size_t, Row> replaced_;  // what was written
};

ResultRows read_rows(Session& session, const StatementHandle& statement,
                     const std::vector<ResultColumn>& columns, const std::string& name);

// The row on which the statement stands, in pieces.
Row read_row(Session& session, const StatementHandle& statement,
             const std::vector<ResultColumn>& columns, const std::string& name);

}  // namespace kestrova::odbc
