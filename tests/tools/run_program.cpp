#include "tests/tools/run_program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <sstream>
#include <stdexcept>

extern char** environ;

namespace kestrova::tool {
namespace {

class FileActions {
 public:
  FileActions() { posix_spawn_file_actions_init(&actions_); }
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  void open(int descriptor, const std::string& path, int flags) {
    posix_spawn_file_actions_addopen(&actions_, descriptor, path.c_str(), flags, 0600);
  }
  void duplicate(int from, int to) { posix_spawn_file_actions_adddup2(&actions_, from, to); }
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

int run(const std::vector<std::string>& arguments, const FileActions& actions) {
  std::vector<std::string> words = {KESTROVA_SEL};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (posix_spawn(&pid, KESTROVA_SEL, actions.get(), nullptr, argv.data(), environ) != 0) {
    throw std::runtime_error("The program cannot be started: " KESTROVA_SEL);
  }
  int status = 0;
  if (waitpid(pid, &status, 0) != pid) throw std::runtime_error("The program was lost.");
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

constexpr int kWrite = O_WRONLY | O_CREAT | O_TRUNC;

}  // namespace

ScratchFolder::ScratchFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "kestrova_XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("No folder can be made.");
  path_ = name;
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

ProgramResult run_program(const std::vector<std::string>& arguments, const std::string& input) {
  const ScratchFolder scratch;
  write_text(scratch.file("in"), input);
  FileActions actions;
  actions.open(0, scratch.file("in"), O_RDONLY);
  actions.open(1, scratch.file("out"), kWrite);
  actions.open(2, scratch.file("err"), kWrite);
  const int exit_code = run(arguments, actions);
  return {exit_code, text_of(scratch.file("out")), text_of(scratch.file("err"))};
}

int exit_code_with_closed_pipe(const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("No pipe can be made.");
  close(ends[0]);
  FileActions actions;
  actions.duplicate(ends[1], 1);
  const int exit_code = run(arguments, actions);
  close(ends[1]);
  return exit_code;
}

std::string text_of(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("Cannot read " + file.string());
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

void write_text(const std::filesystem::path& file, const std::string& text) {
  std::ofstream stream(file, std::ios::binary);
  stream << text;
  if (!stream.flush()) throw std::runtime_error("Cannot write " + file.string());
}

}  // namespace kestrova::tool
