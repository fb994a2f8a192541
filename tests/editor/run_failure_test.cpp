// Every database call and every service call of the editor fails once: the error reaches the caller
// as it was raised, no row set stays open but the field catalogue, the pointer is the default one,
// and the same action works afterwards. Only while the line that a list selects is loaded into the
// field picker is an error trapped: the picker is then left unselected, and all else is done. And a
// start model or a contract's selection that cannot be loaded, when the database is not to blame,
// is told to the user, who finds an empty list.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/editor/failing_calls.h"
#include "tests/support/scripted_failure.h"

namespace kestrova::test {
namespace {

// What a user sees, and what the host received; the field picker's selection apart.
std::string state_of(const RunHost& host) {
  std::string state = host.editor->relation() + "|" + host.editor->caption();
  for (const EntryList* list : std::initializer_list<const EntryList*>{
           &host.editor->cboField, &host.editor->Model, &host.editor->ListCriteria}) {
    state += "|" + list->name();
    for (const ListEntry& entry : list->entries()) {
      state += ", " + entry.text + " " + std::to_string(entry.item_data);
    }
  }
  return state + "|" + std::to_string(host.editor->Model.index()) + "|" +
         std::to_string(host.editor->ListCriteria.index()) + "|" + host.editor->Formula.text() +
         "|" + module_state().strSelektion_Fr_Wh + "|" + module_state().strSelektionFormula + "|" +
         module_state().blnOK;
}

// What follows the k-th call of the database or of the services, closes apart, three entries at
// most. A click that fails in the field picker restores the pointer, and then nothing is picked.
std::vector<std::string> behind_call(const std::vector<std::string>& log, bool is_database,
                                     std::size_t k) {
  std::vector<std::string> behind;
  for (const std::string& line : log) {
    if (line.ends_with(" close")) continue;
    const bool is_user = line.starts_with("pointer ") || line.starts_with("dialog ");
    const bool of_database =
        line.starts_with("open ") || line.starts_with("execute ") || line.starts_with('#');
    if (k > 0) {
      if (!is_user && of_database == is_database) --k;
    } else if (behind.size() < 3) {
      behind.push_back(line);
    }
  }
  return behind;
}

// Prepared is a host whose act() is the action.
template <class Prepared>
void expect_every_failure_to_reach_the_caller() {
  Prepared whole;
  whole.forget();
  const std::size_t services_before = whole.suite->calls_made();
  whole.act();
  const std::string state = state_of(whole);
  const int field = whole.editor->cboField.index();
  const std::size_t database_calls = whole.connection->calls_made();
  const std::size_t service_calls = whole.suite->calls_made() - services_before;
  ASSERT_GT(database_calls, 0U);
  ASSERT_GT(service_calls, 0U);

  const auto expect_trapped = [&](const Prepared& host, bool is_database, std::size_t k) {
    EXPECT_EQ(behind_call(*host.log, is_database, k),
              (std::vector<std::string>{"pointer default", "pointer hourglass", "pointer default"}))
        << "the failure is lost";
    EXPECT_EQ(state_of(host), state);
  };
  int told = 0;
  const auto expect_told = [&](const Prepared& host, std::size_t call) {
    ++told;
    ASSERT_EQ(host.answering->messages.size(), 1U);
    EXPECT_NE(
        host.answering->messages[0].find("die Liste ist leer. Grund: scripted service failure "
                                         "of call " +
                                         std::to_string(call) + ": "),
        std::string::npos)
        << host.answering->messages[0];
    EXPECT_EQ(host.lines(), std::vector<std::string>());
    EXPECT_EQ(host.editor->Model.index(), -1);
    EXPECT_EQ(host.editor->caption(), "Selektion");
  };
  const auto expect_recovery = [&](Prepared& host) {
    EXPECT_LE(host.connection->open_recordsets(), Prepared::kHeldRowSets);
    EXPECT_LE(host.suite->live_services(), 2U) << "only texts and model settings are kept";
    EXPECT_EQ(host.user->pointer(), PointerShape::kDefault);
    EXPECT_FALSE(host.editor->is_visible());
    host.act();
    EXPECT_EQ(state_of(host), state);
    EXPECT_EQ(host.editor->cboField.index(), field);
  };
  for (std::size_t k = 1; k <= database_calls; ++k) {
    SCOPED_TRACE("database call " + std::to_string(k));
    Prepared host;
    host.forget();
    if (!database_failure_reaches_caller(host, k, [&] { host.act(); })) {
      expect_trapped(host, true, k);
    }
    expect_recovery(host);
  }
  for (std::size_t k = 1; k <= service_calls; ++k) {
    SCOPED_TRACE("service call " + std::to_string(k));
    Prepared host;
    host.forget();
    const std::size_t call = host.suite->calls_made() + k;
    if (!service_failure_reaches_caller(host, call, [&] { host.act(); })) {
      if (host.answering->messages.empty()) {
        expect_trapped(host, false, k);
      } else {
        expect_told(host, call);
      }
    }
    expect_recovery(host);
  }
  EXPECT_EQ(told > 0, Prepared::kTellsFaults);
}

// --- Relations whose fields stand in SELEKTION

struct SonstSweep : RunHost {
  static constexpr std::size_t kHeldRowSets = 1;  // the field catalogue
  static constexpr bool kTellsFaults = false;

