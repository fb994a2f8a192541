#include "engine/criteria_guard.h"

#include <algorithm>
#include <array>

#include "engine/criterion.h"
#include "engine/field_types.h"
#include "platform/database.h"
#include "platform/error.h"
#include "platform/sql_text.h"
#include "platform/text.h"

namespace kestrova {
namespace {

// What a byte may mean for the form of an SQL text.
enum ByteClass : unsigned char { kPlain = 0, kMark = 1, kControl = 2, kBeyondAscii = 4 };

constexpr std::array<unsigned char, 256> byte_classes() {
  std::array<unsigned char, 256> classes{};
  for (std::size_t byte = 0; byte < 0x20; ++byte) classes[byte] = kControl;
  classes[0x7F] = kControl;
  for (std::size_t byte = 0x80; byte < 0x100; ++byte) classes[byte] = kBeyondAscii;
  for (const char mark : std::string_view("'\"[]()-/*;")) {
    classes[static_cast<unsigned char>(mark)] = kMark;
  }
  return classes;
}

constexpr std::array<unsigned char, 256> kByteClasses = byte_classes();

// Four bytes at a time, none of which waits for another: most criteria hold nothing else to look
// at.
unsigned char classes_in(std::string_view text) {
  const auto class_at = [text](std::size_t at) {
    return kByteClasses[static_cast<unsigned char>(text[at])];
  };
  std::array<unsigned char, 4> seen{};
  std::size_t at = 0;
  for (; at + seen.size() <= text.size(); at += seen.size()) {
    seen[0] |= class_at(at);
    seen[1] |= class_at(at + 1);
    seen[2] |= class_at(at + 2);
    seen[3] |= class_at(at + 3);
  }
  for (; at < text.size(); ++at) seen[0] |= class_at(at);
  return static_cast<unsigned char>(seen[0] | seen[1] | seen[2] | seen[3]);
}

// A character that turns up in no text that people write: controls, the line and paragraph
// separators, and the marks that reorder or hide what stands beside them.
constexpr bool is_unprintable(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0x200B && c <= 0x200F) ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2060 && c <= 0x206F) || c == 0xFEFF;
}

// One character of a text in UTF-8.
struct Character {
  char32_t code;
  std::size_t size;  // in bytes; 0 when the bytes are no character
};

constexpr Character character_at(std::string_view text, std::size_t offset) {
  struct Form {
    unsigned char mask, lead;
    std::size_t size;
    char32_t lowest;  // below it a shorter form would do
  };
  constexpr std::array<Form, 4> kForms = {{{0x80, 0x00, 1, 0},
                                           {0xE0, 0xC0, 2, 0x80},
                                           {0xF0, 0xE0, 3, 0x800},
                                           {0xF8, 0xF0, 4, 0x10000}}};
  const auto byte = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  for (const Form& form : kForms) {
    if ((byte(offset) & form.mask) != form.lead) continue;
    if (offset + form.size > text.size()) break;
    char32_t code = byte(offset) & static_cast<unsigned char>(~form.mask);
    for (std::size_t i = 1; i < form.size; ++i) {
      if ((byte(offset + i) & 0xC0) != 0x80) return {0, 0};
      code = (code << 6) | (byte(offset + i) & 0x3FU);
    }
    const bool is_surrogate = code >= 0xD800 && code < 0xE000;
    if (code < form.lowest || code > 0x10FFFF || is_surrogate) break;
    return {code, form.size};
  }
  return {0, 0};
}

bool is_printable(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const Character character = character_at(text, at);
    if (character.size == 0 || is_unprintable(character.code)) return false;
    at += character.size;
  }
  return true;
}

