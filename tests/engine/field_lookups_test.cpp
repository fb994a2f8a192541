// What Comm_Sel says about the fields of SELEKTION: by name in the caller's row set, by identifier
// with a query of its own, and from a display name to an identifier.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "tests/engine/engine_host.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const SelektionRow kOrt = {.id = 7,
                           .name = "ORT",
                           .nickname = "Ort",
                           .table = " LAGER ",
                           .table2 = " PERSONAL ",
                           .table3 = " ORTE ",
                           .sqlselect = " Inner ",
                           .sqlvalue = " lager.ört ",
                           .condition = " A.ID = B.ID ",
                           .condition2 = " B.ID = C.ID ",
                           .format = " dd.mm.yyyy "};
const SelektionRow kPlain = {.id = 8, .name = " MENGE ", .nickname = "Menge", .table = " LAGER "};
const SelektionRow kEmptyTexts = {.id = 9,
                                  .name = "LEER",
                                  .nickname = "Leer",
                                  .table = "",
                                  .table2 = "",
                                  .table3 = "",
                                  .sqlselect = "",
                                  .sqlvalue = "",
                                  .condition = "",
                                  .condition2 = "",
                                  .format = "   "};

class FieldLookups : public ::testing::Test {
 protected:
  EngineHost host;
  Comm_Sel& engine = host.engine;
};

// --- By name ---------------------------------------------------------------------------------

using SimpleLookup =
    std::function<std::string(const Comm_Sel&, std::string_view, bool, Recordset*)>;

struct NamedLookup {
  const char* name;
  SimpleLookup lookup;
  const char* column;
  const char* result;  // for kOrt
};

void PrintTo(const NamedLookup& lookup, std::ostream* out) { *out << lookup.name; }

class ByName : public ::testing::TestWithParam<NamedLookup> {
 protected:
  std::string lookup(std::string_view val, bool nick, Recordset* rows) {
    return GetParam().lookup(host.engine, val, nick, rows);
  }
  EngineHost host;
};

TEST_P(ByName, AnEmptyNameAnswersNothingAndLeavesTheRowSetAlone) {
  EXPECT_EQ(lookup("", true, nullptr), "");
  EXPECT_EQ(lookup("", false, nullptr), "");
  const auto rows = host.open_selektion({kOrt});
  EXPECT_EQ(lookup("", true, rows.get()), "");
  const auto none = host.open_selektion({});
  EXPECT_EQ(lookup("", false, none.get()), "");
  EXPECT_THAT(*host.log, IsEmpty());
}

TEST_P(ByName, AnAbsentRowSetIsAnError) {
  EXPECT_THROW(lookup("Ort", true, nullptr), ObjectNotSet);
}

TEST_P(ByName, TheNicknameIsSearchedFromTheFirstRowOn) {
  const auto rows = host.open_selektion({kOrt, kPlain});
  rows->move_next();
  host.connection->clear_log();
  EXPECT_EQ(lookup("Ort", true, rows.get()), GetParam().result);
  EXPECT_THAT(host.calls(), ElementsAre("#1 move_first", "#1 find NICKNAME_OF_FIELD = 'Ort'"));
  ASSERT_FALSE(rows->eof());
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(7));
}

TEST_P(ByName, TheFieldNameIsSearchedWhenItIsNoNickname) {
  SelektionRow misleading = kPlain;
  misleading.nickname = "ORT2";
  SelektionRow wanted = kOrt;
  wanted.name = "ORT2";
  wanted.nickname = "x";
  const auto rows = host.open_selektion({misleading, wanted});
  EXPECT_EQ(lookup("ORT2", false, rows.get()), GetParam().result);
  EXPECT_THAT(host.calls(), ElementsAre("#1 move_first", "#1 find NAME_OF_FIELD = 'ORT2'"));
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(7));
}

TEST_P(ByName, TheFirstOfSeveralFieldsIsTaken) {
  SelektionRow second = kPlain;
  second.nickname = "Ort";
  const auto rows = host.open_selektion({kOrt, second});
  EXPECT_EQ(lookup("Ort", true, rows.get()), GetParam().result);
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(7));
}

