// What the embedded database's result codes mean to a host.
#pragma once

#include <string>

#include "platform/error.h"

namespace kestrova::sql {

// The error of a call that ended with this extended result code; a code that has no words of its
// own gets the others. Its native code is the result code.
DatabaseError refusal(int code, const std::string& otherwise);

// Whether a program was broken off while it wrote to the file: what it left half done is undone
// when the file is opened for writing.
bool needs_recovery(const DatabaseError& error);

}  // namespace kestrova::sql
