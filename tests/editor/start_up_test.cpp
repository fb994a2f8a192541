// Binding the editor to a relation, showing it, and what is enabled in it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>

#include "platform/text.h"
#include "tests/editor/run_host.h"
#include "tests/support/golden.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Texts = std::vector<std::string>;

const std::string kUserFields = "SELECT ISNULL(MODEL,'') FROM MODELS WHERE RELATION = 'USERFIELDS'";
const std::string kWorkOrderFields = "SELECT ISNULL(MODEL,'') FROM MODELS WHERE RELATION = 'BBFIZ'";

Texts operator+(Texts first, const Texts& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Texts form_load() {
  return {"GetText(3441)",         "GetOptionFlag('B018')",    "GetOptionFlag('B049')",
          "GetOptionFlag('B057')", opened(kChangeModelsQuery), "#1 close"};
}

OfferedField field(int id, std::string_view text, std::string_view custom_text = "") {
  const std::string name = "F" + std::to_string(id);
  return {{.id = id, .name = Value(name), .nickname = Value(name), .table = Value("LAGER")},
          std::string(text),
          std::string(custom_text)};
}

Texts numbers_asked(const std::string& relation) {
  Texts calls;
  for (int i = 1; i <= 3000; ++i) {
    calls.push_back("MapFieldId('" + relation + "', " + std::to_string(i) + ")");
  }
  return calls;
}

// --- Every relation code

std::map<std::string, std::string> model_relations() {
  std::map<std::string, std::string> relations;
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/models_in_editor.tsv")) {
    relations[row["code"]] = row["model_relation"];
  }
  return relations;
}

// The fields "first" (5) and "second" (205); numbers are mapped 100 up, 205 to nothing.
struct MappingHost : RunHost {
  explicit MappingHost(const std::string& list_key) {
    suite->answers().field_lists[list_key] = {{"first", 5}, {"second", 205}};
    suite->answers().map_field_id = [](std::string_view, std::int32_t id) {
      return id == 205 ? 0 : id + 100;
    };
    connection->answer(kUserFields, {{"A"}}, {{""}});
    connection->answer(kWorkOrderFields, {{"A"}}, {{"1,2"}});
  }
};

const std::vector<OfferedField>& two_selektion_fields() {
  static const std::vector<OfferedField> fields = {field(1, "one"), field(2, "two")};
  return fields;
}

struct Bound {
  Texts field_lists;
  Texts mappings;
  std::string relation;
  std::vector<ListEntry> fields;
  friend bool operator==(const Bound&, const Bound&) = default;
};

void PrintTo(const Bound& bound, std::ostream* out) {
  *out << ::testing::PrintToString(bound.field_lists) << " relation " << bound.relation;
  const Texts some(bound.mappings.begin(),
                   bound.mappings.begin() + static_cast<std::ptrdiff_t>(
                                                std::min<std::size_t>(bound.mappings.size(), 3)));
  *out << ", " << bound.mappings.size() << " mappings " << ::testing::PrintToString(some);
  for (const ListEntry& entry : bound.fields) *out << ", " << entry.text << " " << entry.item_data;
}

Bound expected_binding(const golden::Row& row) {
  const std::string& code = row["code"];
  const std::string& mapping = row["mapping"];
  Bound bound;
  bound.relation = row["relation"];
  if (row["list_key"].empty()) {
    bound.fields = {{"one", 1}, {"two", 2}};
    return bound;
  }
  bound.field_lists = {"FillFieldList('" + row["list_key"] + "', 0)"};
  if (mapping == "numbers") {
    // The number 105 stands at the index 205; nothing stands at 5, which no number is mapped to.
    bound.mappings = numbers_asked(code);
    bound.fields = {{"second", 105}};
  } else {
    const std::string key = mapping != "own"                        ? mapping
                            : code == "HIZBB_SELEKTION_RECHNUNG_MV" ? "HIZBB_SELEKTION_RECHNUNG"
                                                                    : code;
    bound.mappings = {"MapFieldId('" + key + "', 205)", "MapFieldId('" + key + "', 5)"};
    bound.fields = {{"first", 105}};
  }
  return bound;
}

// The value of PARAMETER whose fields a relation outside the catalogue offers.
std::string parameter_of(const std::string& relation) {
  if (relation == "2PVALL") return "2PVK";
  const bool is_run_header = relation.size() == 7 && relation.starts_with("2ABR") &&
                             relation.ends_with("-A") && relation[4] >= '1' && relation[4] <= '8';
  return is_run_header ? "1VM-A" : relation;
}

