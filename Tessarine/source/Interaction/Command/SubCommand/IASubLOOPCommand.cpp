#include "IASubLOOPCommand.h"
#include "ACTEuler.h"
#include "Assert.h"
#include "Console.h"
#include "CrowdedFans.h"
#include "CycleGuard.h"
#include "Failure.h"
#include "MANBrepElementManager.h"
#include <cmath>
#include <string>

namespace tessarine
{
namespace
{
const smVec3d& GetStart(const DSHalfEdge* h)
{
    return h->GetVertex()->GetPosition();
}
const smVec3d& GetEnd(const DSHalfEdge* h)
{
    return GetStart(h->GetNext());
}

void DemandFinite(const smVec3d& position)
{
    if (!std::isfinite(position.x) || !std::isfinite(position.y) || !std::isfinite(position.z))
    {
        throw Failure("Loop subdivision would move a vertex to a position that is not a finite number: "
                      "scale the model to smaller coordinates and try again");
    }
}

/// How far all walks around vertices may lead away from them, taken together. Where many faces run the same
/// way along their edges, each walk can visit most of the mesh.
class WanderingLimit
{
public:
    explicit WanderingLimit(std::size_t edges) : m_nLeft(kStepsOfASmallSolid + 8 * edges) {}

    void Count(const DSHalfEdge* h, const DSVertex& vertex)
    {
        if (h->GetVertex() != &vertex && m_nLeft-- == 0)
        {
            throw Failure("too many faces run against their neighbours for Loop subdivision: turn the faces "
                          "of the model the same way round and try again");
        }
    }

private:
    static constexpr std::uint64_t kStepsOfASmallSolid = 1'000'000;

    std::uint64_t m_nLeft;
};

/// The work of one run.
class LoopStep
{
public:
    LoopStep(MANBrepElementManager* pManager, DSSolid& solid)
        : m_Euler(pManager), m_Solid(solid), m_Limit(solid.GetEdgeList().size())
    {
    }

    void FindVertexPositions();
    void SplitEdges();
    void MoveVertices();
    void CutCorners();

private:
    smVec3d FindVertexPosition(const DSVertex& vertex);
    smVec3d FindOpenVertexPosition(const DSVertex& vertex, int nTurns);
    void NoteTurns(const DSVertex& vertex, int nTurns);
    void SplitEdge(const DSEdge& edge);
    void CutLoop(const DSLoop& loop);
    std::size_t CutLongLoop();

    /// A walk around a vertex that is longer than this is not repeated for each of its edges.
    static constexpr int kCrowdedTurns = 32;
    /// A loop with more corners than this is not handed on from face to face.
    static constexpr std::size_t kManyCorners = 32;

