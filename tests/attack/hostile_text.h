// Texts of somebody who wants out of the parentheses: from a grammar of SQL fragments, with the
// slips of the keyboard and of the wire added.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/attack/dice.h"

namespace kestrova::test {

// What stands behind the field of one criterion: operator and value, as " = 'x'". field is how the
// fragments name the field again ("{field} = 1" behind a ";").
std::string hostile_criterion(Dice& dice, std::string_view field);

// The criteria of a whole filter behind their fields; or_line stands for itself. Some are one
// hostile text cut in two, so that each half is open and both together are not.
std::vector<std::string> hostile_criteria(Dice& dice, std::string_view field,
                                          std::string_view or_line);

// The name of a model, and what may stand behind the prefix of a relation code.
std::string hostile_name(Dice& dice);
std::string hostile_suffix(Dice& dice);

}  // namespace kestrova::test
