#include "Capture.h"
#include "LinksHold.h"
#include "Meshes.h"
#include <cmath>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
void ExpectNear(const smVec3d& actual, const smVec3d& expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-12);
    EXPECT_NEAR(actual.y, expected.y, 1e-12);
    EXPECT_NEAR(actual.z, expected.z, 1e-12);
}

DSVertex* VertexAt(DSSolid* solid, std::size_t place)
{
    return solid->GetVertexList()[place];
}

DSHalfEdge* FirstHalfEdge(DSSolid* solid, std::size_t face)
{
    return solid->GetFaceList()[face]->GetLoopList()[0]->GetHalfEdge();
}

class Records : public testing::Test
{
protected:
    DSSolid* Load(const IndexedMesh& mesh) { return LoadQuietly(m_Manager, mesh); }

    MANBrepElementManager m_Manager;
    ConsoleCapture m_Console;
};
}

TEST_F(Records, AreMadeAsTheTablesSay)
{
    const DSVertex vertex;
    EXPECT_EQ(vertex.GetHalfEdge(), nullptr);
    ExpectNear(vertex.GetPosition(), smVec3d(0, 0, 0));
    ExpectNear(vertex.GetNormal(), smVec3d(0, 0, 0));
    EXPECT_FALSE(vertex.IsSelected());
    const DSFace face;
    EXPECT_EQ(face.GetTag(), -1);
    EXPECT_EQ(face.GetMaterial(), nullptr);
    EXPECT_TRUE(face.GetTagList().empty());
    EXPECT_TRUE(face.GetLoopList().empty());
    EXPECT_EQ(face.GetSolid(), nullptr);
    ExpectNear(face.GetNormal(), smVec3d(0, 0, 0));
    const DSEdge edge;
    EXPECT_FALSE(edge.GetHighlight() || edge.GetSplit() || edge.IsBoundary() || edge.IsRepeated());
    EXPECT_EQ(edge.GetSplitVertex(), 0);
    EXPECT_EQ(edge.GetHalfEdge1(), nullptr);
    EXPECT_EQ(edge.GetHalfEdge2(), nullptr);
    const DSLoop loop;
    EXPECT_EQ(loop.GetHalfEdge(), nullptr);
    EXPECT_EQ(loop.GetFace(), nullptr);
    const DSSolid solid;
    EXPECT_TRUE(solid.IsVisible());
    EXPECT_EQ(solid.GetMaterial(), nullptr);
    EXPECT_TRUE(solid.GetVertexList().empty());
    EXPECT_TRUE(solid.GetFaceList().empty());
    EXPECT_TRUE(solid.GetEdgeList().empty());
}

TEST_F(Records, HalfEdgesAreMadeWithoutLinks)
{
    const DSHalfEdge halfEdge;
    EXPECT_EQ(halfEdge.GetPrev(), nullptr);
    EXPECT_EQ(halfEdge.GetNext(), nullptr);
    EXPECT_EQ(halfEdge.GetVertex(), nullptr);
    EXPECT_EQ(halfEdge.GetEdge(), nullptr);
    EXPECT_EQ(halfEdge.GetLoop(), nullptr);
    EXPECT_EQ(halfEdge.GetTexCoord().x, 0.0F);
    EXPECT_EQ(halfEdge.GetTexCoord().y, 0.0F);
    EXPECT_FALSE(halfEdge.IsSelected());
}

TEST_F(Records, TwinIsTheOtherHalfEdgeOfTheEdge)
{
    DSSolid* pSolid = Load(Tetrahedron());
    for (DSEdge* pEdge : pSolid->GetEdgeList())
    {
        EXPECT_EQ(pEdge->GetHalfEdge1()->GetTwin(), pEdge->GetHalfEdge2());
        EXPECT_EQ(pEdge->GetHalfEdge2()->GetTwin(), pEdge->GetHalfEdge1());
    }
}

