#include "tests/platform/qt/window_user.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <deque>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

namespace kestrova::test {
namespace {

QString to_qt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// A click where a user cannot click reaches nobody.
bool is_in_reach(const QWidget& widget) { return widget.isEnabled() && widget.isVisible(); }

}  // namespace

void settle() {
  for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
}

namespace {

constexpr int kPause = 5;  // milliseconds

// The steps that are still to be done, and the one at work: nullopt, or the modal widget over which
// it began.
struct Script {
  std::deque<std::function<void()>> steps;
  std::optional<QWidget*> at_work;
};

// What the last step has left open.
void close_later() {
  const QPointer<QWidget> open = QApplication::activeModalWidget();
  if (!open) return;
  QTimer::singleShot(kPause, [open] {
    if (!open || !open->isVisible()) return;
    ADD_FAILURE() << "left open: " << open->windowTitle().toStdString();
    open->close();
  });
}

void do_next(const std::shared_ptr<Script>& script) {
  if (script->steps.empty()) return;
  QTimer::singleShot(kPause, [script] { do_next(script); });
  if (script->at_work && *script->at_work == QApplication::activeModalWidget()) return;
  const std::function<void()> step = std::move(script->steps.front());
  script->steps.pop_front();
  const auto before = std::exchange(script->at_work, QApplication::activeModalWidget());
  try {
    step();
  } catch (const std::exception& error) {
    ADD_FAILURE() << "a step failed: " << error.what();
    script->steps.clear();
  }
  script->at_work = before;
  if (script->steps.empty()) close_later();
}

}  // namespace

void when_idle(std::vector<std::function<void()>> steps) {
  const auto script = std::make_shared<Script>();
  script->steps.assign(steps.begin(), steps.end());
  QTimer::singleShot(0, [script] { do_next(script); });
}

QWidget& WindowUser::widget(std::string_view name) const {
  auto* const found = window_.findChild<QWidget*>(to_qt(name));
  if (found == nullptr) throw std::out_of_range("no widget " + std::string(name));
  return *found;
}

QPushButton& WindowUser::button(const Control& control) const {
  return dynamic_cast<QPushButton&>(widget(control));
}
QComboBox& WindowUser::combo(const Control& control) const {
  return dynamic_cast<QComboBox&>(widget(control));
}
QListWidget& WindowUser::list(const Control& control) const {
  return dynamic_cast<QListWidget&>(widget(control));
}

void WindowUser::click(const Control& control) const {
  QWidget& target = widget(control);
  if (!is_in_reach(target)) return;
  QTest::mouseClick(&target, Qt::LeftButton, {}, QPoint(12, target.height() / 2));
  settle();
}

void WindowUser::pick(const Control& control, int index) const {
  settle();
  QWidget& target = widget(control);
  if (!is_in_reach(target)) return;
  QAbstractItemView* view = qobject_cast<QListWidget*>(&target);
  if (auto* const picker = qobject_cast<QComboBox*>(&target)) {
    picker->setFocus();
    picker->showPopup();
    view = picker->view();
  }
  const QModelIndex row = view->model()->index(index, 0);
  view->scrollTo(row);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(row).center());
  settle();
  window_.activateWindow();  // without a window manager nobody else does when a list has closed
  settle();
}

void WindowUser::pick(const Control& control, const std::string& text) const {
  settle();
  const std::vector<std::string> all = texts(control);
  const auto found = std::find(all.begin(), all.end(), text);
  if (found == all.end()) throw std::out_of_range(control.name() + " has no entry " + text);
  pick(control, static_cast<int>(found - all.begin()));
}

void WindowUser::double_click(const Control& control, int index) const {
  pick(control, index);
  QListWidget& target = list(control);
  if (!is_in_reach(target)) return;
  QTest::mouseDClick(target.viewport(), Qt::LeftButton, {},
                     target.visualItemRect(target.item(index)).center());
  settle();
}

void WindowUser::drag(const Control& control, int from_row, double to_row) const {
  QListWidget& target = list(control);
  const QRect first = target.visualItemRect(target.item(from_row));
  const int height = first.height();
  const QPoint from = first.center();
  const QPoint to(from.x(), static_cast<int>(to_row * height) + height / 2);
  QTest::mousePress(target.viewport(), Qt::LeftButton, {}, from);
  settle();
  // QTest's own move presses no button.
  for (const QPoint& point : {from + (to - from) / 2, to}) {
    QMouseEvent move(QEvent::MouseMove, point, target.viewport()->mapToGlobal(point), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target.viewport(), &move);
  }
  QTest::mouseRelease(target.viewport(), Qt::LeftButton, {}, to);
  settle();
}

void WindowUser::key(int key, Qt::KeyboardModifiers modifiers) const {
  QWidget* const target = QApplication::focusWidget();
  QTest::keyClick(target != nullptr ? target : &window_, static_cast<Qt::Key>(key), modifiers);
  settle();
}

void WindowUser::type(std::string_view text) const {
  for (const QChar character : to_qt(text)) {
    QWidget* const target = QApplication::focusWidget();
    if (target == nullptr) throw std::out_of_range("nothing has the focus");
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(character));
    QApplication::sendEvent(target, &press);
    settle();
  }
}

void WindowUser::focus(const Control& control) const {
  widget(control).setFocus(Qt::TabFocusReason);
  settle();
}

std::vector<std::string> WindowUser::texts(const Control& control) const {
  std::vector<std::string> result;
  const QAbstractItemModel* model = nullptr;
  QWidget& target = widget(control);
  if (auto* const picker = qobject_cast<QComboBox*>(&target)) model = picker->model();
  if (auto* const rows = qobject_cast<QListWidget*>(&target)) model = rows->model();
  for (int i = 0; i < model->rowCount(); ++i) {
    result.push_back(model->index(i, 0).data().toString().toStdString());
  }
  return result;
}

std::string WindowUser::focused() const {
  const QWidget* const target = QApplication::focusWidget();
  return target == nullptr ? "" : target->objectName().toStdString();
}

}  // namespace kestrova::test
