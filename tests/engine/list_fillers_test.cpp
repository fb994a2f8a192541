// Fill_ComboModel: the models of a relation in a list. ApcboValue: a picked value as SQL.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "tests/engine/engine_host.h"
#include "tests/engine/failure_sweep.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// --- Models in a list -------------------------------------------------------------------------

std::string models_query(const std::string& relation) {
  return "SELECT MODELS.ID,MODELS.NAME,MODELS.STANDARD FROM MODELS"
         " LEFT JOIN ACCESS_LEVELS ON MODELS.ID_ACCESS_LEVELS = ACCESS_LEVELS.ID"
         " WHERE MODELS.RELATION = '" +
         relation + "' AND  {MODELS,0} ORDER BY MODELS.NAME";
}

Columns model_columns() {
  return {{"ID", FieldType::kInteger}, {"NAME"}, {"STANDARD", FieldType::kSmallInt}};
}

// A list of a toolkit that has nothing but the six operations. It writes them down.
class PlainCombo : public ComboPort {
 public:
  explicit PlainCombo(CallLog log) : log_(std::move(log)) {}

  void Clear() override {
    log_->push_back("Clear");
    entries.clear();
    selected = -1;
  }
  void AddItem(std::string_view text) override {
    log_->push_back("AddItem '" + std::string(text) + "'");
    entries.push_back({std::string(text), 0});
  }
  int NewIndex() const override { return static_cast<int>(entries.size()) - 1; }
  std::int32_t ItemData(int index) const override { return entries.at(at(index)).item_data; }
  void SetItemData(int index, std::int32_t data) override {
    log_->push_back("ItemData(" + std::to_string(index) + ") " + std::to_string(data));
    entries.at(at(index)).item_data = data;
  }
  int ListCount() const override { return static_cast<int>(entries.size()); }
  int ListIndex() const override { return selected; }
  void SetListIndex(int index) override {
    log_->push_back("ListIndex " + std::to_string(index));
    selected = index;
  }

  std::vector<ListEntry> entries;
  int selected = -1;

 private:
  static std::size_t at(int index) { return static_cast<std::size_t>(index); }
  CallLog log_;
};

// A list whose entries are sorted as they come, so that a new one may stand anywhere.
class SortedCombo : public PlainCombo {
 public:
  using PlainCombo::PlainCombo;
  void AddItem(std::string_view text) override {
    const auto place = std::find_if(entries.begin(), entries.end(),
                                    [&](const ListEntry& entry) { return entry.text > text; });
    new_index_ = static_cast<int>(place - entries.begin());
    entries.insert(place, {std::string(text), 0});
  }
  int NewIndex() const override { return new_index_; }

 private:
  int new_index_ = -1;
};

const std::vector<PointerShape> kBusyOnce = {PointerShape::kHourglass, PointerShape::kDefault};

const Rows kThreeModels = {{31, "Buche", 0}, {12, "Fichte", 1}, {7, "O'Brien", 0}};

class ModelList : public ::testing::Test {
 protected:
  void save(const std::string& relation, Rows rows) {
    host.connection->answer(models_query(relation), model_columns(), std::move(rows));
  }
  void fill(std::string_view relation, bool set_standard_model = false) {
    host.engine.Fill_ComboModel(host.context, combo, relation, set_standard_model);
  }

  EngineHost host;
  PlainCombo combo{host.log};
};

TEST_F(ModelList, HoldsOneEmptyEntryAndTheModelsInTheirOrder) {
  save("1VM", kThreeModels);
  fill("1VM");
  EXPECT_EQ(combo.entries,
            (std::vector<ListEntry>{{"", 0}, {"Buche", 31}, {"Fichte", 12}, {"O'Brien", 7}}));
  EXPECT_EQ(combo.selected, -1);
}

TEST_F(ModelList, IsFilledInThisOrder) {
  save("1VM", {{31, "Buche", 0}, {12, "Fichte", 1}});
  host.suite->answers().standard_model = 12;
  fill("1VM", true);
  EXPECT_THAT(host.calls(),
              ElementsAre("pointer hourglass", "Clear", "restrict('MODELS', '', 0)",
                          opened(models_query("1VM")), "AddItem ''", "ItemData(0) 0",
                          "AddItem 'Buche'", "ItemData(1) 31", "#1 move_next", "AddItem 'Fichte'",
                          "ItemData(2) 12", "#1 move_next", "#1 close", "standard_model('1VM', 0)",
                          "pointer default", "ListIndex 2"));
  EXPECT_EQ(host.suite->live_services(), 0U);
}

