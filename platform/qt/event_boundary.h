// Where the user's actions enter the dialog's controls.
#pragma once

#include <functional>

namespace kestrova {

class Button;

namespace qt {

class EventBoundary {
 public:
  // Runs what an event of Qt leads to. Lets no exception out: none may cross Qt's event loop. Does
  // nothing while an error waits to be shown, so that no action builds on one that failed.
  virtual void run(const std::function<void()>& action) = 0;

  // The same, and confirms first what is typed in the value box, as if the focus had left it: a
  // mnemonic or a shortcut does not move the focus.
  virtual void run_confirmed(const std::function<void()>& action) = 0;

  // The user presses the button.
  virtual void press(Button& button) = 0;

 protected:
  ~EventBoundary() = default;
};

}  // namespace qt
}  // namespace kestrova
