// Start-up: binding the editor to a relation, its field list and model list, and showing it.
#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <vector>

#include "editor/editor_texts.h"
#include "editor/f_selection.h"
#include "editor/field_lists.h"
#include "engine/model_relation.h"
#include "engine/queries.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/code_test.h"
#include "relations/relation_codes.h"
#include "relations/show_message.h"

namespace kestrova {
namespace {

constexpr std::int32_t kOrWordText = 3441;

// Until a field is chosen, the operators of this type are offered.
constexpr std::int16_t kTextOperators = 1001;

// The code under which the editor works on a relation.
struct EditorRelation {
  CodeTest code;
  std::string_view relation;
};

// clang-format off

// Codes without a row are upper-cased and trimmed.
constexpr std::array kEditorRelations = {
    EditorRelation{exact("2PALL"), "2PVK"},
    EditorRelation{exact("2PVA#"), "2PVK"},
    EditorRelation{exact("2PVARB"), "2PVK"},
    EditorRelation{exact("2PLIEF"), "2PVK"},
    EditorRelation{exact("2PVS"), "2PVK"},
    EditorRelation{exact("2PVM"), "2PVK"},
    EditorRelation{exact("2PWS"), "2PVK"},
    EditorRelation{exact("2PVAP"), "2PVK"},
    EditorRelation{exact("2ABR#"), "1VM"},
    EditorRelation{exact("1VVM"), "1VVM"},
    EditorRelation{exact("EXP_VER0"), "1VVM"},
    EditorRelation{exact("2VABR#"), "2VABR"},
    EditorRelation{exact("EXP_VER#"), "2VABR"},
    EditorRelation{exact("2ABR#-A"), "2ABR1-A"},
    EditorRelation{exact("HIZBB_SELEKTION_MAP"), "HIZBB_SELEKTION_MAP"},
    EditorRelation{prefix("4PAG"), "4PAG"},
    EditorRelation{prefix("4ARB"), "4ARB"},
    EditorRelation{prefix("4PLN"), "4PLN"},
    EditorRelation{prefix("BELEG_BB"), "BELEG_BB"},
    EditorRelation{prefix("LEISTUNGS_BB"), "LEISTUNGS_BB"},
    EditorRelation{prefix("ANGEBOT_BB"), "ANGEBOT_BB"},
    EditorRelation{prefix("RECHNUNG_BB"), "RECHNUNG_BB"},
    EditorRelation{prefix("FAKTURA_BB"), "FAKTURA_BB"},
    EditorRelation{prefix("STAMMEINGABE_BB"), "STAMMEINGABE_BB"},
};

// clang-format on

constexpr CodeTest code_of_relation(const EditorRelation& r) { return r.code; }
static_assert(rows_are_distinct(kEditorRelations, code_of_relation));

std::string upper_trimmed_code(std::string_view code) { return text::upper(text::trim(code)); }

std::string editor_relation(std::string_view code) {
  const auto rule =
      std::find_if(kEditorRelations.begin(), kEditorRelations.end(),
                   [code](const EditorRelation& row) { return matches(row.code, code); });
  return rule == kEditorRelations.end() ? upper_trimmed_code(code) : std::string(rule->relation);
}

// Whether the text of a filter is to blame, which a user can mend in the editor, and not the
// connection or the host. SQLSTATE class 42: a field that the database does not have (any more), or
// that the user may not read.
bool is_fault_of_filter(const Error& error) {
  if (const auto* refused = dynamic_cast<const DatabaseError*>(&error)) {
    return refused->sqlstate().starts_with("42");
  }
  return dynamic_cast<const ObjectNotSet*>(&error) == nullptr;
}

}  // namespace

std::optional<ContractSelection> contract_selection(std::string_view relation) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 2> kTables = {{
      {"VERTP", "VERTRAG_PREISE"},
      {"VERTM", "VERTRAG_MENGEN"},
  }};
  for (const auto& [prefix, table] : kTables) {
    if (text::starts_with_ignoring_case(relation, prefix)) {
      return ContractSelection{table, contract_number(relation)};
    }
  }
  return std::nullopt;
}

