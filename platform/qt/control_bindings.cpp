#include "platform/qt/control_bindings.h"

#include <QApplication>
#include <QFocusEvent>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>

#include "platform/qt/captions.h"

namespace kestrova::qt {

ControlBinding::ControlBinding(Control& control, QWidget& widget, EventBoundary& boundary)
    : control_(control), widget_(widget), boundary_(boundary) {
  control_.subscribe([this] { show_later(); });
  control_.subscribe_focus([this] {
    show_now();  // a widget that is still disabled takes no focus
    widget_.setFocus(Qt::OtherFocusReason);
  });
  show_later();
}

ControlBinding::~ControlBinding() {
  control_.subscribe({});
  control_.subscribe_focus({});
}

void ControlBinding::show_later() {
  if (waiting_) return;
  waiting_ = true;
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (waiting_) show_now();
      },
      Qt::QueuedConnection);
}

void ControlBinding::show_now() {
  waiting_ = false;
  if (!control_.enabled() && widget_.hasFocus()) leave();
  widget_.setEnabled(control_.enabled());
  if (widget_.isHidden() == control_.visible()) widget_.setVisible(control_.visible());
  show();
}

// Qt would hand the focus, and with it the next key, to the next button: a line moved down by a
// repeated key would then empty the list.
void ControlBinding::leave() {
  auto* const list = widget_.window()->findChild<QWidget*>("ListCriteria");
  if (list != nullptr) list->setFocus();
}

void ControlBinding::act(const std::function<void()>& action) {
  boundary_.run(action);
  show_later();
}

void ControlBinding::act_confirmed(const std::function<void()>& action) {
  boundary_.run_confirmed(action);
  show_later();
}

FrameBinding::FrameBinding(Frame& frame, QGroupBox& box, EventBoundary& boundary)
    : ControlBinding(frame, box, boundary) {}

ButtonBinding::ButtonBinding(Button& button, QPushButton& widget, EventBoundary& boundary)
    : ControlBinding(button, widget, boundary) {
  connect(&widget, &QPushButton::clicked, this, [this, &button] {
    this->boundary().press(button);
    show_later();
  });
}

CheckBoxBinding::CheckBoxBinding(CheckBox& box, QCheckBox& widget, EventBoundary& boundary)
    : ControlBinding(box, widget, boundary), box_(box), widget_(widget), caption_(widget.text()) {
  connect(&widget, &QCheckBox::clicked, this, [this] { act_confirmed([this] { box_.click(); }); });
}

void CheckBoxBinding::show() {
  widget_.setChecked(box_.checked());
  const QString caption = to_qt(box_.caption()).replace('&', "&&");
  const QString text = caption.isEmpty() ? caption_ : caption_ + ": " + caption;
  if (widget_.text() == text) return;
  widget_.setText(text);
  widget_.setShortcut({});  // the window has the mnemonic
  widget_.setAccessibleName(QString(caption_).remove('&') +
                            (caption.isEmpty() ? QString() : ": " + to_qt(box_.caption())));
}

TextBinding::TextBinding(TextBox& box, QLineEdit& widget, EventBoundary& boundary)
    : ControlBinding(box, widget, boundary), box_(box), set_text_([&widget](const QString& text) {
        if (widget.text() != text) widget.setText(text);
        widget.setCursorPosition(0);
      }) {}

TextBinding::TextBinding(TextBox& box, QPlainTextEdit& widget, EventBoundary& boundary)
    : ControlBinding(box, widget, boundary), box_(box), set_text_([&widget](const QString& text) {
        if (widget.toPlainText() != text) widget.setPlainText(text);
      }) {}

void TextBinding::show() { set_text_(to_qt(box_.text())); }

ListBinding::ListBinding(EntryList& list, EntryListView& view, EventBoundary& boundary)
    : ControlBinding(list, view, boundary), list_(list), view_(view) {
  view.on_pick = [this](int row) { act_confirmed([this, row] { list_.pick(row); }); };
  view.on_double_click = [this] { act_confirmed([this] { list_.double_click(); }); };
  if (auto* const draggable = dynamic_cast<ListBox*>(&list)) bind_drag(*draggable);
}

