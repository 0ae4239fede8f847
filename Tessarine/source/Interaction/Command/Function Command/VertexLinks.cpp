#include "VertexLinks.h"
#include <algorithm>
#include <numeric>

namespace tessarine
{
namespace
{
std::size_t Index(std::int32_t i)
{
    return static_cast<std::size_t>(i);
}

std::vector<std::int32_t> CountCorners(const FlatMesh& mesh)
{
    std::vector<std::int32_t> counts(mesh.positions.size(), 0);
    for (const std::int32_t corner : mesh.corners.first(3 * mesh.CountFaces()))
    {
        ++counts[Index(corner)];
    }
    return counts;
}

/// Calls visit(lower, upper) for each side of each face.
template <class TVisit>
void ForEachSide(const FlatMesh& mesh, TVisit visit)
{
    for (std::size_t face = 0; face < mesh.CountFaces(); ++face)
    {
        for (std::size_t i = 0; i < 3; ++i)
        {
            const std::int32_t a = mesh.GetCorner(face, i);
            const std::int32_t b = mesh.GetCorner(face, i + 1);
            visit(std::min(a, b), std::max(a, b));
        }
    }
}
}

VertexLinks::VertexLinks(const FlatMesh& mesh)
{
    CollectUpperEnds(mesh);
    DropRepeatedEnds(CountCorners(mesh));
}

/// One for each side of a face. Behind that each vertex's first end is that of the next vertex.
void VertexLinks::CollectUpperEnds(const FlatMesh& mesh)
{
    m_FirstEnds.assign(mesh.positions.size() + 1, 0);
    m_UpperEnds.resize(3 * mesh.CountFaces());
    ForEachSide(mesh, [this](std::int32_t nLower, std::int32_t /*upper*/) { ++m_FirstEnds[Index(nLower)]; });
    std::exclusive_scan(m_FirstEnds.begin(), m_FirstEnds.end(), m_FirstEnds.begin(), 0);
    ForEachSide(mesh, [this](std::int32_t nLower, std::int32_t nUpper)
                { m_UpperEnds[Index(m_FirstEnds[Index(nLower)]++)] = nUpper; });
}

/// Edges at a vertex as upper end are known when its turn comes as the lower one.
void VertexLinks::DropRepeatedEnds(std::vector<std::int32_t> corners)
{
    const auto nVertices = static_cast<std::int32_t>(corners.size());
    std::vector<std::int32_t> lastLowerEnds(corners.size(), -1);
    m_Valences.assign(corners.size(), 0);
    m_IsOnRim.assign(corners.size(), 0);
    std::int32_t nKept = 0;
    std::int32_t nNext = 0;
    for (std::int32_t nLower = 0; nLower < nVertices; ++nLower)
    {
        const std::int32_t nEnd = m_FirstEnds[Index(nLower)];
        m_FirstEnds[Index(nLower)] = nKept;
        bool isOwnNeighbour = false;
        for (; nNext < nEnd; ++nNext)
        {
            const std::int32_t nUpper = m_UpperEnds[Index(nNext)];
            if (lastLowerEnds[Index(nUpper)] == nLower)
            {
                continue;
            }
            lastLowerEnds[Index(nUpper)] = nLower;
            m_UpperEnds[Index(nKept++)] = nUpper;
            ++m_Valences[Index(nLower)];
            ++m_Valences[Index(nUpper)];
            isOwnNeighbour = isOwnNeighbour || nUpper == nLower;
        }
        const std::int32_t nNeighbours = m_Valences[Index(nLower)] - (isOwnNeighbour ? 1 : 0);
        m_IsOnRim[Index(nLower)] = corners[Index(nLower)] != nNeighbours ? 1 : 0;
    }
    m_FirstEnds[Index(nVertices)] = nKept;
    m_UpperEnds.resize(Index(nKept));
}
}
