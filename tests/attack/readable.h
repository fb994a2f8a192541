// Hostile texts as a terminal may show them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrova::test {

// As a literal of C++, bytes beyond ASCII as octal numbers; long texts are cut.
inline std::string readable(std::string_view text) {
  constexpr std::size_t kShown = 600;
  std::string result = "\"";
  for (const char c : text.substr(0, kShown)) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      (result += '\\') += c;
    } else if (byte >= 0x20 && byte < 0x7F) {
      result += c;
    } else {
      result += '\\';
      for (const int shift : {6, 3, 0}) result += static_cast<char>('0' + ((byte >> shift) & 7));
    }
  }
  return result + (text.size() > kShown ? "\" ..." : "\"");
}

inline std::string readable(const std::vector<std::string>& texts) {
  std::string result;
  for (const std::string& text : texts) (result += result.empty() ? "" : "; ") += readable(text);
  return result;
}

}  // namespace kestrova::test