std::optional<OpenText> find_open_mark(std::string_view text) {
  int depth = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = end_of_quoted(text, at);
    if (end == std::string_view::npos) {
      return text[at] == '[' ? OpenText::kBracket : OpenText::kQuote;
    }
    if (end > at) {
      at = end;
      continue;
    }
    if (begins_comment(text, at) || text.substr(at, 2) == "*/") return OpenText::kComment;
    const char c = text[at++];
    if (c == ';') return OpenText::kSemicolon;
    if (c == ']') return OpenText::kBracket;
    if (c == '(') ++depth;
    if (c == ')' && --depth < 0) return OpenText::kParenthesis;
  }
  if (depth > 0) return OpenText::kParenthesis;
  return std::nullopt;
}

struct Description {
  OpenText reason;
  std::string_view text;
};

constexpr std::array kDescriptions = {
    Description{OpenText::kQuote, "its quote is not closed"},
    Description{OpenText::kBracket, "a bracket has no partner"},
    Description{OpenText::kParenthesis, "a parenthesis has no partner"},
    Description{OpenText::kComment, "it holds a comment"},
    Description{OpenText::kSemicolon, "it holds a \";\""},
    Description{OpenText::kUnprintable, "it holds a character that cannot be printed"},
};

// An IN record: its parts as the parser cuts them, and the list that was meant.
struct ListRecord {
  std::string_view op;
  std::string_view value;
  std::string_view own;  // from IN to the end of the record
};

std::optional<ListRecord> list_record(std::string_view record) {
  const RecordParts parts = split_record(record);
  if (!parts.op.starts_with("IN")) return std::nullopt;
  const auto begin = static_cast<std::size_t>(parts.op.data() - record.data());
  return ListRecord{text::trim(parts.op), text::trim(parts.value),
                    text::trim(record.substr(begin))};
}

bool is_text(std::int16_t type) {
  constexpr std::array kTextTypes = {
      FieldType::kBstr,        FieldType::kChar,     FieldType::kWChar,       FieldType::kVarChar,
      FieldType::kLongVarChar, FieldType::kVarWChar, FieldType::kLongVarWChar};
  return std::find(kTextTypes.begin(), kTextTypes.end(), static_cast<FieldType>(type)) !=
         kTextTypes.end();
}

// What is read back of the list is operator, blank, value. Of a list before NULL only the NULL
// would be left, and behind what is no list a value may be another one each time.
bool is_read_back(const ListRecord& list) {
  if (list.value.empty()) return list.op == list.own;
  const std::string value = text::upper(list.value);
  const bool is_list = list.op.starts_with("IN (") && value != "NULL" && value != "'NULL'";
  if (list.op != "IN" && !is_list) return false;
  return std::string(list.op) + " " + std::string(list.value) == list.own;
}

// Whether the operator is its list and nothing else. Otherwise a ")" stands inside an element,
// which only texts may hold; behind a list of dates the rest is lost when it is written anew.
bool ends_with_list(const ListRecord& list) {
  const std::size_t close = list.op.rfind(')');
  const bool has_list = list.op.starts_with("IN ") && close != std::string_view::npos;
  const bool begins_with_list = has_list && text::trim(list.op.substr(2)).starts_with('(');
  return !has_list || (begins_with_list && list.value.empty() && close + 1 == list.op.size());
}

std::string joined(std::int16_t id, std::string_view op, std::string_view value) {
  return std::to_string(id) + " " + std::string(op) + " " + std::string(value);
}

// "IN (...)" with the elements that hold a ")" at the end of the list.
std::string with_cut_elements_last(std::string_view in_operator) {
  const std::string_view list = text::trim(in_operator.substr(2));
  const bool is_list = list.starts_with('(') && list.ends_with(')') && !find_open_text(list);
  std::vector<std::string_view> elements = list_elements(list);
  if (!is_list || elements.size() < 2) return std::string(in_operator);
  const std::string_view second = elements[1];
  const std::string_view blanks =
      second.substr(0, std::min(second.find_first_not_of(' '), second.size()));
  for (std::string_view& element : elements) element = text::trim(element);
  std::stable_partition(elements.begin(), elements.end(), [](std::string_view element) {
    return element.find(')') == std::string_view::npos;
  });
  std::string result = "IN (";
  result += elements.front();
  for (std::size_t i = 1; i < elements.size(); ++i) {
    result += ',';
    result += blanks;
    result += elements[i];
  }
  result += ')';
  return result;
}

}  // namespace

