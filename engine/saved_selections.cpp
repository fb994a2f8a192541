// Saved models by name, and criteria strings as readable text.
#include <string>

#include "engine/comm_sel.h"
#include "engine/criterion.h"
#include "engine/field_types.h"
#include "engine/model_name.h"
#include "engine/model_relation.h"
#include "engine/queries.h"
#include "platform/text.h"
#include "relations/date_expressions.h"
#include "relations/relation_codes.h"

namespace kestrova {
namespace {

// The criteria string of a model; "" when there is none of that name.
std::string stored_criteria(const KesVar& context, std::string_view name,
                            std::string_view model_relation) {
  std::string sql = "SELECT MODEL FROM MODELS WHERE NAME = '";
  sql += name;
  sql += "' AND RELATION = '";
  sql += model_relation;
  sql += "'";
  const auto row = open_query(connection_of(context), sql);
  return row->eof() ? std::string() : row->value(std::size_t{0}).text_or_empty();
}

// The readable line of one criterion, without line end.
std::string readable_criterion(const KesVar& context, const Relation& relation,
                               std::string_view record) {
  const std::string field = field_part(record);
  const std::int16_t id = text::to_int16(field);  // only a number may become part of the query
  const std::string name =
      open_query(connection_of(context),
                 "SELECT ID_STRING FROM SELEKTION WHERE ID_SELEKTION = " + field)
          ->value(std::size_t{0})
          .text_or_empty();
  std::string value(text::trim(value_part(context, relation, record, kShown)));
  const std::int16_t type = field_type(context, relation, id);
  if (!is_null_word(value) && IsDateFieldType(type)) {
    value = ToDateLiteral(value, context.strDateOrder);
  }
  return name + " " + operator_part(context, relation, record, kShown) + " " + value;
}

}  // namespace

std::string Comm_Sel::D_Selection(const KesVar& KesVar, std::string_view Parameter,
                                  std::string_view strModule_Name, std::string_view StrVer_Type_dll,
                                  const std::int32_t& ID_Access_Levels) const {
  require_model_name(strModule_Name);
  const std::string model_relation = model_relation_for_lookup(Parameter);
  const std::string criteria = strModule_Name.empty()
                                   ? std::string()
                                   : stored_criteria(KesVar, strModule_Name, model_relation);
  return D_SelectionFromStr(KesVar, Parameter, model_relation, criteria, StrVer_Type_dll,
                            ID_Access_Levels);
}

std::string Comm_Sel::ConditionSelStr(const KesVar& KesVar, std::string_view Parameter,
                                      std::string_view strSubset) const {
  const Relation relation(Parameter);
  std::string result;
  for (std::size_t end = strSubset.find(';'); end != std::string_view::npos;
       end = strSubset.find(';')) {
    const std::string_view record = strSubset.substr(0, end);
    if (!result.empty()) result += "\r\n";
    result +=
        record == KesVar.strOderLine ? " ODER " : readable_criterion(KesVar, relation, record);
    strSubset.remove_prefix(end + 1);
  }
  return result;
}

}  // namespace kestrova
