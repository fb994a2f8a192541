// The program end to end, on the sample database.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "platform/sqlite/sqlite_connection.h"
#include "relations/relation_codes.h"
#include "tests/support/killed_writer.h"
#include "tests/tools/program_fixture.h"

namespace kestrova::tool {
namespace {

// --- Answers -----------------------------------------------------------------------------------

TEST_F(Program, TellsItsVersion) {
  const ProgramResult result = run_program({"--version"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "2.0\n");
}

TEST_F(Program, HelpShowsAnExample) {
  for (const std::string command : {"relations", "fields", "translate", "run", "describe", "models",
                                    "values", "audit", "materialise", "session", "demo-db"}) {
    const ProgramResult result = run_program({command, "--help"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_NE(result.out.find("Example:\n  kestrova-sel "), std::string::npos) << command;
  }
}

TEST_F(Program, ListsEveryRelationWithoutADatabase) {
  const ProgramResult result = run_program({"relations", "--json"});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  const json relations = json::parse(result.out).at("relations");
  const std::vector<std::string> codes = known_relation_codes();
  ASSERT_EQ(relations.size(), codes.size());
  for (std::size_t i = 0; i < codes.size(); ++i) {
    EXPECT_EQ(relations[i], (json{{"code", codes[i]},
                                  {"restricted", IsRestrictedRelation(codes[i])},
                                  {"catalogue", IsCatalogueRelation(codes[i])},
                                  {"table_key", GetRelationTableKey(codes[i])}}));
  }
}

TEST_F(Program, ShowsARelationWithoutADatabase) {
  EXPECT_EQ(run_program({"relations", "2ABR1-A"}).out,
            "Relation    2ABR1-A\n"
            "Restricted  yes\n"
            "Catalogue   yes\n"
            "Table key   ARTIKEL\n"
            "\n"
            "--db FILE shows its base FROM and condition too.\n");
  EXPECT_EQ(run_program({"relations", "BBF"}).out,
            "Relation    BBF\n"
            "Restricted  yes\n"
            "Catalogue   no\n"
            "Table key   (none)\n");
}

TEST_F(Program, ShowsWhatARelationBeginsWith) {
  EXPECT_EQ(on_database({"relations", "BB_T_OBJEKTE"}).out,
            "Relation    BB_T_OBJEKTE\n"
            "Restricted  no\n"
            "Catalogue   yes\n"
            "Table key   BBOBJ\n"
            "\n"
            "SQL\n"
            "  FROM BB_T_OBJEKTE\n"
            "  WHERE (\n"
            "      BB_T_OBJEKTE.ID_ACCESS_LEVELS IS NULL\n"
            "      OR BB_T_OBJEKTE.ID_ACCESS_LEVELS IN (SELECT ID FROM ACCESS_LEVELS)\n"
            "    )\n");
}

TEST_F(Program, KnowsTheRelationsOfSelektion) {
  EXPECT_EQ(on_database({"relations", "4PLN"}).exit_code, 0);
  EXPECT_EQ(
      error_line(run_program({"relations", "4PLN"})),
      "the relation code '4PLN' is not known: 'kestrova-sel relations' lists the codes; those "
      "that only a database knows need --db FILE");
}

TEST_F(Program, ListsTheFieldsOfACatalogueRelation) {
  const ProgramResult result = on_database({"fields", "FI_NUTZERRECHTE"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out,
            "ID  NAME              TYPE     CODE  EXPRESSION\n"
            "--  ----------------  -------  ----  ----------------------\n"
            " 1  Anmeldename       text      202  USERS.LOGIN\n"
            " 2  Name              text      202  USERS.NAME\n"
            " 3  Letzte Anmeldung  date        7  USERS.LETZTE_ANMELDUNG\n"
            " 4  Anmeldungen       integer     3  USERS.ANMELDUNGEN\n"
            " 5  Stundensatz       number      5  USERS.STUNDENSATZ\n"
            " 6  Aktiv             integer     3  USERS.AKTIV\n"
            " 7  Zugriffsebene     text      202  ACCESS_LEVELS.NAME\n");
}

TEST_F(Program, ListsTheFieldsOfWorkOrdersWithAndWithoutPersonnelNumber) {
  const json fields = json_of({"fields", "4ARB"}).at("fields");
  EXPECT_EQ(json_of({"fields", "4ARB17"}).at("fields"), fields);
  ASSERT_FALSE(fields.empty());
  EXPECT_EQ(fields[0], (json{{"id", 301},
                             {"name", "Auftragsnummer"},
                             {"type", "integer"},
                             {"type_code", 3},
                             {"expression", "ARBEITSAUFTRAG_KOPF.NUMMER"}}));
}

TEST_F(Program, SpeaksTheUsersLanguage) {
  EXPECT_EQ(json_of({"fields", "BB_T_OBJEKTE", "--language", "EN"}).at("fields")[2].at("name"),
            "Built on");
}

TEST_F(Program, Translates) {
  const ProgramResult result =
      on_database({"translate", "FI_NUTZERRECHTE", "7 = 'Zentrale';5 > 40;=== ODER ===;2 = Null;"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out,
            "SQL\n"
            "  FROM USERS\n"
            "    LEFT JOIN ACCESS_LEVELS ON ACCESS_LEVELS.ID = USERS.ID_ACCESS_LEVELS\n"
            "  WHERE (\n"
            "      ACCESS_LEVELS.NAME = 'Zentrale'\n"
            "      AND USERS.STUNDENSATZ > 40\n"
            "      OR (USERS.NAME IS NULL OR RTRIM(LTRIM(USERS.NAME)) = '')\n"
            "    )\n"
            "\n"
            "Criteria\n"
            "  Zugriffsebene = 'Zentrale'\n"
            "  Stundensatz > 40\n"
            "  === ODER ===\n"
            "  Name = Null\n");
}

TEST_F(Program, TranslatesToTheExactText) {
  EXPECT_EQ(on_database({"translate", "FI_NUTZERRECHTE", "1 = 'nord';", "--raw"}).out,
            " FROM USERS WHERE (USERS.LOGIN = 'nord')\n");
  EXPECT_EQ(on_database({"translate", "FI_NUTZERRECHTE", "", "--raw"}).out, " FROM USERS  \n");
}

TEST_F(Program, TheOrLineIsTheUsers) {
  EXPECT_EQ(
      json_of({"--or-line", "(or)", "translate", "FI_NUTZERRECHTE", "1 = 'nord';(or);1 = 'süd';"}),
      (json{{"relation", "FI_NUTZERRECHTE"},
            {"mode", ""},
            {"from_where", " FROM USERS WHERE (USERS.LOGIN = 'nord' OR USERS.LOGIN = 'süd')"},
            {"criteria",
             {{{"id", 1}, {"field", "Anmeldename"}, {"operator", "="}, {"value", "'nord'"}},
              {{"or", true}},
              {{"id", 1}, {"field", "Anmeldename"}, {"operator", "="}, {"value", "'süd'"}}}}}));
}

TEST_F(Program, RunsAFilter) {
  const ProgramResult result = on_database(
      {"run", "BB_T_OBJEKTE", "3 >= '01.01.1970';4 > 50;=== ODER ===;2 LIKE '%kapelle';", "--limit",
       "3", "--columns", "NUMMER, NAME, ERRICHTET, FLAECHE"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out,
            "SQL\n"
            "  SELECT NUMMER, NAME, ERRICHTET, FLAECHE\n"
            "  FROM BB_T_OBJEKTE\n"
            "  WHERE (BB_T_OBJEKTE.ID_ACCESS_LEVELS IS NULL OR BB_T_OBJEKTE.ID_ACCESS_LEVELS IN "
            "(SELECT ID FROM ACCESS_LEVELS))\n"
            "    AND (\n"
            "      BB_T_OBJEKTE.ERRICHTET >= '01.01.1970'\n"
            "      AND BB_T_OBJEKTE.FLAECHE > 50\n"
            "      OR BB_T_OBJEKTE.NAME LIKE '%kapelle'\n"
            "    )\n"
            "\n"
            "Criteria\n"
            "  Errichtet am >= '01.01.1970'\n"
            "  Fläche (m²) > 50\n"
            "  === ODER ===\n"
            "  Objektname LIKE '%kapelle'\n"
            "\n"
            "Rows\n"
            "  NUMMER  NAME                        ERRICHTET    FLAECHE\n"
            "  ------  --------------------------  ----------  --------\n"
            "    1002  Gerätehalle Buchenau        15.10.1978    680,00\n"
            "    1004  Nasslager Kühbrunn          01.03.2008  12500,00\n"
            "    1005  Waldkindergarten Eichgrund  01.09.2017     88,00\n"
            "\n"
            "4 rows, the first 3 shown\n");
}

TEST_F(Program, ShowsDatesInTheUsersOrder) {
  const ProgramResult result = on_database(
      {"run", "BB_T_OBJEKTE", "3 >= '01.01.2015';", "--date-order", "MDY", "--language", "EN"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out.substr(result.out.find("Criteria")),
            "Criteria\n"
            "  Built on >= '01/01/2015'\n"
            "\n"
            "Rows\n"
            "  NUMMER  NAME                        ERRICHTET\n"
            "  ------  --------------------------  ----------\n"
            "    1005  Waldkindergarten Eichgrund  09/01/2017\n"
            "\n"
            "1 row\n");
}

TEST_F(Program, ShowsDatesOfAListInTheUsersOrder) {
  const json criteria = json_of({"translate", "BB_T_OBJEKTE", "3 IN ('31.12.2015','01.09.2017');",
                                 "--date-order", "MDY"})
                            .at("criteria");
  EXPECT_EQ(criteria, (json{{{"id", 3},
                             {"field", "Errichtet am"},
                             {"operator", "IN ('12/31/2015','09/01/2017')"},
                             {"value", ""}}}));
}

TEST_F(Program, AnswersRowsForPrograms) {
  EXPECT_EQ(
      json_of({"run", "FI_NUTZERRECHTE", "1 = 'süd';", "--columns",
               "LOGIN, LETZTE_ANMELDUNG, ANMELDUNGEN, AKTIV"}),
      (json{{"relation", "FI_NUTZERRECHTE"},
            {"mode", ""},
            {"select",
             "SELECT LOGIN, LETZTE_ANMELDUNG, ANMELDUNGEN, AKTIV FROM USERS WHERE (USERS.LOGIN = "
             "'süd')"},
            {"criteria",
             {{{"id", 1}, {"field", "Anmeldename"}, {"operator", "="}, {"value", "'süd'"}}}},
            {"columns",
             {{{"name", "LOGIN"}, {"type", "text"}, {"type_code", 202}},
              {{"name", "LETZTE_ANMELDUNG"}, {"type", "date and time"}, {"type_code", 135}},
              {{"name", "ANMELDUNGEN"}, {"type", "integer"}, {"type_code", 3}},
              {{"name", "AKTIV"}, {"type", "yes/no"}, {"type_code", 11}}}},
            {"rows", json::array({json::array({"süd", nullptr, 0, false})})},
            {"count", 1}}));
}

TEST_F(Program, EmptyCriteriaSelectEveryRecordOfTheRelation) {
  const json answer = json_of({"run", "FI_NUTZERRECHTE", ""});
  EXPECT_EQ(answer.at("criteria"), json::array());
  EXPECT_EQ(answer.at("count"), count_of("USERS"));
}

TEST_F(Program, AUserSeesTheRecordsOfTheOwnLevel) {
  EXPECT_EQ(json_of({"run", "BB_T_OBJEKTE", "", "--user-level", "2"}).at("count"),
            count_of("BB_T_OBJEKTE WHERE ID_ACCESS_LEVELS IS NULL OR ID_ACCESS_LEVELS = 2"));
  EXPECT_EQ(json_of({"run", "BB_T_OBJEKTE", ""}).at("count"), count_of("BB_T_OBJEKTE"));
}

TEST_F(Program, RunsWorkOrdersOfOnePerson) {
  const json answer = json_of({"run", "4ARB17", "305 > 100;=== ODER ===;306 = 1;"});
  EXPECT_EQ(answer.at("mode"), "4ARB");
  EXPECT_EQ(answer.at("select"),
            "SELECT ARBEITSAUFTRAG_KOPF.NUMMER, ARBEITSAUFTRAG_KOPF.BEZEICHNUNG, "
            "ARBEITSAUFTRAG_KOPF.BEGINN, ARBEITSAUFTRAG_KOPF.MENGE FROM ARBEITSAUFTRAG_KOPF WHERE "
            "ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 AND (ARBEITSAUFTRAG_KOPF.MENGE > 100 OR "
            "ARBEITSAUFTRAG_KOPF.ABGESCHLOSEN = 1)");
  const std::int32_t expected =
      count_of("ARBEITSAUFTRAG_KOPF WHERE PERSONAL_ID = 17 AND (MENGE > 100 OR ABGESCHLOSEN = 1)");
  EXPECT_GT(expected, 0);
  EXPECT_EQ(answer.at("count"), expected);
}

TEST_F(Program, RunsARelationThatOnlySelektionKnows) {
  const json answer = json_of({"run", "4PLN17", "101 > 5;108 = 'KI';"});
  const std::int32_t expected = count_of(
      "ARBEITSAUFTRAG_KOPF K INNER JOIN ARBEITSAUFTRAG_PLANN P ON "
      "P.ID_ARBEITSAUFTRAG_KOPF = K.ID WHERE K.PERSONAL_ID = 17 AND K.NUMMER > 5 AND P.HA "
      "= 'KI'");
  EXPECT_GT(expected, 0);
  EXPECT_EQ(answer.at("count"), expected);
}

TEST_F(Program, JoinsTheLabourTable) {
  const json answer = json_of({"run", "LEISTUNGS_BB", "5 > 8;"});
  EXPECT_EQ(answer.at("select"),
            "SELECT BB_LEISTUNGS_KOPF.NUMMER, BB_LEISTUNGS_KOPF.TAETIGKEIT, "
            "BB_LEISTUNGS_KOPF.DATUM, BB_LEISTUNGS_KOPF.STUNDEN FROM BB_LEISTUNGS_KOPF INNER JOIN "
            "#BB_LEISTUNGS_KOPF ON BB_LEISTUNGS_KOPF.ID = #BB_LEISTUNGS_KOPF.ID WHERE "
            "BB_LEISTUNGS_KOPF.ID_ACCESS_LEVELS IN (SELECT ID FROM ACCESS_LEVELS) AND "
            "(BB_LEISTUNGS_KOPF.STUNDEN > 8)");
  const std::int32_t all =
      count_of("BB_LEISTUNGS_KOPF WHERE ID_ACCESS_LEVELS IN (SELECT ID FROM ACCESS_LEVELS)");
  const std::int32_t expected = count_of(
      "BB_LEISTUNGS_KOPF WHERE ID_ACCESS_LEVELS IN (SELECT ID FROM ACCESS_LEVELS) AND "
      "STUNDEN > 8");
  EXPECT_GT(expected, 0);
  EXPECT_LT(expected, all);
  EXPECT_EQ(answer.at("count"), expected);
  EXPECT_EQ(answer.at("labour_rows"), all);
}

// --- Temporary tables --------------------------------------------------------------------------

TEST_F(Program, MaterialisesAText) {
  const ProgramResult result =
      on_database({"materialise", "ID", "SELECT ID FROM BB_T_OBJEKTE WHERE FLAECHE > 100"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out,
            "Table #ID, 3 rows\n"
            "\n"
            "Columns\n"
            "  ID (integer)\n"
            "\n"
            "Rows\n"
            "  ID\n"
            "  --\n"
            "   1\n"
            "   2\n"
            "   4\n");
}

TEST_F(Program, MaterialisesAFilterWithTheSelectListOfTheKind) {
  const std::vector<std::string> filter = {"--code", "BB_T_OBJEKTE", "--criteria", "4 > 100;"};
  const auto table_of = [&](const std::string& kind) {
    std::vector<std::string> arguments = {"materialise", kind};
    arguments.insert(arguments.end(), filter.begin(), filter.end());
    return json_of(std::move(arguments));
  };
  EXPECT_EQ(table_of("ID"),
            (json{{"kind", "ID"},
                  {"table", "#ID"},
                  {"count", 3},
                  {"columns", {{{"name", "ID"}, {"type", "integer"}, {"type_code", 3}}}},
                  {"rows", json::array({{1}, {2}, {4}})}}));
  for (const auto& [kind, table] : std::vector<std::pair<std::string, std::string>>{
           {"CHILD", "#CHILD"}, {"MAIN", "#MAIN"}, {"UE", "#MAIN"}, {"PLAN_JAHR", "#PLAN_JAHR"}}) {
    const json answer = table_of(kind);
    EXPECT_EQ(answer.at("table"), table);
    EXPECT_EQ(answer.at("count"), 3);
    EXPECT_EQ(answer.at("columns").size(), 8U) << kind;
  }
}

TEST_F(Program, MaterialisesPrices) {
  const json answer =
      json_of({"materialise", "PREIS_ANGEBOT", "--code", "HIZBB_SELEKTION_ANGEBOT"});
  EXPECT_EQ(answer.at("table"), "#PREIS");
  EXPECT_EQ(answer.at("columns"),
            (json{{{"name", "ID"}, {"type", "integer"}, {"type_code", 3}},
                  {{"name", "ROW"}, {"type", "integer"}, {"type_code", 3}},
                  {{"name", "PREIS"}, {"type", "number"}, {"type_code", 5}}}));
  EXPECT_EQ(answer.at("count"), json_of({"run", "HIZBB_SELEKTION_ANGEBOT", ""}).at("count"));
}

TEST_F(Program, ShowsTheBatchForACallerWithoutConnection) {
  EXPECT_EQ(run_program({"materialise", "LEISTUNGS_BB", "--batch", "FROM BB_LEISTUNGS_KOPF"}).out,
            "IF NOT (SELECT OBJECT_ID('tempdb..#BB_LEISTUNGS_KOPF')) IS NULL DROP TABLE "
            "#BB_LEISTUNGS_KOPF\r\n"
            "CREATE TABLE #BB_LEISTUNGS_KOPF (ID int)\r\n"
            "CREATE NONCLUSTERED INDEX IDX ON #BB_LEISTUNGS_KOPF (ID) ON [PRIMARY]\r\n"
            "INSERT INTO #BB_LEISTUNGS_KOPF (ID) SELECT BB_LEISTUNGS_KOPF.ID FROM "
            "BB_LEISTUNGS_KOPF GROUP BY BB_LEISTUNGS_KOPF.ID\n");
}

TEST_F(Program, NothingThatItRunsChangesTheData) {
  const ProgramResult result = on_database({"materialise", "ID", "SELECT 1\r\nDELETE FROM USERS"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(count_of("USERS"), 3);
}

// --- The sample database -----------------------------------------------------------------------

TEST_F(Program, NeverReplacesAFileUnasked) {
  write_text(file("mine.db"), "mine");
  const ProgramResult refused = run_program({"demo-db", file("mine.db")});
  EXPECT_EQ(refused.exit_code, 2);
  EXPECT_EQ(error_line(refused), "the file '" + file("mine.db") +
                                     "' exists: give another name, or --force to replace it");
  EXPECT_EQ(text_of(file("mine.db")), "mine");
}

TEST_F(Program, ReplacesAFileWhenForced) {
  write_text(file("forced.db"), "mine");
  const ProgramResult made = run_program({"demo-db", file("forced.db"), "--lots", "60", "--seed",
                                          "7", "--today", "2025-03-14", "--force"});
  EXPECT_EQ(made.exit_code, 0) << made.err;
  EXPECT_TRUE(text_of(file("forced.db")) == text_of(database()))
      << "equal seeds and days make equal databases";
}

TEST_F(Program, ReplacesAFileThatWasLeftHalfWritten) {
  const std::string path = changed_database("half-written.db", "DELETE FROM LOGS");
  ASSERT_NO_FATAL_FAILURE(test::break_off_writing(path));
  // A file that was being made then, too.
  std::filesystem::copy_file(path, path + ".part");
  std::filesystem::copy_file(path + "-journal", path + ".part-journal");
  const ProgramResult made = run_program(
      {"demo-db", path, "--lots", "60", "--seed", "7", "--today", "2025-03-14", "--force"});
  EXPECT_EQ(made.exit_code, 0) << made.err;
  for (const char* kind : {"-journal", "-wal", "-shm", ".part", ".part-journal"}) {
    EXPECT_FALSE(std::filesystem::exists(path + kind)) << kind;
  }
  const ProgramResult sound = run_program({"--db", path, "audit"});
  EXPECT_EQ(sound.exit_code, 0) << sound.out << sound.err;
  EXPECT_TRUE(text_of(path) == text_of(database())) << "equal to a new one after reading, too";
}

TEST_F(Program, LeavesNoHalfMadeFile) {
  write_text(file("kept.db"), "mine");
  const ProgramResult failed =
      run_program({"demo-db", file("kept.db"), "--force", "--today", "9999-12-31"});
  EXPECT_EQ(failed.exit_code, 1);
  EXPECT_EQ(text_of(file("kept.db")), "mine");
  EXPECT_FALSE(std::filesystem::exists(file("kept.db.part")));
}

// --- Errors ------------------------------------------------------------------------------------

struct Refusal {
  std::string name;
  std::string criteria;
  std::string line;
  int number;  // as --json reports it
};

void PrintTo(const Refusal& refusal, std::ostream* out) { *out << refusal.criteria; }

class RefusedFilter : public Program, public testing::WithParamInterface<Refusal> {};

TEST_P(RefusedFilter, IsOneLineAndExitCode1) {
  for (const std::string command : {"translate", "run"}) {
    const ProgramResult result = on_database({command, "FI_NUTZERRECHTE", GetParam().criteria});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_EQ(error_line(result), GetParam().line);
  }
}

TEST_P(RefusedFilter, IsADocumentForPrograms) {
  const json error = json_of({"translate", "FI_NUTZERRECHTE", GetParam().criteria}, 1).at("error");
  EXPECT_EQ(error.at("message"), GetParam().line);
  EXPECT_EQ(error.at("number"), GetParam().number);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Criteria, RefusedFilter, testing::Values(
    Refusal{"UnknownField", "1 = 'a';99 = 5;", "criterion 2 (99 = 5): the relation 'FI_NUTZERRECHTE' has no field 99: 'kestrova-sel fields FI_NUTZERRECHTE' lists the fields", 3265},
    Refusal{"HugeField", "99999 = 5;", "criterion 1 (99999 = 5): the relation 'FI_NUTZERRECHTE' has no field 99999: 'kestrova-sel fields FI_NUTZERRECHTE' lists the fields", 6},
    Refusal{"NoNumber", "abc = 5;", "criterion 1 (abc = 5): 'abc' is no field number: 'kestrova-sel fields FI_NUTZERRECHTE' lists the fields", 13},
    Refusal{"NoOperator", "1 'nord';", "criterion 1 (1 'nord'): it needs a field, an operator and a value, as in \"12 = 5\"", 13},
    Refusal{"EmptyRecord", "1 = 'nord';;", "criterion 2 (): it needs a field, an operator and a value, as in \"12 = 5\"", 13},
    Refusal{"BrokenQuote", "1 = 'nord;2 = 'x';", "criterion 1 (1 = 'nord): its quote is not closed; a value cannot hold \";\"", 3001},
    Refusal{"MissingParenthesis", "1 IN ('nord','süd';", "criterion 1 (1 IN ('nord','süd'): a parenthesis has no partner", 3001},
    Refusal{"WayOutOfTheBaseCondition", "4 = 1) OR (1 = 1;", "criterion 1 (4 = 1) OR (1 = 1): a parenthesis has no partner", 3001},
    Refusal{"OperatorFirst", "= 5;", "The criterion '= 5' begins with its operator.", 5},
    Refusal{"MissingValue", "1 = 'nord';2 = ;", "criterion 2 (2 = ): Incorrect syntax near ')' at position 117.", -2147217900},
    Refusal{"WrongType", "1 = 'nord';4 > 'viele';", "criterion 2 (4 > 'viele'): Conversion failed when converting the value 'viele' to data type int.", -2147217900}),
    [](const auto& test) { return test.param.name; });
// clang-format on

TEST_F(Program, UnknownRelationCodesAreRefused) {
  for (const std::string code : {"2ABR9", "beleg_bb", "XYZ", ""}) {
    for (const std::vector<std::string>& command : {std::vector<std::string>{"fields", code},
                                                    {"translate", code, "1 = 1;"},
                                                    {"run", code, "1 = 1;"},
                                                    {"relations", code}}) {
      const ProgramResult result = on_database(command);
      EXPECT_EQ(result.exit_code, 1);
      EXPECT_EQ(error_line(result), "the relation code '" + code +
                                        "' is not known: 'kestrova-sel relations' lists the codes");
    }
  }
}

TEST_F(Program, AWorkOrderFilterNeedsACriterion) {
  const ProgramResult result = on_database({"translate", "4ARB17", ""});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(error_line(result),
            "a filter of '4ARB17' needs a criterion, since only criteria name its tables");
}

TEST_F(Program, ColumnsOfTheUserAreNoFaultOfACriterion) {
  const ProgramResult result =
      on_database({"run", "FI_NUTZERRECHTE", "1 = 'nord';", "--columns", "BOGUS"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(error_line(result), "Invalid column name 'BOGUS'.");
}

TEST_F(Program, AMissingDatabaseIsRefusedAndNotMade) {
  const ProgramResult result = run_program({"--db", file("none.db"), "fields", "1VM"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(error_line(result), "there is no database file '" + file("none.db") +
                                    "': check --db, or make the sample database with "
                                    "'kestrova-sel demo-db FILE'");
  EXPECT_FALSE(std::filesystem::exists(file("none.db")));
}

TEST_F(Program, AFileThatIsNoDatabaseIsRefused) {
  write_text(file("letter.db"), "Sehr geehrte Damen und Herren,\n");
  const ProgramResult result = run_program({"--db", file("letter.db"), "fields", "1VM"});
  EXPECT_EQ(result.exit_code, 1);
  const std::string begin = "'" + file("letter.db") + "' is no database of the suite, check --db: ";
  EXPECT_EQ(error_line(result).substr(0, begin.size()), begin);
  EXPECT_EQ(text_of(file("letter.db")), "Sehr geehrte Damen und Herren,\n");
}

TEST_F(Program, ADatabaseWithoutTheSuitesTablesIsRefused) {
  open_sqlite(file("other.db"), {.create = true})->execute("CREATE TABLE T (ID int)");
  const ProgramResult result = run_program({"--db", file("other.db"), "fields", "1VM"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(error_line(result), "'" + file("other.db") +
                                    "' is no database of the suite, check --db: Invalid object "
                                    "name 'SUITE_TABLE_KEYS'.");
}

TEST_F(Program, AFileThatWasLeftHalfWrittenIsRead) {
  const std::string path = changed_database("broken-off.db", "UPDATE MODELS SET NAME = NAME");
  ASSERT_NO_FATAL_FAILURE(test::break_off_writing(path));
  const ProgramResult result = run_program({"--db", path, "models", "1VM"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, on_database({"models", "1VM"}).out);
}

TEST_F(Program, ALockedFileIsNotTakenForAnother) {
  const std::string path = changed_database("locked.db", "UPDATE MODELS SET NAME = NAME");
  sqlite3* writer = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &writer), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(writer, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  const ProgramResult result = run_program({"--db", path, "models", "1VM"});
  sqlite3_close(writer);
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(error_line(result),
            "'" + path + "' cannot be read now: The database is locked by another program.");
}

struct Misuse {
  std::string name;
  std::vector<std::string> arguments;
  std::string line;
};

void PrintTo(const Misuse& misuse, std::ostream* out) { *out << misuse.name; }

class WrongUsage : public Program, public testing::WithParamInterface<Misuse> {};

TEST_P(WrongUsage, IsOneLineAndExitCode2) {
  const ProgramResult result = run_program(GetParam().arguments);
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(error_line(result), GetParam().line);
}

TEST_P(WrongUsage, IsADocumentForPrograms) {
  std::vector<std::string> arguments = GetParam().arguments;
  arguments.insert(arguments.begin(), "--json");
  const ProgramResult result = run_program(arguments);
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(json::parse(result.out),
            (json{{"error",
                   {{"message", GetParam().line}, {"number", nullptr}, {"sqlstate", nullptr}}}}));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(CommandLines, WrongUsage, testing::Values(
    Misuse{"NoCommand", {}, "A subcommand is required: 'kestrova-sel --help' explains the usage"},
    Misuse{"NoCriteria", {"run", "1VM"}, "CRITERIA or --model is required: 'kestrova-sel run --help' explains the usage"},
    Misuse{"CriteriaAndModel", {"run", "1VM", "703 = 'FI';", "--model", "Fichte stark"}, "CRITERIA excludes --model: 'kestrova-sel run --help' explains the usage"},
    Misuse{"ModelAndMode", {"translate", "1VM", "--model", "Fichte stark", "--mode", "WAREN"}, "--model excludes --mode: 'kestrova-sel translate --help' explains the usage"},
    Misuse{"AuditWithoutDatabase", {"audit"}, "this needs a database: give one with --db FILE, or make the sample database with 'kestrova-sel demo-db FILE'"},
    Misuse{"NoDatabase", {"fields", "1VM"}, "this needs a database: give one with --db FILE, or make the sample database with 'kestrova-sel demo-db FILE'"},
    Misuse{"UnknownKindOfDatabase", {"--db", "oracle:forest", "fields", "1VM"}, "there is no kind of database called 'oracle': give --db the file of an embedded database or odbc:CONNECTION-STRING"},
    Misuse{"UnknownDateOrder", {"--date-order", "DYM", "relations"}, "--date-order: DYM not in {DMY,MDY,YMD,YDM}: 'kestrova-sel relations --help' explains the usage"},
    Misuse{"UnknownMode", {"run", "1VN", "221 = 'x';", "--mode", "warm"}, "--mode: warm not in {WAREN,4ARB}: 'kestrova-sel run --help' explains the usage"},
    Misuse{"UnknownKind", {"materialise", "id", "SELECT 1"}, "there is no kind 'id', nothing was done: the kinds are 'LEISTUNGS_BB', 'PREIS_ANGEBOT', 'PREIS_RECHNUNG', 'ID', 'HE 120', 'HE 210', 'CHILD', 'MAIN', 'UE', 'PLAN_JAHR'"},
    Misuse{"KindWithColumnsOfItsOwn", {"materialise", "HE 120", "--code", "1VM"}, "the kind 'HE 120' needs columns of its own: give the whole SELECT instead of --code"},
    Misuse{"NothingToMaterialise", {"materialise", "ID"}, "give the FROM/WHERE text, or a filter with --code and --criteria"},
    Misuse{"BatchOfAnotherKind", {"materialise", "ID", "SELECT 1", "--batch"}, "--batch shows the text of 'LEISTUNGS_BB' only"},
    Misuse{"NoDay", {"demo-db", "x.db", "--today", "2025-13-13"}, "'2025-13-13' is no date like 2025-03-14"}),
    [](const auto& test) { return test.param.name; });
// clang-format on

TEST_F(Program, AReaderThatLeavesEarlyIsNoFailure) {
  EXPECT_EQ(exit_code_with_closed_pipe({"relations"}), 0);
}

}  // namespace
}  // namespace kestrova::tool
