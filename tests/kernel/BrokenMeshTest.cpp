#include "Capture.h"
#include "LinksHold.h"
#include "LiteralBuild.h"
#include "Meshes.h"
#include "NormalSums.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

/// Meshes as they come out of real programs: faces that run the same way along an edge, edges of many faces,
/// corners repeated in a face. An import has to come to its end on all of them.
namespace tessarine
{
namespace
{
std::uint32_t PlaceOf(const DSHalfEdge* halfEdge)
{
    return halfEdge != nullptr ? halfEdge->GetID() & 0xDFFFFFFF : LiteralBuild::kNone;
}

LinkRules AllRules()
{
    return {true, true, true};
}

class BrokenMesh : public testing::Test
{
protected:
    /// What an import does with a model, and the copy before a subdivision.
    DSSolid* ImportAndCopy(const IndexedMesh& mesh)
    {
        const ConsoleCapture console;
        m_Manager.Clear();
        DSSolid* pSolid = m_Manager.LoadSolid(mesh.positions, mesh.indices, mesh.faceSizes, false);
        pSolid->CheckTopology();
        pSolid->CalcNormals();
        DSSolid* pCopy = m_Manager.CreateSolid();
        m_Manager.CopySolid(pSolid, pCopy);
        EXPECT_TRUE(LinksHold(*pCopy, AllRules()));
        EXPECT_EQ(pCopy->GetEdgeList().size(), pSolid->GetEdgeList().size());
        return pSolid;
    }

    /// Random corners, few of them, so that nearly every edge has several faces.
    IndexedMesh MakeGarbage()
    {
        IndexedMesh mesh;
        const int vertices = 1 + Random(7);
        for (int i = 0; i < vertices; ++i)
        {
            mesh.positions.emplace_back(Random(5), Random(5), Random(5));
        }
        for (int faces = Random(12); faces > 0; --faces)
        {
            const int corners = 1 + Random(5);
            for (int corner = 0; corner < corners; ++corner)
            {
                mesh.indices.push_back(1 + Random(vertices));
            }
            mesh.faceSizes.push_back(corners);
        }
        return mesh;
    }

    int Random(int limit) { return static_cast<int>(m_Random() % static_cast<unsigned>(limit)); }

