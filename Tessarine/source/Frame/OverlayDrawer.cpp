#include "OverlayDrawer.h"
#include "Assert.h"
#include "OCTNODE.h"
#include "VertexRun.h"
#include <algorithm>

namespace tessarine
{
namespace
{
constexpr double kNormalLength = 0.05;
constexpr GLushort kEveryOtherPixel = 0xAAAA;

/// Lines of one colour and width, without lighting, while it lives.
class LineState
{
public:
    LineState(float width, float red, float green, float blue)
    {
        glPushAttrib(GL_LINE_BIT);
        glDisable(GL_LIGHTING);
        glLineWidth(width);
        glColor3f(red, green, blue);
    }
    ~LineState()
    {
        glPopAttrib();
        glEnable(GL_LIGHTING);
    }
    LineState(const LineState&) = delete;
    LineState& operator=(const LineState&) = delete;
};

void AddLine(VertexRun<PlainCorner>& run, const smVec3d& from, const smVec3d& to)
{
    run.AddLine({ToSingle(from)}, {ToSingle(to)});
}

/// The four edges of a box that run along one axis.
void AddBoxEdges(VertexRun<PlainCorner>& run, const smVec3d& low, const smVec3d& high, int axis)
{
    const int second = (axis + 1) % 3;
    const int third = (axis + 2) % 3;
    for (int corner = 0; corner < 4; ++corner)
    {
        smVec3d from = high;
        from[second] = (corner & 1) != 0 ? low[second] : high[second];
        from[third] = (corner & 2) != 0 ? low[third] : high[third];
        smVec3d to = from;
        to[axis] = low[axis];
        AddLine(run, from, to);
    }
}

void AddLeaves(VertexRun<PlainCorner>& run, const OCTNODE& node)
{
    if (node.IsLeaf())
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            AddBoxEdges(run, node.GetMin(), node.GetMax(), axis);
        }
        return;
    }
    for (const OCTNODE* pChild : node.GetChildren())
    {
        if (pChild != nullptr)
        {
            AddLeaves(run, *pChild);
        }
    }
}

void DrawPoints(const std::vector<smVec3d>& points, float red, float green, float blue)
{
    glPushAttrib(GL_POINT_BIT);
    glDisable(GL_LIGHTING);
    glPointSize(2.0F);
    glColor3f(red, green, blue);
    {
        VertexRun<PlainCorner> run(GL_POINTS);
        for (const smVec3d& point : points)
        {
            run.AddPoint({ToSingle(point)});
        }
    }
    glPopAttrib();
    glEnable(GL_LIGHTING);
}
}

void CheckOctree(const OCTNODE& root)
{
    if (root.IsLeaf())
    {
        return;
    }
    for (const OCTNODE* pChild : root.GetChildren())
    {
        ASSERT_VALUE(pChild != nullptr);
        if (pChild != nullptr)
        {
            CheckOctree(*pChild);
        }
    }
}

void DrawOctree(const OCTNODE& root)
{
    glDisable(GL_LIGHTING);
    glColor3f(0.0F, 1.0F, 1.0F);
    {
        VertexRun<PlainCorner> run(GL_LINES);
        AddLeaves(run, root);
    }
    glEnable(GL_LIGHTING);
}

void DrawPointCloud(const std::vector<smVec3d>& points)
{
    DrawPoints(points, 1.0F, 0.0F, 0.0F);
}

void DrawPointNormals(const std::vector<smVec3d>& points, const std::vector<smVec3d>& normals)
{
    const LineState state(1.0F, 0.0F, 1.0F, 1.0F);
    VertexRun<PlainCorner> run(GL_LINES);
    for (std::size_t i = 0; i < std::min(points.size(), normals.size()); ++i)
    {
        AddLine(run, points[i], points[i] + normals[i] * kNormalLength);
    }
}

void DrawProjectedPoints(const std::vector<smVec3d>& points)
{
    DrawPoints(points, 0.3F, 0.8F, 0.5F);
}

void DrawProjectionLines(const std::vector<smVec3d>& points, const std::vector<smVec3d>& projections)
{
    const LineState state(1.0F, 1.0F, 0.0F, 0.0F);
    glLineStipple(1, kEveryOtherPixel);
    glEnable(GL_LINE_STIPPLE);
    {
        VertexRun<PlainCorner> run(GL_LINES);
        for (std::size_t i = 0; i < points.size(); ++i)
        {
            AddLine(run, points[i], projections[i]);
        }
    }
    glDisable(GL_LINE_STIPPLE);
}

void DrawQuad(const std::array<smVec3d, 4>& corners)
{
    const LineState state(2.0F, 0.0F, 1.0F, 0.0F);
    VertexRun<PlainCorner> run(GL_LINES);
    for (std::size_t i = 0; i < corners.size(); ++i)
    {
        AddLine(run, corners[i], corners[(i + 1) % corners.size()]);
    }
}
}
