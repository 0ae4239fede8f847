#include "IASubLOOPCommand.h"
#include "Capture.h"
#include "Failure.h"
#include "LinksHold.h"
#include "MANSceneManager.h"
#include "MeshWalks.h"
#include "Meshes.h"
#include <gmock/gmock.h>
#include <limits>
#include <map>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

testing::AssertionResult IsAt(const smVec3d& position, double x, double y, double z)
{
    if (position.x == x && position.y == y && position.z == z)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << position.x << ' ' << position.y << ' ' << position.z;
}

/// A scene whose first child has the mesh for a solid.
class LoopSubdivision : public testing::Test
{
protected:
    DSSolid* Show(const IndexedMesh& mesh)
    {
        m_pSolid = LoadQuietly(m_Elements, mesh);
        m_Scene.AppendLeaf(m_pSolid);
        return m_pSolid;
    }

    void Subdivide()
    {
        IASubLOOPCommand command;
        command.SetElementManager(&m_Elements);
        command.SetSceneManager(&m_Scene);
        command.Execute();
    }

    const MANSceneLeaf* GetChild(std::size_t index) const
    {
        return static_cast<const MANSceneLeaf*>(m_Scene.GetRootGroup()->GetChildren().at(index));
    }

    const smVec3d& PositionOf(std::size_t vertex) const
    {
        return m_pSolid->GetVertexList()[vertex]->GetPosition();
    }

    /// How many faces have each number of corners, by that number.
    std::map<int, int> CountFacesByCorners() const
    {
        std::map<int, int> counts;
        for (const DSFace* pFace : m_pSolid->GetFaceList())
        {
            ++counts[static_cast<int>(OuterLoopOf(*pFace).size())];
        }
        return counts;
    }

    MANBrepElementManager m_Elements;
    MANSceneManager m_Scene;
    DSSolid* m_pSolid = nullptr;
};

