// What a user is told about a line that makes no sense.
#pragma once

#include <string>

#include "tools/options.h"

namespace kestrova::tool {

// The text of the UsageError that the action raises; another text when it raises none.
template <class Action>
std::string usage_error(const Action& action) {
  try {
    action();
  } catch (const UsageError& error) {
    return error.what();
  }
  return "(no error)";
}

}  // namespace kestrova::tool
