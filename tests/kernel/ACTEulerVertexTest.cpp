#include "ACTEulerTest.h"

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(ACTEulerTest, MakesASolidOfOneLoneHalfEdge)
{
    m_Euler.MVFS(m_nSolid, m_nFace, m_nVertex, smVec3d(1, 2, 3));

    EXPECT_EQ(m_nSolid, 0xE0000000U);
    EXPECT_EQ(m_nFace, 0xC0000000U);
    EXPECT_EQ(m_nVertex, 0U);
    EXPECT_THAT(IndicesOf(S(0)->GetFaceList()), ElementsAre(0));
    EXPECT_THAT(IndicesOf(S(0)->GetVertexList()), ElementsAre(0));
    EXPECT_THAT(IndicesOf(S(0)->GetEdgeList()), IsEmpty());
    EXPECT_EQ(F(0)->GetSolid(), S(0));
    EXPECT_EQ(V(0)->GetPosition().z, 3);
    EXPECT_EQ(V(0)->GetHalfEdge(), H(0));
    EXPECT_EQ(H(0)->GetEdge(), nullptr);
    EXPECT_THAT(RingOf(L(0)), ElementsAre(0));
    EXPECT_TRUE(LinksHold(*S(0), {.allowOneVertexLoops = true}));
}

TEST_F(ACTEulerTest, DrawsAWireOfTwoStrutsInOneLoop)
{
    m_Euler.MVFS(m_nSolid, m_nFace, m_nVertex, smVec3d(0, 0, 0));
    m_Euler.MEVStrut(m_nSolid, m_nFace, 0, m_nVertex, smVec3d(1, 0, 0));
    ASSERT_EQ(m_nVertex, 1U);
    m_Euler.MEVStrut(m_nSolid, m_nFace, 1, m_nVertex, smVec3d(2, 0, 0));
    ASSERT_EQ(m_nVertex, 2U);

    // The lone half-edge 0 became the first side of edge 0. The second strut stands before half-edge 1.
    EXPECT_THAT(RingOf(L(0)), ElementsAre(0, 2, 3, 1));
    EXPECT_THAT(CornersOf(L(0)), ElementsAre(0, 1, 2, 1));
    EXPECT_EQ(SidesOf(E(0)), std::make_pair(0, 1));
    EXPECT_EQ(SidesOf(E(1)), std::make_pair(2, 3));
    EXPECT_EQ(V(0)->GetHalfEdge(), H(0));
    EXPECT_EQ(V(1)->GetHalfEdge(), H(1));
    EXPECT_EQ(V(2)->GetHalfEdge(), H(3));
    EXPECT_THAT(IndicesOf(S(0)->GetEdgeList()), ElementsAre(0, 1));
    EXPECT_THAT(IndicesOf(S(0)->GetVertexList()), ElementsAre(0, 1, 2));
    EXPECT_TRUE(LinksHold(*S(0)));
}

TEST_F(ACTEulerTest, GivesTheFanBetweenTwoHalfEdgesToTheNewVertex)
{
    // Around the centre 0 the faces 0 to 3 have the rim vertices (1,2), (2,3), (3,4), (4,1), and the
    // half-edges 0, 3, 6, 9 leave it. Turning by the next of the mate goes 0, 9, 6, 3.
    const DSSolid* pSolid = Load(ClosedFan(4));
    const std::uint32_t fan = ElementKind::Face;
    m_Euler.MEV(pSolid->GetID(), fan | 0, fan | 2, 0, 1, 3, m_nVertex, smVec3d(0, 0, 1));

    ASSERT_EQ(m_nVertex, 5U);
    EXPECT_EQ(H(0)->GetVertex(), V(5));
    EXPECT_EQ(H(9)->GetVertex(), V(5));
    EXPECT_EQ(H(6)->GetVertex(), V(0));
    EXPECT_EQ(H(3)->GetVertex(), V(0));
    EXPECT_EQ(SidesOf(E(8)), std::make_pair(12, 13));
    EXPECT_EQ(H(12)->GetVertex(), V(0)) << "the side before half-edge 0 runs from old to new";
    EXPECT_EQ(H(12)->GetNext(), H(0));
    EXPECT_EQ(H(13)->GetVertex(), V(5));
    EXPECT_EQ(H(13)->GetNext(), H(6));
    EXPECT_EQ(V(5)->GetHalfEdge(), H(13));
    EXPECT_EQ(V(0)->GetHalfEdge(), H(6));
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, RefusesToTurnAroundAVertexOverAHole)
{
    // In the open fan the half-edges 0, 3, 6 leave the centre; turning from 3 leads to 0 and then out.
    DSSolid* pSolid = Load(OpenFan(3));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LMEV(pSolid, H(3), H(6), m_nVertex, smVec3d()); }));
    m_Euler.LMEV(pSolid, H(6), H(0), m_nVertex, smVec3d());
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, RefusesAVertexMadeFromTwoDifferentOnes)
{
    DSSolid* pSolid = Load(SingleTriangle());
    EXPECT_TRUE(IsRefused([&] { m_Euler.LMEV(pSolid, H(0), H(1), m_nVertex, smVec3d()); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LMEV(pSolid, H(0), nullptr, m_nVertex, smVec3d()); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LMEV(nullptr, H(0), H(0), m_nVertex, smVec3d()); }));
}

