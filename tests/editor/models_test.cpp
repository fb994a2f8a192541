// Saving, deleting, marking, locking and binding of models: the exact statements and their order,
// what the user sees of them, and which controls are enabled.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>

#include "tests/editor/run_host.h"
#include "tests/support/golden.h"

namespace kestrova::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Models = std::vector<ListEntry>;
using Texts = std::vector<std::string>;

const Models kTwoModels = {{"Alt", 3}, {"Neu", 4}};

std::string executed(const std::string& sql) { return "execute " + sql; }

std::string insert_of(const std::string& criteria, const std::string& name,
                      const std::string& locked = "1", const std::string& level = "NULL") {
  return "INSERT INTO MODELS "
         "(MODEL,NAME,RELATION,STANDARD,ID_USER,NICHT_ANDERBAR,ID_ACCESS_LEVELS) VALUES ('" +
         criteria + "','" + name + "','VERLOHN',0,42," + locked + "," + level + ")";
}

std::string id_query(const std::string& name) {
  return "SELECT ID FROM MODELS WHERE NAME = '" + name +
         "' AND RELATION = 'VERLOHN' AND ID_USER = 42";
}

std::string update_of(const std::string& criteria, int model) {
  return "UPDATE MODELS SET MODEL = '" + criteria + "' WHERE ID = " + std::to_string(model);
}

std::string standard_of(const std::string& relation, int model, const std::string& access) {
  const std::string id = std::to_string(model);
  const std::string a_class =
      "(CASE WHEN MODELS.NICHT_ANDERBAR = 1 THEN 3 WHEN MODELS.ID_ACCESS_LEVELS IS NOT NULL THEN 2 "
      "ELSE 1 END)";
  return "UPDATE MODELS SET STANDARD = (CASE WHEN MODELS.ID = " + id +
         " THEN 1 ELSE 0 END) WHERE RELATION = '" + relation + "' AND " + access + " AND " +
         a_class + " = (SELECT " + a_class + " FROM MODELS WHERE ID = " + id + ")";
}

std::string times(int count, std::string_view text) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

// "VERLOHN", whose fields (Holzart 5, Menge 6) the suite knows, so that every statement is one on
// models. User 42 has every option; the models are "Alt" (3), selected, and "Neu" (4), both without
// criteria.
struct ModelsHost : RunHost {
  ModelsHost() {
    context.lngUserID = 42;
    suite->answers().options = {{"B018", true}, {"B049", true}, {"B057", true}};
    suite->answers().field_formats = {{6, "0.00"}};
    offer("VERLOHN", {{"Holzart", 5}, {"Menge", 6}});
    answer_models("VERLOHN", {{3, "Alt"}, {4, "Neu"}});
    answer_criteria(3, "");
    answer_criteria(4, "");
    start("VERLOHN");
    forget();
  }

  // All that is asked of database, services and user, but the texts and the types of fields.
  Texts said() const {
    Texts lines;
    std::copy_if(log->begin(), log->end(), std::back_inserter(lines), [](const std::string& line) {
      return !line.starts_with('#') && !line.starts_with("GetText(") &&
             !line.starts_with("MapFieldId(") && !line.starts_with("field_format(");
    });
    return lines;
  }

  const Models& models() const { return editor->Model.entries(); }

  void select(int index) {
    editor->Model.set_index(index);
    forget();
  }

  // What the database says of a model from now on.
  void answer_model(int model, Row state) {
    change_state(model_state_query("VERLOHN", model), std::move(state));
  }

  void set_options(bool change_models, bool b018, bool b049, bool b057) {
    suite->answers().options = {{"B018", b018}, {"B049", b049}, {"B057", b057}};
    connection->answer(kChangeModelsQuery, {{"A", FieldType::kInteger}}, {{change_models ? 1 : 0}});
    editor->Form_Load();  // the answer of the start once more
    editor->Form_Load();
    forget();
  }

  void expect_name(std::optional<std::string> answer) {
    user->expect_text_question("T198", "Kestrova", std::move(answer));
  }

  void expect_overwrite_question(const std::string& name, MessageResult answer) {
    user->expect_message({"T245 '" + name + "' T197", 308, "Kestrova", "", 0}, answer);
  }

  // The database gives the next new model of that name a number.
  void answer_new_model(const std::string& name, int id) {
    connection->answer(id_query(name), {{"ID", FieldType::kInteger}}, {{id}});
    answer_model(id, {0, 0, Value(), Value(), 0});
  }

  void save_as(const std::string& typed) {
    expect_name(typed);
    forget();
    editor->btnSaveModelleAs_Click();
  }

  // What saving reads of a model that has been loaded.
  static std::string text_query(int model) {
    return "SELECT MODEL FROM MODELS WHERE ID = " + std::to_string(model);
  }

  // What another user has saved in a model.
  void change_criteria(int model, const std::string& criteria) {
    answer_criteria(model, criteria);
    connection->open(text_query(model), CursorType::kForwardOnly, LockType::kReadOnly);
    forget();
  }

  // Another user has deleted a model.
  void delete_row(int model) {
    connection->answer(text_query(model), {{"MODEL"}});
    connection->open(text_query(model), CursorType::kForwardOnly, LockType::kReadOnly);
    connection->answer_executes(0);
    forget();
  }

  void expect_changed_question(const std::string& name, MessageResult answer) {
    user->expect_message({changed_question(name), 308, "Kestrova", "", 0}, answer);
  }
  static std::string changed_question(const std::string& name) {
    return "Das Modell '" + name +
           "' ist geändert worden, seit es hier geladen oder gespeichert wurde. Soll es trotzdem "
           "überschrieben werden?";
  }

  Texts state_of(int model) const {
    return {"pointer hourglass", opened(model_state_query("VERLOHN", model)), "pointer default"};
  }
};

// The message of the error that an action raises.
template <class Failure, class Action>
std::string error_of(const Action& action) {
  try {
    action();
  } catch (const Failure& error) {
    return error.what();
  }
  ADD_FAILURE() << "no error";
  return {};
}

