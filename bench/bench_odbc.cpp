// Reading 100,000 rows of five columns through the ODBC adapter, next to a bare loop over the same
// driver that fetches the same blocks and looks at every value. Prints both times, and fails when
// the adapter takes more than 1.15 times as long. Then counts the statements that a translated
// criterion costs; each is one round trip, since the adapter asks nothing else of the server to
// open a row set.
//
// The connection string is in KESTROVA_TEST_POSTGRESQL (scripts/with-postgresql). The two are timed
// in turn, and the best of several runs counts: what the machine does besides only ever adds time.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "engine/comm_sel.h"
#include "examples/forest/forest_generator.h"
#include "interface/module_state.h"
#include "platform/odbc/odbc_connection.h"
#include "platform/odbc/odbc_handle.h"
#include "platform/sqlite/sqlite_connection.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"

namespace kestrova {
namespace {

constexpr int kRows = 100'000;
constexpr int kRuns = 40;
constexpr double kLimit = 1.15;

constexpr const char* kMake =
    "CREATE TEMPORARY TABLE LOGS AS SELECT N::int AS ID, ('Los ' || N)::varchar(20) AS WALDORT,"
    " (N % 400 / 10.0)::numeric(12,3) AS MENGE, (N % 700 / 7.0)::float8 AS PREIS,"
    " TIMESTAMP '2024-01-01' + N * INTERVAL '1 minute' AS EINSCHLAG"
    " FROM generate_series(1, 100000) AS N";
constexpr const char* kQuery = "SELECT ID, WALDORT, MENGE, PREIS, EINSCHLAG FROM LOGS";

// The server's share counts: it is part of reading.
template <class Work>
double seconds(Work work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// --- The adapter

int read_through_adapter(Connection& connection) {
  const auto rows = connection.open(kQuery, CursorType::kForwardOnly, LockType::kReadOnly);
  int count = 0;
  for (; !rows->eof(); rows->move_next()) {
    for (std::size_t column = 0; column < 5; ++column) {
      if (rows->value(column).is_null()) return -1;
    }
    ++count;
  }
  return count;
}

// --- The bare loop

void require(SQLRETURN result, const char* what) {
  if (SQL_SUCCEEDED(result)) return;
  std::printf("%s failed\n", what);
  std::exit(1);
}

class BareConnection {
 public:
  explicit BareConnection(const std::string& connection_string) {
    require(SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &environment_), "SQLAllocHandle");
    SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, odbc::attribute_value(SQL_OV_ODBC3_80), 0);
    require(SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_), "SQLAllocHandle");
    std::u16string text(connection_string.begin(), connection_string.end());
    require(SQLDriverConnectW(connection_, nullptr, odbc::wide(text.data()),
                              static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr,
                              SQL_DRIVER_NOPROMPT),
            "SQLDriverConnect");
  }
  ~BareConnection() {
    SQLDisconnect(connection_);
    SQLFreeHandle(SQL_HANDLE_DBC, connection_);
    SQLFreeHandle(SQL_HANDLE_ENV, environment_);
  }
  BareConnection(const BareConnection&) = delete;
  BareConnection& operator=(const BareConnection&) = delete;

  odbc::StatementHandle run(const char* sql) {
    SQLHANDLE handle = nullptr;
    require(SQLAllocHandle(SQL_HANDLE_STMT, connection_, &handle), "SQLAllocHandle");
    odbc::StatementHandle statement(handle);
    std::string narrow(sql);
    std::u16string text(narrow.begin(), narrow.end());
    require(SQLExecDirectW(handle, odbc::wide(text.data()), static_cast<SQLINTEGER>(text.size())),
            sql);
    return statement;
  }

 private:
  SQLHANDLE environment_ = nullptr;
  SQLHANDLE connection_ = nullptr;
};

// What becomes of the values, so that they are read and not only fetched.
double sum_of_values = 0;

