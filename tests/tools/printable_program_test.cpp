// What the program shows of names and values that hold control characters, in a pipe and at a
// terminal.
#include "tests/tools/program_fixture.h"
#include "tests/tools/pseudo_terminal.h"
#include "tools/line_editor.h"

namespace kestrova::tool {
namespace {

// Clears a terminal, rings, begins a control sequence of Latin-1, begins the line anew, and turns
// the rest of it round.
const std::string kName = "Fichte\x1B[2J\a\u009B31m\r\u202Estark";
const std::string kShown = "Fichte\uFFFD[2J\uFFFD\uFFFD31m \uFFFDstark";  // as a cell of a table
const std::string kInText = "Fichte\uFFFD[2J\uFFFD\uFFFD31m\uFFFD\uFFFDstark";

class ControlCharacters : public Program {
 protected:
  static std::string hostile_database() {
    if (const std::string made = file("control.db"); std::filesystem::exists(made)) return made;
    return changed_database(
        "control.db", "UPDATE MODELS SET NAME = '" + kName +
                          "' WHERE ID = 1\r\nUPDATE PERSONAL SET NAME = '" + kName +
                          "' WHERE ID IN (SELECT ID_KUNDE FROM LOGS)\r\n"
                          "UPDATE STRINGS SET DE = 'Das\x1B[2J Modell' WHERE DE = 'Das Modell'");
  }
  static std::vector<std::string> arguments(std::vector<std::string> command) {
    command.insert(command.begin(), {"--db", hostile_database(), "--user", "1"});
    return command;
  }
};

TEST_F(ControlCharacters, AreShownInTablesOfAPipe) {
  const ProgramResult result = run_program(arguments({"models", "1VM"}));
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_NE(result.out.find("\n 1  " + kShown + " "), std::string::npos) << result.out;
  EXPECT_EQ(result.out.find_first_of("\x1B\a\r"), std::string::npos) << result.out;
}

TEST_F(ControlCharacters, AreShownInRows) {
  const ProgramResult result =
      run_program(arguments({"run", "1EXP", "", "--columns", "PERSONAL.NAME", "--limit", "1"}));
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out.find_first_of("\x1B\a\r"), std::string::npos) << result.out;
}

TEST_F(ControlCharacters, AreShownInErrors) {
  const ProgramResult result = run_program(arguments({"fields", "\x1B[31m\u202E"}));
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err.find_first_of("\x1B"), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("\uFFFD[31m\uFFFD"), std::string::npos) << result.err;
}

TEST_F(ControlCharacters, ReachAProgramAsTheyAre) {
  const ProgramResult result = run_program(arguments({"models", "1VM", "--json"}));
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out.find_first_of("\x1B\a\r\x7F"), std::string::npos) << result.out;
  EXPECT_EQ(result.out.find("\u009B"), std::string::npos) << result.out;
  EXPECT_EQ(result.out.find("\u202E"), std::string::npos) << result.out;
  EXPECT_EQ(json::parse(result.out).at("models")[1].at("name"), kName);
}

TEST_F(ControlCharacters, AreShownInASessionOfAPipe) {
  const ProgramResult result =
      run_program(arguments({"session", "1VM"}), "models\nload " + kName + "\nsave as Neu\n");
  EXPECT_EQ(result.out.find_first_of("\x1B\a\r"), std::string::npos) << result.out;
  EXPECT_EQ(result.err.find_first_of("\x1B\a\r"), std::string::npos) << result.err;
}

class ControlCharactersAtATerminal : public ControlCharacters {
 protected:
  // The terminal itself ends its lines with CR LF.
  static void expect_harmless(std::string shown) {
    for (std::size_t at = 0; (at = shown.find("\r\n", at)) != std::string::npos;)
      shown.erase(at, 1);
    EXPECT_EQ(shown.find_first_of("\x1B\a\r"), std::string::npos) << shown;
    EXPECT_EQ(shown.find("\u009B"), std::string::npos) << shown;
    EXPECT_EQ(shown.find("\u202E"), std::string::npos) << shown;
  }
};

TEST_F(ControlCharactersAtATerminal, AreShownInTables) {
  PseudoTerminal terminal(arguments({"models", "1VM"}));
  const std::string shown = terminal.read_to_end();
  EXPECT_NE(shown.find("\n 1  " + kShown + " "), std::string::npos) << shown;
  expect_harmless(shown);
}

TEST_F(ControlCharactersAtATerminal, AreShownInASession) {
  PseudoTerminal terminal(arguments({"session", "1VM"}));
  const std::string begin = terminal.read_until("1VM> ");
  EXPECT_TRUE(begin.starts_with("Selektion: " + kInText + ". 'help' lists the commands.\r\n"))
      << begin;
  expect_harmless(begin);
  // A question stands in the prompt, which the line editor writes itself.
  terminal.type("save as Ohne Abfuhr\n");
  const std::string question = terminal.read_until("(yes/no) ");
  EXPECT_NE(question.find("\nDas\uFFFD[2J Modell 'Ohne Abfuhr' existiert"), std::string::npos)
      << question;
  expect_harmless(question);
  terminal.type("no\n");
}

}  // namespace
}  // namespace kestrova::tool
