// What a user is told when a command fails.
#pragma once

#include <exception>
#include <optional>
#include <ostream>
#include <string>

namespace kestrova::tool {

struct ErrorReport {
  int exit_code = 0;
  std::string message;        // one line
  std::optional<int> number;  // of a kestrova::Error
  std::string sqlstate;       // of a DatabaseError
};

ErrorReport describe_error(std::exception_ptr error);

// One line "kestrova-sel: error: ..." for people, or the document {"error": {...}} for programs.
void print_error_line(std::ostream& err, const ErrorReport& report);
void print_error_json(std::ostream& out, const ErrorReport& report);

}  // namespace kestrova::tool