TEST_F(LoopSubdivision, PullsEachCornerOfACentredTetrahedronToAQuarter)
{
    const IndexedMesh mesh = CentredTetrahedron();
    const DSSolid* pSolid = Show(mesh);
    Subdivide();

    // The neighbours of p sum to -p: 7/16 p + 3/16 (-p) = p / 4.
    for (std::size_t i = 0; i < 4; ++i)
    {
        const smVec3d corner = 0.25 * mesh.positions[i];
        EXPECT_TRUE(IsAt(PositionOf(i), corner.x, corner.y, corner.z));
    }
    EXPECT_EQ(pSolid->GetVertexList().size(), 10U);
    EXPECT_EQ(pSolid->GetEdgeList().size(), 24U);
    EXPECT_EQ(pSolid->GetFaceList().size(), 16U);
    EXPECT_THAT(CountFacesByCorners(), ElementsAre(std::make_pair(3, 16)));
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(LoopSubdivision, SaysBoundaryForEachOpenVertexAndEdgeOfATriangle)
{
    const DSSolid* pSolid = Show(SingleTriangle());
    ConsoleCapture console;
    Subdivide();

    EXPECT_EQ(console.GetText(), "boudary!\nboudary!\nboudary!\nboudary!\nboudary!\nboudary!\n");
    // 3/4 p + (A + B) / 8 with the other two corners as A and B.
    EXPECT_TRUE(IsAt(PositionOf(0), 0.125, 0.125, 0));
    EXPECT_TRUE(IsAt(PositionOf(1), 0.75, 0.125, 0));
    EXPECT_TRUE(IsAt(PositionOf(2), 0.125, 0.75, 0));
    EXPECT_TRUE(IsAt(PositionOf(3), 0.5, 0, 0)) << "the middle of the old edge";
    EXPECT_TRUE(IsAt(PositionOf(4), 0.5, 0.5, 0));
    EXPECT_TRUE(IsAt(PositionOf(5), 0, 0.5, 0));
    EXPECT_EQ(pSolid->GetFaceList().size(), 4U);
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(LoopSubdivision, LeavesTheFirstCornerInTheOldFaceAndTheCentreInTheNewest)
{
    const DSSolid* pSolid = Show(SingleTriangle());
    Subdivide();

    const auto& faces = pSolid->GetFaceList();
    // The snapshot took the vertices 3 to 5; 6, 7, 8 are the middles of 0-1, 1-2 and 2-0.
    EXPECT_THAT(CornerIDsOf(*faces[0]), ElementsAre(8, 0, 6));
    EXPECT_THAT(CornerIDsOf(*faces[1]), ElementsAre(6, 1, 7));
    EXPECT_THAT(CornerIDsOf(*faces[2]), ElementsAre(7, 2, 8));
    EXPECT_THAT(CornerIDsOf(*faces[3]), ElementsAre(8, 6, 7));
    EXPECT_NE(faces[0]->GetMaterial(), nullptr);
    EXPECT_EQ(faces[3]->GetMaterial(), nullptr);
}

TEST_F(LoopSubdivision, WeighsAVertexOfValenceFourWithFiveEighths)
{
    // The poles of an octahedron: the four neighbours of p sum to zero.
    const IndexedMesh mesh = Sphere(0);
    Show(mesh);
    Subdivide();
    for (std::size_t i = 0; i < 6; ++i)
    {
        const smVec3d corner = 0.625 * mesh.positions[i];
        EXPECT_TRUE(IsAt(PositionOf(i), corner.x, corner.y, corner.z));
    }
}

TEST_F(LoopSubdivision, WeighsEachOfFourNeighboursWithThreeThirtySeconds)
{
    IndexedMesh mesh = Sphere(0);
    mesh.positions[1] = smVec3d(0, 33, 0); // a neighbour of vertex 0, moved by 32
    Show(mesh);
    Subdivide();
    EXPECT_TRUE(IsAt(PositionOf(0), 0.625, 3, 0));
}

TEST_F(LoopSubdivision, WeighsEachOfSixNeighboursWithASixteenth)
{
    IndexedMesh mesh = ClosedFan(6);
    for (smVec3d& position : mesh.positions)
    {
        position = smVec3d();
    }
    mesh.positions[0] = smVec3d(8, 0, 0);
    mesh.positions[3] = smVec3d(0, 16, 0);
    Show(mesh);
    Subdivide();
    EXPECT_TRUE(IsAt(PositionOf(0), 5, 1, 0));
}

TEST_F(LoopSubdivision, GivesAClosedVertexOfTwoEdgesFiveEighths)
{
    // Two triangles back to back: n = 2, centre 1 - 6/16, each neighbour 3/16.
    IndexedMesh mesh;
    mesh.positions = {smVec3d(16, 0, 0), smVec3d(0, 16, 0), smVec3d(0, 0, 16)};
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({3, 2, 1});
    const DSSolid* pSolid = Show(mesh);
    Subdivide();
    EXPECT_TRUE(IsAt(PositionOf(0), 10, 3, 3));
    EXPECT_EQ(EulerCharacteristic(*pSolid), 2);
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(LoopSubdivision, ReadsAnOppositeVertexThatAnEarlierSplitHasMade)
{
    // Edge 3 is the diagonal's turn: a quad 0 1 2 3 of the triangles 0 1 2 and 0 2 3, edges in the order
    // 0-1, 1-2, 2-0, 2-3, 3-0. When 2-0 has its turn, half-edge 1 (1 to 2) has been split, so the corner
    // before 2 in the first face is the middle of 1-2 and not vertex 1; in the second face it is vertex 3.
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(8, 0, 0), smVec3d(8, 8, 0), smVec3d(0, 8, 0)};
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({1, 3, 4});
    Show(mesh);
    Subdivide();

    // (3 ((8,8) + (0,0)) + (8,4) + (0,8)) / 8; with all edge points computed first it would be (4,4).
    EXPECT_TRUE(IsAt(PositionOf(6), 4, 4.5, 0));
}

TEST_F(LoopSubdivision, DependsOnTheOrderOfTheEdges)
{
    // The same quad with the diagonal made first.
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(8, 0, 0), smVec3d(8, 8, 0), smVec3d(0, 8, 0)};
    mesh.AddFace({3, 1, 2});
    mesh.AddFace({1, 3, 4});
    Show(mesh);
    Subdivide();
    EXPECT_TRUE(IsAt(PositionOf(4), 4, 4, 0)) << "no edge was split before it";
}

TEST_F(LoopSubdivision, LeavesTwoHiddenSnapshotsAfterTwoRuns)
{
    const IndexedMesh mesh = CentredTetrahedron();
    Show(mesh);
    Subdivide();
    Subdivide();

    ASSERT_EQ(m_Scene.GetRootGroup()->GetChildren().size(), 3U);
    EXPECT_EQ(GetChild(0)->GetSolid(), m_pSolid);
    EXPECT_TRUE(m_pSolid->IsVisible());
    EXPECT_EQ(m_pSolid->GetFaceList().size(), 64U);
    const std::size_t facesOfSnapshot[] = {0, 4, 16};
    for (const std::size_t i : {1U, 2U})
    {
        EXPECT_FALSE(GetChild(i)->GetSolid()->IsVisible());
        EXPECT_TRUE(GetChild(i)->IsVisible()) << "the solid is hidden, not its node";
        EXPECT_EQ(GetChild(i)->GetParent(), m_Scene.GetRootGroup());
        EXPECT_EQ(GetChild(i)->GetSolid()->GetFaceList().size(), facesOfSnapshot[i]);
        EXPECT_TRUE(LinksHold(*GetChild(i)->GetSolid()));
    }
    EXPECT_TRUE(IsAt(GetChild(1)->GetSolid()->GetVertexList()[0]->GetPosition(), 1, 1, 1));
    EXPECT_TRUE(LinksHold(*m_pSolid));
}

TEST_F(LoopSubdivision, CutsAFaceOfFourCornersIntoFourTrianglesAndAQuadrilateral)
{
    const DSSolid* pSolid = Show(QuadCube());
    Subdivide();
    EXPECT_THAT(CountFacesByCorners(), ElementsAre(std::make_pair(3, 24), std::make_pair(4, 6)));
    EXPECT_EQ(EulerCharacteristic(*pSolid), 2);
    EXPECT_TRUE(LinksHold(*pSolid));
    // Valence 3: 7/16 (0,0,0) + 3/16 of the three ends of the axes.
    EXPECT_TRUE(IsAt(PositionOf(0), 0.1875, 0.1875, 0.1875));
}

TEST_F(LoopSubdivision, CutsAFaceOfManyCornersAsAFaceOfFew)
{
    // Two faces of 100 corners, back to back.
    IndexedMesh mesh;
    mesh.positions.resize(100);
    for (int i = 0; i < 200; ++i)
    {
        mesh.indices.push_back(i < 100 ? i + 1 : 200 - i);
    }
    mesh.faceSizes = {100, 100};
    const DSSolid* pSolid = Show(mesh);
    const AssertionCapture zeroNormals;
    Subdivide();
    EXPECT_THAT(CountFacesByCorners(), ElementsAre(std::make_pair(3, 200), std::make_pair(100, 2)));
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(LoopSubdivision, DoesNothingWithoutASolid)
{
    ConsoleCapture console;
    const MessageCapture messages;
    Subdivide();
    m_Scene.AppendLeaf(nullptr);
    Subdivide();

    EXPECT_TRUE(m_Elements.GetSolidArray().empty());
    EXPECT_EQ(m_Scene.GetRootGroup()->GetChildren().size(), 1U);
    EXPECT_EQ(console.GetText(), "");
    EXPECT_THAT(messages.GetTexts(), IsEmpty());
}

TEST_F(LoopSubdivision, DoesNothingWhenTheFirstChildIsAGroup)
{
    MANSceneGroup* pGroup = m_Scene.NewGroup();
    m_Scene.GetRootGroup()->AddChild(pGroup);
    Show(SingleTriangle());
    Subdivide();
    EXPECT_EQ(m_pSolid->GetFaceList().size(), 1U);
}

TEST_F(LoopSubdivision, TakesASolidWithoutFaces)
{
    Show(IndexedMesh());
    Subdivide();
    EXPECT_EQ(m_Scene.GetRootGroup()->GetChildren().size(), 2U);
}

TEST_F(LoopSubdivision, NeedsBothManagers)
{
    const AssertionCapture assertions;
    IASubLOOPCommand command;
    EXPECT_THROW(command.Execute(), AssertionFailure);
    command.SetElementManager(&m_Elements);
    EXPECT_THROW(command.Execute(), AssertionFailure);
}

TEST_F(LoopSubdivision, WorksOnTheSecondSolidOfTheManager)
{
    LoadQuietly(m_Elements, QuadCube());
    Show(CentredTetrahedron());
    ASSERT_EQ(m_pSolid->GetVertexList()[0]->GetID(), 8U) << "ids are no positions";
    Subdivide();
    EXPECT_TRUE(IsAt(PositionOf(0), 0.25, 0.25, 0.25));
    EXPECT_EQ(m_Elements.GetSolidArray()[0]->GetFaceList().size(), 6U);
    EXPECT_TRUE(LinksHold(*m_pSolid));
}

TEST_F(LoopSubdivision, SumsANewVertexNormalOntoTheOldOne)
{
    Show(SingleTriangle());
    m_pSolid->GetVertexList()[0]->GetNormal() = smVec3d(1, 0, 0);
    Subdivide();
    const double half = std::sqrt(0.5);
    EXPECT_NEAR(m_pSolid->GetVertexList()[0]->GetNormal().x, half, 1e-15);
    EXPECT_NEAR(m_pSolid->GetVertexList()[0]->GetNormal().z, half, 1e-15);
    EXPECT_TRUE(IsAt(m_pSolid->GetVertexList()[1]->GetNormal(), 0, 0, 1));
}

TEST_F(LoopSubdivision, LeavesAVertexThatNoFaceUsesWhereItIs)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.positions.emplace_back(9, 9, 9);
    Show(mesh);
    Subdivide();
    EXPECT_TRUE(IsAt(PositionOf(3), 9, 9, 9));
    EXPECT_TRUE(IsAt(PositionOf(0), 0.125, 0.125, 0));
}

TEST_F(LoopSubdivision, SplitsTheEdgesOfBothFansOfABowTie)
{
    // The half-edge of vertex 0 lies in the second triangle, so FindEdge does not see 0-1 of the first.
    const DSSolid* pSolid = Show(BowTie());
    ConsoleCapture console;
    Subdivide();
    EXPECT_THAT(CountFacesByCorners(), ElementsAre(std::make_pair(3, 8)));
    EXPECT_TRUE(LinksHold(*pSolid));
    EXPECT_EQ(console.Count("boudary!"), 5 + 6);
    EXPECT_EQ(console.Count("V1 ID: 0"), 1);
    EXPECT_EQ(console.Count("V2 ID: 1"), 1);
    EXPECT_TRUE(IsAt(PositionOf(0), -0.25, 0, 0)) << "from the rim of the second triangle alone";
}

TEST_F(LoopSubdivision, TakesThreeFacesOnOneEdge)
{
    const DSSolid* pSolid = Show(ThreeTrianglesOnOneEdge());
    Subdivide();
    // The displaced side of the middle face is not split. Its five half-edges make five cuts: two triangles,
    // and three times two corners.
    EXPECT_THAT(CountFacesByCorners(), ElementsAre(std::make_pair(2, 3), std::make_pair(3, 11)));
    EXPECT_EQ(pSolid->GetVertexList().size(), 5U + 7U);
    EXPECT_TRUE(LinksHold(*pSolid, {.allowDisplacedHalfEdges = true, .allowTornEdges = true}));
    Subdivide();
    EXPECT_TRUE(LinksHold(*pSolid, {.allowDisplacedHalfEdges = true, .allowTornEdges = true}));
}

TEST_F(LoopSubdivision, SaysThatABorderExistsWhereAWalkMeetsADisplacedHalfEdge)
{
    // A fourth face beside the middle one: the walk around vertex 0 starts there and comes to half-edge 3.
    IndexedMesh mesh = ThreeTrianglesOnOneEdge();
    mesh.positions.emplace_back(-1, 0, -1);
    mesh.AddFace({4, 1, 6});
    Show(mesh);
    ConsoleCapture console;
    Subdivide();
    EXPECT_EQ(console.GetLines().front(), "Border exist..");
    EXPECT_EQ(console.GetLines().at(1), "boudary!");
}

TEST_F(LoopSubdivision, CutsAFaceThatIsDisplacedOnAllSides)
{
    // Of three equal faces the edges list the first and the last; the sides of the second stay as they are,
    // and its last cut leads from a half-edge to itself.
    IndexedMesh mesh = SingleTriangle();
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({1, 2, 3});
    const DSSolid* pSolid = Show(mesh);
    Subdivide();
    EXPECT_THAT(CountFacesByCorners(),
                ElementsAre(std::make_pair(1, 1), std::make_pair(2, 1), std::make_pair(3, 10)));
    EXPECT_EQ(pSolid->GetVertexList().size(), 6U);
    EXPECT_TRUE(LinksHold(*pSolid, {.allowDisplacedHalfEdges = true, .allowTornEdges = true}));
}

TEST_F(LoopSubdivision, TakesFacesThatRunTheSameWay)
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(0, 1, 0), smVec3d(0, -1, 0)};
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({1, 2, 4});
    const DSSolid* pSolid = Show(mesh);
    Subdivide();
    EXPECT_THAT(CountFacesByCorners(), ElementsAre(std::make_pair(3, 8)));
    EXPECT_EQ(pSolid->GetVertexList().size(), 9U);
    EXPECT_TRUE(LinksHold(*pSolid, {.allowTornEdges = true}));
}

