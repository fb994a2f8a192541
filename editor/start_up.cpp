// Start-up: binding the editor to a relation, its field list and model list, and showing it.
#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <vector>

#include "editor/f_selection.h"
#include "engine/model_relation.h"
#include "engine/queries.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/text.h"
#include "relations/code_test.h"
#include "relations/relation_codes.h"

namespace kestrova {
namespace {

constexpr std::int32_t kOrWordText = 3441;

// The code under which the editor works on a relation.
struct EditorRelation {
  CodeTest code;
  std::string_view relation;
};

// How the field numbers of a list become the identifiers of criteria strings.
enum class Mapping {
  kOwnCode,        // by the relation code itself
  kLogReverse,     // back from the invoice log
  kHeaderReverse,  // back from the invoice headers
  kNumberMap,      // by inverting the code's mapping of 1 to 3000
};

struct FieldListRule {
  CodeTest code;
  std::string_view list_key;
  Mapping mapping = Mapping::kOwnCode;
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

// Catalogue relations without a row use their own code as key.
constexpr std::array kFieldLists = {
    FieldListRule{exact("HIZBB_SELEKTION_BBHIZ_HAB"), "BBHAB_RECHNUNG"},
    FieldListRule{exact("HIZBB_SELEKTION_BBHIZ_ARTIKEL"), "BBHIZ_ARTIKEL"},
    FieldListRule{exact("HIZBB_SELEKTION_ANGEBOT"), "BBHAB_ANGEBOT"},
    FieldListRule{exact("HIZBB_SELEKTION_RECHNUNG"), "BBHAB_RECHNUNG"},
    FieldListRule{exact("ABSCHLAG_SELEKTION_RECHNUNG"), "BBHAB_RECHNUNG"},
    FieldListRule{exact("HIZBB_SELEKTION_SERVICE_HAB1"), "BBHAB_RECHNUNG"},
    FieldListRule{exact("HIZBB_SELEKTION_SERVICE_HAB2"), "BBHAB_RECHNUNG"},
    FieldListRule{exact("HIZBB_SELEKTION_SERVICE_HAB3"), "BBHAB_RECHNUNG"},
    FieldListRule{exact("HIZBB_SELEKTION_RECHNUNG_MV"), "BBHAB_RECHNUNG_MV"},
    FieldListRule{exact("HIZBB_SELEKTION_FAKTURA"), "BBFAK_FAKTURA"},
    FieldListRule{exact("HIZBB_SELEKTION_BBKLRIZ"), "BBTALK"},
    FieldListRule{exact("HIZBB_SELEKTION_AUFTRAG"), "PLAN_BEARBEITUNG_BB"},
    FieldListRule{exact("HIZBB_SELEKTION_FHPIZ"), "FHPIZ"},
    FieldListRule{exact("FI_NUTZERRECHTE"), "USERS"},
    FieldListRule{exact("AUFTRAGSKATALOG"), "AKAT"},
    FieldListRule{exact("JAGD_PLAN"), "BBJAGD"},
    FieldListRule{exact("JAGD_WILD"), "BBWILD"},
    FieldListRule{exact("JAGD_HUNDE"), "BBHUNDE"},
    FieldListRule{exact("JAGD_STRECKE"), "BBSTRK"},
    FieldListRule{exact("VERLOHN"), "VERLOHN"},
    FieldListRule{exact("WAL_BB"), "WAL_BB"},
    FieldListRule{exact("DTZB"), "DTZB"},
    FieldListRule{exact("BB_JAGDBEZIRKE"), "BB_JAGDBEZIRKE"},
    FieldListRule{exact("BB_MASCH_FAHRT"), "BBFAHR"},
    FieldListRule{exact("BB_T_OBJEKTE"), "BBOBJ"},
    FieldListRule{exact("STEHAPR"), "STEH"},
    FieldListRule{exact("STEHEXPAPR"), "STEH"},
    FieldListRule{exact("HIZBB_SELEKTION_SIZ"), "STEH"},
    FieldListRule{exact("MEISTVERK"), "MVLOSE"},
    FieldListRule{exact("HIZBB_SELEKTION_MVIZ"), "MVLOSE"},
    FieldListRule{exact("FHPEXP"), "FHPEXP"},
    FieldListRule{exact("HIZBB_SELEKTION_LIZ"), "LIZ"},
    FieldListRule{exact("HIZBB_SELEKTION_KIZ"), "KIZ"},
    FieldListRule{exact("HIZBB_SELEKTION_MAP"), "BBMAP"},
    FieldListRule{prefix("4PAG"), "SAPAGRUPPE"},
    FieldListRule{prefix("BELEG_BB"), "BBKLR"},
    FieldListRule{prefix("LEISTUNGS_BB"), "BBLTN"},
    FieldListRule{prefix("ANGEBOT_BB"), "ANGEBOT_BB"},
    FieldListRule{prefix("RECHNUNG_BB"), "RECHNUNG_BB"},
    FieldListRule{prefix("FAKTURA_BB"), "FAKTURA_BB"},
    FieldListRule{prefix("STAMMEINGABE_BB"), "BBHAB"},
    FieldListRule{exact("1VM-A"), "ARTIKEL", Mapping::kHeaderReverse},
    FieldListRule{exact("2ABR#-A"), "ARTIKEL", Mapping::kHeaderReverse},
    FieldListRule{exact("1VM"), "LOG", Mapping::kLogReverse},
    FieldListRule{exact("2ABR#"), "LOG", Mapping::kLogReverse},
    FieldListRule{exact("2SERV"), "PERSONAL"},
    FieldListRule{exact("2PVK"), "PERSONAL"},
    FieldListRule{exact("2PVALL"), "PERSONAL"},
    FieldListRule{exact("2PALL"), "PERSONAL"},
    FieldListRule{exact("2PVA#"), "PERSONAL"},
    FieldListRule{exact("2PVARB"), "PERSONAL"},
    FieldListRule{exact("2PLIEF"), "PERSONAL"},
    FieldListRule{exact("2PVS"), "PERSONAL"},
    FieldListRule{exact("2PVM"), "PERSONAL"},
    FieldListRule{exact("2PWS"), "PERSONAL"},
    FieldListRule{exact("2PVAP"), "PERSONAL"},
    FieldListRule{exact("LAGER_BB"), "LAGER_BB"},
    FieldListRule{exact("VERTSCH_BB"), "VERTSCH_BB"},
    FieldListRule{exact("WAREN"), "WAREN"},
    FieldListRule{exact("KLR_UBERNAHME"), "KLR_UBERNAHME"},
    FieldListRule{exact("SERVICE_BB"), "BBHAB_UMBUCH"},
    FieldListRule{exact("ZIELVEREINBARUNG_BB"), "BBZV"},
    FieldListRule{exact("MONATSARBEITSPLAN_BB"), "BBMAP"},
    FieldListRule{exact("BB_T_AUFTRAGS_PLANUNG"), "BBAUFTRAGS_PLANUNG"},
    FieldListRule{exact("1LV"), "LOG", Mapping::kNumberMap},
    FieldListRule{exact("1SERV"), "LOG", Mapping::kNumberMap},
    FieldListRule{exact("1EXP"), "LOG", Mapping::kNumberMap},
    FieldListRule{exact("NML"), "LOG", Mapping::kNumberMap},
    FieldListRule{exact("2EML"), "LOG", Mapping::kNumberMap},
    FieldListRule{prefix_any_case("VERTP"), "LOG", Mapping::kNumberMap},
    FieldListRule{prefix_any_case("VERTM"), "LOG", Mapping::kNumberMap},
    FieldListRule{prefix("HIZ_SELEKTION_"), "HIZ", Mapping::kNumberMap},
};

// clang-format on

// This relation has a field list of its own and shares everything else with another.
constexpr std::string_view kOfferedByList = "HIZBB_SELEKTION_RECHNUNG_MV";
constexpr std::string_view kOfferedByListBase = "HIZBB_SELEKTION_RECHNUNG";

constexpr CodeTest code_of_relation(const EditorRelation& r) { return r.code; }
constexpr CodeTest code_of_list(const FieldListRule& r) { return r.code; }
static_assert(rows_are_distinct(kEditorRelations, code_of_relation));
static_assert(rows_are_distinct(kFieldLists, code_of_list));

template <class Rules>
auto find_rule(const Rules& rules, std::string_view code) {
  return std::find_if(rules.begin(), rules.end(),
                      [code](const auto& rule) { return matches(rule.code, code); });
}

std::string upper_trimmed_code(std::string_view code) { return text::upper(text::trim(code)); }

std::string editor_relation(std::string_view code) {
  const auto rule = find_rule(kEditorRelations, code);
  return rule == kEditorRelations.end() ? upper_trimmed_code(code) : std::string(rule->relation);
}

// The first column of the first row of a configuration list, split at its commas.
std::vector<std::string> list_setting(Connection& connection, std::string_view relation) {
  const auto row = open_query(connection, "SELECT ISNULL(MODEL,'') FROM MODELS WHERE RELATION = '" +
                                              std::string(relation) + "'");
  std::vector<std::string> items;
  if (row->eof()) return items;
  const std::string list = row->value(std::size_t{0}).text();
  for (const std::string_view item : text::split(list, ',')) items.emplace_back(text::trim(item));
  return items;
}

// Field numbers to identifiers, for numbers from 1 to 3000.
class NumberMap {
 public:
  static constexpr std::int32_t kLast = 3000;