TEST_P(ByName, AFieldThatIsNotFoundAnswersNothingAndLeavesTheRowSetAtItsEnd) {
  const auto rows = host.open_selektion({kOrt, kPlain});
  EXPECT_EQ(lookup("Nirgends", true, rows.get()), "");
  EXPECT_THAT(*host.log, ElementsAre("#1 move_first", "#1 find NICKNAME_OF_FIELD = 'Nirgends'"));
  EXPECT_TRUE(rows->eof());
}

// It is no empty one.
TEST_P(ByName, ANameOfBlanksIsSought) {
  const auto rows = host.open_selektion({kOrt});
  EXPECT_EQ(lookup(" ", true, rows.get()), "");
  EXPECT_THAT(*host.log, ElementsAre("#1 move_first", "#1 find NICKNAME_OF_FIELD = ' '"));
}

TEST_P(ByName, ANameWithAnApostropheIsABadCriterion) {
  const auto rows = host.open_selektion({kOrt});
  EXPECT_THROW(lookup("O'rt", true, rows.get()), BadCriterion);
  EXPECT_THAT(*host.log, ElementsAre("#1 move_first", "#1 find NICKNAME_OF_FIELD = 'O'rt'"));
}

TEST_P(ByName, EveryFailingCallReachesTheCaller) {
  const auto rows = host.open_selektion({kOrt});
  lookup("Ort", true, rows.get());
  const std::size_t calls = host.connection->calls_made();
  ASSERT_GE(calls, 3U);
  for (std::size_t k = 1; k <= calls; ++k) {
    host.connection->clear_log();
    host.connection->fail_on_call(k);
    EXPECT_THROW(lookup("Ort", true, rows.get()), DatabaseError) << "call " << k;
    host.connection->fail_on_call(0);
    EXPECT_EQ(lookup("Ort", true, rows.get()), GetParam().result);
  }
}

// The lookups that upper-case and trim, and answer "" for NULL.
class NormalisedByName : public ByName {};

TEST_P(NormalisedByName, OnlyTheNamedColumnIsRead) {
  const auto rows = host.open_selektion({kOrt});
  lookup("Ort", true, rows.get());
  EXPECT_THAT(*host.log, ElementsAre("#1 move_first", "#1 find NICKNAME_OF_FIELD = 'Ort'",
                                     std::string("#1 value ") + GetParam().column));
}

TEST_P(NormalisedByName, NullAndEmptyAnswerAnEmptyText) {
  const auto rows = host.open_selektion({kPlain, kEmptyTexts});
  EXPECT_EQ(lookup("Menge", true, rows.get()), "");
  EXPECT_EQ(lookup("Leer", true, rows.get()), "");
}

// The lookups that answer the column as it is.
class PlainByName : public ByName {};

TEST_P(PlainByName, NullIsAnInvalidUse) {
  SelektionRow null = kPlain;
  null.table = {};
  const auto rows = host.open_selektion({null, kEmptyTexts});
  EXPECT_THROW(lookup("Menge", true, rows.get()), InvalidUseOfNull);
  EXPECT_EQ(lookup("Leer", true, rows.get()), "");
}

const auto kName = [](const auto& lookup) { return std::string(lookup.param.name); };

SimpleLookup table_name(std::string tab_type) {
  return [tab_type](const Comm_Sel& engine, std::string_view val, bool nick, Recordset* rows) {
    return engine.Get_TableName(val, nick, tab_type, rows);
  };
}

SimpleLookup condition(std::string ord_condition) {
  return [ord_condition](const Comm_Sel& engine, std::string_view val, bool nick, Recordset* rows) {
    return engine.Get_Condition(val, nick, ord_condition, rows);
  };
}

const std::vector<NamedLookup>& normalised_lookups() {
  static const std::vector<NamedLookup> lookups = {
      {"Get_SQLSelect", std::mem_fn(&Comm_Sel::Get_SQLSelect), "SQLSELECT", "INNER"},
      {"Get_Format_Sel", std::mem_fn(&Comm_Sel::Get_Format_Sel), "FORMAT", "DD.MM.YYYY"},
      {"Get_SQLValue", std::mem_fn(&Comm_Sel::Get_SQLValue), "SQLVALUE", "LAGER.ÖRT"}};
  return lookups;
}

