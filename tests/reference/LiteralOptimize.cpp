#include "LiteralOptimize.h"
#include "ACTEuler.h"
#include "Console.h"
#include "Failure.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include <algorithm>
#include <cmath>
#include <functional>
#include <list>
#include <map>
#include <string>

namespace tessarine
{
namespace
{
class LiteralOptimize
{
public:
    LiteralOptimize(MANBrepElementManager& elements, DSSolid& solid)
        : m_Elements(elements), m_Euler(&elements), m_Solid(solid)
    {
    }

    void SwapByPriority(std::size_t mostSwaps)
    {
        const auto edges = m_Solid.GetEdgeList().size();
        for (DSEdge* edge : m_Solid.GetEdgeList())
        {
            const auto gain = static_cast<double>(static_cast<float>(GetGain(edge)));
            m_Stack.insert({gain, {gain, edge->GetID()}});
        }
        for (std::size_t swaps = 0;
             swaps < mostSwaps && !m_Stack.empty() && static_cast<float>(m_Stack.begin()->first) > 0.0F;
             ++swaps)
        {
            if (swaps == 100 * edges)
            {
                DebugConsole() << "Swaps stopped at 100 times the number of edges: " << edges << '\n';
                break;
            }
            DSEdge* edge = SwapEdge(m_Elements.GetEdge(m_Stack.begin()->second.edgeID));
            UpdateStack(CollectEdges(edge));
        }
    }

    void RemoveZeroEdges()
    {
        for (std::size_t i = 0; i < m_Solid.GetEdgeList().size(); ++i)
        {
            DSEdge* edge = m_Solid.GetEdgeList()[i];
            if (edge == nullptr || edge->GetHalfEdge1() == nullptr || edge->GetHalfEdge2() == nullptr)
            {
                continue;
            }
            const smVec3d a = edge->GetHalfEdge1()->GetVertex()->GetPosition();
            const smVec3d b = edge->GetHalfEdge2()->GetVertex()->GetPosition();
            if (std::abs(a.x - b.x) < 1e-10 && std::abs(a.y - b.y) < 1e-10 && std::abs(a.z - b.z) < 1e-10)
            {
                CollapseEdge(edge);
            }
        }
    }

private:
    struct Record
    {
        double gain;
        std::uint32_t edgeID;
    };

    static DSFace* FaceOf(const DSHalfEdge* h) { return h->GetLoop()->GetFace(); }
    static std::uint32_t IDOf(const DSHalfEdge* h) { return h->GetVertex()->GetID(); }
    static const smVec3d& PositionOf(const DSHalfEdge* h) { return h->GetVertex()->GetPosition(); }

    static double Angle(const smVec3d& a, const smVec3d& b)
    {
        return std::acos(std::min(1.0, std::max(-1.0, a.Dot(b))));
    }

    static smVec3d Unit(smVec3d v, const smVec3d& end)
    {
        if (!(v.Length() > smVec3d_zero))
        {
            throw Failure(
                "swapping an edge at (" + std::to_string(end.x) + ", " + std::to_string(end.y) + ", " +
                std::to_string(end.z) +
                ") would give a triangle without area, as its end there and the two corners beside it "
                "lie on one line or in one place: move one of them a little, or take out doubled triangles, "
                "and try again");
        }
        v.Normalize();
        return v;
    }

    static double GetGain(DSEdge* e)
    {
        DSHalfEdge* h1 = e->GetHalfEdge1();
        DSHalfEdge* h2 = e->GetHalfEdge2();
        if (h1->GetVertex()->GetValence() <= 3 || h2->GetVertex()->GetValence() <= 3)
        {
            return -10000.0;
        }
        const smVec3d A = PositionOf(h1);
        const smVec3d B = PositionOf(h2);
        const smVec3d C = PositionOf(h1->GetPrev());
        const smVec3d D = PositionOf(h2->GetPrev());
        const smVec3d n1 = FaceOf(h1)->CalcNormal();
        const smVec3d n2 = FaceOf(h2)->CalcNormal();
        const smVec3d m1 = Unit((D - A).Cross(C - A), A);
        const smVec3d m2 = Unit((C - B).Cross(D - B), B);
        const double L1 = (A - C).Length();
        const double L2 = (A - D).Length();
        const double L3 = (B - C).Length();
        const double L4 = (B - D).Length();
        const smVec3d q1 = FaceOf(h1->GetPrev()->GetTwin())->GetNormal();
        const smVec3d q2 = FaceOf(h1->GetNext()->GetTwin())->GetNormal();
        const smVec3d q3 = FaceOf(h2->GetPrev()->GetTwin())->GetNormal();
        const smVec3d q4 = FaceOf(h2->GetNext()->GetTwin())->GetNormal();
        const double now = Angle(n1, n2) * (A - B).Length() + Angle(n1, q1) * L1 + Angle(n2, q4) * L2 +
                           Angle(n1, q2) * L3 + Angle(n2, q3) * L4;
        const double after = Angle(m1, m2) * (C - D).Length() + Angle(m1, q1) * L1 + Angle(m1, q4) * L2 +
                             Angle(m2, q2) * L3 + Angle(m2, q3) * L4;
        return now - after;
    }

