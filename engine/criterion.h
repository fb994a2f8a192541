// One criterion of a filter: how its text falls into field, operator and value.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/kes_var.h"
#include "relations/relation_codes.h"

namespace kestrova {

// The pieces of a record, as they stand in it. op and value are not trimmed.
struct RecordParts {
  std::string_view field;  // trimmed
  std::string_view op;     // for IN with its list
  std::string_view value;
};

// Raises InvalidArgument for a record that begins with "=" or with a lone ">".
RecordParts split_record(std::string_view record);

// How a record is read: where its field part comes from, and whether date lists are shown.
struct RecordForm {
  bool from_database = true;    // the field part is an identifier, not a display name
  bool to_user_format = false;  // dates of an IN list become literals of the fixed form
};

// A record of a criteria string as it stands, the same for people, and a line of the editor's list.
inline constexpr RecordForm kStored{.from_database = true, .to_user_format = false};
inline constexpr RecordForm kShown{.from_database = true, .to_user_format = true};
inline constexpr RecordForm kDisplayLine{.from_database = false, .to_user_format = false};

// The parts as TransComp_NoLabels answers them, for a relation already classified. The last two
// look the field's type up.
std::string field_part(std::string_view record);
std::string operator_part(const KesVar& context, const Relation& relation, std::string_view record,
                          RecordForm form);
std::string value_part(const KesVar& context, const Relation& relation, std::string_view record,
                       RecordForm form);

// Fields whose values are not written as they are shown.
enum class SpecialField {
  kNone,
  kBarkUnit,   // centimetres or percent, kept as 1 or 0
  kMoneyUnit,  // the national currency or euro, kept as a flag
  kWord,       // the localised word for a boolean
};

// The numbers of the localised words for true and false.
inline constexpr std::int32_t kTextTrue = 6;
inline constexpr std::int32_t kTextFalse = 5;

// By the field's name in either case, without surrounding blanks.
SpecialField special_field(std::string_view field);

// Whether a value part stands for NULL: the word, in any case, with or without blanks around it.
bool is_null_word(std::string_view value);

// Whether a word stands for true, in any case: booleans kept as text must survive any user locale.
bool is_true_word(std::string_view word);

// What a stored value of a boolean field says, with or without apostrophes around it: a word for
// true or false, or 1, -1, 0 with or without a sign. Nothing for any other text.
std::optional<bool> stored_flag(std::string_view value);

}  // namespace kestrova