TEST_F(ModelList, BeginsWithTheEmptyEntryAlsoWithoutModels) {
  save("1VM", {});
  fill("1VM");
  EXPECT_EQ(combo.entries, (std::vector<ListEntry>{{"", 0}}));
  EXPECT_EQ(combo.selected, -1);
}

// A suite may restrict nothing.
TEST_F(ModelList, WithoutRestrictionHoldsAllModelsOfTheRelation) {
  host.suite->answers().has_restrictions = false;
  host.connection->answer(
      "SELECT MODELS.ID,MODELS.NAME,MODELS.STANDARD FROM MODELS LEFT JOIN ACCESS_LEVELS ON "
      "MODELS.ID_ACCESS_LEVELS = ACCESS_LEVELS.ID WHERE MODELS.RELATION = '1VM' ORDER BY "
      "MODELS.NAME",
      model_columns(), {{31, "Buche", 0}});
  fill("1VM");
  EXPECT_EQ(combo.entries, (std::vector<ListEntry>{{"", 0}, {"Buche", 31}}));
}

TEST_F(ModelList, ReplacesWhatStoodThere) {
  combo.entries = {{"old", 5}, {"older", 6}};
  combo.selected = 1;
  save("1VM", {});
  fill("1VM");
  EXPECT_EQ(combo.entries, (std::vector<ListEntry>{{"", 0}}));
  EXPECT_EQ(combo.selected, -1);
}

TEST_F(ModelList, AModelWithoutNameIsAnEmptyText) {
  save("1VM", {{31, Value(), 0}, {12, "Fichte", Value()}});
  fill("1VM");
  EXPECT_EQ(combo.entries, (std::vector<ListEntry>{{"", 0}, {"", 31}, {"Fichte", 12}}));
}

TEST_F(ModelList, KeepsIdentifiersOf32Bits) {
  constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
  save("1VM", {{highest, "A", 0}, {-1, "B", 0}});
  fill("1VM");
  EXPECT_EQ(combo.entries, (std::vector<ListEntry>{{"", 0}, {"A", highest}, {"B", -1}}));
}

TEST_F(ModelList, AsksForTheModelsOfTheRelationsGroup) {
  for (const auto& [code, relation] : {std::pair<const char*, const char*>{"2ABR5-A", "2ABR1-A"},
                                       {"2TOP", "1LV"},
                                       {"1VN", "WAREN"},
                                       {"ELDAT_EXPORT", "1EXP"},
                                       {"2abr5", "2abr5"},
                                       {" bbf ", " bbf "}}) {
    EngineHost fresh;
    PlainCombo list{fresh.log};
    fresh.connection->answer(models_query(relation), model_columns());
    fresh.engine.Fill_ComboModel(fresh.context, list, code, false);
    EXPECT_EQ(fresh.connection->statements(), std::vector<std::string>{models_query(relation)});
  }
}

// --- Standard model

TEST_F(ModelList, SelectsTheStandardModelOfTheUser) {
  save("2ABR1-A", kThreeModels);
  host.suite->answers().standard_model = 7;
  fill("2ABR5-A", true);
  EXPECT_EQ(combo.selected, 3);
  EXPECT_EQ(host.suite->calls_of("standard_model"),
            std::vector<std::string>{"standard_model('2ABR1-A', 0)"});
}

TEST_F(ModelList, SelectsTheFirstEntryOfThatModel) {
  save("1VM", {{7, "A", 0}, {7, "B", 0}});
  host.suite->answers().standard_model = 7;
  fill("1VM", true);
  EXPECT_EQ(combo.selected, 1);
}

TEST_F(ModelList, AStandardModelThatIsNotInTheListLeavesTheSelection) {
  save("1VM", kThreeModels);
  host.suite->answers().standard_model = 99;
  fill("1VM", true);
  EXPECT_EQ(combo.selected, -1);
  EXPECT_EQ(host.log->back(), "pointer default") << "nothing is selected behind it";
}

