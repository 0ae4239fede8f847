#include "Cursor.h"
#include "CurReader.h"
#include "File.h"
#include "ImageDecoding.h"
#include "ResourceFolder.h"

namespace tessarine
{
Cursor ReadCursor(const std::string& name)
{
    const std::filesystem::path path = ResolveResource(name);
    const std::string bytes = ReadFile(path);
    try
    {
        return DecodeCur(bytes);
    }
    catch (const ImageFault& fault)
    {
        throw FileError("cannot read " + path.string() + ": " + fault.what());
    }
}

Cursor DecodeCursor(const std::string& bytes)
{
    try
    {
        return DecodeCur(bytes);
    }
    catch (const ImageFault& fault)
    {
        throw FileError(std::string("cannot read the cursor: ") + fault.what());
    }
}
}
