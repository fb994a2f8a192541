// What a model may be called.
#pragma once

#include <string_view>

namespace kestrova {

// Raises InvalidArgument for a name with an apostrophe or a control character: names go into
// statements between apostrophes as they stand, and an apostrophe would end them early.
void require_model_name(std::string_view name);

}  // namespace kestrova
