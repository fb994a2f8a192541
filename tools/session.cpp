#include "tools/session.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <functional>
#include <iostream>
#include <utility>

#include "editor/f_selection.h"
#include "interface/module_state.h"
#include "platform/error.h"
#include "platform/sqlite/sqlite_connection.h"
#include "platform/standalone/settings_user_locale.h"
#include "platform/standalone/standalone_suite.h"
#include "platform/text.h"

namespace kestrova::tool {
namespace {

// The access level of the head office, which sees the records of every level; any other sees its
// own.
constexpr std::int32_t kHeadOffice = 1;

// The other money unit of the field DM/EURO.
constexpr const char* kNationalCurrency = "DM";

// There is nobody to ask: messages go to the error stream, and questions are answered with No.
class ConsoleUserInterface : public UserInterface {
 public:
  MessageResult show_message(const Message& message) override {
    std::cerr << "kestrova-sel: message: " << message.prompt << '\n';
    return (message.flags & kYesNo) != 0 ? MessageResult::kNo : MessageResult::kOk;
  }
  std::optional<std::string> ask_text(std::string_view, std::string_view) override {
    return std::nullopt;
  }
  PointerShape pointer() const override { return pointer_; }
  void set_pointer(PointerShape shape) override { pointer_ = shape; }
  void show_modal(ModalDialog&) override {
    throw InvalidArgument("The command line program shows no dialogs.");
  }

 private:
  PointerShape pointer_ = PointerShape::kDefault;
};

// "odbc" of "odbc:DSN=...". A single letter is a drive, not a scheme.
std::string_view scheme_of(std::string_view database) {
  const std::size_t length = std::min(database.find(':'), database.size());
  const std::string_view scheme = database.substr(0, length);
  const bool is_scheme = length < database.size() && length > 1 &&
                         std::all_of(scheme.begin(), scheme.end(), [](char c) {
                           return std::isalnum(static_cast<unsigned char>(c)) != 0;
                         });
  return is_scheme ? scheme : std::string_view();
}

// Showing what a filter selects must never change the suite's data.
enum class Access { kRead, kWrite };

// Opens the file. The first look into it tells whether the suite lives there.
std::shared_ptr<Connection> open_suite_file(const std::string& file, Access access) {
  try {
    std::shared_ptr<Connection> connection =
        open_sqlite(file, {.read_only = access == Access::kRead});
    connection->open("SELECT TOP 0 TABLE_KEY FROM SUITE_TABLE_KEYS", CursorType::kForwardOnly,
                     LockType::kReadOnly);
    return connection;
  } catch (const DatabaseError& error) {
    throw DatabaseError("'" + file + "' is no database of the suite, check --db: " + error.what(),
                        error.sqlstate(), error.native_code());
  }
}

std::shared_ptr<Connection> open_connection(const std::string& database, Access access) {
  if (database.empty()) {
    throw UsageError(
        "this needs a database: give one with --db FILE, or make the sample database with "
        "'kestrova-sel demo-db FILE'");
  }
  if (const std::string_view scheme = scheme_of(database); !scheme.empty()) {
    throw UsageError("there is no kind of database called '" + std::string(scheme) +
                     "': give --db the file of an embedded database");
  }
  if (!std::filesystem::is_regular_file(database)) {
    throw DatabaseError("there is no database file '" + database +
                            "': check --db, or make the sample database with 'kestrova-sel "
                            "demo-db FILE'",
                        "08001");
  }
  return open_suite_file(database, access);
}

std::string access_level_list(std::int32_t user_level) {
  const std::string all = "SELECT ID FROM ACCESS_LEVELS";
  return user_level == kHeadOffice ? all : all + " WHERE ID = " + std::to_string(user_level);
}

std::shared_ptr<SettingsUserLocale> make_locale(const GlobalOptions& options) {
  return std::make_shared<SettingsUserLocale>(options.language, options.date_order);
}

Session make_session(const GlobalOptions& options, Access access) {
  Session session{.context = {}, .format = ValueFormat(make_locale(options))};
  session.context.dbado = open_connection(options.database, access);
  session.context.strLanguage = options.language;
  session.context.strOderLine = options.or_line;
  session.context.strNatWahrung = kNationalCurrency;
  session.context.strDateOrder = options.date_order;
  session.context.lngAccessLevel = options.user_level;
  session.context.strAccessLevelList = access_level_list(options.user_level);
  session.context.lngUserID = options.user;
  return session;
}

void install(const Session& session, const GlobalOptions& options,
             std::shared_ptr<UserInterface> user_interface,
             std::function<std::shared_ptr<SelectionForm>()> make_form) {
  const auto locale = make_locale(options);
  install_host({.suite = make_standalone_suite(session.context.dbado, locale),
                .user_interface = std::move(user_interface),
                .user_locale = locale,
                .make_selection_form = std::move(make_form)});
}

}  // namespace

void SelectedField::select(std::int16_t id, bool null_value) {
  fields_.clear();
  fields_.add("field");
  fields_.set_item_data(0, id);
  fields_.set_index(0);
  values_.clear();
  values_.add("Null");
  values_.set_index(null_value ? 0 : -1);
}

Value Session::single_value(std::string_view sql) const {
  return connection().open(sql, CursorType::kForwardOnly, LockType::kReadOnly)->value(0);
}

Session open_session(const GlobalOptions& options) {
  Session session = make_session(options, Access::kRead);
  const auto lists = std::make_shared<SelectedField>();
  session.lists = lists;
  install(session, options, std::make_shared<ConsoleUserInterface>(), [lists] { return lists; });
  return session;
}

Session open_editor_session(const GlobalOptions& options,
                            std::shared_ptr<UserInterface> user_interface) {
  Session session = make_session(options, Access::kWrite);
  install(session, options, std::move(user_interface), &make_selection_form);
  return session;
}

std::string sql_literal(std::string_view s) { return "'" + text::replace_all(s, "'", "''") + "'"; }

}  // namespace kestrova::tool
