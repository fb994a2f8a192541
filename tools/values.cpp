#include "tools/values.h"

#include <algorithm>
#include <array>

#include "platform/text.h"
#include "tools/printable.h"

namespace kestrova::tool {
namespace {

struct TypeName {
  FieldType type;
  std::string_view name;
  bool number = false;
};

// clang-format off
constexpr std::array kTypeNames = {
    TypeName{FieldType::kEmpty, "unknown"},
    TypeName{FieldType::kSmallInt, "small integer", true},
    TypeName{FieldType::kInteger, "integer", true},
    TypeName{FieldType::kSingle, "number", true},
    TypeName{FieldType::kDouble, "number", true},
    TypeName{FieldType::kCurrency, "money", true},
    TypeName{FieldType::kDate, "date"},
    TypeName{FieldType::kBstr, "text"},
    TypeName{FieldType::kBoolean, "yes/no"},
    TypeName{FieldType::kVariant, "any"},
    TypeName{FieldType::kDecimal, "decimal", true},
    TypeName{FieldType::kTinyInt, "small integer", true},
    TypeName{FieldType::kUnsignedTinyInt, "small integer", true},
    TypeName{FieldType::kUnsignedSmallInt, "small integer", true},
    TypeName{FieldType::kUnsignedInt, "integer", true},
    TypeName{FieldType::kBigInt, "big integer", true},
    TypeName{FieldType::kUnsignedBigInt, "big integer", true},
    TypeName{FieldType::kGuid, "GUID"},
    TypeName{FieldType::kBinary, "binary"},
    TypeName{FieldType::kChar, "text"},
    TypeName{FieldType::kWChar, "text"},
    TypeName{FieldType::kNumeric, "decimal", true},
    TypeName{FieldType::kDBDate, "date"},
    TypeName{FieldType::kDBTime, "time"},
    TypeName{FieldType::kDBTimeStamp, "date and time"},
    TypeName{FieldType::kVarNumeric, "decimal", true},
    TypeName{FieldType::kVarChar, "text"},
    TypeName{FieldType::kLongVarChar, "long text"},
    TypeName{FieldType::kVarWChar, "text"},
    TypeName{FieldType::kLongVarWChar, "long text"},
    TypeName{FieldType::kVarBinary, "binary"},
    TypeName{FieldType::kLongVarBinary, "binary"},
};
// clang-format on

const TypeName* find_type(FieldType type) {
  const auto row = std::find_if(kTypeNames.begin(), kTypeNames.end(),
                                [type](const TypeName& t) { return t.type == type; });
  return row == kTypeNames.end() ? nullptr : &*row;
}

}  // namespace

ValueFormat::ValueFormat(std::shared_ptr<const UserLocale> locale) : locale_(std::move(locale)) {}

std::string ValueFormat::show_date_literal(std::string_view literal) const {
  constexpr std::string_view kShape = "'00.00.0000'";
  const bool is_date =
      literal.size() == kShape.size() &&
      std::equal(literal.begin(), literal.end(), kShape.begin(), [](char c, char shape) {
        return shape == '0' ? c >= '0' && c <= '9' : c == shape;
      });
  if (!is_date) return std::string(literal);
  const DateTime date{.year = text::to_int16(literal.substr(7, 4)),
                      .month = text::to_int16(literal.substr(4, 2)),
                      .day = text::to_int16(literal.substr(1, 2))};
  return "'" + locale_->format_date(date) + "'";
}

std::string ValueFormat::show(const Value& value) const {
  return value.is_null() ? "NULL" : user_text(value, *locale_);
}

Json to_json(const Value& value) {
  if (value.is_null()) return nullptr;
  if (const bool* truth = value.get_if<bool>()) return *truth;
  if (const std::int64_t* number = value.get_if<std::int64_t>()) return *number;
  if (const double* number = value.get_if<double>()) return *number;
  return value.text();
}

void print_json(std::ostream& out, const Json& document) {
  out << printable_json(document.dump(2, ' ', false, Json::error_handler_t::replace)) << '\n';
}

std::string_view type_name(FieldType type) {
  const TypeName* row = find_type(type);
  return row == nullptr ? "unknown" : row->name;
}

bool is_number(FieldType type) {
  const TypeName* row = find_type(type);
  return row != nullptr && row->number;
}

}  // namespace kestrova::tool
