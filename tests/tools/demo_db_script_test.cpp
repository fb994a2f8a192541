// The script for SQL Server makes the database that demo-db makes.
#include <gtest/gtest.h>

#include "examples/forest/sql_script.h"
#include "tests/tools/program_fixture.h"

namespace kestrova::tool {
namespace {

class DemoDbScript : public Program {};

TEST_F(DemoDbScript, MakesTheSameDatabase) {
  const std::string script = file("forest.sql");
  const ProgramResult written = run_program(
      {"demo-db", script, "--script", "--lots", "60", "--seed", "7", "--today", "2025-03-14"});
  ASSERT_EQ(written.err, "");
  EXPECT_EQ(written.out, "Wrote the script '" + script + "' for SQL Server with 60 lots.\n");
  const std::string text = text_of(script);
  const std::string head =
      "\xEF\xBB\xBF-- Sample forestry database for SQL Server. Into an empty database:\n"
      "--   sqlcmd -S SERVER -d DATABASE -b -x -i THIS-FILE\n"
      "-- It stops at its first error, and nothing stays in the database then.\n"
      ":on error exit\nGO\n"
      "SET XACT_ABORT ON\nGO\n";
  ASSERT_EQ(text.substr(0, head.size()), head);
  // One transaction from the first statement to the last.
  const std::string begin = "BEGIN TRANSACTION\nGO\n";
  const std::string end = "COMMIT TRANSACTION\nGO\n";
  EXPECT_EQ(text.find(begin), head.size());
  EXPECT_EQ(text.rfind(begin), head.size());
  EXPECT_EQ(text.find(end), text.size() - end.size());
  EXPECT_EQ(text.find("ROLLBACK"), std::string::npos);

  const std::string copy = file("from_script.db");
  run_script(*open_sqlite(copy, {.create = true}), "forest.sql",
             std::string_view(text).substr(head.size()));
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"audit", "--json"},
        std::vector<std::string>{"run", "1EXP", "712 > 1;", "--json", "--limit", "1000"},
        std::vector<std::string>{"models", "1VM", "--json"}}) {
    std::vector<std::string> on_copy = {"--db", copy};
    on_copy.insert(on_copy.end(), command.begin(), command.end());
    EXPECT_EQ(run_program(on_copy).out, on_database(command).out);
  }
}

}  // namespace
}  // namespace kestrova::tool
