#pragma once
#include "Cursor.h"
#include <string_view>

namespace tessarine
{
/// The cursor of a CUR file: of several pictures the one that is nearest to 32 pixels wide, the first of
/// these. Pictures of 1, 4, 8, 24 and 32 bits, 256 pixels a side at most; none that is packed.
///
/// What is transparent is told by the mask, or by the alpha of 32 bits where any pixel has some. A pixel that
/// inverts what lies under it is shown as it is over black.
///
/// Throws ImageFault when it is broken.
Cursor DecodeCur(std::string_view bytes);
}
