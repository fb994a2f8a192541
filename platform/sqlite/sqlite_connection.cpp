#include "platform/sqlite/sqlite_connection.h"

#include "platform/error.h"
#include "platform/single_select.h"
#include "platform/sqlite/sqlite_error.h"
#include "platform/sqlite/sqlite_recordset.h"
#include "platform/sqlite/sqlite_session.h"

namespace kestrova {
namespace {

class SqliteConnection final : public Connection {
 public:
  explicit SqliteConnection(std::shared_ptr<sql::Session> session) : session_(std::move(session)) {}

  std::unique_ptr<Recordset> open(std::string_view source, CursorType cursor,
                                  LockType lock) override {
    return std::make_unique<sql::SqliteRecordset>(session_, single_select(source), cursor, lock);
  }

  std::int64_t execute(std::string_view batch) override { return session_->execute(batch); }

  ConnectionKind kind() const override { return ConnectionKind::kSqlServer; }

  bool set_time_limit(std::chrono::milliseconds limit) override {
    session_->set_time_limit(limit);
    return true;
  }

  void check(std::string_view sql) { session_->check(sql); }

 private:
  std::shared_ptr<sql::Session> session_;
};

int open_flags(const std::string& file, const SqliteOptions& options) {
  if (options.read_only) return SQLITE_OPEN_READONLY;
  const bool create = options.create || file == ":memory:";
  return SQLITE_OPEN_READWRITE | (create ? SQLITE_OPEN_CREATE : 0);
}

std::shared_ptr<sql::Session> open_session(const std::string& file, const SqliteOptions& options) {
  const int flags = open_flags(file, options);
  try {
    return std::make_shared<sql::Session>(file, flags, options.clock);
  } catch (const DatabaseError& error) {
    if (!options.read_only || !sql::needs_recovery(error)) throw;
  }
  // Who may only read cannot undo what a broken-off program left half done.
  sql::Session(file, SQLITE_OPEN_READWRITE, options.clock);
  return std::make_shared<sql::Session>(file, flags, options.clock);
}

}  // namespace

std::shared_ptr<Connection> open_sqlite(const std::string& file_or_memory, SqliteOptions options) {
  return std::make_shared<SqliteConnection>(open_session(file_or_memory, options));
}

void check_sqlite(Connection& connection, std::string_view sql) {
  auto* embedded = dynamic_cast<SqliteConnection*>(&connection);
  if (!embedded) throw InvalidArgument("The connection is none of the embedded database.");
  embedded->check(sql);
}

}  // namespace kestrova
