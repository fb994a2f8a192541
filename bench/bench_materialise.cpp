// Filling "#ID" from the lots of a large database through the library, next to the same statements
// typed by hand on the same connection. Prints both times and fails when the library takes more
// than 1.02 times as long.
//
// The two are timed in turn, and the best of several runs counts: what the machine does besides
// only ever adds time.
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>

#include "engine/comm_sel.h"
#include "platform/sqlite/sqlite_connection.h"

namespace kestrova {
namespace {

constexpr int kLots = 1'000'000;
constexpr int kRuns = 15;
constexpr double kLimit = 1.02;

constexpr const char* kSelection = "SELECT LOGS.ID FROM LOGS WHERE (LOGS.MENGE >= 10)";

void fill_lots(Connection& connection) {
  connection.execute("CREATE TABLE LOGS (ID int NOT NULL PRIMARY KEY, MENGE float)");
  constexpr int kRowsPerStatement = 1000;
  for (int first = 1; first <= kLots; first += kRowsPerStatement) {
    std::string sql = "INSERT INTO LOGS (ID, MENGE) VALUES ";
    for (int id = first; id < first + kRowsPerStatement; ++id) {
      if (id != first) sql += ", ";
      sql += "(" + std::to_string(id) + ", " + std::to_string(id % 400 / 10.0) + ")";
    }
    connection.execute(sql);
  }
}

// Processor time, which other programs on the machine do not add to.
template <class Work>
double seconds(Work work) {
  const std::clock_t begin = std::clock();
  work();
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

std::int32_t rows_in_table(Connection& connection) {
  return connection.open("SELECT COUNT(*) FROM #ID", CursorType::kForwardOnly, LockType::kReadOnly)
      ->value(std::size_t{0})
      .integer();
}

int compare() {
  KesVar context;
  context.dbado = open_sqlite(":memory:");
  Connection& connection = *context.dbado;
  fill_lots(connection);

  const auto through_library = [&] { Comm_Sel().CreateTemporyTable(context, "ID", kSelection); };
  const auto by_hand = [&] {
    connection.execute("DROP TABLE #ID");
    connection.execute("CREATE TABLE #ID (ID int)");
    connection.execute("CREATE NONCLUSTERED INDEX IDX ON #ID (ID) ON [PRIMARY]");
    connection.execute(std::string("INSERT INTO #ID (ID) ") + kSelection);
  };

  through_library();
  const std::int32_t rows = rows_in_table(connection);
  double library = 1e9;
  double hand = 1e9;
  for (int run = 0; run < kRuns; ++run) {
    hand = std::min(hand, seconds(by_hand));
    library = std::min(library, seconds(through_library));
  }
  const double ratio = library / hand;
  std::printf(
      "#ID from %d lots, %d rows: library %.3f s, by hand %.3f s, ratio %.3f (limit %.2f)\n", kLots,
      rows, library, hand, ratio, kLimit);
  return rows == rows_in_table(connection) && rows > 0 && ratio <= kLimit ? 0 : 1;
}

}  // namespace
}  // namespace kestrova

int main() { return kestrova::compare(); }
