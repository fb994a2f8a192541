// The commands of a session: each acts on the controls of the editor as a user at a window does,
// and refuses what a disabled control would not let a user do. What the editor ignores in silence,
// such as a criterion that is not complete, is an error here, so that no script loses a line.
#pragma once

#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "interface/c_selection_init.h"
#include "platform/selection_dialog.h"
#include "tools/session.h"
#include "tools/terminal.h"

namespace kestrova::tool {

// One selection: what it was started with, and the results of its last commit.
struct SelectionRun {
  const Session& session;
  std::string code;
  SelectionFacade facade{};
  std::string from_where{};
  std::string formula{};
  std::string criteria{};
  bool has_results = false;  // something was confirmed
};

class EditorCommands;

// When a command is there.
enum class CommandPlace { kEditorOpen, kEditorClosed, kAlways };

// What the argument of a command names.
enum class ArgumentNames {
  kNothing,
  kCommand,
  kField,
  kOperator,
  kValue,
  kModel,
  kModelBehindAs,
  kSwitch
};

struct EditorCommand {
  std::string_view name;
  std::string_view argument;  // "" for none, in brackets when it may be left out
  std::string_view help;
  CommandPlace place;
  ArgumentNames names;
  void (EditorCommands::*run)(const std::string& argument);
};

// What may stand in place of the end of a line.
struct Completion {
  std::string_view typed;  // the end of the line
  std::vector<std::string> candidates{};
};

class EditorCommands {
 public:
  // verbose: a person is told what each command has changed.
  EditorCommands(SelectionRun& run, Terminal& terminal, std::ostream& out, bool verbose)
      : run_(run), terminal_(terminal), out_(out), verbose_(verbose) {}

  static std::span<const EditorCommand> table();

  // The dialog that the commands act on; nullptr while the editor is closed.
  void set_dialog(SelectionDialog* dialog) { dialog_ = dialog; }

  // Runs the command of a line; nothing for an empty line or a comment. Raises UsageError for a
  // line that makes no sense, the library's errors, and InvalidArgument for what the editor
  // refuses.
  void execute(std::string_view line);

  // Whether the user is done.
  bool has_left() const { return has_left_; }
  // Whether the user wants the closed editor again; asked with take_, the wish is over.
  bool wants_to_reopen() const { return reopen_; }
  bool take_reopen() { return std::exchange(reopen_, false); }

  Completion complete(std::string_view line) const;

  // FROM/WHERE text, formula and criteria string of the last commit.
  void print_results() const;
  void list(const std::string& argument);

 private:
  // Fields, operators, values
  void fields(const std::string& argument);
  void field(const std::string& argument);
  void ops(const std::string& argument);
  void op(const std::string& argument);
  void values(const std::string& argument);
  void value(const std::string& argument);
  void plus(const std::string& argument);
  void minus(const std::string& argument);
  void formula(const std::string& argument);

  // The list
  void insert(const std::string& argument);
  void replace(const std::string& argument);
  void remove(const std::string& argument);
  void add_or(const std::string& argument);
  void clear(const std::string& argument);
  void fill(const std::string& argument);
  void select(const std::string& argument);
  void first(const std::string& argument);
  void previous(const std::string& argument);
  void next(const std::string& argument);
  void last(const std::string& argument);
  void up(const std::string& argument);
  void down(const std::string& argument);
  void move(const std::string& argument);

  // Models
  void models(const std::string& argument);
  void model(const std::string& argument);
  void load(const std::string& argument);
  void save(const std::string& argument);
  void delete_model(const std::string& argument);
  void standard(const std::string& argument);
  void lock(const std::string& argument);
  void level(const std::string& argument);

  // Results and the end
  void criteria(const std::string& argument);
  void sql(const std::string& argument);
  void count(const std::string& argument);
  void ok(const std::string& argument);
  void edit(const std::string& argument);
  void cancel(const std::string& argument);
  void help(const std::string& argument);

  SelectionDialog& dialog() const { return *dialog_; }
  void click(Button& button);
  void pick(EntryList& list, std::string_view what, const std::string& name);
  void type_value(const std::string& text);
  void navigate(Button& button);
  void set_box(CheckBox& box, std::string_view what, const std::string& argument);
  std::string why_not_taken(std::string_view otherwise);
  void show_formula();
  void show_list();
  void print_help(const EditorCommand& command, std::size_t width) const;

  SelectionRun& run_;
  Terminal& terminal_;
  std::ostream& out_;
  bool verbose_;
  SelectionDialog* dialog_ = nullptr;
  bool has_left_ = false;
  bool reopen_ = false;
};

}  // namespace kestrova::tool
