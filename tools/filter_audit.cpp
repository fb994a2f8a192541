#include "tools/filter_audit.h"

#include "engine/comm_sel.h"
#include "engine/criteria_guard.h"
#include "platform/error.h"
#include "platform/text.h"
#include "tools/error_report.h"
#include "tools/fields.h"

namespace kestrova::tool {
namespace {

std::string no_literal(std::string_view value, FieldType type) {
  return "'" + std::string(value) + "' is no literal of the type " + std::string(type_name(type));
}

}  // namespace

const std::optional<CriteriaFault>& FilterAudit::find_fault(const Filter& filter) {
  const auto [entry, is_new] = faults_.try_emplace({filter.code, filter.criteria});
  if (is_new) entry->second = look_for_fault(filter);
  return entry->second;
}

// From what the text alone tells to what only the server knows, so that the reason is the nearest
// one.
std::optional<CriteriaFault> FilterAudit::look_for_fault(const Filter& filter) {
  const auto [known, is_new] = known_relations_.try_emplace(filter.code);
  if (is_new) known->second = is_known_relation(session_, filter.code);
  if (!known->second) {
    return CriteriaFault{FaultReason::kUnknownRelation,
                         "the relation code '" + filter.code + "' is not known"};
  }
  const std::string& or_line = session_.context.strOderLine;
  if (auto fault = find_sql_fault(filter.criteria, or_line)) return fault;
  if (auto fault = find_structure_fault(filter.criteria, or_line)) return fault;
  try {
    if (auto fault = find_field_fault(session_, filter)) return fault;
    if (auto fault = find_value_fault(filter)) return fault;
  } catch (const Error&) {
    return CriteriaFault{FaultReason::kTranslation,
                         describe_error(std::current_exception()).message};
  }
  return refusal(filter);
}

std::optional<CriteriaFault> FilterAudit::find_value_fault(const Filter& filter) {
  std::size_t number = 0;
  for (const std::string_view record : records_of(filter)) {
    ++number;
    if (record == session_.context.strOderLine) continue;
    const auto [fault, is_new] = value_faults_.try_emplace({filter.code, std::string(record)});
    if (is_new) fault->second = value_fault(filter, record);
    if (!fault->second.empty()) {
      return CriteriaFault{FaultReason::kValue, criterion_message(number, record, fault->second)};
    }
  }
  return std::nullopt;
}

// What is wrong with the value of a record, "" for nothing.
std::string FilterAudit::value_fault(const Filter& filter, std::string_view record) const {
  const auto part = [&](std::string_view which) {
    return Comm_Sel().TransComp_NoLabels(session_.context, filter.code, record, which, true, false);
  };
  const FieldType type{Comm_Sel().Get_TypeOfFieldFromID(
      session_.context, text::to_int16(part("GETFIELD")), filter.code)};
  const std::string op = part("GETOPERATOR");
  const std::string value = part("GETVALUE");
  if (op == "LIKE") return is_literal(value, FieldType::kVarWChar) ? "" : no_literal(value, type);
  if (!op.starts_with("IN")) return is_literal(value, type) ? "" : no_literal(value, type);
  for (const std::string_view element : list_elements(op)) {
    const std::string_view value_text = text::trim(element);
    if (!is_literal(value_text, type)) return no_literal(value_text, type);
  }
  return {};
}

// What the library or the server says against it.
std::optional<CriteriaFault> FilterAudit::refusal(const Filter& filter) const {
  try {
    prepare(session_, filter, translate(session_, filter), "*");
    return std::nullopt;
  } catch (const DatabaseError&) {
    return CriteriaFault{FaultReason::kServer, describe_error(std::current_exception()).message};
  } catch (const Error&) {
    return CriteriaFault{FaultReason::kTranslation,
                         describe_error(std::current_exception()).message};
  }
}

}  // namespace kestrova::tool
