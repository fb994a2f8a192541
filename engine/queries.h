// Small steps that the operations of Comm_Sel share.
#pragma once

#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/database.h"
#include "platform/error.h"

namespace kestrova {

// How a query is opened.
struct Opening {
  CursorType cursor;
  LockType lock;
};

// Every query but these: it is read once, from its first row to its last.
inline constexpr Opening kReadOnce = {CursorType::kForwardOnly, LockType::kReadOnly};
// The field catalogue of the editor, which is searched again and again.
inline constexpr Opening kSearched = {CursorType::kStatic, LockType::kReadOnly};
// The stored selection of a contract, which is loaded from its row and written back into it.
inline constexpr Opening kWritable = {CursorType::kKeyset, LockType::kOptimistic};
// The names of the fields that FillListCriteria shows: as the provider likes it best.
inline constexpr Opening kUnspecified = {CursorType::kUnspecified, LockType::kUnspecified};

inline std::unique_ptr<Recordset> open_query(Connection& connection, std::string_view sql,
                                             const Opening& opening = kReadOnce) {
  return connection.open(sql, opening.cursor, opening.lock);
}

// The row set that a caller passed. Raises ObjectNotSet when it is absent.
inline Recordset& row_set(Recordset* rows) {
  if (rows == nullptr) throw ObjectNotSet("The row set over SELEKTION is not set.");
  return *rows;
}

// A field identifier kept as item data. Raises Overflow beyond 16 bits.
inline std::int16_t to_field_id(std::int32_t item_data) {
  if (item_data < std::numeric_limits<std::int16_t>::min() ||
      item_data > std::numeric_limits<std::int16_t>::max()) {
    throw Overflow("The field number " + std::to_string(item_data) + " does not fit 16 bits.");
  }
  return static_cast<std::int16_t>(item_data);
}

// The identifier of the selected field. Raises InvalidArgument when none is selected.
inline std::int16_t selected_field_id(const ComboBox& fields) {
  return to_field_id(fields.item_data(fields.index()));
}

}  // namespace kestrova
