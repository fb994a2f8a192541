// The text of the value box: what is typed, pasted, dropped or composed by an input method goes
// through the same key filter, character by character.
#pragma once

#include <QLineEdit>
#include <functional>

namespace kestrova::qt {

class ValueEdit final : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;

  // A key before the text changes: the character's code, 13 for Enter, 8 for Backspace. Answers the
  // key to take instead, 0 for none.
  std::function<int(int key)> filter_key;
  // Enter, which the filter has let through.
  std::function<void()> on_enter;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  // As if typed; the text stays as it was when one character is refused.
  void type_text(const QString& typed);
};

}  // namespace kestrova::qt
