// The sample forestry database as a script for SQL Server.
#pragma once

#include <ostream>

#include "examples/forest/forest_generator.h"

namespace kestrova {

// Writes the statements of build_forest_database, each as a batch of its own, in UTF-8 with byte
// order mark so that the server's tools take the umlauts for what they are. All of it is one
// transaction, and sqlcmd stops at the first error: batches behind it would run without one.
void write_forest_script(std::ostream& out, const ForestOptions& options);

}  // namespace kestrova
