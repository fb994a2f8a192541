// Values of the database as people and programs read them.
#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "platform/user_locale.h"
#include "platform/value.h"

namespace kestrova::tool {

using Json = nlohmann::ordered_json;

// How the user writes values.
class ValueFormat {
 public:
  // date_order is "DMY", "MDY", "YMD" or "YDM"; raises InvalidArgument for any other.
  ValueFormat(std::shared_ptr<const UserLocale> locale, std::string_view date_order);

  // "NULL" for NULL, the user's decimal separator in numbers, the user's words for a boolean.
  std::string show(const Value& value) const;

  // "31.12.2024", "12/31/2024", "2024-12-31" or "2024.31.12" by date order; the time follows when
  // it is not midnight.
  std::string show_date(const DateTime& date) const;

  // The literal 'dd.mm.yyyy', in which dates are stored, as the user's own literal. Any other text
  // comes back as it is.
  std::string show_date_literal(std::string_view literal) const;

 private:
  std::shared_ptr<const UserLocale> locale_;
  std::string_view order_;
  char separator_;
};

// The value for programs: dates as ISO texts, exact decimals as texts (so that no digit is lost),
// bytes as hexadecimal texts.
Json to_json(const Value& value);

// Writes the document of an answer. Bytes that are no UTF-8 become the replacement character.
void print_json(std::ostream& out, const Json& document);

// A column type code in a word or two.
std::string_view type_name(FieldType type);

// Whether a column of this type is a number, which people read right-aligned.
bool is_number(FieldType type);

}  // namespace kestrova::tool
