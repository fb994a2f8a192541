// The fixed part of a relation's SQL, and the calls to the suite that make it.
#include "relations/relation_conditions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "interface/module_state.h"
#include "platform/error.h"
#include "tests/support/fake_suite.h"
#include "tests/support/golden.h"

namespace kestrova::test {
namespace {

using Calls = std::vector<std::string>;

std::string joined(const Calls& calls) {
  std::string result;
  for (const std::string& call : calls) result += (result.empty() ? "" : ";") + call;
  return result;
}

// A suite that answers as the golden tables say and writes its calls down in their notation.
class GoldenSuite : public FakeSuite {
 public:
  std::shared_ptr<TableAccessService> table_access() override {
    return std::make_shared<TableAccess>(*this);
  }
  std::shared_ptr<AccessLevelFilter> access_level_filter() override {
    return std::make_shared<Filter>(*this);
  }
  std::shared_ptr<DateFormatter> date_formatter() override {
    return std::make_shared<Dates>(*this);
  }

  Calls calls;
  // How the two options of GetFieldExpression are shown.
  std::string shown_options;

 private:
  struct TableAccess : TableAccessService {
    explicit TableAccess(GoldenSuite& its_suite) : suite(its_suite) {}
    void FillFieldList(std::string_view, EntryList&, const KesVar&, std::int32_t) override {
      suite.calls.emplace_back("FillFieldList");
    }
    std::int32_t MapFieldId(std::string_view relation, std::int32_t field_id) override {
      suite.note("MapFieldId", {relation, std::to_string(field_id)});
      return field_id + 100;
    }
    std::string AddFieldTables(std::string_view key, std::int32_t number, std::string_view from,
                               std::string_view run_type, const KesVar&) override {
      const std::string arguments =
          suite.note("AddFieldTables", {key, std::to_string(number), run_type});
      return std::string(from) + "<" + arguments + ">";
    }
    std::string GetFieldExpression(std::string_view key, std::int32_t number, std::int32_t option1,
                                   std::int32_t option2, const KesVar&) override {
      EXPECT_EQ(option1, 0);
      EXPECT_EQ(option2, 0);
      suite.note("GetFieldExpression", {key, std::to_string(number) + suite.shown_options});
      return "EXPR(" + std::string(key) + "," + std::to_string(number) + ")";
    }
    std::string field_format(std::string_view, std::int32_t, const KesVar&) override {
      suite.calls.emplace_back("field_format");
      return "";
    }
    std::string AddTable(std::string_view, std::string_view, std::string_view) override {
      suite.calls.emplace_back("AddTable");
      return "";
    }
    std::string AddCondition(std::string_view condition, std::string_view further) override {
      suite.note("AddCondition", {further});
      return condition.empty() ? std::string(further)
                               : std::string(condition) + " AND " + std::string(further);
    }
    std::string order_restriction(const KesVar&) override {
      suite.note("order_restriction", {});
      return " WHERE ORDERS";
    }
    GoldenSuite& suite;
  };

  struct Filter : AccessLevelFilter {
    explicit Filter(GoldenSuite& its_suite) : suite(its_suite) {}
    std::string restrict(std::string_view table, std::string_view condition, const KesVar&,
                         std::int32_t option) override {
      const std::string arguments = suite.note("restrict", {table, std::to_string(option)});
      return std::string(condition) + " {" + arguments + "}";
    }
    GoldenSuite& suite;
  };

  struct Dates : DateFormatter {
    explicit Dates(GoldenSuite& its_suite) : suite(its_suite) {}
    std::string server_date(std::string_view typed, bool, std::string_view) override {
      ADD_FAILURE() << "nobody typed " << typed;
      return "";
    }
    bool is_set(double days) override {
      suite.note("is_set", {day(days)});
      return days != 0;
    }
    std::string server_date(double days, std::string_view order) override {
      suite.note("server_date", {day(days), order});
      return "D" + day(days);
    }
    static std::string day(double days) { return std::to_string(std::lround(days)); }
    GoldenSuite& suite;
  };

  // Answers the arguments, joined.
  std::string note(const std::string& operation, const std::vector<std::string_view>& arguments) {
    std::string list;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      list += (i == 0 ? "" : ",") + std::string(arguments[i]);
    }
    calls.push_back(operation + "(" + list + ")");
    return list;
  }
};

KesVar golden_context() {
  KesVar context;
  context.lngAccessLevel = 7;
  context.strAccessLevelList = "SELECT ID FROM ACCESS_LEVELS";
  context.strDateOrder = "DMY";
  return context;
}

class RelationConditions : public ::testing::Test {
 protected:
  ~RelationConditions() override { install_host({}); }

  template <class Suite>
  std::shared_ptr<Suite> install() {
    auto suite = std::make_shared<Suite>();
    install_host({.suite = suite});
    module_state().strVerType = "R7";
    return suite;
  }

