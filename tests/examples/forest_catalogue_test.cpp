// The sample catalogue is complete and runs: every field, condition, restriction and list of every
// relation is executed on the sample data.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"
#include "tests/examples/forest_fixture.h"
#include "tests/support/golden.h"

namespace kestrova::test {
namespace {

constexpr std::int32_t kHighestFieldId = 3000;

// From the field numbers of a list to the identifiers in a criteria string.
enum class Route {
  kNumber,      // by the relation's own map: there the identifier is the number
  kInverse,     // by the inverse of the relation's map
  kLotRun,      // by the map "1VM_REVERS"
  kInvoiceRun,  // by the map "1VM-A_REVERS"
};

struct ListedRelation {
  std::string_view code;
  std::string_view list_key;
  std::string_view table_key;
  Route route;
};

// Every relation of the catalogue and the field list that its users see.
// clang-format off
constexpr ListedRelation kListedRelations[] = {
    {"1VM", "LOG", "LOG", Route::kLotRun},
    {"2ABR1", "LOG", "LOG", Route::kLotRun},
    {"2ABR2", "LOG", "LOG", Route::kLotRun},
    {"2ABR3", "LOG", "LOG", Route::kLotRun},
    {"2ABR4", "LOG", "LOG", Route::kLotRun},
    {"2ABR5", "LOG", "LOG", Route::kLotRun},
    {"2ABR6", "LOG", "LOG", Route::kLotRun},
    {"2ABR7", "LOG", "LOG", Route::kLotRun},
    {"2ABR8", "LOG", "LOG", Route::kLotRun},
    {"1LV", "LOG", "LOG", Route::kInverse},
    {"NML", "LOG", "LOG", Route::kInverse},
    {"1SERV", "LOG", "LOG", Route::kInverse},
    {"1EXP", "LOG", "LOG", Route::kInverse},
    {"2EML", "LOG", "LOG", Route::kInverse},
    {"VERTP123", "LOG", "LOG", Route::kInverse},
    {"VERTM5", "LOG", "LOG", Route::kInverse},
    {"HIZ_SELEKTION_XYZ", "HIZ", "LOG", Route::kInverse},
    {"1VM-A", "ARTIKEL", "ARTIKEL", Route::kInvoiceRun},
    {"2ABR1-A", "ARTIKEL", "ARTIKEL", Route::kInvoiceRun},
    {"2ABR2-A", "ARTIKEL", "ARTIKEL", Route::kInvoiceRun},
    {"2ABR3-A", "ARTIKEL", "ARTIKEL", Route::kInvoiceRun},
    {"2ABR4-A", "ARTIKEL", "ARTIKEL", Route::kInvoiceRun},
    {"2ABR5-A", "ARTIKEL", "ARTIKEL", Route::kInvoiceRun},
    {"2ABR6-A", "ARTIKEL", "ARTIKEL", Route::kInvoiceRun},
    {"2ABR7-A", "ARTIKEL", "ARTIKEL", Route::kInvoiceRun},
    {"2ABR8-A", "ARTIKEL", "ARTIKEL", Route::kInvoiceRun},
    {"WIZ", "WIZ", "ARTIKEL", Route::kNumber},
    {"1VVM", "1VVM", "VERTRAG", Route::kNumber},
    {"2VABR1", "2VABR1", "VERTRAG", Route::kNumber},
    {"2VABR2", "2VABR2", "VERTRAG", Route::kNumber},
    {"2VABR3", "2VABR3", "VERTRAG", Route::kNumber},
    {"2VABR4", "2VABR4", "VERTRAG", Route::kNumber},
    {"2VABR5", "2VABR5", "VERTRAG", Route::kNumber},
    {"2VABR6", "2VABR6", "VERTRAG", Route::kNumber},
    {"2VABR7", "2VABR7", "VERTRAG", Route::kNumber},
    {"2VABR8", "2VABR8", "VERTRAG", Route::kNumber},
    {"EXP_VER0", "EXP_VER0", "VERTRAG", Route::kNumber},
    {"EXP_VER1", "EXP_VER1", "VERTRAG", Route::kNumber},
    {"EXP_VER2", "EXP_VER2", "VERTRAG", Route::kNumber},
    {"EXP_VER3", "EXP_VER3", "VERTRAG", Route::kNumber},
    {"EXP_VER4", "EXP_VER4", "VERTRAG", Route::kNumber},
    {"EXP_VER5", "EXP_VER5", "VERTRAG", Route::kNumber},
    {"EXP_VER6", "EXP_VER6", "VERTRAG", Route::kNumber},
    {"EXP_VER7", "EXP_VER7", "VERTRAG", Route::kNumber},
    {"EXP_VER8", "EXP_VER8", "VERTRAG", Route::kNumber},
    {"2SERV", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVK", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVALL", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PALL", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVA1", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVA2", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVA3", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVA4", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVA5", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVA6", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVA7", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVA8", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVARB", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PLIEF", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVS", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVM", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PWS", "PERSONAL", "PERSONAL", Route::kNumber},
    {"2PVAP", "PERSONAL", "PERSONAL", Route::kNumber},
    {"1WL", "1WL", "TRANSPORT", Route::kNumber},
    {"1RJ", "1RJ", "RJ", Route::kNumber},
    {"HIZBB_SELEKTION_BBHIZ_HAB", "BBHAB_RECHNUNG", "BBHAB", Route::kNumber},
    {"HIZBB_SELEKTION_ANGEBOT", "BBHAB_ANGEBOT", "BBHAB", Route::kNumber},
    {"HIZBB_SELEKTION_RECHNUNG", "BBHAB_RECHNUNG", "BBHAB", Route::kNumber},
    {"ABSCHLAG_SELEKTION_RECHNUNG", "BBHAB_RECHNUNG", "BBHAB", Route::kNumber},
    {"HIZBB_SELEKTION_SERVICE_HAB1", "BBHAB_RECHNUNG", "BBHAB", Route::kNumber},
    {"HIZBB_SELEKTION_SERVICE_HAB2", "BBHAB_RECHNUNG", "BBHAB", Route::kNumber},
    {"HIZBB_SELEKTION_SERVICE_HAB3", "BBHAB_RECHNUNG", "BBHAB", Route::kNumber},
    {"SERVICE_BB", "BBHAB_UMBUCH", "BBHAB", Route::kNumber},
    {"STAMMEINGABE_BB_HAB", "BBHAB", "BBHAB", Route::kNumber},
    {"HIZBB_SELEKTION_FAKTURA", "BBFAK_FAKTURA", "BBFAK", Route::kNumber},
    {"HIZBB_SELEKTION_BBHIZ_ARTIKEL", "BBHIZ_ARTIKEL", "BBFAK", Route::kNumber},
    {"ANGEBOT_BB1", "ANGEBOT_BB", "BBFAK", Route::kNumber},
    {"RECHNUNG_BB_A", "RECHNUNG_BB", "BBFAK", Route::kNumber},
    {"FAKTURA_BB2", "FAKTURA_BB", "BBFAK", Route::kNumber},
    {"HIZBB_SELEKTION_FHPIZ", "FHPIZ", "FHPEXP", Route::kNumber},
    {"FHPEXP", "FHPEXP", "FHPEXP", Route::kNumber},
    {"LOHNERFASS", "LOHNERFASS", "BBFS", Route::kNumber},
    {"HIZBB_SELEKTION_LIZ", "LIZ", "BBFS", Route::kNumber},
    {"BRUTTOSCH", "BRUTTOSCH", "BBFS", Route::kNumber},
    {"HIZBB_SELEKTION_KIZ", "KIZ", "KIZ", Route::kNumber},
    {"BELEGBUCH", "BELEGBUCH", "BBFB", Route::kNumber},
    {"BERM", "BERM", "BERM", Route::kNumber},
    {"PLAN", "PLAN", "PLAN", Route::kNumber},
    {"PLAN_BEARBEITUNG_BB", "PLAN_BEARBEITUNG_BB", "BBPLAN", Route::kNumber},
    {"PLAN_ABSCHLUSS_BB", "PLAN_ABSCHLUSS_BB", "BBPLAN", Route::kNumber},
    {"PLAN_VORBEREITUNG_BB", "PLAN_VORBEREITUNG_BB", "BBPLAN", Route::kNumber},
    {"HIZBB_SELEKTION_AUFTRAG", "PLAN_BEARBEITUNG_BB", "BBPLAN", Route::kNumber},
    {"HIZBB_SELEKTION_BBKLRIZ", "BBTALK", "BBTALK", Route::kNumber},
    {"MBUCH_SCH", "MBUCH_SCH", "MSCH", Route::kNumber},
    {"FI_NUTZERRECHTE", "USERS", "USERS", Route::kNumber},
    {"LAGER_BB", "LAGER_BB", "BBLAG", Route::kNumber},
    {"VERTSCH_BB", "VERTSCH_BB", "BBVS", Route::kNumber},
    {"WAREN", "WAREN", "WAREN", Route::kNumber},
    {"KLR_UBERNAHME", "KLR_UBERNAHME", "BBUN", Route::kNumber},
    {"ZIELVEREINBARUNG_BB", "BBZV", "BBZV", Route::kNumber},
    {"BB_T_AUFTRAGS_PLANUNG", "BBAUFTRAGS_PLANUNG", "BBZV", Route::kNumber},
    {"HIZBB_SELEKTION_MAP", "BBMAP", "BBZV", Route::kNumber},
    {"AUFTRAGSKATALOG", "AKAT", "AKAT", Route::kNumber},
    {"MONATSARBEITSPLAN_BB", "BBMAP", "BBMAP", Route::kNumber},
    {"JAGD_PLAN", "BBJAGD", "BBJAGD", Route::kNumber},
    {"JAGD_WILD", "BBWILD", "BBWILD", Route::kNumber},
    {"JAGD_HUNDE", "BBHUNDE", "BBHUNDE", Route::kNumber},
    {"JAGD_STRECKE", "BBSTRK", "BBSTRK", Route::kNumber},
    {"WAL_BB", "WAL_BB", "BBWAL", Route::kNumber},
    {"DTZB", "DTZB", "BBWAL", Route::kNumber},
    {"BB_JAGDBEZIRKE", "BB_JAGDBEZIRKE", "BBJB", Route::kNumber},
    {"BB_MASCH_FAHRT", "BBFAHR", "BBFAHR", Route::kNumber},
    {"BB_T_OBJEKTE", "BBOBJ", "BBOBJ", Route::kNumber},
    {"STEHAPR", "STEH", "STEH", Route::kNumber},
    {"STEHEXPAPR", "STEH", "STEH", Route::kNumber},
    {"HIZBB_SELEKTION_SIZ", "STEH", "STEH", Route::kNumber},
    {"MEISTVERK", "MVLOSE", "MVLOSE", Route::kNumber},
    {"HIZBB_SELEKTION_MVIZ", "MVLOSE", "MVLOSE", Route::kNumber},
    {"4PAG17", "SAPAGRUPPE", "SAPAGRUPPE", Route::kNumber},
    {"BELEG_BB_2021", "BBKLR", "BBKLR", Route::kNumber},
    {"LEISTUNGS_BB_MV", "BBLTN", "BBLTN", Route::kNumber},
    {"VERLOHN", "VERLOHN", "BBLTN", Route::kNumber},
};
// clang-format on

Connection& db() { return *forest(); }

TableAccessService& service() {
  static const auto shared = forest_suite().table_access();
  return *shared;
}

std::string text_of(std::int32_t number, std::string_view language = "DE") {
  static const auto texts = forest_suite().loc_texts();
  return texts->GetText(number, forest_user(language));
}

std::string from_of(std::string_view key, std::int32_t field = 0, std::string_view run_type = "") {
  return service().AddFieldTables(key, field, "", run_type, forest_user());
}

std::string expression_of(std::string_view key, std::int32_t field) {
  return service().GetFieldExpression(key, field, 0, 0, forest_user());
}

std::int64_t count(const std::string& from, const std::string& condition = "") {
  return number(db(),
                "SELECT COUNT(*) FROM " + from + (condition.empty() ? "" : " WHERE " + condition));
}

struct KeyedField {
  std::string key;
  std::int32_t number = 0;
};

std::vector<KeyedField> all_fields() {
  std::vector<KeyedField> fields;
  for (const auto& row :
       rows(db(), "SELECT TABLE_KEY, FIELD_NO FROM SUITE_FIELDS ORDER BY TABLE_KEY, FIELD_NO")) {
    fields.push_back({row[0], std::stoi(row[1])});
  }
  return fields;
}

FieldType type_of(const std::string& expression, const std::string& from) {
  return db()
      .open("SELECT TOP 0 " + expression + " FROM " + from, CursorType::kForwardOnly,
            LockType::kReadOnly)
      ->type(std::size_t{0});
}

// What a field's values are, in the words of the tests below.
std::string kind_of(FieldType type) {
  switch (type) {
    case FieldType::kVarChar:
    case FieldType::kVarWChar:
    case FieldType::kLongVarWChar:
      return "text";
    case FieldType::kSmallInt:
    case FieldType::kInteger:
      return "whole number";
    case FieldType::kNumeric:
    case FieldType::kDouble:
      return "decimal";
    case FieldType::kDBTimeStamp:
      return "date";
    case FieldType::kBoolean:
      return "boolean";
    default:
      return "type " + std::to_string(static_cast<int>(type));
  }
}

using Kinds = std::set<std::string>;
const Kinds kAllKinds = {"boolean", "date", "decimal", "joined", "text", "whole number"};

// The kinds of one field: what its values are, and whether a join is needed to reach it.
const Kinds& kinds_of(std::string_view key, std::int32_t field) {
  static std::map<std::pair<std::string, std::int32_t>, Kinds> known;
  Kinds& kinds = known[{std::string(key), field}];
  if (kinds.empty()) {
    const std::string from = from_of(key, field);
    kinds.insert(kind_of(type_of(expression_of(key, field), from)));
    if (from != from_of(key)) kinds.insert("joined");
  }
  return kinds;
}

// The identifier to put into a criteria string for a number of the relation's field list; 0 when
// the relation does not offer the field.
std::int32_t identifier_of(const ListedRelation& relation, std::int32_t listed) {
  switch (relation.route) {
    case Route::kNumber:
      return service().MapFieldId(relation.code, listed);
    case Route::kLotRun:
      return service().MapFieldId("1VM_REVERS", listed);
    case Route::kInvoiceRun:
      return service().MapFieldId("1VM-A_REVERS", listed);
    case Route::kInverse:
      for (std::int32_t id = 1; id <= kHighestFieldId; ++id) {
        if (service().MapFieldId(relation.code, id) == listed) return id;
      }
  }
  return 0;
}

// --- Table keys and their fields

TEST(ForestCatalogue, SelectsTheColumnsByWhichPeopleRecogniseARecord) {
  const auto keys = rows(db(), "SELECT TABLE_KEY, BASE_FROM, ROW_COLUMNS FROM SUITE_TABLE_KEYS");
  EXPECT_EQ(keys.size(), 39U);
  for (const auto& key : keys) {
    SCOPED_TRACE(key[0]);
    EXPECT_EQ(rows(db(), "SELECT TOP 3 " + key[2] + " FROM " + key[1]).size(), 3U);
  }
}

TEST(ForestCatalogue, LosesNoMainRecordInABaseFrom) {
  for (const auto& key : rows(db(), "SELECT TABLE_KEY, BASE_FROM FROM SUITE_TABLE_KEYS")) {
    SCOPED_TRACE(key[0]);
    const std::string main = key[1].substr(0, key[1].find(' '));
    EXPECT_EQ(number(db(), "SELECT COUNT(DISTINCT " + main + ".ID) FROM " + key[1]), count(main));
  }
}

TEST(ForestCatalogue, ReachesEveryFieldWithoutLosingARow) {
  for (const KeyedField& field : all_fields()) {
    SCOPED_TRACE(field.key + " " + std::to_string(field.number));
    const std::string from = from_of(field.key, field.number);
    EXPECT_EQ(rows(db(), "SELECT TOP 1 " + expression_of(field.key, field.number) + " FROM " + from)
                  .size(),
              1U);
    EXPECT_GE(count(from), count(from_of(field.key)));
  }
}

TEST(ForestCatalogue, FormatsEveryFieldByItsType) {
  const std::map<std::string, std::set<std::string>> kinds_by_format = {
      {"", {"text"}},
      {"dd.mm.yyyy", {"date"}},
      {"0", {"whole number", "boolean"}},
      {"0.00", {"decimal"}},
      {"0.000", {"decimal"}}};
  for (const KeyedField& field : all_fields()) {
    SCOPED_TRACE(field.key + " " + std::to_string(field.number));
    const std::string format = service().field_format(field.key, field.number, forest_user());
    ASSERT_TRUE(kinds_by_format.contains(format)) << format;
    const std::string kind =
        kind_of(type_of(expression_of(field.key, field.number), from_of(field.key, field.number)));
    EXPECT_TRUE(kinds_by_format.at(format).contains(kind)) << kind;
  }
}

TEST(ForestCatalogue, NamesEveryFieldOfAKeyDifferentlyInBothLanguages) {
  for (const std::string_view language : {"DE", "EN"}) {
    std::set<std::pair<std::string, std::string>> names;
    for (const auto& row :
         rows(db(), "SELECT TABLE_KEY, ID_STRING FROM SUITE_FIELDS WHERE ID_STRING IS NOT NULL")) {
      const std::string name = text_of(std::stoi(row[1]), language);
      EXPECT_NE(name, "") << row[0] << " " << row[1];
      EXPECT_TRUE(names.emplace(row[0], name).second) << row[0] << " names two fields " << name;
    }
  }
}

// --- Relations

TEST(ForestCatalogue, OffersEveryKindOfFieldInEveryRelation) {
  int relations = 0;
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/relations.tsv")) {
    SCOPED_TRACE(row["code"]);
    // The key that criteria are translated with. "4ARB" in small letters has the key of the lots by
    // default, but no fields of theirs.
    const std::string& key = row["table_key"].empty() ? row["access_key"] : row["table_key"];
    const bool known = row.flag("restricted") || row.flag("catalogue");
    if (!known || key.empty() || (key == "LOG" && row["table_key"].empty())) continue;
    ++relations;
    Kinds kinds;
    std::set<std::int32_t> numbers;
    for (std::int32_t id = 1; id <= kHighestFieldId; ++id) {
      const std::int32_t field = service().MapFieldId(row["code"], id);
      if (field == 0) continue;
      numbers.insert(field);
      kinds.merge(Kinds(kinds_of(key, field)));
    }
    EXPECT_GE(numbers.size(), 6U);
    EXPECT_EQ(kinds, kAllKinds);
  }
  EXPECT_GE(relations, 125);
}

TEST(ForestCatalogue, ListsFieldsUnderTheNameOfWhatTheirIdentifierMeans) {
  std::map<std::string, std::int32_t> text_numbers;  // by "key number"
  for (const auto& row : rows(db(),
                              "SELECT TABLE_KEY, FIELD_NO, ID_STRING FROM SUITE_FIELDS "
                              "WHERE ID_STRING IS NOT NULL")) {
    text_numbers[row[0] + " " + row[1]] = std::stoi(row[2]);
  }
  for (const ListedRelation& relation : kListedRelations) {
    SCOPED_TRACE(relation.code);
    ComboBox list("cboField", ComboBox::Style::kDropDownList);
    service().FillFieldList(relation.list_key, list, forest_user(), 0);
    Kinds kinds;
    int offered = 0;
    for (const ListEntry& entry : list.entries()) {
      const std::int32_t id = identifier_of(relation, entry.item_data);
      if (id == 0) continue;
      ++offered;
      const std::int32_t field = service().MapFieldId(relation.code, id);
      const std::string place = std::string(relation.table_key) + " " + std::to_string(field);
      ASSERT_TRUE(text_numbers.contains(place)) << entry.text << " leads to " << place;
      EXPECT_EQ(entry.text, text_of(text_numbers[place])) << place;
      kinds.merge(Kinds(kinds_of(relation.table_key, field)));
    }
    EXPECT_GE(offered, 6);
    EXPECT_EQ(kinds, kAllKinds);
  }
}

TEST(ForestCatalogue, ListsEveryRelationThatHasATableKey) {
  std::map<std::string, std::string> listed;
  for (const ListedRelation& relation : kListedRelations) {
    EXPECT_TRUE(listed.emplace(relation.code, relation.table_key).second) << relation.code;
  }
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/relations.tsv")) {
    const auto found = listed.find(row["code"]);
    if (found == listed.end()) continue;
    EXPECT_EQ(found->second, row["table_key"]) << row["code"];
    listed.erase(found);
  }
  EXPECT_EQ(listed, (std::map<std::string, std::string>{}));
}

