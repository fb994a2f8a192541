#include "engine/criterion.h"

#include <algorithm>
#include <array>
#include <optional>

#include "engine/comm_sel.h"
#include "engine/field_types.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/date_expressions.h"
#include "relations/show_message.h"

namespace kestrova {
namespace {

// Where the operator stands, in bytes.
struct OperatorSpan {
  std::size_t offset = 0;
  std::size_t size = 0;
};

// A comparison sign at offset, together with the sign before it when that is one of partners.
OperatorSpan with_partner(std::string_view record, std::size_t offset, std::string_view partners) {
  if (offset == 0) {
    throw InvalidArgument("The criterion '" + std::string(record) + "' begins with its operator.");
  }
  if (partners.find(record[offset - 1]) != std::string_view::npos) return {offset - 1, 2};
  return {offset, 1};
}

// IN reaches as many characters from its first one as the position of the closing parenthesis in
// the whole record, and two more: at least to that parenthesis and normally to the end.
OperatorSpan with_list(std::string_view record, std::size_t offset) {
  const std::size_t closing = record.find(')', offset);
  const std::size_t closing_position =
      closing == std::string_view::npos ? 0 : text::length(record.substr(0, closing)) + 1;
  return {offset, text::left(record.substr(offset), closing_position + 2).size()};
}

// The order of the searches decides: "=" anywhere in the record goes before ">", and so on.
std::optional<OperatorSpan> find_operator(std::string_view record) {
  if (const std::size_t at = record.find('='); at != std::string_view::npos) {
    return with_partner(record, at, "<>");
  }
  if (const std::size_t at = record.find('>'); at != std::string_view::npos) {
    return with_partner(record, at, "<");
  }
  if (const std::size_t at = record.find('<'); at != std::string_view::npos)
    return OperatorSpan{at, 1};
  if (const std::size_t at = record.find("LIKE"); at != std::string_view::npos) {
    return OperatorSpan{at, 4};
  }
  if (const std::size_t at = record.find("IN"); at != std::string_view::npos) {
    return with_list(record, at);
  }
  return std::nullopt;
}

// The type of the field of a record; 0 for a field part from the database that is no number.
std::int16_t type_of_record(const KesVar& context, const Relation& relation,
                            const RecordParts& parts, const RecordForm& form) {
  if (!form.from_database) {
    return field_type(context, relation, Comm_Sel().get_FieldID(parts.field));
  }
  if (!text::to_integer(parts.field)) return 0;
  return field_type(context, relation, text::to_int16(parts.field));
}

// One element of a date list in the form asked for.
std::string date_element(const KesVar& context, std::string_view element, const RecordForm& form) {
  if (!form.from_database) return ToDateExpression({context.strDateOrder}, element);
  return form.to_user_format ? ToDateLiteral(element, context.strDateOrder) : std::string(element);
}

// An IN list of dates, built anew from its elements. Empty elements are dropped.
std::string date_list(const KesVar& context, std::string_view op, const RecordForm& form) {
  const std::size_t open = op.find('(');
  const std::size_t close = op.rfind(')');
  if (!op.starts_with("IN ") || open == std::string_view::npos || close == std::string_view::npos ||
      close < open) {
    return std::string(op);
  }
  std::string list;
  for (const std::string_view element : text::split(op.substr(open + 1, close - open - 1), ',')) {
    if (element.empty()) continue;
    if (!list.empty()) list += ',';
    list += date_element(context, element, form);
  }
  return "IN (" + list + ")";
}

std::string value_of_field(const KesVar& context, std::string_view field, std::string_view value,
                           std::int16_t type, const RecordForm& form) {
  const bool is_boolean = type == static_cast<std::int16_t>(FieldType::kBoolean);
  const SpecialField kind = special_field(field);
  // A flag that nobody has set is neither true nor false.
  if (is_boolean && kind != SpecialField::kMoneyUnit && is_null_word(value)) {
    return std::string(value);
  }
  const bool is_shown_boolean = !form.from_database && is_boolean;
  switch (kind) {
    case SpecialField::kBarkUnit:
      // The value list offers the unit between apostrophes.
      return value == "cm" || value == "'cm'" ? "1" : "0";
    case SpecialField::kMoneyUnit:
      return value == context.strNatWahrung ? "0" : std::string(value);
    case SpecialField::kWord:
      // These columns hold the words themselves.
      if (is_shown_boolean) {
        return "'" + loc_texts().GetText(is_true_word(value) ? kTextTrue : kTextFalse, context) +
               "'";
      }
      break;
    case SpecialField::kNone:
      if (is_shown_boolean) return is_true_word(value) ? "1" : "0";
      break;
  }
  return std::string(value);
}

}  // namespace

SpecialField special_field(std::string_view field) {
  struct Row {
    std::string_view name;
    SpecialField kind;
  };
  constexpr std::array<Row, 4> kRows = {{
      {"RINDEPROZENT", SpecialField::kBarkUnit},
      {"DM/EURO", SpecialField::kMoneyUnit},
      {"ABGESCHLOSEN", SpecialField::kWord},
      {"STATUS", SpecialField::kWord},
  }};
  const std::string name = text::upper(field);
  const auto row =
      std::find_if(kRows.begin(), kRows.end(), [&name](const Row& r) { return r.name == name; });
  return row == kRows.end() ? SpecialField::kNone : row->kind;
}

RecordParts split_record(std::string_view record) {
  const std::optional<OperatorSpan> span = find_operator(record);
  if (!span) return {.field = {}, .op = {}, .value = record};
  return {.field = text::trim(record.substr(0, span->offset)),
          .op = record.substr(span->offset, span->size),
          .value = record.substr(span->offset + span->size)};
}

bool is_true_word(std::string_view word) {
  constexpr std::array<std::string_view, 3> kTrueWords = {"TRUE", "WAHR", "VRAI"};
  return std::find(kTrueWords.begin(), kTrueWords.end(), text::upper(word)) != kTrueWords.end();
}

std::optional<bool> stored_flag(std::string_view value) {
  struct Row {
    std::string_view text;
    bool flag;
  };
  constexpr std::array<Row, 12> kRows = {{
      {"TRUE", true},
      {"WAHR", true},
      {"VRAI", true},
      {"1", true},
      {"-1", true},
      {"+1", true},
      {"FALSE", false},
      {"FALSCH", false},
      {"FAUX", false},
      {"0", false},
      {"-0", false},
      {"+0", false},
  }};
  const bool is_quoted = value.size() > 2 && value.starts_with('\'') && value.ends_with('\'');
  const std::string text = text::upper(is_quoted ? value.substr(1, value.size() - 2) : value);
  const auto row =
      std::find_if(kRows.begin(), kRows.end(), [&text](const Row& r) { return r.text == text; });
  return row == kRows.end() ? std::nullopt : std::optional(row->flag);
}

bool is_null_word(std::string_view value) {
  const std::string_view trimmed = text::trim(value);
  return trimmed.size() == 4 && text::upper(trimmed) == "NULL";
}

std::string field_part(std::string_view record) { return std::string(split_record(record).field); }

std::string operator_part(const KesVar& context, const Relation& relation, std::string_view record,
                          RecordForm form) {
  const RecordParts parts = split_record(record);
  const std::int16_t type = type_of_record(context, relation, parts, form);
  const std::string_view op = text::trim(parts.op);
  if (IsDateFieldType(type)) return date_list(context, op, form);
  return std::string(op);
}

std::string value_part(const KesVar& context, const Relation& relation, std::string_view record,
                       RecordForm form) {
  const RecordParts parts = split_record(record);
  const std::int16_t type = type_of_record(context, relation, parts, form);
  const std::string_view written = text::trim(parts.value);
  const bool is_quoted_null = written.size() == 6 && text::upper(written) == "'NULL'";
  std::string value =
      value_of_field(context, parts.field, is_quoted_null ? "Null" : written, type, form);
  if (!form.from_database && IsDateFieldType(type) && !value.empty() && value != "Null") {
    value = ToDateExpression({context.strDateOrder}, value);
  }
  return value;
}

std::string Comm_Sel::TransComp_NoLabels(const KesVar& KesVar, std::string_view Parameter,
                                         std::string_view sRecord, std::string_view strParam,
                                         bool fromDatabase, bool KonverToUserFormat) const {
  const std::string part = text::upper(text::trim(strParam));
  const RecordForm form{fromDatabase, KonverToUserFormat};
  if (part == "GETFIELD") return field_part(sRecord);
  const Relation relation(Parameter);
  if (part == "GETOPERATOR") return operator_part(KesVar, relation, sRecord, form);
  if (part == "GETVALUE") return value_part(KesVar, relation, sRecord, form);
  type_of_record(KesVar, relation, split_record(sRecord), form);
  ShowMessage("Debug: Pad strParam in function TransComp_NoLabels in Kestrova_Sel.Comm_Sel",
              kCriticalIcon);
  return {};
}

}  // namespace kestrova