int read_bare(BareConnection& connection) {
  constexpr std::size_t kBlock = 1000;
  static SQLBIGINT ids[kBlock];
  static SQLWCHAR places[kBlock][21];
  static SQLCHAR volumes[kBlock][44];
  static SQLDOUBLE prices[kBlock];
  static SQL_TIMESTAMP_STRUCT dates[kBlock];
  static SQLLEN lengths[5][kBlock];
  const odbc::StatementHandle statement = connection.run(kQuery);
  SQLULEN fetched = 0;
  const auto bind = [&](SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER data, SQLLEN width) {
    require(SQLBindCol(statement.get(), column, type, data, width, lengths[column - 1]),
            "SQLBindCol");
  };
  SQLSetStmtAttr(statement.get(), SQL_ATTR_ROW_ARRAY_SIZE, odbc::attribute_value(kBlock), 0);
  SQLSetStmtAttr(statement.get(), SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0);
  bind(1, SQL_C_SBIGINT, ids, sizeof ids[0]);
  bind(2, SQL_C_WCHAR, places, sizeof places[0]);
  bind(3, SQL_C_CHAR, volumes, sizeof volumes[0]);
  bind(4, SQL_C_DOUBLE, prices, sizeof prices[0]);
  bind(5, SQL_C_TYPE_TIMESTAMP, dates, sizeof dates[0]);
  int count = 0;
  while (SQL_SUCCEEDED(SQLFetch(statement.get()))) {
    for (SQLULEN row = 0; row < fetched; ++row) {
      for (const auto& column : lengths) {
        if (column[row] == SQL_NULL_DATA) return -1;
      }
      sum_of_values += static_cast<double>(ids[row]) + places[row][0] + volumes[row][0] +
                       prices[row] + dates[row].minute;
      ++count;
    }
  }
  return count;
}

bool compare(const std::string& connection_string) {
  const auto connection = open_odbc(connection_string);
  connection->execute(kMake);
  BareConnection bare(connection_string);
  bare.run(kMake);
  double adapter_time = 1e9;
  double bare_time = 1e9;
  bool complete = true;
  for (int run = 0; run < kRuns; ++run) {
    bare_time = std::min(bare_time, seconds([&] { complete &= read_bare(bare) == kRows; }));
    adapter_time = std::min(
        adapter_time, seconds([&] { complete &= read_through_adapter(*connection) == kRows; }));
  }
  const double ratio = adapter_time / bare_time;
  std::printf("%d rows of 5 columns: adapter %.3f s, bare loop %.3f s, ratio %.3f (limit %.2f)\n",
              kRows, adapter_time, bare_time, ratio, kLimit);
  if (!complete) std::printf("not all rows were read\n");
  return complete && ratio <= kLimit;
}

// --- Round trips

class CountingConnection final : public Connection {
 public:
  explicit CountingConnection(std::shared_ptr<Connection> inner) : inner_(std::move(inner)) {}
  std::unique_ptr<Recordset> open(std::string_view source, CursorType cursor,
                                  LockType lock) override {
    ++statements_;
    return inner_->open(source, cursor, lock);
  }
  std::int64_t execute(std::string_view batch) override {
    ++statements_;
    return inner_->execute(batch);
  }
  ConnectionKind kind() const override { return inner_->kind(); }
  int statements() const { return statements_; }

 private:
  std::shared_ptr<Connection> inner_;
  int statements_ = 0;
};

// The sample database says which statements there are; a server answers the same.
void count_round_trips() {
  const auto forest = open_sqlite(":memory:");
  build_forest_database(*forest, {.lots = 60});
  const auto counting = std::make_shared<CountingConnection>(forest);
  const auto locale = std::make_shared<SettingsUserLocale>("DE", "DMY");
  install_host({.suite = make_standalone_suite(counting, locale),
                .user_interface = nullptr,
                .user_locale = locale});
  KesVar context;
  context.dbado = counting;
  context.strOderLine = "=== ODER ===";
  context.strDateOrder = "DMY";
  context.strAccessLevelList = "SELECT ID FROM ACCESS_LEVELS";
  const auto statements_of = [&](const char* code, const char* mode, const char* criterion,
                                 int count) {
    std::string criteria;
    for (int i = 0; i < count; ++i) criteria += criterion;
    const int before = counting->statements();
    Comm_Sel().D_SelectionFromStr(context, code, mode, criteria, "", 0);
    return counting->statements() - before;
  };
  const auto print = [&](const char* what, const char* code, const char* mode,
                         const char* criterion) {
    statements_of(code, mode, criterion, 1);  // the services read their catalogue once
    const int one = statements_of(code, mode, criterion, 1);
    const int eleven = statements_of(code, mode, criterion, 11);
    std::printf("%-24s %.1f round trips per criterion, %.1f per filter\n", what,
                (eleven - one) / 10.0, one - (eleven - one) / 10.0);
  };
  print("1EXP, of the catalogue", "1EXP", "", "712 > 3.5;");
  print("4ARB17, restricted", "4ARB17", "4ARB", "302 = 'x';");
  print("1VN, of SELEKTION", "1VN", "WAREN", "201 = 'x';");
}

}  // namespace
}  // namespace kestrova

int main() {
  const char* connection_string = std::getenv("KESTROVA_TEST_POSTGRESQL");
  if (connection_string == nullptr) {
    std::printf("no PostgreSQL server: run it under scripts/with-postgresql\n");
    return 1;
  }
  const bool fast = kestrova::compare(connection_string);
  kestrova::count_round_trips();
  return fast ? 0 : 1;
}