TEST(ForestCatalogue, KeepsIdentifiersOfLotsAndInvoicesApartFromFieldNumbers) {
  EXPECT_EQ(service().MapFieldId("1VM", 703), 3);
  EXPECT_EQ(service().MapFieldId("1VM_REVERS", 3), 703);
  EXPECT_EQ(service().MapFieldId("1VM", 3), 0);
  EXPECT_EQ(service().MapFieldId("2ABR4-A", 1504), 4);
  EXPECT_EQ(service().MapFieldId("1VM-A_REVERS", 4), 1504);
  EXPECT_EQ(service().MapFieldId("WIZ", 4), 4);
}

TEST(ForestCatalogue, DoesNotOfferSomeFields) {
  EXPECT_EQ(service().MapFieldId("1LV", 723), 0);
  EXPECT_EQ(service().MapFieldId("1SERV", 723), 23);
  EXPECT_EQ(service().MapFieldId("2PLIEF", 7), 0);
  EXPECT_EQ(service().MapFieldId("1VM", 904), 0) << "field 204 is for code only";
}

// --- Conditions and restrictions

// The FROM text of a golden cell: "<key,number,run type>" stands for a call of AddFieldTables.
std::string golden_from(std::string_view cell) {
  std::string from;
  while (cell.starts_with('<')) {
    const std::size_t end = cell.find('>');
    const auto arguments = text::split(cell.substr(1, end - 1), ',');
    from = service().AddFieldTables(arguments[0], std::stoi(std::string(arguments[1])), from,
                                    arguments[2], forest_user());
    cell.remove_prefix(end + 1);
  }
  return from + std::string(cell);
}

