// What quotes and comments hide, read as the server reads it.
#include "platform/sql_text.h"

#include <gtest/gtest.h>

#include <string_view>

namespace kestrova {
namespace {

constexpr std::size_t kNotClosed = std::string_view::npos;

struct QuotedRow {
  const char* name;
  std::string_view sql;
  std::size_t end;
};

class EndOfQuoted : public testing::TestWithParam<QuotedRow> {};

TEST_P(EndOfQuoted, StandsBehindTheClosingQuote) {
  EXPECT_EQ(end_of_quoted(GetParam().sql, 0), GetParam().end);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, EndOfQuoted,
    testing::Values(
        QuotedRow{"Text", "'ab' x", 4}, QuotedRow{"EmptyText", "''", 2},
        QuotedRow{"DoubledApostrophe", "'a''b' x", 6}, QuotedRow{"OnlyDoubled", "''''", 4},
        QuotedRow{"NotClosed", "'ab", kNotClosed},
        QuotedRow{"NotClosedAfterDoubled", "'ab''", kNotClosed},
        QuotedRow{"LoneQuote", "'", kNotClosed}, QuotedRow{"OtherQuotesInside", "'a\"b[c' x", 7},
        QuotedRow{"NameInQuotes", "\"a'b\" x", 5}, QuotedRow{"NameInBrackets", "[a'b] x", 5},
        QuotedRow{"DoubledBracket", "[a]]b] x", 6}, QuotedRow{"OpeningBracketInside", "[a[b] x", 5},
        QuotedRow{"BracketNotClosed", "[a]]", kNotClosed}, QuotedRow{"Word", "abc", 0},
        QuotedRow{"ClosingBracket", "]", 0}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(EndOfQuotedTest, BeginsWhereItIsAskedFor) { EXPECT_EQ(end_of_quoted("x = 'a' y", 4), 7U); }

TEST(BeginsComment, KnowsBothMarks) {
  EXPECT_TRUE(begins_comment("1 -- x", 2));
  EXPECT_TRUE(begins_comment("1 /* x", 2));
  EXPECT_FALSE(begins_comment("1 - -x", 2));
  EXPECT_FALSE(begins_comment("1 / *x", 2));
  EXPECT_FALSE(begins_comment("1 -", 2));
}

TEST(EndOfComment, ALineCommentEndsBeforeTheLineEnd) {
  EXPECT_EQ(end_of_comment("--ab\r\nc", 0), 4U);
  EXPECT_EQ(end_of_comment("--ab\nc", 0), 4U);
  EXPECT_EQ(end_of_comment("--ab", 0), 4U);
}

TEST(EndOfComment, ABlockCommentEndsBehindItsMark) {
  EXPECT_EQ(end_of_comment("/*ab*/c", 0), 6U);
  EXPECT_EQ(end_of_comment("x/**/c", 1), 5U);
  EXPECT_EQ(end_of_comment("/*/ab*/c", 0), 7U);
  EXPECT_EQ(end_of_comment("/*ab", 0), kNotClosed);
}

TEST(EndOfComment, BlockCommentsNest) {
  EXPECT_EQ(end_of_comment("/*a/*b*/c*/d", 0), 11U);
  EXPECT_EQ(end_of_comment("/*a/*b*/c", 0), kNotClosed);
}

}  // namespace
}  // namespace kestrova
