#include "platform/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "platform/error.h"

namespace kestrova::text {
namespace {

// One character read from UTF-8: its code point, or kNoCodePoint for a byte that is no UTF-8, and
// its length in bytes.
struct Character {
  char32_t code_point;
  std::size_t bytes;
};

constexpr char32_t kNoCodePoint = 0xFFFFFFFF;

bool is_continuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

// Whether UTF-8 spells the code point with that many bytes: not with more than it needs, no
// surrogate and nothing beyond the last code point.
bool is_spelled_by(char32_t code_point, std::size_t bytes) {
  if (code_point >= 0xD800 && code_point <= 0xDFFF) return false;
  if (bytes == 4) return code_point >= 0x10000 && code_point <= 0x10FFFF;
  return bytes == 2 || code_point >= 0x800;
}

// The character that begins at offset, which lies inside s.
Character read(std::string_view s, std::size_t offset) {
  const auto lead = static_cast<unsigned char>(s[offset]);
  if (lead < 0x80) return {lead, 1};
  const std::size_t bytes = lead >= 0xF0 && lead < 0xF5   ? 4
                            : lead >= 0xE0 && lead < 0xF0 ? 3
                            : lead >= 0xC2 && lead < 0xE0 ? 2
                                                          : 1;
  if (bytes == 1 || offset + bytes > s.size()) return {kNoCodePoint, 1};
  char32_t code_point = lead & (0x7FU >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    if (!is_continuation(s[offset + i])) return {kNoCodePoint, 1};
    code_point = (code_point << 6) | (static_cast<unsigned char>(s[offset + i]) & 0x3FU);
  }
  if (!is_spelled_by(code_point, bytes)) return {kNoCodePoint, 1};
  return {code_point, bytes};
}

void append(std::string& s, char32_t code_point) {
  if (code_point < 0x80) {
    s += static_cast<char>(code_point);
  } else if (code_point < 0x800) {
    s += static_cast<char>(0xC0 | (code_point >> 6));
    s += static_cast<char>(0x80 | (code_point & 0x3F));
  } else {
    s += static_cast<char>(0xE0 | (code_point >> 12));
    s += static_cast<char>(0x80 | ((code_point >> 6) & 0x3F));
    s += static_cast<char>(0x80 | (code_point & 0x3F));
  }
}

// A range of letters and the way from a small letter to its capital: by a constant distance, or,
// with distance 0, to the letter before for every second letter, beginning with the first.
struct CaseRange {
  char32_t first;
  char32_t last;
  std::int32_t distance;
};

// clang-format off
constexpr std::array<CaseRange, 39> kSmallLetters = {{
    {0x00E0, 0x00F6, -32},   // à to ö
    {0x00F8, 0x00FE, -32},   // ø to þ
    {0x00FF, 0x00FF, +121},  // ÿ
    {0x0101, 0x012F, 0},     // ā to į
    {0x0133, 0x0137, 0},     // ĳ to ķ
    {0x013A, 0x0148, 0},     // ĺ to ň
    {0x014B, 0x0177, 0},     // ŋ to ŷ
    {0x017A, 0x017E, 0},     // ź to ž
    {0x0371, 0x0373, 0},     // heta, sampi
    {0x0377, 0x0377, -1},    // digamma
    {0x037B, 0x037D, +130},  // lunate sigmas
    {0x03AC, 0x03AC, -38},   // ά
    {0x03AD, 0x03AF, -37},   // έ to ί
    {0x03B1, 0x03C1, -32},   // α to ρ
    {0x03C2, 0x03C2, -31},   // final sigma
    {0x03C3, 0x03CB, -32},   // σ to ϋ
    {0x03CC, 0x03CC, -64},   // ό
    {0x03CD, 0x03CE, -63},   // ύ, ώ
    {0x03D0, 0x03D0, -62},   // curled beta
    {0x03D1, 0x03D1, -57},   // script theta
    {0x03D5, 0x03D5, -47},   // straight phi
    {0x03D6, 0x03D6, -54},   // omega pi
    {0x03D7, 0x03D7, -8},    // kai
    {0x03D9, 0x03EF, 0},     // archaic and Coptic letters
    {0x03F0, 0x03F0, -86},   // script kappa
    {0x03F1, 0x03F1, -80},   // tailed rho
    {0x03F2, 0x03F2, +7},    // lunate sigma
    {0x03F3, 0x03F3, -116},  // yot
    {0x03F5, 0x03F5, -96},   // lunate epsilon
    {0x03F8, 0x03F8, -1},
    {0x03FB, 0x03FB, -1},
    {0x0430, 0x044F, -32},   // а to я
    {0x0450, 0x045F, -80},   // ѐ to џ
    {0x0461, 0x0481, 0},
    {0x048B, 0x04BF, 0},
    {0x04C2, 0x04CE, 0},
    {0x04CF, 0x04CF, -15},   // palochka
    {0x04D1, 0x04FF, 0},
    {0x0501, 0x052F, 0},
}};
// clang-format on

char32_t upper_code_point(char32_t c) {
  const auto range = std::find_if(kSmallLetters.begin(), kSmallLetters.end(),
                                  [c](const CaseRange& r) { return c >= r.first && c <= r.last; });
  if (range == kSmallLetters.end()) return c;
  if (range->distance != 0) {
    return static_cast<char32_t>(static_cast<std::int32_t>(c) + range->distance);
  }
  return (c - range->first) % 2 == 0 ? c - 1 : c;
}

// Byte offset behind the first count characters from offset on, at most the end.
std::size_t skip(std::string_view s, std::size_t offset, std::size_t count) {
  while (count > 0 && offset < s.size()) {
    offset += read(s, offset).bytes;
    --count;
  }
  return offset;
}

}  // namespace

std::string_view trim(std::string_view s) {
  const std::size_t first = s.find_first_not_of(' ');
  if (first == std::string_view::npos) return s.substr(0, 0);
  return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

std::string upper(std::string_view s) {
  std::string result;
  result.reserve(s.size());
  for (std::size_t offset = 0; offset < s.size();) {
    const char byte = s[offset];
    if (static_cast<unsigned char>(byte) < 0x80) {
      result += byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
      ++offset;
      continue;
    }
    const Character character = read(s, offset);
    const char32_t capital = character.code_point == kNoCodePoint
                                 ? kNoCodePoint
                                 : upper_code_point(character.code_point);
    if (capital == character.code_point) {
      result += s.substr(offset, character.bytes);
    } else {
      append(result, capital);
    }
    offset += character.bytes;
  }
  return result;
}

bool equal_ignoring_case(std::string_view a, std::string_view b) { return upper(a) == upper(b); }

bool contains_ignoring_case(std::string_view s, std::string_view needle) {
  return upper(s).find(upper(needle)) != std::string::npos;
}

bool starts_with_ignoring_case(std::string_view s, std::string_view prefix) {
  return upper(left(s, length(prefix))) == prefix;
}

std::size_t length(std::string_view s) {
  std::size_t count = 0;
  for (std::size_t offset = 0; offset < s.size(); offset += read(s, offset).bytes) ++count;
  return count;
}

std::string_view mid(std::string_view s, std::size_t position, std::size_t count) {
  if (position == 0) throw InvalidArgument("Positions in a text count from 1.");
  const std::size_t begin = skip(s, 0, position - 1);
  return s.substr(begin, skip(s, begin, count) - begin);
}

std::string_view left(std::string_view s, std::size_t count) {
  return s.substr(0, skip(s, 0, count));
}

std::string replace_all(std::string_view s, std::string_view what, std::string_view with) {
  std::string result;
  std::size_t done = 0;
  for (std::size_t at = s.find(what); at != std::string_view::npos; at = s.find(what, done)) {
    result += s.substr(done, at - done);
    result += with;
    done = at + what.size();
  }
  result += s.substr(done);
  return result;
}

std::vector<std::string_view> split(std::string_view s, char separator) {
  std::vector<std::string_view> pieces;
  for (std::size_t end = s.find(separator); end != std::string_view::npos;
       end = s.find(separator)) {
    pieces.push_back(s.substr(0, end));
    s.remove_prefix(end + 1);
  }
  pieces.push_back(s);
  return pieces;
}

std::optional<std::int64_t> to_integer(std::string_view s) {
  std::string_view digits = trim(s);
  if (digits.starts_with('+') && !digits.substr(1).starts_with('-')) digits.remove_prefix(1);
  std::int64_t number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool all_read = result.ptr == digits.data() + digits.size();
  // A number of any length is a number; one beyond 64 bits is told from its neighbours by no
  // caller.
  if (result.ec == std::errc::result_out_of_range && all_read) {
    return digits.front() == '-' ? std::numeric_limits<std::int64_t>::min()
                                 : std::numeric_limits<std::int64_t>::max();
  }
  if (result.ec != std::errc() || !all_read) return std::nullopt;
  return number;
}

std::int16_t to_int16(std::string_view s) {
  const auto number = to_integer(s);
  if (!number) throw TypeMismatch("'" + std::string(s) + "' is no whole number.");
  if (*number < std::numeric_limits<std::int16_t>::min() ||
      *number > std::numeric_limits<std::int16_t>::max()) {
    throw Overflow("The number " + std::string(trim(s)) + " does not fit 16 bits.");
  }
  return static_cast<std::int16_t>(*number);
}

}  // namespace kestrova::text