// The condition of a golden cell as a user of access level 2 gets it, without the restriction.
std::string golden_condition(std::string_view cell) {
  std::string condition(text::trim(cell.substr(0, cell.find('{'))));
  condition = text::replace_all(condition, "EXPR(BBZV,42)", expression_of("BBZV", 42));
  condition =
      text::replace_all(condition, " WHERE ORDERS", service().order_restriction(forest_user()));
  return text::replace_all(condition, "ACCESS_LEVELS = 7)", "ACCESS_LEVELS = 2)");
}

TEST(ForestCatalogue, HasRowsThatMeetAndRowsThatMissEveryFixedCondition) {
  std::set<std::string_view> codes;
  for (const ListedRelation& relation : kListedRelations) codes.insert(relation.code);
  int conditions = 0;
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/relation_conditions.tsv")) {
    if (!codes.contains(row["code"]) || row["dat_from"] != "0" || row["dat_to"] != "0") continue;
    SCOPED_TRACE(row["code"]);
    const std::string from = golden_from(row["from_text"]);
    const std::string condition = golden_condition(row["condition"]);
    const std::int64_t all = count(from);
    EXPECT_GT(all, 0);
    if (condition.empty()) continue;
    ++conditions;
    const std::int64_t met = count(from, condition);
    EXPECT_GT(met, 0) << condition;
    EXPECT_LT(met, all) << condition;
  }
  EXPECT_GE(conditions, 75);
}

