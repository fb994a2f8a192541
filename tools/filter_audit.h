// Whether a stored filter still selects what it says.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "tools/criteria_check.h"
#include "tools/session.h"
#include "tools/translation.h"

namespace kestrova::tool {

// Checks filters, equal ones and equal records of a relation once. Refers to the session.
class FilterAudit {
 public:
  explicit FilterAudit(const Session& session) : session_(session) {}

  // The first fault of the filter, nothing for a sound one: its text, its fields and values are
  // looked at, then it is translated and its SELECT prepared without asking for rows.
  const std::optional<CriteriaFault>& find_fault(const Filter& filter);

 private:
  std::optional<CriteriaFault> look_for_fault(const Filter& filter);
  std::optional<CriteriaFault> find_value_fault(const Filter& filter);
  std::string value_fault(const Filter& filter, std::string_view record) const;
  std::optional<CriteriaFault> refusal(const Filter& filter) const;

  const Session& session_;
  std::map<std::pair<std::string, std::string>, std::optional<CriteriaFault>> faults_;
  std::map<std::pair<std::string, std::string>, std::string> value_faults_;  // by code and record
  std::map<std::string, bool> known_relations_;
};

}  // namespace kestrova::tool