TEST_F(Records, TwinOfABoundaryHalfEdgeIsNullWithoutAWord)
{
    EXPECT_EQ(FirstHalfEdge(Load(SingleTriangle()), 0)->GetTwin(), nullptr);
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(Records, TwinComparesIDsNotPointers)
{
    DSHalfEdge first;
    DSHalfEdge second;
    DSHalfEdge sameID;
    DSEdge edge;
    first.SetID(1);
    second.SetID(2);
    sameID.SetID(2);
    edge.GetHalfEdge1() = &first;
    edge.GetHalfEdge2() = &second;
    sameID.GetEdge() = &edge;
    EXPECT_EQ(sameID.GetTwin(), &first);
}

TEST_F(Records, TwinOfAHalfEdgeThatItsEdgeDoesNotListIsNullAndSaidSo)
{
    DSSolid* pSolid = Load(ThreeTrianglesOnOneEdge());
    // Face 3 took the place of face 2 beside face 1 on the edge 1-2.
    DSHalfEdge* pDisplaced = FirstHalfEdge(pSolid, 1);
    EXPECT_EQ(pDisplaced->GetTwin(), nullptr);
    EXPECT_EQ(m_Console.GetText(), "Border exist..\n");
}

TEST_F(Records, TwinNeedsAnEdge)
{
    const AssertionCapture assertions;
    EXPECT_THROW(DSHalfEdge().GetTwin(), AssertionFailure);
#if TESSARINE_ASSERTIONS
    ASSERT_EQ(assertions.GetPaths().size(), 1U);
    EXPECT_EQ(assertions.GetPaths()[0], "source/Data Struct/DSBrep.h"); // GetTwin is inline
#endif
}

TEST_F(Records, TwinNeedsTheFirstHalfEdgeOfTheEdge)
{
    const AssertionCapture assertions;
    DSEdge edge;
    DSHalfEdge halfEdge;
    halfEdge.GetEdge() = &edge;
    EXPECT_THROW(halfEdge.GetTwin(), AssertionFailure);
}

TEST_F(Records, ValenceInASingleTriangleIsOneFaceAndOne)
{
    DSSolid* pSolid = Load(SingleTriangle());
    for (DSVertex* pVertex : pSolid->GetVertexList())
    {
        EXPECT_EQ(pVertex->GetValence(), 2);
    }
}

TEST_F(Records, ValenceOfAnInteriorVertexIsItsFaces)
{
    EXPECT_EQ(VertexAt(Load(ClosedFan(6)), 0)->GetValence(), 6);
    DSSolid* pTorus = Load(Torus(5, 4));
    for (DSVertex* pVertex : pTorus->GetVertexList())
    {
        EXPECT_EQ(pVertex->GetValence(), 6);
    }
}

TEST_F(Records, ValenceOfAnOpenVertexIsItsEdgesWhereverTheWalkStarts)
{
    DSSolid* pSolid = Load(OpenFan(5));
    DSVertex* pHub = VertexAt(pSolid, 0);
    for (std::size_t face = 0; face < 5; ++face)
    {
        pHub->GetHalfEdge() = FirstHalfEdge(pSolid, face);
        EXPECT_EQ(pHub->GetValence(), 6);
    }
}

TEST_F(Records, ValenceNeedsAHalfEdge)
{
    const AssertionCapture assertions;
    EXPECT_THROW(DSVertex().GetValence(), AssertionFailure);
#if TESSARINE_ASSERTIONS
    EXPECT_EQ(assertions.GetPaths(), std::vector<std::string>{"source/Data Struct/DSBrep.cpp"});
#endif
}

TEST_F(Records, VertexNormalNeedsAHalfEdge)
{
    const AssertionCapture assertions;
    EXPECT_THROW(DSVertex().CalcNormal(), AssertionFailure);
#if TESSARINE_ASSERTIONS
    EXPECT_EQ(assertions.GetPaths(), std::vector<std::string>{"source/Data Struct/DSBrep.cpp"});
#endif
}

TEST_F(Records, FaceNormalAndCentroidNeedALoopOfCorners)
{
    const AssertionCapture assertions;
    EXPECT_THROW(DSFace().CalcNormal(), AssertionFailure);
    EXPECT_THROW(DSFace().CalcCentroid(), AssertionFailure);
    DSFace face;
    DSLoop loop; // no half-edge
    face.GetLoopList().push_back(&loop);
    EXPECT_THROW(face.CalcNormal(), AssertionFailure);
    EXPECT_THROW(face.CalcCentroid(), AssertionFailure);
#if TESSARINE_ASSERTIONS
    EXPECT_EQ(assertions.GetPaths(), std::vector<std::string>(4, "source/Data Struct/DSBrep.cpp"));
#endif
}

TEST_F(Records, FaceNormalIsTheUnitNormalOfTheFirstThreeCorners)
{
    DSSolid* pSolid = Load(QuadCube());
    ExpectNear(pSolid->GetFaceList()[0]->CalcNormal(), smVec3d(0, 0, -1));
    ExpectNear(pSolid->GetFaceList()[5]->CalcNormal(), smVec3d(1, 0, 0));
    ExpectNear(pSolid->GetFaceList()[5]->GetNormal(), smVec3d(1, 0, 0));
}

TEST_F(Records, FaceNormalOfCollinearCornersStaysZeroAndRaisesNothing)
{
    const AssertionCapture assertions;
    DSSolid* pSolid = Load(DegenerateTriangle());
    ExpectNear(pSolid->GetFaceList()[0]->CalcNormal(), smVec3d(0, 0, 0));
    EXPECT_TRUE(assertions.GetExpressions().empty());
}

TEST_F(Records, FaceNormalIsNotNormalisedBelowTheTolerance)
{
    IndexedMesh mesh = SingleTriangle();
    const auto calcWithSide = [&](double side)
    {
        mesh.positions[1] = smVec3d(side, 0, 0);
        return Load(mesh)->GetFaceList()[0]->CalcNormal().z;
    };
    // (side, 0, 0) x (-side, 1, 0) has z = side.
    EXPECT_EQ(calcWithSide(0.5e-10), 0.5e-10);
    EXPECT_EQ(calcWithSide(1e-10), 1.0); // strictly less is near zero
}

TEST_F(Records, VertexNormalOfACollinearFaceFailsItsNormalisation)
{
    const AssertionCapture assertions;
    DSSolid* pSolid = Load(DegenerateTriangle());
    pSolid->GetFaceList()[0]->CalcNormal();
    const smVec3d normal = VertexAt(pSolid, 0)->CalcNormal();
    EXPECT_TRUE(std::isnan(normal.x)); // zero divided by zero
#if TESSARINE_ASSERTIONS
    EXPECT_EQ(assertions.GetExpressions(), std::vector<std::string>{"t > smVec3d_zero"});
#endif
}

TEST_F(Records, CentroidIsTheMeanOfTheCorners)
{
    DSSolid* pSolid = Load(QuadCube());
    ExpectNear(pSolid->GetFaceList()[1]->CalcCentroid(), smVec3d(0.5, 0.5, 1));
    ExpectNear(Load(SingleTriangle())->GetFaceList()[0]->CalcCentroid(), smVec3d(1.0 / 3, 1.0 / 3, 0));
}

TEST_F(Records, VertexNormalsOfACentredTetrahedronPointToItsCorners)
{
    DSSolid* pSolid = Load(CentredTetrahedron());
    pSolid->CalcNormals();
    for (DSVertex* pVertex : pSolid->GetVertexList())
    {
        ExpectNear(pVertex->GetNormal(), pVertex->GetPosition() * (1 / std::sqrt(3.0)));
    }
}

TEST_F(Records, ASecondCalcNormalsAddsToTheUnitNormals)
{
    // Corner 2 lies in two faces: the flat one and a steep one.
    IndexedMesh mesh = SingleTriangle();
    mesh.positions.emplace_back(1, 1, 5);
    mesh.AddFace({2, 4, 3});
    DSSolid* pSolid = Load(mesh);
    pSolid->CalcNormals();
    const smVec3d first = VertexAt(pSolid, 1)->GetNormal();
    const smVec3d faces = pSolid->GetFaceList()[0]->GetNormal() + pSolid->GetFaceList()[1]->GetNormal();
    pSolid->CalcNormals();
    smVec3d expected = first + faces;
    expected.Normalize();
    ExpectNear(VertexAt(pSolid, 1)->GetNormal(), expected);
    ExpectNear(pSolid->GetFaceList()[0]->GetNormal(), smVec3d(0, 0, 1));
}

TEST_F(Records, CalcNormalsSkipsAVertexThatNoFaceUses)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.positions.emplace_back(5, 5, 5);
    DSSolid* pSolid = Load(mesh);
    pSolid->CalcNormals();
    ExpectNear(VertexAt(pSolid, 3)->GetNormal(), smVec3d(0, 0, 0));
    ExpectNear(VertexAt(pSolid, 0)->GetNormal(), smVec3d(0, 0, 1));
}

