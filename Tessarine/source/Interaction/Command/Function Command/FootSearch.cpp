#include "FootSearch.h"
#include "Console.h"
#include "DSBrep.h"
#include "Failure.h"
#include "LookAhead.h"
#include "Platform.h"
#include "RingWalks.h"
#include "SpaceOrder.h"
#include "VertexPlaces.h"
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

/// Into memory that is used again and again.
void GatherCorners(const DSFace& face, std::vector<const DSHalfEdge*>& corners)
{
    corners.clear();
    CycleGuard guard;
    const DSHalfEdge* const pStart = FirstLoopOf(face).GetHalfEdge();
    const DSHalfEdge* h = pStart;
    do
    {
        guard.Visit(h);
        corners.push_back(h);
        h = h->GetNext();
    } while (h != pStart);
}

const smVec3d& PositionAt(const DSHalfEdge* h)
{
    return h->GetVertex()->GetPosition();
}
}

/// The places of the faces in their list, by half-edge.
class FootSearch::FacePlaces
{
public:
    void Put(const DSHalfEdge& h, std::uint32_t place)
    {
        const std::size_t index = IndexOf(h);
        if (index >= m_Places.size())
        {
            m_Places.resize(index + 1 + m_Places.size());
        }
        m_Places[index] = place;
    }
    void AskFor(const DSHalfEdge& h) const { __builtin_prefetch(m_Places.data() + IndexOf(h)); }
    std::uint32_t Of(const DSHalfEdge& h) const
    {
        ASSERT(IndexOf(h) < m_Places.size());
        return m_Places[IndexOf(h)];
    }

private:
    static std::size_t IndexOf(const DSHalfEdge& h) { return h.GetID() & ~ElementKind::HalfEdge; }

    std::vector<std::uint32_t> m_Places;
};

FootSearch::FootSearch(DSSolid& solid, const FootVariant& variant) : m_Variant(variant), m_Vertices(solid)
{
    FacePlaces places;
    ShapeFaces(solid, places);
    LinkFacesToVertices(solid, places);
    m_LastCandidacy.resize(m_Shapes.size());
    if (variant.refusesCuts)
    {
        m_LastFaceTest.resize(m_Shapes.size());
        m_LastVertexTest.resize(m_RingEnds.size());
    }
}

void FootSearch::ShapeFaces(const DSSolid& solid, FacePlaces& places)
{
    const VertexPlaces vertexPlaces(solid);
    m_Shapes.reserve(solid.GetFaceList().size());
    std::vector<const DSHalfEdge*> corners;
    ForEachFaceLookingAhead(
        solid.GetFaceList(),
        [&](DSFace* pFace)
        {
            ASSERT(pFace != nullptr);
            GatherCorners(*pFace, corners);
            for (const DSHalfEdge* h : corners)
            {
                places.Put(*h, static_cast<std::uint32_t>(m_Shapes.size()));
            }
            m_Shapes.push_back(ShapeOf(*pFace, corners, vertexPlaces));
        },
        AskForVertexAt);
}

FootSearch::FaceShape FootSearch::ShapeOf(DSFace& face, const std::vector<const DSHalfEdge*>& corners,
                                          const VertexPlaces& places)
{
    FaceShape shape;
    shape.face = &face;
    shape.centroid = face.CalcCentroid();
    shape.normal = face.ComputeNormal();
    shape.nCorners = static_cast<int>(corners.size());
    for (std::size_t i = 0; i < std::min<std::size_t>(corners.size(), 3); ++i)
    {
        shape.corners[i] = PositionAt(corners[i]);
        shape.cornerPlaces[i] = static_cast<std::uint32_t>(places.GetPlace(*corners[i]->GetVertex()));
    }
    shape.doubleArea =
        (shape.corners[1] - shape.corners[0]).Cross(shape.corners[2] - shape.corners[0]).Length();
    return shape;
}

void FootSearch::LinkFacesToVertices(const DSSolid& solid, const FacePlaces& places)
{
    m_RingEnds.reserve(solid.GetVertexList().size());
    m_RingFaces.reserve(3 * m_Shapes.size());
    RingWalks::ForEach(
        solid.GetVertexList(), [&places](const DSHalfEdge& h) { places.AskFor(h); },
        [&](const DSVertex& vertex, const VertexRing& ring)
        {
            ASSERT(!ring.endedAtBoundary);
            for (const DSHalfEdge* h : ring.halfEdges)
            {
                ASSERT(h->GetVertex() == &vertex);
                m_RingFaces.push_back(places.Of(*h));
            }
            m_RingEnds.push_back(static_cast<std::uint32_t>(m_RingFaces.size()));
        });
}

std::span<const std::uint32_t> FootSearch::GetRing(std::size_t vertex) const
{
    const std::uint32_t begin = vertex == 0 ? 0 : m_RingEnds[vertex - 1];
    return std::span(m_RingFaces).subspan(begin, m_RingEnds[vertex] - begin);
}

