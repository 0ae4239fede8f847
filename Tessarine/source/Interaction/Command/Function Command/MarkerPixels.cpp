#include "MarkerPixels.h"

namespace tessarine
{
namespace
{
constexpr double kCutHalfDepth = double{0.2F};
}

std::vector<Pixel> FindMarkerEnds(const Image& image)
{
    std::vector<Pixel> ends;
    for (int i = 0; i < image.width * image.height; ++i)
    {
        const std::uint8_t* pixel = image.pixels.data() + std::size_t{3} * static_cast<std::size_t>(i);
        if (pixel[0] == 0 && pixel[1] != 0)
        {
            const Pixel marker{i % image.width, i / image.width};
            ends.resize(2, marker);
            ends[1] = marker;
        }
    }
    return ends;
}

CutFace MakeCutFace(const PlanePoint& a, const PlanePoint& b, const smMatrix44d& inverse)
{
    return {smVec3d(a.u, a.v, kCutHalfDepth) * inverse, smVec3d(b.u, b.v, kCutHalfDepth) * inverse,
            smVec3d(b.u, b.v, -kCutHalfDepth) * inverse, smVec3d(a.u, a.v, -kCutHalfDepth) * inverse};
}
}
