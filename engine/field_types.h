// Type codes of catalogue fields.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/kes_var.h"
#include "relations/relation_codes.h"

namespace kestrova {

// The type code of a field of a relation; what Get_TypeOfFieldFromID answers.
std::int16_t field_type(const KesVar& context, const Relation& relation, std::int16_t id);

}  // namespace kestrova
