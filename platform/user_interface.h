// Modal interaction with the user: message box, input box, busy pointer, showing a dialog.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestrova {

// Button and icon flags of a message box, combined by addition; the values are the system's.
inline constexpr std::int32_t kOkOnly = 0;
inline constexpr std::int32_t kYesNo = 4;
inline constexpr std::int32_t kCriticalIcon = 16;
inline constexpr std::int32_t kExclamationIcon = 48;
inline constexpr std::int32_t kSecondButtonDefault = 256;

// The button that closed a message box; the values are the system's.
enum class MessageResult : int {
  kOk = 1,
  kCancel = 2,
  kAbort = 3,
  kRetry = 4,
  kIgnore = 5,
  kYes = 6,
  kNo = 7
};

// What a message box shows.
struct Message {
  std::string prompt;
  std::int32_t flags = kOkOnly;
  std::string title;
  std::string help_file;
  std::int32_t help_context = 0;

  friend bool operator==(const Message&, const Message&) = default;
};

// The shape of the mouse pointer; the values are the system's.
enum class PointerShape : int { kDefault = 0, kHourglass = 11 };

// A dialog that can be shown modally. The port shows it until is_visible() is false.
class ModalDialog {
 public:
  virtual ~ModalDialog() = default;
  virtual std::string caption() const = 0;
  virtual bool is_visible() const = 0;
  // Called when the user closes the window itself; the dialog decides what that means.
  virtual void close_requested() = 0;

 protected:
  ModalDialog() = default;
};

class UserInterface {
 public:
  virtual ~UserInterface() = default;

  // Shows a message modally and returns the button that the user pressed.
  virtual MessageResult show_message(const Message& message) = 0;

  // Asks for one line of text. Nothing when the user cancelled.
  virtual std::optional<std::string> ask_text(std::string_view prompt, std::string_view title) = 0;

  // The mouse pointer of the whole application.
  virtual PointerShape pointer() const = 0;
  virtual void set_pointer(PointerShape shape) = 0;

  // Shows the dialog and returns when it is no longer visible.
  virtual void show_modal(ModalDialog& dialog) = 0;

 protected:
  UserInterface() = default;
};

// Shows the hourglass pointer for as long as it lives, and the default pointer afterwards.
class BusyPointer {
 public:
  explicit BusyPointer(UserInterface& ui) : ui_(ui) { ui_.set_pointer(PointerShape::kHourglass); }
  ~BusyPointer() {
    if (!kept_) ui_.set_pointer(PointerShape::kDefault);
  }
  // Leaves the hourglass as it is.
  void keep() { kept_ = true; }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;

 private:
  UserInterface& ui_;
  bool kept_ = false;
};

}  // namespace kestrova
