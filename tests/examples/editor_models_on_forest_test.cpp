// Models kept by users of the sample database through the editor, read back with plain SQL: the
// standard per class, the mark that is lost, names, and what other users see.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "editor/f_selection.h"
#include "engine/comm_sel.h"
#include "interface/c_selection_init.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"
#include "platform/text.h"
#include "tests/examples/forest_fixture.h"
#include "tests/support/fake_user_interface.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;
using Table = std::vector<std::vector<std::string>>;
using Models = std::vector<ListEntry>;
using Texts = std::vector<std::string>;

constexpr const char* kRelation = "WAREN";

// One database for all tests; each one's changes are taken back.
const std::shared_ptr<Connection>& models_forest() {
  static const std::shared_ptr<Connection> shared = make_forest(100);
  return shared;
}

// The stock articles have five models: three plain ones (class 1), one locked (class 3), and one
// that only the south sees (class 2).
class ForestEditor : public ::testing::Test {
 protected:
  ForestEditor() {
    const auto locale = std::make_shared<SettingsUserLocale>("DE", "DMY");
    install_host({make_standalone_suite(database_, locale), user_, locale});
    db().execute("BEGIN TRANSACTION");
  }
  ~ForestEditor() override {
    install_host({});
    db().execute("ROLLBACK TRANSACTION");
  }

  Connection& db() { return *database_; }
  static F_Selection& editor() { return selection_editor(); }

  // Users of one region see the models that are bound to its access level and those that are bound
  // to none.
  void as_user(std::int32_t id) {
    context_ = forest_user("DE", id,
                           "SELECT ID FROM ACCESS_LEVELS WHERE ID IN (" + std::to_string(id) + ")");
    context_.dbado = database_;
    facade_.c_Selection_Init(context_, kRelation, "", text_, formula_);
  }
  void as_north() { as_user(2); }
  void as_south() { as_user(3); }

  static Texts listed() {
    Texts names;
    for (const ListEntry& entry : editor().Model.entries()) names.push_back(entry.text);
    return names;
  }

  static void pick(const std::string& name) {
    const Texts names = listed();
    const auto found = std::find(names.begin(), names.end(), name);
    ASSERT_NE(found, names.end()) << name << " is not listed";
    editor().Model.pick(static_cast<int>(found - names.begin()));
  }

  // A user's click on a box that shows the other state.
  static void set_box(CheckBox& box, bool checked) {
    ASSERT_NE(box.checked(), checked) << box.name();
    box.click();
  }
  void mark(const std::string& name) {
    pick(name);
    set_box(editor().chkStandard, true);
  }
  void lock(const std::string& name) {
    pick(name);
    set_box(editor().Check1, true);
  }
  void bind(const std::string& name) {
    pick(name);
    set_box(editor().chkAL, true);
  }

  void save_as(const std::string& name) {
    user_->expect_text_question(text(198), "Kestrova", name);
    editor().btnSaveModelleAs.click();
  }

  std::string text(std::int32_t number) { return suite().loc_texts()->GetText(number, context_); }

  Texts marked() {
    Texts names;
    for (const auto& row : rows(db(),
                                "SELECT NAME FROM MODELS WHERE RELATION = 'WAREN' AND "
                                "STANDARD = 1 ORDER BY ID")) {
      names.push_back(row[0]);
    }
    return names;
  }

  // STANDARD, NICHT_ANDERBAR, ID_ACCESS_LEVELS, ID_USER.
  Texts properties(const std::string& name) {
    const Table found = rows(db(),
                             "SELECT STANDARD, NICHT_ANDERBAR, ID_ACCESS_LEVELS, ID_USER FROM "
                             "MODELS WHERE RELATION = 'WAREN' AND NAME = N'" +
                                 name + "'");
    return found.size() == 1 ? found[0] : Texts();
  }

  Table everything() {
    return rows(db(),
                "SELECT ID, MODEL, NAME, RELATION, STANDARD, ID_USER, NICHT_ANDERBAR, "
                "ID_ACCESS_LEVELS FROM MODELS ORDER BY ID");
  }

