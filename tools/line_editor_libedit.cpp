// Line editing with libedit.
#include <histedit.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdio>
#include <stdexcept>

#include "platform/text.h"
#include "tools/line_editor.h"
#include "tools/printable.h"

namespace kestrova::tool {
namespace {

constexpr int kRememberedLines = 500;

// Names and values hold umlauts; without a locale the terminal library drops them.
void use_utf8() {
  for (const char* const locale : {"", "C.UTF-8"}) {
    if (std::setlocale(LC_CTYPE, locale) != nullptr && MB_CUR_MAX > 1) return;
  }
}

class LineEditor : public LineSource {
 public:
  LineEditor(std::ostream& out, std::FILE* terminal, Completer complete)
      : out_(out), complete_(std::move(complete)) {
    use_utf8();
    history_ = history_init();
    editor_ = el_init("kestrova-sel", stdin, terminal, stderr);
    if (history_ == nullptr || editor_ == nullptr) {
      release();
      throw std::runtime_error("The terminal cannot be used.");
    }
    HistEvent event{};
    history(history_, &event, H_SETSIZE, kRememberedLines);
    history(history_, &event, H_SETUNIQUE, 1);
    el_set(editor_, EL_CLIENTDATA, this);
    el_set(editor_, EL_PROMPT, &LineEditor::show_prompt);
    el_set(editor_, EL_EDITOR, "emacs");
    el_set(editor_, EL_SIGNAL, 1);
    el_set(editor_, EL_HIST, history, history_);
    // The library keeps both texts: the narrow form of the call would copy and never free them.
    el_wset(editor_, EL_ADDFN, L"complete-name", L"Complete a name", &LineEditor::complete_line);
    el_set(editor_, EL_BIND, "^I", "complete-name", nullptr);
  }
  ~LineEditor() override { release(); }

  bool is_interactive() const override { return true; }

 private:
  std::optional<std::string> next_line(std::string_view prompt) override {
    prompt_ = printable(prompt);  // the terminal library writes it past the stream
    out_.flush();
    int length = 0;
    const char* const text = el_gets(editor_, &length);
    if (text == nullptr || length <= 0) return std::nullopt;
    std::string line(text, static_cast<std::size_t>(length));
    if (line.ends_with('\n')) line.pop_back();
    if (!text::trim(line).empty()) {
      HistEvent event{};
      history(history_, &event, H_ENTER, line.c_str());
    }
    return line;
  }

  static LineEditor& of(EditLine* editor) {
    void* self = nullptr;
    el_get(editor, EL_CLIENTDATA, &self);
    return *static_cast<LineEditor*>(self);
  }

  static char* show_prompt(EditLine* editor) { return of(editor).prompt_.data(); }

  // Completes the end of the line as far as it is certain, then shows what it may be.
  static unsigned char complete_line(EditLine* editor, int) {
    LineEditor& self = of(editor);
    const LineInfo* const line = el_line(editor);
    const std::string before(line->buffer, line->cursor);
    const Completion completion = self.complete_(before);
    if (completion.candidates.empty()) return CC_REFRESH_BEEP;
    const std::string text = common_beginning(completion.candidates);
    const bool is_only = completion.candidates.size() == 1;
    const bool adds = text.size() > completion.typed.size();
    if (is_only || adds) {
      el_deletestr(editor, static_cast<int>(text::length(completion.typed)));
      el_insertstr(editor, (is_only ? text + " " : text).c_str());
      return CC_REFRESH;
    }
    self.show(completion.candidates);
    return CC_REDISPLAY;
  }

  void show(const std::vector<std::string>& candidates) {
    out_ << '\n';
    for (const std::string& candidate : candidates) out_ << "  " << candidate << '\n';
    out_.flush();
  }

  void release() {
    if (editor_ != nullptr) el_end(editor_);
    if (history_ != nullptr) history_end(history_);
  }

  std::ostream& out_;
  Completer complete_;
  std::string prompt_;
  History* history_ = nullptr;
  EditLine* editor_ = nullptr;
};

}  // namespace

bool has_line_editor() { return true; }

std::unique_ptr<LineSource> make_line_editor(std::ostream& out, bool to_error_stream,
                                             Completer complete) {
  return std::make_unique<LineEditor>(out, to_error_stream ? stderr : stdout, std::move(complete));
}

}  // namespace kestrova::tool