const std::vector<NamedLookup>& plain_lookups() {
  static const std::vector<NamedLookup> lookups = {
      {"Get_TableName_MAIN", table_name("MAIN"), "TABLE_NAME", " LAGER "},
      {"Get_TableName_SECOND", table_name("SECOND"), "TABLE_NAME_II", " PERSONAL "},
      {"Get_TableName_THIRD", table_name("THIRD"), "TABLE_NAME_III", " ORTE "},
      {"Get_TableName_second_in_blanks", table_name("  second "), "TABLE_NAME_II", " PERSONAL "},
      {"Get_TableName_Main_in_mixed_case", table_name("Main"), "TABLE_NAME", " LAGER "},
      {"Get_Condition_I", condition("I"), "CONDITION", " A.ID = B.ID "},
      {"Get_Condition_II", condition("II"), "CONDITIONII", " B.ID = C.ID "}};
  return lookups;
}

INSTANTIATE_TEST_SUITE_P(Normalised, ByName, ::testing::ValuesIn(normalised_lookups()), kName);
INSTANTIATE_TEST_SUITE_P(Plain, ByName, ::testing::ValuesIn(plain_lookups()), kName);
INSTANTIATE_TEST_SUITE_P(Lookups, NormalisedByName, ::testing::ValuesIn(normalised_lookups()),
                         kName);
INSTANTIATE_TEST_SUITE_P(Lookups, PlainByName, ::testing::ValuesIn(plain_lookups()), kName);

TEST_F(FieldLookups, AWrongTabTypeIsShownAndAnswersNothing) {
  const auto rows = host.open_selektion({kOrt});
  for (const char* tab_type : {"FOURTH", "", "MAI", "MAIN2", "TABLE_NAME", "M AIN"}) {
    host.expect_debug_message(
        "Debug: Bad parameter TabType at function Get_TableName in Kestrova_Sel.Comm_Sel");
    EXPECT_EQ(engine.Get_TableName("Ort", true, tab_type, rows.get()), "") << tab_type;
    host.user->verify();
  }
}

TEST_F(FieldLookups, AWrongOrdConditionIsShownAndAnswersNothing) {
  const auto rows = host.open_selektion({kOrt});
  for (const char* ord_condition : {"i", "ii", "III", "", " I", "I ", "1"}) {
    host.expect_debug_message(
        "Debug: Bad parameter Ord_Ord_Condition at Kestrova_Sel.Comm_Sel.Get_Comdition");
    EXPECT_EQ(engine.Get_Condition("Ort", true, ord_condition, rows.get()), "") << ord_condition;
    host.user->verify();
  }
}

TEST_F(FieldLookups, WrongParametersAreNotJudgedForAFieldThatIsNotFound) {
  const auto rows = host.open_selektion({kOrt});
  EXPECT_EQ(engine.Get_TableName("Nirgends", true, "FOURTH", rows.get()), "");
  EXPECT_EQ(engine.Get_Condition("Nirgends", true, "i", rows.get()), "");
  EXPECT_EQ(engine.Get_TableName("", true, "FOURTH", nullptr), "");
  EXPECT_EQ(engine.Get_Condition("", true, "i", nullptr), "");
}

TEST_F(FieldLookups, TheExpressionIsSqlValueAsItIsOrTableAndName) {
  const auto rows = host.open_selektion({kOrt, kPlain, kEmptyTexts});
  EXPECT_EQ(engine.Get_FieldName_Sel("Ort", rows.get()), " lager.ört ");
  EXPECT_THAT(host.calls(), ElementsAre("#1 move_first", "#1 find NICKNAME_OF_FIELD = 'Ort'"));
  EXPECT_EQ(engine.Get_FieldName_Sel("Menge", rows.get()), "LAGER.MENGE");
  EXPECT_EQ(rows->value("ID_SELEKTION"), Value(8));
  EXPECT_EQ(engine.Get_FieldName_Sel("Leer", rows.get()), "");
}