  const std::shared_ptr<Connection> database_ = models_forest();
  const std::shared_ptr<ScriptedUserInterface> user_ = std::make_shared<ScriptedUserInterface>();
  KesVar context_;
  std::string text_;
  std::string formula_;
  SelectionFacade facade_;
};

// --- The standard

TEST_F(ForestEditor, KeepsOneStandardPerClass) {
  ASSERT_THAT(marked(), ElementsAre("Lagerartikel"));

  as_north();
  mark("Nachbestellen");
  EXPECT_THAT(marked(), ElementsAre("Nachbestellen")) << "of the plain models there is one";
  mark("Schutzausrüstung");
  EXPECT_THAT(marked(), ElementsAre("Nachbestellen", "Schutzausrüstung"))
      << "the locked ones have their own";
  bind("Teure Artikel");
  mark("Teure Artikel");
  EXPECT_THAT(marked(), ElementsAre("Nachbestellen", "Teure Artikel", "Schutzausrüstung"))
      << "and so have those of an access level";

  as_south();
  lock("Lagerartikel");
  mark("Lagerartikel");
  EXPECT_THAT(marked(), ElementsAre("Lagerartikel", "Nachbestellen", "Teure Artikel"))
      << "a locked one takes the mark from a locked one only";
}

TEST_F(ForestEditor, TakesTheMarkFromVisibleModelsOnly) {
  as_north();
  bind("Teure Artikel");
  mark("Teure Artikel");
  as_south();
  EXPECT_THAT(listed(),
              ElementsAre("Lagerartikel", "Nachbestellen", "Neue Artikel", "Schutzausrüstung"));
  mark("Neue Artikel");
  EXPECT_THAT(marked(), ElementsAre("Lagerartikel", "Teure Artikel", "Neue Artikel"));
  as_north();
  EXPECT_THAT(listed(),
              ElementsAre("Lagerartikel", "Nachbestellen", "Schutzausrüstung", "Teure Artikel"));
  bind("Nachbestellen");
  mark("Nachbestellen");
  EXPECT_THAT(marked(), ElementsAre("Lagerartikel", "Nachbestellen", "Neue Artikel"));
}

// A locked model that an access level owns is of the class of the locked ones.
TEST_F(ForestEditor, CountsALockedModelAsLockedFirst) {
  as_north();
  mark("Schutzausrüstung");
  bind("Teure Artikel");
  mark("Teure Artikel");
  lock("Nachbestellen");
  bind("Nachbestellen");
  EXPECT_EQ(properties("Nachbestellen"), (Texts{"0", "1", "2", "2"}));
  mark("Nachbestellen");
  EXPECT_THAT(marked(), ElementsAre("Lagerartikel", "Nachbestellen", "Teure Artikel"));
}

TEST_F(ForestEditor, LeavesOtherRelationsTheirStandard) {
  const std::string others =
      "SELECT RELATION, NAME FROM MODELS WHERE STANDARD = 1 AND RELATION <> 'WAREN' ORDER BY ID";
  const Table before = rows(db(), others);
  ASSERT_EQ(before.size(), 11U);
  as_north();
  mark("Nachbestellen");
  EXPECT_EQ(rows(db(), others), before);
}

TEST_F(ForestEditor, ClearsTheMarkOfOneModel) {
  as_north();
  mark("Schutzausrüstung");
  pick("Lagerartikel");
  set_box(editor().chkStandard, false);
  EXPECT_THAT(marked(), ElementsAre("Schutzausrüstung"));
}

// --- What costs the mark

TEST_F(ForestEditor, LosesTheMarkByLockingAndByUnlocking) {
  as_north();
  lock("Lagerartikel");
  EXPECT_EQ(properties("Lagerartikel"), (Texts{"0", "1", "(null)", "1"})) << "the creator stays";
  EXPECT_FALSE(editor().chkStandard.checked());
  set_box(editor().chkStandard, true);
  EXPECT_EQ(properties("Lagerartikel"), (Texts{"1", "1", "(null)", "1"}));
  set_box(editor().Check1, false);
  EXPECT_EQ(properties("Lagerartikel"), (Texts{"0", "0", "(null)", "1"}));
  EXPECT_FALSE(editor().chkStandard.checked());
}

