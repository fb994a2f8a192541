#include "engine/model_relation.h"

#include <algorithm>
#include <array>
#include <optional>

#include "platform/text.h"
#include "relations/code_test.h"

namespace kestrova {
namespace {

struct ModelRelationRule {
  CodeTest code;
  std::string_view relation;
};

// clang-format off

// "2ABR2" to "2ABR8" share the models of "2ABR1", but "2VABR1" to "2VABR8" those of the artificial
// value "2VABR".
constexpr std::array kLookup = {
    ModelRelationRule{exact("2PALL"), "2PVK"},
    ModelRelationRule{exact("2PVA#"), "2PVK"},
    ModelRelationRule{exact("2PVARB"), "2PVK"},
    ModelRelationRule{exact("2PLIEF"), "2PVK"},
    ModelRelationRule{exact("2PVS"), "2PVK"},
    ModelRelationRule{exact("2PVM"), "2PVK"},
    ModelRelationRule{exact("2PWS"), "2PVK"},
    ModelRelationRule{exact("2PVAP"), "2PVK"},
    ModelRelationRule{exact("2ABR#"), "2ABR1"},
    ModelRelationRule{exact("1VVM"), "1VVM"},
    ModelRelationRule{exact("EXP_VER0"), "1VVM"},
    ModelRelationRule{exact("2VABR#"), "2VABR"},
    ModelRelationRule{exact("EXP_VER#"), "2VABR"},
    ModelRelationRule{exact("HIZBB_SELEKTION_MAP"), "HIZBB_SELEKTION_MAP"},
    ModelRelationRule{prefix("4PAG"), "4PAG"},
    ModelRelationRule{prefix("4ARB"), "4ARB"},
    ModelRelationRule{prefix("BELEG_BB"), "BELEG_BB"},
    ModelRelationRule{prefix("LEISTUNGS_BB"), "LEISTUNGS_BB"},
    ModelRelationRule{prefix("ANGEBOT_BB"), "ANGEBOT_BB"},
    ModelRelationRule{prefix("RECHNUNG_BB"), "RECHNUNG_BB"},
    ModelRelationRule{prefix("FAKTURA_BB"), "FAKTURA_BB"},
    ModelRelationRule{prefix("STAMMEINGABE_BB"), "STAMMEINGABE_BB"},
};

constexpr std::array kList = {
    ModelRelationRule{exact("2PALL"), "2PVK"},
    ModelRelationRule{exact("2PVA#"), "2PVK"},
    ModelRelationRule{exact("2PVARB"), "2PVK"},
    ModelRelationRule{exact("2PLIEF"), "2PVK"},
    ModelRelationRule{exact("2PVS"), "2PVK"},
    ModelRelationRule{exact("2PVM"), "2PVK"},
    ModelRelationRule{exact("2PWS"), "2PVK"},
    ModelRelationRule{exact("2PVAP"), "2PVK"},
    ModelRelationRule{exact("2ABR#"), "2ABR1"},
    ModelRelationRule{exact("2ABR#-A"), "2ABR1-A"},
    ModelRelationRule{exact("1VVM"), "1VVM"},
    ModelRelationRule{exact("EXP_VER0"), "1VVM"},
    ModelRelationRule{exact("2VABR#"), "2VABR"},
    ModelRelationRule{exact("EXP_VER#"), "2VABR"},
    ModelRelationRule{exact("2TOP"), "1LV"},
    ModelRelationRule{exact("1VN"), "WAREN"},
    ModelRelationRule{exact("ELDAT_EXPORT"), "1EXP"},
    ModelRelationRule{prefix("4PAG"), "4PAG"},
    ModelRelationRule{prefix("4ARB"), "4ARB"},
    ModelRelationRule{prefix("BELEG_BB"), "BELEG_BB"},
    ModelRelationRule{prefix("LEISTUNGS_BB"), "LEISTUNGS_BB"},
    ModelRelationRule{prefix("ANGEBOT_BB"), "ANGEBOT_BB"},
    ModelRelationRule{prefix("RECHNUNG_BB"), "RECHNUNG_BB"},
    ModelRelationRule{prefix("FAKTURA_BB"), "FAKTURA_BB"},
    ModelRelationRule{prefix("STAMMEINGABE_BB"), "STAMMEINGABE_BB"},
};

constexpr std::array kEditor = {
    ModelRelationRule{exact("2ABR#"), "2ABR1"},
    ModelRelationRule{exact("2ABR#-A"), "2ABR1-A"},
    ModelRelationRule{prefix_any_case("VERTP"), "VERTP"},
    ModelRelationRule{prefix_any_case("VERTM"), "VERTM"},
};

// clang-format on

constexpr CodeTest code_of(const ModelRelationRule& rule) { return rule.code; }

static_assert(rows_are_distinct(kLookup, code_of));
static_assert(rows_are_distinct(kList, code_of));
static_assert(rows_are_distinct(kEditor, code_of));

template <class Rules>
std::optional<std::string> find_relation(const Rules& rules, std::string_view code) {
  const auto rule = std::find_if(rules.begin(), rules.end(), [code](const ModelRelationRule& r) {
    return matches(r.code, code);
  });
  if (rule == rules.end()) return std::nullopt;
  return std::string(rule->relation);
}

}  // namespace

std::string model_relation_for_lookup(std::string_view code) {
  const auto relation = find_relation(kLookup, code);
  return relation ? *relation : text::upper(text::trim(code));
}

std::string model_relation_for_editor(std::string_view code) {
  return find_relation(kEditor, code).value_or(std::string(code));
}

std::string model_relation_for_list(std::string_view code) {
  return find_relation(kList, code).value_or(std::string(code));
}

}  // namespace kestrova