TEST_F(FieldLookups, TheExpressionIsSearchedByNicknameOnly) {
  const auto rows = host.open_selektion({kEmptyTexts, kPlain});
  EXPECT_EQ(engine.Get_FieldName_Sel("LEERE", rows.get()), "");
  EXPECT_TRUE(rows->eof());
  host.connection->clear_log();
  EXPECT_EQ(engine.Get_FieldName_Sel("", nullptr), "");
  EXPECT_THAT(*host.log, IsEmpty());
  EXPECT_THROW(engine.Get_FieldName_Sel("Menge", nullptr), ObjectNotSet);
  EXPECT_THROW(engine.Get_FieldName_Sel("Men'ge", rows.get()), BadCriterion);
}

TEST_F(FieldLookups, ByNameLookupsWorkBeforeAnyHostIsInstalled) {
  const auto rows = host.open_selektion({kOrt});
  install_host({});
  EXPECT_EQ(engine.Get_SQLSelect("Ort", true, rows.get()), "INNER");
}

// --- By identifier ---------------------------------------------------------------------------

struct IdLookup {
  const char* name;
  std::function<std::string(const Comm_Sel&, std::int16_t, const std::shared_ptr<Connection>&)>
      lookup;
  const char* query;  // without the identifier
  Columns columns;
  Row row;
  const char* result;
};

void PrintTo(const IdLookup& lookup, std::ostream* out) { *out << lookup.name; }

class ById : public ::testing::TestWithParam<IdLookup> {
 protected:
  std::string lookup(std::int16_t id) { return GetParam().lookup(host.engine, id, connection); }
  std::string query(int id) { return GetParam().query + std::to_string(id); }
  void script(int id) { connection->answer(query(id), GetParam().columns, {GetParam().row}); }

  EngineHost host;
  // Not the connection of the context.
  std::shared_ptr<RecordingConnection> connection =
      std::make_shared<RecordingConnection>(ConnectionKind::kSqlServer, host.log);
};

TEST_P(ById, OneQueryIsOpenedReadAndClosed) {
  script(17);
  EXPECT_EQ(lookup(17), GetParam().result);
  EXPECT_THAT(host.calls(), ElementsAre(opened(query(17)), "#1 close"));
  EXPECT_EQ(connection->open_recordsets(), 0U);
}

TEST_P(ById, TheIdentifierIsWrittenAsADecimalInteger) {
  for (const std::int16_t id :
       {std::int16_t{0}, std::int16_t{-5}, std::numeric_limits<std::int16_t>::max(),
        std::numeric_limits<std::int16_t>::min()}) {
    script(id);
    EXPECT_EQ(lookup(id), GetParam().result);
    EXPECT_EQ(connection->statements().back(), query(id));
  }
}

TEST_P(ById, AnUnknownIdentifierIsReadAtTheEnd) {
  connection->answer(query(17), GetParam().columns);
  EXPECT_THROW(lookup(17), NoCurrentRecord);
  EXPECT_EQ(connection->open_recordsets(), 0U);
}

TEST_P(ById, AnAbsentConnectionIsAnError) {
  connection = nullptr;
  EXPECT_THROW(lookup(17), ObjectNotSet);
  EXPECT_THAT(*host.log, IsEmpty());
}

TEST_P(ById, EveryFailingCallReachesTheCallerAndNothingStaysOpen) {
  script(17);
  lookup(17);
  const std::size_t calls = connection->calls_made();
  ASSERT_GE(calls, 2U);
  for (std::size_t k = 1; k <= calls; ++k) {
    connection->clear_log();
    connection->fail_on_call(k);
    EXPECT_THROW(lookup(17), DatabaseError) << "call " << k;
    EXPECT_EQ(connection->open_recordsets(), 0U) << "call " << k;
    connection->fail_on_call(0);
    EXPECT_EQ(lookup(17), GetParam().result);
  }
}

