#include "EdgeSwaps.h"
#include "LinksHold.h"
#include "RandomMeshes.h"
#include "SwapMeshes.h"
#include "TwoStepStage.h"
#include "Vectors.h"
#include "VertexRings.h"
#include <cmath>
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::HasSubstr;
using testing::StartsWith;

/// The operations of the two-step command that no entry of the window leads to.
class EarlierRefinement : public TwoStepStage
{
protected:
    smVec3d& At(std::size_t vertex) { return m_Solid->GetVertexList()[vertex]->GetPosition(); }

    /// A vertex of the n-th ring around another.
    const DSVertex& InRing(const DSVertex& centre, int n)
    {
        VertexRings rings;
        rings.Grow(centre, n);
        return *rings.GetVertices().back();
    }

    /// A face of n rings that n - 1 have not.
    const DSFace& BeyondRings(const DSVertex& centre, int n)
    {
        VertexRings rings;
        rings.Grow(centre, n);
        return *rings.GetFaces().back();
    }

    /// Leaves one vertex its point, or none.
    void KeepPointOf(const DSVertex* vertex)
    {
        auto state = m_Command.SaveState();
        for (auto& [id, point] : state.pairs.m_VertexPoint)
        {
            point = vertex != nullptr && id == vertex->GetID() ? point : PointPairs::kNone;
        }
        m_Command.RestoreState(std::move(state));
    }

    /// As the next operation measures by them.
    void ExpectNormalsAnew()
    {
        for (const DSFace* face : m_Solid->GetFaceList())
        {
            EXPECT_EQ(face->GetNormal(), face->ComputeNormal());
        }
    }
};

TEST_F(EarlierRefinement, NeedsARun)
{
    const AssertionCapture assertions;
    double total = 0.0;
    EXPECT_THROW(m_Command.RefineStep(), AssertionFailure);
    EXPECT_THROW(m_Command.ReportError(total, total, total), AssertionFailure);
    EXPECT_THROW(m_Command.SwapEdges(), AssertionFailure);
    EXPECT_THROW(m_Command.SwapEdgesByAngle(), AssertionFailure);
    EXPECT_THROW(m_Command.SmoothByCGM(), AssertionFailure);
    EXPECT_THROW(m_Command.CollapseByPriority(), AssertionFailure);
    EXPECT_THROW(m_Command.Step(), AssertionFailure);
    EXPECT_THROW(m_Command.Update(), AssertionFailure);
    EXPECT_THROW(m_Command.Restore(), AssertionFailure);
}

TEST_F(EarlierRefinement, PutsNewVerticesOnTheirPointsAtOnce)
{
    Show(Sphere(2));
    m_Cloud = m_Stage.WriteCloud(kBunnyCloud, SphereCloud(500, 1));
    m_Command.Execute();
    const std::size_t before = m_Solid->GetVertexList().size();
    const MessageCapture messages;
    m_Command.RefineStep();
    EXPECT_GT(m_Solid->GetVertexList().size(), before);
    for (const DSVertex* vertex : m_Solid->GetVertexList())
    {
        const std::int32_t point = m_Command.GetPairs().FindPoint(vertex->GetID());
        ASSERT_GE(point, 0);
        EXPECT_EQ(vertex->GetPosition(), m_Cloud[static_cast<std::size_t>(point)]);
    }
    EXPECT_TRUE(LinksHold(*m_Solid));
    EXPECT_TRUE(messages.GetTexts().empty());
    EXPECT_EQ(m_Command.GetOldPositions().size(), before);
    ExpectNormalsAnew();
}

TEST_F(EarlierRefinement, TakesTheFootNearestToTheCentroid)
{
    MANBrepElementManager elements;
    const DSFace& face = *LoadQuietly(elements, Sphere(0))->GetFaceList()[2];
    const smVec3d centroid = face.CalcCentroid();
    const smVec3d normal = face.ComputeNormal();
    const smVec3d aside = (face.GetLoopList()[0]->GetHalfEdge()->GetVertex()->GetPosition() - centroid) * 0.1;
    // Distance times distance from the centroid speaks for the point close above the face, the centroid for the other.
    RunOnOwnCorners(Sphere(0), {centroid + aside * 2.0 + normal * 0.01, centroid + aside + normal * 0.1});
    m_Command.RefineStep();
    EXPECT_EQ(OwnerOf(6), -1);
    EXPECT_GE(OwnerOf(7), 0);
}

