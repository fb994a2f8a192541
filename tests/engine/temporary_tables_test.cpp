// CreateTemporyTable: a selection as a temporary table of the connection.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/engine/engine_host.h"
#include "tests/support/golden.h"

namespace kestrova::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(TemporaryTables, GoldenTable) {
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/temp_tables.tsv")) {
    SCOPED_TRACE(row.place() + ": " + row["kind"]);
    EngineHost host;
    if (!row.flag("with_connection")) host.context.dbado = nullptr;

    std::string result;
    std::string error;
    try {
      result = host.engine.CreateTemporyTable(host.context, row["kind"], row["from_where"]);
    } catch (const ObjectNotSet&) {
      error = "ObjectNotSet";
    }

    EXPECT_EQ(result, row["result"]);
    EXPECT_EQ(error, row["error"]);
    if (row["drop"].empty()) {
      ASSERT_EQ(row["batch"], "");
      EXPECT_THAT(*host.log, IsEmpty());
    } else {
      EXPECT_THAT(*host.log, ElementsAre("execute " + row["drop"], "execute " + row["batch"]));
    }
  }
}

struct Kind {
  const char* name;
  const char* drop;
};

const Kind kKinds[] = {{"LEISTUNGS_BB", "DROP TABLE #BB_LEISTUNGS_KOPF"},
                       {"PREIS_ANGEBOT", "DROP TABLE #PREIS"},
                       {"PREIS_RECHNUNG", "DROP TABLE #PREIS"},
                       {"ID", "DROP TABLE #ID"},
                       {"HE 120", "DROP TABLE #ID"},
                       {"HE 210", "DROP TABLE #ID"},
                       {"CHILD", "DROP TABLE #CHILD"},
                       {"MAIN", "DROP TABLE #MAIN"},
                       {"UE", "DROP TABLE #MAIN"},
                       {"PLAN_JAHR", "DROP TABLE #PLAN_JAHR"}};

TEST(TemporaryTables, ATableThatCannotBeDroppedDoesNotMatter) {
  for (const Kind& kind : kKinds) {
    SCOPED_TRACE(kind.name);
    EngineHost host;
    host.connection->fail(kind.drop, DatabaseError("no such table", "42S02"));
    EXPECT_EQ(host.engine.CreateTemporyTable(host.context, kind.name, " FROM T"), "");
    ASSERT_EQ(host.connection->statements().size(), 2U);
    EXPECT_EQ(host.connection->statements()[0], kind.drop);
  }
}

TEST(TemporaryTables, AFailingBatchReachesTheCallerAndTheNextCallWorks) {
  for (const Kind& kind : kKinds) {
    SCOPED_TRACE(kind.name);
    EngineHost host;
    host.connection->fail_on_call(2);
    try {
      host.engine.CreateTemporyTable(host.context, kind.name, " FROM T");
      ADD_FAILURE() << "no error";
    } catch (const DatabaseError& error) {
      EXPECT_EQ(std::string(error.what()),
                "scripted failure of call 2: execute " + host.connection->statements()[1]);
    }
    host.connection->fail_on_call(0);
    host.connection->clear_log();
    EXPECT_EQ(host.engine.CreateTemporyTable(host.context, kind.name, " FROM T"), "");
    EXPECT_EQ(host.connection->statements().size(), 2U);
  }
}

TEST(TemporaryTables, ALostConnectionReachesTheCaller) {
  EngineHost host;
  host.connection->fail_from_call(1);
  EXPECT_THROW(host.engine.CreateTemporyTable(host.context, "ID", "SELECT 1"), DatabaseError);
  EXPECT_EQ(host.connection->statements().size(), 2U);
}

TEST(TemporaryTables, AnUnknownKindNeedsNoConnectionAndExecutesNothing) {
  EngineHost host;
  EXPECT_EQ(host.engine.CreateTemporyTable(host.context, "id", " FROM T"), "");
  EXPECT_THAT(*host.log, IsEmpty());
  host.context.dbado = nullptr;
  EXPECT_EQ(host.engine.CreateTemporyTable(host.context, "", " FROM T"), "");
}

TEST(TemporaryTables, NoServiceOfTheHostIsNeeded) {
  EngineHost host;
  install_host({});
  EXPECT_EQ(host.engine.CreateTemporyTable(host.context, "UE", "SELECT ID FROM T"), "");
  EXPECT_THAT(*host.log,
              ElementsAre("execute DROP TABLE #MAIN",
                          "execute SELECT TOP 0 A.* INTO #MAIN FROM (SELECT ID FROM T) A\r\n"
                          "INSERT INTO #MAIN SELECT ID FROM T"));
}

}  // namespace
}  // namespace kestrova::test