constexpr const char* kSqlSelectQuery = "SELECT SQLSELECT FROM SELEKTION WHERE ID_SELEKTION = ";
constexpr const char* kTableQuery =
    "SELECT TABLE_NAME,TABLE_NAME_II,TABLE_NAME_III FROM SELEKTION WHERE ID_SELEKTION = ";
constexpr const char* kNameQuery =
    "SELECT NAME_OF_FIELD, TABLE_NAME, SQLVALUE FROM SELEKTION WHERE ID_SELEKTION = ";
constexpr const char* kConditionQuery =
    "SELECT CONDITION, CONDITIONII FROM SELEKTION WHERE ID_SELEKTION = ";
constexpr const char* kSqlValueQuery = "SELECT SQLVALUE FROM SELEKTION WHERE ID_SELEKTION = ";

auto table_by_id(std::string tab_type) {
  return [tab_type](const Comm_Sel& engine, std::int16_t id,
                    const std::shared_ptr<Connection>& connection) {
    return engine.Get_TableNameFromID(id, tab_type, connection);
  };
}

auto condition_by_id(std::string ord_condition) {
  return [ord_condition](const Comm_Sel& engine, std::int16_t id,
                         const std::shared_ptr<Connection>& connection) {
    return engine.Get_ConditionFromID(id, ord_condition, connection);
  };
}

const Columns kSqlSelectColumns = {{"SQLSELECT"}};
const Columns kTableColumns = {{"TABLE_NAME"}, {"TABLE_NAME_II"}, {"TABLE_NAME_III"}};
const Columns kNameColumns = {{"NAME_OF_FIELD"}, {"TABLE_NAME"}, {"SQLVALUE"}};
const Columns kConditionColumns = {{"CONDITION"}, {"CONDITIONII"}};
const Columns kSqlValueColumns = {{"SQLVALUE"}};
const Value kNull = {};

INSTANTIATE_TEST_SUITE_P(Lookups, ById,
                         ::testing::Values(IdLookup{"Get_SQLSelectFromID",
                                                    std::mem_fn(&Comm_Sel::Get_SQLSelectFromID),
                                                    kSqlSelectQuery,
                                                    kSqlSelectColumns,
                                                    {" triple "},
                                                    "TRIPLE"},
                                           IdLookup{"Get_SQLSelectFromID_NULL",
                                                    std::mem_fn(&Comm_Sel::Get_SQLSelectFromID),
                                                    kSqlSelectQuery,
                                                    kSqlSelectColumns,
                                                    {kNull},
                                                    ""},
                                           IdLookup{"Get_SQLSelectFromID_blanks",
                                                    std::mem_fn(&Comm_Sel::Get_SQLSelectFromID),
                                                    kSqlSelectQuery,
                                                    kSqlSelectColumns,
                                                    {"  "},
                                                    ""},
                                           IdLookup{"Get_TableNameFromID_MAIN",
                                                    table_by_id("MAIN"),
                                                    kTableQuery,
                                                    kTableColumns,
                                                    {" A ", " B ", " C "},
                                                    " A "},
                                           IdLookup{"Get_TableNameFromID_SECOND",
                                                    table_by_id(" Second "),
                                                    kTableQuery,
                                                    kTableColumns,
                                                    {" A ", " B ", " C "},
                                                    " B "},
                                           IdLookup{"Get_TableNameFromID_THIRD",
                                                    table_by_id("third"),
                                                    kTableQuery,
                                                    kTableColumns,
                                                    {" A ", " B ", " C "},
                                                    " C "},
                                           IdLookup{"Get_TableNameFromID_NULL",
                                                    table_by_id("SECOND"),
                                                    kTableQuery,
                                                    kTableColumns,
                                                    {"A", kNull, "C"},
                                                    ""},
                                           IdLookup{"Get_FieldNameFromID_SQLVALUE",
                                                    std::mem_fn(&Comm_Sel::Get_FieldNameFromID),
                                                    kNameQuery,
                                                    kNameColumns,
                                                    {"MENGE", "LAGER", " f(x.y) "},
                                                    " f(x.y) "},
                                           IdLookup{"Get_FieldNameFromID_name",
                                                    std::mem_fn(&Comm_Sel::Get_FieldNameFromID),
                                                    kNameQuery,
                                                    kNameColumns,
                                                    {" MENGE ", " LAGER ", kNull},
                                                    "LAGER.MENGE"},
                                           IdLookup{"Get_FieldNameFromID_na",
                                                    std::mem_fn(&Comm_Sel::Get_FieldNameFromID),
                                                    kNameQuery,
                                                    kNameColumns,
                                                    {"MENGE", "LAGER", "na"},
                                                    "na"},
                                           IdLookup{"Get_ConditionFromID_I",
                                                    condition_by_id("I"),
                                                    kConditionQuery,
                                                    kConditionColumns,
                                                    {" A = B ", " B = C "},
                                                    " A = B "},
                                           IdLookup{"Get_ConditionFromID_II",
                                                    condition_by_id("II"),
                                                    kConditionQuery,
                                                    kConditionColumns,
                                                    {" A = B ", " B = C "},
                                                    " B = C "},
                                           IdLookup{"Get_ConditionFromID_NULL",
                                                    condition_by_id("I"),
                                                    kConditionQuery,
                                                    kConditionColumns,
                                                    {kNull, "B = C"},
                                                    ""},
                                           IdLookup{"Get_SQLValueFromID",
                                                    std::mem_fn(&Comm_Sel::Get_SQLValueFromID),
                                                    kSqlValueQuery,
                                                    kSqlValueColumns,
                                                    {" lager.größe "},
                                                    "LAGER.GRÖßE"},
                                           IdLookup{"Get_SQLValueFromID_NULL",
                                                    std::mem_fn(&Comm_Sel::Get_SQLValueFromID),
                                                    kSqlValueQuery,
                                                    kSqlValueColumns,
                                                    {kNull},
                                                    ""}),
                         kName);

