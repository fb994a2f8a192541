// No terminal library: what the terminal itself lets a person edit.
#include <iostream>

#include "tools/line_editor.h"

namespace kestrova::tool {

bool has_line_editor() { return false; }

std::unique_ptr<LineSource> make_line_editor(std::ostream& out, bool, Completer) {
  return std::make_unique<StreamLines>(std::cin, out, true);
}

}  // namespace kestrova::tool
