// Aligned tables for people.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova::tool {

enum class Align { kLeft, kRight };

struct TableColumn {
  std::string title;
  Align align = Align::kLeft;
};

// Collects the cells and prints them with a heading, each column as wide as its widest cell. Widths
// count characters, so umlauts do not move the columns. Tabs and line ends are shown
// as blanks.
class TablePrinter {
 public:
  // Cells longer than max_width characters are cut and end in "...".
  explicit TablePrinter(std::vector<TableColumn> columns, std::size_t max_width = SIZE_MAX);

  // One cell per column; raises std::invalid_argument for any other number.
  void add_row(const std::vector<std::string>& cells);

  // Every line begins with indent and ends without blanks.
  void print(std::ostream& out, std::string_view indent = "") const;

 private:
  void print_line(std::ostream& out, std::string_view indent,
                  const std::vector<std::string>& cells) const;

  std::vector<TableColumn> columns_;
  std::size_t max_width_;
  std::vector<std::size_t> widths_;
  std::vector<std::vector<std::string>> rows_;
};

// s as one line of at most max_width characters.
std::string fit_cell(std::string_view s, std::size_t max_width);

}  // namespace kestrova::tool
