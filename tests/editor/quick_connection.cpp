#include "tests/editor/quick_connection.h"

#include <utility>

#include "platform/text.h"

namespace kestrova::test {
namespace {

class QuickRows : public Recordset {
 public:
  explicit QuickRows(std::shared_ptr<QuickTable> table) : table_(std::move(table)) {}

  bool eof() const override { return row_ >= rows().size(); }
  void move_first() override { row_ = 0; }
  void move_next() override {
    current();
    ++row_;
  }
  void find(std::string_view criterion) override {
    const FindCriterion wanted = parse_find_criterion(criterion);
    const std::size_t column = position_of(wanted.column);
    while (!eof() && !meets(wanted, rows()[row_][column])) ++row_;
  }

  std::size_t column_count() const override { return open_table().columns.size(); }
  std::string column_name(std::size_t position) const override { return column(position).name; }
  Value value(std::string_view name) const override { return current()[position_of(name)]; }
  Value value(std::size_t position) const override {
    column(position);
    return current()[position];
  }
  FieldType type(std::string_view name) const override { return column(position_of(name)).type; }
  FieldType type(std::size_t position) const override { return column(position).type; }

  void set_value(std::string_view name, const Value& value) override {
    current();
    open_table().rows[row_][position_of(name)] = value;
  }
  void update() override { current(); }
  void close() override { table_.reset(); }

 private:
  QuickTable& open_table() const {
    if (!table_) throw ObjectNotSet("The row set is closed.");
    return *table_;
  }
  const Rows& rows() const { return open_table().rows; }
  const Row& current() const {
    if (eof()) throw NoCurrentRecord("The row set stands at its end.");
    return rows()[row_];
  }
  const Column& column(std::size_t position) const {
    const Columns& columns = open_table().columns;
    if (position >= columns.size()) throw ItemNotFound("There is no such column.");
    return columns[position];
  }
  // Names are nearly always asked for as they are written; only other ones are upper-cased.
  std::size_t position_of(std::string_view name) const {
    const Columns& columns = open_table().columns;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (columns[i].name == name) return i;
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (text::equal_ignoring_case(columns[i].name, name)) return i;
    }
    throw ItemNotFound("There is no column " + std::string(name));
  }

  std::shared_ptr<QuickTable> table_;
  std::size_t row_ = 0;
};

QuickTable copy_of(Recordset& rows) {
  QuickTable table;
  for (std::size_t i = 0; i < rows.column_count(); ++i) {
    table.columns.push_back({rows.column_name(i), rows.type(i)});
  }
  for (; !rows.eof(); rows.move_next()) {
    Row& row = table.rows.emplace_back();
    for (std::size_t i = 0; i < table.columns.size(); ++i) row.push_back(rows.value(i));
  }
  return table;
}

}  // namespace

QuickConnection::QuickConnection(std::shared_ptr<RecordingConnection> script)
    : script_(std::move(script)) {}

void QuickConnection::share(std::string sql, std::shared_ptr<QuickTable> table) {
  tables_[std::move(sql)] = std::move(table);
}

std::unique_ptr<Recordset> QuickConnection::open(std::string_view source, CursorType cursor,
                                                 LockType lock) {
  auto found = tables_.find(source);
  if (found == tables_.end()) {
    const auto rows = script_->open(source, cursor, lock);
    found = tables_.emplace(source, std::make_shared<QuickTable>(copy_of(*rows))).first;
  }
  return std::make_unique<QuickRows>(found->second);
}

std::int64_t QuickConnection::execute(std::string_view batch) { return script_->execute(batch); }

}  // namespace kestrova::test
