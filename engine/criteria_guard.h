// The boundary of trust: what a user has typed becomes part of an SQL statement or of a stored
// filter only through these checks.
//
// Values go into SQL as they were typed. So the text of one criterion must be closed in itself:
// then it cannot leave the parentheses that stand around all criteria, and base condition and
// access levels stay in force whatever it holds. And a filter must be read back as it was written:
// a record whose operator and value are not its own text any more would select something else.
//
// Every path that translates, commits, counts or stores a criterion comes through here; what only
// shows a filter does not.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/error.h"
#include "platform/kes_var.h"
#include "relations/relation_codes.h"

namespace kestrova {

// A criterion that these checks refuse; the message names its line.
class RefusedCriterion : public InvalidArgument {
 public:
  RefusedCriterion(std::string_view line, std::string_view why);
};

// Why a text is not closed.
enum class OpenText {
  kQuote,        // '...' or "..." has no end
  kBracket,      // [...] has no end, or a "]" no beginning
  kParenthesis,  // a "(" or ")" has no partner
  kComment,      // a comment mark outside of quotes
  kSemicolon,    // a ";" outside of quotes
  kUnprintable,  // a control character, or bytes that are no UTF-8
};

// The first reason why the text is not closed; nothing for a closed one. Linear; for a text without
// any of these characters one look at each byte.
std::optional<OpenText> find_open_text(std::string_view text);

// The reason in words: "its quote is not closed".
std::string_view description(OpenText reason);

// Each of the following raises RefusedCriterion.

// Unless the text of one criterion (expression, operator and value) is closed.
void require_closed(std::string_view text, std::string_view line);

// When the record cannot stand in a criteria string: a ";" would end it.
void require_one_record(std::string_view record, std::string_view line);

// When the record is an IN list that would be read as something else (see keeps_list).
void require_own_list(const KesVar& context, const Relation& relation, std::int16_t id,
                      std::string_view record, std::string_view line);

// Whether operator and value of the record together are its own text. They are not for IN lists
// that are cut: the operator reaches a fixed number of characters behind the first ")", which may
// stand inside an element or behind GETDATE(). id is the field of the record; its type is looked up
// only where it decides, for a list that is cut at a blank.
bool keeps_list(const KesVar& context, const Relation& relation, std::int16_t id,
                std::string_view record);

// The same whatever the type of the field.
bool is_own_list(std::string_view record);

// The list that an IN record means: from "IN" to its end, without blanks around it. "" for every
// other record.
std::string_view own_list(std::string_view record);

// The list with the elements that hold a ")" at its end when a record of the field is read back
// whole only so; in every other case the list as it stands.
std::string kept_list(std::int16_t id, std::string_view list);

// The stored form of a criterion: identifier, operator and value, a list as kept_list orders it.
std::string record_of(std::int16_t id, std::string_view op, std::string_view value);

// The elements of "IN (...)" as they stand, with their blanks; commas inside quotes do not
// separate.
std::vector<std::string_view> list_elements(std::string_view in_operator);

}  // namespace kestrova
