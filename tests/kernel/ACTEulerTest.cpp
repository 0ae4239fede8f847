#include "ACTEulerTest.h"

namespace tessarine
{
namespace
{
using testing::ElementsAre;

TEST_F(ACTEulerTest, KeepsTheLastHalfEdgeOfALoopAndDeletesItTheSecondTime)
{
    IndexedMesh mesh;
    mesh.positions.resize(2);
    mesh.AddFace({1, 2});
    Load(mesh);
    EXPECT_EQ(m_Euler.RemoveHalfEdge(H(1)), H(0));
    EXPECT_EQ(m_Manager.GetHalfEdgeArray()[1], nullptr);
    EXPECT_THAT(RingOf(L(0)), ElementsAre(0));

    EXPECT_EQ(m_Euler.RemoveHalfEdge(H(0)), H(0));
    EXPECT_EQ(H(0)->GetEdge(), nullptr);
    EXPECT_EQ(L(0)->GetHalfEdge(), H(0));

    EXPECT_EQ(m_Euler.RemoveHalfEdge(H(0)), nullptr);
    EXPECT_EQ(m_Manager.GetHalfEdgeArray()[0], nullptr);
    EXPECT_EQ(L(0)->GetHalfEdge(), nullptr);
    EXPECT_EQ(V(0)->GetHalfEdge(), nullptr);
}

TEST_F(ACTEulerTest, DeletesAHalfEdgeThatIsLinkedToNothing)
{
    DSHalfEdge* h = m_Manager.CreateHalfEdge();
    EXPECT_EQ(m_Euler.RemoveHalfEdge(h), nullptr);
    EXPECT_EQ(m_Manager.GetHalfEdgeArray()[0], nullptr);
    EXPECT_TRUE(IsRefused([&] { m_Euler.RemoveHalfEdge(nullptr); }));
}

TEST_F(ACTEulerTest, AddsAHalfEdgeInFrontOfAnother)
{
    Load(SingleTriangle());
    DSEdge* pEdge = m_Manager.CreateEdge();
    DSHalfEdge* n = m_Euler.AddHalfEdge(pEdge, H(1), V(0), 1);
    EXPECT_EQ(n, H(3));
    EXPECT_THAT(RingOf(L(0)), ElementsAre(0, 3, 1, 2));
    EXPECT_EQ(SidesOf(pEdge), std::make_pair(-1, 3));
    EXPECT_EQ(n->GetVertex(), V(0));
    EXPECT_EQ(n->GetEdge(), pEdge);
    EXPECT_TRUE(IsRefused([&] { m_Euler.AddHalfEdge(pEdge, H(1), V(0), 2); }));
    EXPECT_TRUE(IsRefused([&] { m_Euler.AddHalfEdge(nullptr, H(1), V(0), 0); }));
}

TEST_F(ACTEulerTest, LeavesTheRecordsOfAKilledSolid)
{
    const DSSolid* pSolid = Load(SingleTriangle());
    m_Euler.KillSolid(pSolid->GetID());

    EXPECT_EQ(m_Manager.GetSolidArray()[0], nullptr);
    EXPECT_NE(m_Manager.GetFaceArray()[0], nullptr);
    EXPECT_EQ(F(0)->GetSolid(), nullptr) << "nothing points at what is deleted";
    EXPECT_EQ(m_Manager.GetEdge(ElementKind::Edge | 2), E(2));
    EXPECT_EQ(m_Manager.GetVertex(2), V(2));
    m_Manager.Clear();
    EXPECT_TRUE(m_Manager.GetVertexArray().empty());
}

TEST_F(ACTEulerTest, KillsASolidWithANullEntryAmongItsFaces)
{
    DSSolid* pSolid = Load(SingleTriangle());
    pSolid->GetFaceList().push_back(nullptr);
    m_Euler.LKillSolid(pSolid);
    EXPECT_EQ(m_Manager.GetSolidArray()[0], nullptr);
    EXPECT_EQ(F(0)->GetSolid(), nullptr);
}

TEST_F(ACTEulerTest, DoesNotInterpolateTextureCoordinates)
{
    const ConsoleCapture console;
    DSSolid* pSolid =
        m_Manager.BuildTexturedSolid({{}, {}, {}}, {1, 2, 3}, {3}, {smVec2f(0.5F, 0.25F)}, {1, 1, 1}, false);
    m_Euler.LSEMV(H(0), nullptr, m_nVertex, {});
    m_Euler.LMEF(pSolid, H(3), H(2), m_nNewFace);
    EXPECT_EQ(H(0)->GetTexCoord().x, 0.5F);
    for (const std::uint32_t made : {3U, 4U, 5U})
    {
        EXPECT_EQ(H(made)->GetTexCoord().x, 0);
        EXPECT_EQ(H(made)->GetTexCoord().y, 0);
    }
}

TEST_F(ACTEulerTest, SaysThatAFaceOrSolidIsMissingAndRefuses)
{
    const DSSolid* pSolid = Load(SingleTriangle());
    const std::uint32_t solid = pSolid->GetID();
    const std::uint32_t face = F(0)->GetID();
    m_Manager.DeleteFace(F(0));
    const MessageCapture messages;
    EXPECT_TRUE(IsRefused([&] { m_Euler.MEVStrut(solid, face, 0, m_nVertex, {}); }));
    EXPECT_THAT(messages.GetTexts(), ElementsAre("The face doesnot exsit!"));
    m_Euler.KillSolid(m_Manager.CreateSolid()->GetID());
    EXPECT_TRUE(IsRefused([&] { m_Euler.KillSolid(0xE0000001); }));
    EXPECT_THAT(messages.GetTexts(), ElementsAre("The face doesnot exsit!", "The solid does not exsit!"));
}

#if TESSARINE_ASSERTIONS
TEST_F(ACTEulerTest, ReportsItsOwnSource)
{
    const AssertionCapture assertions;
    EXPECT_THROW(m_Euler.LSEMV(nullptr, nullptr, m_nVertex, {}), AssertionFailure);
    EXPECT_THAT(assertions.GetPaths(), ElementsAre("source/Action/ACTEuler.cpp"));
}
#endif
}
}
