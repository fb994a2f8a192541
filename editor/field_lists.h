// Which fields the editor offers for the relations of the suite's catalogue, and under which
// identifiers criteria strings know them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/controls.h"
#include "platform/database.h"
#include "platform/kes_var.h"

namespace kestrova {

// How the field numbers of a list become the identifiers of criteria strings.
enum class Mapping {
  kOwnCode,        // by the relation code itself
  kLogReverse,     // back from the invoice log
  kHeaderReverse,  // back from the invoice headers
  kNumberMap,      // by inverting the code's mapping of 1 to 3000
};

struct FieldList {
  std::string relation;  // the code that answers for the identifiers, and under which the editor
                         // goes on: one relation has a field list of its own and shares all else
  std::string key;       // field-list key
  Mapping mapping = Mapping::kOwnCode;
};

// The field list of a catalogue relation, by the code as the caller gave it.
FieldList field_list_of(std::string_view code);

// The fields of the list that the relation offers, in the order of the list: display text, and the
// identifier as item data.
std::vector<ListEntry> offered_fields(const FieldList& list, Connection& connection,
                                      const KesVar& context);

// The items of a configuration list in MODELS ("USERFIELDS", "BBFIZ"): the first row's text, split
// at its commas. Empty without a row.
std::vector<std::string> field_setting(Connection& connection, std::string_view relation);

}  // namespace kestrova
