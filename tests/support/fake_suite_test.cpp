#include "tests/support/fake_suite.h"

#include <gtest/gtest.h>

#include <array>

#include "platform/error.h"
#include "tests/support/recording_connection.h"

namespace kestrova::test {
namespace {

using Log = std::vector<std::string>;

TEST(FakeSuite, AnswersTableAccessFromTheArguments) {
  FakeSuite suite;
  const KesVar context;
  const auto service = suite.table_access();
  EXPECT_EQ(service->AddFieldTables("LAGER", 5, "A,B", "X", context), "A,B<LAGER,5,X>");
  EXPECT_EQ(service->GetFieldExpression("LAGER", 5, 0, 0, context), "EXPR(LAGER,5)");
  EXPECT_THROW(FakeSuite().table_access()->GetFieldExpression("LAGER", 0, 0, 0, context),
               ItemNotFound);
  EXPECT_EQ(service->MapFieldId("FO", 5), 105);
  EXPECT_EQ(service->field_format("LAGER", 5, context), "");
  EXPECT_EQ(service->order_restriction(context), " WHERE ORDERS");
  EXPECT_EQ(suite.log(), (Log{
                             "AddFieldTables('LAGER', 5, 'A,B', 'X')",
                             "GetFieldExpression('LAGER', 5, 0, 0)",
                             "MapFieldId('FO', 5)",
                             "field_format('LAGER', 5)",
                             "order_restriction()",
                         }));
  EXPECT_EQ(suite.calls_of("MapFieldId"), (Log{"MapFieldId('FO', 5)"}));
}

TEST(FakeSuite, AddsATableOnceAndAConditionWithAnd) {
  FakeSuite suite;
  const auto service = suite.table_access();
  EXPECT_EQ(service->AddTable("", "A", ""), "A");
  EXPECT_EQ(service->AddTable("A", "B", ""), "A,B");
  EXPECT_EQ(service->AddTable("A,B", "B", ""), "A,B");
  EXPECT_EQ(service->AddTable("A,BC", "B", ""), "A,BC,B");
  EXPECT_EQ(service->AddTable("A", "", ""), "A");
  EXPECT_EQ(service->AddCondition("", "Q"), "Q");
  EXPECT_EQ(service->AddCondition("P", ""), "P");
  EXPECT_EQ(service->AddCondition("P", "Q"), "P AND Q");
}

TEST(FakeSuite, AnswersWhatATestHasSet) {
  FakeSuite suite;
  const KesVar context;
  suite.answers().texts[3441] = "ODER";
  suite.answers().options["B018"] = true;
  suite.answers().standard_model = 12;
  suite.answers().field_formats[7] = "0.00";
  suite.answers().order_restriction = "";
  suite.answers().map_field_id = [](std::string_view, std::int32_t id) { return id == 3 ? 0 : id; };
  suite.answers().field_lists["FO"] = {{"Holzart", 3}, {"Preis", 9}};
  EXPECT_EQ(suite.loc_texts()->GetText(3441, context), "ODER");
  EXPECT_EQ(suite.loc_texts()->GetText(6, context), "Wahr");
  EXPECT_EQ(suite.loc_texts()->GetText(5, context), "Falsch");
  EXPECT_EQ(suite.loc_texts()->GetText(7, context), "T7");
  EXPECT_TRUE(suite.suite_options()->GetOptionFlag("B018", context));
  EXPECT_FALSE(suite.suite_options()->GetOptionFlag("B049", context));
  EXPECT_EQ(suite.model_settings()->standard_model(context, "FO", 0), 12);
  EXPECT_EQ(suite.table_access()->field_format("LAGER", 7, context), "0.00");
  EXPECT_EQ(suite.table_access()->order_restriction(context), "");
  EXPECT_EQ(suite.table_access()->MapFieldId("FO", 3), 0);
  suite.answers().has_restrictions = false;
  suite.answers().format = [](std::string_view number) { return "N" + std::string(number); };
  EXPECT_EQ(suite.access_level_filter()->restrict("LAGER", "P", context, 0), "P");
  EXPECT_EQ(suite.num_formatter()->format("1,5", "."), "N1,5");
  ComboBox list("cboField", ComboBox::Style::kDropDownList);
  suite.table_access()->FillFieldList("FO", list, context, 0);
  suite.table_access()->FillFieldList("OTHER", list, context, 0);
  EXPECT_EQ(list.entries(), (std::vector<ListEntry>{{"Holzart", 3}, {"Preis", 9}}));
}

TEST(FakeSuite, RestrictsFormatsAndDates) {
  FakeSuite suite;
  const KesVar context;
  EXPECT_EQ(suite.access_level_filter()->restrict("LAGER", "P", context, 0), "P {LAGER,0}");
  EXPECT_EQ(suite.num_formatter()->format("1,5", "."), "1,5");
  const auto dates = suite.date_formatter();
  EXPECT_EQ(dates->server_date("1.2.2024", true, "DMY"), "S(1.2.2024)");
  EXPECT_EQ(dates->server_date(45000.75, "DMY"), "D45000");
  EXPECT_TRUE(dates->is_set(45000));
  EXPECT_FALSE(dates->is_set(0));
  EXPECT_EQ(suite.log(), (Log{
                             "restrict('LAGER', 'P', 0)",
                             "format('1,5', '.')",
                             "server_date('1.2.2024', true, 'DMY')",
                             "server_date(45000.75, 'DMY')",
                             "is_set(45000)",
                             "is_set(0)",
                         }));
}

struct TokenCase {
  std::string_view text;
  std::string_view separator;
  std::vector<std::string_view> records;
};

TEST(FakeSuite, WalksRecords) {
  const std::array<TokenCase, 6> cases = {{
      {"", ";", {}},
      {"a", ";", {"a"}},
      {"a;bc;", ";", {"a", "bc"}},
      {"a;;c", ";", {"a", "", "c"}},
      {";", ";", {""}},
      {"a\r\nb\r\n", "\r\n", {"a", "b"}},
  }};
  FakeSuite suite;
  const auto tokens = suite.str_tokens();
  for (const TokenCase& c : cases) {
    SCOPED_TRACE(std::string(c.text));
    const auto count = static_cast<std::int32_t>(c.records.size());
    EXPECT_EQ(tokens->TokenCount(c.text, c.separator), count);
    for (std::int32_t i = 0; i < count; ++i) {
      EXPECT_EQ(tokens->TokenAt(c.text, c.separator, i), c.records[static_cast<std::size_t>(i)]);
    }
    for (std::int32_t i = count; i-- > 0;) {
      EXPECT_EQ(tokens->TokenAt(c.text, c.separator, i), c.records[static_cast<std::size_t>(i)]);
    }
    EXPECT_THROW(tokens->TokenAt(c.text, c.separator, count), InvalidArgument);
    EXPECT_THROW(tokens->TokenAt(c.text, c.separator, -1), InvalidArgument);
  }
}

TEST(FakeSuite, SharesItsLogWithTheDatabase) {
  const CallLog log = make_call_log();
  FakeSuite suite(log);
  RecordingConnection connection(ConnectionKind::kSqlServer, log);
  suite.loc_texts()->GetText(1, KesVar());
  connection.execute("DELETE FROM A");
  suite.loc_texts()->GetText(2, KesVar());
  EXPECT_EQ(*log, (Log{"GetText(1)", "execute DELETE FROM A", "GetText(2)"}));
}

TEST(FakeSuite, FailsOnExactlyTheChosenCall) {
  FakeSuite suite;
  suite.fail_on_call(2);
  const KesVar context;
  EXPECT_EQ(suite.loc_texts()->GetText(1, context), "T1");
  try {
    suite.suite_options()->GetOptionFlag("B018", context);
    ADD_FAILURE() << "The scripted failure did not come.";
  } catch (const InvalidArgument& error) {
    EXPECT_STREQ(error.what(), "scripted service failure of call 2: GetOptionFlag('B018')");
  }
  EXPECT_EQ(suite.loc_texts()->GetText(3, context), "T3");
  EXPECT_EQ(suite.calls_made(), 3U);
}

TEST(FakeSuite, CountsTheServicesThatAreHeld) {
  FakeSuite suite;
  EXPECT_EQ(suite.live_services(), 0U);
  auto texts = suite.loc_texts();
  const auto tokens = suite.str_tokens();
  suite.num_formatter();
  EXPECT_EQ(suite.live_services(), 2U);
  texts.reset();
  EXPECT_EQ(suite.live_services(), 1U);
}

TEST(FakeSuite, AServiceMayOutliveIt) {
  std::shared_ptr<LocTexts> texts;
  {
    FakeSuite suite;
    texts = suite.loc_texts();
  }
  EXPECT_EQ(texts->GetText(7, KesVar()), "T7");
}

struct NumberCase {
  std::string_view text;
  std::optional<double> german;
  std::optional<double> english;
};

TEST(FakeLocale, ReadsNumbersOfItsLanguage) {
  // clang-format off
  const NumberCase cases[] = {
      {"5",           5.0,          5.0},
      {"  -5 ",       -5.0,         -5.0},
      {"+5",          5.0,          5.0},
      {"1,5",         1.5,          15.0},
      {"1.5",         15.0,         1.5},
      {"1.234,5",     1234.5,       std::nullopt},
      {"1,234.5",     std::nullopt, 1234.5},
      {"1e3",         1000.0,       1000.0},
      {"2E-2",        0.02,         0.02},
      {"",            std::nullopt, std::nullopt},
      {" ",           std::nullopt, std::nullopt},
      {"-",           std::nullopt, std::nullopt},
      {"--5",         std::nullopt, std::nullopt},
      {"5-",          std::nullopt, std::nullopt},
      {"- 5",         std::nullopt, std::nullopt},
      {"1 000",       std::nullopt, std::nullopt},
      {"1e",          std::nullopt, std::nullopt},
      {"1,5,0",       std::nullopt, 150.0},
      {",",           std::nullopt, std::nullopt},
      {".",           std::nullopt, std::nullopt},
      {"Null",        std::nullopt, std::nullopt},
      {"0x10",        std::nullopt, std::nullopt},
      {"inf",         std::nullopt, std::nullopt},
  };
  // clang-format on
  const FakeLocale german(FakeLocale::Language::kGerman);
  const FakeLocale english(FakeLocale::Language::kEnglish);
  for (const NumberCase& c : cases) {
    EXPECT_EQ(german.to_number(c.text), c.german) << c.text;
    EXPECT_EQ(english.to_number(c.text), c.english) << c.text;
    EXPECT_EQ(german.is_numeric(c.text), c.german.has_value()) << c.text;
  }
}

TEST(FakeLocale, ReadsDatesOfItsLanguage) {
  const FakeLocale german(FakeLocale::Language::kGerman);
  const FakeLocale english(FakeLocale::Language::kEnglish);
  EXPECT_EQ(german.to_date("1.2.2024"), (DateTime{2024, 2, 1}));
  EXPECT_EQ(english.to_date("1/2/2024"), (DateTime{2024, 1, 2}));
  EXPECT_EQ(german.to_date(" 1.2.29 "), (DateTime{2029, 2, 1}));
  EXPECT_EQ(german.to_date("1.2.30"), (DateTime{1930, 2, 1}));
  EXPECT_EQ(english.to_date("2024-02-29"), (DateTime{2024, 2, 29}));
  for (const std::string_view text :
       {"", "1.2", "1.2.", "30.2.2024", "1.13.2024", "1.2.2024.5", "1 2 2024", "heute"}) {
    EXPECT_EQ(german.to_date(text), std::nullopt) << text;
  }
}

TEST(FakeLocale, WritesNumbersAndTruth) {
  const FakeLocale german(FakeLocale::Language::kGerman);
  const FakeLocale english(FakeLocale::Language::kEnglish);
  EXPECT_EQ(german.decimal_separator(), ",");
  EXPECT_EQ(english.decimal_separator(), ".");
  EXPECT_EQ(german.format(3.14159, "0.00"), "3,14");
  EXPECT_EQ(english.format(-3.26, "00.0"), "-03.3");
  EXPECT_EQ(german.format(1234.4, "0"), "1234");
  EXPECT_EQ(german.boolean_text(true), "Wahr");
  EXPECT_EQ(english.boolean_text(false), "False");
}

}  // namespace
}  // namespace kestrova::test
