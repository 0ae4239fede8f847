#pragma once
#include "EdgeStack.h"
#include "FanValences.h"
#include <array>
#include <cstdint>
#include <functional>
#include <optional>

namespace tessarine
{
class MANBrepElementManager;

/// How the commands that swap edges by priority differ.
struct SwapVariant
{
    float leastGain;      ///< a larger one, in single precision, is worth a swap
    bool listsTheNewEdge; ///< among those that are measured once more
    bool tells;           ///< what is measured, and what the stack is like
};

inline constexpr SwapVariant kOptimizingSwaps{0.0F, false, false};
inline constexpr SwapVariant kTwoStepSwaps{0.001F, true, true};

/// Swaps of edges between two triangles: each takes an edge out of their quadrilateral, and puts in the other
/// diagonal. What the gain of a swap lowers is the sum over the edges of length times the angle between the two faces
/// there.
///
/// Needs   Two faces at the edge and at all edges around them (asserted).
/// Says    A line when a run is ended after a hundred swaps an edge.
/// Fails   Two opposite corners that are one vertex are an assertion.
/// Cost    A swap by priority is logarithmic, and local but for that.
class EdgeSwaps
{
public:
    using EdgeIDs = std::array<std::uint32_t, 13>;
    using Test = std::function<bool(const DSHalfEdge& h1, const DSHalfEdge& h2)>;

    explicit EdgeSwaps(MANBrepElementManager* pManager) : m_pManager(pManager) {}

    /// How much the swap of an edge would lower the sum; -10000 where it is not allowed, which is at a vertex of
    /// valence 3 or less. Computes the normals of the two faces anew, and takes those around as they are stored.
    ///
    /// Fails   Failure for a new triangle without area.
    double GetGain(DSEdge* pEdge);

    /// @return the new edge, which is the last one of its solid
    DSEdge* Swap(DSEdge* pEdge);

    /// The edge, the four others of its two triangles, and the eight others of the triangles beyond those. Where
    /// triangles coincide ids are repeated.
    static EdgeIDs CollectEdges(const DSEdge* pEdge);

    static bool IsWorthASwap(double gain, const SwapVariant& variant)
    {
        return static_cast<float>(gain) > variant.leastGain;
    }

    /// Swaps the edge with the largest gain, until none is worth it.
    ///
    /// Kept    The gains of the start are rounded to single precision, and those of the updates are not.
    void SwapByPriority(DSSolid& solid, const SwapVariant& variant);

    /// Swaps where the test says so, in the order of the edge list. A swapped edge comes up again at its end.
    ///
    /// Says    "Current edge number: " and the place, for each place.
    /// @return the number of swaps
    std::size_t SwapWhere(DSSolid& solid, const Test& isWorthASwap);

private:
    void FillStack(const DSSolid& solid, const SwapVariant& variant);
    void UpdateStack(const EdgeIDs& edges, const SwapVariant& variant);
    void Enter(std::uint32_t edgeID);
    int GetValence(DSVertex& vertex);
    void NoteSwap(const DSEdge& edge, int nChange);

    MANBrepElementManager* m_pManager;
    EdgeStack m_Stack;
    std::optional<FanValences> m_Valences; ///< during a run by priority
};
}
