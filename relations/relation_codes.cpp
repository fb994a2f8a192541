#include "relations/relation_codes.h"

#include <algorithm>
#include <array>
#include <limits>

#include "platform/error.h"
#include "platform/text.h"
#include "relations/code_test.h"

namespace kestrova {
namespace {

// A row of the tables that answer with a table key.
struct KeyRule {
  CodeTest code;
  std::string_view key;
};

// Marks codes of the access table whose key is the one of GetRelationTableKey.
constexpr std::string_view kOwnTableKey = "=";

// clang-format off

// Contract relations, "1WL", "WIZ", planning, hunting, "VERLOHN", "STEHAPR", "MEISTVERK" and
// "SERVICE_BB" are deliberately not restricted.
constexpr std::array kRestricted = {
    exact("1EXP"), exact("1LV"), exact("2EML"), exact("1VM"), exact("1VM-A"), exact("2ABR#-A"),
    exact("2ABR#"), exact("NML"), exact("BBF"), exact("1SERV"), exact("WAREN"), exact("PERSONAL"),
    exact("2SERV"), exact("2PVK"), exact("2PALL"), exact("2PVA#"), exact("2PVARB"), exact("2PLIEF"),
    exact("2PVM"), exact("2PVS"), exact("2PWS"), exact("2PVAP"), exact("2PVALL"), exact("1RJ"),
    exact("LOHNERFASS"), exact("HIZBB_SELEKTION_LIZ"), exact("HIZBB_SELEKTION_KIZ"),
    exact("BRUTTOSCH"), exact("BELEGBUCH"), exact("MBUCH_SCH"), exact("FI_NUTZERRECHTE"),
    exact("ABSCHLAG_SELEKTION_RECHNUNG"), exact("LAGER_BB"), exact("VERTSCH_BB"),
    exact("KLR_UBERNAHME"), exact("BERM"), exact("PLAN"), exact("PLAN_BEARBEITUNG_BB"),
    exact("HIZBB_SELEKTION_BBKLRIZ"), exact("FHPEXP"),
    prefix_any_case("HIZ_SELEKTION_"), prefix_any_case("HIZBB_SELEKTION_"),
    prefix_any_case("VERTP"), prefix_any_case("VERTM"), prefix_any_case("4ARB"),
    prefix("BELEG_BB"), prefix("LEISTUNGS_BB"), prefix("ANGEBOT_BB"), prefix("RECHNUNG_BB"),
    prefix("FAKTURA_BB"), prefix("STAMMEINGABE_BB"), prefix("4PAG"),
};

constexpr std::array kCatalogue = {
    exact("1LV"), exact("NML"), exact("1SERV"), exact("1EXP"), exact("2EML"), exact("1WL"),
    exact("1VVM"), exact("2VABR#"), exact("WIZ"), exact("1RJ"), exact("1VM-A"), exact("2ABR#-A"),
    exact("1VM"), exact("2ABR#"), exact("2SERV"), exact("2PVK"), exact("2PVALL"), exact("2PALL"),
    exact("2PVA#"), exact("2PVARB"), exact("2PLIEF"), exact("2PVS"), exact("2PVM"), exact("2PWS"),
    exact("2PVAP"), exact("LOHNERFASS"), exact("HIZBB_SELEKTION_LIZ"),
    exact("HIZBB_SELEKTION_KIZ"), exact("BRUTTOSCH"), exact("BELEGBUCH"), exact("MBUCH_SCH"),
    exact("FI_NUTZERRECHTE"), exact("ABSCHLAG_SELEKTION_RECHNUNG"), exact("LAGER_BB"),
    exact("VERTSCH_BB"), exact("WAREN"), exact("KLR_UBERNAHME"), exact("EXP_VER0"),
    exact("EXP_VER#"), exact("BERM"), exact("PLAN"), exact("PLAN_BEARBEITUNG_BB"),
    exact("HIZBB_SELEKTION_BBKLRIZ"), exact("PLAN_ABSCHLUSS_BB"), exact("PLAN_VORBEREITUNG_BB"),
    exact("SERVICE_BB"), exact("ZIELVEREINBARUNG_BB"), exact("MONATSARBEITSPLAN_BB"),
    exact("BB_T_AUFTRAGS_PLANUNG"), exact("AUFTRAGSKATALOG"), exact("JAGD_PLAN"),
    exact("JAGD_WILD"), exact("JAGD_HUNDE"), exact("JAGD_STRECKE"), exact("VERLOHN"),
    exact("WAL_BB"), exact("DTZB"), exact("BB_JAGDBEZIRKE"), exact("BB_MASCH_FAHRT"),
    exact("BB_T_OBJEKTE"), exact("STEHAPR"), exact("STEHEXPAPR"), exact("MEISTVERK"),
    exact("FHPEXP"),
    prefix_any_case("VERTP"), prefix_any_case("VERTM"), prefix_any_case("HIZ_SELEKTION_"),
    prefix_any_case("HIZBB_SELEKTION_"),
    prefix("4PAG"), prefix("BELEG_BB"), prefix("LEISTUNGS_BB"), prefix("ANGEBOT_BB"),
    prefix("RECHNUNG_BB"), prefix("FAKTURA_BB"), prefix("STAMMEINGABE_BB"),
};

// Codes without a row, among them "BBF", "PERSONAL", "4ARB", "4PLN" and every "HIZBB_SELEKTION_"
// code that is not named, have no key.
constexpr std::array kTableKeys = {
    KeyRule{exact("1WL"), "TRANSPORT"},
    KeyRule{exact("1VVM"), "VERTRAG"},
    KeyRule{exact("2VABR#"), "VERTRAG"},
    KeyRule{exact("EXP_VER0"), "VERTRAG"},
    KeyRule{exact("EXP_VER#"), "VERTRAG"},
    KeyRule{exact("WIZ"), "ARTIKEL"},
    KeyRule{exact("1VM-A"), "ARTIKEL"},
    KeyRule{exact("2ABR#-A"), "ARTIKEL"},
    KeyRule{exact("1RJ"), "RJ"},
    KeyRule{exact("2SERV"), "PERSONAL"},
    KeyRule{exact("2PVK"), "PERSONAL"},
    KeyRule{exact("2PVALL"), "PERSONAL"},
    KeyRule{exact("2PALL"), "PERSONAL"},
    KeyRule{exact("2PVA#"), "PERSONAL"},
    KeyRule{exact("2PVARB"), "PERSONAL"},
    KeyRule{exact("2PLIEF"), "PERSONAL"},
    KeyRule{exact("2PVS"), "PERSONAL"},
    KeyRule{exact("2PVM"), "PERSONAL"},
    KeyRule{exact("2PWS"), "PERSONAL"},
    KeyRule{exact("2PVAP"), "PERSONAL"},
    KeyRule{exact("HIZBB_SELEKTION_BBHIZ_HAB"), "BBHAB"},
    KeyRule{exact("HIZBB_SELEKTION_ANGEBOT"), "BBHAB"},
    KeyRule{exact("HIZBB_SELEKTION_RECHNUNG"), "BBHAB"},
    KeyRule{exact("ABSCHLAG_SELEKTION_RECHNUNG"), "BBHAB"},
    KeyRule{exact("HIZBB_SELEKTION_SERVICE_HAB1"), "BBHAB"},
    KeyRule{exact("HIZBB_SELEKTION_SERVICE_HAB2"), "BBHAB"},
    KeyRule{exact("HIZBB_SELEKTION_SERVICE_HAB3"), "BBHAB"},
    KeyRule{exact("SERVICE_BB"), "BBHAB"},
    KeyRule{exact("HIZBB_SELEKTION_FAKTURA"), "BBFAK"},
    KeyRule{exact("HIZBB_SELEKTION_BBHIZ_ARTIKEL"), "BBFAK"},
    KeyRule{exact("HIZBB_SELEKTION_FHPIZ"), "FHPEXP"},
    KeyRule{exact("LOHNERFASS"), "BBFS"},
    KeyRule{exact("HIZBB_SELEKTION_LIZ"), "BBFS"},
    KeyRule{exact("BRUTTOSCH"), "BBFS"},
    KeyRule{exact("HIZBB_SELEKTION_KIZ"), "KIZ"},
    KeyRule{exact("BELEGBUCH"), "BBFB"},
    KeyRule{exact("BERM"), "BERM"},
    KeyRule{exact("PLAN"), "PLAN"},
    KeyRule{exact("PLAN_BEARBEITUNG_BB"), "BBPLAN"},
    KeyRule{exact("PLAN_ABSCHLUSS_BB"), "BBPLAN"},
    KeyRule{exact("PLAN_VORBEREITUNG_BB"), "BBPLAN"},
    KeyRule{exact("HIZBB_SELEKTION_AUFTRAG"), "BBPLAN"},
    KeyRule{exact("HIZBB_SELEKTION_BBKLRIZ"), "BBTALK"},
    KeyRule{exact("MBUCH_SCH"), "MSCH"},
    KeyRule{exact("FI_NUTZERRECHTE"), "USERS"},
    KeyRule{exact("LAGER_BB"), "BBLAG"},
    KeyRule{exact("VERTSCH_BB"), "BBVS"},
    KeyRule{exact("WAREN"), "WAREN"},
    KeyRule{exact("KLR_UBERNAHME"), "BBUN"},
    KeyRule{exact("ZIELVEREINBARUNG_BB"), "BBZV"},
    KeyRule{exact("BB_T_AUFTRAGS_PLANUNG"), "BBZV"},
    KeyRule{exact("HIZBB_SELEKTION_MAP"), "BBZV"},
    KeyRule{exact("AUFTRAGSKATALOG"), "AKAT"},
    KeyRule{exact("MONATSARBEITSPLAN_BB"), "BBMAP"},
    KeyRule{exact("JAGD_PLAN"), "BBJAGD"},
    KeyRule{exact("JAGD_WILD"), "BBWILD"},
    KeyRule{exact("JAGD_HUNDE"), "BBHUNDE"},
    KeyRule{exact("JAGD_STRECKE"), "BBSTRK"},
    KeyRule{exact("WAL_BB"), "BBWAL"},
    KeyRule{exact("DTZB"), "BBWAL"},
    KeyRule{exact("BB_JAGDBEZIRKE"), "BBJB"},
    KeyRule{exact("BB_MASCH_FAHRT"), "BBFAHR"},
    KeyRule{exact("BB_T_OBJEKTE"), "BBOBJ"},
    KeyRule{exact("STEHAPR"), "STEH"},
    KeyRule{exact("STEHEXPAPR"), "STEH"},
    KeyRule{exact("HIZBB_SELEKTION_SIZ"), "STEH"},
    KeyRule{exact("MEISTVERK"), "MVLOSE"},
    KeyRule{exact("HIZBB_SELEKTION_MVIZ"), "MVLOSE"},
    KeyRule{exact("1VM"), "LOG"},
    KeyRule{exact("2ABR#"), "LOG"},
    KeyRule{exact("1LV"), "LOG"},
    KeyRule{exact("NML"), "LOG"},
    KeyRule{exact("1SERV"), "LOG"},
    KeyRule{exact("1EXP"), "LOG"},
    KeyRule{exact("2EML"), "LOG"},
    KeyRule{exact("FHPEXP"), "FHPEXP"},
    KeyRule{prefix("4PAG"), "SAPAGRUPPE"},
    KeyRule{prefix("BELEG_BB"), "BBKLR"},
    KeyRule{prefix("LEISTUNGS_BB"), "BBLTN"},
    KeyRule{exact("VERLOHN"), "BBLTN"},
    KeyRule{prefix("ANGEBOT_BB"), "BBFAK"},
    KeyRule{prefix("RECHNUNG_BB"), "BBFAK"},
    KeyRule{prefix("FAKTURA_BB"), "BBFAK"},
    KeyRule{prefix("STAMMEINGABE_BB"), "BBHAB"},
    KeyRule{prefix_any_case("VERTP"), "LOG"},
    KeyRule{prefix_any_case("VERTM"), "LOG"},
    KeyRule{prefix_any_case("HIZ_SELEKTION_"), "LOG"},
};

// Here every code is compared exactly as it stands; every code without a row has the key "LOG".
constexpr std::array kAccessKeys = {
    KeyRule{prefix("4ARB"), "BBF"},
    KeyRule{exact("BBF"), "BBF"},
    KeyRule{exact("1VM-A"), "ARTIKEL"},
    KeyRule{exact("2ABR#-A"), "ARTIKEL"},
    KeyRule{exact("WAREN"), "WAREN"},
    KeyRule{exact("2PVK"), "PERSONAL"},
    KeyRule{exact("2SERV"), "PERSONAL"},
    KeyRule{exact("2PVALL"), "PERSONAL"},
    KeyRule{exact("2PALL"), "PERSONAL"},
    KeyRule{exact("2PVA#"), "PERSONAL"},
    KeyRule{exact("2PVARB"), "PERSONAL"},
    KeyRule{exact("2PLIEF"), "PERSONAL"},
    KeyRule{exact("2PVS"), "PERSONAL"},
    KeyRule{exact("2PVM"), "PERSONAL"},
    KeyRule{exact("2PWS"), "PERSONAL"},
    KeyRule{exact("2PVAP"), "PERSONAL"},
    KeyRule{exact("PERSONAL"), "PERSONAL"},
    KeyRule{exact("1RJ"), "RJ"},
    KeyRule{prefix("BELEG_BB"), "BBKLR"},
    KeyRule{prefix("LEISTUNGS_BB"), "BBLTN"},
    KeyRule{exact("VERLOHN"), "BBLTN"},
    KeyRule{prefix("ANGEBOT_BB"), "BBFAK"},
    KeyRule{prefix("RECHNUNG_BB"), "BBFAK"},
    KeyRule{prefix("FAKTURA_BB"), "BBFAK"},
    KeyRule{prefix("STAMMEINGABE_BB"), "BBHAB"},
    KeyRule{exact("ABSCHLAG_SELEKTION_RECHNUNG"), kOwnTableKey},
    KeyRule{prefix("HIZBB_SELEKTION_"), kOwnTableKey},
    KeyRule{exact("LAGER_BB"), kOwnTableKey},
    KeyRule{exact("VERTSCH_BB"), kOwnTableKey},
    KeyRule{exact("KLR_UBERNAHME"), kOwnTableKey},
    KeyRule{exact("LOHNERFASS"), kOwnTableKey},
    KeyRule{exact("BRUTTOSCH"), kOwnTableKey},
    KeyRule{exact("BELEGBUCH"), kOwnTableKey},
    KeyRule{exact("MBUCH_SCH"), kOwnTableKey},
    KeyRule{exact("BERM"), kOwnTableKey},
    KeyRule{exact("PLAN"), kOwnTableKey},
    KeyRule{exact("PLAN_BEARBEITUNG_BB"), kOwnTableKey},
    KeyRule{exact("FHPEXP"), kOwnTableKey},
    KeyRule{prefix("4PAG"), "SAPAGRUPPE"},
    KeyRule{exact("FI_NUTZERRECHTE"), "USERS"},
};

// clang-format on

constexpr CodeTest code_itself(const CodeTest& test) { return test; }
constexpr CodeTest code_of_rule(const KeyRule& rule) { return rule.code; }

// No code stands twice and no two prefixes meet, so the order of the rows decides nothing but the
// speed of the search.
static_assert(rows_are_distinct(kRestricted, code_itself));
static_assert(rows_are_distinct(kCatalogue, code_itself));
static_assert(rows_are_distinct(kTableKeys, code_of_rule));
static_assert(rows_are_distinct(kAccessKeys, code_of_rule));

template <class Codes>
bool any_matches(const Codes& codes, std::string_view code) {
  return std::any_of(codes.begin(), codes.end(),
                     [code](const CodeTest& test) { return matches(test, code); });
}

template <class Rules>
std::string_view key_of(const Rules& rules, std::string_view code, std::string_view otherwise) {
  const auto rule = std::find_if(rules.begin(), rules.end(),
                                 [code](const KeyRule& r) { return matches(r.code, code); });
  return rule == rules.end() ? otherwise : rule->key;
}

void append_codes(std::vector<std::string>& codes, const CodeTest& test) {
  const auto add = [&codes](std::string code) {
    if (std::find(codes.begin(), codes.end(), code) == codes.end())
      codes.push_back(std::move(code));
  };
  std::string code(test.code);
  const std::size_t run = code.find('#');
  if (test.match != Match::kExact) {
    add(code + "*");
  } else if (run == std::string::npos) {
    add(code);
  } else {
    for (char digit = '1'; digit <= '8'; ++digit) {
      code[run] = digit;
      add(code);
    }
  }
}

void require_digits(std::string_view code, std::string_view number) {
  if (text::trim(number).find_first_not_of("0123456789") == std::string_view::npos) return;
  throw InvalidArgument("The relation code '" + std::string(code) +
                        "' carries something else than a number.");
}

}  // namespace

bool IsRestrictedRelation(std::string_view code) { return any_matches(kRestricted, code); }

bool IsCatalogueRelation(std::string_view code) { return any_matches(kCatalogue, code); }

std::string_view GetRelationTableKey(std::string_view code) { return key_of(kTableKeys, code, ""); }

std::string_view access_table_key(std::string_view code) {
  const std::string_view key = key_of(kAccessKeys, code, "LOG");
  return key == kOwnTableKey ? GetRelationTableKey(code) : key;
}

std::vector<std::string> known_relation_codes() {
  std::vector<std::string> codes;
  for (const KeyRule& rule : kTableKeys) append_codes(codes, rule.code);
  for (const CodeTest& test : kRestricted) append_codes(codes, test);
  for (const CodeTest& test : kCatalogue) append_codes(codes, test);
  return codes;
}

std::string_view personnel_number(std::string_view code) {
  const std::string_view number = text::mid(code, 5);
  require_digits(code, number);
  return number;
}

std::int32_t contract_number(std::string_view code) {
  const std::string_view digits = text::trim(text::mid(code, 6));
  require_digits(code, digits);
  if (digits.empty()) return 0;
  const std::optional<std::int64_t> number = text::to_integer(digits);
  if (!number || *number > std::numeric_limits<std::int32_t>::max()) {
    throw Overflow("The contract number in " + std::string(code) + " is too large.");
  }
  return static_cast<std::int32_t>(*number);
}

}  // namespace kestrova
