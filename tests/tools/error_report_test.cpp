#include "tools/error_report.h"

#include <gtest/gtest.h>

#include <sstream>

#include "platform/error.h"
#include "tools/options.h"

namespace kestrova::tool {
namespace {

template <class E>
ErrorReport report_of(const E& error) {
  return describe_error(std::make_exception_ptr(error));
}

std::string line_of(const ErrorReport& report) {
  std::ostringstream out;
  print_error_line(out, report);
  return out.str();
}

std::string json_of(const ErrorReport& report) {
  std::ostringstream out;
  print_error_json(out, report);
  return out.str();
}

TEST(ErrorReport, ADatabaseErrorCarriesNumberAndState) {
  const ErrorReport report = report_of(DatabaseError("no table 'X'", "42S02", 208));
  EXPECT_EQ(report.exit_code, 1);
  EXPECT_EQ(line_of(report), "kestrova-sel: error: no table 'X'\n");
  EXPECT_EQ(json_of(report),
            "{\n"
            "  \"error\": {\n"
            "    \"message\": \"no table 'X'\",\n"
            "    \"number\": -2147217900,\n"
            "    \"sqlstate\": \"42S02\"\n"
            "  }\n"
            "}\n");
}

TEST(ErrorReport, ALibraryErrorCarriesItsNumber) {
  const ErrorReport report = report_of(TypeMismatch("'x' is no number"));
  EXPECT_EQ(report.exit_code, 1);
  EXPECT_EQ(report.number, 13);
  EXPECT_EQ(report.sqlstate, "");
}

TEST(ErrorReport, WrongUsageHasNoNumber) {
  const ErrorReport report = report_of(UsageError("give a file"));
  EXPECT_EQ(report.exit_code, 2);
  EXPECT_EQ(json_of(report),
            "{\n"
            "  \"error\": {\n"
            "    \"message\": \"give a file\",\n"
            "    \"number\": null,\n"
            "    \"sqlstate\": null\n"
            "  }\n"
            "}\n");
}

TEST(ErrorReport, AnythingElseIsUnexpected) {
  EXPECT_EQ(report_of(std::runtime_error("out of luck")).exit_code, 3);
}

TEST(ErrorReport, LeavesTheQuotedStatementOut) {
  EXPECT_EQ(report_of(DatabaseError("Invalid column name 'X'. [statement 1: SELECT X]")).message,
            "Invalid column name 'X'.");
}

TEST(ErrorReport, StaysOnOneLine) {
  EXPECT_EQ(line_of(report_of(DatabaseError("first\r\nsecond"))),
            "kestrova-sel: error: first  second\n");
}

}  // namespace
}  // namespace kestrova::tool
