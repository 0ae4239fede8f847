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

void PairContraction::LinkVertices()
{
    CollectUpperEnds();
    DropRepeatedEnds();
}

/// Every side of a face, at its lower vertex, in the order of the faces.
void PairContraction::CollectUpperEnds()
{
    const std::size_t corners = 3 * m_Mesh.normals.size();
    m_FirstEnds.assign(m_Vertices.size() + 1, 0);
    const auto forEachSide = [this](auto&& visit)
    {
        for (std::size_t face = 0; face < m_Mesh.normals.size(); ++face)
        {
            for (std::size_t i = 0; i < 3; ++i)
            {
                const std::int32_t a = GetCorner(face, i);
                const std::int32_t b = GetCorner(face, i + 1);
                visit(std::min(a, b), std::max(a, b));
            }
        }
    };
    forEachSide([this](std::int32_t lower, std::int32_t /*upper*/) { ++m_FirstEnds[Index(lower)]; });
    std::exclusive_scan(m_FirstEnds.begin(), m_FirstEnds.end(), m_FirstEnds.begin(), 0);
    m_UpperEnds.resize(corners);
    forEachSide([this](std::int32_t lower, std::int32_t upper)
                { m_UpperEnds[Index(m_FirstEnds[Index(lower)]++)] = upper; });
}

/// A vertex that has as many neighbours as corners of faces is closed.
void PairContraction::DropRepeatedEnds()
{
    const std::size_t vertices = m_Vertices.size();
    std::vector<std::int32_t> corners(vertices, 0);
    for (const std::int32_t corner : m_Mesh.corners.first(3 * m_Mesh.normals.size()))
    {
        ++corners[Index(corner)];
    }
    std::vector<std::int32_t> lastLower(vertices, -1);
    m_Valences.assign(vertices, 0);
    m_IsOnRim.assign(vertices, 0);
    std::int32_t nKept = 0;
    std::int32_t nNext = 0;
    for (std::size_t v = 0; v < vertices; ++v)
    {
        const auto lower = static_cast<std::int32_t>(v);
        const std::int32_t nEnd = m_FirstEnds[v]; // the count has moved it to the next vertex's
        m_FirstEnds[v] = nKept;
        bool isOwnNeighbour = false;
        for (; nNext < nEnd; ++nNext)
        {
            const std::int32_t upper = m_UpperEnds[Index(nNext)];
            if (lastLower[Index(upper)] != lower)
            {
                lastLower[Index(upper)] = lower;
                m_UpperEnds[Index(nKept++)] = upper;
                ++m_Valences[v];
                ++m_Valences[Index(upper)];
                isOwnNeighbour = isOwnNeighbour || upper == lower;
            }
        }
        m_IsOnRim[v] = corners[v] != m_Valences[v] - (isOwnNeighbour ? 1 : 0) ? 1 : 0;
    }
    m_FirstEnds[vertices] = nKept;
    m_UpperEnds.resize(Index(nKept));
}

/// Each sum is in the order of the faces.
void PairContraction::SumVertexQuadrics()
{
    for (std::size_t v = 0; v < m_Vertices.size(); ++v)
    {
        m_Vertices[v].position = m_Mesh.positions[v];
    }
    for (std::size_t face = 0; face < m_Mesh.normals.size(); ++face)
    {
        const smVec3f& normal = m_Mesh.normals[face];
        const float d = -normal.Dot(m_Mesh.positions[Index(GetCorner(face, 0))]);
        for (std::size_t i = 0; i < 3; ++i)
        {
            const std::int32_t v = GetCorner(face, i);
            GetVertex(v).quadric.AddPlane(normal, d);
            if (m_IsOnRim[Index(v)] != 0)
            {
                // A face that has a vertex twice is seen from the first of them.
                const std::size_t first = GetCorner(face, 0) == v ? 0 : (GetCorner(face, 1) == v ? 1 : 2);
                AddRimPlane(face, v, GetCorner(face, first + 2));
                AddRimPlane(face, v, GetCorner(face, first + 1));
            }
        }
    }
}

