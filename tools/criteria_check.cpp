#include "tools/criteria_check.h"

#include <algorithm>
#include <array>

#include "engine/criteria_guard.h"
#include "platform/error.h"
#include "platform/text.h"
#include "tools/sql_pieces.h"
#include "tools/values.h"

namespace kestrova::tool {
namespace {

struct ReasonText {
  FaultReason reason;
  std::string_view text;
};

// A date in a quoted text: how it looks ("0" for a digit), and where its parts begin.
struct DateShape {
  std::string_view shape;
  std::size_t year;
  std::size_t month;
  std::size_t day;
};

// clang-format off
constexpr std::array kReasonTexts = {
    ReasonText{FaultReason::kUnknownRelation, "unknown relation"},
    ReasonText{FaultReason::kUnknownField, "unknown field"},
    ReasonText{FaultReason::kHalfRecord, "half a record"},
    ReasonText{FaultReason::kEmptyRecord, "empty record"},
    ReasonText{FaultReason::kOrLine, "OR line without criteria on both sides"},
    ReasonText{FaultReason::kValue, "value that is no literal of the field's type"},
    ReasonText{FaultReason::kQuote, "quote that is not closed"},
    ReasonText{FaultReason::kParenthesis, "stray parenthesis or comment"},
    ReasonText{FaultReason::kUnprintable, "character that cannot be printed"},
    ReasonText{FaultReason::kTranslation, "refused by the library"},
    ReasonText{FaultReason::kServer, "refused by the server"},
};

constexpr std::array kDateShapes = {
    DateShape{"00.00.0000", 6, 3, 0},
    DateShape{"0000-00-00", 0, 5, 8},
    DateShape{"00000000", 0, 4, 6},
};

constexpr std::array<std::string_view, 4> kTimeShapes = {"", "00:00", "00:00:00", "00:00:00.000"};
constexpr std::array<std::string_view, 4> kBooleans = {"0", "1", "TRUE", "FALSE"};
// clang-format on

// The reason of a report for a text that is not closed, and what is said besides.
struct OpenTextReport {
  OpenText open;
  FaultReason reason;
  std::string_view hint = "";
};

constexpr std::array kOpenTextReports = {
    OpenTextReport{OpenText::kQuote, FaultReason::kQuote, "; a value cannot hold \";\""},
    OpenTextReport{OpenText::kBracket, FaultReason::kParenthesis},
    OpenTextReport{OpenText::kParenthesis, FaultReason::kParenthesis},
    OpenTextReport{OpenText::kComment, FaultReason::kParenthesis},
    OpenTextReport{OpenText::kSemicolon, FaultReason::kParenthesis},
    OpenTextReport{OpenText::kUnprintable, FaultReason::kUnprintable},
};

bool has_shape(std::string_view s, std::string_view shape) {
  return s.size() == shape.size() &&
         std::equal(s.begin(), s.end(), shape.begin(), [](char c, char form) {
           return form == '0' ? c >= '0' && c <= '9' : c == form;
         });
}

bool is_day(std::string_view s, const DateShape& form) {
  return has_shape(s, form.shape) && is_valid_date(text::to_int16(s.substr(form.year, 4)),
                                                   text::to_int16(s.substr(form.month, 2)),
                                                   text::to_int16(s.substr(form.day, 2)));
}

bool is_date(std::string_view s) {
  return std::any_of(kDateShapes.begin(), kDateShapes.end(), [s](const DateShape& form) {
    const std::size_t length = form.shape.size();
    if (!is_day(s.substr(0, length), form)) return false;
    if (s.size() == length) return true;
    if (s[length] != ' ' && s[length] != 'T') return false;
    const std::string_view time = s.substr(length + 1);
    return std::any_of(kTimeShapes.begin(), kTimeShapes.end(),
                       [time](std::string_view shape) { return has_shape(time, shape); });
  });
}

std::size_t take_digits(std::string_view& s) {
  const std::size_t count = std::min(s.find_first_not_of("0123456789"), s.size());
  s.remove_prefix(count);
  return count;
}

void take_sign(std::string_view& s) {
  if (s.starts_with('+') || s.starts_with('-')) s.remove_prefix(1);
}

// A number as the server reads it: "12", "-0.5", "1e3".
bool is_number_text(std::string_view s) {
  take_sign(s);
  std::size_t digits = take_digits(s);
  if (s.starts_with('.')) {
    s.remove_prefix(1);
    digits += take_digits(s);
  }
  if (digits == 0) return false;
  if (!s.starts_with('e') && !s.starts_with('E')) return s.empty();
  s.remove_prefix(1);
  take_sign(s);
  return take_digits(s) > 0 && s.empty();
}

bool is_boolean_text(std::string_view s) {
  return std::any_of(kBooleans.begin(), kBooleans.end(),
                     [s](std::string_view word) { return text::equal_ignoring_case(s, word); });
}

// The text between the apostrophes; nothing when value is no single quoted text.
std::optional<std::string_view> quoted_text(std::string_view value) {
  const std::vector<SqlPiece> pieces = split_sql(value);
  const bool is_quoted =
      pieces.size() == 1 && pieces[0].kind == SqlPiece::Kind::kLiteral && pieces[0].closed;
  if (!is_quoted) return std::nullopt;
  return value.substr(1, value.size() - 2);
}

bool names_today(std::string_view value) {
  const std::vector<SqlPiece> pieces = split_sql(value);
  return std::any_of(pieces.begin(), pieces.end(),
                     [](const SqlPiece& piece) { return piece.is_word("GETDATE"); });
}

bool is_null_word(std::string_view value) {
  return text::equal_ignoring_case(value, "NULL") || text::equal_ignoring_case(value, "'NULL'");
}

}  // namespace

std::string_view reason_text(FaultReason reason) {
  return std::find_if(kReasonTexts.begin(), kReasonTexts.end(),
                      [reason](const ReasonText& row) { return row.reason == reason; })
      ->text;
}

std::string criterion_message(std::size_t number, std::string_view record, std::string_view what) {
  return "criterion " + std::to_string(number) + " (" + std::string(record) +
         "): " + std::string(what);
}

std::optional<CriteriaFault> find_sql_fault(std::string_view criteria, std::string_view or_line) {
  std::size_t number = 0;
  for (const std::string_view record : text::split(criteria, ';')) {
    ++number;
    if (record == or_line) continue;
    if (const auto open = find_open_text(record)) {
      const auto report =
          std::find_if(kOpenTextReports.begin(), kOpenTextReports.end(),
                       [open](const OpenTextReport& row) { return row.open == *open; });
      return CriteriaFault{report->reason, criterion_message(number, record,
                                                             std::string(description(*open)) +
                                                                 std::string(report->hint))};
    }
  }
  return std::nullopt;
}

void check_criteria(std::string_view criteria, std::string_view or_line) {
  if (const auto fault = find_sql_fault(criteria, or_line)) throw BadCriterion(fault->message);
}

std::optional<CriteriaFault> find_structure_fault(std::string_view criteria,
                                                  std::string_view or_line) {
  std::vector<std::string_view> records = text::split(criteria, ';');
  const std::string_view rest = records.back();
  records.pop_back();
  if (!rest.empty()) {
    return CriteriaFault{
        FaultReason::kHalfRecord,
        criterion_message(records.size() + 1, rest, "the \";\" at its end is missing")};
  }
  bool needs_criterion = true;  // at the beginning and behind an OR line
  for (std::size_t i = 0; i < records.size(); ++i) {
    const bool is_or = records[i] == or_line;
    if (text::trim(records[i]).empty()) {
      return CriteriaFault{FaultReason::kEmptyRecord,
                           criterion_message(i + 1, records[i], "it is empty")};
    }
    if (is_or && needs_criterion) {
      return CriteriaFault{FaultReason::kOrLine,
                           criterion_message(i + 1, records[i], "no criterion stands before it")};
    }
    needs_criterion = is_or;
  }
  if (needs_criterion && !records.empty()) {
    return CriteriaFault{FaultReason::kOrLine, criterion_message(records.size(), records.back(),
                                                                 "no criterion stands behind it")};
  }
  return std::nullopt;
}

bool is_literal(std::string_view value, FieldType type) {
  if (is_null_word(value)) return true;
  const std::optional<std::string_view> quoted = quoted_text(value);
  const std::string_view bare = quoted.value_or(value);
  switch (type) {
    case FieldType::kBstr:
    case FieldType::kChar:
    case FieldType::kWChar:
    case FieldType::kVarChar:
    case FieldType::kLongVarChar:
    case FieldType::kVarWChar:
    case FieldType::kLongVarWChar:
    case FieldType::kDBTime:
      return quoted.has_value();
    case FieldType::kDate:
    case FieldType::kDBDate:
    case FieldType::kDBTimeStamp:
      return quoted ? is_date(bare) : names_today(value);
    case FieldType::kBoolean:
      return quoted ? is_boolean_text(bare) : bare == "0" || bare == "1";
    default:
      return !is_number(type) || is_number_text(bare);
  }
}

}  // namespace kestrova::tool
