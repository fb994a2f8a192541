// Text routines on UTF-8.
#include "platform/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "platform/error.h"

namespace kestrova::text {
namespace {

using testing::ElementsAre;

TEST(Trim, CutsBlanksOnly) {
  EXPECT_EQ(trim("  a b  "), "a b");
  EXPECT_EQ(trim("a"), "a");
  EXPECT_EQ(trim("   "), "");
  EXPECT_EQ(trim(""), "");
  EXPECT_EQ(trim(" \ta\r\n "), "\ta\r\n");
  EXPECT_EQ(trim("\u00A0a\u00A0"), "\u00A0a\u00A0");
}

struct CaseRow {
  const char* name;
  const char* small;
  const char* capital;
};

void PrintTo(const CaseRow& row, std::ostream* out) { *out << row.small; }

class UpperCase : public testing::TestWithParam<CaseRow> {};

TEST_P(UpperCase, RaisesEveryLetter) { EXPECT_EQ(upper(GetParam().small), GetParam().capital); }

TEST_P(UpperCase, LeavesCapitalsAsTheyAre) {
  EXPECT_EQ(upper(GetParam().capital), GetParam().capital);
}

// clang-format off
const CaseRow kCaseRows[] = {
    {"Ascii", "abcxyz[`{@ 019", "ABCXYZ[`{@ 019"},
    {"German", "äöü straße", "ÄÖÜ STRAßE"},
    {"Latin1", "àáâãäåæçèéêëìíîïðñòóôõöøùúûüýþÿ", "ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝÞŸ"},
    {"Latin1Signs", "÷×¿¡ª°", "÷×¿¡ª°"},
    {"LatinExtendedA1", "āăąćĉċčďđēĕėęěĝğġģĥħĩīĭį", "ĀĂĄĆĈĊČĎĐĒĔĖĘĚĜĞĠĢĤĦĨĪĬĮ"},
    {"LatinExtendedA2", "ĳĵķĺļľŀłńņňŋōŏőœŕŗř", "ĲĴĶĹĻĽĿŁŃŅŇŊŌŎŐŒŔŖŘ"},
    {"LatinExtendedA3", "śŝşšţťŧũūŭůűųŵŷźżž", "ŚŜŞŠŢŤŦŨŪŬŮŰŲŴŶŹŻŽ"},
    {"Greek", "αβγδεζηθικλμνξοπρςστυφχψωϊϋάέήίόύώ", "ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΣΤΥΦΧΨΩΪΫΆΈΉΊΌΎΏ"},
    {"GreekVariants", "ϐϑϕϖϗϰϱϲϳϵ", "ΒΘΦΠϏΚΡϹͿΕ"},
    {"GreekArchaic", "ͱͳͷͻͼͽϙϛϝϟϡϸϻ", "ͰͲͶϽϾϿϘϚϜϞϠϷϺ"},
    {"Coptic", "ϣϥϧϩϫϭϯ", "ϢϤϦϨϪϬϮ"},
    {"Russian", "абвгдежзийклмнопрстуфхцчшщъыьэюя", "АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ"},
    {"CyrillicOthers", "ѐёђѓєѕіїјљњћќѝўџѡҁҋґҿӂӎӏӑӿԁԯ", "ЀЁЂЃЄЅІЇЈЉЊЋЌЍЎЏѠҀҊҐҾӁӍӀӐӾԀԮ"},
    {"WhoseCapitalIsAnotherAlphabetsOrNone", "ßıſµŉΐΰĸ", "ßıſµŉΐΰĸ"},
    {"BeyondTheBlocks", "ƀ日本語🌲", "ƀ日本語🌲"},
    {"NoUtf8", "a\xFF\xC3", "A\xFF\xC3"},
    {"OverlongSpelling", "\xE0\x83\xA0\xC1\xA1", "\xE0\x83\xA0\xC1\xA1"},
    {"Nothing", "", ""},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Text, UpperCase, testing::ValuesIn(kCaseRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(EqualIgnoringCase, ComparesUpperCase) {
  EXPECT_TRUE(equal_ignoring_case("Käufer", "KÄUFER"));
  EXPECT_TRUE(equal_ignoring_case("", ""));
  EXPECT_FALSE(equal_ignoring_case("Käufer", "Kaufer"));
  EXPECT_FALSE(equal_ignoring_case("a", "a "));
  EXPECT_FALSE(equal_ignoring_case("ß", "SS"));
  EXPECT_FALSE(equal_ignoring_case("ı", "I"));
}

TEST(ContainsIgnoringCase, FindsTheNeedleAnywhere) {
  EXPECT_TRUE(contains_ignoring_case("getdate()-1", "GETDATE()"));
  EXPECT_TRUE(contains_ignoring_case("Der Käufer", "KÄU"));
  EXPECT_TRUE(contains_ignoring_case("abc", ""));
  EXPECT_TRUE(contains_ignoring_case("", ""));
  EXPECT_FALSE(contains_ignoring_case("abc", "ac"));
  EXPECT_FALSE(contains_ignoring_case("", "a"));
}

TEST(StartsWithIgnoringCase, ComparesTheFirstCharacters) {
  EXPECT_TRUE(starts_with_ignoring_case("vertp12", "VERTP"));
  EXPECT_TRUE(starts_with_ignoring_case("VERTP", "VERTP"));
  EXPECT_TRUE(starts_with_ignoring_case("äb", "Ä"));
  EXPECT_TRUE(starts_with_ignoring_case("abc", ""));
  EXPECT_FALSE(starts_with_ignoring_case("VERT", "VERTP"));
  EXPECT_FALSE(starts_with_ignoring_case("xVERTP", "VERTP"));
  EXPECT_FALSE(starts_with_ignoring_case("vertp", "vertp"));  // the prefix must be upper case
}

TEST(Length, CountsCharacters) {
  EXPECT_EQ(length(""), 0U);
  EXPECT_EQ(length("abc"), 3U);
  EXPECT_EQ(length("äß€🌲"), 4U);
}

TEST(Length, CountsEachByteThatIsNoUtf8) {
  EXPECT_EQ(length("\xFF\xFE"), 2U);
  EXPECT_EQ(length("\x80"), 1U);
  EXPECT_EQ(length("\xC3"), 1U);              // cut off
  EXPECT_EQ(length("\xE2\x82"), 2U);          // cut off
  EXPECT_EQ(length("\xE2\x82z"), 3U);         // broken
  EXPECT_EQ(length("\xC1\xA1"), 2U);          // overlong
  EXPECT_EQ(length("\xE0\x80\x80"), 3U);      // overlong
  EXPECT_EQ(length("\xF0\x80\x80\x80"), 4U);  // overlong
  EXPECT_EQ(length("\xED\xA0\x80"), 3U);      // a surrogate
  EXPECT_EQ(length("\xF4\x90\x80\x80"), 4U);  // beyond the last code point
  EXPECT_EQ(length("\xF4\x8F\xBF\xBF"), 1U);  // the last code point
  EXPECT_EQ(length("\xE0\xA0\x80"), 1U);      // the first one of three bytes
}

TEST(Mid, AnswersCharactersFromAPositionOn) {
  EXPECT_EQ(mid("Käufer", 2), "äufer");
  EXPECT_EQ(mid("Käufer", 2, 2), "äu");
  EXPECT_EQ(mid("Käufer", 3, 1), "u");
  EXPECT_EQ(mid("Käufer", 6, 5), "r");
  EXPECT_EQ(mid("Käufer", 7), "");
  EXPECT_EQ(mid("Käufer", 99, 99), "");
  EXPECT_EQ(mid("Käufer", 1, 0), "");
  EXPECT_EQ(mid("", 1), "");
  EXPECT_THROW(mid("Käufer", 0), InvalidArgument);
}

TEST(Left, AnswersTheFirstCharacters) {
  EXPECT_EQ(left("Käufer", 2), "Kä");
  EXPECT_EQ(left("Kä", 5), "Kä");
  EXPECT_EQ(left("Kä", 0), "");
}

TEST(ReplaceAll, GoesFromLeftToRight) {
  EXPECT_EQ(replace_all("a'b'c", "'", ""), "abc");
  EXPECT_EQ(replace_all("a'b", "'", "''"), "a''b");
  EXPECT_EQ(replace_all("aaa", "aa", "b"), "ba");
  EXPECT_EQ(replace_all("abc", "x", "y"), "abc");
  EXPECT_EQ(replace_all("", "x", "y"), "");
  EXPECT_EQ(replace_all("xx", "x", "xx"), "xxxx");
}

TEST(Split, KeepsEmptyPieces) {
  EXPECT_THAT(split("a;b", ';'), ElementsAre("a", "b"));
  EXPECT_THAT(split("a;;b;", ';'), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(split("", ';'), ElementsAre(""));
  EXPECT_THAT(split("abc", ';'), ElementsAre("abc"));
}

TEST(ToInteger, ReadsASignAndDigits) {
  EXPECT_EQ(to_integer("12"), 12);
  EXPECT_EQ(to_integer(" -12 "), -12);
  EXPECT_EQ(to_integer("+12"), 12);
  EXPECT_EQ(to_integer("007"), 7);
  EXPECT_EQ(to_integer("-0"), 0);
}

TEST(ToInteger, AnswersNothingForAnyOtherText) {
  for (const char* s :
       {"", " ", "-", "+", "+-1", "--1", "1.0", "1e3", "0x1", "12a", "1 2", "\t1", "１"}) {
    EXPECT_EQ(to_integer(s), std::nullopt) << s;
  }
}

TEST(ToInteger, StopsAtTheEndOfItsRange) {
  EXPECT_EQ(to_integer("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(to_integer("9223372036854775808"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(to_integer("-99999999999999999999999"), std::numeric_limits<std::int64_t>::min());
}

TEST(ToInt16, ReadsAFieldIdentifier) {
  EXPECT_EQ(to_int16("12"), 12);
  EXPECT_EQ(to_int16(" 32767 "), 32767);
  EXPECT_EQ(to_int16("-32768"), -32768);
}

TEST(ToInt16, QuotesWhatItRefuses) {
  try {
    to_int16("Preis");
    FAIL() << "no error";
  } catch (const TypeMismatch& error) {
    EXPECT_STREQ(error.what(), "'Preis' is no whole number.");
    EXPECT_EQ(error.number(), 13);
  }
  try {
    to_int16(" 32768 ");
    FAIL() << "no error";
  } catch (const Overflow& error) {
    EXPECT_STREQ(error.what(), "The number 32768 does not fit 16 bits.");
    EXPECT_EQ(error.number(), 6);
  }
  EXPECT_THROW(to_int16("-32769"), Overflow);
  EXPECT_THROW(to_int16("99999999999999999999"), Overflow);
  EXPECT_THROW(to_int16(""), TypeMismatch);
}

}  // namespace
}  // namespace kestrova::text
