// TransComp_NoLabels: field, operator and value of one record.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/engine/engine_host.h"
#include "tests/support/golden.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kLookup = "SELECT * FROM SELEKTION WHERE ID_SELEKTION = ";

// Knows every field, all of one type.
class OneTypeConnection : public RecordingConnection {
 public:
  explicit OneTypeConnection(FieldType type) { answer("SELECT TOP 0 F FROM T", {{"F", type}}); }

  std::unique_ptr<Recordset> open(std::string_view source, CursorType cursor,
                                  LockType lock) override {
    if (source.starts_with(kLookup)) {
      ++lookups;
      answer(std::string(source),
             {{"SQLSELECT"}, {"TABLE_NAME"}, {"TABLE_NAME_II"}, {"NAME_OF_FIELD"}, {"SQLVALUE"}},
             {{Value(), "T", Value(), "F", Value()}});
    }
    return RecordingConnection::open(source, cursor, lock);
  }

  int lookups = 0;
};

// The name of the error that an operation raises, "" when it raises none.
template <class Operation>
std::string error_of(Operation operation) {
  try {
    operation();
  } catch (const InvalidArgument&) {
    return "InvalidArgument";
  } catch (const Overflow&) {
    return "Overflow";
  } catch (const TypeMismatch&) {
    return "TypeMismatch";
  } catch (const std::exception& error) {
    return error.what();
  }
  return "";
}

TEST(TransComp, GoldenTable) {
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/trans_comp.tsv")) {
    SCOPED_TRACE(row.place() + ": " + row["record"] + " " + row["param"]);
    const bool looks_up = !row["field_type"].empty();
    EngineHost host;
    const auto connection = std::make_shared<OneTypeConnection>(
        looks_up ? static_cast<FieldType>(row.number("field_type")) : FieldType::kEmpty);
    host.context.dbado = connection;
    if (!row["message"].empty()) host.expect_debug_message(row["message"]);

    std::string result;
    const std::string error = error_of([&] {
      result = host.engine.TransComp_NoLabels(host.context, "SONST", row["record"], row["param"],
                                              row.flag("from_database"), row.flag("konver"));
    });

    EXPECT_EQ(error, row["error"]);
    EXPECT_EQ(result, row["result"]);
    EXPECT_EQ(connection->lookups, looks_up ? 1 : 0);
    EXPECT_EQ(connection->statements().size(), looks_up ? 2U : 0U);
    EXPECT_EQ(connection->open_recordsets(), 0U);
  }
}

class TransCompCalls : public ::testing::Test {
 protected:
  std::string part(std::string_view relation, std::string_view record, std::string_view param,
                   bool from_database = true) {
    return host.engine.TransComp_NoLabels(host.context, relation, record, param, from_database,
                                          false);
  }
  EngineHost host;
};

const SelektionRow kPlain = {.id = 12, .name = "MENGE", .table = "LAGER"};

TEST_F(TransCompCalls, AWrongPartIsShownAfterTheTypeLookup) {
  host.know_type(kPlain, FieldType::kInteger);
  host.expect_debug_message(
      "Debug: Pad strParam in function TransComp_NoLabels in Kestrova_Sel.Comm_Sel");
  EXPECT_EQ(part("SONST", "12 = 5", "GETTYPE"), "");
  EXPECT_THAT(host.calls(),
              ElementsAre(opened("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 12"), "#1 close",
                          opened("SELECT TOP 0 MENGE FROM LAGER"), "#2 type MENGE", "#2 close",
                          "message 'Debug: Pad strParam in function TransComp_NoLabels in "
                          "Kestrova_Sel.Comm_Sel', flags 16, title 'Kestrova'"));
}

TEST_F(TransCompCalls, TheFieldNeedsNoLookup) {
  host.context.dbado = nullptr;
  module_state().theSelectionForm = nullptr;
  for (const char* relation : {"1WL", "2PVK", "BBF", "SONST"}) {
    EXPECT_EQ(part(relation, "12 = 5", "GETFIELD"), "12");
    EXPECT_EQ(part(relation, "Menge = 5", "GETFIELD", false), "Menge");
  }
  EXPECT_THAT(*host.log, IsEmpty());
  EXPECT_EQ(module_state().theSelectionForm, nullptr);
}

