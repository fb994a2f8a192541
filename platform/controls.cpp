#include "platform/controls.h"

#include <algorithm>

#include "platform/error.h"

namespace kestrova {
namespace {

void raise(const std::function<void()>& event) {
  if (event) event();
}

}  // namespace

void Control::changed() { raise(on_change_); }

void Control::take_focus() { raise(on_focus_); }

void Control::set_enabled(bool enabled) {
  enabled_ = enabled;
  changed();
}

void Control::set_visible(bool visible) {
  visible_ = visible;
  changed();
}

const ListEntry& EntryList::entry(int index) const {
  if (index < 0 || index >= count()) {
    throw InvalidArgument("The list " + name() + " has no entry " + std::to_string(index) + ".");
  }
  return entries_[static_cast<std::size_t>(index)];
}

int EntryList::find_exact(std::string_view text) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [text](const ListEntry& e) { return e.text == text; });
  return found == entries_.end() ? -1 : static_cast<int>(found - entries_.begin());
}

void EntryList::set_entry_text(int index, std::string_view text) {
  entry(index);
  entries_[static_cast<std::size_t>(index)].text = text;
  if (index == index_) selection_changed();
  changed();
}

void EntryList::set_item_data(int index, std::int32_t data) {
  entry(index);
  entries_[static_cast<std::size_t>(index)].item_data = data;
  changed();
}

void EntryList::add(std::string_view text) { insert(text, count()); }

void EntryList::insert(std::string_view text, int index) {
  if (index != count()) entry(index);
  entries_.insert(entries_.begin() + index, ListEntry{std::string(text), 0});
  new_index_ = index;
  if (index_ >= index) ++index_;
  changed();
}

void EntryList::remove(int index) {
  entry(index);
  entries_.erase(entries_.begin() + index);
  new_index_ = -1;
  if (index_ == index) {
    index_ = -1;
    selection_changed();
  } else if (index_ > index) {
    --index_;
  }
  changed();
}

void EntryList::clear() {
  entries_.clear();
  index_ = -1;
  new_index_ = -1;
  changed();
}

void EntryList::set_index(int index) {
  if (index != -1) entry(index);
  index_ = index;
  selection_changed();
  changed();
  raise(on_click);
}

void EntryList::pick(int index) {
  if (reachable()) set_index(index);
}

void EntryList::double_click() {
  if (reachable()) raise(on_double_click);
}

std::string ListBox::text() const { return index() == -1 ? std::string() : entry_text(index()); }

void ComboBox::set_text(std::string_view text) {
  const int found = find_exact(text);
  if (found != -1) {
    set_index(found);
    return;
  }
  if (style_ == Style::kDropDownList) {
    throw InvalidArgument("The list " + name() + " has no entry '" + std::string(text) + "'.");
  }
  drop_selection();
  text_ = text;
  changed();
}

void ComboBox::clear() {
  text_.clear();
  EntryList::clear();
}

void ComboBox::selection_changed() { text_ = index() == -1 ? std::string() : entry_text(index()); }

void TextBox::set_text(std::string_view text) {
  text_ = text;
  changed();
}

void CheckBox::set_checked(bool checked) {
  if (checked == checked_) return;
  checked_ = checked;
  changed();
  raise(on_click);
}

void CheckBox::click() {
  if (reachable()) set_checked(!checked_);
}

void CheckBox::set_caption(std::string_view caption) {
  caption_ = caption;
  changed();
}

void Button::click() {
  if (reachable()) raise(on_click);
}

}  // namespace kestrova
