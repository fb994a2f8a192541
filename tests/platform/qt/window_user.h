// A user before the window: mouse and keyboard on the widgets of its controls.
#pragma once

#include <QComboBox>
#include <QListWidget>
#include <QPushButton>
#include <QWidget>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls.h"

namespace kestrova::test {

class WindowUser {
 public:
  explicit WindowUser(QWidget& window) : window_(window) {}

  // The widget of a control. Raises std::out_of_range when there is none.
  QWidget& widget(const Control& control) const { return widget(control.name()); }
  QWidget& widget(std::string_view name) const;
  QPushButton& button(const Control& control) const;
  QComboBox& combo(const Control& control) const;
  QListWidget& list(const Control& control) const;

  void click(const Control& control) const;
  // Opens the list of a picker and clicks an entry; or clicks the row of a list.
  void pick(const Control& control, int index) const;
  void pick(const Control& control, const std::string& text) const;
  void double_click(const Control& control, int index) const;
  // Holds the left button on a row and lets it go this many rows from the top of the list.
  void drag(const Control& control, int from_row, double to_row) const;
  // Keys, to the widget that has the focus.
  void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
  void type(std::string_view text) const;
  void focus(const Control& control) const;

  std::vector<std::string> texts(const Control& control) const;
  // The widget with the focus, by its control's name.
  std::string focused() const;

 private:
  QWidget& window_;
};

// Lets the event loop do what is waiting.
void settle();

// Runs the steps in the event loop, one after the other. The next one begins when the one before is
// done, or when that has opened a box of its own. What is open after the last one fails the test
// and is closed.
void when_idle(std::vector<std::function<void()>> steps);

}  // namespace kestrova::test
