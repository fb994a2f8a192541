#include "tests/attack/sql_closure.h"

#include <cstddef>
#include <cstdint>

namespace kestrova::test {
namespace {

// The character that closes what c opens; 0 for one that opens nothing.
char closing(char c) { return c == '[' ? ']' : c == '\'' || c == '"' ? c : '\0'; }

}  // namespace

bool is_open(std::string_view sql) {
  int depth = 0;
  char waiting_for = '\0';
  for (std::size_t i = 0; i < sql.size(); ++i) {
    const char c = sql[i];
    const char next = i + 1 < sql.size() ? sql[i + 1] : '\0';
    if (waiting_for != '\0') {
      if (c != waiting_for) continue;
      if (next == waiting_for) {
        ++i;  // doubled, it stands for itself
      } else {
        waiting_for = '\0';
      }
      continue;
    }
    waiting_for = closing(c);
    if (c == ';' || (c == '-' && next == '-') || (c == '/' && next == '*')) return true;
    if (c == '(') ++depth;
    if (c == ')' && --depth < 0) return true;
  }
  return depth != 0 || waiting_for != '\0';
}

std::string without_outer(std::string_view sql, std::string_view characters) {
  std::string result;
  char waiting_for = '\0';
  for (const char c : sql) {
    if (waiting_for == '\0' && characters.find(c) != std::string_view::npos) continue;
    // A doubled quote closes and opens again.
    waiting_for = waiting_for == '\0' ? closing(c) : c == waiting_for ? '\0' : waiting_for;
    result += c;
  }
  return result;
}

bool is_unprintable(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = [&text](std::size_t at) {
      return at < text.size() ? static_cast<std::uint8_t>(text[at]) : std::uint8_t{0};
    };
    const std::uint8_t first = byte(i);
    const std::size_t size = first < 0x80                     ? 1
                             : first >= 0xC2 && first <= 0xDF ? 2
                             : first >= 0xE0 && first <= 0xEF ? 3
                             : first >= 0xF0 && first <= 0xF4 ? 4
                                                              : 0;
    if (size == 0) return true;
    std::uint32_t code = size == 1 ? first : first & (0x7FU >> size);
    for (std::size_t k = 1; k < size; ++k) {
      if ((byte(i + k) & 0xC0U) != 0x80U) return true;
      code = (code << 6U) | (byte(i + k) & 0x3FU);
    }
    constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (code < kSmallest[size] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
      return true;
    if (code < 0x20 || (code >= 0x7F && code < 0xA0)) return true;
    i += size;
  }
  return false;
}

}  // namespace kestrova::test
