#pragma once
#include "CIndexedHeap.h"
#include "PairLists.h"
#include "Quadric.h"
#include "smVec3f.h"
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tessarine
{
/// A triangle mesh as flat lists, which it does not own: three places in `positions`, and a normal, for each face.
struct FlatMesh
{
    std::span<const smVec3f> positions;
    std::span<const std::int32_t> corners; ///< three times as many as normals, or more
    std::span<const smVec3f> normals;
};

/// Contracts the edges of a triangle mesh, the cheapest first. An edge costs the sum of the squared distances from
/// where its ends would meet to the planes of all faces that have gone into them.
///
/// Needs   The steps in their order, each once. The lists of the mesh outlive the work.
/// Fails   CExcpDivideZero, behind the assertion of the vector type, for an edge between two rim vertices that has
///         no length, or lies in a face without area.
/// Units   Single precision in every value and every operation.
/// Cost    n log n where valences are small: a contraction finds the target of every edge anew that the vertex
///         which stays has then.
/// Kept    Nothing refuses a contraction that folds faces over or pinches the surface. Among equal costs the heap
///         decides, whose order is that of the edges and of all changes before.
/// Source  M. Garland and P. Heckbert 1997.
class PairContraction
{
public:
    explicit PairContraction(const FlatMesh& mesh) : m_Mesh(mesh), m_Vertices(mesh.positions.size()) {}

    /// Finds the edges, and which vertices lie on a rim.
    void LinkVertices();
    void SumVertexQuadrics();
    void QueueEdgePairs();
    /// Until so many faces are booked as removed, or no edge is left; one edge at least.
    void ContractCheapestFirst(std::int32_t nFaceGoal);

    /// The vertex that a vertex has gone into at last, itself where none took it in.
    std::int32_t GetRoot(std::int32_t nVertex) const { return m_Parents[Index(nVertex)]; }
    /// Of a root.
    const smVec3f& GetPosition(std::int32_t nVertex) const { return m_Vertices[Index(nVertex)].position; }

private:
    /// All that a contraction asks of a neighbour, in one line of the cache.
    struct alignas(64) Vertex
    {
        Quadric quadric;
        smVec3f position;
        PairList pairs; ///< the edges
    };

    /// Two vertices that share an edge, and where they would meet. Its key in the heap is the cost, negated.
    struct alignas(32) PairRecord : CHeapable
    {
        std::int32_t vertexA = 0;
        std::int32_t vertexB = 0;
        smVec3f position;
        std::int32_t nPlaceAtA = 0; ///< in the list of vertexA
        std::int32_t nPlaceAtB = 0;

        std::int32_t GetFarEnd(std::int32_t nVertex) const { return vertexA ^ vertexB ^ nVertex; }
    };

    /// Where a pair would meet, and what that costs.
    struct Target
    {
        smVec3f position;
        float cost = 0.0F;
    };

    static std::size_t Index(std::int32_t i) { return static_cast<std::size_t>(i); }
    Vertex& GetVertex(std::int32_t nVertex) { return m_Vertices[Index(nVertex)]; }
    PairRecord& GetPair(std::int32_t nPair) { return m_Pairs[Index(nPair)]; }
    std::int32_t GetCorner(std::size_t face, std::size_t corner) const
    {
        return m_Mesh.corners[3 * face + corner % 3];
    }

    void CollectUpperEnds();
    void DropRepeatedEnds();
    void AddRimPlane(std::size_t face, std::int32_t nVertex, std::int32_t nNeighbour);
    Target FindTarget(std::int32_t nVertexA, std::int32_t nVertexB) const;
    void Append(std::int32_t nPair, std::int32_t nVertex, std::int32_t& nPlace);

    void Contract(PairRecord& pair);
    void TakeOwnPairs(std::int32_t nVertex, const PairRecord& contracted);
    void TakePairsOf(std::int32_t nGone, std::int32_t nVertex);
    void DropPair(PairRecord& pair, std::int32_t nFarEnd, std::int32_t nVertex);
    void StoreTakenPairs(std::int32_t nVertex, std::int32_t nGone);
    void UpdateTakenPairs(std::int32_t nVertex);
    void FindRoots();

    FlatMesh m_Mesh;
    std::vector<Vertex> m_Vertices;
    std::vector<std::uint8_t> m_IsOnRim; ///< of the vertices
    std::vector<std::int32_t> m_Parents;
    std::vector<std::int32_t> m_FirstEnds; ///< where the upper ends of the edges at each lower vertex begin
    std::vector<std::int32_t> m_UpperEnds;
    std::vector<std::int32_t> m_Valences;
    std::vector<PairRecord> m_Pairs;
    PairLists m_Lists;
    std::optional<CIndexedHeap> m_Heap;

    std::vector<std::int32_t> m_Taken; ///< the pairs of the vertex that stays, in order
    std::vector<std::int32_t>
        m_LastNeighbourOf; ///< by vertex: the last contraction that met it as a neighbour
    std::int32_t m_nContractions = 0;
};
}
