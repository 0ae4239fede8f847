#include "CloudNormals.h"
#include "Assert.h"
#include "Matrix.h"
#include "NearestPoints.h"
#include <algorithm>

namespace tessarine
{
namespace
{
Matrix MeasureSpread(const std::vector<smVec3d>& points, const smVec3d& centre, std::span<const int> around)
{
    Matrix spread(3, 3);
    for (const int index : around)
    {
        const smVec3d way = points[static_cast<std::size_t>(index)] - centre;
        for (int row = 0; row < 3; ++row)
        {
            for (int column = 0; column < 3; ++column)
            {
                spread.SetElement(row, column, spread.GetElement(row, column) + way[row] * way[column]);
            }
        }
    }
    return spread;
}

smVec3d FindLeastDirection(const Matrix& spread)
{
    constexpr int kMostSweeps = 60;
    constexpr double kTolerance = 1e-6;
    std::vector<double> values;
    Matrix vectors(3, 3);
    const bool isFound = spread.FindSymmetricEigen(values, vectors, kMostSweeps, kTolerance);
    ASSERT(isFound);
    const auto least = static_cast<int>(std::min_element(values.begin(), values.end()) - values.begin());
    return {vectors.GetElement(0, least), vectors.GetElement(1, least), vectors.GetElement(2, least)};
}
}

std::vector<smVec3d> EstimateCloudNormals(const std::vector<smVec3d>& points, NearestPoints& nearest)
{
    constexpr int kNeighbours = 6;
    std::vector<smVec3d> normals;
    normals.reserve(points.size());
    for (const smVec3d& point : points)
    {
        normals.push_back(FindLeastDirection(MeasureSpread(points, point, nearest.Find(point, kNeighbours))));
    }
    return normals;
}
}
