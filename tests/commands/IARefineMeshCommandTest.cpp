#include "IARefineMeshCommand.h"
#include "Capture.h"
#include "Failure.h"
#include "LinksHold.h"
#include "MANSceneManager.h"
#include "RandomMeshes.h"
#include "RecordDump.h"
#include "Vectors.h"
#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <numbers>
#include <set>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class MeshOptimisation : public testing::Test
{
protected:
    MeshOptimisation()
    {
        m_Command.SetElementManager(&m_Elements);
        m_Command.SetSceneManager(&m_Scene);
    }

    DSSolid* Show(const IndexedMesh& mesh)
    {
        DSSolid* solid = LoadQuietly(m_Elements, mesh);
        const AssertionCapture assertions;
        solid->CalcNormals();
        m_Scene.AppendLeaf(solid);
        return solid;
    }

    /// In new stores.
    DSSolid* ShowAlone(const IndexedMesh& mesh)
    {
        m_Scene.Clear();
        m_Elements.Clear();
        return Show(mesh);
    }

    void Run(int mode)
    {
        m_Command.SetMode(mode);
        m_Command.Execute();
    }

    /// Why it is refused.
    std::string GetRefusal(int mode)
    {
        const std::string before = DumpRecords(m_Elements);
        try
        {
            Run(mode);
        }
        catch (const Failure& failure)
        {
            EXPECT_EQ(DumpRecords(m_Elements), before);
            return failure.GetMessage();
        }
        return "";
    }

    static std::set<std::pair<std::uint32_t, std::uint32_t>> EndsOfEdges(const DSSolid& solid)
    {
        std::set<std::pair<std::uint32_t, std::uint32_t>> ends;
        for (const DSEdge* edge : solid.GetEdgeList())
        {
            const auto a = edge->GetHalfEdge1()->GetVertex()->GetID();
            const auto b = edge->GetHalfEdge1()->GetNext()->GetVertex()->GetID();
            ends.insert(std::minmax(a, b));
        }
        return ends;
    }

    static double SumOfFolds(const DSSolid& solid)
    {
        double sum = 0.0;
        for (const DSEdge* edge : solid.GetEdgeList())
        {
            DSHalfEdge* h1 = edge->GetHalfEdge1();
            DSHalfEdge* h2 = edge->GetHalfEdge2();
            const smVec3d n1 = h1->GetLoop()->GetFace()->CalcNormal();
            const smVec3d n2 = h2->GetLoop()->GetFace()->CalcNormal();
            sum += std::acos(std::clamp(n1.Dot(n2), -1.0, 1.0)) *
                   (h1->GetVertex()->GetPosition() - h2->GetVertex()->GetPosition()).Length();
        }
        return sum;
    }

    MANBrepElementManager m_Elements;
    MANSceneManager m_Scene;
    IARefineMeshCommand m_Command;
};

TEST_F(MeshOptimisation, MeasuresWhatASwapOnAnOctahedronWouldLose)
{
    DSSolid* solid = Show(Sphere(0));
    // Five edges of length sqrt 2 meet at the angle of faces with the normals (1, 1, 1) and (1, 1, -1), over sqrt 3.
    // The new diagonal has length 2, lies between the normals (1, 0, 0) and (0, 1, 0), and either of these has a dot
    // product of -1 / sqrt 3 with the two neighbours on its side.
    const double now = 5 * std::acos(1.0 / 3.0) * std::numbers::sqrt2;
    const double after =
        2 * std::numbers::pi / 2 + 4 * std::acos(-1.0 / std::numbers::sqrt3) * std::numbers::sqrt2;
    for (DSEdge* edge : solid->GetEdgeList())
    {
        EXPECT_NEAR(m_Command.EdgeSwapGain(edge), now - after, 1e-14);
    }
}

