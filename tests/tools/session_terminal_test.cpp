// A session at a terminal: prompts, completion, history, and errors that end nothing.
#include "tests/tools/program_fixture.h"
#include "tests/tools/pseudo_terminal.h"
#include "tools/line_editor.h"

namespace kestrova::tool {
namespace {

constexpr const char* kUp = "\x1b[A";
constexpr const char* kEndOfInput = "\x04";

class SessionTerminal : public Program {
 protected:
  static std::vector<std::string> arguments() {
    return {"--db", database(), "session", "1VM", "--user", "1"};
  }

  // Types keys at the prompt and answers what is written up to the next one.
  std::string after(const std::string& keys, const std::string& prompt = "\n1VM> ") {
    terminal_.type(keys);
    return terminal_.read_until(prompt);
  }

  void start() {
    EXPECT_EQ(terminal_.read_until("1VM> "),
              "Selektion: Fichte stark. 'help' lists the commands.\r\n"
              "> 1    Holzart = 'FI'\r\n"
              "  2    Durchmesser (cm) >= 40\r\n"
              "1VM> ");
  }

  // The terminal itself shows nothing for it.
  static std::string echo_of_end() { return has_line_editor() ? "^D" : ""; }

  PseudoTerminal terminal_{arguments()};
};

TEST_F(SessionTerminal, TellsWhatEveryCommandHasChanged) {
  start();
  EXPECT_EQ(after("new\n"), "new\r\nThe list is empty.\r\n1VM> ");
  EXPECT_EQ(after("field Holzart\n"), "field Holzart\r\nHolzart = \r\n1VM> ");
  EXPECT_EQ(after("value LÄ\n"), "value LÄ\r\nHolzart = 'LÄ'\r\n1VM> ");
  EXPECT_EQ(after("insert\n"), "insert\r\n> 1    Holzart = 'LÄ'\r\n1VM> ");
  EXPECT_EQ(after("quit\n", "\nNot confirmed.\r\n"), "quit\r\nNot confirmed.\r\n");
  EXPECT_EQ(terminal_.read_to_end(), "");
  EXPECT_EQ(terminal_.exit_code(), 4);
}

TEST_F(SessionTerminal, GoesOnBehindErrors) {
  start();
  EXPECT_EQ(after("insrt\n"),
            "insrt\r\nkestrova-sel: error: there is no command 'insrt': 'help' lists the "
            "commands\r\n1VM> ");
  EXPECT_EQ(after("last\n"),
            "last\r\n"
            "  1    Holzart = 'FI'\r\n"
            "> 2    Durchmesser (cm) >= 40\r\n"
            "1VM> ");
  EXPECT_EQ(after("or\n"),
            "or\r\n"
            "  1    Holzart = 'FI'\r\n"
            "  2    Durchmesser (cm) >= 40\r\n"
            "> 3  === ODER ===\r\n"
            "1VM> ");
  EXPECT_EQ(after("ok\n"),
            "ok\r\nkestrova-sel: error: Die letzte Zeile der Selektion darf keine ODER-Zeile "
            "sein.\r\n1VM> ");
}

TEST_F(SessionTerminal, StaysForTheResultsOfWhatWasConfirmed) {
  start();
  after("fill 711 > 400;\n");
  const std::string results = after("ok\n", "\n1VM (confirmed)> ");
  EXPECT_TRUE(results.starts_with("ok\r\nConfirmed.\r\nFROM/WHERE\r\n")) << results;
  EXPECT_EQ(after("count\n", "\n1VM (confirmed)> "), "count\r\n0 rows\r\n1VM (confirmed)> ");
  terminal_.type(kEndOfInput);
  EXPECT_EQ(terminal_.read_to_end(), echo_of_end() + "\r\n");
  EXPECT_EQ(terminal_.exit_code(), 0);
}

TEST_F(SessionTerminal, EndsWithTheInput) {
  start();
  terminal_.type(kEndOfInput);
  EXPECT_EQ(terminal_.read_to_end(), echo_of_end() + "\r\nNot confirmed.\r\n");
  EXPECT_EQ(terminal_.exit_code(), 4);
}

TEST_F(SessionTerminal, AsksUntilItIsAnswered) {
  start();
  const std::string question =
      "Das Modell 'Ohne Abfuhr' existiert bereits. Soll es überschrieben werden? (yes/no) ";
  EXPECT_EQ(after("save as Ohne Abfuhr\n", "(yes/no) "), "save as Ohne Abfuhr\r\n" + question);
  EXPECT_EQ(after("what\n", "(yes/no) "), "what\r\n" + question);
  EXPECT_EQ(after("no\n"), "no\r\nNot saved.\r\n1VM> ");
}

TEST_F(SessionTerminal, CompletesNames) {
  if (!has_line_editor()) GTEST_SKIP() << "built without a terminal library";
  start();
  EXPECT_EQ(after("form\t", "formula "), "form\r1VM> formula ");
  EXPECT_EQ(after("\n"), "\r\nHolzart = 'FI'\r\n1VM> ");
  EXPECT_EQ(after("field lä\t", "(m) "), "field lä\r1VM> field Länge (m) ");
  EXPECT_EQ(after("\n"), "\r\nLänge (m) = \r\n1VM> ");
}

TEST_F(SessionTerminal, ShowsWhatANameMayBe) {
  if (!has_line_editor()) GTEST_SKIP() << "built without a terminal library";
  start();
  EXPECT_EQ(after("ne\t", "\n1VM> ne"), "ne\r\n  new\r\n  next\r\n\r\r\n1VM> ne");
  EXPECT_EQ(after("w\n"), "w\r\nThe list is empty.\r\n1VM> ");
}

TEST_F(SessionTerminal, RemembersLines) {
  if (!has_line_editor()) GTEST_SKIP() << "built without a terminal library";
  start();
  after("criteria\n");
  after("formula\n");
  EXPECT_EQ(after(kUp, "\r1VM> formula"), "\r1VM> formula");
  EXPECT_EQ(after(kUp, "\r1VM> criteria"), "\r1VM> criteria");
  EXPECT_EQ(after("\n"), "\r\n703 = 'FI';711 >= 40;\r\n1VM> ");
}

}  // namespace
}  // namespace kestrova::tool