TEST_F(LoopSubdivision, RefusesPositionsThatAreNotFinite)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.positions[1].x = std::numeric_limits<double>::max(); // 3 p is beyond all numbers
    Show(mesh);
    EXPECT_THROW(Subdivide(), Failure);
    for (std::size_t i = 0; i < 3; ++i)
    {
        EXPECT_TRUE(IsAt(PositionOf(i), mesh.positions[i].x, mesh.positions[i].y, mesh.positions[i].z));
    }
}

TEST_F(LoopSubdivision, RefusesAnEdgePointThatIsNotFinite)
{
    // The corners of a flat closed triangle move to finite places, but 3 (a + b) is too large.
    constexpr double kHuge = 4e307;
    IndexedMesh mesh;
    mesh.positions = {smVec3d(kHuge, 0, 0), smVec3d(kHuge, 1, 0), smVec3d(-kHuge, 0, 0)};
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({3, 2, 1});
    Show(mesh);
    EXPECT_THROW(Subdivide(), Failure);
    for (const DSVertex* pVertex : m_pSolid->GetVertexList())
    {
        EXPECT_TRUE(std::isfinite(pVertex->GetPosition().x));
    }
}

TEST_F(LoopSubdivision, RefusesAnEdgeWithoutItsFirstHalfEdge)
{
    Show(SingleTriangle());
    DSEdge* pEdge = m_Elements.CreateEdge();
    m_pSolid->GetEdgeList().push_back(pEdge);
    const AssertionCapture assertions;
    EXPECT_THROW(Subdivide(), AssertionFailure);
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(assertions.GetPaths(),
                ElementsAre("source/Interaction/Command/SubCommand/IASubLOOPCommand.cpp"));
#endif
}

