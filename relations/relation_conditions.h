// The fixed part of a relation's SQL: the table expression of its records and the condition that
// every selection for it must respect, before the user's own criteria are added.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/suite.h"

namespace kestrova {

// FROM text (without the word FROM) and base condition (without the word WHERE, "" for none) of a
// relation; both by-reference texts are overwritten. option goes to the access-level filter, except
// for "1SERV", which passes the user's access level.
//
// Needs the suite services. An error of a service reaches the caller; the texts then keep what they
// had been given before it.
void GetRelationFromWhere(std::string_view code, std::string& condition, std::string& fromText,
                          const KesVar& ctx, std::int32_t option);

// For a restricted relation: extends fromText by the tables of a field and sets condition to the
// field's SQL expression. fieldId is the identifier in the criteria string. Errors as above.
void ApplyAccessLevels(std::string_view code, std::int16_t fieldId, std::string& condition,
                       std::string& fromText, const KesVar& ctx);

// The same for a caller that has the service and the relation's access table key at hand.
void apply_access_levels(TableAccessService& service, std::string_view code,
                         std::string_view access_key, std::int16_t field_id, std::string& condition,
                         std::string& from_text, const KesVar& context);

}  // namespace kestrova
