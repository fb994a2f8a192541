// Joins find every pair of texts that the collation takes for equal, however the embedded database
// searches: random tables whose keys differ in blanks at the end and in case, next to nested loops.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/sqlite/sqlite_connection.h"
#include "tests/platform/sqlite/sqlite_fixture.h"

namespace kestrova {
namespace {

using test::TemporaryFile;

struct Row {
  std::optional<std::string> key;
  int number = 0;
};

struct Join {
  bool left = false;
  std::size_t to = 0;  // the table whose key is compared
};

struct Case {
  std::vector<std::vector<Row>> tables;
  std::vector<bool> indexed;
  std::vector<Join> joins;  // of the second table and those behind it
  std::optional<std::string> first_key;
  std::size_t limited = 0;  // the table whose numbers are limited
  int limit = 0;
};

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  int below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(engine_); }
  bool chance(int percent) { return below(100) < percent; }

  std::string key() {
    static const std::vector<std::string> kWords = {
        "FI", "fi", "Bu", "Transport", "transport", "TA", "", "Schwarte", "L1", "l1", "Eder"};
    const auto word = static_cast<std::size_t>(below(static_cast<int>(kWords.size())));
    return kWords[word] + std::string(static_cast<std::size_t>(below(4)), ' ');
  }

 private:
  std::mt19937 engine_;
};

Case random_case(Random& random) {
  Case result;
  const int tables = 2 + random.below(3);
  for (int t = 0; t < tables; ++t) {
    const int count = t == 0 ? 40 + random.below(60) : 3 + random.below(12);
    std::vector<Row> rows;
    for (int i = 0; i < count; ++i) {
      rows.push_back(
          {random.chance(8) ? std::nullopt : std::optional(random.key()), random.below(10)});
    }
    result.tables.push_back(std::move(rows));
    result.indexed.push_back(random.chance(50));
    if (t > 0) {
      result.joins.push_back({random.chance(40), static_cast<std::size_t>(random.below(t))});
    }
  }
  if (random.chance(30)) result.first_key = random.key();
  result.limited = static_cast<std::size_t>(random.below(tables));
  result.limit = 3 + random.below(7);
  return result;
}

std::string name_of(std::size_t table) { return "T" + std::to_string(table); }

void make_tables(Connection& connection, const Case& c) {
  std::string batch;
  for (std::size_t t = 0; t < c.tables.size(); ++t) {
    batch += " CREATE TABLE " + name_of(t) +
             " (ID int NOT NULL PRIMARY KEY, K nvarchar(20), N int NOT NULL)";
    if (c.indexed[t]) batch += " CREATE INDEX IX ON " + name_of(t) + " (K)";
    for (std::size_t i = 0; i < c.tables[t].size(); ++i) {
      const Row& row = c.tables[t][i];
      batch += " INSERT INTO " + name_of(t) + " VALUES (" + std::to_string(i) + ", " +
               (row.key ? "'" + *row.key + "'" : "NULL") + ", " + std::to_string(row.number) + ")";
    }
  }
  connection.execute(batch);
}

std::string query_of(const Case& c) {
  std::string sql = "SELECT ";
  for (std::size_t t = 0; t < c.tables.size(); ++t) sql += (t > 0 ? ", " : "") + name_of(t) + ".ID";
  sql += " FROM T0";
  for (std::size_t t = 1; t < c.tables.size(); ++t) {
    const Join& join = c.joins[t - 1];
    sql += (join.left ? " LEFT JOIN " : " JOIN ") + name_of(t) + " ON " + name_of(t) +
           ".K = " + name_of(join.to) + ".K";
  }
  sql += " WHERE " + name_of(c.limited) + ".N < " + std::to_string(c.limit);
  if (c.first_key) sql += " AND T0.K = '" + *c.first_key + "'";
  return sql;
}

