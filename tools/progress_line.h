// How far a long command has come, on one line that is written over.
#pragma once

#include <chrono>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>

namespace kestrova::tool {

// Whether the error stream is read by a person.
bool error_stream_is_terminal();

class ProgressLine {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  // Writes nothing for a command that takes less than a second. The line ends with the object.
  ProgressLine(std::ostream& err, std::string_view what, std::size_t total,
               Clock now = std::chrono::steady_clock::now);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  // Writes at most a few times a second.
  void show(std::size_t done);

 private:
  std::ostream err_;
  std::string what_;
  std::size_t total_;
  Clock now_;
  std::chrono::steady_clock::time_point next_;
  bool written_ = false;
};

}  // namespace kestrova::tool
