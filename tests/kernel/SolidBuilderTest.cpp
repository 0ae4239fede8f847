#include "Capture.h"
#include "LinksHold.h"
#include "MeshWalks.h"
#include "Meshes.h"
#include <gtest/gtest.h>
#include <stdexcept>

namespace tessarine
{
namespace
{
using Lines = std::vector<std::string>;

class Building : public testing::Test
{
protected:
    DSSolid* Build(const IndexedMesh& mesh, bool reversed = false)
    {
        return m_Manager.BuildSolid(mesh.positions, mesh.indices, mesh.faceSizes, reversed);
    }
    DSSolid* BuildTextured(const IndexedMesh& mesh, const TexCoordList& texCoords,
                           const IndexList& texIndices, bool reversed = false)
    {
        return m_Manager.BuildTexturedSolid(mesh.positions, mesh.indices, mesh.faceSizes, texCoords,
                                            texIndices, reversed);
    }
    bool IsUntouched() const
    {
        return m_Manager.GetSolidArray().empty() && m_Manager.GetVertexArray().empty();
    }

    MANBrepElementManager m_Manager;
    ConsoleCapture m_Console;
};

/// The ids of the start vertices around the first loop.
}

TEST_F(Building, GivesTwoTrianglesOnOneEdgeFiveEdges)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.positions.emplace_back(1, 1, 0);
    mesh.AddFace({3, 2, 4});
    DSSolid* pSolid = Build(mesh);
    ASSERT_EQ(pSolid->GetEdgeList().size(), 5U);
    int open = 0;
    for (const DSEdge* pEdge : pSolid->GetEdgeList())
    {
        open += pEdge->GetHalfEdge2() == nullptr ? 1 : 0;
    }
    EXPECT_EQ(open, 4);
    EXPECT_TRUE(LinksHold(*pSolid));
    EXPECT_EQ(m_Console.GetText(), "Number of halfedge: 6\n");
}

TEST_F(Building, KeepsTheOrderOfTheFile)
{
    DSSolid* pSolid = Build(QuadCube());
    EXPECT_EQ(CornerIDsOf(*pSolid->GetFaceList()[0]), (std::vector<std::uint32_t>{0, 2, 3, 1}));
    EXPECT_EQ(pSolid->GetFaceList()[5]->GetID(), 0xC0000005U);
    EXPECT_EQ(pSolid->GetVertexList()[3]->GetPosition().y, 1.0);
    // The edges come in the order of their first half-edges: 1-3, 3-4, 4-2, 2-1, 5-6, ...
    EXPECT_EQ(pSolid->GetEdgeList()[4]->GetHalfEdge1()->GetVertex()->GetID(), 4U);
    EXPECT_EQ(pSolid->GetEdgeList()[4]->GetHalfEdge1()->GetID(), 0x20000004U);
}

TEST_F(Building, ReversedKeepsTheFirstCornerAndTurnsTheOthersRound)
{
    EXPECT_EQ(CornerIDsOf(*Build(SingleTriangle(), true)->GetFaceList()[0]),
              (std::vector<std::uint32_t>{0, 2, 1}));
    DSSolid* pCube = Build(QuadCube(), true);
    EXPECT_EQ(CornerIDsOf(*pCube->GetFaceList()[0]), (std::vector<std::uint32_t>{3, 4, 6, 5}));
    EXPECT_TRUE(LinksHold(*pCube));
}

TEST_F(Building, LeavesTheLastHalfEdgeMadeAtAVertex)
{
    DSSolid* pSolid = Build(ClosedFan(4));
    // The hub is the first corner of each face; the fourth face's first half-edge is number 9.
    EXPECT_EQ(pSolid->GetVertexList()[0]->GetHalfEdge()->GetID(), 0x20000009U);
}

TEST_F(Building, MakesAVertexOfEveryPosition)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.positions.emplace_back(7, 8, 9);
    DSSolid* pSolid = Build(mesh);
    ASSERT_EQ(pSolid->GetVertexList().size(), 4U);
    EXPECT_EQ(pSolid->GetVertexList()[3]->GetHalfEdge(), nullptr);
}

