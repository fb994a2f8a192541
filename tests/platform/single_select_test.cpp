// What Connection::open lets through. The words are a list of their own here, so that one that gets
// lost over there is missed.
#include "platform/single_select.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/error.h"
#include "platform/text.h"
#include "tests/support/golden.h"

namespace kestrova {
namespace {

// "" for a text that is let through, else the message.
std::string refusal(std::string_view source) {
  try {
    single_select(source);
    return "";
  } catch (const DatabaseError& error) {
    EXPECT_EQ(error.sqlstate(), "42000") << source;
    return error.what();
  }
}

std::string refused_word(const std::string& word, int position) {
  return "Only one SELECT can be opened; refused is the word " + word + " at position " +
         std::to_string(position) + ".";
}

std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  return text;
}

std::string mixed(std::string text) {
  for (std::size_t i = 0; i < text.size(); i += 2) text[i] = lower(text.substr(i, 1)).front();
  return text;
}

// --- Tables

struct SourceRow {
  const char* name;
  std::string_view source;
  std::string_view expected;  // the query, or the message
};

class OpenedTable : public testing::TestWithParam<SourceRow> {};

TEST_P(OpenedTable, IsAPlainName) {
  EXPECT_EQ(single_select(GetParam().source), GetParam().expected);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Names, OpenedTable, testing::Values(
    SourceRow{"Word", "LAGER", "SELECT * FROM LAGER"},
    SourceRow{"Temporary", "#BB_1", "SELECT * FROM #BB_1"},
    SourceRow{"Dotted", "forst.dbo.LAGER", "SELECT * FROM forst.dbo.LAGER"},
    SourceRow{"WithoutSchema", "tempdb..#ID", "SELECT * FROM tempdb..#ID"},
    SourceRow{"Brackets", "[LAGER-1].[a]]b]", "SELECT * FROM [LAGER-1].[a]]b]"},
    SourceRow{"Quoted", "\"dbo\".\"DELETE\"", "SELECT * FROM \"dbo\".\"DELETE\""},
    SourceRow{"Umlaut", "WALDLÄNGE_2", "SELECT * FROM WALDLÄNGE_2"}),
    [](const auto& row) { return std::string(row.param.name); });
// clang-format on

TEST(OpenedTableTest, IsNothingElse) {
  for (const char* source : {"",
                             "LAGER;",
                             "LAGER,LOGS",
                             "LAGER)",
                             "(LAGER)",
                             "(SELECT(1))",
                             "SELECT(1)",
                             "'LAGER'",
                             "LAGER--",
                             "LAGER/**/",
                             "LAGER/**/WHERE/**/1=1",
                             "SELECT*FROM[T]",
                             "F(1)",
                             "[LAGER",
                             "\"LAGER",
                             "[A]B",
                             "LAGER.",
                             "1LAGER",
                             "A.1",
                             "@t",
                             "$x",
                             "LAGER\xC2\xA0X",
                             "LAGER\\",
                             "\x01LAGER",
                             "EXEC[sp_who]",
                             "SHUTDOWN;"}) {
    EXPECT_EQ(refusal(source), "A table can be opened by its plain name only.") << source;
  }
  EXPECT_EQ(refusal("SHUTDOWN"), refused_word("SHUTDOWN", 15));
  EXPECT_EQ(refusal("dbo.delete"), refused_word("DELETE", 19));
}

// --- Words of other statements

const std::vector<std::string> kWords = {
    "ADD",         "ALTER",         "BACKUP",    "BEGIN",    "BREAK",     "BULK",
    "CHECKPOINT",  "CLOSE",         "COMMIT",    "CONTINUE", "CREATE",    "DBCC",
    "DEALLOCATE",  "DECLARE",       "DELETE",    "DENY",     "DISK",      "DROP",
    "DUMP",        "EXEC",          "EXECUTE",   "FETCH",    "GOTO",      "GRANT",
    "IF",          "INSERT",        "INTO",      "KILL",     "LINENO",    "LOAD",
    "MERGE",       "OPEN",          "OPENQUERY", "PRINT",    "RAISERROR", "READTEXT",
    "RECONFIGURE", "RESTORE",       "RETURN",    "REVERT",   "REVOKE",    "ROLLBACK",
    "SAVE",        "SET",           "SETUSER",   "SHUTDOWN", "TRIGGER",   "TRUNCATE",
    "UPDATE",      "UPDATETEXT",    "USE",       "WAITFOR",  "WHILE",     "WRITETEXT",
    "OPENROWSET",  "OPENDATASOURCE"};

class StatementWord : public testing::TestWithParam<std::string> {};

// # stands for the word.
TEST_P(StatementWord, IsRefusedWhereverTheServerReadsIt) {
  for (const std::string_view form : {"# T",
                                      "SELECT 1 # T",
                                      "SELECT 1\r\n# T",
                                      "SELECT 1\n#",
                                      "SELECT 1\t# T",
                                      "SELECT 1\v#\fT",
                                      "SELECT (1)# T",
                                      "SELECT 'a'# T",
                                      "SELECT N''# T",
                                      "SELECT [a]# T",
                                      "SELECT \"a\"# T",
                                      "SELECT 1# T",
                                      "SELECT 1.#",
                                      "SELECT 1.5#",
                                      "SELECT 1e#",
                                      "SELECT 1.e# T",
                                      "SELECT .5e#",
                                      "SELECT 0x# T",
                                      "SELECT $#",
                                      "SELECT $1# T",
                                      "SELECT 1+# T",
                                      "SELECT 1,# T",
                                      "SELECT T.#",
                                      "SELECT a FROM T # X",
                                      "SELECT a FROM T WHERE b = 'x' # X",
                                      "SELECT 1/**/# T",
                                      "SELECT 1 /* '*/ # T /*' */",
                                      "(SELECT 1) # T",
                                      "SELECT (#)",
                                      "SELECT CASE # END",
                                      "SELECT 1 UNION # T",
                                      "SELECT 'it''s'#",
                                      "SELECT [a]]b]#",
                                      "SELECT -#",
                                      "/* x */ #",
                                      "SELECT 1 FROM T ORDER BY 1#"}) {
    for (const std::string& word : {GetParam(), lower(GetParam()), mixed(GetParam())}) {
      const std::string source = text::replace_all(form, "#", word);
      const int position = static_cast<int>(form.find('#')) + 1;
      EXPECT_EQ(refusal(source), refused_word(GetParam(), position)) << source;
    }
  }
  EXPECT_EQ(refusal("SELECT 1; " + GetParam() + " T"),
            "Only one SELECT can be opened; refused is what follows \";\" at position 11.");
}

TEST_P(StatementWord, IsLetThroughWhereItIsNone) {
  for (const std::string_view form :
       {"SELECT '% T'", "SELECT N'x' + '%'", "SELECT 'it''s % T'", "SELECT [%] FROM [% T]",
        "SELECT \"%\" FROM T", "SELECT /* % T */ 1", "SELECT /* ' */ '%' /* ' */", "SELECT X_%",
        "SELECT %_X FROM T", "SELECT %2", "SELECT Ä% FROM T", "SELECT %Ä", "SELECT @%",
        "SELECT * FROM #%", "SELECT ЖЯ%", "SELECT [a]]%]", "SELECT ']%'"}) {
    const std::string source = text::replace_all(form, "%", GetParam());
    EXPECT_EQ(single_select(source), source);
  }
}

INSTANTIATE_TEST_SUITE_P(Words, StatementWord, testing::ValuesIn(kWords),
                         [](const auto& word) { return word.param; });

// --- Whole texts

class OneSelect : public testing::TestWithParam<SourceRow> {};

TEST_P(OneSelect, IsLetThroughAsItStands) {
  EXPECT_EQ(single_select(GetParam().source), GetParam().source);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Texts, OneSelect, testing::Values(
    SourceRow{"Plain", "SELECT 1", ""},
    SourceRow{"Lower", "select * from t", ""},
    SourceRow{"BlanksAround", " \r\n\tSELECT 1 \r\n", ""},
    SourceRow{"ClosedBySemicolon", "SELECT 1 ; \r\n", ""},
    SourceRow{"Star", "SELECT*FROM LAGER", ""},
    SourceRow{"Top", "SELECT TOP 0 NAME, PREIS FROM BAUMART", ""},
    SourceRow{"Union", "SELECT 1 UNION SELECT 2 UNION ALL SELECT 3 EXCEPT SELECT 4 INTERSECT SELECT 5 ORDER BY 1", ""},
    SourceRow{"UnionOfParentheses", "(SELECT 1) UNION ALL (SELECT 2)", ""},
    SourceRow{"Nested", "((SELECT 1))", ""},
    SourceRow{"DerivedTable", "SELECT A.X FROM (SELECT 1 AS X) A INNER JOIN (SELECT 2 AS Y) B ON A.X = B.Y", ""},
    SourceRow{"In", "SELECT 1 FROM T WHERE A IN (SELECT A FROM U) AND NOT EXISTS(SELECT 1)", ""},
    SourceRow{"Quantified", "SELECT 1 FROM T WHERE A > ALL (SELECT 1) OR A = ANY (SELECT 2) OR A = SOME(SELECT 3)", ""},
    SourceRow{"Scalar", "SELECT (SELECT 1), 2 + (SELECT 3), X=(SELECT 4) FROM T", ""},
    SourceRow{"ScalarAsArgument", "SELECT ISNULL((SELECT MAX(A) FROM T),0), COUNT(((SELECT 1)))", ""},
    SourceRow{"ScalarInCase", "SELECT CASE WHEN (SELECT 1) = 1 THEN (SELECT 2) ELSE (SELECT 3) END", ""},
    SourceRow{"CaseInCase", "SELECT CASE A WHEN 1 THEN CASE B WHEN 2 THEN 3 END END AS C", ""},
    SourceRow{"Apply", "SELECT 1 FROM T CROSS APPLY (SELECT 2 AS X) A", ""},
    SourceRow{"Hints", "SELECT 1 FROM T WITH (NOLOCK) GROUP BY A HAVING COUNT(*) > 1 ORDER BY A OPTION (RECOMPILE)", ""},
    SourceRow{"ForXml", "SELECT A FROM T FOR XML PATH('')", ""},
    SourceRow{"Comment", "/* a */ SELECT /* 'b */ 1 /**/", ""},
    SourceRow{"Operators", "SELECT -1 + ~2 & 3 | 4 ^ 5 % 6 / 7 * 8 WHERE 1 <> 2 AND 1 != 2 AND 3 !< 4 AND 5 >= 6", ""},
    SourceRow{"Numbers", "SELECT 1.5, .5, 1., 1e5, 1E-5, 0x1F, $1.5, 1AS X, 1FROM T", ""},
    SourceRow{"LettersAbroad", "SELECT GRÖSSE, ŁÓDŹ, ΩΜΕΓΑ, ЁЛКА FROM T", ""},
    SourceRow{"AnyCharacterInQuotes", "SELECT '\\{};--/*🌲\x01', [\\{};--/*🌲], \"\\{};--\"", ""},
    SourceRow{"QuoteInBrackets", "SELECT [it's] FROM T WHERE A = '['", ""},
    SourceRow{"CastOfAnotherServer", "SELECT '1'::int", ""}),
    [](const auto& row) { return std::string(row.param.name); });

class NotOneSelect : public testing::TestWithParam<SourceRow> {};

TEST_P(NotOneSelect, IsRefused) {
  EXPECT_EQ(refusal(GetParam().source),
            "Only one SELECT can be opened; refused is " + std::string(GetParam().expected) + ".");
}

INSTANTIATE_TEST_SUITE_P(Texts, NotOneSelect, testing::Values(
    SourceRow{"Blank", " ", "the end before a SELECT at position 2"},
    SourceRow{"OnlyComment", "/* SELECT 1 */", "the end before a SELECT at position 15"},
    SourceRow{"Name", "LAGER L", "what stands before SELECT at position 1"},
    SourceRow{"Cte", "WITH A AS (SELECT 1) SELECT * FROM A", "what stands before SELECT at position 1"},
    SourceRow{"Values", "VALUES (1)", "what stands before SELECT at position 1"},
    SourceRow{"Call", "sp_who 1", "what stands before SELECT at position 1"},
    SourceRow{"Escape", "{call sp_who }", "what stands before SELECT at position 1"},
    SourceRow{"Label", "x: SELECT 1", "what stands before SELECT at position 1"},
    SourceRow{"Number", "( 1)", "what stands before SELECT at position 3"},
    SourceRow{"Quoted", "[sp_who] SELECT 1", "what stands before SELECT at position 1"},
    SourceRow{"SecondSelect", "SELECT 1 SELECT 2", "a second SELECT at position 10"},
    SourceRow{"SecondBehindName", "SELECT A FROM T SELECT 2", "a second SELECT at position 17"},
    SourceRow{"SecondBehindText", "SELECT 'a'SELECT 2", "a second SELECT at position 11"},
    SourceRow{"SecondBehindNumber", "SELECT 1SELECT 2", "the word SELECT at position 9"},
    SourceRow{"SecondBehindParenthesis", "(SELECT 1)SELECT 2", "a second SELECT at position 11"},
    SourceRow{"SecondInParenthesis", "SELECT 1 (SELECT 2)", "a second SELECT at position 11"},
    SourceRow{"SecondInParentheses", "SELECT 1 ((SELECT 2))", "a second SELECT at position 12"},
    SourceRow{"SecondBehindAlias", "SELECT 1 AS X (SELECT 2)", "a second SELECT at position 16"},
    SourceRow{"SecondBehindQuotedAlias", "SELECT 1 AS [X](SELECT 2)", "a second SELECT at position 17"},
    SourceRow{"SecondBehindCase", "SELECT CASE WHEN 1 = 1 THEN 2 END (SELECT 2)", "a second SELECT at position 36"},
    SourceRow{"SecondBehindAll", "SELECT ALL SELECT 2", "a second SELECT at position 12"},
    SourceRow{"SecondBehindMinus", "SELECT 1 MINUS SELECT 2", "a second SELECT at position 16"},
    SourceRow{"SecondBehindLineEnd", "SELECT 1\r\nSELECT 2", "a second SELECT at position 11"},
    SourceRow{"SemicolonAndSelect", "SELECT 1;SELECT 2", "what follows \";\" at position 10"},
    SourceRow{"SemicolonTwice", "SELECT 1;;", "what follows \";\" at position 10"},
    SourceRow{"SemicolonAndComment", "SELECT 1; /* */", "what follows \";\" at position 11"},
    SourceRow{"Into", "SELECT * INTO #X FROM T", "the word INTO at position 10"},
    SourceRow{"LineComment", "SELECT 1 -- x\r\n", "the comment mark -- at position 10"},
    SourceRow{"LineCommentAtTheEnd", "SELECT 1 FROM T WHERE A = 'x' --", "the comment mark -- at position 31"},
    SourceRow{"MinusMinus", "SELECT 1--1", "the comment mark -- at position 9"},
    SourceRow{"CommentNotClosed", "SELECT 1 /* x", "a comment that is not closed at position 10"},
    SourceRow{"CommentInComment", "SELECT 1 /* /* */ DROP TABLE T */", "a comment in a comment at position 10"},
    SourceRow{"TextNotClosed", "SELECT 'a FROM T", "a quote that is not closed at position 8"},
    SourceRow{"NameNotClosed", "SELECT [a FROM T", "a quote that is not closed at position 8"},
    SourceRow{"QuotedNotClosed", "SELECT \"a FROM T", "a quote that is not closed at position 8"},
    SourceRow{"ParenthesisNotClosed", "SELECT (1", "the end before a closing parenthesis or END at position 10"},
    SourceRow{"ParenthesisNotOpened", "SELECT 1) FROM T", "a closing parenthesis or END that closes nothing at position 9"},
    SourceRow{"ParenthesisFirst", "()SELECT 1", "what stands before SELECT at position 2"},
    SourceRow{"CaseNotClosed", "SELECT CASE WHEN 1 = 1 THEN 2", "the end before a closing parenthesis or END at position 30"},
    SourceRow{"CaseClosedByParenthesis", "SELECT (CASE WHEN 1 = 1 THEN 2)", "a closing parenthesis or END that closes nothing at position 31"},
    SourceRow{"EndWithoutCase", "SELECT 1 END", "a closing parenthesis or END that closes nothing at position 10"},
    SourceRow{"Conversation", "SELECT 1 END CONVERSATION 'x'", "a closing parenthesis or END that closes nothing at position 10"},
    SourceRow{"BracketNotOpened", "SELECT 1 ]", "a character that is none of SQL's at position 10"},
    SourceRow{"Brace", "SELECT 1 {call sp_who}", "a character that is none of SQL's at position 10"},
    SourceRow{"Backslash", "SELECT 1 \\ 2", "a character that is none of SQL's at position 10"},
    SourceRow{"Parameter", "SELECT ?", "a character that is none of SQL's at position 8"},
    SourceRow{"ControlCharacterIsABlank", "SELECT 1\x01" "DROP TABLE T", "a character that is none of SQL's at position 9"},
    SourceRow{"WideBlank", "SELECT 'ä'\xC2\xA0" "DROP TABLE T", "a character that is none of SQL's at position 11"},
    SourceRow{"WiderBlank", "SELECT ä\xE3\x80\x80" "DROP TABLE T", "a character that is none of SQL's at position 9"},
    SourceRow{"WideSemicolon", "SELECT 1\xEF\xBC\x9B" "X", "a character that is none of SQL's at position 9"},
    SourceRow{"HalfACharacter", "SELECT A\xC3", "a character that is none of SQL's at position 9"}),
    [](const auto& row) { return std::string(row.param.name); });
// clang-format on

TEST(SingleSelect, ANulIsNoCharacterOfSql) {
  EXPECT_EQ(refusal(std::string_view("SELECT 1\0DROP", 13)),
            "Only one SELECT can be opened; refused is a character that is none of SQL's at "
            "position 9.");
}

TEST(SingleSelect, DeepNestingNeedsNoStack) {
  const std::string open(1'000'000, '(');
  const std::string close(1'000'000, ')');
  const std::string source = "SELECT " + open + " 1 " + close;
  EXPECT_EQ(single_select(source), source);
}

// --- The texts of the system

TEST(SingleSelect, LetsThroughTheQueriesOfTheFilters) {
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/filters.tsv")) {
    EXPECT_EQ(refusal(row["counted_by_hand"]), "") << row.place();
  }
}

// Behind a brace the table has what a service adds.
TEST(SingleSelect, LetsThroughTheConditionsOfTheRelations) {
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/relation_conditions.tsv")) {
    const std::string& condition = row["condition"];
    EXPECT_EQ(refusal("SELECT * FROM T WHERE (" + condition.substr(0, condition.find('{')) + ")"),
              "")
        << row.place();
  }
}

}  // namespace
}  // namespace kestrova
