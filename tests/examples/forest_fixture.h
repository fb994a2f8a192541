// The sample forestry database, built once per test program, and short ways to ask it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "examples/forest/forest_generator.h"
#include "platform/kes_var.h"
#include "platform/suite.h"

namespace kestrova::test {

inline constexpr DateTime kForestDay{2025, 3, 15};

// A new database of its own.
std::shared_ptr<Connection> make_forest(std::int64_t lots = 1000, std::uint64_t seed = 1,
                                        DateTime today = kForestDay);

// The shared one of default size, and the suite's services on it. Tests must not change it.
const std::shared_ptr<Connection>& forest();
Suite& forest_suite();

// A user who sees the access levels of the list.
KesVar forest_user(std::string_view language = "DE", std::int32_t access_level = 2,
                   std::string_view access_list = "SELECT ID FROM ACCESS_LEVELS WHERE ID IN (2)");

// All rows of a query as texts; NULL as "(null)".
std::vector<std::vector<std::string>> rows(Connection& connection, std::string_view sql);
// The first column of the first row as a number.
std::int64_t number(Connection& connection, std::string_view sql);
// Names of all tables that the scripts create to last.
std::vector<std::string> table_names();

}  // namespace kestrova::test