    std::mt19937 m_Random{4711};
    MANBrepElementManager m_Manager;
    AssertionCapture m_Assertions;
};
}

TEST_F(BrokenMesh, GarbageIsImportedAndCopied)
{
    for (int round = 0; round < 5000; ++round)
    {
        const IndexedMesh mesh = MakeGarbage();
        DSSolid* pSolid = nullptr;
        ASSERT_NO_THROW(pSolid = ImportAndCopy(mesh)) << "round " << round;
        ASSERT_TRUE(LinksHold(*pSolid, AllRules())) << "round " << round;
        for (DSVertex* pVertex : pSolid->GetVertexList())
        {
            if (pVertex->GetHalfEdge() != nullptr && pVertex->GetHalfEdge()->GetEdge() != nullptr)
            {
                const ConsoleCapture console;
                ASSERT_NO_THROW(pVertex->GetValence());
            }
        }
    }
}

TEST_F(BrokenMesh, GarbageGetsTheEdgesAndTheLinesOfTheLiteralForm)
{
    for (int round = 0; round < 2000; ++round)
    {
        const IndexedMesh mesh = MakeGarbage();
        m_Manager.Clear();
        ConsoleCapture console;
        const DSSolid* pSolid = m_Manager.BuildSolid(mesh.positions, mesh.indices, mesh.faceSizes, false);
        const LiteralBuild literal(mesh.indices, mesh.faceSizes);
        ASSERT_EQ(console.GetLines(), literal.lines) << "round " << round;
        std::vector<LiteralBuild::Edge> edges;
        for (const DSEdge* pEdge : pSolid->GetEdgeList())
        {
            edges.push_back({PlaceOf(pEdge->GetHalfEdge1()), PlaceOf(pEdge->GetHalfEdge2())});
        }
        ASSERT_EQ(edges, literal.edges) << "round " << round;
        for (std::size_t place = 0; place < mesh.indices.size(); ++place)
        {
            const DSEdge* pEdge = m_Manager.GetHalfEdgeArray()[place]->GetEdge();
            const bool hasEdge = literal.edgeOfHalfEdge[place] != LiteralBuild::kNone;
            ASSERT_EQ(pEdge, hasEdge ? pSolid->GetEdgeList()[literal.edgeOfHalfEdge[place]] : nullptr);
        }
    }
}

TEST_F(BrokenMesh, RandomlyTurnedFacesAreImportedInTime)
{
    // Every walk wanders: taken to the end they would visit some 10^9 half-edges.
    IndexedMesh mesh = Torus(150, 150);
    for (std::size_t face = 0; face < mesh.CountFaces(); ++face)
    {
        if (Random(2) == 0)
        {
            std::swap(mesh.indices[3 * face], mesh.indices[3 * face + 1]);
        }
    }
    ImportAndCopy(mesh);
}

TEST_F(BrokenMesh, WalksAroundAVertexOfAMoebiusStripEnd)
{
    // Five quadrilaterals in a ring with a half turn; the last edge is shared by faces that run the same way.
    IndexedMesh mesh;
    for (int i = 0; i < 10; ++i)
    {
        mesh.positions.emplace_back(i, i % 2, 0);
    }
    for (int i = 0; i < 4; ++i)
    {
        mesh.AddFace({2 * i + 1, 2 * i + 2, 2 * i + 4, 2 * i + 3});
    }
    mesh.AddFace({9, 10, 1, 2});
    DSSolid* pSolid = ImportAndCopy(mesh);
    for (DSVertex* pVertex : pSolid->GetVertexList())
    {
        EXPECT_EQ(pVertex->GetValence(), 3);
    }
}

TEST_F(BrokenMesh, AWanderingWalkGoesAllItsWay)
{
    // Two triangles of one direction on the edge 1-2. From corner 1 of the first face the walk crosses the
    // edge, goes on from corner 2 of the second, and ends at the boundary; backwards it ends at once.
    IndexedMesh mesh = SingleTriangle();
    mesh.positions.emplace_back(0, 0, 1);
    mesh.AddFace({1, 2, 4});
    DSSolid* pSolid = ImportAndCopy(mesh);
    DSVertex* pVertex = pSolid->GetVertexList()[0];
    pVertex->GetHalfEdge() = pSolid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge();
    pVertex->GetNormal() = smVec3d();
    // The normals are (0, 0, 1) and (1,0,0) x (-1,0,1) = (0, -1, 0).
    const smVec3d normal = pVertex->CalcNormal();
    EXPECT_DOUBLE_EQ(normal.z, std::sqrt(0.5));
    EXPECT_DOUBLE_EQ(normal.y, -std::sqrt(0.5));
    EXPECT_EQ(pVertex->GetValence(), 3);
}

TEST_F(BrokenMesh, AWanderingWalkEndsWhereTheLimitIsSpent)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.positions.emplace_back(0, 0, 1);
    mesh.AddFace({1, 2, 4});
    DSSolid* pSolid = ImportAndCopy(mesh);
    DSVertex* pVertex = pSolid->GetVertexList()[0];
    pVertex->GetHalfEdge() = pSolid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge();
    pVertex->GetNormal() = smVec3d();

    NormalSums sums(WanderingLimit(0));
    sums.Add(*pVertex);
    sums.Finish();
    EXPECT_EQ(pVertex->GetNormal().y, 0.0); // the first face alone counts
    EXPECT_EQ(pVertex->GetNormal().z, 1.0);
    EXPECT_EQ(sums.CountCutWalks(), 1U);
}

TEST_F(BrokenMesh, ManyFacesOnOneEdgeAreImported)
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(0, 0, 1)};
    for (int i = 0; i < 1000; ++i)
    {
        mesh.positions.emplace_back(1, i, 0);
        mesh.AddFace({1, 2, i + 3});
    }
    DSSolid* pSolid = ImportAndCopy(mesh);
    EXPECT_EQ(pSolid->GetEdgeList().size(), 2001U);
    // The edge lists the first and the newest.
    EXPECT_EQ(pSolid->GetEdgeList()[0]->GetHalfEdge1()->GetID(), 0x20000000U);
    EXPECT_EQ(pSolid->GetEdgeList()[0]->GetHalfEdge2()->GetID(), 0x20000000U + 3 * 999);
}

TEST_F(BrokenMesh, AFaceThatRepeatsACornerIsImported)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.indices = {1, 1, 2};
    DSSolid* pSolid = ImportAndCopy(mesh);
    EXPECT_EQ(pSolid->GetEdgeList().size(), 2U); // 1-1 and 1-2
    EXPECT_TRUE(LinksHold(*pSolid, AllRules()));
}
}
