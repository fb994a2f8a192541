#include "tests/attack/write_watch.h"

#include <sqlite3.h>

#include <array>
#include <utility>

namespace kestrova::test {
namespace {

struct Change {
  int code;
  std::string_view verb;
};

constexpr std::array kChanges = {Change{SQLITE_INSERT, "INSERT"}, Change{SQLITE_DELETE, "DELETE"},
                                 Change{SQLITE_UPDATE, "UPDATE"}, Change{SQLITE_ATTACH, "ATTACH"},
                                 Change{SQLITE_DETACH, "DETACH"}};

std::string change_text(std::string_view verb, const char* table, const char* column,
                        const char* database) {
  std::string change(verb);
  change += database && std::string_view(database) == "temp" ? " #" : " ";
  if (table) change += table;
  if (column) {
    change += '.';
    change += column;
  }
  return change;
}

// Tables are made and dropped by changes of the table of tables: these five actions are all.
int authorise(void* watch, int action, const char* first, const char* second, const char* database,
              const char*) {
  for (const Change& change : kChanges) {
    if (change.code != action) continue;
    const std::string text = change_text(change.verb, first, second, database);
    return static_cast<WriteWatch*>(watch)->asks(text) ? SQLITE_OK : SQLITE_DENY;
  }
  return SQLITE_OK;
}

int watch_new_connection(sqlite3* handle, char**, const struct sqlite3_api_routines*) {
  return sqlite3_set_authorizer(handle, authorise, &WriteWatch::instance());
}

}  // namespace

WriteWatch::WriteWatch() {
  using Entry = void (*)();
  sqlite3_auto_extension(reinterpret_cast<Entry>(watch_new_connection));
}

WriteWatch& WriteWatch::instance() {
  static WriteWatch watch;
  return watch;
}

void WriteWatch::begin(Allowed allowed) {
  watching_ = true;
  allowed_ = std::move(allowed);
  allowed_changes_.clear();
  refused_.clear();
}

std::vector<std::string> WriteWatch::end() {
  watching_ = false;
  return std::move(refused_);
}

bool WriteWatch::asks(const std::string& change) {
  if (!watching_) return true;
  const bool may = allowed_(change);
  (may ? allowed_changes_ : refused_).push_back(change);
  return may;
}

}  // namespace kestrova::test