TEST_F(EarlierRefinement, LeavesTheOtherFootToAStep)
{
    MANBrepElementManager elements;
    const DSFace& face = *LoadQuietly(elements, Sphere(0))->GetFaceList()[2];
    const smVec3d centroid = face.CalcCentroid();
    const smVec3d normal = face.ComputeNormal();
    const smVec3d aside = (face.GetLoopList()[0]->GetHalfEdge()->GetVertex()->GetPosition() - centroid) * 0.1;
    const std::vector<smVec3d> points{centroid + aside * 2.0 + normal * 0.01,
                                      centroid + aside + normal * 0.1};
    RunOnOwnCorners(Sphere(0), points);
    m_Command.Step();
    EXPECT_GE(OwnerOf(6), 0);
    EXPECT_EQ(OwnerOf(7), -1);
    // What is shown for the winner is the foot that was looked at last.
    const smVec3d shown = m_Stage.GetView().GetProjectedPoints()[6];
    EXPECT_NEAR((shown - (centroid + aside)).Length(), 0.0, 1e-6);
}

TEST_F(EarlierRefinement, ReportsTheDistancesOfFreePoints)
{
    MANBrepElementManager elements;
    const DSSolid* plan = LoadQuietly(elements, Sphere(0));
    const auto above = [plan](std::size_t face, double height) {
        return plan->GetFaceList()[face]->CalcCentroid() +
               plan->GetFaceList()[face]->ComputeNormal() * height;
    };
    // Two over their faces, and one without a foot: in the direction of an edge, where its feet lie beside the faces.
    const smVec3d beside(0.875, 0.875, 0);
    RunOnOwnCorners(Sphere(0), {above(1, 0.05), above(6, 0.125), beside});
    double total = 0.0;
    double max = 0.0;
    double average = 0.0;
    m_Command.ReportError(total, max, average);
    const double corner = std::sqrt(0.78125); // 1/8 and 7/8 from (1, 0, 0)
    EXPECT_NEAR(max, corner, 1e-6);
    EXPECT_NEAR(total, 0.05 + 0.125 + corner, 1e-6);
    EXPECT_EQ(average, total / 9.0);
    const std::vector<std::string> lines = m_Console.GetLines();
    ASSERT_GE(lines.size(), 5U);
    const std::string stars = "*****************************************";
    EXPECT_EQ(lines[lines.size() - 5], stars);
    EXPECT_EQ(lines[lines.size() - 4], "Total Error = 1.05888");
    EXPECT_EQ(lines[lines.size() - 3], "Max Error =  0.883883");
    EXPECT_EQ(lines[lines.size() - 2], "Average Error = 0.117654");
    EXPECT_EQ(lines[lines.size() - 1], stars);
}

TEST_F(EarlierRefinement, SwapsWhatShouldBeSwapped)
{
    RunOnOwnCorners(QuadOnABody({-2, 0, 0}, {2, 0, 0}, {0, 0.5, 0}, {0, -0.5, 0}));
    m_Command.SwapEdges();
    EXPECT_NE(m_Stage.GetElements().FindEdge(2, 3), nullptr);
    EXPECT_TRUE(LinksHold(*m_Solid));
    const std::vector<std::string> lines = m_Console.GetLines();
    const auto first = std::find(lines.begin(), lines.end(), "Current edge number: 0");
    ASSERT_NE(first, lines.end());
    EXPECT_EQ(*(first + 1), "Current edge number: 0");
    EXPECT_EQ(lines[lines.size() - 3], "Current edge number: 20");
    EXPECT_THAT(lines[lines.size() - 2], StartsWith("The total number of edges swapped: "));
    EXPECT_EQ(lines[lines.size() - 1], "The edge num:21");
    const auto swapped = std::count(first, lines.end() - 2, "Current edge number: 0") - 1;
    EXPECT_GE(swapped, 1);
    m_Command.SwapEdges();
    EXPECT_EQ(m_Console.Count("The total number of edges swapped: 0"), 1) << "nothing is left to be swapped";
}