TEST(Binding, FieldListRelationAndNumbersOfEveryCode) {
  int rows = 0;
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/field_lists.tsv")) {
    SCOPED_TRACE(row.place() + ": " + row["code"]);
    MappingHost host(row["list_key"]);
    if (row["list_key"].empty()) {
      host.answer_fields(parameter_of(row["relation"]), two_selektion_fields());
    }
    static const std::map<std::string, std::string> known = model_relations();
    const auto found = known.find(row["relation"]);
    host.answer_models(found == known.end() ? row["relation"].starts_with("VERTP") ? "VERTP"
                                              : row["relation"].starts_with("VERTM")
                                                  ? "VERTM"
                                                  : row["relation"]
                                            : found->second);
    EXPECT_EQ(host.start(row["code"]), row["code"] == "HIZBB_SELEKTION_RECHNUNG_MV"
                                           ? "HIZBB_SELEKTION_RECHNUNG"
                                           : row["code"]);
    const Bound bound = {host.suite->calls_of("FillFieldList"), host.suite->calls_of("MapFieldId"),
                         host.editor->relation(), host.editor->cboField.entries()};
    EXPECT_EQ(bound, expected_binding(row));
    ++rows;
  }
  EXPECT_GT(rows, 400);
}

TEST(Binding, ListsTheModelsOfTheModelRelation) {
  const std::map<std::string, std::string> known = model_relations();
  int rows = 0;
  for (const auto& [relation, model_relation] : known) {
    SCOPED_TRACE(relation);
    MappingHost host("");
    host.answer_fields(parameter_of(relation), two_selektion_fields());
    host.answer_models(model_relation, {{7, "Alt"}});
    host.answer_criteria(7, "");
    std::string code = relation;
    try {
      host.editor->InitForm(host.context, code);
    } catch (const DatabaseError&) {
      // Another relation: the editor does not work under this text.
    }
    if (host.editor->relation() != relation) continue;
    EXPECT_EQ(std::count(host.connection->statements().begin(), host.connection->statements().end(),
                         models_query(model_relation)),
              1);
    EXPECT_THAT(host.texts_of(host.editor->Model), ElementsAre("Alt"));
    ++rows;
  }
  EXPECT_GT(rows, 150);
}

// --- The order of the steps

struct Sonst : RunHost {
  Sonst() {
    answer_fields("SONST", {field(10, "Holzart"), field(11, "Anzahl", "Stückzahl"), field(12, "")});
  }
};

TEST(Binding, OfARelationOutsideTheCatalogueReadsItsFieldsFromSelektion) {
  Sonst host;
  host.answer_models("SONST");
  host.start(" sonst ");
  EXPECT_EQ(host.calls(),
            form_load() +
                Texts({"open " + fields_query("SONST") + " [static, read-only]", "#2 move_next",
                       "#2 move_next", "#2 move_next", "restrict('MODELS', '', 7)",
                       opened(models_query("SONST")), "#3 close", "standard_model('SONST', 0)"}));
  EXPECT_EQ(host.editor->cboField.entries(),
            (std::vector<ListEntry>{{"Holzart", 10}, {"Stückzahl", 11}, {"", 12}}));
  EXPECT_EQ(host.editor->relation(), "SONST");
  EXPECT_EQ(host.connection->open_recordsets(), 1U) << "the pickers search the field catalogue";
  EXPECT_EQ(host.suite->live_services(), 2U) << "the texts and the model settings";
}

