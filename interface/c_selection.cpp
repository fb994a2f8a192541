#include "interface/c_selection.h"

namespace kestrova {

std::string c_Selection::DLL_Version() const {
  return std::to_string(KESTROVA_VERSION_MAJOR) + "." + std::to_string(KESTROVA_VERSION_MINOR);
}

}  // namespace kestrova
