// A SQL text on lines that people can read.
#pragma once

#include <string>
#include <string_view>

namespace kestrova::tool {

// The statement or FROM/WHERE text sql with a line for FROM, for each JOIN, for WHERE and for each
// condition. Several conditions in parentheses at the end, where the user's
// criteria stand, have a line each too; everything else in parentheses stays in one piece. Quoted
// texts are never touched, other blanks become one. Every line begins with indent; lines are
// separated, and not ended, by LF.
std::string lay_out_sql(std::string_view sql, std::string_view indent = "");

}  // namespace kestrova::tool
