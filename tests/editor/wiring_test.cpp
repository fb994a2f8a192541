// What a view raises runs the handler of that name: each event on an editor does what its handler
// does on another one, and no two of them do the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "tests/editor/failing_calls.h"

namespace kestrova::test {
namespace {

// "SONST" shown, with a line selected in the middle of the list and a list of IN being composed.
struct WiredHost : RunHost {
  WiredHost() {
    suite->answers().texts[3441] = "ODER";
    suite->answers().options = {{"B018", true}, {"B049", true}, {"B057", true}};
    answer_fields("SONST", sonst_fields());
    for (const OfferedField& field : sonst_fields()) know_lookups(field.row);
    answer_values("SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA", {"FI"});
    answer_values(plain_query("ANZAHL"), {1, 2});
    answer_models("SONST", {{3, "Alt"}, {4, "Neu"}});
    answer_criteria(3, "");
    answer_criteria(4, "");
    answer_state(model_state_query("SONST", 21));
    connection->answer(
        "SELECT ID FROM MODELS WHERE NAME = 'Drei' AND RELATION = 'SONST' AND ID_USER = 0",
        {{"ID", FieldType::kInteger}}, {{21}});
    answering = let_user_answer(*this);
    start("SONST");
    for (int i = 1; i <= 5; ++i) editor->ListCriteria.add("Anzahl = " + std::to_string(i));
  }

  // What the action has changed in the dialog that is shown, and what it has asked.
  std::string effect_of(const std::function<void(F_Selection&)>& action) {
    std::string effect;
    answering->action = [&] {
      editor->ListCriteria.set_index(2);
      compose("Anzahl", "IN", "1");
      editor->btnPlus_Click();
      editor->cboValue.set_text("2");
      editor->btnPlus_Click();
      forget();
      action(*editor);
      effect = visible_state(*this) + "|" + editor->value_text() + "|" + editor->cboValue.text() +
               (editor->is_visible() ? "|shown" : "|hidden") +
               (editor->ListCriteria.is_dragging ? "|dragging" : "");
      for (const std::string& line : *log) effect += "\n" + line;
    };
    Results results;
    editor->Run(context, results.text, results.formula, false, "");
    return effect;
  }

  std::shared_ptr<AnsweringUser> answering;
};

struct Wire {
  std::string name;
  std::function<void(F_Selection&)> event;
  std::function<void(F_Selection&)> handler;
};

template <class Member>
Wire button(const char* name, Member member, void (F_Selection::*handler)()) {
  return {name, [member](F_Selection& e) { (e.*member).click(); },
          [handler](F_Selection& e) { (e.*handler)(); }};
}

std::vector<Wire> wires() {
  using E = F_Selection;
  return {
      button("btnNew", &E::btnNew, &E::btnNew_Click),
      button("btnInsert", &E::btnInsert, &E::btnInsert_Click),
      button("btnReplace", &E::btnReplace, &E::btnReplace_Click),
      button("btnDelete", &E::btnDelete, &E::btnDelete_Click),
      button("btnOr", &E::btnOr, &E::btnOr_Click),
      button("btnPlus", &E::btnPlus, &E::btnPlus_Click),
      button("btnMinus", &E::btnMinus, &E::btnMinus_Click),
      button("btnFirst", &E::btnFirst, &E::btnFirst_Click),
      button("btnPrev", &E::btnPrev, &E::btnPrev_Click),
      button("btnNext", &E::btnNext, &E::btnNext_Click),
      button("btnLast", &E::btnLast, &E::btnLast_Click),
      button("cmdUp", &E::cmdUp, &E::cmdUp_Click),
      button("cmdDown", &E::cmdDown, &E::cmdDown_Click),
      button("btnOk", &E::btnOk, &E::btnOk_Click),
      button("btnCancel", &E::btnCancel, &E::btnCancel_Click),
      button("btnSaveModelle", &E::btnSaveModelle, &E::btnSaveModelle_Click),
      button("btnSaveModelleAs", &E::btnSaveModelleAs, &E::btnSaveModelleAs_Click),
      button("btnDeleteModelle", &E::btnDeleteModelle, &E::btnDeleteModelle_Click),
      {"ListCriteria.MouseMove", [](E& e) { e.ListCriteria.on_mouse_move(1); },
       [](E& e) { e.ListCriteria_MouseMove(1); }},
      {"ListCriteria.DragDrop", [](E& e) { e.ListCriteria.on_drag_drop(e.ListCriteria, 0, 4); },
       [](E& e) { e.ListCriteria_DragDrop(e.ListCriteria, 0, 4); }},
      {"ListCriteria.DblClick", [](E& e) { e.ListCriteria.double_click(); },
       [](E& e) { e.ListCriteria_DblClick(); }},
      {"Model.DblClick", [](E& e) { e.Model.double_click(); }, [](E& e) { e.Model_DblClick(); }},
  };
}

TEST(Wiring, EachEventRunsItsOwnHandler) {
  const std::string nothing = WiredHost().effect_of([](F_Selection&) {});
  std::map<std::string, std::string> seen = {{nothing, "nothing"}};
  for (const Wire& wire : wires()) {
    SCOPED_TRACE(wire.name);
    const std::string effect = WiredHost().effect_of(wire.event);
    EXPECT_EQ(effect, WiredHost().effect_of(wire.handler));
    const auto [other, is_new] = seen.emplace(effect, wire.name);
    EXPECT_TRUE(is_new) << "the same as " << other->second;
  }
}

// Leaving the dialog by Cancel takes an earlier confirmation back.
TEST(Wiring, OfCancelHidesTheDialogUnconfirmed) {
  WiredHost host;
  host.effect_of([](F_Selection& editor) {
    module_state().blnOK = "Wahr";
    editor.btnCancel.click();
    EXPECT_FALSE(editor.is_visible());
    EXPECT_EQ(module_state().blnOK, "Falsch");
  });
}

TEST(Wiring, OfTheValueBoxFiltersKeysAndTakesWhatWasTyped) {
  WiredHost host;
  host.effect_of([&](F_Selection& editor) {
    int letter = 'x';
    editor.cboValue.on_key_press(letter);
    EXPECT_EQ(letter, 0);
    int digit = '7';
    editor.cboValue.on_key_press(digit);
    EXPECT_EQ(digit, '7');
    host.pick(editor.cboOperator, "=");
    editor.cboValue.set_text("7");
    bool cancel = false;
    editor.cboValue.on_validate(cancel);
    EXPECT_EQ(editor.Formula.text(), "Anzahl = 7");
  });
}

}  // namespace
}  // namespace kestrova::test
