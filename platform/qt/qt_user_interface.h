// The user interface in Qt 6 Widgets: message box, input box, busy pointer, and the dialog
// "Selektion" over the editor's controls.
//
//   QApplication application(argc, argv);
//   install_host({.suite = ..., .user_interface = std::make_shared<QtUserInterface>(
//                     QtSettings{.parent = &main_window, .language = "DE"}), ...});
//
// Needs a QApplication, and its thread. Every dialog is modal to the one that is open, or to the
// host's window.
#pragma once

#include "platform/qt/qt_settings.h"
#include "platform/user_interface.h"

namespace kestrova {

class SelectionDialog;

class QtUserInterface final : public UserInterface {
 public:
  explicit QtUserInterface(QtSettings settings = {});
  ~QtUserInterface() override;
  QtUserInterface(const QtUserInterface&) = delete;
  QtUserInterface& operator=(const QtUserInterface&) = delete;

  // May be changed while no dialog is open.
  QtSettings& settings() { return settings_; }

  // Escape answers Cancel, or No where there is no Cancel. The pointer over the box is an arrow,
  // whatever pointer() says. There is no help viewer: help file and context are not shown.
  MessageResult show_message(const Message& message) override;
  std::optional<std::string> ask_text(std::string_view prompt, std::string_view title) override;

  // The hourglass is the application's override cursor.
  PointerShape pointer() const override { return pointer_; }
  void set_pointer(PointerShape shape) override;

  // Shows a SelectionDialog; raises InvalidArgument for any other dialog and ObjectNotSet without a
  // QApplication. What it raises besides is told in selection_window.h.
  void show_modal(ModalDialog& dialog) override;

 private:
  QtSettings settings_;
  PointerShape pointer_ = PointerShape::kDefault;
  std::string window_state_;  // of the window shown last
};

}  // namespace kestrova