TEST_F(ForestEditor, LosesTheMarkByBindingAndByUnbinding) {
  as_south();
  bind("Lagerartikel");
  EXPECT_EQ(properties("Lagerartikel"), (Texts{"0", "(null)", "3", "1"}));
  EXPECT_EQ(editor().chkAL.caption(), "Forstbetrieb Süd");
  set_box(editor().chkStandard, true);
  EXPECT_EQ(properties("Lagerartikel"), (Texts{"1", "(null)", "3", "1"}));
  set_box(editor().chkAL, false);
  EXPECT_EQ(properties("Lagerartikel"), (Texts{"0", "(null)", "(null)", "1"}));
  EXPECT_EQ(editor().chkAL.caption(), "");
}

TEST_F(ForestEditor, NamesTheUserWhoLocksAModelOfNobody) {
  db().execute("UPDATE MODELS SET ID_USER = NULL WHERE NAME = 'Teure Artikel'");
  as_north();
  lock("Teure Artikel");
  EXPECT_EQ(properties("Teure Artikel"), (Texts{"0", "1", "(null)", "2"}));
}

TEST_F(ForestEditor, HidesABoundModelFromOtherLevels) {
  as_south();
  bind("Nachbestellen");
  as_north();
  EXPECT_THAT(listed(), ElementsAre("Lagerartikel", "Schutzausrüstung", "Teure Artikel"));
}

// --- Clicking through the list

TEST_F(ForestEditor, WritesNothingWhileModelsAreLookedAt) {
  as_south();
  const Table before = everything();
  for (int round = 0; round < 2; ++round) {
    for (const std::string& name : listed()) pick(name);
  }
  EXPECT_EQ(everything(), before);
}

TEST_F(ForestEditor, WritesNothingWhenAnotherUserHasChangedAModel) {
  as_north();
  pick("Nachbestellen");
  db().execute(
      "UPDATE MODELS SET STANDARD = 1, NICHT_ANDERBAR = 1, ID_ACCESS_LEVELS = 2 WHERE NAME = "
      "'Nachbestellen'");
  const Table before = everything();
  user_->expect_modal(editor().caption(), [](ModalDialog& dialog) {
    EXPECT_TRUE(editor().Check1.checked());
    EXPECT_TRUE(editor().chkStandard.checked());
    EXPECT_TRUE(editor().chkAL.checked());
    dialog.close_requested();
  });
  facade_.c_form_Selection(context_, text_, formula_, false);
  EXPECT_EQ(everything(), before);
}

// --- Saving and deleting

TEST_F(ForestEditor, SavesTheListUnderANewName) {
  as_north();
  facade_.c_Selection_Model_DblClick("Schutzausrüstung");
  save_as("Für den Winter");
  EXPECT_EQ(rows(db(),
                 "SELECT MODEL, RELATION, STANDARD, ID_USER, NICHT_ANDERBAR, ID_ACCESS_LEVELS FROM "
                 "MODELS WHERE NAME = N'Für den Winter'"),
            (Table{{"7 = 'Schutzausrüstung';", "WAREN", "0", "2", "1", "(null)"}}));
  EXPECT_EQ(editor().Model.text(), "Für den Winter");
  EXPECT_EQ(editor().caption(), "Selektion: Für den Winter");
  EXPECT_TRUE(editor().Check1.checked()) << "new models are locked by the option";
  as_south();
  facade_.c_Selection_Model_DblClick("Für den Winter");
  EXPECT_EQ(facade_.GetWriteString(context_), "7 = 'Schutzausrüstung';");
}

TEST_F(ForestEditor, SavesFortyCharactersOfAName) {
  std::string typed;
  std::string name;
  for (int i = 0; i < 50; ++i) {
    typed += "ü";
    if (i < 40) name += "ü";
  }
  as_north();
  save_as(typed);
  EXPECT_EQ(rows(db(), "SELECT NAME, LEN(NAME) FROM MODELS WHERE ID_USER = 2 AND NAME LIKE N'üü%'"),
            (Table{{name, "40"}}));
  EXPECT_EQ(editor().Model.text(), name);
}