TEST_F(TransCompCalls, ACatalogueRelationLooksUpTheDisplayFormat) {
  EXPECT_EQ(part("1WL", "12 = 5", "GETOPERATOR"), "=");
  EXPECT_EQ(part("1WL", "12 = 5", "GETVALUE"), "5");
  EXPECT_THAT(*host.log, ElementsAre("MapFieldId('1WL', 12)", "field_format('TRANSPORT', 112)",
                                     "MapFieldId('1WL', 12)", "field_format('TRANSPORT', 112)"));
}

TEST_F(TransCompCalls, ARestrictedRelationLooksUpTheExpression) {
  host.connection->answer("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>",
                          {{"", FieldType::kInteger}});
  EXPECT_EQ(part("BBF", "12 = 5", "GETVALUE"), "5");
  EXPECT_THAT(
      *host.log,
      ElementsAre("MapFieldId('BBF', 12)", "AddFieldTables('BBF', 112, '', 'R7')",
                  "GetFieldExpression('BBF', 112, 0, 0)",
                  opened("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>"), "#1 type 0", "#1 close"));
}

TEST_F(TransCompCalls, AnotherRelationLooksUpTheColumn) {
  host.know_type(kPlain, FieldType::kInteger);
  EXPECT_EQ(part("SONST", "12 = 5", "GETVALUE"), "5");
  EXPECT_THAT(host.calls(),
              ElementsAre(opened("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 12"), "#1 close",
                          opened("SELECT TOP 0 MENGE FROM LAGER"), "#2 type MENGE", "#2 close"));
}

TEST_F(TransCompCalls, ADisplayNameIsLookedUpInTheEditorsList) {
  host.form->add("Menge", 12);
  host.suite->answers().field_formats[112] = "dd.mm.yyyy";
  EXPECT_EQ(part("1WL", " menge  > 5", "GETVALUE", false), "GETDATE()+5");
  EXPECT_THAT(*host.log, ElementsAre("MapFieldId('1WL', 12)", "field_format('TRANSPORT', 112)"));
}

TEST_F(TransCompCalls, AnUnknownDisplayNameIsFieldZero) {
  EXPECT_EQ(part("1WL", "Nirgends = 5", "GETVALUE", false), "5");
  EXPECT_THAT(*host.log, ElementsAre("MapFieldId('1WL', 0)", "field_format('TRANSPORT', 100)"));
  EXPECT_THROW(part("SONST", "Nirgends = 5", "GETVALUE", false), DatabaseError);
  EXPECT_THAT(host.connection->statements(),
              ElementsAre("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 0"));
}

TEST_F(TransCompCalls, AFailingLookupReachesTheCaller) {
  host.connection->fail("SELECT * FROM SELEKTION WHERE ID_SELEKTION = 12",
                        DatabaseError("connection lost", "08S01", 11));
  try {
    part("SONST", "12 = 5", "GETVALUE");
    FAIL() << "no error";
  } catch (const DatabaseError& error) {
    EXPECT_STREQ(error.what(), "connection lost");
    EXPECT_EQ(error.sqlstate(), "08S01");
    EXPECT_EQ(error.native_code(), 11);
  }
}

TEST_F(TransCompCalls, TheDateFormatterGetsTheUsersDateOrder) {
  host.form->add("Datum", 12);
  host.suite->answers().field_formats[112] = "dd.mm.yyyy";
  host.context.strDateOrder = "MDY";
  EXPECT_EQ(part("1WL", "Datum = '3/4/2021'", "GETVALUE", false), "'S(3/4/2021)'");
  EXPECT_THAT(host.suite->calls_of("server_date"),
              ElementsAre("server_date('3/4/2021', false, 'MDY')"));
}

TEST_F(TransCompCalls, TheWordsOfABooleanAreAskedOnceAndKept) {
  host.form->add("Status", 12);
  host.connection->answer("SELECT TOP 0 EXPR(BBF,112) FROM <BBF,112,R7>",
                          {{"", FieldType::kBoolean}});
  EXPECT_EQ(part("BBF", "Status = Wahr", "GETVALUE", false), "'Wahr'");
  EXPECT_EQ(part("BBF", "Status = Nein", "GETVALUE", false), "'Falsch'");
  EXPECT_THAT(host.suite->calls_of("GetText"), ElementsAre("GetText(6)", "GetText(5)"));
  EXPECT_EQ(host.suite->live_services(), 1U) << "the text service is made once and kept";
}

}  // namespace
}  // namespace kestrova::test
