// Faults of a criteria string that can be told from its text and the types of its fields.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"

namespace kestrova::tool {

enum class FaultReason {
  kUnknownRelation,
  kUnknownField,
  kHalfRecord,
  kEmptyRecord,
  kOrLine,
  kValue,
  kQuote,
  kParenthesis,
  kUnprintable,
  kTranslation,
  kServer,
};

// A reason in a few words, the same in every report.
std::string_view reason_text(FaultReason reason);

struct CriteriaFault {
  FaultReason reason;
  std::string message;  // names the record: "criterion 2 (12 = x): ..."
};

// "criterion 2 (12 = x): " + what
std::string criterion_message(std::size_t number, std::string_view record, std::string_view what);

// A criterion that the library would refuse because its text could leave its place, with the
// number of the criterion. or_line is skipped.
std::optional<CriteriaFault> find_sql_fault(std::string_view criteria, std::string_view or_line);

// Raises BadCriterion for what find_sql_fault finds.
void check_criteria(std::string_view criteria, std::string_view or_line);

// Records that are not whole: text behind the last ";", which the editor and the readable form
// leave out; empty records; an OR line without criteria on both sides.
std::optional<CriteriaFault> find_structure_fault(std::string_view criteria,
                                                  std::string_view or_line);

// Whether the value of a criterion is one that a field of this type can be compared with: a number,
// a text between apostrophes, a date in a form that does not depend on the server's settings or an
// expression with GETDATE(), or Null. True for every value of a type without known literals.
bool is_literal(std::string_view value, FieldType type);

}  // namespace kestrova::tool
