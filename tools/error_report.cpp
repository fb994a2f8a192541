#include "tools/error_report.h"

#include "platform/error.h"
#include "tools/options.h"
#include "tools/table_printer.h"
#include "tools/values.h"

namespace kestrova::tool {
namespace {

std::string one_line(std::string_view message) { return fit_cell(message, SIZE_MAX); }

// The database quotes the statement behind its message, which makes a long line of a short one.
std::string_view without_statement(std::string_view message) {
  return message.substr(0, message.find(" [statement "));
}

}  // namespace

ErrorReport describe_error(std::exception_ptr error) {
  try {
    std::rethrow_exception(error);
  } catch (const ReportedError& e) {
    return e.report;
  } catch (const DatabaseError& e) {
    return {kExitRefused, one_line(without_statement(e.what())), e.number(), e.sqlstate()};
  } catch (const Error& e) {
    return {kExitRefused, one_line(e.what()), e.number(), {}};
  } catch (const UsageError& e) {
    return {kExitWrongUsage, one_line(e.what()), std::nullopt, {}};
  } catch (const std::exception& e) {
    return {kExitUnexpected, one_line(e.what()), std::nullopt, {}};
  }
}

void print_error_line(std::ostream& err, const ErrorReport& report) {
  err << "kestrova-sel: error: " << report.message << '\n';
}

void print_error_json(std::ostream& out, const ErrorReport& report) {
  Json error{{"message", report.message}, {"number", nullptr}, {"sqlstate", nullptr}};
  if (report.number) error["number"] = *report.number;
  if (!report.sqlstate.empty()) error["sqlstate"] = report.sqlstate;
  print_json(out, Json{{"error", error}});
}

}  // namespace kestrova::tool