TEST_F(LoopSubdivision, RefusesAFaceOfOneCornerBeforeItChangesAnything)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.AddFace({2});
    Show(mesh);
    const AssertionCapture assertions;
    EXPECT_THROW(Subdivide(), Failure);
    EXPECT_THAT(assertions.GetExpressions(), IsEmpty());
    EXPECT_EQ(m_Elements.GetSolidArray().size(), 1U); // no snapshot
    EXPECT_TRUE(IsAt(PositionOf(1), 1, 0, 0));
}

TEST_F(LoopSubdivision, TakesAFaceOfOneCornerThatNoWalkStartsFrom)
{
    // The triangle comes last, and its half-edges are those of the vertices.
    IndexedMesh mesh;
    mesh.positions = SingleTriangle().positions;
    mesh.AddFace({2});
    mesh.AddFace({1, 2, 3});
    Show(mesh);
    const AssertionCapture zeroNormals;
    Subdivide();
    // Four triangles, the single corner, and the one that its cut has made.
    EXPECT_THAT(CountFacesByCorners(), ElementsAre(std::make_pair(1, 2), std::make_pair(3, 4)));
    EXPECT_TRUE(IsAt(PositionOf(1), 0.75, 0.125, 0));
}

TEST_F(LoopSubdivision, SubdividesAgainWhatItCutToASingleCorner)
{
    IndexedMesh mesh = SingleTriangle(); // three times the same, see above
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({1, 2, 3});
    const DSSolid* pSolid = Show(mesh);
    Subdivide();
    ASSERT_EQ(CountFacesByCorners()[1], 1);
    EXPECT_NO_THROW(Subdivide());
    EXPECT_TRUE(LinksHold(*pSolid, {.allowDisplacedHalfEdges = true, .allowTornEdges = true}));
}

