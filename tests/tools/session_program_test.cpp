// Sessions driven by scripts, on the sample database.
#include <chrono>
#include <thread>

#include "tests/tools/program_fixture.h"

namespace kestrova::tool {
namespace {

// Each test has a database of its own, since sessions write.
class SessionProgram : public Program {
 protected:
  void SetUp() override {
    path_ =
        file(std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + ".db");
    std::filesystem::copy_file(database(), path_,
                               std::filesystem::copy_options::overwrite_existing);
  }

  // A session on the relation that is given the script; options follow the relation.
  ProgramResult session(std::vector<std::string> arguments, const std::string& script) const {
    arguments.insert(arguments.begin(), {"--db", path_, "session"});
    return run_program(arguments, script);
  }

  // What the script of a session that is cancelled at its end shows.
  std::string shown(std::vector<std::string> arguments, const std::string& script) const {
    const ProgramResult result = session(std::move(arguments), script);
    EXPECT_EQ(result.exit_code, 4) << result.err;
    EXPECT_EQ(result.err, "");
    const std::string end = "Not confirmed.\n";
    EXPECT_TRUE(result.out.ends_with(end)) << result.out;
    return result.out.substr(0, result.out.size() - std::min(end.size(), result.out.size()));
  }

  // The document of a session that is confirmed.
  json confirmed(std::vector<std::string> arguments, const std::string& script) const {
    arguments.emplace_back("--json");
    const ProgramResult result = session(std::move(arguments), script);
    EXPECT_EQ(result.exit_code, 0) << result.err << result.out;
    return json::parse(result.out);
  }

  // The error line of a script that ends with this exit code and shows nothing.
  std::string refusal(std::vector<std::string> arguments, const std::string& script,
                      int exit_code = 1) const {
    const ProgramResult result = session(std::move(arguments), script);
    EXPECT_EQ(result.exit_code, exit_code);
    EXPECT_EQ(result.out, "");
    return error_line(result);
  }

  // The rows of a query written by hand, columns joined by "|".
  std::string rows(const std::string& sql) const {
    std::string text;
    const auto connection = open_sqlite(path_, {.read_only = true});
    const auto found = connection->open(sql, CursorType::kForwardOnly, LockType::kReadOnly);
    for (; !found->eof(); found->move_next()) {
      for (std::size_t i = 0; i < found->column_count(); ++i) {
        text += (i == 0 ? "" : "|") + found->value(i).text_or_empty();
      }
      text += '\n';
    }
    return text;
  }

  std::string model(const std::string& name) const {
    return rows(
        "SELECT MODEL, STANDARD, NICHT_ANDERBAR, ID_ACCESS_LEVELS, ID_USER FROM MODELS "
        "WHERE RELATION = '1VM' AND NAME = '" +
        name + "'");
  }

