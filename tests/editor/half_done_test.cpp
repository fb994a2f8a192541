// What an action that fails half-way leaves behind: a filter is loaded, stored and bound whole or
// not at all, and the next action works.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>

#include "tests/editor/failing_calls.h"

namespace kestrova::test {
namespace {

using ::testing::AnyOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Lines = std::vector<ListEntry>;
using Texts = std::vector<std::string>;

const ListEntry kOr = {"=== ODER ===", -2};

const std::string kContract = "SELECT * FROM VERTRAG_PREISE WHERE ID = 12";
const std::string kContractValue = "SELECT SELEKTION_VALUE FROM VERTRAG_PREISE WHERE ID = 12";

// --- What a host shows

std::string shown(const EntryList& list) {
  std::string text = list.name() + " [" + std::to_string(list.index()) + "]";
  for (const ListEntry& entry : list.entries()) {
    text += ", " + entry.text + " (" + std::to_string(entry.item_data) + ")";
  }
  return text + "\n";
}

// All of the filter that a user sees, and what the host has received.
std::string state_of(const RunHost& host) {
  const F_Selection& editor = *host.editor;
  std::string state = editor.caption() + "\n";
  for (const EntryList* list : std::initializer_list<const EntryList*>{
           &editor.ListCriteria, &editor.cboField, &editor.cboOperator, &editor.cboValue,
           &editor.Model}) {
    state += shown(*list);
  }
  for (const std::string& text :
       {editor.cboField.text(), editor.cboOperator.text(), editor.cboValue.text(),
        editor.value_text(), editor.Formula.text(), editor.txtStandard.text(),
        module_state().strSelektion_Fr_Wh, module_state().strSelektionFormula}) {
    state += "'" + text + "'\n";
  }
  return state;
}

// A window that breaks down while it is shown.
class BrokenWindow : public ScriptedUserInterface {
 public:
  using ScriptedUserInterface::ScriptedUserInterface;
  void show_modal(ModalDialog&) override { throw InvalidArgument("The window is lost."); }
};

// Relations with the text field Holzart (10) and the number Anzahl (11) and with the model "Alt".
struct HalfDoneHost : RunHost {
  HalfDoneHost() { answering = let_user_answer(*this); }

  // The answer from now on: one that was valid so far is passed over.
  void answer_now(const std::string& sql, const Columns& columns, Rows rows) {
    connection->answer(sql, columns, std::move(rows));
    connection->open(sql, CursorType::kForwardOnly, LockType::kReadOnly);
  }

  // Fields of SELEKTION; there is none with the number 99.
  void offer_selektion() {
    answer_fields("SONST", sonst_fields());
    for (const OfferedField& field : sonst_fields()) {
      const int id = field.row.id;
      know_lookups(field.row);
      connection->answer(text_number_query(id), {{"ID_STRING", FieldType::kInteger}}, {{100 + id}});
      suite->answers().texts[100 + id] = field.custom_text.empty() ? field.text : field.custom_text;
    }
    connection->answer(text_number_query(99), {{"ID_STRING", FieldType::kInteger}});
    answer_values("SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA", {"FI", "KI"});
    answer_values(plain_query("ANZAHL"), {1, 2});
    answer_values(plain_query("DATUM"), {"01.02.2024"});
  }

  // Fields that the suite knows.
  void offer_catalogue(const std::string& list_key) {
    offer(list_key, {{"Holzart", 10}, {"Anzahl", 11}});
    suite->answers().field_formats = {{11, "0"}};
    const std::string contracts =
        " WHERE FHP_IMPORT.ERRORTEXT IS NULL AND FHP_IMPORT.ID_FHP_IMPORT IS NULL";
    for (const std::string& id : {std::string("10"), std::string("11")}) {
      for (const std::string& condition : {std::string(), contracts}) {
        answer_values("SELECT DISTINCT EXPR(LOG," + id + ") FROM <LOG,0,><LOG," + id + ",R7>" +
                          condition + " ORDER BY 1",
                      {"1", "FI"});
      }
    }
  }

  static std::string text_number_query(int id) {
    return "SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(id);
  }

  void show(const std::string& subset = "") {
    Results results;
    editor->Run(context, results.text, results.formula, false, subset);
  }

  // The list of before, its second line selected and shown.
  void fill_old_lines() {
    editor->ListCriteria.clear();
    fill_lines({{"Anzahl = 1", 11}, {"Holzart = 'KI'", 10}});
    editor->ListCriteria.set_index(1);
  }

  std::shared_ptr<AnsweringUser> answering;

