// Nothing that the database or a user has written moves the cursor, changes the terminal or turns
// the direction of a line: all output of the program, to a terminal, a pipe or a file, shows such a
// character as the replacement character, one for one.
//
// Those are the control characters of ASCII (but line ends and the tab) and of Latin-1, the
// separators of lines and paragraphs, the marks of the writing direction, and bytes that are no
// UTF-8.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

namespace kestrova::tool {

std::string printable(std::string_view s);

// A JSON document in which these characters are written as escapes: what a program reads stays the
// same.
std::string printable_json(std::string_view document);

// Lets everything that is written on a stream through printable() for as long as it lives.
class PrintableStream {
 public:
  explicit PrintableStream(std::ostream& stream);
  ~PrintableStream();
  PrintableStream(const PrintableStream&) = delete;
  PrintableStream& operator=(const PrintableStream&) = delete;

  // Where the program's own control characters go.
  static std::streambuf* unfiltered(std::ostream& stream);

 private:
  class Buffer;
  std::ostream& stream_;
  std::unique_ptr<Buffer> buffer_;
};

}  // namespace kestrova::tool
