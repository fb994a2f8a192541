#include "tools/stored_filters.h"

#include <algorithm>
#include <array>

namespace kestrova::tool {
namespace {

struct ModelCode {
  std::string_view model_relation;
  std::string_view code;
};

struct ContractTable {
  std::string_view table;
  std::string_view code;
};

// clang-format off
// Most model relations are relation codes themselves. These are not: the codes of their group carry
// a number, of which any will do, since the fields are the same for all.
constexpr std::array kModelCodes = {
    ModelCode{"2VABR", "2VABR1"},
    ModelCode{"4PAG", "4PAG0"},
    ModelCode{"4PLN", "4PLN0"},
};

// The code of a contract is followed by its record; the records share their fields and tables.
constexpr std::array kContractTables = {
    ContractTable{"VERTRAG_PREISE", "VERTP"},
    ContractTable{"VERTRAG_MENGEN", "VERTM"},
};
// clang-format on

// Configuration lists that live in MODELS beside the models are left out.
void read_models(const Session& session, std::vector<StoredFilter>& filters) {
  const auto rows = session.connection().open(
      "SELECT ID, NAME, RELATION, MODEL FROM MODELS WHERE RELATION NOT IN ('USERFIELDS','BBFIZ')"
      " ORDER BY ID",
      CursorType::kForwardOnly, LockType::kReadOnly);
  for (; !rows->eof(); rows->move_next()) {
    const std::string relation = rows->value("RELATION").text_or_empty();
    filters.push_back({.table = "MODELS",
                       .id = rows->value("ID").integer(),
                       .name = rows->value("NAME").text_or_empty(),
                       .relation = relation,
                       .code = std::string(code_of_model_relation(relation)),
                       .criteria = rows->value("MODEL").text_or_empty()});
  }
}

void read_contracts(const Session& session, const ContractTable& contracts,
                    std::vector<StoredFilter>& filters) {
  const std::string table(contracts.table);
  const std::string code(contracts.code);
  const auto rows = session.connection().open(
      "SELECT ID, SELEKTION_VALUE FROM " + table + " WHERE SELEKTION_VALUE IS NOT NULL ORDER BY ID",
      CursorType::kForwardOnly, LockType::kReadOnly);
  for (; !rows->eof(); rows->move_next()) {
    const std::int32_t id = rows->value("ID").integer();
    filters.push_back({.table = table,
                       .id = id,
                       .relation = code + std::to_string(id),
                       .code = code,
                       .criteria = rows->value("SELEKTION_VALUE").text()});
  }
}

}  // namespace

std::string_view code_of_model_relation(std::string_view model_relation) {
  const auto row = std::find_if(
      kModelCodes.begin(), kModelCodes.end(),
      [model_relation](const ModelCode& rule) { return rule.model_relation == model_relation; });
  return row == kModelCodes.end() ? model_relation : row->code;
}

std::vector<StoredFilter> read_stored_filters(const Session& session) {
  std::vector<StoredFilter> filters;
  read_models(session, filters);
  for (const ContractTable& contracts : kContractTables) {
    read_contracts(session, contracts, filters);
  }
  return filters;
}

}  // namespace kestrova::tool
