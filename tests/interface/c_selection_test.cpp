#include "interface/c_selection.h"

#include <gtest/gtest.h>

namespace kestrova::test {
namespace {

TEST(Version, IsTheMajorAndMinorVersionOfTheLibrary) {
  EXPECT_EQ(c_Selection().DLL_Version(), "2.0");
}

}  // namespace
}  // namespace kestrova::test
