#include "ACTEulerTest.h"

namespace tessarine
{
namespace
{
using testing::ElementsAre;

TEST_F(ACTEulerTest, CutsAFaceBetweenTwoCorners)
{
    IndexedMesh mesh;
    mesh.positions.resize(4);
    mesh.AddFace({1, 2, 3, 4});
    DSSolid* pSolid = Load(mesh);
    m_Euler.LMEF(pSolid, H(1), H(3), m_nNewFace);

    // The way from corner 1 to corner 3 goes to the new face.
    EXPECT_EQ(m_nNewFace, F(1)->GetID());
    EXPECT_THAT(RingOf(L(1)), ElementsAre(1, 2, 4));
    EXPECT_THAT(CornersOf(L(1)), ElementsAre(1, 2, 3));
    EXPECT_THAT(RingOf(L(0)), ElementsAre(3, 0, 5));
    EXPECT_THAT(CornersOf(L(0)), ElementsAre(3, 0, 1));
    EXPECT_EQ(SidesOf(E(4)), std::make_pair(4, 5));
    EXPECT_EQ(F(1)->GetSolid(), pSolid);
    EXPECT_EQ(L(1)->GetFace(), F(1));
    EXPECT_THAT(IndicesOf(pSolid->GetFaceList()), ElementsAre(0, 1));
    EXPECT_THAT(IndicesOf(pSolid->GetEdgeList()), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, CutsAFaceBetweenVerticesAndBetweenHalfEdges)
{
    IndexedMesh mesh;
    mesh.positions.resize(5);
    mesh.AddFace({1, 2, 3, 4, 5});
    DSSolid* pSolid = Load(mesh);
    m_Euler.MEF(pSolid->GetID(), F(0)->GetID(), m_nNewFace, 0, 2);
    EXPECT_THAT(CornersOf(F(1)->GetLoopList()[0]), ElementsAre(0, 1, 2));
    m_Euler.MEF4(pSolid->GetID(), F(0)->GetID(), m_nNewFace, 2, 3, 4, 0);
    EXPECT_THAT(CornersOf(F(2)->GetLoopList()[0]), ElementsAre(2, 3, 4));
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, RefusesAnEdgeFromACornerToItself)
{
    const DSSolid* pSolid = Load(SingleTriangle());
    const std::uint32_t solid = pSolid->GetID();
    const std::uint32_t face = F(0)->GetID();
    EXPECT_TRUE(IsRefused([&] { m_Euler.MEF(solid, face, m_nNewFace, 1, 1); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.MEF(solid, face, m_nNewFace, 1, 9); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.MEF4(solid, face, m_nNewFace, 1, 2, 2, 1); }));
}

TEST_F(ACTEulerTest, CutsOffAnEdgeFromAHalfEdgeToItself)
{
    DSSolid* pSolid = Load(SingleTriangle());
    m_Euler.LMEF(pSolid, H(1), H(1), m_nNewFace);
    EXPECT_THAT(RingOf(L(1)), ElementsAre(3));
    EXPECT_THAT(CornersOf(L(0)), ElementsAre(1, 2, 0, 1));
    EXPECT_THAT(RingOf(L(0)), ElementsAre(1, 2, 0, 4));
    EXPECT_EQ(SidesOf(E(3)), std::make_pair(3, 4));
    EXPECT_TRUE(LinksHold(*pSolid));

    m_Euler.LKEF(pSolid, H(4), H(3));
    EXPECT_THAT(RingOf(L(0)), ElementsAre(0, 1, 2));
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, PartsALoneVertexByAnEdgeFromItToItself)
{
    m_Euler.MVFS(m_nSolid, m_nFace, m_nVertex, {});
    m_Euler.LMEF(S(0), H(0), H(0), m_nNewFace);
    EXPECT_THAT(RingOf(L(1)), ElementsAre(0));
    EXPECT_THAT(RingOf(L(0)), ElementsAre(1));
    EXPECT_TRUE(LinksHold(*S(0)));

    m_Euler.LKEF(S(0), H(0), H(1));
    EXPECT_THAT(RingOf(L(1)), ElementsAre(1)) << "the last half-edge is left alone again";
    EXPECT_EQ(V(0)->GetHalfEdge(), H(1));
    EXPECT_TRUE(LinksHold(*S(0), {.allowOneVertexLoops = true}));
}

TEST_F(ACTEulerTest, RefusesACutBetweenTwoLoops)
{
    DSSolid* pSolid = Load(Tetrahedron());
    EXPECT_TRUE(IsRefused([&] { m_Euler.LMEF(pSolid, H(0), H(3), m_nNewFace); }));
}

TEST_F(ACTEulerTest, KillsAnEdgeAndAFaceAfterMakingThem)
{
    IndexedMesh mesh;
    mesh.positions.resize(4);
    mesh.AddFace({1, 2, 3, 4});
    const DSSolid* pSolid = Load(mesh);
    m_Euler.MEF(pSolid->GetID(), F(0)->GetID(), m_nNewFace, 1, 3);
    m_Euler.KEF(pSolid->GetID(), F(0)->GetID(), 1, 3);

    EXPECT_THAT(IndicesOf(pSolid->GetFaceList()), ElementsAre(0));
    EXPECT_THAT(IndicesOf(pSolid->GetEdgeList()), ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(pSolid->GetVertexList().size(), 4U);
    // What was removed is gone, and its slots stay.
    EXPECT_EQ(m_Manager.GetFaceArray().size(), 2U);
    EXPECT_EQ(m_Manager.GetFaceArray()[1], nullptr);
    EXPECT_EQ(m_Manager.GetLoopArray()[1], nullptr);
    EXPECT_EQ(m_Manager.GetEdgeArray().size(), 5U);
    EXPECT_EQ(m_Manager.GetEdgeArray()[4], nullptr);
    EXPECT_EQ(m_Manager.GetHalfEdgeArray().size(), 6U);
    EXPECT_EQ(m_Manager.GetHalfEdgeArray()[4], nullptr);
    EXPECT_EQ(m_Manager.GetHalfEdgeArray()[5], nullptr);
    EXPECT_THAT(RingOf(L(0)), ElementsAre(2, 3, 0, 1));
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, MovesAllHalfEdgesOfTheKilledFaceToTheOther)
{
    // Edge 2-0 of face 0 1 2 is edge 0-2 of face 0 2 3: half-edges 2 and 3.
    IndexedMesh mesh;
    mesh.positions.resize(4);
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({1, 3, 4});
    DSSolid* pSolid = Load(mesh);
    m_Euler.LKEF(pSolid, H(2), H(3));

    EXPECT_THAT(CornersOf(L(0)), ElementsAre(3, 0, 1, 2));
    EXPECT_THAT(RingOf(L(0)), ElementsAre(5, 0, 1, 4));
    EXPECT_EQ(V(2)->GetHalfEdge(), H(4)) << "the start of half-edge 2 goes on with what was behind 3";
    EXPECT_EQ(V(0)->GetHalfEdge(), H(0));
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, ReaimsBothVerticesOfAKilledEdgeBetweenFaces)
{
    IndexedMesh mesh;
    mesh.positions.resize(4);
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({1, 3, 4});
    DSSolid* pSolid = Load(mesh);
    V(2)->GetHalfEdge() = H(2);
    V(0)->GetHalfEdge() = H(3);
    m_Euler.LKEF(pSolid, H(2), H(3));
    EXPECT_EQ(V(2)->GetHalfEdge(), H(4));
    EXPECT_EQ(V(0)->GetHalfEdge(), H(0));
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, ReaimsTheVertexThatIsLeftOfACollapsedEdge)
{
    DSSolid* pSolid = Load(Sphere(0));
    DSHalfEdge* h = m_Euler.FindHalfEdge(F(0), 0, 1);
    const DSHalfEdge* pBehind = h->GetNext();
    V(0)->GetHalfEdge() = h;
    m_Euler.LKEV(pSolid, h, h->GetTwin());
    EXPECT_EQ(V(0)->GetHalfEdge(), pBehind);
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(ACTEulerTest, RefusesToKillAnEdgeInsideOneFace)
{
    m_Euler.MVFS(m_nSolid, m_nFace, m_nVertex, {});
    m_Euler.MEVStrut(m_nSolid, m_nFace, 0, m_nVertex, {});
    EXPECT_TRUE(IsRefused([&] { m_Euler.KEF(m_nSolid, m_nFace, 0, 1); }));
}

TEST_F(ACTEulerTest, RefusesToKillABoundaryEdge)
{
    const DSSolid* pSolid = Load(SingleTriangle());
    const std::uint32_t solid = pSolid->GetID();
    const std::uint32_t face = F(0)->GetID();
    EXPECT_TRUE(IsRefused([&] { m_Euler.KEF(solid, face, 0, 1); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.KEV(solid, face, 0, 1); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.KEMR(solid, face, 0, 1); }));
}

TEST_F(ACTEulerTest, RefusesToKillTheEdgeThatALoneHalfEdgeDoesNotHave)
{
    m_Euler.MVFS(m_nSolid, m_nFace, m_nVertex, {});
    EXPECT_TRUE(IsRefused([&] { m_Euler.KEF(m_nSolid, m_nFace, 0, 0); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.KEV(m_nSolid, m_nFace, 0, 0); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.KEMR(m_nSolid, m_nFace, 0, 0); }));
#if TESSARINE_ASSERTIONS
    const AssertionCapture assertions;
    EXPECT_THROW(m_Euler.KEF(m_nSolid, m_nFace, 0, 0), AssertionFailure);
    EXPECT_THROW(m_Euler.KEV(m_nSolid, m_nFace, 0, 0), AssertionFailure);
    EXPECT_THROW(m_Euler.KEMR(m_nSolid, m_nFace, 0, 0), AssertionFailure);
    EXPECT_THAT(assertions.GetPaths(), testing::Each("source/Action/ACTEuler.cpp"));
#endif
}

TEST_F(ACTEulerTest, RefusesToJoinFacesThatRunTheSameWay)
{
    IndexedMesh mesh;
    mesh.positions.resize(4);
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({1, 2, 4});
    DSSolid* pSolid = Load(mesh);
    EXPECT_TRUE(IsRefused([&] { m_Euler.LKEF(pSolid, H(0), H(3)); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LKEV(pSolid, H(0), H(3)); }));
}

TEST_F(ACTEulerTest, LosesTheFurtherLoopsOfAKilledFace)
{
    // Face 1 of the quads 0 1 2 3 and 0 3 4 5 gets the lone vertex 6 as a ring.
    IndexedMesh mesh;
    mesh.positions.resize(6);
    mesh.AddFace({1, 2, 3, 4});
    mesh.AddFace({1, 4, 5, 6});
    DSSolid* pSolid = Load(mesh);
    m_Euler.MEVStrut(pSolid->GetID(), F(1)->GetID(), 4, m_nVertex, {});
    m_Euler.KEMR(pSolid->GetID(), F(1)->GetID(), 4, 6);
    ASSERT_EQ(F(1)->GetLoopList().size(), 2U);

    m_Euler.KEF(pSolid->GetID(), F(0)->GetID(), 3, 0);
    EXPECT_THAT(CornersOf(L(0)), ElementsAre(5, 0, 1, 2, 3, 4));
    EXPECT_EQ(L(2)->GetFace(), nullptr) << "the lost ring points at no deleted face";
    EXPECT_TRUE(
        IsRefused([&] { m_Euler.LMEV(pSolid, V(6)->GetHalfEdge(), V(6)->GetHalfEdge(), m_nVertex, {}); }));
}
}
}
