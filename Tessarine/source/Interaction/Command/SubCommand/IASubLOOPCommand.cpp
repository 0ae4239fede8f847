#include "IASubLOOPCommand.h"
#include "ACTEuler.h"
#include "Assert.h"
#include "Console.h"
#include "CrowdedFans.h"
#include "CycleGuard.h"
#include "Failure.h"
#include "FanCensus.h"
#include "MANBrepElementManager.h"
#include "NormalSums.h"
#include "WanderingLimit.h"
#include <cmath>

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

/// The work of one run.
class LoopStep
{
public:
    LoopStep(MANBrepElementManager* pManager, DSSolid& solid)
        : m_pManager(pManager),
          m_Euler(pManager),
          m_Solid(solid),
          m_Limit(WanderingLimit::OfEdges(solid.GetEdgeList().size())),
          m_Census(solid)
    {
    }

    void MakeRoom();
    void FindVertexPositions();
    void SplitEdges();
    void MoveVertices();
    void CutCorners();
    void FinishNormals();

private:
    smVec3d FindVertexPosition(const DSVertex& vertex);
    smVec3d FindOpenVertexPosition(const DSVertex& vertex, int nTurns);
    void NoteTurns(const DSVertex& vertex, int nTurns);
    void DemandNear(const DSHalfEdge& halfEdge, const DSVertex& vertex);
    void SplitEdge(const DSEdge& edge);
    const DSEdge& FindEdgeToSplit(const DSEdge& edge);
    bool IsPlain(const DSEdge& edge) const;
    void CutFace(const DSFace& face);
    void CutLoop(const DSLoop& loop);
    void NoteRing(const DSLoop& loop);
    void SumFinishedNormals();
    std::size_t CutLongLoop();

    /// A walk around a vertex that is longer than this is not repeated for each of its edges.
    static constexpr int kCrowdedTurns = 32;
    /// A loop with more corners than this is not handed on from face to face.
    static constexpr std::size_t kManyCorners = 32;

    MANBrepElementManager* m_pManager;
    ACTEuler m_Euler;
    DSSolid& m_Solid;
    WanderingLimit m_Limit;
    FanCensus m_Census;
    CrowdedFans m_CrowdedFans;
    std::vector<smVec3d> m_NewPositions;       ///< of the old vertices, in list order
    std::vector<DSVertex*> m_OtherVertices;    ///< those without a plain fan, in list order
    std::vector<DSHalfEdge*> m_Corners;        ///< of one loop, in the order of the cuts
    std::vector<DSVertex*> m_Rings;            ///< of one face, in the order of its loops before the cuts
    NormalSums m_Sums{WanderingLimit::None()}; ///< around plain fans, where no walk strays
};

/// A split makes an edge, a vertex and two half-edges; the cut of a corner, of which two lie along an edge, a
/// face with its loop, an edge and two half-edges.
void LoopStep::MakeRoom()
{
    const std::size_t edges = m_Solid.GetEdgeList().size();
    m_pManager->ReserveMore({.vertices = edges,
                             .halfEdges = 6 * edges,
                             .edges = 3 * edges,
                             .loops = 2 * edges,
                             .faces = 2 * edges});
    m_Solid.GetVertexList().reserve(m_Solid.GetVertexList().size() + edges);
    m_Solid.GetEdgeList().reserve(4 * edges);
    m_Solid.GetFaceList().reserve(m_Solid.GetFaceList().size() + 2 * edges);
}

void LoopStep::FindVertexPositions()
{
    m_NewPositions.reserve(m_Solid.GetVertexList().size());
    for (DSVertex* pVertex : m_Solid.GetVertexList())
    {
        ASSERT(pVertex != nullptr);
        m_NewPositions.push_back(FindVertexPosition(*pVertex));
        DemandFinite(m_NewPositions.back());
        if (!m_Census.IsPlain(*pVertex))
        {
            m_OtherVertices.push_back(pVertex);
        }
    }
}