RefusedCriterion::RefusedCriterion(std::string_view line, std::string_view why)
    : InvalidArgument("The criterion '" + std::string(line) + "' is refused: " + std::string(why) +
                      ".") {}

std::optional<OpenText> find_open_text(std::string_view text) {
  const unsigned char seen = classes_in(text);
  if (seen == kPlain) return std::nullopt;
  if ((seen & kControl) != 0) return OpenText::kUnprintable;
  if ((seen & kBeyondAscii) != 0 && !is_printable(text)) return OpenText::kUnprintable;
  return (seen & kMark) != 0 ? find_open_mark(text) : std::nullopt;
}

std::string_view description(OpenText reason) {
  return std::find_if(kDescriptions.begin(), kDescriptions.end(),
                      [reason](const Description& row) { return row.reason == reason; })
      ->text;
}

void require_closed(std::string_view text, std::string_view line) {
  if (const auto reason = find_open_text(text)) throw RefusedCriterion(line, description(*reason));
}

void require_one_record(std::string_view record, std::string_view line) {
  if (record.find(';') == std::string_view::npos) return;
  throw RefusedCriterion(line, "a \";\" ends a stored criterion, so that a value cannot hold one");
}

std::string record_of(std::int16_t id, std::string_view op, std::string_view value) {
  const bool is_list = op.starts_with("IN") && value.empty();
  return joined(id, is_list ? kept_list(id, op) : std::string(op), value);
}

bool is_own_list(std::string_view record) {
  const std::optional<ListRecord> list = list_record(record);
  return !list || (is_read_back(*list) && ends_with_list(*list));
}

bool keeps_list(const KesVar& context, const Relation& relation, std::int16_t id,
                std::string_view record) {
  const std::optional<ListRecord> list = list_record(record);
  if (!list) return true;
  return is_read_back(*list) &&
         (ends_with_list(*list) || is_text(field_type(context, relation, id)));
}

void require_own_list(const KesVar& context, const Relation& relation, std::int16_t id,
                      std::string_view record, std::string_view line) {
  if (keeps_list(context, relation, id, record)) return;
  throw RefusedCriterion(
      line,
      "a list is read up to its first \")\" and little beyond, so that this one would be cut; "
      "use a line for each value, with the OR line between them");
}

std::string_view own_list(std::string_view record) {
  const std::optional<ListRecord> list = list_record(record);
  return list ? list->own : std::string_view();
}

std::string kept_list(std::int16_t id, std::string_view list) {
  const auto is_kept = [id](std::string_view candidate) {
    return is_own_list(joined(id, candidate, ""));
  };
  if (is_kept(list)) return std::string(list);
  std::string reordered = with_cut_elements_last(list);
  return is_kept(reordered) ? reordered : std::string(list);
}

std::vector<std::string_view> list_elements(std::string_view in_operator) {
  const std::size_t open = in_operator.find('(');
  const std::size_t close = in_operator.rfind(')');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return {};
  const std::string_view list = in_operator.substr(open + 1, close - open - 1);
  std::vector<std::string_view> elements;
  std::size_t begin = 0;
  for (std::size_t at = 0; at < list.size();) {
    const std::size_t end = end_of_quoted(list, at);
    if (end == std::string_view::npos) break;
    if (end == at && list[at] == ',') {
      elements.push_back(list.substr(begin, at - begin));
      begin = at + 1;
    }
    at = std::max(end, at + 1);
  }
  elements.push_back(list.substr(begin));
  return elements;
}

}  // namespace kestrova
