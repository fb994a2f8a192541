// The icons of the buttons that move through the list, drawn in the palette's colours.
#pragma once

#include <QIcon>

namespace kestrova::qt {

enum class Glyph { kFirst, kPrevious, kNext, kLast, kUp, kDown, kPlus, kMinus };

// Sharp in every size; follows light and dark palettes.
QIcon icon(Glyph glyph);

}  // namespace kestrova::qt