void F_Selection::InitForm(const KesVar& context, std::string& relation_code) {
  forget_relation();
  context_ = context;
  blnOracle = connection().kind() == ConnectionKind::kOracle;
  if (!loaded_) Form_Load();
  bind_relation(relation_code);
  FillOperatorList(cboOperator, kTextOperators);
  if (equals_code("2ABR#", relation_code)) strRelation = upper_trimmed_code(relation_code);
  fill_models();
  select_start_model();
  cboValue.set_text("");
  Formula.set_text("");
}

// Nothing of the last relation may be left where binding to the next one fails half-way: its lines
// would be committed under the new relation. Its row set goes before the connection that it is on.
void F_Selection::forget_relation() {
  caption_ = kCaption;
  strNickName.clear();
  strValue.clear();
  dbSelektion.reset();
  seen_models_.clear();
  contract_unread_ = false;
  for (EntryList* list : std::initializer_list<EntryList*>{&ListCriteria, &cboField, &cboOperator,
                                                           &cboValue, &Model}) {
    list->clear();
  }
  txtStandard.set_text("");
  Formula.set_text("");
}

void F_Selection::bind_relation(std::string& relation_code) {
  strParameter = relation_code;
  strRelation = editor_relation(relation_code);
  if (IsCatalogueRelation(relation_code)) {
    fill_catalogue_fields(relation_code);
  } else {
    fill_selektion_fields();
  }
}

void F_Selection::fill_catalogue_fields(std::string& relation_code) {
  const FieldList list = field_list_of(relation_code);
  if (list.relation != relation_code) {
    relation_code = list.relation;
    strParameter = relation_code;
    strRelation = relation_code;
  }
  for (const ListEntry& field : offered_fields(list, connection(), context_)) {
    cboField.add(field.text);
    cboField.set_item_data(cboField.new_index(), field.item_data);
  }
}

void F_Selection::fill_selektion_fields() {
  const std::string& language = module_state().strLanguage;
  const std::string parameter = strRelation == "2PVALL"               ? "2PVK"
                                : equals_code("2ABR#-A", strRelation) ? "1VM-A"
                                                                      : strRelation;
  std::optional<std::vector<std::string>> permitted;
  if (strRelation == "4ARB") permitted = field_setting(connection(), "BBFIZ");

  dbSelektion = open_query(
      connection(),
      "SELECT SELEKTION.*,STRINGS." + language + ",STRINGS.CUSTOM_" + language +
          " FROM SELEKTION LEFT JOIN STRINGS ON SELEKTION.ID_STRING = STRINGS.ID_STRING WHERE"
          " RTRIM(LTRIM(SELEKTION.PARAMETER)) = '" +
          parameter + "' AND VISIBLE = 1 ORDER BY SELEKTION.ORDER_CUSTOM",
      kSearched);
  for (; !dbSelektion->eof(); dbSelektion->move_next()) {
    const std::int32_t id = dbSelektion->value("ID_SELEKTION").integer();
    if (permitted &&
        std::find(permitted->begin(), permitted->end(), std::to_string(id)) == permitted->end()) {
      continue;
    }
    const std::string custom = dbSelektion->value("CUSTOM_" + language).text_or_empty();
    cboField.add(custom.empty() ? dbSelektion->value(language).text_or_empty() : custom);
    cboField.set_item_data(cboField.new_index(), id);
  }
}

std::string F_Selection::GetModelRelation() const { return model_relation_for_editor(strRelation); }

void F_Selection::fill_models() {
  const auto models = open_query(
      connection(),
      "SELECT MODELS.ID,MODELS.NAME FROM MODELS"
      " LEFT JOIN ACCESS_LEVELS ON MODELS.ID_ACCESS_LEVELS = ACCESS_LEVELS.ID"
      " WHERE MODELS.RELATION = '" +
          GetModelRelation() + "'" + and_visible_models() + " ORDER BY MODELS.NAME,MODELS.ID");
  for (; !models->eof(); models->move_next()) {
    const std::string name = models->value("NAME").text_or_empty();
    const std::int32_t id = models->value("ID").integer();
    Model.add(name);
    Model.set_item_data(Model.new_index(), id);
  }
}

