// The option CHANGE_MODELS, read from a real database: the query's own ISNULL decides.
#include <gtest/gtest.h>

#include "platform/sqlite/sqlite_connection.h"
#include "tests/editor/run_host.h"

namespace kestrova::test {
namespace {

// A host that has read its options from a database with these rows of OPTIONEN.
struct OptionsHost : RunHost {
  explicit OptionsHost(const std::string& rows) {
    suite->answers().options = {{"B018", true}, {"B049", true}, {"B057", true}};
    const auto database = open_sqlite(":memory:");
    database->execute("CREATE TABLE OPTIONEN (PROPERTY_ID nvarchar(40), NUMBER_VALUE int)");
    database->execute(rows);
    module_state().dbado = database;
    editor->Form_Load();
    module_state().dbado = connection;
  }

  // Whether the user may lock models and bind them.
  bool may_change_models() {
    offer("VERLOHN", {});
    answer_models("VERLOHN");
    start("VERLOHN");
    run();
    EXPECT_EQ(editor->Check1.enabled(), editor->chkAL.enabled());
    return editor->Check1.enabled();
  }
};

std::string row(const std::string& value) {
  return "INSERT INTO OPTIONEN VALUES ('CHANGE_MODELS', " + value + ")";
}

TEST(ChangeModels, IsOnUnlessItsValueIsAnotherThanOne) {
  EXPECT_TRUE(OptionsHost(row("NULL")).may_change_models());
  EXPECT_TRUE(OptionsHost(row("1")).may_change_models());
  EXPECT_FALSE(OptionsHost(row("0")).may_change_models());
  EXPECT_FALSE(OptionsHost(row("2")).may_change_models());
}

TEST(ChangeModels, NeedsItsRow) {
  EXPECT_THROW(OptionsHost("INSERT INTO OPTIONEN VALUES ('B018', 1)"), NoCurrentRecord);
}

}  // namespace
}  // namespace kestrova::test