// The empty entry carries the number that means "no model".
TEST_F(ModelList, AUserWithoutStandardModelGetsTheEmptyEntry) {
  save("1VM", kThreeModels);
  host.suite->answers().standard_model = 0;
  fill("1VM", true);
  EXPECT_EQ(combo.selected, 0);
}

TEST_F(ModelList, TheSharedStandardModelDoesNotReplaceTheUsersOwn) {
  save("1VM", kThreeModels);
  host.suite->answers().standard_model = 31;
  fill("1VM", true);
  EXPECT_EQ(combo.selected, 1);
}

TEST_F(ModelList, WithoutBeingAskedNoStandardModelIsSelected) {
  save("1VM", kThreeModels);
  host.suite->answers().standard_model = 12;
  fill("1VM", false);
  EXPECT_EQ(combo.selected, -1);
  EXPECT_THAT(host.suite->calls_of("standard_model"), IsEmpty());
}

// --- Any list

TEST_F(ModelList, WorksOnAListThatSortsItsEntries) {
  save("1VM", {{3, "c", 0}, {1, "a", 0}, {2, "b", 0}});
  host.suite->answers().standard_model = 2;
  SortedCombo sorted{host.log};
  host.engine.Fill_ComboModel(host.context, sorted, "1VM", true);
  EXPECT_EQ(sorted.entries, (std::vector<ListEntry>{{"", 0}, {"a", 1}, {"b", 2}, {"c", 3}}));
  EXPECT_EQ(sorted.selected, 2);
}

TEST_F(ModelList, WorksOnTheLibrarysOwnLists) {
  ComboBox box("Model", ComboBox::Style::kDropDownList);
  ListBox list("Model");
  int clicks = 0;
  box.on_click = [&] { ++clicks; };
  box.add("old");
  box.set_index(0);
  clicks = 0;
  for (EntryList* entries : {static_cast<EntryList*>(&box), static_cast<EntryList*>(&list)}) {
    save("1VM", kThreeModels);
    host.suite->answers().standard_model = 12;
    EntryListPort port(*entries);
    host.engine.Fill_ComboModel(host.context, port, "1VM", true);
    EXPECT_EQ(entries->entries(),
              (std::vector<ListEntry>{{"", 0}, {"Buche", 31}, {"Fichte", 12}, {"O'Brien", 7}}));
    EXPECT_EQ(entries->index(), 2);
  }
  EXPECT_EQ(box.text(), "Fichte");
  EXPECT_EQ(clicks, 1);
}

// --- The pointer

TEST_F(ModelList, IsFilledUnderTheBusyPointer) {
  save("1VM", kThreeModels);
  fill("1VM");
  EXPECT_EQ(host.user->pointer_changes(), kBusyOnce);
}

TEST_F(ModelList, LeavesAPointerThatIsBusyAlready) {
  save("1VM", kThreeModels);
  host.user->set_pointer(PointerShape::kHourglass);
  fill("1VM", true);
  EXPECT_EQ(host.user->pointer(), PointerShape::kHourglass);
  EXPECT_EQ(host.user->pointer_changes().size(), 1U) << "that of the test";
}

TEST_F(ModelList, NeedsNoUserInterface) {
  install_host({.suite = host.suite});
  save("1VM", {{31, "Buche", 0}});
  fill("1VM", true);
  EXPECT_EQ(combo.entries, (std::vector<ListEntry>{{"", 0}, {"Buche", 31}}));
}

// --- Failures

TEST_F(ModelList, AQueryThatFailsLeavesTheListEmpty) {
  combo.entries = {{"old", 5}};
  host.connection->fail(models_query("1VM"), DatabaseError("no such table"));
  EXPECT_THROW(fill("1VM", true), DatabaseError);
  EXPECT_THAT(combo.entries, IsEmpty());
  EXPECT_EQ(host.suite->live_services(), 0U);
}

