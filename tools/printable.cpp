#include "tools/printable.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <ostream>
#include <streambuf>
#include <utility>

#include "platform/text.h"

namespace kestrova::tool {
namespace {

constexpr std::string_view kReplacement = "\uFFFD";
constexpr std::string_view kLineEnd = "\r\n";

struct Range {
  char32_t first;
  char32_t last;
};

constexpr std::array kUnprintable = {
    Range{0x00, 0x08},     Range{0x0B, 0x1F},      // all but the tab and the line end
    Range{0x7F, 0x9F},     Range{0x061C, 0x061C},  // an Arabic letter mark
    Range{0x200E, 0x200F}, Range{0x2028, 0x202E}, Range{0x2066, 0x2069},
};

// The code point of a character of UTF-8.
char32_t code_point(std::string_view character) {
  const auto byte = [&character](std::size_t i) {
    return static_cast<unsigned char>(character[i]);
  };
  if (character.size() == 1) return byte(0);
  char32_t result = byte(0) & (0x7FU >> character.size());
  for (std::size_t i = 1; i < character.size(); ++i) result = (result << 6) | (byte(i) & 0x3FU);
  return result;
}

// A lone byte beyond ASCII is no UTF-8: a terminal may take it for a control character.
bool is_printable(std::string_view character) {
  if (character == kLineEnd) return true;
  const char32_t c = code_point(character);
  if (character.size() == 1 && c > 0x7F) return false;
  return std::none_of(kUnprintable.begin(), kUnprintable.end(),
                      [c](const Range& range) { return c >= range.first && c <= range.last; });
}

// Most of all characters.
bool is_plain(char c) { return (c >= ' ' && c < 0x7F) || c == '\n'; }

// s with every unprintable character replaced by what the function answers for it.
template <class Replacement>
std::string replaced(std::string_view s, const Replacement& replacement) {
  std::string result;
  result.reserve(s.size());
  while (!s.empty()) {
    const auto plain =
        static_cast<std::size_t>(std::find_if_not(s.begin(), s.end(), is_plain) - s.begin());
    result += s.substr(0, plain);
    s.remove_prefix(plain);
    // A carriage return counts as a part of the line end that it stands before.
    const std::string_view character = s.starts_with(kLineEnd) ? kLineEnd : text::left(s, 1);
    if (character.empty()) break;
    result += is_printable(character) ? std::string(character) : replacement(character);
    s.remove_prefix(character.size());
  }
  return result;
}

// How many bytes at the end of s begin a character, or a line end, that goes on behind it.
std::size_t unfinished_bytes(std::string_view s) {
  if (s.ends_with(kLineEnd.front())) return 1;
  for (std::size_t i = 1; i <= std::min<std::size_t>(3, s.size()); ++i) {
    const auto byte = static_cast<unsigned char>(s[s.size() - i]);
    if ((byte & 0xC0U) == 0x80U) continue;
    const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
    return length > i ? i : 0;
  }
  return 0;
}

}  // namespace

std::string printable(std::string_view s) {
  return replaced(s, [](std::string_view) { return std::string(kReplacement); });
}

std::string printable_json(std::string_view document) {
  return replaced(document, [](std::string_view character) {
    std::array<char, 7> escape{};
    std::snprintf(escape.data(), escape.size(), "\\u%04x",
                  static_cast<unsigned>(code_point(character)));
    return std::string(escape.data());
  });
}

class PrintableStream::Buffer final : public std::streambuf {
 public:
  explicit Buffer(std::streambuf* target) : target_(target) {}

  std::streambuf* target() const { return target_; }

  // What is still unfinished at the end has no end.
  bool finish() { return write(printable(std::exchange(unfinished_, {}))); }

 protected:
  int_type overflow(int_type c) override {
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    const char character = traits_type::to_char_type(c);
    return xsputn(&character, 1) == 1 ? c : traits_type::eof();
  }

  std::streamsize xsputn(const char* s, std::streamsize count) override {
    unfinished_.append(s, static_cast<std::size_t>(count));
    const std::size_t rest = unfinished_bytes(unfinished_);
    const std::string whole = unfinished_.substr(0, unfinished_.size() - rest);
    unfinished_.erase(0, whole.size());
    return write(printable(whole)) ? count : 0;
  }

  int sync() override { return target_->pubsync(); }

 private:
  bool write(const std::string& s) {
    const auto count = static_cast<std::streamsize>(s.size());
    return target_->sputn(s.data(), count) == count;
  }

  std::streambuf* const target_;
  std::string unfinished_;  // the first bytes of a character
};

PrintableStream::PrintableStream(std::ostream& stream)
    : stream_(stream), buffer_(std::make_unique<Buffer>(stream.rdbuf())) {
  stream_.rdbuf(buffer_.get());
}

PrintableStream::~PrintableStream() {
  buffer_->finish();
  stream_.rdbuf(buffer_->target());
}

std::streambuf* PrintableStream::unfiltered(std::ostream& stream) {
  const auto* const filter = dynamic_cast<Buffer*>(stream.rdbuf());
  return filter == nullptr ? stream.rdbuf() : filter->target();
}

}  // namespace kestrova::tool
