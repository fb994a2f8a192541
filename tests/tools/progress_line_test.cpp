#include "tools/progress_line.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kestrova::tool {
namespace {

class ProgressLineTest : public testing::Test {
 protected:
  // What a command writes that has done 1, 2, ... steps at these times in milliseconds.
  std::string written(const std::vector<int>& times) {
    std::ostringstream err;
    {
      std::chrono::steady_clock::time_point now;
      const auto start = now;
      ProgressLine line(err, "filters checked:", 10, [&now] { return now; });
      std::size_t done = 0;
      for (const int time : times) {
        now = start + std::chrono::milliseconds(time);
        line.show(++done);
      }
    }
    return err.str();
  }
};

TEST_F(ProgressLineTest, IsNotShownInTheFirstSecond) { EXPECT_EQ(written({1, 500, 999}), ""); }

TEST_F(ProgressLineTest, IsWrittenOverAndEndsItsLine) {
  EXPECT_EQ(written({999, 1000, 1200}),
            "\rkestrova-sel: filters checked: 2 of 10\rkestrova-sel: filters checked: 3 of 10\n");
}

TEST_F(ProgressLineTest, IsWrittenAFewTimesASecond) {
  EXPECT_EQ(written({1000, 1001, 1199, 1200, 1201}),
            "\rkestrova-sel: filters checked: 1 of 10\rkestrova-sel: filters checked: 4 of 10\n");
}

}  // namespace
}  // namespace kestrova::tool
