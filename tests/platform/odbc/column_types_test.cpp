// The type codes that drivers answer, SQL Server's own among them, and the port's.
#include "platform/odbc/column_types.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace kestrova::odbc {
namespace {

struct TypeCase {
  const char* name;
  DescribedType described;
  FieldType type;
  ReadAs read_as;
  bool is_long;
  bool comparable;
};

class OdbcType : public testing::TestWithParam<TypeCase> {};

TEST_P(OdbcType, BecomesTheProvidersCode) {
  const ColumnType type = column_type(GetParam().described);
  EXPECT_EQ(static_cast<int>(type.type), static_cast<int>(GetParam().type));
  EXPECT_EQ(type.read_as, GetParam().read_as);
  EXPECT_EQ(type.is_long, GetParam().is_long);
  EXPECT_EQ(type.comparable, GetParam().comparable);
}

// clang-format off
// The codes as numbers, which is how a driver answers them.
INSTANTIATE_TEST_SUITE_P(SqlServer, OdbcType, testing::Values(
    TypeCase{"bit",              {-7, "bit", true, 1},                  FieldType::kBoolean,         ReadAs::kBit,        false, true},
    TypeCase{"tinyint",          {-6, "tinyint", true, 3},              FieldType::kUnsignedTinyInt, ReadAs::kInteger,    false, true},
    TypeCase{"smallint",         {5, "smallint", false, 5},             FieldType::kSmallInt,        ReadAs::kInteger,    false, true},
    TypeCase{"int_identity",     {4, "int identity", false, 10},        FieldType::kInteger,         ReadAs::kInteger,    false, true},
    TypeCase{"bigint",           {-5, "bigint", false, 19},             FieldType::kBigInt,          ReadAs::kInteger,    false, true},
    TypeCase{"real",             {7, "real", false, 24},                FieldType::kSingle,          ReadAs::kDouble,     false, false},
    TypeCase{"float_53",         {6, "float", false, 53},               FieldType::kDouble,          ReadAs::kDouble,     false, false},
    TypeCase{"decimal",          {3, "decimal", false, 38},             FieldType::kNumeric,         ReadAs::kDecimal,    false, true},
    TypeCase{"numeric",          {2, "numeric", false, 12},             FieldType::kNumeric,         ReadAs::kDecimal,    false, true},
    TypeCase{"money",            {3, "money", false, 19},               FieldType::kCurrency,        ReadAs::kDecimal,    false, true},
    TypeCase{"smallmoney",       {3, "smallmoney", false, 10},          FieldType::kCurrency,        ReadAs::kDecimal,    false, true},
    TypeCase{"char_8000",        {1, "char", true, 8000},               FieldType::kChar,            ReadAs::kText,       false, true},
    TypeCase{"nchar",            {-8, "nchar", true, 10},               FieldType::kWChar,           ReadAs::kText,       false, true},
    TypeCase{"varchar",          {12, "varchar", true, 50},             FieldType::kVarChar,         ReadAs::kText,       false, true},
    TypeCase{"varchar_max",      {12, "varchar", true, 0},              FieldType::kLongVarChar,     ReadAs::kText,       true,  false},
    TypeCase{"nvarchar",         {-9, "nvarchar", true, 50},            FieldType::kVarWChar,        ReadAs::kText,       false, true},
    TypeCase{"nvarchar_4000",    {-9, "nvarchar", true, 4000},          FieldType::kVarWChar,        ReadAs::kText,       false, true},
    TypeCase{"nvarchar_max",     {-9, "nvarchar", true, 0},             FieldType::kLongVarWChar,    ReadAs::kText,       true,  false},
    TypeCase{"nvarchar_max_tds", {-9, "nvarchar", true, 1073741823},    FieldType::kLongVarWChar,    ReadAs::kText,       true,  false},
    TypeCase{"text",             {-1, "text", true, 2147483647},        FieldType::kLongVarChar,     ReadAs::kText,       true,  false},
    TypeCase{"ntext",            {-10, "ntext", true, 1073741823},      FieldType::kLongVarWChar,    ReadAs::kText,       true,  false},
    TypeCase{"binary",           {-2, "binary", true, 8},               FieldType::kBinary,          ReadAs::kBytes,      false, false},
    TypeCase{"varbinary",        {-3, "varbinary", true, 20},           FieldType::kVarBinary,       ReadAs::kBytes,      false, false},
    TypeCase{"varbinary_max",    {-3, "varbinary", true, 0},            FieldType::kLongVarBinary,   ReadAs::kBytes,      true,  false},
    TypeCase{"image",            {-4, "image", true, 2147483647},       FieldType::kLongVarBinary,   ReadAs::kBytes,      true,  false},
    TypeCase{"date",             {91, "date", true, 10},                FieldType::kDBDate,          ReadAs::kDate,       false, true},
    TypeCase{"datetime",         {93, "datetime", true, 23},            FieldType::kDBTimeStamp,     ReadAs::kTimestamp,  false, false},
    TypeCase{"smalldatetime",    {93, "smalldatetime", true, 16},       FieldType::kDBTimeStamp,     ReadAs::kTimestamp,  false, false},
    TypeCase{"datetime2",        {93, "datetime2", true, 27},           FieldType::kDBTimeStamp,     ReadAs::kTimestamp,  false, false},
    TypeCase{"time",             {-154, "time", true, 16},              FieldType::kDBTime,          ReadAs::kTimeText,   false, false},
    TypeCase{"datetimeoffset",   {-155, "datetimeoffset", true, 34},    FieldType::kDBTimeStamp,     ReadAs::kOffsetText, false, false},
    TypeCase{"uniqueidentifier", {-11, "uniqueidentifier", true, 36},   FieldType::kGuid,            ReadAs::kText,       false, false},
    TypeCase{"sql_variant",      {-150, "sql_variant", true, 8000},     FieldType::kVariant,         ReadAs::kText,       true,  false},
    TypeCase{"geometry",         {-151, "udt", true, 0},                FieldType::kLongVarBinary,   ReadAs::kBytes,      true,  false},
    TypeCase{"xml",              {-152, "xml", true, 0},                FieldType::kLongVarWChar,    ReadAs::kText,       true,  false}),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(OtherDrivers, OdbcType, testing::Values(
    TypeCase{"signed_tinyint",    {-6, "tinyint", false, 3},            FieldType::kTinyInt,          ReadAs::kInteger,   false, true},
    TypeCase{"unsigned_smallint", {5, "smallint unsigned", true, 5},    FieldType::kUnsignedSmallInt, ReadAs::kInteger,   false, true},
    TypeCase{"unsigned_int",      {4, "int unsigned", true, 10},        FieldType::kUnsignedInt,      ReadAs::kInteger,   false, true},
    TypeCase{"unsigned_bigint",   {-5, "bigint unsigned", true, 20},    FieldType::kUnsignedBigInt,   ReadAs::kDecimal,   false, true},
    TypeCase{"double",            {8, "double", false, 15},             FieldType::kDouble,           ReadAs::kDouble,    false, false},
    TypeCase{"time",              {92, "time", true, 8},                FieldType::kDBTime,           ReadAs::kTimeText,  false, false},
    TypeCase{"interval",          {110, "interval", true, 20},          FieldType::kVarWChar,         ReadAs::kText,      true,  false},
    TypeCase{"unknown",           {-9999, "", false, 0},                FieldType::kVarWChar,         ReadAs::kText,      true,  false}),
    [](const auto& test) { return std::string(test.param.name); });
// clang-format on

}  // namespace
}  // namespace kestrova::odbc
