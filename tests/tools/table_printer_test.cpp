#include "tools/table_printer.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kestrova::tool {
namespace {

std::string printed(const TablePrinter& table, std::string_view indent = "") {
  std::ostringstream out;
  table.print(out, indent);
  return out.str();
}

TEST(TablePrinter, AlignsTextLeftAndNumbersRight) {
  TablePrinter table({{"NAME"}, {"MENGE", Align::kRight}, {"ORT"}});
  table.add_row({"Fichte", "7", "Höllental"});
  table.add_row({"Lärche", "12,50", ""});
  EXPECT_EQ(printed(table),
            "NAME    MENGE  ORT\n"
            "------  -----  ---------\n"
            "Fichte      7  Höllental\n"
            "Lärche  12,50\n");
}

TEST(TablePrinter, ShowsTheHeadingOfAnEmptyTable) {
  EXPECT_EQ(printed(TablePrinter({{"A"}, {"LONGER"}}), "  "), "  A  LONGER\n  -  ------\n");
}

TEST(TablePrinter, CutsLongTextsByCharacters) {
  TablePrinter table({{"T"}}, 8);
  table.add_row({"äöüäöüäö"});
  table.add_row({"äöüäöüäöü"});
  EXPECT_EQ(printed(table), "T\n--------\näöüäöüäö\näöüäö...\n");
}

TEST(TablePrinter, KeepsOneLinePerRow) {
  TablePrinter table({{"T"}});
  table.add_row({"a\r\nb\tc"});
  EXPECT_EQ(printed(table), "T\n------\na  b c\n");
}

TEST(TablePrinter, NeedsOneCellPerColumn) {
  TablePrinter table({{"A"}, {"B"}});
  EXPECT_THROW(table.add_row({"1"}), std::invalid_argument);
}

}  // namespace
}  // namespace kestrova::tool
