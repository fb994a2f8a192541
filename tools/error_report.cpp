#include "tools/error_report.h"

#include "platform/error.h"
#include "tools/options.h"
#include "tools/table_printer.h"
#include "tools/values.h"

namespace kestrova::tool {

ErrorReport describe_error(std::exception_ptr error) {
  const auto line = [](const std::exception& e) { return fit_cell(e.what(), SIZE_MAX); };
  try {
    std::rethrow_exception(error);
  } catch (const DatabaseError& e) {
    return {kExitRefused, line(e), e.number(), e.sqlstate()};
  } catch (const Error& e) {
    return {kExitRefused, line(e), e.number(), {}};
  } catch (const UsageError& e) {
    return {kExitWrongUsage, line(e), std::nullopt, {}};
  } catch (const std::exception& e) {
    return {kExitUnexpected, line(e), std::nullopt, {}};
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
