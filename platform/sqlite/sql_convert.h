// Conversions between the stored forms of values (see sql_types.h), as the server makes them. The
// translator uses them on literals, the database's functions on rows, the row set on new values.
#pragma once

#include <string>
#include <string_view>

#include "platform/error.h"
#include "platform/sqlite/sql_types.h"
#include "platform/value.h"

namespace kestrova::sql {

// The stored form of a text as a value of the type. Raises DatabaseError 22018 for a text that is
// not the number, 22007 for one that is not the date asked for.
Value text_to_stored(std::string_view text, const SqlType& type);

// A stored number or date as a column of another number or date type keeps it. Raises DatabaseError
// 22003 for a number outside the type's range.
Value fit_stored(const Value& stored, const SqlType& type);

// The text of a stored value of the type. Style 0 is the server's implicit one; others are those of
// CONVERT for dates. Raises DatabaseError for a style that is not known.
std::string stored_to_text(const Value& stored, const SqlType& type, int style = 0);

// The digits of a number of type from as a text of type to. What does not fit is a "*" for whole
// numbers in the one-byte types, else it raises DatabaseError 22003.
std::string number_text(std::string_view digits, const SqlType& from, const SqlType& to);

// Days since 1900-01-01, the server's day zero.
double date_to_days(const DateTime& date);
DateTime days_to_date(double days);

// The error of a NULL for a column ("TABLE.COLUMN") that takes none.
DatabaseError missing_value(const std::string& column);

// The stored form of any value as a value of the type: what a host passes for a column.
Value host_to_stored(const Value& value, const SqlType& type);

// The value that a host sees for a stored one.
Value stored_to_host(const Value& stored, const SqlType& type);

// A stored value as a literal of the embedded database.
std::string stored_literal(const Value& stored);

}  // namespace kestrova::sql
