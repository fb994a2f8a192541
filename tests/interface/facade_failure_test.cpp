// Every database call and every service call of every method fails once: what the host holds, the
// lists and the flag are then what the rules say, and the same call works.
#include <gtest/gtest.h>

#include "tests/editor/failing_calls.h"
#include "tests/interface/facade_host.h"

namespace kestrova::test {
namespace {

using Results = RunHost::Results;

// An OR line keeps the pickers out of it.
const std::vector<ListEntry> kLinesBefore = {{"=== ODER ===", -2}};

struct FacadeSweep : FacadeHost {
  static constexpr std::size_t kHeldRowSets = 1;  // the field catalogue

  FacadeSweep() { user_answers = let_user_answer(*this); }

  std::shared_ptr<AnsweringUser> user_answers;
};

// --- Starting

struct InitSweep : FacadeSweep {
  void act() { facade.c_Selection_Init(context, "SONST", "A3", held.text, held.formula); }
};

TEST(FacadeFailures, OfStarting) {
  expect_failures_survived<InitSweep>([](const InitSweep& host, const FailedAction&) {
    EXPECT_EQ(module_state().dbado, host.connection);
    EXPECT_EQ(module_state().strVerType, "A3");
    EXPECT_EQ(module_state().strSelektion_Fr_Wh, "old text");
    EXPECT_EQ(module_state().strSelektionFormula, "old formula");
    EXPECT_EQ(module_state().blnOK, "");
    EXPECT_EQ(host.held, (Results{"old text", "old formula"}));
  });
}

struct InitCatalogueSweep : FacadeSweep {
  void act() { facade.c_Selection_Init(context, "VERLOHN", "A3", held.text, held.formula); }
};

TEST(FacadeFailures, OfStartingACatalogueRelation) {
  expect_failures_survived<InitCatalogueSweep>(
      [](const InitCatalogueSweep& host, const FailedAction& failed) {
        EXPECT_TRUE(failed.reached_the_caller);
        EXPECT_EQ(module_state().strVerType, "A3");
        EXPECT_EQ(host.held, (Results{"old text", "old formula"}));
      });
}

// --- Showing

struct ShowSweep : FacadeSweep {
  ShowSweep() {
    init();
    module_state().blnOK = "Wahr";
    fill_lines({{"Anzahl >= 5", 11}});
  }
  void act() {
    held = {};
    show();
  }
};

TEST(FacadeFailures, OfShowing) {
  expect_failures_survived<ShowSweep>([](ShowSweep& host, const FailedAction& failed) {
    EXPECT_FALSE(host.facade.WasOKClick());
    EXPECT_EQ(host.lines(), std::vector<std::string>{"Anzahl >= 5"});
    EXPECT_EQ(host.held, (Results{"old text", "old formula"}));
    // Only what a line loads into the pickers is trapped, and then the dialog was shown.
    if (!failed.reached_the_caller) {
      EXPECT_EQ(failed.statement, model_state_query("SONST", 3));
    }
  });
}

// The user confirms; the first line is loaded when the dialog is prepared.
struct ConfirmSweep : FacadeSweep {
  ConfirmSweep() {
    init();
    fill_lines({{"Anzahl >= 5", 11}});
    editor->SetListButtons();
    user_answers->action = [this] {
      is_shown = true;
      editor->btnOk_Click();
    };
  }
  void act() {
    is_shown = false;
    held = {};
    show();
  }
  bool is_shown = false;
};

TEST(FacadeFailures, OfConfirming) {
  int in_dialog = 0;
  expect_failures_survived<ConfirmSweep>([&](ConfirmSweep& host, const FailedAction& failed) {
    EXPECT_EQ(host.lines(), std::vector<std::string>{"Anzahl >= 5"});
    if (!failed.reached_the_caller) {
      EXPECT_EQ(host.held, (Results{" LAGER WHERE (LAGER.ANZAHL >= 5)", "Anzahl >= 5"}));
      EXPECT_TRUE(host.facade.WasOKClick());
      return;
    }
    EXPECT_EQ(host.held, (Results{"old text", "old formula"}));
    EXPECT_EQ(module_state().strSelektion_Fr_Wh, "old text");
    EXPECT_EQ(module_state().strSelektionFormula, "old formula");
    // The flag is set once the list was found valid.
    EXPECT_EQ(host.facade.WasOKClick(), host.is_shown);
    if (host.is_shown) ++in_dialog;
  });
  EXPECT_GT(in_dialog, 5);
}

struct ShowSubsetSweep : FacadeSweep {
  static constexpr std::size_t kHeldRowSets = 0;