TEST_F(FieldLookups, AnIdentifierWithAWrongTabTypeIsShownAndAnswersNothing) {
  host.connection->answer(std::string(kTableQuery) + "17", kTableColumns, {{"A", "B", "C"}});
  for (const char* tab_type : {"FOURTH", "", "MAI"}) {
    host.expect_debug_message(
        "Debug: Bad parameter TabType in fuction Kestrova_Sel.Comm_Sel.Get_TableNameFromID");
    EXPECT_EQ(engine.Get_TableNameFromID(17, tab_type, host.connection), "") << tab_type;
    host.user->verify();
    EXPECT_EQ(host.connection->open_recordsets(), 0U);
  }
}

TEST_F(FieldLookups, AnIdentifierWithAnotherOrdConditionAnswersNothingSilently) {
  host.connection->answer(std::string(kConditionQuery) + "17", kConditionColumns, {{"A", "B"}});
  for (const char* ord_condition : {"i", "III", "", " I"}) {
    EXPECT_EQ(engine.Get_ConditionFromID(17, ord_condition, host.connection), "") << ord_condition;
  }
  EXPECT_EQ(host.connection->open_recordsets(), 0U);
}

TEST_F(FieldLookups, AnExpressionThatSaysNothingShowsTheBareIdentifier) {
  for (const char* expression : {"", "NA"}) {
    EngineHost fresh;
    fresh.connection->answer(std::string(kNameQuery) + "17", kNameColumns,
                             {{"MENGE", "LAGER", expression}});
    fresh.user->expect_message({"17", 0, "Kestrova", "", 0});
    EXPECT_EQ(fresh.engine.Get_FieldNameFromID(17, fresh.connection), expression);
  }
}

TEST_F(FieldLookups, ByIdLookupsWorkBeforeAnyHostIsInstalled) {
  host.connection->answer(std::string(kSqlSelectQuery) + "17", kSqlSelectColumns, {{"INNER"}});
  install_host({});
  EXPECT_EQ(engine.Get_SQLSelectFromID(17, host.connection), "INNER");
}

// --- From a display name to an identifier ----------------------------------------------------