smVec3d LoopStep::FindVertexPosition(const DSVertex& vertex)
{
    const DSHalfEdge* pStart = vertex.GetHalfEdge();
    if (pStart == nullptr)
    {
        return vertex.GetPosition(); // no face uses it
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
        DemandNear(*h, vertex);
        ++n;
        sum += GetEnd(h);
        h = pTwin->GetNext();
    } while (h != pStart);
    NoteTurns(vertex, n);
    m_Census.Visit(vertex);
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
        DemandNear(*h, vertex);
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

void LoopStep::DemandNear(const DSHalfEdge& halfEdge, const DSVertex& vertex)
{
    if (!m_Limit.Allows(halfEdge, vertex))
    {
        throw Failure(
            "too many faces run against their neighbours for Loop subdivision: turn the faces of the "
            "model the same way round and try again");
    }
}

void LoopStep::SplitEdges()
{
    auto& edges = m_Solid.GetEdgeList();
    const std::size_t count = edges.size();
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

    const DSLoop* pLoop = pHalfEdge1->GetLoop();
    ASSERT(pLoop != nullptr && pLoop->GetFace() != nullptr);
    std::uint32_t nVertexID = 0;
    const bool isPlain = IsPlain(edge);
    m_Euler.SEMV(m_Solid.GetID(), pLoop->GetFace()->GetID(), isPlain ? &edge : &FindEdgeToSplit(edge),
                 nVertexID, position);
    if (isPlain)
    {
        m_Census.NoteSplit(nVertexID);
    }
    else
    {
        m_OtherVertices.push_back(m_Solid.GetVertexList().back());
    }
}

/// Whether the edge is one of a plain fan: then SEMV would find this edge between its two vertices.
bool LoopStep::IsPlain(const DSEdge& edge) const
{
    const DSHalfEdge* h = edge.GetHalfEdge1();
    return h->GetEdge() == &edge && m_Census.IsPlain(*h->GetVertex());
}

/// The edge that SEMV would split between the two vertices. Around a vertex with more than one fan, or with faces
/// that run the same way along an edge, SEMV would find none or the edge of another face, and refuse it: then it
/// is the edge itself.
const DSEdge& LoopStep::FindEdgeToSplit(const DSEdge& edge)
{
    const DSHalfEdge* h = edge.GetHalfEdge1();
    const std::uint32_t v1 = h->GetVertex()->GetID();
    const std::uint32_t v2 = h->GetNext()->GetVertex()->GetID();
    const DSEdge* pFound =
        m_CrowdedFans.Contains(v1) ? m_CrowdedFans.FindEdge(v1, v2) : m_pManager->FindEdge(v1, v2);
    const bool isAccepted =
        pFound != nullptr && pFound->GetHalfEdge1()->GetLoop()->GetFace() == h->GetLoop()->GetFace();
    return isAccepted ? *pFound : edge;
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

/// The normals come with it: nothing changes a face any more that has been cut, nor what is around a vertex when
/// all its faces have been.
void LoopStep::CutCorners()
{
    auto& faces = m_Solid.GetFaceList();
    const std::size_t count = faces.size();
    for (std::size_t i = 0; i < count; ++i)
    {
        DSFace* pFace = faces[i];
        ASSERT(pFace != nullptr);
        const std::size_t firstNew = faces.size();
        CutFace(*pFace);
        pFace->CalcNormal();
        for (std::size_t k = firstNew; k < faces.size(); ++k)
        {
            faces[k]->CalcNormal();
        }
        SumFinishedNormals();
    }
    m_Sums.Finish();
}

void LoopStep::CutFace(const DSFace& face)
{
    m_Rings.clear();
    for (const DSLoop* pLoop : face.GetLoopList())
    {
        NoteRing(*pLoop);
        CutLoop(*pLoop);
    }
}

void LoopStep::NoteRing(const DSLoop& loop)
{
    const DSHalfEdge* h = loop.GetHalfEdge();
    do
    {
        m_Rings.push_back(h->GetVertex());
        h = h->GetNext();
    } while (h != loop.GetHalfEdge());
}

/// While what the walks meet is still at hand.
void LoopStep::SumFinishedNormals()
{
    for (DSVertex* pVertex : m_Rings)
    {
        if (m_Census.NoteCut(*pVertex))
        {
            m_Sums.Add(*pVertex);
        }
    }
}

void LoopStep::FinishNormals()
{
    NormalSums sums(WanderingLimit::OfPatience());
    for (DSVertex* pVertex : m_OtherVertices)
    {
        if (NormalSums::HasFacesAround(pVertex))
        {
            sums.Add(*pVertex);
        }
    }
    sums.Finish();
    sums.SayCutWalks();
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

/// A face of one corner comes into being without an edge. A walk around a vertex that starts there cannot go
/// on; no other walk comes to it.
void RefuseSingleCorners(const DSSolid& solid)
{
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        ASSERT(pVertex != nullptr);
        const DSHalfEdge* h = pVertex->GetHalfEdge();
        if (h != nullptr && h->GetNext() == h && h->GetEdge() == nullptr)
        {
            throw Failure("the model has a face with one corner, which cannot be subdivided: remove it from "
                          "the file and import again");
        }
    }
}
}

void IASubLOOPCommand::Execute()
{
    DSSolid* pSolid = GetCurrentSolid();
    if (pSolid == nullptr)
    {
        return;
    }
    RefuseSingleCorners(*pSolid);
    KeepHiddenSnapshot(*pSolid);
    LoopStep step(GetElementManager(), *pSolid);
    step.MakeRoom();
    step.FindVertexPositions();
    step.SplitEdges();
    step.MoveVertices();
    step.CutCorners();
    step.FinishNormals();
}
}
