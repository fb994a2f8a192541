#include "editor/field_lists.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "engine/queries.h"
#include "interface/module_state.h"
#include "platform/text.h"
#include "relations/code_test.h"

namespace kestrova {
namespace {

struct FieldListRule {
  CodeTest code;
  std::string_view list_key;
  Mapping mapping = Mapping::kOwnCode;
};

// clang-format off

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

constexpr CodeTest code_of_list(const FieldListRule& r) { return r.code; }
static_assert(rows_are_distinct(kFieldLists, code_of_list));

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

// The identifiers of the field numbers of one list.
class Identifiers {
 public:
  Identifiers(const FieldList& list, TableAccessService& service, Connection& connection)
      : list_(list), service_(service) {
    if (list.mapping != Mapping::kNumberMap) return;
    numbers_.emplace(service, list.relation);
    if (!list.relation.starts_with("HIZ_SELEKTION_")) return;
    for (const std::string& item : field_setting(connection, "USERFIELDS")) {
      if (const auto number = text::to_integer(item)) numbers_->hide(*number);
    }
  }

  // 0 for a field that is not offered.
  std::int32_t of(std::int32_t number) {
    switch (list_.mapping) {
      case Mapping::kLogReverse:
        return service_.MapFieldId("1VM_REVERS", number);
      case Mapping::kHeaderReverse:
        return service_.MapFieldId("1VM-A_REVERS", number);
      case Mapping::kNumberMap:
        return numbers_->id_of(number);
      case Mapping::kOwnCode:
        break;
    }
    return service_.MapFieldId(list_.relation, number);
  }

 private:
  const FieldList& list_;
  TableAccessService& service_;
  std::optional<NumberMap> numbers_;
};

}  // namespace

FieldList field_list_of(std::string_view code) {
  const auto rule = std::find_if(kFieldLists.begin(), kFieldLists.end(),
                                 [code](const FieldListRule& r) { return matches(r.code, code); });
  const std::string relation(code == kOfferedByList ? kOfferedByListBase : code);
  if (rule == kFieldLists.end()) return {relation, std::string(code)};
  return {relation, std::string(rule->list_key), rule->mapping};
}

std::vector<ListEntry> offered_fields(const FieldList& list, Connection& connection,
                                      const KesVar& context) {
  const std::shared_ptr<TableAccessService> service = suite().table_access();
  ListBox fields("cboField");
  service->FillFieldList(list.key, fields, context, 0);
  Identifiers identifiers(list, *service, connection);
  std::vector<ListEntry> offered;
  for (auto field = fields.entries().rbegin(); field != fields.entries().rend(); ++field) {
    if (const std::int32_t id = identifiers.of(field->item_data))
      offered.push_back({field->text, id});
  }
  std::reverse(offered.begin(), offered.end());
  return offered;
}

// The first column of the first row of a configuration list, split at its commas.
std::vector<std::string> field_setting(Connection& connection, std::string_view relation) {
  const auto row = open_query(connection, "SELECT ISNULL(MODEL,'') FROM MODELS WHERE RELATION = '" +
                                              std::string(relation) + "'");
  std::vector<std::string> items;
  if (row->eof()) return items;
  const std::string list = row->value(std::size_t{0}).text();
  for (const std::string_view item : text::split(list, ',')) items.emplace_back(text::trim(item));
  return items;
}

}  // namespace kestrova
