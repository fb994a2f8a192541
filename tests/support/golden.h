// Golden tables: tests/golden/*.tsv, the expected behaviour as rows that people write and read.
//
// One row per line, cells separated by a tab. The first line that is no comment names the columns.
// A line that begins with "#" is a comment. Blanks in a cell matter, at its ends too; an empty cell
// is the empty text. In a cell
//   \t \r \n  are tab, carriage return and line feed,
//   \s        is a blank (so that blanks at the end of a cell can be seen and survive an editor),
//   \\        is the backslash and \# the "#" (needed at the beginning of a line only).
// Any other escape, a row with a cell too many or too few and a column named twice are errors: a
// table that is read wrongly would prove nothing.
#pragma once

#include <algorithm>
#include <fstream>
#include <memory>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrova::golden {

// One row. Its cells are asked for by column name.
class Row {
 public:
  Row(std::string place, std::shared_ptr<const std::vector<std::string>> columns,
      std::vector<std::string> cells)
      : place_(std::move(place)), columns_(std::move(columns)), cells_(std::move(cells)) {}

  const std::string& operator[](std::string_view column) const {
    const auto found = std::find(columns_->begin(), columns_->end(), column);
    if (found == columns_->end()) {
      throw std::out_of_range(place_ + ": no column '" + std::string(column) + "'");
    }
    return cells_[static_cast<std::size_t>(found - columns_->begin())];
  }

  // A cell that is "0" or "1".
  bool flag(std::string_view column) const {
    const std::string& cell = (*this)[column];
    if (cell == "1") return true;
    if (cell == "0") return false;
    throw std::invalid_argument(place_ + ": '" + cell + "' is neither 0 nor 1");
  }

  // A cell that is a decimal whole number.
  int number(std::string_view column) const {
    const std::string& cell = (*this)[column];
    std::size_t used = 0;
    int result = 0;
    try {
      result = std::stoi(cell, &used);
    } catch (const std::exception&) {
      used = std::string::npos;
    }
    if (used != cell.size()) throw std::invalid_argument(place_ + ": '" + cell + "' is no number");
    return result;
  }

  // Where the row stands: "relations.tsv:12".
  const std::string& place() const { return place_; }

 private:
  std::string place_;
  std::shared_ptr<const std::vector<std::string>> columns_;
  std::vector<std::string> cells_;
};

// How a failing parameterised test shows the row.
inline void PrintTo(const Row& row, std::ostream* out) { *out << row.place(); }

namespace detail {

inline char unescaped(char code, const std::string& place) {
  switch (code) {
    case 't':
      return '\t';
    case 'r':
      return '\r';
    case 'n':
      return '\n';
    case 's':
      return ' ';
    case '\\':
    case '#':
      return code;
    default:
      throw std::invalid_argument(place + ": unknown escape \\" + code);
  }
}

inline std::vector<std::string> cells_of(std::string_view line, const std::string& place) {
  std::vector<std::string> cells(1);
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '\t') {
      cells.emplace_back();
    } else if (line[i] != '\\') {
      cells.back() += line[i];
    } else if (++i == line.size()) {
      throw std::invalid_argument(place + ": the line ends within an escape");
    } else {
      cells.back() += unescaped(line[i], place);
    }
  }
  return cells;
}

}  // namespace detail

// The rows of a table. name is how error messages call it.
inline std::vector<Row> parse(const std::string& text, const std::string& name) {
  std::vector<Row> rows;
  std::shared_ptr<const std::vector<std::string>> columns;
  std::istringstream lines(text);
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    // A checkout may have turned line ends into CR LF; a carriage return of a cell is written \r.
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty() && line.front() == '#') continue;
    const std::string place = name + ":" + std::to_string(number);
    std::vector<std::string> cells = detail::cells_of(line, place);
    if (!columns) {
      std::vector<std::string> sorted = cells;
      std::sort(sorted.begin(), sorted.end());
      if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end()) {
        throw std::invalid_argument(place + ": two columns have the same name");
      }
      columns = std::make_shared<const std::vector<std::string>>(std::move(cells));
    } else if (cells.size() != columns->size()) {
      throw std::invalid_argument(place + ": " + std::to_string(cells.size()) +
                                  " cells instead of " + std::to_string(columns->size()));
    } else {
      rows.emplace_back(place, columns, std::move(cells));
    }
  }
  if (rows.empty()) throw std::invalid_argument(name + ": no rows");
  return rows;
}

// The rows of a table file: read(KESTROVA_GOLDEN_DIR "/relations.tsv").
inline std::vector<Row> read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot open " + path);
  std::ostringstream text;
  text << file.rdbuf();
  return parse(text.str(), path.substr(path.find_last_of("/\\") + 1));
}

}  // namespace kestrova::golden