std::string normal(std::string key) {
  key.erase(key.find_last_not_of(' ') + 1);
  std::transform(key.begin(), key.end(), key.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
  return key;
}

bool equal(const std::optional<std::string>& a, const std::optional<std::string>& b) {
  return a && b && normal(*a) == normal(*b);
}

constexpr int kNoRow = -1;
using Tuple = std::vector<int>;

const Row* row_of(const Case& c, const Tuple& tuple, std::size_t table) {
  return tuple[table] == kNoRow ? nullptr
                                : &c.tables[table][static_cast<std::size_t>(tuple[table])];
}

// The same by nested loops.
std::vector<std::string> expected(const Case& c) {
  std::vector<Tuple> tuples;
  for (int i = 0; i < static_cast<int>(c.tables[0].size()); ++i) tuples.push_back({i});
  for (std::size_t t = 1; t < c.tables.size(); ++t) {
    std::vector<Tuple> longer;
    for (const Tuple& tuple : tuples) {
      const Row* const other = row_of(c, tuple, c.joins[t - 1].to);
      bool found = false;
      for (int i = 0; i < static_cast<int>(c.tables[t].size()); ++i) {
        if (!other || !equal(other->key, c.tables[t][static_cast<std::size_t>(i)].key)) continue;
        longer.push_back(tuple);
        longer.back().push_back(i);
        found = true;
      }
      if (found || !c.joins[t - 1].left) continue;
      longer.push_back(tuple);
      longer.back().push_back(kNoRow);
    }
    tuples = std::move(longer);
  }
  std::vector<std::string> result;
  for (const Tuple& tuple : tuples) {
    const Row* const limited = row_of(c, tuple, c.limited);
    if (!limited || limited->number >= c.limit) continue;
    if (c.first_key && !equal(row_of(c, tuple, 0)->key, c.first_key)) continue;
    std::string text;
    for (const int id : tuple) text += (id == kNoRow ? "-" : std::to_string(id)) + " ";
    result.push_back(text);
  }
  std::sort(result.begin(), result.end());
  return result;
}

std::vector<std::string> found(Connection& connection, const std::string& query) {
  std::vector<std::string> result;
  const auto rows = connection.open(query, CursorType::kForwardOnly, LockType::kReadOnly);
  for (; !rows->eof(); rows->move_next()) {
    std::string text;
    for (std::size_t i = 0; i < rows->column_count(); ++i) {
      text += (rows->value(i).is_null() ? "-" : rows->value(i).text()) + " ";
    }
    result.push_back(text);
  }
  std::sort(result.begin(), result.end());
  return result;
}

// Another program that has the collation gathers what the planner goes by.
void analyse(const std::string& file) {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
  sqlite3_create_collation(
      database, "server_text", SQLITE_UTF8, nullptr,
      [](void*, int a_size, const void* a, int b_size, const void* b) {
        return normal({static_cast<const char*>(a), static_cast<std::size_t>(a_size)})
            .compare(normal({static_cast<const char*>(b), static_cast<std::size_t>(b_size)}));
      });
  EXPECT_EQ(sqlite3_exec(database, "ANALYZE", nullptr, nullptr, nullptr), SQLITE_OK)
      << sqlite3_errmsg(database);
  sqlite3_close(database);
}

TEST(TextJoins, FindAllPairsOfEqualTexts) {
  Random random(11);
  std::size_t rows = 0;
  for (int i = 0; i < 400; ++i) {
    const Case c = random_case(random);
    SCOPED_TRACE(query_of(c));
    const auto connection = open_sqlite(":memory:");
    make_tables(*connection, c);
    const std::vector<std::string> all = expected(c);
    ASSERT_EQ(found(*connection, query_of(c)), all);
    rows += all.size();
  }
  EXPECT_GT(rows, 10'000U);
}

TEST(TextJoins, FindAllPairsOfEqualTextsInAnalysedTables) {
  Random random(12);
  std::size_t rows = 0;
  for (int i = 0; i < 200; ++i) {
    const Case c = random_case(random);
    SCOPED_TRACE(query_of(c));
    const TemporaryFile file;
    SqliteOptions options;
    options.create = true;
    make_tables(*open_sqlite(file.name(), options), c);
    analyse(file.name());
    const std::vector<std::string> all = expected(c);
    ASSERT_EQ(found(*open_sqlite(file.name()), query_of(c)), all);
    rows += all.size();
  }
  EXPECT_GT(rows, 5'000U);
}

// Grouping, distinct rows, unions and lists go by the collation too; and texts that are equal but
// of another length, met in their order, break no tree.
TEST(TextJoins, HaveTheSameEqualityAsEveryOtherSearch) {
  Random random(13);
  for (int i = 0; i < 200; ++i) {
    const Case c = random_case(random);
    const auto connection = open_sqlite(":memory:");
    make_tables(*connection, c);
    const auto count = [&](const std::string& sql) {
      SCOPED_TRACE(sql);
      return found(*connection, sql).size();
    };
    std::vector<std::string> keys;
    for (const Row& row : c.tables[0]) keys.push_back(row.key ? "K" + normal(*row.key) : "");
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    EXPECT_EQ(count("SELECT DISTINCT K FROM T0"), keys.size());
    EXPECT_EQ(count("SELECT MIN(ID) FROM T0 GROUP BY K"), keys.size());
    EXPECT_EQ(count("SELECT K FROM T0 UNION SELECT K FROM T0"), keys.size());
    EXPECT_EQ(found(*connection, "SELECT COUNT(DISTINCT K) FROM T0").front(),
              std::to_string(keys.size() - (keys.front().empty() ? 1 : 0)) + " ");
    const auto both = static_cast<std::size_t>(
        std::count_if(c.tables[0].begin(), c.tables[0].end(), [&](const Row& row) {
          return std::any_of(c.tables[1].begin(), c.tables[1].end(),
                             [&](const Row& other) { return equal(row.key, other.key); });
        }));
    EXPECT_EQ(count("SELECT ID FROM T0 WHERE K IN (SELECT K FROM T1)"), both);
    EXPECT_EQ(count("SELECT ID FROM T0 WHERE K + '' IN (SELECT K + '' FROM T1)"), both);
    EXPECT_EQ(count("SELECT ID FROM T0 WHERE K IN (SELECT A.K FROM T1 A JOIN T1 B ON A.K = B.K)"),
              both);
    EXPECT_EQ(count("SELECT ID FROM T1 WHERE K IN (SELECT K FROM T0 WHERE N >= 0 AND K >= '')"),
              static_cast<std::size_t>(
                  std::count_if(c.tables[1].begin(), c.tables[1].end(), [&](const Row& row) {
                    return std::any_of(c.tables[0].begin(), c.tables[0].end(),
                                       [&](const Row& other) { return equal(row.key, other.key); });
                  })));
    EXPECT_EQ(count("SELECT ID FROM T0 WHERE EXISTS (SELECT 1 FROM T1 WHERE T1.K = T0.K)"), both);
  }
}

// A list of thousands of members, of which runs are equal.
TEST(TextJoins, FindTheMembersOfALongList) {
  const auto connection = open_sqlite(":memory:");
  connection->execute(
      "CREATE TABLE T (K nvarchar(20)) INSERT INTO T VALUES ('a17 '), ('A5'), ('b')");
  std::string list;
  for (int i = 0; i < 4'000; ++i) {
    const std::string word = "a" + std::to_string(i / 20);
    list += (i > 0 ? ", '" : "'") + word + std::string(static_cast<std::size_t>(i % 20), ' ') + "'";
  }
  EXPECT_EQ(found(*connection, "SELECT K FROM T WHERE K IN (" + list + ")"),
            (std::vector<std::string>{"A5 ", "a17  "}));
  EXPECT_EQ(found(*connection, "SELECT K FROM T WHERE K NOT IN (" + list + ")"),
            (std::vector<std::string>{"b "}));
}

}  // namespace
}  // namespace kestrova
