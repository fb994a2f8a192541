// What a driver says about a failure, and the error that is made of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/error.h"

namespace kestrova::odbc {

struct DiagnosticRecord {
  std::string sqlstate;
  int native_code = 0;
  std::string text;
};

// Whether a record tells of more than a completion: the classes 00 (success), 01 (warning) and 02
// (no data).
bool hold_error(const std::vector<DiagnosticRecord>& records);

// The SQLSTATE of the first record that is an error, or else of the first one, as ODBC defines it:
// some drivers pass on their database's own, or none. "08S01" when any record tells that the
// connection is lost; of a record of SQL Server the state that belongs to its number.
std::string standard_sqlstate(const std::vector<DiagnosticRecord>& records);

// All records, and the statement (shortened) unless it is empty:
// "text (42S02, 208); text (42000, 8180) [statement 2: SELECT ...]"
DatabaseError error_of(const std::vector<DiagnosticRecord>& records, std::string_view statement);

// The statement as errors name it: "statement 2: SELECT ...". index counts from 0.
std::string statement_name(std::size_t index, std::string_view statement);

}  // namespace kestrova::odbc
