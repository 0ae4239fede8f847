#include "IAPointCloud.h"
#include "Assert.h"
#include "Failure.h"
#include "File.h"
#include "IODatasetText.h"
#include "IOTextOutput.h"
#include "Path.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
namespace
{
int ReadPointCount(IODatasetText& text)
{
    const int count = text.ReadInteger("the number of points");
    if (count < 0)
    {
        text.Refuse("the number of points is " + std::to_string(count));
    }
    return count;
}

/// Corners of the points' box.
struct PointBox
{
    smVec3d low;
    smVec3d high;
};

PointBox FindPointBox(const std::vector<smVec3d>& points)
{
    PointBox box{points.front(), points.front()};
    for (const smVec3d& point : points)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            box.low[axis] = std::min(box.low[axis], point[axis]);
            box.high[axis] = std::max(box.high[axis], point[axis]);
        }
    }
    return box;
}
}

void IAPointCloud::Read(IODatasetText& text, bool isLabelled)
{
    constexpr std::size_t kLeastBytesOfAPoint = 6;
    const int count = ReadPointCount(text);
    m_Points.clear();
    m_Points.reserve(std::min(static_cast<std::size_t>(count), text.GetSize() / kLeastBytesOfAPoint + 1));
    for (int i = 0; i < count; ++i)
    {
        if (text.IsAtEnd())
        {
            text.Refuse("the file ends after " + std::to_string(i) + " of " + std::to_string(count) +
                        " points");
        }
        if (isLabelled)
        {
            text.SkipWord("a point's name");
        }
        const float x = text.ReadFloat("a point's x");
        const float y = text.ReadFloat("a point's y");
        const float z = text.ReadFloat("a point's z");
        m_Points.emplace_back(double{x}, double{y}, double{z});
    }
}

void IAPointCloud::Unitize(const std::string& source)
{
    if (m_Points.empty())
    {
        throw Failure(source + " holds no points: it needs two at least, at different places");
    }
    const PointBox box = FindPointBox(m_Points);
    const smVec3d extent = box.high - box.low;
    const smVec3f centre(static_cast<float>((box.high.x + box.low.x) / 2),
                         static_cast<float>((box.high.y + box.low.y) / 2),
                         static_cast<float>((box.high.z + box.low.z) / 2));
    const auto scale = static_cast<float>(2.0 / std::max({extent.x, extent.y, extent.z}));
    if (!std::isfinite(scale))
    {
        throw Failure("all points of " + source +
                      " are at one place: it needs two at least, at different places");
    }
    for (smVec3d& point : m_Points)
    {
        const smVec3f single(static_cast<float>(point.x), static_cast<float>(point.y),
                             static_cast<float>(point.z));
        point = {double{(single.x - centre.x) * scale}, double{(single.y - centre.y) * scale},
                 double{(single.z - centre.z) * scale}};
    }
}

void WritePointDistances(const std::vector<smVec3d>& points, const std::vector<float>& distances)
{
    ASSERT(points.size() == distances.size());
    ReplacingFile file(ResolveForWriting("pointDistance.dat"));
    IOTextOutput text([&file](std::string_view piece) { file.Write(piece); });
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        text << points[i].x << " " << points[i].y << " " << points[i].z << " " << double{distances[i]}
             << "\n";
    }
    text.Flush();
    file.Commit();
}
}
