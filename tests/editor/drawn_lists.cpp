#include "tests/editor/drawn_lists.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "engine/criteria_guard.h"
#include "platform/date_time.h"
#include "platform/text.h"

namespace kestrova::test {
namespace {

// SplitMix64: a few additions and shifts, the same everywhere.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : state_(seed) {}

  std::size_t below(std::size_t n) { return static_cast<std::size_t>(next() % n); }
  bool one_in(std::size_t n) { return below(n) == 0; }
  int between(int first, int last) {
    return first + static_cast<int>(below(static_cast<std::size_t>(last - first + 1)));
  }
  template <class Range>
  const auto& one_of(const Range& range) {
    return range[below(std::size(range))];
  }

 private:
  std::uint64_t next() {
    std::uint64_t z = (state_ += 0x9e3779b97f4a7c15U);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
    return z ^ (z >> 31);
  }

  std::uint64_t state_;
};

bool is_one_of(FieldType type, std::initializer_list<FieldType> types) {
  return std::find(types.begin(), types.end(), type) != types.end();
}

bool is_date(FieldType type) {
  return is_one_of(type, {FieldType::kDate, FieldType::kDBDate, FieldType::kDBTimeStamp});
}

// Values of these types stand between apostrophes.
bool is_quoted(FieldType type) {
  return is_date(type) || is_one_of(type, {FieldType::kDBTime, FieldType::kChar, FieldType::kWChar,
                                           FieldType::kVarChar, FieldType::kLongVarChar,
                                           FieldType::kVarWChar, FieldType::kLongVarWChar});
}

bool is_text(FieldType type) {
  return type == FieldType::kBstr ||
         (is_quoted(type) && !is_date(type) && type != FieldType::kDBTime);
}

// What is stored of a value that is neither a date nor a boolean.
std::string plain_stored(const std::string& shown) {
  const std::string_view trimmed = text::trim(shown);
  return text::upper(trimmed) == "'NULL'" ? "Null" : std::string(trimmed);
}

std::string joined(const std::vector<DrawnValue>& values, std::string DrawnValue::*form,
                   std::string_view separator) {
  std::string list;
  for (const DrawnValue& value : values) {
    if (!list.empty()) list += separator;
    list += value.*form;
  }
  return list;
}

std::string numbered(const char* format, int number) {
  std::array<char, 16> buffer{};
  std::snprintf(buffer.data(), buffer.size(), format, number);
  return buffer.data();
}

constexpr std::array<std::string_view, 4> kNullWords = {"NULL", "null", "Null", "nUlL"};

// clang-format off
constexpr std::array<std::string_view, 40> kPieces = {
    "FI", "Buche", "Größe", "ä", "Öl", "ß", "Straße 5", "O'Hara", "'", " ", "  ", "%", "_", "A-1", "0,5", "1.5",
    "(", ")", ",", ", ", "IN", "IN (", "LIKE", "=", "<", ">", "<>", "NULL", "GETDATE()", "12.03.2024", "3/4/2021",
    "=== ODER ===", ";", "€", "x", "7", "Nullen", "-", "\"", "12 = 'X'"};
// clang-format on

class Drawer {
 public:
  Drawer(std::uint64_t seed, const UserSettings& settings) : dice_(seed), settings_(settings) {}

  std::vector<DrawnLine> list(const std::vector<DrawnField>& fields) {
    std::vector<DrawnLine> lines(dice_.one_in(4) ? 2 + dice_.below(3) : 1);
    for (DrawnLine& drawn : lines) drawn = line(fields);
    for (std::size_t i = lines.size() - 1; i > 0; --i) {
      if (dice_.one_in(4) && lines.size() < 6) {
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(i), DrawnLine());
      }
    }
    return lines;
  }

 private:
  // Draws until a line is found that must come back.
  DrawnLine line(const std::vector<DrawnField>& fields) {
    for (;;) {
      const DrawnField& field = dice_.one_of(fields);
      DrawnLine drawn{&field, dice_.one_of(field.operators), {}};
      const bool is_list = drawn.op == "IN";
      const std::size_t count = is_list ? 1 + dice_.below(4) : 1;
      for (std::size_t i = 0; i < count; ++i) drawn.values.push_back(value(field.type, is_list));
      const bool comes_back = !ends_its_record(drawn) && !hides_its_operator(drawn) &&
                              !cuts_its_list(drawn) && !lists_null_as_a_date(drawn) &&
                              !is_not_closed(drawn);
      if (comes_back) return drawn;
    }
  }

