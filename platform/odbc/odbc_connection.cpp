#include "platform/odbc/odbc_connection.h"

#include "platform/error.h"
#include "platform/odbc/batch.h"
#include "platform/odbc/odbc_recordset.h"
#include "platform/odbc/odbc_session.h"
#include "platform/single_select.h"

namespace kestrova {
namespace {

class OdbcConnection final : public Connection {
 public:
  OdbcConnection(const std::string& connection_string, const OdbcOptions& options)
      : session_(std::make_shared<odbc::Session>(connection_string, options)) {}

  std::unique_ptr<Recordset> open(std::string_view source, CursorType cursor,
                                  LockType lock) override {
    return std::make_unique<odbc::OdbcRecordset>(session_, single_select(source), cursor, lock);
  }

  // SQL Server reads a batch itself; of other databases each statement is asked for alone.
  std::int64_t execute(std::string_view batch) override {
    const bool runs_batches = kind() == ConnectionKind::kSqlServer;
    const std::vector<std::string_view> statements =
        runs_batches ? std::vector<std::string_view>{batch} : odbc::split_batch(batch);
    std::int64_t changed = 0;
    for (std::size_t i = 0; i < statements.size(); ++i) {
      const std::string name = session_->name_of(i, statements[i]);
      // Some drivers count for statements that change no rows, too.
      const bool counts = runs_batches || odbc::changes_rows(statements[i]);
      const std::int64_t rows = run(statements[i], name);
      if (counts && rows >= 0) changed = rows;
    }
    return changed;
  }

  ConnectionKind kind() const override { return session_->traits().kind; }

 private:
  // The rows that the last of the statements has changed; below 0 when none tells a number.
  std::int64_t run(std::string_view sql, const std::string& name) {
    const odbc::StatementHandle statement = session_->new_statement();
    session_->run(statement, sql, name);
    return session_->last_row_count(statement, name);
  }

  std::shared_ptr<odbc::Session> session_;
};

}  // namespace

std::shared_ptr<Connection> open_odbc(const std::string& connection_string,
                                      const OdbcOptions& options) {
  return std::make_shared<OdbcConnection>(connection_string, options);
}

std::string masked_connection_string(std::string_view connection_string) {
  try {
    return odbc::masked(odbc::parse_connection_string(connection_string));
  } catch (const InvalidArgument&) {
    return "***";
  }
}

}  // namespace kestrova
