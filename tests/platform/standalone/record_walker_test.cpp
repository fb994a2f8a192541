// The records of a text between separators.
#include "platform/standalone/record_walker.h"

#include <gtest/gtest.h>

#include "platform/error.h"

namespace kestrova::standalone {
namespace {

struct Row {
  const char* name;
  const char* text;
  const char* separator;
  std::vector<std::string> records;
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.text; }

class RecordsOf : public testing::TestWithParam<Row> {};

TEST_P(RecordsOf, AreWhatStandsBeforeAndBehindSeparators) {
  const auto& [name, text, separator, expected] = GetParam();
  RecordWalker walker;
  std::vector<std::string> records;
  const std::int32_t count = walker.TokenCount(text, separator);
  for (std::int32_t i = 0; i < count; ++i) {
    records.emplace_back(walker.TokenAt(text, separator, i));
  }
  EXPECT_EQ(records, expected);
}

// clang-format off
const Row kRows[] = {
    {"Nothing", "", ";", {}},
    {"OneWithoutSeparator", "12 = 'X'", ";", {"12 = 'X'"}},
    {"OneWithSeparator", "12 = 'X';", ";", {"12 = 'X'"}},
    {"LastWithoutSeparator", "a;b", ";", {"a", "b"}},
    {"LastWithSeparator", "a;b;", ";", {"a", "b"}},
    {"EmptyRecordInside", "a;;b;", ";", {"a", "", "b"}},
    {"EmptyRecordFirst", ";a", ";", {"", "a"}},
    {"OnlyTheSeparator", ";", ";", {""}},
    {"TwoSeparators", ";;", ";", {"", ""}},
    {"BlankBehindTheLastSeparator", "a; ", ";", {"a", " "}},
    {"LongSeparator", "a<>b<>", "<>", {"a", "b"}},
    {"PartOfALongSeparator", "a<b<>c<", "<>", {"a<b", "c<"}},
    {"Umlauts", "ä;ß;", ";", {"ä", "ß"}},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(RecordWalker, RecordsOf, testing::ValuesIn(kRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(RecordWalker, AnswersInAnyOrderAndWithoutBeingAskedForTheCount) {
  const std::string text = "a;b;c;";
  RecordWalker walker;
  EXPECT_EQ(walker.TokenAt(text, ";", 2), "c");
  EXPECT_EQ(walker.TokenAt(text, ";", 0), "a");
  EXPECT_EQ(walker.TokenCount(text, ";"), 3);
}

TEST(RecordWalker, RefusesAnIndexThatIsNone) {
  const std::string text = "a;b;";
  RecordWalker walker;
  EXPECT_THROW(walker.TokenAt(text, ";", -1), InvalidArgument);
  try {
    walker.TokenAt(text, ";", 2);
    FAIL() << "no error";
  } catch (const InvalidArgument& error) {
    EXPECT_STREQ(error.what(), "There is no record 2 among 2.");
  }
}

TEST(RecordWalker, RefusesAnEmptySeparator) {
  RecordWalker walker;
  EXPECT_THROW(walker.TokenCount("a", ""), InvalidArgument);
  EXPECT_THROW(walker.TokenAt("a", "", 0), InvalidArgument);
}

TEST(RecordWalker, WalksTwoTextsAndTwoSeparatorsByTurns) {
  const std::string first = "a;b;";
  const std::string second = "c,d;e";
  RecordWalker walker;
  EXPECT_EQ(walker.TokenAt(first, ";", 1), "b");
  EXPECT_EQ(walker.TokenAt(second, ";", 1), "e");
  EXPECT_EQ(walker.TokenAt(second, ",", 1), "d;e");
  EXPECT_EQ(walker.TokenAt(first, ";", 0), "a");
}

TEST(RecordWalker, ReadsAChangedTextAnewWhenItIsCounted) {
  std::string text = "aaa;b;";
  RecordWalker walker;
  EXPECT_EQ(walker.TokenCount(text, ";"), 2);
  text.replace(0, 6, "a;b;c;");  // the same place and size
  EXPECT_EQ(walker.TokenCount(text, ";"), 3);
  EXPECT_EQ(walker.TokenAt(text, ";", 1), "b");
}

TEST(RecordWalker, KnowsAShorterTextAtTheSamePlaceAsAnother) {
  const std::string_view text = "a;b;c";
  RecordWalker walker;
  EXPECT_EQ(walker.TokenAt(text, ";", 2), "c");
  EXPECT_EQ(walker.TokenAt(text.substr(0, 3), ";", 1), "b");
  EXPECT_THROW(walker.TokenAt(text.substr(0, 3), ";", 2), InvalidArgument);
}

TEST(RecordWalker, AnswersViewsIntoTheTextItself) {
  const std::string text = "a;b;";
  RecordWalker walker;
  EXPECT_EQ(walker.TokenAt(text, ";", 1).data(), text.data() + 2);
}

// A walk that began anew for each record would read 25 GB here.
TEST(RecordWalker, WalksAsManyRecordsAsThereCanBe) {
  std::string text;
  for (int i = 0; i < 32'767; ++i) text += std::to_string(i) + " = '" + std::string(40, 'x') + "';";
  RecordWalker walker;
  ASSERT_EQ(walker.TokenCount(text, ";"), 32'767);
  std::size_t characters = 0;
  for (std::int32_t i = 0; i < 32'767; ++i) characters += walker.TokenAt(text, ";", i).size() + 1;
  EXPECT_EQ(characters, text.size());
}

}  // namespace
}  // namespace kestrova::standalone
