// The dialog "Selektion" as a window, for a host that wants to place it itself; QtUserInterface
// shows it for all others.
#pragma once

#include <QDialog>
#include <memory>
#include <string>

#include "platform/qt/qt_settings.h"
#include "platform/selection_dialog.h"
#include "platform/user_interface.h"

namespace kestrova {

class SelectionWindow final : public QDialog {
 public:
  // The window is the one view of the dialog's controls while it lives. All three must outlive it.
  // Messages about failed actions are shown through the user interface.
  SelectionWindow(SelectionDialog& dialog, UserInterface& user_interface,
                  const QtSettings& settings, QWidget* parent = nullptr);
  ~SelectionWindow() override;

  // Shows the window until the dialog is no longer visible.
  //
  // An action of the user that raises an Error is told to the user, and the dialog stays usable;
  // what the action had not done is not done. Raises that error when it came from OK and the window
  // was then closed without another OK or Cancel, because the host would take the results for
  // confirmed. Every other exception closes the window and is raised.
  void show_until_hidden();

  // Size and column widths, as restore_layout takes them.
  std::string layout_state() const;
  void restore_layout(const std::string& state);

  // Escape is Cancel.
  void reject() override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  class Content;
  std::unique_ptr<Content> content_;
};

}  // namespace kestrova
