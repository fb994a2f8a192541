// The other services of the standalone suite, and how the suite reads its tables.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/error.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"
#include "tests/platform/standalone/sample_catalogue.h"

namespace kestrova::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StandaloneSuite : public testing::Test {
 protected:
  std::shared_ptr<RecordingConnection> connection_ = connection_with(sample_catalogue());
  std::shared_ptr<Suite> suite_ =
      make_standalone_suite(connection_, std::make_shared<SettingsUserLocale>("DE", "DMY"));
  KesVar context_ = sample_context();
};

// --- Reading

TEST_F(StandaloneSuite, ReadsNothingBeforeItIsAsked) {
  suite_->loc_texts();
  suite_->table_access();
  suite_->access_level_filter();
  suite_->suite_options();
  EXPECT_THAT(connection_->statements(), IsEmpty());
}

TEST_F(StandaloneSuite, ReadsItsCatalogueOnceForAllServices) {
  suite_->table_access()->MapFieldId("1VM", 12);
  suite_->table_access()->GetFieldExpression("LOG", 1, 0, 0, context_);
  suite_->access_level_filter()->restrict("PERSONAL", "", context_, 0);
  EXPECT_THAT(connection_->statements(),
              ElementsAre(kTableKeysQuery, kFieldsQuery, kFieldTablesQuery, kFieldListsQuery,
                          kFieldMapQuery, kAccessQuery, kTextsQuery));
  EXPECT_EQ(connection_->open_recordsets(), 0U);
}

TEST_F(StandaloneSuite, ReadsALanguageAndTheOptionsOnce) {
  suite_->loc_texts()->GetText(5, context_);
  suite_->loc_texts()->GetText(101, context_);
  suite_->suite_options()->GetOptionFlag("B018", context_);
  suite_->suite_options()->GetOptionFlag("B049", context_);
  EXPECT_THAT(connection_->statements(), ElementsAre(kGermanTextsQuery, kOptionsQuery));
}

TEST_F(StandaloneSuite, ReadsAgainAfterAFailureWhereverItCame) {
  for (std::size_t k = 1;; ++k) {
    const auto connection = connection_with(sample_catalogue());
    const auto suite =
        make_standalone_suite(connection, std::make_shared<SettingsUserLocale>("DE", "DMY"));
    const auto access = suite->table_access();
    connection->fail_on_call(k);
    bool has_failed = false;
    try {
      access->AddFieldTables("LOG", 3, "", "", context_);
    } catch (const DatabaseError&) {
      has_failed = true;
    }
    EXPECT_EQ(connection->open_recordsets(), 0U) << "call " << k;
    EXPECT_EQ(access->AddFieldTables("LOG", 3, "", "", context_),
              "LOGS INNER JOIN LISTENKOPF ON LISTENKOPF.ID = LOGS.ID_LISTENKOPF"
              " LEFT JOIN HOLZSORTE ON HOLZSORTE.ID = LOGS.ID_HOLZSORTE")
        << "call " << k;
    if (!has_failed) {
      EXPECT_GT(k, 100U);  // the sweep has gone through all tables
      break;
    }
  }
}

TEST_F(StandaloneSuite, TextsAndOptionsAreReadAgainAfterAFailure) {
  connection_->fail_on_call(1);
  EXPECT_THROW(suite_->loc_texts()->GetText(5, context_), DatabaseError);
  EXPECT_EQ(suite_->loc_texts()->GetText(5, context_), "Falsch");
  connection_->clear_log();
  connection_->fail_on_call(2);
  EXPECT_THROW(suite_->suite_options()->GetOptionFlag("B018", context_), DatabaseError);
  EXPECT_TRUE(suite_->suite_options()->GetOptionFlag("B018", context_));
}

TEST(MakeStandaloneSuite, NeedsConnectionAndLocale) {
  EXPECT_THROW(make_standalone_suite(nullptr, std::make_shared<SettingsUserLocale>("DE", "DMY")),
               ObjectNotSet);
  EXPECT_THROW(make_standalone_suite(std::make_shared<RecordingConnection>(), nullptr),
               ObjectNotSet);
}