TEST_F(ModelList, AFilterThatFailsLeavesTheListEmptyAndAsksNothing) {
  combo.entries = {{"old", 5}};
  host.suite->fail_on_call(1);
  EXPECT_THROW(fill("1VM", true), InvalidArgument);
  EXPECT_THAT(combo.entries, IsEmpty());
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

TEST_F(ModelList, ARelationWithAnApostropheIsRefusedByTheDatabase) {
  host.connection->fail(models_query("O'B"), DatabaseError("Incorrect syntax near 'B'."));
  EXPECT_THROW(fill("O'B"), DatabaseError);
}

TEST_F(ModelList, NeedsAConnection) {
  host.context.dbado = nullptr;
  EXPECT_THROW(fill("1VM"), ObjectNotSet);
}

struct Filling : EngineHost {
  Filling() {
    connection->answer(models_query("1VM"), model_columns(), kThreeModels);
    suite->answers().standard_model = 7;
  }
  std::string run() {
    ComboBox box("Model", ComboBox::Style::kDropDownList);
    EntryListPort port(box);
    engine.Fill_ComboModel(context, port, "1VM", true);
    std::string result = "selected " + box.text();
    for (const ListEntry& entry : box.entries()) {
      result += "; " + entry.text + " " + std::to_string(entry.item_data);
    }
    return result;
  }
};

TEST(ModelListFailures, EveryDatabaseCall) {
  EXPECT_EQ(Filling().run(), "selected O'Brien;  0; Buche 31; Fichte 12; O'Brien 7");
  expect_every_database_failure_to_reach_the_caller<Filling>();
}

TEST(ModelListFailures, EveryServiceCall) {
  expect_every_service_failure_to_reach_the_caller<Filling>();
}

// --- A picked value as SQL --------------------------------------------------------------------

const SelektionRow kOrt = {.id = 11, .name = "ORT", .nickname = "Ort", .table = "LAGER"};
const SelektionRow kMenge = {.id = 12, .name = "MENGE", .nickname = "Menge", .table = "LAGER"};
const SelektionRow kName = {.id = 13,
                            .name = "ID_PERSONAL",
                            .nickname = "Name",
                            .table = "LAGER",
                            .table2 = "PERSONAL",
                            .sqlselect = "INNER",
                            .sqlvalue = "PERSONAL.NAME"};

// The types whose values stand between apostrophes: texts, dates and times.
bool is_quoted(int type) {
  switch (type) {
    case 7:
    case 129:
    case 130:
    case 133:
    case 134:
    case 135:
    case 200:
    case 201:
    case 202:
    case 203:
      return true;
    default:
      return false;
  }
}

class PickedValue : public ::testing::Test {
 protected:
  PickedValue() {
    host.connection->table("LAGER", {{"ORT", FieldType::kVarWChar}, {"MENGE", FieldType::kDouble}});
    host.connection->table("PERSONAL", {{"NAME", FieldType::kVarWChar}});
  }

  std::string sql(std::string_view value, std::string_view nickname, Recordset* rows,
                  std::string_view relation = "SONST") {
    return host.engine.ApcboValue(host.context, value, nickname, rows, relation);
  }

  EngineHost host;
};

TEST_F(PickedValue, IsLookedUpByNicknameAndByTheTableItself) {
  const auto rows = host.open_selektion({kOrt, kMenge});
  rows->move_next();
  host.connection->clear_log();
  EXPECT_EQ(sql("München", "Ort", rows.get()), "'München'");
  EXPECT_THAT(host.calls(),
              ElementsAre("pointer hourglass", "#1 move_first", "#1 find NICKNAME_OF_FIELD = 'Ort'",
                          opened("LAGER"), "#2 type ORT", "#2 close", "pointer default"));
  ASSERT_FALSE(rows->eof());
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(11));
}

TEST_F(PickedValue, IsQuotedByTypeAsItStands) {
  const auto rows = host.open_selektion({kOrt, kMenge});
  EXPECT_EQ(sql("O'Neill", "Ort", rows.get()), "'O'Neill'");
  EXPECT_EQ(sql("", "Ort", rows.get()), "''");
  EXPECT_EQ(sql(" x ", "Ort", rows.get()), "' x '");
  EXPECT_EQ(sql("'x'", "Ort", rows.get()), "''x''");
  EXPECT_EQ(sql("1,5", "Menge", rows.get()), "1,5");
  EXPECT_EQ(sql("", "Menge", rows.get()), "");
  EXPECT_EQ(sql("Menge", "Menge", rows.get()), "Menge");
}

