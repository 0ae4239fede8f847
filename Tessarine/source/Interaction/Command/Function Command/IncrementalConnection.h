#pragma once
#include "FootSearch.h"
#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

namespace tessarine
{
class DSEdge;
class DSHalfEdge;
class DSLoop;
class DSSolid;
class DSVertex;
class MANBrepElementManager;

/// Grows a new mesh over the feet of a cloud on a mesh, triangle by triangle, from one seed outward along a front of
/// open edges. The new solid has one face more than triangles, the outer one, whose loop is the rim of what has been
/// grown; a hole is a part of that rim.
///
/// A copy goes on from the same state. It holds the records of both solids by their addresses: whoever goes on after
/// other operations asks IsModelUnchanged first.
///
/// Needs   The solid of Begin closed and of triangles, as it is and where it is, for as long as the growth goes on.
/// Kept    The candidates of an edge lie around the foot that was connected last, not around the edge. m_nFaces counts
///         the candidates that were found, whether they could be connected or not.
class IncrementalConnection
{
public:
    /// What a triangle may not cost.
    static constexpr double kCostLimit = 1.0;

    /// The lower the better. The first term is large for a sliver, the second for a corner c that is far off.
    static double TriangleCost(const smVec3d& a, const smVec3d& b, const smVec3d& c);

    /// Starts anew.
    /// @param feet those that the faces of the solid list (m_TagList)
    void Begin(MANBrepElementManager* pManager, DSSolid* pSolid, FootList feet);

    /// The first triangle, of the first face with more than three feet of which three can be taken.
    ///
    /// Fails   Reports an assertion, and throws Failure, where no face has such.
    /// Cost    That of SeedProspects for each foot of a face that yields nothing.
    void MakeSeed();

    /// Works on the first edge of the front, which leaves it: adds a triangle beyond it or leaves a hole. Does nothing
    /// where the front is empty.
    ///
    /// Leaves  Normals to CalcNormals.
    /// Cost    The feet around the one that was connected last.
    void ConnectNext();

    /// Normals of the new solid as it stands: those of vertices do not start from what they were. A vertex whose faces
    /// cancel out has none; that is reported, once for all of them.
    void CalcNormals();

    /// Writes the state as text: "data\SmoothEnvionment.data". Ids are signed numbers, and feet are cut to integers.
    ///
    /// Fails   FileError.
    /// @param pointDone of the points of the cloud
    void SaveEnvironment(const std::vector<bool>& pointDone) const;

    /// Whether both solids are still those of this growth, and the faces of the old one have its feet and are where they
    /// were, but for the rounding of what brings it into its cube anew.
    bool IsModelUnchanged() const;

    bool IsFrontEmpty() const { return m_FrontEdges.empty(); }
    const std::deque<DSEdge*>& GetFrontEdges() const { return m_FrontEdges; }
    /// Null before the seed.
    DSSolid* GetNewSolid() const { return m_pNewSolid; }
    DSFace* GetSeedFace() const { return m_pSeedFace; }
    std::int32_t GetFaceCount() const { return m_nFaces; }
    const FootList& GetFeet() const { return m_Feet; }
    const std::vector<std::int32_t>& GetFootVertices() const { return m_FootVertex; }
    const std::vector<DSFace*>& GetNearFaces() const { return m_NearFaces; }
    const std::vector<std::int32_t>& GetCandidates() const { return m_Candidates; }

private:
    bool AreSolidsThere() const;
    bool AreVerticesInPlace() const;
    bool HaveFacesTheirFeet() const;

    using FootIndices = std::vector<std::int32_t>;
    using Seed = std::array<std::int32_t, 3>;

    const smVec3d& PointOf(std::int32_t foot) const { return m_Feet.points[static_cast<std::size_t>(foot)]; }
    std::int32_t& VertexOf(std::int32_t foot) { return m_FootVertex[static_cast<std::size_t>(foot)]; }

    std::vector<smVec3d> PointsOf(const FootIndices& feet) const;
    std::optional<Seed> FindSeed(const DSFace& face) const;
    std::size_t NearestFoot(const smVec3d& point, const FootIndices& feet) const;
    std::int32_t BestThird(const smVec3d& a, const smVec3d& b, const FootIndices& feet) const;
    void BuildSeed(const Seed& seed, const smVec3d& normal);
    DSHalfEdge* FindOpenSide(const DSEdge& edge) const;
    std::int32_t FindCandidate(const DSEdge& edge);
    void GatherNearFeet();
    void BuildCandidates(const DSHalfEdge& open);
    std::size_t CountCandidatesWithVertex() const;
    void ConnectEdge(DSHalfEdge* pOpen, std::int32_t foot);
    void ConnectNewVertex(DSHalfEdge* pOpen, std::int32_t foot);
    bool CloseTriangle(DSHalfEdge* pOpen, const DSVertex& third);

    MANBrepElementManager* m_pManager = nullptr;
    DSSolid* m_pSolid = nullptr;
    std::uint32_t m_nSolidID = 0;
    std::size_t m_nOldFaces = 0;
    std::vector<smVec3d> m_OldPositions; ///< of the solid's vertices
    FootList m_Feet;
    std::vector<std::int32_t> m_FootVertex; ///< for each foot the id of its vertex, or -1
    std::deque<DSEdge*> m_FrontEdges; ///< edges of the new mesh with an open side, first come first served
    std::vector<std::int32_t> m_Candidates; ///< feet for the present step
    std::vector<DSFace*> m_NearFaces;       ///< of the old mesh, around the present edge
    DSSolid* m_pNewSolid = nullptr;
    std::uint32_t m_nNewSolidID = 0;
    DSFace* m_pSeedFace = nullptr;
    DSLoop* m_pOuterLoop = nullptr;
    std::int32_t m_nFaces = 0;
};
}
