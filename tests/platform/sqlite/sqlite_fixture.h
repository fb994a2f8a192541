// A database file, and short ways to ask a connection.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/error.h"

namespace kestrova::test {

inline std::unique_ptr<Recordset> rows_of(Connection& connection, std::string_view source) {
  return connection.open(source, CursorType::kForwardOnly, LockType::kReadOnly);
}

// The first column of all rows.
inline std::vector<std::string> column_of(Connection& connection, std::string_view source) {
  std::vector<std::string> values;
  for (auto rows = rows_of(connection, source); !rows->eof(); rows->move_next()) {
    values.push_back(rows->value(0).text_or_empty());
  }
  return values;
}

// The SQLSTATE and the message of what the function raises.
template <class Function>
std::string database_error(Function function) {
  try {
    function();
  } catch (const DatabaseError& error) {
    return error.sqlstate() + " " + error.what();
  }
  return "no error";
}

// A database file of its own that is gone after the test.
class TemporaryFile {
 public:
  TemporaryFile()
      : path_(std::filesystem::temp_directory_path() /
              ("kestrova_" +
               std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()) +
               ".db")) {}
  ~TemporaryFile() {
    std::filesystem::remove(path_);
    std::filesystem::remove(name() + "-journal");
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  std::string name() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace kestrova::test
