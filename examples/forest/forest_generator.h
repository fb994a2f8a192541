// The sample forestry database: schema, catalogue and data of a forestry business.
#pragma once

#include <cstdint>

#include "platform/database.h"
#include "platform/date_time.h"

namespace kestrova {

struct ForestOptions {
  // Number of lots. Measuring lists, invoice names and invoices grow with it; all other tables keep
  // their size. The default makes a database of about 10,000 rows.
  std::int64_t lots = 1000;

  // Equal seeds and days make equal databases.
  std::uint64_t seed = 1;

  // The day around which all dates lie.
  DateTime today = local_now();
};

// Fills an empty database: runs the scripts and generates the big tables, in one transaction.
// Raises InvalidArgument for less than one lot, and DatabaseError naming the script and statement,
// or the table, that failed; nothing stays in the database then.
void build_forest_database(Connection& connection, const ForestOptions& options);

}  // namespace kestrova