    DSEdge* SwapEdge(DSEdge* e)
    {
        DSHalfEdge* h1 = e->GetHalfEdge1();
        DSHalfEdge* h2 = e->GetHalfEdge2();
        DSFace* face = FaceOf(h1);
        const std::uint32_t a = IDOf(h1->GetPrev());
        const std::uint32_t b = IDOf(h2->GetPrev());
        ASSERT(a != b);
        m_Euler.LKEF(&m_Solid, h1, h2);
        std::uint32_t newFace = 0;
        m_Euler.MEF(m_Solid.GetID(), face->GetID(), newFace, a, b);
        return m_Solid.GetEdgeList().back();
    }

    static std::list<std::uint32_t> CollectEdges(DSEdge* e)
    {
        std::list<std::uint32_t> ids{e->GetID()};
        DSHalfEdge* sides[] = {e->GetHalfEdge1()->GetNext(), e->GetHalfEdge1()->GetPrev(),
                               e->GetHalfEdge2()->GetNext(), e->GetHalfEdge2()->GetPrev()};
        for (const DSHalfEdge* side : sides)
        {
            ids.push_back(side->GetEdge()->GetID());
        }
        for (const DSHalfEdge* side : sides)
        {
            ids.push_back(side->GetTwin()->GetNext()->GetEdge()->GetID());
            ids.push_back(side->GetTwin()->GetPrev()->GetEdge()->GetID());
        }
        return ids;
    }

    void Enter(std::uint32_t id)
    {
        const double gain = GetGain(m_Elements.GetEdge(id));
        m_Stack.insert({gain, {gain, id}});
    }

    /// An id is removed from the list wherever it stands there.
    void UpdateStack(std::list<std::uint32_t> ids)
    {
        m_Stack.erase(m_Stack.begin());
        const std::uint32_t first = ids.front();
        Enter(first);
        ids.remove(first);
        for (auto it = m_Stack.begin(); it != m_Stack.end() && !ids.empty();)
        {
            const auto entry = it++;
            const std::uint32_t id = entry->second.edgeID;
            if (std::find(ids.begin(), ids.end(), id) != ids.end())
            {
                m_Stack.erase(entry);
                Enter(id);
                ids.remove(id);
            }
        }
    }

    static DSHalfEdge* FindMate(const DSHalfEdge* h)
    {
        return h->GetEdge() == nullptr || h->GetEdge()->IsRepeated() ? nullptr : h->GetTwin();
    }

    static bool HasTwoFaces(const DSHalfEdge* h)
    {
        const DSHalfEdge* mate = FindMate(h);
        return mate != nullptr && FaceOf(mate) != FaceOf(h) &&
               mate->GetVertex() == h->GetNext()->GetVertex() &&
               mate->GetNext()->GetVertex() == h->GetVertex();
    }

    int CountLeaving(const DSVertex* vertex) const
    {
        int count = 0;
        for (const DSFace* face : m_Solid.GetFaceList())
        {
            const DSHalfEdge* first = face->GetLoopList()[0]->GetHalfEdge();
            const DSHalfEdge* h = first;
            do
            {
                count += h->GetVertex() == vertex ? 1 : 0;
                h = h->GetNext();
            } while (h != first);
        }
        return count;
    }

    bool CanCollapse(DSHalfEdge* h1, DSHalfEdge* h2) const
    {
        if (h1->GetVertex() == h2->GetVertex() || !HasTwoFaces(h1) || !HasTwoFaces(h1->GetPrev()) ||
            !HasTwoFaces(h2->GetNext()) || FaceOf(h1->GetPrev()->GetTwin()) == FaceOf(h2) ||
            FaceOf(h2->GetNext()->GetTwin()) == FaceOf(h1))
        {
            return false;
        }
        int met = 0;
        const DSHalfEdge* h = h1;
        do
        {
            const DSHalfEdge* mate = FindMate(h);
            if (h->GetVertex() != h1->GetVertex() || mate == nullptr)
            {
                return false;
            }
            ++met;
            h = mate->GetNext();
        } while (h != h1);
        return met == CountLeaving(h1->GetVertex());
    }

    void CollapseEdge(DSEdge* e)
    {
        DSHalfEdge* h1 = e->GetHalfEdge1();
        DSHalfEdge* h2 = e->GetHalfEdge2();
        if (!CanCollapse(h1, h2))
        {
            return;
        }
        const std::uint32_t solid = m_Solid.GetID();
        m_Euler.KEF(solid, FaceOf(h1)->GetID(), IDOf(h1->GetPrev()), IDOf(h1));
        m_Euler.KEF(solid, FaceOf(h2)->GetID(), IDOf(h2->GetNext()), IDOf(h2->GetNext()->GetNext()));
        m_Euler.KEV(solid, FaceOf(h2)->GetID(), IDOf(h2), IDOf(h2->GetNext()));
    }

    MANBrepElementManager& m_Elements;
    ACTEuler m_Euler;
    DSSolid& m_Solid;
    std::multimap<double, Record, std::greater<>> m_Stack;
};
}

void OptimizeLiterally(MANBrepElementManager& elements, MANSceneManager& scene, int mode,
                       std::size_t mostSwaps)
{
    DSSolid* solid = static_cast<MANSceneLeaf*>(scene.GetRootGroup()->GetChildren()[0])->GetSolid();
    LiteralOptimize run(elements, *solid);
    if (mode == 1 || mode == 3)
    {
        run.SwapByPriority(mostSwaps);
    }
    if (mode == 2)
    {
        run.RemoveZeroEdges();
    }
    solid->CalcNormals();
}
}
