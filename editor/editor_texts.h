// Messages of the editor that the suite's text service does not number: German and English.
#pragma once

#include <string>
#include <string_view>

#include "platform/kes_var.h"

namespace kestrova {

enum class EditorText {
  kModelChanged,        // a question; the subject is the name
  kModelUnreadable,     // the subject is the name; with the reason
  kContractUnreadable,  // with the reason
  kContractIsKept,      // why OK does nothing
};

// German for users whose language is "DE", English for all others.
std::string editor_text(const KesVar& context, EditorText text, std::string_view subject = "",
                        std::string_view reason = "");

}  // namespace kestrova
