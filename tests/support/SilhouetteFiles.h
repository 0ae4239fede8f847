#pragma once
#include "Image.h"
#include <filesystem>
#include <fstream>
#include <string>

namespace tessarine
{
/// An object of radius `radius` in the middle of a square picture.
inline Image DrawDisc(int side, int radius)
{
    Image image{side, side, 3, {}};
    for (int i = 0; i < side * side; ++i)
    {
        const int x = 2 * (i % side) + 1 - side; // in half pixels
        const int y = 2 * (i / side) + 1 - side;
        image.pixels.insert(image.pixels.end(), 3, x * x + y * y < 4 * radius * radius ? 255 : 0);
    }
    return image;
}

/// In the colour of the markers.
inline void Mark(Image& image, std::size_t pixel)
{
    image.pixels[3 * pixel] = 0;
    image.pixels[3 * pixel + 1] = 255;
    image.pixels[3 * pixel + 2] = 0;
}

/// What the commands that look at silhouettes read in a folder: three views of a disc in data/bunny, one with two markers in
/// data/man.
inline void WriteSilhouetteFiles(const std::filesystem::path& folder)
{
    const std::string identity = "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1\n";
    const std::filesystem::path bunny = folder / "data/bunny";
    const std::filesystem::path man = folder / "data/man";
    std::filesystem::create_directories(bunny);
    std::filesystem::create_directories(man);
    std::ofstream(bunny / "param.dat") << "3\n72 72\n"
                                       << identity << "0 0 -1 0 0 1 0 0 1 0 0 0 0 0 0 1\n"
                                       << "1 0 0 0 0 0 1 0 0 -1 0 0 0 0 0 1\n";
    for (const char* name : {"1.bmp", "2.bmp", "3.bmp"})
    {
        WriteImage(DrawDisc(72, 18), bunny / name);
    }
    std::ofstream(man / "param.dat") << "1\n8 8\n" << identity;
    std::ofstream(man / "unitize.dat") << "0 0 0 1\n4 4\n";
    Image marked = DrawDisc(8, 3);
    Mark(marked, 3);
    Mark(marked, 60);
    WriteImage(marked, man / "1.bmp");
}
}
