#include "FootSearch.h"
#include "Console.h"
#include "DSBrep.h"
#include "LookAhead.h"
#include "Platform.h"
#include "VertexWalk.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
namespace
{
/// Corners that a face may not have.
constexpr int kTooManyCorners = 20;

const DSLoop& FirstLoopOf(const DSFace& face)
{
    ASSERT(!face.GetLoopList().empty() && face.GetLoopList()[0] != nullptr);
    return *face.GetLoopList()[0];
}

std::vector<smVec3d> GatherCorners(const DSFace& face)
{
    std::vector<smVec3d> corners;
    CycleGuard guard;
    const DSHalfEdge* const pStart = FirstLoopOf(face).GetHalfEdge();
    const DSHalfEdge* h = pStart;
    do
    {
        guard.Visit(h);
        corners.push_back(h->GetVertex()->GetPosition());
        h = h->GetNext();
    } while (h != pStart);
    return corners;
}

/// Places of faces in their list by id.
class FacePlaces
{
public:
    explicit FacePlaces(const DSSolid& solid)
    {
        for (const DSFace* pFace : solid.GetFaceList())
        {
            m_nLowestID = std::min(m_nLowestID, pFace->GetID());
        }
        std::uint32_t place = 0;
        for (const DSFace* pFace : solid.GetFaceList())
        {
            const std::size_t offset = pFace->GetID() - m_nLowestID;
            m_Places.resize(std::max(m_Places.size(), offset + 1));
            m_Places[offset] = place++;
        }
    }

    std::uint32_t Of(const DSHalfEdge* h) const
    {
        ASSERT(h->GetLoop() != nullptr && h->GetLoop()->GetFace() != nullptr);
        const std::size_t offset = h->GetLoop()->GetFace()->GetID() - m_nLowestID;
        ASSERT(offset < m_Places.size());
        return m_Places[offset];
    }

private:
    std::uint32_t m_nLowestID = ElementKind::Invalid;
    std::vector<std::uint32_t> m_Places;
};
}

FootSearch::FootSearch(DSSolid& solid, const FootVariant& variant) : m_Variant(variant), m_Vertices(solid)
{
    ShapeFaces(solid);
    LinkFacesToVertices(solid);
    m_LastCandidacy.resize(m_Shapes.size());
}

void FootSearch::ShapeFaces(DSSolid& solid)
{
    m_Shapes.reserve(solid.GetFaceList().size());
    for (DSFace* pFace : solid.GetFaceList())
    {
        ASSERT(pFace != nullptr);
        const std::vector<smVec3d> corners = GatherCorners(*pFace);
        FaceShape shape;
        shape.face = pFace;
        shape.centroid = pFace->CalcCentroid();
        shape.normal = pFace->ComputeNormal();
        shape.nCorners = static_cast<int>(corners.size());
        std::copy_n(corners.begin(), std::min<std::size_t>(corners.size(), 3), shape.corners.begin());
        shape.doubleArea =
            (shape.corners[1] - shape.corners[0]).Cross(shape.corners[2] - shape.corners[0]).Length();
        m_Shapes.push_back(shape);
    }
}

void FootSearch::LinkFacesToVertices(const DSSolid& solid)
{
    const FacePlaces places(solid);
    m_RingEnds.reserve(solid.GetVertexList().size());
    m_RingFaces.reserve(3 * m_Shapes.size());
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        if (pVertex->GetHalfEdge() != nullptr)
        {
            VertexWalk walk(pVertex->GetHalfEdge());
            for (; !walk.IsAtEnd(); walk.Step())
            {
                ASSERT(walk.Get()->GetVertex() == pVertex);
                m_RingFaces.push_back(places.Of(walk.Get()));
            }
            ASSERT(!walk.EndedAtBoundary());
        }
        m_RingEnds.push_back(static_cast<std::uint32_t>(m_RingFaces.size()));
    }
}

void FootSearch::GatherCandidates(const smVec3d& point)
{
    m_Candidates.clear();
    ++m_nPoint;
    for (const int vertex : m_Vertices.Find(point, m_Variant.neighbours))
    {
        const auto place = static_cast<std::size_t>(vertex);
        for (std::uint32_t i = place == 0 ? 0 : m_RingEnds[place - 1]; i < m_RingEnds[place]; ++i)
        {
            const std::uint32_t face = m_RingFaces[i];
            if (m_LastCandidacy[face] != m_nPoint)
            {
                m_LastCandidacy[face] = m_nPoint;
                m_Candidates.push_back(face);
                AskForMemory(&m_Shapes[face], sizeof(FaceShape));
            }
        }
    }
    DebugConsole() << "Adjacent Face size: " << m_Candidates.size() << '\n';
}