TEST_F(Records, CalcNormalsSkipsAVertexOfAFaceWithOneCorner)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.AddFace({3});
    const AssertionCapture assertions;
    DSSolid* pSolid = Load(mesh);
    EXPECT_NO_THROW(pSolid->CalcNormals());
    ExpectNear(VertexAt(pSolid, 2)->GetNormal(), smVec3d(0, 0, 0));
    EXPECT_TRUE(assertions.GetExpressions().empty());
}

TEST_F(Records, SetMaterialReachesAllFacesAndTheSolid)
{
    DSSolid* pSolid = Load(Tetrahedron());
    DSMaterial material;
    pSolid->SetMaterial(&material);
    EXPECT_EQ(pSolid->GetMaterial(), &material);
    for (DSFace* pFace : pSolid->GetFaceList())
    {
        EXPECT_EQ(pFace->GetMaterial(), &material);
    }
}

TEST_F(Records, AWalkOverContradictingLinksEnds)
{
    const AssertionCapture assertions;
    DSSolid* pSolid = Load(ClosedFan(6));
    DSVertex* pHub = VertexAt(pSolid, 0);
    // The walk gets into the other five faces and never back into the one that it starts from.
    DSHalfEdge* pStart = pHub->GetHalfEdge();
    DSHalfEdge* pSecond = pStart->GetTwin()->GetNext();
    DSHalfEdge* pLast = pStart->GetPrev()->GetTwin();
    pLast->GetTwin()->GetNext() = pSecond;
    EXPECT_THROW(pHub->GetValence(), AssertionFailure);
    EXPECT_THROW(pHub->CalcNormal(), AssertionFailure);
}

