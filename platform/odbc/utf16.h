// Between the library's UTF-8 and the UTF-16 of ODBC.
#pragma once

#include <string>
#include <string_view>

namespace kestrova::odbc {

// Raises DatabaseError (22021) for bytes that are no UTF-8: another letter in their place would
// silently change a filter.
std::u16string to_utf16(std::string_view utf8);

// Half a surrogate pair, which a server's column can hold, becomes three bytes that to_utf16 turns
// back.
std::string to_utf8(std::u16string_view utf16);

}  // namespace kestrova::odbc
