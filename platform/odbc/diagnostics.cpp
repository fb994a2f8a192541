#include "platform/odbc/diagnostics.h"

#include <algorithm>
#include <array>

#include "platform/text.h"

namespace kestrova::odbc {
namespace {

constexpr std::string_view kLost = "08S01";

// A record that SQL Server itself has written is marked so by every driver.
constexpr std::string_view kServerMark = "[SQL Server]";

struct NativeRow {
  int native_code;
  std::string_view standard;
};

// clang-format off
// Numbers of SQL Server that some drivers give under a state that says less.
constexpr std::array kNativeCodes = {
    NativeRow{18456, "28000"},  // the login failed
    NativeRow{8115,  "22003"},  // arithmetic overflow
    NativeRow{220,   "22003"},  // overflow of a small type
};
// clang-format on

struct StateRow {
  std::string_view sqlstate;
  std::string_view text;  // what the record's text contains, "" for anything
  std::string_view standard;
};

// clang-format off
// The first row that fits counts. 57014 is also a statement that somebody else has cancelled.
constexpr std::array kStates = {
    StateRow{"42P01", "",                      "42S02"},  // PostgreSQL: no such table
    StateRow{"42P07", "",                      "42S01"},  // table exists
    StateRow{"42703", "",                      "42S22"},  // no such column
    StateRow{"42601", "",                      "42000"},  // syntax
    StateRow{"23505", "",                      "23000"},  // duplicate key
    StateRow{"23502", "",                      "23000"},  // NULL where none is allowed
    StateRow{"57014", "statement timeout",     "HYT00"},
    StateRow{"57P01", "",                      kLost},    // an administrator has ended the connection
    StateRow{"57P02", "",                      kLost},    // the server has crashed
    StateRow{"57P03", "",                      "08001"},  // the server is starting or stopping
    StateRow{"28P01", "",                      "28000"},  // wrong password
    StateRow{"08001", "password authentication failed", "28000"},
    StateRow{"HY000", "no such table:",        "42S02"},  // SQLite
    StateRow{"HY000", "no such column:",       "42S22"},
    StateRow{"HY000", "syntax error",          "42000"},
    StateRow{"HY000", "unrecognized token",    "42000"},
    StateRow{"HY000", "constraint failed",     "23000"},
    StateRow{"HY000", "already exists",        "42S01"},
    StateRow{"S0002", "",                      "42S02"},  // ODBC 2
    StateRow{"S0022", "",                      "42S22"},
    StateRow{"S1T00", "",                      "HYT00"},
};
// clang-format on

// "" when the record is none of the numbers'.
std::string_view state_by_number(const DiagnosticRecord& record) {
  if (!text::contains_ignoring_case(record.text, kServerMark)) return "";
  const auto row = std::find_if(kNativeCodes.begin(), kNativeCodes.end(), [&](const NativeRow& r) {
    return r.native_code == record.native_code;
  });
  return row == kNativeCodes.end() ? "" : row->standard;
}

std::string_view standard_state(const DiagnosticRecord& record) {
  const auto row = std::find_if(kStates.begin(), kStates.end(), [&](const StateRow& r) {
    return r.sqlstate == record.sqlstate && text::contains_ignoring_case(record.text, r.text);
  });
  return row == kStates.end() ? std::string_view(record.sqlstate) : row->standard;
}

// Drivers wrap long texts and end them with blanks or line ends.
std::string one_line(std::string_view text) {
  std::string line;
  for (const char c : text) {
    const bool is_blank = c == ' ' || c == '\n' || c == '\r' || c == '\t';
    if (!is_blank) {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  if (line.ends_with(' ')) line.pop_back();
  return line;
}

std::string shortened(std::string_view sql) {
  constexpr std::size_t kShown = 300;
  if (text::length(sql) <= kShown) return std::string(sql);
  return std::string(text::left(sql, kShown)) + " ...";
}

bool is_error(const DiagnosticRecord& record) {
  constexpr std::array<std::string_view, 3> kCompletions = {"00", "01", "02"};
  return std::none_of(kCompletions.begin(), kCompletions.end(),
                      [&record](std::string_view c) { return record.sqlstate.starts_with(c); });
}

// The record that says what has happened; there is one at least.
const DiagnosticRecord& decisive(const std::vector<DiagnosticRecord>& records) {
  const auto error = std::find_if(records.begin(), records.end(), is_error);
  return error == records.end() ? records.front() : *error;
}

}  // namespace

bool hold_error(const std::vector<DiagnosticRecord>& records) {
  return std::any_of(records.begin(), records.end(), is_error);
}

std::string standard_sqlstate(const std::vector<DiagnosticRecord>& records) {
  if (records.empty()) return "HY000";
  for (const DiagnosticRecord& record : records) {
    if (standard_state(record) == kLost) return std::string(kLost);
  }
  for (const DiagnosticRecord& record : records) {
    const std::string_view state = state_by_number(record);
    if (!state.empty()) return std::string(state);
  }
  return std::string(standard_state(decisive(records)));
}

DatabaseError error_of(const std::vector<DiagnosticRecord>& records, std::string_view statement) {
  std::string message;
  for (const DiagnosticRecord& record : records) {
    if (!message.empty()) message += "; ";
    message += one_line(record.text) + " (" + record.sqlstate + ", " +
               std::to_string(record.native_code) + ")";
  }
  if (records.empty()) message = "The driver tells no reason.";
  if (!statement.empty()) message += " [" + std::string(statement) + "]";
  return {message, standard_sqlstate(records), records.empty() ? 0 : decisive(records).native_code};
}

std::string statement_name(std::size_t index, std::string_view statement) {
  return "statement " + std::to_string(index + 1) + ": " + shortened(statement);
}

}  // namespace kestrova::odbc
