#pragma once
#include "Image.h"
#include <string>

namespace tessarine
{
/// The picture of a mouse cursor, four components a pixel.
struct Cursor
{
    Image image;
    int hotX = 0; ///< the pixel that points, from the left
    int hotY = 0; ///< from the top
};

/// Reads the CUR file of a name in the form of the dataset names, "res\\Orbit.CUR", from the current folder,
/// or, where it is not there, from the program's own (ResolveResource). The file is read anew each time.
/// Throws FileError when it cannot be read or is broken.
Cursor ReadCursor(const std::string& name);

/// The same from memory.
Cursor DecodeCursor(const std::string& bytes);
}
