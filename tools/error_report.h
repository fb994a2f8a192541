// What a user is told when a command fails.
#pragma once

#include <exception>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>

namespace kestrova::tool {

struct ErrorReport {
  int exit_code = 0;
  std::string message;        // one line
  std::optional<int> number;  // of a kestrova::Error
  std::string sqlstate;       // of a DatabaseError
};

// An error that has its words already, such as the line of the script that it belongs to.
class ReportedError : public std::runtime_error {
 public:
  explicit ReportedError(ErrorReport its_report)
      : std::runtime_error(its_report.message), report(std::move(its_report)) {}

  ErrorReport report;
};

ErrorReport describe_error(std::exception_ptr error);

// One line "kestrova-sel: error: ..." for people, or the document {"error": {...}} for programs.
void print_error_line(std::ostream& err, const ErrorReport& report);
void print_error_json(std::ostream& out, const ErrorReport& report);

}  // namespace kestrova::tool