TEST_F(Building, CountsTheHalfEdgesOfAllSolids)
{
    Build(Tetrahedron());
    DSSolid* pSecond = Build(SingleTriangle());
    EXPECT_EQ(pSecond->GetVertexList()[0]->GetID(), 4U);
    EXPECT_EQ(m_Console.GetText(), "Number of halfedge: 12\nNumber of halfedge: 15\n");
    EXPECT_TRUE(LinksHold(*pSecond));
}

TEST_F(Building, LetsAThirdFaceTakeThePlaceOfTheSecond)
{
    DSSolid* pSolid = Build(ThreeTrianglesOnOneEdge());
    EXPECT_EQ(m_Console.GetLines(), (Lines{"Number of halfedge: 9", "Edge has already two halfedges: 0,1"}));
    const DSEdge* pShared = pSolid->GetEdgeList()[0];
    EXPECT_EQ(pShared->GetHalfEdge1()->GetID(), 0x20000000U);
    EXPECT_EQ(pShared->GetHalfEdge2()->GetID(), 0x20000006U);
    EXPECT_EQ(m_Manager.GetHalfEdge(0x20000003)->GetEdge(), pShared);
    EXPECT_EQ(pSolid->GetEdgeList().size(), 7U);
}

TEST_F(Building, SharesAnEdgeThatRunsTheSameWayTwiceWithoutAWord)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.positions.emplace_back(0, -1, 0);
    mesh.AddFace({1, 2, 4});
    DSSolid* pSolid = Build(mesh);
    EXPECT_EQ(pSolid->GetEdgeList().size(), 5U);
    EXPECT_EQ(m_Console.GetText(), "Number of halfedge: 6\n");
    LinkRules rules;
    rules.allowSameDirection = true;
    EXPECT_TRUE(LinksHold(*pSolid, rules));
}

TEST_F(Building, ReportsAFaceOfOneCornerInItsPlace)
{
    IndexedMesh mesh = ThreeTrianglesOnOneEdge();
    mesh.AddFace({2});
    mesh.AddFace({1, 2, 4});
    DSSolid* pSolid = Build(mesh);
    EXPECT_EQ(m_Console.GetLines(), (Lines{"Number of halfedge: 13", "Edge has already two halfedges: 0,1",
                                           "face id: 3", "error", "Edge has already two halfedges: 0,0"}));
    EXPECT_EQ(pSolid->GetFaceList()[3]->GetLoopList()[0]->GetHalfEdge()->GetEdge(), nullptr);
}

TEST_F(Building, JoinsTheTwoSidesOfAFaceOfTwoCorners)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.indices = {1, 2};
    mesh.faceSizes = {2};
    DSSolid* pSolid = Build(mesh);
    ASSERT_EQ(pSolid->GetEdgeList().size(), 1U);
    EXPECT_NE(pSolid->GetEdgeList()[0]->GetHalfEdge2(), nullptr);
}

TEST_F(Building, MatchesEdgesAroundAVertexOfAnyValence)
{
    DSSolid* pSolid = Build(ClosedFan(3000));
    EXPECT_EQ(pSolid->GetEdgeList().size(), 6000U);
    EXPECT_TRUE(LinksHold(*pSolid));
    EXPECT_EQ(pSolid->GetVertexList()[0]->GetValence(), 3000);
}

TEST_F(Building, MatchesEdgesBetweenAllPairsOfVertices)
{
    // 40 vertices, each pair joined by two faces of two corners: many more edges than vertices.
    IndexedMesh mesh;
    mesh.positions.resize(40);
    for (int a = 1; a <= 40; ++a)
    {
        for (int b = 1; b < a; ++b)
        {
            mesh.AddFace({a, b});
        }
    }
    DSSolid* pSolid = Build(mesh);
    EXPECT_EQ(pSolid->GetEdgeList().size(), 40U * 39U / 2U);
    EXPECT_TRUE(LinksHold(*pSolid));
}

TEST_F(Building, MakesAnEmptySolidOfEmptyLists)
{
    DSSolid* pSolid = Build(IndexedMesh());
    EXPECT_TRUE(pSolid->GetVertexList().empty());
    EXPECT_EQ(m_Console.GetText(), "Number of halfedge: 0\n");
}

