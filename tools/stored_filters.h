// The filters that a database of the suite stores: saved models and selections of contracts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/session.h"

namespace kestrova::tool {

struct StoredFilter {
  std::string table{};
  std::int32_t id = 0;
  std::string name{};      // of a model, "" for a contract
  std::string relation{};  // model relation, or the contract's code ("VERTP17")
  std::string code{};      // a relation code by which it can be translated
  std::string criteria{};  // "" for NULL
};

// By table and record. A contract without selection is left out. Raises DatabaseError for a missing
// table.
std::vector<StoredFilter> read_stored_filters(const Session& session);

// A relation code that uses the models of a model relation.
std::string_view code_of_model_relation(std::string_view model_relation);

}  // namespace kestrova::tool
