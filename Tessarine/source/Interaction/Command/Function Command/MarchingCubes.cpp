#include "MarchingCubes.h"
#include "Assert.h"
#include "Console.h"
#include "DistanceField.h"
#include "PointWelder.h"
#include <cmath>
#include <cstdint>

namespace tessarine
{
namespace
{
constexpr std::size_t kMostTrianglesOfACell = 10;

void SayPairsAtOnePlace(const MCTriangle& triangle)
{
    for (std::size_t i = 0; i < 3; ++i)
    {
        const smVec3d point(triangle.p[i]);
        if (IsSamePlace(point, triangle.p[(i + 1) % 3]))
        {
            DebugConsole() << "same vertex: (" << point.x << "," << point.y << "," << point.z << ",)" << '\n';
        }
    }
}

/// A step of the grid from the low corner of a cell to a corner.
struct CornerStep
{
    int i;
    int j;
    int k;
};
constexpr std::array<CornerStep, kCubeCorners> kCornerSteps{
    {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}};

GridCell MakeCell(const DistanceField& field, int i, int j, int k)
{
    GridCell cell;
    for (std::size_t corner = 0; corner < kCubeCorners; ++corner)
    {
        const CornerStep& step = kCornerSteps[corner];
        const smVec3d place = DistanceField::GetPosition(i + step.i, j + step.j, k + step.k);
        cell.p[corner] = {static_cast<float>(place.x), static_cast<float>(place.y),
                          static_cast<float>(place.z)};
        cell.val[corner] = field.GetValue(i + step.i, j + step.j, k + step.k);
    }
    return cell;
}

/// Finds the cells that the surface goes through, a row of them along k at a time.
class CellRow
{
public:
    static constexpr int kCells = DistanceField::kCountZ - 1;
    static constexpr std::uint8_t kAllBelow = 0xFF;

    explicit CellRow(const DistanceField& field, float isoLevel) : m_pValues(field.GetValues().data())
    {
        m_Below.resize(field.GetValues().size());
        for (std::size_t i = 0; i < m_Below.size(); ++i)
        {
            m_Below[i] = m_pValues[i] < isoLevel ? 1 : 0;
        }
    }

    /// The cases of a row's cells; null where no cell of it has a triangle.
    const std::uint8_t* FindCases(int i, int j)
    {
        const std::uint8_t* first = GetLine(i, j);
        const std::uint8_t* second = GetLine(i + 1, j);
        const std::uint8_t* third = GetLine(i + 1, j + 1);
        const std::uint8_t* fourth = GetLine(i, j + 1);
        unsigned any = 0;
        unsigned all = kLowerSquare;
        for (std::size_t k = 0; k < m_Squares.size(); ++k)
        {
            m_Squares[k] =
                static_cast<std::uint8_t>(first[k] | second[k] << 1 | third[k] << 2 | fourth[k] << 3);
            any |= m_Squares[k];
            all &= m_Squares[k];
        }
        if (any == 0 || all == kLowerSquare)
        {
            return nullptr;
        }
        for (std::size_t k = 0; k < m_Cases.size(); ++k)
        {
            m_Cases[k] = static_cast<std::uint8_t>(m_Squares[k] | m_Squares[k + 1] << 4);
        }
        return m_Cases.data();
    }

private:
    static constexpr unsigned kLowerSquare = 0xF;

    const std::uint8_t* GetLine(int i, int j) const
    {
        return m_Below.data() + DistanceField::ToIndex(i, j, 0);
    }

    const float* m_pValues;
    std::vector<std::uint8_t> m_Below;
    std::array<std::uint8_t, DistanceField::kCountZ> m_Squares{};
    std::array<std::uint8_t, kCells> m_Cases{};
};

bool HasRoom(const std::vector<MCTriangle>& triangles)
{
    return triangles.size() + kMostTrianglesOfACell < kMostTriangles;
}
}

smVec3f InterpolateVertex(float isoLevel, const smVec3f& p1, const smVec3f& p2, float f1, float f2)
{
    constexpr double kNearlyEqual = 0.00001;
    const smVec3d from(p1);
    const smVec3d to(p2);
    const double difference = double{f2} - double{f1};
    const bool isMiddle = std::abs(difference) < kNearlyEqual || f1 == 0.0F || f2 == 0.0F;
    const smVec3d point =
        isMiddle ? (from + to) * 0.5 : from + (double{isoLevel} - double{f1}) / difference * (to - from);
    return {static_cast<float>(point.x), static_cast<float>(point.y), static_cast<float>(point.z)};
}

int Polygonise(const GridCell& cell, float isoLevel, std::vector<MCTriangle>& triangles)
{
    std::size_t cubeCase = 0;
    for (std::size_t corner = 0; corner < kCubeCorners; ++corner)
    {
        cubeCase |= (cell.val[corner] < isoLevel ? std::size_t{1} : std::size_t{0}) << corner;
    }
    std::array<smVec3f, kCubeEdges> points;
    for (std::size_t edge = 0; edge < kCubeEdges; ++edge)
    {
        if ((kEdgeTable[cubeCase] >> edge & 1U) != 0)
        {
            const auto [first, second] = kEdgeCorners[edge];
            points[edge] =
                InterpolateVertex(isoLevel, cell.p[first], cell.p[second], cell.val[first], cell.val[second]);
        }
    }
    const std::string_view row = kTriangleTable[cubeCase];
    for (std::size_t n = 0; n < row.size(); n += 3)
    {
        triangles.push_back(
            {{points[ToEdge(row[n])], points[ToEdge(row[n + 1])], points[ToEdge(row[n + 2])]}});
        SayPairsAtOnePlace(triangles.back());
    }
    return kTriangleCounts[cubeCase];
}

void GenerateMesh(const DistanceField& field, float isoLevel, std::vector<MCTriangle>& triangles)
{
    CellRow row(field, isoLevel);
    for (int i = 0; i < DistanceField::kCountX - 1; ++i)
    {
        for (int j = 0; j < DistanceField::kCountY - 1; ++j)
        {
            if (!HasRoom(triangles))
            {
                return;
            }
            const std::uint8_t* cases = row.FindCases(i, j);
            for (int k = 0; cases != nullptr && k < CellRow::kCells; ++k)
            {
                if (!HasRoom(triangles))
                {
                    return;
                }
                if (cases[k] != 0 && cases[k] != CellRow::kAllBelow)
                {
                    Polygonise(MakeCell(field, i, j, k), isoLevel, triangles);
                }
            }
        }
    }
    DebugConsole() << "Generate triangles mesh ok.." << '\n';
}
}
