#include "platform/sqlite/sqlite_error.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>

namespace kestrova::sql {
namespace {

struct CodeRow {
  int code;  // extended, or a primary one for all of its kind
  const char* sqlstate;
  const char* message;  // none: what the call says
};

constexpr const char* kLocked = "The database is locked by another program.";
constexpr const char* kBrokenOff =
    "A program was broken off while it wrote to the database: before it can be read, it must be "
    "opened once with the right to write.";

// clang-format off
constexpr std::array<CodeRow, 5> kCodes = {{
    {SQLITE_READONLY_ROLLBACK, "25006", kBrokenOff},
    {SQLITE_READONLY_RECOVERY, "25006", kBrokenOff},
    {SQLITE_READONLY,          "25006", nullptr},
    {SQLITE_BUSY,              "40001", kLocked},
    {SQLITE_LOCKED,            "40001", kLocked},
}};
// clang-format on

}  // namespace

DatabaseError refusal(int code, const std::string& otherwise) {
  const auto row = std::find_if(kCodes.begin(), kCodes.end(), [code](const CodeRow& r) {
    return r.code == code || r.code == (code & 0xFF);
  });
  if (row == kCodes.end()) return DatabaseError(otherwise, "HY000", code);
  return DatabaseError(row->message ? row->message : otherwise, row->sqlstate, code);
}

bool needs_recovery(const DatabaseError& error) {
  return error.native_code() == SQLITE_READONLY_ROLLBACK ||
         error.native_code() == SQLITE_READONLY_RECOVERY;
}

}  // namespace kestrova::sql
