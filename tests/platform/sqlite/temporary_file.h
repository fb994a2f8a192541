// A database file of its own that is gone after the test.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>

namespace kestrova::test {

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