// A condition is only tried out when each of its parts lets rows pass and holds rows back.
TEST(ForestCatalogue, HasRowsWithAndWithoutEveryValueThatConditionsTestForNull) {
  struct Column {
    std::string table, name;
  };
  for (const Column& column :
       {Column{"BB_AUFTRAG", "STORNODATUM"}, Column{"BB_AUFTRAG_KOPF", "STORNODATUM"},
        Column{"BB_HAB", "ABGANGSART_DATUM"}, Column{"BB_HAB", "ID_BB_FAKTURA_KOPF_ANGEBOT"},
        Column{"BB_HAB", "ID_BB_FAKTURA_KOPF_RECHNUNG"}, Column{"BB_HAB", "ID_BB_T_ABGANGSART"},
        Column{"BB_HAB", "MV_BEZUG"}, Column{"BB_HAB", "MV_SCHLUSSAUFNAHME"},
        Column{"BB_HAB_KOPF", "STORNODATUM"}, Column{"BB_LEISTUNGS_KOPF", "STORNODATUM"},
        Column{"BB_PLAN_KOPF", "STORNODATUM"}, Column{"BB_T_ABGANGSART", "UMSORTIERUNG"},
        Column{"BB_T_AUFTRAGSSTATUS", "ID_BB_T_AUFTRAGSSTATUS_FROM_MAP"},
        Column{"BB_T_AUFTRAGSSTATUS", "ID_BB_T_AUFTRAGSSTATUS_TO_MAP"},
        Column{"FHP_IMPORT", "ERRORTEXT"}, Column{"FHP_IMPORT", "ID_FHP_IMPORT"},
        Column{"LISTENKOPF", "GESPERRTLISTE"}, Column{"WARENKATALOG", "ID_FORMULA"}}) {
    EXPECT_GT(count(column.table, column.name + " IS NULL"), 0) << column.table << column.name;
    EXPECT_GT(count(column.table, column.name + " IS NOT NULL"), 0) << column.table << column.name;
  }
}

