// Batches of any bytes on the embedded database: each runs or ends in an error of the library, and
// the connection works afterwards.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/error.h"
#include "platform/sqlite/sqlite_connection.h"

namespace {

constexpr const char* kTables =
    "CREATE TABLE T (ID int IDENTITY(1,1) NOT NULL PRIMARY KEY, N nvarchar(20), P numeric(8,2),"
    " D datetime, B bit, F float, L ntext)"
    " CREATE TABLE U (ID int, ID_T int)"
    " CREATE TABLE #T (ID int)"
    " INSERT INTO T (N, P, D, B, F) VALUES ('Fichte', 1.5, '01.02.2024', 1, 2), ('', NULL, NULL, "
    "0, -1)"
    " INSERT INTO U VALUES (1, 1), (2, NULL)";

void read(kestrova::Connection& connection, std::string_view source) {
  const auto rows =
      connection.open(source, kestrova::CursorType::kForwardOnly, kestrova::LockType::kOptimistic);
  for (int count = 0; !rows->eof() && count < 100; rows->move_next(), ++count) {
    for (std::size_t i = 0; i < rows->column_count(); ++i) rows->value(i);
  }
}

template <class Function>
void allowing_errors(Function function) {
  try {
    function();
  } catch (const kestrova::Error&) {
    // An error of the library is a right answer to any input.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view batch(reinterpret_cast<const char*>(data), size);
  const auto connection = kestrova::open_sqlite(":memory:");
  connection->execute(kTables);
  allowing_errors([&] { kestrova::check_sqlite(*connection, batch); });
  allowing_errors([&] { read(*connection, batch); });
  allowing_errors([&] { connection->execute(batch); });
  read(*connection, "SELECT 1 AS STILL_WORKS");
  return 0;
}