  NumberMap(TableAccessService& service, std::string_view code) {
    for (std::int32_t id = 1; id <= kLast; ++id) {
      const std::int32_t number = service.MapFieldId(code, id);
      if (is_inside(number)) ids_[static_cast<std::size_t>(number)] = static_cast<std::int16_t>(id);
    }
  }

  void hide(std::int64_t number) {
    if (is_inside(number)) ids_[static_cast<std::size_t>(number)] = 0;
  }

  std::int32_t id_of(std::int32_t number) const {
    return is_inside(number) ? ids_[static_cast<std::size_t>(number)] : 0;
  }

 private:
  static bool is_inside(std::int64_t number) { return number >= 1 && number <= kLast; }
  std::array<std::int16_t, kLast + 1> ids_{};
};

// The number that a code carries behind its first five characters; 0 when it carries none.
std::int32_t contract_number(std::string_view code) {
  const std::string_view digits = text::trim(text::mid(code, 6));
  const std::size_t end = std::min(digits.find_first_not_of("0123456789"), digits.size());
  const auto number = text::to_integer(digits.substr(0, end)).value_or(0);
  if (number > std::numeric_limits<std::int32_t>::max()) {
    throw Overflow("The contract number in " + std::string(code) + " is too large.");
  }
  return static_cast<std::int32_t>(number);
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
  context_ = context;
  blnOracle = connection().kind() == ConnectionKind::kOracle;
  if (!loaded_) Form_Load();
  bind_relation(relation_code);
  ListCriteria.clear();
  cboValue.clear();
  if (equals_code("2ABR#", relation_code)) strRelation = upper_trimmed_code(relation_code);
  fill_models();
  txtStandard.set_text(GetStandardModelName());
  select_start_model();
  cboValue.set_text("");
  Formula.set_text("");
}

void F_Selection::bind_relation(std::string& relation_code) {
  strParameter = relation_code;
  strRelation = editor_relation(relation_code);
  strNickName.clear();
  strValue.clear();
  dbSelektion.reset();
  cboField.clear();
  cboOperator.clear();
  if (IsCatalogueRelation(relation_code)) {
    fill_catalogue_fields(relation_code);
  } else {
    fill_selektion_fields();
  }
}

void F_Selection::fill_catalogue_fields(std::string& relation_code) {
  const auto rule = find_rule(kFieldLists, relation_code);
  const std::string list_key =
      rule == kFieldLists.end() ? relation_code : std::string(rule->list_key);
  const Mapping mapping = rule == kFieldLists.end() ? Mapping::kOwnCode : rule->mapping;

  const std::shared_ptr<TableAccessService> service = suite().table_access();
  service->FillFieldList(list_key, cboField, context_, 0);
  if (relation_code == kOfferedByList) {
    relation_code = kOfferedByListBase;
    strParameter = relation_code;
    strRelation = relation_code;
  }

  std::optional<NumberMap> numbers;
  if (mapping == Mapping::kNumberMap) {
    numbers.emplace(*service, relation_code);
    if (relation_code.starts_with("HIZ_SELEKTION_")) {
      for (const std::string& item : list_setting(connection(), "USERFIELDS")) {
        if (const auto number = text::to_integer(item)) numbers->hide(*number);
      }
    }
  }
  const auto id_of = [&](std::int32_t number) -> std::int32_t {
    switch (mapping) {
      case Mapping::kLogReverse:
        return service->MapFieldId("1VM_REVERS", number);
      case Mapping::kHeaderReverse:
        return service->MapFieldId("1VM-A_REVERS", number);
      case Mapping::kNumberMap:
        return numbers->id_of(number);
      case Mapping::kOwnCode:
        break;
    }
    return service->MapFieldId(relation_code, number);
  };
  for (int i = cboField.count() - 1; i >= 0; --i) {
    const std::int32_t id = id_of(cboField.item_data(i));
    if (id == 0) {
      cboField.remove(i);
    } else {
      cboField.set_item_data(i, id);
    }
  }
}

void F_Selection::fill_selektion_fields() {
  const std::string& language = module_state().strLanguage;
  const std::string parameter = strRelation == "2PVALL"               ? "2PVK"
                                : equals_code("2ABR#-A", strRelation) ? "1VM-A"
                                                                      : strRelation;
  std::optional<std::vector<std::string>> permitted;
  if (strRelation == "4ARB") permitted = list_setting(connection(), "BBFIZ");

  dbSelektion = connection().open(
      "SELECT SELEKTION.*,STRINGS." + language + ",STRINGS.CUSTOM_" + language +
          " FROM SELEKTION LEFT JOIN STRINGS ON SELEKTION.ID_STRING = STRINGS.ID_STRING WHERE"
          " RTRIM(LTRIM(SELEKTION.PARAMETER)) = '" +
          parameter + "' AND VISIBLE = 1 ORDER BY SELEKTION.ORDER_CUSTOM",
      CursorType::kStatic, LockType::kReadOnly);
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
  Model.clear();
  const auto models = open_query(
      connection(),
      "SELECT MODELS.ID,MODELS.NAME FROM MODELS"
      " LEFT JOIN ACCESS_LEVELS ON MODELS.ID_ACCESS_LEVELS = ACCESS_LEVELS.ID"
      " WHERE MODELS.RELATION = '" +
          GetModelRelation() + "' AND " + visible_models() + " ORDER BY MODELS.NAME,MODELS.ID");
  for (; !models->eof(); models->move_next()) {
    Model.add(models->value("NAME").text_or_empty());
    Model.set_item_data(Model.new_index(), models->value("ID").integer());
  }
}

void F_Selection::select_start_model() {
  if (Model.count() == 0) return;
  const std::int32_t standard = standard_model();
  for (int i = 0; i < Model.count() && Model.index() == -1; ++i) {
    if (Model.item_data(i) == standard) Model.set_index(i);
  }
  if (Model.index() == -1) Model.set_index(0);
  Model_DblClick();
}

void F_Selection::Run(const KesVar& context, std::string& strSelektion_Fr_Wh,
                      std::string& strSelektionFormula, bool ReadOnly, std::string_view strSubset) {
  context_ = context;
  blnReadOnly = ReadOnly;
  module_state().blnOK = user_locale().boolean_text(false);
  intStartState = 2;
  SetListButtons();
  load_start_selection(strSubset);
  RefreshModelState();
  show_modally();
  intStartState = 0;
  strSelektion_Fr_Wh = module_state().strSelektion_Fr_Wh;
  strSelektionFormula = module_state().strSelektionFormula;
}

void F_Selection::show_modally() {
  struct Visible {
    explicit Visible(bool& its_flag) : flag(its_flag) { flag = true; }
    ~Visible() { flag = false; }
    bool& flag;
  };
  const Visible visible(visible_);
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