/// Through an edge between two rim vertices, upright on the face: it holds the rim in place.
void PairContraction::AddRimPlane(std::size_t face, std::int32_t nVertex, std::int32_t nNeighbour)
{
    if (m_IsOnRim[Index(nNeighbour)] == 0)
    {
        return;
    }
    const auto [lower, upper] = std::minmax(nVertex, nNeighbour);
    const smVec3f edge = Unit(m_Mesh.positions[Index(lower)] - m_Mesh.positions[Index(upper)]);
    const smVec3f across = Unit(edge.Cross(m_Mesh.normals[face]));
    GetVertex(nVertex).quadric.AddPlane(across, -across.Dot(m_Mesh.positions[Index(nVertex)]));
}

PairContraction::Target PairContraction::FindTarget(std::int32_t nVertexA, std::int32_t nVertexB) const
{
    const Vertex& a = m_Vertices[Index(nVertexA)];
    const Vertex& b = m_Vertices[Index(nVertexB)];
    const Quadric sum = a.quadric + b.quadric;
    Target target;
    if (sum.FindMinimum(target.position))
    {
        target.cost = sum.Evaluate(target.position);
        return target;
    }
    target = {a.position, sum.Evaluate(a.position)};
    for (const smVec3f& candidate : {b.position, (a.position + b.position) / 2.0F})
    {
        const float cost = sum.Evaluate(candidate);
        if (cost < target.cost)
        {
            target = {candidate, cost};
        }
    }
    return target;
}

void PairContraction::QueueEdgePairs()
{
    m_Lists.Reserve(m_Vertices.size() + m_Vertices.size() / 4);
    for (std::size_t v = 0; v < m_Vertices.size(); ++v)
    {
        if (m_Valences[v] != 0)
        {
            m_Lists.Allocate(m_Vertices[v].pairs, m_Valences[v]);
        }
    }
    m_Heap.emplace(static_cast<std::int32_t>(m_UpperEnds.size()));
    m_Pairs.resize(m_UpperEnds.size());
    for (std::int32_t v = 0; v < static_cast<std::int32_t>(m_Vertices.size()); ++v)
    {
        for (std::int32_t nPair = m_FirstEnds[Index(v)]; nPair < m_FirstEnds[Index(v) + 1]; ++nPair)
        {
            PairRecord& pair = GetPair(nPair);
            pair.vertexA = v;
            pair.vertexB = m_UpperEnds[Index(nPair)];
            const Target target = FindTarget(pair.vertexA, pair.vertexB);
            pair.position = target.position;
            m_Heap->Insert(&pair, -target.cost);
            Append(nPair, pair.vertexA, pair.nPlaceAtA);
            Append(nPair, pair.vertexB, pair.nPlaceAtB);
        }
    }
    m_FirstEnds = {};
    m_UpperEnds = {};
    m_Valences = {};
}

void PairContraction::Append(std::int32_t nPair, std::int32_t nVertex, std::int32_t& nPlace)
{
    PairList& list = GetVertex(nVertex).pairs;
    nPlace = list.nEntries++;
    m_Lists.GetEntries(list)[nPlace] = nPair;
}

void PairContraction::ContractCheapestFirst(std::int32_t nFaceGoal)
{
    m_Parents.resize(m_Vertices.size());
    std::iota(m_Parents.begin(), m_Parents.end(), 0);
    m_LastNeighbourOf.assign(m_Vertices.size(), 0);
    std::int32_t nRemoved = 0;
    do
    {
        const CHeapNode* pTop = m_Heap->Extract();
        if (pTop == nullptr)
        {
            break;
        }
        auto& pair = static_cast<PairRecord&>(*pTop->object);
        const bool bothOnRim = m_IsOnRim[Index(pair.vertexA)] != 0 && m_IsOnRim[Index(pair.vertexB)] != 0;
        nRemoved += bothOnRim ? 1 : 2; // booked, whatever happens to the faces
        Contract(pair);
    } while (nRemoved < nFaceGoal);
    FindRoots();
}