  std::string path_;
};

constexpr const char* kScenario =
    "# spruce of 40 cm and more, or beech and oak\n"
    "new\n"
    "field Holzart\n"
    "value FI\n"
    "insert\n"
    "field #711\n"
    "op >=\n"
    "value 40\n"
    "insert\n"
    "or\n"
    "field holzart\n"
    "op in\n"
    "value BU\n"
    "plus\n"
    "value EI\n"
    "plus\n"
    "insert\n";

constexpr const char* kStoredScenario = "703 = 'FI';711 >= 40;=== ODER ===;703 IN ('BU', 'EI') ;";

// --- From fields to rows -------------------------------------------------------------------------

TEST_F(SessionProgram, ComposesGroupsAndConfirmsThem) {
  const ProgramResult result =
      session({"1VM"}, std::string(kScenario) + "list\ncriteria\nok\ncount\n");
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "  1    Holzart = 'FI'\n"
            "  2    Durchmesser (cm) >= 40\n"
            "  3  === ODER ===\n"
            "> 4    Holzart IN ('BU', 'EI')\n"
            "703 = 'FI';711 >= 40;=== ODER ===;703 IN ('BU', 'EI') ;\n"
            "Confirmed.\n"
            "FROM/WHERE\n"
            "  FROM LOGS\n"
            "    LEFT JOIN LISTENKOPF ON LISTENKOPF.ID = LOGS.ID_LISTENKOPF\n"
            "    LEFT JOIN LOGS_RECH ON LOGS_RECH.ID_LOGS = LOGS.ID\n"
            "    LEFT JOIN FHP_IMPORT ON FHP_IMPORT.ID = LOGS.ID_FHP_IMPORT\n"
            "    LEFT JOIN PERSONAL ON PERSONAL.ID = LOGS.ID_KUNDE\n"
            "    LEFT JOIN HOLZART ON HOLZART.ID = LOGS.ID_HOLZART\n"
            "  WHERE NOT (LOGS_RECH.R_NAME IS NULL)\n"
            "    AND (\n"
            "      HOLZART.HA = 'FI'\n"
            "      AND LOGS.DURCHMESSER >= 40\n"
            "      OR HOLZART.HA IN ('BU', 'EI')\n"
            "    )\n"
            "Formula\n"
            "  Holzart = 'FI' AND  AND Durchmesser (cm) >= 40 OR Holzart IN ('BU', 'EI')\n"
            "Criteria\n"
            "  703 = 'FI';711 >= 40;=== ODER ===;703 IN ('BU', 'EI') ;\n" +
                std::to_string(json_of({"run", "1VM", kStoredScenario}).at("count").get<int>()) +
                " rows\n");
}

TEST_F(SessionProgram, AnswersProgramsWithOneDocument) {
  const ProgramResult result =
      session({"1VM", "--json"}, std::string(kScenario) + "criteria\nok\n");
  EXPECT_EQ(result.exit_code, 0);
  const json answer = json::parse(result.out);
  const json expected = {
      {"relation", "1VM"},
      {"confirmed", true},
      {"from_where", json_of({"translate", "1VM", kStoredScenario}).at("from_where")},
      {"formula", "Holzart = 'FI' AND  AND Durchmesser (cm) >= 40 OR Holzart IN ('BU', 'EI')"},
      {"criteria", kStoredScenario}};
  EXPECT_EQ(answer, expected);
  // What the commands show goes to the error stream.
  EXPECT_EQ(result.err.substr(0, result.err.find('\n')), kStoredScenario);
}

TEST_F(SessionProgram, TypesValuesAsAUserDoes) {
  EXPECT_EQ(shown({"FI_NUTZERRECHTE"},
                  "new\n"
                  "field Letzte Anmeldung\n"
                  "op >=\n"
                  "value 1.3.2025\n"
                  "insert\n"
                  "field Stundensatz\n"
                  "value 20,5\n"
                  "formula\n"
                  "insert\n"
                  "field Name\n"
                  "op LIKE\n"
                  "value \"M%  x\"\n"
                  "insert\n"
                  "field Zugriffsebene\n"
                  "value Null\n"
                  "insert\n"
                  "list\n"
                  "criteria\n"),
            "Stundensatz = 20.5\n"
            "  1    Letzte Anmeldung >= '1.3.2025'\n"
            "  2    Stundensatz = 20.5\n"
            "  3    Name LIKE 'M%  x'\n"
            "> 4    Zugriffsebene = Null\n"
            "3 >= '01.03.2025';5 = 20.5;2 LIKE 'M%  x';7 = Null;\n");
}

TEST_F(SessionProgram, ListsWhatTheEditorOffers) {
  EXPECT_EQ(shown({"FI_NUTZERRECHTE"},
                  "new\nfield aktiv\nfields an\nops\nvalues\nfield Zugriffsebene\nvalues FORST\n"),
            "  #1  Anmeldename\n"
            "  #3  Letzte Anmeldung\n"
            "  #4  Anmeldungen\n"
            "> =\n  >\n  <\n  >=\n  <=\n  <>\n  IN\n"
            "  0\n  1\n"
            "  Forstbetrieb Nord\n"
            "  Forstbetrieb Süd\n");
}

TEST_F(SessionProgram, BuildsListsOfValues) {
  EXPECT_EQ(shown({"1VM"},
                  "new\nfield Holzart\nop IN\nvalue FI\nplus\nvalue KI\nplus\nformula\n"
                  "value FI\nminus\nformula\ninsert\ncriteria\n"),
            "Holzart IN ('FI', 'KI')\n"
            "Holzart IN ('KI')\n"
            "703 IN ('KI') ;\n");
}

TEST_F(SessionProgram, FillsTheListFromACriteriaString) {
  EXPECT_EQ(shown({"1VM"}, std::string("fill ") + kStoredScenario + "\nlist\ncriteria\n"),
            "> 1    Holzart = 'FI'\n"
            "  2    Durchmesser (cm) >= 40\n"
            "  3  === ODER ===\n"
            "  4    Holzart IN ('BU', 'EI') \n"
            "703 = 'FI';711 >= 40;=== ODER ===;703 IN ('BU', 'EI') ;\n");
}

// --- Lines ---------------------------------------------------------------------------------------

TEST_F(SessionProgram, MovesAndDeletesLines) {
  EXPECT_EQ(shown({"1VM"},
                  "fill 711 = 1;711 = 2;711 = 3;711 = 4;\n"
                  "move 1 3\nlist\n"
                  "up\nlist\n"
                  "select 4\nup\ndown\nprev\nfirst\nnext\nlast\nlist\n"
                  "delete\nselect 1\ndelete\nlist\n"),
            "  1    Durchmesser (cm) = 2\n"
            "  2    Durchmesser (cm) = 3\n"
            "> 3    Durchmesser (cm) = 1\n"
            "  4    Durchmesser (cm) = 4\n"
            "  1    Durchmesser (cm) = 2\n"
            "> 2    Durchmesser (cm) = 1\n"
            "  3    Durchmesser (cm) = 3\n"
            "  4    Durchmesser (cm) = 4\n"
            "  1    Durchmesser (cm) = 2\n"
            "  2    Durchmesser (cm) = 1\n"
            "  3    Durchmesser (cm) = 3\n"
            "> 4    Durchmesser (cm) = 4\n"
            "> 1    Durchmesser (cm) = 1\n"
            "  2    Durchmesser (cm) = 3\n");
}

TEST_F(SessionProgram, ReplacesALine) {
  EXPECT_EQ(shown({"1VM"}, "fill 711 = 1;711 = 2;\nselect 2\nop >\nvalue 50\nreplace\ncriteria\n"),
            "711 = 1;711 > 50;\n");
}

// --- Which relations bring their own list --------------------------------------------------------

TEST_F(SessionProgram, OfNmlStartsFromTheSubset) {
  EXPECT_EQ(confirmed({"NML", "--subset", "703 = 'FI';=== ODER ===;703 = 'KI';"},
                      "last\nfield Durchmesser (cm)\nop >\nvalue 30\ninsert\nok\n")
                .at("criteria"),
            "703 = 'FI';=== ODER ===;703 = 'KI';711 > 30;");
}

TEST_F(SessionProgram, OfNmlGoesOnWithWhatWasConfirmed) {
  const json answer = confirmed({"NML", "--subset", "703 = 'FI';"},
                                "value KI\nreplace\nok\nedit\nor\nvalue x\n"
                                "field Holzart\nvalue TA\ninsert\nok\n");
  EXPECT_EQ(answer.at("criteria"), "703 = 'KI';=== ODER ===;703 = 'TA';");
}

TEST_F(SessionProgram, RefusesASubsetThatWouldBeLeftOut) {
  EXPECT_EQ(refusal({"1VM", "--subset", "703 = 'FI';"}, "ok\n", 2),
            "--subset is for the relation NML only: the command 'fill' takes criteria for '1VM'");
  EXPECT_EQ(refusal({"NML", "--subset", "703 = 'FI'"}, "ok\n"),
            "criterion 1 (703 = 'FI'): the \";\" at its end is missing");
}

TEST_F(SessionProgram, OfAContractStoresItsSelection) {
  const std::string stored = "SELECT SELEKTION_VALUE FROM VERTRAG_PREISE WHERE ID = 12";
  EXPECT_EQ(rows(stored), "703 = 'FI';\n");
  const json answer =
      confirmed({"VERTP12"}, "last\nfield Durchmesser (cm)\nop >=\nvalue 35\ninsert\nok\n");
  EXPECT_EQ(answer.at("criteria"), "703 = 'FI';711 >= 35;");
  EXPECT_EQ(rows(stored), "703 = 'FI';711 >= 35;\n");
  EXPECT_EQ(shown({"VERTP12"}, "list\n"),
            "> 1    Holzart = 'FI'\n"
            "  2    Durchmesser (cm) >= 35\n");
}

TEST_F(SessionProgram, OfAContractThatIsCancelledStoresNothing) {
  EXPECT_EQ(shown({"VERTP12"}, "new\ncancel\nok\n"), "");
  EXPECT_EQ(rows("SELECT SELEKTION_VALUE FROM VERTRAG_PREISE WHERE ID = 12"), "703 = 'FI';\n");
}

// --- Models --------------------------------------------------------------------------------------

TEST_F(SessionProgram, ListsAndLoadsModels) {
  EXPECT_EQ(shown({"1VM", "--user", "1"},
                  "models\nlist\nmodel Nur Nord\nlist\nload\nlist\nload #3\nmodels\nlist\n"),
            "  #3  Buche oder Eiche\n"
            "> #1  Fichte stark\n"
            "  #5  Nur Nord\n"
            "  #4  Ohne Abfuhr\n"
            "  #2  Verkauft seit 90 Tagen\n"
            "Standard model: Fichte stark\n"
            "Fichte stark: standard on, lock off, level off\n"
            "> 1    Holzart = 'FI'\n"
            "  2    Durchmesser (cm) >= 40\n"
            // Chosen, but not loaded
            "> 1    Holzart = 'FI'\n"
            "  2    Durchmesser (cm) >= 40\n"
            "> 1    Revier LIKE 'A%'\n"
            "> #3  Buche oder Eiche\n"
            "  #1  Fichte stark\n"
            "  #5  Nur Nord\n"
            "  #4  Ohne Abfuhr\n"
            "  #2  Verkauft seit 90 Tagen\n"
            "Standard model: Fichte stark\n"
            "Buche oder Eiche: standard off, lock on, level off\n"
            "> 1    Holzart = 'BU'\n"
            "  2  === ODER ===\n"
            "  3    Holzart = 'EI'\n");
}

TEST_F(SessionProgram, SavesWhenAnotherProgramHasWritten) {
  const auto other = open_sqlite(path_);
  other->execute("BEGIN TRAN UPDATE USERS SET ANMELDUNGEN = 99");
  std::thread end([&] {
    std::this_thread::sleep_for(std::chrono::seconds(2));
    other->execute("COMMIT");
  });
  const std::string text = shown({"1VM", "--user", "2"}, "fill 703 = 'KI';\nsave as Kiefer\n");
  end.join();
  EXPECT_EQ(text, "Saved. Selektion: Kiefer\n");
  EXPECT_EQ(model("Kiefer"), "703 = 'KI';|0|1||2\n");
}

TEST_F(SessionProgram, SaysThatAnotherProgramKeepsItFromSaving) {
  const auto other = open_sqlite(path_);
  other->execute("BEGIN TRAN UPDATE USERS SET ANMELDUNGEN = 99");
  const ProgramResult result =
      session({"1VM", "--user", "2"}, "fill 703 = 'KI';\nsave as Kiefer\n");
  other->execute("ROLLBACK");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(error_line(result), "line 2: The database is locked by another program.");
  EXPECT_EQ(model("Kiefer"), "");
}

TEST_F(SessionProgram, SavesMarksAndDeletesModels) {
  const std::vector<std::string> arguments = {"1VM", "--user", "2"};
  EXPECT_EQ(shown(arguments, "fill 703 = 'KI';\nsave as Kiefer\n"), "Saved. Selektion: Kiefer\n");
  const std::string as_saved = model("Kiefer");
  EXPECT_EQ(as_saved, "703 = 'KI';|0|1||2\n");

  EXPECT_EQ(shown(arguments, "load Kiefer\nlock off\nstandard on\n"), "");
  EXPECT_EQ(model("Kiefer"), "703 = 'KI';|1|0||2\n");
  EXPECT_EQ(model("Fichte stark"), "703 = 'FI';711 >= 40;|0|||1\n");

  EXPECT_EQ(shown(arguments, "load Kiefer\nlevel on\nfill 703 = 'TA';\nsave\n"),
            "Saved. Selektion: Kiefer\n");
  EXPECT_EQ(model("Kiefer"), "703 = 'TA';|0|0|1|2\n");

  EXPECT_EQ(shown(arguments, "model Kiefer\ndelete-model\n"), "");
  EXPECT_EQ(model("Kiefer"), "");
}

TEST_F(SessionProgram, AsksBeforeAModelIsReplaced) {
  const std::string question =
      "Das Modell 'Ohne Abfuhr' existiert bereits. Soll es überschrieben werden? (yes/no) ";
  const std::string before = model("Ohne Abfuhr");
  EXPECT_EQ(shown({"1VM"}, "fill 711 = 5;\nsave as Ohne Abfuhr\nno\n"),
            question + "no\nNot saved.\n");
  EXPECT_EQ(model("Ohne Abfuhr"), before);
  EXPECT_EQ(shown({"1VM"}, "fill 711 = 5;\nsave as Ohne Abfuhr\nyes\n"),
            question + "yes\nSaved. Selektion: Ohne Abfuhr\n");
  EXPECT_EQ(model("Ohne Abfuhr"), "711 = 5;|0|||1\n");
}

TEST_F(SessionProgram, TakesNoCommandForAnAnswer) {
  const std::string before = model("Ohne Abfuhr");
  const std::string question =
      "Das Modell 'Ohne Abfuhr' existiert bereits. Soll es überschrieben werden? (yes/no) ";
  const ProgramResult answered = session({"1VM"}, "new\nsave as Ohne Abfuhr\nok\n");
  EXPECT_EQ(answered.exit_code, 2);
  EXPECT_EQ(answered.out, question + "ok\n");
  EXPECT_EQ(error_line(answered), "line 3: 'ok' does not answer the question: 'yes' or 'no' does");
  EXPECT_EQ(refusal({"1VM"}, "new\nsave as Ohne Abfuhr\n", 2),
            "line 2: the input ends before the answer to \"" + question + "\"");
  EXPECT_EQ(model("Ohne Abfuhr"), before);
}

TEST_F(SessionProgram, AsksForTheNameOfAModel) {
  EXPECT_EQ(shown({"1VM"}, "fill 711 = 5;\nsave as\n  Dünn  \nsave as\n\n"),
            "Name des Modells:   Dünn  \nSaved. Selektion: Dünn\n"
            "Name des Modells: \nNot saved.\n");
  EXPECT_EQ(model("Dünn"), "711 = 5;|0|1||0\n");
  const std::string name(50, 'x');
  EXPECT_EQ(shown({"1VM"}, "save as " + name + "\n"),
            "Saved. Selektion: " + name.substr(0, 40) + "\n");
}

TEST_F(SessionProgram, RefusesANameWithAnApostrophe) {
  EXPECT_EQ(refusal({"1VM"}, "save as O'Brien\n"),
            "line 1: The name of a model cannot hold an apostrophe or a control character.");
}

// --- How a session ends --------------------------------------------------------------------------

TEST_F(SessionProgram, ThatIsNotConfirmedSaysSo) {
  for (const std::string script : {"", "list\n", "cancel\n", "quit\n", "new\nquit\nok\n"}) {
    const ProgramResult result = session({"FI_NUTZERRECHTE"}, script + "# end\n");
    EXPECT_EQ(result.exit_code, 4) << script;
    EXPECT_EQ(result.err, "") << script;
    EXPECT_TRUE(result.out.ends_with("Not confirmed.\n")) << script;
  }
  const ProgramResult result = session({"1VM", "--json"}, "cancel\n");
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_EQ(json::parse(result.out), (json{{"relation", "1VM"}, {"confirmed", false}}));
}

TEST_F(SessionProgram, CountsOnlyTheLastEnd) {
  const ProgramResult result = session({"1VM"}, "fill 711 > 400;\nok\nquit\nlist\n");
  EXPECT_EQ(result.exit_code, 0) << result.err;
  const ProgramResult cancelled = session({"1VM"}, "fill 711 > 400;\nok\nedit\n");
  EXPECT_EQ(cancelled.exit_code, 4);
  EXPECT_EQ(cancelled.out, result.out + "Not confirmed.\n");
}

TEST_F(SessionProgram, ShowsTheResultsAgain) {
  const std::string once = session({"1VM"}, "fill 711 > 400;\nok\n").out;
  const std::string results = once.substr(std::string("Confirmed.\n").size());
  EXPECT_EQ(session({"1VM"}, "fill 711 > 400;\nok\nsql\ncount\n").out, once + results + "0 rows\n");
}

TEST_F(SessionProgram, ConfirmsAnEmptyList) {
  const ProgramResult result = session({"1VM"}, "new\nlist\nok\n");
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "The list is empty.\nConfirmed.\nNo criteria: the text is empty.\n");
  EXPECT_EQ(confirmed({"1VM"}, "new\nok\n").at("from_where"), "");
}

