#include "tools/line_editor.h"

#include <algorithm>

namespace kestrova::tool {

std::string common_beginning(const std::vector<std::string>& candidates) {
  if (candidates.empty()) return {};
  std::string_view common = candidates.front();
  for (const std::string_view candidate : candidates) {
    const std::size_t length = std::min(common.size(), candidate.size());
    const auto differs = std::mismatch(common.begin(), common.begin() + length, candidate.begin());
    common = common.substr(0, static_cast<std::size_t>(differs.first - common.begin()));
  }
  // Not in the middle of a character.
  const auto is_inside = [](std::string_view s, std::size_t at) {
    return at < s.size() && (static_cast<unsigned char>(s[at]) & 0xC0U) == 0x80U;
  };
  while (is_inside(candidates.front(), common.size())) common.remove_suffix(1);
  return std::string(common);
}

}  // namespace kestrova::tool