TEST_F(MeshOptimisation, MeasuresNothingInAModeThatDoesNotSwap)
{
    DSSolid* solid = Show(Sphere(0));
    m_Command.SetMode(2);
    EXPECT_EQ(m_Command.EdgeSwapGain(solid->GetEdgeList()[0]), 0.0);
    m_Command.SetMode(3);
    EXPECT_NE(m_Command.EdgeSwapGain(solid->GetEdgeList()[0]), 0.0);
}

TEST_F(MeshOptimisation, TakesTheNeighboursNormalsAsTheyAreStored)
{
    DSSolid* solid = Show(Sphere(0));
    DSEdge* edge = solid->GetEdgeList()[3];
    const DSHalfEdge* h1 = edge->GetHalfEdge1();
    const DSHalfEdge* h2 = edge->GetHalfEdge2();
    const auto faceOf = [](const DSHalfEdge* h) { return h->GetLoop()->GetFace(); };
    double expected = m_Command.EdgeSwapGain(edge);
    // A neighbour's normal has a dot product of 1 / 3 with that of the face beside it, and of -1 / sqrt 3 with that of
    // the new one. The unit vector to the end of the edge that is a corner of both has 1 / sqrt 3 and 0.
    const double change = ((std::acos(1.0 / std::numbers::sqrt3) - std::numbers::pi / 2) -
                           (std::acos(1.0 / 3.0) - std::acos(-1.0 / std::numbers::sqrt3))) *
                          std::numbers::sqrt2;
    const smVec3d& a = h1->GetVertex()->GetPosition();
    const smVec3d& b = h2->GetVertex()->GetPosition();
    for (const auto& [side, stale] : {std::pair(h1->GetPrev(), a), std::pair(h1->GetNext(), b),
                                      std::pair(h2->GetPrev(), b), std::pair(h2->GetNext(), a)})
    {
        faceOf(side->GetTwin())->GetNormal() = stale;
        expected += change;
        EXPECT_NEAR(m_Command.EdgeSwapGain(edge), expected, 1e-14);
    }
    faceOf(h1)->GetNormal() = a; // those of its own faces are computed
    faceOf(h2)->GetNormal() = b;
    EXPECT_NEAR(m_Command.EdgeSwapGain(edge), expected, 1e-14);
}

TEST_F(MeshOptimisation, TakesAGainForNoneThatSinglePrecisionRoundsToZero)
{
    for (const double gain : {1e-50, 0x1p-150, 0.0, -1e-50, -1.0, std::numeric_limits<double>::quiet_NaN()})
    {
        EXPECT_FALSE(IARefineMeshCommand::IsWorthASwap(gain)) << gain;
    }
    for (const double gain : {std::nextafter(0x1p-150, 1.0), 1e-40, 1e-10, 1.0})
    {
        EXPECT_TRUE(IARefineMeshCommand::IsWorthASwap(gain)) << gain; // the least float is 0x1p-149
    }
}

TEST_F(MeshOptimisation, GainsNothingInAFlatQuadAndLeavesItsEdge)
{
    DSSolid* solid = Show(TriangleCube());
    int flat = 0;
    for (DSEdge* edge : solid->GetEdgeList())
    {
        const smVec3d& n1 = edge->GetHalfEdge1()->GetLoop()->GetFace()->GetNormal();
        const smVec3d& n2 = edge->GetHalfEdge2()->GetLoop()->GetFace()->GetNormal();
        if (n1 == n2 && edge->GetHalfEdge1()->GetVertex()->GetValence() > 3 &&
            edge->GetHalfEdge2()->GetVertex()->GetValence() > 3)
        {
            ++flat;
            EXPECT_EQ(m_Command.EdgeSwapGain(edge), 0.0);
        }
    }
    EXPECT_GT(flat, 0);
    const auto before = EndsOfEdges(*solid);
    Run(1);
    EXPECT_EQ(EndsOfEdges(*solid), before);
}

