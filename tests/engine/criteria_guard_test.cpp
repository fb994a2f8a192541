// The boundary of trust: what may become part of a statement or of a stored filter.
#include "engine/criteria_guard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "engine/criterion.h"
#include "tests/engine/engine_host.h"

namespace kestrova::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

// --- Closed texts --------------------------------------------------------------------------------

struct TextRow {
  const char* name;
  std::string_view text;
  std::optional<OpenText> reason;
};

class ClosedText : public testing::TestWithParam<TextRow> {};

TEST_P(ClosedText, IsClosedOrOpenForAReason) {
  EXPECT_EQ(find_open_text(GetParam().text), GetParam().reason);
}

constexpr auto kClosed = std::nullopt;
using namespace std::string_view_literals;

INSTANTIATE_TEST_SUITE_P(
    Texts, ClosedText,
    testing::Values(
        TextRow{"Empty", "", kClosed}, TextRow{"Number", "LOGS.MENGE >= 3.5", kClosed},
        TextRow{"Text", "H.HA = 'FI'", kClosed},
        TextRow{"DoubledApostrophe", "A = 'O''Brien'", kClosed},
        TextRow{"OpenApostrophe", "A = 'O'Brien'", OpenText::kQuote},
        TextRow{"LoneApostrophe", "A = '", OpenText::kQuote},
        TextRow{"OddApostrophes", "A = 'x''", OpenText::kQuote},
        TextRow{"DoubledAtTheEnd", "A = 'x'''", kClosed},
        // It stays inside the parentheses, where it can only select what the user may see anyway.
        TextRow{"OrOfTexts", "A = 'FI' OR '1'='1'", kClosed},
        TextRow{"QuotedName", "\"A'B\" = 1", kClosed},
        TextRow{"OpenQuotedName", "\"A = 1", OpenText::kQuote},
        TextRow{"BracketedName", "[A'B] = 1", kClosed},
        TextRow{"OpenBracket", "[A = 1", OpenText::kBracket},
        TextRow{"BracketClosedByApostrophes", "[A' = ']", kClosed},
        TextRow{"StrayClosingBracket", "A] = 1", OpenText::kBracket},
        TextRow{"BracketsInText", "A LIKE '[a-c'", kClosed},
        TextRow{"Call", "ISNULL(A,0) > (1+2)", kClosed},
        TextRow{"OpenParenthesis", "A = (1", OpenText::kParenthesis},
        TextRow{"StrayParenthesis", "A = 1)", OpenText::kParenthesis},
        TextRow{"TurnedParentheses", "A = 1) OR (1 = 1", OpenText::kParenthesis},
        TextRow{"TextThenTurnedParentheses", "A = 'x') OR ('1'='1'", OpenText::kParenthesis},
        TextRow{"ParenthesisInText", "A = ')'", kClosed},
        TextRow{"LineComment", "A = 1 -- x", OpenText::kComment},
        TextRow{"DoubleMinus", "A = 1--2", OpenText::kComment},
        TextRow{"MinusMinusApart", "A = 1 - -2", kClosed},
        TextRow{"BlockComment", "A = 1 /* x */", OpenText::kComment},
        TextRow{"EndOfBlockComment", "A = 1 */", OpenText::kComment},
        TextRow{"CommentsInText", "A = '-- /* */'", kClosed},
        TextRow{"Division", "A = 1/2*3", kClosed},
        TextRow{"Semicolon", "A = 1;", OpenText::kSemicolon},
        TextRow{"SemicolonInText", "A = 'a;b'", kClosed},
        TextRow{"Statement", "A = 'x') DELETE FROM MODELS SELECT 1 --", OpenText::kParenthesis},
        TextRow{"Umlauts", "A = 'Jägerstraße 5 €'", kClosed},
        TextRow{"Null", "A = 'x\0y'"sv, OpenText::kUnprintable},
        TextRow{"Tab", "A = 'x\ty'", OpenText::kUnprintable},
        TextRow{"LineEnd", "A = 1\r\nDELETE", OpenText::kUnprintable},
        TextRow{"Escape", "A = '\x1B[31m'", OpenText::kUnprintable},
        TextRow{"Delete", "A = '\x7F'", OpenText::kUnprintable},
        TextRow{"ControlOfTheSecondRow", "A = '\xC2\x85'", OpenText::kUnprintable},
        TextRow{"NoBreakSpace", "A = '\xC2\xA0'", kClosed},
        TextRow{"LineSeparator", "A = '\xE2\x80\xA8'", OpenText::kUnprintable},
        TextRow{"TurnedWriting", "A = '\xE2\x80\xAE'", OpenText::kUnprintable},
        TextRow{"ByteOrderMark", "A = '\xEF\xBB\xBF'", OpenText::kUnprintable},
        TextRow{"Emoji", "A = '\xF0\x9F\x8C\xB2'", kClosed},
        TextRow{"LoneLeadByte", "A = '\xC3'", OpenText::kUnprintable},
        TextRow{"LoneTrailByte", "A = '\x80'", OpenText::kUnprintable},
        TextRow{"LongFormOfAnApostrophe", "A = \xC0\xA7", OpenText::kUnprintable},
        TextRow{"Surrogate", "A = '\xED\xA0\x80'", OpenText::kUnprintable},
        TextRow{"BeyondUnicode", "A = '\xF4\x90\x80\x80'", OpenText::kUnprintable},
        TextRow{"CutCharacter", "A = '\xE2\x82", OpenText::kUnprintable}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(RequireClosed, NamesTheLineAndTheReason) {
  try {
    require_closed("A = 'x", "Art = 'x");
    FAIL() << "not refused";
  } catch (const InvalidArgument& error) {
    EXPECT_STREQ(error.what(), "The criterion 'Art = 'x' is refused: its quote is not closed.");
  }
}

TEST(Description, SaysSomethingElseForEachReason) {
  std::vector<std::string_view> seen;
  for (const OpenText reason : {OpenText::kQuote, OpenText::kBracket, OpenText::kParenthesis,
                                OpenText::kComment, OpenText::kSemicolon, OpenText::kUnprintable}) {
    EXPECT_THAT(seen, ::testing::Not(::testing::Contains(description(reason))));
    seen.push_back(description(reason));
  }
}

// --- Lists
// -----------------------------------------------------------------------------------------

struct ListRow {
  const char* name;
  std::string_view record;
  bool own;
};

class OwnList : public testing::TestWithParam<ListRow> {};

TEST_P(OwnList, IsOperatorAndValueTogether) {
  EXPECT_EQ(is_own_list(GetParam().record), GetParam().own);
}

INSTANTIATE_TEST_SUITE_P(
    Records, OwnList,
    testing::Values(ListRow{"NoList", "713 = 'a)b'", true},
                    ListRow{"Texts", "713 IN ('a','b')", true},
                    ListRow{"ParenthesisInTheLast", "713 IN ('a','b (c)')", true},
                    ListRow{"ParenthesisInTheFirst", "713 IN ('Eder (Tölz)','Grünwald')", false},
                    ListRow{"ParenthesisTooFarFromTheEnd", "713 IN ('(a) bcdefg')", false},
                    ListRow{"ShortRelativeDate", "713 IN (GETDATE()-12)", true},
                    ListRow{"LongRelativeDate", "713 IN (GETDATE()-12345)", false},
                    ListRow{"TwoRelativeDates", "713 IN (GETDATE()-5,GETDATE()-7)", false},
                    // What is read back is the same text, but no longer a list for a date.
                    ListRow{"CutAtABlank", "713 IN (GETDATE()-1234 )", false},
                    ListRow{"SomethingBehindTheList", "713 IN (1) 0", false},
                    ListRow{"NullBehindTheList", "713 IN ('a')             NULL", false},
                    ListRow{"QuotedNullBehindTheList", "713 IN ('a')             'null'", false},
                    ListRow{"NoListButMore", "713 IN'a' OR 1) AND 2 LESS 3 0", false},
                    ListRow{"SomethingBeforeTheList", "713 IN x('1','0')", false},
                    ListRow{"WithoutParenthesis", "713 IN 'a'", true}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(OwnListTest, IsFromItsWordToTheEnd) {
  EXPECT_EQ(own_list("713 IN ('a)b', 'c') "), "IN ('a)b', 'c')");
  EXPECT_EQ(own_list("713 = 'IN (1)'"), "");
}

TEST(KeptList, PutsElementsWithAParenthesisLast) {
  EXPECT_EQ(kept_list(713, "IN ('Eder (Tölz)', 'Grünwald')"), "IN ('Grünwald', 'Eder (Tölz)')");
  EXPECT_EQ(kept_list(713, "IN ('Eder (Tölz)','B','C')"), "IN ('B','C','Eder (Tölz)')");
  EXPECT_EQ(kept_list(713, "IN ('a)', 'x, y')"), "IN ('x, y', 'a)')");
}

TEST(KeptList, StaysAsItIsWhereItIsKeptOrCannotBe) {
  for (const std::string list :
       {"IN ('b', 'a')", "IN ('Eder (Tölz)', 'Huber (Lenggries)')", "IN (GETDATE()-5, GETDATE()-7)",
        "IN ('(a) bcdefg')", "IN ()", "IN ('a)', 'b", "IN ('a)') X", "IN x('a) bcdefg', 'b')"}) {
    EXPECT_EQ(kept_list(713, list), list);
  }
}

TEST(KeptList, IsReadBackWholeOrAsItWas) {
  // The identifier decides how far the operator reaches.
  EXPECT_EQ(kept_list(5, "IN ('x (abc)', 'b')"), "IN ('b', 'x (abc)')");
  EXPECT_EQ(kept_list(5, "IN ('x (abc) de', 'b')"), "IN ('x (abc) de', 'b')");
  EXPECT_EQ(kept_list(30000, "IN ('x (abc) de', 'b')"), "IN ('b', 'x (abc) de')");
}

TEST(ListElements, AreSeparatedByCommasOutsideOfQuotes) {
  EXPECT_THAT(list_elements("IN ('a,b', [c,d],1)"), ::testing::ElementsAre("'a,b'", " [c,d]", "1"));
  EXPECT_THAT(list_elements("IN ()"), ::testing::ElementsAre(""));
  EXPECT_THAT(list_elements("IN (5,)"), ::testing::ElementsAre("5", ""));
  EXPECT_THAT(list_elements("IN 1"), IsEmpty());
}

TEST(KeepsList, AsksForTheTypeOnlyWhereItDecides) {
  EngineHost host;
  const SelektionRow field = {.id = 713, .name = "NAME", .table = "LAGER"};
  const Relation relation(std::string_view("SONST"));
  EXPECT_TRUE(keeps_list(host.context, relation, 713, "713 IN ('a')"));
  EXPECT_FALSE(keeps_list(host.context, relation, 713, "713 IN ('a)','bcdefgh')"));
  EXPECT_THAT(host.connection->statements(), IsEmpty());

  // Cut at a blank, a list reads the same; a list of dates would be written anew without its end.
  host.know_type(field, FieldType::kVarWChar);
  EXPECT_TRUE(keeps_list(host.context, relation, 713, "713 IN ('a)bcdef g')"));
  host.know_type({.id = 714, .name = "DATUM", .table = "LAGER"}, FieldType::kDate);
  EXPECT_FALSE(keeps_list(host.context, relation, 714, "714 IN ('a)bcdef g')"));
}

TEST(RequireOneRecord, RefusesASemicolonAnywhere) {
  EXPECT_NO_THROW(require_one_record("713 = 'a'", "x"));
  EXPECT_THROW(require_one_record("713 = 'a;b'", "x"), RefusedCriterion);
}

// --- Flags
// -----------------------------------------------------------------------------------------

TEST(StoredFlag, IsAWordOrASignedOneOrZeroWithOrWithoutApostrophes) {
  for (const char* text : {"1", "'1'", "-1", "'-1'", "+1", "TRUE", "'TRUE'", "wahr", "'Vrai'"}) {
    EXPECT_EQ(stored_flag(text), true) << text;
  }
  for (const char* text : {"0", "'0'", "-0", "+0", "FALSE", "'falsch'", "Faux"}) {
    EXPECT_EQ(stored_flag(text), false) << text;
  }
  for (const char* text : {"", "'", "''", "2", "01", "1.0", "'x'", "Null", "1 ", "Ja"}) {
    EXPECT_EQ(stored_flag(text), std::nullopt) << text;
  }
}

// --- The translator
// --------------------------------------------------------------------------------

class GuardedTranslator : public ::testing::Test {
 protected:
  std::string translate(std::string_view relation, std::string_view mode,
                        std::string_view criteria) {
    return host.engine.D_SelectionFromStr(host.context, relation, mode, criteria, "V", 9);
  }

  EngineHost host;
};

TEST_F(GuardedTranslator, RefusesAnOpenTextInEveryFamilyAndNamesTheLine) {
  const SelektionRow field = {.id = 12, .name = "NAME", .table = "LAGER"};
  host.know_fields({{0, field}}, FieldType::kVarWChar);
  host.connection->answer("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>",
                          {{"", FieldType::kVarWChar}});
  struct Row {
    const char* relation;
    const char* mode;
  };
  for (const Row& row :
       {Row{"JAGD_HUNDE", ""}, Row{"SONST", "WAREN"}, Row{"BBF", "4ARB"}, Row{"BBF", "WAREN"}}) {
    SCOPED_TRACE(std::string(row.relation) + " " + row.mode);
    try {
      translate(row.relation, row.mode, "12 = 'x') OR ('1'='1';");
      ADD_FAILURE() << "not refused";
    } catch (const InvalidArgument& error) {
      EXPECT_STREQ(
          error.what(),
          "The criterion '12 = 'x') OR ('1'='1'' is refused: a parenthesis has no partner.");
    }
    EXPECT_EQ(host.connection->open_recordsets(), 0U);
  }
}

TEST_F(GuardedTranslator, FillsNoTemporaryTableForARefusedFilter) {
  host.connection->answer("SELECT TOP 0 EXPR(BBLTN,112) FROM <BBLTN,112,R7>",
                          {{"", FieldType::kVarWChar}});
  EXPECT_THROW(translate("LEISTUNGS_BB", "", "12 = 1);"), RefusedCriterion);
  for (const std::string& statement : host.connection->statements()) {
    EXPECT_THAT(statement, ::testing::Not(HasSubstr("#BB_LEISTUNGS_KOPF")));
  }
}

TEST_F(GuardedTranslator, LooksAtTheExpressionTogetherWithTheValue) {
  const SelektionRow field = {.id = 12, .name = "X", .table = "LAGER", .sqlvalue = "F(LAGER.X"};
  host.know_fields({{0, field}}, FieldType::kVarWChar);
  EXPECT_THROW(translate("SONST", "WAREN", "12 = 1;"), RefusedCriterion);
}

TEST_F(GuardedTranslator, RefusesAListThatWouldBeCut) {
  try {
    translate("JAGD_HUNDE", "", "12 IN ('Eder (Tölz)','Grünwald');");
    FAIL() << "not refused";
  } catch (const InvalidArgument& error) {
    EXPECT_THAT(error.what(), HasSubstr("'12 IN ('Eder (Tölz)','Grünwald')'"));
    EXPECT_THAT(error.what(),
                HasSubstr("use a line for each value, with the OR line between them"));
  }
  EXPECT_EQ(translate("JAGD_HUNDE", "", "12 IN ('Grünwald','Eder (Tölz)');"),
            " FROM <BBHUNDE,0,><BBHUNDE,112,V> WHERE (EXPR(BBHUNDE,112) IN ('Grünwald','Eder "
            "(Tölz)'))");
}

TEST_F(GuardedTranslator, LeavesClosedTextsToTheLetter) {
  EXPECT_EQ(translate("JAGD_HUNDE", "", "12 = 'FI' OR '1'='1';"),
            " FROM <BBHUNDE,0,><BBHUNDE,112,V> WHERE (EXPR(BBHUNDE,112) = 'FI' OR '1'='1')");
}

TEST_F(GuardedTranslator, TakesOnlyDigitsForAPersonnelNumber) {
  for (const char* code : {"4ARB20 OR 1=1", "4ARB1)", "4ARB-1", "4ARB1 2", "4ARBX", "PERSONAL"}) {
    EXPECT_THROW(translate(code, "4ARB", ""), InvalidArgument) << code;
  }
  for (const char* code : {"4PAG1) OR (1=1", "4PAGX", "4PAG-1"}) {
    EXPECT_THROW(translate(code, "", ""), InvalidArgument) << code;
  }
  EXPECT_THAT(host.connection->statements(), IsEmpty());
  EXPECT_EQ(translate("4ARB17", "4ARB", ""), " FROM  WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 ");
  EXPECT_EQ(translate("4ARB", "4ARB", ""), " FROM   ");
}

TEST_F(GuardedTranslator, CutsTheBlanksOfACodeBehindItsLastCondition) {
  EXPECT_EQ(translate("4ARB17 ", "4ARB", ""), " FROM  WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 ");
}

TEST_F(GuardedTranslator, MakesNoServiceForARelationThatCannotBeTranslated) {
  EXPECT_EQ(translate("SONST", "BBF", "12 = 'x;"), "");
  EXPECT_THAT(host.suite->log(), IsEmpty());
}

// --- Time
// ------------------------------------------------------------------------------------------

// Four times the text takes four times the time: a ratio with room for a noisy machine, far from
// the factor of sixteen that a quadratic scan would show.
TEST(FindOpenText, IsLinear) {
  const auto time_of = [](std::size_t size) {
    std::string text;
    while (text.size() < size) text += "('a''b' + [c]) ";
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 5; ++i) EXPECT_EQ(find_open_text(text), std::nullopt);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  };
  double best = 1e9;
  for (int attempt = 0; attempt < 5; ++attempt) {
    best = std::min(best, time_of(1U << 17) / time_of(1U << 15));
  }
  EXPECT_LT(best, 8) << "for four times the text";
}

}  // namespace
}  // namespace kestrova::test
