#include "LiteralSilhouette.h"
#include <algorithm>
#include <cstddef>

namespace tessarine
{
namespace
{
std::size_t ToIndex(int x, int y, int width)
{
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
}

void FillLiterally(int x, int y, int length, int width, std::vector<std::uint8_t>& image, bool horizontal,
                   bool black)
{
    for (int i = 1; i <= length; ++i)
    {
        const int column = horizontal ? x - i : x;
        const int row = horizontal ? y : y - i;
        const int index = row * width + column;
        if (index >= 0)
        {
            std::fill_n(image.begin() + 3 * index, 3, black ? std::uint8_t{0} : std::uint8_t{255});
        }
    }
}

/// The entry is still what the eight neighbours make of it.
std::int32_t ClassifyLiterally(int x, int y, int width, int height, const std::vector<std::uint8_t>& image)
{
    const auto isObject = [&](int column, int row) { return image[3 * ToIndex(column, row, width)] != 0; };
    if (x == 0 || y == 0 || x == width - 1 || y == height - 1 || !isObject(x, y))
    {
        return 30;
    }
    const bool isSurrounded = isObject(x, y - 1) && isObject(x, y + 1) && isObject(x + 1, y - 1) &&
                              isObject(x + 1, y + 1) && isObject(x - 1, y - 1) && isObject(x - 1, y - 1) &&
                              isObject(x - 1, y) && isObject(x + 1, y);
    return isSurrounded ? -30 : 0;
}

void SweepLiterally(int value, int width, int height, std::vector<std::int32_t>& field)
{
    for (int x = 1; x <= width - 2; ++x)
    {
        for (int y = 1; y <= height - 2; ++y)
        {
            const std::size_t index = ToIndex(x, y, width);
            if (field[index] != value)
            {
                continue;
            }
            std::int32_t* neighbours[] = {&field[index + 1], &field[index - 1],
                                          &field[index + static_cast<std::size_t>(width)],
                                          &field[index - static_cast<std::size_t>(width)]};
            const auto isSettled = [value](const std::int32_t* neighbour)
            { return *neighbour == value + 1 || *neighbour == value - 1 || *neighbour == value; };
            if (std::all_of(std::begin(neighbours), std::end(neighbours), isSettled))
            {
                continue;
            }
            for (std::int32_t* neighbour : neighbours)
            {
                *neighbour = *neighbour == 30 ? value + 1 : (*neighbour == -30 ? value - 1 : *neighbour);
            }
        }
    }
}
}

bool FilterLiterally(int width, int height, std::vector<std::uint8_t>& image, int runLength,
                     bool fillBackground)
{
    bool hasMarker = false;
    int r = 0;
    for (int y = 0; y < height; ++y)
    {
        for (int x = 0; x < width; ++x)
        {
            const std::uint8_t* pixel = &image[3 * ToIndex(x, y, width)];
            hasMarker = hasMarker || (pixel[0] == 0 && pixel[1] != 0);
            if ((pixel[0] == 0) == fillBackground)
            {
                ++r;
                continue;
            }
            if (r <= runLength)
            {
                FillLiterally(x, y, r, width, image, true, !fillBackground);
            }
            r = 0;
        }
    }
    r = 0;
    for (int x = 0; x < width; ++x)
    {
        for (int y = 0; y < height; ++y)
        {
            if ((image[3 * ToIndex(x, y, width)] == 0) == fillBackground)
            {
                ++r;
                continue;
            }
            if (r <= runLength)
            {
                FillLiterally(x, y, r, width, image, false, !fillBackground);
            }
            r = 0;
        }
    }
    return hasMarker;
}

std::vector<std::int32_t> BuildDistanceLiterally(int width, int height,
                                                 const std::vector<std::uint8_t>& image)
{
    std::vector<std::int32_t> field(ToIndex(0, height, width));
    for (int y = 0; y < height; ++y)
    {
        for (int x = 0; x < width; ++x)
        {
            field[ToIndex(x, y, width)] = ClassifyLiterally(x, y, width, height, image);
        }
    }
    for (int d = 0; d <= 20; ++d)
    {
        SweepLiterally(d, width, height, field);
        SweepLiterally(-d, width, height, field);
    }
    return field;
}
}
