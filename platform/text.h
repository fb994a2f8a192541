// Text routines on UTF-8. "Character", "length" and "position" mean Unicode code points; positions
// count from 1 where a name says position, and from 0 where it says index or offset (bytes).
//
// All functions are pure. Bytes that are no UTF-8 count as one character each and are kept, so that
// no text is lost or refused.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova::text {

// Without leading and trailing blanks (U+0020 only: tabs and line ends are part of a value).
std::string_view trim(std::string_view s);

// Upper case of every letter of Latin-1, Latin Extended-A, Greek and Cyrillic; the sharp s stays,
// and so does every letter whose upper case lies in the basic range ("ı", "ſ"): a code must not
// become another code by being upper-cased.
std::string upper(std::string_view s);

// Equality after upper().
bool equal_ignoring_case(std::string_view a, std::string_view b);

// Whether needle occurs in s, ignoring case. The empty needle occurs in every text.
bool contains_ignoring_case(std::string_view s, std::string_view needle);

// upper() of the first characters of s equals prefix. prefix must be upper case itself.
bool starts_with_ignoring_case(std::string_view s, std::string_view prefix);

// Number of characters.
std::size_t length(std::string_view s);

// The characters from position (counted from 1) on, at most count of them. Nothing when position
// lies behind the end. Raises InvalidArgument when position is below 1.
std::string_view mid(std::string_view s, std::size_t position, std::size_t count = SIZE_MAX);

// The first count characters, or all of s when it is shorter.
std::string_view left(std::string_view s, std::size_t count);

// s with every occurrence of what replaced by with, from left to right. what must not be empty.
std::string replace_all(std::string_view s, std::string_view what, std::string_view with);

// The pieces of s between the separators, empty ones included. One piece (s) without separator.
std::vector<std::string_view> split(std::string_view s, char separator);

// The whole number that s, without surrounding blanks, spells: an optional sign and decimal digits,
// nothing else. Nothing when it is not of that form; a number beyond 64 bits becomes the nearest
// one that fits.
std::optional<std::int64_t> to_integer(std::string_view s);

// The field identifier that s spells. Raises TypeMismatch when s is no whole number and Overflow
// when it does not fit 16 bits; both messages quote s.
std::int16_t to_int16(std::string_view s);

}  // namespace kestrova::text