TEST_F(ForestEditor, FailsToSaveANameWithAnApostrophe) {
  as_north();
  const Table before = everything();
  const Texts names = listed();
  const int index = editor().Model.index();
  EXPECT_THROW(save_as("O'Brien"), InvalidArgument);
  EXPECT_THROW(save_as("x','1VM',1,1,1,1)--"), InvalidArgument);
  EXPECT_EQ(everything(), before);
  EXPECT_EQ(listed(), names);
  EXPECT_EQ(editor().Model.index(), index);
  save_as("OBrien");
  EXPECT_EQ(everything().size(), before.size() + 1);
}

TEST_F(ForestEditor, OverwritesAModelOnceTheUserHasAgreed) {
  as_north();
  facade_.c_Selection_Model_DblClick("Schutzausrüstung");
  const Table before = everything();
  const Message question{text(245) + " 'Nachbestellen' " + text(197), 308, "Kestrova", "", 0};
  user_->expect_text_question(text(198), "Kestrova", " Nachbestellen ");
  user_->expect_message(question, MessageResult::kNo);
  editor().btnSaveModelleAs.click();
  EXPECT_EQ(everything(), before);
  user_->expect_text_question(text(198), "Kestrova", " Nachbestellen ");
  user_->expect_message(question, MessageResult::kYes);
  editor().btnSaveModelleAs.click();
  EXPECT_EQ(rows(db(), "SELECT MODEL FROM MODELS WHERE NAME = 'Nachbestellen'"),
            (Table{{"7 = 'Schutzausrüstung';"}}));
  EXPECT_EQ(everything().size(), before.size());
  EXPECT_EQ(editor().Model.text(), "Nachbestellen");
}

// --- What another user has done meanwhile

TEST_F(ForestEditor, AsksBeforeItOverwritesWhatAnotherUserHasSaved) {
  as_north();
  facade_.c_Selection_Model_DblClick("Nachbestellen");
  editor().btnSaveModelle.click();  // its own text
  db().execute("UPDATE MODELS SET MODEL = '7 = ''X'';' WHERE NAME = 'Nachbestellen'");
  const Message question{
      "Das Modell 'Nachbestellen' ist geändert worden, seit es hier geladen oder gespeichert "
      "wurde. "
      "Soll es trotzdem überschrieben werden?",
      308, "Kestrova", "", 0};
  const Table before = everything();
  user_->expect_message(question, MessageResult::kNo);
  editor().btnSaveModelle.click();
  EXPECT_EQ(everything(), before);
  user_->expect_message(question, MessageResult::kYes);
  editor().btnSaveModelle.click();
  EXPECT_EQ(rows(db(), "SELECT MODEL FROM MODELS WHERE NAME = 'Nachbestellen'"),
            (Table{{facade_.GetWriteString(context_)}}));
}

TEST_F(ForestEditor, SavesLoadsAndMarksNothingThatAnotherUserHasDeleted) {
  as_north();
  facade_.c_Selection_Model_DblClick("Schutzausrüstung");
  facade_.c_Selection_Model_DblClick("Teure Artikel");
  const Models lines = editor().ListCriteria.entries();
  db().execute("DELETE FROM MODELS WHERE RELATION = 'WAREN' AND NAME = 'Teure Artikel'");
  const Table before = everything();
  EXPECT_THROW(editor().btnSaveModelle.click(), NoCurrentRecord);
  EXPECT_THROW(editor().Model.double_click(), NoCurrentRecord);
  for (CheckBox* box : {&editor().chkStandard, &editor().Check1, &editor().chkAL}) {
    EXPECT_THROW(box->click(), NoCurrentRecord) << box->name();
    EXPECT_FALSE(box->checked()) << box->name();
  }
  EXPECT_EQ(everything(), before);
  EXPECT_EQ(editor().ListCriteria.entries(), lines);
  EXPECT_EQ(editor().caption(), "Selektion: Teure Artikel");
  editor().btnDeleteModelle.click();
  EXPECT_THAT(listed(), ElementsAre("Lagerartikel", "Nachbestellen", "Schutzausrüstung"));
  EXPECT_EQ(everything(), before);
}

