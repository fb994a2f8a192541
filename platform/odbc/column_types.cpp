#include "platform/odbc/column_types.h"

#include <algorithm>
#include <array>

#include "platform/odbc/odbc_handle.h"
#include "platform/text.h"

namespace kestrova::odbc {
namespace {

// Types of SQL Server that ODBC itself does not know.
enum ServerType : int {
  kSsVariant = -150,
  kSsUdt = -151,
  kSsXml = -152,
  kSsTime = -154,
  kSsTimestampOffset = -155,
};

// A text or byte column of more is announced as long by no driver, but is one: nvarchar(max) has
// the size 0 (no limit) or 2^30, and a block of such rows would not fit in memory.
constexpr std::size_t kLongSize = 8'000;

enum class Sign { kAny, kUnsigned };
enum class Size { kAny, kLong };

struct TypeRow {
  int sql_type;
  Sign sign;
  Size size;
  std::string_view name;  // "" for any
  ColumnType column;
};

using enum FieldType;

// clang-format off
// The first row that fits counts.
constexpr std::array kTypes = {
    TypeRow{SQL_BIT,            Sign::kAny,      Size::kAny,  "",           {kBoolean,          ReadAs::kBit,        false, true}},
    TypeRow{SQL_TINYINT,        Sign::kUnsigned, Size::kAny,  "",           {kUnsignedTinyInt,  ReadAs::kInteger,    false, true}},
    TypeRow{SQL_TINYINT,        Sign::kAny,      Size::kAny,  "",           {kTinyInt,          ReadAs::kInteger,    false, true}},
    TypeRow{SQL_SMALLINT,       Sign::kUnsigned, Size::kAny,  "",           {kUnsignedSmallInt, ReadAs::kInteger,    false, true}},
    TypeRow{SQL_SMALLINT,       Sign::kAny,      Size::kAny,  "",           {kSmallInt,         ReadAs::kInteger,    false, true}},
    TypeRow{SQL_INTEGER,        Sign::kUnsigned, Size::kAny,  "",           {kUnsignedInt,      ReadAs::kInteger,    false, true}},
    TypeRow{SQL_INTEGER,        Sign::kAny,      Size::kAny,  "",           {kInteger,          ReadAs::kInteger,    false, true}},
    TypeRow{SQL_BIGINT,         Sign::kUnsigned, Size::kAny,  "",           {kUnsignedBigInt,   ReadAs::kDecimal,    false, true}},
    TypeRow{SQL_BIGINT,         Sign::kAny,      Size::kAny,  "",           {kBigInt,           ReadAs::kInteger,    false, true}},
    TypeRow{SQL_REAL,           Sign::kAny,      Size::kAny,  "",           {kSingle,           ReadAs::kDouble,     false, false}},
    TypeRow{SQL_FLOAT,          Sign::kAny,      Size::kAny,  "",           {kDouble,           ReadAs::kDouble,     false, false}},
    TypeRow{SQL_DOUBLE,         Sign::kAny,      Size::kAny,  "",           {kDouble,           ReadAs::kDouble,     false, false}},
    TypeRow{SQL_DECIMAL,        Sign::kAny,      Size::kAny,  "MONEY",      {kCurrency,         ReadAs::kDecimal,    false, true}},
    TypeRow{SQL_DECIMAL,        Sign::kAny,      Size::kAny,  "SMALLMONEY", {kCurrency,         ReadAs::kDecimal,    false, true}},
    TypeRow{SQL_DECIMAL,        Sign::kAny,      Size::kAny,  "",           {kNumeric,          ReadAs::kDecimal,    false, true}},
    TypeRow{SQL_NUMERIC,        Sign::kAny,      Size::kAny,  "",           {kNumeric,          ReadAs::kDecimal,    false, true}},
    TypeRow{SQL_CHAR,           Sign::kAny,      Size::kAny,  "",           {kChar,             ReadAs::kText,       false, true}},
    TypeRow{SQL_VARCHAR,        Sign::kAny,      Size::kLong, "",           {kLongVarChar,      ReadAs::kText,       true,  false}},
    TypeRow{SQL_VARCHAR,        Sign::kAny,      Size::kAny,  "",           {kVarChar,          ReadAs::kText,       false, true}},
    TypeRow{SQL_LONGVARCHAR,    Sign::kAny,      Size::kAny,  "",           {kLongVarChar,      ReadAs::kText,       true,  false}},
    TypeRow{SQL_WCHAR,          Sign::kAny,      Size::kAny,  "",           {kWChar,            ReadAs::kText,       false, true}},
    TypeRow{SQL_WVARCHAR,       Sign::kAny,      Size::kLong, "",           {kLongVarWChar,     ReadAs::kText,       true,  false}},
    TypeRow{SQL_WVARCHAR,       Sign::kAny,      Size::kAny,  "",           {kVarWChar,         ReadAs::kText,       false, true}},
    TypeRow{SQL_WLONGVARCHAR,   Sign::kAny,      Size::kAny,  "",           {kLongVarWChar,     ReadAs::kText,       true,  false}},
    TypeRow{SQL_BINARY,         Sign::kAny,      Size::kAny,  "",           {kBinary,           ReadAs::kBytes,      false, false}},
    TypeRow{SQL_VARBINARY,      Sign::kAny,      Size::kLong, "",           {kLongVarBinary,    ReadAs::kBytes,      true,  false}},
    TypeRow{SQL_VARBINARY,      Sign::kAny,      Size::kAny,  "",           {kVarBinary,        ReadAs::kBytes,      false, false}},
    TypeRow{SQL_LONGVARBINARY,  Sign::kAny,      Size::kAny,  "",           {kLongVarBinary,    ReadAs::kBytes,      true,  false}},
    TypeRow{SQL_TYPE_DATE,      Sign::kAny,      Size::kAny,  "",           {kDBDate,           ReadAs::kDate,       false, true}},
    TypeRow{SQL_TYPE_TIME,      Sign::kAny,      Size::kAny,  "",           {kDBTime,           ReadAs::kTimeText,   false, false}},
    TypeRow{SQL_TYPE_TIMESTAMP, Sign::kAny,      Size::kAny,  "",           {kDBTimeStamp,      ReadAs::kTimestamp,  false, false}},
    TypeRow{SQL_GUID,           Sign::kAny,      Size::kAny,  "",           {kGuid,             ReadAs::kText,       false, false}},
    TypeRow{kSsVariant,          Sign::kAny,      Size::kAny,  "",           {kVariant,          ReadAs::kText,       true,  false}},
    TypeRow{kSsUdt,             Sign::kAny,      Size::kAny,  "",           {kLongVarBinary,    ReadAs::kBytes,      true,  false}},
    TypeRow{kSsXml,              Sign::kAny,      Size::kAny,  "",           {kLongVarWChar,     ReadAs::kText,       true,  false}},
    TypeRow{kSsTime,             Sign::kAny,      Size::kAny,  "",           {kDBTime,           ReadAs::kTimeText,   false, false}},
    TypeRow{kSsTimestampOffset,    Sign::kAny,      Size::kAny,  "",           {kDBTimeStamp,      ReadAs::kOffsetText, false, false}},
};
// clang-format on

bool fits(const TypeRow& row, const DescribedType& described) {
  const bool is_long = described.size == 0 || described.size > kLongSize;
  return row.sql_type == described.sql_type && (row.sign == Sign::kAny || described.is_unsigned) &&
         (row.size == Size::kAny || is_long) &&
         (row.name.empty() || text::equal_ignoring_case(row.name, described.name));
}

}  // namespace

ColumnType column_type(const DescribedType& described) {
  const auto row = std::find_if(kTypes.begin(), kTypes.end(),
                                [&](const TypeRow& r) { return fits(r, described); });
  if (row != kTypes.end()) return row->column;
  return {.type = kVarWChar, .read_as = ReadAs::kText, .is_long = true, .comparable = false};
}

}  // namespace kestrova::odbc
