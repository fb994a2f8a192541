// The user of a session, who is read line by line: a person at a terminal or a script.
#pragma once

#include <functional>
#include <istream>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/selection_dialog.h"
#include "platform/user_interface.h"

namespace kestrova::tool {

// Where the lines come from.
class LineSource {
 public:
  virtual ~LineSource() = default;
  LineSource(const LineSource&) = delete;
  LineSource& operator=(const LineSource&) = delete;

  // Whether a person answers, who is shown prompts and may try again.
  virtual bool is_interactive() const = 0;

  // The next line without its end; nothing at the end of the input.
  std::optional<std::string> read(std::string_view prompt);

  // Number of the line that was read last, counted from 1.
  int line_number() const { return line_number_; }

 protected:
  LineSource() = default;

 private:
  virtual std::optional<std::string> next_line(std::string_view prompt) = 0;
  int line_number_ = 0;
};

// The lines of a stream; with prompts on out for a person.
class StreamLines : public LineSource {
 public:
  StreamLines(std::istream& in, std::ostream& out, bool interactive)
      : in_(in), out_(out), interactive_(interactive) {}
  bool is_interactive() const override { return interactive_; }

 private:
  std::optional<std::string> next_line(std::string_view prompt) override;

  std::istream& in_;
  std::ostream& out_;
  bool interactive_;
};

// The user interface of the library, on lines. What the editor asks, the next line answers; a
// message that only informs is kept for the command that caused it.
class Terminal : public UserInterface {
 public:
  // Shows the dialog until it is no longer visible.
  using Show = std::function<void(SelectionDialog&)>;

  Terminal(LineSource& lines, std::ostream& out) : lines_(lines), out_(out) {}

  void on_dialog(Show show) { show_ = std::move(show); }

  // The answer to the next input box, so that a command can bring it along.
  void prepare_answer(std::string answer) { prepared_answer_ = std::move(answer); }
  void forget_answer() { prepared_answer_.reset(); }

  // The messages since the last call, and whether there are any.
  std::vector<std::string> take_messages() { return std::exchange(messages_, {}); }
  bool has_messages() const { return !messages_.empty(); }
  // Whether the user has answered No, or an input box with nothing, since the last call.
  bool take_declined() { return std::exchange(declined_, false); }

  // Raise UsageError when a script ends before the answer, or has another line than one.
  MessageResult show_message(const Message& message) override;
  std::optional<std::string> ask_text(std::string_view prompt, std::string_view title) override;
  PointerShape pointer() const override { return pointer_; }
  void set_pointer(PointerShape shape) override { pointer_ = shape; }
  void show_modal(ModalDialog& dialog) override;

 private:
  std::optional<std::string> ask(const std::string& question);

  LineSource& lines_;
  std::ostream& out_;
  Show show_;
  std::optional<std::string> prepared_answer_;
  std::vector<std::string> messages_;
  bool declined_ = false;
  PointerShape pointer_ = PointerShape::kDefault;
};

}  // namespace kestrova::tool
