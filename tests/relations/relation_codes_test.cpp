// Which treatment a relation gets and which table its records live in.
#include "relations/relation_codes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "platform/error.h"
#include "platform/text.h"
#include "tests/support/golden.h"

namespace kestrova::test {
namespace {

std::vector<golden::Row> golden_codes() {
  return golden::read(KESTROVA_GOLDEN_DIR "/relations.tsv");
}

TEST(RelationCodes, GoldenTable) {
  for (const golden::Row& row : golden_codes()) {
    const std::string& code = row["code"];
    SCOPED_TRACE(row.place() + ": '" + code + "'");
    EXPECT_EQ(IsRestrictedRelation(code), row.flag("restricted"));
    EXPECT_EQ(IsCatalogueRelation(code), row.flag("catalogue"));
    EXPECT_EQ(GetRelationTableKey(code), row["table_key"]);
    EXPECT_EQ(access_table_key(code), row["access_key"]);
  }
}

TEST(RelationCodes, ARelationKnowsWhatTheTablesSay) {
  for (const golden::Row& row : golden_codes()) {
    SCOPED_TRACE(row.place());
    const Relation relation(row["code"]);
    EXPECT_EQ(relation.code, row["code"]);
    EXPECT_EQ(relation.restricted, row.flag("restricted"));
    EXPECT_EQ(relation.catalogue, row.flag("catalogue"));
    EXPECT_EQ(relation.table_key, row["table_key"]);
    EXPECT_EQ(relation.access_key, row["access_key"]);
  }
}

bool is_prefix(const std::string& listed) { return listed.ends_with('*'); }

// Whether a listed code, or a listed prefix in any case, covers a code.
bool covers(const std::string& listed, const std::string& code) {
  if (!is_prefix(listed)) return listed == code;
  return text::upper(code).starts_with(listed.substr(0, listed.size() - 1));
}

TEST(KnownRelationCodes, ListEveryCodeThatTheTablesSaySomethingAbout) {
  const std::vector<std::string> known = known_relation_codes();
  for (const golden::Row& row : golden_codes()) {
    if (!row.flag("restricted") && !row.flag("catalogue") && row["table_key"].empty()) continue;
    EXPECT_TRUE(std::any_of(known.begin(), known.end(),
                            [&](const std::string& listed) { return covers(listed, row["code"]); }))
        << row.place() << ": '" << row["code"] << "'";
  }
}

TEST(KnownRelationCodes, ListNoCodeTwice) {
  std::vector<std::string> known = known_relation_codes();
  std::sort(known.begin(), known.end());
  const auto twice = std::adjacent_find(known.begin(), known.end());
  EXPECT_EQ(twice, known.end()) << *twice;
}

TEST(KnownRelationCodes, ListOnlyCodesOfTheGoldenTableEachInFull) {
  std::set<std::string> golden;
  for (const golden::Row& row : golden_codes()) golden.insert(row["code"]);
  for (const std::string& listed : known_relation_codes()) {
    EXPECT_EQ(listed.find('#'), std::string::npos) << listed;
    if (!is_prefix(listed)) {
      EXPECT_TRUE(golden.contains(listed)) << listed;
    }
  }
}

TEST(KnownRelationCodes, ListThePrefixesAndTheGroupsWrittenOut) {
  const std::vector<std::string> known = known_relation_codes();
  for (const char* listed : {"VERTP*",
                             "VERTM*",
                             "HIZ_SELEKTION_*",
                             "HIZBB_SELEKTION_*",
                             "4ARB*",
                             "4PAG*",
                             "BELEG_BB*",
                             "LEISTUNGS_BB*",
                             "ANGEBOT_BB*",
                             "RECHNUNG_BB*",
                             "FAKTURA_BB*",
                             "STAMMEINGABE_BB*",
                             "2ABR1",
                             "2ABR8",
                             "2ABR1-A",
                             "2ABR8-A",
                             "2VABR1",
                             "2VABR8",
                             "2PVA1",
                             "2PVA8",
                             "EXP_VER0",
                             "EXP_VER1",
                             "EXP_VER8",
                             "BBF",
                             "PERSONAL",
                             "VERLOHN",
                             "HIZBB_SELEKTION_MVIZ"}) {
    EXPECT_THAT(known, ::testing::Contains(listed));
  }
}

TEST(RelationCodes, ANumberInACodeIsDigitsWithOrWithoutBlanks) {
  EXPECT_EQ(personnel_number("4ARB17"), "17");
  EXPECT_EQ(personnel_number("4PLN 17 "), " 17 ");
  EXPECT_EQ(personnel_number("4ARB"), "");
  EXPECT_EQ(contract_number("VERTP12"), 12);
  EXPECT_EQ(contract_number("VertM 7 "), 7);
  EXPECT_EQ(contract_number("VERTP"), 0);
  for (const char* code : {"4ARBX", "4ARB1 2", "4ARB-1", "4ARB1.5", "4ARB17 OR 1=1"}) {
    EXPECT_THROW(personnel_number(code), InvalidArgument) << code;
  }
  for (const char* code : {"VERTPREIS", "VERTP-1", "VERTP12 OR 1=1"}) {
    EXPECT_THROW(contract_number(code), InvalidArgument) << code;
  }
  EXPECT_THROW(contract_number("VERTP3000000000"), Overflow);
  EXPECT_THROW(contract_number("VERTP" + std::string(40, '9')), Overflow);
}

}  // namespace
}  // namespace kestrova::test