  DrawnValue value(FieldType type, bool is_list) {
    // In a list the entry "Null" and the same word typed differ from relation to relation.
    if (dice_.one_in(12)) {
      return word(type, std::string(kNullWords[dice_.below(is_list ? 2 : kNullWords.size())]));
    }
    if (is_date(type)) return dice_.one_in(2) ? relative_date(is_list) : typed_date();
    if (type == FieldType::kDBTime) return word(type, time());
    if (type == FieldType::kBoolean) return boolean();
    return is_text(type) ? word(type, characters()) : number(type);
  }

  // A value that is stored as it is typed.
  static DrawnValue word(FieldType type, std::string typed) {
    DrawnValue drawn{typed, is_quoted(type) ? "'" + typed + "'" : typed, ""};
    if (drawn.shown == "'Null'") drawn.shown = "Null";
    drawn.stored = plain_stored(drawn.shown);
    return drawn;
  }

  std::string characters() {
    std::string typed;
    const std::size_t count = 1 + dice_.below(4);
    for (std::size_t i = 0; i < count; ++i) typed += dice_.one_of(kPieces);
    return typed;
  }

  DrawnValue boolean() {
    constexpr std::array<std::string_view, 10> kWords = {
        "Wahr", "TRUE", "vrai", "Falsch", "False", "Faux", "falsch", "0", "1", "nein"};
    DrawnValue drawn = word(FieldType::kBoolean, std::string(dice_.one_of(kWords)));
    const std::string upper = text::upper(drawn.typed);
    drawn.stored = upper == "WAHR" || upper == "TRUE" || upper == "VRAI" ? "1" : "0";
    return drawn;
  }

  std::string decimal_separator() const { return settings_.language == "EN" ? "." : ","; }

  // A double is brought into the server's notation. "." is that notation already.
  DrawnValue number(FieldType type) {
    const std::string sign = dice_.one_in(5) ? "-" : "";
    const std::string whole = std::to_string(dice_.below(100000));
    if (!dice_.one_in(3)) return word(type, sign + whole);
    const std::string fraction = std::to_string(dice_.below(1000));
    const std::string separator = dice_.one_in(3) ? "." : decimal_separator();
    DrawnValue drawn = word(type, sign + whole + separator + fraction);
    if (type == FieldType::kDouble) {
      drawn.shown = sign + whole + "." + fraction;
      drawn.stored = drawn.shown;
    }
    return drawn;
  }

  std::string time() {
    std::string result = numbered("%02d", dice_.between(0, 23)) + ":";
    result += numbered("%02d", dice_.between(0, 59));
    return dice_.one_in(2) ? result + numbered(":%02d", dice_.between(0, 59)) : result;
  }

  // A number of days from today, as far as the user's settings take it for a number. In a list ","
  // separates values.
  DrawnValue relative_date(bool is_list) {
    constexpr std::array<std::string_view, 3> kSigns = {"", "+", "-"};
    const std::string sign(dice_.one_of(kSigns));
    std::string days = std::to_string(dice_.below(dice_.one_in(4) ? 100000 : 100));
    if (dice_.one_in(3)) {
      const bool takes_point = settings_.language != "FR";  // groups digits or separates decimals
      const std::string separator = takes_point && (is_list || dice_.one_in(2)) ? "." : ",";
      if (takes_point || !is_list) days += separator + std::to_string(dice_.below(100));
    }
    const std::string typed = sign + days;
    return {typed, "'" + typed + "'", "GETDATE()" + (sign.empty() ? "+" : sign) + days};
  }

  DrawnValue typed_date() {
    const int year = dice_.between(1800, 2199);
    const int month = dice_.between(1, 12);
    const int day = dice_.between(1, 28 + (is_valid_date(year, month, 31) ? 3 : 0));
    const std::string behind = dice_.one_in(6) ? " " + time() : "";
    const std::string stored =
        numbered("%02d.", day) + numbered("%02d.", month) + numbered("%04d", year) + behind;
    const std::string typed = spelled(day, month, year) + behind;
    return {typed, "'" + typed + "'", "'" + stored + "'"};
  }

