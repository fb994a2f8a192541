// Batches of any bytes on the embedded database: each runs or ends in an error of the library, and
// the connection works afterwards. A text that is closed selects nothing behind a condition that no
// row meets, whatever it says.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "platform/error.h"
#include "platform/sqlite/sqlite_connection.h"
#include "platform/text.h"
#include "tests/attack/sql_closure.h"
#include "tests/attack/write_watch.h"

namespace kestrova::fuzz {
namespace {

using test::WriteWatch;

constexpr const char* kTables =
    "CREATE TABLE T (ID int IDENTITY(1,1) NOT NULL PRIMARY KEY, N nvarchar(20), P numeric(8,2),"
    " D datetime, B bit, F float, L ntext)"
    " CREATE TABLE U (ID int, ID_T int)"
    " CREATE TABLE #T (ID int)"
    " INSERT INTO T (N, P, D, B, F) VALUES ('Fichte', 1.5, '01.02.2024', 1, 2), ('', NULL, NULL, "
    "0, -1)"
    " INSERT INTO U VALUES (1, 1), (2, NULL)";

void require(bool holds) {
  if (!holds) std::abort();
}

// One database for all inputs, made anew behind an input that may have changed something.
class Database {
 public:
  Connection& connection() {
    if (is_changed_) connection_.reset();
    is_changed_ = false;
    if (!connection_) {
      WriteWatch::instance();
      connection_ = open_sqlite(":memory:");
      connection_->execute(kTables);
    }
    return *connection_;
  }

  // Changes are seen by the database; transactions and settings belong to the connection.
  void note_changes(std::string_view batch) {
    const bool has_written = !WriteWatch::instance().allowed_changes().empty();
    const std::string upper = text::upper(batch);
    is_changed_ = has_written || upper.find("TRAN") != std::string::npos ||
                  upper.find("SET") != std::string::npos;
  }

 private:
  std::shared_ptr<Connection> connection_;
  bool is_changed_ = false;
};

// The number of rows, and each value of the first ones read.
int read(Connection& connection, std::string_view source) {
  const auto rows = connection.open(source, CursorType::kForwardOnly, LockType::kOptimistic);
  int count = 0;
  for (; !rows->eof() && count < 100; rows->move_next(), ++count) {
    for (std::size_t i = 0; i < rows->column_count(); ++i) rows->value(i);
  }
  return count;
}

template <class Function>
void allowing_errors(Function function) {
  try {
    function();
  } catch (const Error&) {
    // An error of the library is a right answer to any input.
  }
}

void run(std::string_view batch) {
  static Database database;
  Connection& connection = database.connection();
  WriteWatch::instance().begin([](std::string_view) { return true; });
  if (!test::is_open(batch)) {
    allowing_errors([&] {
      const std::string select = "SELECT ID FROM T WHERE 1 = 0 AND (" + std::string(batch) + ")";
      require(read(connection, select) == 0);
    });
    require(WriteWatch::instance().allowed_changes().empty());
  }
  allowing_errors([&] { check_sqlite(connection, batch); });
  allowing_errors([&] { read(connection, batch); });
  allowing_errors([&] { connection.execute(batch); });
  require(read(connection, "SELECT 1 AS STILL_WORKS") == 1);
  database.note_changes(batch);
  WriteWatch::instance().end();
}

}  // namespace
}  // namespace kestrova::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // What a statement may hold fits into few bytes; longer ones only take time.
  constexpr std::size_t kLongest = 1000;
  if (size > kLongest) return -1;
  kestrova::fuzz::run({reinterpret_cast<const char*>(data), size});
  return 0;
}
