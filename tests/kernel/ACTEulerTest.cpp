#include "ACTEuler.h"
#include "Capture.h"
#include "LinksHold.h"
#include "Meshes.h"
#include "RecordDump.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

/// A manager and the operators on it. The records of a kind are named by their index.
class ACTEulerTest : public testing::Test
{
protected:
    DSSolid* Load(const IndexedMesh& mesh) { return LoadQuietly(m_Manager, mesh); }

    DSVertex* V(std::uint32_t index) const { return m_Manager.GetVertex(index); }
    DSHalfEdge* H(std::uint32_t index) const { return m_Manager.GetHalfEdge(ElementKind::HalfEdge | index); }
    DSEdge* E(std::uint32_t index) const { return m_Manager.GetEdge(ElementKind::Edge | index); }
    DSLoop* L(std::uint32_t index) const { return m_Manager.GetLoop(ElementKind::Loop | index); }
    DSFace* F(std::uint32_t index) const { return m_Manager.GetFace(ElementKind::Face | index); }
    DSSolid* S(std::uint32_t index) const { return m_Manager.GetSolid(ElementKind::Solid | index); }

    static std::uint32_t IndexOf(const DSElement* element)
    {
        return element != nullptr ? element->GetID() & 0x0FFFFFFF : 0xFFFFFFFF;
    }

    /// The half-edges of a loop from its entry on.
    static std::vector<std::uint32_t> RingOf(const DSLoop* loop)
    {
        std::vector<std::uint32_t> ring;
        const DSHalfEdge* h = loop->GetHalfEdge();
        do
        {
            EXPECT_EQ(h->GetLoop(), loop);
            EXPECT_EQ(h->GetNext()->GetPrev(), h);
            ring.push_back(IndexOf(h));
            h = h->GetNext();
        } while (h != loop->GetHalfEdge());
        return ring;
    }

    /// Their start vertices.
    static std::vector<std::uint32_t> CornersOf(const DSLoop* loop)
    {
        std::vector<std::uint32_t> corners;
        const DSHalfEdge* h = loop->GetHalfEdge();
        do
        {
            corners.push_back(IndexOf(h->GetVertex()));
            h = h->GetNext();
        } while (h != loop->GetHalfEdge());
        return corners;
    }

    template <class TList>
    static std::vector<std::uint32_t> IndicesOf(const TList& list)
    {
        std::vector<std::uint32_t> indices;
        for (const auto* pElement : list)
        {
            indices.push_back(IndexOf(pElement));
        }
        return indices;
    }

    /// The indices of an edge's half-edges; -1 for none.
    static std::pair<int, int> SidesOf(const DSEdge* edge)
    {
        const auto index = [](const DSHalfEdge* h)
        { return h != nullptr ? static_cast<int>(IndexOf(h)) : -1; };
        return {index(edge->GetHalfEdge1()), index(edge->GetHalfEdge2())};
    }

    /// Whether the call fails an assertion of the operators and leaves every record as it was.
    template <class TCall>
    testing::AssertionResult IsRefused(TCall call)
    {
        const AssertionCapture assertions;
        const ConsoleCapture console;
        const std::string before = DumpRecords(m_Manager);
        try
        {
            call();
            return testing::AssertionFailure() << "it was carried out";
        }
        catch (const AssertionFailure& failure)
        {
            if (DumpRecords(m_Manager) != before)
            {
                return testing::AssertionFailure() << "the records have changed";
            }
            return testing::AssertionSuccess() << failure.GetMessage();
        }
    }

    MANBrepElementManager m_Manager;
    ACTEuler m_Euler{&m_Manager};
    std::uint32_t m_nSolid = 0;
    std::uint32_t m_nFace = 0;
    std::uint32_t m_nVertex = 0;
    std::uint32_t m_nNewFace = 0;
};

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

DSSolid* LoadPolygon(MANBrepElementManager& manager, int n)
{
    IndexedMesh mesh;
    mesh.positions.resize(static_cast<std::size_t>(n));
    for (int i = 1; i <= n; ++i)
    {
        mesh.indices.push_back(i);
    }
    mesh.faceSizes.push_back(n);
    return LoadQuietly(manager, mesh);
}

std::vector<DSHalfEdge*> EverySecond(const DSSolid* solid, std::size_t count)
{
    std::vector<DSHalfEdge*> corners;
    DSHalfEdge* h = solid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge();
    for (; corners.size() < count; h = h->GetNext()->GetNext())
    {
        corners.push_back(h);
    }
    return corners;
}

/// The parameter is the number of corners of a polygon.
class ACTEulerCornersTest : public testing::TestWithParam<int>
{
};

TEST_P(ACTEulerCornersTest, CutsCornersAsOneCutAfterAnotherDoes)
{
    for (std::size_t count = 2; 2 * count <= static_cast<std::size_t>(GetParam()); ++count)
    {
        MANBrepElementManager oneByOne;
        DSSolid* pSolid = LoadPolygon(oneByOne, GetParam());
        for (DSHalfEdge* h : EverySecond(pSolid, count))
        {
            std::uint32_t nFaceID = 0;
            ACTEuler(&oneByOne).LMEF(pSolid, h->GetNext(), h->GetPrev(), nFaceID);
        }
        MANBrepElementManager atOnce;
        DSSolid* pOther = LoadPolygon(atOnce, GetParam());
        ACTEuler(&atOnce).LMEFCorners(pOther, EverySecond(pOther, count));
        EXPECT_EQ(DumpRecords(atOnce), DumpRecords(oneByOne)) << count << " corners";
        EXPECT_TRUE(LinksHold(*pOther));
    }
}

INSTANTIATE_TEST_SUITE_P(Polygons, ACTEulerCornersTest, testing::Values(4, 5, 6, 7, 12, 13));

TEST(ACTEulerCorners, RefusesCornersThatAreNotEverySecond)
{
    const AssertionCapture assertions;
    MANBrepElementManager manager;
    ACTEuler euler(&manager);
    DSSolid* pSolid = LoadPolygon(manager, 6);
    const std::vector<DSHalfEdge*> corners = EverySecond(pSolid, 4); // once round and one more
    const std::string before = DumpRecords(manager);
    EXPECT_THROW(euler.LMEFCorners(pSolid, corners), AssertionFailure);
    EXPECT_THROW(euler.LMEFCorners(pSolid, {}), AssertionFailure);
    EXPECT_THROW(euler.LMEFCorners(pSolid, {corners[0]}), AssertionFailure);
    EXPECT_THROW(euler.LMEFCorners(pSolid, {corners[0], corners[0]->GetNext()}), AssertionFailure);
    EXPECT_EQ(DumpRecords(manager), before);
}
}
}
