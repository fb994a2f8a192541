// The dialect, statement by statement: every file in dialect/ is a session on a fresh database
// whose clock stands still. A case is a block of lines without an empty line among them:
//
//   query                                   run                        error
//   SELECT ID, NAME FROM T                  DELETE FROM T              SELECT X FROM T
//   ----                                    ----                       ----
//   ID 3 | NAME 202                         2                          42S22 Invalid column name
//   'X'. [...] 1 | Fichte
//
// A query shows its columns with their type codes and then its rows (NULL as NULL, each value as
// Value::text() writes it); "run" the number of changed rows; an error (of a query, when it begins
// with SELECT) the SQLSTATE and the whole
// message, in which "[...]" stands for the statement that every message ends with. Lines that begin
// with "#" describe what follows. Blanks that end a line are written as "~".
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/error.h"
#include "platform/sqlite/sqlite_connection.h"

namespace kestrova {
namespace {

struct Case {
  std::size_t line = 0;
  std::string verb;
  std::string sql;
  std::string expected;
};

std::vector<Case> read_cases(const std::filesystem::path& file) {
  std::ifstream in(file);
  std::vector<Case> cases;
  std::string line;
  bool in_expected = false;
  bool in_case = false;
  for (std::size_t number = 1; std::getline(in, line); ++number) {
    if (line.empty()) {
      in_case = in_expected = false;
    } else if (line.starts_with('#') && !in_case) {
      continue;
    } else if (!in_case) {
      cases.push_back({number, line, "", ""});
      in_case = true;
    } else if (line == "----") {
      in_expected = true;
    } else {
      std::string& part = in_expected ? cases.back().expected : cases.back().sql;
      part += (part.empty() ? "" : "\n") + line;
    }
  }
  return cases;
}

std::string without_line_end_blanks(std::string line) {
  const std::size_t kept = line.find_last_not_of(' ') + 1;
  if (kept < line.size()) line.replace(kept, std::string::npos, line.size() - kept, '~');
  return line;
}

std::string shown(Recordset& rows) {
  std::string result;
  for (std::size_t i = 0; i < rows.column_count(); ++i) {
    result += (i > 0 ? " | " : "") + rows.column_name(i) + " " +
              std::to_string(static_cast<int>(rows.type(i)));
  }
  for (; !rows.eof(); rows.move_next()) {
    std::string line;
    for (std::size_t i = 0; i < rows.column_count(); ++i) {
      const Value value = rows.value(i);
      line += (i > 0 ? " | " : "") + (value.is_null() ? "NULL" : value.text());
    }
    result += "\n" + without_line_end_blanks(line);
  }
  return result;
}

std::string with_statement_left_out(const std::string& message) {
  const std::size_t statement = message.find(" [statement ");
  return statement == std::string::npos ? message : message.substr(0, statement) + " [...]";
}

std::string outcome(Connection& connection, const Case& c) {
  try {
    const bool is_query = c.verb == "query" || (c.verb == "error" && c.sql.starts_with("SELECT"));
    if (!is_query) return std::to_string(connection.execute(c.sql));
    const auto rows = connection.open(c.sql, CursorType::kForwardOnly, LockType::kReadOnly);
    return shown(*rows);
  } catch (const DatabaseError& error) {
    return error.sqlstate() + " " + with_statement_left_out(error.what());
  }
}

class Dialect : public testing::TestWithParam<std::string> {};

TEST_P(Dialect, RunsAsTheServerDoes) {
  const auto file = std::filesystem::path(KESTROVA_SOURCE_DIR) / "tests/platform/sqlite/dialect" /
                    (GetParam() + ".txt");
  SqliteOptions options;
  options.clock = [] { return DateTime{2024, 3, 15, 12, 30, 0, 0}; };
  const auto connection = open_sqlite(":memory:", options);
  const std::vector<Case> cases = read_cases(file);
  ASSERT_FALSE(cases.empty()) << file;
  for (const Case& c : cases) {
    SCOPED_TRACE(file.filename().string() + ":" + std::to_string(c.line));
    ASSERT_TRUE(c.verb == "query" || c.verb == "run" || c.verb == "error") << c.verb;
    EXPECT_EQ(outcome(*connection, c), c.expected);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, Dialect,
                         testing::Values("select", "joins", "conditions", "values", "dates",
                                         "texts", "numbers", "grouping", "unions", "tables",
                                         "changes", "batches", "errors", "library"),
                         [](const auto& file) { return file.param; });

}  // namespace
}  // namespace kestrova