  // A failing call of the database (counted from here), or of the services.
  void fail_call(bool of_database, std::size_t k) {
    forget();
    connection->fail_on_call(of_database ? k : 0);
    suite->fail_on_call(of_database ? 0 : suite->calls_made() + k);
  }
  void fail_no_call() {
    connection->fail_on_call(0);
    suite->fail_on_call(0);
  }
};

// Calls of the database and of the services that an action makes.
struct Calls {
  std::size_t of_database = 0;
  std::size_t of_services = 0;
};

template <class Action>
Calls calls_of(HalfDoneHost& host, const Action& action) {
  host.forget();
  const std::size_t services = host.suite->calls_made();
  action();
  return {host.connection->calls_made(), host.suite->calls_made() - services};
}

// Runs the test for every call, as test(of_database, k).
template <class Test>
void for_every_call(const Calls& calls, const Test& test) {
  for (std::size_t k = 1; k <= calls.of_database; ++k) {
    SCOPED_TRACE("database call " + std::to_string(k));
    test(true, k);
  }
  for (std::size_t k = 1; k <= calls.of_services; ++k) {
    SCOPED_TRACE("service call " + std::to_string(k));
    test(false, k);
  }
}

// Whether the action fails with the scripted failure.
template <class Action>
bool fails(const Action& action) {
  try {
    action();
  } catch (const Error& error) {
    EXPECT_THAT(error.what(), AnyOf(::testing::StartsWith("scripted failure of call "),
                                    ::testing::StartsWith("scripted service failure of call ")));
    return true;
  }
  return false;
}

// --- Loading. Each source of criteria is a host that loads what it was provided with.

const std::string kNewCriteria = "10 = 'FI';=== ODER ===;11 > 5;";
const Lines kNewLines = {{"Holzart = 'FI'", 10}, kOr, {"Anzahl > 5", 11}};

struct ModelSource : HalfDoneHost {
  static constexpr const char* kName = "Model";
  static constexpr bool kIsShown = false;       // loading shows the dialog
  static constexpr bool kAsksSelektion = true;  // for the names of fields
  static constexpr const char* kNewCaption = "Selektion: Neu";

  ModelSource() {
    offer_selektion();
    answer_models("SONST", {{7, "Alt"}});
    answer_criteria(7, "");
    start("SONST");
    fill_old_lines();
    compose("Anzahl", ">", "7");
    editor->Model.set_entry_text(0, "Neu");
  }
  void provide(const std::string& criteria) {
    answer_now("SELECT MODEL FROM MODELS WHERE ID = 7", {{"MODEL"}}, {{criteria}});
  }
  void load() { editor->Model_DblClick(); }
};

struct CatalogueModelSource : HalfDoneHost {
  static constexpr const char* kName = "ModelOfACatalogueRelation";
  static constexpr bool kIsShown = false;
  static constexpr bool kAsksSelektion = false;
  static constexpr const char* kNewCaption = "Selektion: Neu";

  CatalogueModelSource() {
    offer_catalogue("LOG");
    answer_models("1EXP", {{7, "Alt"}});
    answer_criteria(7, "");
    start("1EXP");
    fill_old_lines();
    compose("Anzahl", ">", "7");
    editor->Model.set_entry_text(0, "Neu");
  }
  void provide(const std::string& criteria) {
    answer_now("SELECT MODEL FROM MODELS WHERE ID = 7", {{"MODEL"}}, {{criteria}});
  }
  void load() { editor->Model_DblClick(); }
};

struct PassedSource : HalfDoneHost {
  static constexpr const char* kName = "PassedCriteria";
  static constexpr bool kIsShown = false;
  static constexpr bool kAsksSelektion = true;
  static constexpr const char* kNewCaption = "Selektion: Alt";

  PassedSource() {
    offer_selektion();
    answer_models("SONST", {{7, "Alt"}});
    answer_criteria(7, "");
    start("SONST");
    fill_old_lines();
    compose("Anzahl", ">", "7");
  }
  void provide(const std::string& criteria) { criteria_ = criteria; }
  void load() { editor->FillListCriteria(context, criteria_, "SONST"); }

  std::string criteria_;
};

struct SubsetSource : HalfDoneHost {
  static constexpr const char* kName = "Subset";
  static constexpr bool kIsShown = true;
  static constexpr bool kAsksSelektion = false;
  static constexpr const char* kNewCaption = "Selektion";

  SubsetSource() {
    offer_catalogue("LOG");
    answer_models("NML", {{7, "Alt"}});
    answer_criteria(7, "");
    start("NML");
    fill_old_lines();
  }
  void provide(const std::string& criteria) { criteria_ = criteria; }
  void load() { show(criteria_); }

