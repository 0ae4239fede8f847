#include "TriangleSurgery.h"
#include "Capture.h"
#include "LinksHold.h"
#include "RandomMeshes.h"
#include "RecordDump.h"
#include "Refusal.h"
#include "Vectors.h"
#include "VertexWalk.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using testing::HasSubstr;

class TriangleSurgeryTest : public testing::Test
{
protected:
    DSSolid& Load(const IndexedMesh& mesh) { return *LoadQuietly(m_Elements, mesh); }

    static void ExpectTriangles(const DSSolid& solid, std::size_t faces)
    {
        EXPECT_TRUE(LinksHold(solid));
        EXPECT_EQ(solid.GetFaceList().size(), faces);
        EXPECT_EQ(solid.GetEdgeList().size() * 2, faces * 3);
        for (const DSFace* face : solid.GetFaceList())
        {
            const DSHalfEdge* h = face->GetLoopList()[0]->GetHalfEdge();
            EXPECT_EQ(h->GetNext()->GetNext()->GetNext(), h);
        }
    }

    static DSFace* FaceOf(const DSHalfEdge* h) { return h->GetLoop()->GetFace(); }

    void Collapse(DSVertex* vertex) { m_Surgery.CollapseEdge(*vertex->GetHalfEdge()->GetEdge(), *vertex); }

    MANBrepElementManager m_Elements;
    TriangleSurgery m_Surgery{&m_Elements};
    ConsoleCapture m_Console;
};

