#include "DSBrep.h"
#include "Console.h"
#include "CycleGuard.h"
#include "LookAhead.h"
#include "NormalSums.h"
#include "VertexWalk.h"
#include <cmath>
#include <string>

namespace tessarine
{
namespace
{
const smVec3d& PositionOf(const DSHalfEdge* halfEdge)
{
    ASSERT(halfEdge != nullptr);
    ASSERT(halfEdge->GetVertex() != nullptr);
    return halfEdge->GetVertex()->GetPosition();
}

bool IsNearZero(const smVec3d& vector)
{
    constexpr double kTolerance = 1e-10;
    return std::abs(vector.x) < kTolerance && std::abs(vector.y) < kTolerance &&
           std::abs(vector.z) < kTolerance;
}
}

void DSHalfEdge::SayBorder()
{
    DebugConsole() << "Border exist.." << '\n';
}

smVec3d DSFace::ComputeNormal() const
{
    ASSERT(!m_LoopList.empty() && m_LoopList[0] != nullptr);
    const DSHalfEdge* pHalfEdge = m_LoopList[0]->GetHalfEdge();
    const smVec3d& first = PositionOf(pHalfEdge);
    const smVec3d& second = PositionOf(pHalfEdge->GetNext());
    const smVec3d& third = PositionOf(pHalfEdge->GetNext()->GetNext());
    smVec3d normal = (second - first).Cross(third - second);
    if (!IsNearZero(normal))
    {
        normal.Normalize();
    }
    return normal;
}

smVec3d DSFace::CalcCentroid() const
{
    ASSERT(!m_LoopList.empty() && m_LoopList[0] != nullptr);
    const DSHalfEdge* const pStart = m_LoopList[0]->GetHalfEdge();
    smVec3d sum;
    double count = 0;
    CycleGuard guard;
    const DSHalfEdge* pHalfEdge = pStart;
    do
    {
        sum += PositionOf(pHalfEdge);
        guard.Visit(pHalfEdge);
        ++count;
        pHalfEdge = pHalfEdge->GetNext();
    } while (pHalfEdge != pStart);
    return sum / count;
}

smVec3d DSVertex::CalcNormal()
{
    ASSERT(m_pHalfEdge != nullptr);
    NormalSums sums(WanderingLimit::None());
    sums.Add(*this);
    sums.Finish();
    return m_Normal;
}

int DSVertex::GetValence()
{
    ASSERT(m_pHalfEdge != nullptr);
    m_nValence = 0;
    VertexWalk walk(m_pHalfEdge);
    for (; !walk.IsAtEnd(); walk.Step())
    {
        ++m_nValence;
    }
    if (walk.EndedAtBoundary())
    {
        ++m_nValence; // an open vertex has one edge more than faces
    }
    return m_nValence;
}

void DSSolid::SetMaterial(DSMaterial* material)
{
    for (DSFace* pFace : m_FaceList)
    {
        if (pFace != nullptr)
        {
            pFace->GetMaterial() = material;
        }
    }
    m_pMaterial = material;
}

void DSSolid::CalcNormals()
{
    ForEachFaceLookingAhead(
        m_FaceList,
        [](DSFace* pFace)
        {
            if (pFace != nullptr)
            {
                pFace->CalcNormal();
            }
        },
        AskForVertexAt);
    CalcVertexNormals();
}

void DSSolid::CalcVertexNormals()
{
    NormalSums sums(WanderingLimit::OfPatience());
    ForEachVertexLookingAhead(m_VertexList,
                              [&sums](DSVertex* pVertex)
                              {
                                  if (NormalSums::HasFacesAround(pVertex))
                                  {
                                      sums.Add(*pVertex);
                                  }
                              });
    sums.Finish();
    sums.SayCutWalks();
}

namespace
{
/// The lines of CheckTopology, step by step.
class TopologyReport
{
public:
    explicit TopologyReport(DSSolid& solid) : m_Solid(solid) {}

    void MarkBoundaryEdges()
    {
        for (DSEdge* pEdge : m_Solid.GetEdgeList())
        {
            if (pEdge != nullptr && (pEdge->GetHalfEdge1() == nullptr || pEdge->GetHalfEdge2() == nullptr))
            {
                pEdge->SetBoundary(true);
                m_Console << "boundary edge: " << pEdge->GetID() << '\n';
            }
        }
    }

    void SayListSizes()
    {
        m_Console << "m_VertexList.SIZE(): " << m_Solid.GetVertexList().size() << '\n';
        m_Console << "m_FaceList.Size(): " << m_Solid.GetFaceList().size() << '\n';
        m_Console << "m_EdgeList.Size(): " << m_Solid.GetEdgeList().size() << '\n';
    }

    void SayIsolatedVertices()
    {
        for (const DSVertex* pVertex : m_Solid.GetVertexList())
        {
            if (pVertex != nullptr && pVertex->GetHalfEdge() == nullptr)
            {
                m_Console << "isolated point: " << pVertex->GetID() << '\n';
            }
        }
    }

    void CheckLoops()
    {
        for (const DSFace* pFace : m_Solid.GetFaceList())
        {
            if (pFace != nullptr && !pFace->GetLoopList().empty())
            {
                CheckLoop(*pFace->GetLoopList()[0]);
            }
        }
        m_Console << "total halfedge number: " << m_nTotal << '\n';
    }

private:
    /// Kept    A triangle mesh is taken for granted: larger faces are reported, too.
    void CheckLoop(const DSLoop& loop)
    {
        const int forward = CountForward(loop.GetHalfEdge());
        m_nTotal += forward;
        if (forward != 3)
        {
            m_Console << "loop error(next): " << loop.GetID() << '\n';
        }
        if (CountBackward(loop.GetHalfEdge()) != 3)
        {
            m_Console << "loop error(Pre): " << loop.GetID() << '\n';
        }
    }

    /// A link that is null ends the round; it has no id that could be printed.
    int CountForward(const DSHalfEdge* start)
    {
        int count = 0;
        CycleGuard guard;
        const DSHalfEdge* pHalfEdge = start;
        do
        {
            if (pHalfEdge == nullptr || pHalfEdge->GetPrev() == nullptr)
            {
                m_Console << "null hafedge: " << '\n';
                return count;
            }
            if (pHalfEdge->GetEdge() == nullptr)
            {
                m_Console << "null edge:" << pHalfEdge->GetID() << '\n';
            }
            guard.Visit(pHalfEdge);
            pHalfEdge = pHalfEdge->GetNext();
            ++count;
        } while (pHalfEdge != start);
        return count;
    }

    static int CountBackward(const DSHalfEdge* start)
    {
        int count = 0;
        CycleGuard guard;
        const DSHalfEdge* pHalfEdge = start;
        while (pHalfEdge != nullptr)
        {
            guard.Visit(pHalfEdge);
            pHalfEdge = pHalfEdge->GetPrev();
            ++count;
            if (pHalfEdge == start)
            {
                break;
            }
        }
        return count;
    }

    DSSolid& m_Solid;
    Console& m_Console = DebugConsole();
    std::int64_t m_nTotal = 0;
};
}

bool DSSolid::CheckTopology()
{
    TopologyReport report(*this);
    report.MarkBoundaryEdges();
    report.SayListSizes();
    report.SayIsolatedVertices();
    report.CheckLoops();
    return m_VertexList.size() + m_FaceList.size() == m_EdgeList.size() + 2;
}
}
