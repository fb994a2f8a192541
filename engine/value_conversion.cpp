// Stored values as the text that a host shows.
#include <string>

#include "engine/comm_sel.h"
#include "engine/criterion.h"
#include "engine/queries.h"
#include "engine/selektion_row.h"
#include "interface/module_state.h"
#include "platform/text.h"

namespace kestrova {
namespace {

bool flag(const Value& value) { return !value.is_null() && value.boolean(); }

}  // namespace

std::string Comm_Sel::Get_Value_Sel(std::string_view val, bool Nick, const Value& value,
                                    Recordset* tmpSelektion,
                                    std::string_view strNatWahrung_dll) const {
  if (val.empty()) return {};
  // A nickname is looked up, which moves the row set; the name that decides is val all the same.
  if (Nick && find_field(val, Nick, tmpSelektion)) tmpSelektion->value("NAME_OF_FIELD");
  switch (special_field(text::trim(val))) {
    case SpecialField::kBarkUnit:
      return flag(value) ? "'cm'" : "'%'";
    case SpecialField::kMoneyUnit:
      return flag(value) ? std::string(strNatWahrung_dll) : "EURO";
    case SpecialField::kWord:
    case SpecialField::kNone:
      break;
  }
  return user_text(value, user_locale());
}

}  // namespace kestrova
