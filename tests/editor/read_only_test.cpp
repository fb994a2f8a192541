// A run for reading only: nothing that a view or a host may call changes the list.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/editor/run_host.h"

namespace kestrova::test {
namespace {

using ::testing::IsEmpty;
using Lines = std::vector<ListEntry>;

const Lines kLines = {{"Anzahl = 1", 11}, {"=== ODER ===", -2}, {"Anzahl IN (2)", 11}};

// "SONST" with the model "Alt" and three lines.
struct ReadOnlyHost : RunHost {
  ReadOnlyHost() {
    answer_fields("SONST", sonst_fields());
    answer_values("SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA", {"FI"});
    answer_values(plain_query("ANZAHL"), {1, 2});
    answer_models("SONST", {{3, "Alt"}});
    answer_criteria(3, "=== ODER ===;");
    start("SONST");
    editor->ListCriteria.clear();
    fill_lines(kLines);
  }

  // A criterion stands complete in the pickers.
  void compose_line(const char* op) {
    editor->ListCriteria.set_index(1);
    compose("Anzahl", op, "2");
  }
};

struct Handler {
  const char* name;
  void (F_Selection::*handler)();
};

constexpr Handler kHandlers[] = {
    {"btnNew", &F_Selection::btnNew_Click},         {"btnInsert", &F_Selection::btnInsert_Click},
    {"btnReplace", &F_Selection::btnReplace_Click}, {"btnDelete", &F_Selection::btnDelete_Click},
    {"btnOr", &F_Selection::btnOr_Click},           {"cmdUp", &F_Selection::cmdUp_Click},
    {"cmdDown", &F_Selection::cmdDown_Click},       {"Model", &F_Selection::Model_DblClick},
};

TEST(ReadOnlyRun, ChangesNoLineWhateverIsCalled) {
  for (const Handler& row : kHandlers) {
    SCOPED_TRACE(row.name);
    ReadOnlyHost host;
    const std::string criteria = host.editor->GetWriteString(host.context);
    host.run("", true, [&] {
      host.compose_line("=");
      host.forget();
      (host.editor.get()->*row.handler)();
      EXPECT_EQ(host.editor->ListCriteria.entries(), kLines);
      EXPECT_EQ(host.editor->ListCriteria.index(), 1);
      EXPECT_EQ(host.editor->Formula.text(), "Anzahl = 2");
      EXPECT_THAT(*host.log, IsEmpty());
      EXPECT_EQ(host.editor->GetWriteString(host.context), criteria);
    });
  }
}

// The same handlers do change it when the run is not for reading only.
TEST(ReadOnlyRun, IsWhatKeepsTheLines) {
  for (const Handler& row : kHandlers) {
    SCOPED_TRACE(row.name);
    ReadOnlyHost host;
    host.run("", false, [&] {
      host.compose_line("=");
      if (std::string_view(row.name) == "btnOr") host.editor->ListCriteria.set_index(2);
      (host.editor.get()->*row.handler)();
      EXPECT_NE(host.editor->ListCriteria.entries(), kLines);
    });
  }
}

TEST(ReadOnlyRun, ComposesNoListOfIn) {
  ReadOnlyHost host;
  host.run("", true, [&] {
    host.compose_line("IN");
    host.forget();
    host.editor->btnPlus_Click();
    EXPECT_EQ(host.editor->value_text(), "()");
    EXPECT_THAT(*host.log, IsEmpty());
  });
  host.run("", false, [&] {
    host.compose_line("IN");
    host.editor->btnPlus_Click();
    EXPECT_EQ(host.editor->value_text(), "(2)");
  });
  host.run("", true, [&] {
    host.compose_line("IN");
    host.editor->cboValue.set_text("(");
    host.editor->btnMinus_Click();
    EXPECT_EQ(host.editor->value_text(), "()");
  });
}

TEST(ReadOnlyRun, DragsAndDropsNothing) {
  ReadOnlyHost host;
  ListBox& list = host.editor->ListCriteria;
  host.run("", true, [&] {
    list.set_index(0);
    list.on_mouse_move(1);
    EXPECT_FALSE(list.is_dragging);
    host.forget();
    list.on_drag_drop(list, 0, 2);
    EXPECT_EQ(list.entries(), kLines);
    EXPECT_EQ(list.index(), 0);
    EXPECT_THAT(*host.log, IsEmpty());
  });
  host.run("", false, [&] {
    list.set_index(0);
    list.on_drag_drop(list, 0, 2);
    EXPECT_EQ(list.item_data(2), 0) << "moved";
  });
}

TEST(ReadOnlyRun, DisablesTheMoveButtonsAndLetsTheUserNavigate) {
  ReadOnlyHost host;
  F_Selection& editor = *host.editor;
  host.run("", true, [&] {
    struct Step {
      void (F_Selection::*handler)();
      int to;
    };
    for (const Step& step :
         {Step{&F_Selection::btnLast_Click, 2}, Step{&F_Selection::btnPrev_Click, 1},
          Step{&F_Selection::btnFirst_Click, 0}, Step{&F_Selection::btnNext_Click, 1}}) {
      (editor.*step.handler)();
      EXPECT_EQ(editor.ListCriteria.index(), step.to);
      EXPECT_FALSE(editor.cmdUp.enabled());
      EXPECT_FALSE(editor.cmdDown.enabled());
    }
    editor.ListCriteria.pick(2);
    EXPECT_EQ(editor.Formula.text(), "Anzahl IN (2)");
  });
  host.run("", false, [&] {
    editor.ListCriteria.set_index(1);
    EXPECT_TRUE(editor.cmdUp.enabled());
    EXPECT_TRUE(editor.cmdDown.enabled());
  });
}

// The host may go on without a window, and the next selection loads its start model.
TEST(ReadOnlyRun, EndsWithItsDialog) {
  ReadOnlyHost host;
  host.run("", true);
  host.editor->Model_DblClick();
  EXPECT_EQ(host.editor->ListCriteria.entries(), (Lines{{"=== ODER ===", -2}}));
  host.run("", true);
  host.editor->btnNew_Click();
  host.start("SONST");
  EXPECT_EQ(host.editor->ListCriteria.entries(), (Lines{{"=== ODER ===", -2}}));
}

TEST(ReadOnlyRun, LoadsWhatItShows) {
  RunHost host;
  host.offer("LOG", {{"Holzart", 5}});
  for (const char* relation : {"NML", "VERTP"}) host.answer_models(relation);
  host.answer_contract("SELECT SELEKTION_VALUE FROM VERTRAG_PREISE WHERE ID = 12", "=== ODER ===;");
  const Lines loaded = {{"=== ODER ===", -2}};
  host.start("NML");
  host.run("=== ODER ===;", true, [&] { EXPECT_EQ(host.editor->ListCriteria.entries(), loaded); });
  host.start("VERTP12");
  host.run("", true, [&] { EXPECT_EQ(host.editor->ListCriteria.entries(), loaded); });
}

}  // namespace
}  // namespace kestrova::test