TEST(MakeStandaloneSuite, ServicesMayOutliveTheSuite) {
  const auto access = sample_suite()->table_access();
  EXPECT_EQ(access->MapFieldId("1VM", 12), 1);
}

// --- LocTexts

TEST_F(StandaloneSuite, TheCustomersTextGoesBeforeTheSuites) {
  const auto texts = suite_->loc_texts();
  EXPECT_EQ(texts->GetText(102, context_), "Holzmasse");
  EXPECT_EQ(texts->GetText(101, context_), "Losnummer");  // the customer's is empty
  EXPECT_EQ(texts->GetText(103, context_), "Sorte");      // the customer's is NULL
}

TEST_F(StandaloneSuite, ANumberWithoutTextIsEmpty) {
  EXPECT_EQ(suite_->loc_texts()->GetText(9999, context_), "");
  EXPECT_EQ(suite_->loc_texts()->GetText(204, context_), "");
}

TEST_F(StandaloneSuite, EachLanguageHasItsOwnTexts) {
  connection_->answer("SELECT ID_STRING, [EN], [CUSTOM_EN] FROM STRINGS",
                      {{"ID_STRING", FieldType::kInteger}, {"EN"}, {"CUSTOM_EN"}},
                      {{5, "False", Value()}});
  EXPECT_EQ(suite_->loc_texts()->GetText(5, context_), "Falsch");
  context_.strLanguage = "EN";
  EXPECT_EQ(suite_->loc_texts()->GetText(5, context_), "False");
  context_.strLanguage = "DE";
  EXPECT_EQ(suite_->loc_texts()->GetText(5, context_), "Falsch");
}

TEST_F(StandaloneSuite, ALanguageThatIsNoColumnNameIsRefusedBeforeItIsAsked) {
  for (const char* language : {"", "D E", "DE]", "DE'", "DE;", "Ä"}) {
    context_.strLanguage = language;
    EXPECT_THROW(suite_->loc_texts()->GetText(5, context_), InvalidArgument) << language;
  }
  EXPECT_THAT(connection_->statements(), IsEmpty());
}

TEST_F(StandaloneSuite, ALanguageWithoutColumnsIsTheDatabasesError) {
  connection_->fail("SELECT ID_STRING, [XX], [CUSTOM_XX] FROM STRINGS",
                    DatabaseError("no such column: XX", "42S22"));
  context_.strLanguage = "XX";
  try {
    suite_->loc_texts()->GetText(5, context_);
    FAIL() << "no error";
  } catch (const DatabaseError& error) {
    EXPECT_STREQ(error.what(), "no such column: XX");
    EXPECT_EQ(error.sqlstate(), "42S22");
  }
}

// --- AccessLevelFilter

TEST_F(StandaloneSuite, ARestrictionIsFilledInAndJoined) {
  const auto filter = suite_->access_level_filter();
  EXPECT_EQ(filter->restrict("PERSONAL", "PERSONAL.KUNDE = 1", context_, 0),
            "PERSONAL.KUNDE = 1 AND PERSONAL.ID_ACCESS_LEVELS IN (1,2,3)");
  EXPECT_EQ(filter->restrict("klr", "A = 1", context_, 0), "A = 1 AND KLR.EBENE <= 3");
  context_.strAccessLevelList = "SELECT ID FROM ACCESS_LEVELS WHERE NAME = '{level}'";
  EXPECT_EQ(filter->restrict("PERSONAL", "", context_, 0),
            "PERSONAL.ID_ACCESS_LEVELS IN (SELECT ID FROM ACCESS_LEVELS WHERE NAME = '{level}')");
}

TEST_F(StandaloneSuite, AnEmptyConditionLeavesTheRestriction) {
  EXPECT_EQ(suite_->access_level_filter()->restrict("KLR", "", context_, 0), "KLR.EBENE <= 3");
}

TEST_F(StandaloneSuite, ATableWithoutRestrictionLeavesTheCondition) {
  const auto filter = suite_->access_level_filter();
  EXPECT_EQ(filter->restrict("PLAN_KOPF", "A = 1 OR B = 1", context_, 0), "A = 1 OR B = 1");
  EXPECT_EQ(filter->restrict("PLAN_KOPF", "", context_, 0), "");
}

