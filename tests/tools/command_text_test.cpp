// Lines of a session, taken apart.
#include "tools/command_text.h"

#include <gtest/gtest.h>

#include "tests/tools/usage_error.h"

namespace kestrova::tool {
namespace {

struct SplitLine {
  const char* title;
  std::string_view line;
  std::string_view name;
  std::string_view argument;
};

void PrintTo(const SplitLine& row, std::ostream* out) { *out << row.title; }

class SplitCommand : public testing::TestWithParam<SplitLine> {};

TEST_P(SplitCommand, IntoNameAndArgument) {
  const CommandText text = split_command(GetParam().line);
  EXPECT_EQ(text.name, GetParam().name);
  EXPECT_EQ(text.argument, GetParam().argument);
}

INSTANTIATE_TEST_SUITE_P(Lines, SplitCommand,
                         testing::Values(SplitLine{"Empty", "", "", ""},
                                         SplitLine{"Blank", " \t ", "", ""},
                                         SplitLine{"Comment", "  # new list", "", ""},
                                         SplitLine{"NameOnly", " insert ", "insert", ""},
                                         SplitLine{"Argument", "value FI", "value", "FI"},
                                         SplitLine{"BlanksInside", "field  Letzte  Anmeldung ",
                                                   "field", "Letzte  Anmeldung"},
                                         SplitLine{"Tabs", "\tvalue\tFI\t", "value", "FI"},
                                         SplitLine{"NumberSign", "field #703", "field", "#703"}),
                         [](const auto& test) { return test.param.title; });

TEST(Argument, StandsForItself) {
  EXPECT_EQ(unquoted_argument(""), "");
  EXPECT_EQ(unquoted_argument("O'Brien 5\" x"), "O'Brien 5\" x");
}

TEST(Argument, InQuotesKeepsItsBlanks) {
  EXPECT_EQ(unquoted_argument("\"\""), "");
  EXPECT_EQ(unquoted_argument("\" a  b \""), " a  b ");
  EXPECT_EQ(unquoted_argument("\"5\"\" x\""), "5\" x");
  EXPECT_EQ(unquoted_argument("\"\"\"\""), "\"");
}

TEST(Argument, NeedsItsClosingQuoteAtTheEnd) {
  EXPECT_EQ(usage_error([] { unquoted_argument("\"FI"); }), "the closing quote is missing: \"FI");
  EXPECT_EQ(usage_error([] { unquoted_argument("\"FI\"\""); }),
            "the closing quote is missing: \"FI\"\"");
  EXPECT_EQ(usage_error([] { unquoted_argument("\"FI\" KI"); }),
            "there is text behind the closing quote:  KI");
}

TEST(Numbers, AreAsManyAsAskedFor) {
  EXPECT_EQ(number_arguments("3", 1), std::vector<int>{3});
  EXPECT_EQ(number_arguments(" 3  -1 ", 2), (std::vector<int>{3, -1}));
  EXPECT_EQ(usage_error([] { number_arguments("3 4", 1); }), "it takes one number");
  EXPECT_EQ(usage_error([] { number_arguments("3", 2); }), "it takes 2 numbers");
}

TEST(Numbers, AreWholeNumbers) {
  EXPECT_EQ(usage_error([] { number_arguments("x", 1); }), "'x' is no number");
  EXPECT_EQ(usage_error([] { number_arguments("1.5", 1); }), "'1.5' is no number");
  EXPECT_EQ(usage_error([] { number_arguments("99999999999", 1); }), "'99999999999' is no number");
}

TEST(Switch, IsOnOrOff) {
  EXPECT_TRUE(switch_argument("on"));
  EXPECT_FALSE(switch_argument("off"));
  EXPECT_EQ(usage_error([] { switch_argument("On"); }), "'On' is neither 'on' nor 'off'");
}

}  // namespace
}  // namespace kestrova::tool