TEST_F(EarlierRefinement, SwapsEdgesAcrossAFold)
{
    RunOnOwnCorners(QuadOnABody({-1, 0, -2}, {1, 0, -2}, {0, 1, 0}, {0, -1, 0}));
    m_Command.SwapEdgesByAngle();
    EXPECT_EQ(m_Console.Count("The edge num:21"), 1);
    EXPECT_EQ(m_Console.Count("The total number of edges swapped: 0"), 0);
    EXPECT_TRUE(LinksHold(*m_Solid));
}

TEST_F(EarlierRefinement, LetsAVertexMoveAmongItsNeighbours)
{
    RunOnOwnCorners(Sphere(2));
    const DSVertex& vertex = *m_Solid->GetVertexList()[40];
    EXPECT_TRUE(m_Command.CanMoveVertex(vertex, vertex.GetPosition() * 1.1));
    EXPECT_TRUE(m_Command.CanMoveVertex(vertex, vertex.GetPosition() * 0.9));
    EXPECT_EQ(m_Console.Count("Cannot pass test 1..."), 0);
    // On past a neighbour's point.
    const smVec3d& neighbour = vertex.GetHalfEdge()->GetNext()->GetVertex()->GetPosition();
    EXPECT_FALSE(
        m_Command.CanMoveVertex(vertex, vertex.GetPosition() + (neighbour - vertex.GetPosition()) * 1.5));
    EXPECT_EQ(m_Console.Count("Cannot pass test 1..."), 1);
}

TEST_F(EarlierRefinement, LetsNoVertexMoveThroughTheMesh)
{
    IndexedMesh flat = Bipyramid(6);
    flat.positions.front().z = 0.2;
    flat.positions.back().z = -0.2;
    RunOnOwnCorners(flat);
    const DSVertex& pole = *m_Solid->GetVertexList()[0];
    const smVec3d below(0.1, 0.05, -0.5);
    EXPECT_FALSE(m_Command.CanMoveVertex(pole, below));
    EXPECT_EQ(m_Console.Count("Cannot pass test 1..."), 1) << "the other pole would be passed";
    // Where that has no point, the faces around it are in the way.
    auto state = m_Command.SaveState();
    state.pairs.m_VertexPoint[static_cast<std::uint32_t>(flat.positions.size() - 1)] = PointPairs::kNone;
    m_Command.RestoreState(std::move(state));
    EXPECT_FALSE(m_Command.CanMoveVertex(pole, below));
    EXPECT_EQ(m_Console.Count("cannot pass test 2..."), 1);
}

TEST_F(EarlierRefinement, KeepsAVertexAmongThePointsOfTwoRings)
{
    RunOnOwnCorners(Sphere(3));
    const auto all = m_Command.SaveState();
    const DSVertex& vertex = *m_Solid->GetVertexList()[100];
    for (const int ring : {1, 2, 3})
    {
        m_Command.RestoreState(IAReconstructionSmoothTwoStepCommand::State(all));
        const DSVertex& other = InRing(vertex, ring);
        KeepPointOf(&other);
        const smVec3d past = vertex.GetPosition() + (other.GetPosition() - vertex.GetPosition()) * 1.5;
        const int before = m_Console.Count("Cannot pass test 1...");
        m_Command.CanMoveVertex(vertex, past);
        EXPECT_EQ(m_Console.Count("Cannot pass test 1...") - before, ring <= 2 ? 1 : 0) << ring;
    }
}

TEST_F(EarlierRefinement, KeepsAVertexFromGoingThroughTheFacesOfFourRings)
{
    // Through a convex body to the middle of a face and on, which meets no other face.
    RunOnOwnCorners(Sphere(3));
    KeepPointOf(nullptr);
    const DSVertex& vertex = *m_Solid->GetVertexList()[100];
    for (const int rings : {2, 3, 4, 5, 6})
    {
        const smVec3d way = BeyondRings(vertex, rings).CalcCentroid() - vertex.GetPosition();
        EXPECT_EQ(m_Command.CanMoveVertex(vertex, vertex.GetPosition() + way * 1.5), rings > 4) << rings;
    }
    EXPECT_EQ(m_Console.Count("cannot pass test 2..."), 3);
}

