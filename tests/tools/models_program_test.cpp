// Saved models on the command line: listed, translated by name, described.
#include "tests/tools/program_fixture.h"

namespace kestrova::tool {
namespace {

class Models : public Program {
 protected:
  static json models_of(const std::string& code, const std::string& user,
                        const std::string& level) {
    return json_of({"models", code, "--user", user, "--user-level", level}).at("models");
  }

  static std::vector<std::string> names_of(const json& models) {
    std::vector<std::string> names;
    for (const json& model : models) names.push_back(model.at("name"));
    return names;
  }
};

// --- models --------------------------------------------------------------------------------------

TEST_F(Models, AreListedWithWhatTheyAre) {
  const ProgramResult result = on_database({"models", "1VM", "--user", "1"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  // clang-format off
  EXPECT_EQ(result.out,
            "Models of 1VM\n"
            "\n"
            "ID  NAME                    STANDARD  USER'S STANDARD  LOCKED  ACCESS LEVEL       OWNER\n"
            "--  ----------------------  --------  ---------------  ------  -----------------  ---------------\n"
            " 3  Buche oder Eiche                                   yes                        Jürgen Weiß\n"
            " 1  Fichte stark            yes       yes                                         Brigitte Köhler\n"
            " 5  Nur Nord                                                   Forstbetrieb Nord  Andreas Öttl\n"
            " 4  Ohne Abfuhr                                                                   Brigitte Köhler\n"
            " 2  Verkauft seit 90 Tagen                                                        Andreas Öttl\n");
  // clang-format on
}

TEST_F(Models, AreListedForPrograms) {
  const json answer = json_of({"models", "1VM", "--user", "2", "--user-level", "2"});
  EXPECT_EQ(answer.at("relation"), "1VM");
  EXPECT_EQ(answer.at("model_relation"), "1VM");
  EXPECT_EQ(answer.at("lookup_relation"), "1VM");
  ASSERT_EQ(answer.at("models").size(), 5U);
  EXPECT_EQ(answer.at("models")[2], (json{{"id", 5},
                                          {"name", "Nur Nord"},
                                          {"standard", false},
                                          {"standard_of_user", false},
                                          {"locked", false},
                                          {"access_level", "Forstbetrieb Nord"},
                                          {"owner", "Andreas Öttl"}}));
  EXPECT_EQ(answer.at("models")[3], (json{{"id", 4},
                                          {"name", "Ohne Abfuhr"},
                                          {"standard", false},
                                          {"standard_of_user", true},
                                          {"locked", false},
                                          {"access_level", nullptr},
                                          {"owner", "Brigitte Köhler"}}));
}

TEST_F(Models, AreThoseThatTheUserMaySee) {
  const std::vector<std::string> northern = names_of(models_of("1VM", "2", "2"));
  const std::vector<std::string> southern = names_of(models_of("1VM", "3", "3"));
  EXPECT_EQ(names_of(models_of("1VM", "1", "1")), northern);
  EXPECT_EQ(southern, (std::vector<std::string>{"Buche oder Eiche", "Fichte stark", "Ohne Abfuhr",
                                                "Verkauft seit 90 Tagen"}));
  EXPECT_EQ(northern.size(), southern.size() + 1);
}

TEST_F(Models, OfAGroupAreShared) {
  EXPECT_EQ(models_of("2VABR7", "1", "1"), models_of("EXP_VER2", "1", "1"));
  EXPECT_EQ(models_of("2VABR7", "1", "1").size(), 5U);
}

TEST_F(Models, ThatACodeBorrowsCannotBeTranslatedByName) {
  const std::string out = on_database({"models", "2TOP"}).out;
  EXPECT_EQ(out.substr(0, out.find('\n')), "Models of 1LV");
  EXPECT_EQ(out.substr(out.rfind("\n\n")),
            "\n\nBy name the library looks for models of 2TOP under 2TOP, where these are not.\n");
}

TEST_F(Models, OwnersAndLevelsThatAreGoneAreShownByNumber) {
  const std::string path =
      changed_database("gone.db",
                       "UPDATE MODELS SET ID_USER = 77, ID_ACCESS_LEVELS = NULL WHERE "
                       "ID = 1");
  const ProgramResult result = run_program({"--db", path, "models", "1VM", "--json"});
  EXPECT_EQ(json::parse(result.out).at("models")[1].at("owner"), "77");
}

TEST_F(Models, OfARelationWithoutAnyAreNone) {
  EXPECT_EQ(models_of("FI_NUTZERRECHTE", "1", "1"), json::array());
}

TEST_F(Models, OfAnUnknownRelationAreRefused) {
  const ProgramResult result = on_database({"models", "XYZ"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(error_line(result),
            "the relation code 'XYZ' is not known: 'kestrova-sel relations' lists the codes");
}

TEST_F(Models, NeedTheTable) {
  const std::string path = changed_database("no_models.db", "DROP TABLE MODELS");
  for (const std::vector<std::string>& command : {std::vector<std::string>{"models", "1VM"},
                                                  {"translate", "1VM", "--model", "X"},
                                                  {"audit"}}) {
    std::vector<std::string> arguments = {"--db", path};
    arguments.insert(arguments.end(), command.begin(), command.end());
    const ProgramResult result = run_program(arguments);
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_EQ(error_line(result), "Invalid object name 'MODELS'.");
  }
}

// --- translate and run by name -------------------------------------------------------------------

TEST_F(Models, AreTranslatedByName) {
  json by_name = json_of({"translate", "1VM", "--model", "Fichte stark"});
  EXPECT_EQ(by_name.at("model"), "Fichte stark");
  by_name.erase("model");
  EXPECT_EQ(by_name, json_of({"translate", "1VM", "703 = 'FI';711 >= 40;"}));
}

TEST_F(Models, AreTranslatedForTheCodesOfTheirGroup) {
  EXPECT_EQ(json_of({"translate", "EXP_VER3", "--model", "Abschlagsverträge"}).at("from_where"),
            json_of({"translate", "EXP_VER3", "7 > 1;"}).at("from_where"));
}

TEST_F(Models, AreRunByName) {
  const json answer = json_of({"run", "4ARB17", "--model", "Unerledigt"});
  EXPECT_EQ(answer.at("mode"), "4ARB");
  const std::int32_t expected =
      count_of("ARBEITSAUFTRAG_KOPF WHERE PERSONAL_ID = 17 AND ABGESCHLOSEN = 0");
  EXPECT_GT(expected, 0);
  EXPECT_EQ(answer.at("count"), expected);
}

TEST_F(Models, WithoutTextSelectEveryRecordOfTheRelation) {
  const json answer = json_of({"run", "2ABR4", "--model", "Ohne Filter"});
  EXPECT_EQ(answer.at("criteria"), json::array());
  EXPECT_EQ(answer.at("count"), json_of({"run", "2ABR4", ""}).at("count"));
}

TEST_F(Models, ThatAreNotThereAreRefused) {
  for (const std::string command : {"translate", "run", "describe"}) {
    const ProgramResult result = on_database({command, "2ABR4", "--model", "Fichte stark"});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(error_line(result),
              "there is no model 'Fichte stark' under '2ABR1', where the library looks for models "
              "of '2ABR4'; the library itself would select every record of the relation: "
              "'kestrova-sel models 2ABR4' lists the models");
  }
}

TEST_F(Models, WithAnApostropheInTheirNameFail) {
  const ProgramResult result = on_database({"translate", "2ABR1", "--model", "O'Brien Holzhandel"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(error_line(result),
            "The name of a model cannot hold an apostrophe or a control character.");
}

TEST_F(Models, OfARelationThatOnlySelektionKnowsHaveNoTranslationByName) {
  const std::string path = changed_database(
      "plan.db",
      "INSERT INTO MODELS (MODEL, NAME, RELATION, STANDARD) VALUES ('101 > 5;','Plan','4PLN',0)");
  const ProgramResult result = run_program({"--db", path, "translate", "4PLN", "--model", "Plan"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(error_line(result),
            "the library translates no models of '4PLN' by their names: give the criteria");
}

TEST_F(Models, ThatAreBrokenNameTheCriterion) {
  const std::string path = changed_database(
      "broken.db",
      "INSERT INTO MODELS (MODEL, NAME, RELATION, STANDARD) VALUES ('4 > ''viele'';','Kaputt',"
      "'FI_NUTZERRECHTE',0)");
  const ProgramResult result =
      run_program({"--db", path, "run", "FI_NUTZERRECHTE", "--model", "Kaputt"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(error_line(result),
            "criterion 1 (4 > 'viele'): Conversion failed when converting the value 'viele' to "
            "data type int.");
}

// --- describe ------------------------------------------------------------------------------------

TEST_F(Models, CriteriaOfTheCatalogueAreDescribedByDisplayNames) {
  const ProgramResult result =
      on_database({"describe", "FI_NUTZERRECHTE", "7 = 'Zentrale';=== ODER ===;2 = 'null';"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out,
            "CRITERION                   FIELD\n"
            "--------------------------  -------------\n"
            "Zugriffsebene = 'Zentrale'  Zugriffsebene\n"
            "=== ODER ===\n"
            "Name = Null                 Name\n");
}

TEST_F(Models, CriteriaOfSelektionAreDescribedAsTheLibraryDoes) {
  const ProgramResult result =
      on_database({"describe", "4PLN", "103 >= '1/3/2025';=== ODER ===;102 = 'Wegebau';"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out,
            "CRITERION             FIELD\n"
            "--------------------  -----------\n"
            "1003 >= '01.03.2025'  Beginn\n"
            " ODER\n"
            "1002 = 'Wegebau'      Bezeichnung\n");
}

TEST_F(Models, AreDescribedByName) {
  EXPECT_EQ(json_of({"describe", "4ARB", "--model", "Laufende Aufträge"}),
            (json{{"relation", "4ARB"},
                  {"model", "Laufende Aufträge"},
                  {"criteria",
                   {{{"text", "1004 = Null"}, {"id", 304}, {"field", "Ende"}},
                    {{"text", "1003 <= GETDATE()"}, {"id", 303}, {"field", "Beginn"}}}}}));
}

TEST_F(Models, CriteriaThatAreNotWholeAreNotDescribed) {
  const auto refusal = [](const std::string& code, const std::string& criteria) {
    const ProgramResult result = on_database({"describe", code, criteria});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_EQ(result.out, "");
    return error_line(result);
  };
  for (const std::string code : {"4PLN", "FI_NUTZERRECHTE"}) {
    EXPECT_EQ(refusal(code, "101 = 5"), "criterion 1 (101 = 5): the \";\" at its end is missing");
    EXPECT_EQ(refusal(code, ";"), "criterion 1 (): it is empty");
    EXPECT_EQ(refusal(code, "999 = 5;"), "criterion 1 (999 = 5): the relation '" + code +
                                             "' has no field 999: 'kestrova-sel fields " + code +
                                             "' lists the fields");
    EXPECT_EQ(refusal(code, "abc = 5;"),
              "criterion 1 (abc = 5): 'abc' is no field number: "
              "'kestrova-sel fields " +
                  code + "' lists the fields");
  }
}

}  // namespace
}  // namespace kestrova::tool
