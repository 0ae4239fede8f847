#include "ACTEulerTest.h"

namespace tessarine
{
namespace
{
using testing::ElementsAre;

/// A quad 0 1 2 3 with the two-corner ring 4 5 inside.
class ACTEulerRingTest : public ACTEulerTest
{
protected:
    ACTEulerRingTest()
    {
        IndexedMesh mesh;
        mesh.positions.resize(4);
        mesh.AddFace({1, 2, 3, 4});
        m_pSolid = Load(mesh);
        m_nSolid = m_pSolid->GetID();
        m_nFace = F(0)->GetID();
        m_Euler.MEVStrut(m_nSolid, m_nFace, 0, m_nVertex, {}); // half-edges 4 and 5, edge 4
        m_Euler.MEVStrut(m_nSolid, m_nFace, 4, m_nVertex, {}); // half-edges 6 and 7, edge 5
        m_Euler.KEMR(m_nSolid, m_nFace, 0, 4);
    }

    DSSolid* m_pSolid;
};

TEST_F(ACTEulerRingTest, MakesARingByKillingTheEdgeThatLeadsToIt)
{
    EXPECT_THAT(IndicesOf(F(0)->GetLoopList()), ElementsAre(0, 1));
    EXPECT_THAT(CornersOf(L(0)), ElementsAre(3, 0, 1, 2));
    EXPECT_THAT(RingOf(L(0)), ElementsAre(3, 0, 1, 2));
    EXPECT_THAT(RingOf(L(1)), ElementsAre(7, 6));
    EXPECT_THAT(CornersOf(L(1)), ElementsAre(5, 4));
    EXPECT_EQ(V(0)->GetHalfEdge(), H(0));
    EXPECT_EQ(V(4)->GetHalfEdge(), H(6));
    EXPECT_THAT(IndicesOf(m_pSolid->GetEdgeList()), ElementsAre(0, 1, 2, 3, 5));
    EXPECT_TRUE(LinksHold(*m_pSolid));
}

TEST_F(ACTEulerRingTest, JoinsARingAgain)
{
    m_Euler.MEKR(m_nSolid, m_nFace, 1, 2, 5, 4);

    EXPECT_THAT(IndicesOf(F(0)->GetLoopList()), ElementsAre(0));
    EXPECT_EQ(m_Manager.GetLoopArray()[1], nullptr);
    // Before half-edge 1 the new side 9 leads from 1 to 5, and 8 comes back.
    EXPECT_THAT(RingOf(L(0)), ElementsAre(3, 0, 9, 7, 6, 8, 1, 2));
    EXPECT_THAT(CornersOf(L(0)), ElementsAre(3, 0, 1, 5, 4, 5, 1, 2));
    EXPECT_EQ(SidesOf(E(6)), std::make_pair(8, 9));
    EXPECT_TRUE(LinksHold(*m_pSolid));
}

TEST_F(ACTEulerRingTest, JoinsALoneVertexFromEitherSide)
{
    m_Euler.KEMR(m_nSolid, m_nFace, 5, 4); // the ring falls into the lone vertices 4 and 5
    ASSERT_EQ(F(0)->GetLoopList().size(), 3U);
    m_Euler.MEKR(m_nSolid, m_nFace, 4, 4, 5, 5);
    EXPECT_TRUE(LinksHold(*m_pSolid));
    m_Euler.KEMR(m_nSolid, m_nFace, 4, 5);
    m_Euler.MEKR(m_nSolid, m_nFace, 0, 1, 4, 4);
    EXPECT_TRUE(LinksHold(*m_pSolid, {.allowOneVertexLoops = true}));
    m_Euler.MEKR(m_nSolid, m_nFace, 5, 5, 0, 1);
    EXPECT_TRUE(LinksHold(*m_pSolid));
    EXPECT_EQ(F(0)->GetLoopList().size(), 1U);
    EXPECT_EQ(CornersOf(F(0)->GetLoopList()[0]).size(), 8U) << "two struts on a quad";
}

TEST_F(ACTEulerRingTest, RefusesToJoinALoopWithItself)
{
    EXPECT_TRUE(IsRefused([&] { m_Euler.MEKR(m_nSolid, m_nFace, 0, 1, 2, 3); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.MEKR(m_nSolid, m_nFace, 0, 1, 9, 9); }));
}

TEST_F(ACTEulerRingTest, MakesAFaceOfARingAndARingOfAFace)
{
    const std::string before = DumpRecords(m_Manager);
    m_Euler.MFKRH(m_nSolid, m_nFace, m_nNewFace, 4, 5);

    ASSERT_EQ(m_nNewFace, F(1)->GetID());
    EXPECT_THAT(IndicesOf(F(0)->GetLoopList()), ElementsAre(0));
    EXPECT_THAT(IndicesOf(F(1)->GetLoopList()), ElementsAre(1));
    EXPECT_EQ(L(1)->GetFace(), F(1));
    EXPECT_THAT(IndicesOf(m_pSolid->GetFaceList()), ElementsAre(0, 1));
    EXPECT_TRUE(LinksHold(*m_pSolid));

    m_Euler.KFMRH(m_nSolid, m_nFace, m_nNewFace);
    EXPECT_THAT(IndicesOf(F(0)->GetLoopList()), ElementsAre(0, 1));
    EXPECT_EQ(m_Manager.GetFaceArray()[1], nullptr);
    EXPECT_TRUE(LinksHold(*m_pSolid));
}

TEST_F(ACTEulerRingTest, RefusesToMakeAFaceOfTheFirstLoop)
{
    EXPECT_TRUE(IsRefused([&] { m_Euler.MFKRH(m_nSolid, m_nFace, m_nNewFace, 0, 1); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LMFKRH(m_pSolid, F(0), nullptr, m_nNewFace); }));
}

TEST_F(ACTEulerRingTest, RefusesToJoinAFaceWithItself)
{
    EXPECT_TRUE(IsRefused([&] { m_Euler.KFMRH(m_nSolid, m_nFace, m_nFace); }));
}

TEST_F(ACTEulerRingTest, FindsHalfEdgesOverAllLoops)
{
    EXPECT_EQ(m_Euler.FindHalfEdge(F(0), 0, 1), H(0));
    EXPECT_EQ(m_Euler.FindHalfEdge(F(0), 1, 0), nullptr);
    EXPECT_EQ(m_Euler.FindHalfEdge(F(0), 5, 4), H(7));
    EXPECT_EQ(m_Euler.FindHalfEdge(F(0), 4), H(6));
    EXPECT_EQ(m_Euler.FindHalfEdge(F(0), 9), nullptr);
    EXPECT_TRUE(IsRefused([&] { m_Euler.FindHalfEdge(nullptr, 0); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.FindHalfEdge(nullptr, 0, 1); }));
}

TEST_F(ACTEulerTest, ReaimsBothVerticesOfAKilledEdgeToARing)
{
    IndexedMesh mesh;
    mesh.positions.resize(4);
    mesh.AddFace({1, 2, 3, 4});
    const DSSolid* pSolid = Load(mesh);
    const std::uint32_t solid = pSolid->GetID();
    m_Euler.MEVStrut(solid, F(0)->GetID(), 0, m_nVertex, {}); // half-edges 4 (0 to 4) and 5
    m_Euler.MEVStrut(solid, F(0)->GetID(), 4, m_nVertex, {}); // half-edges 6 (4 to 5) and 7
    V(0)->GetHalfEdge() = H(4);
    V(4)->GetHalfEdge() = H(5);
    m_Euler.KEMR(solid, F(0)->GetID(), 0, 4);
    EXPECT_EQ(V(0)->GetHalfEdge(), H(0));
    EXPECT_EQ(V(4)->GetHalfEdge(), H(6));
    EXPECT_TRUE(LinksHold(*pSolid));
}
}
}
