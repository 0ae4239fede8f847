#include "EdgeSwaps.h"
#include "ACTEuler.h"
#include "Angles.h"
#include "Console.h"
#include "EdgeQuad.h"
#include "Failure.h"
#include "MANBrepElementManager.h"
#include <algorithm>
#include <cmath>
#include <span>

namespace tessarine
{
namespace
{
constexpr double kNeverSwap = -10000.0;

/// Ends the runs whose swaps go on and on.
class SwapAllowance
{
public:
    explicit SwapAllowance(std::size_t nEdges) : m_nEdges(nEdges), m_nLeft(kMostSwapsAnEdge * nEdges) {}

    /// @return false, and says so, when there is none left
    bool Take()
    {
        if (m_nLeft-- != 0)
        {
            return true;
        }
        DebugConsole() << "Swaps stopped at 100 times the number of edges: " << m_nEdges << '\n';
        return false;
    }

private:
    static constexpr std::uint64_t kMostSwapsAnEdge = 100;

    std::size_t m_nEdges;
    std::uint64_t m_nLeft;
};

/// @param end the end of the edge at which the new triangle stands
smVec3d ToUnitNormal(smVec3d normal, const smVec3d& end)
{
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

bool HasTwoSides(const DSEdge* pEdge)
{
    return pEdge != nullptr && pEdge->GetHalfEdge1() != nullptr && pEdge->GetHalfEdge2() != nullptr;
}
}

double EdgeSwaps::GetGain(DSEdge* pEdge)
{
    ASSERT(HasTwoSides(pEdge));
    const DSHalfEdge& h1 = *pEdge->GetHalfEdge1();
    const DSHalfEdge& h2 = *pEdge->GetHalfEdge2();
    if (GetValence(*h1.GetVertex()) <= 3 || GetValence(*h2.GetVertex()) <= 3)
    {
        return kNeverSwap;
    }
    const EdgeQuad quad(h1, h2);
    const smVec3d m1 = ToUnitNormal(quad.newNormal1, quad.a);
    const smVec3d m2 = ToUnitNormal(quad.newNormal2, quad.b);
    const double ac = (quad.a - quad.c).Length();
    const double ad = (quad.a - quad.d).Length();
    const double bc = (quad.b - quad.c).Length();
    const double bd = (quad.b - quad.d).Length();
    const smVec3d& acrossAC = GetFaceAt(quad.beyondAC).GetNormal();
    const smVec3d& acrossBC = GetFaceAt(quad.beyondBC).GetNormal();
    const smVec3d& acrossBD = GetFaceAt(quad.beyondBD).GetNormal();
    const smVec3d& acrossAD = GetFaceAt(quad.beyondAD).GetNormal();
    const double now = AngleBetween(quad.normal1, quad.normal2) * (quad.a - quad.b).Length() +
                       AngleBetween(quad.normal1, acrossAC) * ac + AngleBetween(quad.normal2, acrossAD) * ad +
                       AngleBetween(quad.normal1, acrossBC) * bc + AngleBetween(quad.normal2, acrossBD) * bd;
    const double after = AngleBetween(m1, m2) * (quad.c - quad.d).Length() + AngleBetween(m1, acrossAC) * ac +
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

int EdgeSwaps::GetValence(DSVertex& vertex)
{
    return m_Valences ? m_Valences->GetValence(vertex) : vertex.GetValence();
}

DSEdge* EdgeSwaps::Swap(DSEdge* pEdge)
{
    ASSERT(HasTwoSides(pEdge));
    DSHalfEdge* h1 = pEdge->GetHalfEdge1();
    DSHalfEdge* h2 = pEdge->GetHalfEdge2();
    const DSFace& face = GetFaceAt(h1);
    DSSolid* pSolid = face.GetSolid();
    const std::uint32_t a = h1->GetPrev()->GetVertex()->GetID();
    const std::uint32_t b = h2->GetPrev()->GetVertex()->GetID();
    ASSERT(a != b);
    NoteSwap(*pEdge, -1);
    ACTEuler euler(m_pManager);
    euler.LKEF(pSolid, h1, h2);
    std::uint32_t nNewFaceID = 0;
    euler.MEF(pSolid->GetID(), face.GetID(), nNewFaceID, a, b);
    DSEdge* pNew = pSolid->GetEdgeList().back();
    NoteSwap(*pNew, 1);
    return pNew;
}

void EdgeSwaps::NoteSwap(const DSEdge& edge, int nChange)
{
    if (m_Valences)
    {
        m_Valences->Note(*edge.GetHalfEdge1()->GetVertex(), nChange);
        m_Valences->Note(*edge.GetHalfEdge2()->GetVertex(), nChange);
    }
}

EdgeSwaps::EdgeIDs EdgeSwaps::CollectEdges(const DSEdge* pEdge)
{
    ASSERT(HasTwoSides(pEdge));
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

void EdgeSwaps::SwapByPriority(DSSolid& solid, const SwapVariant& variant)
{
    m_Valences.emplace(solid);
    FillStack(solid, variant);
    SwapAllowance allowance(m_Stack.GetSize());
    while (!m_Stack.IsEmpty() && IsWorthASwap(m_Stack.GetTopGain(), variant) && allowance.Take())
    {
        DSEdge* pEdge = m_pManager->GetEdge(m_Stack.GetTopEdge());
        ASSERT(pEdge != nullptr);
        UpdateStack(CollectEdges(Swap(pEdge)), variant);
        if (variant.tells)
        {
            DebugConsole() << "The current max value: " << m_Stack.GetTopGain() << '\n';
        }
    }
    m_Stack.Clear();
    m_Valences.reset();
}

void EdgeSwaps::FillStack(const DSSolid& solid, const SwapVariant& variant)
{
    m_Stack.Clear();
    for (DSEdge* pEdge : solid.GetEdgeList())
    {
        if (pEdge != nullptr)
        {
            m_Stack.Enter(static_cast<float>(GetGain(pEdge)), pEdge->GetID());
        }
    }
    if (variant.tells)
    {
        DebugConsole() << "After initializeEdgeStack..." << '\n'
                       << "Size of edge stack: " << m_Stack.GetSize() << '\n';
    }
}

/// The first entry goes, the first edge of the list is new, and the listed are measured and entered anew, in the order
/// in which they stand.
void EdgeSwaps::UpdateStack(const EdgeIDs& edges, const SwapVariant& variant)
{
    if (variant.tells)
    {
        for (const std::uint32_t id : edges)
        {
            DebugConsole() << "Edges for update: " << id << '\n';
        }
    }
    m_Stack.Erase(m_Stack.GetTopEdge());
    Enter(edges[0]);

    EdgeIDs listed{};
    std::size_t count = 0;
    for (const std::uint32_t id : edges)
    {
        const auto end = listed.begin() + static_cast<std::ptrdiff_t>(count);
        if ((id != edges[0] || variant.listsTheNewEdge) && std::find(listed.begin(), end, id) == end)
        {
            listed[count++] = id;
        }
    }
    const std::span<std::uint32_t> inOrder(listed.data(), count);
    std::sort(inOrder.begin(), inOrder.end(),
              [this](std::uint32_t first, std::uint32_t second) { return m_Stack.IsBefore(first, second); });
    for (const std::uint32_t id : inOrder)
    {
        m_Stack.Erase(id);
        Enter(id);
    }
    if (variant.tells)
    {
        DebugConsole() << "The size of edge stack (after update): " << m_Stack.GetSize() << '\n';
    }
}

void EdgeSwaps::Enter(std::uint32_t edgeID)
{
    DSEdge* pEdge = m_pManager->GetEdge(edgeID);
    ASSERT(pEdge != nullptr);
    m_Stack.Enter(GetGain(pEdge), edgeID);
}

std::size_t EdgeSwaps::SwapWhere(DSSolid& solid, const Test& isWorthASwap)
{
    const ElementList<DSEdge>& edges = solid.GetEdgeList();
    SwapAllowance allowance(edges.size());
    std::size_t swaps = 0;
    for (std::size_t i = 0; i < edges.size();)
    {
        DebugConsole() << "Current edge number: " << i << '\n';
        DSEdge* pEdge = edges[i];
        if (pEdge == nullptr || !isWorthASwap(*pEdge->GetHalfEdge1(), *pEdge->GetHalfEdge2()))
        {
            ++i;
            continue;
        }
        if (!allowance.Take())
        {
            break;
        }
        Swap(pEdge); // another edge moves up into this place
        ++swaps;
    }
    return swaps;
}
}