TEST_F(EarlierRefinement, SwapsNothingThatGainsNoMoreThanAThousandth)
{
    RunOnOwnCorners(Shaken(Sphere(2), 3));
    EdgeSwaps gains(&m_Stage.GetElements());
    double largest = 0.0;
    for (DSEdge* edge : m_Solid->GetEdgeList())
    {
        largest = std::max(largest, gains.GetGain(edge));
    }
    // A gain is length times angle, and grows with the model.
    const auto scaleTo = [this](double factor)
    {
        for (DSVertex* vertex : m_Solid->GetVertexList())
        {
            vertex->GetPosition() = vertex->GetPosition() * factor;
        }
        m_Solid->CalcNormals();
    };
    const std::size_t edges = m_Stage.GetElements().GetEdgeArray().size();
    scaleTo(0.0009999 / largest);
    m_Command.CollapseByPriority();
    EXPECT_EQ(m_Stage.GetElements().GetEdgeArray().size(), edges);
    scaleTo(0.0010001 / 0.0009999);
    m_Command.CollapseByPriority();
    EXPECT_GT(m_Stage.GetElements().GetEdgeArray().size(), edges);
}

TEST_F(EarlierRefinement, SmoothsSoThatRingsHaveTheirMeansInThePoints)
{
    // In a tetrahedron the mean of the three others is a point p, and all add up to zero: each vertex goes to -3 p.
    LoadQuietly(m_Stage.GetElements(), TriangleCube()); // so that ids are no places
    RunOnOwnCorners(CentredTetrahedron());
    std::vector<smVec3d> points;
    for (std::size_t i = 0; i < 4; ++i)
    {
        points.push_back(At(i));
    }
    m_Command.SmoothByCGM();
    for (std::size_t i = 0; i < 4; ++i)
    {
        EXPECT_NEAR((At(i) + points[i] * 3.0).Length(), 0.0, 1e-5);
    }
    EXPECT_EQ(m_Console.Count("Init CGM ok..."), 1);
    int solved = 0;
    for (const std::string& line : m_Console.GetLines())
    {
        solved += line.starts_with("Iteration Step = ") ? 1 : 0;
    }
    EXPECT_EQ(solved, 3);
    ExpectNormalsAnew();
}

TEST_F(EarlierRefinement, SmoothsAroundVerticesWithoutFacesAndWithoutPoints)
{
    IndexedMesh mesh = CentredTetrahedron();
    mesh.positions.emplace_back(0.5, 0.5, 0.5);
    RunOnOwnCorners(mesh);
    const smVec3d before = At(1);
    auto state = m_Command.SaveState();
    state.pairs.m_VertexPoint[1] = PointPairs::kNone;
    m_Command.RestoreState(std::move(state));
    m_Command.SmoothByCGM();
    EXPECT_EQ(At(4), smVec3d(0.5, 0.5, 0.5));
    EXPECT_NEAR((At(1) + before * 3.0).Length(), 0.0, 1e-5) << "it stands for itself";
}

TEST_F(EarlierRefinement, SwapsByPriorityAndTellsWhatItDoes)
{
    RunOnOwnCorners(Shaken(Sphere(2), 3));
    const std::size_t before = m_Stage.GetElements().GetEdgeArray().size();
    m_Command.CollapseByPriority();
    const std::size_t swaps = m_Stage.GetElements().GetEdgeArray().size() - before;
    ASSERT_GT(swaps, 0U);
    EXPECT_TRUE(LinksHold(*m_Solid));
    EdgeSwaps gains(&m_Stage.GetElements());
    for (DSEdge* edge : m_Solid->GetEdgeList())
    {
        EXPECT_LE(static_cast<float>(gains.GetGain(edge)), 0.001F);
    }
    const std::vector<std::string> lines = m_Console.GetLines();
    const auto start = std::find(lines.begin(), lines.end(), "After initializeEdgeStack...");
    ASSERT_EQ(lines.end() - start, static_cast<std::ptrdiff_t>(2 + 15 * swaps));
    EXPECT_EQ(start[1], "Size of edge stack: 192");
    for (std::size_t swap = 0; swap < swaps; ++swap)
    {
        const auto round = start + 2 + static_cast<std::ptrdiff_t>(15 * swap);
        EXPECT_EQ(round[0], "Edges for update: " + std::to_string(ElementKind::Edge | (before + swap)));
        EXPECT_THAT(round[12], StartsWith("Edges for update: "));
        EXPECT_EQ(round[13], "The size of edge stack (after update): 192");
        EXPECT_THAT(round[14], StartsWith("The current max value: "));
    }
}
}
}
