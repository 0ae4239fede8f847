#pragma once
#include "BlockAllocator.h"
#include "CIndexedHeap.h"
#include "PairLists.h"
#include "PairTargets.h"
#include "VertexLinks.h"
#include <memory>
#include <optional>

namespace tessarine
{
/// Contracts the edges of a triangle mesh, the cheapest first. An edge costs the sum of the squared distances from
/// where its ends would meet to the planes of all faces that have gone into them.
///
/// Needs   The steps in their order, each once. The lists of the mesh outlive the work.
/// Fails   CExcpDivideZero, behind the assertion of the vector type, for an edge between two rim vertices that has
///         no length, or lies in a face without area.
/// Units   Single precision in every value and every operation.
/// Cost    n log n where valences stay small: a contraction finds anew the target of every edge that the vertex which
///         stays has then. Where costs are nothing but rounding, one vertex goes on swallowing others, and valences
///         grow into the thousands.
/// Kept    Nothing refuses a contraction that folds faces over or pinches the surface. Among equal costs the heap
///         decides, whose order is that of the edges and of all changes before.
/// Source  M. Garland and P. Heckbert 1997.
class PairContraction
{
public:
    explicit PairContraction(const FlatMesh& mesh) : m_Mesh(mesh) {}

    /// Finds the edges, and which vertices lie on a rim.
    void LinkVertices() { m_Links = std::make_unique<VertexLinks>(m_Mesh); }
    void SumVertexQuadrics();
    void QueueEdgePairs();
    /// Until so many faces are booked as removed, or no edge is left; one edge at least.
    void ContractCheapestFirst(std::int32_t nFaceGoal);

    /// The vertex that a vertex has gone into at last, itself where none took it in.
    std::int32_t GetRoot(std::int32_t nVertex) const { return m_Parents[Index(nVertex)]; }
    /// Of a root.
    const smVec3f& GetPosition(std::int32_t nVertex) const { return m_Vertices[Index(nVertex)].end.position; }

private:
    /// All that a contraction asks of a neighbour, in one line of the cache.
    struct alignas(64) Vertex
    {
        PairEnd end;
        PairList pairs; ///< the edges
    };

    /// Two vertices that share an edge, and where they would meet. Its key in the heap is the cost, negated.
    struct alignas(32) PairRecord : CHeapable
    {
        std::int32_t vertexA = 0;
        std::int32_t vertexB = 0;
        smVec3f position;
        std::int32_t nPlaceAtA = 0; ///< in the list of vertexA; of two places there the first
        std::int32_t nPlaceAtB = 0;

        std::int32_t GetFarEnd(std::int32_t nVertex) const { return vertexA ^ vertexB ^ nVertex; }
        bool Touches(std::int32_t nVertex) const { return vertexA == nVertex || vertexB == nVertex; }
        void Replace(std::int32_t nOld, std::int32_t nNew)
        {
            vertexA = vertexA == nOld ? nNew : vertexA;
            vertexB = vertexB == nOld ? nNew : vertexB;
        }
    };

    static std::size_t Index(std::int32_t i) { return static_cast<std::size_t>(i); }
    Vertex& GetVertex(std::int32_t nVertex) { return m_Vertices[Index(nVertex)]; }
    PairRecord& GetPair(std::int32_t nPair) { return m_Pairs[Index(nPair)]; }

    void AddFacePlane(std::size_t face, std::size_t corner);
    void AddRimPlane(std::size_t face, std::int32_t nVertex, std::int32_t nNeighbour);
    void MakePairs();
    void Append(std::int32_t nPair, std::int32_t nVertex, std::int32_t& nPlace);
    void FindTargets(std::span<const std::int32_t> pairs, std::optional<std::int32_t> common);

    void StartFromSingleVertices();
    int BookContraction(const PairRecord& pair);
    void Contract(const PairRecord& pair);
    void TakeOwnPairs(std::int32_t nVertex, const PairRecord& contracted);
    void TakePairsOf(std::int32_t nGone, std::int32_t nVertex);
    void TakePair(std::int32_t nPair, std::int32_t nFarEnd);
    void DropPair(const PairRecord& pair, std::int32_t nFarEnd, std::int32_t nVertex);
    void StoreTakenPairs(std::int32_t nVertex, std::int32_t nGone);
    void UpdateTakenPairs();
    void FindRoots();

    const PairRecord* GetNextPair() const;
    void PrefetchPairsOf(std::int32_t nVertex);
    void PrefetchVertices(const PairRecord* pNext);
    void PrefetchLists(const PairRecord* pNext);

    FlatMesh m_Mesh;
    std::unique_ptr<VertexLinks> m_Links; ///< until the pairs are made
    BlockVector<Vertex> m_Vertices;
    BlockVector<PairRecord> m_Pairs;
    PairLists m_Lists;
    std::optional<CIndexedHeap> m_Heap;
    std::vector<std::uint8_t> m_IsOnRim; ///< of the vertices
    std::vector<std::int32_t> m_Parents; ///< of the vertices: which one took it in, or itself
    std::vector<std::int32_t>
        m_LastMeeting; ///< of the vertices: the last contraction that met it as a far end
    std::int32_t m_nContractions = 0;
    std::vector<std::int32_t> m_Taken; ///< the pairs of the vertex that stays, in order
    std::vector<float> m_Costs;        ///< of the pairs whose targets were found last, in order
};
}
