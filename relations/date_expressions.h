// Dates in criteria: which types are dates, and the forms that a date value takes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestrova {

// Whether a column type code is a date with a day: 7, 133 or 135. (134 is a time of day only.)
bool IsDateFieldType(std::int32_t fieldType);

// What the caller of ToDateExpression passes to the suite's date formatter.
struct DateSettings {
  std::string_view date_order;  // "DMY", "MDY", "YDM" or "YMD"
  bool flag = false;            // the caller's own; passed on and of no other effect
};

// A typed date value as a SQL expression, without surrounding blanks:
//  - a value that holds GETDATE(), in either case, as it is;
//  - a number of days, apostrophes removed, as "GETDATE()" and the number with its sign ("+5");
//    a number with one "." counts ("1.5" is one and a half days), as the user's locale reads it;
//  - anything else as an absolute date, between apostrophes, in the form of the suite's formatter.
// Raises the formatter's error for a text that is no date.
std::string ToDateExpression(const DateSettings& ctx, std::string_view value);

// A date with "/" separators, in the order of dateOrder (either case), as "'dd.mm.yyyy'" with the
// apostrophes; years of two digits are 1930 to 2029. A value without exactly three parts, or an
// order that is none of the four, comes back as it is. Raises TypeMismatch for parts that are no
// numbers or no day of the calendar, Overflow for a part beyond 16 bits.
std::string ToDateLiteral(std::string_view value, std::string_view dateOrder);

}  // namespace kestrova
