#include "platform/qt/qt_user_interface.h"

#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "platform/error.h"
#include "platform/qt/captions.h"
#include "platform/qt/selection_window.h"

namespace kestrova {
namespace {

using namespace qt;

constexpr const char* kOrganisation = "Kestrova";
constexpr const char* kLayoutKey = "SelectionWindow/layout";

// The parts of the flags of a message box.
constexpr std::int32_t kButtonsMask = 0x0F;
constexpr std::int32_t kIconMask = 0xF0;
constexpr std::int32_t kDefaultMask = 0xF00;

struct BoxButton {
  MessageResult result;
  std::string_view caption;
  QMessageBox::ButtonRole role;
};

constexpr BoxButton kOk = {MessageResult::kOk, "btnOk", QMessageBox::AcceptRole};
constexpr BoxButton kCancel = {MessageResult::kCancel, "box.cancel", QMessageBox::RejectRole};
constexpr BoxButton kAbort = {MessageResult::kAbort, "box.abort", QMessageBox::RejectRole};
constexpr BoxButton kRetry = {MessageResult::kRetry, "box.retry", QMessageBox::AcceptRole};
constexpr BoxButton kIgnore = {MessageResult::kIgnore, "box.ignore", QMessageBox::AcceptRole};
constexpr BoxButton kYes = {MessageResult::kYes, "box.yes", QMessageBox::YesRole};
constexpr BoxButton kNo = {MessageResult::kNo, "box.no", QMessageBox::NoRole};

struct ButtonSet {
  std::int32_t flag;
  std::vector<BoxButton> buttons;
  MessageResult escape;
};

const std::array kButtonSets = {
    ButtonSet{0, {kOk}, MessageResult::kOk},
    ButtonSet{1, {kOk, kCancel}, MessageResult::kCancel},
    ButtonSet{2, {kAbort, kRetry, kIgnore}, MessageResult::kAbort},
    ButtonSet{3, {kYes, kNo, kCancel}, MessageResult::kCancel},
    ButtonSet{4, {kYes, kNo}, MessageResult::kNo},
    ButtonSet{5, {kRetry, kCancel}, MessageResult::kCancel},
};

const ButtonSet& button_set(std::int32_t flags) {
  const auto set = std::find_if(kButtonSets.begin(), kButtonSets.end(), [flags](const auto& s) {
    return s.flag == (flags & kButtonsMask);
  });
  if (set == kButtonSets.end()) {
    throw InvalidArgument("There is no message box with the buttons " +
                          std::to_string(flags & kButtonsMask) + ".");
  }
  return *set;
}

QMessageBox::Icon box_icon(std::int32_t flags) {
  switch (flags & kIconMask) {
    case kCriticalIcon:
      return QMessageBox::Critical;
    case 32:
      return QMessageBox::Question;
    case kExclamationIcon:
      return QMessageBox::Warning;
    case 64:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

void require_application() {
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
    throw ObjectNotSet("The host has made no QApplication.");
  }
}

// An arrow for as long as it lives: a busy pointer over a question would keep the user from it.
class ArrowPointer {
 public:
  ArrowPointer() { QApplication::setOverrideCursor(Qt::ArrowCursor); }
  ~ArrowPointer() { QApplication::restoreOverrideCursor(); }
  ArrowPointer(const ArrowPointer&) = delete;
  ArrowPointer& operator=(const ArrowPointer&) = delete;
};

// The window over which a box opens.
QWidget* owner(const QtSettings& settings) {
  QWidget* const modal = QApplication::activeModalWidget();
  if (modal != nullptr) return modal;
  return settings.parent != nullptr ? settings.parent : QApplication::activeWindow();
}

std::string stored_layout(const std::string& application) {
  if (application.empty()) return {};
  const QSettings stored(QSettings::IniFormat, QSettings::UserScope, kOrganisation,
                         to_qt(application));
  return stored.value(kLayoutKey).toByteArray().toStdString();
}

void store_layout(const std::string& application, const std::string& layout) {
  if (application.empty()) return;
  QSettings stored(QSettings::IniFormat, QSettings::UserScope, kOrganisation, to_qt(application));
  stored.setValue(kLayoutKey, QByteArray::fromStdString(layout));
}

}  // namespace

QtUserInterface::QtUserInterface(QtSettings settings) : settings_(std::move(settings)) {}

QtUserInterface::~QtUserInterface() { QtUserInterface::set_pointer(PointerShape::kDefault); }

MessageResult QtUserInterface::show_message(const Message& message) {
  require_application();
  const ButtonSet& set = button_set(message.flags);
  const ArrowPointer arrow;
  const Captions captions(settings_);
  QMessageBox box(box_icon(message.flags), to_qt(message.title), to_qt(message.prompt),
                  QMessageBox::NoButton, owner(settings_));
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  std::vector<QAbstractButton*> widgets;
  for (const BoxButton& button : set.buttons) {
    QAbstractButton* const widget = box.addButton(captions(button.caption), button.role);
    if (button.result == set.escape) box.setEscapeButton(widget);
    widgets.push_back(widget);
  }
  const auto chosen = static_cast<std::size_t>((message.flags & kDefaultMask) >> 8);
  box.setDefaultButton(qobject_cast<QPushButton*>(widgets[std::min(chosen, widgets.size() - 1)]));
  box.exec();
  const auto pressed = std::find(widgets.begin(), widgets.end(), box.clickedButton());
  return pressed == widgets.end()
             ? set.escape
             : set.buttons[static_cast<std::size_t>(pressed - widgets.begin())].result;
}

std::optional<std::string> QtUserInterface::ask_text(std::string_view prompt,
                                                     std::string_view title) {
  require_application();
  const ArrowPointer arrow;
  const Captions captions(settings_);
  QInputDialog box(owner(settings_));
  box.setWindowTitle(to_qt(title));
  box.setLabelText(to_qt(prompt));
  box.setOkButtonText(captions("btnOk"));
  box.setCancelButtonText(captions("box.cancel"));
  if (box.exec() != QDialog::Accepted) return std::nullopt;
  return from_qt(box.textValue());
}

void QtUserInterface::set_pointer(PointerShape shape) {
  if (shape == pointer_) return;
  pointer_ = shape;
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) return;
  if (shape == PointerShape::kHourglass) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

void QtUserInterface::show_modal(ModalDialog& dialog) {
  require_application();
  auto* const selection = dynamic_cast<SelectionDialog*>(&dialog);
  if (selection == nullptr) {
    throw InvalidArgument("There is no window for the dialog '" + dialog.caption() + "'.");
  }
  SelectionWindow window(*selection, *this, settings_, owner(settings_));
  if (window_state_.empty()) window_state_ = stored_layout(settings_.application);
  if (!window_state_.empty()) window.restore_layout(window_state_);
  struct LayoutKeeper {
    ~LayoutKeeper() {
      state = window.layout_state();
      store_layout(application, state);
    }
    const SelectionWindow& window;
    const std::string& application;
    std::string& state;
  };
  const LayoutKeeper keeper{window, settings_.application, window_state_};
  window.show_until_hidden();
}

}  // namespace kestrova
