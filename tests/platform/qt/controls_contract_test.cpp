// The control rules on the widgets.
#include "tests/support/controls_contract.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "platform/qt/qt_user_interface.h"
#include "platform/qt/selection_window.h"
#include "tests/platform/qt/window_user.h"

namespace kestrova::test {
namespace {

class Widgets final : public ShownControls {
 public:
  explicit Widgets(PlainDialog& dialog) : window_(dialog, user_interface_, settings_) {
    window_.show();
    window_.activateWindow();
    settle();
  }

  void pick(EntryList& list, int index) override { user_.pick(list, index); }
  void double_click(EntryList& list, int index) override { user_.double_click(list, index); }
  void click(Button& button) override { click_on(button); }
  void click(CheckBox& box) override { click_on(box); }
  void type(ComboBox& combo, std::string_view text) override {
    settle();
    if (!user_.widget(combo).isEnabled() || !user_.widget(combo).isVisible()) return;
    user_.focus(combo);
    user_.key(Qt::Key_End);
    user_.type(text);
  }
  void type_backspace(ComboBox& combo) override {
    user_.focus(combo);
    user_.key(Qt::Key_End);
    user_.key(Qt::Key_Backspace);
  }
  void leave(ComboBox&) override { user_.key(Qt::Key_Tab); }

  std::vector<std::string> texts(const EntryList& list) override {
    settle();
    return user_.texts(list);
  }
  int index(const EntryList& list) override {
    settle();
    QWidget& widget = user_.widget(list);
    if (auto* const combo = qobject_cast<QComboBox*>(&widget)) return combo->currentIndex();
    const QListWidget& rows = user_.list(list);
    const QList<QListWidgetItem*> selected = rows.selectedItems();
    return selected.isEmpty() ? -1 : rows.row(selected.front());
  }
  std::string text(const ComboBox& combo) override {
    settle();
    return user_.combo(combo).currentText().toStdString();
  }
  std::string text(const TextBox& box) override {
    settle();
    QWidget& widget = user_.widget(box);
    if (auto* const line = qobject_cast<QLineEdit*>(&widget)) return line->text().toStdString();
    return dynamic_cast<QPlainTextEdit&>(widget).toPlainText().toStdString();
  }
  bool is_checked(const CheckBox& box) override {
    settle();
    return dynamic_cast<QCheckBox&>(user_.widget(box)).isChecked();
  }
  bool is_enabled(const Control& control) override {
    settle();
    return user_.widget(control).isEnabled();
  }
  bool is_visible(const Control& control) override {
    settle();
    return user_.widget(control).isVisible();
  }

 private:
  void click_on(Control& control) {
    settle();
    user_.click(control);
  }

  QtUserInterface user_interface_;
  QtSettings settings_;
  SelectionWindow window_;
  WindowUser user_{window_};
};

INSTANTIATE_TEST_SUITE_P(Qt, ControlsContract,
                         testing::Values(ControlsAdapter{"Qt",
                                                         [](PlainDialog& dialog) {
                                                           return std::make_unique<Widgets>(dialog);
                                                         }}),
                         controls_adapter_name);

}  // namespace
}  // namespace kestrova::test
