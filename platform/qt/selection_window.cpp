#include "platform/qt/selection_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDataStream>
#include <QIODevice>
#include <QKeyEvent>
#include <QScreen>
#include <QShortcut>
#include <algorithm>
#include <exception>
#include <functional>
#include <utility>
#include <vector>

#include "platform/error.h"
#include "platform/qt/captions.h"
#include "platform/qt/control_bindings.h"
#include "platform/qt/row_count_line.h"
#include "platform/qt/selection_widgets.h"

namespace kestrova {

using namespace qt;

// The widgets, their bindings, and the boundary through which all actions go.
class SelectionWindow::Content final : public EventBoundary {
 public:
  Content(SelectionWindow& window, SelectionDialog& dialog, UserInterface& user_interface,
          const QtSettings& settings);
  ~Content();

  void run(const std::function<void()>& action) override;
  void run_confirmed(const std::function<void()>& action) override;
  void press(Button& button) override;

  void cancel();
  void close();
  // Raises what the host must know.
  void rethrow() const;

  QSplitter& columns() { return widgets_.columns; }

 private:
  void bind_all();
  void click(Button& button);
  void add_mnemonic(QAbstractButton& button);
  void add_shortcuts();
  void add_shortcut(const QKeySequence& keys, QWidget& where, Qt::ShortcutContext context,
                    Button& button);
  void choose_default_button();
  bool is_composing() const;

  // What a refusal of the line speaks of.
  struct Composed {
    int field;
    int oper;
    std::string value;
    friend bool operator==(const Composed&, const Composed&) = default;
  };
  Composed composed() const;
  void show_refusal(Button& button);
  void take_offered(const std::string& offered);

  void show_error();
  void tell(const Error& error);
  void follow_dialog();

  SelectionWindow& window_;
  SelectionDialog& dialog_;
  UserInterface& user_interface_;
  const QtSettings& settings_;
  const Captions captions_;
  RowCountLine* const row_count_;  // nullptr for none; the window owns it
  SelectionWidgets widgets_;
  std::vector<std::unique_ptr<ControlBinding>> bindings_;
  ValueBinding* value_ = nullptr;