void ListBinding::bind_drag(ListBox& list) {
  constexpr int kLeftButton = 1;
  view_.on_drag = [this, &list] {
    act([&list] {
      if (list.reachable() && list.on_mouse_move) list.on_mouse_move(kLeftButton);
    });
    return list.is_dragging;
  };
  view_.on_drop = [this, &list](QPoint position) {
    act([this, &list, position] {
      list.top_index = view_.top_row();
      list.row_height = view_.row_height();
      if (list.on_drag_drop) {
        list.on_drag_drop(list, position.x(), position.y() - view_.top_of_rows());
      }
    });
  };
  view_.on_drag_cancelled = [this, &list] {
    list.is_dragging = false;
    show_later();
  };
}

void ListBinding::show() { view_.show_entries(list_.entries(), list_.index()); }

ComboBinding::ComboBinding(ComboBox& combo, QComboBox& widget, EventBoundary& boundary)
    : ControlBinding(combo, widget, boundary),
      combo_(combo),
      widget_(widget),
      tip_(widget.toolTip()) {
  connect(&widget, &QComboBox::activated, this,
          [this](int index) { act([this, index] { combo_.pick(index); }); });
}

// A combo box of Qt selects its first added entry: the selection is set behind the entries, and
// nobody hears of either.
void ComboBinding::show() {
  const QSignalBlocker quiet(widget_);
  show_entries();
  // Setting no index clears a typed text.
  if (widget_.currentIndex() != combo_.index()) widget_.setCurrentIndex(combo_.index());
  // A long entry may be cut off in the box.
  widget_.setToolTip(combo_.text().empty() ? tip_ : to_qt(combo_.text()) + "\n" + tip_);
}

void ComboBinding::show_entries() {
  if (shown_ == combo_.entries()) return;
  shown_ = combo_.entries();
  QStringList texts;
  for (const ListEntry& entry : shown_) texts << to_qt(entry.text);
  widget_.clear();
  widget_.addItems(texts);
}

ValueBinding::ValueBinding(ComboBox& combo, QComboBox& widget, ValueEdit& edit, QWidget& cancel,
                           EventBoundary& boundary, std::function<void()> on_enter)
    : ComboBinding(combo, widget, boundary), edit_(edit), cancel_(cancel) {
  edit.filter_key = [this](int key) { return filter_key(key); };
  edit.installEventFilter(this);
  widget.installEventFilter(this);
  cancel.installEventFilter(this);
  edit.on_enter = [this, on_enter = std::move(on_enter)] {
    confirm();
    on_enter();
  };
  connect(&edit, &QLineEdit::textEdited, this, [this](const QString& text) { typed(text); });
  connect(&widget, &QComboBox::activated, this, [this] { is_typed_ = false; });
}

// The window losing the focus to another one, or to a menu, is no leaving, and the focus may stand
// in the box or in its text.
bool ValueBinding::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() != QEvent::FocusOut) return false;
  const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
  const bool is_elsewhere = reason == Qt::ActiveWindowFocusReason ||
                            reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason;
  const QWidget* const now = QApplication::focusWidget();
  if (!is_elsewhere && now != &widget_ && now != &edit_ && now != &cancel_) confirm();
  return false;
}

int ValueBinding::filter_key(int key) {
  int taken = 0;
  act([this, key, &taken] {
    if (!combo_.reachable()) return;
    int filtered = key;
    if (combo_.on_key_press) combo_.on_key_press(filtered);
    taken = filtered;
  });
  return taken;
}

void ValueBinding::typed(const QString& text) {
  is_typed_ = true;
  act([this, &text] {
    if (combo_.reachable()) combo_.set_text(from_qt(text));
  });
}

void ValueBinding::type(const std::string& text) {
  typed(to_qt(text));
  confirm();
}

void ValueBinding::confirm() {
  if (!is_typed_ || is_confirming_) return;
  is_confirming_ = true;
  // A value that could not be confirmed stays typed: the line being composed still holds the value
  // before it, which no button may take for this one.
  act([this] {
    bool cancel = false;
    if (combo_.on_validate) combo_.on_validate(cancel);
    is_typed_ = false;
    if (cancel) combo_.take_focus();
  });
  is_confirming_ = false;
}

void ValueBinding::show() {
  const QSignalBlocker quiet(edit_);
  const QString before = edit_.text();
  const int cursor = edit_.cursorPosition();
  ComboBinding::show();
  const QString text = to_qt(combo_.text());
  if (edit_.text() != text) edit_.setText(text);
  if (before != text) {
    is_typed_ = false;
  } else if (edit_.cursorPosition() != cursor) {
    edit_.setCursorPosition(cursor);  // which would also drop a selection
  }
}

}  // namespace kestrova::qt
