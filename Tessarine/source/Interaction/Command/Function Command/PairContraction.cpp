#include "PairContraction.h"
#include "CExcp.h"
#include <algorithm>
#include <numeric>

namespace tessarine
{
namespace
{
/// A length that is none ends the run.
smVec3f Unit(smVec3f v)
{
    const bool hasLength = v.Length() > smVec3f_zero;
    v.Normalize(); // reports it
    if (!hasLength)
    {
        throw CExcpDivideZero();
    }
    return v;
}
}

/// Face by face: the sum of each vertex has the order of the faces all the same.
void PairContraction::SumVertexQuadrics()
{
    m_Vertices.resize(m_Mesh.positions.size());
    for (std::size_t v = 0; v < m_Vertices.size(); ++v)
    {
        m_Vertices[v].end.position = m_Mesh.positions[v];
    }
    for (std::size_t face = 0; face < m_Mesh.CountFaces(); ++face)
    {
        for (std::size_t corner = 0; corner < 3; ++corner)
        {
            AddFacePlane(face, corner);
        }
    }
}

void PairContraction::AddFacePlane(std::size_t face, std::size_t corner)
{
    const smVec3f& normal = m_Mesh.normals[face];
    const std::int32_t nVertex = m_Mesh.GetCorner(face, corner);
    const smVec3f& firstPosition = m_Mesh.positions[Index(m_Mesh.GetCorner(face, 0))];
    GetVertex(nVertex).end.quadric.AddPlane(normal, -normal.Dot(firstPosition));
    if (m_Links->IsOnRim(nVertex))
    {
        // A vertex that the face has twice is seen from its first corner there.
        const std::size_t first = m_Mesh.GetCorner(face, 0) == nVertex   ? 0
                                  : m_Mesh.GetCorner(face, 1) == nVertex ? 1
                                                                         : 2;
        AddRimPlane(face, nVertex, m_Mesh.GetCorner(face, first + 2));
        AddRimPlane(face, nVertex, m_Mesh.GetCorner(face, first + 1));
    }
}

/// Through an edge between two rim vertices, upright on the face: it holds the rim in place.
/// Kept: an edge inside between two rim vertices has one, too.
void PairContraction::AddRimPlane(std::size_t face, std::int32_t nVertex, std::int32_t nNeighbour)
{
    if (!m_Links->IsOnRim(nNeighbour))
    {
        return;
    }
    const smVec3f& lower = m_Mesh.positions[Index(std::min(nVertex, nNeighbour))];
    const smVec3f& upper = m_Mesh.positions[Index(std::max(nVertex, nNeighbour))];
    try
    {
        const smVec3f across = Unit(Unit(lower - upper).Cross(m_Mesh.normals[face]));
        GetVertex(nVertex).end.quadric.AddPlane(across, -across.Dot(m_Mesh.positions[Index(nVertex)]));
    }
    catch (IException& exception)
    {
        exception.AddContext("between the vertices " + std::to_string(nVertex + 1) + " and " +
                             std::to_string(nNeighbour + 1) + " of a rim");
        throw;
    }
}

void PairContraction::QueueEdgePairs()
{
    MakePairs();
    m_Taken.resize(m_Pairs.size());
    std::iota(m_Taken.begin(), m_Taken.end(), 0);
    FindTargets(m_Taken, std::nullopt);
    m_Heap.emplace(static_cast<std::int32_t>(m_Pairs.size()));
    for (std::size_t i = 0; i < m_Pairs.size(); ++i)
    {
        m_Heap->Insert(&m_Pairs[i], -m_Costs[i]);
    }
}

void PairContraction::MakePairs()
{
    m_Pairs.resize(m_Links->CountEdges());
    m_Lists.Reserve(m_Vertices.size() + m_Vertices.size() / 4);
    m_IsOnRim.resize(m_Vertices.size());
    for (std::size_t v = 0; v < m_Vertices.size(); ++v)
    {
        m_Lists.Allocate(m_Vertices[v].pairs, m_Links->GetValence(v));
        m_IsOnRim[v] = m_Links->IsOnRim(static_cast<std::int32_t>(v)) ? 1 : 0;
    }
    std::int32_t nPair = 0;
    for (std::size_t v = 0; v < m_Vertices.size(); ++v)
    {
        for (const std::int32_t nUpper : m_Links->GetUpperEnds(v))
        {
            PairRecord& pair = GetPair(nPair);
            pair.vertexA = static_cast<std::int32_t>(v);
            pair.vertexB = nUpper;
            Append(nPair, pair.vertexA, pair.nPlaceAtA);
            Append(nPair, pair.vertexB, pair.nPlaceAtB);
            ++nPair;
        }
    }
    m_Links.reset();
}

void PairContraction::Append(std::int32_t nPair, std::int32_t nVertex, std::int32_t& nPlace)
{
    PairList& list = GetVertex(nVertex).pairs;
    nPlace = list.nEntries++;
    m_Lists.GetEntries(list)[nPlace] = nPair;
}

/// Of pairs that have a vertex in common, seen from there; of others, each seen from its vertexA.
void PairContraction::FindTargets(std::span<const std::int32_t> pairs, std::optional<std::int32_t> common)
{
    m_Costs.resize(pairs.size());
    for (std::size_t first = 0; first < pairs.size(); first += kPairsAtATime)
    {
        const std::size_t count = std::min<std::size_t>(kPairsAtATime, pairs.size() - first);
        const PairEnd* ends[2][kPairsAtATime];
        for (std::size_t i = 0; i < kPairsAtATime; ++i)
        {
            const PairRecord& pair = GetPair(pairs[first + std::min(i, count - 1)]);
            const std::int32_t nFrom = common.value_or(pair.vertexA);
            ends[0][i] = &GetVertex(nFrom).end;
            ends[1][i] = &GetVertex(pair.GetFarEnd(nFrom)).end;
        }
        PairTarget targets[kPairsAtATime];
        FindPairTargets(ends, targets);
        for (std::size_t i = 0; i < count; ++i)
        {
            GetPair(pairs[first + i]).position = targets[i].position;
            m_Costs[first + i] = targets[i].cost;
        }
    }
}

void PairContraction::ContractCheapestFirst(std::int32_t nFaceGoal)
{
    StartFromSingleVertices();
    std::int32_t nRemoved = 0;
    do
    {
        const CHeapNode* pTop = m_Heap->Extract();
        if (pTop == nullptr)
        {
            break;
        }
        const auto& pair = static_cast<const PairRecord&>(*pTop->object);
        nRemoved += BookContraction(pair);
        Contract(pair);
    } while (nRemoved < nFaceGoal);
    FindRoots();
}

void PairContraction::StartFromSingleVertices()
{
    m_Parents.resize(m_Vertices.size());
    std::iota(m_Parents.begin(), m_Parents.end(), 0);
    m_LastMeeting.assign(m_Vertices.size(), 0);
}

/// How many faces are taken to go with an edge: one on the rim, two inside.
/// Kept: a booking only, never checked against the faces.
int PairContraction::BookContraction(const PairRecord& pair)
{
    std::uint8_t& isRimA = m_IsOnRim[Index(pair.vertexA)];
    const std::uint8_t isRimB = m_IsOnRim[Index(pair.vertexB)];
    const int nFaces = isRimA != 0 && isRimB != 0 ? 1 : 2;
    isRimA |= isRimB;
    return nFaces;
}

void PairContraction::Contract(const PairRecord& pair)
{
    const std::int32_t u = pair.vertexA;
    const std::int32_t v = pair.vertexB;
    const PairRecord* const pNext = GetNextPair();
    ++m_nContractions;
    m_Parents[Index(v)] = u;
    PrefetchPairsOf(u);
    PrefetchPairsOf(v);

    TakeOwnPairs(u, pair);
    if (u != v)
    {
        TakePairsOf(v, u);
    }
    PrefetchVertices(pNext);
    StoreTakenPairs(u, v);
    GetVertex(u).end.position = pair.position;
    GetVertex(u).end.quadric += GetVertex(v).end.quadric;
    FindTargets(m_Taken, u);
    PrefetchLists(pNext);
    UpdateTakenPairs();
}

void PairContraction::TakeOwnPairs(std::int32_t nVertex, const PairRecord& contracted)
{
    m_Taken.clear();
    const PairList& list = GetVertex(nVertex).pairs;
    std::int32_t* const pEntries = m_Lists.GetEntries(list);
    pEntries[contracted.nPlaceAtA] = PairLists::kHole;
    for (std::int32_t i = 0; i < list.nEntries; ++i)
    {
        if (pEntries[i] != PairLists::kHole)
        {
            TakePair(pEntries[i], GetPair(pEntries[i]).GetFarEnd(nVertex));
        }
    }
}

/// Of two pairs with the same ends the one survives that the vertex which stays has had.
void PairContraction::TakePairsOf(std::int32_t nGone, std::int32_t nVertex)
{
    const PairList& list = GetVertex(nGone).pairs;
    const std::int32_t* const pEntries = m_Lists.GetEntries(list);
    for (std::int32_t i = 0; i < list.nEntries; ++i)
    {
        // The contracted pair touches the vertex, and so does the second entry of a pair of the other with itself.
        if (pEntries[i] == PairLists::kHole || GetPair(pEntries[i]).Touches(nVertex))
        {
            continue;
        }
        PairRecord& pair = GetPair(pEntries[i]);
        pair.Replace(nGone, nVertex);
        const std::int32_t nFarEnd = pair.GetFarEnd(nVertex);
        const bool isRepeated =
            nFarEnd == nVertex ? !m_Taken.empty() : m_LastMeeting[Index(nFarEnd)] == m_nContractions;
        isRepeated ? DropPair(pair, nFarEnd, nVertex) : TakePair(pEntries[i], nFarEnd);
    }
}

void PairContraction::TakePair(std::int32_t nPair, std::int32_t nFarEnd)
{
    m_LastMeeting[Index(nFarEnd)] = m_nContractions;
    m_Taken.push_back(nPair);
    __builtin_prefetch(&GetVertex(nFarEnd));
    m_Heap->Prefetch(GetPair(nPair));
}

void PairContraction::DropPair(const PairRecord& pair, std::int32_t nFarEnd, std::int32_t nVertex)
{
    m_Heap->Remove(pair.GetHeapPos());
    if (nFarEnd != nVertex)
    {
        const std::int32_t nPlace = pair.vertexA == nFarEnd ? pair.nPlaceAtA : pair.nPlaceAtB;
        m_Lists.GetEntries(GetVertex(nFarEnd).pairs)[nPlace] = PairLists::kHole;
    }
}

void PairContraction::StoreTakenPairs(std::int32_t nVertex, std::int32_t nGone)
{
    PairList& list = GetVertex(nVertex).pairs;
    PairList& goneList = GetVertex(nGone).pairs;
    const auto nTaken = static_cast<std::int32_t>(m_Taken.size());
    if (PairLists::GetCapacity(list) < nTaken)
    {
        std::swap(list, goneList);
    }
    if (nVertex != nGone)
    {
        m_Lists.Free(goneList);
    }
    if (PairLists::GetCapacity(list) < nTaken)
    {
        m_Lists.Free(list);
        m_Lists.Allocate(list, nTaken);
    }
    list.nEntries = nTaken;
    std::int32_t* const pEntries = m_Lists.GetEntries(list);
    for (std::int32_t i = nTaken - 1; i >= 0; --i) // backwards: of two places of a pair the first is kept
    {
        pEntries[i] = m_Taken[Index(i)];
        PairRecord& pair = GetPair(pEntries[i]);
        (pair.vertexA == nVertex ? pair.nPlaceAtA : pair.nPlaceAtB) = i;
    }
}

void PairContraction::UpdateTakenPairs()
{
    for (std::size_t i = 0; i < m_Taken.size(); ++i)
    {
        m_Heap->Update(&GetPair(m_Taken[i]), -m_Costs[i]);
    }
}

void PairContraction::FindRoots()
{
    for (std::int32_t& nParent : m_Parents)
    {
        while (m_Parents[Index(nParent)] != nParent)
        {
            nParent = m_Parents[Index(nParent)];
        }
    }
}

/// The pair that is the cheapest now will be contracted next, unless the updates make another one cheaper. What it
/// needs is asked for step by step, each when what leads there has come.
const PairContraction::PairRecord* PairContraction::GetNextPair() const
{
    if (m_Heap->GetSize() == 0)
    {
        return nullptr;
    }
    const auto* pNext = static_cast<const PairRecord*>(m_Heap->GetNode(0).object);
    __builtin_prefetch(pNext);
    return pNext;
}

void PairContraction::PrefetchPairsOf(std::int32_t nVertex)
{
    const PairList& list = GetVertex(nVertex).pairs;
    const std::int32_t* const pEntries = m_Lists.GetEntries(list);
    for (std::int32_t i = 0; i < list.nEntries; ++i)
    {
        if (pEntries[i] != PairLists::kHole)
        {
            __builtin_prefetch(&GetPair(pEntries[i]), 1);
        }
    }
}

void PairContraction::PrefetchVertices(const PairRecord* pNext)
{
    if (pNext != nullptr)
    {
        __builtin_prefetch(&GetVertex(pNext->vertexA));
        __builtin_prefetch(&GetVertex(pNext->vertexB));
    }
}

void PairContraction::PrefetchLists(const PairRecord* pNext)
{
    if (pNext != nullptr)
    {
        __builtin_prefetch(m_Lists.GetEntries(GetVertex(pNext->vertexA).pairs));
        __builtin_prefetch(m_Lists.GetEntries(GetVertex(pNext->vertexB).pairs));
    }
}
}
