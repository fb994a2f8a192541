// Criteria lists as users might compose them, drawn by a seed, together with what must be stored
// for them. The same seed draws the same list on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"

namespace kestrova::test {

// A field that the editor offers, and the operators that it offers for the field's type.
struct DrawnField {
  int id = 0;
  std::string name;
  FieldType type = FieldType::kEmpty;
  std::vector<std::string> operators;
};

// The user's settings: "DE", "EN" or "FR", and "DMY", "MDY", "YMD" or "YDM".
struct UserSettings {
  std::string language;
  std::string date_order;
};

// One value of a criterion: as it is typed, as it stands in the line, and as it is stored.
struct DrawnValue {
  std::string typed;
  std::string shown;
  std::string stored;
};

struct DrawnLine {
  const DrawnField* field = nullptr;  // nullptr for the OR line
  std::string op;
  std::vector<DrawnValue> values;  // one, or those of an IN list

  bool is_or() const { return field == nullptr; }
  std::string display_line() const;
  // Without ";".
  std::string stored_record() const;
};

inline constexpr std::string_view kOrText = "=== ODER ===";

// Between one and six lines, no OR line at an end or beside another one.
std::vector<DrawnLine> draw_list(std::uint64_t seed, const std::vector<DrawnField>& fields,
                                 const UserSettings& settings);

// --- Lines that by the rules of the format do not come back as they were. None is drawn;
// round_trip_test.cpp shows what happens to each.

// ";" ends a record, also inside a value: the format has no escaping.
bool ends_its_record(const DrawnLine& line);

// The operator is found by the first of "=", ">", "<", "LIKE" and "IN" that occurs anywhere in the
// line, so that one of them in the value goes before a later one in front of it.
bool hides_its_operator(const DrawnLine& line);

// An IN list is as long as the position of its first ")" says, so that one in a value may cut it.
// That of GETDATE() is one too: a stored list of several relative dates is always cut.
bool cuts_its_list(const DrawnLine& line);

// A quote or parenthesis of the value without its partner: no such line is inserted or stored.
bool is_not_closed(const DrawnLine& line);

// NULL is known as a value of its own. In a list of dates it is a text that is no date, and storing
// the list fails.
bool lists_null_as_a_date(const DrawnLine& line);

}  // namespace kestrova::test
