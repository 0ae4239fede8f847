#pragma once
#include "ACTEuler.h"
#include "FanValences.h"
#include <cstdint>

namespace tessarine
{
/// Removes the edges of a solid that have no length, each with the faces beside it and one of its ends.
///
/// Leaves  An edge with a single face, and one whose removal would tear the mesh: the vertex that would go lies on a
///         rim or in several fans, or the faces around are not four different ones as on a manifold (of a vertex with
///         three edges: three).
/// Says    How many edges without length it has left, on standard error.
/// Fails   Failure when the vertices that go have very many edges, again and again.
/// Cost    Linear in the edges, and in the valences of the vertices that go.
/// Kept    The walk over the edge list does not step back, so that the edges that move up into the place of removed
///         ones are not looked at.
class ZeroEdgeRemoval
{
public:
    ZeroEdgeRemoval(MANBrepElementManager* pManager, DSSolid& solid);

    void Run();

private:
    static bool HasNoLength(const DSEdge& edge);
    static bool RunsOppositeWays(const DSEdge& edge);
    bool CanCollapse(const DSEdge& edge) const;
    bool IsInOneClosedFan(const DSHalfEdge& start) const;
    void CollapseEdge(const DSEdge& edge);
    void SpendSteps(int nSteps);

    ACTEuler m_Euler;
    DSSolid& m_Solid;
    FanValences m_Fans;
    std::uint64_t m_nStepsLeft;
};
}
