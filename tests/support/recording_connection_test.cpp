#include "tests/support/recording_connection.h"

#include <gtest/gtest.h>

#include <functional>

namespace kestrova::test {
namespace {

using Log = std::vector<std::string>;

const Columns kIdAndName = {{"ID", FieldType::kInteger}, {"NAME", FieldType::kVarWChar}};

std::unique_ptr<Recordset> open(RecordingConnection& connection, std::string_view source) {
  return connection.open(source, CursorType::kForwardOnly, LockType::kReadOnly);
}

std::string message_of(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const DatabaseError& error) {
    return error.what();
  }
  return "no error";
}

TEST(RecordingConnection, WritesDownEveryCallInOrderWithTheNumberOfItsRowSet) {
  RecordingConnection connection;
  connection.answer("SELECT ID, NAME FROM A", kIdAndName, {{1, "Fichte"}, {2, Value()}});
  connection.table("B", kIdAndName, {{7, "Eiche"}});
  {
    const auto a = open(connection, "SELECT ID, NAME FROM A");
    const auto b = connection.open("B", CursorType::kKeyset, LockType::kOptimistic);
    EXPECT_EQ(a->value("ID"), Value(1));
    EXPECT_EQ(a->type(1), FieldType::kVarWChar);
    a->move_next();
    b->set_value("NAME", Value());
    b->set_value("ID", 8);
    b->update();
    connection.execute("DELETE FROM C");
    b->find("ID = 8");
    a->move_first();
    b->close();
    b->close();
  }
  EXPECT_EQ(connection.log(), (Log{
                                  "open SELECT ID, NAME FROM A [forward-only, read-only]",
                                  "open B [keyset, optimistic]",
                                  "#1 value ID",
                                  "#1 type 1",
                                  "#1 move_next",
                                  "#2 set_value NAME = NULL",
                                  "#2 set_value ID = 8",
                                  "#2 update",
                                  "execute DELETE FROM C",
                                  "#2 find ID = 8",
                                  "#1 move_first",
                                  "#2 close",
                                  "#1 close",
                              }));
  EXPECT_EQ(connection.statements(), (Log{"SELECT ID, NAME FROM A", "B", "DELETE FROM C"}));
  EXPECT_EQ(connection.calls_made(), 11U);
}

TEST(RecordingConnection, UsesTheAnswersOfATextInOrderAndTheLastOneForGood) {
  RecordingConnection connection;
  connection.answer("SELECT ID FROM A", {{"ID"}}, {{1}});
  connection.fail("SELECT ID FROM A", DatabaseError("deadlock", "40001", 1205));
  connection.answer("SELECT ID FROM A", {{"ID"}}, {{2}});
  EXPECT_EQ(open(connection, "SELECT ID FROM A")->value(0), Value(1));
  try {
    open(connection, "SELECT ID FROM A");
    ADD_FAILURE() << "The scripted failure did not come.";
  } catch (const DatabaseError& error) {
    EXPECT_STREQ(error.what(), "deadlock");
    EXPECT_EQ(error.sqlstate(), "40001");
    EXPECT_EQ(error.native_code(), 1205);
  }
  EXPECT_EQ(open(connection, "SELECT ID FROM A")->value(0), Value(2));
  EXPECT_EQ(open(connection, "SELECT ID FROM A")->value(0), Value(2));
}

TEST(RecordingConnection, AnswersExecutesWithTheScriptedCountsAndOthersWithNone) {
  RecordingConnection connection;
  connection.answer_execute("DELETE FROM A", 3);
  connection.answer_execute("DELETE FROM A", 0);
  connection.fail("DELETE FROM B", DatabaseError("no permission"));
  EXPECT_EQ(connection.execute("DELETE FROM A"), 3);
  EXPECT_EQ(connection.execute("DELETE FROM A"), 0);
  EXPECT_EQ(connection.execute("DELETE FROM C"), 0);
  EXPECT_EQ(message_of([&] { connection.execute("DELETE FROM B"); }), "no permission");
  connection.answer_executes(2);
  EXPECT_EQ(connection.execute("DELETE FROM C"), 2);
  EXPECT_EQ(connection.execute("DELETE FROM A"), 0) << "a script goes before";
}

TEST(RecordingConnection, RefusesToOpenWhatIsNotScripted) {
  RecordingConnection connection;
  connection.answer("SELECT ID FROM A", {{"ID"}}, {});
  connection.answer_execute("DELETE FROM A", 1);
  EXPECT_EQ(message_of([&] { open(connection, "SELECT  ID FROM A"); }),
            "Nothing is scripted for the open of: SELECT  ID FROM A");
  EXPECT_EQ(message_of([&] { open(connection, "DELETE FROM A"); }),
            "Nothing is scripted for the open of: DELETE FROM A");
  EXPECT_EQ(connection.statements(), (Log{"SELECT  ID FROM A", "DELETE FROM A"}));
  EXPECT_EQ(connection.open_recordsets(), 0U);
}

TEST(RecordingConnection, RefusesRowsThatDoNotFitTheirColumns) {
  RecordingConnection connection;
  EXPECT_THROW(connection.answer("SELECT 1", kIdAndName, {{1}}), InvalidArgument);
  EXPECT_THROW(connection.table("A", kIdAndName, {{1, "Fichte", 2}}), InvalidArgument);
}

TEST(RecordingConnection, ShowsWhatUpdatesLeftInATable) {
  RecordingConnection connection;
  connection.table("Baumart", kIdAndName, {{1, "Fichte"}, {2, "Eiche"}});
  const auto rows = connection.open("BAUMART", CursorType::kKeyset, LockType::kOptimistic);
  rows->move_next();
  rows->set_value("NAME", "Ulme");
  rows->update();
  EXPECT_EQ(connection.rows_of("baumart"), (Rows{{1, "Fichte"}, {2, "Ulme"}}));
  EXPECT_THROW(connection.rows_of("STANDORT"), ItemNotFound);
}

TEST(RecordingConnection, OfColumnsWithOneNameTheFirstCounts) {
  RecordingConnection connection;
  connection.answer("SELECT ID, NAME AS ID FROM A",
                    {{"ID", FieldType::kInteger}, {"id", FieldType::kVarWChar}}, {{1, "Fichte"}});
  const auto rows = open(connection, "SELECT ID, NAME AS ID FROM A");
  EXPECT_EQ(rows->value("Id"), Value(1));
  EXPECT_EQ(rows->type("ID"), FieldType::kInteger);
}

TEST(RecordingConnection, CountsOpenRowSets) {
  RecordingConnection connection;
  connection.table("A", kIdAndName);
  auto first = open(connection, "A");
  const auto second = open(connection, "A");
  EXPECT_EQ(connection.open_recordsets(), 2U);
  second->close();
  EXPECT_EQ(connection.open_recordsets(), 1U);
  first.reset();
  EXPECT_EQ(connection.open_recordsets(), 0U);
}

TEST(RecordingConnection, TellsTheKindThatWasSet) {
  RecordingConnection connection;
  EXPECT_EQ(connection.kind(), ConnectionKind::kSqlServer);
  connection.set_kind(ConnectionKind::kOracle);
  EXPECT_EQ(connection.kind(), ConnectionKind::kOracle);
}

TEST(RecordingConnection, ForgetsItsLogOnDemand) {
  RecordingConnection connection;
  connection.execute("DELETE FROM A");
  connection.clear_log();
  EXPECT_EQ(connection.log(), Log{});
  EXPECT_EQ(connection.statements(), Log{});
  EXPECT_EQ(connection.calls_made(), 0U);
}

// Makes every call that counts, once.
void make_every_call(RecordingConnection& connection) {
  const auto rows = connection.open("A", CursorType::kKeyset, LockType::kOptimistic);
  connection.execute("DELETE FROM B");
  rows->value("NAME");
  rows->type(0);
  rows->set_value("NAME", "Ulme");
  rows->update();
  rows->find("ID = 2");
  rows->move_first();
  rows->move_next();
}

TEST(RecordingConnection, FailsOnExactlyTheChosenCall) {
  const Log calls = {"open A [keyset, optimistic]",
                     "execute DELETE FROM B",
                     "#1 value NAME",
                     "#1 type 0",
                     "#1 set_value NAME = Ulme",
                     "#1 update",
                     "#1 find ID = 2",
                     "#1 move_first",
                     "#1 move_next"};
  for (std::size_t k = 1; k <= calls.size(); ++k) {
    RecordingConnection connection;
    connection.table("A", kIdAndName, {{1, "Fichte"}, {2, "Eiche"}});
    connection.fail_on_call(k);
    EXPECT_EQ(message_of([&] { make_every_call(connection); }),
              "scripted failure of call " + std::to_string(k) + ": " + calls[k - 1]);
    EXPECT_EQ(connection.calls_made(), k);
    EXPECT_EQ(connection.open_recordsets(), 0U);
    EXPECT_EQ(connection.rows_of("A")[0][1], Value(k <= 6 ? "Fichte" : "Ulme")) << k;
    EXPECT_EQ(message_of([&] { make_every_call(connection); }), "no error");
  }
  RecordingConnection connection;
  connection.table("A", kIdAndName, {{1, "Fichte"}, {2, "Eiche"}});
  connection.fail_on_call(calls.size() + 1);
  EXPECT_EQ(message_of([&] { make_every_call(connection); }), "no error");
  EXPECT_EQ(connection.calls_made(), calls.size());
}

TEST(RecordingConnection, ALostConnectionStaysLost) {
  RecordingConnection connection;
  connection.fail_from_call(2);
  EXPECT_EQ(connection.execute("DELETE FROM A"), 0);
  EXPECT_EQ(message_of([&] { connection.execute("DELETE FROM B"); }),
            "scripted failure of call 2: execute DELETE FROM B");
  EXPECT_EQ(message_of([&] { open(connection, "A"); }),
            "scripted failure of call 3: open A [forward-only, read-only]");
  connection.fail_on_call(0);
  EXPECT_EQ(connection.execute("DELETE FROM C"), 0);
}

}  // namespace
}  // namespace kestrova::test
