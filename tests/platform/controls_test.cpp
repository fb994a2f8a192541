// What only the models show of the control rules; the rules themselves, for models and views, are
// tests/support/controls_contract.cpp.
#include "platform/controls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/error.h"

namespace kestrova {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Fills the list and counts its clicks from then on.
template <class List>
class Clicked {
 public:
  template <class... Arguments>
  explicit Clicked(Arguments&&... arguments) : list(std::forward<Arguments>(arguments)...) {
    for (const char* text : {"Fichte", "Kiefer", "Buche"}) list.add(text);
    list.on_click = [this] { clicks.push_back(list.index()); };
  }

  List list;
  std::vector<int> clicks;  // the index at each click
};

Clicked<ListBox> list_box() { return Clicked<ListBox>("ListCriteria"); }

Clicked<ComboBox> drop_down() {
  return Clicked<ComboBox>("cboField", ComboBox::Style::kDropDownList);
}

Clicked<ComboBox> free_text() { return Clicked<ComboBox>("cboValue", ComboBox::Style::kFreeText); }

// --- Setting the index

TEST(ListIndex, OutsideTheListIsRefusedAndChangesNothing) {
  auto box = list_box();
  box.list.set_index(2);
  EXPECT_THROW(box.list.set_index(3), InvalidArgument);
  EXPECT_THROW(box.list.set_index(-2), InvalidArgument);
  EXPECT_EQ(box.list.index(), 2);
  EXPECT_THAT(box.clicks, ElementsAre(2));
}

TEST(ListIndex, OfAComboBoxSetsItsTextBeforeTheClick) {
  auto box = drop_down();
  std::string text_at_click;
  box.list.on_click = [&] { text_at_click = box.list.text(); };
  box.list.set_index(1);
  EXPECT_EQ(text_at_click, "Kiefer");
  box.list.set_index(-1);
  EXPECT_EQ(text_at_click, "");
}

// --- Setting the text of a drop-down list

TEST(DropDownList, SelectsTheEntryWithItsTextAndRaisesTheClick) {
  auto box = drop_down();
  box.list.set_text("Buche");
  EXPECT_EQ(box.list.index(), 2);
  EXPECT_EQ(box.list.text(), "Buche");
  EXPECT_THAT(box.clicks, ElementsAre(2));
}

TEST(DropDownList, SelectsTheFirstOfEqualEntries) {
  auto box = drop_down();
  box.list.add("Kiefer");
  box.list.set_text("Kiefer");
  EXPECT_EQ(box.list.index(), 1);
}

TEST(DropDownList, RefusesATextThatIsNoEntryAndChangesNothing) {
  auto box = drop_down();
  box.list.set_index(1);
  for (const char* text : {"Eiche", "kiefer", "Kiefer ", ""}) {
    EXPECT_THROW(box.list.set_text(text), InvalidArgument) << text;
  }
  EXPECT_EQ(box.list.index(), 1);
  EXPECT_EQ(box.list.text(), "Kiefer");
  EXPECT_THAT(box.clicks, ElementsAre(1));
}

// --- Setting the text of a combo box with free text

TEST(FreeText, AcceptsAnyTextWithoutAClick) {
  auto box = free_text();
  box.list.set_index(1);
  box.list.set_text("Eiche");
  EXPECT_EQ(box.list.index(), -1);
  EXPECT_EQ(box.list.text(), "Eiche");
  EXPECT_THAT(box.clicks, ElementsAre(1));
  box.list.set_text("");
  EXPECT_EQ(box.list.text(), "");
  EXPECT_THAT(box.clicks, ElementsAre(1));
}

TEST(FreeText, ThatIsAnEntrySelectsItAndRaisesTheClick) {
  auto box = free_text();
  box.list.set_text("Buche");
  EXPECT_EQ(box.list.index(), 2);
  EXPECT_THAT(box.clicks, ElementsAre(2));
}

// --- Adding, inserting and removing entries

TEST(Entries, InsertedOrRemovedBeforeTheSelectedOneKeepItSelected) {
  auto box = list_box();
  box.list.set_index(1);
  box.list.insert("Eiche", 0);
  EXPECT_EQ(box.list.text(), "Kiefer");
  EXPECT_EQ(box.list.index(), 2);
  box.list.insert("Tanne", 2);
  EXPECT_EQ(box.list.text(), "Kiefer");
  box.list.remove(0);
  EXPECT_EQ(box.list.text(), "Kiefer");
  EXPECT_THAT(box.clicks, ElementsAre(1));
}

TEST(Entries, InsertedOrRemovedBehindTheSelectedOneKeepItSelected) {
  auto box = list_box();
  box.list.set_index(1);
  box.list.insert("Eiche", 2);
  box.list.remove(3);
  box.list.add("Tanne");
  EXPECT_EQ(box.list.index(), 1);
  EXPECT_EQ(box.list.text(), "Kiefer");
  EXPECT_THAT(box.clicks, ElementsAre(1));
}

TEST(Entries, TheSelectedOneRenamedRenamesTheTextOfItsComboBox) {
  auto box = drop_down();
  box.list.set_index(1);
  box.list.set_entry_text(1, "Föhre");
  box.list.set_entry_text(0, "Rotfichte");
  EXPECT_EQ(box.list.text(), "Föhre");
  EXPECT_THAT(box.clicks, ElementsAre(1));
}

TEST(Entries, HaveTextAndNumber) {
  ListBox box("ListCriteria");
  box.add("b");
  box.insert("a", 0);
  box.insert("c", 2);
  box.set_item_data(1, -2);
  box.set_entry_text(2, "C");
  EXPECT_THAT(box.entries(), ElementsAre(ListEntry{"a", 0}, ListEntry{"b", -2}, ListEntry{"C", 0}));
  EXPECT_EQ(box.count(), 3);
  EXPECT_EQ(box.entry_text(2), "C");
  EXPECT_EQ(box.item_data(1), -2);
}

TEST(Entries, OutsideTheListAreRefused) {
  auto box = list_box();
  EXPECT_THROW(box.list.entry_text(3), InvalidArgument);
  EXPECT_THROW(box.list.item_data(-1), InvalidArgument);
  EXPECT_THROW(box.list.set_entry_text(3, "x"), InvalidArgument);
  EXPECT_THROW(box.list.set_item_data(3, 1), InvalidArgument);
  EXPECT_THROW(box.list.insert("x", 4), InvalidArgument);
  EXPECT_THROW(box.list.insert("x", -1), InvalidArgument);
  EXPECT_THROW(box.list.remove(3), InvalidArgument);
  EXPECT_EQ(box.list.count(), 3);
  try {
    box.list.remove(3);
  } catch (const InvalidArgument& error) {
    EXPECT_STREQ(error.what(), "The list ListCriteria has no entry 3.");
  }
}

TEST(NewIndex, IsTheEntryAddedLast) {
  ListBox box("ListCriteria");
  EXPECT_EQ(box.new_index(), -1);
  box.add("b");
  EXPECT_EQ(box.new_index(), 0);
  box.add("c");
  EXPECT_EQ(box.new_index(), 1);
  box.insert("a", 0);
  EXPECT_EQ(box.new_index(), 0);
  box.remove(2);
  EXPECT_EQ(box.new_index(), -1);
  box.add("d");
  box.clear();
  EXPECT_EQ(box.new_index(), -1);
}

// --- Clearing

TEST(Clear, RemovesEntriesSelectionAndTextWithoutAClick) {
  for (auto style : {ComboBox::Style::kDropDownList, ComboBox::Style::kFreeText}) {
    Clicked<ComboBox> box("cboField", style);
    box.list.set_index(1);
    box.list.clear();
    EXPECT_THAT(box.list.entries(), IsEmpty());
    EXPECT_EQ(box.list.index(), -1);
    EXPECT_EQ(box.list.text(), "");
    EXPECT_THAT(box.clicks, ElementsAre(1));
  }
}

// --- A user's actions on controls that cannot be reached

// Every way in which a control can be out of the user's reach.
const std::vector<void (*)(Control&)> kWaysOutOfReach = {
    [](Control& control) { control.set_enabled(false); },
    [](Control& control) { control.set_visible(false); },
};

TEST(User, DoubleClicksAReachableListOnly) {
  for (const auto put_out_of_reach : kWaysOutOfReach) {
    auto box = list_box();
    int double_clicks = 0;
    box.list.on_double_click = [&] { ++double_clicks; };
    box.list.double_click();
    put_out_of_reach(box.list);
    box.list.double_click();
    EXPECT_EQ(double_clicks, 1);
  }
}

TEST(User, TogglesAReachableCheckBoxOnly) {
  for (const auto put_out_of_reach : kWaysOutOfReach) {
    CheckBox box("Check1");
    box.click();
    EXPECT_TRUE(box.checked());
    box.click();
    EXPECT_FALSE(box.checked());
    put_out_of_reach(box);
    box.click();
    EXPECT_FALSE(box.checked());
    box.set_checked(true);  // code may
    EXPECT_TRUE(box.checked());
  }
}

// --- Check boxes

TEST(CheckBoxClick, IsRaisedWhenCodeChangesTheStateOnly) {
  CheckBox box("Check1");
  std::vector<bool> states;
  box.on_click = [&] { states.push_back(box.checked()); };
  box.set_checked(false);
  box.set_checked(true);
  box.set_checked(true);
  box.set_checked(false);
  EXPECT_THAT(states, ElementsAre(true, false));
}

// --- Views

TEST(View, IsToldOfEveryChange) {
  int changes = 0;
  const auto told = [&changes](const auto& change) {
    const int before = changes;
    change();
    return changes > before;
  };
  ComboBox combo("cboValue", ComboBox::Style::kFreeText);
  combo.subscribe([&] { ++changes; });
  EXPECT_TRUE(told([&] { combo.add("a"); }));
  EXPECT_TRUE(told([&] { combo.insert("b", 0); }));
  EXPECT_TRUE(told([&] { combo.set_item_data(0, 1); }));
  EXPECT_TRUE(told([&] { combo.set_entry_text(0, "B"); }));
  EXPECT_TRUE(told([&] { combo.set_index(0); }));
  EXPECT_TRUE(told([&] { combo.set_text("x"); }));
  EXPECT_TRUE(told([&] { combo.remove(0); }));
  EXPECT_TRUE(told([&] { combo.clear(); }));
  EXPECT_TRUE(told([&] { combo.set_enabled(false); }));
  EXPECT_TRUE(told([&] { combo.set_visible(false); }));
  TextBox text("Formula");
  text.subscribe([&] { ++changes; });
  EXPECT_TRUE(told([&] { text.set_text("x"); }));
  CheckBox check("Check1");
  check.subscribe([&] { ++changes; });
  EXPECT_TRUE(told([&] { check.set_checked(true); }));
  EXPECT_TRUE(told([&] { check.set_caption("x"); }));
  EXPECT_EQ(check.caption(), "x");
}

TEST(View, IsToldBeforeTheClickIsRaised) {
  ListBox box("ListCriteria");
  box.add("a");
  std::vector<std::string> order;
  box.subscribe([&] { order.push_back("view"); });
  box.on_click = [&] { order.push_back("click"); };
  box.set_index(0);
  EXPECT_THAT(order, ElementsAre("view", "click"));
}

TEST(Controls, BeginEnabledVisibleAndEmpty) {
  const ListBox box("ListCriteria");
  EXPECT_EQ(box.name(), "ListCriteria");
  EXPECT_TRUE(box.reachable());
  EXPECT_EQ(box.index(), -1);
  EXPECT_EQ(box.text(), "");
  EXPECT_FALSE(CheckBox("Check1").checked());
  EXPECT_EQ(TextBox("Formula").text(), "");
  EXPECT_TRUE(Frame("Frame1").enabled());
}

}  // namespace
}  // namespace kestrova
