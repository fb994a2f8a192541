#include "tests/support/controls_contract.h"

#include <gmock/gmock.h>

#include "platform/error.h"

namespace kestrova::test {

using testing::ElementsAre;
using testing::IsEmpty;

void PrintTo(const ControlsAdapter& adapter, std::ostream* out) { *out << adapter.name; }

std::string controls_adapter_name(const testing::TestParamInfo<ControlsAdapter>& info) {
  return info.param.name;
}

ControlsContract::ControlsContract() : view_(GetParam().show(dialog_)) {}

namespace {

// Fills the list with three entries and keeps the index of each click from then on.
class Clicks {
 public:
  explicit Clicks(EntryList& list) {
    for (const char* text : {"Fichte", "Kiefer", "Buche"}) list.add(text);
    list.on_click = [this, &list] { indexes.push_back(list.index()); };
  }
  std::vector<int> indexes;
};

// Every way in which a control can be out of the user's reach.
const std::vector<void (*)(Control&)> kWaysOutOfReach = {
    [](Control& control) { control.set_enabled(false); },
    [](Control& control) { control.set_visible(false); },
};

void bring_back(Control& control) {
  control.set_enabled(true);
  control.set_visible(true);
}

std::vector<EntryList*> lists(PlainDialog& dialog) {
  return {&dialog.ListCriteria, &dialog.Model, &dialog.cboField, &dialog.cboValue};
}

}  // namespace

// --- Entries

TEST_P(ControlsContract, AnAddedEntryDoesNotSelectItself) {
  for (EntryList* const list : lists(dialog_)) {
    int clicks = 0;
    list->on_click = [&clicks] { ++clicks; };
    list->add("Fichte");
    list->add("Kiefer");
    list->insert("Buche", 0);
    EXPECT_THAT(view_->texts(*list), ElementsAre("Buche", "Fichte", "Kiefer")) << list->name();
    EXPECT_EQ(view_->index(*list), -1) << list->name();
    EXPECT_EQ(list->index(), -1) << list->name();
    EXPECT_EQ(clicks, 0) << list->name();
  }
  EXPECT_EQ(view_->text(dialog_.cboField), "");
  EXPECT_EQ(view_->text(dialog_.cboValue), "");
}

TEST_P(ControlsContract, TheSelectedEntryStaysSelectedWhenOthersComeAndGo) {
  for (EntryList* const list : lists(dialog_)) {
    Clicks clicks(*list);
    list->set_index(1);
    list->insert("Eiche", 0);
    EXPECT_EQ(view_->index(*list), 2) << list->name();
    list->remove(3);
    EXPECT_EQ(view_->index(*list), 2) << list->name();
    list->remove(0);
    EXPECT_EQ(view_->index(*list), 1) << list->name();
    EXPECT_THAT(view_->texts(*list), ElementsAre("Fichte", "Kiefer")) << list->name();
    EXPECT_THAT(clicks.indexes, ElementsAre(1)) << list->name();
  }
  EXPECT_EQ(view_->text(dialog_.cboField), "Kiefer");
}

TEST_P(ControlsContract, TheSelectedEntryRemovedLeavesNothingSelected) {
  for (EntryList* const list : lists(dialog_)) {
    Clicks clicks(*list);
    list->set_index(1);
    EXPECT_EQ(view_->index(*list), 1) << list->name();
    list->remove(1);
    EXPECT_EQ(view_->index(*list), -1) << list->name();
    EXPECT_THAT(clicks.indexes, ElementsAre(1)) << list->name();
  }
  EXPECT_EQ(view_->text(dialog_.cboField), "");
  EXPECT_EQ(view_->text(dialog_.cboValue), "");
}

TEST_P(ControlsContract, TheSelectedEntryRenamedIsShownUnderItsNewName) {
  Clicks clicks(dialog_.cboField);
  dialog_.cboField.set_index(1);
  dialog_.cboField.set_entry_text(1, "Föhre");
  EXPECT_EQ(view_->text(dialog_.cboField), "Föhre");
  EXPECT_THAT(view_->texts(dialog_.cboField), ElementsAre("Fichte", "Föhre", "Buche"));
  EXPECT_THAT(clicks.indexes, ElementsAre(1));
}

TEST_P(ControlsContract, ClearRemovesEntriesSelectionAndTextWithoutAClick) {
  for (EntryList* const list : lists(dialog_)) {
    Clicks clicks(*list);
    list->set_index(2);
    EXPECT_EQ(view_->index(*list), 2);
    list->clear();
    EXPECT_THAT(view_->texts(*list), IsEmpty()) << list->name();
    EXPECT_EQ(view_->index(*list), -1) << list->name();
    EXPECT_THAT(clicks.indexes, ElementsAre(2)) << list->name();
  }
  EXPECT_EQ(view_->text(dialog_.cboValue), "");
}

// --- The index

TEST_P(ControlsContract, AnIndexSetInCodeRaisesTheClickOnceAndIsShown) {
  for (EntryList* const list : lists(dialog_)) {
    Clicks clicks(*list);
    for (const int index : {1, 1, -1, 2}) {
      list->set_index(index);
      EXPECT_EQ(view_->index(*list), index) << list->name();
    }
    EXPECT_THAT(clicks.indexes, ElementsAre(1, 1, -1, 2)) << list->name();
  }
}

TEST_P(ControlsContract, APickRaisesTheClickOnceAlsoOfTheSelectedEntry) {
  for (EntryList* const list : lists(dialog_)) {
    Clicks clicks(*list);
    for (const int index : {1, 1, 0}) {
      view_->pick(*list, index);
      EXPECT_EQ(list->index(), index) << list->name();
      EXPECT_EQ(view_->index(*list), index) << list->name();
    }
    EXPECT_THAT(clicks.indexes, ElementsAre(1, 1, 0)) << list->name();
  }
}

TEST_P(ControlsContract, APickGivesTheComboBoxItsTextBeforeTheClick) {
  Clicks clicks(dialog_.cboField);
  std::string text;
  dialog_.cboField.on_click = [&] { text = dialog_.cboField.text(); };
  view_->pick(dialog_.cboField, 2);
  EXPECT_EQ(text, "Buche");
  EXPECT_EQ(view_->text(dialog_.cboField), "Buche");
}

// A handler may answer a pick with another selection.
TEST_P(ControlsContract, WhatTheClickSelectsIsShown) {
  for (EntryList* const list : lists(dialog_)) {
    Clicks clicks(*list);
    list->on_click = [list] {
      if (list->index() == 1) list->set_index(2);
    };
    view_->pick(*list, 1);
    EXPECT_EQ(view_->index(*list), 2) << list->name();
  }
}

TEST_P(ControlsContract, ADoubleClickReachesTheListOnItsSelectedEntry) {
  for (EntryList* const list :
       std::initializer_list<EntryList*>{&dialog_.ListCriteria, &dialog_.Model}) {
    Clicks clicks(*list);
    std::vector<int> double_clicks;
    list->on_double_click = [&] { double_clicks.push_back(list->index()); };
    view_->double_click(*list, 1);
    EXPECT_THAT(double_clicks, ElementsAre(1)) << list->name();
  }
}

// --- Texts

TEST_P(ControlsContract, ADropDownListTakesTheTextsOfItsEntriesOnly) {
  Clicks clicks(dialog_.cboField);
  dialog_.cboField.set_text("Kiefer");
  for (const char* text : {"Eiche", "kiefer", "Kiefer ", ""}) {
    EXPECT_THROW(dialog_.cboField.set_text(text), InvalidArgument) << text;
  }
  EXPECT_EQ(view_->text(dialog_.cboField), "Kiefer");
  EXPECT_EQ(view_->index(dialog_.cboField), 1);
  EXPECT_THAT(clicks.indexes, ElementsAre(1));
}

TEST_P(ControlsContract, FreeTextIsShownAndSelectsAnEntryOnlyWhenItIsOne) {
  Clicks clicks(dialog_.cboValue);
  dialog_.cboValue.set_text("Eiche");
  EXPECT_EQ(view_->text(dialog_.cboValue), "Eiche");
  EXPECT_EQ(view_->index(dialog_.cboValue), -1);
  dialog_.cboValue.set_text("Buche");
  EXPECT_EQ(view_->text(dialog_.cboValue), "Buche");
  EXPECT_EQ(view_->index(dialog_.cboValue), 2);
  EXPECT_THAT(clicks.indexes, ElementsAre(2));
}

TEST_P(ControlsContract, TypedTextSelectsAnEntryWhenItBecomesOne) {
  Clicks clicks(dialog_.cboValue);
  view_->type(dialog_.cboValue, "Buche");
  EXPECT_EQ(dialog_.cboValue.index(), 2);
  EXPECT_THAT(clicks.indexes, ElementsAre(2));
  view_->type(dialog_.cboValue, "n");
  EXPECT_EQ(dialog_.cboValue.text(), "Buchen");
  EXPECT_EQ(dialog_.cboValue.index(), -1);
  EXPECT_EQ(view_->text(dialog_.cboValue), "Buchen");
  EXPECT_THAT(clicks.indexes, ElementsAre(2));
}

TEST_P(ControlsContract, AKeyIsOfferedBeforeTheTextChangesAndMayBeRefused) {
  std::vector<std::pair<int, std::string>> keys;
  dialog_.cboValue.on_key_press = [&](int& key) {
    keys.emplace_back(key, dialog_.cboValue.text());
    if (key == 'x') key = 0;
    if (key == ',') key = '.';
  };
  view_->type(dialog_.cboValue, "1x,ä");
  view_->type_backspace(dialog_.cboValue);
  EXPECT_THAT(
      keys, ElementsAre(std::pair(int{'1'}, ""), std::pair(int{'x'}, "1"), std::pair(int{','}, "1"),
                        std::pair(0xE4, "1."), std::pair(8, "1.ä")));
  EXPECT_EQ(dialog_.cboValue.text(), "1.");
  EXPECT_EQ(view_->text(dialog_.cboValue), "1.");
}

TEST_P(ControlsContract, ARefusedBackspaceDeletesNothing) {
  view_->type(dialog_.cboValue, "12");
  dialog_.cboValue.on_key_press = [](int& key) { key = 0; };
  view_->type_backspace(dialog_.cboValue);
  EXPECT_EQ(dialog_.cboValue.text(), "12");
  EXPECT_EQ(view_->text(dialog_.cboValue), "12");
}

TEST_P(ControlsContract, LeavingATypedTextIsAskedOnce) {
  std::vector<std::string> asked;
  dialog_.cboValue.on_validate = [&](bool&) { asked.push_back(dialog_.cboValue.text()); };
  view_->type(dialog_.cboValue, "12");
  EXPECT_THAT(asked, IsEmpty());
  view_->leave(dialog_.cboValue);
  EXPECT_THAT(asked, ElementsAre("12"));
}

TEST_P(ControlsContract, TextBoxesShowTheirText) {
  dialog_.Formula.set_text("Menge >= 3,5 & \"Größe\"");
  dialog_.txtStandard.set_text("Große Lose");
  EXPECT_EQ(view_->text(dialog_.Formula), "Menge >= 3,5 & \"Größe\"");
  EXPECT_EQ(view_->text(dialog_.txtStandard), "Große Lose");
}

// --- Check boxes and buttons

TEST_P(ControlsContract, ACheckBoxRaisesTheClickWhenItsStateChangesOnly) {
  CheckBox& box = dialog_.Check1;
  std::vector<bool> states;
  box.on_click = [&] { states.push_back(box.checked()); };
  box.set_checked(false);
  box.set_checked(true);
  EXPECT_TRUE(view_->is_checked(box));
  box.set_checked(true);
  view_->click(box);
  EXPECT_FALSE(view_->is_checked(box));
  EXPECT_THAT(states, ElementsAre(true, false));
}

// A handler may take a user's click back.
TEST_P(ControlsContract, ACheckBoxShowsWhatItsHandlerMadeOfTheClick) {
  CheckBox& box = dialog_.Check1;
  box.on_click = [&box] { box.set_checked(false); };
  view_->click(box);
  EXPECT_FALSE(box.checked());
  EXPECT_FALSE(view_->is_checked(box));
}

TEST_P(ControlsContract, AButtonRaisesItsClickOnce) {
  int clicks = 0;
  dialog_.btnInsert.on_click = [&clicks] { ++clicks; };
  view_->click(dialog_.btnInsert);
  EXPECT_EQ(clicks, 1);
}

// --- Out of reach

TEST_P(ControlsContract, AControlShowsWhetherItCanBeReached) {
  for (Control* const control : std::initializer_list<Control*>{
           &dialog_.ListCriteria, &dialog_.Formula, &dialog_.cboField, &dialog_.cboOperator,
           &dialog_.cboValue, &dialog_.btnNew, &dialog_.cmdUp, &dialog_.Model, &dialog_.chkAL,
           &dialog_.btnOk}) {
    EXPECT_TRUE(view_->is_enabled(*control)) << control->name();
    control->set_enabled(false);
    EXPECT_FALSE(view_->is_enabled(*control)) << control->name();
    control->set_enabled(true);
    EXPECT_TRUE(view_->is_enabled(*control)) << control->name();
    EXPECT_TRUE(view_->is_visible(*control)) << control->name();
    control->set_visible(false);
    EXPECT_FALSE(view_->is_visible(*control)) << control->name();
    control->set_visible(true);
    EXPECT_TRUE(view_->is_visible(*control)) << control->name();
  }
}

TEST_P(ControlsContract, AControlOutOfReachIgnoresTheUserButNotTheCode) {
  for (const auto put_out_of_reach : kWaysOutOfReach) {
    for (EntryList* const list : lists(dialog_)) {
      list->clear();
      Clicks clicks(*list);
      put_out_of_reach(*list);
      view_->pick(*list, 1);
      EXPECT_EQ(list->index(), -1) << list->name();
      EXPECT_THAT(clicks.indexes, IsEmpty()) << list->name();
      list->set_index(2);
      EXPECT_THAT(clicks.indexes, ElementsAre(2)) << list->name();
      EXPECT_EQ(view_->index(*list), 2) << list->name();
      list->on_click = nullptr;
      bring_back(*list);
    }
  }
}

TEST_P(ControlsContract, AButtonOrCheckBoxOutOfReachIgnoresTheUser) {
  for (const auto put_out_of_reach : kWaysOutOfReach) {
    int clicks = 0;
    dialog_.btnOr.on_click = [&clicks] { ++clicks; };
    dialog_.chkStandard.on_click = [&clicks] { ++clicks; };
    put_out_of_reach(dialog_.btnOr);
    put_out_of_reach(dialog_.chkStandard);
    view_->click(dialog_.btnOr);
    view_->click(dialog_.chkStandard);
    EXPECT_EQ(clicks, 0);
    EXPECT_FALSE(view_->is_checked(dialog_.chkStandard));
    bring_back(dialog_.btnOr);
    bring_back(dialog_.chkStandard);
  }
}

TEST_P(ControlsContract, AValueBoxOutOfReachTakesNoText) {
  for (const auto put_out_of_reach : kWaysOutOfReach) {
    int keys = 0;
    dialog_.cboValue.on_key_press = [&keys](int&) { ++keys; };
    put_out_of_reach(dialog_.cboValue);
    view_->type(dialog_.cboValue, "12");
    EXPECT_EQ(dialog_.cboValue.text(), "");
    EXPECT_EQ(view_->text(dialog_.cboValue), "");
    EXPECT_EQ(keys, 0);
    bring_back(dialog_.cboValue);
  }
}

}  // namespace kestrova::test