TEST_F(StandaloneSuite, AnOrWidensNothing) {
  const auto filter = suite_->access_level_filter();
  EXPECT_EQ(filter->restrict("KLR", "A = 1 OR B = 1", context_, 0),
            "(A = 1 OR B = 1) AND KLR.EBENE <= 3");
  EXPECT_EQ(filter->restrict("MODELS", "A = 1", context_, 0),
            "A = 1 AND (MODELS.ID_ACCESS_LEVELS IS NULL OR MODELS.ID_ACCESS_LEVELS IN (1,2,3))");
  EXPECT_EQ(filter->restrict("MODELS", "", context_, 0),
            "(MODELS.ID_ACCESS_LEVELS IS NULL OR MODELS.ID_ACCESS_LEVELS IN (1,2,3))");
}

TEST_F(StandaloneSuite, TheOptionOfTheFilterChangesNothing) {
  EXPECT_EQ(suite_->access_level_filter()->restrict("KLR", "", context_, 99), "KLR.EBENE <= 3");
}

// --- ModelSettings

TEST_F(StandaloneSuite, TheStandardModelIsAskedForEachTime) {
  const std::string query =
      "SELECT ID_MODEL FROM SUITE_MODEL_SETTINGS WHERE ID_USER = 77 AND RELATION = '2PVK'";
  const Columns columns = {{"ID_MODEL", FieldType::kInteger}};
  connection_->answer(query, columns, {{4711}});
  connection_->answer(query, columns);
  const auto settings = suite_->model_settings();
  EXPECT_EQ(settings->standard_model(context_, "2PVK", 0), 4711);
  EXPECT_EQ(settings->standard_model(context_, "2PVK", 0), 0);
  EXPECT_EQ(connection_->open_recordsets(), 0U);
}

TEST_F(StandaloneSuite, AnApostropheInAModelRelationStaysText) {
  connection_->answer(
      "SELECT ID_MODEL FROM SUITE_MODEL_SETTINGS WHERE ID_USER = 77 AND RELATION = 'A''B'",
      {{"ID_MODEL", FieldType::kInteger}}, {{1}});
  EXPECT_EQ(suite_->model_settings()->standard_model(context_, "A'B", 0), 1);
}

// --- SuiteOptions

TEST_F(StandaloneSuite, AnOptionIsOnExactlyWhenItsNumberIsOne) {
  const auto options = suite_->suite_options();
  EXPECT_TRUE(options->GetOptionFlag("B018", context_));
  EXPECT_TRUE(options->GetOptionFlag("b018", context_));
  EXPECT_FALSE(options->GetOptionFlag("B049", context_));
  EXPECT_FALSE(options->GetOptionFlag("B057", context_));           // NULL
  EXPECT_FALSE(options->GetOptionFlag("CHANGE_MODELS", context_));  // 2
  EXPECT_FALSE(options->GetOptionFlag("B999", context_));           // not in the table
}

// --- StrTokens

TEST_F(StandaloneSuite, EachCallerWalksRecordsByItself) {
  const auto tokens = suite_->str_tokens();
  EXPECT_NE(tokens, suite_->str_tokens());
  EXPECT_EQ(tokens->TokenCount("1 = 2;3 = 4;", ";"), 2);
}

// --- NumFormatter

struct NumberRow {
  const char* name;
  const char* language;
  const char* number;
  const char* blank;
  const char* formatted;
};

void PrintTo(const NumberRow& row, std::ostream* out) { *out << row.language << " " << row.number; }

class ServerNumbers : public testing::TestWithParam<NumberRow> {};

TEST_P(ServerNumbers, AreInTheServersNotation) {
  const auto suite =
      make_standalone_suite(std::make_shared<RecordingConnection>(),
                            std::make_shared<SettingsUserLocale>(GetParam().language, "DMY"));
  const auto formatter = suite->num_formatter();
  const std::string formatted = formatter->format(GetParam().number, GetParam().blank);
  EXPECT_EQ(formatted, GetParam().formatted);
  EXPECT_EQ(formatter->format(formatted, GetParam().blank), formatted) << "formatted again";
}

