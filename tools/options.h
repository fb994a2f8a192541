// What a user asks on the command line, after CLI11 has read it.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace kestrova::tool {

// Exit codes of the program.
enum ExitCode : int {
  kExitOk = 0,
  kExitRefused = 1,     // the filter or the database refused, an audit found broken filters
  kExitWrongUsage = 2,  // the command line makes no sense
  kExitUnexpected = 3,  // a fault of the program or the system
  kExitCancelled = 4,   // a session ended and its selection was not confirmed
};

// A command line that makes no sense; the message says what to do.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Options of every command.
struct GlobalOptions {
  std::string database;  // file of an embedded database or "odbc:..."; "" for none
  std::string language = "DE";
  std::string date_order = "DMY";
  std::string or_line = "=== ODER ===";
  std::int32_t user_level = 1;  // the level that sees the records of all levels
  std::int32_t user = 0;
  bool json = false;
};

// A stored filter and how it is to be read.
struct Filter {
  std::string code;                  // relation code
  std::string criteria;              // criteria string
  std::string mode;                  // "WAREN", "4ARB", or "" to choose by the code
  std::string variant;               // variant tag
  std::optional<std::string> model;  // name of a saved model that gives the criteria
};

struct RelationsArguments {
  std::optional<std::string> code;
};

struct FieldsArguments {
  std::string code;
};

struct TranslateArguments {
  Filter filter;
  bool raw = false;  // only the exact text, on one line
};

struct RunArguments {
  Filter filter;
  std::string columns;  // select list; "" for the columns by which people know a record
  std::int32_t limit = 50;
};

struct DescribeArguments {
  Filter filter;
};

struct ModelsArguments {
  std::string code;
};

struct ValuesArguments {
  std::string code;
  std::string field;  // identifier or display name
};

struct AuditArguments {
  bool progress = false;  // also when the error stream is no terminal
};

struct MaterialiseArguments {
  std::string kind;
  std::optional<std::string> from_where;
  Filter filter;  // read when there is no from_where
  std::int32_t limit = 10;
  bool batch_only = false;
};

struct SessionArguments {
  std::string code;
  std::string variant;  // variant tag
  std::string subset;   // criteria string to start from, for the relation NML
  bool read_only = false;
  bool keep_going = false;  // a script goes on behind a command that failed
};

struct EditArguments {
  std::string code;
  std::string variant;                // variant tag
  std::optional<std::string> subset;  // criteria string to start from
  bool read_only = false;
  bool count_rows = false;
  std::string theme = "system";           // "system", "light" or "dark"
  std::optional<std::string> screenshot;  // file for a picture of the window, which is then closed
};

struct DemoDbArguments {
  std::string file;
  std::optional<std::int64_t> lots;
  std::optional<std::uint64_t> seed;
  std::optional<std::string> today;  // "yyyy-mm-dd", the day around which all dates lie
  bool force = false;
  bool script = false;  // a script for SQL Server instead of an embedded database
};

}  // namespace kestrova::tool
