#include "platform/odbc/utf16.h"

#include <cstdint>

#include "platform/error.h"

namespace kestrova::odbc {
namespace {

constexpr char32_t kFirstSupplementary = 0x10000;
constexpr char32_t kLastCodePoint = 0x10FFFF;

bool is_high_surrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low_surrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

[[noreturn]] void reject(std::size_t position) {
  throw DatabaseError("The text is no UTF-8 at byte " + std::to_string(position + 1) + ".",
                      "22021");
}

// The code point at the position, which moves behind it.
char32_t take_code_point(std::string_view utf8, std::size_t& position) {
  const std::size_t begin = position;
  const auto lead = static_cast<unsigned char>(utf8[position++]);
  if (lead < 0x80) return lead;
  const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (lead < 0xC2 || lead > 0xF4) reject(begin);
  char32_t code_point = lead & (0x3FU >> following);
  for (int i = 0; i < following; ++i, ++position) {
    if (position >= utf8.size()) reject(begin);
    const auto byte = static_cast<unsigned char>(utf8[position]);
    if ((byte & 0xC0U) != 0x80U) reject(begin);
    code_point = code_point << 6 | (byte & 0x3FU);
  }
  constexpr char32_t kLeast[] = {0, 0x80, 0x800, kFirstSupplementary};
  if (code_point < kLeast[following] || code_point > kLastCodePoint) reject(begin);
  return code_point;
}

void append(std::string& utf8, char32_t code_point) {
  const auto add = [&utf8](char32_t byte) { utf8 += static_cast<char>(byte); };
  if (code_point < 0x80) {
    add(code_point);
  } else if (code_point < 0x800) {
    add(0xC0 | code_point >> 6);
    add(0x80 | (code_point & 0x3F));
  } else if (code_point < kFirstSupplementary) {
    add(0xE0 | code_point >> 12);
    add(0x80 | (code_point >> 6 & 0x3F));
    add(0x80 | (code_point & 0x3F));
  } else {
    add(0xF0 | code_point >> 18);
    add(0x80 | (code_point >> 12 & 0x3F));
    add(0x80 | (code_point >> 6 & 0x3F));
    add(0x80 | (code_point & 0x3F));
  }
}

}  // namespace

std::u16string to_utf16(std::string_view utf8) {
  std::u16string utf16;
  utf16.reserve(utf8.size());
  for (std::size_t position = 0; position < utf8.size();) {
    const char32_t code_point = take_code_point(utf8, position);
    if (code_point < kFirstSupplementary) {
      utf16 += static_cast<char16_t>(code_point);
    } else {
      const char32_t offset = code_point - kFirstSupplementary;
      utf16 += static_cast<char16_t>(0xD800 + (offset >> 10));
      utf16 += static_cast<char16_t>(0xDC00 + (offset & 0x3FF));
    }
  }
  return utf16;
}

std::string to_utf8(std::u16string_view utf16) {
  std::string utf8;
  utf8.reserve(utf16.size());
  for (std::size_t i = 0; i < utf16.size(); ++i) {
    const char16_t unit = utf16[i];
    if (unit < 0x80) {
      utf8 += static_cast<char>(unit);
    } else if (is_high_surrogate(unit) && i + 1 < utf16.size() && is_low_surrogate(utf16[i + 1])) {
      const char32_t high = unit - 0xD800U;
      const char32_t low = utf16[++i] - 0xDC00U;
      append(utf8, kFirstSupplementary + (high << 10 | low));
    } else {
      append(utf8, unit);
    }
  }
  return utf8;
}

}  // namespace kestrova::odbc