TEST(ForestCatalogue, HasWorkOrdersOfOnePersonAmongOthers) {
  const std::string from = from_of("BBF");
  const std::int64_t met = count(from, "ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17");
  EXPECT_GT(met, 0);
  EXPECT_LT(met, count(from));
}

TEST(ForestCatalogue, HidesRowsOfOtherAccessLevels) {
  const auto filter = forest_suite().access_level_filter();
  std::set<std::string> tables = {"MODELS"};
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/relation_conditions.tsv")) {
    if (!row["base_table"].empty()) tables.insert(row["base_table"]);
  }
  std::set<std::string> restricted;
  for (const auto& row : rows(db(), "SELECT TABLE_NAME FROM SUITE_ACCESS"))
    restricted.insert(row[0]);
  EXPECT_EQ(restricted, tables);
  const auto north = forest_user("DE", 2, "2");
  const auto south = forest_user("DE", 3, "SELECT ID FROM ACCESS_LEVELS WHERE ID IN (3)");
  for (const std::string& table : tables) {
    SCOPED_TRACE(table);
    const std::string northern = filter->restrict(table, "", north, 0);
    const std::string southern = filter->restrict(table, "", south, 0);
    ASSERT_NE(northern, "");
    for (const std::string& restriction : {northern, southern}) {
      EXPECT_GT(count(table, restriction), 0) << restriction;
      EXPECT_LT(count(table, restriction), count(table)) << restriction;
    }
    EXPECT_GT(count(table, northern + " AND NOT " + southern), 0);
  }
}

