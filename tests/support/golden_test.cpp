// The reader of the golden tables itself, and that every table can be read.
#include "tests/support/golden.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <set>
#include <sstream>

namespace kestrova::golden {
namespace {

std::string error_of(const std::function<void()>& action) {
  try {
    action();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "no error";
}

std::string parse_error(const std::string& text) {
  return error_of([&] { parse(text, "t.tsv"); });
}

TEST(Golden, NamesTheCellsOfARowByTheFirstLine) {
  const auto rows = parse("code\tkey\n1EXP\tLOG\n1WL\tTRANSPORT\n", "t.tsv");
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0]["code"], "1EXP");
  EXPECT_EQ(rows[0]["key"], "LOG");
  EXPECT_EQ(rows[1]["code"], "1WL");
  EXPECT_EQ(rows[1]["key"], "TRANSPORT");
}

TEST(Golden, SkipsCommentsAlsoBeforeTheColumnNames) {
  const auto rows = parse("# title\na\tb\n# one\ttwo\tthree\n1\t2\n#\n", "t.tsv");
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0]["b"], "2");
  EXPECT_EQ(rows[0].place(), "t.tsv:4");
}

TEST(Golden, KeepsBlanksAndEmptyCells) {
  const auto rows = parse("a\tb\tc\n\t x  y \t\n", "t.tsv");
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0]["a"], "");
  EXPECT_EQ(rows[0]["b"], " x  y ");
  EXPECT_EQ(rows[0]["c"], "");
}

TEST(Golden, AnEmptyLineOfOneColumnIsAnEmptyCell) {
  const auto rows = parse("a\n\nx\n", "t.tsv");
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0]["a"], "");
  EXPECT_EQ(rows[1]["a"], "x");
}

TEST(Golden, ReadsEveryEscapeOnce) {
  const auto rows = parse("a\tb\n\\#ID\\s\tx\\r\\ny\\tz\\\\n#\n", "t.tsv");
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0]["a"], "#ID ");
  EXPECT_EQ(rows[0]["b"], "x\r\ny\tz\\n#");
}

TEST(Golden, LineEndsMayBeCrLfAndTheLastOneMayMiss) {
  const auto rows = parse("a\tb\r\n1\t2\r\n3\t4", "t.tsv");
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0]["b"], "2");
  EXPECT_EQ(rows[1]["b"], "4");
}

TEST(Golden, RefusesRowsOfAnotherLength) {
  EXPECT_EQ(parse_error("a\tb\n1\t2\n3\n"), "t.tsv:3: 1 cells instead of 2");
  EXPECT_EQ(parse_error("a\tb\n1\t2\t3\n"), "t.tsv:2: 3 cells instead of 2");
  EXPECT_EQ(parse_error("a\tb\n1\t2\n\n"), "t.tsv:3: 1 cells instead of 2");
}

TEST(Golden, RefusesWhatItCannotRead) {
  EXPECT_EQ(parse_error("a\nx\\y\n"), "t.tsv:2: unknown escape \\y");
  EXPECT_EQ(parse_error("a\nx\\\n"), "t.tsv:2: the line ends within an escape");
  EXPECT_EQ(parse_error("a\tb\ta\n1\t2\t3\n"), "t.tsv:1: two columns have the same name");
  EXPECT_EQ(parse_error("a\tb\n"), "t.tsv: no rows");
  EXPECT_EQ(parse_error(""), "t.tsv: no rows");
  EXPECT_EQ(error_of([] { read("missing/t.tsv"); }), "cannot open missing/t.tsv");
}

TEST(Golden, ReadsFlagsAndNumbersAndRefusesOthers) {
  const auto rows = parse("f\tn\tempty\n1\t-2147483648\t\n0\t12 \t9999999999\n", "t.tsv");
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_TRUE(rows[0].flag("f"));
  EXPECT_FALSE(rows[1].flag("f"));
  EXPECT_EQ(rows[0].number("n"), -2147483647 - 1);
  EXPECT_EQ(error_of([&] { rows[0].flag("empty"); }), "t.tsv:2: '' is neither 0 nor 1");
  EXPECT_EQ(error_of([&] { rows[0].number("empty"); }), "t.tsv:2: '' is no number");
  EXPECT_EQ(error_of([&] { rows[1].number("n"); }), "t.tsv:3: '12 ' is no number");
  EXPECT_EQ(error_of([&] { rows[1].number("empty"); }), "t.tsv:3: '9999999999' is no number");
}

TEST(Golden, RefusesAColumnThatTheTableDoesNotHave) {
  const auto rows = parse("a\n1\n", "t.tsv");
  EXPECT_EQ(error_of([&] { static_cast<void>(rows[0]["A"]); }), "t.tsv:2: no column 'A'");
}

TEST(Golden, ShowsARowByItsPlace) {
  std::ostringstream out;
  PrintTo(parse("a\n1\n", "t.tsv")[0], &out);
  EXPECT_EQ(out.str(), "t.tsv:2");
}

TEST(Golden, EveryTableOfTheFolderCanBeRead) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(KESTROVA_GOLDEN_DIR)) {
    if (entry.path().extension() != ".tsv") continue;
    EXPECT_EQ(error_of([&] { read(entry.path().string()); }), "no error") << entry.path();
    names.insert(entry.path().filename().string());
  }
  for (const char* name : {"relations.tsv", "relation_conditions.tsv", "apply_access_levels.tsv",
                           "date_expressions.tsv", "date_literals.tsv", "is_date_field_type.tsv",
                           "trans_comp.tsv", "temp_tables.tsv"}) {
    EXPECT_TRUE(names.count(name) == 1) << name << " is missing";
  }
}

}  // namespace
}  // namespace kestrova::golden
