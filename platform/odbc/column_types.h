// The type codes of ODBC and those of the port.
#pragma once

#include <string_view>

#include "platform/database.h"

namespace kestrova::odbc {

// How a value of a column is fetched and what it becomes.
enum class ReadAs {
  kBit,         // bool
  kInteger,     // 64-bit whole number
  kDouble,      // double
  kDecimal,     // digits as text, so that none is lost
  kText,        // UTF-16
  kBytes,       // bytes
  kDate,        // DateTime at midnight
  kTimestamp,   // DateTime with fraction
  kTimeText,    // the time of day, as text since ODBC's own structure has no fraction
  kOffsetText,  // date and time with an offset, as text since no structure of ODBC holds it
};

struct ColumnType {
  FieldType type = FieldType::kVarWChar;
  ReadAs read_as = ReadAs::kText;
  bool is_long = false;     // fetched in pieces
  bool comparable = false;  // an old value finds its row again: exact and short
};

// What the driver tells of a column.
struct DescribedType {
  int sql_type = 0;            // ODBC's code, or the driver's own
  std::string_view name = "";  // the database's name for it
  bool is_unsigned = false;
  std::size_t size = 0;  // characters, bytes or digits; 0 when there is no limit
};

// A type that nobody knows is read as text.
ColumnType column_type(const DescribedType& described);

}  // namespace kestrova::odbc