TEST(ForestCatalogue, RestrictsTheAccountsOfABusinessByAJoin) {
  const auto accounts_of = [](const std::string& list) {
    return count(from_of("BBTALK", 1) + " INNER JOIN (" + list +
                 ") AL ON AL.ID = BB_TAKL02_KLR_BETRIEB.ID_ACCESS_LEVELS");
  };
  EXPECT_GT(accounts_of("SELECT ID FROM ACCESS_LEVELS WHERE ID IN (2)"), 0);
  EXPECT_LT(accounts_of("SELECT ID FROM ACCESS_LEVELS WHERE ID IN (2)"),
            accounts_of("SELECT ID FROM ACCESS_LEVELS"));
}

TEST(ForestCatalogue, HasThreeUsersOfDifferentAccessLevels) {
  EXPECT_EQ(number(db(), "SELECT COUNT(DISTINCT ID_ACCESS_LEVELS) FROM USERS"), 3);
}

// --- Fields read from SELEKTION

struct Selectable {
  std::string relation, join, expression, main;
  std::string from, where;              // as the translator puts them together
  std::string type_table, type_column;  // where its type is looked up
};

std::vector<Selectable> selectables() {
  std::vector<Selectable> result;
  for (const auto& row :
       rows(db(),
            "SELECT RTRIM(PARAMETER), ISNULL(SQLSELECT,''), ISNULL(SQLVALUE,''), NAME_OF_FIELD, "
            "TABLE_NAME, ISNULL(TABLE_NAME_II,''), ISNULL(TABLE_NAME_III,''), "
            "ISNULL(CONDITION,''), ISNULL(CONDITIONII,'') FROM SELEKTION")) {
    Selectable field;
    field.relation = row[0];
    field.join = row[1];
    field.expression = row[2].empty() ? row[4] + "." + row[3] : row[2];
    field.main = row[4];
    field.type_table = field.join.empty() ? row[4] : row[5];
    field.type_column = field.join.empty() ? row[3] : row[2].substr(row[2].find('.') + 1);
    if (field.relation == "1VN" || field.relation == "WAREN") field.from = from_of("WAREN");
    const std::size_t tables = field.join.empty() ? 1 : field.join == "INNER" ? 2 : 3;
    for (std::size_t i = 0; i < tables; ++i) {
      field.from = service().AddTable(field.from, row[4 + i], "");
    }
    if (tables > 1) field.where = row[7];
    if (tables > 2) field.where += " AND " + row[8];
    result.push_back(field);
  }
  return result;
}

