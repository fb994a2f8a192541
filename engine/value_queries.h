// Fields whose values come from a table of their own, whatever their catalogue row says.
#pragma once

#include <string_view>

namespace kestrova {

// The query of the value list of a field, by its nickname in either case; "" for a field whose list
// is built from its catalogue row.
std::string_view fixed_value_query(std::string_view nickname);

}  // namespace kestrova
