// The pick list of a field: the values that a user is offered for it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/session.h"

namespace kestrova::tool {

struct PickEntry {
  Value value;
  std::string text;  // as the user sees it
  std::string sql;   // what the library makes of it in a criterion
};

struct PickList {
  FieldType type = FieldType::kEmpty;
  std::string query{};
  std::size_t found = 0;  // values that the query answered, of which a long list shows the last
  std::vector<PickEntry> entries{};
};

// Raises the library's errors, and InvalidArgument for a join kind that is none.
PickList read_pick_list(const Session& session, std::string_view code, std::int16_t id);

}  // namespace kestrova::tool