TEST_F(Records, ACircleThatNeverComesBackIsRefused)
{
    const AssertionCapture assertions;
    DSSolid* pSolid = Load(QuadCube());
    DSHalfEdge* pStart = FirstHalfEdge(pSolid, 0);
    pStart->GetPrev()->GetNext() = pStart->GetNext();
    EXPECT_THROW(pSolid->GetFaceList()[0]->CalcCentroid(), AssertionFailure);
    EXPECT_THROW(pSolid->CheckTopology(), AssertionFailure);
}

TEST_F(Records, LinksOfAllLittleMeshesHold)
{
    for (const IndexedMesh& mesh :
         {SingleTriangle(), Tetrahedron(), CentredTetrahedron(), QuadCube(), TriangleCube(), OpenFan(4),
          ClosedFan(5), Grid(3), Sphere(2), Torus(4, 3), BowTie(), DegenerateTriangle()})
    {
        EXPECT_TRUE(LinksHold(*Load(mesh)));
    }
    LinkRules rules;
    EXPECT_FALSE(LinksHold(*Load(ThreeTrianglesOnOneEdge()), rules));
    rules.allowDisplacedHalfEdges = true;
    rules.allowSameDirection = true;
    EXPECT_TRUE(LinksHold(*Load(ThreeTrianglesOnOneEdge()), rules));
}

TEST_F(Records, ClosedMeshesHaveTheirEulerCharacteristic)
{
    EXPECT_EQ(EulerCharacteristic(*Load(Sphere(2))), 2);
    EXPECT_EQ(EulerCharacteristic(*Load(Torus(4, 3))), 0);
    EXPECT_EQ(EulerCharacteristic(*Load(Grid(3))), 1);
}

TEST_F(Records, TheLinkCheckerNamesWhatIsBroken)
{
    DSSolid* pSolid = Load(Tetrahedron());
    pSolid->GetVertexList()[2]->GetHalfEdge() = pSolid->GetVertexList()[1]->GetHalfEdge();
    const auto result = LinksHold(*pSolid);
    EXPECT_FALSE(result);
    EXPECT_STREQ(result.message(),
                 "broken link at element 0x00000002: vertex.m_pHalfEdge.m_pVertex is the vertex");
}

TEST_F(Records, TheLinkCheckerDemandsTheHalfEdgeOfAVertexThatIsUsed)
{
    DSSolid* pSolid = Load(Tetrahedron());
    pSolid->GetVertexList()[2]->GetHalfEdge() = nullptr;
    const auto result = LinksHold(*pSolid);
    EXPECT_FALSE(result);
    EXPECT_STREQ(result.message(), "broken link at element 0x00000002: vertex.m_pHalfEdge is not null where "
                                   "half-edges start at it");
}

TEST_F(Records, TheLinkCheckerDemandsTheMarkOfARepeatedEdge)
{
    DSSolid* pSolid = Load(ThreeTrianglesOnOneEdge());
    pSolid->GetEdgeList()[0]->SetRepeated(false);
    EXPECT_FALSE(LinksHold(*pSolid, {.allowDisplacedHalfEdges = true, .allowSameDirection = true}));
}
}
