#include "IARefineMeshCommand.h"
#include "ACTEuler.h"
#include "Console.h"
#include "CycleGuard.h"
#include "ErrorLine.h"
#include "Failure.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Platform.h"
#include "VertexWalk.h"
#include "ZeroEdgeRemoval.h"
#include <algorithm>
#include <cmath>
#include <span>
#include <string>

namespace tessarine
{
namespace
{
constexpr double kNeverSwap = -10000.0;
constexpr std::uint64_t kMostSwapsAnEdge = 100;

bool Swaps(int nMode)
{
    return nMode == 1 || nMode == 3;
}

const smVec3d& GetStartOf(const DSHalfEdge* h)
{
    return h->GetVertex()->GetPosition();
}

DSFace& GetFaceAt(const DSHalfEdge* h)
{
    ASSERT(h != nullptr && h->GetLoop() != nullptr && h->GetLoop()->GetFace() != nullptr);
    return *h->GetLoop()->GetFace();
}

const smVec3d& GetNormalAcross(const DSHalfEdge* h)
{
    return GetFaceAt(h->GetTwin()).GetNormal();
}

double AngleBetween(const smVec3d& a, const smVec3d& b)
{
    return std::acos(std::clamp(a.Dot(b), -1.0, 1.0));
}

/// Of the triangle that a swap would give, seen from the end of the edge that is its first corner.
smVec3d UnitNormal(const smVec3d& end, const smVec3d& p, const smVec3d& q)
{
    smVec3d normal = (p - end).Cross(q - end);
    if (!(normal.Length() > smVec3d_zero))
    {
        throw Failure(
            "swapping an edge at (" + std::to_string(end.x) + ", " + std::to_string(end.y) + ", " +
            std::to_string(end.z) +
            ") would give a triangle without area, as its end there and the two corners beside it lie on "
            "one line or in one place: move one of them a little, or take out doubled triangles, and try "
            "again");
    }
    normal.Normalize();
    return normal;
}

bool IsBetweenTwoFaces(const DSHalfEdge* h)
{
    const DSEdge* pEdge = h->GetEdge();
    if (pEdge == nullptr || pEdge->IsRepeated() || pEdge->GetHalfEdge2() == nullptr)
    {
        return false;
    }
    const DSHalfEdge* pMate = h->GetTwin();
    return pMate != nullptr && pMate->GetVertex() == h->GetNext()->GetVertex() &&
           h->GetVertex() == pMate->GetNext()->GetVertex();
}

void DemandClosedMesh(const DSSolid& solid)
{
    std::size_t others = 0;
    for (const DSFace* pFace : solid.GetFaceList())
    {
        ASSERT(pFace != nullptr && !pFace->GetLoopList().empty());
        CycleGuard guard;
        const DSHalfEdge* h = pFace->GetLoopList()[0]->GetHalfEdge();
        do
        {
            guard.Visit(h);
            others += IsBetweenTwoFaces(h) ? 0 : 1;
            h = h->GetNext();
        } while (h != pFace->GetLoopList()[0]->GetHalfEdge());
    }
    if (others != 0)
    {
        throw Failure("optimisation swaps edges between two faces, and the model has " +
                      std::to_string(others) +
                      " sides of faces without just one other face that runs against them (holes, faces "
                      "turned over, more than two faces at an edge): mend these and import again");
    }
}

void DemandFinitePositions(const DSSolid& solid)
{
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        ASSERT(pVertex != nullptr);
        const smVec3d& p = pVertex->GetPosition();
        if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z))
        {
            throw Failure(
                "a vertex stands at a position that is not a finite number, where no edge can be measured: "
                "mend it in the file and import again");
        }
    }
}
}

void IARefineMeshCommand::Execute()
{
    ASSERT(m_pElementManager != nullptr);
    ASSERT(m_pSceneManager != nullptr);
    m_pSolid = m_pSceneManager->GetCurrentSolid();
    if (m_pSolid == nullptr)
    {
        throw Failure("optimisation needs a model: import one first");
    }
    if (Swaps(m_nMode))
    {
        SwapByPriority();
    }
    else if (m_nMode == 2)
    {
        ZeroEdgeRemoval(m_pElementManager, *m_pSolid).Run();
    }
    else
    {
        PrintErrorLine(
            "optimisation knows the modes 1 and 3, which swap edges, and 2, which removes edges without "
            "length; mode " +
            std::to_string(m_nMode) + " computes normals alone");
    }
    m_pSolid->CalcNormals();
}

