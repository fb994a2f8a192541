#include "platform/qt/value_edit.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <memory>

namespace kestrova::qt {
namespace {

constexpr int kBackspace = 8;
constexpr int kEnter = 13;

// The character that the key types; 0 for keys that type none.
char32_t typed_character(const QKeyEvent& event) {
  // AltGr reports as Ctrl and Alt together.
  const Qt::KeyboardModifiers modifiers = event.modifiers();
  const bool is_command =
      modifiers.testFlag(Qt::ControlModifier) != modifiers.testFlag(Qt::AltModifier);
  const auto characters = event.text().toUcs4();
  if (is_command || characters.size() != 1) return 0;
  return QChar::isPrint(characters.front()) ? characters.front() : 0;
}

QString text_of(char32_t character) { return QString::fromUcs4(&character, 1); }

}  // namespace

void ValueEdit::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Paste)) {
    type_text(QApplication::clipboard()->text());
    return;
  }
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (filter_key(kEnter) != 0) on_enter();
    return;
  }
  if (event->key() == Qt::Key_Backspace) {
    if (filter_key(kBackspace) != 0) QLineEdit::keyPressEvent(event);
    return;
  }
  const char32_t character = typed_character(*event);
  if (character == 0) {
    QLineEdit::keyPressEvent(event);
    return;
  }
  const int taken = filter_key(static_cast<int>(character));
  if (taken == 0) return;
  QKeyEvent typed(QEvent::KeyPress, event->key(), event->modifiers(),
                  text_of(static_cast<char32_t>(taken)));
  QLineEdit::keyPressEvent(&typed);
}

void ValueEdit::type_text(const QString& typed) {
  const QString before = text();
  const int cursor = cursorPosition();
  const QString selected = selectedText();
  for (const uint character : typed.toUcs4()) {
    const int taken = filter_key(static_cast<int>(character));
    if (taken == 0) {
      if (text() == before) return;
      setText(before);
      if (selected.isEmpty()) setCursorPosition(cursor);
      emit textEdited(before);
      return;
    }
    insert(text_of(static_cast<char32_t>(taken)));
  }
}

void ValueEdit::inputMethodEvent(QInputMethodEvent* event) {
  if (event->commitString().isEmpty()) {
    QLineEdit::inputMethodEvent(event);
    return;
  }
  const QString committed = event->commitString();
  QInputMethodEvent composed(event->preeditString(), event->attributes());
  QLineEdit::inputMethodEvent(&composed);
  type_text(committed);
}

void ValueEdit::contextMenuEvent(QContextMenuEvent* event) {
  const std::unique_ptr<QMenu> menu(createStandardContextMenu());
  if (auto* const paste = menu->findChild<QAction*>("edit-paste")) {
    paste->disconnect();
    connect(paste, &QAction::triggered, this,
            [this] { type_text(QApplication::clipboard()->text()); });
  }
  menu->exec(event->globalPos());
}

void ValueEdit::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::MiddleButton) {
    QLineEdit::mouseReleaseEvent(event);
    return;
  }
  const QClipboard& clipboard = *QApplication::clipboard();
  if (clipboard.supportsSelection()) type_text(clipboard.text(QClipboard::Selection));
}

void ValueEdit::dropEvent(QDropEvent* event) {
  type_text(event->mimeData()->text());
  event->acceptProposedAction();
}

}  // namespace kestrova::qt
