// A host against the installed package: a table of lots, one catalogue field, one stored filter.
#include <cstdint>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

#include "engine/comm_sel.h"
#include "interface/module_state.h"
#include "platform/sqlite/sqlite_connection.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"

namespace {

constexpr const char* kRows =
    "CREATE TABLE TRANSPORT (ID int, MENGE float)\r\n"
    "INSERT INTO TRANSPORT (ID, MENGE) VALUES (1, 5.5), (2, 12.25), (3, NULL), (4, 80)\r\n"
    "INSERT INTO SUITE_TABLE_KEYS VALUES ('TRANSPORT', 'TRANSPORT', 'TRANSPORT.ID')\r\n"
    "INSERT INTO SUITE_FIELDS VALUES ('TRANSPORT', 7, NULL, 'TRANSPORT.MENGE', '0.00')\r\n"
    "INSERT INTO SUITE_FIELD_MAP VALUES ('1WL', 0, 3, 7)";

std::string file_text(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

int main() {
  const std::shared_ptr<kestrova::Connection> connection = kestrova::open_sqlite(":memory:");
  connection->execute(file_text(CATALOGUE_SQL));
  connection->execute(kRows);

  const auto locale = std::make_shared<kestrova::SettingsUserLocale>("DE", "DMY");
  kestrova::install_host({.suite = kestrova::make_standalone_suite(connection, locale),
                          .user_interface = nullptr,
                          .user_locale = locale,
                          .make_selection_form = nullptr});
  kestrova::KesVar context;
  context.dbado = connection;
  context.strOderLine = "=== ODER ===";

  const std::string text = kestrova::Comm_Sel().D_SelectionFromStr(
      context, "1WL", "", "3 >= 10;=== ODER ===;3 = NULL;", "", 0);
  const std::string expected =
      " FROM TRANSPORT WHERE (TRANSPORT.MENGE >= 10 OR (TRANSPORT.MENGE IS NULL OR "
      "RTRIM(LTRIM(TRANSPORT.MENGE)) = ''))";
  const auto rows =
      connection->open("SELECT COUNT(*) FROM (SELECT TRANSPORT.ID" + text + ") A",
                       kestrova::CursorType::kForwardOnly, kestrova::LockType::kReadOnly);
  const std::int32_t count = rows->value(std::size_t{0}).integer();
  std::cout << text << "\n" << count << " rows\n";
  return text == expected && count == 3 ? 0 : 1;
}
