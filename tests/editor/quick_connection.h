// A connection for tests that ask it a million times: the answers of a script, without its log.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "tests/support/recording_connection.h"

namespace kestrova::test {

// What an open answers. Row sets read and write it in place.
struct QuickTable {
  Columns columns;
  Rows rows;
};

class QuickConnection : public Connection {
 public:
  // Asks the script for each text once and keeps the answer.
  explicit QuickConnection(std::shared_ptr<RecordingConnection> script);

  // Answers this text with a table that the test may change between the opens.
  void share(std::string sql, std::shared_ptr<QuickTable> table);

  std::unique_ptr<Recordset> open(std::string_view source, CursorType cursor,
                                  LockType lock) override;
  std::int64_t execute(std::string_view batch) override;
  ConnectionKind kind() const override { return ConnectionKind::kSqlServer; }

 private:
  std::shared_ptr<RecordingConnection> script_;
  std::map<std::string, std::shared_ptr<QuickTable>, std::less<>> tables_;
};

}  // namespace kestrova::test