TEST_F(Building, RefusesCornersBeyondThePositions)
{
    for (const std::int32_t number : {0, -1, 4, 2147483647, -2147483647 - 1})
    {
        IndexedMesh mesh = SingleTriangle();
        mesh.indices[1] = number;
        EXPECT_THROW(Build(mesh), std::out_of_range) << number;
        EXPECT_TRUE(IsUntouched());
    }
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(Building, RefusesAFaceWithoutCorners)
{
    for (const std::int32_t size : {0, -3})
    {
        IndexedMesh mesh = SingleTriangle();
        mesh.faceSizes = {3, size};
        EXPECT_THROW(Build(mesh), std::out_of_range);
        EXPECT_TRUE(IsUntouched());
    }
}

TEST_F(Building, RefusesFacesWithMoreCornersThanNumbers)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.faceSizes = {2, 2};
    EXPECT_THROW(Build(mesh), std::out_of_range);
    EXPECT_TRUE(IsUntouched());
}

TEST_F(Building, PutsTextureCoordinatesOnTheCorners)
{
    const TexCoordList texCoords = {smVec2f(0, 0), smVec2f(1, 0), smVec2f(0, 1)};
    DSSolid* pSolid = BuildTextured(SingleTriangle(), texCoords, {3, 1, 2});
    const DSHalfEdge* pHalfEdge = pSolid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge();
    EXPECT_EQ(pHalfEdge->GetTexCoord().y, 1.0F);
    EXPECT_EQ(pHalfEdge->GetNext()->GetTexCoord().x, 0.0F);
    EXPECT_EQ(pHalfEdge->GetNext()->GetNext()->GetTexCoord().x, 1.0F);
    EXPECT_EQ(m_Console.GetLines(), (Lines{"texcoord number: 3", "texcoord index number: 3"}));
}

TEST_F(Building, TextureCoordinatesStayWithTheirCornersWhenReversed)
{
    const TexCoordList texCoords = {smVec2f(0, 0), smVec2f(1, 0), smVec2f(0, 1)};
    DSSolid* pSolid = BuildTextured(SingleTriangle(), texCoords, {1, 2, 3}, true);
    const DSHalfEdge* pSecond = pSolid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge()->GetNext();
    EXPECT_EQ(pSecond->GetVertex()->GetID(), 2U);
    EXPECT_EQ(pSecond->GetTexCoord().y, 1.0F);
}

TEST_F(Building, TexturedTellsNothingOfTheEdges)
{
    IndexedMesh mesh = ThreeTrianglesOnOneEdge();
    mesh.AddFace({2});
    BuildTextured(mesh, {}, {});
    EXPECT_EQ(m_Console.GetLines(), (Lines{"texcoord number: 0", "texcoord index number: 0"}));
}

TEST_F(Building, RefusesTextureNumbersBeyondTheCoordinates)
{
    const TexCoordList texCoords(2);
    EXPECT_THROW(BuildTextured(SingleTriangle(), texCoords, {1, 2, 3}), std::out_of_range);
    EXPECT_THROW(BuildTextured(SingleTriangle(), texCoords, {1, 0, 1}), std::out_of_range);
    EXPECT_TRUE(IsUntouched());
}

TEST_F(Building, RefusesFewerTextureNumbersThanCorners)
{
    EXPECT_THROW(BuildTextured(SingleTriangle(), TexCoordList(2), {1, 2}), std::out_of_range);
    EXPECT_TRUE(IsUntouched());
}

TEST_F(Building, LoadSolidGivesEveryFaceTheDefaultMaterial)
{
    const IndexedMesh mesh = Tetrahedron();
    DSSolid* pSolid = m_Manager.LoadSolid(mesh.positions, mesh.indices, mesh.faceSizes, false);
    for (DSFace* pFace : pSolid->GetFaceList())
    {
        EXPECT_EQ(pFace->GetMaterial(), &m_Manager.GetMaterialManager().GetDefaultMaterial());
    }
}

TEST_F(Building, TakesAtMost700BytesATriangle)
{
    // What the records and lists of a closed mesh take: 0.5 vertices, 1.5 edges, 3 half-edges, a loop and a
    // face for each triangle, each with its slot of 8 bytes; vertices, edges and faces once more in the
    // lists.
    const double bytes = 0.5 * (sizeof(DSVertex) + 16) + 1.5 * (sizeof(DSEdge) + 16) +
                         3 * (sizeof(DSHalfEdge) + 8) + sizeof(DSLoop) + 8 + sizeof(DSFace) + 16;
    EXPECT_LE(bytes, 700);
}
}
