// The public class that reports the library's version.
#pragma once

#include <string>

namespace kestrova {

class c_Selection {
 public:
  // Major version, ".", minor version: "2.0".
  std::string DLL_Version() const;
};

}  // namespace kestrova