// clang-format off
const NumberRow kNumberRows[] = {
    {"Whole", "DE", "12", " ", "12"},
    {"GermanFraction", "DE", "1,5", " ", "1.5"},
    {"GermanGroups", "DE", "1.234.567,25", " ", "1234567.25"},
    {"GermanGroupsWithoutFraction", "DE", "1.234.567", " ", "1234567"},
    {"BlanksGroup", "DE", "1 234,50", " ", "1234.50"},
    {"OtherGroupingCharacter", "DE", "1'234,50", "'", "1234.50"},
    {"NoGroupingCharacter", "DE", "1,50", "", "1.50"},
    {"ServersNotationStays", "DE", "1.5", " ", "1.5"},
    {"Negative", "DE", "-0,5", " ", "-0.5"},
    {"FractionAlone", "DE", ",5", " ", ".5"},
    {"Exponent", "DE", "1,5E-3", " ", "1.5E-3"},
    {"EveryDigitIsKept", "DE", "0,12345678901234567890", " ", "0.12345678901234567890"},
    {"EnglishFraction", "EN", "1.5", " ", "1.5"},
    {"EnglishGroups", "EN", "1,234.5", " ", "1234.5"},
    {"FrenchNarrowSpace", "FR", "1\u202F234,5", " ", "1234.5"},
    {"EmptyInList", "DE", "()", " ", "()"},
    {"Null", "DE", "Null", " ", "Null"},
    {"Text", "DE", "'Fichte 5'", " ", "'Fichte 5'"},
    {"Infinity", "EN", "inf", " ", "inf"},
    {"NegativeInfinity", "EN", "-inf", " ", "-inf"},
    {"Nothing", "DE", "", " ", ""},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(NumFormatter, ServerNumbers, testing::ValuesIn(kNumberRows),
                         [](const auto& test) { return std::string(test.param.name); });

// --- DateFormatter

TEST_F(StandaloneSuite, ATypedDateBecomesTheServersText) {
  const auto formatter = suite_->date_formatter();
  EXPECT_EQ(formatter->server_date("3/4/21", true, "DMY"), "03.04.2021");
  EXPECT_EQ(formatter->server_date("3/4/21", false, "mdy"), "04.03.2021");
  EXPECT_EQ(formatter->server_date("2021-04-03 7:30", false, "DMY"), "03.04.2021 07:30");
}

TEST_F(StandaloneSuite, AnImpossibleDateIsQuoted) {
  try {
    suite_->date_formatter()->server_date("31.2.2021", false, "DMY");
    FAIL() << "no error";
  } catch (const TypeMismatch& error) {
    EXPECT_STREQ(error.what(), "'31.2.2021' is no date.");
  }
  EXPECT_THROW(suite_->date_formatter()->server_date("heute", false, "DMY"), TypeMismatch);
  EXPECT_THROW(suite_->date_formatter()->server_date("1.1.2021", false, "XYZ"), InvalidArgument);
}

TEST_F(StandaloneSuite, TheServersFormStaysAsItIsInEveryOrder) {
  for (const char* order : {"DMY", "MDY", "YMD", "YDM"}) {
    EXPECT_EQ(suite_->date_formatter()->server_date("03.04.2021", false, order), "03.04.2021");
  }
}

TEST_F(StandaloneSuite, ADayCountIsSetWhenItIsNotZero) {
  const auto formatter = suite_->date_formatter();
  EXPECT_FALSE(formatter->is_set(0));
  EXPECT_TRUE(formatter->is_set(45292));
  EXPECT_TRUE(formatter->is_set(-1));
}

TEST_F(StandaloneSuite, ADayCountBecomesTheServersText) {
  const auto formatter = suite_->date_formatter();
  EXPECT_EQ(formatter->server_date(45292, "MDY"), "01.01.2024");
  EXPECT_EQ(formatter->server_date(45292.75, "DMY"), "01.01.2024 18:00:00");
  EXPECT_EQ(formatter->server_date(to_day_count({2024, 12, 31, 23, 59, 59}), "DMY"),
            "31.12.2024 23:59:59");
}

}  // namespace
}  // namespace kestrova::test