  std::string spelled(int day, int month, int year) {
    const std::string dd = numbered("%02d", day);
    const std::string mm = numbered("%02d", month);
    const std::string yyyy = numbered("%04d", year);
    // These two forms are the same for every user.
    if (dice_.one_in(6)) return yyyy + "-" + mm + "-" + dd;
    if (dice_.one_in(6)) return dd + "." + mm + "." + yyyy;

    const bool is_padded = dice_.one_in(2);
    const std::string d = is_padded ? dd : std::to_string(day);
    const std::string m = is_padded ? mm : std::to_string(month);
    const bool is_short = year >= 1930 && year <= 2029 && dice_.one_in(2);
    const std::string y = is_short ? yyyy.substr(2) : yyyy;
    // With "/" no order can be mistaken for one of the two.
    const bool is_plain = d.size() == 1 || m.size() == 1;
    const std::string separator(1, is_plain ? "./-"[dice_.below(3)] : '/');
    std::string result;
    for (const char part : settings_.date_order) {
      if (!result.empty()) result += separator;
      result += part == 'D' ? d : part == 'M' ? m : y;
    }
    return result;
  }

  Dice dice_;
  const UserSettings& settings_;
};

// Whether the text of an IN list goes on behind the characters that its first ")" lets it have. It
// begins at the position (counted from 1) that field and blank leave.
bool is_cut(std::string_view field, std::string_view list) {
  const std::string record = std::string(field) + " IN (" + std::string(list) + ")";
  const std::size_t begin = text::length(field) + 2;
  const std::size_t closing =
      text::length(std::string_view(record).substr(0, record.find(')'))) + 1;
  const std::size_t last = begin + closing + 1;
  return text::length(record) > last;
}

}  // namespace

std::string DrawnLine::display_line() const {
  if (is_or()) return std::string(kOrText);
  if (op != "IN") return field->name + " " + op + " " + values[0].shown;
  return field->name + " IN (" + joined(values, &DrawnValue::shown, ", ") + ")";
}

std::string DrawnLine::stored_record() const {
  if (is_or()) return std::string(kOrText);
  const std::string id = std::to_string(field->id);
  if (op != "IN") return id + " " + op + " " + values[0].stored;
  const bool is_rebuilt = is_date(field->type);
  // The blank in front of the value stays, and the value is empty.
  return id + " IN (" +
         (is_rebuilt ? joined(values, &DrawnValue::stored, ",")
                     : joined(values, &DrawnValue::shown, ", ")) +
         ") ";
}

bool ends_its_record(const DrawnLine& line) {
  return std::any_of(line.values.begin(), line.values.end(), [](const DrawnValue& value) {
    return value.typed.find(';') != std::string::npos;
  });
}

bool hides_its_operator(const DrawnLine& line) {
  struct Row {
    std::string_view op;
    std::vector<std::string_view> sought_before;
  };
  static const std::array<Row, 5> kRows = {{{"<>", {"="}},
                                            {">", {"="}},
                                            {"<", {"=", ">"}},
                                            {"LIKE", {"=", ">", "<"}},
                                            {"IN", {"=", ">", "<", "LIKE"}}}};
  const auto row =
      std::find_if(kRows.begin(), kRows.end(), [&](const Row& r) { return r.op == line.op; });
  if (row == kRows.end()) return false;
  const std::string values = joined(line.values, &DrawnValue::shown, ", ");
  return std::any_of(row->sought_before.begin(), row->sought_before.end(),
                     [&](std::string_view sign) { return values.find(sign) != std::string::npos; });
}

bool cuts_its_list(const DrawnLine& line) {
  if (line.op != "IN") return false;
  const std::string shown = joined(line.values, &DrawnValue::shown, ", ");
  const std::string stored =
      is_date(line.field->type) ? joined(line.values, &DrawnValue::stored, ",") : shown;
  return is_cut(line.field->name, shown) || is_cut(std::to_string(line.field->id), stored);
}

bool is_not_closed(const DrawnLine& line) {
  return find_open_text(line.display_line().substr(line.field->name.size())).has_value();
}

bool lists_null_as_a_date(const DrawnLine& line) {
  return line.op == "IN" && is_date(line.field->type) &&
         std::any_of(line.values.begin(), line.values.end(),
                     [](const DrawnValue& value) { return value.stored == "Null"; });
}

std::vector<DrawnLine> draw_list(std::uint64_t seed, const std::vector<DrawnField>& fields,
                                 const UserSettings& settings) {
  return Drawer(seed, settings).list(fields);
}

}  // namespace kestrova::test
