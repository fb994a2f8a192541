// The audit of all stored filters on the command line.
#include "tests/tools/program_fixture.h"

namespace kestrova::tool {
namespace {

class Audit : public Program {
 protected:
  static std::string model(const std::string& relation, const std::string& name,
                           const std::string& criteria) {
    return "INSERT INTO MODELS (MODEL, NAME, RELATION, STANDARD) VALUES (" + criteria + ",'" +
           name + "','" + relation + "',0)\r\n";
  }
};

TEST_F(Audit, FindsTheSampleDatabaseSound) {
  const std::int32_t stored = count_of("MODELS WHERE RELATION NOT IN ('USERFIELDS','BBFIZ')") +
                              count_of("VERTRAG_PREISE WHERE SELEKTION_VALUE IS NOT NULL") +
                              count_of("VERTRAG_MENGEN WHERE SELEKTION_VALUE IS NOT NULL");
  const std::string number = std::to_string(stored);
  const ProgramResult result = on_database({"audit", "--progress"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, number + " checked, " + number + " sound, 0 broken\n");
  EXPECT_EQ(json_of({"audit"}), (json{{"faults", json::array()},
                                      {"checked", stored},
                                      {"sound", stored},
                                      {"broken", 0},
                                      {"reasons", json::object()}}));
}

TEST_F(Audit, NamesEveryKindOfBrokenFilter) {
  std::string batch =
      "DELETE FROM MODELS\r\nDELETE FROM VERTRAG_PREISE\r\nDELETE FROM "
      "VERTRAG_MENGEN\r\nINSERT INTO MODELS (MODEL, NAME, RELATION, STANDARD) "
      "VALUES ('4 > 5;','Heil','FI_NUTZERRECHTE',0)\r\n";
  const auto add = [&](const std::string& name, const std::string& criteria) {
    batch += model("FI_NUTZERRECHTE", name, criteria);
  };
  add("Feld fremd", "'1 = ''a'';99 = 5;'");
  add("Halb", "'1 = ''a'';4 > 5'");
  add("Ohne Operator", "'1 ''a'';'");
  add("Leer", "'1 = ''a'';;'");
  add("Oder vorn", "'=== ODER ===;4 > 5;'");
  add("Oder hinten", "'4 > 5;=== ODER ===;'");
  add("Oder doppelt", "'4 > 5;=== ODER ===;=== ODER ===;4 < 1;'");
  add("Kein Wert", "'4 > ''viele'';'");
  add("Kein Listenwert", "'4 IN (1,zwei);'");
  add("Offen", "'1 = ''a;4 > 5;'");
  add("Klammer", "'4 = 1) OR (1 = 1;'");
  add("Ohne Text", "NULL");
  batch += model("XYZ", "Fremd", "'1 = 1;'");
  batch += model("USERFIELDS", "Liste", "'27,28'");
  batch += model("4ARB", "Ohne Tabelle", "NULL");
  batch += model("2VABR", "Heil", "'7 > 1;'");
  batch += model("4PAG", "Heil", "'1 = Null;'");
  batch += model("4PLN", "Heil", "'101 > 5;'");
  batch +=
      "INSERT INTO VERTRAG_PREISE (ID, ID_VERTRAEGE, PREIS, SELEKTION_VALUE) VALUES "
      "(17,1,0,'703 = ''FI''')\r\n"
      "INSERT INTO VERTRAG_PREISE (ID, ID_VERTRAEGE, PREIS, SELEKTION_VALUE) VALUES "
      "(18,1,0,NULL)\r\n"
      "INSERT INTO VERTRAG_MENGEN (ID, ID_VERTRAEGE, MENGE, SELEKTION_VALUE) VALUES "
      "(3,1,0,'703 = ''FI'';')";
  const std::string path = changed_database("broken.db", batch);
  const ProgramResult result = run_program({"--db", path, "audit"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "");
  // clang-format off
  EXPECT_EQ(result.out,
      "MODELS 64 (FI_NUTZERRECHTE) 'Feld fremd': unknown field\n"
      "  criterion 2 (99 = 5): the relation 'FI_NUTZERRECHTE' has no field 99: 'kestrova-sel fields FI_NUTZERRECHTE' lists the fields\n"
      "MODELS 65 (FI_NUTZERRECHTE) 'Halb': half a record\n"
      "  criterion 2 (4 > 5): the \";\" at its end is missing\n"
      "MODELS 66 (FI_NUTZERRECHTE) 'Ohne Operator': half a record\n"
      "  criterion 1 (1 'a'): it needs a field, an operator and a value, as in \"12 = 5\"\n"
      "MODELS 67 (FI_NUTZERRECHTE) 'Leer': empty record\n"
      "  criterion 2 (): it is empty\n"
      "MODELS 68 (FI_NUTZERRECHTE) 'Oder vorn': OR line without criteria on both sides\n"
      "  criterion 1 (=== ODER ===): no criterion stands before it\n"
      "MODELS 69 (FI_NUTZERRECHTE) 'Oder hinten': OR line without criteria on both sides\n"
      "  criterion 2 (=== ODER ===): no criterion stands behind it\n"
      "MODELS 70 (FI_NUTZERRECHTE) 'Oder doppelt': OR line without criteria on both sides\n"
      "  criterion 3 (=== ODER ===): no criterion stands before it\n"
      "MODELS 71 (FI_NUTZERRECHTE) 'Kein Wert': value that is no literal of the field's type\n"
      "  criterion 1 (4 > 'viele'): ''viele'' is no literal of the type integer\n"
      "MODELS 72 (FI_NUTZERRECHTE) 'Kein Listenwert': value that is no literal of the field's type\n"
      "  criterion 1 (4 IN (1,zwei)): 'zwei' is no literal of the type integer\n"
      "MODELS 73 (FI_NUTZERRECHTE) 'Offen': quote that is not closed\n"
      "  criterion 1 (1 = 'a): its quote is not closed; a value cannot hold \";\"\n"
      "MODELS 74 (FI_NUTZERRECHTE) 'Klammer': stray parenthesis or comment\n"
      "  criterion 1 (4 = 1) OR (1 = 1): a parenthesis has no partner\n"
      "MODELS 76 (XYZ) 'Fremd': unknown relation\n"
      "  the relation code 'XYZ' is not known\n"
      "MODELS 78 (4ARB) 'Ohne Tabelle': refused by the server\n"
      "  a filter of '4ARB' needs a criterion, since only criteria name its tables\n"
      "VERTRAG_PREISE 17 (VERTP17): half a record\n"
      "  criterion 1 (703 = 'FI'): the \";\" at its end is missing\n"
      "\n"
      "20 checked, 6 sound, 14 broken\n"
      "  1 unknown relation\n"
      "  1 unknown field\n"
      "  3 half a record\n"
      "  1 empty record\n"
      "  3 OR line without criteria on both sides\n"
      "  2 value that is no literal of the field's type\n"
      "  1 quote that is not closed\n"
      "  1 stray parenthesis or comment\n"
      "  1 refused by the server\n");
  // clang-format on
}

// Filters that the server runs, and that select something else than they say.
TEST_F(Audit, NamesWhatTheLibraryRefusesAndWhatIsNoLiteral) {
  std::string batch =
      "DELETE FROM MODELS\r\nDELETE FROM VERTRAG_PREISE\r\nDELETE FROM VERTRAG_MENGEN";
  batch += "\r\n" + model("FI_NUTZERRECHTE", "Klammern", "'1 IN (''Eder (Tölz)'',''Grünwald'');'");
  batch += model("FI_NUTZERRECHTE", "Reihenfolge", "'1 IN (''Grünwald'',''Eder (Tölz)'');'");
  batch += model("FI_NUTZERRECHTE", "Oder", "'1 = ''FI'' OR ''1''=''1'';'");
  batch += model("FI_NUTZERRECHTE", "Zeichen", "'1 = ''a\x1B[31m'';'");
  const std::string path = changed_database("refused.db", batch);
  const ProgramResult result = run_program({"--db", path, "audit", "--json"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "");
  const json answer = json::parse(result.out);
  const std::vector<std::pair<std::string, std::string>> expected = {
      {"Klammern", "value that is no literal of the field's type"},
      {"Oder", "value that is no literal of the field's type"},
      {"Zeichen", "character that cannot be printed"}};
  ASSERT_EQ(answer.at("faults").size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(answer.at("faults")[i].at("model"), expected[i].first);
    EXPECT_EQ(answer.at("faults")[i].at("reason"), expected[i].second);
  }
}

TEST_F(Audit, TellsWhatTheServerSays) {
  const std::string path = changed_database(
      "dropped.db",
      "UPDATE MODELS SET MODEL = NULL WHERE RELATION <> '1VVM'\r\nDELETE FROM MODELS "
      "WHERE RELATION = '4ARB'\r\nDROP TABLE VERTRAEGE");
  const ProgramResult result = run_program({"--db", path, "audit", "--json"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "");
  const json answer = json::parse(result.out);
  EXPECT_EQ(answer.at("broken"), 10);  // the models of 1VVM and 2VABR
  EXPECT_EQ(answer.at("reasons"), (json{{"refused by the server", 10}}));
  EXPECT_EQ(answer.at("faults")[0], (json{{"table", "MODELS"},
                                          {"id", 16},
                                          {"model", "Laufende Verträge"},
                                          {"relation", "1VVM"},
                                          {"reason", "refused by the server"},
                                          {"message", "Invalid object name 'VERTRAEGE'."}}));
}

TEST_F(Audit, NeedsTheTablesOfTheContracts) {
  const std::string path = changed_database("no_contracts.db", "DROP TABLE VERTRAG_MENGEN");
  const ProgramResult result = run_program({"--db", path, "audit"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(error_line(result), "Invalid object name 'VERTRAG_MENGEN'.");
}

}  // namespace
}  // namespace kestrova::tool
