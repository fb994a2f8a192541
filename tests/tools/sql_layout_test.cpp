#include "tools/sql_layout.h"

#include <gtest/gtest.h>

namespace kestrova::tool {
namespace {

TEST(SqlLayout, BreaksBeforeTablesAndConditions) {
  EXPECT_EQ(lay_out_sql(" FROM LOGS LEFT JOIN HOLZART ON HOLZART.ID = LOGS.ID_HA INNER JOIN "
                        "KOPF ON KOPF.ID = LOGS.ID_KOPF  WHERE LOGS.A = 1 AND LOGS.B IS NULL"),
            "FROM LOGS\n"
            "  LEFT JOIN HOLZART ON HOLZART.ID = LOGS.ID_HA\n"
            "  INNER JOIN KOPF ON KOPF.ID = LOGS.ID_KOPF\n"
            "WHERE LOGS.A = 1\n"
            "  AND LOGS.B IS NULL");
}

TEST(SqlLayout, GivesEachCriterionALine) {
  EXPECT_EQ(lay_out_sql(" FROM LOGS WHERE LOGS.A = 1 AND (X = 'a' AND Y > 5 OR Z LIKE 'b%')"),
            "FROM LOGS\n"
            "WHERE LOGS.A = 1\n"
            "  AND (\n"
            "    X = 'a'\n"
            "    AND Y > 5\n"
            "    OR Z LIKE 'b%'\n"
            "  )");
}

TEST(SqlLayout, CriteriaMayStandAlone) {
  EXPECT_EQ(lay_out_sql(" FROM LOGS WHERE (X = 'a' OR Y = 1)"),
            "FROM LOGS\n"
            "WHERE (\n"
            "    X = 'a'\n"
            "    OR Y = 1\n"
            "  )");
}

TEST(SqlLayout, OneCriterionNeedsNoLineOfItsOwn) {
  EXPECT_EQ(lay_out_sql(" FROM LOGS WHERE A = 1 AND (NOT(X IS NULL OR X = ''))"),
            "FROM LOGS\n"
            "WHERE A = 1\n"
            "  AND (NOT(X IS NULL OR X = ''))");
}

TEST(SqlLayout, KeepsOtherParenthesesInOnePiece) {
  EXPECT_EQ(
      lay_out_sql(" FROM LOGS WHERE (A IS NULL OR A = 0) AND B IN (SELECT ID FROM T WHERE C = 1 "
                  "OR D = 2) AND (NOT(X IS NULL OR RTRIM(LTRIM(X)) = '') AND Y = 1)"),
      "FROM LOGS\n"
      "WHERE (A IS NULL OR A = 0)\n"
      "  AND B IN (SELECT ID FROM T WHERE C = 1 OR D = 2)\n"
      "  AND (\n"
      "    NOT(X IS NULL OR RTRIM(LTRIM(X)) = '')\n"
      "    AND Y = 1\n"
      "  )");
}

TEST(SqlLayout, AListAtTheEndIsNoCriteria) {
  EXPECT_EQ(lay_out_sql(" FROM LOGS WHERE A IN (SELECT ID FROM T WHERE B = 1 AND C = 2)"),
            "FROM LOGS\n"
            "WHERE A IN (SELECT ID FROM T WHERE B = 1 AND C = 2)");
}

TEST(SqlLayout, NeverBreaksInsideQuotes) {
  EXPECT_EQ(lay_out_sql(" FROM LOGS WHERE (X = 'a  FROM b AND ''c''' AND [D AND E] = 1)"),
            "FROM LOGS\n"
            "WHERE (\n"
            "    X = 'a  FROM b AND ''c'''\n"
            "    AND [D AND E] = 1\n"
            "  )");
}

TEST(SqlLayout, BetweenAndCaseStayTogether) {
  EXPECT_EQ(lay_out_sql("FROM T WHERE A BETWEEN 1 AND 2 AND CASE WHEN B = 1 AND C = 2 THEN 1 ELSE "
                        "0 END = 1"),
            "FROM T\n"
            "WHERE A BETWEEN 1 AND 2\n"
            "  AND CASE WHEN B = 1 AND C = 2 THEN 1 ELSE 0 END = 1");
}

TEST(SqlLayout, LeftAsFunctionIsNoJoin) {
  EXPECT_EQ(lay_out_sql("FROM T WHERE LEFT(A,2) = 'ab'"), "FROM T\nWHERE LEFT(A,2) = 'ab'");
}

TEST(SqlLayout, IndentsEveryLine) {
  EXPECT_EQ(lay_out_sql("SELECT A FROM T WHERE B = 1", "  "),
            "  SELECT A\n"
            "  FROM T\n"
            "  WHERE B = 1");
}

TEST(SqlLayout, ShowsBrokenTextsWhole) {
  EXPECT_EQ(lay_out_sql("FROM T WHERE (A = 'x AND B = 1)"), "FROM T\nWHERE (A = 'x AND B = 1)");
  EXPECT_EQ(lay_out_sql("FROM T WHERE A = 1) AND B = 2"), "FROM T\nWHERE A = 1)\n  AND B = 2");
  EXPECT_EQ(lay_out_sql(""), "");
}

}  // namespace
}  // namespace kestrova::tool