void FootSearch::MeetVertex(std::uint32_t place)
{
    if (m_LastVertexTest[place] != m_nTest)
    {
        m_LastVertexTest[place] = m_nTest;
        m_NearVertices.push_back(place);
    }
}

/// The faces in two rings are those around the first corner and around each of its neighbours.
bool FootSearch::WouldCutFace(std::uint32_t face, const smVec3d& point, const smVec3d& foot)
{
    ++m_nTest;
    m_LastFaceTest[face] = m_nTest; // is not in its own way
    m_NearVertices.clear();
    const std::uint32_t first = m_Shapes[face].cornerPlaces[0];
    for (const std::uint32_t near : GetRing(first))
    {
        std::for_each(m_Shapes[near].cornerPlaces.begin(), m_Shapes[near].cornerPlaces.end(),
                      [this](std::uint32_t place) { MeetVertex(place); });
    }
    const auto isCutAround = [&](std::uint32_t place)
    {
        const auto ring = GetRing(place);
        return std::any_of(ring.begin(), ring.end(),
                           [&](std::uint32_t near) { return MeetsFace(near, point, foot); });
    };
    return std::any_of(m_NearVertices.begin(), m_NearVertices.end(), isCutAround);
}

bool FootSearch::MeetsFace(std::uint32_t face, const smVec3d& point, const smVec3d& foot)
{
    const FaceShape& shape = m_Shapes[face];
    const bool isNew = m_LastFaceTest[face] != m_nTest;
    m_LastFaceTest[face] = m_nTest;
    return isNew && SegmentHitsTriangle(shape.corners, shape.normal, foot, point);
}

void FootSearch::GatherCandidates(const smVec3d& point)
{
    m_Candidates.clear();
    ++m_nPoint;
    for (const int vertex : m_Vertices.Find(point, m_Variant.neighbours))
    {
        for (const std::uint32_t face : GetRing(static_cast<std::size_t>(vertex)))
        {
            if (m_LastCandidacy[face] != m_nPoint)
            {
                m_LastCandidacy[face] = m_nPoint;
                m_Candidates.push_back(face);
                AskForMemory(&m_Shapes[face], sizeof(FaceShape));
            }
        }
    }
}

bool FootSearch::ContainsInFan(const FaceShape& shape, const smVec3d& foot, TriangleTest& test) const
{
    std::vector<const DSHalfEdge*> corners;
    GatherCorners(*shape.face, corners);
    bool isInside = false;
    for (std::size_t i = 0; i < corners.size(); ++i)
    {
        const DSHalfEdge* pNext = corners[i + 1 == corners.size() ? 0 : i + 1];
        test = PointInTriangle(foot, {PositionAt(corners[i]), PositionAt(pNext), shape.centroid},
                               m_Variant.tolerance);
        isInside = isInside || test.isInside;
    }
    return isInside;
}

void FootSearch::CheckCorners(const FaceShape& shape)
{
    ASSERT_VALUE(shape.nCorners < kTooManyCorners); // told below what to do
    if (shape.nCorners >= kTooManyCorners)
    {
        throw Failure(
            "a face of the model has " + std::to_string(shape.nCorners) +
            " corners, and a fit takes up to 19: cut it into smaller ones in the file, and import again");
    }
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
    const Finding finding = Search(point);
    Say(finding);
    return finding.foot;
}

void FootSearch::Say(const Finding& finding)
{
    DebugConsole() << "Adjacent Face size: " << finding.candidates << '\n';
    for (std::uint32_t i = 0; i < finding.cuts; ++i)
    {
        DebugConsole() << "Intersect the face!!!" << '\n';
    }
}

FootSearch::Finding FootSearch::Search(const smVec3d& point)
{
    constexpr double kDeepest = 100.0;
    constexpr double kLargestRatio = 1e7;
    GatherCandidates(point);
    Finding finding;
    finding.candidates = static_cast<std::uint32_t>(m_Candidates.size());
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
        if (!Contains(shape, foot, test))
        {
            continue;
        }
        if (m_Variant.refusesCuts && WouldCutFace(candidate, point, foot))
        {
            ++finding.cuts;
            continue;
        }
        const double distance = (point - foot).Length();
        if (m_Variant.choice == FootChoice::First)
        {
            finding.foot = Foot{shape.face, foot, distance, test.barycentric};
            break;
        }
        const double measure = m_Variant.choice == FootChoice::Deepest ? depth : test.doubleArea / distance;
        if (measure < best)
        {
            best = measure;
            finding.foot = Foot{shape.face, foot, distance, test.barycentric};
        }
    }
    return finding;
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
    std::vector<FootSearch::Finding> findings(cloud.size());
    std::vector<bool> isSearched(cloud.size());
    for (const std::size_t i : OrderInSpace(cloud, takesPart))
    {
        findings[i] = search.Search(cloud[i]);
        isSearched[i] = true;
    }
    FootList feet;
    int misses = 0;
    for (std::size_t i = 0; i < cloud.size(); ++i)
    {
        if (!isSearched[i])
        {
            continue;
        }
        FootSearch::Say(findings[i]);
        const std::optional<Foot>& foot = findings[i].foot;
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