void F_Selection::select_start_model() {
  const int standard = standard_model_index();
  if (standard != -1) txtStandard.set_text(Model.entry_text(standard));
  if (Model.count() == 0) return;
  Model.set_index(std::max(standard, 0));
  if (const auto why = why_not_loaded([this] { Model_DblClick(); })) {
    const std::string name = Model.text();
    caption_ = kCaption;
    // Nor may a save replace, with an empty list, what nobody has seen.
    Model.set_index(-1);
    ShowMessage(editor_text(context_, EditorText::kModelUnreadable, name, *why), kExclamationIcon);
  }
}

std::optional<std::string> F_Selection::why_not_loaded(const std::function<void()>& load) {
  std::string why;
  try {
    load();
    return std::nullopt;
  } catch (const Error& error) {
    if (!is_fault_of_filter(error)) throw;
    why = error.what();
  }
  ListCriteria.clear();
  SetListButtons();
  return why;
}

// An empty list that nobody has made would replace the selection of the contract.
bool F_Selection::is_refused_by_unread_contract() {
  if (!contract_unread_ || ListCriteria.count() > 0) return false;
  ShowMessage(editor_text(context_, EditorText::kContractIsKept), kExclamationIcon);
  return true;
}

void F_Selection::Run(const KesVar& context, std::string& strSelektion_Fr_Wh,
                      std::string& strSelektionFormula, bool ReadOnly, std::string_view strSubset) {
  context_ = context;
  blnReadOnly = ReadOnly;
  module_state().blnOK = user_locale().boolean_text(false);
  struct Preparing {
    explicit Preparing(std::int16_t& its_state) : state(its_state) { state = 2; }
    ~Preparing() { state = 0; }
    std::int16_t& state;
  };
  {
    const Preparing preparing(intStartState);
    SetListButtons();
    load_start_selection(strSubset);
    RefreshModelState();
    show_modally();
  }
  strSelektion_Fr_Wh = module_state().strSelektion_Fr_Wh;
  strSelektionFormula = module_state().strSelektionFormula;
}

void F_Selection::show_modally() {
  // The caption names the model until the dialog has closed, however it closes.
  struct Shown {
    explicit Shown(F_Selection& its_editor) : editor(its_editor) { editor.visible_ = true; }
    ~Shown() {
      editor.visible_ = false;
      editor.caption_ = kCaption;
    }
    F_Selection& editor;
  };
  const Shown shown(*this);
  user_interface().show_modal(*this);
}

void F_Selection::load_start_selection(std::string_view subset) {
  if (strRelation == "NML") {
    LoadSelectionFromString(subset);
  } else if (const auto contract = contract_selection(strRelation)) {
    LoadSelectionFromTable(contract->table, contract->record);
  }
}

void F_Selection::Form_Load() {
  const std::shared_ptr<SuiteOptions> suite_options = suite().suite_options();
  Options read;
  read.or_word = loc_texts().GetText(kOrWordText, context_);
  read.b018 = suite_options->GetOptionFlag("B018", context_);
  read.b049 = suite_options->GetOptionFlag("B049", context_);
  read.b057 = suite_options->GetOptionFlag("B057", context_);
  const auto row = open_query(
      connection(), std::string("SELECT") + (blnOracle ? " NVL(" : " ISNULL(") +
                        "NR_VAL,1) FROM (SELECT NUMBER_VALUE AS NR_VAL FROM OPTIONEN WHERE "
                        "PROPERTY_ID = 'CHANGE_MODELS') A");
  read.change_models = row->value(std::size_t{0}).integer() == 1;
  options_ = read;
  loaded_ = true;
}

void F_Selection::Form_Unload(bool& Cancel) {
  Cancel = visible_;
  visible_ = false;
}

}  // namespace kestrova