double IARefineMeshCommand::EdgeSwapGain(DSEdge* pEdge)
{
    if (!Swaps(m_nMode))
    {
        return 0.0;
    }
    ASSERT(pEdge != nullptr && pEdge->GetHalfEdge1() != nullptr && pEdge->GetHalfEdge2() != nullptr);
    const DSHalfEdge* h1 = pEdge->GetHalfEdge1();
    const DSHalfEdge* h2 = pEdge->GetHalfEdge2();
    if (GetValence(*h1->GetVertex()) <= 3 || GetValence(*h2->GetVertex()) <= 3)
    {
        return kNeverSwap;
    }
    const smVec3d& a = GetStartOf(h1);
    const smVec3d& b = GetStartOf(h2);
    const smVec3d& c = GetStartOf(h1->GetPrev());
    const smVec3d& d = GetStartOf(h2->GetPrev());
    const smVec3d n1 = GetFaceAt(h1).CalcNormal();
    const smVec3d n2 = GetFaceAt(h2).CalcNormal();
    const smVec3d m1 = UnitNormal(a, d, c);
    const smVec3d m2 = UnitNormal(b, c, d);
    const double ac = (a - c).Length();
    const double ad = (a - d).Length();
    const double bc = (b - c).Length();
    const double bd = (b - d).Length();
    const smVec3d& acrossAC = GetNormalAcross(h1->GetPrev());
    const smVec3d& acrossBC = GetNormalAcross(h1->GetNext());
    const smVec3d& acrossBD = GetNormalAcross(h2->GetPrev());
    const smVec3d& acrossAD = GetNormalAcross(h2->GetNext());
    const double now = AngleBetween(n1, n2) * (a - b).Length() + AngleBetween(n1, acrossAC) * ac +
                       AngleBetween(n2, acrossAD) * ad + AngleBetween(n1, acrossBC) * bc +
                       AngleBetween(n2, acrossBD) * bd;
    const double after = AngleBetween(m1, m2) * (c - d).Length() + AngleBetween(m1, acrossAC) * ac +
                         AngleBetween(m1, acrossAD) * ad + AngleBetween(m2, acrossBC) * bc +
                         AngleBetween(m2, acrossBD) * bd;
    const double gain = now - after;
    if (std::isnan(gain))
    {
        throw Failure(
            "the model is too large for its edges to be measured: scale it to smaller coordinates and "
            "import again");
    }
    return gain;
}

int IARefineMeshCommand::GetValence(DSVertex& vertex)
{
    return m_Valences ? m_Valences->GetValence(vertex) : vertex.GetValence();
}

void IARefineMeshCommand::SwapByPriority()
{
    DemandClosedMesh(*m_pSolid);
    DemandFinitePositions(*m_pSolid);
    m_Valences.emplace(*m_pSolid);
    InitializeEdgeStack();
    std::uint64_t nSwapsLeft = kMostSwapsAnEdge * m_EdgeStack.GetSize();
    while (!m_EdgeStack.IsEmpty() && IsWorthASwap(m_EdgeStack.GetTopGain()))
    {
        if (nSwapsLeft-- == 0)
        {
            DebugConsole() << "Swaps stopped at 100 times the number of edges: " << m_EdgeStack.GetSize()
                           << '\n';
            break;
        }
        DSEdge* pEdge = m_pElementManager->GetEdge(m_EdgeStack.GetTopEdge());
        ASSERT(pEdge != nullptr);
        UpdateEdgeStack(CollectEdges(SwapEdge(pEdge)));
    }
    m_EdgeStack.Clear();
    m_Valences.reset();
}

void IARefineMeshCommand::InitializeEdgeStack()
{
    m_EdgeStack.Clear();
    for (DSEdge* pEdge : m_pSolid->GetEdgeList())
    {
        if (pEdge != nullptr)
        {
            m_EdgeStack.Enter(static_cast<float>(EdgeSwapGain(pEdge)), pEdge->GetID());
        }
    }
}

DSEdge* IARefineMeshCommand::SwapEdge(DSEdge* pEdge)
{
    ASSERT(pEdge != nullptr && pEdge->GetHalfEdge1() != nullptr && pEdge->GetHalfEdge2() != nullptr);
    DSHalfEdge* h1 = pEdge->GetHalfEdge1();
    DSHalfEdge* h2 = pEdge->GetHalfEdge2();
    const DSFace& face = GetFaceAt(h1);
    DSSolid* pSolid = face.GetSolid();
    const std::uint32_t a = h1->GetPrev()->GetVertex()->GetID();
    const std::uint32_t b = h2->GetPrev()->GetVertex()->GetID();
    ASSERT(a != b);
    NoteSwap(*pEdge, -1);
    ACTEuler euler(m_pElementManager);
    euler.LKEF(pSolid, h1, h2);
    std::uint32_t nNewFaceID = 0;
    euler.MEF(pSolid->GetID(), face.GetID(), nNewFaceID, a, b);
    DSEdge* pNew = pSolid->GetEdgeList().back();
    NoteSwap(*pNew, 1);
    return pNew;
}

