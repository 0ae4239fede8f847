#include "CursorShapes.h"
#include "File.h"
#include <cstdio>
#include <exception>
#include <filesystem>

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "usage: tessarine-cursors FOLDER\n");
        return 2;
    }
    try
    {
        for (const tessarine::DrawnCursor& drawn : tessarine::DrawCursors())
        {
            tessarine::ReplacingFile file(std::filesystem::path(argv[1]) / drawn.fileName);
            file.Write(tessarine::EncodeCursor(drawn.cursor));
            file.Commit();
        }
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "tessarine-cursors: %s\n", error.what());
        return 1;
    }
    return 0;
}
