// FROM texts, expressions and field numbers out of the catalogue.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/error.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"
#include "tests/platform/standalone/sample_catalogue.h"

namespace kestrova::test {
namespace {

constexpr const char* kLogFrom = "LOGS INNER JOIN LISTENKOPF ON LISTENKOPF.ID = LOGS.ID_LISTENKOPF";
constexpr const char* kJoinSort = " LEFT JOIN HOLZSORTE ON HOLZSORTE.ID = LOGS.ID_HOLZSORTE";
constexpr const char* kJoinInvoice = " LEFT JOIN LOGS_RECH ON LOGS_RECH.ID_LOGS = LOGS.ID";
constexpr const char* kJoinCustomer =
    " LEFT JOIN PERSONAL AS Kunde ON KUNDE.ID = LOGS_RECH.ID_KUNDE";
constexpr const char* kJoinPlace =
    " LEFT JOIN (SELECT ID, NAME FROM ORTE) ORT ON ORT.ID = PERSONAL.ID_ORT";

class TableAccess : public testing::Test {
 protected:
  std::string add_field_tables(std::string_view key, std::int32_t number, std::string_view from) {
    return access_->AddFieldTables(key, number, from, "", context_);
  }

  std::shared_ptr<Suite> suite_ = sample_suite();
  std::shared_ptr<TableAccessService> access_ = suite_->table_access();
  KesVar context_ = sample_context();
};

// Runs the operation and answers the message of the error of type E that it raises.
template <class E, class Operation>
std::string message_of(Operation operation) {
  try {
    operation();
  } catch (const E& error) {
    return error.what();
  }
  return "no error";
}

// --- AddFieldTables

TEST_F(TableAccess, AnEmptyFromBeginsWithTheBaseFrom) {
  EXPECT_EQ(add_field_tables("LOG", 0, ""), kLogFrom);
  EXPECT_EQ(add_field_tables("LOG", 0, "  "), kLogFrom);
  EXPECT_EQ(add_field_tables("LOG", 1, ""), kLogFrom);
  EXPECT_EQ(add_field_tables("LOG", 3, ""), std::string(kLogFrom) + kJoinSort);
}

TEST_F(TableAccess, TheTablesOfAFieldComeInTheirOrder) {
  EXPECT_EQ(add_field_tables("LOG", 4, ""), std::string(kLogFrom) + kJoinInvoice + kJoinCustomer);
}

TEST_F(TableAccess, EachTableIsAddedOnce) {
  std::string from = add_field_tables("LOG", 204, "");
  from = add_field_tables("LOG", 4, from);
  from = add_field_tables("LOG", 204, from);
  from = add_field_tables("LOG", 3, from);
  from = add_field_tables("LOG", 4, from);
  EXPECT_EQ(from, std::string(kLogFrom) + kJoinInvoice + kJoinCustomer + kJoinSort);
}

TEST_F(TableAccess, TwoFromTextsByTurnsDoNotMix) {
  const std::string with_sort = add_field_tables("LOG", 3, "");
  const std::string with_invoice = add_field_tables("LOG", 204, "");
  EXPECT_EQ(add_field_tables("LOG", 204, with_sort), with_sort + kJoinInvoice);
  EXPECT_EQ(add_field_tables("LOG", 3, with_invoice), with_invoice + kJoinSort);
  EXPECT_EQ(add_field_tables("LOG", 3, with_sort), with_sort);
}

TEST_F(TableAccess, ANonEmptyFromGetsNoBaseFrom) {
  EXPECT_EQ(add_field_tables("LOG", 0, "PERSONAL"), "PERSONAL");
  EXPECT_EQ(add_field_tables("LOG", 204, "PERSONAL"), std::string("PERSONAL") + kJoinInvoice);
}

TEST_F(TableAccess, OnlyATableInTablePositionIsThere) {
  struct Row {
    const char* from;
    bool is_there;
  };
  // clang-format off
  const Row rows[] = {
      {"LOGS_RECH", true},
      {"logs_rech", true},
      {"A, [Logs_Rech]", true},
      {"A JOIN dbo.LOGS_RECH ON 1=1", true},
      {"INVOICES LOGS_RECH", true},
      {"LOGS_RECH R", false},           // known as R only
      {"LOGS_RECHNUNG", false},
      {"A JOIN B ON LOGS_RECH.ID = B.ID", false},
      {"A JOIN B ON B.X = 'LOGS_RECH'", false},
      {"(SELECT 1 AS X FROM LOGS_RECH) S", false},
  };
  // clang-format on
  for (const auto& [from, is_there] : rows) {
    const std::string expected = is_there ? from : std::string(from) + kJoinInvoice;
    EXPECT_EQ(add_field_tables("LOG", 204, from), expected);
  }
}

TEST_F(TableAccess, AnAliasIsWhatCounts) {
  EXPECT_EQ(add_field_tables("LOG", 4, "LOGS_RECH, KUNDE"), "LOGS_RECH, KUNDE");
  EXPECT_EQ(add_field_tables("LOG", 4, "LOGS_RECH, PERSONAL"),
            std::string("LOGS_RECH, PERSONAL") + kJoinCustomer);
  EXPECT_EQ(add_field_tables("PERSONAL", 9, add_field_tables("PERSONAL", 9, "")),
            std::string("PERSONAL") + kJoinPlace);
}

TEST_F(TableAccess, AnEmptyTableKeyAnswersTheFromAsItIs) {
  EXPECT_EQ(add_field_tables("", 0, ""), "");
  EXPECT_EQ(add_field_tables("", 0, "A, B"), "A, B");
  EXPECT_EQ(add_field_tables("", 17, " A"), " A");
}

TEST_F(TableAccess, TheRunTypeChangesNothing) {
  EXPECT_EQ(access_->AddFieldTables("LOG", 3, "", "A4", context_), add_field_tables("LOG", 3, ""));
}

TEST_F(TableAccess, AnUnknownTableKeyIsNamed) {
  EXPECT_EQ(message_of<ItemNotFound>([&] { add_field_tables("XYZ", 0, ""); }),
            "There is no table key 'XYZ'.");
  EXPECT_EQ(message_of<ItemNotFound>([&] { add_field_tables("log", 0, "A"); }),
            "There is no table key 'log'.");
}

TEST_F(TableAccess, AnUnknownNumberIsNamed) {
  EXPECT_EQ(message_of<ItemNotFound>([&] { add_field_tables("LOG", 99, "A"); }),
            "The table key 'LOG' has no field 99: the field is not offered.");
}

// --- GetFieldExpression and field_format

TEST_F(TableAccess, AFieldHasItsExpressionAndFormat) {
  EXPECT_EQ(access_->GetFieldExpression("LOG", 4, 0, 0, context_), "KUNDE.NAME");
  EXPECT_EQ(access_->GetFieldExpression("BBZV", 42, 0, 0, context_), "ISNULL(BB_AUFTRAG.MENGE, 0)");
  EXPECT_EQ(access_->field_format("LOG", 1, context_), "");
  EXPECT_EQ(access_->field_format("LOG", 2, context_), "0.000");
  EXPECT_EQ(access_->field_format("LOG", 3, context_), "");  // NULL in the catalogue
  EXPECT_EQ(access_->field_format("PERSONAL", 7, context_), "dd.mm.yyyy");
}

TEST_F(TableAccess, ANumberThatTheKeyLacksHasNeither) {
  EXPECT_EQ(
      message_of<ItemNotFound>([&] { access_->GetFieldExpression("LOG", 0, 0, 0, context_); }),
      "The table key 'LOG' has no field 0: the field is not offered.");
  EXPECT_EQ(message_of<ItemNotFound>([&] { access_->field_format("LOG", -1, context_); }),
            "The table key 'LOG' has no field -1: the field is not offered.");
  EXPECT_EQ(message_of<ItemNotFound>([&] { access_->GetFieldExpression("", 1, 0, 0, context_); }),
            "There is no table key ''.");
}

// --- AddTable

TEST_F(TableAccess, ATableIsPutBehindAComma) {
  EXPECT_EQ(access_->AddTable("", "LOGS", ""), "LOGS");
  EXPECT_EQ(access_->AddTable(" ", "LOGS ", ""), "LOGS");
  EXPECT_EQ(access_->AddTable("LOGS", "PLAN", "R"), "LOGS, PLAN");
  EXPECT_EQ(access_->AddTable(kLogFrom, "PLAN", ""), std::string(kLogFrom) + ", PLAN");
}

TEST_F(TableAccess, ATableThatIsThereIsNotAddedAgain) {
  EXPECT_EQ(access_->AddTable("LOGS, PLAN", "plan", ""), "LOGS, PLAN");
  EXPECT_EQ(access_->AddTable(kLogFrom, "LISTENKOPF", ""), kLogFrom);
  EXPECT_EQ(access_->AddTable("LOGS, PERSONAL KUNDE", "PERSONAL AS Kunde", ""),
            "LOGS, PERSONAL KUNDE");
}

TEST_F(TableAccess, ATableWhoseNameOnlyOccursIsAdded) {
  EXPECT_EQ(access_->AddTable("LOGS_RECH", "LOGS", ""), "LOGS_RECH, LOGS");
  EXPECT_EQ(access_->AddTable("A JOIN B ON PLAN.ID = B.ID", "PLAN", ""),
            "A JOIN B ON PLAN.ID = B.ID, PLAN");
  EXPECT_EQ(access_->AddTable("PERSONAL KUNDE", "PERSONAL", ""), "PERSONAL KUNDE, PERSONAL");
}

TEST_F(TableAccess, AnEmptyTableAddsNothing) {
  EXPECT_EQ(access_->AddTable("LOGS", "", ""), "LOGS");
  EXPECT_EQ(access_->AddTable("LOGS", "  ", ""), "LOGS");
  EXPECT_EQ(access_->AddTable("", "", ""), "");
}

// --- MapFieldId

struct MapRow {
  const char* name;
  const char* relation;
  std::int32_t field_id;
  std::int32_t number;
};

void PrintTo(const MapRow& row, std::ostream* out) { *out << row.relation << " " << row.field_id; }

class FieldMap : public testing::TestWithParam<MapRow> {};

TEST_P(FieldMap, AnswersTheNumberOfTheBestRow) {
  const auto access = sample_suite()->table_access();
  EXPECT_EQ(access->MapFieldId(GetParam().relation, GetParam().field_id), GetParam().number);
}

// clang-format off
const MapRow kMapRows[] = {
    {"Exact", "1VM", 13, 2},
    {"ExactGoesBeforeThePrefix", "1VM", 12, 1},
    {"PrefixServesWhatTheExactRowsLack", "1VM", 14, 902},
    {"Prefix", "1VN", 12, 901},
    {"PrefixItself", "1V", 12, 901},
    {"PrefixInEitherCase", "1vn", 12, 901},
    {"ExactOnlyInItsOwnCase", "1vm", 12, 901},
    {"LongestPrefix", "LEISTUNGS_BB_7", 5, 50},
    {"ShorterPrefixServesWhatTheLongerLacks", "LEISTUNGS_BB_7", 6, 61},
    {"ShorterPrefix", "LEISTUNGS_X", 5, 51},
    {"Reverse", "1VM_REVERS", 2, 13},
    {"ReverseIsServedByNoPrefix", "1VM_REVERS", 14, 0},
    {"UnknownField", "1VM", 99, 0},
    {"UnknownRelation", "XYZ", 12, 0},
    {"PartOfAPrefix", "1", 12, 0},
    {"NoRelation", "", 12, 0},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(TableAccess, FieldMap, testing::ValuesIn(kMapRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(TableAccess, MapsForRelationsByTurns) {
  EXPECT_EQ(access_->MapFieldId("1VM", 12), 1);
  EXPECT_EQ(access_->MapFieldId("1VN", 12), 901);
  EXPECT_EQ(access_->MapFieldId("1VM", 12), 1);
}

// --- FillFieldList

TEST_F(TableAccess, AListOffersItsFieldsInItsOrder) {
  ComboBox fields("cboField", ComboBox::Style::kDropDownList);
  access_->FillFieldList("LIZ", fields, context_, 0);
  EXPECT_THAT(fields.entries(),
              testing::ElementsAre(ListEntry{"Geburtstag", 7}, ListEntry{"Name", 1}));
  EXPECT_EQ(fields.index(), -1);
}

TEST_F(TableAccess, ATableKeyOffersItsFieldsWithATextByNumber) {
  ComboBox fields("cboField", ComboBox::Style::kDropDownList);
  access_->FillFieldList("LOG", fields, context_, 0);
  EXPECT_THAT(fields.entries(),
              testing::ElementsAre(ListEntry{"Losnummer", 1}, ListEntry{"Holzmasse", 2},
                                   ListEntry{"Sorte", 3}, ListEntry{"Käufer", 4}));
}

TEST_F(TableAccess, AnUnknownListIsEmpty) {
  ComboBox fields("cboField", ComboBox::Style::kDropDownList);
  fields.add("from another relation");
  access_->FillFieldList("XYZ", fields, context_, 0);
  EXPECT_THAT(fields.entries(), testing::IsEmpty());
}

TEST_F(TableAccess, AListWhoseTextsCannotBeReadStaysAsItWas) {
  ComboBox fields("cboField", ComboBox::Style::kDropDownList);
  fields.add("as before");
  context_.strLanguage = "XX";
  EXPECT_THROW(access_->FillFieldList("LIZ", fields, context_, 0), DatabaseError);
  EXPECT_THAT(fields.entries(), testing::ElementsAre(ListEntry{"as before", 0}));
}

// --- AddCondition and order_restriction

TEST_F(TableAccess, ConditionsAreJoinedByAnd) {
  EXPECT_EQ(access_->AddCondition("", "A >= '01.01.2024'"), "A >= '01.01.2024'");
  EXPECT_EQ(access_->AddCondition("A >= '01.01.2024'", "A <= '31.12.2024'"),
            "A >= '01.01.2024' AND A <= '31.12.2024'");
  EXPECT_EQ(access_->AddCondition("A >= '01.01.2024'", ""), "A >= '01.01.2024'");
}

TEST_F(TableAccess, TheOrderRestrictionIsATextOfTheCatalogue) {
  EXPECT_EQ(access_->order_restriction(context_), " WHERE STORNODATUM IS NULL");
  SampleCatalogue without = sample_catalogue();
  without.texts.clear();
  const auto suite = make_standalone_suite(connection_with(without),
                                           std::make_shared<SettingsUserLocale>("DE", "DMY"));
  EXPECT_EQ(suite->table_access()->order_restriction(context_), "");
}

// --- A catalogue that contradicts itself

struct FaultRow {
  const char* name;
  void (*spoil)(SampleCatalogue&);
  const char* message;
};

void PrintTo(const FaultRow& row, std::ostream* out) { *out << row.name; }

class FaultyCatalogue : public testing::TestWithParam<FaultRow> {};

TEST_P(FaultyCatalogue, IsRefused) {
  SampleCatalogue catalogue = sample_catalogue();
  GetParam().spoil(catalogue);
  const auto suite = make_standalone_suite(connection_with(catalogue),
                                           std::make_shared<SettingsUserLocale>("DE", "DMY"));
  EXPECT_EQ(message_of<Error>([&] { suite->table_access()->MapFieldId("1VM", 12); }),
            GetParam().message);
}

// clang-format off
const FaultRow kFaults[] = {
    {"FieldOfAnUnknownKey",
     [](SampleCatalogue& c) { c.fields.push_back({"XYZ", 1, 101, "X.A", ""}); },
     "SUITE_FIELDS names the table key 'XYZ', which SUITE_TABLE_KEYS does not have."},
    {"TableOfAnUnknownField",
     [](SampleCatalogue& c) { c.field_tables.push_back({"LOG", 99, "X", "LEFT JOIN X ON 1=1"}); },
     "SUITE_FIELD_TABLES names the field 99 of the table key 'LOG', which SUITE_FIELDS does not have."},
    {"TableOfAnUnknownKey",
     [](SampleCatalogue& c) { c.field_tables.push_back({"XYZ", 1, "X", "LEFT JOIN X ON 1=1"}); },
     "SUITE_FIELD_TABLES names the field 1 of the table key 'XYZ', which SUITE_FIELDS does not have."},
    {"JoinTextOfAnotherTable",
     [](SampleCatalogue& c) { c.field_tables.push_back({"LOG", 1, "X", "LEFT JOIN Y ON Y.ID = X.ID"}); },
     "The join text 'LEFT JOIN Y ON Y.ID = X.ID' does not join the table X."},
    {"OneNameForTwoJoins",
     [](SampleCatalogue& c) { c.field_tables.push_back({"LOG", 1, "HOLZSORTE", "LEFT JOIN HOLZSORTE ON 1=1"}); },
     "The table key 'LOG' joins HOLZSORTE in two ways: "
     "'LEFT JOIN HOLZSORTE ON HOLZSORTE.ID = LOGS.ID_HOLZSORTE' and 'LEFT JOIN HOLZSORTE ON 1=1'."},
    {"ExpressionWithoutText",
     [](SampleCatalogue& c) { c.fields.push_back({"LOG", 5, 101, Value(), ""}); },
     "A NULL has no text."},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(TableAccess, FaultyCatalogue, testing::ValuesIn(kFaults),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace kestrova::test