  std::string criteria_;
};

struct ContractSource : HalfDoneHost {
  ContractSource() {
    offer_catalogue("LOG");
    answer_models("VERTP", {{7, "Alt"}});
    answer_criteria(7, "");
    start("VERTP12");
    fill_old_lines();
  }
  void provide(const std::string& criteria) {
    answer_now(kContractValue, {{"SELEKTION_VALUE"}}, {{criteria}});
  }
  void load() { show(); }
};

template <class Source>
class Loading : public ::testing::Test {
 protected:
  template <class Failure>
  static void expect_nothing_changed(const std::string& criteria) {
    SCOPED_TRACE(criteria);
    Source host;
    host.provide(criteria);
    const std::string before = state_of(host);
    EXPECT_THROW(host.load(), Failure);
    EXPECT_EQ(state_of(host), before);
    EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
    host.provide(kNewCriteria);
    host.load();
    EXPECT_EQ(host.editor->ListCriteria.entries(), kNewLines);
    EXPECT_EQ(host.editor->caption(), Source::kNewCaption);
  }
};

using Sources = ::testing::Types<ModelSource, CatalogueModelSource, PassedSource, SubsetSource>;

struct SourceNames {
  template <class Source>
  static std::string GetName(int) {
    return Source::kName;
  }
};
TYPED_TEST_SUITE(Loading, Sources, SourceNames);

TYPED_TEST(Loading, ThatMeetsABadRecordChangesNothing) {
  this->template expect_nothing_changed<TypeMismatch>("10 = 'FI';X = 1;11 > 5;");
  this->template expect_nothing_changed<Overflow>("10 = 'FI';40000 = 1;11 > 5;");
  this->template expect_nothing_changed<InvalidArgument>("10 = 'FI';= 1;11 > 5;");
  if (TypeParam::kAsksSelektion) {
    this->template expect_nothing_changed<NoCurrentRecord>("10 = 'FI';99 = 1;11 > 5;");
  }
}

// Behind the loading the first line is shown; a failure of that leaves the new list and caption.
TYPED_TEST(Loading, ThatFailsAtAnyCallKeepsTheOldFilterOrHoldsTheNewOne) {
  TypeParam whole;
  whole.provide(kNewCriteria);
  // What precedes the loading shows the selected line once more.
  const Calls before_loading =
      TypeParam::kIsShown ? calls_of(whole, [&] { whole.editor->SetListButtons(); }) : Calls();
  const Calls calls = calls_of(whole, [&] { whole.load(); });
  const std::string after = state_of(whole);
  ASSERT_EQ(whole.editor->ListCriteria.entries(), kNewLines);

  int kept = 0;
  for_every_call(calls, [&](bool of_database, std::size_t k) {
    TypeParam host;
    host.provide(kNewCriteria);
    const std::string before = state_of(host);
    const Lines old_lines = host.editor->ListCriteria.entries();
    host.fail_call(of_database, k);
    const bool failed = fails([&] { host.load(); });
    host.fail_no_call();
    const bool keeps_old = host.editor->ListCriteria.entries() == old_lines;
    if (keeps_old) {
      EXPECT_TRUE(failed);
      EXPECT_EQ(host.editor->ListCriteria.index(), 1);
      EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
      if (k > (of_database ? before_loading.of_database : before_loading.of_services)) {
        EXPECT_EQ(state_of(host), before);
        ++kept;
      }
    } else {
      EXPECT_EQ(host.editor->ListCriteria.entries(), kNewLines);
      EXPECT_EQ(host.editor->caption(),
                failed && TypeParam::kIsShown ? "Selektion: Alt" : TypeParam::kNewCaption);
    }
    EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
    EXPECT_EQ(host.editor->start_state(), 0);
    EXPECT_FALSE(host.editor->is_visible());
    host.load();
    EXPECT_EQ(state_of(host), after);
  });
  EXPECT_GT(kept, 3);
}

// --- Loading the selection of a contract: whoever may open the dialog can mend it there, and it is
// not lost by an OK

// Shows the dialog; the user does the action in it.
template <class Action>
void show_contract(ContractSource& host, const Action& action) {
  host.answering->messages.clear();
  host.answering->action = action;
  host.show();
  host.answering->action = nullptr;
}

const std::string kStaysAsItIs =
    "Die Selektion des Vertrags konnte nicht geladen werden und bleibt deshalb, wie sie ist. Soll "
    "sie leer werden, erst 'Neu' drücken, dann 'OK'.";

std::string unreadable(const std::string& why) {
  return "Die Selektion des Vertrags kann nicht geladen werden; die Liste ist leer. Grund: " + why;
}

struct UnreadContract : ContractSource {
  UnreadContract() {
    answer_contract(kContract, "10 = 'Huber; Söhne';");
    provide("10 = 'Huber; Söhne';");
  }
  Value stored() {
    return connection->open(kContract, CursorType::kForwardOnly, LockType::kReadOnly)
        ->value("SELEKTION_VALUE");
  }
};

TEST(LoadingAContract, ThatMeetsABadRecordTellsTheUserAndShowsAnEmptyList) {
  for (const auto& [criteria, why] : std::initializer_list<std::pair<const char*, const char*>>{
           {"10 = 'FI';X = 1;", "'X' is no whole number."},
           {"10 = 'Huber; Söhne';", "'' is no whole number."},
       }) {
    ContractSource host;
    host.provide(criteria);
    bool is_shown = false;
    show_contract(host, [&] {
      is_shown = true;
      EXPECT_THAT(host.lines(), IsEmpty());
      EXPECT_FALSE(host.editor->cmdUp.enabled());
      EXPECT_FALSE(host.editor->cmdDown.enabled());
      EXPECT_TRUE(host.editor->btnInsert.enabled());
    });
    EXPECT_TRUE(is_shown);
    EXPECT_EQ(host.answering->messages, Texts({unreadable(why)}));
    host.provide(kNewCriteria);
    show_contract(host, [] {});
    EXPECT_EQ(host.editor->ListCriteria.entries(), kNewLines);
    EXPECT_THAT(host.answering->messages, IsEmpty());
  }
}

TEST(LoadingAContract, ThatFailedKeepsItsSelectionUntilTheUserHasAnother) {
  UnreadContract host;
  module_state().strSelektion_Fr_Wh = "old text";
  show_contract(host, [&] {
    host.editor->btnOk.click();
    EXPECT_TRUE(host.editor->is_visible());
  });
  EXPECT_EQ(host.answering->messages.back(), kStaysAsItIs);
  EXPECT_EQ(module_state().blnOK, "Falsch");
  EXPECT_EQ(module_state().strSelektion_Fr_Wh, "old text");
  EXPECT_EQ(host.stored(), Value("10 = 'Huber; Söhne';"));

  show_contract(host, [&] {
    host.compose("Holzart", "=", "FI");
    host.editor->btnInsert.click();
    host.editor->btnOk.click();
  });
  EXPECT_EQ(host.stored(), Value("10 = 'FI';"));
  EXPECT_EQ(module_state().blnOK, "Wahr");
}

TEST(LoadingAContract, ThatFailedIsEmptiedByNewAndOk) {
  UnreadContract host;
  show_contract(host, [&] {
    host.editor->btnNew.click();
    host.editor->btnOk.click();
  });
  EXPECT_EQ(host.answering->messages.size(), 1U);
  EXPECT_EQ(host.stored(), Value(""));
}

TEST(LoadingAContract, ThatFailedIsReplacedByAnyOtherList) {
  for (const bool is_model : {true, false}) {
    UnreadContract host;
    show_contract(host, [&] {
      if (is_model) {
        host.editor->Model_DblClick();  // a model without criteria
      } else {
        host.editor->FillListCriteria(host.context, "", "VERTP12");
      }
      host.editor->btnOk.click();
    });
    EXPECT_EQ(host.answering->messages.size(), 1U);
    EXPECT_EQ(host.stored(), Value(""));
  }
}

TEST(LoadingAContract, ThatFailedIsForgottenWithTheContract) {
  UnreadContract host;
  show_contract(host, [] {});
  host.answer_models("1EXP");
  host.start("1EXP");
  host.editor->btnOk_Click();
  EXPECT_EQ(module_state().blnOK, "Wahr");
  EXPECT_EQ(host.answering->messages.size(), 1U);
}

TEST(LoadingAContract, ThatFailsAtAnyCallKeepsTheOldListOrTellsTheUser) {
  ContractSource whole;
  whole.provide(kNewCriteria);
  const Calls calls = calls_of(whole, [&] { whole.load(); });
  const std::string after = state_of(whole);
  int told = 0;
  for_every_call(calls, [&](bool of_database, std::size_t k) {
    ContractSource host;
    host.provide(kNewCriteria);
    host.answering->messages.clear();
    const Lines old_lines = host.editor->ListCriteria.entries();
    host.fail_call(of_database, k);
    const bool failed = fails([&] { host.load(); });
    host.fail_no_call();
    const Texts& messages = host.answering->messages;
    if (!messages.empty()) {
      ++told;
      EXPECT_FALSE(of_database) << "errors of the connection reach the caller";
      EXPECT_FALSE(failed);
      EXPECT_THAT(
          messages,
          ElementsAre(::testing::StartsWith(unreadable("scripted service failure of call "))));
      EXPECT_THAT(host.lines(), IsEmpty());
    } else if (host.editor->ListCriteria.entries() == old_lines) {
      EXPECT_TRUE(failed);
    } else {
      EXPECT_EQ(host.editor->ListCriteria.entries(), kNewLines);
    }
    EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
    EXPECT_EQ(host.editor->start_state(), 0);
    EXPECT_FALSE(host.editor->is_visible());
    host.load();
    EXPECT_EQ(state_of(host), after);
  });
  EXPECT_GT(told, 3);
}

// --- Committing a contract

struct CommitHost : ContractSource {
  CommitHost() {
    answer_contract(kContract, "10 = 'OLD';");
    module_state().strSelektion_Fr_Wh = "old text";
    module_state().strSelektionFormula = "old formula";
  }

