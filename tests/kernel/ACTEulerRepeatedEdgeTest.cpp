#include "ACTEulerTest.h"

namespace tessarine
{
namespace
{
using testing::ElementsAre;

TEST_F(ACTEulerTest, RefusesToSplitWhatAThirdFaceHasDisplaced)
{
    // Faces 0 and 2 are on edge 0 now; half-edge 3 of face 1 still points at it.
    Load(ThreeTrianglesOnOneEdge());
    ASSERT_EQ(SidesOf(E(0)), std::make_pair(0, 6));
    ASSERT_EQ(H(3)->GetEdge(), E(0));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LSEMV(H(3), nullptr, m_nVertex, {}); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LSEMV(H(0), H(3), m_nVertex, {}); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LSEMV(H(0), nullptr, m_nVertex, {}); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LSEMV(H(0), H(1), m_nVertex, {}); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LSEMV(nullptr, nullptr, m_nVertex, {}); }));
}

/// A tetrahedron with a fin on the edge between vertices 0 and 1. The edge is number 2; its sides are the
/// half-edges 2 (1 to 0) and 6 (0 to 1), and half-edge 3 of the fin was displaced by the latter.
IndexedMesh TetrahedronWithAFin()
{
    IndexedMesh mesh;
    mesh.positions.resize(5);
    mesh.AddFace({1, 3, 2});
    mesh.AddFace({1, 2, 5});
    mesh.AddFace({1, 2, 4});
    mesh.AddFace({2, 3, 4});
    mesh.AddFace({3, 1, 4});
    return mesh;
}

TEST_F(ACTEulerTest, RefusesToKillAnEdgeThatADisplacedHalfEdgeNames)
{
    DSSolid* pSolid = Load(TetrahedronWithAFin());
    ASSERT_EQ(SidesOf(E(2)), std::make_pair(2, 6));
    ASSERT_EQ(H(3)->GetEdge(), E(2));
    EXPECT_TRUE(E(2)->IsRepeated());
    EXPECT_FALSE(E(0)->IsRepeated());
    // But for the fin, each of them could be done.
    EXPECT_TRUE(IsRefused([&] { m_Euler.LKEF(pSolid, H(2), H(6)); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LKEF(pSolid, H(6), H(2)); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LKEV(pSolid, H(6), H(2)); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.KEV(pSolid->GetID(), F(2)->GetID(), 0, 1); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.KEF(pSolid->GetID(), F(2)->GetID(), 0, 1); }));
#if TESSARINE_ASSERTIONS
    const AssertionCapture assertions;
    EXPECT_THROW(m_Euler.LKEF(pSolid, H(2), H(6)), AssertionFailure);
    EXPECT_THROW(m_Euler.LKEV(pSolid, H(6), H(2)), AssertionFailure);
    EXPECT_THAT(assertions.GetExpressions(), testing::Each("!h1->GetEdge()->IsRepeated()"));
#endif
}

TEST_F(ACTEulerTest, RefusesToMakeARingWhereADisplacedHalfEdgeNamesTheEdge)
{
    // One face goes to and fro twice: its first and its last half-edge are the sides of the only edge.
    IndexedMesh mesh;
    mesh.positions.resize(2);
    mesh.AddFace({1, 2, 1, 2});
    DSSolid* pSolid = Load(mesh);
    ASSERT_EQ(SidesOf(E(0)), std::make_pair(0, 3));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LKEMR(pSolid, F(0), H(0), H(3)); }));
#if TESSARINE_ASSERTIONS
    const AssertionCapture assertions;
    EXPECT_THROW(m_Euler.LKEMR(pSolid, F(0), H(0), H(3)), AssertionFailure);
    EXPECT_THAT(assertions.GetExpressions(), ElementsAre("!h1->GetEdge()->IsRepeated()"));
#endif
}

TEST_F(ACTEulerTest, MarksBothHalvesOfARepeatedEdge)
{
    DSSolid* pSolid = Load(TetrahedronWithAFin());
    m_Euler.LSEMV(H(2), H(6), m_nVertex, {});
    EXPECT_TRUE(E(2)->IsRepeated());
    EXPECT_EQ(H(2)->GetEdge(), pSolid->GetEdgeList().back());
    EXPECT_TRUE(H(2)->GetEdge()->IsRepeated());
    EXPECT_TRUE(IsRefused([&] { m_Euler.LKEF(pSolid, H(2), H(2)->GetTwin()); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.LKEF(pSolid, H(6), H(6)->GetTwin()); }));
}

TEST_F(ACTEulerTest, DoesNotMarkTheHalvesOfAnyOtherEdge)
{
    Load(Tetrahedron());
    m_Euler.LSEMV(E(0)->GetHalfEdge1(), E(0)->GetHalfEdge2(), m_nVertex, {});
    EXPECT_FALSE(E(0)->IsRepeated());
    EXPECT_FALSE(E(6)->IsRepeated());
}
}
}