  ShowSubsetSweep() {
    init("NML");
    module_state().blnOK = "Wahr";
    fill_lines(kLinesBefore);
  }
  void act() {
    ok = true;
    held = {};
    show_nml("5 = 'FI';=== ODER ===;6 > 3/4/2021;", ok);
  }
  bool ok = true;
};

TEST(FacadeFailures, OfShowingASubset) {
  const std::vector<ListEntry> all = {
      {"Holzart = 'FI'", 5}, {"=== ODER ===", -2}, {"Datum > '03.04.2021'", 6}};
  expect_failures_survived<ShowSubsetSweep>([&](ShowSubsetSweep& host, const FailedAction& failed) {
    EXPECT_EQ(host.ok, failed.reached_the_caller) << "there is an answer or none";
    EXPECT_EQ(host.held, (Results{"old text", "old formula"}));
    EXPECT_FALSE(host.facade.WasOKClick());
    const std::vector<ListEntry>& lines = host.editor->ListCriteria.entries();
    EXPECT_TRUE(lines == kLinesBefore || lines == all) << lines.size() << " lines";
    if (!failed.reached_the_caller) {
      EXPECT_EQ(lines, all);
    }
  });
}

// --- Working without the dialog

struct LoadSweep : FacadeSweep {
  LoadSweep() {
    init();
    fill_lines(kLinesBefore);
  }
  void act() { facade.c_Selection_Model_DblClick("Neu"); }
};

// A filter is shown whole or not at all.
TEST(FacadeFailures, OfLoadingAModel) {
  const std::vector<ListEntry> all = {
      {"Holzart = 'FI'", 10}, {"=== ODER ===", -2}, {"Anzahl >= 5", 11}};
  int before_it_was_read = 0;
  expect_failures_survived<LoadSweep>([&](const LoadSweep& host, const FailedAction& failed) {
    EXPECT_EQ(host.editor->Model.index(), 1) << "it is selected before it is loaded";
    if (host.editor->caption() == "Selektion: Neu") {
      EXPECT_EQ(host.editor->ListCriteria.entries(), all);
      return;
    }
    EXPECT_TRUE(failed.reached_the_caller);
    EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
    EXPECT_EQ(host.editor->ListCriteria.entries(), kLinesBefore);
    ++before_it_was_read;
  });
  EXPECT_GT(before_it_was_read, 20);
}

struct CommitSweep : FacadeSweep {
  CommitSweep() {
    init();
    fill_lines({{"Artname = 'A'", 15}, {"=== ODER ===", -2}, {"Gruppe = NULL", 16}});
    module_state().blnOK = "Falsch";
  }
  void act() {
    passed = {"a", "b"};
    facade.OK_Click(passed.text, passed.formula);
  }
  Results passed;
};

TEST(FacadeFailures, OfCommitting) {
  expect_failures_survived<CommitSweep>([](CommitSweep& host, const FailedAction& failed) {
    EXPECT_TRUE(failed.reached_the_caller);
    EXPECT_EQ(host.passed, (Results{"a", "b"}));
    EXPECT_EQ(module_state().strSelektion_Fr_Wh, "a");
    EXPECT_EQ(module_state().strSelektionFormula, "b");
    EXPECT_TRUE(host.facade.WasOKClick()) << "the list was found valid";
    EXPECT_EQ(host.lines().size(), 3U);
  });
}

struct WriteSweep : FacadeSweep {
  WriteSweep() {
    init();
    fill_lines({{"Holzart = 'FI'", 10}, {"=== ODER ===", -2}, {"Datum > 3.4.2021", 13}});
  }
  void act() {
    EXPECT_EQ(facade.GetWriteString(context), "10 = 'FI';=== ODER ===;13 > 'S(3.4.2021)';");
  }
};

TEST(FacadeFailures, OfWriting) {
  expect_failures_survived<WriteSweep>([](const WriteSweep& host, const FailedAction& failed) {
    EXPECT_TRUE(failed.reached_the_caller);
    EXPECT_EQ(host.lines(),
              (std::vector<std::string>{"Holzart = 'FI'", "=== ODER ===", "Datum > 3.4.2021"}));
  });
}

struct FillSweep : FacadeSweep {
  FillSweep() {
    init();
    fill_lines(kLinesBefore);
  }
  void act() {
    facade.FillListCriteria(context, "10 = 'FI';=== ODER ===;13 > 3/4/2021;11 IN (1,2)", "SONST");
  }
};

TEST(FacadeFailures, OfFilling) {
  expect_failures_survived<FillSweep>([&](const FillSweep& host, const FailedAction& failed) {
    EXPECT_TRUE(failed.reached_the_caller);
    EXPECT_EQ(host.editor->ListCriteria.entries(), kLinesBefore);
  });
}

TEST(FacadeFailures, CannotHappenWhereNothingIsAsked) {
  FacadeHost host;
  host.init();
  const std::size_t service_calls = host.suite->calls_made();
  host.facade.c_Selection_Init_Parameter();
  host.facade.WasOKClick();
  EXPECT_EQ(host.connection->calls_made(), 0U);
  EXPECT_EQ(host.suite->calls_made(), service_calls);
}

}  // namespace
}  // namespace kestrova::test
