#include "ShapeMesh.h"
#include <algorithm>
#include <cstdint>
#include <unordered_map>

namespace tessarine
{
namespace
{
/// What every shape fits into, with some air around it.
constexpr double kReach = 1.4;

/// A mesh with a point in each cell that the surface crosses, and a quadrangle for each edge of the grid that
/// it crosses.
class CellMesher
{
public:
    CellMesher(const Shape& shape, double cell)
        : m_Shape(shape),
          m_fCell(cell),
          m_nSide(static_cast<int>(2.0 * kReach / cell) + 2),
          m_Values(static_cast<std::size_t>(m_nSide) * static_cast<std::size_t>(m_nSide) *
                   static_cast<std::size_t>(m_nSide))
    {
        Sample();
    }

    ShapeMesh Run()
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            AddQuads(axis);
        }
        for (int round = 0; round < kRounds; ++round)
        {
            Relax();
        }
        for (const smVec3d& point : m_Mesh.points)
        {
            m_Mesh.normals.push_back(GetNormal(m_Shape, point));
        }
        return std::move(m_Mesh);
    }

private:
    using Node = std::array<int, 3>;
    static constexpr int kRounds = 4;

    std::size_t ToIndex(const Node& node) const
    {
        const auto side = static_cast<std::size_t>(m_nSide);
        return (static_cast<std::size_t>(node[0]) * side + static_cast<std::size_t>(node[1])) * side +
               static_cast<std::size_t>(node[2]);
    }

    smVec3d GetPlace(const Node& node) const
    {
        return smVec3d(node[0], node[1], node[2]) * m_fCell - smVec3d(kReach, kReach, kReach);
    }

    /// Far from the surface one value serves a whole block of the grid: the function grows no faster than the
    /// distance, or not much.
    void Sample()
    {
        constexpr int kBlock = 8;
        const double reach = 2.0 * kBlock * m_fCell;
        Node low{};
        for (low[0] = 0; low[0] < m_nSide; low[0] += kBlock)
        {
            for (low[1] = 0; low[1] < m_nSide; low[1] += kBlock)
            {
                for (low[2] = 0; low[2] < m_nSide; low[2] += kBlock)
                {
                    const double middle =
                        m_Shape(GetPlace({low[0] + kBlock / 2, low[1] + kBlock / 2, low[2] + kBlock / 2}));
                    SampleBlock(low, kBlock, middle > reach, middle);
                }
            }
        }
    }

    void SampleBlock(const Node& low, int block, bool isFar, double middle)
    {
        Node node{};
        for (node[0] = low[0]; node[0] < std::min(low[0] + block, m_nSide); ++node[0])
        {
            for (node[1] = low[1]; node[1] < std::min(low[1] + block, m_nSide); ++node[1])
            {
                for (node[2] = low[2]; node[2] < std::min(low[2] + block, m_nSide); ++node[2])
                {
                    m_Values[ToIndex(node)] = isFar ? middle : m_Shape(GetPlace(node));
                }
            }
        }
    }

    void AddQuads(int axis)
    {
        Node node{};
        for (node[0] = 1; node[0] + 1 < m_nSide; ++node[0])
        {
            for (node[1] = 1; node[1] + 1 < m_nSide; ++node[1])
            {
                for (node[2] = 1; node[2] + 1 < m_nSide; ++node[2])
                {
                    Node next = node;
                    ++next[static_cast<std::size_t>(axis)];
                    const bool isInside = m_Values[ToIndex(node)] < 0.0;
                    if (isInside != (m_Values[ToIndex(next)] < 0.0))
                    {
                        AddQuad(node, axis, isInside);
                    }
                }
            }
        }
    }

    /// Of the four cells around an edge of the grid.
    void AddQuad(const Node& node, int axis, bool leavesAlongAxis)
    {
        const auto second = static_cast<std::size_t>((axis + 1) % 3);
        const auto third = static_cast<std::size_t>((axis + 2) % 3);
        std::array<int, 4> corners{};
        for (std::size_t i = 0; i < 4; ++i)
        {
            Node cell = node;
            cell[second] -= i == 0 || i == 3 ? 1 : 0;
            cell[third] -= i < 2 ? 1 : 0;
            corners[i] = GetPointOf(cell);
        }
        if (!leavesAlongAxis)
        {
            std::swap(corners[1], corners[3]);
        }
        const auto& points = m_Mesh.points;
        const auto length = [&](std::size_t a, std::size_t b)
        {
            return (points[static_cast<std::size_t>(corners[a])] -
                    points[static_cast<std::size_t>(corners[b])])
                .Length();
        };
        if (length(0, 2) <= length(1, 3))
        {
            m_Mesh.triangles.push_back({corners[0], corners[1], corners[2]});
            m_Mesh.triangles.push_back({corners[0], corners[2], corners[3]});
        }
        else
        {
            m_Mesh.triangles.push_back({corners[0], corners[1], corners[3]});
            m_Mesh.triangles.push_back({corners[1], corners[2], corners[3]});
        }
    }

    int GetPointOf(const Node& cell)
    {
        const auto [entry, isNew] =
            m_Numbers.try_emplace(ToIndex(cell), static_cast<int>(m_Mesh.points.size()));
        if (isNew)
        {
            const smVec3d middle = GetPlace(cell) + smVec3d(0.5, 0.5, 0.5) * m_fCell;
            m_Mesh.points.push_back(KeepInCell(MoveToSurface(m_Shape, middle), middle));
        }
        return entry->second;
    }

