#include "tools/session.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>

#include "interface/module_state.h"
#include "platform/error.h"
#ifdef KESTROVA_HAS_ODBC
#include "platform/odbc/odbc_connection.h"
#endif
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

[[noreturn]] void refuse(const std::string& why, const DatabaseError& error) {
  throw DatabaseError(why + ": " + error.what(), error.sqlstate(), error.native_code());
}

// A database that is locked, or that must recover before it can be read, may well be the suite's.
[[noreturn]] void refuse_database(const std::string& name, const DatabaseError& error) {
  const bool cannot_be_read_now = error.sqlstate() == "40001" || error.sqlstate() == "25006";
  if (cannot_be_read_now) refuse("'" + name + "' cannot be read now", error);
  refuse("'" + name + "' is no database of the suite, check --db", error);
}

// The first look into a database tells whether the suite lives there.
void require_suite(Connection& connection) {
  connection.open("SELECT TOP 0 TABLE_KEY FROM SUITE_TABLE_KEYS", CursorType::kForwardOnly,
                  LockType::kReadOnly);
}

std::shared_ptr<Connection> open_suite_file(const std::string& file, bool read_only) {
  if (!std::filesystem::is_regular_file(file)) {
    throw DatabaseError("there is no database file '" + file +
                            "': check --db, or make the sample database with 'kestrova-sel "
                            "demo-db FILE'",
                        "08001");
  }
  try {
    std::shared_ptr<Connection> connection = open_sqlite(file, {.read_only = read_only});
    require_suite(*connection);
    return connection;
  } catch (const DatabaseError& error) {
    refuse_database(file, error);
  }
}

#ifdef KESTROVA_HAS_ODBC
std::shared_ptr<Connection> connect(const std::string& connection_string, const std::string& name,
                                    bool read_only) {
  OdbcOptions options;
  options.read_only = read_only;
  try {
    return open_odbc(connection_string, options);
  } catch (const DatabaseError& error) {
    refuse("cannot connect to '" + name + "'", error);
  } catch (const InvalidArgument& error) {
    throw UsageError(std::string("--db: ") + error.what());
  }
}

std::shared_ptr<Connection> open_suite_source(const std::string& connection_string,
                                              bool read_only) {
  const std::string name = masked_connection_string(connection_string);
  const std::shared_ptr<Connection> connection = connect(connection_string, name, read_only);
  try {
    require_suite(*connection);
  } catch (const DatabaseError& error) {
    refuse_database(name, error);
  }
  return connection;
}
#else
std::shared_ptr<Connection> open_suite_source(const std::string&, bool) {
  throw UsageError(
      "this program was built without ODBC: give --db the file of an embedded database");
}
#endif

std::shared_ptr<Connection> open_connection(const std::string& database, bool read_only) {
  if (database.empty()) {
    throw UsageError(
        "this needs a database: give one with --db FILE, or make the sample database with "
        "'kestrova-sel demo-db FILE'");
  }
  std::error_code ignored;
  if (database.find('=') != std::string::npos && !database.starts_with("odbc:") &&
      !std::filesystem::is_regular_file(database, ignored)) {
    // Not quoted: it may hold a password.
    throw UsageError("--db: a connection string begins with 'odbc:'");
  }
  const std::string_view scheme = scheme_of(database);
  if (scheme.empty()) return open_suite_file(database, read_only);
  if (text::equal_ignoring_case(scheme, "odbc")) {
    return open_suite_source(database.substr(scheme.size() + 1), read_only);
  }
  throw UsageError("there is no kind of database called '" + std::string(scheme) +
                   "': give --db the file of an embedded database or odbc:CONNECTION-STRING");
}

std::string access_level_list(std::int32_t user_level) {
  const std::string all = "SELECT ID FROM ACCESS_LEVELS";
  return user_level == kHeadOffice ? all : all + " WHERE ID = " + std::to_string(user_level);
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

namespace {

Session open_session(const GlobalOptions& options, bool read_only,
                     std::shared_ptr<UserInterface> user) {
  const std::shared_ptr<Connection> connection = open_connection(options.database, read_only);
  const auto locale = std::make_shared<SettingsUserLocale>(options.language, options.date_order);
  install_host({.suite = make_standalone_suite(connection, locale),
                .user_interface = std::move(user),
                .user_locale = locale});
  Session session{.context = {}, .format = ValueFormat(locale)};
  session.context.dbado = connection;
  session.context.strLanguage = options.language;
  session.context.strOderLine = options.or_line;
  session.context.strNatWahrung = kNationalCurrency;
  session.context.strDateOrder = options.date_order;
  session.context.lngAccessLevel = options.user_level;
  session.context.strAccessLevelList = access_level_list(options.user_level);
  session.context.lngUserID = options.user;
  return session;
}

}  // namespace

// Showing what a filter selects must never change the suite's data.
Session open_session(const GlobalOptions& options) {
  Session session = open_session(options, true, std::make_shared<ConsoleUserInterface>());
  session.lists = std::make_shared<SelectedField>();
  module_state().theSelectionForm = session.lists;
  return session;
}

Session open_editor_session(const GlobalOptions& options, bool read_only,
                            std::shared_ptr<UserInterface> user) {
  return open_session(options, read_only, std::move(user));
}

std::string sql_literal(std::string_view s) { return "'" + text::replace_all(s, "'", "''") + "'"; }

}  // namespace kestrova::tool