bool FootSearch::ContainsInFan(const FaceShape& shape, const smVec3d& foot, TriangleTest& test) const
{
    const std::vector<smVec3d> corners = GatherCorners(*shape.face);
    bool isInside = false;
    for (std::size_t i = 0; i < corners.size(); ++i)
    {
        const smVec3d& next = corners[i + 1 == corners.size() ? 0 : i + 1];
        test = PointInTriangle(foot, {corners[i], next, shape.centroid}, m_Variant.tolerance);
        isInside = isInside || test.isInside;
    }
    return isInside;
}

void FootSearch::CheckCorners(const FaceShape& shape)
{
    ASSERT(shape.nCorners < kTooManyCorners);
    ASSERT(shape.nCorners == 3 || m_Variant.polygons != PolygonRule::Assert);
    if (shape.nCorners != 3 && m_Variant.polygons == PolygonRule::Message && !m_bComplained)
    {
        m_bComplained = true;
        ShowMessage("There are more than three edges! ");
    }
}

bool FootSearch::Contains(const FaceShape& shape, const smVec3d& foot, TriangleTest& test) const
{
    if (shape.nCorners != 3)
    {
        return m_Variant.polygons == PolygonRule::Fan && ContainsInFan(shape, foot, test);
    }
    if (IsClearlyOutside(foot, shape.corners, shape.doubleArea, m_Variant.tolerance))
    {
        return false;
    }
    test = PointInTriangle(foot, shape.corners, m_Variant.tolerance);
    return test.isInside;
}

std::optional<Foot> FootSearch::Find(const smVec3d& point)
{
    constexpr double kDeepest = 100.0;
    constexpr double kLargestRatio = 1e7;
    GatherCandidates(point);
    std::optional<Foot> found;
    double best = m_Variant.choice == FootChoice::Deepest ? kDeepest : kLargestRatio;
    for (const std::uint32_t candidate : m_Candidates)
    {
        const FaceShape& shape = m_Shapes[candidate];
        CheckCorners(shape);
        const double depth = (point - shape.centroid).Dot(shape.normal);
        if (m_Variant.choice == FootChoice::Deepest && !(depth < best))
        {
            continue; // whatever the foot
        }
        const smVec3d foot = ProjectOntoPlane(point, shape.centroid, shape.normal);
        TriangleTest test;
        if (!Contains(shape, foot, test) || (m_Refusal && m_Refusal(*shape.face, point, foot)))
        {
            continue;
        }
        const double distance = (point - foot).Length();
        if (m_Variant.choice == FootChoice::First)
        {
            return Foot{shape.face, foot, distance, test.barycentric};
        }
        const double measure = m_Variant.choice == FootChoice::Deepest ? depth : test.doubleArea / distance;
        if (measure < best)
        {
            best = measure;
            found = Foot{shape.face, foot, distance, test.barycentric};
        }
    }
    return found;
}

double FootSearch::GetVertexDistance() const
{
    ASSERT(!m_Vertices.GetSquaredDistances().empty());
    return std::sqrt(m_Vertices.GetSquaredDistances().front());
}

void FootList::Add(const Foot& foot, std::size_t cloudIndex)
{
    foot.face->GetTagList().push_back(static_cast<std::int32_t>(points.size()));
    points.push_back(foot.point);
    faces.push_back(foot.face);
    cloudIndices.push_back(static_cast<std::int32_t>(cloudIndex));
}

void SayMisses(int misses)
{
    DebugConsole() << "There are " << misses << "points cannot find projection point.." << '\n';
}

FootList CalculateFootPoints(DSSolid& solid, const std::vector<smVec3d>& cloud,
                             const std::function<bool(std::size_t)>& takesPart, FootSearch& search,
                             std::vector<smVec3d>* projected)
{
    ASSERT(!cloud.empty());
    for (DSFace* pFace : solid.GetFaceList())
    {
        pFace->GetTagList().clear();
    }
    FootList feet;
    int misses = 0;
    for (std::size_t i = 0; i < cloud.size(); ++i)
    {
        if (!takesPart(i))
        {
            continue;
        }
        const std::optional<Foot> foot = search.Find(cloud[i]);
        if (!foot)
        {
            ++misses;
            continue;
        }
        feet.Add(*foot, i);
        if (projected != nullptr)
        {
            ASSERT(i < projected->size());
            (*projected)[i] = foot->point;
        }
    }
    DebugConsole() << "Calculate footpoint ok.." << '\n';
    SayMisses(misses);
    return feet;
}

const smVec3d* FindNearestOf(const std::vector<smVec3d>& points, const smVec3d& query)
{
    const auto nearest = std::min_element(points.begin(), points.end(),
                                          [&query](const smVec3d& a, const smVec3d& b)
                                          { return (a - query).Length() < (b - query).Length(); });
    return nearest == points.end() ? nullptr : &*nearest;
}
}