TEST(ForestSelektion, HasAllJoinKindsInEveryRelation) {
  std::map<std::string, std::set<std::string>> joins;
  for (const Selectable& field : selectables()) joins[field.relation].insert(field.join);
  const std::set<std::string> all = {"", "INNER", "TRIPLE"};
  EXPECT_EQ(joins.size(), 8U);
  for (const auto& [relation, kinds] : joins) {
    EXPECT_EQ(kinds, (std::set<std::string>{"", "INNER", "TRIPLE"})) << relation;
  }
}

TEST(ForestSelektion, RunsEveryFieldOnItsTables) {
  for (const Selectable& field : selectables()) {
    SCOPED_TRACE(field.relation + " " + field.expression);
    EXPECT_GT(count(field.from, field.where), 0);
    rows(db(), "SELECT TOP 1 " + field.expression + " FROM " + field.from +
                   (field.where.empty() ? "" : " WHERE " + field.where));
    const auto type = db().open("SELECT TOP 0 " + field.type_column + " FROM " + field.type_table,
                                CursorType::kForwardOnly, LockType::kReadOnly);
    EXPECT_EQ(type->column_count(), 1U);
  }
}

TEST(ForestSelektion, ReachesTheWorkOrderFromEveryPlannedField) {
  for (const Selectable& field : selectables()) {
    if (field.relation != "4PLN") continue;
    EXPECT_EQ(field.main, "ARBEITSAUFTRAG_KOPF") << field.expression;
    const std::string where = field.where.empty() ? "" : " AND " + field.where;
    EXPECT_GT(count(field.from, "ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17" + where), 0);
  }
}

TEST(ForestSelektion, HasTheFieldsWithValueListsOfTheirOwn) {
  std::set<std::string> names;
  for (const auto& row : rows(db(),
                              "SELECT NICKNAME_OF_FIELD FROM SELEKTION "
                              "WHERE PARAMETER = '4PLN' AND VISIBLE = 1")) {
    names.insert(row[0]);
  }
  std::vector<std::string> wanted = {"HA",           "HS",      "GKL",          "STKL",
                                     "NA",           "KA",      "LAUB/NADEL",   "SORTIMENT",
                                     "RINDEPROZENT", "DM/EURO", "ABGESCHLOSEN", "STATUS"};
  for (int list = 1; list <= 10; ++list) wanted.push_back("RELTABLE " + std::to_string(list));
  for (const std::string& name : wanted) EXPECT_TRUE(names.contains(name)) << name;
}

TEST(ForestSelektion, LeadsFromVisibleFieldsToFieldsOfTheSameName) {
  for (const auto& [relation, key] : std::map<std::string, std::string>{
           {"4ARB", "BBF"}, {"BBF", "BBF"}, {"PERSONAL", "PERSONAL"}}) {
    for (const auto& row : rows(db(),
                                "SELECT ID_SELEKTION, ID_STRING FROM SELEKTION WHERE "
                                "RTRIM(LTRIM(PARAMETER)) = '" +
                                    relation + "' AND VISIBLE = 1")) {
      SCOPED_TRACE(relation + " " + row[0]);
      const std::int32_t field = service().MapFieldId(relation, std::stoi(row[0]));
      EXPECT_EQ(number(db(), "SELECT ID_STRING FROM SUITE_FIELDS WHERE TABLE_KEY = '" + key +
                                 "' AND FIELD_NO = " + std::to_string(field)),
                std::stoi(row[1]));
    }
  }
}

TEST(ForestSelektion, HasHiddenFieldsAndPaddedRelationCodes) {
  EXPECT_GT(number(db(), "SELECT COUNT(*) FROM SELEKTION WHERE VISIBLE = 0"), 0);
  EXPECT_GT(number(db(), "SELECT COUNT(*) FROM SELEKTION WHERE PARAMETER LIKE '% '"), 0);
}

// --- Texts, options, models

TEST(ForestTexts, HoldsTheFixedTextsInBothLanguages) {
  for (const std::int32_t number : {5, 6, 193, 194, 195, 197, 198, 245, 3441}) {
    EXPECT_NE(text_of(number, "DE"), "") << number;
    EXPECT_NE(text_of(number, "EN"), "") << number;
  }
  EXPECT_EQ(text_of(5), "Falsch");
  EXPECT_EQ(text_of(6), "Wahr");
  EXPECT_EQ(text_of(3441, "EN"), "OR");
}

TEST(ForestTexts, NamesEverySelectableFieldInBothLanguages) {
  for (const auto& row : rows(db(), "SELECT DISTINCT ID_STRING FROM SELEKTION")) {
    EXPECT_NE(text_of(std::stoi(row[0]), "DE"), "") << row[0];
    EXPECT_NE(text_of(std::stoi(row[0]), "EN"), "") << row[0];
  }
}