  KesVar context = golden_context();
};

TEST_F(RelationConditions, GoldenTableOfBaseConditions) {
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/relation_conditions.tsv")) {
    SCOPED_TRACE(row.place() + ": '" + row["code"] + "'");
    const auto suite = install<GoldenSuite>();
    context.datInvoiceFrom = row.number("dat_from");
    context.datInvoiceTo = row.number("dat_to");
    std::string condition = "overwritten";
    std::string from_text = "overwritten";
    GetRelationFromWhere(row["code"], condition, from_text, context, 3);
    EXPECT_EQ(condition, row["condition"]);
    EXPECT_EQ(from_text, row["from_text"]);
    EXPECT_EQ(joined(suite->calls), row["calls"]);
    const std::string restricted =
        row["base_table"].empty()
            ? ""
            : "restrict(" + row["base_table"] + "," + row["restrict_option"] + ")";
    const auto call = std::find_if(suite->calls.begin(), suite->calls.end(),
                                   [](const auto& line) { return line.starts_with("restrict("); });
    EXPECT_EQ(call == suite->calls.end() ? "" : *call, restricted);
  }
}

TEST_F(RelationConditions, APersonnelNumberIsDigitsOrMissing) {
  install<GoldenSuite>();
  std::string condition;
  std::string from_text;
  for (const char* code : {"4PAGX", "4PAG1) OR (1=1", "4PAG-1", "4PAG1 2", "4PLN 4PAG",
                           "4PLN1 OR 1=1", "4PLN1'", "4PLN\t1", "4PLN１"}) {
    EXPECT_THROW(GetRelationFromWhere(code, condition, from_text, context, 3), InvalidArgument)
        << code;
    EXPECT_EQ(condition, "") << code;
  }
}

TEST_F(RelationConditions, GoldenTableOfAccessLevels) {
  for (const golden::Row& row : golden::read(KESTROVA_GOLDEN_DIR "/apply_access_levels.tsv")) {
    SCOPED_TRACE(row.place() + ": '" + row["code"] + "'");
    const auto suite = install<GoldenSuite>();
    suite->shown_options = ",0,0";
    const auto field_id = static_cast<std::int16_t>(row.number("field_id"));
    std::string condition = "overwritten";
    std::string from_text = "F";
    ApplyAccessLevels(row["code"], field_id, condition, from_text, context);
    EXPECT_EQ(condition, row["condition"]);
    EXPECT_EQ(from_text, row["from_text"]);
    EXPECT_EQ(joined(suite->calls), row["calls"]);
    EXPECT_TRUE(row["calls"].find("(" + row["key"] + ",") != std::string::npos);

    suite->calls.clear();
    from_text = "F";
    const auto service = suite->table_access();
    apply_access_levels(*service, row["code"], row["key"], field_id, condition, from_text, context);
    EXPECT_EQ(condition, row["condition"]);
    EXPECT_EQ(from_text, row["from_text"]);
    EXPECT_EQ(joined(suite->calls), row["calls"]);
  }
}

// --- Failing services: the texts keep what they had been given -------------------------------

struct Failure {
  const char* code;
  std::size_t call;  // that fails
  const char* condition;
  const char* from_text;
};

const Failure kFailures[] = {
    {"2PVK", 1, "", "before"},
    {"2PVK", 2, "PERSONAL.KUNDE = 1", "<PERSONAL,0,>"},
    {"PERSONAL", 2, "", "<,0,>"},
    {"UNKNOWN", 1, "", "before"},
    {"1VM", 1, "", "before"},
    {"1VM-A", 2, "HEADERRECH.VER_TYPE = 'R'", "<ARTIKEL,0,>"},
    {"2ABR4-A", 2, "HEADERRECH.VER_TYPE = 'A4'", "<ARTIKEL,0,>"},
    {"HIZBB_SELEKTION_BBKLRIZ", 2, "", "<BBTALK,0,>"},
    {"VERLOHN", 2,
     "BB_LEISTUNGS_KOPF.STORNODATUM IS NULL AND PERSONAL.ID_ACCESS_LEVELS IN"
     " (SELECT ID FROM ACCESS_LEVELS)",
     "<BBLTN,0,>"},
    {"FHPEXP", 2, "FHP_IMPORT.ERRORTEXT IS NULL AND FHP_IMPORT.ID_FHP_IMPORT IS NULL",
     "<FHPEXP,0,>"},
    {"4PAG17", 2, "(PA_GRUPPE.ID_PERSONAL = 17)", "<SAPAGRUPPE,0,>"},
    {"HIZBB_SELEKTION_AUFTRAG", 2, "", "<BBPLAN,0,>"},
    {"HIZBB_SELEKTION_MAP", 2, "", "<BBZV,0,>"},
    {"WIZ", 2, "", "<ARTIKEL,0,>"},
    {"WIZ", 3, "", "<ARTIKEL,0,>"},
    {"WIZ", 4, "", "<ARTIKEL,0,>"},
    {"WIZ", 5, "HEADERRECH.INVDATE >= 'D44197'", "<ARTIKEL,0,>"},
    {"WIZ", 6, "HEADERRECH.INVDATE >= 'D44197'", "<ARTIKEL,0,>"},
    {"WIZ", 7, "HEADERRECH.INVDATE >= 'D44197'", "<ARTIKEL,0,>"},
    {"WIZ", 8, "HEADERRECH.INVDATE >= 'D44197' AND HEADERRECH.INVDATE <= 'D44561'", "<ARTIKEL,0,>"},
};

