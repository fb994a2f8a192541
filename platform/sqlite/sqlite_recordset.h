// A row set of the embedded database.
#pragma once

#include <deque>
#include <exception>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/sqlite/sqlite_session.h"

namespace kestrova::sql {

class SqliteRecordset final : public Recordset, private RowReader {
 public:
  SqliteRecordset(std::shared_ptr<Session> session, std::string source, CursorType cursor,
                  LockType lock);
  ~SqliteRecordset() override;

  bool eof() const override;
  void move_first() override;
  void move_next() override;
  void find(std::string_view criterion) override;
  std::size_t column_count() const override;
  std::string column_name(std::size_t position) const override;
  Value value(std::string_view name) const override;
  Value value(std::size_t position) const override;
  FieldType type(std::string_view name) const override;
  FieldType type(std::size_t position) const override;
  void set_value(std::string_view name, const Value& value) override;
  void update() override;
  void close() override;

 private:
  struct Row {
    std::vector<Value> values;
    std::int64_t number = 0;  // in the one table, if there is one
  };

  // A new value of a column, as it is stored and as the host sees it.
  struct Change {
    Value stored;
    Value value;
  };

  void open_query();
  bool fetch();
  Row read_row();
  Value read_value(int column) const;
  void stop_reading();
  void read_rest() override;
  void check_open() const;
  void check_current() const;
  std::size_t position_of(std::string_view name) const;
  const OutputColumn& column(std::size_t position) const;

  std::shared_ptr<Session> session_;
  std::string source_;
  bool forward_only_;
  bool updatable_;
  bool open_ = true;
  bool moved_ = false;
  OpenedQuery query_;
  // The rows at hand: all of them, or on a forward-only row set the current one and those behind it
  // that have been read already.
  std::deque<Row> rows_;
  std::size_t current_ = 0;
  // Raised when the row that could not be read is reached.
  std::exception_ptr pending_error_;
  std::map<std::size_t, Change> changes_;  // of the current row, by position
};

}  // namespace kestrova::sql
