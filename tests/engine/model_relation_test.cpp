// Under which relation a model is looked up and listed, code by code.
#include "engine/model_relation.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/engine/engine_host.h"
#include "tests/support/golden.h"

namespace kestrova::test {
namespace {

using Mapping = std::map<std::string, std::string>;

Mapping golden_mapping(const std::string& name) {
  Mapping result;
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/" + name)) {
    EXPECT_TRUE(result.emplace(row["code"], row["model_relation"]).second)
        << row.place() << ": '" << row["code"] << "' stands there twice";
  }
  return result;
}

TEST(ModelRelation, ForLookup) {
  for (const auto& [code, relation] : golden_mapping("models_by_name.tsv")) {
    EXPECT_EQ(model_relation_for_lookup(code), relation) << "'" << code << "'";
  }
}

TEST(ModelRelation, ForLists) {
  for (const auto& [code, relation] : golden_mapping("models_in_lists.tsv")) {
    EXPECT_EQ(model_relation_for_list(code), relation) << "'" << code << "'";
  }
}

TEST(ModelRelation, ALookupAsksForTheModelsOfItsOwnTable) {
  for (const auto& [code, relation] : golden_mapping("models_by_name.tsv")) {
    SCOPED_TRACE("'" + code + "'");
    EngineHost host;
    const std::string query =
        "SELECT MODEL FROM MODELS WHERE NAME = 'X' AND RELATION = '" + relation + "'";
    host.connection->answer(query, {{"MODEL"}}, {{""}});
    try {
      host.engine.D_Selection(host.context, code, "X", "V", 9);
    } catch (const InvalidArgument&) {
      // Some codes carry something else than a personnel number.
    }
    ASSERT_FALSE(host.connection->statements().empty());
    EXPECT_EQ(host.connection->statements().front(), query);
  }
}

TEST(ModelRelation, AListAsksForTheModelsOfItsOwnTable) {
  for (const auto& [code, relation] : golden_mapping("models_in_lists.tsv")) {
    SCOPED_TRACE("'" + code + "'");
    EngineHost host;
    host.connection->answer(
        "SELECT MODELS.ID,MODELS.NAME,MODELS.STANDARD FROM MODELS LEFT JOIN ACCESS_LEVELS ON"
        " MODELS.ID_ACCESS_LEVELS = ACCESS_LEVELS.ID WHERE MODELS.RELATION = '" +
            relation + "' AND  {MODELS,0} ORDER BY MODELS.NAME",
        {{"ID"}, {"NAME"}, {"STANDARD"}});
    ComboBox list("Model", ComboBox::Style::kDropDownList);
    EntryListPort combo(list);
    host.engine.Fill_ComboModel(host.context, combo, code, true);
    EXPECT_EQ(host.suite->calls_of("standard_model"),
              std::vector<std::string>{"standard_model('" + relation + "', 0)"});
  }
}

// The tables answer for every relation code that is known, and for the same codes.
TEST(ModelRelation, EveryRelationCodeHasItsRows) {
  std::set<std::string> codes;
  for (const auto& row : golden_mapping("models_by_name.tsv")) codes.insert(row.first);
  for (const char* name : {"models_in_lists.tsv", "models_in_editor.tsv"}) {
    std::set<std::string> others;
    for (const auto& row : golden_mapping(name)) others.insert(row.first);
    EXPECT_EQ(others, codes) << name;
  }
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/relations.tsv")) {
    EXPECT_TRUE(codes.contains(row["code"])) << row.place();
  }
}

TEST(ModelRelation, TheTablesDifferOnPurpose) {
  const Mapping lookup = golden_mapping("models_by_name.tsv");
  const Mapping list = golden_mapping("models_in_lists.tsv");
  std::set<std::string> different;
  for (const auto& [code, relation] : lookup) {
    // Codes that a lookup merely normalises are no groups of their own.
    if (list.at(code) != relation && list.at(code) != code) different.insert(code);
  }
  EXPECT_EQ(different,
            (std::set<std::string>{"2ABR2-A", "2ABR3-A", "2ABR4-A", "2ABR5-A", "2ABR6-A", "2ABR7-A",
                                   "2ABR8-A", "2TOP", "1VN", "ELDAT_EXPORT"}));
}

}  // namespace
}  // namespace kestrova::test