TEST_F(FieldLookups, ADisplayNameIsFoundInTheEditorsListWithoutRegardToCaseAndBlanks) {
  host.form->add("Ort", 7);
  host.form->add("  Größe der Fläche ", 8);
  host.form->add("ORT", 9);
  EXPECT_EQ(engine.get_FieldID("Ort"), 7);
  EXPECT_EQ(engine.get_FieldID("  oRT "), 7) << "the first match counts";
  EXPECT_EQ(engine.get_FieldID("GRÖßE DER FLÄCHE"), 8);
  EXPECT_EQ(engine.get_FieldID("größe der fläche   "), 8);
}

TEST_F(FieldLookups, ADisplayNameThatIsNotInTheListIsZero) {
  EXPECT_EQ(engine.get_FieldID("Ort"), 0);
  host.form->add("Ort", 7);
  EXPECT_EQ(engine.get_FieldID("Or"), 0);
  EXPECT_EQ(engine.get_FieldID("Orte"), 0);
  EXPECT_EQ(engine.get_FieldID("O rt"), 0);
  EXPECT_EQ(engine.get_FieldID(""), 0);
}

TEST_F(FieldLookups, TheLookupOfADisplayNameSelectsNothing) {
  host.form->add("Ort", 7);
  EXPECT_EQ(engine.get_FieldID("Ort"), 7);
  EXPECT_EQ(host.form->fields.index(), -1);
  EXPECT_THAT(*host.log, IsEmpty());
}

TEST_F(FieldLookups, AnIdentifierIsA16BitNumber) {
  host.form->add("least", -32768);
  host.form->add("or line", -2);
  host.form->add("greatest", 32767);
  host.form->add("too great", 32768);
  host.form->add("too small", -32769);
  EXPECT_EQ(engine.get_FieldID("least"), -32768);
  EXPECT_EQ(engine.get_FieldID("or line"), -2);
  EXPECT_EQ(engine.get_FieldID("greatest"), 32767);
  EXPECT_THROW(engine.get_FieldID("too great"), Overflow);
  EXPECT_THROW(engine.get_FieldID("too small"), Overflow);
}

// --- Lookups that come before any selection, in a library as it is loaded ----------------------

// The editor that the library makes then has empty lists.
class WithoutEditor : public FieldLookups {
 protected:
  WithoutEditor() { module_state().theSelectionForm = nullptr; }

  // The editor that has been made: the library's own, with the lists that it has from the start.
  static void expect_editor_of_the_library() {
    const std::shared_ptr<SelectionForm> made = module_state().theSelectionForm;
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(&selection_form(), made.get()) << "it is kept";
    EXPECT_EQ(made->field_list().name(), "cboField");
    EXPECT_EQ(made->field_list().count(), 0);
    EXPECT_EQ(made->value_list().count(), 0);
  }
};

TEST_F(WithoutEditor, NoDisplayNameIsInTheList) {
  EXPECT_EQ(engine.get_FieldID("Ort"), 0);
  expect_editor_of_the_library();
}

TEST_F(WithoutEditor, NoHostIsNeededForADisplayName) {
  install_host({});
  EXPECT_EQ(engine.get_FieldID("Ort"), 0);
  expect_editor_of_the_library();
}

TEST_F(WithoutEditor, NoFieldIsSelectedWhoseTypeCouldBeAsked) {
  EXPECT_THROW(engine.Get_TypeOfField(host.context, "", false, nullptr, "1WL"), InvalidArgument);
  expect_editor_of_the_library();
}

TEST_F(WithoutEditor, NoFieldIsSelectedToConvertAValueOf) {
  EXPECT_THROW(engine.ApcboValue(host.context, "A", "Ort", nullptr, "1WL"), InvalidArgument);
  expect_editor_of_the_library();
}

// A display line's field has the identifier 0 then, of which the suite is asked the format.
TEST_F(WithoutEditor, ADisplayLineIsReadWithTheFieldThatNoListKnows) {
  EXPECT_EQ(engine.TransComp_NoLabels(host.context, "1WL", "Menge >= 5", "GETVALUE", false, false),
            "5");
  EXPECT_THAT(*host.log, ElementsAre("MapFieldId('1WL', 0)", "field_format('TRANSPORT', 100)"));
  expect_editor_of_the_library();
}

}  // namespace
}  // namespace kestrova::test
