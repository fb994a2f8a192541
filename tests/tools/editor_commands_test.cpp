// The table of commands, and what may stand at the end of a line that is being typed.
#include "tools/editor_commands.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "platform/standalone/settings_user_locale.h"
#include "tests/tools/usage_error.h"
#include "tools/line_editor.h"

namespace kestrova::tool {
namespace {

using Names = std::vector<std::string>;

// A dialog that only has lists.
class Dialog : public SelectionDialog {
 public:
  Dialog() {
    for (const char* name : {"Holzart", "Holzartname", "Länge"}) cboField.add(name);
    for (const char* name : {"=", ">", ">=", "IN"}) cboOperator.add(name);
    for (const char* name : {"FI", "KI", "LÄ"}) cboValue.add(name);
    for (const char* name : {"Große Lose", "Großkunden"}) Model.add(name);
  }
  std::string caption() const override { return "Selektion"; }
  bool is_visible() const override { return true; }
  void close_requested() override {}
  const std::string& or_line() const override { return or_line_; }

 private:
  std::string or_line_ = "=== ODER ===";
};

class Commands : public testing::Test {
 protected:
  Names candidates(const std::string& line) const { return commands_.complete(line).candidates; }

  Dialog dialog_;
  Session session_{.context = {},
                   .format = ValueFormat(std::make_shared<SettingsUserLocale>("DE", "DMY"))};
  SelectionRun run_{.session = session_, .code = "1VM"};
  std::istringstream in_;
  std::ostringstream out_;
  StreamLines lines_{in_, out_, false};
  Terminal terminal_{lines_, out_};
  EditorCommands commands_{run_, terminal_, out_, false};
};

TEST_F(Commands, HaveNamesOfTheirOwnAndAHelpLineThatFits) {
  std::set<std::string_view> names;
  for (const EditorCommand& command : EditorCommands::table()) {
    EXPECT_TRUE(names.insert(command.name).second) << command.name;
    EXPECT_FALSE(command.help.empty()) << command.name;
    EXPECT_LE(command.help.size(), 60U) << command.name;
    EXPECT_NE(command.run, nullptr) << command.name;
    // Only what is named behind a command can be completed.
    EXPECT_TRUE(command.names == ArgumentNames::kNothing || !command.argument.empty())
        << command.name;
  }
}

TEST_F(Commands, ExplainThemselves) {
  commands_.execute("help insert");
  commands_.execute("help save");
  EXPECT_EQ(out_.str(),
            "  insert  insert the criterion behind the selected line\n"
            "  save [as [NAME]]  save the list into the chosen model, or as another one\n");
  EXPECT_EQ(usage_error([this] { commands_.execute("help me"); }),
            "there is no command 'me': 'help' lists the commands");
}

TEST_F(Commands, IgnoreEmptyLinesAndComments) {
  for (const char* line : {"", "   ", "# list", "  #list"}) commands_.execute(line);
  EXPECT_EQ(out_.str(), "");
}

// --- Completion ----------------------------------------------------------------------------------

TEST_F(Commands, AreCompleted) {
  EXPECT_EQ(candidates("f"), (Names{"fields", "field", "formula", "fill", "first"}));
  EXPECT_EQ(candidates("  del"), (Names{"delete", "delete-model"}));
  EXPECT_EQ(candidates("help mo"), (Names{"move", "models", "model"}));
  EXPECT_EQ(candidates("x"), Names());
  EXPECT_EQ(candidates("").size(), EditorCommands::table().size());
}

TEST_F(Commands, AreFollowedByTheNamesThatTheyTake) {
  commands_.set_dialog(&dialog_);
  EXPECT_EQ(candidates("field "), (Names{"Holzart", "Holzartname", "Länge"}));
  EXPECT_EQ(candidates("field   l"), Names{"Länge"});
  EXPECT_EQ(candidates("op >"), (Names{">", ">="}));
  EXPECT_EQ(candidates("value l"), Names{"LÄ"});
  EXPECT_EQ(candidates("load große"), (Names{"Große Lose"}));
  EXPECT_EQ(candidates("load Große l"), (Names{"Große Lose"}));
  EXPECT_EQ(candidates("save "), Names{"as"});
  EXPECT_EQ(candidates("save as "), (Names{"Große Lose", "Großkunden"}));
  EXPECT_EQ(candidates("lock o"), (Names{"on", "off"}));
}

TEST_F(Commands, ThatTakeNothingHaveNoCompletion) {
  commands_.set_dialog(&dialog_);
  EXPECT_EQ(candidates("insert "), Names());
  EXPECT_EQ(candidates("nonsense x"), Names());
}

TEST_F(Commands, HaveNoNamesWhileTheEditorIsClosed) {
  EXPECT_EQ(candidates("field "), Names());
  EXPECT_EQ(candidates("help ok"), Names{"ok"});
}

TEST_F(Commands, TellWhichEndOfTheLineACandidateReplaces) {
  commands_.set_dialog(&dialog_);
  EXPECT_EQ(commands_.complete(" fie").typed, "fie");
  EXPECT_EQ(commands_.complete("load Große l").typed, "Große l");
  EXPECT_EQ(commands_.complete("save as Gro").typed, "Gro");
  EXPECT_EQ(commands_.complete("field ").typed, "");
}

TEST(Completions, BeginAlike) {
  EXPECT_EQ(common_beginning({}), "");
  EXPECT_EQ(common_beginning({"field"}), "field");
  EXPECT_EQ(common_beginning({"Holzart", "Holzartname"}), "Holzart");
  EXPECT_EQ(common_beginning({"on", "off"}), "o");
  EXPECT_EQ(common_beginning({"a", "b"}), "");
  // "Ä" and "Ö" have their first byte in common.
  EXPECT_EQ(common_beginning({"LÄ", "LÖ"}), "L");
}

}  // namespace
}  // namespace kestrova::tool
