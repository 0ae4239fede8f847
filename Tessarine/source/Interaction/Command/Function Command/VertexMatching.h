#pragma once
#include "NearestPoints.h"
#include "PointPairs.h"
#include "TriangleSurgery.h"
#include <cstdint>
#include <span>

namespace tessarine
{
/// Pairs each vertex of a closed mesh with a free point of a cloud near it, if the vertex can move there without a
/// fold and the point lies over the faces around the vertex; a vertex without such a point is taken away. No vertex
/// moves, and vertices without faces stay without a point.
///
/// Says    "Find topology error..." for each point that does not do, "There still exsits error points..." for each
///         vertex without one, and at the end "Refine init mesh ok...".
/// Fails   Failure where a vertex cannot be taken away (TriangleSurgery), and where vertices with very many edges come
///         up again and again.
/// Cost    Linear in the vertices, but for the queries of the tree: a removal does not grow with the solid.
class VertexMatching
{
public:
    /// @param projected where a point that finds its vertex is shown: at the vertex
    VertexMatching(MANBrepElementManager* pManager, DSSolid& solid, const std::vector<smVec3d>& cloud,
                   PointPairs& pairs, std::vector<smVec3d>& projected);

    void Run();

private:
    bool FindPoint(DSVertex& vertex);
    void Remove(const DSVertex& vertex);
    void SpendSteps(std::size_t nSteps);

    DSSolid& m_Solid;
    const std::vector<smVec3d>& m_Cloud;
    PointPairs& m_Pairs;
    std::vector<smVec3d>& m_Projected;
    NearestPoints m_Nearest;
    TriangleSurgery m_Surgery;
    std::size_t m_nStepsLeft;
};
}
