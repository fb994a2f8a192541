// The selectable fields of a relation.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/suite.h"
#include "tools/session.h"

namespace kestrova::tool {

struct SelectableField {
  std::int16_t id = 0;  // as criteria strings name it
  std::string name{};   // "" for a field that is never offered to a user
  FieldType type = FieldType::kEmpty;
  std::string expression{};
};

// In the order in which a user is offered them: those of the suite's catalogue by identifier, those
// of SELEKTION by its own order. Raises InvalidArgument for a relation that has none.
std::vector<SelectableField> selectable_fields(const Session& session, std::string_view code);

// The display names of fields of one relation, for texts that people read.
class FieldNames {
 public:
  FieldNames(const Session& session, std::string_view code);

  // "field 12" for a field without a name.
  std::string name(std::int16_t id) const;

 private:
  const Session& session_;
  std::string code_;
  bool in_catalogue_;
  std::vector<ListEntry> catalogue_fields_;  // by field number of the table key
};

// Whether the relation is one that the library or SELEKTION knows. A code that neither knows would
// silently select nothing.
bool is_known_relation(const Session& session, std::string_view code);

// The same without a database: only what the library itself knows.
bool is_known_relation(std::string_view code);

// Whether an identifier is a field of the relation.
bool has_field(const Session& session, std::string_view code, std::int64_t id);

// The field that a user names by its identifier or its display name (case and blanks around it
// aside). Raises InvalidArgument for a field that the relation does not have.
std::int16_t field_named(const Session& session, std::string_view code, std::string_view field);

// The condition of the SELEKTION rows of a relation: " FROM SELEKTION WHERE ...".
std::string selektion_condition(std::string_view code);

// Raises InvalidArgument for a code that is not known.
void require_known_relation(const Session& session, std::string_view code);

}  // namespace kestrova::tool
