// What an SQL text hides between quotes and in comments, read as the server reads it: whoever looks
// for words, parentheses or ends of statements steps over it with these.
#pragma once

#include <cstddef>
#include <string_view>

namespace kestrova {

// Where the quoted text ('...') or quoted name ("..." or [...]) that begins at offset ends: behind
// its closing quote. A doubled closing quote belongs to it. offset itself when none begins there,
// npos when it is not closed.
std::size_t end_of_quoted(std::string_view sql, std::size_t offset);

// Whether a comment, "--" or "/*", begins at offset.
bool begins_comment(std::string_view sql, std::size_t offset);

// Where the comment that begins at offset ends: "--" before the end of its line or of the text,
// "/*" behind its "*/", comments inside it included. npos when it is not closed.
std::size_t end_of_comment(std::string_view sql, std::size_t offset);

}  // namespace kestrova
