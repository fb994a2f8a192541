// What Connection::open may send to the database: one SELECT and nothing else. The adapters ask
// here before they send anything, since the server needs no separator between statements: behind a
// SELECT, "DELETE FROM T" would run as well.
#pragma once

#include <string>
#include <string_view>

namespace kestrova {

// The SELECT that the source of an open stands for: the source itself, or "SELECT * FROM " and the
// source where that is a plain table name: words, "quoted" or [bracketed] names with dots between
// them, and no blank.
//
// Raises DatabaseError (42000), which names what is refused and where, for everything else:
//  - a word that begins another statement, INTO, the functions that send texts to other servers,
//  and
//    a SELECT that neither follows UNION [ALL], EXCEPT or INTERSECT nor stands in a parenthesis
//    where an expression or a table may stand. All of them are reserved on the server, so outside
//    quotes they are no names. The price: OFFSET ... FETCH, join hints (MERGE) and OPTION (USE ...)
//    are refused as well, and WITH in front of SELECT.
//  - text behind ";", quotes, parentheses or CASE that are not closed.
//  - "--": it would swallow what is appended to the text. A closed "/* */" is passed on, but not
//  one
//    with another in it, which servers end at different places.
//  - characters that the dialect does not know outside quotes: control characters, blanks other
//  than
//    those of ASCII, braces, backslashes.
//
// Only the words are read: whether the text is correct, and what its functions do, is the matter of
// the database and its rights.
std::string single_select(std::string_view source);

}  // namespace kestrova
