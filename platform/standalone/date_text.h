// Dates as users type them and as the server reads them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/date_time.h"

namespace kestrova::standalone {

// In which order a user writes the parts of a date. Positions count from 0.
struct DateOrder {
  std::string_view name;
  int day;
  int month;
  int year;
  char separator;  // between the parts of a date that is shown
};

// The order of that name, in either case of letters. Raises InvalidArgument for any other than
// "DMY", "MDY", "YMD" and "YDM".
const DateOrder& date_order_of(std::string_view name);

// How much of a time of day stands in a text.
enum class TimePart { kNone, kMinutes, kSeconds };

struct TypedDate {
  DateTime date;
  TimePart time = TimePart::kNone;
};

// The date that a text spells, or nothing: day, month and year in the given order with the same
// separator ".", "/" or "-" twice, the year with two or four digits. Whatever the order, dd.mm.yyyy
// (the server's form) and yyyy-mm-dd mean what they say. A time hh:mm or hh:mm:ss may follow after
// blanks.
std::optional<TypedDate> read_date(std::string_view typed, const DateOrder& order);

// A date in the given order, zero-padded, with " hh:mm" or " hh:mm:ss" behind it unless it is
// midnight.
std::string shown_date(const DateTime& date, const DateOrder& order);

// "dd.mm.yyyy", with " hh:mm" or " hh:mm:ss" behind it as far as the time is given.
std::string server_text(const TypedDate& typed);

// "dd.mm.yyyy", with the time of day behind it unless it is midnight, to the millisecond: an upper
// bound that lost its time would lose the rows of its last day.
std::string server_text(const DateTime& date);

}  // namespace kestrova::standalone
