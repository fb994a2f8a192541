// Pick lists on the command line.
#include "tests/tools/program_fixture.h"

namespace kestrova::tool {
namespace {

class Values : public Program {
 protected:
  static json sql_of(const std::string& code, const std::string& field) {
    const json answer = json_of({"values", code, field});
    json texts = json::array();
    for (const json& entry : answer.at("values")) texts.push_back(entry.at("sql"));
    return texts;
  }

  // The first column of a query written by hand, as texts.
  static std::vector<std::string> column(const std::string& sql) {
    const auto rows = open_sqlite(database(), {.read_only = true})
                          ->open(sql, CursorType::kForwardOnly, LockType::kReadOnly);
    std::vector<std::string> texts;
    for (; !rows->eof(); rows->move_next()) texts.push_back(rows->value(0).text());
    return texts;
  }
};

TEST_F(Values, OfTheCatalogueAreThoseOfTheRelation) {
  const ProgramResult result = on_database({"values", "FI_NUTZERRECHTE", "Zugriffsebene"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out,
            "SQL\n"
            "  SELECT DISTINCT ACCESS_LEVELS.NAME\n"
            "  FROM USERS\n"
            "    LEFT JOIN ACCESS_LEVELS ON ACCESS_LEVELS.ID = USERS.ID_ACCESS_LEVELS\n"
            "  ORDER BY 1\n"
            "\n"
            "Values of Zugriffsebene\n"
            "  VALUE              SQL\n"
            "  -----------------  -------------------\n"
            "  Forstbetrieb Nord  'Forstbetrieb Nord'\n"
            "  Forstbetrieb Süd   'Forstbetrieb Süd'\n"
            "  Zentrale           'Zentrale'\n");
}

TEST_F(Values, RespectTheBaseConditionOfTheRelation) {
  const json answer = json_of({"values", "BB_T_OBJEKTE", "2", "--user-level", "2"});
  const std::vector<std::string> names = column(
      "SELECT DISTINCT NAME FROM BB_T_OBJEKTE WHERE ID_ACCESS_LEVELS IS NULL OR "
      "ID_ACCESS_LEVELS = 2 ORDER BY 1");
  ASSERT_EQ(answer.at("values").size(), names.size());
  EXPECT_LT(answer.at("found"), json_of({"values", "BB_T_OBJEKTE", "2"}).at("found"));
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(answer.at("values")[i].at("text"), names[i]);
  }
}

TEST_F(Values, AreQuotedByTypeAndNullIsAWord) {
  const json answer = json_of({"values", "FI_NUTZERRECHTE", "3"});
  EXPECT_EQ(answer.at("type"), "date");
  EXPECT_EQ(answer.at("values")[0], (json{{"value", nullptr}, {"text", "Null"}, {"sql", "Null"}}));
  const std::string sql = answer.at("values")[1].at("sql");
  EXPECT_EQ(sql.front(), '\'');
  EXPECT_EQ(json_of({"run", "FI_NUTZERRECHTE", "3 = " + sql + ";"}).at("count"), 1);
  EXPECT_EQ(sql_of("FI_NUTZERRECHTE", "6"), (json{"0", "1"}));
}

TEST_F(Values, AreShownAsTheUserWritesThem) {
  const json wage = json_of({"values", "FI_NUTZERRECHTE", "Stundensatz"}).at("values");
  EXPECT_EQ(wage, (json{{{"value", nullptr}, {"text", "Null"}, {"sql", "Null"}},
                        {{"value", "42.00"}, {"text", "42,00"}, {"sql", "42.00"}},
                        {{"value", "48.50"}, {"text", "48,50"}, {"sql", "48.50"}}}));
  const json login =
      json_of({"values", "FI_NUTZERRECHTE", "3", "--date-order", "MDY"}).at("values");
  EXPECT_EQ(login[1], (json{{"value", "2025-03-13 16:40:00"},
                            {"text", "03/13/2025 16:40"},
                            {"sql", "'13.03.2025 16:40:00'"}}));
}

TEST_F(Values, OfALongListAreTheLastHundred) {
  const json answer = json_of({"values", "2PALL", "1"});
  const std::vector<std::string> all = column("SELECT DISTINCT NUMMER FROM PERSONAL ORDER BY 1");
  ASSERT_GT(all.size(), 100U);
  EXPECT_EQ(answer.at("found"), all.size());
  ASSERT_EQ(answer.at("values").size(), 100U);
  for (std::size_t i = 0; i < 100; ++i) {
    EXPECT_EQ(answer.at("values")[i].at("text"), all[all.size() - 100 + i]);
  }
  const std::string out = on_database({"values", "2PALL", "1"}).out;
  EXPECT_EQ(out.substr(out.rfind("\n\n")),
            "\n\nThe last 100 of " + std::to_string(all.size()) + " values\n");
}

TEST_F(Values, OfUnitsAreTheirWords) {
  EXPECT_EQ(sql_of("4PLN", "Rindeprozent"), (json{"'cm'", "'%'"}));
  EXPECT_EQ(sql_of("4PLN", "DM/EURO"), (json{"DM", "EURO"}));
}

TEST_F(Values, OfSelektionComeFromTheTableOfTheNickname) {
  const ProgramResult result = on_database({"values", "4PLN", "HA"});
  EXPECT_EQ(result.exit_code, 1);  // a nickname is no name that users know
  const json answer = json_of({"values", "4PLN17", "108"});
  EXPECT_EQ(answer.at("query"), "SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA");
  const std::vector<std::string> species =
      column("SELECT HA FROM HOLZART WHERE DISABLE IS NULL OR DISABLE = 0 ORDER BY HA");
  ASSERT_EQ(answer.at("values").size(), species.size());
  for (std::size_t i = 0; i < species.size(); ++i) {
    EXPECT_EQ(answer.at("values")[i].at("sql"), "'" + species[i] + "'");
  }
}

TEST_F(Values, OfSelektionComeFromTheColumnOfTheField) {
  const json answer = json_of({"values", "4PLN", "Auftragsnummer"});
  EXPECT_EQ(answer.at("query"),
            "SELECT DISTINCT ARBEITSAUFTRAG_KOPF.NUMMER FROM ARBEITSAUFTRAG_KOPF ORDER BY 1");
  EXPECT_EQ(answer.at("values")[0].at("sql"), "Null");
  EXPECT_EQ(answer.at("values").size(),
            column("SELECT DISTINCT NUMMER FROM ARBEITSAUFTRAG_KOPF").size() + 1);
}

TEST_F(Values, OfEveryVisibleFieldOfSelektionCanBeListed) {
  const json fields = json_of({"fields", "4PLN"}).at("fields");
  EXPECT_GE(fields.size(), 20U);
  for (const json& field : fields) {
    const std::string id = std::to_string(field.at("id").get<int>());
    EXPECT_GT(json_of({"values", "4PLN", id}).at("values").size(), 0U) << field;
  }
}

TEST_F(Values, OfAnUnknownFieldAreRefused) {
  for (const std::string field : {"99", "Gibt es nicht", "", "99999999999"}) {
    const ProgramResult result = on_database({"values", "FI_NUTZERRECHTE", field});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_EQ(error_line(result), "the relation 'FI_NUTZERRECHTE' has no field '" + field +
                                      "': 'kestrova-sel fields FI_NUTZERRECHTE' lists the fields");
  }
}

}  // namespace
}  // namespace kestrova::tool