    smVec3d KeepInCell(smVec3d point, const smVec3d& middle) const
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            point[axis] = std::clamp(point[axis], middle[axis] - 0.5 * m_fCell, middle[axis] + 0.5 * m_fCell);
        }
        return point;
    }

    /// Every point to the middle of those beside it, and back to the surface.
    void Relax()
    {
        std::vector<smVec3d> sums(m_Mesh.points.size());
        std::vector<int> counts(m_Mesh.points.size(), 0);
        for (const auto& triangle : m_Mesh.triangles)
        {
            for (std::size_t i = 0; i < 3; ++i)
            {
                const auto at = static_cast<std::size_t>(triangle[i]);
                sums[at] += m_Mesh.points[static_cast<std::size_t>(triangle[(i + 1) % 3])];
                ++counts[at];
            }
        }
        for (std::size_t i = 0; i < sums.size(); ++i)
        {
            const smVec3d middle = sums[i] * (1.0 / counts[i]);
            m_Mesh.points[i] = MoveToSurface(m_Shape, m_Mesh.points[i] * 0.5 + middle * 0.5);
        }
    }

    const Shape& m_Shape;
    double m_fCell;
    int m_nSide;
    std::vector<double> m_Values;
    std::unordered_map<std::size_t, int> m_Numbers; ///< of the points, by their cells
    ShapeMesh m_Mesh;
};

/// The same numbers everywhere.
class Dice
{
public:
    /// From 0 to 1, 1 left out.
    double Throw()
    {
        m_nState = m_nState * 6364136223846793005U + 1442695040888963407U;
        return static_cast<double>(m_nState >> 40U) / static_cast<double>(1U << 24U);
    }

private:
    std::uint64_t m_nState = 1;
};

struct Box
{
    smVec3d low;
    smVec3d high;
};

Box FindBox(const std::vector<smVec3d>& points)
{
    Box box{points.front(), points.front()};
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

double GetArea(const ShapeMesh& mesh, const std::array<int, 3>& triangle)
{
    const smVec3d& a = mesh.points[static_cast<std::size_t>(triangle[0])];
    const smVec3d& b = mesh.points[static_cast<std::size_t>(triangle[1])];
    const smVec3d& c = mesh.points[static_cast<std::size_t>(triangle[2])];
    return (b - a).Cross(c - a).Length() / 2;
}

smVec3d PickOn(const ShapeMesh& mesh, const std::array<int, 3>& triangle, Dice& dice)
{
    double u = dice.Throw();
    double v = dice.Throw();
    if (u + v > 1.0)
    {
        u = 1.0 - u;
        v = 1.0 - v;
    }
    const smVec3d& a = mesh.points[static_cast<std::size_t>(triangle[0])];
    const smVec3d& b = mesh.points[static_cast<std::size_t>(triangle[1])];
    const smVec3d& c = mesh.points[static_cast<std::size_t>(triangle[2])];
    return a + (b - a) * u + (c - a) * v;
}

/// For each axis the first of the lowest points and of the highest.
std::vector<smVec3d> FindOutermost(const std::vector<smVec3d>& points)
{
    std::vector<smVec3d> outermost;
    for (int axis = 0; axis < 3; ++axis)
    {
        const auto isLower = [axis](const smVec3d& a, const smVec3d& b) { return a[axis] < b[axis]; };
        outermost.push_back(*std::min_element(points.begin(), points.end(), isLower));
        outermost.push_back(*std::max_element(points.begin(), points.end(), isLower));
    }
    return outermost;
}
}

ShapeMesh MakeShapeMesh(const Shape& shape, double cell)
{
    return CellMesher(shape, cell).Run();
}

UnitFrame FindUnitFrame(const std::vector<smVec3d>& points)
{
    const Box box = FindBox(points);
    const smVec3d extent = box.high - box.low;
    return {(box.low + box.high) * 0.5, std::max({extent.x, extent.y, extent.z}) / 2};
}

std::vector<smVec3d> ScatterPoints(const Shape& shape, const ShapeMesh& mesh, int count)
{
    const Box box = FindBox(mesh.points);
    std::vector<smVec3d> scattered = FindOutermost(mesh.points);
    const auto wanted = static_cast<std::size_t>(count);
    double area = 0.0;
    for (const auto& triangle : mesh.triangles)
    {
        area += GetArea(mesh, triangle);
    }
    const double pointsOfArea = static_cast<double>(wanted - scattered.size() + 1) / area;
    Dice dice;
    double due = 0.0; // what the triangles so far have not got in full
    for (const auto& triangle : mesh.triangles)
    {
        due += GetArea(mesh, triangle) * pointsOfArea;
        for (; due >= 1.0 && scattered.size() < wanted; due -= 1.0)
        {
            smVec3d point = MoveToSurface(shape, PickOn(mesh, triangle, dice));
            for (int axis = 0; axis < 3; ++axis)
            {
                point[axis] = std::clamp(point[axis], box.low[axis], box.high[axis]);
            }
            scattered.push_back(point);
        }
    }
    return scattered;
}
}
