// kestrova-sel at a terminal, with somebody who types.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace kestrova::tool {

class PseudoTerminal {
 public:
  // Starts the program on a terminal that cannot move its cursor, so that its lines can be read.
  // Raises std::runtime_error.
  explicit PseudoTerminal(const std::vector<std::string>& arguments);
  ~PseudoTerminal();
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  void type(const std::string& keys) const;

  // What is written up to and with the text; all that came within ten seconds when it does not
  // come.
  std::string read_until(const std::string& text);

  // What is written until the program ends, and its exit code then.
  std::string read_to_end();
  int exit_code();

 private:
  void wait_for_line_editor() const;
  bool read_more();

  int terminal_ = -1;
  pid_t pid_ = -1;
  std::string pending_;
};

}  // namespace kestrova::tool
