// Every database call and every service call of a translation fails once: the error reaches the
// caller as it was raised, nothing stays open, and the next translation works.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <ostream>

#include "tests/engine/engine_host.h"

namespace kestrova::test {
namespace {

struct Filter {
  const char* name;
  const char* relation;
  const char* mode;
  const char* criteria;
  const char* result;
  // A call that may fail unnoticed, "" for none.
  const char* harmless;
};

void PrintTo(const Filter& filter, std::ostream* out) { *out << filter.name; }

const Filter kFilters[] = {
    {"selektion", "SONST", "WAREN", "12 = 'X';=== ODER ===;3 > 5;",
     " FROM <WAREN,0,V>,LAGER,PERSONAL WHERE LAGER.ID_PERSONAL = PERSONAL.ID AND"
     " (PERSONAL.NAME = 'X' OR LAGER.MENGE > 5)",
     ""},
    {"work_orders", "4ARB17", "4ARB", "12 = 'X';3 <> NULL;",
     " FROM <BBF,112,R7><BBF,103,R7> WHERE ARBEITSAUFTRAG_KOPF.PERSONAL_ID=17 AND"
     " (EXPR(BBF,112) = 'X' AND NOT(EXPR(BBF,103) IS NULL OR RTRIM(LTRIM(EXPR(BBF,103))) = ''))",
     ""},
    {"catalogue", "1VVM", "", "12 = 'X';3 > 5;",
     " FROM <VERTRAG,0,><VERTRAG,112,V><VERTRAG,103,V> WHERE VERTRAEGE.ID_FAKTART = 0"
     " {VERTRAEGE,9} AND (EXPR(VERTRAG,112) = 'X' AND EXPR(VERTRAG,103) > 5)",
     ""},
    {"both", "1SERV", "", "12 IN (1,2);",
     " FROM <LOG,0,><LOG,204,><LOG,112,R7> WHERE (LISTENKOPF.GESPERRTLISTE IS NULL OR"
     " LISTENKOPF.GESPERRTLISTE = 0) AND 1 = (CASE WHEN ISNULL((SELECT NUMBER_VALUE FROM OPTIONEN"
     " WHERE PROPERTY_ID = 'CHKSERVICE'),0) <> 1 THEN (CASE WHEN (LOGS_RECH.R_NAME IS NULL AND"
     " LOGS_RECH.A1_NAME IS NULL AND LOGS_RECH.A2_NAME IS NULL AND LOGS_RECH.A3_NAME IS NULL AND"
     " LOGS_RECH.A4_NAME IS NULL AND LOGS_RECH.A5_NAME IS NULL AND LOGS_RECH.A6_NAME IS NULL AND"
     " LOGS_RECH.A7_NAME IS NULL AND LOGS_RECH.A8_NAME IS NULL) THEN 1 ELSE 0 END) ELSE 1 END)"
     " {LISTENKOPF,7} AND (EXPR(LOG,112) IN (1,2))",
     ""},
    {"labour_bookings", "LEISTUNGS_BB", "", "12 = 5;",
     " FROM <BBLTN,0,><BBLTN,112,R7> WHERE  {BB_LEISTUNGS_KOPF,9} AND (EXPR(BBLTN,112) = 5)",
     "execute DROP TABLE #BB_LEISTUNGS_KOPF"},
};

// The lines of a log that are database calls which can fail.
std::vector<std::string> database_calls(const std::vector<std::string>& log) {
  std::vector<std::string> calls;
  std::copy_if(log.begin(), log.end(), std::back_inserter(calls), [](const std::string& line) {
    return line.starts_with("open ") || line.starts_with("execute ") ||
           (line.starts_with('#') && !line.ends_with(" close"));
  });
  return calls;
}

class FailureSweep : public ::testing::TestWithParam<Filter> {
 protected:
  // A fresh host that knows the fields of all filters.
  struct Prepared : EngineHost {
    Prepared() {
      const SelektionRow name = {.id = 12,
                                 .name = "NAME",
                                 .table = "LAGER",
                                 .table2 = "PERSONAL",
                                 .sqlselect = "INNER",
                                 .sqlvalue = "PERSONAL.NAME",
                                 .condition = "LAGER.ID_PERSONAL = PERSONAL.ID"};
      const SelektionRow menge = {.id = 3, .name = "MENGE", .table = "LAGER"};
      know_fields({{0, name}, {2, menge}}, FieldType::kInteger);
      for (const char* number : {"112", "103"}) {
        const std::string n = number;
        connection->answer("SELECT TOP 0 EXPR(BBF," + n + ") FROM <BBF," + n + ",R7>",
                           {{"", FieldType::kInteger}});
      }
    }

    std::string translate() {
      const Filter& filter = GetParam();
      return engine.D_SelectionFromStr(context, filter.relation, filter.mode, filter.criteria, "V",
                                       9);
    }

    void expect_nothing_left() {
      EXPECT_EQ(connection->open_recordsets(), 0U);
      EXPECT_EQ(suite->live_services(), 0U);
    }
  };
};

TEST_P(FailureSweep, EveryDatabaseCall) {
  Prepared whole;
  ASSERT_EQ(whole.translate(), GetParam().result);
  whole.expect_nothing_left();
  const std::vector<std::string> calls = database_calls(*whole.log);
  ASSERT_EQ(calls.size(), whole.connection->calls_made());

  for (std::size_t k = 1; k <= calls.size(); ++k) {
    const std::string& call = calls[k - 1];
    SCOPED_TRACE("call " + std::to_string(k) + ": " + call);
    Prepared host;
    host.connection->fail_on_call(k);
    std::string error;
    try {
      EXPECT_EQ(host.translate(), GetParam().result);
    } catch (const DatabaseError& failure) {
      error = failure.what();
    }
    EXPECT_EQ(error, call == GetParam().harmless
                         ? ""
                         : "scripted failure of call " + std::to_string(k) + ": " + call);
    host.expect_nothing_left();
    host.connection->fail_on_call(0);
    EXPECT_EQ(host.translate(), GetParam().result);
  }
}

TEST_P(FailureSweep, EveryServiceCall) {
  Prepared whole;
  ASSERT_EQ(whole.translate(), GetParam().result);
  const std::size_t calls = whole.suite->calls_made();
  ASSERT_GT(calls, 0U);

  for (std::size_t k = 1; k <= calls; ++k) {
    SCOPED_TRACE("call " + std::to_string(k));
    Prepared host;
    host.suite->fail_on_call(k);
    try {
      host.translate();
      ADD_FAILURE() << "the failure is lost";
    } catch (const InvalidArgument& error) {
      EXPECT_TRUE(std::string(error.what())
                      .starts_with("scripted service failure of call " + std::to_string(k) + ": "))
          << error.what();
    }
    host.expect_nothing_left();
    EXPECT_EQ(host.translate(), GetParam().result);
  }
}

TEST_P(FailureSweep, TheConnectionIsLostFromACallOn) {
  Prepared whole;
  whole.translate();
  const std::size_t calls = whole.connection->calls_made();
  for (std::size_t k = 1; k <= calls; ++k) {
    SCOPED_TRACE("call " + std::to_string(k));
    Prepared host;
    host.connection->fail_from_call(k);
    EXPECT_THROW(host.translate(), DatabaseError);
    host.expect_nothing_left();
  }
}

INSTANTIATE_TEST_SUITE_P(Filters, FailureSweep, ::testing::ValuesIn(kFilters),
                         [](const auto& filter) { return std::string(filter.param.name); });

}  // namespace
}  // namespace kestrova::test