TEST_F(PickedValue, EveryTypeCodeOfAColumn) {
  for (int type = 0; type <= 210; ++type) {
    EngineHost fresh;
    fresh.connection->table("LAGER", {{"ORT", static_cast<FieldType>(type)}});
    const auto rows = fresh.open_selektion({kOrt});
    EXPECT_EQ(fresh.engine.ApcboValue(fresh.context, "5", "Ort", rows.get(), "SONST"),
              is_quoted(type) ? "'5'" : "5")
        << "type " << type;
  }
}

TEST_F(PickedValue, OfAJoinedFieldHasTheTypeOfTheSecondTable) {
  struct Case {
    const char* sqlselect;
    const char* sqlvalue;
    const char* column;
  };
  for (const Case& c : {Case{"INNER", "PERSONAL.NAME", "NAME"},
                        {" Inner ", "P.NAME", "NAME"},
                        {"TRIPLE", "DBO.P.NAME", "P.NAME"},
                        {"triple", "NAME", "NAME"}}) {
    SCOPED_TRACE(std::string(c.sqlselect) + " " + c.sqlvalue);
    EngineHost fresh;
    SelektionRow field = kName;
    field.sqlselect = c.sqlselect;
    field.sqlvalue = c.sqlvalue;
    fresh.connection->table("PERSONAL",
                            {{"ID", FieldType::kInteger}, {c.column, FieldType::kVarWChar}});
    const auto rows = fresh.open_selektion({kMenge, field});
    EXPECT_EQ(fresh.engine.ApcboValue(fresh.context, "X", "Name", rows.get(), "SONST"), "'X'");
    EXPECT_THAT(fresh.calls(),
                ElementsAre("pointer hourglass", "#1 move_first",
                            "#1 find NICKNAME_OF_FIELD = 'Name'", opened("PERSONAL"),
                            std::string("#2 type ") + c.column, "#2 close", "pointer default"));
  }
}

TEST_F(PickedValue, OfAFieldWithAnotherJoinHasTheTypeOfItsOwnColumn) {
  for (const Value& sqlselect : {Value(), Value(""), Value("OUTER"), Value("INNER JOIN")}) {
    EngineHost fresh;
    SelektionRow field = kOrt;
    field.sqlselect = sqlselect;
    field.table2 = "PERSONAL";
    field.sqlvalue = "PERSONAL.NAME";
    fresh.connection->table("LAGER", {{"ORT", FieldType::kInteger}});
    const auto rows = fresh.open_selektion({field});
    EXPECT_EQ(fresh.engine.ApcboValue(fresh.context, "5", "Ort", rows.get(), "SONST"), "5");
  }
}

TEST_F(PickedValue, OfAnUnknownNicknameIsNothing) {
  const auto rows = host.open_selektion({kOrt});
  EXPECT_EQ(sql("5", "Nirgends", rows.get()), "");
  EXPECT_THAT(*host.log, ElementsAre("pointer hourglass", "#1 move_first",
                                     "#1 find NICKNAME_OF_FIELD = 'Nirgends'", "pointer default"));
  EXPECT_TRUE(rows->eof());
}

// It is no empty one.
TEST_F(PickedValue, OfANicknameOfBlanksIsSought) {
  SelektionRow blank = kMenge;
  blank.nickname = " ";
  const auto rows = host.open_selektion({kOrt, blank});
  EXPECT_EQ(sql("5", " ", rows.get()), "5");
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(12));
}

TEST_F(PickedValue, WithoutANicknameIsNothingAndLeavesTheRowSetAlone) {
  const auto rows = host.open_selektion({kOrt, kMenge});
  EXPECT_EQ(sql("5", "", rows.get()), "");
  EXPECT_EQ(sql("5", "", nullptr), "");
  EXPECT_THAT(*host.log, IsEmpty());
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(11));
}