TEST_F(MeshOptimisation, NeverSwapsAtAVertexOfValenceThree)
{
    DSSolid* solid = Show(Tetrahedron());
    for (DSEdge* edge : solid->GetEdgeList())
    {
        EXPECT_EQ(m_Command.EdgeSwapGain(edge), -10000.0);
    }
    const auto before = EndsOfEdges(*solid);
    Run(1);
    EXPECT_EQ(EndsOfEdges(*solid), before);
    EXPECT_EQ(m_Elements.GetEdgeArray().size(), 6U);
}

TEST_F(MeshOptimisation, LowersTheSumOfTheFolds)
{
    DSSolid* solid = Show(Shaken(Torus(16, 9), 3));
    const double before = SumOfFolds(*solid);
    std::vector<smVec3d> positions;
    for (const DSVertex* vertex : solid->GetVertexList())
    {
        positions.push_back(vertex->GetPosition());
    }
    Run(1);
    EXPECT_LT(SumOfFolds(*solid), 0.9 * before);
    EXPECT_TRUE(LinksHold(*solid));
    EXPECT_EQ(solid->GetFaceList().size(), 288U);
    EXPECT_EQ(solid->GetEdgeList().size(), 432U);
    for (std::size_t i = 0; i < positions.size(); ++i)
    {
        EXPECT_EQ(solid->GetVertexList()[i]->GetPosition(), positions[i]);
        EXPECT_NEAR(solid->GetVertexList()[i]->GetNormal().Length(), 1.0, 1e-12);
    }
}

TEST_F(MeshOptimisation, PutsTheNewEdgeBetweenTheOppositeCorners)
{
    DSSolid* solid = Show(Sphere(0));
    DSEdge* edge = solid->GetEdgeList()[3];
    const DSHalfEdge* h1 = edge->GetHalfEdge1();
    const DSHalfEdge* h2 = edge->GetHalfEdge2();
    const DSVertex* c = h1->GetPrev()->GetVertex();
    const DSVertex* d = h2->GetPrev()->GetVertex();
    const std::uint32_t gone = edge->GetID();
    const DSEdge* swapped = m_Command.SwapEdge(edge);
    EXPECT_EQ(swapped, solid->GetEdgeList().back());
    EXPECT_EQ(std::set({swapped->GetHalfEdge1()->GetVertex(), swapped->GetHalfEdge2()->GetVertex()}),
              (std::set<DSVertex*>{const_cast<DSVertex*>(c), const_cast<DSVertex*>(d)}));
    EXPECT_EQ(m_Elements.GetEdgeArray()[gone & 0x7FFFFFFF], nullptr);
    EXPECT_EQ(solid->GetFaceList().size(), 8U);
    EXPECT_TRUE(LinksHold(*solid));
}

TEST_F(MeshOptimisation, DoublesAnEdgeWhereTheBestSwapJoinsNeighbours)
{
    // A tetrahedron whose last two faces, both of them beside the edge 3-4, have got a vertex in their middle each. The
    // swap of 1-2 joins 3 and 4, and leaves valences above 3 to these two alone.
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(-1, 2, 0), smVec3d(1, 1, -1),
                      smVec3d(0, 1, 0), smVec3d(2, -3, 1), smVec3d(0, 1, 2)};
    mesh.indices = {1, 2, 3, 2, 1, 4, 1, 3, 5, 3, 4, 5, 4, 1, 5, 3, 2, 6, 2, 4, 6, 4, 3, 6};
    mesh.faceSizes.assign(8, 3);
    const DSSolid* solid = Show(mesh);
    const auto countEdges = [&](std::size_t from, std::size_t to)
    {
        const std::set<const DSVertex*> ends{solid->GetVertexList()[from - 1],
                                             solid->GetVertexList()[to - 1]};
        const auto& edges = solid->GetEdgeList();
        return std::count_if(edges.begin(), edges.end(),
                             [&](const DSEdge* edge)
                             {
                                 return std::set<const DSVertex*>{edge->GetHalfEdge1()->GetVertex(),
                                                                  edge->GetHalfEdge2()->GetVertex()} == ends;
                             });
    };
    EXPECT_EQ(countEdges(1, 2), 1);
    EXPECT_EQ(countEdges(3, 4), 1);
    Run(1);
    EXPECT_EQ(countEdges(1, 2), 0);
    EXPECT_EQ(countEdges(3, 4), 2);
    EXPECT_TRUE(LinksHold(*solid));
}

