// Each control bound to its widget, both ways: what the control holds is shown, and what the user
// does goes to the control. Nothing is decided here.
//
// Showing waits for the event loop, because a handler may change a control many times, and while an
// event is still at work in the widget itself. What is shown raises no event of the control.
#pragma once

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "platform/controls.h"
#include "platform/qt/entry_list_view.h"
#include "platform/qt/event_boundary.h"
#include "platform/qt/value_edit.h"

namespace kestrova::qt {

class ControlBinding : public QObject {
 public:
  ControlBinding(Control& control, QWidget& widget, EventBoundary& boundary);
  ~ControlBinding() override;

  // Shows the control as soon as the event loop runs again.
  void show_later();
  // Shows it now.
  void show_now();

 protected:
  virtual void show() {}

  // A user's action: run through the boundary, and shown again also when the control refuses it.
  void act(const std::function<void()>& action);
  void act_confirmed(const std::function<void()>& action);

  EventBoundary& boundary() const { return boundary_; }

 private:
  void leave();

  Control& control_;
  QWidget& widget_;
  EventBoundary& boundary_;
  bool waiting_ = false;
};

class FrameBinding final : public ControlBinding {
 public:
  FrameBinding(Frame& frame, QGroupBox& box, EventBoundary& boundary);
};

class ButtonBinding final : public ControlBinding {
 public:
  ButtonBinding(Button& button, QPushButton& widget, EventBoundary& boundary);
};

class CheckBoxBinding final : public ControlBinding {
 public:
  // The caption of the control, when it has one, stands behind the widget's own.
  CheckBoxBinding(CheckBox& box, QCheckBox& widget, EventBoundary& boundary);

 private:
  void show() override;
  CheckBox& box_;
  QCheckBox& widget_;
  QString caption_;
};

// A text that code writes and the user reads, in either widget.
class TextBinding final : public ControlBinding {
 public:
  TextBinding(TextBox& box, QLineEdit& widget, EventBoundary& boundary);
  TextBinding(TextBox& box, QPlainTextEdit& widget, EventBoundary& boundary);

 private:
  void show() override;
  TextBox& box_;
  std::function<void(const QString&)> set_text_;
};

class ListBinding final : public ControlBinding {
 public:
  // Its rows can be dragged when the control is a ListBox.
  ListBinding(EntryList& list, EntryListView& view, EventBoundary& boundary);

 private:
  void show() override;
  void bind_drag(ListBox& list);
  EntryList& list_;
  EntryListView& view_;
};

class ComboBinding : public ControlBinding {
 public:
  ComboBinding(ComboBox& combo, QComboBox& widget, EventBoundary& boundary);

 protected:
  void show() override;
  ComboBox& combo_;
  QComboBox& widget_;

 private:
  void show_entries();
  const QString tip_;
  std::vector<ListEntry> shown_;
};

// A combo box with free text. The text counts as typed from the first key on until it is confirmed:
// by a pick, by leaving the box, or by another action of the user. Text that code has put into the
// box is not the user's, and leaving it is no confirmation. Nor is leaving it for Cancel, which
// asks nothing: what stays typed is confirmed when the focus goes on from there.
class ValueBinding final : public ComboBinding {
 public:
  // on_enter: Enter behind a value that is confirmed.
  ValueBinding(ComboBox& combo, QComboBox& widget, ValueEdit& edit, QWidget& cancel,
               EventBoundary& boundary, std::function<void()> on_enter);

  // Confirms what is typed.
  void confirm();

  // Puts the text into the box and confirms it, as if typed.
  void type(const std::string& text);

 protected:
  // Sees the focus leave the box, or Cancel.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void show() override;
  int filter_key(int key);
  void typed(const QString& text);

  ValueEdit& edit_;
  const QWidget& cancel_;
  bool is_typed_ = false;
  bool is_confirming_ = false;
};

}  // namespace kestrova::qt