TEST_F(SessionProgram, CountsForARelationThatLeavesTheWordFromToItsCaller) {
  const ProgramResult result = session({"4ARB17"}, "fill 301 > 0;\nok\ncount\n");
  EXPECT_EQ(result.exit_code, 0) << result.err;
  const int count = count_of("ARBEITSAUFTRAG_KOPF WHERE PERSONAL_ID = 17 AND NUMMER > 0");
  EXPECT_GT(count, 1);
  EXPECT_TRUE(result.out.ends_with("\n" + std::to_string(count) + " rows\n")) << result.out;
}

// --- Read-only -----------------------------------------------------------------------------------

TEST_F(SessionProgram, ThatIsReadOnlyShowsAndChangesNothing) {
  const std::vector<std::string> arguments = {"1VM", "--read-only", "--user", "1"};
  EXPECT_EQ(shown(arguments, "list\ncriteria\n"),
            "> 1    Holzart = 'FI'\n"
            "  2    Durchmesser (cm) >= 40\n"
            "703 = 'FI';711 >= 40;\n");
  struct Refused {
    const char* command;
    const char* control;
  };
  for (const Refused& row : {Refused{"ok", "btnOk"},
                             {"new", "btnNew"},
                             {"fill 711 = 1;", "btnNew"},
                             {"insert", "btnInsert"},
                             {"delete", "btnDelete"},
                             {"or", "btnOr"},
                             {"up", "cmdUp"},
                             {"down", "cmdDown"},
                             {"move 1 2", "btnReplace"},
                             {"field Holzart", "cboField"},
                             {"value FI", "cboValue"},
                             {"load #3", "Model"},
                             {"save", "btnSaveModelle"},
                             {"save as X", "btnSaveModelleAs"},
                             {"delete-model", "btnDeleteModelle"},
                             {"lock on", "Check1"},
                             {"standard on", "chkStandard"},
                             {"level on", "chkAL"}}) {
    EXPECT_EQ(refusal(arguments, std::string(row.command) + "\n"),
              "line 1: not possible now: " + std::string(row.control) + " is disabled");
  }
}

