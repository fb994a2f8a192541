// The user interface of this host: a user who knows what to pick. A program with windows binds the
// controls of the dialog to its own and returns from show_modal when the dialog is hidden.
#pragma once

#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include "platform/selection_dialog.h"
#include "platform/user_interface.h"

class Clerk : public kestrova::UserInterface {
 public:
  kestrova::MessageResult show_message(const kestrova::Message& message) override {
    std::cout << message.title << ": " << message.prompt << "\n";
    return kestrova::MessageResult::kOk;
  }
  std::optional<std::string> ask_text(std::string_view, std::string_view) override { return {}; }
  kestrova::PointerShape pointer() const override { return pointer_; }
  void set_pointer(kestrova::PointerShape shape) override { pointer_ = shape; }

  void show_modal(kestrova::ModalDialog& shown) override {
    auto& dialog = dynamic_cast<kestrova::SelectionDialog&>(shown);
    print(dialog);
    pick(dialog.cboField, "Nettobetrag");
    pick(dialog.cboOperator, ">=");
    type(dialog.cboValue, "1000,50");
    dialog.btnInsert.click();
    dialog.btnOr.click();
    pick(dialog.cboField, "Käufer");
    pick(dialog.cboValue, "Gemeinde Wackersberg");
    dialog.btnInsert.click();
    print(dialog);
    dialog.btnOk.click();
    // A window that refuses OK stays open; this user then gives up.
    if (dialog.is_visible()) dialog.close_requested();
  }

 private:
  static void print(const kestrova::SelectionDialog& dialog) {
    std::cout << "[" << dialog.caption() << "]\n";
    for (const kestrova::ListEntry& line : dialog.ListCriteria.entries()) {
      std::cout << "  " << line.text << "\n";
    }
  }

  static void pick(kestrova::EntryList& list, std::string_view text) {
    for (int i = 0; i < list.count(); ++i) {
      if (list.entry_text(i) == text) return list.pick(i);
    }
  }

  // Types a value and leaves the box, which is when the dialog takes it over.
  static void type(kestrova::ComboBox& box, std::string_view text) {
    if (!box.reachable()) return;
    box.set_text(text);
    bool stay = false;
    box.on_validate(stay);
  }

  kestrova::PointerShape pointer_ = kestrova::PointerShape::kDefault;
};
