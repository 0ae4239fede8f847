#include "SilhouettePicture.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
namespace
{
using Corner = std::array<double, 2>; ///< column and row

/// What a triangle covers of a line of pixels through their centres.
struct Span
{
    double begin = 1e9;
    double end = -1e9;

    void Take(double column)
    {
        begin = std::min(begin, column);
        end = std::max(end, column);
    }
};

Span CutAtRow(const std::array<Corner, 3>& corners, double row)
{
    Span span;
    for (std::size_t i = 0; i < 3; ++i)
    {
        const Corner& a = corners[i];
        const Corner& b = corners[(i + 1) % 3];
        if ((a[1] <= row) != (b[1] <= row))
        {
            span.Take(a[0] + (b[0] - a[0]) * (row - a[1]) / (b[1] - a[1]));
        }
    }
    return span;
}

/// The first pixel whose centre is not before the place.
int ToPixel(double place, int count)
{
    return static_cast<int>(std::clamp(std::ceil(place - 0.5), 0.0, static_cast<double>(count)));
}

void FillTriangle(Image& image, const std::array<Corner, 3>& corners)
{
    const auto [lowest, highest] = std::minmax({corners[0][1], corners[1][1], corners[2][1]});
    for (int y = ToPixel(lowest, image.height); y < ToPixel(highest, image.height); ++y)
    {
        const Span span = CutAtRow(corners, y + 0.5);
        const int begin = ToPixel(span.begin, image.width);
        const int end = ToPixel(span.end, image.width);
        std::uint8_t* row = image.pixels.data() + std::ptrdiff_t{y} * image.width;
        std::fill(row + begin, row + std::max(begin, end), std::uint8_t{255});
    }
}
}

Image DrawSilhouette(const ShapeMesh& mesh, const smMatrix44d& view, const PicturePlane& plane)
{
    Image image{plane.width, plane.height, 1, {}};
    image.pixels.resize(static_cast<std::size_t>(plane.width) * static_cast<std::size_t>(plane.height));
    std::vector<Corner> places;
    places.reserve(mesh.points.size());
    for (const smVec3d& point : mesh.points)
    {
        const smVec3d turned = point * view;
        places.push_back({plane.ToColumn(turned.x), plane.ToRow(turned.y)});
    }
    for (const auto& triangle : mesh.triangles)
    {
        FillTriangle(image, {places[static_cast<std::size_t>(triangle[0])],
                             places[static_cast<std::size_t>(triangle[1])],
                             places[static_cast<std::size_t>(triangle[2])]});
    }
    return image;
}

void DrawMarkerLine(Image& image, const PicturePlane& plane, const std::array<double, 2>& from,
                    const std::array<double, 2>& to)
{
    const double columns = plane.ToColumn(to[0]) - plane.ToColumn(from[0]);
    const double rows = plane.ToRow(to[1]) - plane.ToRow(from[1]);
    const int steps = std::max(1, static_cast<int>(std::max(std::abs(columns), std::abs(rows))));
    for (int i = 0; i <= steps; ++i)
    {
        const auto x = static_cast<std::size_t>(plane.ToColumn(from[0]) + columns * i / steps);
        const auto y = static_cast<std::size_t>(plane.ToRow(from[1]) + rows * i / steps);
        std::uint8_t* pixel = image.pixels.data() + 3 * (y * static_cast<std::size_t>(image.width) + x);
        pixel[0] = 0;
        pixel[1] = 255;
        pixel[2] = 0;
    }
}
}
