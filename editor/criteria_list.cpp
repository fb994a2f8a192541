// The list of criteria: composing, inserting, moving and showing lines.
#include <algorithm>
#include <array>
#include <cmath>

#include "editor/f_selection.h"
#include "engine/comm_sel.h"
#include "engine/criteria_guard.h"
#include "engine/criterion.h"
#include "engine/queries.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/date_expressions.h"

namespace kestrova {
namespace {

// A line of the list, taken apart for the pickers.
struct LineParts {
  std::string field;
  std::string op;
  std::string value;
};

// Where the operator of a line begins; npos for a line without one. The first candidate in the text
// counts, words only between blanks.
std::size_t operator_offset(std::string_view line) {
  struct Candidate {
    std::string_view text;
    std::size_t skipped;  // what stands before the operator itself
  };
  constexpr std::array kCandidates = {Candidate{"<", 0}, Candidate{">", 0}, Candidate{"=", 0},
                                      Candidate{" IN ", 1}, Candidate{" LIKE ", 1}};
  std::size_t result = std::string_view::npos;
  for (const Candidate& candidate : kCandidates) {
    const std::size_t found = line.find(candidate.text);
    if (found != std::string_view::npos) result = std::min(result, found + candidate.skipped);
  }
  return result;
}

// A value without the apostrophes around it; a trailing one goes only where a leading one stood.
std::string_view unquoted(std::string_view value) {
  if (!value.starts_with('\'')) return value;
  value.remove_prefix(1);
  if (value.ends_with('\'')) value.remove_suffix(1);
  return value;
}

LineParts split_line(std::string_view line) {
  const std::size_t at = operator_offset(line);
  if (at == std::string_view::npos) return {};
  const std::string_view rest = line.substr(at);
  const std::size_t blank = std::min(rest.find(' '), rest.size());
  LineParts parts;
  parts.field = line.substr(0, at == 0 ? 0 : at - 1);
  parts.op = rest.substr(0, blank);
  // An IN list is not put back into the value box.
  if (parts.op != "IN") parts.value = unquoted(rest.substr(std::min(blank + 1, rest.size())));
  return parts;
}

// A text as it stands between apostrophes; those that are doubled already stay so.
std::string with_doubled_apostrophes(std::string_view text) {
  return text::replace_all(text::replace_all(text, "''", "'"), "'", "''");
}

}  // namespace

void F_Selection::ShowFormula() {
  Formula.set_text(cboField.text() + " " + cboOperator.text() + " " + strValue);
}

bool F_Selection::is_date_entry(std::string_view value) const {
  const bool one_point = value.find('.') == value.rfind('.');
  if (one_point && user_locale().is_numeric(value)) return true;
  return user_locale().to_date(value).has_value() || text::upper(value) == "NULL";
}

bool F_Selection::IsCriterionComplete() {
  if (cboField.text().empty() || cboOperator.text().empty() || cboValue.text().empty())
    return false;
  const std::int16_t type =
      Comm_Sel().Get_TypeOfFieldFromID(context_, selected_field_id(cboField), lookup_relation());
  if (!IsDateFieldType(type)) return true;
  const bool complete = is_date_entry(cboValue.text());
  SetControlFocus(cboValue);
  return complete;
}

ListEntry F_Selection::or_entry() const { return {module_state().strOderLine, kOrLineData}; }

void F_Selection::throw_too_many_lines() {
  throw Overflow("The list of criteria holds at most " + std::to_string(kMostLines) + " lines.");
}

void F_Selection::insert_line(const ListEntry& line, int index) {
  if (ListCriteria.entries().size() >= kMostLines) throw_too_many_lines();
  ListCriteria.insert(line.text, index);
  ListCriteria.set_item_data(index, line.item_data);
}

void F_Selection::select_new_line(int index) {
  ListCriteria.set_index(ListCriteria.count() == 1 ? 0 : index);
}

void F_Selection::btnNew_Click() {
  if (is_read_only_run()) return;
  contract_unread_ = false;
  ListCriteria.clear();
  cboValue.clear();
  if (cboField.count() == 0) return;
  cboField.set_index(0);
  Formula.set_text("");
}

// A value, or an operator with its value, in which SQL could end where it should not.
RefusedLine F_Selection::refused_value(std::string_view value) const {
  if (value.find(';') != std::string_view::npos)
    return {.why = LineRefusal::kSemicolon, .offered = {}};
  if (!find_open_text(value)) return {};
  const std::string typed = cboValue.text();
  if (typed.find('\'') == std::string::npos) return {.why = LineRefusal::kNotClosed, .offered = {}};
  // Only where the value stands between apostrophes does doubling those inside make it the text
  // that was typed.
  const bool is_text = value.ends_with("'" + typed + "'");
  return {.why = LineRefusal::kApostrophe,
          .offered = is_text ? with_doubled_apostrophes(typed) : std::string()};
}

LineRefusal F_Selection::refusal_of(const std::string& line) const {
  // The line is read from its text: its field must be the one that was chosen.
  if (split_record(line).field != text::trim(cboField.text())) return LineRefusal::kOperatorInside;
  if (cboOperator.text() != "IN") return LineRefusal::kNone;
  const Relation relation(lookup_relation());
  const std::int16_t id = selected_field_id(cboField);
  const std::string stored = record_of(id, operator_part(context_, relation, line, kDisplayLine),
                                       value_part(context_, relation, line, kDisplayLine));
  const bool is_kept =
      keeps_list(context_, relation, id, line) && keeps_list(context_, relation, id, stored);
  return is_kept ? LineRefusal::kNone : LineRefusal::kListCut;
}

std::optional<ListEntry> F_Selection::composed_line() {
  std::string line = Formula.text();
  const std::int32_t data = cboField.item_data(cboField.index());
  if (const std::string_view list = own_list(line); cboOperator.text() == "IN" && !list.empty()) {
    line = cboField.text() + " " + kept_list(to_field_id(data), list);
  }
  const bool has_field = line.starts_with(cboField.text());
  refused_ = refused_value(std::string_view(line).substr(has_field ? cboField.text().size() : 0));
  if (refused_.why == LineRefusal::kNone) refused_.why = refusal_of(line);
  if (refused_.why != LineRefusal::kNone) return std::nullopt;
  return ListEntry{line, data};
}

void F_Selection::btnInsert_Click() {
  refused_ = {};
  if (is_read_only_run()) return;
  if (!IsCriterionComplete()) return;
  if (cboOperator.text() == "IN" && text::length(strValue) == 2) return;
  const std::optional<ListEntry> line = composed_line();
  if (!line) return;
  const int index = ListCriteria.index() + 1;
  insert_line(*line, index);
  select_new_line(index);
  SetListButtons();
  SetControlFocus(cboField);
}

void F_Selection::btnReplace_Click() {
  refused_ = {};
  if (is_read_only_run()) return;
  const int index = ListCriteria.index();
  if (!IsCriterionComplete() || index < 0) return;
  const std::optional<ListEntry> line = composed_line();
  if (!line) return;
  ListCriteria.set_entry_text(index, line->text);
  ListCriteria.set_item_data(index, line->item_data);
}

void F_Selection::btnDelete_Click() {
  const int index = ListCriteria.index();
  if (is_read_only_run() || index < 0) return;
  ListCriteria.remove(index);
  ListCriteria.set_index(-1);
  if (index > 0) {
    ListCriteria.set_index(index - 1);
  } else if (ListCriteria.count() > 0) {
    ListCriteria.set_index(0);
  }
}

void F_Selection::btnOr_Click() {
  if (is_read_only_run()) return;
  const int index = ListCriteria.index();
  const auto is_or_at = [this](int i) { return is_or_line(ListCriteria.entry_text(i)); };
  const bool is_on_or_line = index >= 0 && is_or_at(index);
  const bool is_last = index == ListCriteria.count() - 1;
  if (!is_on_or_line && (is_last || !is_or_at(index + 1))) AddOrLine();
  SetListButtons();
  SetControlFocus(cboField);
}

void F_Selection::AddOrLine() {
  const int index = ListCriteria.index() + 1;
  insert_line(or_entry(), index);
  select_new_line(index);
}

// The values of other operators are no lists, whatever state the two buttons are in.
bool F_Selection::may_change_list_of_in() const {
  return !is_read_only_run() && cboOperator.text() == "IN" && !cboValue.text().empty();
}

void F_Selection::btnPlus_Click() {
  // It is the nickname that must not stand in the list, not the value.
  const bool holds_nickname =
      !strNickName.empty() && strValue.find(strNickName) != std::string::npos;
  if (!may_change_list_of_in() || holds_nickname || strValue.empty()) return;
  const std::string value = converted_element();
  refused_ = refused_value(value);
  if (refused_.why != LineRefusal::kNone) return;
  const std::size_t length = text::length(strValue);
  const std::string before(text::left(strValue, length == 2 ? 1 : length - 1));
  const std::string last(text::mid(strValue, length));
  strValue = before + (length == 2 ? "" : ", ") + value + last;
  ShowFormula();
}

void F_Selection::btnMinus_Click() {
  if (!may_change_list_of_in()) return;
  const std::string value = converted_element();
  for (const std::string& piece : {", " + value, value + ", ", value}) {
    const std::size_t at = strValue.find(piece);
    if (at == std::string::npos) continue;
    strValue.erase(at, piece.size());
    break;
  }
  ShowFormula();
}

void F_Selection::btnFirst_Click() {
  if (ListCriteria.index() >= 1) ListCriteria.set_index(0);
}

void F_Selection::btnPrev_Click() {
  if (ListCriteria.index() >= 1) ListCriteria.set_index(ListCriteria.index() - 1);
}

void F_Selection::btnNext_Click() {
  if (ListCriteria.index() < ListCriteria.count() - 1) {
    ListCriteria.set_index(ListCriteria.index() + 1);
  }
}

void F_Selection::btnLast_Click() { ListCriteria.set_index(ListCriteria.count() - 1); }

void F_Selection::cmdUp_Click() {
  const int index = ListCriteria.index();
  if (index >= 1) move_selected_line(index - 1);
}

void F_Selection::cmdDown_Click() {
  const int index = ListCriteria.index();
  if (index >= 0 && index < ListCriteria.count() - 1) move_selected_line(index + 1);
}

// To the place of its neighbour, which takes its place: no other line moves, however long the list.
// A full list stays as it is, because a move counts as inserting the line before it is removed.
void F_Selection::move_selected_line(int target) {
  if (is_read_only_run() || ListCriteria.entries().size() >= kMostLines) return;
  const auto put = [this](const ListEntry& line, int index) {
    ListCriteria.set_entry_text(index, line.text);
    ListCriteria.set_item_data(index, line.item_data);
  };
  try {
    const int index = ListCriteria.index();
    const ListEntry line = ListCriteria.entries()[static_cast<std::size_t>(index)];
    put(ListCriteria.entries()[static_cast<std::size_t>(target)], index);
    put(line, target);
    ListCriteria.set_index(target);
    SetListButtons();
  } catch (const Error&) {
    // A move that fails is abandoned where it stands.
  }
}

void F_Selection::ListCriteria_Click() { SetListButtons(); }

void F_Selection::ListCriteria_DblClick() { SetListButtons(); }

void F_Selection::ListCriteria_MouseMove(int Button) {
  if (Button == 1 && !is_read_only_run()) ListCriteria.is_dragging = true;
}

void F_Selection::ListCriteria_DragDrop(const Control& source, double /*x*/, double y) {
  ListCriteria.is_dragging = false;
  if (is_read_only_run() || source.name() != "ListCriteria" || ListCriteria.count() == 0) return;
  const auto row_height = std::max(1L, std::lrint(ListCriteria.row_height));
  const long dropped = ListCriteria.top_index + std::lrint(y) / row_height;
  const int index = ListCriteria.index();
  if (dropped == index) return;
  // Also a drop above the first row must not cost the line.
  const int target = static_cast<int>(std::clamp(dropped, 0L, ListCriteria.count() - 1L));
  if (index >= 0) {
    const std::string line = ListCriteria.entry_text(index);
    ListCriteria.remove(index);
    // The line keeps its text only; what it stands for is read from the text.
    ListCriteria.insert(line, target);
    ListCriteria.set_index(target);
  }
  SetListButtons();
}

void F_Selection::SetListButtons() {
  const int index = ListCriteria.index();
  const int count = ListCriteria.count();
  const bool may_move = !is_read_only_run();
  cmdUp.set_enabled(may_move && index >= 1);
  cmdDown.set_enabled(may_move && index >= 0 && index < count - 1);
  if (index == -1 && count >= 1) ListCriteria.set_index(0);

  cboField.set_index(-1);
  cboOperator.set_index(-1);
  cboValue.set_text("");
  Formula.set_text("");
  const std::string line = ListCriteria.text();
  if (!line.empty() && !is_or_line(line)) load_line(line);
}

void F_Selection::load_line(const std::string& line) {
  const LineParts parts = split_line(line);
  try {
    cboField.set_text(parts.field);
  } catch (const Error&) {
    // Also a line whose field is no longer offered must load and show.
    cboField.set_index(-1);
  }
  if (cboOperator.has_entry(parts.op)) {
    cboOperator.set_text(parts.op);
  } else {
    cboOperator.set_index(-1);
  }
  cboValue.set_text(parts.value);
  Formula.set_text(line);
}

}  // namespace kestrova
