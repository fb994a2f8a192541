#include "tools/values.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <sstream>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova::tool {
namespace {

struct DateForm {
  std::string_view order;
  char separator;
};

struct TypeName {
  FieldType type;
  std::string_view name;
  bool number = false;
};

// clang-format off
constexpr std::array kDateForms = {
    DateForm{"DMY", '.'}, DateForm{"MDY", '/'}, DateForm{"YMD", '-'}, DateForm{"YDM", '.'},
};

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

const DateForm& date_form(std::string_view order) {
  const auto form = std::find_if(kDateForms.begin(), kDateForms.end(),
                                 [order](const DateForm& f) { return f.order == order; });
  if (form == kDateForms.end()) {
    throw InvalidArgument("'" + std::string(order) + "' is no date order.");
  }
  return *form;
}

std::string padded(int number, int width) {
  std::ostringstream out;
  out << std::setw(width) << std::setfill('0') << number;
  return out.str();
}

std::string time_of_day(const DateTime& date) {
  if (date.hour == 0 && date.minute == 0 && date.second == 0) return {};
  const std::string minutes = " " + padded(date.hour, 2) + ":" + padded(date.minute, 2);
  return date.second == 0 ? minutes : minutes + ":" + padded(date.second, 2);
}

}  // namespace

ValueFormat::ValueFormat(std::shared_ptr<const UserLocale> locale, std::string_view date_order)
    : locale_(std::move(locale)),
      order_(date_form(date_order).order),
      separator_(date_form(date_order).separator) {}

std::string ValueFormat::show_date(const DateTime& date) const {
  std::string text;
  for (const char part : order_) {
    if (!text.empty()) text += separator_;
    text += part == 'Y'   ? padded(date.year, 4)
            : part == 'M' ? padded(date.month, 2)
                          : padded(date.day, 2);
  }
  return text + time_of_day(date);
}

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
  return "'" + show_date(date) + "'";
}

std::string ValueFormat::show(const Value& value) const {
  if (value.is_null()) return "NULL";
  if (const DateTime* date = value.get_if<DateTime>()) return show_date(*date);
  if (const bool* truth = value.get_if<bool>()) return locale_->boolean_text(*truth);
  const std::string text = value.text();
  const bool has_fraction = value.get_if<double>() != nullptr || value.get_if<Decimal>() != nullptr;
  return has_fraction ? text::replace_all(text, ".", locale_->decimal_separator()) : text;
}

Json to_json(const Value& value) {
  if (value.is_null()) return nullptr;
  if (const bool* truth = value.get_if<bool>()) return *truth;
  if (const std::int64_t* number = value.get_if<std::int64_t>()) return *number;
  if (const double* number = value.get_if<double>()) return *number;
  return value.text();
}

void print_json(std::ostream& out, const Json& document) {
  out << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
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
