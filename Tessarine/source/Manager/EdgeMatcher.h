#pragma once
#include "DSBrep.h"
#include "VertexPairMap.h"
#include <array>

namespace tessarine
{
class MANBrepElementManager;

/// Gives the half-edges of a new solid their edges: those that join the same two vertices share one.
/// Orientation is not looked at, and a third half-edge takes the place of the second. The edge
/// is then marked as repeated.
///
/// Says    What it finds wrong with the edges, if it is to report.
class EdgeMatcher
{
public:
    enum class Reports
    {
        No,
        Yes
    };

    /// The solid has its vertices, whose ids follow one another, and no edges yet.
    EdgeMatcher(MANBrepElementManager& manager, DSSolid& solid, std::size_t expectedEdges, Reports reports);

    /// Takes the half-edges of a loop, in the order of the circle.
    void MatchLoop(const DSLoop& loop, std::size_t faceIndex);

    /// To be called after the last loop.
    void Finish();

private:
    struct Pending
    {
        DSHalfEdge* pHalfEdge;
        VertexPairMap::Pair pair;
    };
    /// A half-edge waits for its turn while the memory for its look-up is on the way.
    static constexpr std::size_t kMostPending = 16;

    void Queue(DSHalfEdge* halfEdge);
    void Match(const Pending& pending);
    void JoinEdge(DSEdge& edge, DSHalfEdge* halfEdge);
    void NoteRepeated(DSEdge& edge) const;

    MANBrepElementManager& m_Manager;
    DSSolid& m_Solid;
    VertexPairMap m_EdgeOfPair; ///< places in the solid's list of edges
    Reports m_Reports;
    std::array<Pending, kMostPending> m_Pending{};
    std::size_t m_nQueued = 0;
    std::size_t m_nMatched = 0;
};
}
