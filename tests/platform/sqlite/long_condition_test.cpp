// Conditions of many terms: what they select, and that their cost grows as they do.
#include <gtest/gtest.h>

#include <ctime>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/sqlite/sqlite_connection.h"

namespace kestrova {
namespace {

// True, false or unknown.
using Truth = std::optional<bool>;
using Number = std::optional<int>;

struct Term {
  int column = 0;
  enum Kind { kEqual, kUnequal, kLess, kIsNull, kIsNotNull } kind = kEqual;
  int number = 0;

  std::string sql() const {
    const std::string name = "C" + std::to_string(column);
    switch (kind) {
      case kEqual:
        return name + " = " + std::to_string(number);
      case kUnequal:
        return name + " <> " + std::to_string(number);
      case kLess:
        return name + " < " + std::to_string(number);
      case kIsNull:
        return name + " IS NULL";
      default:
        return name + " IS NOT NULL";
    }
  }
  Truth of(const std::vector<Number>& row) const {
    const Number value = row[static_cast<std::size_t>(column)];
    if (kind == kIsNull) return !value;
    if (kind == kIsNotNull) return value.has_value();
    if (!value) return std::nullopt;
    return kind == kEqual     ? *value == number
           : kind == kUnequal ? *value != number
                              : *value < number;
  }
};

// Of a chain: AND is false, OR is true as soon as one of the terms is.
Truth truth_of(const std::vector<Term>& terms, bool is_and, const std::vector<Number>& row) {
  bool unknown = false;
  for (const Term& term : terms) {
    const Truth truth = term.of(row);
    if (!truth) unknown = true;
    if (truth && *truth != is_and) return !is_and;
  }
  if (unknown) return std::nullopt;
  return is_and;
}

std::string chain_of(const std::vector<Term>& terms, bool is_and) {
  std::string sql;
  for (const Term& term : terms) {
    sql += (sql.empty() ? "" : is_and ? " AND " : " OR ") + term.sql();
  }
  return sql;
}

class LongConditions : public testing::TestWithParam<int> {
 protected:
  static constexpr int kColumns = 3;

  LongConditions() {
    connection_->execute(
        "CREATE TABLE T (ID int NOT NULL PRIMARY KEY, C0 int, C1 int, C2 int)"
        " CREATE INDEX IX ON T (C0)");
    for (int i = 0; i < 60; ++i) {
      std::vector<Number> row;
      std::string sql = "INSERT INTO T VALUES (" + std::to_string(i);
      for (int c = 0; c < kColumns; ++c) {
        row.push_back(below(4) == 0 ? Number() : Number(below(4)));
        sql += row.back() ? ", " + std::to_string(*row.back()) : ", NULL";
      }
      connection_->execute(sql + ")");
      rows_.push_back(row);
    }
  }

  int below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }

  // Most of them leave the truth of a chain to the others.
  Term term(bool is_and) {
    Term result;
    result.column = below(kColumns);
    if (below(40) == 0) {
      result.kind = static_cast<Term::Kind>(below(5));
      result.number = below(4);
    } else {
      result.kind = is_and ? Term::kUnequal : Term::kEqual;
      result.number = 100 + below(50);
    }
    return result;
  }
  std::vector<Term> terms(int count, bool is_and) {
    std::vector<Term> result;
    for (int i = 0; i < count; ++i) result.push_back(term(is_and));
    return result;
  }

  std::vector<int> ids(const std::string& where) {
    std::vector<int> result;
    const auto found = connection_->open("SELECT ID FROM T WHERE " + where + " ORDER BY ID",
                                         CursorType::kForwardOnly, LockType::kReadOnly);
    for (; !found->eof(); found->move_next()) result.push_back(found->value(0).integer());
    return result;
  }
  std::vector<int> ids_where(const std::function<bool(const std::vector<Number>&)>& holds) {
    std::vector<int> result;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      if (holds(rows_[i])) result.push_back(static_cast<int>(i));
    }
    return result;
  }

  std::mt19937 random_{static_cast<unsigned>(GetParam())};
  std::shared_ptr<Connection> connection_ = open_sqlite(":memory:");
  std::vector<std::vector<Number>> rows_;
};

