#include "relations/relation_conditions.h"

#include <algorithm>
#include <array>

#include "interface/module_state.h"
#include "relations/code_test.h"
#include "relations/relation_codes.h"

namespace kestrova {
namespace {

// What becomes of the FROM text once the condition is set. In texts, "{...}" stands for a value
// (see RelationTexts).
struct FromStep {
  bool again = false;           // ask for the base FROM text again
  std::int32_t field = 0;       // add the tables of this field of the table key
  std::string_view run_type{};  // with this run type
  std::string_view join{};      // and put this text behind
};

constexpr FromStep from_again() { return {.again = true}; }
constexpr FromStep from_field(std::int32_t field, std::string_view run_type = "",
                              std::string_view join = "") {
  return {.field = field, .run_type = run_type, .join = join};
}

// One row per rule. base_table is the table that the access-level filter restricts; without one the
// filter is not asked.
struct RelationRule {
  CodeTest code;
  std::string_view condition{};
  std::string_view base_table{};
  FromStep from{};
  std::string_view hold_clause{};       // put behind the condition
  bool invoice_dates = false;           // the caller's invoice date range bounds the condition
  bool level_is_filter_option = false;  // the filter gets the user's access level as its option
};

// clang-format off

// Lots that a re-sorting has replaced stay out.
constexpr std::string_view kAbgang = " AND (BB_HAB.ID_BB_T_ABGANGSART IS NULL OR BB_HAB.ID_BB_T_ABGANGSART IN (SELECT ID FROM BB_T_ABGANGSART WHERE UMSORTIERUNG IS NULL OR UMSORTIERUNG = 0))";

constexpr std::string_view kImported = "FHP_IMPORT.ERRORTEXT IS NULL AND FHP_IMPORT.ID_FHP_IMPORT IS NULL";

// The first row whose code matches applies. Exact codes are compared with case. A code without a
// row has no condition; among them are "2SERV", "2PVALL", "1RJ".
constexpr std::array kRules = {
    RelationRule{.code = exact("2EML"), .condition = "PERSONAL.KUNDE = 1", .base_table = "PERSONAL"},
    RelationRule{.code = exact("PERSONAL"), .base_table = "PERSONAL"},
    RelationRule{.code = exact("2PVK"), .condition = "PERSONAL.KUNDE = 1", .base_table = "PERSONAL"},
    RelationRule{.code = exact("2PALL"), .base_table = "PERSONAL"},
    RelationRule{.code = exact("2PVA#"), .condition = "PERSONAL.ABRECH{#} = 1", .base_table = "PERSONAL"},
    RelationRule{.code = exact("2PVARB"), .condition = "PERSONAL.ARBEITER = 1", .base_table = "PERSONAL"},
    RelationRule{.code = exact("2PLIEF"), .condition = "PERSONAL.LIEFERANT = 1", .base_table = "PERSONAL"},
    RelationRule{.code = exact("2PVM"), .condition = "PERSONAL.MANDANTEN = 1", .base_table = "PERSONAL"},
    RelationRule{.code = exact("2PVS"), .condition = "PERSONAL.SONSTIGER = 1", .base_table = "PERSONAL"},
    RelationRule{.code = exact("2PWS"), .condition = "PERSONAL.WALDBESITZER = 1", .base_table = "PERSONAL"},
    RelationRule{.code = exact("2PVAP"), .condition = "PERSONAL.ANSPRECHPARTNER = 1", .base_table = "PERSONAL"},
    RelationRule{.code = exact("1VVM"), .condition = "VERTRAEGE.ID_FAKTART = 0", .base_table = "VERTRAEGE"},
    RelationRule{.code = exact("EXP_VER0"), .condition = "VERTRAEGE.ID_FAKTART = 0", .base_table = "VERTRAEGE"},
    RelationRule{.code = exact("2VABR#"), .condition = "VERTRAEGE.ID_FAKTART = {#}", .base_table = "VERTRAEGE"},
    RelationRule{.code = exact("EXP_VER#"), .condition = "VERTRAEGE.ID_FAKTART = {#}", .base_table = "VERTRAEGE"},
    RelationRule{.code = exact("1VM"), .condition = "NOT (LOGS_RECH.R_NAME IS NULL)"},
    RelationRule{.code = exact("2ABR#"), .condition = "NOT (LOGS_RECH.A{#}_NAME IS NULL)"},
    RelationRule{.code = exact("1VM-A"), .condition = "HEADERRECH.VER_TYPE = 'R'", .from = from_field(472, "R")},
    RelationRule{.code = exact("2ABR#-A"), .condition = "HEADERRECH.VER_TYPE = 'A{#}'", .from = from_field(472, "A{#}")},
    RelationRule{.code = exact("HIZBB_SELEKTION_BBHIZ_HAB"), .condition = "(BB_HAB_KOPF.STORNODATUM IS NULL OR (BB_HAB.ID_BB_FAKTURA_KOPF_ANGEBOT IS NULL AND BB_HAB.ID_BB_FAKTURA_KOPF_RECHNUNG IS NULL))", .base_table = "BB_HAB_KOPF", .hold_clause = kAbgang},
    RelationRule{.code = prefix("STAMMEINGABE_BB"), .condition = "(BB_HAB_KOPF.STORNODATUM IS NULL OR (BB_HAB.ID_BB_FAKTURA_KOPF_ANGEBOT IS NULL AND BB_HAB.ID_BB_FAKTURA_KOPF_RECHNUNG IS NULL))", .base_table = "BB_HAB_KOPF", .hold_clause = kAbgang},
    RelationRule{.code = exact("HIZBB_SELEKTION_BBHIZ_ARTIKEL"), .condition = "BB_FAKTURA_KOPF.TYP = 1", .base_table = "BB_FAKTURA_KOPF"},
    // The next two differ in the order of their first two tests only.
    RelationRule{.code = exact("HIZBB_SELEKTION_ANGEBOT"), .condition = "(BB_HAB.ID_BB_FAKTURA_KOPF_ANGEBOT IS NULL AND BB_HAB.ID_BB_FAKTURA_KOPF_RECHNUNG IS NULL AND BB_HAB.MV_SCHLUSSAUFNAHME IS NULL AND BB_HAB.ID IS NOT NULL AND BB_HAB_KOPF.STORNODATUM IS NULL AND HOLZSORTE.VERKAUFSFAHIG = 1 AND BB_HAB_KOPF.AUFNAHMEZUSTAND = 1 AND BB_HAB.ID_BB_T_ABGANGSART IS NULL)", .base_table = "BB_HAB_KOPF", .hold_clause = kAbgang},
    RelationRule{.code = exact("HIZBB_SELEKTION_RECHNUNG"), .condition = "(BB_HAB.ID_BB_FAKTURA_KOPF_RECHNUNG IS NULL AND BB_HAB.ID_BB_FAKTURA_KOPF_ANGEBOT IS NULL AND BB_HAB.MV_SCHLUSSAUFNAHME IS NULL AND BB_HAB.ID IS NOT NULL AND BB_HAB_KOPF.STORNODATUM IS NULL AND HOLZSORTE.VERKAUFSFAHIG = 1 AND BB_HAB_KOPF.AUFNAHMEZUSTAND = 1 AND BB_HAB.ID_BB_T_ABGANGSART IS NULL)", .base_table = "BB_HAB_KOPF", .hold_clause = kAbgang},
    RelationRule{.code = exact("HIZBB_SELEKTION_SERVICE_HAB1"), .condition = "(BB_HAB_KOPF.STORNODATUM IS NULL AND BB_HAB.ID_BB_FAKTURA_KOPF_ANGEBOT IS NULL AND BB_HAB.ID_BB_FAKTURA_KOPF_RECHNUNG IS NULL AND BB_HAB.MV_BEZUG IS NULL AND BB_HAB_KOPF.AUFNAHMEZUSTAND = 1 AND BB_HAB.ID IS NOT NULL AND ABGANGSART_DATUM IS NULL)", .base_table = "BB_HAB_KOPF", .hold_clause = kAbgang},
    RelationRule{.code = exact("HIZBB_SELEKTION_SERVICE_HAB2"), .condition = "(BB_HAB_KOPF.STORNODATUM IS NULL AND BB_HAB.ID_BB_FAKTURA_KOPF_ANGEBOT IS NULL AND BB_HAB.ID_BB_FAKTURA_KOPF_RECHNUNG IS NULL AND BB_HAB.MV_BEZUG IS NULL AND BB_HAB_KOPF.AUFNAHMEZUSTAND = 1 AND BB_HAB.ID IS NOT NULL AND BB_HAB.ABGANGSART_DATUM IS NOT NULL)", .base_table = "BB_HAB_KOPF", .hold_clause = kAbgang},
    RelationRule{.code = exact("HIZBB_SELEKTION_SERVICE_HAB3"), .condition = "(BB_HAB_KOPF.STORNODATUM IS NULL AND BB_HAB.ID_BB_FAKTURA_KOPF_ANGEBOT IS NULL AND BB_HAB.ID_BB_FAKTURA_KOPF_RECHNUNG IS NULL AND BB_HAB.MV_BEZUG IS NULL AND BB_HAB_KOPF.AUFNAHMEZUSTAND = 1 AND BB_HAB.ID IS NOT NULL AND BB_T_ABGANGSART.ABGANG = 1)", .base_table = "BB_HAB_KOPF", .hold_clause = kAbgang},
    RelationRule{.code = exact("SERVICE_BB"), .condition = "(BB_HAB_KOPF.STORNODATUM IS NULL AND BB_HAB.ID_BB_FAKTURA_KOPF_ANGEBOT IS NULL AND BB_HAB.ID_BB_FAKTURA_KOPF_RECHNUNG IS NULL AND BB_HAB.MV_BEZUG IS NULL AND BB_HAB_KOPF.AUFNAHMEZUSTAND = 1)", .base_table = "BB_HAB_KOPF", .hold_clause = kAbgang},
    RelationRule{.code = exact("HIZBB_SELEKTION_BBKLRIZ"), .from = from_field(1, "", " INNER JOIN ({access list}) AL ON AL.ID = BB_TAKL02_KLR_BETRIEB.ID_ACCESS_LEVELS")},
    RelationRule{.code = exact("HIZBB_SELEKTION_FAKTURA"), .condition = "(BB_FAKTURA_KOPF.TYP = 1)", .base_table = "BB_FAKTURA_KOPF"},
    RelationRule{.code = exact("HIZBB_SELEKTION_AUFTRAG"), .condition = "(BB_PLAN_KOPF.STORNODATUM IS NULL AND BB_PLAN.ID IS NOT NULL AND BB_PLAN.ID_PRODUKT IN (SELECT ID_PRODUKT FROM BB_AUFTRAG_KOPF WHERE ID IN (SELECT ID FROM BB_AUFTRAG_KOPF{order restriction})))", .base_table = "BB_PLAN_KOPF"},
    RelationRule{.code = exact("BELEGBUCH"), .base_table = "SCH_BELEGE_KOPF"},
    RelationRule{.code = exact("MBUCH_SCH"), .base_table = "SCH_MASCHINENBUCH"},
    RelationRule{.code = exact("LOHNERFASS"), .base_table = "LOHNERFASSUNG_KOPF"},
    RelationRule{.code = exact("HIZBB_SELEKTION_LIZ"), .base_table = "LOHNERFASSUNG_KOPF"},
    RelationRule{.code = exact("BRUTTOSCH"), .base_table = "LOHNERFASSUNG_KOPF"},
    RelationRule{.code = exact("HIZBB_SELEKTION_KIZ"), .base_table = "KLR"},
    RelationRule{.code = exact("VERTSCH_BB"), .base_table = "BB_VERTEILSCHLUSSEL_KOPF"},
    RelationRule{.code = exact("WAREN"), .condition = "WARENKATALOG.ID_FORMULA IS NULL", .base_table = "WARENKATALOG"},
    RelationRule{.code = exact("KLR_UBERNAHME"), .condition = "(BB_TAKL01_KLR.ACCESS_LEVELS = {access level})"},
    RelationRule{.code = exact("WIZ"), .base_table = "HEADERRECH", .invoice_dates = true},
    RelationRule{.code = exact("BERM"), .base_table = "BEREITSTELLUNG_KOPF"},
    RelationRule{.code = exact("PLAN"), .base_table = "PLAN_KOPF"},
    RelationRule{.code = exact("PLAN_BEARBEITUNG_BB"), .base_table = "BB_PLAN_KOPF"},
    RelationRule{.code = exact("PLAN_ABSCHLUSS_BB"), .base_table = "BB_PLAN_KOPF"},
    RelationRule{.code = exact("1WL"), .base_table = "TRANSPORTLOGISTIK_KOPF"},
    RelationRule{.code = exact("ZIELVEREINBARUNG_BB"), .condition = "BB_T_AUFTRAGSTYP.TYP_TAGA = 1", .base_table = "BB_AUFTRAG_KOPF"},
    RelationRule{.code = exact("MONATSARBEITSPLAN_BB"), .base_table = "BB_MAP_KOPF"},
    RelationRule{.code = exact("BB_T_AUFTRAGS_PLANUNG"), .condition = "(BB_T_AUFTRAGSTYP.TYP_TAGA = 1 OR BB_T_AUFTRAGSTYP.TYP_AKA = 1)", .base_table = "BB_AUFTRAG_KOPF"},
    RelationRule{.code = exact("AUFTRAGSKATALOG"), .base_table = "BB_T_AUFTRAGS_PLANUNG"},
    RelationRule{.code = exact("JAGD_PLAN"), .base_table = "BB_ABSCHUSSPLAN_KOPF"},
    RelationRule{.code = exact("JAGD_WILD"), .base_table = "BB_WILDURSPRUNGS"},
    RelationRule{.code = exact("JAGD_STRECKE"), .base_table = "BB_STRECKE_NIEDER"},
    RelationRule{.code = exact("WAL_BB"), .base_table = "BB_WALDARBEITERLOHN_KOPF"},
    RelationRule{.code = exact("DTZB"), .base_table = "BB_WALDARBEITERLOHN_KOPF"},
    RelationRule{.code = exact("BB_JAGDBEZIRKE"), .base_table = "BB_JAGDBEZIRKE"},
    RelationRule{.code = exact("BB_MASCH_FAHRT"), .base_table = "BB_FAHRTENBUCH_KOPF"},
    RelationRule{.code = exact("BB_T_OBJEKTE"), .base_table = "BB_T_OBJEKTE"},
    RelationRule{.code = exact("STEHAPR"), .base_table = "STEH_AUFNAHMEPROTOKOLL_KOPF"},
    RelationRule{.code = exact("STEHEXPAPR"), .base_table = "STEH_AUFNAHMEPROTOKOLL_KOPF"},
    RelationRule{.code = exact("HIZBB_SELEKTION_SIZ"), .base_table = "STEH_AUFNAHMEPROTOKOLL_KOPF"},
    RelationRule{.code = exact("FHPEXP"), .condition = kImported, .from = from_again()},
    RelationRule{.code = exact("HIZBB_SELEKTION_FHPIZ"), .condition = kImported, .from = from_again()},
    RelationRule{.code = exact("1LV")},
    RelationRule{.code = exact("NML")},
    RelationRule{.code = exact("1EXP")},
    RelationRule{.code = exact("1SERV"), .condition = "(LISTENKOPF.GESPERRTLISTE IS NULL OR LISTENKOPF.GESPERRTLISTE = 0) AND 1 = (CASE WHEN ISNULL((SELECT NUMBER_VALUE FROM OPTIONEN WHERE PROPERTY_ID = 'CHKSERVICE'),0) <> 1 THEN (CASE WHEN (LOGS_RECH.R_NAME IS NULL AND LOGS_RECH.A1_NAME IS NULL AND LOGS_RECH.A2_NAME IS NULL AND LOGS_RECH.A3_NAME IS NULL AND LOGS_RECH.A4_NAME IS NULL AND LOGS_RECH.A5_NAME IS NULL AND LOGS_RECH.A6_NAME IS NULL AND LOGS_RECH.A7_NAME IS NULL AND LOGS_RECH.A8_NAME IS NULL) THEN 1 ELSE 0 END) ELSE 1 END)", .base_table = "LISTENKOPF", .from = from_field(204), .level_is_filter_option = true},
    RelationRule{.code = exact("VERLOHN"), .condition = "BB_LEISTUNGS_KOPF.STORNODATUM IS NULL AND PERSONAL.ID_ACCESS_LEVELS IN ({access list})", .from = from_field(1)},
    RelationRule{.code = exact("HIZBB_SELEKTION_MAP"), .condition = "(BB_AUFTRAG_KOPF.STORNODATUM IS NULL AND BB_AUFTRAG.STORNODATUM IS NULL AND (BB_T_AUFTRAGSSTATUS.ID_BB_T_AUFTRAGSSTATUS_TO_MAP IS NOT NULL OR BB_T_AUFTRAGSSTATUS.ID_BB_T_AUFTRAGSSTATUS_FROM_MAP IS NOT NULL) AND {open quantity} > 0)", .base_table = "BB_AUFTRAG_KOPF", .from = from_again()},
    // Only callers that ask directly come here: "4PLN" is no catalogue relation.
    RelationRule{.code = prefix("4PLN"), .condition = "ARBEITSAUFTRAG_PLANN.PERSONAL_ID = {trimmed person}"},
    RelationRule{.code = prefix("ANGEBOT_BB"), .condition = "BB_FAKTURA_KOPF.TYP = 2", .base_table = "BB_FAKTURA_KOPF"},
    RelationRule{.code = prefix("RECHNUNG_BB"), .condition = "BB_FAKTURA_KOPF.TYP = 3", .base_table = "BB_FAKTURA_KOPF"},
    RelationRule{.code = prefix("FAKTURA_BB"), .condition = "BB_FAKTURA_KOPF.TYP = 1", .base_table = "BB_FAKTURA_KOPF"},
    RelationRule{.code = prefix("BELEG_BB"), .base_table = "BB_BELEGE_KOPF"},
    RelationRule{.code = prefix("LEISTUNGS_BB"), .base_table = "BB_LEISTUNGS_KOPF"},
    RelationRule{.code = prefix("4PAG"), .condition = "(PA_GRUPPE.ID_PERSONAL = {person})", .from = from_again()},
    RelationRule{.code = prefix_any_case("VERTP"), .condition = kImported, .from = from_again()},
    RelationRule{.code = prefix_any_case("VERTM"), .condition = kImported, .from = from_again()},
    RelationRule{.code = prefix_any_case("HIZ_SELEKTION_"), .condition = kImported, .from = from_again()},
    RelationRule{.code = exact("FI_NUTZERRECHTE"), .from = from_again()},
    RelationRule{.code = exact("JAGD_HUNDE"), .from = from_again()},
    RelationRule{.code = exact("MEISTVERK"), .from = from_again()},
    RelationRule{.code = exact("HIZBB_SELEKTION_MVIZ"), .from = from_again()},
    RelationRule{.code = exact("ABSCHLAG_SELEKTION_RECHNUNG")},
};

// clang-format on

constexpr bool is_balanced(std::string_view sql) {
  int depth = 0;
  bool quoted = false;
  for (const char c : sql) {
    if (c == '\'') quoted = !quoted;
    if (quoted) continue;
    depth += c == '(' ? 1 : c == ')' ? -1 : 0;
    if (depth < 0) return false;
  }
  return depth == 0 && !quoted;
}

// What "{...}" in the texts of a rule stands for.
enum class Placeholder {
  kRunDigit,
  kPerson,
  kTrimmedPerson,
  kLevel,
  kList,
  kOrders,
  kOpenQuantity
};

struct NamedPlaceholder {
  std::string_view name;
  Placeholder placeholder;
};

constexpr std::array kPlaceholders = {
    NamedPlaceholder{"#", Placeholder::kRunDigit},     // the digit of a code of a numbered group
    NamedPlaceholder{"person", Placeholder::kPerson},  // the personnel number behind the prefix
    NamedPlaceholder{"trimmed person", Placeholder::kTrimmedPerson},
    NamedPlaceholder{"access level", Placeholder::kLevel},
    NamedPlaceholder{"access list", Placeholder::kList},
    NamedPlaceholder{"order restriction", Placeholder::kOrders},
    NamedPlaceholder{"open quantity", Placeholder::kOpenQuantity},
};

constexpr auto find_placeholder(std::string_view name) {
  return std::find_if(kPlaceholders.begin(), kPlaceholders.end(),
                      [name](const NamedPlaceholder& p) { return p.name == name; });
}

// Whether every "{...}" of a text is known, and "{#}" stands only where the code has a run.
constexpr bool can_be_expanded(std::string_view text, const CodeTest& code) {
  for (std::size_t open = text.find('{'); open != std::string_view::npos; open = text.find('{')) {
    const std::size_t close = text.find('}', open);
    if (close == std::string_view::npos) return false;
    const auto found = find_placeholder(text.substr(open + 1, close - open - 1));
    if (found == kPlaceholders.end()) return false;
    const bool has_run = code.code.find('#') != std::string_view::npos;
    if (found->placeholder == Placeholder::kRunDigit && !has_run) return false;
    text.remove_prefix(close + 1);
  }
  return true;
}

constexpr CodeTest code_of(const RelationRule& rule) { return rule.code; }

static_assert(rows_are_distinct(kRules, code_of));
static_assert(is_balanced(kAbgang));
static_assert(std::all_of(kRules.begin(), kRules.end(), [](const RelationRule& rule) {
  return is_balanced(rule.condition) && is_balanced(rule.from.join) &&
         can_be_expanded(rule.condition, rule.code) &&
         can_be_expanded(rule.from.run_type, rule.code) &&
         can_be_expanded(rule.from.join, rule.code);
}));

// The number of the field of "BBZV" that holds the open quantity of an order.
constexpr std::int32_t kOpenQuantityField = 42;

// Puts values for the "{...}" of a rule's texts.
class RelationTexts {
 public:
  RelationTexts(const RelationRule& rule, std::string_view code, TableAccessService& service,
                const KesVar& context)
      : rule_(rule), code_(code), service_(service), context_(context) {}