TEST_F(MeshOptimisation, AssertsThatTheOppositeCornersDiffer)
{
    // Two triangles back to back.
    IndexedMesh pillow;
    pillow.positions = {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(0, 1, 0)};
    pillow.AddFace({1, 2, 3});
    pillow.AddFace({2, 1, 3});
    DSSolid* solid = Show(pillow);
    const AssertionCapture assertions;
    EXPECT_THROW(m_Command.SwapEdge(solid->GetEdgeList()[0]), AssertionFailure);
    EXPECT_EQ(solid->GetEdgeList().size(), 3U);
}

TEST_F(MeshOptimisation, CollectsThirteenEdgesInTheirOrder)
{
    DSSolid* solid = Show(Torus(9, 7));
    DSEdge* edge = solid->GetEdgeList()[20];
    const auto ids = IARefineMeshCommand::CollectEdges(edge);
    EXPECT_EQ(std::set(ids.begin(), ids.end()).size(), 13U);
    const DSHalfEdge* h1 = edge->GetHalfEdge1();
    const DSHalfEdge* h2 = edge->GetHalfEdge2();
    EXPECT_EQ(ids[0], edge->GetID());
    EXPECT_EQ(ids[1], h1->GetNext()->GetEdge()->GetID());
    EXPECT_EQ(ids[2], h1->GetPrev()->GetEdge()->GetID());
    EXPECT_EQ(ids[3], h2->GetNext()->GetEdge()->GetID());
    EXPECT_EQ(ids[4], h2->GetPrev()->GetEdge()->GetID());
    EXPECT_EQ(ids[5], h1->GetNext()->GetTwin()->GetNext()->GetEdge()->GetID());
    EXPECT_EQ(ids[12], h2->GetPrev()->GetTwin()->GetPrev()->GetEdge()->GetID());
}

TEST_F(MeshOptimisation, RepeatsIdsWhereTrianglesCoincide)
{
    DSSolid* solid = Show(Tetrahedron());
    const auto ids = IARefineMeshCommand::CollectEdges(solid->GetEdgeList()[0]);
    EXPECT_EQ(std::set(ids.begin(), ids.end()).size(), 6U);
}

TEST_F(MeshOptimisation, IsRefusedOnARimBeforeAnythingChanges)
{
    Show(Grid(3));
    // 12 sides lie on the rim.
    EXPECT_THAT(GetRefusal(1), HasSubstr("the model has 12 sides of faces without just one other face"));
    EXPECT_THAT(GetRefusal(3), HasSubstr("12 sides"));
}

TEST_F(MeshOptimisation, IsRefusedWhereFacesClash)
{
    IndexedMesh mesh = Sphere(1);
    std::swap(mesh.indices[1], mesh.indices[2]); // its three edges, each with two sides
    Show(mesh);
    EXPECT_THAT(GetRefusal(1), HasSubstr("6 sides"));
}

TEST_F(MeshOptimisation, IsRefusedForThreeFacesAtAnEdge)
{
    Show(ThreeTrianglesOnOneEdge());
    EXPECT_THAT(GetRefusal(1), StartsWith("optimisation swaps edges between two faces"));
}

