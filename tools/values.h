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
  explicit ValueFormat(std::shared_ptr<const UserLocale> locale);

  // "NULL" for NULL, else the value as the user reads it.
  std::string show(const Value& value) const;

  // The literal 'dd.mm.yyyy', in which dates are stored, as the user's own literal. Any other text
  // comes back as it is.
  std::string show_date_literal(std::string_view literal) const;

 private:
  std::shared_ptr<const UserLocale> locale_;
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
