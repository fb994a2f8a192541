#include "examples/forest/forest_script_writer.h"

#include "platform/error.h"

namespace kestrova {
namespace {

constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";
constexpr const char* kHead =
    "-- Sample forestry database for SQL Server. Into an empty database:\n"
    "--   sqlcmd -S SERVER -d DATABASE -b -x -i THIS-FILE\n"
    "-- It stops at its first error, and nothing stays in the database then.\n"
    ":on error exit\nGO\n"
    "SET XACT_ABORT ON\nGO\n";

// A connection that writes down what it would run.
class ScriptConnection final : public Connection {
 public:
  explicit ScriptConnection(std::ostream& out) : out_(out) {}

  std::unique_ptr<Recordset> open(std::string_view, CursorType, LockType) override {
    throw DatabaseError("A script has no rows.");
  }
  std::int64_t execute(std::string_view batch) override {
    out_ << batch << "\nGO\n";
    return 0;
  }
  ConnectionKind kind() const override { return ConnectionKind::kSqlServer; }

 private:
  std::ostream& out_;
};

}  // namespace

void write_forest_script(std::ostream& out, const ForestOptions& options) {
  out << kByteOrderMark << kHead;
  ScriptConnection connection(out);
  build_forest_database(connection, options);
}

}  // namespace kestrova
