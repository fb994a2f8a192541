#include "tools/progress_line.h"

#include "tools/printable.h"

#include <cstdio>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace kestrova::tool {
namespace {

constexpr std::chrono::milliseconds kPatience{1000};
constexpr std::chrono::milliseconds kInterval{200};

}  // namespace

bool error_stream_is_terminal() {
#ifdef _WIN32
  return _isatty(_fileno(stderr)) != 0;
#else
  return isatty(STDERR_FILENO) != 0;
#endif
}

ProgressLine::ProgressLine(std::ostream& err, std::string_view what, std::size_t total, Clock now)
    // Its line is written over with a control character of its own.
    : err_(PrintableStream::unfiltered(err)),
      what_(what),
      total_(total),
      now_(std::move(now)),
      next_(now_() + kPatience) {}

ProgressLine::~ProgressLine() {
  if (written_) err_ << '\n' << std::flush;
}

void ProgressLine::show(std::size_t done) {
  const auto now = now_();
  if (now < next_) return;
  next_ = now + kInterval;
  written_ = true;
  err_ << "\rkestrova-sel: " << what_ << ' ' << done << " of " << total_ << std::flush;
}

}  // namespace kestrova::tool
