// Counts what the lines of the editor select, on the connection of the selection.
#pragma once

#include <memory>

#include "platform/row_counter.h"

namespace kestrova {

class F_Selection;

// The editor must outlive the counter.
std::shared_ptr<RowCounter> make_row_counter(const F_Selection& editor);

}  // namespace kestrova
