#pragma once
#include "Cursor.h"
#include <string>
#include <vector>

namespace tessarine
{
/// A cursor of a camera tool, as it is drawn for this project.
struct DrawnCursor
{
    std::string fileName;
    Cursor cursor;
};

/// All of them, 32 x 32 pixels: white with a dark rim, to be seen on any ground.
std::vector<DrawnCursor> DrawCursors();

/// The bytes of a CUR file: one picture of 32 bits, its mask set where nothing is drawn at all.
std::string EncodeCursor(const Cursor& cursor);
}
