// The SQL scripts of the sample forestry database, compiled in.
#pragma once

#include <span>
#include <string_view>

namespace kestrova {

struct ForestScript {
  std::string_view name;
  std::string_view text;
};

// All scripts in the order in which they have to run.
std::span<const ForestScript> forest_scripts();

}  // namespace kestrova