TEST_F(ACTEulerTest, RefusesAnEdgeBetweenFacesOfTwoSolids)
{
    const DSSolid* pFirst = Load(SingleTriangle());
    Load(SingleTriangle());
    EXPECT_TRUE(IsRefused(
        [&] {
            m_Euler.MEV(pFirst->GetID(), ElementKind::Face | 0, ElementKind::Face | 1, 0, 1, 1, m_nVertex,
                        {});
        }));
}

TEST_F(ACTEulerTest, SplitsABoundaryEdgeInTwo)
{
    const DSSolid* pSolid = Load(SingleTriangle());
    m_Euler.LSEMV(H(0), nullptr, m_nVertex, smVec3d(0.5, 0, 0));

    ASSERT_EQ(m_nVertex, 3U);
    EXPECT_THAT(RingOf(L(0)), ElementsAre(0, 3, 1, 2));
    EXPECT_THAT(CornersOf(L(0)), ElementsAre(0, 3, 1, 2));
    EXPECT_EQ(SidesOf(E(0)), std::make_pair(3, -1)) << "the old edge keeps the far half";
    EXPECT_EQ(SidesOf(E(3)), std::make_pair(0, -1));
    EXPECT_EQ(H(0)->GetEdge(), E(3));
    EXPECT_EQ(V(3)->GetHalfEdge(), H(3));
    EXPECT_EQ(V(0)->GetHalfEdge(), H(0));
    EXPECT_THAT(IndicesOf(pSolid->GetEdgeList()), ElementsAre(0, 1, 2, 3));
    EXPECT_THAT(IndicesOf(pSolid->GetVertexList()), ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(m_Manager.FindEdge(0, 3), E(3));
    EXPECT_EQ(m_Manager.FindEdge(3, 1), E(0));
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, SplitsAnInnerEdgeSoThatItsSidesChangeThemselves)
{
    // Two triangles 0 1 2 and 1 0 3: half-edges 0 (0 to 1) and 3 (1 to 0) share edge 0.
    IndexedMesh mesh;
    mesh.positions.resize(4);
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({2, 1, 4});
    const DSSolid* pSolid = Load(mesh);
    ASSERT_EQ(SidesOf(E(0)), std::make_pair(0, 3));

    m_Euler.LSEMV(H(0), H(3), m_nVertex, smVec3d());

    ASSERT_EQ(m_nVertex, 4U);
    EXPECT_THAT(CornersOf(L(0)), ElementsAre(0, 4, 1, 2));
    EXPECT_THAT(CornersOf(L(1)), ElementsAre(1, 4, 0, 3));
    EXPECT_THAT(RingOf(L(0)), ElementsAre(0, 6, 1, 2));
    EXPECT_THAT(RingOf(L(1)), ElementsAre(3, 7, 4, 5));
    EXPECT_EQ(SidesOf(E(0)), std::make_pair(6, 3));
    EXPECT_EQ(SidesOf(E(5)), std::make_pair(0, 7));
    EXPECT_EQ(V(4)->GetHalfEdge(), H(6));
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, SplitsTheEdgeBetweenTwoVerticesOfAFace)
{
    const DSSolid* pSolid = Load(SingleTriangle());
    m_Euler.SEMV(pSolid->GetID(), F(0)->GetID(), 1, 2, m_nVertex, smVec3d(7, 0, 0));
    EXPECT_EQ(m_nVertex, 3U);
    EXPECT_EQ(V(3)->GetPosition().x, 7);
    EXPECT_THAT(CornersOf(L(0)), ElementsAre(0, 1, 3, 2));
}

TEST_F(ACTEulerTest, RefusesToSplitAnEdgeThatIsNotThere)
{
    const DSSolid* pSolid = Load(SingleTriangle());
    const std::uint32_t face = F(0)->GetID();
    Load(SingleTriangle());
    EXPECT_TRUE(IsRefused([&] { m_Euler.SEMV(pSolid->GetID(), face, 0, 4, m_nVertex, smVec3d()); }));

    const AssertionCapture assertions;
    ConsoleCapture console;
    EXPECT_THROW(m_Euler.SEMV(pSolid->GetID(), face, 0, 4, m_nVertex, smVec3d()), AssertionFailure);
    EXPECT_THAT(console.GetLines(), ElementsAre("V1 ID: 0", "V2 ID: 4"));
}

TEST_F(ACTEulerTest, RefusesToSplitAnEdgeInAnyFaceButThatOfItsFirstHalfEdge)
{
    IndexedMesh mesh;
    mesh.positions.resize(4);
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({2, 1, 4});
    const DSSolid* pSolid = Load(mesh);
    EXPECT_TRUE(IsRefused([&] { m_Euler.SEMV(pSolid->GetID(), F(1)->GetID(), 0, 1, m_nVertex, {}); }));
    m_Euler.SEMV(pSolid->GetID(), F(0)->GetID(), 0, 1, m_nVertex, {});
}

TEST_F(ACTEulerTest, RefusesToSplitAnEdgeOfAnotherSolid)
{
    const DSSolid* pFirst = Load(SingleTriangle());
    Load(SingleTriangle());
    EXPECT_TRUE(IsRefused([&] { m_Euler.SEMV(pFirst->GetID(), F(1)->GetID(), 3, 4, m_nVertex, {}); }));
}

TEST_F(ACTEulerTest, KillsAnEdgeAndAVertexAfterAStrut)
{
    const DSSolid* pSolid = Load(SingleTriangle());
    m_Euler.MEVStrut(pSolid->GetID(), F(0)->GetID(), 0, m_nVertex, {});
    ASSERT_EQ(V(0)->GetHalfEdge(), H(0));
    m_Euler.KEV(pSolid->GetID(), F(0)->GetID(), 0, 3);

    EXPECT_EQ(m_Manager.GetVertexArray()[3], nullptr);
    EXPECT_EQ(m_Manager.GetEdgeArray()[3], nullptr);
    EXPECT_EQ(V(0)->GetHalfEdge(), H(0));
    EXPECT_THAT(RingOf(L(0)), ElementsAre(2, 0, 1));
    EXPECT_THAT(IndicesOf(pSolid->GetVertexList()), ElementsAre(0, 1, 2));
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, ReaimsTheHalfEdgeOfTheVertexThatStays)
{
    // A single edge: killing one end leaves the lone half-edge of the other.
    m_Euler.MVFS(m_nSolid, m_nFace, m_nVertex, {});
    m_Euler.MEVStrut(m_nSolid, m_nFace, 0, m_nVertex, {});
    m_Euler.KEV(m_nSolid, m_nFace, 1, 0);

    EXPECT_THAT(IndicesOf(S(0)->GetVertexList()), ElementsAre(1));
    EXPECT_EQ(V(1)->GetHalfEdge(), H(1));
    EXPECT_EQ(H(1)->GetEdge(), nullptr);
    EXPECT_THAT(RingOf(L(0)), ElementsAre(1));
    EXPECT_TRUE(LinksHold(*S(0), {.allowOneVertexLoops = true}));
}

TEST_F(ACTEulerTest, CollapsesAnEdgeOfAClosedMesh)
{
    const DSSolid* pSolid = Load(Sphere(0));
    DSHalfEdge* h = m_Euler.FindHalfEdge(F(0), 0, 1);
    m_Euler.LKEV(S(0), h, h->GetTwin());

    EXPECT_EQ(pSolid->GetVertexList().size(), 5U);
    EXPECT_EQ(pSolid->GetEdgeList().size(), 11U);
    EXPECT_EQ(CornersOf(L(0)).size(), 2U) << "the two faces beside the edge are left with two corners";
    EXPECT_EQ(V(0)->GetValence(), 6) << "4 + 4 - 2";
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, RefusesToKillAVertexOnAHole)
{
    const DSSolid* pSolid = Load(OpenFan(2));
    // Vertices 0 and 2 share the inner edge, and both lie on the rim.
    EXPECT_TRUE(IsRefused([&] { m_Euler.KEV(pSolid->GetID(), F(1)->GetID(), 0, 2); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.KEV(pSolid->GetID(), F(0)->GetID(), 2, 0); }));
}

TEST_F(ACTEulerTest, RefusesToKillAVertexWhoseHalfEdgeLiesInAnotherFan)
{
    // Two tetrahedra that meet in vertex 0, whose half-edge lies in the second.
    IndexedMesh mesh;
    mesh.positions.resize(7);
    for (const int k : {0, 3})
    {
        mesh.AddFace({1, k + 3, k + 2});
        mesh.AddFace({1, k + 2, k + 4});
        mesh.AddFace({k + 2, k + 3, k + 4});
        mesh.AddFace({k + 3, 1, k + 4});
    }
    const DSSolid* pSolid = Load(mesh);
    EXPECT_TRUE(IsRefused([&] { m_Euler.KEV(pSolid->GetID(), F(0)->GetID(), 1, 0); }));
}
}
}