Texts operator+(Texts first, const Texts& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

const std::string kQuestion = "question 'T198', title 'Kestrova'";

// --- Save as

TEST(SaveAs, InsertsTheListReadsItsNumberAndSelectsIt) {
  ModelsHost host;
  host.fill_lines({{"Holzart = 'FI'", 5}, {"=== ODER ===", -2}, {"Menge IN (1, 2)", 6}});
  host.answer_new_model("Drei", 21);
  host.save_as("Drei");
  EXPECT_EQ(host.said(),
            Texts({kQuestion, executed(insert_of("5 = ''FI'';=== ODER ===;6 IN (1, 2) ;", "Drei")),
                   opened(id_query("Drei"))}) +
                host.state_of(21));
  EXPECT_EQ(host.models(), (Models{{"Alt", 3}, {"Neu", 4}, {"Drei", 21}}));
  EXPECT_EQ(host.editor->Model.index(), 2);
  EXPECT_EQ(host.editor->caption(), "Selektion: Drei");
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

TEST(SaveAs, OfAnEmptyListStoresAnEmptyText) {
  ModelsHost host;
  host.answer_new_model("Leer", 21);
  host.save_as("Leer");
  EXPECT_EQ(host.connection->statements().front(), insert_of("", "Leer"));
}

TEST(SaveAs, WithoutANameDoesNothing) {
  for (const auto& answer : {std::optional<std::string>(), std::optional<std::string>(""),
                             std::optional<std::string>("   ")}) {
    ModelsHost host;
    host.expect_name(answer);
    host.editor->btnSaveModelleAs_Click();
    EXPECT_EQ(host.said(), Texts({kQuestion}));
    EXPECT_EQ(host.models(), kTwoModels);
    EXPECT_EQ(host.editor->Model.index(), 0);
    EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
  }
}

TEST(SaveAs, TrimsTheName) {
  ModelsHost host;
  host.answer_new_model("Drei", 21);
  host.save_as("  Drei  ");
  EXPECT_EQ(host.connection->statements().front(), insert_of("", "Drei"));
  EXPECT_EQ(host.models().back(), (ListEntry{"Drei", 21}));
}

TEST(SaveAs, KeepsTheFirst40CharactersOfTheName) {
  ModelsHost host;
  const std::string name = times(40, "ä");
  host.answer_new_model(name, 21);
  host.save_as(" " + times(50, "ä") + " ");
  EXPECT_EQ(host.connection->statements(),
            Texts({insert_of("", name), id_query(name), model_state_query("VERLOHN", 21)}));
  EXPECT_EQ(host.models().back(), (ListEntry{name, 21}));
  EXPECT_EQ(host.editor->caption(), "Selektion: " + name);
}

TEST(SaveAs, KeepsANameOf40CharactersWhole) {
  ModelsHost host;
  const std::string name = times(20, "ß") + times(20, "x");
  host.answer_new_model(name, 21);
  host.save_as(name);
  EXPECT_EQ(host.models().back(), (ListEntry{name, 21}));
}

TEST(SaveAs, CutsBehindTrimmingSoThatABlankMayEndTheName) {
  ModelsHost host;
  const std::string name = times(39, "x") + " ";
  host.answer_new_model(name, 21);
  host.save_as(name + "yz");
  EXPECT_EQ(host.connection->statements().front(), insert_of("", name));
  EXPECT_EQ(host.editor->caption(), "Selektion: " + times(39, "x"));
}

TEST(SaveAs, LocksTheModelByTheOptionOnly) {
  ModelsHost host;
  host.set_options(true, false, true, true);
  host.answer_new_model("Drei", 21);
  host.save_as("Drei");
  EXPECT_EQ(host.connection->statements().front(), insert_of("", "Drei", "NULL"));
}

TEST(SaveAs, BindsTheModelToTheUsersLevelLikeTheShownOne) {
  ModelsHost host;
  host.answer_model(4, {0, 0, 5, "Revier", 0});
  host.select(1);
  ASSERT_TRUE(host.editor->chkAL.checked());
  ASSERT_TRUE(host.editor->chkAL.enabled());
  host.answer_new_model("Drei", 21);
  host.save_as("Drei");
  EXPECT_EQ(host.connection->statements().front(), insert_of("", "Drei", "1", "7"));
}

TEST(SaveAs, DoesNotBindItWhereTheUserMayNot) {
  ModelsHost host;
  host.set_options(false, true, true, true);
  host.answer_model(4, {0, 0, 5, "Revier", 0});
  host.select(1);
  ASSERT_TRUE(host.editor->chkAL.checked());
  ASSERT_FALSE(host.editor->chkAL.enabled());
  host.answer_new_model("Drei", 21);
  host.save_as("Drei");
  EXPECT_EQ(host.connection->statements().front(), insert_of("", "Drei", "1", "NULL"));
}

TEST(SaveAs, DoesNotListAModelThatIsNotFoundAgain) {
  ModelsHost host;
  host.connection->answer(id_query("Drei"), {{"ID", FieldType::kInteger}});
  host.save_as("Drei");
  EXPECT_EQ(host.connection->statements(), Texts({insert_of("", "Drei"), id_query("Drei")}));
  EXPECT_EQ(host.models(), kTwoModels);
  EXPECT_EQ(host.editor->Model.index(), 0);
  EXPECT_EQ(host.editor->caption(), "Selektion: Drei");
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

// The quotes of a name are not doubled: what follows one would be read as SQL.
TEST(SaveAs, RefusesANameThatWouldEndItsTextBeforeAnyStatement) {
  ModelsHost host;
  host.fill_lines({{"Holzart = 'FI'", 5}});
  for (const std::string& name :
       {std::string("O'Brien"), std::string("x',0,0,0,0,0)DROP TABLE MODELS--"),
        std::string("a\nb"), std::string("a\u0085b"), std::string("a\0b", 3)}) {
    EXPECT_EQ(error_of<InvalidArgument>([&] { host.save_as(name); }),
              "The name of a model cannot hold an apostrophe or a control character.");
    EXPECT_THAT(host.connection->statements(), IsEmpty());
  }
  host.select(-1);
  host.expect_name("O'Brien");
  EXPECT_THROW(host.editor->btnSaveModelle_Click(), InvalidArgument);
  EXPECT_THAT(host.connection->statements(), IsEmpty());
  host.select(0);
  EXPECT_EQ(host.models(), kTwoModels);
  EXPECT_EQ(host.editor->Model.index(), 0);
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
  EXPECT_THAT(host.lines(), ElementsAre("Holzart = 'FI'"));
  host.answer_new_model("OBrien", 21);
  host.save_as("OBrien");
  EXPECT_EQ(host.models().back(), (ListEntry{"OBrien", 21}));
}

TEST(SaveAs, AsksBeforeItOverwritesAndNoEndsIt) {
  ModelsHost host;
  host.fill_lines({{"Menge = 1", 6}});
  host.expect_name(" Neu ");
  host.expect_overwrite_question("Neu", MessageResult::kNo);
  host.editor->btnSaveModelleAs_Click();
  EXPECT_EQ(host.said(),
            Texts({kQuestion, "message 'T245 'Neu' T197', flags 308, title 'Kestrova'"}));
  EXPECT_EQ(host.models(), kTwoModels);
  EXPECT_EQ(host.editor->Model.index(), 0);
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
}

TEST(SaveAs, YesSelectsTheModelAndOverwritesIt) {
  ModelsHost host;
  host.fill_lines({{"Holzart = 'FI'", 5}});
  host.expect_name("Neu");
  host.expect_overwrite_question("Neu", MessageResult::kYes);
  host.editor->btnSaveModelleAs_Click();
  EXPECT_EQ(host.said(),
            Texts({kQuestion, "message 'T245 'Neu' T197', flags 308, title 'Kestrova'"}) +
                host.state_of(4) + Texts({executed(update_of("5 = ''FI'';", 4))}));
  EXPECT_EQ(host.models(), kTwoModels);
  EXPECT_EQ(host.editor->Model.index(), 1);
  EXPECT_EQ(host.editor->caption(), "Selektion: Neu");
  EXPECT_THAT(host.lines(), ElementsAre("Holzart = 'FI'")) << "the list is not loaded anew";
}

TEST(SaveAs, ComparesTheNameThatWillBeStored) {
  ModelsHost host;
  const std::string name = times(40, "ö");
  host.editor->Model.add(name);
  host.editor->Model.set_item_data(2, 9);
  host.answer_model(9, {0, 0, Value(), Value(), 0});
  host.expect_name(name + "x");
  host.expect_overwrite_question(name, MessageResult::kYes);
  host.editor->btnSaveModelleAs_Click();
  EXPECT_EQ(host.connection->statements(),
            Texts({model_state_query("VERLOHN", 9), update_of("", 9)}));
}

TEST(SaveAs, OfASharedRelationStoresItsModelRelation) {
  RunHost host;
  host.context.lngUserID = 42;
  host.offer("LOG", {{"Holzart", 5}});
  host.answer_models("2ABR1");
  host.start("2ABR5");
  host.connection->answer(
      "SELECT ID FROM MODELS WHERE NAME = 'Drei' AND RELATION = '2ABR1' AND ID_USER = 42",
      {{"ID", FieldType::kInteger}}, {{21}});
  host.answer_state(model_state_query("2ABR1", 21));
  host.user->expect_text_question("T198", "Kestrova", "Drei");
  host.forget();
  host.editor->btnSaveModelleAs_Click();
  EXPECT_EQ(
      host.connection->statements(),
      Texts({"INSERT INTO MODELS "
             "(MODEL,NAME,RELATION,STANDARD,ID_USER,NICHT_ANDERBAR,ID_ACCESS_LEVELS) VALUES "
             "('','Drei','2ABR1',0,42,NULL,NULL)",
             "SELECT ID FROM MODELS WHERE NAME = 'Drei' AND RELATION = '2ABR1' AND ID_USER = 42",
             model_state_query("2ABR1", 21)}));
}

TEST(SaveAs, StoresTheUserOfTheLastRun) {
  ModelsHost host;
  host.context.lngUserID = 43;
  host.context.lngAccessLevel = 9;
  host.answer_model(4, {0, 0, 5, "Revier", 0});
  host.connection->answer(
      "SELECT ID FROM MODELS WHERE NAME = 'Drei' AND RELATION = 'VERLOHN' AND ID_USER = 43",
      {{"ID", FieldType::kInteger}});
  host.run("", false, [&] {
    host.select(1);
    host.save_as("Drei");
    EXPECT_EQ(host.connection->statements().front(),
              "INSERT INTO MODELS "
              "(MODEL,NAME,RELATION,STANDARD,ID_USER,NICHT_ANDERBAR,ID_ACCESS_LEVELS) VALUES "
              "('','Drei','VERLOHN',0,43,1,9)");
  });
}

// --- Save

TEST(Save, OverwritesTheSelectedModel) {
  ModelsHost host;
  host.select(1);
  host.fill_lines({{"Holzart = 'FI'", 5}, {"Menge >= 3,5", 6}});
  host.editor->btnSaveModelle_Click();
  EXPECT_EQ(host.said(),
            host.state_of(4) + Texts({executed(update_of("5 = ''FI'';6 >= 3,5;", 4))}));
  EXPECT_EQ(host.models(), kTwoModels);
  EXPECT_EQ(host.editor->Model.index(), 1);
  EXPECT_EQ(host.editor->caption(), "Selektion: Neu");
}

TEST(Save, ShowsTheNameTrimmed) {
  ModelsHost host;
  host.editor->Model.set_entry_text(1, " Neu ");
  host.select(1);
  host.editor->btnSaveModelle_Click();
  EXPECT_EQ(host.editor->caption(), "Selektion: Neu");
}

TEST(Save, WithoutASelectedModelAsksForTheName) {
  ModelsHost host;
  host.select(-1);
  host.expect_name("Drei");
  host.answer_new_model("Drei", 21);
  host.editor->btnSaveModelle_Click();
  EXPECT_EQ(host.said(),
            Texts({kQuestion, executed(insert_of("", "Drei")), opened(id_query("Drei"))}) +
                host.state_of(21));
  EXPECT_EQ(host.editor->Model.index(), 2);
  EXPECT_EQ(host.editor->caption(), "Selektion: Drei");
}

TEST(Save, WithoutASelectedModelAsksBeforeItOverwrites) {
  ModelsHost host;
  host.select(-1);
  host.expect_name("Alt");
  host.expect_overwrite_question("Alt", MessageResult::kYes);
  host.editor->btnSaveModelle_Click();
  EXPECT_EQ(host.connection->statements(),
            Texts({model_state_query("VERLOHN", 3), ModelsHost::text_query(3), update_of("", 3)}));
  host.select(-1);
  host.expect_name("Alt");
  host.expect_overwrite_question("Alt", MessageResult::kNo);
  host.editor->btnSaveModelle_Click();
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

TEST(Save, WithoutANameDoesNothing) {
  ModelsHost host;
  host.select(-1);
  host.expect_name(std::nullopt);
  host.editor->btnSaveModelle_Click();
  EXPECT_EQ(host.said(), Texts({kQuestion}));
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
}

// --- Lists that are refused

void expect_refused(const std::vector<ListEntry>& lines, const std::string& message) {
  for (const auto action :
       {&F_Selection::btnSaveModelle_Click, &F_Selection::btnSaveModelleAs_Click}) {
    ModelsHost host;
    host.fill_lines(lines);
    host.user->expect_message({message, 0, "Kestrova", "", 0});
    (host.editor.get()->*action)();
    EXPECT_EQ(host.said(), Texts({"message '" + message + "', flags 0, title 'Kestrova'"}));
    EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
    EXPECT_EQ(host.editor->ListCriteria.entries(), lines);
  }
}

TEST(Save, RefusesAListThatBeginsWithTheOrLine) {
  expect_refused({{"=== ODER ===", -2}, {"Menge = 1", 6}}, "T194");
}

TEST(Save, RefusesAListThatEndsWithTheOrLine) {
  expect_refused({{"Menge = 1", 6}, {"=== ODER ===", -2}}, "T193");
}

TEST(Save, RefusesAListOfTheOrLineByItsBeginning) {
  expect_refused({{"=== ODER ===", -2}}, "T194");
}

// It would be stored without its identifier.
TEST(Save, RefusesALineWhoseFieldIsNotOffered) {
  for (const auto action :
       {&F_Selection::btnSaveModelle_Click, &F_Selection::btnSaveModelleAs_Click}) {
    ModelsHost host;
    host.fill_lines({{"Menge = 1", 6}, {"Unbekannt = 1", 9}});
    if (action == &F_Selection::btnSaveModelleAs_Click) host.expect_name("Drei");
    EXPECT_THROW((host.editor.get()->*action)(), InvalidArgument);
    EXPECT_THAT(host.connection->statements(), IsEmpty());
    EXPECT_EQ(host.models(), kTwoModels);
    EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
  }
}

// --- Delete

TEST(Delete, RemovesTheModelFromDatabaseAndList) {
  ModelsHost host;
  host.suite->answers().standard_model = 4;
  host.editor->btnDeleteModelle_Click();
  const Texts said = host.said();
  const Texts begun = host.state_of(3) + Texts({executed("DELETE FROM MODELS WHERE ID = 3"),
                                                "standard_model('VERLOHN', 0)"});
  ASSERT_GE(said.size(), begun.size());
  EXPECT_EQ(Texts(said.begin(), said.begin() + static_cast<std::ptrdiff_t>(begun.size())), begun);
  EXPECT_EQ(host.connection->statements(),
            Texts({model_state_query("VERLOHN", 3), "DELETE FROM MODELS WHERE ID = 3"}));
  EXPECT_EQ(host.models(), (Models{{"Neu", 4}}));
  EXPECT_EQ(host.editor->Model.index(), -1);
  EXPECT_EQ(host.editor->txtStandard.text(), "Neu");
}

TEST(Delete, LooksUpTheStandardWhileTheModelIsStillListed) {
  ModelsHost host;
  host.suite->answers().standard_model = 3;
  host.editor->btnDeleteModelle_Click();
  EXPECT_EQ(host.editor->txtStandard.text(), "Alt");
}

TEST(Delete, BringsTheListButtonsUpToDate) {
  ModelsHost host;
  host.fill_lines({{"=== ODER ===", -2}, {"=== ODER ===", -2}});
  host.editor->cmdUp.set_enabled(true);
  host.editor->cmdDown.set_enabled(false);
  host.editor->btnDeleteModelle_Click();
  EXPECT_EQ(host.editor->ListCriteria.index(), 0);
  EXPECT_FALSE(host.editor->cmdUp.enabled());
  EXPECT_TRUE(host.editor->cmdDown.enabled());
  EXPECT_EQ(host.lines().size(), 2U) << "the criteria stay";
}

TEST(Delete, WithoutASelectedModelAsksNothing) {
  ModelsHost host;
  host.select(-1);
  host.editor->btnDeleteModelle_Click();
  EXPECT_THAT(host.connection->statements(), IsEmpty());
  EXPECT_EQ(host.models(), kTwoModels);
}

// --- Standard

TEST(Standard, SetsTheMarkWithinTheClassOfTheModel) {
  ModelsHost host;
  host.suite->answers().standard_model = 3;
  host.editor->chkStandard.click();
  EXPECT_TRUE(host.editor->chkStandard.checked());
  EXPECT_EQ(
      host.said(),
      host.state_of(3) +
          Texts({"restrict('MODELS', '', 7)", executed(standard_of("VERLOHN", 3, " {MODELS,7}")),
                 "pointer hourglass", "pointer default", "standard_model('VERLOHN', 0)"}));
  EXPECT_EQ(host.editor->txtStandard.text(), "Alt");
}

TEST(Standard, ClearsTheMarkOfTheModelAlone) {
  ModelsHost host;
  host.answer_model(4, {0, 0, Value(), Value(), 1});
  host.select(1);
  ASSERT_TRUE(host.editor->chkStandard.checked());
  host.editor->txtStandard.set_text("Neu");
  host.editor->chkStandard.click();
  EXPECT_EQ(host.said(),
            host.state_of(4) +
                Texts({executed("UPDATE MODELS SET STANDARD = 0 WHERE ID = 4"), "pointer hourglass",
                       "pointer default", "standard_model('VERLOHN', 0)"}));
  EXPECT_FALSE(host.editor->chkStandard.checked());
  EXPECT_EQ(host.editor->txtStandard.text(), "");
}

TEST(Standard, WithoutASelectedModelWritesNothing) {
  ModelsHost host;
  host.select(-1);
  host.editor->chkStandard.click();
  host.editor->chkStandard.set_checked(false);
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

TEST(Standard, OfASharedRelationIsThatOfItsModelRelation) {
  RunHost host;
  host.offer("LOG", {{"Holzart", 5}});
  host.answer_models("2ABR1", {{3, "Alt"}});
  host.answer_criteria(3, "");
  host.start("2ABR5");
  host.forget();
  host.editor->chkStandard.set_checked(true);
  EXPECT_EQ(host.connection->statements(),
            Texts({model_state_query("2ABR1", 3), standard_of("2ABR1", 3, " {MODELS,7}")}));
}

// --- Lock

std::string lock_of(int value, int model) {
  return "UPDATE MODELS SET NICHT_ANDERBAR = " + std::to_string(value) +
         ",STANDARD = 0,ID_USER = ISNULL(ID_USER, 42) WHERE ID IN (" + std::to_string(model) + ")";
}

TEST(Lock, WritesTheBoxAndShowsTheModelAnew) {
  ModelsHost host;
  host.answer_model(3, {1, 0, Value(), Value(), 0});
  host.editor->txtStandard.set_text("Alt");
  host.editor->Check1.click();
  EXPECT_EQ(host.said(),
            Texts({executed(lock_of(1, 3)), "standard_model('VERLOHN', 0)"}) + host.state_of(3));
  EXPECT_TRUE(host.editor->Check1.checked());
  EXPECT_EQ(host.editor->txtStandard.text(), "");
  host.forget();
  host.answer_model(3, {0, 0, Value(), Value(), 0});
  host.suite->answers().standard_model = 4;
  host.editor->Check1.click();
  EXPECT_EQ(host.said(),
            Texts({executed(lock_of(0, 3)), "standard_model('VERLOHN', 0)"}) + host.state_of(3));
  EXPECT_FALSE(host.editor->Check1.checked());
  EXPECT_EQ(host.editor->txtStandard.text(), "Neu");
}

TEST(Lock, ShowsThatTheStandardMarkIsLost) {
  ModelsHost host;
  host.answer_model(4, {0, 0, Value(), Value(), 1});
  host.select(1);
  ASSERT_TRUE(host.editor->chkStandard.checked());
  host.answer_model(4, {1, 0, Value(), Value(), 0});
  host.editor->Check1.click();
  EXPECT_FALSE(host.editor->chkStandard.checked());
  EXPECT_EQ(host.connection->statements(), Texts({lock_of(1, 4), model_state_query("VERLOHN", 4)}));
}

TEST(Lock, WithoutASelectedModelIsReset) {
  ModelsHost host;
  host.select(-1);
  host.editor->Check1.click();
  EXPECT_FALSE(host.editor->Check1.checked());
  EXPECT_THAT(host.said(), IsEmpty());
}

// --- Access level

std::string binding_of(const std::string& level, int model) {
  return "UPDATE MODELS SET ID_ACCESS_LEVELS = " + level +
         ",STANDARD = 0 WHERE ID = " + std::to_string(model);
}

TEST(AccessLevel, WritesTheUsersLevelAndShowsTheModelAnew) {
  ModelsHost host;
  host.answer_model(3, {0, 0, 7, "Nord", 0});
  host.editor->chkAL.click();
  EXPECT_EQ(host.said(), Texts({executed(binding_of("7", 3)), "standard_model('VERLOHN', 0)"}) +
                             host.state_of(3));
  EXPECT_TRUE(host.editor->chkAL.checked());
  EXPECT_EQ(host.editor->chkAL.caption(), "Nord");
  host.forget();
  host.answer_model(3, {0, 0, Value(), Value(), 0});
  host.editor->chkAL.click();
  EXPECT_EQ(host.said(), Texts({executed(binding_of("NULL", 3)), "standard_model('VERLOHN', 0)"}) +
                             host.state_of(3));
  EXPECT_FALSE(host.editor->chkAL.checked());
  EXPECT_EQ(host.editor->chkAL.caption(), "");
}

TEST(AccessLevel, OfADisabledBoxIsNone) {
  ModelsHost host;
  host.editor->chkAL.set_enabled(false);
  host.editor->chkAL.set_checked(true);
  EXPECT_EQ(host.connection->statements(),
            Texts({binding_of("NULL", 3), model_state_query("VERLOHN", 3)}));
  EXPECT_FALSE(host.editor->chkAL.checked()) << "the database says so";
}

TEST(AccessLevel, WithoutASelectedModelIsReset) {
  ModelsHost host;
  host.select(-1);
  host.editor->chkAL.click();
  EXPECT_FALSE(host.editor->chkAL.checked());
  EXPECT_THAT(host.said(), IsEmpty());
}

// --- The boxes write nothing while they are set to what the database says

const std::vector<Row>& every_state() {
  static const std::vector<Row> states = {{1, 0, 5, "Revier", 1},      {0, 1, Value(), Value(), 0},
                                          {1, 1, Value(), Value(), 1}, {0, 0, 5, "Revier", 0},
                                          {1, 0, Value(), Value(), 0}, {0, 0, 5, Value(), 1},
                                          {0, 0, Value(), Value(), 1}};
  return states;
}

void expect_shown(const F_Selection& editor, const Row& state) {
  EXPECT_EQ(editor.Check1.checked(), state[0] == Value(1));
  EXPECT_EQ(editor.chkStandard.checked(), state[4] == Value(1));
  EXPECT_EQ(editor.chkAL.checked(), !state[2].is_null());
  EXPECT_EQ(editor.chkAL.caption(), state[3].is_null() ? "" : state[3].text());
}

TEST(ModelBoxes, WriteNothingWhenAModelIsClicked) {
  ModelsHost host;
  for (const Row& state : every_state()) {
    host.answer_model(3, state);
    host.forget();
    host.editor->Model_Click();
    EXPECT_EQ(host.said(), host.state_of(3));
    expect_shown(*host.editor, state);
  }
}

TEST(ModelBoxes, WriteNothingWhenTheDialogIsShown) {
  for (const Row& before : every_state()) {
    for (const Row& state : every_state()) {
      ModelsHost host;
      host.answer_model(3, before);
      host.editor->Model_Click();
      host.answer_model(3, state);
      host.forget();
      host.run("", false, [&] { expect_shown(*host.editor, state); });
      EXPECT_EQ(host.connection->statements(), Texts({model_state_query("VERLOHN", 3)}));
    }
  }
}

TEST(ModelBoxes, AreSetUnderTheHourglassInRunToo) {
  ModelsHost host;
  host.answer_model(3, {1, 0, 5, "Revier", 1});
  std::vector<PointerShape> shapes;
  for (CheckBox* box : {&host.editor->Check1, &host.editor->chkStandard, &host.editor->chkAL}) {
    box->subscribe([&shapes, &host, box, was_checked = false]() mutable {
      if (box->checked() != was_checked) shapes.push_back(host.user->pointer());
      was_checked = box->checked();
    });
  }
  host.run();
  EXPECT_THAT(shapes, ElementsAre(PointerShape::kHourglass, PointerShape::kHourglass,
                                  PointerShape::kHourglass));
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
}

TEST(ModelBoxes, IgnoreClicksWhileThePointerIsBusy) {
  ModelsHost host;
  host.user->set_pointer(PointerShape::kHourglass);
  host.forget();
  for (CheckBox* box : {&host.editor->Check1, &host.editor->chkStandard, &host.editor->chkAL}) {
    box->click();
    EXPECT_TRUE(box->checked()) << box->name();
  }
  host.editor->Check1_Click();
  host.editor->chkStandard_Click();
  host.editor->chkAL_Click();
  EXPECT_THAT(host.said(), IsEmpty());
  host.select(-1);
  host.user->set_pointer(PointerShape::kHourglass);
  host.forget();
  host.editor->Check1.click();
  EXPECT_TRUE(host.editor->Check1.checked()) << "nor are they reset";
  EXPECT_THAT(host.said(), IsEmpty());
}

// --- Buttons

TEST(ModelButtons, DoWhatTheirHandlersDo) {
  ModelsHost host;
  host.editor->btnSaveModelle.click();
  EXPECT_EQ(host.connection->statements(),
            Texts({model_state_query("VERLOHN", 3), ModelsHost::text_query(3), update_of("", 3)}));
  host.forget();
  host.expect_name("");
  host.editor->btnSaveModelleAs.click();
  EXPECT_EQ(host.said(), Texts({kQuestion}));
  host.forget();
  host.editor->btnDeleteModelle.click();
  EXPECT_EQ(host.connection->statements(),
            Texts({model_state_query("VERLOHN", 3), "DELETE FROM MODELS WHERE ID = 3"}));
}

// --- Models that are gone

const std::string kGone = "The model 'Alt' has been deleted meanwhile.";

// Nothing but what the action has read is different.
void expect_untouched(const ModelsHost& host, const std::vector<ListEntry>& lines) {
  EXPECT_EQ(host.editor->ListCriteria.entries(), lines);
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
  EXPECT_EQ(host.models(), kTwoModels);
  EXPECT_EQ(host.editor->Model.index(), 0);
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
}

const std::vector<ListEntry> kOneLine = {{"Holzart = 'FI'", 5}};

TEST(GoneModel, IsNotSavedAndSaysSo) {
  ModelsHost host;
  host.fill_lines(kOneLine);
  host.delete_row(3);
  EXPECT_EQ(error_of<NoCurrentRecord>([&] { host.editor->btnSaveModelle_Click(); }), kGone);
  EXPECT_EQ(host.connection->statements(),
            Texts({model_state_query("VERLOHN", 3), ModelsHost::text_query(3)}));
  expect_untouched(host, kOneLine);
}

// It goes between the reading and the statement, or was never loaded.
TEST(GoneModel, IsNotSavedWhenTheStatementChangesNoRow) {
  ModelsHost host;
  host.fill_lines(kOneLine);
  host.connection->answer_execute(update_of("5 = ''FI'';", 3), 0);
  EXPECT_EQ(error_of<NoCurrentRecord>([&] { host.editor->btnSaveModelle_Click(); }), kGone);
  expect_untouched(host, kOneLine);
  host.connection->answer_execute(update_of("5 = ''FI'';", 4), 0);
  host.select(1);
  EXPECT_EQ(error_of<NoCurrentRecord>([&] { host.editor->btnSaveModelle_Click(); }),
            "The model 'Neu' has been deleted meanwhile.");
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
}

TEST(GoneModel, IsNotSavedUnderItsNameEither) {
  ModelsHost host;
  host.fill_lines(kOneLine);
  host.delete_row(4);
  host.expect_name("Neu");
  host.expect_overwrite_question("Neu", MessageResult::kYes);
  EXPECT_EQ(error_of<NoCurrentRecord>([&] { host.editor->btnSaveModelleAs_Click(); }),
            "The model 'Neu' has been deleted meanwhile.");
  expect_untouched(host, kOneLine);
  host.connection->answer_executes(1);
  host.answer_new_model("Drei", 21);
  host.save_as("Drei");
  EXPECT_EQ(host.editor->caption(), "Selektion: Drei") << "the list can be kept under another name";
}

TEST(GoneModel, LeavesTheListWhenItIsDeleted) {
  ModelsHost host;
  host.fill_lines(kOneLine);
  host.delete_row(3);
  host.editor->btnDeleteModelle_Click();
  EXPECT_EQ(host.models(), (Models{{"Neu", 4}}));
  EXPECT_EQ(host.editor->ListCriteria.entries(), kOneLine);
}

TEST(GoneModel, GetsNoProperty) {
  for (CheckBox SelectionDialog::*const member :
       {&SelectionDialog::chkStandard, &SelectionDialog::Check1, &SelectionDialog::chkAL}) {
    for (const bool before : {false, true}) {
      ModelsHost host;
      CheckBox& box = (*host.editor).*member;
      SCOPED_TRACE(box.name() + (before ? " of a set box" : ""));
      // The state is still the old one when it is read: the row goes just before the statement.
      host.answer_model(3,
                        {before ? 1 : 0, 0, before ? Value(7) : Value(), Value(), before ? 1 : 0});
      host.select(0);
      ASSERT_EQ(box.checked(), before);
      host.connection->answer_executes(0);
      EXPECT_EQ(error_of<NoCurrentRecord>([&] { box.click(); }), kGone);
      EXPECT_EQ(box.checked(), before);
      EXPECT_TRUE(host.connection->statements().back().starts_with("UPDATE MODELS SET "));
      EXPECT_THAT(host.suite->calls_of("standard_model"), IsEmpty());
      expect_untouched(host, {});
    }
  }
}

// --- Two users on one model

TEST(ChangedModel, IsOverwrittenWhenTheUserAgrees) {
  for (const MessageResult answer : {MessageResult::kNo, MessageResult::kYes}) {
    ModelsHost host;
    host.fill_lines(kOneLine);
    host.change_criteria(3, "6 = 1;");
    host.expect_changed_question("Alt", answer);
    host.editor->btnSaveModelle_Click();
    const Texts asked =
        host.state_of(3) + Texts({opened(ModelsHost::text_query(3)),
                                  "message '" + ModelsHost::changed_question("Alt") +
                                      "', flags 308, title 'Kestrova'"});
    EXPECT_EQ(host.said(), answer == MessageResult::kNo
                               ? asked
                               : asked + host.state_of(3) +
                                     Texts({opened(ModelsHost::text_query(3)),
                                            executed(update_of("5 = ''FI'';", 3))}));
    expect_untouched(host, kOneLine);
  }
}

TEST(ChangedModel, IsAskedAboutInTheUsersLanguage) {
  ModelsHost host;
  host.context.strLanguage = "EN";
  host.run("", false, [&] {
    host.change_criteria(3, "6 = 1;");
    host.user->expect_message(
        {"The model 'Alt' has been changed since it was loaded or saved here. "
         "Shall it be overwritten all the same?",
         308, "Kestrova", "", 0},
        MessageResult::kNo);
    host.editor->btnSaveModelle_Click();
  });
}

TEST(ChangedModel, IsAskedAboutAgainWhenItChangesMeanwhile) {
  ModelsHost host;
  host.change_criteria(3, "6 = 1;");
  host.answer_criteria(3, "6 = 2;");
  host.expect_changed_question("Alt", MessageResult::kYes);
  host.expect_changed_question("Alt", MessageResult::kNo);
  host.editor->btnSaveModelle_Click();
  host.user->verify();
  EXPECT_THAT(host.connection->statements(), Each(::testing::StartsWith("SELECT ")));
}

TEST(ChangedModel, MayBeLockedOrDeletedWhileTheUserIsAsked) {
  ModelsHost host;
  host.set_options(false, true, true, true);
  host.change_criteria(3, "6 = 1;");
  host.answer_state(model_state_query("VERLOHN", 3), {1, 0, Value(), Value(), 0});
  host.expect_changed_question("Alt", MessageResult::kYes);
  EXPECT_THROW(host.editor->btnSaveModelle_Click(), InvalidArgument);

  ModelsHost other;
  other.change_criteria(3, "6 = 1;");
  other.connection->answer(ModelsHost::text_query(3), {{"MODEL"}});
  other.expect_changed_question("Alt", MessageResult::kYes);
  EXPECT_EQ(error_of<NoCurrentRecord>([&] { other.editor->btnSaveModelle_Click(); }), kGone);
}

TEST(ChangedModel, IsOneThatDiffersFromWhatWasSavedHere) {
  ModelsHost host;
  host.fill_lines(kOneLine);
  host.editor->btnSaveModelle_Click();
  host.change_criteria(3, "5 = 'FI';");
  host.editor->btnSaveModelle_Click();  // as it was saved
  host.change_criteria(3, "");          // as it was loaded
  host.expect_changed_question("Alt", MessageResult::kNo);
  host.editor->btnSaveModelle_Click();
}

// What was refused has not been seen.
TEST(ChangedModel, IsAskedAboutEachTime) {
  ModelsHost host;
  host.change_criteria(3, "6 = 1;");
  for (int i = 0; i < 2; ++i) {
    host.expect_changed_question("Alt", MessageResult::kNo);
    host.editor->btnSaveModelle_Click();
    host.user->verify();
  }
  host.editor->Model_DblClick();
  EXPECT_THAT(host.lines(), ElementsAre("Menge = 1"));
  host.editor->btnSaveModelle_Click();
}

TEST(ChangedModel, IsKnownToWhoHasMadeIt) {
  ModelsHost host;
  host.fill_lines(kOneLine);
  host.answer_new_model("Drei", 21);
  host.save_as("Drei");
  host.answer_criteria(21, "5 = 'FI';");
  host.editor->btnSaveModelle_Click();
  host.change_criteria(21, "6 = 1;");
  host.expect_changed_question("Drei", MessageResult::kNo);
  host.editor->btnSaveModelle_Click();
}

TEST(ChangedModel, IsAskedAboutBehindTheNameToo) {
  ModelsHost host;
  host.select(1);
  host.editor->Model_DblClick();
  host.select(0);
  host.change_criteria(4, "6 = 1;");
  host.fill_lines(kOneLine);
  host.expect_name("Neu");
  host.expect_overwrite_question("Neu", MessageResult::kYes);
  host.expect_changed_question("Neu", MessageResult::kNo);
  host.editor->btnSaveModelleAs_Click();
  EXPECT_THAT(host.connection->statements(), Each(::testing::StartsWith("SELECT ")));
  EXPECT_EQ(host.editor->Model.index(), 0) << "nothing changes";
  EXPECT_EQ(host.editor->caption(), "Selektion: Neu");
}

// Of a model that was never loaded here, nobody has expected a text.
TEST(ChangedModel, IsNoneThatWasNeverLoaded) {
  ModelsHost host;
  host.change_criteria(4, "6 = 1;");
  host.select(1);
  host.editor->btnSaveModelle_Click();
  EXPECT_EQ(host.connection->statements(),
            Texts({model_state_query("VERLOHN", 4), update_of("", 4)}));
}

TEST(ChangedModel, IsForgottenWithTheRelation) {
  ModelsHost host;
  host.answer_models("VERLOHN", {{4, "Neu"}, {3, "Alt"}});
  host.connection->open(models_query("VERLOHN"), CursorType::kForwardOnly, LockType::kReadOnly);
  host.start("VERLOHN");
  host.select(1);
  host.change_criteria(3, "6 = 1;");
  host.editor->btnSaveModelle_Click();
  EXPECT_EQ(host.connection->statements(),
            Texts({model_state_query("VERLOHN", 3), update_of("", 3)}));
}

// --- A lock set meanwhile

// The user may overwrite models, but no locked ones; "Alt" and "Neu" have been locked meanwhile.
struct LockedHost : ModelsHost {
  LockedHost() {
    set_options(true, false, true, true);
    select(0);
    fill_lines(kOneLine);
    answer_model(3, {1, 0, Value(), Value(), 0});
    answer_model(4, {1, 0, Value(), Value(), 0});
    EXPECT_TRUE(editor->btnSaveModelle.enabled());
  }

  template <class Action>
  void expect_locked(const std::string& name, const Action& action) {
    EXPECT_EQ(error_of<InvalidArgument>(action),
              "The model '" + name + "' is locked: it stays as it is.");
    EXPECT_THAT(connection->statements(), Each(::testing::StartsWith("SELECT ")));
    expect_untouched(*this, kOneLine);
    EXPECT_TRUE(editor->Check1.checked()) << "the box shows the lock";
    EXPECT_FALSE(editor->btnSaveModelle.enabled());
    EXPECT_FALSE(editor->btnDeleteModelle.enabled());
    EXPECT_FALSE(editor->chkStandard.enabled());
  }
};

TEST(LockedMeanwhile, IsNotSaved) {
  LockedHost host;
  host.expect_locked("Alt", [&] { host.editor->btnSaveModelle.click(); });
}

TEST(LockedMeanwhile, IsNotDeleted) {
  LockedHost host;
  host.expect_locked("Alt", [&] { host.editor->btnDeleteModelle.click(); });
}

TEST(LockedMeanwhile, IsNotMadeTheStandard) {
  LockedHost host;
  host.expect_locked("Alt", [&] { host.editor->chkStandard.click(); });
  EXPECT_FALSE(host.editor->chkStandard.checked());
}

TEST(LockedMeanwhile, KeepsItsStandardMark) {
  LockedHost host;
  host.answer_model(3, {0, 0, Value(), Value(), 1});
  host.select(0);
  host.answer_model(3, {1, 0, Value(), Value(), 1});
  host.expect_locked("Alt", [&] { host.editor->chkStandard.click(); });
  EXPECT_TRUE(host.editor->chkStandard.checked());
}

TEST(LockedMeanwhile, IsNotSavedUnderItsNameEither) {
  LockedHost host;
  host.expect_name("Neu");
  host.expect_overwrite_question("Neu", MessageResult::kYes);
  host.expect_locked("Neu", [&] { host.editor->btnSaveModelleAs.click(); });
}

TEST(LockedMeanwhile, IsChangedByWhoMayChangeLockedModels) {
  ModelsHost host;
  host.answer_model(3, {1, 0, Value(), Value(), 0});
  host.editor->btnSaveModelle_Click();
  EXPECT_EQ(host.connection->statements().back(), update_of("", 3));
  host.editor->chkStandard.click();
  EXPECT_EQ(host.connection->statements().back(), standard_of("VERLOHN", 3, " {MODELS,7}"));
  host.editor->btnDeleteModelle_Click();
  EXPECT_EQ(host.models(), (Models{{"Neu", 4}}));
}

// Each of the rights that enable the buttons for locked models.
TEST(LockedMeanwhile, NeedsEveryRightOnLockedModels) {
  for (int missing = 0; missing < 4; ++missing) {
    SCOPED_TRACE(missing);
    ModelsHost host;
    host.set_options(missing != 0, missing != 1, missing != 2, missing != 3);
    host.answer_model(3, {1, 0, Value(), Value(), 0});
    EXPECT_THROW(host.editor->btnSaveModelle_Click(), InvalidArgument);
  }
}

// --- For reading only

TEST(ReadOnlyModels, AreNotWrittenWhateverIsCalled) {
  ModelsHost host;
  host.run("", true, [&] {
    for (const auto action :
         {&F_Selection::btnSaveModelle_Click, &F_Selection::btnSaveModelleAs_Click,
          &F_Selection::btnDeleteModelle_Click, &F_Selection::chkStandard_Click,
          &F_Selection::Check1_Click, &F_Selection::chkAL_Click}) {
      host.forget();
      (host.editor.get()->*action)();
      EXPECT_THAT(host.said(), IsEmpty());
    }
    expect_untouched(host, {});
  });
}

// --- What is enabled

// OK, the criteria controls, their frames and the list of models, in the order in which they are
// enabled.
std::vector<Control*> criteria_controls(F_Selection& editor) {
  return {&editor.btnOk,      &editor.Frame1,    &editor.btnPlus,   &editor.btnMinus,
          &editor.btnReplace, &editor.btnInsert, &editor.Formula,   &editor.cboOperator,
          &editor.cboValue,   &editor.cboField,  &editor.btnDelete, &editor.btnNew,
          &editor.btnLast,    &editor.btnNext,   &editor.btnPrev,   &editor.btnFirst,
          &editor.btnOr,      &editor.Frame4,    &editor.Model};
}

TEST(ModelControls, AreEnabledByOptionsAndLock) {
  int rows = 0;
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/model_controls.tsv")) {
    SCOPED_TRACE(row.place());
    ModelsHost host;
    host.set_options(row.flag("blnChangeModels"), row.flag("optB018"), row.flag("optB049"),
                     row.flag("optB057"));
    host.answer_model(3, {row.flag("locked") ? 1 : 0, 0, Value(), Value(), 0});
    F_Selection& editor = *host.editor;
    host.run("", row.flag("blnReadOnly"), [&] {
      for (const Control* control : std::initializer_list<const Control*>{
               &editor.Check1, &editor.chkAL, &editor.btnSaveModelleAs, &editor.btnSaveModelle,
               &editor.btnDeleteModelle, &editor.chkStandard}) {
        EXPECT_EQ(control->enabled(), row.flag(control->name())) << control->name();
      }
      for (const Control* control : criteria_controls(editor)) {
        EXPECT_EQ(control->enabled(), row.flag("criteria")) << control->name();
      }
      EXPECT_TRUE(editor.btnCancel.enabled());
    });
    ++rows;
  }
  EXPECT_EQ(rows, 64);
}

TEST(ModelControls, AreEnabledInTheirOrder) {
  ModelsHost host;
  Texts order;
  Texts expected;
  for (Control* control : criteria_controls(*host.editor)) {
    expected.push_back(control->name());
    control->subscribe([&order, control] { order.push_back(control->name()); });
  }
  host.editor->Model_Click();
  EXPECT_EQ(order, expected);
}

TEST(ModelControls, FollowTheLockAtOnce) {
  ModelsHost host;
  host.set_options(true, false, true, true);
  host.editor->Model_Click();
  EXPECT_TRUE(host.editor->btnDeleteModelle.enabled());
  host.answer_model(3, {1, 0, Value(), Value(), 0});
  host.editor->Check1.set_checked(true);
  EXPECT_FALSE(host.editor->btnSaveModelle.enabled());
  EXPECT_FALSE(host.editor->btnDeleteModelle.enabled());
  EXPECT_FALSE(host.editor->chkStandard.enabled());
}

}  // namespace
}  // namespace kestrova::test