void PairContraction::Contract(PairRecord& pair)
{
    const std::int32_t u = pair.vertexA;
    const std::int32_t v = pair.vertexB;
    m_IsOnRim[Index(u)] |= m_IsOnRim[Index(v)];
    GetVertex(u).position = GetVertex(v).position = pair.position;
    m_Parents[Index(v)] = u;

    ++m_nContractions;
    TakeOwnPairs(u, pair);
    if (u != v)
    {
        TakePairsOf(v, u);
    }
    StoreTakenPairs(u, v);
    GetVertex(u).quadric += GetVertex(v).quadric;
    UpdateTakenPairs(u);
}

void PairContraction::TakeOwnPairs(std::int32_t nVertex, const PairRecord& contracted)
{
    m_Taken.clear();
    const PairList& list = GetVertex(nVertex).pairs;
    std::int32_t* const pEntries = m_Lists.GetEntries(list);
    pEntries[contracted.nPlaceAtA] = PairLists::kHole;
    for (std::int32_t i = 0; i < list.nEntries; ++i)
    {
        if (const std::int32_t nPair = pEntries[i]; nPair != PairLists::kHole)
        {
            m_LastNeighbourOf[Index(GetPair(nPair).GetFarEnd(nVertex))] = m_nContractions;
            m_Taken.push_back(nPair);
        }
    }
}

/// Of two pairs with the same ends the older one of the vertex that stays survives.
void PairContraction::TakePairsOf(std::int32_t nGone, std::int32_t nVertex)
{
    const PairList& list = GetVertex(nGone).pairs;
    const std::int32_t* const pEntries = m_Lists.GetEntries(list);
    for (std::int32_t i = 0; i < list.nEntries; ++i)
    {
        const std::int32_t nPair = pEntries[i];
        if (nPair == PairLists::kHole)
        {
            continue;
        }
        PairRecord& pair = GetPair(nPair);
        if (pair.vertexA == nVertex || pair.vertexB == nVertex)
        {
            continue; // the contracted one, or a second entry of a pair of the vertex with itself
        }
        pair.vertexA = pair.vertexA == nGone ? nVertex : pair.vertexA;
        pair.vertexB = pair.vertexB == nGone ? nVertex : pair.vertexB;
        const std::int32_t nFarEnd = pair.GetFarEnd(nVertex);
        const bool isRepeated =
            nFarEnd == nVertex ? !m_Taken.empty() : m_LastNeighbourOf[Index(nFarEnd)] == m_nContractions;
        if (isRepeated)
        {
            DropPair(pair, nFarEnd, nVertex);
            continue;
        }
        m_LastNeighbourOf[Index(nFarEnd)] = m_nContractions;
        m_Taken.push_back(nPair);
    }
}

void PairContraction::DropPair(PairRecord& pair, std::int32_t nFarEnd, std::int32_t nVertex)
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
    for (std::int32_t i = nTaken - 1; i >= 0; --i) // so that of two entries of one pair the first is noted
    {
        const std::int32_t nPair = m_Taken[Index(i)];
        pEntries[i] = nPair;
        PairRecord& pair = GetPair(nPair);
        (pair.vertexA == nVertex ? pair.nPlaceAtA : pair.nPlaceAtB) = i;
    }
}

void PairContraction::UpdateTakenPairs(std::int32_t nVertex)
{
    for (const std::int32_t nPair : m_Taken)
    {
        PairRecord& pair = GetPair(nPair);
        const Target target = FindTarget(nVertex, pair.GetFarEnd(nVertex));
        pair.position = target.position;
        m_Heap->Update(&pair, -target.cost);
    }
}

void PairContraction::FindRoots()
{
    for (std::int32_t& parent : m_Parents)
    {
        while (m_Parents[Index(parent)] != parent)
        {
            parent = m_Parents[Index(parent)];
        }
    }
}
}