TEST_F(PickedValue, InARowSetAtItsEndIsNothing) {
  const auto rows = host.open_selektion({kOrt});
  rows->move_next();
  host.connection->clear_log();
  EXPECT_EQ(sql("5", "Ort", rows.get()), "");
  EXPECT_THAT(*host.log, ElementsAre("pointer hourglass", "#1 find NICKNAME_OF_FIELD = 'Ort'",
                                     "pointer default"));
  const auto none = host.open_selektion({});
  EXPECT_EQ(sql("5", "Ort", none.get()), "");
}

TEST_F(PickedValue, ANicknameWithAnApostropheIsABadCriterion) {
  const auto rows = host.open_selektion({kOrt});
  EXPECT_THROW(sql("5", "O'rt", rows.get()), BadCriterion);
  EXPECT_THAT(*host.log, ElementsAre("pointer hourglass", "#1 move_first",
                                     "#1 find NICKNAME_OF_FIELD = 'O'rt'", "pointer default"));
}

TEST_F(PickedValue, AnAbsentRowSetOrConnectionIsAnError) {
  EXPECT_THROW(sql("5", "Ort", nullptr), ObjectNotSet);
  const auto rows = host.open_selektion({kOrt});
  host.context.dbado = nullptr;
  EXPECT_THROW(sql("5", "Ort", rows.get()), ObjectNotSet);
}

TEST_F(PickedValue, IsLookedUpUnderABusyPointerOfTheCaller) {
  const auto rows = host.open_selektion({kOrt});
  host.user->set_pointer(PointerShape::kHourglass);
  EXPECT_EQ(sql("München", "Ort", rows.get()), "'München'");
  EXPECT_EQ(host.user->pointer(), PointerShape::kHourglass);
  EXPECT_EQ(host.user->pointer_changes().size(), 1U) << "that of the test";
}

TEST_F(PickedValue, NeedsNoUserInterface) {
  const auto rows = host.open_selektion({kOrt});
  install_host({});
  EXPECT_EQ(sql("München", "Ort", rows.get()), "'München'");
}

TEST_F(PickedValue, AMissingTableOrColumnIsAnError) {
  SelektionRow lost = kOrt;
  lost.table = "VERLOREN";
  SelektionRow renamed = kMenge;
  renamed.name = "FM";
  SelektionRow empty = {.id = 14, .nickname = "Leer"};
  const auto rows = host.open_selektion({lost, renamed, empty});
  EXPECT_THROW(sql("5", "Ort", rows.get()), DatabaseError);
  EXPECT_THROW(sql("5", "Menge", rows.get()), ItemNotFound);
  EXPECT_THROW(sql("5", "Leer", rows.get()), InvalidUseOfNull);
  EXPECT_EQ(host.connection->open_recordsets(), 1U);
}

// --- The same in the editor's relations: the type of the field that is selected there

class PickedInEditor : public PickedValue {
 protected:
  PickedInEditor() {
    host.form->add("Ort", 11);
    host.form->add("Menge", 12);
    host.form->fields.set_index(1);
    for (const char* value : {"Null", "A", "B"}) host.form->values.add(value);
    host.form->values.set_index(1);
  }

  void begin_list_with(std::initializer_list<const char*> values, int selected) {
    host.form->values.clear();
    for (const char* value : values) host.form->values.add(value);
    host.form->values.set_index(selected);
  }
};

TEST_F(PickedInEditor, ACatalogueRelationQuotesByDisplayFormat) {
  const std::pair<const char*, const char*> formats[] = {
      {"", "'A'"}, {"dd.mm.yyyy", "'A'"}, {"0", "A"}, {"0.00", "A"}, {"#,##0", "A"}};
  for (const auto& [format, result] : formats) {
    host.suite->answers().field_formats[112] = format;
    EXPECT_EQ(sql("A", "Ort", nullptr, "1WL"), result) << format;
  }
  EXPECT_THAT(host.connection->statements(), IsEmpty());
}

