// Text comparison, search and patterns as the server's usual collation makes them: without regard
// to case, and in comparisons without regard to trailing blanks.
#pragma once

#include <string>
#include <string_view>

namespace kestrova::sql {

// Below, at or above 0 as a sorts before, with or behind b. Letters with accents sort behind those
// without, and both before the next letter: A, Ä, B. The sharp s sorts as SS, behind it: equal are
// two texts only when all their letters are.
int compare_texts(std::string_view a, std::string_view b);

// LIKE: "%" stands for any text, "_" for one character, "[a-f]" for one of these, "[^a-f]" for one
// that is none of these. The character behind the escape character (if any) stands for itself. A
// pattern with a set that is not closed or with nothing behind the escape character matches
// nothing; an empty set, and a range that has a sign at an end, raise DatabaseError. With
// overlook_blanks, blanks that end the text may be missing in the pattern.
bool matches_pattern(std::string_view text, std::string_view pattern, std::string_view escape,
                     bool overlook_blanks);

// Position (from 1) of the first occurrence of needle in text, 0 when there is none.
std::size_t position_of(std::string_view needle, std::string_view text);

// text with every occurrence of what replaced.
std::string replaced(std::string_view text, std::string_view what, std::string_view with);

// Lower case: the inverse of text::upper.
std::string lower(std::string_view text);

}  // namespace kestrova::sql