  SonstSweep() {
    answering = let_user_answer(*this);
    answer_fields("SONST", sonst_fields());
    answer_models("SONST", {{7, "Alt"}});
    answer_criteria(7, "10 <> 'FI';=== ODER ===;13 > '31.12.2024';");
    answer_values("SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA", {"FI", "KI"});
    for (const OfferedField& field : sonst_fields()) {
      know_lookups(field.row);
      const int id = field.row.id;
      connection->answer(
          "SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = " + std::to_string(id),
          {{"ID_STRING", FieldType::kInteger}}, {{100 + id}});
      suite->answers().texts[100 + id] = field.custom_text.empty() ? field.text : field.custom_text;
    }
  }

  std::shared_ptr<AnsweringUser> answering;
};

struct StartSweep : SonstSweep {
  static constexpr bool kTellsFaults = true;
  void act() { start("SONST"); }
};

struct LoadSweep : SonstSweep {
  LoadSweep() { start("SONST"); }
  void act() { editor->Model_DblClick(); }
};

struct CommitSweep : SonstSweep {
  CommitSweep() {
    start("SONST");
    editor->ListCriteria.clear();
    fill_lines({{"Artname = 'A'", 15}, {"Gruppe = NULL", 16}, {"Datum > 3.4.2021", 13}});
  }
  void act() { editor->btnOk_Click(); }
};

TEST(EditorFailures, OfBindingToARelation) {
  expect_every_failure_to_reach_the_caller<StartSweep>();
}
TEST(EditorFailures, OfLoadingAModel) { expect_every_failure_to_reach_the_caller<LoadSweep>(); }
TEST(EditorFailures, OfCommitting) { expect_every_failure_to_reach_the_caller<CommitSweep>(); }

// --- Relations that the suite knows

struct CatalogueSweep : RunHost {
  static constexpr std::size_t kHeldRowSets = 0;
  static constexpr bool kTellsFaults = false;

  CatalogueSweep() {
    answering = let_user_answer(*this);
    offer("LOG", {{"Holzart", 5}, {"Datum", 6}});
    offer("VERLOHN", {{"Holzart", 5}, {"Datum", 6}});
    suite->answers().field_formats = {{6, "dd.mm.yyyy"}};
    for (const char* relation : {"NML", "VERTP", "VERLOHN"}) answer_models(relation);
    answer_values("SELECT DISTINCT EXPR(LOG,5) FROM <LOG,0,><LOG,5,R7> ORDER BY 1", {"FI"});
    answer_values(
        "SELECT DISTINCT EXPR(LOG,5) FROM <LOG,0,><LOG,5,R7> WHERE FHP_IMPORT.ERRORTEXT IS NULL "
        "AND FHP_IMPORT.ID_FHP_IMPORT IS NULL ORDER BY 1",
        {"FI"});
    connection->answer("SELECT SELEKTION_VALUE FROM VERTRAG_PREISE WHERE ID = 12",
                       {{"SELEKTION_VALUE"}}, {{"5 = 'FI';6 > 3/4/2021;"}});
    answer_contract("SELECT * FROM VERTRAG_PREISE WHERE ID = 12", "5 = 'OLD';");
  }

  void show(const std::string& subset) {
    Results results;
    editor->Run(context, results.text, results.formula, false, subset);
  }

  std::shared_ptr<AnsweringUser> answering;
};

struct StartCatalogueSweep : CatalogueSweep {
  void act() { start("VERLOHN"); }
};

struct RunSubsetSweep : CatalogueSweep {
  RunSubsetSweep() { start("NML"); }
  void act() { show("5 = 'FI';=== ODER ===;6 > 3/4/2021;"); }
};

struct RunContractSweep : CatalogueSweep {
  static constexpr bool kTellsFaults = true;
  RunContractSweep() { start("VERTP12"); }
  void act() { show(""); }
};

struct CommitContractSweep : CatalogueSweep {
  CommitContractSweep() {
    start("VERTP12");
    fill_lines({{"Holzart = 'FI'", 5}, {"Datum > 3.4.2021", 6}});
  }
  void act() { editor->btnOk_Click(); }
};

TEST(EditorFailures, OfBindingToACatalogueRelation) {
  expect_every_failure_to_reach_the_caller<StartCatalogueSweep>();
}
TEST(EditorFailures, OfShowingASubset) {
  expect_every_failure_to_reach_the_caller<RunSubsetSweep>();
}
TEST(EditorFailures, OfShowingAContract) {
  expect_every_failure_to_reach_the_caller<RunContractSweep>();
}
TEST(EditorFailures, OfCommittingAContract) {
  expect_every_failure_to_reach_the_caller<CommitContractSweep>();
}

}  // namespace
}  // namespace kestrova::test