  bool closed_ = false;               // the widgets are going
  int depth_ = 0;                     // of actions within actions
  std::vector<ListEntry> lines_;      // as they were after the last action
  Composed refused_;                  // as it was when the last line was refused
  Button* refused_by_ = nullptr;      // Insert, Replace or Plus
  std::exception_ptr pending_error_;  // waits to be told to the user
  std::exception_ptr ok_error_;       // of an OK with no other OK or Cancel behind it
  std::exception_ptr fatal_error_;    // closes the window
};

SelectionWindow::Content::Content(SelectionWindow& window, SelectionDialog& dialog,
                                  UserInterface& user_interface, const QtSettings& settings)
    : window_(window),
      dialog_(dialog),
      user_interface_(user_interface),
      settings_(settings),
      captions_(settings_),
      row_count_(settings.row_counter ? new RowCountLine(*settings.row_counter, captions_)
                                      : nullptr),
      widgets_(window, dialog, captions_, row_count_),
      lines_(dialog.ListCriteria.entries()),
      refused_(composed()) {
  widgets_.criteria.set_separator(to_qt(dialog.or_line()));
  bind_all();
  widgets_.refusal.on_take = [this](const std::string& offered) { take_offered(offered); };
  add_shortcuts();
  QObject::connect(qApp, &QApplication::focusChanged, &widgets_.body,
                   [this] { choose_default_button(); });
  window_.setWindowTitle(to_qt(dialog_.caption()));
}

// The widgets go before their bindings: they still have events while they go.
SelectionWindow::Content::~Content() {
  closed_ = true;
  delete &widgets_.body;
}

void SelectionWindow::Content::bind_all() {
  const auto add = [this](auto binding) {
    binding->show_now();
    bindings_.push_back(std::move(binding));
  };
  add(std::make_unique<FrameBinding>(dialog_.Frame1, widgets_.criterion_frame, *this));
  add(std::make_unique<FrameBinding>(dialog_.Frame4, widgets_.model_frame, *this));
  add(std::make_unique<ComboBinding>(dialog_.cboField, widgets_.field, *this));
  add(std::make_unique<ComboBinding>(dialog_.cboOperator, widgets_.oper, *this));
  auto value = std::make_unique<ValueBinding>(dialog_.cboValue, widgets_.value, widgets_.value_edit,
                                              widgets_.of(dialog_.btnCancel), *this,
                                              [this] { click(dialog_.btnInsert); });
  value_ = value.get();
  add(std::move(value));
  add(std::make_unique<TextBinding>(dialog_.Formula, widgets_.formula, *this));
  add(std::make_unique<TextBinding>(dialog_.txtStandard, widgets_.standard, *this));
  add(std::make_unique<ListBinding>(dialog_.ListCriteria, widgets_.criteria, *this));
  add(std::make_unique<ListBinding>(dialog_.Model, widgets_.models, *this));
  for (const auto& pair : widgets_.check_boxes) {
    add(std::make_unique<CheckBoxBinding>(pair.control, pair.widget, *this));
  }
  for (const auto& pair : widgets_.buttons) {
    add(std::make_unique<ButtonBinding>(pair.control, pair.widget, *this));
  }
}

// --- Shortcuts and default button

// As the widget's own click, so that a button that cannot be pressed stays quiet.
void SelectionWindow::Content::click(Button& button) { widgets_.of(button).click(); }

void SelectionWindow::Content::add_shortcut(const QKeySequence& keys, QWidget& where,
                                            Qt::ShortcutContext context, Button& button) {
  auto* const shortcut = new QShortcut(keys, &where);
  shortcut->setContext(context);
  QObject::connect(shortcut, &QShortcut::activated, &where, [this, &button] { click(button); });
}

// A button's own mnemonic clicks a tenth of a second later, when a fast typist is elsewhere.
void SelectionWindow::Content::add_mnemonic(QAbstractButton& button) {
  auto* const shortcut = new QShortcut(QKeySequence::mnemonic(button.text()), &window_);
  button.setShortcut({});
  QObject::connect(shortcut, &QShortcut::activated, &button, [&button] { button.click(); });
}

void SelectionWindow::Content::add_shortcuts() {
  for (const auto& pair : widgets_.check_boxes) add_mnemonic(pair.widget);
  for (const auto& pair : widgets_.buttons) {
    add_mnemonic(pair.widget);
    // Escape is the window's own.
    if (pair.keys.isEmpty() || &pair.control == &dialog_.btnCancel) continue;
    add_shortcut(pair.keys, window_, Qt::WindowShortcut, pair.control);
  }
  add_shortcut(Qt::CTRL | Qt::Key_Enter, window_, Qt::WindowShortcut, dialog_.btnOk);
  add_shortcut(Qt::CTRL | Qt::Key_Equal, window_, Qt::WindowShortcut, dialog_.btnPlus);
  add_shortcut(Qt::Key_Delete, widgets_.criteria, Qt::WidgetShortcut, dialog_.btnDelete);
  add_shortcut(Qt::Key_Delete, widgets_.models, Qt::WidgetShortcut, dialog_.btnDeleteModelle);
}

bool SelectionWindow::Content::is_composing() const {
  return widgets_.field.hasFocus() || widgets_.oper.hasFocus() || widgets_.value.hasFocus();
}

// Enter inserts the line while it is being composed, and is OK elsewhere.
void SelectionWindow::Content::choose_default_button() {
  if (closed_) return;
  widgets_.of(is_composing() ? dialog_.btnInsert : dialog_.btnOk).setDefault(true);
}

// --- Actions

void SelectionWindow::Content::run(const std::function<void()>& action) {
  if (closed_ || pending_error_ || fatal_error_) return;
  if (row_count_ != nullptr) row_count_->interrupt();
  ++depth_;
  try {
    action();
  } catch (const Error&) {
    pending_error_ = std::current_exception();
    // Behind the event that is at work: a message would open within it.
    QMetaObject::invokeMethod(
        &window_, [this] { show_error(); }, Qt::QueuedConnection);
  } catch (...) {
    fatal_error_ = std::current_exception();
  }
  --depth_;
  if (depth_ == 0) follow_dialog();
}

void SelectionWindow::Content::run_confirmed(const std::function<void()>& action) {
  value_->confirm();
  run(action);
}

void SelectionWindow::Content::press(Button& button) {
  const bool is_ok = &button == &dialog_.btnOk;
  const bool is_cancel = &button == &dialog_.btnCancel;
  if (!is_cancel) value_->confirm();
  if (pending_error_) return;
  if (is_ok || is_cancel) ok_error_ = nullptr;
  run([&button] { button.click(); });
  if (is_ok) ok_error_ = pending_error_;
  if (&button == &dialog_.btnInsert || &button == &dialog_.btnReplace ||
      &button == &dialog_.btnPlus) {
    show_refusal(button);
  }
}

// --- A line that is not taken

SelectionWindow::Content::Composed SelectionWindow::Content::composed() const {
  return {dialog_.cboField.index(), dialog_.cboOperator.index(), dialog_.cboValue.text()};
}

void SelectionWindow::Content::show_refusal(Button& button) {
  if (pending_error_ || fatal_error_) return;
  refused_ = composed();
  refused_by_ = &button;
  widgets_.refusal.show_refusal(dialog_.refused_line());
}

void SelectionWindow::Content::take_offered(const std::string& offered) {
  value_->type(offered);
  press(*refused_by_);
}

// --- Errors and what follows an action

void SelectionWindow::Content::show_error() {
  const std::exception_ptr error = std::exchange(pending_error_, nullptr);
  if (!error) return;
  try {
    std::rethrow_exception(error);
  } catch (const Error& e) {
    tell(e);
  }
}

// A host whose services raise in the middle of telling must hear of it: an error may not cross Qt.
void SelectionWindow::Content::tell(const Error& error) {
  try {
    user_interface_.show_message({.prompt = from_qt(captions_("error")) + "\n\n" + error.what(),
                                  .flags = kCriticalIcon,
                                  .title = dialog_.caption(),
                                  .help_file = {}});
  } catch (...) {
    fatal_error_ = std::current_exception();
    follow_dialog();
  }
}

// What an action may have changed besides the controls.
void SelectionWindow::Content::follow_dialog() {
  window_.setWindowTitle(to_qt(dialog_.caption()));
  widgets_.criteria.set_separator(to_qt(dialog_.or_line()));
  const bool lines_changed = lines_ != dialog_.ListCriteria.entries();
  if (lines_changed) lines_ = dialog_.ListCriteria.entries();
  if (lines_changed || composed() != refused_) widgets_.refusal.show_refusal({});
  if (fatal_error_ || !dialog_.is_visible()) {
    window_.done(QDialog::Accepted);
  } else if (row_count_ != nullptr) {
    row_count_->resume(lines_changed);
  }
}

void SelectionWindow::Content::cancel() {
  if (dialog_.btnCancel.reachable()) {
    click(dialog_.btnCancel);
  } else {
    close();
  }
}

void SelectionWindow::Content::close() {
  run([this] { dialog_.close_requested(); });
}

void SelectionWindow::Content::rethrow() const {
  if (fatal_error_) std::rethrow_exception(fatal_error_);
  if (ok_error_) std::rethrow_exception(ok_error_);
}

// --- The window

SelectionWindow::SelectionWindow(SelectionDialog& dialog, UserInterface& user_interface,
                                 const QtSettings& settings, QWidget* parent)
    : QDialog(parent) {
  setObjectName("F_Selection");
  content_ = std::make_unique<Content>(*this, dialog, user_interface, settings);
  const QFontMetrics metrics = fontMetrics();
  resize(QSize(metrics.averageCharWidth() * 150, metrics.height() * 42)
             .expandedTo(sizeHint())
             .boundedTo(screen()->availableGeometry().size()));
}

SelectionWindow::~SelectionWindow() = default;

void SelectionWindow::show_until_hidden() {
  exec();
  content_->rethrow();
}

std::string SelectionWindow::layout_state() const {
  QByteArray state;
  QDataStream stream(&state, QIODevice::WriteOnly);
  stream << saveGeometry() << content_->columns().saveState();
  return state.toStdString();
}

void SelectionWindow::restore_layout(const std::string& state) {
  QByteArray geometry;
  QByteArray columns;
  QDataStream stream(QByteArray::fromStdString(state));
  stream >> geometry >> columns;
  restoreGeometry(geometry);
  content_->columns().restoreState(columns);
}

void SelectionWindow::reject() { content_->cancel(); }

// Whether the window goes is for the dialog to say; one that goes does not keep the application
// from ending.
void SelectionWindow::closeEvent(QCloseEvent* event) {
  content_->close();
  event->setAccepted(!isVisible());
}

// A held Enter must not run on into OK when its button has been disabled under it.
void SelectionWindow::keyPressEvent(QKeyEvent* event) {
  const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (is_enter && event->isAutoRepeat()) return;
  QDialog::keyPressEvent(event);
}

}  // namespace kestrova