TEST_F(MeshOptimisation, IsRefusedForPositionsThatAreNotFinite)
{
    DSSolid* solid = Show(Sphere(1));
    for (const double bad :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
    {
        solid->GetVertexList()[4]->GetPosition().z = bad;
        EXPECT_THAT(GetRefusal(1), HasSubstr("not a finite number"));
    }
}

TEST_F(MeshOptimisation, IsRefusedWithoutAModel)
{
    for (const int mode : {1, 2, 3, 9})
    {
        EXPECT_EQ(GetRefusal(mode), "optimisation needs a model: import one first");
    }
}

TEST_F(MeshOptimisation, FailsWhereASwapWouldGiveATriangleWithoutArea)
{
    // The corner between the two at (0, 0, 1) and (0, 0, -1) moves onto their line.
    IndexedMesh mesh = Sphere(0);
    mesh.positions[0] = smVec3d(0, 0, 0);
    Show(mesh);
    EXPECT_THAT(GetRefusal(1), HasSubstr("an edge at (0.000000, 0.000000, "));
}

TEST_F(MeshOptimisation, FailsAtADoubledTriangle)
{
    IndexedMesh mesh = Sphere(0);
    mesh.positions[5] = mesh.positions[2]; // the lower half lies in the upper
    Show(mesh);
    EXPECT_THAT(GetRefusal(1), HasSubstr("in one place"));
}

TEST_F(MeshOptimisation, FailsWhereNumbersAreTooLarge)
{
    IndexedMesh mesh = Shaken(Sphere(1), 2);
    for (smVec3d& position : mesh.positions)
    {
        position *= 1e200;
    }
    const AssertionCapture assertions;
    Show(mesh);
    EXPECT_THROW(Run(1), Failure);
}

TEST_F(MeshOptimisation, LeavesAModelWithoutFaces)
{
    IndexedMesh points;
    points.positions = {smVec3d(0, 0, 0), smVec3d(1, 0, 0)};
    const DSSolid* solid = Show(points);
    for (const int mode : {1, 2, 3})
    {
        Run(mode);
        EXPECT_EQ(solid->GetVertexList().size(), 2U);
    }
}

TEST_F(MeshOptimisation, RemovesAnEdgeWithoutLengthAndItsTwoFaces)
{
    IndexedMesh mesh = Shaken(Sphere(2), 4);
    DSSolid* solid = Show(mesh);
    const DSEdge* edge = solid->GetEdgeList()[30];
    DSVertex* goes = edge->GetHalfEdge1()->GetVertex();
    const DSVertex* stays = edge->GetHalfEdge2()->GetVertex();
    const std::uint32_t id = goes->GetID();
    goes->GetPosition() = stays->GetPosition() + smVec3d(0.9e-10, -0.9e-10, 0);
    const smVec3d kept = stays->GetPosition();
    Run(2);
    EXPECT_EQ(m_Elements.GetVertexArray()[id], nullptr);
    EXPECT_EQ(stays->GetPosition(), kept);
    // 128 faces, 192 edges, 66 vertices before.
    EXPECT_EQ(solid->GetFaceList().size(), 126U);
    EXPECT_EQ(solid->GetEdgeList().size(), 189U);
    EXPECT_EQ(solid->GetVertexList().size(), 65U);
    EXPECT_TRUE(LinksHold(*solid));
    EXPECT_EQ(EulerCharacteristic(*solid), 2);
}

TEST_F(MeshOptimisation, TakesNoEdgeForOneWithoutLengthAtTheTolerance)
{
    DSSolid* solid = Show(Shaken(Sphere(1), 4));
    const DSEdge* edge = solid->GetEdgeList()[5];
    edge->GetHalfEdge2()->GetVertex()->GetPosition() = smVec3d(0, 0, 0);
    edge->GetHalfEdge1()->GetVertex()->GetPosition() = smVec3d(0, 1e-10, 0); // the test is strict
    Run(2);
    EXPECT_EQ(solid->GetFaceList().size(), 32U);
}

TEST_F(MeshOptimisation, OnlyComputesNormalsWhereNothingIsToBeRemoved)
{
    DSSolid* solid = Show(Shaken(Sphere(1), 6));
    const auto before = EndsOfEdges(*solid);
    for (const int mode : {2, 0, 4})
    {
        const ErrorLineCapture errors;
        solid->GetFaceList()[0]->GetNormal() = smVec3d(7, 7, 7);
        Run(mode);
        EXPECT_EQ(EndsOfEdges(*solid), before);
        EXPECT_EQ(m_Elements.GetEdgeArray().size(), 48U);
        EXPECT_NEAR(solid->GetFaceList()[0]->GetNormal().Length(), 1.0, 1e-15);
        EXPECT_EQ(errors.GetText().empty(), mode == 2);
    }
}

TEST_F(MeshOptimisation, LeavesAnEdgeWithoutLengthWhereItsVertexLiesOnARim)
{
    IndexedMesh mesh = Grid(3);
    mesh.positions[1] = mesh.positions[0];   // both on the rim
    mesh.positions[15] = mesh.positions[10]; // the first one on it
    DSSolid* solid = Show(mesh);
    const AssertionCapture assertions;
    const ErrorLineCapture errors;
    Run(2);
    EXPECT_EQ(solid->GetFaceList().size(), 18U);
    EXPECT_TRUE(LinksHold(*solid));
    EXPECT_THAT(errors.GetText(), EndsWith("torn without them: 1\n"));
}

TEST_F(MeshOptimisation, TellsOfNoLengthWhereFacesClash)
{
    IndexedMesh mesh = Sphere(1);
    std::swap(mesh.indices[1], mesh.indices[2]); // the two sides of its edges start at one vertex
    Show(mesh);
    const ErrorLineCapture errors;
    Run(2);
    EXPECT_EQ(errors.GetText(), "");
}

TEST_F(MeshOptimisation, IsRefusedWhereTooMuchStandsInOnePlace)
{
    // A wheel whose hub is handed on from spoke to spoke would move its many half-edges every time.
    IndexedMesh mesh = Bipyramid(4000);
    for (smVec3d& position : mesh.positions)
    {
        position = smVec3d(0, 0, 0);
    }
    DSSolid* solid = Show(mesh);
    const AssertionCapture assertions;
    try
    {
        Run(2);
        EXPECT_TRUE(LinksHold(*solid));
        EXPECT_LT(solid->GetFaceList().size(), 8000U);
    }
    catch (const Failure& failure)
    {
        EXPECT_THAT(failure.GetMessage(), HasSubstr("too many edges without length"));
    }
}

TEST_F(MeshOptimisation, EndsAfterAHundredSwapsAnEdge)
{
    // Between quads a swap turns an edge on by one corner, and three swaps bring it back.
    int rounds = 0;
    for (unsigned seed = 0; seed < 8; ++seed)
    {
        const DSSolid* solid = ShowAlone(Shaken(QuadTorus(6, 6), seed));
        const std::size_t edges = m_Elements.GetEdgeArray().size();
        ConsoleCapture console;
        Run(1);
        const std::size_t swaps = m_Elements.GetEdgeArray().size() - edges;
        EXPECT_EQ(solid->GetEdgeList().size(), 72U);
        EXPECT_TRUE(LinksHold(*solid));
        const bool isStopped = console.GetText() == "Swaps stopped at 100 times the number of edges: 72\n";
        EXPECT_TRUE(isStopped ? swaps == 7200 : console.GetText().empty() && swaps < 7200);
        rounds += isStopped ? 1 : 0;
    }
    EXPECT_GT(rounds, 0);
}

TEST_F(MeshOptimisation, ChecksTheAnglesOfAClosedSurfaceWithoutHandles)
{
    Show(Shaken(Sphere(1), 3));
    const MessageCapture messages;
    EXPECT_TRUE(m_Command.CheckGenus());
    // 18 vertices: 2 pi (18 - 2).
    EXPECT_THAT(messages.GetTexts(), ElementsAre("100.530965"));
}

TEST_F(MeshOptimisation, ChecksTheAnglesOfATorus)
{
    Show(Torus(6, 5));
    EXPECT_FALSE(m_Command.CheckGenus());
}
}
}
