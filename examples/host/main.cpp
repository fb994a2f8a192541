// A host of the selection library: opens its database, installs its services, and calls a module.
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

#include "clerk.h"
#include "interface/module_state.h"
#include "invoice_module.h"
#include "platform/sqlite/sqlite_connection.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"

namespace {

std::string file_text(const char* path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw kestrova::InvalidArgument(std::string("There is no file ") + path + ".");
  return {std::istreambuf_iterator<char>(file), {}};
}

void run() {
  const std::shared_ptr<kestrova::Connection> connection = kestrova::open_sqlite(":memory:");
  connection->execute(file_text(CATALOGUE_SQL));
  connection->execute(file_text(INVOICES_SQL));

  // Once per process: the services that only the host can give.
  const auto locale = std::make_shared<kestrova::SettingsUserLocale>("DE", "DMY");
  kestrova::install_host({.suite = kestrova::make_standalone_suite(connection, locale),
                          .user_interface = std::make_shared<Clerk>(),
                          .user_locale = locale});

  // For each call: who asks, and on which connection.
  kestrova::KesVar context;
  context.dbado = connection;
  context.strLanguage = "DE";
  context.strOderLine = "=== ODER ===";
  context.strNatWahrung = "DM";
  context.strDateOrder = "DMY";
  context.lngAccessLevel = 1;
  context.strAccessLevelList = "SELECT ID FROM ACCESS_LEVELS";
  context.lngUserID = 7;

  if (const auto kept = select_invoices(context)) {
    std::cout << "\nKept: " << *kept << "\n";
    list_invoices(context, *kept);
  }

  // The library lets go of the services and the connection.
  kestrova::install_host({});
}

}  // namespace

int main() {
  try {
    run();
    return 0;
  } catch (const kestrova::Error& error) {
    std::cerr << "Error " << error.number() << ": " << error.what() << "\n";
    return 1;
  }
}
