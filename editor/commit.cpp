// Committing the list: FROM/WHERE text and formula.
#include "editor/f_selection.h"
#include "engine/comm_sel.h"
#include "engine/criteria_guard.h"
#include "engine/criterion.h"
#include "engine/from_where_builder.h"
#include "interface/module_state.h"
#include "platform/text.h"
#include "relations/relation_codes.h"
#include "relations/relation_conditions.h"
#include "relations/show_message.h"

namespace kestrova {
namespace {

constexpr std::int32_t kLastIsOrText = 193;
constexpr std::int32_t kFirstIsOrText = 194;

// A field of SELEKTION by its identifier: its expression and its tables.
struct CatalogueField {
  std::string expression;
  FieldJoin join;
};

CatalogueField catalogue_field(const KesVar& context, std::int16_t id) {
  const Comm_Sel fields;
  const auto& connection = context.dbado;
  CatalogueField field;
  field.join.tables = {fields.Get_TableNameFromID(id, "MAIN", connection),
                       fields.Get_TableNameFromID(id, "SECOND", connection),
                       fields.Get_TableNameFromID(id, "THIRD", connection)};
  field.join.conditions = {fields.Get_ConditionFromID(id, "I", connection),
                           fields.Get_ConditionFromID(id, "II", connection)};
  field.join.kind = fields.Get_SQLSelectFromID(id, connection);
  field.expression = field.join.kind.empty() ? fields.Get_FieldNameFromID(id, connection)
                                             : fields.Get_SQLValueFromID(id, connection);
  return field;
}

// The working texts of one commit.
class Commit {
 public:
  Commit(const KesVar& context, const std::string& code)
      : context_(context), relation_(code), service_(suite().table_access()) {}

  void begin(const std::string& editor_relation) {
    std::string condition;
    GetRelationFromWhere(relation_.code, condition, text_.from, context_, context_.lngAccessLevel);
    text_.begin_where(condition);
    if (relation_.catalogue) return;
    text_.from.clear();
    // The code carries a personnel number behind the prefix. Here, unlike in a stored filter,
    // blanks stand around "=".
    if (editor_relation == "4ARB" && relation_.code != "4ARB") {
      text_.where += "ARBEITSAUFTRAG_KOPF.PERSONAL_ID = ";
      text_.where += personnel_number(relation_.code);
      text_.where += " AND ";
    }
  }

  void add_criterion(const std::string& line) {
    const std::string label = field_part(line);
    const std::string op = operator_part(context_, relation_, line, kDisplayLine);
    const std::string value = value_part(context_, relation_, line, kDisplayLine);
    const std::int16_t id = Comm_Sel().get_FieldID(label);
    require_own_list(context_, relation_, id, line, line);
    // What is committed must be kept as it is, too.
    require_own_list(context_, relation_, id, record_of(id, op, value), line);
    const std::string expression = add_field(id);
    text_.add_criterion(expression, expression, op, value, line);
  }

  void add_or() { text_.add_or(); }
  void add_and() { text_.add_and(); }

  std::string result() const {
    const bool host_says_from = !relation_.catalogue && !relation_.restricted;
    return (host_says_from ? " " : " FROM ") + std::string(text_.trimmed_from()) + " " +
           std::string(text::trim(text_.where)) + " (" + std::string(text::trim(text_.criteria)) +
           ")";
  }

 private:
  // Adds the tables of a field and answers its expression.
  std::string add_field(std::int16_t id) {
    const std::string& variant = module_state().strVerType;
    if (relation_.restricted || relation_.catalogue) {
      std::string expression;
      apply_access_levels(*service_, relation_.code,
                          relation_.restricted ? relation_.access_key : relation_.table_key, id,
                          expression, text_.from, context_);
      return expression;
    }
    const CatalogueField field = catalogue_field(context_, id);
    text_.add_join(field.join, *service_, variant);
    return field.expression;
  }

  const KesVar& context_;
  const Relation relation_;
  const std::shared_ptr<TableAccessService> service_;
  FromWhereBuilder text_;
};

}  // namespace

bool F_Selection::is_refused_by_or_line(std::int32_t flags) {
  const int count = ListCriteria.count();
  if (count == 0) return false;
  const bool first = is_or_line(ListCriteria.entry_text(0));
  const bool last = is_or_line(ListCriteria.entry_text(count - 1));
  if (!first && !last) return false;
  ShowMessage(loc_texts().GetText(first ? kFirstIsOrText : kLastIsOrText, context_), flags);
  return true;
}

void F_Selection::btnOk_Click() {
  if (is_refused_by_or_line(kExclamationIcon) || is_refused_by_unread_contract()) return;
  const std::string confirmed_before = module_state().blnOK;
  module_state().blnOK = user_locale().boolean_text(true);
  const BusyPointer busy(user_interface());
  try {
    commit();
  } catch (const RefusedCriterion&) {
    // A refused list has not been confirmed; any other failure leaves the confirmation.
    module_state().blnOK = confirmed_before;
    throw;
  }
  visible_ = false;
  module_state().strSelektionFormula = formula_text();
}

void F_Selection::commit() {
  Commit commit(context_, strParameter);
  commit.begin(strRelation);
  const int count = ListCriteria.count();
  for (int i = 0; i < count; ++i) {
    const std::string& line = ListCriteria.entry_text(i);
    if (is_or_line(line)) {
      commit.add_or();
      continue;
    }
    commit.add_criterion(line);
    if (i + 1 < count && !is_or_line(ListCriteria.entry_text(i + 1))) commit.add_and();
  }
  // What a contract holds is replaced only when every line has become a criterion: a line whose
  // field is not offered any more fails above.
  if (IsCatalogueRelation(strParameter)) {
    if (const auto contract = contract_selection(strRelation)) {
      SaveSelectionToTable(contract->table, contract->record);
    }
  }
  module_state().strSelektion_Fr_Wh = count == 0 ? std::string() : commit.result();
}

// Two criteria in a row are joined by " AND " written twice, and a criterion before an OR line is
// followed by " AND " where the word for OR is not "ODER": hosts show the formula as it is.
std::string F_Selection::formula_text() const {
  const std::string or_text = "=== " + options_.or_word + " ===";
  const auto holds = [](const std::string& line, std::string_view text) {
    return line.find(text) != std::string::npos;
  };
  std::string formula;
  const int count = ListCriteria.count();
  for (int i = 0; i < count; ++i) {
    const std::string& line = ListCriteria.entry_text(i);
    if (holds(line, or_text)) {
      formula += " OR ";
      continue;
    }
    formula += line;
    if (i + 1 == count) break;
    const std::string& next = ListCriteria.entry_text(i + 1);
    if (!holds(next, "=== ODER ===")) formula += " AND ";
    if (!holds(next, or_text)) formula += " AND ";
  }
  return formula;
}

void F_Selection::btnOK2_Click(std::string& strSelektion_Fr_Wh, std::string& strSelektionFormula) {
  btnOk_Click();
  strSelektion_Fr_Wh = module_state().strSelektion_Fr_Wh;
  strSelektionFormula = module_state().strSelektionFormula;
}

void F_Selection::btnCancel_Click() {
  module_state().blnOK = user_locale().boolean_text(false);
  visible_ = false;
}

}  // namespace kestrova