TEST_P(LongConditions, SelectWhatTheirTermsDo) {
  for (int i = 0; i < 12; ++i) {
    for (const bool is_and : {true, false}) {
      const std::vector<Term> long_chain = terms(GetParam(), is_and);
      const std::vector<Term> short_chain = terms(2, !is_and);
      const std::string sql = chain_of(long_chain, is_and);
      SCOPED_TRACE(sql.substr(0, 2'000));
      const auto truth = [&](const std::vector<Number>& row) {
        return truth_of(long_chain, is_and, row);
      };
      EXPECT_EQ(ids(sql), ids_where([&](const auto& row) { return truth(row) == Truth(true); }));
      EXPECT_EQ(ids("NOT (" + sql + ")"),
                ids_where([&](const auto& row) { return truth(row) == Truth(false); }));
      EXPECT_EQ(ids("CASE WHEN " + sql + " THEN 1 WHEN NOT (" + sql + ") THEN 0 ELSE 2 END = 2"),
                ids_where([&](const auto& row) { return !truth(row); }));
      // The same chain among others.
      EXPECT_EQ(ids("(" + chain_of(short_chain, !is_and) + ") AND (" + sql + ") OR C1 IS NULL"),
                ids_where([&](const auto& row) {
                  return (truth_of(short_chain, !is_and, row) == Truth(true) &&
                          truth(row) == Truth(true)) ||
                         !row[1];
                }));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Terms, LongConditions,
                         testing::Values(1, 2, 3, 63, 64, 65, 66, 127, 128, 129, 500));

// --- Cost

struct ChainKind {
  const char* name;
  const char* separator;
  std::string (*term)(int);
};

std::string number_of(int i) { return std::to_string(i); }

// clang-format off
const ChainKind kChains[] = {
    {"Unequal",   " AND ", [](int i) { return "N <> 'x" + number_of(i) + "'"; }},
    {"Equal",     " AND ", [](int i) { return "N = '" + number_of(i % 7) + "'"; }},
    {"Mixed",     " AND ", [](int i) { return (i % 2 == 0 ? "K = " : "ID <> ") + number_of(i); }},
    {"Like",      " AND ", [](int i) { return "N LIKE '" + number_of(i) + "%'"; }},
    {"Either",    " OR ",  [](int i) { return (i % 2 == 0 ? "N = '" : "U.NAME = '") + number_of(i) + "'"; }},
    {"OrOfPairs", " OR ",  [](int i) { return "N = 'x" + number_of(i) + "' AND K > " + number_of(i); }},
};
// clang-format on

class CostOfConditions : public testing::TestWithParam<ChainKind> {
 protected:
  CostOfConditions() {
    connection_->execute(
        "CREATE TABLE T (ID int NOT NULL PRIMARY KEY, N nvarchar(20), K int)"
        " CREATE INDEX IX ON T (N) CREATE TABLE U (ID int NOT NULL PRIMARY KEY, NAME nvarchar(9))"
        " INSERT INTO T VALUES (1, 'a', 1), (2, 'b', 2)");
  }

  // In processor seconds.
  double seconds(int terms) {
    const ChainKind& kind = GetParam();
    std::string sql = "SELECT T.ID FROM T LEFT JOIN U ON U.ID = T.K WHERE (";
    for (int i = 0; i < terms; ++i) {
      const std::string term = kind.term(i);
      sql += (i > 0 ? kind.separator : "") + (term.starts_with("ID") ? "T." + term : term);
    }
    sql += ")";
    const std::clock_t begin = std::clock();
    connection_->open(sql, CursorType::kForwardOnly, LockType::kReadOnly);
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
  }

  std::shared_ptr<Connection> connection_ = open_sqlite(":memory:");
};

// Four times as many terms cost four times as much, and not sixteen times.
TEST_P(CostOfConditions, GrowsAsTheyDo) {
  const double quarter = seconds(8'192);
  const double whole = seconds(32'767);
  EXPECT_LT(whole, 8 * quarter) << quarter << " s, " << whole << " s";
}

INSTANTIATE_TEST_SUITE_P(Chains, CostOfConditions, testing::ValuesIn(kChains),
                         [](const auto& chain) { return std::string(chain.param.name); });

}  // namespace
}  // namespace kestrova
