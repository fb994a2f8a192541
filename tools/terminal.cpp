#include "tools/terminal.h"

#include <algorithm>
#include <array>

#include "platform/error.h"
#include "platform/text.h"
#include "tools/options.h"
#include "tools/table_printer.h"

namespace kestrova::tool {
namespace {

constexpr std::int32_t kButtonsMask = 15;  // of the flags of a message box

struct AnswerWord {
  std::string_view word;
  MessageResult button;
};

constexpr std::array kAnswerWords = {
    AnswerWord{"yes", MessageResult::kYes}, AnswerWord{"y", MessageResult::kYes},
    AnswerWord{"ja", MessageResult::kYes},  AnswerWord{"j", MessageResult::kYes},
    AnswerWord{"no", MessageResult::kNo},   AnswerWord{"n", MessageResult::kNo},
    AnswerWord{"nein", MessageResult::kNo},
};

// The button that an answer presses; an empty one presses the default button.
std::optional<MessageResult> button_of(std::string_view answer, std::int32_t flags) {
  if (answer.empty()) {
    return (flags & kSecondButtonDefault) != 0 ? MessageResult::kNo : MessageResult::kYes;
  }
  const auto row = std::find_if(
      kAnswerWords.begin(), kAnswerWords.end(),
      [answer](const AnswerWord& word) { return text::equal_ignoring_case(word.word, answer); });
  if (row == kAnswerWords.end()) return std::nullopt;
  return row->button;
}

}  // namespace

std::optional<std::string> LineSource::read(std::string_view prompt) {
  std::optional<std::string> line = next_line(prompt);
  if (line) ++line_number_;
  return line;
}

std::optional<std::string> StreamLines::next_line(std::string_view prompt) {
  if (interactive_) out_ << prompt << std::flush;
  std::string line;
  if (!std::getline(in_, line)) return std::nullopt;
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

// The answer to a question. In a script, which has no prompts, both are shown together.
std::optional<std::string> Terminal::ask(const std::string& question) {
  std::optional<std::string> answer = lines_.read(question);
  if (lines_.is_interactive()) return answer;
  if (!answer) throw UsageError("the input ends before the answer to \"" + question + "\"");
  out_ << question << *answer << '\n';
  return answer;
}

MessageResult Terminal::show_message(const Message& message) {
  const std::string prompt = fit_cell(message.prompt, SIZE_MAX);
  if ((message.flags & kButtonsMask) != kYesNo) {
    messages_.push_back(prompt);
    return MessageResult::kOk;
  }
  const std::string question = prompt + " (yes/no) ";
  std::optional<std::string> answer;
  std::optional<MessageResult> button;
  while (!button) {
    answer = ask(question);
    button = answer ? button_of(text::trim(*answer), message.flags) : MessageResult::kNo;
    if (!button && !lines_.is_interactive()) {
      throw UsageError("'" + *answer + "' does not answer the question: 'yes' or 'no' does");
    }
  }
  if (*button == MessageResult::kNo) declined_ = true;
  return *button;
}

std::optional<std::string> Terminal::ask_text(std::string_view prompt, std::string_view) {
  std::optional<std::string> answer = std::exchange(prepared_answer_, std::nullopt);
  if (!answer) answer = ask(fit_cell(prompt, SIZE_MAX) + ": ");
  if (!answer || text::trim(*answer).empty()) declined_ = true;
  return answer;
}

void Terminal::show_modal(ModalDialog& dialog) {
  auto* const selection = dynamic_cast<SelectionDialog*>(&dialog);
  if (selection == nullptr) throw InvalidArgument("A session shows no dialog but the selection.");
  show_(*selection);
}

}  // namespace kestrova::tool
