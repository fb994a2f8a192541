// kestrova-sel session CODE
#include <iostream>

#include "platform/error.h"
#include "platform/text.h"
#include "tools/commands.h"
#include "tools/criteria_check.h"
#include "tools/editor_commands.h"
#include "tools/error_report.h"
#include "tools/fields.h"
#include "tools/line_editor.h"
#include "tools/terminal.h"

#ifdef _WIN32
#include <io.h>
#include <stdio.h>
#else
#include <unistd.h>
#endif

namespace kestrova::tool {
namespace {

constexpr std::string_view kSubsetRelation = "NML";

bool input_is_terminal() {
#ifdef _WIN32
  return _isatty(_fileno(stdin)) != 0;
#else
  return isatty(STDIN_FILENO) != 0;
#endif
}

// The editor leaves text behind the last ";" out, and would not start from it for other relations.
void check_subset(const SelectionRun& run, SelectionFacade& facade, std::string_view subset) {
  if (subset.empty()) return;
  if (facade.c_Selection_Init_Parameter() != kSubsetRelation) {
    throw UsageError(
        "--subset is for the relation NML only: the command 'fill' takes criteria for '" +
        run.code + "'");
  }
  const std::string& or_line = run.session.context.strOderLine;
  check_criteria(subset, or_line);
  if (const auto fault = find_structure_fault(subset, or_line)) {
    throw BadCriterion(fault->message);
  }
}

// The editor shown again and again, until the user leaves.
class SessionLoop {
 public:
  SessionLoop(SelectionRun& run, const SessionArguments& arguments, LineSource& lines,
              Terminal& terminal, EditorCommands& commands, std::ostream& out)
      : run_(run),
        arguments_(arguments),
        lines_(lines),
        terminal_(terminal),
        commands_(commands),
        out_(out) {}

  // Whether the user has confirmed the last list.
  bool run() {
    terminal_.on_dialog([this](SelectionDialog& dialog) { edit(dialog); });
    start();
    bool confirmed = false;
    do {
      confirmed = show_editor();
      out_ << (confirmed ? "Confirmed.\n" : "Not confirmed.\n");
      if (confirmed) {
        commands_.print_results();
        run_lines(run_.code + " (confirmed)> ",
                  [this] { return !commands_.has_left() && !commands_.wants_to_reopen(); });
      }
    } while (commands_.take_reopen());
    return confirmed;
  }

  // Of the first command that failed in a script that went on.
  int exit_code_of_failures() const { return failed_with_; }

 private:
  void start() {
    std::string from_where;
    std::string formula;
    run_.facade.c_Selection_Init(run_.session.context, run_.code, arguments_.variant, from_where,
                                 formula);
    print_messages();
    check_subset(run_, run_.facade, arguments_.subset);
    subset_ = arguments_.subset;
  }

  bool show_editor() {
    bool confirmed = false;
    run_.facade.c_form_SelectionNML(run_.session.context, run_.from_where, run_.formula, subset_,
                                    confirmed, arguments_.read_only);
    commands_.set_dialog(nullptr);
    if (!confirmed) return false;
    run_.has_results = true;
    run_.criteria = run_.facade.GetWriteString(run_.session.context);
    // The relation NML starts anew from its text whenever it is shown.
    subset_ = run_.criteria;
    return true;
  }

  void edit(SelectionDialog& dialog) {
    commands_.set_dialog(&dialog);
    print_messages();
    if (lines_.is_interactive()) {
      out_ << dialog.caption() << ". 'help' lists the commands.\n";
      commands_.list("");
    }
    run_lines(run_.code + "> ", [&dialog] { return dialog.is_visible(); });
    // Also after a commit that failed halfway, the end of the input confirms nothing.
    if (dialog.is_visible()) dialog.btnCancel.click();
  }

  template <class Condition>
  void run_lines(const std::string& prompt, const Condition& goes_on) {
    while (goes_on()) {
      const std::optional<std::string> line = lines_.read(prompt);
      if (!line) {
        if (lines_.is_interactive()) out_ << '\n';
        return;
      }
      try {
        commands_.execute(*line);
      } catch (...) {
        report(describe_error(std::current_exception()));
      }
    }
  }

  // A person may try again; a script ends, unless it is to go on.
  void report(ErrorReport error) {
    print_messages();
    if (!lines_.is_interactive()) {
      error.message = "line " + std::to_string(lines_.line_number()) + ": " + error.message;
      if (!arguments_.keep_going) throw ReportedError(error);
      if (failed_with_ == kExitOk) failed_with_ = error.exit_code;
    }
    out_.flush();
    print_error_line(std::cerr, error);
  }

  void print_messages() {
    for (const std::string& message : terminal_.take_messages()) {
      std::cerr << "kestrova-sel: message: " << message << '\n';
    }
  }

  SelectionRun& run_;
  const SessionArguments& arguments_;
  LineSource& lines_;
  Terminal& terminal_;
  EditorCommands& commands_;
  std::ostream& out_;
  std::string subset_;
  int failed_with_ = kExitOk;
};

Json to_json(const SelectionRun& run, bool confirmed) {
  Json answer{{"relation", run.code}, {"confirmed", confirmed}};
  if (!confirmed) return answer;
  answer["from_where"] = run.from_where;
  answer["formula"] = run.formula;
  answer["criteria"] = run.criteria;
  return answer;
}

}  // namespace

int run_session(const GlobalOptions& options, const SessionArguments& arguments,
                std::ostream& answer) {
  // The one document of an answer for programs must stand alone.
  std::ostream& out = options.json ? std::cerr : std::cout;
  EditorCommands* commands_for_completion = nullptr;
  std::unique_ptr<LineSource> lines;
  if (input_is_terminal()) {
    lines = make_line_editor(out, options.json, [&](std::string_view line) {
      return commands_for_completion->complete(line);
    });
  } else {
    lines = std::make_unique<StreamLines>(std::cin, out, false);
  }
  const auto terminal = std::make_shared<Terminal>(*lines, out);
  const Session session = open_editor_session(options, arguments.read_only, terminal);
  require_known_relation(session, arguments.code);
  SelectionRun run{.session = session, .code = arguments.code};
  EditorCommands commands(run, *terminal, out, lines->is_interactive());
  commands_for_completion = &commands;

  SessionLoop loop(run, arguments, *lines, *terminal, commands, out);
  const bool confirmed = loop.run();
  if (options.json) print_json(answer, to_json(run, confirmed));
  if (loop.exit_code_of_failures() != kExitOk) return loop.exit_code_of_failures();
  return confirmed ? kExitOk : kExitCancelled;
}

}  // namespace kestrova::tool