TEST(Binding, OfACatalogueRelationAsksTheSuiteForTheFields) {
  RunHost host;
  host.offer("VERLOHN", {{"Holzart", 5}});
  host.answer_models("VERLOHN");
  host.start("VERLOHN");
  EXPECT_EQ(host.calls(),
            form_load() + Texts({"FillFieldList('VERLOHN', 0)", "MapFieldId('VERLOHN', 5)",
                                 "restrict('MODELS', '', 7)", opened(models_query("VERLOHN")),
                                 "#2 close", "standard_model('VERLOHN', 0)"}));
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

TEST(Binding, WithoutVisibleFieldsLeavesTheFieldListEmpty) {
  RunHost host;
  host.answer_fields("SONST", {});
  host.answer_models("SONST");
  host.start("SONST");
  EXPECT_EQ(host.editor->cboField.count(), 0);
}

TEST(Binding, EmptiesWhatTheLastRelationLeft) {
  Sonst host;
  host.answer_models("SONST");
  host.start("SONST");
  host.fill_lines({{"Holzart = 'FI'", 10}});
  host.editor->cboValue.set_text("FI");
  host.editor->Formula.set_text("Holzart = 'FI'");
  host.editor->txtStandard.set_text("Alt");
  host.offer("VERLOHN", {});
  host.answer_models("VERLOHN");
  host.start("VERLOHN");
  EXPECT_THAT(host.lines(), IsEmpty());
  EXPECT_EQ(host.editor->cboField.count(), 0);
  EXPECT_EQ(host.editor->cboValue.text(), "");
  EXPECT_EQ(host.editor->Formula.text(), "");
  EXPECT_EQ(host.editor->txtStandard.text(), "");
  EXPECT_EQ(host.editor->relation(), "VERLOHN");
}

TEST(Binding, ReadsTheFieldTextsOfTheUsersLanguage) {
  RunHost host;
  module_state().strLanguage = "FR";
  host.connection->answer(
      "SELECT SELEKTION.*,STRINGS.FR,STRINGS.CUSTOM_FR FROM SELEKTION LEFT JOIN STRINGS ON "
      "SELEKTION.ID_STRING = STRINGS.ID_STRING WHERE RTRIM(LTRIM(SELEKTION.PARAMETER)) = 'SONST' "
      "AND VISIBLE = 1 ORDER BY SELEKTION.ORDER_CUSTOM",
      {{"ID_SELEKTION", FieldType::kInteger}, {"FR"}, {"CUSTOM_FR"}},
      {{10, "Essence", Value()}, {11, "Nombre", "Pièces"}});
  host.answer_models("SONST");
  host.start("SONST");
  EXPECT_EQ(host.editor->cboField.entries(),
            (std::vector<ListEntry>{{"Essence", 10}, {"Pièces", 11}}));
}

TEST(Binding, OfWorkOrdersOffersOnlyTheirPermittedFields) {
  Sonst host;
  host.answer_fields("4ARB", {field(1, "one"), field(11, "eleven"), field(3, "three")});
  host.connection->answer(kWorkOrderFields, {{"A"}}, {{"3,11"}});
  host.answer_models("4ARB");
  host.start("4ARB17");
  EXPECT_EQ(host.editor->cboField.entries(),
            (std::vector<ListEntry>{{"eleven", 11}, {"three", 3}}));
  EXPECT_EQ(host.editor->relation(), "4ARB");
}

TEST(Binding, OfAllPersonsOutsideTheCatalogueOffersTheFieldsOfCustomers) {
  for (const char* code : {" 2pvall ", "2pvall", "2PVALL "}) {
    SCOPED_TRACE(code);
    RunHost host;
    host.answer_fields("2PVK", {field(10, "Name")});
    host.answer_models("2PVALL");
    EXPECT_EQ(host.start(code), code);
    EXPECT_EQ(host.editor->relation(), "2PVALL");
    EXPECT_EQ(host.editor->cboField.entries(), (std::vector<ListEntry>{{"Name", 10}}));
  }
}

TEST(Binding, OffersTheOperatorsOfTextsUntilAFieldIsChosen) {
  Sonst host;
  host.answer_models("SONST");
  host.start("SONST");
  EXPECT_EQ(host.editor->cboField.index(), -1);
  EXPECT_THAT(host.texts_of(host.editor->cboOperator),
              ElementsAre("=", ">", "<", ">=", "<=", "<>", "LIKE", "IN"));
  EXPECT_EQ(host.editor->cboOperator.text(), "=");
  EXPECT_FALSE(host.editor->btnPlus.enabled());
  EXPECT_FALSE(host.editor->btnMinus.enabled());
}

TEST(Binding, LeavesValueAndFormulaEmptyWhateverTheModelHolds) {
  RunHost host;
  host.answer_fields("SONST", sonst_fields());
  host.answer_values("SELECT HA FROM HOLZART WHERE ISNULL(DISABLE,0) = 0 ORDER BY HA", {"FI"});
  host.connection->answer("SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = 10",
                          {{"ID_STRING", FieldType::kInteger}}, {{110}});
  host.suite->answers().texts[110] = "Holzart";
  host.answer_models("SONST", {{7, "Alt"}});
  host.answer_criteria(7, "10 <> 'FI';");
  host.start("SONST");
  EXPECT_EQ(host.editor->ListCriteria.entries(), (std::vector<ListEntry>{{"Holzart <> 'FI'", 10}}));
  EXPECT_EQ(host.editor->cboField.text(), "Holzart") << "the line has been shown";
  EXPECT_EQ(host.editor->cboOperator.text(), "<>");
  EXPECT_EQ(host.editor->cboValue.text(), "");
  EXPECT_EQ(host.editor->Formula.text(), "");
}

TEST(Binding, KeepsItsOwnCopyOfTheCallersContext) {
  RunHost host;
  host.answer_fields("SONST", sonst_fields());
  host.answer_values(plain_query("ANZAHL"), {1});
  host.answer_models("SONST");
  host.start("SONST");
  host.context.lngAccessLevel = 99;
  host.context.dbado = nullptr;
  host.forget();
  host.pick(host.editor->cboField, "Anzahl");
  EXPECT_THAT(host.suite->calls_of("restrict"), ElementsAre("restrict('LAGER', '', 7)"));
  EXPECT_THAT(host.texts_of(host.editor->cboValue), ElementsAre("Null", "1"));
}

// --- Numbers

TEST(Binding, KeepsOnlyNumbersFrom1To3000) {
  RunHost host;
  host.suite->answers().field_lists["LOG"] = {{"low", 0},     {"below", -1},   {"first", 1},
                                              {"last", 3000}, {"above", 3001}, {"unmapped", 2}};
  host.suite->answers().map_field_id = [](std::string_view, std::int32_t id) {
    switch (id) {
      case 10:
        return 1;
      case 20:
        return 3000;
      case 30:
        return 3001;
      case 40:
        return -1;
      default:
        return 0;
    }
  };
  host.answer_models("1LV");
  host.start("1LV");
  EXPECT_EQ(host.editor->cboField.entries(), (std::vector<ListEntry>{{"first", 10}, {"last", 20}}));
}

TEST(Binding, OfTwoNumbersWithOneAnswerTheHigherOneStays) {
  RunHost host;
  host.suite->answers().field_lists["LOG"] = {{"field", 7}};
  host.suite->answers().map_field_id = [](std::string_view, std::int32_t id) {
    return id == 10 || id == 20 ? 7 : 0;
  };
  host.answer_models("1LV");
  host.start("1LV");
  EXPECT_EQ(host.editor->cboField.entries(), (std::vector<ListEntry>{{"field", 20}}));
}

TEST(Binding, WithdrawsTheFieldsThatTheUserMayNotSelectBy) {
  RunHost host;
  host.offer("HIZ", {{"a", 1}, {"b", 2}, {"c", 3}});
  host.connection->answer(kUserFields, {{"A"}}, {{"2,x,,9999"}});
  host.answer_models("HIZ_SELEKTION_X");
  host.start("HIZ_SELEKTION_X");
  EXPECT_EQ(host.editor->cboField.entries(), (std::vector<ListEntry>{{"a", 1}, {"c", 3}}));
  EXPECT_EQ(host.calls(), form_load() + Texts({"FillFieldList('HIZ', 0)"}) +
                              numbers_asked("HIZ_SELEKTION_X") +
                              Texts({opened(kUserFields), "#2 close", "restrict('MODELS', '', 7)",
                                     opened(models_query("HIZ_SELEKTION_X")), "#3 close",
                                     "standard_model('HIZ_SELEKTION_X', 0)"}));
}

// --- Models

struct TwoModels : Sonst {
  TwoModels() {
    answer_models("SONST", {{7, "Alt"}, {9, " Neu "}});
    answer_criteria(7, "=== ODER ===;");
    answer_criteria(9, "=== ODER ===;=== ODER ===;");
  }
};

TEST(StartModel, IsTheFirstOneWithoutAStandard) {
  TwoModels host;
  host.start("SONST");
  EXPECT_EQ(host.editor->Model.entries(), (std::vector<ListEntry>{{"Alt", 7}, {" Neu ", 9}}));
  EXPECT_EQ(host.editor->Model.index(), 0);
  EXPECT_EQ(host.editor->txtStandard.text(), "");
  EXPECT_EQ(host.editor->caption(), "Selektion: Alt");
  EXPECT_EQ(host.lines().size(), 1U);
}

TEST(StartModel, IsTheStandardAndItsNameIsShown) {
  TwoModels host;
  host.suite->answers().standard_model = 9;
  host.start("SONST");
  EXPECT_EQ(host.editor->Model.index(), 1);
  EXPECT_EQ(host.editor->txtStandard.text(), " Neu ");
  EXPECT_EQ(host.editor->caption(), "Selektion: Neu");
  EXPECT_EQ(host.lines().size(), 2U);
}

TEST(StartModel, IsTheFirstOneWhenTheStandardIsNotListed) {
  TwoModels host;
  host.suite->answers().standard_model = 8;
  host.start("SONST");
  EXPECT_EQ(host.editor->Model.index(), 0);
  EXPECT_EQ(host.editor->txtStandard.text(), "");
}

// A suite may restrict nothing.
TEST(StartModel, WithoutRestrictionIsOneOfAllModels) {
  Sonst host;
  host.suite->answers().has_restrictions = false;
  host.suite->answers().standard_model = 9;
  host.connection->answer(
      "SELECT MODELS.ID,MODELS.NAME FROM MODELS LEFT JOIN ACCESS_LEVELS ON MODELS.ID_ACCESS_LEVELS "
      "= ACCESS_LEVELS.ID WHERE MODELS.RELATION = 'SONST' ORDER BY MODELS.NAME,MODELS.ID",
      {{"ID", FieldType::kInteger}, {"NAME"}}, {{7, "Alt"}, {9, "Neu"}});
  host.answer_state(model_state_query("SONST", 9));
  host.answer_criteria(9, "");
  host.start("SONST");
  EXPECT_EQ(host.editor->Model.entries(), (std::vector<ListEntry>{{"Alt", 7}, {"Neu", 9}}));
  EXPECT_EQ(host.editor->caption(), "Selektion: Neu");
  host.forget();
  host.editor->chkStandard.set_checked(true);
  const std::string model_class =
      "(CASE WHEN MODELS.NICHT_ANDERBAR = 1 THEN 3 WHEN MODELS.ID_ACCESS_LEVELS IS NOT NULL THEN 2 "
      "ELSE 1 END)";
  EXPECT_THAT(
      host.connection->statements(),
      ElementsAre(model_state_query("SONST", 9),
                  "UPDATE MODELS SET STANDARD = (CASE WHEN MODELS.ID = 9 THEN 1 ELSE 0 END) "
                  "WHERE RELATION = 'SONST' AND " +
                      model_class + " = (SELECT " + model_class + " FROM MODELS WHERE ID = 9)"));
}

// --- A start model that cannot be loaded

std::string unreadable(const std::string& model, const std::string& why) {
  return "Das Modell '" + model + "' kann nicht geladen werden; die Liste ist leer. Grund: " + why;
}

// "SONST" with the models "Alt" (7) and "Neu" (9), of which the latter is the standard.
struct BadStart : TwoModels {
  explicit BadStart(const std::string& criteria) {
    suite->answers().standard_model = 9;
    connection->answer("SELECT MODEL FROM MODELS WHERE ID = 9", {{"MODEL"}}, {{criteria}});
    // The answer of before is passed over.
    connection->open("SELECT MODEL FROM MODELS WHERE ID = 9", CursorType::kForwardOnly,
                     LockType::kReadOnly);
    connection->answer("SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = 99",
                       {{"ID_STRING", FieldType::kInteger}});
    connection->answer("SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = 10",
                       {{"ID_STRING", FieldType::kInteger}}, {{110}});
  }

  void expect_started_without_a_model() {
    user->verify();
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_EQ(editor->Model.entries(), (std::vector<ListEntry>{{"Alt", 7}, {" Neu ", 9}}));
    EXPECT_EQ(editor->Model.index(), -1) << "a save must not overwrite it with the empty list";
    EXPECT_EQ(editor->txtStandard.text(), " Neu ");
    EXPECT_EQ(editor->caption(), "Selektion");
    EXPECT_EQ(editor->cboField.count(), 3);
    EXPECT_EQ(user->pointer(), PointerShape::kDefault);
    run("", false, [this] {
      EXPECT_TRUE(editor->btnInsert.enabled());
      editor->Model.set_index(0);
      editor->Model_DblClick();
      EXPECT_THAT(lines(), ElementsAre("=== ODER ==="));
    });
  }
};

TEST(StartModel, ThatCannotBeReadIsToldAndTheEditorOpens) {
  for (const auto& [criteria, why] : std::initializer_list<std::pair<const char*, const char*>>{
           {"10 = 'Huber; Söhne';", "'' is no whole number."},
           {"X = 1;", "'X' is no whole number."},
           {"40000 = 1;", "The number 40000 does not fit 16 bits."},
           {"99 = 1;", "The row set stands at its end."}}) {
    SCOPED_TRACE(criteria);
    BadStart host(criteria);
    host.user->expect_message({unreadable(" Neu ", why), kExclamationIcon, "Kestrova", "", 0});
    host.start("SONST");
    host.expect_started_without_a_model();
  }
}

TEST(StartModel, WhoseFieldTheDatabaseRefusesIsToldToo) {
  BadStart host("10 = 'FI';");
  host.connection->fail("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 10",
                        DatabaseError("Invalid object name 'LAGER'.", "42S02", 208));
  host.user->expect_message(
      {unreadable(" Neu ", "Invalid object name 'LAGER'."), kExclamationIcon, "Kestrova", "", 0});
  host.start("SONST");
  host.expect_started_without_a_model();
}

TEST(StartModel, ThatAnotherUserHasDeletedIsToldToo) {
  BadStart host("");
  host.connection->answer("SELECT MODEL FROM MODELS WHERE ID = 9", {{"MODEL"}});
  host.connection->open("SELECT MODEL FROM MODELS WHERE ID = 9", CursorType::kForwardOnly,
                        LockType::kReadOnly);
  host.user->expect_message({unreadable(" Neu ", "The model ' Neu ' has been deleted meanwhile."),
                             kExclamationIcon, "Kestrova", "", 0});
  host.start("SONST");
  host.expect_started_without_a_model();
}

TEST(StartModel, IsToldInTheUsersLanguage) {
  BadStart host("X = 1;");
  host.context.strLanguage = "EN";
  host.user->expect_message(
      {"The model ' Neu ' cannot be loaded; the list is empty. Reason: 'X' is no whole number.",
       kExclamationIcon, "Kestrova", "", 0});
  host.start("SONST");
  host.expect_started_without_a_model();
}

// A message about a model would hide what is wrong.
TEST(StartModel, IsNotBlamedForTheConnectionOrTheHost) {
  BadStart dead("10 = 'FI';");
  dead.connection->fail("SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = 10",
                        DatabaseError("Communication link failure", "08S01"));
  dead.connection->open("SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = 10",
                        CursorType::kForwardOnly, LockType::kReadOnly);
  EXPECT_THROW(dead.start("SONST"), DatabaseError);
  EXPECT_EQ(dead.user->pointer(), PointerShape::kDefault);

  BadStart unset("10 = 'FI';");
  unset.context.dbado = nullptr;  // for the lookups; the editor has that of the start
  EXPECT_THROW(unset.start("SONST"), ObjectNotSet);
}

TEST(StartModel, OfARunIsThatOfAllRuns) {
  RunHost host;
  host.answer_models("2ABR1");
  host.start("2ABR5");
  EXPECT_EQ(host.editor->relation(), "2ABR5");
  EXPECT_EQ(host.suite->calls_of("standard_model"), Texts({"standard_model('2ABR1', 0)"}));
}

// --- Options

TEST(FormLoad, HappensOnce) {
  Sonst host;
  host.answer_models("SONST");
  host.start("SONST");
  host.start("SONST");
  EXPECT_EQ(host.suite->calls_of("GetOptionFlag").size(), 3U);
  EXPECT_EQ(host.connection->open_recordsets(), 1U) << "the catalogue of the first start is closed";
}

TEST(FormLoad, IsTriedAgainAfterAFailure) {
  Sonst host;
  host.answer_models("SONST");
  host.suite->fail_on_call(2);
  EXPECT_THROW(host.start("SONST"), InvalidArgument);
  host.suite->fail_on_call(0);
  host.start("SONST");
  EXPECT_EQ(host.suite->calls_of("GetOptionFlag").size(), 4U);
  host.start("SONST");
  EXPECT_EQ(host.suite->calls_of("GetOptionFlag").size(), 4U);
}

TEST(FormLoad, NeedsTheRowOfTheOption) {
  Sonst host;
  host.answer_models("SONST");
  host.connection->answer(text::replace_all(kChangeModelsQuery, "ISNULL", "NVL"), {{"A"}});
  host.connection->set_kind(ConnectionKind::kOracle);
  EXPECT_THROW(host.start("SONST"), NoCurrentRecord);
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

// --- The caller context

// Texts of a suite that keeps the context of its last call.
class SeeingSuite : public FakeSuite {
 public:
  using FakeSuite::FakeSuite;

  std::shared_ptr<LocTexts> loc_texts() override {
    class SeeingTexts : public LocTexts {
     public:
      explicit SeeingTexts(KesVar& last_seen) : seen(last_seen) {}
      std::string GetText(std::int32_t number, const KesVar& context) override {
        seen = context;
        return "T" + std::to_string(number);
      }
      KesVar& seen;
    };
    return std::make_shared<SeeingTexts>(seen);
  }

  KesVar seen;
};

template <std::size_t size>
std::array<std::byte, size> bytes(int first) {
  std::array<std::byte, size> result;
  for (std::byte& byte : result) byte = static_cast<std::byte>(first++);
  return result;
}

// Every member that the library does not read, each with a value of its own.
void fill_carried_members(KesVar& context, std::shared_ptr<void> object) {
  context.member_1 = std::move(object);
  context.member_2 = "2";
  context.member_6 = "6";
  context.member_8 = "8";
  context.member_9 = "9";
  context.member_10 = "10";
  context.member_11 = "11";
  context.block_8 = bytes<4>(8);
  context.block_28 = bytes<12>(28);
  context.member_14 = "14";
  context.member_15 = "15";
  context.member_16 = bytes<4>(100);
  context.member_17 = "17";
  context.member_18 = std::string("1\0008", 3);
  context.member_19 = bytes<4>(252);
}

void expect_carried_members(const KesVar& context, const std::shared_ptr<void>& object) {
  EXPECT_EQ(context.member_1, object);
  EXPECT_EQ(context.member_2, "2");
  EXPECT_EQ(context.member_6, "6");
  EXPECT_EQ(context.member_8, "8");
  EXPECT_EQ(context.member_9, "9");
  EXPECT_EQ(context.member_10, "10");
  EXPECT_EQ(context.member_11, "11");
  EXPECT_EQ(context.block_8, bytes<4>(8));
  EXPECT_EQ(context.block_28, bytes<12>(28));
  EXPECT_EQ(context.member_14, "14");
  EXPECT_EQ(context.member_15, "15");
  EXPECT_EQ(context.member_16, bytes<4>(100));
  EXPECT_EQ(context.member_17, "17");
  EXPECT_EQ(context.member_18, std::string("1\0008", 3));
  EXPECT_EQ(context.member_19, bytes<4>(252));
}

struct ContextHost : RunHost {
  ContextHost() : RunHost(std::make_shared<SeeingSuite>()) {
    answer_fields("SONST", {field(10, "DM/EURO")});
    answer_models("SONST");
    answer_values(plain_query("F10"), {"EURO"});
  }
  KesVar& seen() { return std::static_pointer_cast<SeeingSuite>(suite)->seen; }

  // A key in a field that takes values from its list only: the user is shown text 195.
  void press_key() {
    pick(editor->cboField, "DM/EURO");
    user->expect_message({"T195", kExclamationIcon, "Kestrova", "", 0});
    int key = 'x';
    editor->cboValue_KeyPress(key);
  }
};

TEST(CallerContext, ReachesTheSuiteWithTheMembersThatTheLibraryDoesNotRead) {
  ContextHost host;
  const auto object = std::make_shared<int>(7);
  fill_carried_members(host.context, object);
  host.start("SONST");
  expect_carried_members(host.seen(), object);
}

TEST(CallerContext, IsCopiedWithAllItsMembersWhenASelectionStarts) {
  ContextHost host;
  auto object = std::make_shared<int>(7);
  fill_carried_members(host.context, object);
  host.start("SONST");
  host.context = {};
  host.seen() = {};
  EXPECT_EQ(object.use_count(), 2) << "the test and the editor";
  host.press_key();
  expect_carried_members(host.seen(), object);
}

TEST(CallerContext, IsCopiedAgainWhenTheDialogIsShown) {
  ContextHost host;
  const auto object = std::make_shared<int>(7);
  fill_carried_members(host.context, object);
  host.start("SONST");
  const auto other = std::make_shared<int>(8);
  host.context.member_1 = other;
  host.run("", false, [&host] { host.press_key(); });
  expect_carried_members(host.seen(), other);
  host.seen() = {};
  EXPECT_EQ(object.use_count(), 1) << "the test alone";
}

// --- Showing

TEST(Run, ShowsTheDialogAndCopiesTheResults) {
  Sonst host;
  host.answer_models("SONST");
  host.start("SONST");
  module_state().strSelektion_Fr_Wh = " FROM A";
  module_state().strSelektionFormula = "a";
  module_state().blnOK = "Wahr";
  host.forget();
  std::string shown;
  const RunHost::Results results = host.run("", false, [&] {
    shown = module_state().blnOK;
    EXPECT_TRUE(host.editor->is_visible());
    EXPECT_EQ(host.editor->start_state(), 2);
  });
  EXPECT_EQ(host.editor->start_state(), 0);
  EXPECT_EQ(shown, "Falsch");
  EXPECT_EQ(results, (RunHost::Results{" FROM A", "a"}));
  EXPECT_FALSE(host.editor->is_visible());
  EXPECT_EQ(host.calls(), Texts({"pointer hourglass", "pointer default", "pointer hourglass",
                                 opened(model_state_query("SONST")), "#4 close", "pointer default",
                                 "dialog 'Selektion'"}));
}

TEST(Run, IgnoresTheSubsetOfOtherRelations) {
  Sonst host;
  host.answer_models("SONST");
  host.start("SONST");
  host.fill_lines({{"=== ODER ===", -2}});
  host.run("=== ODER ===;=== ODER ===;");
  EXPECT_EQ(host.editor->ListCriteria.entries(), (std::vector<ListEntry>{{"=== ODER ===", -2}}));
}

TEST(Run, SelectsTheFirstLine) {
  Sonst host;
  host.answer_models("SONST");
  host.start("SONST");
  host.fill_lines({{"=== ODER ===", -2}, {"=== ODER ===", -2}});
  host.run("", false, [&] {
    EXPECT_EQ(host.editor->ListCriteria.index(), 0);
    EXPECT_FALSE(host.editor->cmdUp.enabled());
    EXPECT_TRUE(host.editor->cmdDown.enabled());
  });
}

TEST(FormUnload, HidesAVisibleDialogAndKeepsIt) {
  Sonst host;
  host.answer_models("SONST");
  host.start("SONST");
  bool cancel = true;
  host.editor->Form_Unload(cancel);
  EXPECT_FALSE(cancel);
  host.run("", false, [&] {
    host.editor->Form_Unload(cancel);
    EXPECT_TRUE(cancel);
    EXPECT_FALSE(host.editor->is_visible());
  });
}

TEST(ContractSelection, IsFoundByTheCode) {
  const auto found = [](std::string_view code) {
    const auto contract = contract_selection(code);
    return contract ? std::string(contract->table) + " " + std::to_string(contract->record) : "";
  };
  EXPECT_EQ(found("VERTP12"), "VERTRAG_PREISE 12");
  EXPECT_EQ(found("vertp12"), "VERTRAG_PREISE 12");
  EXPECT_EQ(found("VertM7"), "VERTRAG_MENGEN 7");
  EXPECT_EQ(found("VERTP 12"), "VERTRAG_PREISE 12") << "numbers may be written with a blank";
  EXPECT_THROW(found("VERTPREIS"), InvalidArgument) << "no record has that number";
  EXPECT_THROW(found("VERTP12 OR 1=1"), InvalidArgument);
  EXPECT_THROW(found("VERTP3000000000"), Overflow);
  EXPECT_EQ(found("VERT12"), "");
  EXPECT_EQ(found(" VERTP12"), "");
}

// --- What is shown of a model

TEST(ModelState, ShowsThePropertiesUnderTheHourglass) {
  Sonst host;
  host.answer_models("SONST", {{7, "Alt"}});
  host.answer_criteria(7, "");
  host.start("SONST");
  host.forget();
  host.editor->Model_Click();
  EXPECT_EQ(host.calls(), Texts({"pointer hourglass", opened(model_state_query("SONST", 7)),
                                 "#6 close", "pointer default"}));
}

TEST(ModelState, OfAModel) {
  Sonst host;
  host.answer_models("SONST");
  host.start("SONST");
  host.editor->Model.add("Alt");
  host.editor->Model.set_item_data(0, 3);
  host.answer_state(model_state_query("SONST", 3), {1, 0, 5, "Revier", 1});
  host.editor->Model.set_index(0);
  EXPECT_TRUE(host.editor->Check1.checked());
  EXPECT_TRUE(host.editor->chkStandard.checked());
  EXPECT_TRUE(host.editor->chkAL.checked());
  EXPECT_EQ(host.editor->chkAL.caption(), "Revier");
  host.editor->Model.set_index(-1);
  EXPECT_FALSE(host.editor->Check1.checked());
  EXPECT_FALSE(host.editor->chkStandard.checked());
  EXPECT_FALSE(host.editor->chkAL.checked());
  EXPECT_EQ(host.editor->chkAL.caption(), "");
}

TEST(ModelState, OnOracleComesFromDual) {
  Sonst host;
  host.connection->set_kind(ConnectionKind::kOracle);
  host.connection->answer(text::replace_all(kChangeModelsQuery, "ISNULL", "NVL"),
                          {{"A", FieldType::kInteger}}, {{1}});
  host.answer_models("SONST");
  const auto on_oracle = [](std::string sql) {
    return sql.substr(0, sql.size() - 3) + " FROM DUAL) A";
  };
  host.answer_state(on_oracle(model_state_query("SONST")), {1, 0, Value(), Value(), 0});
  host.start("SONST");
  host.run();
  EXPECT_TRUE(host.editor->Check1.checked());
  host.editor->Model.add("Alt");
  host.editor->Model.set_item_data(0, 3);
  host.answer_state(on_oracle(model_state_query("SONST", 3)), {0, 0, Value(), Value(), 1});
  host.editor->Model.set_index(0);
  EXPECT_FALSE(host.editor->Check1.checked());
  EXPECT_TRUE(host.editor->chkStandard.checked());
}

// --- What is enabled, by all that decides it

}  // namespace
}  // namespace kestrova::test
