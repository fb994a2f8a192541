// A catalogue in memory for the fuzz targets: a database that knows the fields of SELEKTION and the
// types of their columns, and refuses everything else. It writes nothing down.
#pragma once

#include <memory>
#include <string_view>

#include "platform/database.h"

namespace kestrova::fuzz {

struct Field {
  int id;
  std::string_view name;
  FieldType type;
  std::string_view join;        // SQLSELECT
  std::string_view expression;  // SQLVALUE
};

// clang-format off
inline constexpr Field kFields[] = {
    {1, "HA", FieldType::kVarWChar, "", ""},
    {2, "MENGE", FieldType::kDouble, "", ""},
    {3, "STUECK", FieldType::kInteger, "", ""},
    {4, "DATUM", FieldType::kDate, "", ""},
    {5, "GESPERRT", FieldType::kBoolean, "", ""},
    {6, "ID", FieldType::kVarWChar, "INNER", "HOLZART.NAME"},
    {7, "ID", FieldType::kDBTimeStamp, "TRIPLE", "GRUPPE.SEIT"},
};
// clang-format on

// The field of that number; nullptr when there is none.
const Field* field(int id);

std::shared_ptr<Connection> make_selektion_connection();

}  // namespace kestrova::fuzz