TEST_F(TriangleSurgeryTest, SplitsAFaceIntoThree)
{
    DSSolid& solid = Load(Sphere(1));
    DSFace& face = *solid.GetFaceList()[3];
    const DSHalfEdge* h0 = face.GetLoopList()[0]->GetHalfEdge();
    const DSHalfEdge* h2 = h0->GetPrev();
    DSVertex* vertex = m_Surgery.SplitFace(face, {0.5, 0.25, 2});
    EXPECT_EQ(vertex->GetPosition(), smVec3d(0.5, 0.25, 2));
    EXPECT_EQ(vertex, solid.GetVertexList().back());
    EXPECT_EQ(vertex->GetValence(), 3);
    EXPECT_EQ(FaceOf(h2), &face); // its own record keeps the part at its last edge
    ExpectTriangles(solid, 34);
    EXPECT_EQ(EulerCharacteristic(solid), 2);
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(TriangleSurgeryTest, SplitsBothTrianglesOfAnEdge)
{
    DSSolid& solid = Load(Sphere(1));
    DSHalfEdge* h = solid.GetEdgeList()[7]->GetHalfEdge1();
    DSHalfEdge* t = h->GetTwin();
    DSVertex* start = h->GetVertex();
    DSVertex* end = t->GetVertex();
    const DSHalfEdge* atStart = h->GetPrev();
    const DSHalfEdge* atEnd = t->GetPrev();
    DSFace* face = FaceOf(h);
    DSFace* across = FaceOf(t);
    const int valence = end->GetValence();
    DSVertex* vertex = m_Surgery.SplitEdge(*h, {0, 0, 3});
    EXPECT_EQ(vertex->GetPosition(), smVec3d(0, 0, 3));
    EXPECT_EQ(vertex->GetValence(), 4);
    EXPECT_EQ(end->GetValence(), valence);
    EXPECT_NE(m_Elements.FindEdge(start->GetID(), vertex->GetID()), nullptr);
    EXPECT_NE(m_Elements.FindEdge(vertex->GetID(), end->GetID()), nullptr);
    EXPECT_EQ(FaceOf(atStart), face);
    EXPECT_EQ(FaceOf(atEnd), across);
    ExpectTriangles(solid, 34);
    EXPECT_EQ(m_Console.GetText(), "Edge collapse ok...\n");
}

TEST_F(TriangleSurgeryTest, TakesAVertexAwayAlongAnEdge)
{
    DSSolid& solid = Load(Sphere(1));
    DSVertex* vertex = solid.GetVertexList()[9];
    DSVertex* stays = vertex->GetHalfEdge()->GetNext()->GetVertex();
    const smVec3d place = stays->GetPosition();
    const int together = vertex->GetValence() + stays->GetValence();
    const DSFace* goes1 = FaceOf(vertex->GetHalfEdge());
    const DSFace* goes2 = FaceOf(vertex->GetHalfEdge()->GetTwin());
    const std::uint32_t gone[] = {goes1->GetID(), goes2->GetID()};
    const std::uint32_t id = vertex->GetID();
    Collapse(vertex);
    EXPECT_EQ(m_Elements.GetVertexArray()[id], nullptr);
    for (const std::uint32_t face : gone)
    {
        EXPECT_EQ(m_Elements.GetFaceArray()[face & ~ElementKind::Face], nullptr);
    }
    EXPECT_EQ(stays->GetPosition(), place);
    EXPECT_EQ(stays->GetValence(), together - 4); // the edge, twice, and the two that fall on others
    ExpectTriangles(solid, 30);
    EXPECT_EQ(EulerCharacteristic(solid), 2);
    EXPECT_EQ(m_Console.GetText(), "One edge clipped..\n");
}

TEST_F(TriangleSurgeryTest, TakesAVertexOfValenceThreeAway)
{
    DSSolid& solid = Load(Sphere(1));
    DSVertex* vertex = m_Surgery.SplitFace(*solid.GetFaceList()[0], {0.3, 0.3, 0.3});
    Collapse(vertex);
    ExpectTriangles(solid, 32);
    EXPECT_EQ(EulerCharacteristic(solid), 2);
}

TEST_F(TriangleSurgeryTest, TakesAVertexOfValenceTwoAway)
{
    DSSolid& solid = Load(Sphere(1));
    DSVertex* vertex = m_Surgery.SplitFace(*solid.GetFaceList()[0], {0.3, 0.3, 0.3});
    // One beside it, which loses it as a neighbour to another of its neighbours.
    DSVertex* middle = m_Surgery.SplitFace(*FaceOf(vertex->GetHalfEdge()), {0.4, 0.3, 0.3});
    ASSERT_EQ(middle->GetValence(), 3);
    DSHalfEdge* h = middle->GetHalfEdge();
    while (h->GetNext()->GetVertex() == vertex)
    {
        h = h->GetTwin()->GetNext();
    }
    const DSVertex* corner = h->GetNext()->GetVertex();
    m_Surgery.CollapseEdge(*m_Elements.FindEdge(vertex->GetID(), corner->GetID()), *vertex);
    ExpectTriangles(solid, 34);
    ASSERT_EQ(middle->GetValence(), 2);
    Collapse(middle);
    ExpectTriangles(solid, 32);
    EXPECT_EQ(EulerCharacteristic(solid), 2);
}

TEST_F(TriangleSurgeryTest, LeavesTheLastTwoFaces)
{
    DSSolid& solid = Load(Tetrahedron());
    Collapse(solid.GetVertexList()[0]);
    ExpectTriangles(solid, 2);
    const std::string before = DumpRecords(m_Elements);
    for (DSVertex* vertex : solid.GetVertexList())
    {
        EXPECT_THAT(GetRefusal([&] { Collapse(vertex); }),
                    HasSubstr("the cloud has too few points near this mesh"));
    }
    EXPECT_EQ(DumpRecords(m_Elements), before);
}

TEST_F(TriangleSurgeryTest, RefusesToJoinVerticesWithTwoEdgesBetweenThem)
{
    // When the apex goes, its other neighbours stay beside the vertex that takes its place: two edges join that one and
    // the first vertex. Whichever of the two is taken away along whichever edge, the other edge would lead back.
    DSSolid& solid = Load(Sphere(1));
    DSVertex& first = *solid.GetVertexList()[0];
    DSVertex& second = *first.GetHalfEdge()->GetNext()->GetVertex();
    const DSVertex& apex = *m_Surgery.SplitFace(*FaceOf(first.GetHalfEdge()), {0.9, 0.3, 0.3});
    m_Surgery.SplitFace(*FaceOf(first.GetHalfEdge()), {0.9, 0.3, 0.2});
    m_Surgery.CollapseEdge(*m_Elements.FindEdge(apex.GetID(), second.GetID()), apex);
    ExpectTriangles(solid, 34);
    std::vector<DSEdge*> between;
    for (VertexWalk walk(first.GetHalfEdge()); !walk.IsAtEnd(); walk.Step())
    {
        if (walk.Get()->GetNext()->GetVertex() == &second)
        {
            between.push_back(walk.Get()->GetEdge());
        }
    }
    ASSERT_EQ(between.size(), 2U);
    const std::string before = DumpRecords(m_Elements);
    for (DSEdge* edge : between)
    {
        EXPECT_EQ(GetRefusal([&] { m_Surgery.CollapseEdge(*edge, first); }), kTooFewPoints);
        EXPECT_EQ(GetRefusal([&] { m_Surgery.CollapseEdge(*edge, second); }), kTooFewPoints);
    }
    EXPECT_EQ(DumpRecords(m_Elements), before);
}

TEST_F(TriangleSurgeryTest, RefusesAVertexThatTheEdgeDoesNotStartAt)
{
    DSSolid& solid = Load(Sphere(1));
    const DSVertex* far = solid.GetVertexList()[17];
    DSEdge* edge = solid.GetVertexList()[0]->GetHalfEdge()->GetEdge();
    ASSERT_NE(edge->GetHalfEdge1()->GetVertex(), far);
    ASSERT_NE(edge->GetHalfEdge2()->GetVertex(), far);
    const std::string before = DumpRecords(m_Elements);
    m_Surgery.CollapseEdge(*edge, *far);
    EXPECT_EQ(m_Console.GetText(), "CollapseEdge error !!! \n");
    EXPECT_EQ(DumpRecords(m_Elements), before);
}

TEST_F(TriangleSurgeryTest, AssertsTriangles)
{
    DSSolid& solid = Load(QuadCube());
    const AssertionCapture assertions;
    EXPECT_THROW(m_Surgery.SplitFace(*solid.GetFaceList()[0], {}), AssertionFailure);
    EXPECT_THROW(m_Surgery.SplitEdge(*solid.GetEdgeList()[0]->GetHalfEdge1(), {}), AssertionFailure);
}
}
}