TEST(ForestTexts, UsesEveryText) {
  EXPECT_EQ(rows(db(),
                 "SELECT ID_STRING, DE FROM STRINGS WHERE ID_STRING > 1000 "
                 "AND ID_STRING <> 3441 "
                 "AND ID_STRING NOT IN (SELECT ID_STRING FROM SELEKTION) "
                 "AND ID_STRING NOT IN (SELECT ID_STRING FROM SUITE_FIELDS "
                 "WHERE ID_STRING IS NOT NULL)"),
            (std::vector<std::vector<std::string>>{}));
}

TEST(ForestModels, HaveSixtySavedSelectionsOverTwelveRelations) {
  const std::string own = " FROM MODELS WHERE RELATION NOT IN ('USERFIELDS','BBFIZ')";
  EXPECT_EQ(number(db(), "SELECT COUNT(*)" + own), 60);
  EXPECT_EQ(number(db(), "SELECT COUNT(DISTINCT RELATION)" + own), 12);
  EXPECT_EQ(number(db(), "SELECT COUNT(DISTINCT ID_USER)" + own), 3);
  EXPECT_GT(number(db(), "SELECT COUNT(*)" + own + " AND NICHT_ANDERBAR = 1"), 0);
  EXPECT_GT(number(db(), "SELECT COUNT(*)" + own + " AND ID_ACCESS_LEVELS IS NOT NULL"), 0);
  EXPECT_EQ(number(db(), "SELECT COUNT(*)" + own + " AND STANDARD = 1"), 12);
  EXPECT_EQ(number(db(), "SELECT COUNT(*)" + own + " AND MODEL IS NULL"), 1);
  EXPECT_EQ(number(db(), "SELECT COUNT(*)" + own + " AND NAME LIKE '%''%'"), 1);
}

TEST(ForestModels, HoldOnlyFieldsThatTheirRelationOffers) {
  // Model relations that are no relation codes, and one of the codes that share their models.
  const std::map<std::string, std::string> members = {
      {"2VABR", "2VABR1"}, {"BELEG_BB", "BELEG_BB_2021"}, {"LEISTUNGS_BB", "LEISTUNGS_BB_MV"}};
  for (const auto& model : rows(db(),
                                "SELECT RELATION, NAME, ISNULL(MODEL,'') FROM MODELS "
                                "WHERE RELATION NOT IN ('USERFIELDS','BBFIZ')")) {
    const std::string code = members.contains(model[0]) ? members.at(model[0]) : model[0];
    for (const std::string_view record : text::split(model[2], ';')) {
      if (record.empty() || record == "=== ODER ===") continue;
      const auto id = text::to_integer(record.substr(0, record.find(' ')));
      ASSERT_TRUE(id) << model[1] << ": " << record;
      EXPECT_NE(service().MapFieldId(code, static_cast<std::int32_t>(*id)), 0)
          << model[1] << ": " << record;
    }
  }
}

TEST(ForestModels, HaveAStandardOfTheUsersOwn) {
  const auto settings = forest_suite().model_settings();
  const auto chosen = [&](std::int32_t user) {
    KesVar context = forest_user();
    context.lngUserID = user;
    return rows(db(), "SELECT NAME FROM MODELS WHERE ID = " +
                          std::to_string(settings->standard_model(context, "1VM", 0)));
  };
  EXPECT_EQ(chosen(1), (std::vector<std::vector<std::string>>{{"Fichte stark"}}));
  EXPECT_EQ(chosen(2), (std::vector<std::vector<std::string>>{{"Ohne Abfuhr"}}));
  EXPECT_TRUE(chosen(3).empty());
}

TEST(ForestOptions, HoldsTheOptionsThatTheLibraryReads) {
  EXPECT_EQ(rows(db(), "SELECT PROPERTY_ID, NUMBER_VALUE FROM OPTIONEN ORDER BY PROPERTY_ID"),
            (std::vector<std::vector<std::string>>{{"B018", "1"},
                                                   {"B049", "1"},
                                                   {"B057", "1"},
                                                   {"CHANGE_MODELS", "1"},
                                                   {"CHKSERVICE", "0"}}));
}

TEST(ForestLookups, AnswerEveryFixedValueQuery) {
  for (const char* query :
       {"SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA",
        "SELECT HS FROM HOLZSORTE ORDER BY HS", "SELECT GKL FROM GUETEKLASSE ORDER BY GKL",
        "SELECT STKL FROM STKL ORDER BY STKL", "SELECT NA FROM NUTZUNGSART ORDER BY NA",
        "SELECT KA FROM KALAMITAET ORDER BY KA", "SELECT DISTINCT LNH FROM HOLZART ORDER BY LNH",
        "SELECT NAME FROM DSART ORDER BY 1"}) {
    EXPECT_GE(rows(db(), query).size(), 2U) << query;
  }
  for (int list = 1; list <= 10; ++list) {
    EXPECT_EQ(rows(db(), "SELECT KURZNAME FROM RELTABLE WHERE RELTABLE_ID = " +
                             std::to_string(list) + " ORDER BY KURZNAME")
                  .size(),
              2U);
  }
}

}  // namespace
}  // namespace kestrova::test
