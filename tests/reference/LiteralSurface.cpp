#include "LiteralSurface.h"
#include "CubeTables.h"
#include <cmath>
#include <cstddef>

namespace tessarine
{
namespace
{
struct LiteralCell
{
    std::array<smVec3f, 8> p;
    std::array<float, 8> val{};
};

constexpr int kCorners[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};

LiteralCell TakeCell(const std::vector<float>& values, int i, int j, int k)
{
    LiteralCell cell;
    for (std::size_t c = 0; c < 8; ++c)
    {
        const int ci = i + kCorners[c][0];
        const int cj = j + kCorners[c][1];
        const int ck = k + kCorners[c][2];
        cell.p[c] = smVec3f(static_cast<float>(-1.2 + 0.04 * ci), static_cast<float>(-1.2 + 0.04 * cj),
                            static_cast<float>(-4.0 + 0.04 * ck));
        cell.val[c] = values[(static_cast<std::size_t>(ci) * 61 + static_cast<std::size_t>(cj)) * 201 +
                             static_cast<std::size_t>(ck)];
    }
    return cell;
}

float Between(float a, float b, double mu)
{
    return static_cast<float>(double{a} + mu * (double{b} - double{a}));
}

smVec3d InterpolateLiterally(float iso, const smVec3f& p1, const smVec3f& p2, float f1, float f2)
{
    if (std::abs(double{f1} - double{f2}) < 0.00001 || f1 == 0.0F || f2 == 0.0F)
    {
        return smVec3f(static_cast<float>((double{p1.x} + double{p2.x}) * 0.5),
                       static_cast<float>((double{p1.y} + double{p2.y}) * 0.5),
                       static_cast<float>((double{p1.z} + double{p2.z}) * 0.5));
    }
    const double mu = (double{iso} - double{f1}) / (double{f2} - double{f1});
    return smVec3f(Between(p1.x, p2.x, mu), Between(p1.y, p2.y, mu), Between(p1.z, p2.z, mu));
}

void PolygoniseLiterally(const LiteralCell& cell, float iso, std::vector<LiteralTriangle>& triangles)
{
    std::size_t c = 0;
    for (std::size_t b = 0; b < 8; ++b)
    {
        if (cell.val[b] < iso)
        {
            c += std::size_t{1} << b;
        }
    }
    const std::string_view row = kTriangleTable[c];
    const auto pointOn = [&](char digit)
    {
        const auto& ends = kEdgeCorners[ToEdge(digit)];
        return InterpolateLiterally(iso, cell.p[ends[0]], cell.p[ends[1]], cell.val[ends[0]],
                                    cell.val[ends[1]]);
    };
    for (std::size_t n = 0; n < row.size(); n += 3)
    {
        triangles.push_back({pointOn(row[n]), pointOn(row[n + 1]), pointOn(row[n + 2])});
    }
}

bool IsEqualLiterally(const smVec3d& a, const smVec3d& b)
{
    return std::abs(a.x - b.x) < 1e-10 && std::abs(a.y - b.y) < 1e-10 && std::abs(a.z - b.z) < 1e-10;
}

void SplitLiterally(std::size_t box, const std::vector<smVec3d>& points, std::vector<LiteralBox>& boxes)
{
    if (points.size() < 20 || boxes[box].depth > 8)
    {
        return;
    }
    boxes[box].isLeaf = false;
    const smVec3d low = boxes[box].low;
    const smVec3d h = (boxes[box].high - low) * 0.5;
    const int depth = boxes[box].depth + 1;
    const smVec3d offsets[] = {{0, 0, 0},   {0, 0, h.z},   {h.x, 0, h.z},   {h.x, 0, 0},
                               {0, h.y, 0}, {0, h.y, h.z}, {h.x, h.y, h.z}, {h.x, h.y, 0}};
    for (const smVec3d& offset : offsets)
    {
        const smVec3d childLow = low + offset;
        const smVec3d childHigh = childLow + h;
        std::vector<smVec3d> inside;
        for (const smVec3d& p : points)
        {
            if (childLow.x <= p.x && p.x <= childHigh.x && childLow.y <= p.y && p.y <= childHigh.y &&
                childLow.z <= p.z && p.z <= childHigh.z)
            {
                inside.push_back(p);
            }
        }
        boxes.push_back({childLow, childHigh, depth, true, inside.size()});
        SplitLiterally(boxes.size() - 1, inside, boxes);
    }
}
}

std::vector<LiteralTriangle> GenerateLiterally(const std::vector<float>& values, float isoLevel)
{
    std::vector<LiteralTriangle> triangles;
    for (int i = 0; i < 60; ++i)
    {
        for (int j = 0; j < 60; ++j)
        {
            for (int k = 0; k < 200; ++k)
            {
                const LiteralCell cell = TakeCell(values, i, j, k);
                if (triangles.size() + 10 > 999999)
                {
                    return triangles;
                }
                PolygoniseLiterally(cell, isoLevel, triangles);
            }
        }
    }
    return triangles;
}

LiteralWeld WeldLiterally(const std::vector<LiteralTriangle>& triangles)
{
    LiteralWeld weld;
    for (const LiteralTriangle& t : triangles)
    {
        if (IsEqualLiterally(t[0], t[1]) || IsEqualLiterally(t[1], t[2]) || IsEqualLiterally(t[0], t[2]))
        {
            continue;
        }
        for (const std::size_t corner : {2, 0, 1})
        {
            std::size_t f = 0;
            while (f < weld.vList.size() && !IsEqualLiterally(weld.vList[f], t[corner]))
            {
                ++f;
            }
            if (f == weld.vList.size())
            {
                weld.vList.push_back(t[corner]);
            }
            weld.fv.push_back(static_cast<std::int32_t>(f) + 1);
        }
        weld.fn.push_back(3);
    }
    return weld;
}

std::vector<LiteralBox> BuildOctreeLiterally(const std::vector<smVec3d>& points)
{
    std::vector<LiteralBox> boxes{{{-1.2, -1.2, -1.0}, {1.2, 1.2, 1.0}, 1, true, points.size()}};
    SplitLiterally(0, points, boxes);
    return boxes;
}

namespace
{
void SubdivideNodeLiterally(std::size_t node, const std::vector<smVec3d>& points, int maxDepth,
                            std::size_t minPoints, std::vector<LiteralBox>& boxes)
{
    if (boxes[node].points < minPoints || boxes[node].depth > maxDepth)
    {
        return;
    }
    boxes[node].isLeaf = false;
    const LiteralBox parent = boxes[node];
    const auto hx = static_cast<float>((parent.high.x - parent.low.x) * 0.5);
    const auto hy = static_cast<float>((parent.high.y - parent.low.y) * 0.5);
    const auto hz = static_cast<float>((parent.high.z - parent.low.z) * 0.5);
    const smVec3d offsets[8] = {{0, 0, 0},  {0, 0, hz},  {hx, 0, hz},  {hx, 0, 0},
                                {0, hy, 0}, {0, hy, hz}, {hx, hy, hz}, {hx, hy, 0}};
    for (const smVec3d& offset : offsets)
    {
        LiteralBox child{};
        child.high = parent.high - offset;
        child.low = child.high - smVec3d(hx, hy, hz);
        child.depth = parent.depth + 1;
        child.isLeaf = true;
        const smVec3f max(static_cast<float>(child.high.x), static_cast<float>(child.high.y),
                          static_cast<float>(child.high.z));
        const smVec3f min(static_cast<float>(child.low.x), static_cast<float>(child.low.y),
                          static_cast<float>(child.low.z));
        std::vector<smVec3d> inside;
        for (const smVec3d& p : points)
        {
            if (min.x <= p.x && p.x <= max.x && min.y <= p.y && p.y <= max.y && min.z <= p.z && p.z <= max.z)
            {
                inside.push_back(p);
            }
        }
        child.points = inside.size();
        boxes.push_back(child);
        SubdivideNodeLiterally(boxes.size() - 1, inside, maxDepth, minPoints, boxes);
    }
}
}

std::vector<LiteralBox> BuildCloudOctreeLiterally(const std::vector<smVec3d>& points, int maxDepth,
                                                  std::size_t minPoints)
{
    std::vector<LiteralBox> boxes{{{-1, -1, -1}, {1, 1, 1}, 1, true, points.size()}};
    SubdivideNodeLiterally(0, points, maxDepth, minPoints, boxes);
    return boxes;
}
}
