// The controls of a dialog as small models without a window. They hold the state and raise the
// events; a view subscribes to changes, and the model never knows the view.
//
// The rules that the editor's logic rests on, for the models and for every view of them:
//
//  - Setting the index of a list in code raises the same click event as a user's pick, also when
//    the index is already selected, and also for -1.
//  - Setting the text of a drop-down list to an entry selects that entry (exact text, first match)
//    and raises the click; setting it to a text that is no entry raises InvalidArgument and changes
//    nothing.
//  - A combo box with free text accepts any text; a text that is no entry makes its index -1 and
//    raises no click, a text that is an entry selects it and raises the click.
//  - Adding entries never selects one. Removing the selected entry leaves nothing selected, and
//    inserting or removing others keeps the same entry selected; neither raises a click.
//  - The text of a combo box follows its selected entry, also when that entry is renamed or
//  removed.
//  - clear() removes all entries, the selection and the text, and raises no click.
//  - A user's action on a disabled or hidden control does nothing. Code may set it all the same.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrova {

// Common state of all controls. Neither copyable nor movable: views and handlers refer to it.
class Control {
 public:
  explicit Control(std::string name) : name_(std::move(name)) {}
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  const std::string& name() const { return name_; }

  bool enabled() const { return enabled_; }
  void set_enabled(bool enabled);
  bool visible() const { return visible_; }
  void set_visible(bool visible);

  // Whether a user's action reaches the control.
  bool reachable() const { return enabled_ && visible_; }

  // Called after every change of the control's state. One view per control.
  void subscribe(std::function<void()> on_change) { on_change_ = std::move(on_change); }
  // Called when the dialog gives the focus to the control.
  void subscribe_focus(std::function<void()> on_focus) { on_focus_ = std::move(on_focus); }
  void take_focus();

 protected:
  void changed();

 private:
  std::string name_;
  bool enabled_ = true;
  bool visible_ = true;
  std::function<void()> on_change_;
  std::function<void()> on_focus_;
};

// One entry of a list: its text and the 32-bit number stored with it.
struct ListEntry {
  std::string text;
  std::int32_t item_data = 0;

  friend bool operator==(const ListEntry&, const ListEntry&) = default;
};

// Entries, selection and click event: what list boxes and combo boxes share.
class EntryList : public Control {
 public:
  using Control::Control;

  // Handlers of the click and of the double click.
  std::function<void()> on_click;
  std::function<void()> on_double_click;

  int count() const { return static_cast<int>(entries_.size()); }
  const std::vector<ListEntry>& entries() const { return entries_; }

  // Text and number of an entry. Raise InvalidArgument for an index outside 0 to count() - 1.
  const std::string& entry_text(int index) const { return entry(index).text; }
  std::int32_t item_data(int index) const { return entry(index).item_data; }
  void set_entry_text(int index, std::string_view text);
  void set_item_data(int index, std::int32_t data);

  // Adds at the end, or before the entry at index (0 to count()). item_data starts as 0.
  void add(std::string_view text);
  void insert(std::string_view text, int index);
  void remove(int index);
  virtual void clear();

  // Index of the entry added last, or -1 when there was none since the last clear() or remove().
  int new_index() const { return new_index_; }

  // Selected entry, -1 for none.
  int index() const { return index_; }

  // Selects an entry, or nothing with -1, and raises the click. Raises InvalidArgument outside -1
  // to count() - 1.
  void set_index(int index);

  // A user's pick: set_index, unless the control is not reachable.
  void pick(int index);
  // A user's double click on the selected entry.
  void double_click();

 protected:
  const ListEntry& entry(int index) const;
  // Index of the first entry with exactly this text, or -1.
  int find_exact(std::string_view text) const;
  // Called when another entry is selected or the selected one has another text, before any click.
  virtual void selection_changed() {}
  // Leaves nothing selected, without a click.
  void drop_selection() { index_ = -1; }

 private:
  std::vector<ListEntry> entries_;
  int index_ = -1;
  int new_index_ = -1;
};

class ListBox : public EntryList {
 public:
  using EntryList::EntryList;

  // First visible entry and the height of a row, from which the target of a drop is found. A view
  // sets them; the height is in the unit in which it reports the drop.
  int top_index = 0;
  double row_height = 1;

  // Whether one of its entries is being dragged.
  bool is_dragging = false;

  // The pointer moves over the list with this button held (1 is the left one), and the list
  // `source` is dropped at x, y of this one.
  std::function<void(int button)> on_mouse_move;
  std::function<void(const Control& source, double x, double y)> on_drag_drop;

  // Text of the selected entry, "" when none is selected.
  std::string text() const;
};

class ComboBox : public EntryList {
 public:
  enum class Style { kDropDownList, kFreeText };

  ComboBox(std::string name, Style style) : EntryList(std::move(name)), style_(style) {}

  // A key is typed into the text, before the text changes; the handler sets 0 to refuse it.
  std::function<void(int& key)> on_key_press;
  // The control loses the focus; the handler may keep it with true.
  std::function<void(bool& cancel)> on_validate;

  Style style() const { return style_; }
  const std::string& text() const { return text_; }

  // See the rules at the top.
  void set_text(std::string_view text);

  // Whether an entry has exactly this text.
  bool has_entry(std::string_view text) const { return find_exact(text) != -1; }
  void clear() override;

 protected:
  void selection_changed() override;

 private:
  Style style_;
  std::string text_;
};

class TextBox : public Control {
 public:
  using Control::Control;
  const std::string& text() const { return text_; }
  void set_text(std::string_view text);

 private:
  std::string text_;
};

class CheckBox : public Control {
 public:
  using Control::Control;

  std::function<void()> on_click;

  bool checked() const { return checked_; }
  // Raises the click when the state changes, as a user's click does.
  void set_checked(bool checked);
  // A user's click: toggles, unless the control is not reachable.
  void click();

  const std::string& caption() const { return caption_; }
  void set_caption(std::string_view caption);

 private:
  bool checked_ = false;
  std::string caption_;
};

class Button : public Control {
 public:
  using Control::Control;

  std::function<void()> on_click;

  // A user's click: raises the click, unless the control is not reachable.
  void click();
};

class Frame : public Control {
 public:
  using Control::Control;
};

}  // namespace kestrova
