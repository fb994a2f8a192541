// The message box with the suite's default title.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/user_interface.h"

namespace kestrova {

// The title of dialogs that have none of their own.
inline constexpr std::string_view kSuiteTitle = "Kestrova";

// Shows a modal message and returns the button that the user pressed. An empty title becomes
// kSuiteTitle; a title of one blank is shown as it is. Needs the host's user interface.
MessageResult ShowMessage(std::string_view prompt, std::int32_t buttons = kOkOnly,
                          std::string_view title = "", std::string_view helpFile = "",
                          std::int32_t context = 0);

}  // namespace kestrova