    ACTEuler m_Euler;
    DSSolid& m_Solid;
    WanderingLimit m_Limit;
    CrowdedFans m_CrowdedFans;
    std::vector<smVec3d> m_NewPositions; ///< of the old vertices, in list order
    std::vector<DSHalfEdge*> m_Corners;  ///< of one loop, in the order of the cuts
};

void LoopStep::FindVertexPositions()
{
    m_NewPositions.reserve(m_Solid.GetVertexList().size());
    for (const DSVertex* pVertex : m_Solid.GetVertexList())
    {
        ASSERT(pVertex != nullptr);
        m_NewPositions.push_back(FindVertexPosition(*pVertex));
        DemandFinite(m_NewPositions.back());
    }
}

smVec3d LoopStep::FindVertexPosition(const DSVertex& vertex)
{
    const DSHalfEdge* pStart = vertex.GetHalfEdge();
    if (pStart == nullptr)
    {
        throw Failure("vertex " + std::to_string(vertex.GetID()) +
                      " belongs to no face, and Loop subdivision "
                      "cannot place it: remove such vertices from the model and import it again");
    }
    smVec3d sum;
    int n = 0;
    CycleGuard guard;
    const DSHalfEdge* h = pStart;
    do
    {
        const DSHalfEdge* pTwin = h->GetTwin();
        if (pTwin == nullptr)
        {
            return FindOpenVertexPosition(vertex, n);
        }
        guard.Visit(h);
        m_Limit.Count(h, vertex);
        ++n;
        sum += GetEnd(h);
        h = pTwin->GetNext();
    } while (h != pStart);
    NoteTurns(vertex, n);
    const smVec3d& p = vertex.GetPosition();
    return n <= 3 ? (1.0 - 3.0 * n / 16.0) * p + 3.0 * sum / 16.0 : 5.0 * p / 8.0 + 3.0 * sum / (8.0 * n);
}

/// The mean of the two neighbours on the rim pulls with a quarter.
smVec3d LoopStep::FindOpenVertexPosition(const DSVertex& vertex, int nTurns)
{
    const DSHalfEdge* h = vertex.GetHalfEdge();
    while (const DSHalfEdge* pTwin = h->GetTwin())
    {
        h = pTwin->GetNext();
    }
    const smVec3d& a = GetEnd(h);
    CycleGuard guard;
    while (const DSHalfEdge* pTwin = h->GetPrev()->GetTwin())
    {
        guard.Visit(h);
        ++nTurns;
        h = pTwin;
        m_Limit.Count(h, vertex);
    }
    const smVec3d& b = GetStart(h->GetPrev());
    DebugConsole() << "boudary!\n";
    NoteTurns(vertex, nTurns);
    return 3.0 * vertex.GetPosition() / 4.0 + (a + b) / 8.0;
}

void LoopStep::NoteTurns(const DSVertex& vertex, int nTurns)
{
    if (nTurns > kCrowdedTurns)
    {
        m_CrowdedFans.Add(vertex);
    }
}

void LoopStep::SplitEdges()
{
    auto& edges = m_Solid.GetEdgeList();
    const std::size_t count = edges.size();
    m_Solid.GetVertexList().reserve(m_Solid.GetVertexList().size() + count);
    // The cuts to come make a face and an edge at each corner.
    m_Solid.GetFaceList().reserve(m_Solid.GetFaceList().size() + 2 * count);
    edges.reserve(4 * count);
    for (std::size_t i = 0; i < count; ++i)
    {
        const DSEdge* pEdge = edges[i];
        ASSERT(pEdge != nullptr);
        SplitEdge(*pEdge);
    }
}

/// Kept: the corners opposite to the edge are read as they stand, and an edge split before has put its new
/// vertex there.
smVec3d FindEdgePosition(const DSHalfEdge* h1, const DSHalfEdge* h2)
{
    const smVec3d& a = GetStart(h1);
    const smVec3d& b = GetEnd(h1);
    if (h2 == nullptr)
    {
        DebugConsole() << "boudary!\n";
        return (a + b) / 2.0;
    }
    const smVec3d& c = GetStart(h2->GetPrev());
    const smVec3d& d = GetStart(h1->GetPrev());
    return (3.0 * (a + b) + (c + d)) / 8.0;
}

void LoopStep::SplitEdge(const DSEdge& edge)
{
    const DSHalfEdge* pHalfEdge1 = edge.GetHalfEdge1();
    ASSERT(pHalfEdge1 != nullptr);
    const smVec3d position = FindEdgePosition(pHalfEdge1, edge.GetHalfEdge2());
    DemandFinite(position);

    const DSFace* pFace = pHalfEdge1->GetLoop()->GetFace();
    ASSERT(pFace != nullptr);
    const std::uint32_t v1 = pHalfEdge1->GetVertex()->GetID();
    const std::uint32_t v2 = pHalfEdge1->GetNext()->GetVertex()->GetID();
    std::uint32_t nVertexID = 0;
    if (const DSEdge* pFound = m_CrowdedFans.FindEdge(v1, v2))
    {
        m_Euler.SEMV(m_Solid.GetID(), pFace->GetID(), pFound, nVertexID, position);
    }
    else
    {
        m_Euler.SEMV(m_Solid.GetID(), pFace->GetID(), v1, v2, nVertexID, position);
    }
}

void LoopStep::MoveVertices()
{
    auto vertex = m_Solid.GetVertexList().begin();
    for (const smVec3d& position : m_NewPositions)
    {
        (*vertex)->GetPosition() = position;
        ++vertex;
    }
}

void LoopStep::CutCorners()
{
    auto& faces = m_Solid.GetFaceList();
    const std::size_t count = faces.size();
    for (std::size_t i = 0; i < count; ++i)
    {
        const DSFace* pFace = faces[i];
        ASSERT(pFace != nullptr);
        for (const DSLoop* pLoop : pFace->GetLoopList())
        {
            CutLoop(*pLoop);
        }
    }
}

void LoopStep::CutLoop(const DSLoop& loop)
{
    DSHalfEdge* pFirst = loop.GetHalfEdge();
    m_Corners.clear();
    DSHalfEdge* pCorner = pFirst;
    do
    {
        m_Corners.push_back(pCorner);
        pCorner = pCorner->GetNext()->GetNext();
    } while (pCorner != pFirst);

    std::uint32_t nFaceID = 0;
    for (std::size_t i = m_Corners.size() > kManyCorners ? CutLongLoop() : 0; i < m_Corners.size(); ++i)
    {
        m_Euler.LMEF(&m_Solid, m_Corners[i]->GetNext(), m_Corners[i]->GetPrev(), nFaceID);
    }
}

/// Cuts once round the loop, which is all there is to cut where each of its edges has been split.
/// @return how many corners are cut
std::size_t LoopStep::CutLongLoop()
{
    std::size_t length = 0;
    const DSHalfEdge* h = m_Corners.front();
    do
    {
        ++length;
        h = h->GetNext();
    } while (h != m_Corners.front());
    const auto onceRound = static_cast<std::ptrdiff_t>(length / 2);
    m_Euler.LMEFCorners(&m_Solid, {m_Corners.begin(), m_Corners.begin() + onceRound});
    return length / 2;
}
}

void IASubLOOPCommand::Execute()
{
    DSSolid* pSolid = GetCurrentSolid();
    if (pSolid == nullptr)
    {
        return;
    }
    KeepHiddenSnapshot(*pSolid);
    LoopStep step(GetElementManager(), *pSolid);
    step.FindVertexPositions();
    step.SplitEdges();
    step.MoveVertices();
    step.CutCorners();
    pSolid->CalcNormals();
}
}