  Value stored() {
    return connection->open(kContract, CursorType::kForwardOnly, LockType::kReadOnly)
        ->value("SELEKTION_VALUE");
  }
};

const std::string kContractText =
    " FROM <LOG,0,><LOG,11,R7><LOG,10,R7> WHERE FHP_IMPORT.ERRORTEXT IS NULL AND "
    "FHP_IMPORT.ID_FHP_IMPORT IS NULL AND (EXPR(LOG,11) = 1 AND EXPR(LOG,10) = 'KI')";

TEST(CommitOfAContract, WithALineWhoseFieldIsNotOfferedChangesNothing) {
  CommitHost host;
  host.fill_lines({{"Revier = 'Nord'", 10}});
  const std::string before = state_of(host);
  host.forget();
  EXPECT_THROW(host.editor->btnOk_Click(), ItemNotFound);
  EXPECT_EQ(state_of(host), before);
  EXPECT_THAT(host.connection->statements(), IsEmpty());
  EXPECT_EQ(host.stored(), Value("10 = 'OLD';"));
  EXPECT_EQ(module_state().blnOK, "Wahr") << "the user has confirmed";
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);

  host.editor->ListCriteria.set_index(2);
  host.editor->btnDelete_Click();
  host.editor->btnOk_Click();
  EXPECT_EQ(host.stored(), Value("11 = 1;10 = 'KI';"));
  EXPECT_EQ(module_state().strSelektion_Fr_Wh, kContractText);
  EXPECT_EQ(module_state().strSelektionFormula, "Anzahl = 1 AND  AND Holzart = 'KI'");
}

TEST(CommitOfAContract, ThatFailsKeepsTheDialogOpen) {
  CommitHost host;
  host.fill_lines({{"Revier = 'Nord'", 10}});
  host.answer_now(kContractValue, {{"SELEKTION_VALUE"}}, {{"10 = 'FI';"}});
  let_user_answer<ScriptedUserInterface>(host);
  host.run("", false, [&host] {
    host.fill_lines({{"Revier = 'Nord'", 10}});
    EXPECT_THROW(host.editor->btnOk_Click(), ItemNotFound);
    EXPECT_TRUE(host.editor->is_visible());
  });
  EXPECT_EQ(host.stored(), Value("10 = 'OLD';"));
}

TEST(CommitOfAContract, ThatFailsAtAnyCallStoresNothingAndKeepsTheResults) {
  CommitHost whole;
  const Calls calls = calls_of(whole, [&] { whole.editor->btnOk_Click(); });
  ASSERT_EQ(whole.stored(), Value("11 = 1;10 = 'KI';"));
  for_every_call(calls, [&](bool of_database, std::size_t k) {
    CommitHost host;
    const std::string before = state_of(host);
    host.fail_call(of_database, k);
    EXPECT_TRUE(fails([&] { host.editor->btnOk_Click(); }));
    host.fail_no_call();
    EXPECT_EQ(state_of(host), before);
    EXPECT_EQ(host.stored(), Value("10 = 'OLD';"));
    EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
    host.editor->btnOk_Click();
    EXPECT_EQ(host.stored(), Value("11 = 1;10 = 'KI';"));
    EXPECT_EQ(module_state().strSelektion_Fr_Wh, kContractText);
  });
}

TEST(CommitOfAContract, WithoutARowFailsAndWritesNothing) {
  CommitHost host;
  host.answer_now(kContract, {{"ID", FieldType::kInteger}, {"SELEKTION_VALUE"}}, {});
  const std::string before = state_of(host);
  host.forget();
  EXPECT_THROW(host.editor->btnOk_Click(), NoCurrentRecord);
  EXPECT_EQ(state_of(host), before);
  EXPECT_EQ(host.connection->statements(), Texts({kContract}));
  EXPECT_EQ(std::count_if(host.log->begin(), host.log->end(),
                          [](const std::string& line) { return line.ends_with(" update"); }),
            0);
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

// --- Saving a model

const std::string kNotOffered =
    "The field of the criterion 'Revier = 'Nord'' is not offered any more: the model is not saved.";

struct SaveHost : CatalogueModelSource {
  SaveHost() {
    let_user_answer<ScriptedUserInterface>(*this);
    fill_lines({{"Revier = 'Nord'", 10}});
    forget();
  }

  void expect_refused(const std::function<void()>& save) {
    const Lines lines = editor->ListCriteria.entries();
    try {
      save();
      ADD_FAILURE() << "the model was saved";
    } catch (const InvalidArgument& error) {
      EXPECT_EQ(error.what(), kNotOffered);
    }
    EXPECT_EQ(editor->ListCriteria.entries(), lines);
    EXPECT_EQ(editor->caption(), "Selektion: Alt");
    EXPECT_THAT(connection->statements(), Each(::testing::StartsWith("SELECT ")));
    EXPECT_EQ(user->pointer(), PointerShape::kDefault);
    user->verify();
  }
};

TEST(SaveOfAModel, WithALineWhoseFieldIsNotOfferedWritesNothing) {
  SaveHost host;
  host.expect_refused([&] { host.editor->btnSaveModelle_Click(); });
}

TEST(SaveOfAModel, UnderANewNameWithSuchALineWritesNothing) {
  SaveHost host;
  host.user->expect_text_question("T198", "Kestrova", "Drei");
  host.expect_refused([&] { host.editor->btnSaveModelleAs_Click(); });
  EXPECT_EQ(host.texts_of(host.editor->Model), Texts({"Neu"}));
}

TEST(SaveOfAModel, OverAnOtherOneWithSuchALineWritesNothing) {
  SaveHost host;
  host.user->expect_text_question("T198", "Kestrova", "Neu");
  host.user->expect_message({"T245 'Neu' T197", 308, "Kestrova", "", 0}, MessageResult::kYes);
  host.expect_refused([&] { host.editor->btnSaveModelleAs_Click(); });
}

// --- Binding to a relation while another one is bound

// "SONST" with its standard model "Alt", whose lines are shown, and a criterion half composed.
struct BoundHost : HalfDoneHost {
  BoundHost() {
    offer_selektion();
    suite->answers().standard_model = 7;
    answer_models("SONST", {{7, "Alt"}});
    answer_criteria(7, "10 = 'KI';=== ODER ===;10 <> 'FI';");
    start("SONST");
    compose("Datum", "IN", "3.4.2021");
    editor->btnPlus_Click();
    suite->answers().standard_model = 9;
  }
  void bind() { start(code); }

  std::string code;
};

// "ANDERE", whose fields Lager (20) and Ort (21) stand in SELEKTION.
struct BindSelektion : BoundHost {
  BindSelektion() {
    code = "ANDERE";
    const auto field = [](int id, const char* name, const char* text, FieldType type) {
      return OfferedField{
          {.id = id, .name = name, .nickname = name, .table = "ORTE"}, text, "", type};
    };
    const std::vector<OfferedField> fields = {field(20, "LAGER", "Lager", FieldType::kVarWChar),
                                              field(21, "ORT", "Ort", FieldType::kInteger)};
    answer_fields("ANDERE", fields);
    connection->table("ORTE", {{"LAGER"}, {"ORT", FieldType::kInteger}});
    for (const OfferedField& offered : fields) {
      connection->answer(text_number_query(offered.row.id), {{"ID_STRING", FieldType::kInteger}},
                         {{100 + offered.row.id}});
      suite->answers().texts[100 + offered.row.id] = offered.text;
      answer_values("SELECT DISTINCT ORTE." + offered.row.name.text() +
                        " FROM ORTE WHERE  {ORTE,7} ORDER BY 1",
                    {"X"});
    }
    answer_models("ANDERE", {{8, "Eins"}, {9, "Neu"}});
    answer_criteria(9, "20 = 'X';=== ODER ===;21 = 5;");
  }
};

// Relations whose fields the suite offers under the numbers 5 and 6, for the identifiers 105 and
// 106.
struct BindCatalogue : BoundHost {
  BindCatalogue(const std::string& its_code, const std::string& list_key) {
    code = its_code;
    suite->answers().field_lists[list_key] = {{"Lager", 5}, {"Ort", 6}};
    answer_models(code, {{8, "Eins"}, {9, "Neu"}});
    answer_criteria(9, "105 = 'X';=== ODER ===;106 = 'Y';");
  }
};

struct BindOwnNumbers : BindCatalogue {
  BindOwnNumbers() : BindCatalogue("VERLOHN", "VERLOHN") {
    suite->answers().map_field_id = [](std::string_view, std::int32_t id) {
      return id < 100 ? id + 100 : id - 100;
    };
    answer_values("SELECT DISTINCT EXPR(BBLTN,5) FROM <BBLTN,0,><BBLTN,5,R7> ORDER BY 1", {"X"});
  }
};

struct BindNumberMap : BindCatalogue {
  BindNumberMap() : BindCatalogue("1EXP", "LOG") {
    suite->answers().map_field_id = [](std::string_view, std::int32_t id) {
      return id == 105 || id == 106 ? id - 100 : 0;
    };
    answer_values("SELECT DISTINCT EXPR(LOG,5) FROM <LOG,0,><LOG,5,R7> ORDER BY 1", {"X"});
  }
};

const Texts kOldWords = {"Holzart", "Anzahl", "Datum", "Alt", "KI", "FI", "3.4.2021"};

// Every text and number of the list stands at the same place in the whole one.
bool begins(const EntryList& list, const EntryList& whole) {
  return list.count() <= whole.count() &&
         std::equal(list.entries().begin(), list.entries().end(), whole.entries().begin());
}

template <class Host>
void expect_nothing_old_is_left(const Host& host, const Host& whole) {
  const F_Selection& editor = *host.editor;
  const std::string state = state_of(host);
  for (const std::string& word : kOldWords) {
    EXPECT_EQ(state.find(word), std::string::npos) << word << " is left in\n" << state;
  }
  EXPECT_THAT(editor.caption(), AnyOf("Selektion", "Selektion: Neu"));
  EXPECT_TRUE(editor.ListCriteria.count() == 0 ||
              editor.ListCriteria.entries() == whole.editor->ListCriteria.entries());
  EXPECT_TRUE(begins(editor.cboField, whole.editor->cboField)) << state;
  EXPECT_TRUE(begins(editor.Model, whole.editor->Model)) << state;
}

template <class Host>
Calls calls_of_binding(Host& whole) {
  const std::string before = state_of(whole);
  for (const std::string& word : kOldWords) {
    EXPECT_NE(before.find(word), std::string::npos) << word;
  }
  const Calls calls = calls_of(whole, [&] { whole.bind(); });
  EXPECT_EQ(whole.editor->ListCriteria.count(), 3);
  EXPECT_EQ(whole.texts_of(whole.editor->cboField), Texts({"Lager", "Ort"}));
  return calls;
}

template <class Host>
void expect_bound_or_forgotten(const Host& whole, bool of_database, std::size_t k) {
  Host host;
  host.fail_call(of_database, k);
  fails([&] { host.bind(); });
  host.fail_no_call();
  expect_nothing_old_is_left(host, whole);
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
  host.bind();
  EXPECT_EQ(state_of(host), state_of(whole));
}

TEST(BindingThatFails, ToARelationOfSelektionLeavesNothingOfTheLastOne) {
  BindSelektion whole;
  for_every_call(calls_of_binding(whole), [&](bool of_database, std::size_t k) {
    expect_bound_or_forgotten(whole, of_database, k);
  });
}

TEST(BindingThatFails, ToACatalogueRelationLeavesNeitherTheLastOneNorNumbersOfTheSuite) {
  BindOwnNumbers whole;
  for_every_call(calls_of_binding(whole), [&](bool of_database, std::size_t k) {
    expect_bound_or_forgotten(whole, of_database, k);
  });
}

TEST(BindingThatFails, WhileTheNumberMapIsBuiltLeavesNoNumbersOfTheSuite) {
  BindNumberMap whole;
  const Calls calls = calls_of_binding(whole);
  ASSERT_GT(calls.of_services, 3002U);
  // The field list, the first, one and the last of 3000 numbers, and what follows them.
  for (const std::size_t k : {1U, 2U, 1500U, 3001U, 3002U, 3003U}) {
    SCOPED_TRACE("service call " + std::to_string(k));
    expect_bound_or_forgotten(whole, false, k);
  }
}

TEST(BindingThatFails, ForWantOfAConnectionForgetsTheLastRelationToo) {
  BindSelektion whole;
  whole.bind();
  BindSelektion host;
  module_state().dbado = nullptr;
  EXPECT_THROW(host.bind(), ObjectNotSet);
  expect_nothing_old_is_left(host, whole);
  EXPECT_THAT(host.lines(), IsEmpty());
}

// --- Choosing a field

// A criterion of Datum stands complete in the pickers and its line is selected.
struct FieldHost : HalfDoneHost {
  FieldHost() {
    open_sonst();
    compose("Datum", "IN", "3.4.2021");
    editor->btnPlus_Click();
    fill_lines({{"Anzahl = 1", 11}});
  }
};

struct CatalogueFieldHost : HalfDoneHost {
  CatalogueFieldHost() {
    offer_catalogue("LOG");
    answer_models("1EXP");
    start("1EXP");
    compose("Holzart", "LIKE", "F%");
    fill_lines({{"Holzart = 1", 10}});
  }
};

template <class Host>
void expect_nothing_to_compose_with(const std::string& field) {
  SCOPED_TRACE(field);
  Host whole;
  const Calls calls = calls_of(whole, [&] { whole.pick(whole.editor->cboField, field); });
  const std::string after = state_of(whole);
  ASSERT_GT(calls.of_database + calls.of_services, 3U);
  for_every_call(calls, [&](bool of_database, std::size_t k) {
    Host host;
    const Lines lines = host.editor->ListCriteria.entries();
    host.fail_call(of_database, k);
    EXPECT_TRUE(fails([&] { host.pick(host.editor->cboField, field); }));
    host.fail_no_call();
    EXPECT_THAT(host.texts_of(host.editor->cboOperator), IsEmpty());
    EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
    host.editor->cboValue.set_text("7");
    host.editor->btnInsert_Click();
    EXPECT_EQ(host.editor->ListCriteria.entries(), lines);
    host.pick(host.editor->cboField, field);
    EXPECT_EQ(state_of(host), after);
  });
}

TEST(FieldThatFails, OffersNoOperatorUntilTheNextIsChosen) {
  for (const char* field : {"Holzart", "Menge", "Gruppe", "RINDEPROZENT"}) {
    expect_nothing_to_compose_with<FieldHost>(field);
  }
}

TEST(FieldThatFails, OfACatalogueRelationOffersNoOperatorUntilTheNextIsChosen) {
  expect_nothing_to_compose_with<CatalogueFieldHost>("Anzahl");
}

// --- Runs that fail

template <class Failure>
void expect_run_fails(ContractSource& host) {
  module_state().blnOK = "Wahr";
  EXPECT_THROW(host.show(), Failure);
  EXPECT_EQ(host.editor->start_state(), 0);
  EXPECT_FALSE(host.editor->is_visible());
  EXPECT_EQ(module_state().blnOK, "Falsch");
  EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
}

TEST(RunThatFails, OfAContractWithoutARowShowsNoDialog) {
  ContractSource host;
  host.answer_now(kContractValue, {{"SELEKTION_VALUE"}}, {});
  const std::string before = state_of(host);
  expect_run_fails<NoCurrentRecord>(host);
  EXPECT_EQ(state_of(host), before);
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt") << "no dialog has closed";
}

TEST(RunThatFails, ForTheStateOfTheModelShowsNoDialog) {
  ContractSource host;
  host.provide("10 = 'FI';");
  const std::string sql = model_state_query("VERTP", 7);
  host.connection->fail(sql, DatabaseError("no state"));
  host.connection->open(sql, CursorType::kForwardOnly, LockType::kReadOnly);
  expect_run_fails<DatabaseError>(host);
  EXPECT_EQ(host.lines(), Texts({"Holzart = 'FI'"}));
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
}

TEST(RunThatFails, WithItsWindowIsClosed) {
  ContractSource host;
  host.provide("10 = 'FI';");
  let_user_answer<BrokenWindow>(host);
  expect_run_fails<InvalidArgument>(host);
  EXPECT_EQ(host.editor->caption(), "Selektion");
}

TEST(Caption, NamesTheModelUntilTheDialogCloses) {
  ContractSource host;
  host.provide("10 = 'FI';");
  let_user_answer<ScriptedUserInterface>(host);
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
  host.run("", false, [&] { EXPECT_EQ(host.editor->caption(), "Selektion: Alt"); });
  EXPECT_EQ(host.editor->caption(), "Selektion");
  host.run("", false, [&] { host.editor->Model_DblClick(); });
  EXPECT_EQ(host.editor->caption(), "Selektion");
}

TEST(Caption, OfARelationWithoutModelsNamesNone) {
  ContractSource host;
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
  host.answer_models("1EXP");
  host.start("1EXP");
  EXPECT_EQ(host.editor->caption(), "Selektion");
}

}  // namespace
}  // namespace kestrova::test
