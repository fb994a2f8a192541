#include "tools/rows.h"

#include "tools/table_printer.h"

namespace kestrova::tool {
namespace {

constexpr std::size_t kWidestCell = 40;

}  // namespace

ResultRows read_rows(const Session& session, std::string_view sql) {
  const auto recordset =
      session.connection().open(sql, CursorType::kForwardOnly, LockType::kReadOnly);
  ResultRows result;
  for (std::size_t i = 0; i < recordset->column_count(); ++i) {
    result.columns.push_back({recordset->column_name(i), recordset->type(i)});
  }
  for (; !recordset->eof(); recordset->move_next()) {
    std::vector<Value>& row = result.rows.emplace_back();
    for (std::size_t i = 0; i < result.columns.size(); ++i) row.push_back(recordset->value(i));
  }
  return result;
}

void print_rows(std::ostream& out, const ValueFormat& format, const ResultRows& result) {
  std::vector<TableColumn> columns;
  for (const ResultColumn& column : result.columns) {
    columns.push_back({column.name, is_number(column.type) ? Align::kRight : Align::kLeft});
  }
  TablePrinter table(std::move(columns), kWidestCell);
  for (const std::vector<Value>& row : result.rows) {
    std::vector<std::string> cells;
    for (const Value& value : row) cells.push_back(format.show(value));
    table.add_row(cells);
  }
  table.print(out, "  ");
}

void add_rows(Json& answer, const ResultRows& result) {
  Json columns = Json::array();
  for (const ResultColumn& column : result.columns) {
    columns.push_back({{"name", column.name},
                       {"type", type_name(column.type)},
                       {"type_code", static_cast<int>(column.type)}});
  }
  Json rows = Json::array();
  for (const std::vector<Value>& row : result.rows) {
    Json cells = Json::array();
    for (const Value& value : row) cells.push_back(to_json(value));
    rows.push_back(std::move(cells));
  }
  answer["columns"] = std::move(columns);
  answer["rows"] = std::move(rows);
}

}  // namespace kestrova::tool
