// Lines that a person edits: with history and completion where the terminal library is built in.
#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string_view>

#include "tools/editor_commands.h"
#include "tools/terminal.h"

namespace kestrova::tool {

using Completer = std::function<Completion(std::string_view line)>;

// What a completion puts in place of the end of a line: the only candidate, or as much as all of
// them begin with. Empty when that is nothing.
std::string common_beginning(const std::vector<std::string>& candidates);

// Whether the program was built with a terminal library.
bool has_line_editor();

// The lines of the standard input, edited on the terminal to which out writes: the standard output,
// or the error stream. The history is kept in memory only and ends with the object.
std::unique_ptr<LineSource> make_line_editor(std::ostream& out, bool to_error_stream,
                                             Completer complete);

}  // namespace kestrova::tool