TEST_F(ForestEditor, LeavesAModelThatAnotherUserHasLocked) {
  db().execute("UPDATE OPTIONEN SET NUMBER_VALUE = 0 WHERE PROPERTY_ID = 'CHANGE_MODELS'");
  as_north();
  facade_.c_Selection_Model_DblClick("Nachbestellen");
  db().execute("UPDATE MODELS SET NICHT_ANDERBAR = 1 WHERE NAME = 'Nachbestellen'");
  const Table before = everything();
  EXPECT_THROW(editor().btnSaveModelle.click(), InvalidArgument);
  EXPECT_TRUE(editor().Check1.checked());
  EXPECT_FALSE(editor().btnSaveModelle.enabled());
  EXPECT_THROW(editor().btnDeleteModelle_Click(), InvalidArgument);
  pick("Lagerartikel");
  user_->expect_text_question(text(198), "Kestrova", "Nachbestellen");
  user_->expect_message({text(245) + " 'Nachbestellen' " + text(197), 308, "Kestrova", "", 0},
                        MessageResult::kYes);
  EXPECT_THROW(editor().btnSaveModelleAs.click(), InvalidArgument);
  EXPECT_EQ(everything(), before);
}

TEST_F(ForestEditor, OpensAlthoughItsStandardModelCannotBeRead) {
  db().execute("UPDATE MODELS SET MODEL = '7 = ''Huber; Söhne'';' WHERE NAME = 'Lagerartikel'");
  user_->expect_message(
      {"Das Modell 'Lagerartikel' kann nicht geladen werden; die Liste ist leer. "
       "Grund: '' is no whole number.",
       kExclamationIcon, "Kestrova", "", 0});
  as_north();
  EXPECT_EQ(editor().ListCriteria.count(), 0);
  EXPECT_EQ(editor().Model.index(), -1);
  facade_.c_Selection_Model_DblClick("Nachbestellen");
  EXPECT_GT(editor().ListCriteria.count(), 0);
}

TEST_F(ForestEditor, DeletesTheSelectedModelOnly) {
  as_north();
  const std::size_t before = everything().size();
  pick("Teure Artikel");
  editor().btnDeleteModelle.click();
  EXPECT_EQ(everything().size(), before - 1);
  EXPECT_TRUE(properties("Teure Artikel").empty());
  EXPECT_THAT(listed(), ElementsAre("Lagerartikel", "Nachbestellen", "Schutzausrüstung"));
}

// --- The models of all relations, loaded and written back

std::string without_blanks(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
  return text;
}

TEST_F(ForestEditor, WritesModelsBackAndCommitsThemToTheSameRows) {
  as_user(1);
  context_.strAccessLevelList = "SELECT ID FROM ACCESS_LEVELS";
  int models = 0;
  for (const char* code : {"1VM", "2ABR4", "2ABR1-A", "EXP_VER0", "2VABR3", "2PVA3", "1LV", "1EXP",
                           "WAREN", "4ARB17", "BELEG_BB_2021", "LEISTUNGS_BB_MV"}) {
    facade_.c_Selection_Init(context_, code, "", text_, formula_);
    for (const ListEntry& model : Models(editor().Model.entries())) {
      SCOPED_TRACE(std::string(code) + " " + model.text);
      const Texts row = rows(db(), "SELECT ISNULL(MODEL,''), RELATION FROM MODELS WHERE ID = " +
                                       std::to_string(model.item_data))[0];
      const std::string& stored = row[0];
      facade_.c_Selection_Model_DblClick(model.text);
      // Today is stored with its offset of no days.
      EXPECT_EQ(without_blanks(facade_.GetWriteString(context_)),
                without_blanks(text::replace_all(stored, "GETDATE();", "GETDATE()+0;")));
      facade_.OK_Click(text_, formula_);
      EXPECT_TRUE(facade_.WasOKClick());
      const std::string translated =
          Comm_Sel().D_SelectionFromStr(context_, code, row[1], stored, "", 1);
      if (text_.starts_with(" FROM ")) {
        EXPECT_EQ(number(db(), "SELECT COUNT(*)" + text_),
                  number(db(), "SELECT COUNT(*)" + translated));
      }
      ++models;
    }
  }
  EXPECT_EQ(models, 60);
}

}  // namespace
}  // namespace kestrova::test
