#include "Capture.h"
#include "Meshes.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
class TopologyReport : public testing::Test
{
protected:
    bool Check(const IndexedMesh& mesh)
    {
        m_pSolid = LoadQuietly(m_Manager, mesh);
        return m_pSolid->CheckTopology();
    }

    MANBrepElementManager m_Manager;
    ConsoleCapture m_Console;
    DSSolid* m_pSolid = nullptr;
};

using Lines = std::vector<std::string>;
}

TEST_F(TopologyReport, OfATetrahedronIsItsSizesAlone)
{
    EXPECT_TRUE(Check(Tetrahedron()));
    EXPECT_EQ(m_Console.GetLines(), (Lines{"m_VertexList.SIZE(): 4", "m_FaceList.Size(): 4",
                                           "m_EdgeList.Size(): 6", "total halfedge number: 12"}));
}

TEST_F(TopologyReport, OfAnOpenTriangleNamesItsThreeBoundaryEdges)
{
    // 3 + 1 - 3 = 1
    EXPECT_FALSE(Check(SingleTriangle()));
    EXPECT_EQ(m_Console.GetLines(),
              (Lines{"boundary edge: 2147483648", "boundary edge: 2147483649", "boundary edge: 2147483650",
                     "m_VertexList.SIZE(): 3", "m_FaceList.Size(): 1", "m_EdgeList.Size(): 3",
                     "total halfedge number: 3"}));
    for (const DSEdge* pEdge : m_pSolid->GetEdgeList())
    {
        EXPECT_TRUE(pEdge->IsBoundary());
    }
}

TEST_F(TopologyReport, OfACubeOfQuadsHasTwoErrorsAFace)
{
    // 8 + 6 - 12 = 2
    EXPECT_TRUE(Check(QuadCube()));
    const Lines lines = m_Console.GetLines();
    ASSERT_EQ(lines.size(), 3U + 12U + 1U);
    EXPECT_EQ(lines[3], "loop error(next): 2684354560"); // 0xA0000000
    EXPECT_EQ(lines[4], "loop error(Pre): 2684354560");
    EXPECT_EQ(lines[14], "loop error(Pre): 2684354565");
    EXPECT_EQ(lines[15], "total halfedge number: 24");
}

TEST_F(TopologyReport, NamesAVertexThatNoFaceUses)
{
    IndexedMesh mesh = Tetrahedron();
    mesh.positions.emplace_back(9, 9, 9);
    EXPECT_FALSE(Check(mesh));
    EXPECT_EQ(m_Console.GetLines()[3], "isolated point: 4");
    EXPECT_EQ(m_Console.GetLines().size(), 5U);
}

TEST_F(TopologyReport, MayComeOutTrueByCompensation)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.positions.emplace_back(9, 9, 9);
    EXPECT_TRUE(Check(mesh)); // 4 + 1 - 3
    EXPECT_FALSE(Check(Torus(4, 3)));
}

TEST_F(TopologyReport, OfAnEmptySolid)
{
    EXPECT_FALSE(Check(IndexedMesh()));
    EXPECT_EQ(m_Console.GetLines(), (Lines{"m_VertexList.SIZE(): 0", "m_FaceList.Size(): 0",
                                           "m_EdgeList.Size(): 0", "total halfedge number: 0"}));
}

TEST_F(TopologyReport, NamesAHalfEdgeWithoutAnEdgeAndGoesOn)
{
    IndexedMesh mesh = Tetrahedron();
    mesh.AddFace({1});
    Check(mesh);
    // 0x20000000 + 12, and a loop of one corner, the fifth.
    EXPECT_EQ(m_Console.GetLines(),
              (Lines{"m_VertexList.SIZE(): 4", "m_FaceList.Size(): 5", "m_EdgeList.Size(): 6",
                     "null edge:536870924", "loop error(next): 2684354564", "loop error(Pre): 2684354564",
                     "total halfedge number: 13"}));
}

TEST_F(TopologyReport, SurvivesNullLinks)
{
    DSSolid* pSolid = LoadQuietly(m_Manager, Tetrahedron());
    DSHalfEdge* pFirst = pSolid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge();
    pFirst->GetNext()->GetPrev() = nullptr;
    pSolid->GetFaceList()[1]->GetLoopList()[0]->GetHalfEdge() = nullptr;
    pSolid->CheckTopology();
    // Face 1: one half-edge forward, then a null link; backward all three. Face 2: nothing at all.
    EXPECT_EQ(m_Console.GetLines(),
              (Lines{"m_VertexList.SIZE(): 4", "m_FaceList.Size(): 4", "m_EdgeList.Size(): 6",
                     "null hafedge: ", "loop error(next): 2684354560",
                     "null hafedge: ", "loop error(next): 2684354561", "loop error(Pre): 2684354561",
                     "total halfedge number: 7"}));
}

TEST_F(TopologyReport, ChangesNothingButTheBoundaryMarks)
{
    Check(OpenFan(3));
    const std::string first = m_Console.GetText();
    m_pSolid->CheckTopology();
    EXPECT_EQ(m_Console.GetText(), first + first);
}

TEST_F(TopologyReport, LeavesABoundaryMarkOnAnEdgeThatIsClosedLater)
{
    Check(SingleTriangle());
    DSEdge* pEdge = m_pSolid->GetEdgeList()[0];
    pEdge->GetHalfEdge2() = pEdge->GetHalfEdge1();
    m_pSolid->CheckTopology();
    EXPECT_TRUE(pEdge->IsBoundary());
}
}
