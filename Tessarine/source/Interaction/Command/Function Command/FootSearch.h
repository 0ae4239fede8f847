#pragma once
#include "NearestPoints.h"
#include "TriangleTest.h"
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace tessarine
{
class DSFace;
class DSHalfEdge;
class DSSolid;
class VertexPlaces;

/// Which of the faces that a foot falls on is taken.
enum class FootChoice
{
    First,      ///< in the order of the candidates; a closer one behind it is never seen
    Deepest,    ///< the smallest signed distance to the plane, below 100: far behind beats close by
    LargestMove ///< the smallest double area over the distance, below 1e7; a point on its face is never taken
};

/// What becomes of faces with another number of corners than three.
enum class PolygonRule
{
    Fan,    ///< tested as a fan around the centroid
    Assert, ///< an assertion
    Message ///< the message box "There are more than three edges! ", once in a search; it is passed over
};

/// How the commands differ in their search for feet.
struct FootVariant
{
    int neighbours;
    PolygonRule polygons;
    double tolerance;
    FootChoice choice;
    bool refusesCuts =
        false; ///< no foot where the way to the point meets another face nearby, those in two rings
               ///< around the first corner of its face; "Intersect the face!!!" for each
};

inline constexpr FootVariant kHierarchicalFeet{3, PolygonRule::Fan, 0.0001, FootChoice::First};
inline constexpr FootVariant kIncrementalFeet{3, PolygonRule::Assert, 0.0001, FootChoice::First};
inline constexpr FootVariant kEnergyFeet{3, PolygonRule::Assert, 1e-8, FootChoice::Deepest};
inline constexpr FootVariant kTwoStepFeet{1, PolygonRule::Message, 0.00001, FootChoice::LargestMove, true};

/// The foot of a point on a mesh: where the perpendicular onto a face lands.
struct Foot
{
    DSFace* face = nullptr;
    smVec3d point;
    double distance = 0.0;
    smVec3d barycentric; ///< in the order of the face's first loop
};

/// Looks for feet on a solid that stays as it is for as long as the search lives: its faces' planes and corners are
/// taken from the positions at the start. A point sees the faces around its nearest vertices only; a long triangle
/// whose vertices all lie far away is missed.
///
/// Needs   Vertices whose own half-edge leads round a closed fan, or that have none (asserted).
/// Says    "Adjacent Face size: " and the number of candidates for each point.
/// Fails   As NearestPoints. A face of 20 corners or more among the candidates is a reported assertion, and a
///         Failure that says what to do.
/// Cost    The start is linear in the solid. A point costs a query of the tree and its candidates.
class FootSearch
{
public:
    FootSearch(DSSolid& solid, const FootVariant& variant);

    /// Nothing where no face takes the point.
    std::optional<Foot> Find(const smVec3d& point);

    /// What a search has found, and what it has to say.
    struct Finding
    {
        std::optional<Foot> foot;
        std::uint32_t candidates = 0;
        std::uint32_t cuts = 0;
    };
    /// Find in two parts: the first one is silent.
    Finding Search(const smVec3d& point);
    static void Say(const Finding& finding);

    /// The distance to the nearest vertex in the last search.
    double GetVertexDistance() const;

private:
    struct FaceShape
    {
        DSFace* face = nullptr;
        smVec3d centroid;
        smVec3d normal;
        TriangleCorners corners;
        double doubleArea = 0.0;
        int nCorners = 0;
        std::array<std::uint32_t, 3> cornerPlaces{}; ///< in the list of vertices, of a triangle
    };

    class FacePlaces;

    void ShapeFaces(const DSSolid& solid, FacePlaces& places);
    static FaceShape ShapeOf(DSFace& face, const std::vector<const DSHalfEdge*>& corners,
                             const VertexPlaces& places);
    void LinkFacesToVertices(const DSSolid& solid, const FacePlaces& places);
    std::span<const std::uint32_t> GetRing(std::size_t vertex) const;
    void GatherCandidates(const smVec3d& point);
    void MeetVertex(std::uint32_t place);
    bool WouldCutFace(std::uint32_t face, const smVec3d& point, const smVec3d& foot);
    bool MeetsFace(std::uint32_t face, const smVec3d& point, const smVec3d& foot);
    void CheckCorners(const FaceShape& shape);
    bool Contains(const FaceShape& shape, const smVec3d& foot, TriangleTest& test) const;
    bool ContainsInFan(const FaceShape& shape, const smVec3d& foot, TriangleTest& test) const;

    FootVariant m_Variant;
    NearestPoints m_Vertices;
    std::vector<FaceShape> m_Shapes;            ///< in the order of the face list
    std::vector<std::uint32_t> m_RingEnds;      ///< for each vertex, behind its last face
    std::vector<std::uint32_t> m_RingFaces;     ///< places of the faces, vertex by vertex, in ring order
    std::vector<std::uint32_t> m_Candidates;    ///< of the point under way
    std::vector<std::uint32_t> m_LastCandidacy; ///< for each face, the number of the last point that saw it
    std::uint32_t m_nPoint = 0;
    // For each face and vertex, the number of the last test for cuts that met it; the vertices of that under way.
    std::vector<std::uint32_t> m_LastFaceTest;
    std::vector<std::uint32_t> m_LastVertexTest;
    std::vector<std::uint32_t> m_NearVertices;
    std::uint32_t m_nTest = 0;
    bool m_bComplained = false;
};

/// Feet in the order in which they were found.
struct FootList
{
    std::vector<smVec3d> points;
    std::vector<DSFace*> faces;
    std::vector<std::int32_t> cloudIndices;

    void Add(const Foot& foot, std::size_t cloudIndex);
};

/// Says how many points of a cloud have no foot.
void SayMisses(int misses);

/// Looks for the feet of a cloud, and lists on each face (m_TagList) the indices of those that fell on it.
///
/// Needs   A cloud with points (asserted).
/// Says    What each search says, in the order of the cloud; "Calculate footpoint ok..", and how many points have no
///         foot.
/// @param takesPart asked for each index of the cloud
/// @param projected where the feet go as well, by index of the cloud; may be null
FootList CalculateFootPoints(DSSolid& solid, const std::vector<smVec3d>& cloud,
                             const std::function<bool(std::size_t)>& takesPart, FootSearch& search,
                             std::vector<smVec3d>* projected);

/// The nearest to a query, the earliest of equal ones; null in an empty list.
const smVec3d* FindNearestOf(const std::vector<smVec3d>& points, const smVec3d& query);
}