TEST_F(PickedInEditor, ARestrictedRelationQuotesByTheTypeOfTheExpression) {
  for (int type = 0; type <= 210; ++type) {
    EngineHost fresh;
    fresh.form->add("Ort", 11);
    fresh.form->fields.set_index(0);
    fresh.form->values.add("Null");
    fresh.form->values.add("5");
    fresh.form->values.set_index(1);
    fresh.connection->answer("SELECT TOP 0 EXPR(BBF,111) FROM <BBF,111,R7>",
                             {{"", static_cast<FieldType>(type)}});
    EXPECT_EQ(fresh.engine.ApcboValue(fresh.context, "5", "", nullptr, "BBF"),
              is_quoted(type) ? "'5'" : "5")
        << "type " << type;
  }
}

TEST_F(PickedInEditor, TheTypeIsAskedForTheSelectedField) {
  const auto rows = host.open_selektion({kOrt, kMenge});
  EXPECT_EQ(sql("A", "Ort", rows.get(), "2PVK"), "'A'");
  EXPECT_THAT(*host.log, ElementsAre("pointer hourglass", "MapFieldId('2PVK', 12)",
                                     "field_format('PERSONAL', 112)", "pointer default"));
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(11));
}

TEST_F(PickedInEditor, NullAtTheTopStaysUnquoted) {
  begin_list_with({"Null", "A"}, 0);
  for (const char* relation : {"1WL", "2PVK", "BBF", "4ARB17"}) {
    EXPECT_EQ(sql("Null", "Ort", nullptr, relation), "Null") << relation;
  }
  EXPECT_THAT(*host.log, IsEmpty());
}

TEST_F(PickedInEditor, AnotherValueAtTheTopIsQuotedLikeAnyOther) {
  for (const char* first : {"Fichte", "", "Nullmenge", "Buche"}) {
    begin_list_with({first, "Null"}, 0);
    EXPECT_EQ(sql(first, "Ort", nullptr, "1WL"), "'" + std::string(first) + "'");
  }
}

TEST_F(PickedInEditor, NullFurtherDownIsAValue) {
  begin_list_with({"A", "Null"}, 1);
  EXPECT_EQ(sql("Null", "Ort", nullptr, "1WL"), "'Null'");
}

TEST_F(PickedInEditor, ATypedValueIsQuoted) {
  begin_list_with({"Null", "A"}, -1);
  host.form->values.set_text("Tanne");
  EXPECT_EQ(sql("Tanne", "Ort", nullptr, "1WL"), "'Tanne'");
  begin_list_with({}, -1);
  EXPECT_EQ(sql("Tanne", "Ort", nullptr, "1WL"), "'Tanne'");
}

TEST_F(PickedInEditor, WithoutASelectedFieldThereIsNoType) {
  host.form->fields.set_index(-1);
  EXPECT_THROW(sql("A", "Ort", nullptr, "1WL"), InvalidArgument);
}

TEST_F(PickedInEditor, AnotherRelationDoesNotLookAtTheEditor) {
  begin_list_with({"Null"}, 0);
  const auto rows = host.open_selektion({kOrt});
  EXPECT_EQ(sql("Null", "Ort", rows.get()), "'Null'");
  module_state().theSelectionForm = nullptr;
  EXPECT_EQ(sql("Null", "Ort", rows.get()), "'Null'");
  EXPECT_EQ(module_state().theSelectionForm, nullptr) << "no editor is made";
}

// --- Failures

struct Picking : EngineHost {
  Picking() { connection->table("PERSONAL", {{"NAME", FieldType::kVarWChar}}); }
  std::unique_ptr<Recordset> rows = open_selektion({kMenge, kName});
  std::string run() {
    if (rows->eof()) rows->move_first();
    return engine.ApcboValue(context, "X", "Name", rows.get(), "SONST");
  }
};

struct PickingInEditor : EngineHost {
  PickingInEditor() {
    form->add("Menge", 12);
    form->fields.set_index(0);
    connection->answer("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>",
                       {{"", FieldType::kVarWChar}});
  }
  std::string run() { return engine.ApcboValue(context, "X", "Name", nullptr, "BBF"); }
};

TEST(PickedValueFailures, EveryDatabaseCall) {
  expect_every_database_failure_to_reach_the_caller<Picking>();
  expect_every_database_failure_to_reach_the_caller<PickingInEditor>();
}

TEST(PickedValueFailures, EveryServiceCall) {
  expect_every_service_failure_to_reach_the_caller<PickingInEditor>();
}

}  // namespace
}  // namespace kestrova::test
