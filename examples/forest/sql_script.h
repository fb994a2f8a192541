// SQL scripts as they are fed to the server's command line tools: a statement ends with ";" at the
// end of a line, a line GO ends a batch.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"

namespace kestrova {

struct ScriptStatement {
  std::string text;
  int line = 0;  // where it begins, counted from 1
};

// The statements of a script, without comment lines. A statement that GO or the end of the script
// cuts off counts as complete.
std::vector<ScriptStatement> split_script(std::string_view script);

// Runs the statements one by one. Raises DatabaseError with the script's name, the line and the
// beginning of the statement that failed; those before it stay done.
void run_script(Connection& connection, std::string_view name, std::string_view script);

}  // namespace kestrova
