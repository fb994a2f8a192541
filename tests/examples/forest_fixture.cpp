#include "tests/examples/forest_fixture.h"

#include "examples/forest/forest_scripts.h"
#include "examples/forest/sql_script.h"
#include "platform/sqlite/sqlite_connection.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"

namespace kestrova::test {

std::shared_ptr<Connection> make_forest(std::int64_t lots, std::uint64_t seed, DateTime today) {
  std::shared_ptr<Connection> connection =
      open_sqlite(":memory:", {.clock = [today] { return today; }});
  build_forest_database(*connection, {lots, seed, today});
  return connection;
}

const std::shared_ptr<Connection>& forest() {
  static const std::shared_ptr<Connection> shared = make_forest();
  return shared;
}

Suite& forest_suite() {
  static const std::shared_ptr<Suite> suite =
      make_standalone_suite(forest(), std::make_shared<SettingsUserLocale>("DE", "DMY"));
  return *suite;
}

KesVar forest_user(std::string_view language, std::int32_t access_level,
                   std::string_view access_list) {
  KesVar context;
  context.dbado = forest();
  context.strLanguage = language;
  context.strOderLine = "=== ODER ===";
  context.strNatWahrung = "DM";
  context.strDateOrder = "DMY";
  context.lngAccessLevel = access_level;
  context.strAccessLevelList = access_list;
  context.lngUserID = access_level;
  return context;
}

std::vector<std::vector<std::string>> rows(Connection& connection, std::string_view sql) {
  std::vector<std::vector<std::string>> result;
  const auto set = connection.open(sql, CursorType::kForwardOnly, LockType::kReadOnly);
  for (; !set->eof(); set->move_next()) {
    std::vector<std::string>& row = result.emplace_back();
    for (std::size_t i = 0; i < set->column_count(); ++i) {
      const Value value = set->value(i);
      row.push_back(value.is_null() ? "(null)" : value.text());
    }
  }
  return result;
}

std::int64_t number(Connection& connection, std::string_view sql) {
  return connection.open(sql, CursorType::kForwardOnly, LockType::kReadOnly)
      ->value(std::size_t{0})
      .integer();
}

std::vector<std::string> table_names() {
  constexpr std::string_view create = "CREATE TABLE ";
  std::vector<std::string> names;
  for (const ForestScript& script : forest_scripts()) {
    for (const ScriptStatement& statement : split_script(script.text)) {
      const std::string_view text = statement.text;
      if (!text.starts_with(create)) continue;
      const std::string_view name =
          text.substr(create.size(), text.find(' ', create.size()) - create.size());
      if (!name.starts_with('#')) names.emplace_back(name);
    }
  }
  return names;
}

}  // namespace kestrova::test
