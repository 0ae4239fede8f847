#pragma once
#include "NearestPoints.h"
#include "TriangleTest.h"
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace tessarine
{
class DSFace;

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
};

inline constexpr FootVariant kHierarchicalFeet{3, PolygonRule::Fan, 0.0001, FootChoice::First};
inline constexpr FootVariant kIncrementalFeet{3, PolygonRule::Assert, 0.0001, FootChoice::First};
inline constexpr FootVariant kEnergyFeet{3, PolygonRule::Assert, 1e-8, FootChoice::Deepest};
inline constexpr FootVariant kTwoStepFeet{1, PolygonRule::Message, 0.00001, FootChoice::LargestMove};

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
/// Fails   As NearestPoints. A face of 20 corners or more among the candidates is an assertion.
/// Cost    The start is linear in the solid. A point costs a query of the tree and its candidates.
class FootSearch
{
public:
    /// Whether a foot must not be taken: face, point, foot.
    using Refusal = std::function<bool(DSFace& face, const smVec3d& point, const smVec3d& foot)>;

    FootSearch(DSSolid& solid, const FootVariant& variant);

    /// Is asked for each foot that falls on its face.
    void SetRefusal(Refusal refusal) { m_Refusal = std::move(refusal); }

    /// Nothing where no face takes the point.
    std::optional<Foot> Find(const smVec3d& point);

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
    };

    void ShapeFaces(DSSolid& solid);
    void LinkFacesToVertices(const DSSolid& solid);
    void GatherCandidates(const smVec3d& point);
    void CheckCorners(const FaceShape& shape);
    bool Contains(const FaceShape& shape, const smVec3d& foot, TriangleTest& test) const;
    bool ContainsInFan(const FaceShape& shape, const smVec3d& foot, TriangleTest& test) const;

    FootVariant m_Variant;
    NearestPoints m_Vertices;
    Refusal m_Refusal;
    std::vector<FaceShape> m_Shapes;            ///< in the order of the face list
    std::vector<std::uint32_t> m_RingEnds;      ///< for each vertex, behind its last face
    std::vector<std::uint32_t> m_RingFaces;     ///< places of the faces, vertex by vertex, in ring order
    std::vector<std::uint32_t> m_Candidates;    ///< of the point under way
    std::vector<std::uint32_t> m_LastCandidacy; ///< for each face, the number of the last point that saw it
    std::uint32_t m_nPoint = 0;
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
/// Says    "Calculate footpoint ok..", and how many points have no foot.
/// @param takesPart asked for each index of the cloud
/// @param projected where the feet go as well, by index of the cloud; may be null
FootList CalculateFootPoints(DSSolid& solid, const std::vector<smVec3d>& cloud,
                             const std::function<bool(std::size_t)>& takesPart, FootSearch& search,
                             std::vector<smVec3d>* projected);

/// The nearest to a query, the earliest of equal ones; null in an empty list.
const smVec3d* FindNearestOf(const std::vector<smVec3d>& points, const smVec3d& query);
}
