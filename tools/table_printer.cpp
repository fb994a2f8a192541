#include "tools/table_printer.h"

#include <algorithm>
#include <stdexcept>

#include "platform/text.h"

namespace kestrova::tool {
namespace {

constexpr std::string_view kGap = "  ";
constexpr std::string_view kCut = "...";

}  // namespace

std::string fit_cell(std::string_view s, std::size_t max_width) {
  std::string cell(s);
  if (text::length(s) > max_width) {
    cell = std::string(text::left(s, max_width - std::min(max_width, kCut.size())));
    cell += kCut.substr(0, max_width);
  }
  constexpr std::string_view kSpaces = "\t\n\v\f\r";
  std::replace_if(
      cell.begin(), cell.end(), [&](char c) { return kSpaces.find(c) != std::string_view::npos; },
      ' ');
  return cell;
}

TablePrinter::TablePrinter(std::vector<TableColumn> columns, std::size_t max_width)
    : columns_(std::move(columns)), max_width_(max_width) {
  for (const TableColumn& column : columns_) widths_.push_back(text::length(column.title));
}

void TablePrinter::add_row(const std::vector<std::string>& cells) {
  if (cells.size() != columns_.size()) {
    throw std::invalid_argument("A table row needs one cell per column.");
  }
  std::vector<std::string>& row = rows_.emplace_back();
  for (std::size_t i = 0; i < cells.size(); ++i) {
    row.push_back(fit_cell(cells[i], max_width_));
    widths_[i] = std::max(widths_[i], text::length(row.back()));
  }
}

void TablePrinter::print(std::ostream& out, std::string_view indent) const {
  std::vector<std::string> titles;
  std::vector<std::string> rules;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    titles.push_back(columns_[i].title);
    rules.emplace_back(widths_[i], '-');
  }
  print_line(out, indent, titles);
  print_line(out, indent, rules);
  for (const std::vector<std::string>& row : rows_) print_line(out, indent, row);
}

void TablePrinter::print_line(std::ostream& out, std::string_view indent,
                              const std::vector<std::string>& cells) const {
  std::string line(indent);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) line += kGap;
    const std::string padding(widths_[i] - text::length(cells[i]), ' ');
    line += columns_[i].align == Align::kRight ? padding + cells[i] : cells[i] + padding;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  out << line << '\n';
}

}  // namespace kestrova::tool
