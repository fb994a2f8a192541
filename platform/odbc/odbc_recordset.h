// A row set over ODBC: all rows in memory, and the cursor or key by which they are written.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/odbc/odbc_session.h"
#include "platform/odbc/row_reader.h"
#include "platform/odbc/row_writer.h"

namespace kestrova::odbc {

class OdbcRecordset final : public Recordset {
 public:
  OdbcRecordset(std::shared_ptr<Session> session, std::string query, CursorType cursor,
                LockType lock);

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
  void open_query();
  void check_open() const;
  void check_current() const;
  void check_writable();
  bool is_writable(std::size_t position) const;  // behind check_writable()
  std::size_t position_of(std::string_view name) const;
  const ResultColumn& column(std::size_t position) const;

  std::shared_ptr<Session> session_;
  std::string query_;
  std::string name_;  // how errors name the query
  LockType lock_;
  bool forward_only_;
  bool updatable_;
  bool open_ = true;
  bool moved_ = false;
  std::vector<ResultColumn> columns_;
  ResultRows rows_;
  std::size_t current_ = 0;
  Changes changes_;                     // of the current row
  StatementHandle cursor_;              // if the driver has granted one that can be updated
  std::vector<SourceColumn> sources_;   // of an updatable row set
  std::optional<UpdateTarget> target_;  // where there is no cursor, as soon as a row is written
};

}  // namespace kestrova::odbc
