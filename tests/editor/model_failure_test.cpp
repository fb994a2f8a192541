// Every database call and every service call of the model actions fails once. The lists, the
// caption and the results are then as far as the action had got, and the same action works.
#include <gtest/gtest.h>

#include "tests/editor/failing_calls.h"

namespace kestrova::test {
namespace {

using Models = std::vector<ListEntry>;

const Models kBefore = {{"Alt", 3}, {"Neu", 4}};
const std::vector<ListEntry> kLines = {{"Holzart = 'FI'", 10}, {"Anzahl = 1", 11}};

// "SONST" with the models "Alt" (3), selected, and "Neu" (4), and two criteria whose types stand in
// the database.
struct ModelsSweep : RunHost {
  static constexpr std::size_t kHeldRowSets = 1;  // the field catalogue

  ModelsSweep() {
    context.lngUserID = 42;
    suite->answers().options = {{"B018", true}, {"B049", true}, {"B057", true}};
    answer_fields("SONST", sonst_fields());
    answer_values("SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA", {"FI"});
    answer_models("SONST", {{3, "Alt"}, {4, "Neu"}});
    answer_criteria(3, "");
    answer_criteria(4, "");
    answer_criteria(21, "10 = 'FI';11 = 1;");
    answer_state(model_state_query("SONST", 21));
    connection->answer(
        "SELECT ID FROM MODELS WHERE NAME = 'Drei' AND RELATION = 'SONST' AND ID_USER = 42",
        {{"ID", FieldType::kInteger}}, {{21}});
    user_answers = let_user_answer(*this);
    start("SONST");
    fill_lines(kLines);
    suite->answers().standard_model = 3;
    editor->txtStandard.set_text("before");
    module_state().strSelektion_Fr_Wh = "text";
    module_state().strSelektionFormula = "formula";
    module_state().blnOK = "Wahr";
  }

  bool is_executed(std::string_view beginning) const {
    for (const std::string& statement : connection->statements()) {
      if (statement.starts_with(beginning)) return true;
    }
    return false;
  }

  std::shared_ptr<AnsweringUser> user_answers;
};

// What no failing model action changes.
void expect_kept(const ModelsSweep& host) {
  EXPECT_EQ(host.editor->ListCriteria.entries(), kLines);
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
  EXPECT_EQ(module_state().strSelektion_Fr_Wh, "text");
  EXPECT_EQ(module_state().strSelektionFormula, "formula");
  EXPECT_EQ(module_state().blnOK, "Wahr");
}

void expect_models(const ModelsSweep& host, const Models& models, int index) {
  EXPECT_EQ(host.editor->Model.entries(), models);
  EXPECT_EQ(host.editor->Model.index(), index);
}

// --- Saving

struct SaveAsSweep : ModelsSweep {
  void act() { editor->btnSaveModelleAs_Click(); }
};

TEST(ModelFailures, OfSavingAs) {
  expect_failures_survived<SaveAsSweep>([](const SaveAsSweep& host, const FailedAction& failed) {
    EXPECT_TRUE(failed.reached_the_caller);
    expect_kept(host);
    // The new model is listed once its number has been read.
    if (failed.statement == model_state_query("SONST", 21)) {
      expect_models(host, {{"Alt", 3}, {"Neu", 4}, {"Drei", 21}}, 2);
    } else {
      expect_models(host, kBefore, 0);
    }
  });
}

struct OverwriteSweep : ModelsSweep {
  OverwriteSweep() { user_answers->name = "Neu"; }
  void act() { editor->btnSaveModelleAs_Click(); }
};

TEST(ModelFailures, OfOverwritingByName) {
  expect_failures_survived<OverwriteSweep>([](const OverwriteSweep& host,
                                              const FailedAction& failed) {
    EXPECT_TRUE(failed.reached_the_caller);
    expect_kept(host);
    expect_models(host, kBefore, 0);
    EXPECT_EQ(host.is_executed("UPDATE MODELS"), failed.call.starts_with("execute UPDATE MODELS"));
  });
}

struct SaveSweep : ModelsSweep {
  void act() { editor->btnSaveModelle_Click(); }
};

TEST(ModelFailures, OfSaving) {
  expect_failures_survived<SaveSweep>([](const SaveSweep& host, const FailedAction& failed) {
    EXPECT_TRUE(failed.reached_the_caller);
    expect_kept(host);
    expect_models(host, kBefore, 0);
    EXPECT_EQ(host.is_executed("UPDATE MODELS"), failed.call.starts_with("execute UPDATE MODELS"))
        << "nothing is stored before the whole text is known";
  });
}

// A refused list shows a message, whose text may fail.
struct RefusedSweep : ModelsSweep {
  RefusedSweep() { editor->ListCriteria.set_entry_text(0, "=== ODER ==="); }
  void act() { editor->btnSaveModelle_Click(); }
};

TEST(ModelFailures, OfRefusingAList) {
  expect_failures_survived<RefusedSweep>([](const RefusedSweep& host, const FailedAction& failed) {
    EXPECT_EQ(failed.call, "GetText(194)");
    expect_models(host, kBefore, 0);
    EXPECT_FALSE(host.is_executed("UPDATE MODELS"));
  });
}

// --- Deleting

struct DeleteSweep : ModelsSweep {
  // The model is no longer there when only the lines could not be shown.
  void act() {
    if (editor->Model.index() == -1) {
      editor->SetListButtons();
    } else {
      editor->btnDeleteModelle_Click();
    }
  }
};

TEST(ModelFailures, OfDeleting) {
  expect_failures_survived<DeleteSweep>([](const DeleteSweep& host, const FailedAction& failed) {
    expect_kept(host);
    const bool is_deleted = host.is_executed("DELETE") && !failed.call.starts_with("execute");
    if (!is_deleted || failed.call.starts_with("standard_model")) {
      EXPECT_TRUE(failed.reached_the_caller);
      expect_models(host, kBefore, 0);
      EXPECT_EQ(host.editor->txtStandard.text(), "before");
    } else {
      expect_models(host, {{"Neu", 4}}, -1);
      EXPECT_EQ(host.editor->txtStandard.text(), "Alt");
    }
  });
}

// --- Boxes

// Sets a box without its handler, so that a click of the user on it may be repeated.
void put_box(ModelsSweep& host, CheckBox& box, bool checked) {
  const BusyPointer busy(*host.user);
  box.set_checked(checked);
}

template <CheckBox SelectionDialog::*box, bool checked>
struct BoxSweep : ModelsSweep {
  static constexpr bool kWanted = checked;

