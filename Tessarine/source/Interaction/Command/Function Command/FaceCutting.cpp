#include "FaceCutting.h"
#include "ACTEuler.h"
#include "CycleGuard.h"
#include "DSBrep.h"
#include "Degree.h"
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <set>
#include <utility>

namespace tessarine
{
namespace
{
constexpr std::size_t kTriangle = 3;
constexpr std::size_t kSquare = 4;

std::vector<DSHalfEdge*> GatherHalfEdges(const DSFace& face)
{
    ASSERT(face.GetLoopList().size() == 1 && face.GetLoopList()[0] != nullptr);
    std::vector<DSHalfEdge*> corners;
    CycleGuard guard;
    DSHalfEdge* const pStart = face.GetLoopList()[0]->GetHalfEdge();
    DSHalfEdge* h = pStart;
    do
    {
        guard.Visit(h);
        corners.push_back(h);
        h = h->GetNext();
    } while (h != pStart);
    return corners;
}

/// The faces with more than three corners, before any of them is cut.
std::vector<DSFace*> GatherPolygons(const DSSolid& solid)
{
    std::vector<DSFace*> polygons;
    for (DSFace* pFace : solid.GetFaceList())
    {
        if (GatherHalfEdges(*pFace).size() > kTriangle)
        {
            polygons.push_back(pFace);
        }
    }
    return polygons;
}

/// Zero where there is no direction.
smVec3d DirectionBetween(const smVec3d& from, const smVec3d& to)
{
    const smVec3d way = to - from;
    const double length = way.Length();
    return length > 0.0 ? smVec3d(way.x / length, way.y / length, way.z / length) : smVec3d();
}

/// One face, from which corners are cut until it is a triangle.
class CornerCutter
{
public:
    CornerCutter(MANBrepElementManager& elements, DSSolid& solid, const DSFace& face)
        : m_Elements(elements), m_Solid(solid), m_Corners(GatherHalfEdges(face)), m_nLeft(m_Corners.size())
    {
        for (std::size_t i = 0; i < m_Corners.size(); ++i)
        {
            m_Previous.push_back(i == 0 ? m_Corners.size() - 1 : i - 1);
            m_Next.push_back(i + 1 == m_Corners.size() ? 0 : i + 1);
        }
        for (std::size_t i = 0; i < m_Corners.size(); ++i)
        {
            m_Angles.push_back(MeasureAngle(i));
            m_ByAngle.emplace(m_Angles[i], i);
        }
    }

    void Cut()
    {
        while (m_nLeft > kTriangle)
        {
            CutOff(m_nLeft == kSquare ? FindSharpest() : m_ByAngle.begin()->second);
        }
    }

private:
    const smVec3d& PositionOf(std::size_t corner) const
    {
        return m_Corners[corner]->GetVertex()->GetPosition();
    }

    /// By how much the outline turns.
    double MeasureAngle(std::size_t corner) const
    {
        const smVec3d& p = PositionOf(corner);
        const double cosine = DirectionBetween(p, PositionOf(m_Previous[corner]))
                                  .Dot(DirectionBetween(p, PositionOf(m_Next[corner])));
        return kPi - std::acos(std::clamp(cosine, -1.0, 1.0));
    }

    std::size_t FindSharpest() const
    {
        const double largest = m_ByAngle.rbegin()->first;
        return m_ByAngle.lower_bound({largest, 0})->second;
    }

    /// The triangle at the corner becomes a face of its own.
    void CutOff(std::size_t corner)
    {
        const std::size_t previous = m_Previous[corner];
        const std::size_t next = m_Next[corner];
        std::uint32_t nFaceID = 0;
        ACTEuler(&m_Elements).LMEF(&m_Solid, m_Corners[previous], m_Corners[next], nFaceID);
        m_Corners[previous] = m_Corners[next]->GetPrev();
        m_ByAngle.erase({m_Angles[corner], corner});
        m_Next[previous] = next;
        m_Previous[next] = previous;
        --m_nLeft;
        MeasureAnew(previous);
        MeasureAnew(next);
    }

    void MeasureAnew(std::size_t corner)
    {
        m_ByAngle.erase({m_Angles[corner], corner});
        m_Angles[corner] = MeasureAngle(corner);
        m_ByAngle.emplace(m_Angles[corner], corner);
    }

    MANBrepElementManager& m_Elements;
    DSSolid& m_Solid;
    std::vector<DSHalfEdge*> m_Corners;
    std::vector<std::size_t> m_Previous;
    std::vector<std::size_t> m_Next;
    std::vector<double> m_Angles;
    std::set<std::pair<double, std::size_t>> m_ByAngle; ///< of the corners that are left
    std::size_t m_nLeft;
};
}

void TriangulateFaces(MANBrepElementManager& elements, DSSolid& solid)
{
    for (const DSFace* pFace : GatherPolygons(solid))
    {
        CornerCutter(elements, solid, *pFace).Cut();
    }
}

void StarFaces(MANBrepElementManager& elements, DSSolid& solid, const std::vector<smVec3d>& feet)
{
    ACTEuler euler(&elements);
    for (const DSFace* pFace : GatherPolygons(solid))
    {
        if (pFace->GetTag() < 0)
        {
            continue;
        }
        const auto foot = static_cast<std::size_t>(pFace->GetTag());
        ASSERT(foot < feet.size());
        const std::vector<DSHalfEdge*> corners = GatherHalfEdges(*pFace);
        std::uint32_t nVertexID = 0;
        euler.LMEV(&solid, corners[0], corners[0], nVertexID, feet[foot]);
        DSHalfEdge* pFromCentre = corners[0]->GetPrev();
        for (std::size_t i = 1; i < corners.size(); ++i)
        {
            std::uint32_t nFaceID = 0;
            euler.LMEF(&solid, pFromCentre, corners[i], nFaceID);
            pFromCentre = corners[i]->GetPrev();
        }
    }
}
}
