#include "engine/model_name.h"

#include "platform/error.h"

namespace kestrova {
namespace {

// U+0000 to U+001F and U+007F to U+009F.
bool holds_control_character(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0;
    if (byte < 0x20 || byte == 0x7F) return true;
    if (byte == 0xC2 && next >= 0x80 && next <= 0x9F) return true;
  }
  return false;
}

}  // namespace

void require_model_name(std::string_view name) {
  if (name.find('\'') == std::string_view::npos && !holds_control_character(name)) return;
  throw InvalidArgument("The name of a model cannot hold an apostrophe or a control character.");
}

}  // namespace kestrova
