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

PointBox FindExtendedBox(const std::vector<smVec3d>& points, const std::string& source)
{
    if (points.empty())
    {
        throw Failure(source + " holds no points: it needs two at least, at different places");
    }
    return FindPointBox(points);
}

[[noreturn]] void RefuseOnePlace(const std::string& source)
{
    throw Failure("all points of " + source +
                  " are at one place: it needs two at least, at different places");
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

void IAPointCloud::ReadPointsRepeatingTheLast(IODatasetText& text)
{
    const int count = ReadPointCount(text);
    if (static_cast<std::size_t>(count) > text.GetSize())
    {
        text.Refuse("the number of points is " + std::to_string(count) + ", and the file has " +
                    std::to_string(text.GetSize()) + " bytes");
    }
    m_Points.clear();
    m_Points.reserve(static_cast<std::size_t>(count));
    const auto readOrKeep = [&text](double& value, const char* meaning)
    {
        if (!text.IsAtEnd())
        {
            value = double{text.ReadFloat(meaning)};
        }
    };
    smVec3d point;
    for (int i = 0; i < count; ++i)
    {
        readOrKeep(point.x, "a point's x");
        readOrKeep(point.y, "a point's y");
        readOrKeep(point.z, "a point's z");
        m_Points.push_back(point);
    }
}

void IAPointCloud::Unitize(const std::string& source)
{
    const PointBox box = FindExtendedBox(m_Points, source);
    const smVec3d extent = box.high - box.low;
    const smVec3f centre(static_cast<float>((box.high.x + box.low.x) / 2),
                         static_cast<float>((box.high.y + box.low.y) / 2),
                         static_cast<float>((box.high.z + box.low.z) / 2));
    const auto scale = static_cast<float>(2.0 / std::max({extent.x, extent.y, extent.z}));
    if (!std::isfinite(scale))
    {
        RefuseOnePlace(source);
    }
    for (smVec3d& point : m_Points)
    {
        const smVec3f single(static_cast<float>(point.x), static_cast<float>(point.y),
                             static_cast<float>(point.z));
        point = {double{(single.x - centre.x) * scale}, double{(single.y - centre.y) * scale},
                 double{(single.z - centre.z) * scale}};
    }
}

void IAPointCloud::Normalize(const std::string& source)
{
    const PointBox box = FindExtendedBox(m_Points, source);
    const smVec3d extent = box.high - box.low;
    const smVec3d centre = (box.high + box.low) * 0.5;
    const double scale = 2.0 / std::max({extent.x, extent.y, extent.z});
    if (!std::isfinite(scale))
    {
        RefuseOnePlace(source);
    }
    for (smVec3d& point : m_Points)
    {
        point = (point - centre) * scale;
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
