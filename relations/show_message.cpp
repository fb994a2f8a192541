#include "relations/show_message.h"

#include "interface/module_state.h"

namespace kestrova {

MessageResult ShowMessage(std::string_view prompt, std::int32_t buttons, std::string_view title,
                          std::string_view helpFile, std::int32_t context) {
  return user_interface().show_message({std::string(prompt), buttons,
                                        std::string(title.empty() ? kSuiteTitle : title),
                                        std::string(helpFile), context});
}

}  // namespace kestrova
