// Column values as ODBC hands them over, and as the port does.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/odbc/column_types.h"
#include "platform/odbc/odbc_handle.h"
#include "platform/value.h"

namespace kestrova::odbc {

// The C type and the size in bytes of the buffer that a value needs. size is the column's, in
// characters, bytes or digits; only text, bytes and numbers as text depend on it.
SQLSMALLINT c_type(ReadAs read_as);
std::size_t buffer_size(ReadAs read_as, std::size_t size);

// The bytes behind a value at the end of a full buffer: ODBC ends texts with a zero.
std::size_t terminator_size(ReadAs read_as);

// The value in a buffer of c_type(read_as), of length bytes without terminator. Raises
// DatabaseError (22008) for a date outside the years 1 to 9999.
Value to_value(ReadAs read_as, const std::byte* data, std::size_t length);

// Drivers write ".50" and "-.50"; the port has a digit before the point. A text that is no decimal
// number (a server's "NaN") stays a text.
Value decimal_value(std::string_view digits);

// "13:45:10.25" on the port's day zero; nothing for any other text.
std::optional<DateTime> time_of_day(std::string_view text);

// "2024-02-29 13:45:10.25 +01:00": the date and time as they stand there, without the offset, since
// the port knows no time zones.
std::optional<DateTime> date_time(std::string_view text);

SQL_TIMESTAMP_STRUCT timestamp_of(const DateTime& value);

// How many digits the fraction of a second has, without trailing zeros.
int fraction_digits(const DateTime& value);

}  // namespace kestrova::odbc
