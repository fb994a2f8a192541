// Conditions joined so that each keeps its own meaning.
#pragma once

#include <string>
#include <string_view>

namespace kestrova::standalone {

// The condition, in parentheses exactly when an OR stands in it outside all parentheses, literals
// and CASE expressions: followed by AND it would otherwise admit rows that it must not.
std::string guarded(std::string_view condition);

// The two conditions joined by AND, each guarded. When one is empty or blank, the other as it
// stands.
std::string joined_by_and(std::string_view condition, std::string_view further);

}  // namespace kestrova::standalone
