#include "platform/odbc/start_statements.h"

#include <algorithm>
#include <array>

#include "platform/error.h"
#include "platform/text.h"

namespace kestrova::odbc {
namespace {

constexpr std::array<std::string_view, 6> kDateFormats = {"dmy", "mdy", "ymd", "ydm", "myd", "dym"};

void check(const OdbcOptions& options) {
  const bool known = std::find(kDateFormats.begin(), kDateFormats.end(), options.date_format) !=
                     kDateFormats.end();
  if (!options.date_format.empty() && !known) {
    throw InvalidArgument("There is no order of dates '" + options.date_format +
                          "': give dmy, mdy, ymd, ydm, myd or dym.");
  }
  const bool negative = options.login_timeout.count() < 0 || options.query_timeout.count() < 0 ||
                        (options.lock_timeout && options.lock_timeout->count() < 0);
  if (negative) throw InvalidArgument("A timeout cannot be negative.");
}

}  // namespace

ConnectionKind kind_of(std::string_view dbms_name) {
  if (text::contains_ignoring_case(dbms_name, "SQL SERVER")) return ConnectionKind::kSqlServer;
  if (text::starts_with_ignoring_case(dbms_name, "ORACLE")) return ConnectionKind::kOracle;
  return ConnectionKind::kOther;
}

std::vector<std::string> start_statements(const OdbcOptions& options, ConnectionKind kind) {
  check(options);
  std::vector<std::string> statements;
  if (kind == ConnectionKind::kSqlServer) {
    // Whether a model that is saved is still there is known by the number of rows alone; a server
    // or login may be set to tell none.
    statements.emplace_back("SET NOCOUNT OFF");
    // A language brings its order of dates along, so it goes first.
    if (!options.language.empty()) {
      statements.push_back("SET LANGUAGE N'" + text::replace_all(options.language, "'", "''") +
                           "'");
    }
    if (!options.date_format.empty()) statements.push_back("SET DATEFORMAT " + options.date_format);
    if (options.lock_timeout) {
      statements.push_back("SET LOCK_TIMEOUT " + std::to_string(options.lock_timeout->count()));
    }
  }
  statements.insert(statements.end(), options.start_statements.begin(),
                    options.start_statements.end());
  return statements;
}

}  // namespace kestrova::odbc