TEST_F(LoopSubdivision, CutsAFaceOfTwoCornersIntoThreeOfTwoOrThree)
{
    // Both sides lie along one edge, so that one split serves both: 1, the middle and 2 make a ring of four.
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(16, 0, 0)};
    mesh.AddFace({1, 2});
    const DSSolid* pSolid = Show(mesh);
    const AssertionCapture zeroNormals;
    Subdivide();
    EXPECT_THAT(CountFacesByCorners(), ElementsAre(std::make_pair(2, 1), std::make_pair(3, 2)));
    EXPECT_EQ(pSolid->GetVertexList().size(), 3U);
    EXPECT_TRUE(IsAt(PositionOf(0), 3, 0, 0)) << "one neighbour: 13/16 * 0 + 3/16 * 16";
    EXPECT_TRUE(IsAt(PositionOf(1), 13, 0, 0));
    EXPECT_TRUE(IsAt(PositionOf(2), 8, 0, 0)) << "the corners opposite to the edge are its own ends";
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(LoopSubdivision, NeedsTheRootOfTheScene)
{
    Show(SingleTriangle());
    m_Scene.DeleteGroup(m_Scene.GetRootGroup()->GetID());
    const AssertionCapture assertions;
    EXPECT_THROW(Subdivide(), AssertionFailure);
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(assertions.GetExpressions(), ElementsAre("pRoot != nullptr"));
#endif
}
}
}