void IARefineMeshCommand::NoteSwap(const DSEdge& edge, int nChange)
{
    if (m_Valences)
    {
        m_Valences->Note(*edge.GetHalfEdge1()->GetVertex(), nChange);
        m_Valences->Note(*edge.GetHalfEdge2()->GetVertex(), nChange);
    }
}

IARefineMeshCommand::EdgeIDs IARefineMeshCommand::CollectEdges(const DSEdge* pEdge)
{
    ASSERT(pEdge != nullptr && pEdge->GetHalfEdge1() != nullptr && pEdge->GetHalfEdge2() != nullptr);
    const DSHalfEdge* h1 = pEdge->GetHalfEdge1();
    const DSHalfEdge* h2 = pEdge->GetHalfEdge2();
    const std::array<const DSHalfEdge*, 4> sides{h1->GetNext(), h1->GetPrev(), h2->GetNext(), h2->GetPrev()};
    EdgeIDs edges{pEdge->GetID()};
    std::size_t count = 1;
    for (const DSHalfEdge* pSide : sides)
    {
        edges[count++] = pSide->GetEdge()->GetID();
    }
    for (const DSHalfEdge* pSide : sides)
    {
        const DSHalfEdge* pMate = pSide->GetTwin();
        ASSERT(pMate != nullptr);
        edges[count++] = pMate->GetNext()->GetEdge()->GetID();
        edges[count++] = pMate->GetPrev()->GetEdge()->GetID();
    }
    return edges;
}

/// The first entry goes, the first edge of the list is new, and the others are measured and entered anew, in the order
/// in which they stand.
void IARefineMeshCommand::UpdateEdgeStack(const EdgeIDs& edges)
{
    m_EdgeStack.Erase(m_EdgeStack.GetTopEdge());
    Enter(m_pElementManager->GetEdge(edges[0]));

    EdgeIDs others{};
    std::size_t count = 0;
    for (const std::uint32_t id : std::span(edges).subspan(1))
    {
        const auto end = others.begin() + static_cast<std::ptrdiff_t>(count);
        if (id != edges[0] && std::find(others.begin(), end, id) == end)
        {
            others[count++] = id;
        }
    }
    const std::span<std::uint32_t> inOrder(others.data(), count);
    std::sort(inOrder.begin(), inOrder.end(),
              [this](std::uint32_t first, std::uint32_t second)
              { return m_EdgeStack.IsBefore(first, second); });
    for (const std::uint32_t id : inOrder)
    {
        m_EdgeStack.Erase(id);
        Enter(m_pElementManager->GetEdge(id));
    }
}

void IARefineMeshCommand::Enter(DSEdge* pEdge)
{
    m_EdgeStack.Enter(EdgeSwapGain(pEdge), pEdge->GetID());
}

bool IARefineMeshCommand::CheckGenus()
{
    constexpr double kPi = 3.1415926535;
    constexpr double kGenus = 2.0;
    constexpr double kTolerance = 1e-6;
    ASSERT(m_pSceneManager != nullptr);
    DSSolid* pSolid = m_pSceneManager->GetCurrentSolid();
    ASSERT(pSolid != nullptr);
    const auto towards = [](const DSHalfEdge* from, const DSHalfEdge* to)
    {
        smVec3d way = GetStartOf(to) - GetStartOf(from);
        way.Normalize();
        return way;
    };
    double sum = 0.0;
    for (const DSVertex* pVertex : pSolid->GetVertexList())
    {
        ASSERT(pVertex != nullptr && pVertex->GetHalfEdge() != nullptr);
        for (VertexWalk walk(pVertex->GetHalfEdge()); !walk.IsAtEnd(); walk.Step())
        {
            const DSHalfEdge* h = walk.Get();
            sum += AngleBetween(towards(h, h->GetNext()), towards(h, h->GetPrev()));
        }
    }
    ShowMessage(std::to_string(sum));
    const double defect = 2.0 * kPi * static_cast<double>(pSolid->GetVertexList().size()) - sum;
    return std::abs(2.0 * kPi * kGenus - defect) <= kTolerance;
}
}