  std::string expand(std::string_view text) const {
    std::string result;
    for (std::size_t open = text.find('{'); open != std::string_view::npos; open = text.find('{')) {
      const std::size_t close = text.find('}', open);
      result += text.substr(0, open);
      result += value_of(text.substr(open + 1, close - open - 1));
      text.remove_prefix(close + 1);
    }
    result += text;
    return result;
  }

 private:
  std::string value_of(std::string_view name) const {
    switch (find_placeholder(name)->placeholder) {
      case Placeholder::kRunDigit:
        return std::string(1, code_[rule_.code.code.find('#')]);
      case Placeholder::kPerson:
        return std::string(personnel_number(code_));
      case Placeholder::kTrimmedPerson:
        return std::string(text::trim(personnel_number(code_)));
      case Placeholder::kLevel:
        return std::to_string(context_.lngAccessLevel);
      case Placeholder::kList:
        return context_.strAccessLevelList;
      case Placeholder::kOrders:
        return service_.order_restriction(context_);
      case Placeholder::kOpenQuantity:
        return service_.GetFieldExpression("BBZV", kOpenQuantityField, 0, 0, context_);
    }
    return {};
  }

  const RelationRule& rule_;
  std::string_view code_;
  TableAccessService& service_;
  const KesVar& context_;
};

void add_invoice_dates(std::string& condition, TableAccessService& service, const KesVar& context) {
  struct Bound {
    std::string_view comparison;
    double day_count;
  };
  const std::shared_ptr<DateFormatter> formatter = suite().date_formatter();
  for (const Bound& bound : {Bound{"HEADERRECH.INVDATE >= '", context.datInvoiceFrom},
                             Bound{"HEADERRECH.INVDATE <= '", context.datInvoiceTo}}) {
    if (!formatter->is_set(bound.day_count)) continue;
    const std::string date = formatter->server_date(bound.day_count, context.strDateOrder);
    condition = service.AddCondition(condition, std::string(bound.comparison) + date + "'");
  }
}

}  // namespace

void GetRelationFromWhere(std::string_view code, std::string& condition, std::string& fromText,
                          const KesVar& ctx, std::int32_t option) {
  condition.clear();
  const std::shared_ptr<TableAccessService> service = suite().table_access();
  const std::string_view key = GetRelationTableKey(code);
  const auto base_from = [&] { return service->AddFieldTables(key, 0, "", "", ctx); };

  fromText = base_from();

  const auto rule = std::find_if(kRules.begin(), kRules.end(),
                                 [code](const RelationRule& r) { return matches(r.code, code); });
  if (rule == kRules.end()) return;

  const RelationTexts texts(*rule, code, *service, ctx);
  condition = texts.expand(rule->condition);
  condition += rule->hold_clause;
  if (rule->invoice_dates) add_invoice_dates(condition, *service, ctx);
  if (!rule->base_table.empty()) {
    condition = suite().access_level_filter()->restrict(
        rule->base_table, condition, ctx,
        rule->level_is_filter_option ? ctx.lngAccessLevel : option);
  }
  if (rule->from.again) fromText = base_from();
  if (rule->from.field != 0) {
    fromText = service->AddFieldTables(key, rule->from.field, fromText,
                                       texts.expand(rule->from.run_type), ctx);
  }
  fromText += texts.expand(rule->from.join);
}

void ApplyAccessLevels(std::string_view code, std::int16_t fieldId, std::string& condition,
                       std::string& fromText, const KesVar& ctx) {
  apply_access_levels(*suite().table_access(), code, access_table_key(code), fieldId, condition,
                      fromText, ctx);
}

void apply_access_levels(TableAccessService& service, std::string_view code,
                         std::string_view access_key, std::int16_t field_id, std::string& condition,
                         std::string& from_text, const KesVar& context) {
  const std::int32_t number = service.MapFieldId(code, field_id);
  from_text =
      service.AddFieldTables(access_key, number, from_text, module_state().strVerType, context);
  condition = service.GetFieldExpression(access_key, number, 0, 0, context);
}

}  // namespace kestrova