TEST_F(RelationConditions, AFailingServiceLeavesWhatWasAssignedBefore) {
  context.datInvoiceFrom = 44197;
  context.datInvoiceTo = 44561;
  for (const Failure& failure : kFailures) {
    SCOPED_TRACE(std::string(failure.code) + " call " + std::to_string(failure.call));
    const auto suite = install<FakeSuite>();
    suite->fail_on_call(failure.call);
    std::string condition = "before";
    std::string from_text = "before";
    try {
      GetRelationFromWhere(failure.code, condition, from_text, context, 3);
      ADD_FAILURE() << "no error";
    } catch (const InvalidArgument& error) {
      EXPECT_EQ(std::string(error.what()), "scripted service failure of call " +
                                               std::to_string(failure.call) + ": " +
                                               suite->log().back());
    }
    EXPECT_EQ(condition, failure.condition);
    EXPECT_EQ(from_text, failure.from_text);
    EXPECT_EQ(suite->live_services(), 0U);
  }
}

// A suite that has lost its shared library.
class SuiteWithoutTables : public FakeSuite {
 public:
  std::shared_ptr<TableAccessService> table_access() override {
    throw InvalidArgument("The table-access service cannot be made.");
  }
};

TEST_F(RelationConditions, AServiceThatCannotBeMadeLeavesNoCondition) {
  install<SuiteWithoutTables>();
  for (const char* code : {"2PVK", "UNKNOWN", "4PAG17"}) {
    std::string condition = "before";
    std::string from_text = "before";
    EXPECT_THROW(GetRelationFromWhere(code, condition, from_text, context, 3), InvalidArgument);
    EXPECT_EQ(condition, "") << code;
    EXPECT_EQ(from_text, "before") << code;
  }
}

TEST_F(RelationConditions, TheLastCallOfAServiceRelationMayFailToo) {
  const auto suite = install<FakeSuite>();
  std::string whole;
  std::string from_text;
  GetRelationFromWhere("1SERV", whole, from_text, context, 3);
  ASSERT_EQ(suite->log().size(), 3U);

  suite->fail_on_call(6);
  std::string condition = "before";
  EXPECT_THROW(GetRelationFromWhere("1SERV", condition, from_text, context, 3), InvalidArgument);
  EXPECT_EQ(condition, whole);
  EXPECT_EQ(from_text, "<LOG,0,>");
  EXPECT_EQ(suite->live_services(), 0U);
}

TEST_F(RelationConditions, AFailingServiceOfAccessLevelsLeavesWhatWasAssignedBefore) {
  const char* const from_texts[] = {"F", "F", "F<BBF,112,R7>"};
  for (std::size_t k = 1; k <= 3; ++k) {
    SCOPED_TRACE("call " + std::to_string(k));
    const auto suite = install<FakeSuite>();
    suite->fail_on_call(k);
    std::string condition = "before";
    std::string from_text = "F";
    EXPECT_THROW(ApplyAccessLevels("4ARB17", 12, condition, from_text, context), InvalidArgument);
    EXPECT_EQ(condition, "before");
    EXPECT_EQ(from_text, from_texts[k - 1]);
    EXPECT_EQ(suite->live_services(), 0U);
  }
}

TEST_F(RelationConditions, TheServicesAreReleasedAfterwards) {
  const auto suite = install<FakeSuite>();
  std::string condition;
  std::string from_text;
  for (const char* code : {"1SERV", "WIZ", "VERLOHN", "HIZBB_SELEKTION_MAP", "UNKNOWN"}) {
    GetRelationFromWhere(code, condition, from_text, context, 3);
    EXPECT_EQ(suite->live_services(), 0U) << code;
    ApplyAccessLevels(code, 12, condition, from_text, context);
    EXPECT_EQ(suite->live_services(), 0U) << code;
  }
}

TEST_F(RelationConditions, WithoutTheSuiteThereIsNoCondition) {
  install_host({});
  std::string condition = "before";
  std::string from_text = "before";
  EXPECT_THROW(GetRelationFromWhere("2PVK", condition, from_text, context, 3), ObjectNotSet);
  EXPECT_EQ(condition, "");
  EXPECT_EQ(from_text, "before");
  EXPECT_THROW(ApplyAccessLevels("2PVK", 12, condition, from_text, context), ObjectNotSet);
}

}  // namespace
}  // namespace kestrova::test
