#include "tests/tools/pseudo_terminal.h"

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "tools/line_editor.h"

namespace kestrova::tool {
namespace {

constexpr int kPatience = 10'000;  // milliseconds without a byte

}  // namespace

PseudoTerminal::PseudoTerminal(const std::vector<std::string>& arguments) {
  std::vector<std::string> words = {KESTROVA_SEL};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  winsize size{};
  size.ws_row = 50;
  size.ws_col = 200;
  pid_ = forkpty(&terminal_, nullptr, nullptr, &size);
  if (pid_ < 0) throw std::runtime_error("No pseudo-terminal can be made.");
  if (pid_ > 0) return;
  setenv("TERM", "dumb", 1);
  setenv("LC_ALL", "C", 1);
  execv(KESTROVA_SEL, argv.data());
  _exit(127);
}

PseudoTerminal::~PseudoTerminal() {
  close(terminal_);
  if (pid_ < 0) return;
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
}

// Keys that come before the line editor has taken over would be shown by the terminal as well.
void PseudoTerminal::wait_for_line_editor() const {
  termios mode{};
  for (int waited = 0; waited < kPatience; ++waited) {
    if (tcgetattr(terminal_, &mode) == 0 && (mode.c_lflag & ICANON) == 0) return;
    poll(nullptr, 0, 1);
  }
  throw std::runtime_error("The program edits no lines.");
}

void PseudoTerminal::type(const std::string& keys) const {
  if (has_line_editor()) wait_for_line_editor();
  if (write(terminal_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
    throw std::runtime_error("Nothing can be typed.");
  }
}

bool PseudoTerminal::read_more() {
  pollfd waiting{.fd = terminal_, .events = POLLIN, .revents = 0};
  if (poll(&waiting, 1, kPatience) <= 0) return false;
  std::array<char, 4096> buffer{};
  const ssize_t length = read(terminal_, buffer.data(), buffer.size());
  if (length <= 0) return false;
  pending_.append(buffer.data(), static_cast<std::size_t>(length));
  return true;
}

std::string PseudoTerminal::read_until(const std::string& text) {
  std::size_t found = std::string::npos;
  while ((found = pending_.find(text)) == std::string::npos) {
    if (!read_more()) return std::exchange(pending_, {});
  }
  std::string result = pending_.substr(0, found + text.size());
  pending_.erase(0, result.size());
  return result;
}

std::string PseudoTerminal::read_to_end() {
  while (read_more()) {
  }
  return std::exchange(pending_, {});
}

int PseudoTerminal::exit_code() {
  int status = 0;
  if (waitpid(pid_, &status, 0) != pid_) throw std::runtime_error("The program was lost.");
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace kestrova::tool
