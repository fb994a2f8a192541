#include "tools/editor_commands.h"

#include <algorithm>
#include <array>

#include "platform/error.h"
#include "platform/text.h"
#include "tools/command_text.h"
#include "tools/criteria_check.h"
#include "tools/options.h"
#include "tools/sql_layout.h"

namespace kestrova::tool {
namespace {

constexpr std::string_view kSaveAs = "as";
constexpr int kLeftButton = 1;

[[noreturn]] void refuse(const std::string& why) { throw InvalidArgument(why); }

std::string in_quotes(std::string_view s) { return "'" + std::string(s) + "'"; }

struct RefusalText {
  LineRefusal why;
  std::string_view text;
};

constexpr std::array kRefusals = {
    RefusalText{LineRefusal::kSemicolon, "a value cannot hold \";\""},
    RefusalText{LineRefusal::kApostrophe, "an apostrophe inside a value is written twice"},
    RefusalText{
        LineRefusal::kNotClosed,
        "a quote, bracket or parenthesis of the value has no partner, or it holds a comment "
        "or a character that cannot be printed"},
    RefusalText{LineRefusal::kOperatorInside,
                "\"=\", \"<\" or \">\" inside the value would be read as the operator"},
    RefusalText{LineRefusal::kListCut,
                "the list would be read back cut at a \")\": use a line for each value, with 'or' "
                "between them"},
};

// A user's action on such a control would do nothing at all.
void require_reachable(const Control& control) {
  if (!control.reachable()) refuse("not possible now: " + control.name() + " is disabled");
}

void require_model(const ComboBox& models) {
  if (models.index() == -1) refuse("no model is chosen: 'models' lists them");
}

bool is_optional(const EditorCommand& command) { return command.argument.starts_with('['); }

const EditorCommand& command_named(std::string_view name) {
  const auto table = EditorCommands::table();
  const auto row = std::find_if(table.begin(), table.end(),
                                [name](const EditorCommand& c) { return c.name == name; });
  if (row == table.end()) {
    throw UsageError("there is no command " + in_quotes(name) + ": 'help' lists the commands");
  }
  return *row;
}

void check_argument(const EditorCommand& command, std::string_view argument) {
  if (command.argument.empty() && !argument.empty()) {
    throw UsageError(in_quotes(command.name) + " takes nothing behind it");
  }
  if (!command.argument.empty() && !is_optional(command) && argument.empty()) {
    throw UsageError(in_quotes(command.name) + " needs " + std::string(command.argument));
  }
}

void check_place(const EditorCommand& command, bool is_open) {
  if (command.place == CommandPlace::kEditorOpen && !is_open) {
    refuse("the editor is closed: 'edit' opens it again");
  }
  if (command.place == CommandPlace::kEditorClosed && is_open) refuse("the editor is open");
}

// "#703" for an entry that has a number.
std::string number_of(const ListEntry& entry) { return "#" + std::to_string(entry.item_data); }

std::vector<int> matching_entries(const EntryList& list, std::string_view name) {
  const auto all_that = [&list](auto&& fits) {
    std::vector<int> found;
    for (int i = 0; i < list.count(); ++i) {
      if (fits(list.entries()[static_cast<std::size_t>(i)])) found.push_back(i);
    }
    return found;
  };
  std::vector<int> found = all_that([name](const ListEntry& e) { return e.text == name; });
  if (found.empty()) {
    found =
        all_that([name](const ListEntry& e) { return text::equal_ignoring_case(e.text, name); });
  }
  if (found.empty()) {
    found =
        all_that([name](const ListEntry& e) { return e.item_data != 0 && number_of(e) == name; });
  }
  return found;
}

// The one entry that a user names by its text (case aside) or by its number. Raises InvalidArgument
// when there is none, or more than one.
int entry_named(const EntryList& list, std::string_view what, const std::string& name) {
  const std::vector<int> found = matching_entries(list, name);
  if (found.empty()) refuse("there is no " + std::string(what) + " " + in_quotes(name));
  if (found.size() > 1) {
    std::string numbers;
    for (const int index : found) {
      numbers += (numbers.empty() ? "" : ", ") +
                 number_of(list.entries()[static_cast<std::size_t>(index)]);
    }
    refuse("there are several " + std::string(what) + "s " + in_quotes(name) + ": " + numbers);
  }
  return found.front();
}

enum class Numbers { kShown, kHidden };

// The entries that hold the pattern, in any case; the selected one is marked.
void print_entries(std::ostream& out, const EntryList& list, std::string_view pattern,
                   Numbers numbers) {
  std::size_t width = 0;
  for (const ListEntry& entry : list.entries()) width = std::max(width, number_of(entry).size());
  for (int i = 0; i < list.count(); ++i) {
    const ListEntry& entry = list.entries()[static_cast<std::size_t>(i)];
    if (!text::contains_ignoring_case(entry.text, pattern)) continue;
    out << (i == list.index() ? "> " : "  ");
    if (numbers == Numbers::kShown) {
      const std::string number = number_of(entry);
      out << std::string(width - number.size(), ' ') << number << "  ";
    }
    out << entry.text << '\n';
  }
}

// The characters of an UTF-8 text; each view one of them.
std::vector<std::string_view> characters(std::string_view s) {
  std::vector<std::string_view> result;
  while (!s.empty()) {
    const std::string_view first = text::left(s, 1);
    result.push_back(first);
    s.remove_prefix(first.size());
  }
  return result;
}

// The key that types a character. Keys beyond ASCII are told apart by nobody.
int key_of(std::string_view character) { return static_cast<unsigned char>(character.front()); }

std::vector<std::string> texts_of(const EntryList& list) {
  std::vector<std::string> texts;
  for (const ListEntry& entry : list.entries()) texts.push_back(entry.text);
  return texts;
}

std::vector<std::string> command_names() {
  std::vector<std::string> names;
  for (const EditorCommand& command : EditorCommands::table()) names.emplace_back(command.name);
  return names;
}

std::vector<std::string> names_for(ArgumentNames names, const SelectionDialog& dialog) {
  switch (names) {
    case ArgumentNames::kField:
      return texts_of(dialog.cboField);
    case ArgumentNames::kOperator:
      return texts_of(dialog.cboOperator);
    case ArgumentNames::kValue:
      return texts_of(dialog.cboValue);
    case ArgumentNames::kModel:
    case ArgumentNames::kModelBehindAs:
      return texts_of(dialog.Model);
    case ArgumentNames::kSwitch:
      return {"on", "off"};
    case ArgumentNames::kCommand:
      return command_names();
    case ArgumentNames::kNothing:
      break;
  }
  return {};
}

Completion completion(std::string_view typed, const std::vector<std::string>& names) {
  Completion result{.typed = typed};
  const std::string upper = text::upper(typed);
  for (const std::string& name : names) {
    if (text::starts_with_ignoring_case(name, upper)) result.candidates.push_back(name);
  }
  return result;
}

}  // namespace

std::span<const EditorCommand> EditorCommands::table() {
  using enum CommandPlace;
  using Names = ArgumentNames;
  using Self = EditorCommands;
  // clang-format off
  static constexpr std::array kTable = {
      EditorCommand{"fields", "[PATTERN]", "list the fields, or those whose name holds the pattern", kEditorOpen, Names::kNothing, &Self::fields},
      EditorCommand{"field", "NAME|#ID", "choose the field of the criterion", kEditorOpen, Names::kField, &Self::field},
      EditorCommand{"ops", "", "list the operators of the field", kEditorOpen, Names::kNothing, &Self::ops},
      EditorCommand{"op", "OPERATOR", "choose the operator", kEditorOpen, Names::kOperator, &Self::op},
      EditorCommand{"values", "[PATTERN]", "list the values that the field is offered", kEditorOpen, Names::kNothing, &Self::values},
      EditorCommand{"value", "TEXT", "pick the value, or type one that is not in the list", kEditorOpen, Names::kValue, &Self::value},
      EditorCommand{"plus", "", "add the value to the list of the operator IN", kEditorOpen, Names::kNothing, &Self::plus},
      EditorCommand{"minus", "", "take the value out of the list of the operator IN", kEditorOpen, Names::kNothing, &Self::minus},
      EditorCommand{"formula", "", "show the criterion that is being composed", kEditorOpen, Names::kNothing, &Self::formula},
      EditorCommand{"insert", "", "insert the criterion behind the selected line", kEditorOpen, Names::kNothing, &Self::insert},
      EditorCommand{"replace", "", "replace the selected line by the criterion", kEditorOpen, Names::kNothing, &Self::replace},
      EditorCommand{"delete", "", "delete the selected line", kEditorOpen, Names::kNothing, &Self::remove},
      EditorCommand{"or", "", "insert an OR line behind the selected line", kEditorOpen, Names::kNothing, &Self::add_or},
      EditorCommand{"new", "", "empty the list", kEditorOpen, Names::kNothing, &Self::clear},
      EditorCommand{"fill", "CRITERIA", "replace the list by a criteria string", kEditorOpen, Names::kNothing, &Self::fill},
      EditorCommand{"list", "", "show the list; the selected line is marked", kEditorOpen, Names::kNothing, &Self::list},
      EditorCommand{"select", "N", "select line N", kEditorOpen, Names::kNothing, &Self::select},
      EditorCommand{"first", "", "select the first line", kEditorOpen, Names::kNothing, &Self::first},
      EditorCommand{"prev", "", "select the line above", kEditorOpen, Names::kNothing, &Self::previous},
      EditorCommand{"next", "", "select the line below", kEditorOpen, Names::kNothing, &Self::next},
      EditorCommand{"last", "", "select the last line", kEditorOpen, Names::kNothing, &Self::last},
      EditorCommand{"up", "", "move the selected line up", kEditorOpen, Names::kNothing, &Self::up},
      EditorCommand{"down", "", "move the selected line down", kEditorOpen, Names::kNothing, &Self::down},
      EditorCommand{"move", "N M", "move line N to where line M stands", kEditorOpen, Names::kNothing, &Self::move},
      EditorCommand{"models", "", "list the models, and what the chosen one is", kEditorOpen, Names::kNothing, &Self::models},
      EditorCommand{"model", "NAME|#ID", "choose a model without loading it", kEditorOpen, Names::kModel, &Self::model},
      EditorCommand{"load", "[NAME|#ID]", "load a model, or the chosen one, into the list", kEditorOpen, Names::kModel, &Self::load},
      EditorCommand{"save", "[as [NAME]]", "save the list into the chosen model, or as another one", kEditorOpen, Names::kModelBehindAs, &Self::save},
      EditorCommand{"delete-model", "", "delete the chosen model; nobody asks", kEditorOpen, Names::kNothing, &Self::delete_model},
      EditorCommand{"standard", "on|off", "make the chosen model the standard of its class", kEditorOpen, Names::kSwitch, &Self::standard},
      EditorCommand{"lock", "on|off", "lock the chosen model; costs it the standard mark", kEditorOpen, Names::kSwitch, &Self::lock},
      EditorCommand{"level", "on|off", "bind it to the user's access level; costs it the mark too", kEditorOpen, Names::kSwitch, &Self::level},
      EditorCommand{"criteria", "", "show the list as a criteria string", kAlways, Names::kNothing, &Self::criteria},
      EditorCommand{"ok", "", "confirm the list, show the results and close the editor", kEditorOpen, Names::kNothing, &Self::ok},
      EditorCommand{"sql", "", "show the results of the last 'ok' again", kAlways, Names::kNothing, &Self::sql},
      EditorCommand{"count", "", "count the rows that they select", kAlways, Names::kNothing, &Self::count},
      EditorCommand{"edit", "", "open the editor again", kEditorClosed, Names::kNothing, &Self::edit},
      EditorCommand{"cancel", "", "close the editor without confirming, and leave", kEditorOpen, Names::kNothing, &Self::cancel},
      EditorCommand{"quit", "", "leave; an open editor is cancelled", kAlways, Names::kNothing, &Self::cancel},
      EditorCommand{"help", "[COMMAND]", "explain the commands, or one of them", kAlways, Names::kCommand, &Self::help},
  };
  // clang-format on
  return kTable;
}

void EditorCommands::execute(std::string_view line) {
  const CommandText text = split_command(line);
  if (text.name.empty()) return;
  const EditorCommand& command = command_named(text.name);
  check_argument(command, text.argument);
  check_place(command, dialog_ != nullptr);
  const std::string argument = unquoted_argument(text.argument);
  terminal_.take_declined();
  (this->*command.run)(argument);
  // The editor tells why it refuses in a message that only informs.
  std::string messages;
  for (const std::string& message : terminal_.take_messages()) {
    messages += (messages.empty() ? "" : " ") + message;
  }
  if (!messages.empty()) refuse(messages);
}

Completion EditorCommands::complete(std::string_view line) const {
  const std::string_view begin = line.substr(std::min(line.find_first_not_of(' '), line.size()));
  const std::size_t blank = begin.find(' ');
  if (blank == std::string_view::npos) return completion(begin, command_names());
  const auto row = std::find_if(
      table().begin(), table().end(),
      [name = begin.substr(0, blank)](const EditorCommand& c) { return c.name == name; });
  if (row == table().end()) return {};
  const std::size_t start = begin.find_first_not_of(' ', blank);
  std::string_view typed = begin.substr(std::min(start, begin.size()));
  if (row->names == ArgumentNames::kModelBehindAs) {
    if (!typed.starts_with("as ")) return completion(typed, {std::string(kSaveAs)});
    typed.remove_prefix(3);
  }
  if (row->names == ArgumentNames::kCommand) return completion(typed, command_names());
  if (dialog_ == nullptr) return {};
  return completion(typed, names_for(row->names, dialog()));
}

// --- What all of them do -------------------------------------------------------------------------

void EditorCommands::click(Button& button) {
  require_reachable(button);
  button.click();
}

void EditorCommands::pick(EntryList& list, std::string_view what, const std::string& name) {
  require_reachable(list);
  list.pick(entry_named(list, what, name));
}

void EditorCommands::show_formula() {
  if (verbose_) formula("");
}

void EditorCommands::show_list() {
  if (verbose_) list("");
}

// --- Fields, operators, values -------------------------------------------------------------------

void EditorCommands::fields(const std::string& argument) {
  print_entries(out_, dialog().cboField, argument, Numbers::kShown);
}

void EditorCommands::field(const std::string& argument) {
  pick(dialog().cboField, "field", argument);
  show_formula();
}

void EditorCommands::ops(const std::string&) {
  print_entries(out_, dialog().cboOperator, "", Numbers::kHidden);
}

void EditorCommands::op(const std::string& argument) {
  pick(dialog().cboOperator, "operator", argument);
  show_formula();
}

void EditorCommands::values(const std::string& argument) {
  print_entries(out_, dialog().cboValue, argument, Numbers::kHidden);
}

void EditorCommands::value(const std::string& argument) {
  ComboBox& box = dialog().cboValue;
  require_reachable(box);
  const auto& entries = box.entries();
  const auto entry = std::find_if(entries.begin(), entries.end(),
                                  [&](const ListEntry& e) { return e.text == argument; });
  if (entry != entries.end()) {
    box.pick(static_cast<int>(entry - entries.begin()));
  } else {
    type_value(argument);
  }
  show_formula();
}

// Key by key, since the editor drops keys that the field does not take, and then leaves the box. A
// text that loses a key would be another value: it is refused as a whole.
void EditorCommands::type_value(const std::string& text) {
  ComboBox& box = dialog().cboValue;
  box.set_text("");
  std::string typed;
  for (const std::string_view character : characters(text)) {
    int key = key_of(character);
    if (box.on_key_press) box.on_key_press(key);
    if (key == 0) {
      box.set_text("");
      refuse("the field does not take " + in_quotes(character) + " in its values");
    }
    typed += character;
    box.set_text(typed);
  }
  bool keep_focus = false;
  if (box.on_validate) box.on_validate(keep_focus);
}

// What the editor says of the line or value that it did not take; otherwise when it says nothing.
std::string EditorCommands::why_not_taken(std::string_view otherwise) {
  const RefusedLine refused = dialog().refused_line();
  const auto row = std::find_if(kRefusals.begin(), kRefusals.end(),
                                [&](const RefusalText& r) { return r.why == refused.why; });
  std::string text(row == kRefusals.end() ? otherwise : row->text);
  if (!refused.offered.empty()) text += " ('value " + refused.offered + "')";
  return text;
}

void EditorCommands::plus(const std::string&) {
  const std::string before = dialog().Formula.text();
  click(dialog().btnPlus);
  if (dialog().Formula.text() == before) {
    refuse(why_not_taken("nothing was added: 'value' chooses a value"));
  }
  show_formula();
}

void EditorCommands::minus(const std::string&) {
  const std::string before = dialog().Formula.text();
  click(dialog().btnMinus);
  if (dialog().Formula.text() == before) refuse("the list does not hold the value");
  show_formula();
}

void EditorCommands::formula(const std::string&) { out_ << dialog().Formula.text() << '\n'; }

// --- The list ------------------------------------------------------------------------------------

void EditorCommands::insert(const std::string&) {
  const int before = dialog().ListCriteria.count();
  const std::string line = dialog().Formula.text();
  click(dialog().btnInsert);
  if (dialog().ListCriteria.count() == before) {
    refuse(why_not_taken("the criterion is not complete") + ": " + line);
  }
  show_list();
}

void EditorCommands::replace(const std::string&) {
  const ListBox& lines = dialog().ListCriteria;
  if (lines.index() == -1) refuse("no line is selected");
  const std::string before = lines.text();
  const std::string line = dialog().Formula.text();
  click(dialog().btnReplace);
  const bool is_refused = dialog().refused_line().why != LineRefusal::kNone;
  if (is_refused || (lines.text() == before && line != before)) {
    refuse(why_not_taken("the criterion is not complete") + ": " + line);
  }
  show_list();
}

void EditorCommands::remove(const std::string&) {
  if (dialog().ListCriteria.index() == -1) refuse("no line is selected");
  click(dialog().btnDelete);
  show_list();
}

void EditorCommands::add_or(const std::string&) {
  const int before = dialog().ListCriteria.count();
  click(dialog().btnOr);
  if (dialog().ListCriteria.count() == before) refuse("there is an OR line here already");
  show_list();
}

void EditorCommands::clear(const std::string&) {
  click(dialog().btnNew);
  show_list();
}

void EditorCommands::fill(const std::string& argument) {
  require_reachable(dialog().btnNew);
  const std::string& or_line = run_.session.context.strOderLine;
  check_criteria(argument, or_line);
  if (const auto fault = find_structure_fault(argument, or_line)) {
    throw BadCriterion(fault->message);
  }
  try {
    run_.facade.FillListCriteria(run_.session.context, argument, run_.code);
  } catch (const Error&) {
    // Better no list than half of one.
    dialog().btnNew.click();
    throw;
  }
  if (dialog().ListCriteria.count() > 0) dialog().ListCriteria.pick(0);
  show_list();
}

// The numbers are those that 'select' and 'move' take; criteria are indented, OR lines are not.
void EditorCommands::list(const std::string&) {
  const ListBox& lines = dialog().ListCriteria;
  if (lines.count() == 0) out_ << "The list is empty.\n";
  const std::size_t width = std::to_string(lines.count()).size();
  for (int i = 0; i < lines.count(); ++i) {
    const std::string number = std::to_string(i + 1);
    const std::string& line = lines.entry_text(i);
    out_ << (i == lines.index() ? "> " : "  ") << std::string(width - number.size(), ' ') << number
         << (line == run_.session.context.strOderLine ? "  " : "    ") << line << '\n';
  }
}

void EditorCommands::select(const std::string& argument) {
  ListBox& lines = dialog().ListCriteria;
  require_reachable(lines);
  const int number = number_arguments(argument, 1).front();
  if (number < 1 || number > lines.count()) refuse("there is no line " + std::to_string(number));
  lines.pick(number - 1);
  show_list();
}

void EditorCommands::navigate(Button& button) {
  click(button);
  show_list();
}

void EditorCommands::first(const std::string&) { navigate(dialog().btnFirst); }
void EditorCommands::previous(const std::string&) { navigate(dialog().btnPrev); }
void EditorCommands::next(const std::string&) { navigate(dialog().btnNext); }
void EditorCommands::last(const std::string&) { navigate(dialog().btnLast); }
void EditorCommands::up(const std::string&) { navigate(dialog().cmdUp); }
void EditorCommands::down(const std::string&) { navigate(dialog().cmdDown); }

// The line is pressed, dragged and dropped.
void EditorCommands::move(const std::string& argument) {
  ListBox& lines = dialog().ListCriteria;
  require_reachable(lines);
  // In a list that is shown for reading only a line is dragged in vain.
  require_reachable(dialog().btnReplace);
  const std::vector<int> numbers = number_arguments(argument, 2);
  for (const int number : numbers) {
    if (number < 1 || number > lines.count()) refuse("there is no line " + std::to_string(number));
  }
  lines.pick(numbers[0] - 1);
  lines.on_mouse_move(kLeftButton);
  lines.on_drag_drop(lines, 0, (numbers[1] - 1 - lines.top_index) * lines.row_height);
  show_list();
}

// --- Models --------------------------------------------------------------------------------------

void EditorCommands::models(const std::string&) {
  const SelectionDialog& d = dialog();
  print_entries(out_, d.Model, "", Numbers::kShown);
  out_ << "Standard model: " << (d.txtStandard.text().empty() ? "none" : d.txtStandard.text())
       << '\n';
  if (d.Model.index() == -1) return;
  out_ << d.Model.text() << ": standard " << (d.chkStandard.checked() ? "on" : "off") << ", lock "
       << (d.Check1.checked() ? "on" : "off") << ", level "
       << (d.chkAL.checked() ? "on (" + d.chkAL.caption() + ")" : "off") << '\n';
}

void EditorCommands::model(const std::string& argument) { pick(dialog().Model, "model", argument); }

void EditorCommands::load(const std::string& argument) {
  if (!argument.empty()) model(argument);
  require_reachable(dialog().Model);
  require_model(dialog().Model);
  dialog().Model.double_click();
  show_list();
}

void EditorCommands::save(const std::string& argument) {
  const CommandText text = split_command(argument);
  if (!argument.empty() && text.name != kSaveAs) {
    throw UsageError("'save' takes nothing behind it but 'as' and a name");
  }
  if (!text.argument.empty()) terminal_.prepare_answer(unquoted_argument(text.argument));
  try {
    click(argument.empty() ? dialog().btnSaveModelle : dialog().btnSaveModelleAs);
  } catch (...) {
    terminal_.forget_answer();
    throw;
  }
  terminal_.forget_answer();
  if (terminal_.has_messages()) return;
  out_ << (terminal_.take_declined() ? "Not saved." : "Saved. " + dialog().caption()) << '\n';
}

void EditorCommands::delete_model(const std::string&) {
  require_model(dialog().Model);
  const std::string name = dialog().Model.text();
  click(dialog().btnDeleteModelle);
  if (verbose_) out_ << "Deleted " << in_quotes(name) << ".\n";
}

void EditorCommands::set_box(CheckBox& box, std::string_view what, const std::string& argument) {
  const bool wanted = switch_argument(argument);
  require_model(dialog().Model);
  require_reachable(box);
  // The editor takes a click under the hourglass for its own.
  if (terminal_.pointer() != PointerShape::kDefault) {
    refuse("not possible now: the editor shows the hourglass");
  }
  if (box.checked() != wanted) box.click();
  if (box.checked() != wanted) refuse("the editor has not changed it");
  if (verbose_) out_ << dialog().Model.text() << ": " << what << ' ' << argument << '\n';
}

void EditorCommands::standard(const std::string& argument) {
  set_box(dialog().chkStandard, "standard", argument);
}

void EditorCommands::lock(const std::string& argument) {
  set_box(dialog().Check1, "lock", argument);
}

void EditorCommands::level(const std::string& argument) {
  set_box(dialog().chkAL, "level", argument);
}

// --- Results and the end -------------------------------------------------------------------------

void EditorCommands::criteria(const std::string&) {
  out_ << run_.facade.GetWriteString(run_.session.context) << '\n';
}

void EditorCommands::print_results() const {
  if (run_.from_where.empty()) {
    out_ << "No criteria: the text is empty.\n";
    return;
  }
  out_ << "FROM/WHERE\n" << lay_out_sql(run_.from_where, "  ") << '\n';
  out_ << "Formula\n  " << run_.formula << '\n';
  out_ << "Criteria\n  " << run_.criteria << '\n';
}

void EditorCommands::sql(const std::string&) {
  if (!run_.has_results) refuse("nothing has been confirmed yet: 'ok' confirms");
  print_results();
}

void EditorCommands::count(const std::string&) {
  if (!run_.has_results) refuse("nothing has been confirmed yet: 'ok' confirms");
  if (run_.from_where.empty()) refuse("an empty list gives no text to count with");
  // Some relations leave the word FROM to the caller.
  const bool has_from = run_.from_where.starts_with(" FROM ");
  const std::int32_t rows =
      run_.session
          .single_value("SELECT COUNT(*)" + std::string(has_from ? "" : " FROM") + run_.from_where)
          .integer();
  out_ << rows << (rows == 1 ? " row\n" : " rows\n");
}

void EditorCommands::ok(const std::string&) {
  click(dialog().btnOk);
  if (dialog().is_visible() && !terminal_.has_messages()) refuse("the list was not confirmed");
}

void EditorCommands::edit(const std::string&) { reopen_ = true; }

void EditorCommands::cancel(const std::string&) {
  if (dialog_ != nullptr) dialog().btnCancel.click();
  has_left_ = true;
}

void EditorCommands::print_help(const EditorCommand& command, std::size_t width) const {
  std::string usage(command.name);
  if (!command.argument.empty()) usage += " " + std::string(command.argument);
  usage.resize(std::max(width, usage.size()), ' ');
  out_ << "  " << usage << "  " << command.help << '\n';
}

void EditorCommands::help(const std::string& argument) {
  if (!argument.empty()) return print_help(command_named(argument), 0);
  std::size_t width = 0;
  for (const EditorCommand& command : table()) {
    width = std::max(width, command.name.size() + 1 + command.argument.size());
  }
  for (const EditorCommand& command : table()) print_help(command, width);
  out_ << "A text may stand between double quotes, where \"\" stands for one. Lines that begin "
          "with # are\ncomments. What the editor asks, the next line answers. The list begins with "
          "the standard\nmodel, or else the first one: 'new' empties it.\n";
}

}  // namespace kestrova::tool
