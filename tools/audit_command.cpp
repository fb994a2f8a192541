// kestrova-sel audit
#include <iostream>
#include <map>

#include "tools/commands.h"
#include "tools/filter_audit.h"
#include "tools/progress_line.h"
#include "tools/stored_filters.h"

namespace kestrova::tool {
namespace {

struct BrokenFilter {
  StoredFilter filter;
  CriteriaFault fault;
};

struct AuditResult {
  std::size_t checked = 0;
  std::vector<BrokenFilter> broken{};

  std::size_t sound() const { return checked - broken.size(); }

  // How many are broken for each reason that occurs.
  std::map<FaultReason, std::size_t> reasons() const {
    std::map<FaultReason, std::size_t> counts;
    for (const BrokenFilter& entry : broken) ++counts[entry.fault.reason];
    return counts;
  }
};

Filter filter_of(const StoredFilter& stored) {
  return {.code = stored.code,
          .criteria = stored.criteria,
          .mode = {},
          .variant = {},
          .model = std::nullopt};
}

AuditResult check_all(const Session& session, const std::vector<StoredFilter>& filters,
                      ProgressLine* progress) {
  FilterAudit audit(session);
  AuditResult result;
  for (const StoredFilter& filter : filters) {
    if (const auto& fault = audit.find_fault(filter_of(filter))) {
      result.broken.push_back({filter, *fault});
    }
    ++result.checked;
    if (progress != nullptr) progress->show(result.checked);
  }
  return result;
}

Json to_json(const BrokenFilter& broken) {
  const StoredFilter& filter = broken.filter;
  return {{"table", filter.table},
          {"id", filter.id},
          {"model", filter.table == "MODELS" ? Json(filter.name) : Json(nullptr)},
          {"relation", filter.relation},
          {"reason", reason_text(broken.fault.reason)},
          {"message", broken.fault.message}};
}

Json to_json(const AuditResult& result) {
  Json faults = Json::array();
  for (const BrokenFilter& broken : result.broken) faults.push_back(to_json(broken));
  Json reasons = Json::object();
  for (const auto& [reason, count] : result.reasons()) reasons[reason_text(reason)] = count;
  return {{"faults", faults},
          {"checked", result.checked},
          {"sound", result.sound()},
          {"broken", result.broken.size()},
          {"reasons", reasons}};
}

void print(std::ostream& out, const BrokenFilter& broken) {
  const StoredFilter& filter = broken.filter;
  out << filter.table << ' ' << filter.id << " (" << filter.relation << ')';
  if (filter.table == "MODELS") out << " '" << filter.name << '\'';
  out << ": " << reason_text(broken.fault.reason) << "\n  " << broken.fault.message << '\n';
}

void print(std::ostream& out, const AuditResult& result) {
  for (const BrokenFilter& broken : result.broken) print(out, broken);
  if (!result.broken.empty()) out << '\n';
  out << result.checked << " checked, " << result.sound() << " sound, " << result.broken.size()
      << " broken\n";
  for (const auto& [reason, count] : result.reasons()) {
    out << "  " << count << ' ' << reason_text(reason) << '\n';
  }
}

}  // namespace

bool audit(const GlobalOptions& options, const AuditArguments& arguments, std::ostream& out) {
  const Session session = open_session(options);
  const std::vector<StoredFilter> filters = read_stored_filters(session);
  std::optional<ProgressLine> progress;
  if (arguments.progress || error_stream_is_terminal()) {
    progress.emplace(std::cerr, "stored filters checked:", filters.size());
  }
  const AuditResult result = check_all(session, filters, progress ? &*progress : nullptr);
  if (options.json) {
    print_json(out, to_json(result));
  } else {
    print(out, result);
  }
  return result.broken.empty();
}

}  // namespace kestrova::tool