// --- Errors --------------------------------------------------------------------------------------

struct BadScript {
  const char* title;
  std::string script;
  int exit_code;
  std::string error;
};

void PrintTo(const BadScript& row, std::ostream* out) { *out << row.title; }

class BadScripts : public SessionProgram, public testing::WithParamInterface<BadScript> {
 protected:
  void SetUp() override { path_ = database(); }
};

TEST_P(BadScripts, EndAtTheFirstErrorWithItsLine) {
  EXPECT_EQ(refusal({"1VM"}, GetParam().script + "\nok\n", GetParam().exit_code), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, BadScripts,
    testing::Values(
        BadScript{"UnknownCommand", "new\n\ninsrt", 2,
                  "line 3: there is no command 'insrt': 'help' lists the commands"},
        BadScript{"NeedsAnArgument", "field", 2, "line 1: 'field' needs NAME|#ID"},
        BadScript{"TakesNoArgument", "ok now", 2, "line 1: 'ok' takes nothing behind it"},
        BadScript{"OpenQuote", "value \"FI", 2, "line 1: the closing quote is missing: \"FI"},
        BadScript{"UnknownField", "field Baumart", 1, "line 1: there is no field 'Baumart'"},
        BadScript{"UnknownOperator", "op ==", 1, "line 1: there is no operator '=='"},
        BadScript{"UnknownModel", "load X", 1, "line 1: there is no model 'X'"},
        BadScript{"NoNumber", "select x", 2, "line 1: 'x' is no number"},
        BadScript{"NoSuchLine", "select 9", 1, "line 1: there is no line 9"},
        BadScript{"NoLineToMoveTo", "move 1 9", 1, "line 1: there is no line 9"},
        BadScript{"NoSwitch", "lock maybe", 2, "line 1: 'maybe' is neither 'on' nor 'off'"},
        BadScript{"SaveWithoutAs", "save X", 2,
                  "line 1: 'save' takes nothing behind it but 'as' and a name"},
        BadScript{"NoValue", "new\nfield Holzart\ninsert", 1,
                  "line 3: the criterion is not complete: Holzart = "},
        BadScript{"EmptyValueList", "new\nfield Holzart\nop IN\nvalue FI\ninsert", 1,
                  "line 5: the criterion is not complete: Holzart IN ()"},
        BadScript{"NoDate", "new\nfield Verkaufsdatum\nvalue morgen\ninsert", 1,
                  "line 4: the criterion is not complete: Verkaufsdatum = 'morgen'"},
        BadScript{"NoDigit", "new\nfield Stückzahl\nvalue 4x", 1,
                  "line 3: the field does not take 'x' in its values"},
        BadScript{"UmlautInANumber", "new\nfield Stückzahl\nvalue Ä", 1,
                  "line 3: the field does not take 'Ä' in its values"},
        BadScript{"PlusWithoutIn", "new\nfield Holzart\nop =\nplus", 1,
                  "line 4: not possible now: btnPlus is disabled"},
        BadScript{"PlusWithoutValue", "new\nfield Holzart\nop IN\nplus", 1,
                  "line 4: nothing was added: 'value' chooses a value"},
        BadScript{"MinusOfAnother", "new\nfield Holzart\nop IN\nvalue FI\nplus\nvalue KI\nminus", 1,
                  "line 7: the list does not hold the value"},
        BadScript{"ReplaceNothing", "new\nreplace", 1, "line 2: no line is selected"},
        BadScript{"DeleteNothing", "new\ndelete", 1, "line 2: no line is selected"},
        BadScript{"FirstLineUp", "first\nup", 1, "line 2: not possible now: cmdUp is disabled"},
        BadScript{"TwoOrLines", "new\nor\nor", 1, "line 3: there is an OR line here already"},
        BadScript{"OrLineFirst", "new\nor\nok", 1,
                  "line 3: Die erste Zeile der Selektion darf keine ODER-Zeile sein."},
        BadScript{"OrLineLast", "fill 711 = 1;\nor\nok", 1,
                  "line 3: Die letzte Zeile der Selektion darf keine ODER-Zeile sein."},
        BadScript{"OrLineFirstInAModel", "new\nor\nsave as X", 1,
                  "line 3: Die erste Zeile der Selektion darf keine ODER-Zeile sein."},
        BadScript{"UnknownFieldInCriteria", "fill 999 = 1;", 1,
                  "line 1: The table key 'LOG' has no field 0: the field is not offered."},
        BadScript{"CriteriaThatAreNotWhole", "fill 711 = 1", 1,
                  "line 1: criterion 1 (711 = 1): the \";\" at its end is missing"},
        BadScript{
            "OpenApostrophe", "fill 703 = 'FI;", 1,
            "line 1: criterion 1 (703 = 'FI): its quote is not closed; a value cannot hold \";\""},
        BadScript{"ResultsBeforeOk", "sql", 1,
                  "line 1: nothing has been confirmed yet: 'ok' confirms"},
        BadScript{"CountBeforeOk", "count", 1,
                  "line 1: nothing has been confirmed yet: 'ok' confirms"},
        BadScript{"EditWhileOpen", "edit", 1, "line 1: the editor is open"}),
    [](const auto& test) { return test.param.title; });

TEST_F(SessionProgram, ThatIsClosedTakesNoCommandsOfTheEditor) {
  const ProgramResult result = session({"1VM"}, "new\nok\nlist\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "Confirmed.\nNo criteria: the text is empty.\n");
  EXPECT_EQ(error_line(result), "line 3: the editor is closed: 'edit' opens it again");
  EXPECT_EQ(error_line(session({"1VM"}, "new\nok\ncount\n")),
            "line 3: an empty list gives no text to count with");
}

TEST_F(SessionProgram, GoesOnBehindErrorsWhenAsked) {
  const ProgramResult result =
      session({"FI_NUTZERRECHTE", "--keep-going"}, "new\nfield X\nbogus\nfill 4 > 1;\nlist\nok\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err,
            "kestrova-sel: error: line 2: there is no field 'X'\n"
            "kestrova-sel: error: line 3: there is no command 'bogus': 'help' lists the "
            "commands\n");
  EXPECT_EQ(result.out,
            "> 1    Anmeldungen > 1\n"
            "Confirmed.\n"
            "FROM/WHERE\n"
            "  FROM USERS\n"
            "  WHERE (USERS.ANMELDUNGEN > 1)\n"
            "Formula\n"
            "  Anmeldungen > 1\n"
            "Criteria\n"
            "  4 > 1;\n");
}

TEST_F(SessionProgram, LeavesNoHalfFilledList) {
  const ProgramResult result =
      session({"1VM", "--keep-going"}, "fill 711 = 1;999 = 2;\nlist\ncancel\n");
  EXPECT_EQ(result.out, "The list is empty.\nNot confirmed.\n");
}

TEST_F(SessionProgram, ReportsErrorsToPrograms) {
  const ProgramResult result = session({"1VM", "--json"}, "new\nor\nok\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(
      json::parse(result.out),
      (json{{"error",
             {{"message", "line 3: Die erste Zeile der Selektion darf keine ODER-Zeile sein."},
              {"number", 5},
              {"sqlstate", nullptr}}}}));
}

TEST_F(SessionProgram, NeedsARelationThatIsKnown) {
  EXPECT_EQ(refusal({"XYZ"}, "ok\n"),
            "the relation code 'XYZ' is not known: 'kestrova-sel relations' lists the codes");
}

}  // namespace
}  // namespace kestrova::tool
