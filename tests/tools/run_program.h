// Runs kestrova-sel as a user does.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kestrova::tool {

struct ProgramResult {
  int exit_code = -1;  // 128 and the signal when a signal has ended it
  std::string out;
  std::string err;
};

// A folder for one run of the tests, removed at its end.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::filesystem::path file(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

// The program with these arguments and this text on its input. Raises std::runtime_error when it
// cannot be started.
ProgramResult run_program(const std::vector<std::string>& arguments, const std::string& input = "");

// The exit code of the program when nobody reads its output.
int exit_code_with_closed_pipe(const std::vector<std::string>& arguments);

std::string text_of(const std::filesystem::path& file);
void write_text(const std::filesystem::path& file, const std::string& text);

}  // namespace kestrova::tool