  // As it was before the click. The database says the same whenever it is asked.
  BoxSweep() {
    const Value set(checked ? 0 : 1);
    const Value level = checked ? Value() : Value(7);
    change_state(model_state_query("SONST", 3), {set, 0, level, Value(), set});
  }
  void act() {
    F_Selection& e = *editor;
    put_box(*this, e.*box, !checked);
    (e.*box).click();
  }
  bool is_checked() const {
    const F_Selection& e = *editor;
    return (e.*box).checked();
  }
};

template <class Sweep>
void expect_box_failures_survived() {
  expect_failures_survived<Sweep>([](const Sweep& host, const FailedAction& failed) {
    EXPECT_TRUE(failed.reached_the_caller);
    expect_kept(host);
    expect_models(host, kBefore, 0);
    const bool is_written =
        host.is_executed("UPDATE MODELS") && !failed.call.starts_with("execute ");
    EXPECT_EQ(host.is_checked(), is_written == Sweep::kWanted) << "the box shows what is stored";
    // The standard is looked up behind the writing and before the model is shown anew.
    const bool is_shown = is_written && !failed.call.starts_with("standard_model");
    EXPECT_EQ(host.editor->txtStandard.text(), is_shown ? "Alt" : "before");
  });
}

TEST(ModelFailures, OfSettingTheStandard) {
  expect_box_failures_survived<BoxSweep<&SelectionDialog::chkStandard, true>>();
}
TEST(ModelFailures, OfClearingTheStandard) {
  expect_box_failures_survived<BoxSweep<&SelectionDialog::chkStandard, false>>();
}
TEST(ModelFailures, OfLocking) {
  expect_box_failures_survived<BoxSweep<&SelectionDialog::Check1, true>>();
}
TEST(ModelFailures, OfUnlocking) {
  expect_box_failures_survived<BoxSweep<&SelectionDialog::Check1, false>>();
}
TEST(ModelFailures, OfBinding) {
  expect_box_failures_survived<BoxSweep<&SelectionDialog::chkAL, true>>();
}
TEST(ModelFailures, OfUnbinding) {
  expect_box_failures_survived<BoxSweep<&SelectionDialog::chkAL, false>>();
}

// --- Showing

struct ClickSweep : ModelsSweep {
  ClickSweep() { change_state(model_state_query("SONST", 3), {1, 0, 5, "Revier", 1}); }
  void act() { editor->Model_Click(); }
};

TEST(ModelFailures, OfShowingAModel) {
  expect_failures_survived<ClickSweep>([](const ClickSweep& host, const FailedAction& failed) {
    EXPECT_TRUE(failed.reached_the_caller);
    expect_kept(host);
    expect_models(host, kBefore, 0);
    EXPECT_EQ(host.connection->statements().size(), 1U) << "the boxes write nothing";
  });
}

}  // namespace
}  // namespace kestrova::test
