#include "FitStage.h"
#include "IncrementalConnection.h"
#include "LinksHold.h"
#include "LiteralConnection.h"
#include "RandomMeshes.h"
#include "RecordDump.h"
#include "Refusal.h"
#include "Vectors.h"
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace tessarine
{
namespace
{
/// At random, as many on each face on the average.
std::vector<smVec3d> ScatterOnFaces(const DSSolid& solid, std::size_t count, unsigned seed)
{
    std::mt19937 random(seed);
    const auto draw = [&random] { return static_cast<double>(random()) / 4294967296.0; };
    std::vector<smVec3d> points;
    while (points.size() < count)
    {
        const auto& faces = solid.GetFaceList();
        const DSHalfEdge* h = faces[random() % faces.size()]->GetLoopList()[0]->GetHalfEdge();
        double u = draw();
        double v = draw();
        if (u + v > 1.0)
        {
            u = 1.0 - u;
            v = 1.0 - v;
        }
        const smVec3d& a = h->GetVertex()->GetPosition();
        points.push_back(a + (h->GetNext()->GetVertex()->GetPosition() - a) * u +
                         (h->GetPrev()->GetVertex()->GetPosition() - a) * v);
    }
    return points;
}

FootList FindFeet(DSSolid& solid, const std::vector<smVec3d>& cloud)
{
    const ConsoleCapture console;
    FootSearch search(solid, kIncrementalFeet);
    return CalculateFootPoints(
        solid, cloud, [](std::size_t) { return true; }, search, nullptr);
}

struct Growth
{
    Growth(const IndexedMesh& mesh, std::size_t points, unsigned seed) : solid(stage.Load(mesh))
    {
        feet = FindFeet(solid, ScatterOnFaces(solid, points, seed));
    }

    FitStage stage;
    DSSolid& solid;
    FootList feet;
};

std::vector<std::uint32_t> IDsOf(const auto& edges)
{
    std::vector<std::uint32_t> ids;
    for (const DSEdge* edge : edges)
    {
        ids.push_back(edge->GetID());
    }
    return ids;
}

/// How often each was gone.
struct Branches
{
    int holes = 0;
    int closings = 0;
    int refusals = 0;
};

void CompareGrowth(const IndexedMesh& mesh, std::size_t points, unsigned seed, Branches& branches)
{
    Growth literal(mesh, points, seed);
    LiteralConnection expected(literal.stage.GetElements(), literal.solid, literal.feet);
    ASSERT_TRUE(expected.MakeSeed());

    Growth growth(mesh, points, seed);
    ConsoleCapture console;
    const AssertionCapture assertions;
    IncrementalConnection connection;
    connection.Begin(&growth.stage.GetElements(), &growth.solid, growth.feet);
    connection.MakeSeed();
    while (!connection.IsFrontEmpty())
    {
        expected.ConnectNext();
        connection.ConnectNext();
        ASSERT_EQ(IDsOf(connection.GetFrontEdges()), IDsOf(expected.GetFrontEdges()));
    }
    connection.CalcNormals();
    EXPECT_TRUE(expected.GetFrontEdges().empty());
    EXPECT_EQ(connection.GetFootVertices(), expected.GetFootVertices());
    EXPECT_TRUE(console.GetText() == expected.GetConsole());
    EXPECT_TRUE(DumpRecords(growth.stage.GetElements()) == DumpRecords(literal.stage.GetElements()));
    branches.holes += console.Count("Cannot find point!");
    branches.refusals += console.Count("Connect the two faces..");
    branches.closings +=
        console.Count("The point has a vertex already..") - console.Count("Connect the two faces..");
}

class ConnectionAgainstLiteral : public testing::TestWithParam<unsigned>
{
};

TEST_P(ConnectionAgainstLiteral, GrowsTheSameMesh)
{
    const unsigned seed = GetParam();
    Branches branches;
    CompareGrowth(Sphere(1), 300, seed, branches);
    CompareGrowth(Shaken(Sphere(2), seed), 400, seed, branches);
    CompareGrowth(Placed(TriangleCube(), 2.0, {-1, -1, -1}), 250, seed, branches);
    CompareGrowth(Shaken(Placed(Torus(9, 7), 0.4, {}), seed), 400, seed, branches);
    CompareGrowth(CentredTetrahedron(), 120, seed, branches);
    EXPECT_GT(branches.holes, 0);
    EXPECT_GT(branches.closings, 0);
    EXPECT_GT(branches.refusals, 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, ConnectionAgainstLiteral, testing::Range(0U, 3U));

/// On one face, among them points that come twice, that are near one of those before, and that lie on lines.
std::vector<smVec3d> CrowdedFeet(std::mt19937& random, int count)
{
    const auto draw = [&random] { return static_cast<double>(random()) / 4294967296.0; };
    const int steps = 1 << random() % 8; // of a grid: equal distances
    const auto drawOnGrid = [&] { return std::floor(draw() * steps) / steps; };
    const double share = draw() * draw(); // of points that may be anywhere
    const smVec3d along(draw(), draw(), draw());
    std::vector<smVec3d> feet{{drawOnGrid(), drawOnGrid(), 0.0}};
    while (static_cast<int>(feet.size()) < count)
    {
        const smVec3d& before = feet[random() % feet.size()];
        switch (draw() < share ? 4 : random() % 4)
        {
        case 0: feet.push_back(before); break;
        case 1: feet.push_back(before + smVec3d(draw(), draw(), draw()) * 1e-9); break;
        case 2: feet.push_back(along * draw()); break;
        case 3: feet.push_back(along * drawOnGrid()); break;
        default: feet.emplace_back(drawOnGrid(), drawOnGrid(), 0.0);
        }
    }
    return feet;
}

TEST(ConnectionAgainstLiteralSeed, StartsAtTheSameFeetOfCrowdedFaces)
{
    std::mt19937 random(1);
    int starts = 0;
    constexpr int kRuns = 400;
    for (int run = 0; run < kRuns; ++run)
    {
        const std::vector<smVec3d> crowd = CrowdedFeet(random, 4 + run % 40);
        const auto putOnAFace = [&crowd](FitStage& stage)
        {
            FootList feet;
            DSFace* face = stage.GetScene().GetCurrentSolid()->GetFaceList()[0];
            for (const smVec3d& p : crowd)
            {
                feet.Add({face, p, 0.0, {}}, feet.points.size());
            }
            return feet;
        };
        FitStage stage;
        DSSolid& solid = stage.Load(CentredTetrahedron());
        LiteralConnection expected(stage.GetElements(), solid, putOnAFace(stage));
        const bool starting = expected.MakeSeed();

        FitStage other;
        DSSolid& otherSolid = other.Load(CentredTetrahedron());
        ConsoleCapture console;
        const AssertionCapture assertions;
        IncrementalConnection connection;
        connection.Begin(&other.GetElements(), &otherSolid, putOnAFace(other));
        EXPECT_EQ(GetRefusal([&connection] { connection.MakeSeed(); }).empty(), starting) << run;
        EXPECT_EQ(console.GetText(), expected.GetConsole()) << run;
        starts += starting ? 1 : 0;
    }
    EXPECT_GT(starts, kRuns / 10);
    EXPECT_LT(starts, kRuns * 9 / 10);
}

/// What every state of a growth keeps to: a sphere of triangles and the outer face, no two edges between the same
/// vertices, and a vertex at most for each foot, at its place.
void ExpectSoundGrowth(const IncrementalConnection& connection)
{
    const DSSolid& solid = *connection.GetNewSolid();
    ASSERT_TRUE(LinksHold(solid));
    ASSERT_EQ(EulerCharacteristic(solid), 2);
    for (std::size_t i = 1; i < solid.GetFaceList().size(); ++i)
    {
        const DSHalfEdge* h = solid.GetFaceList()[i]->GetLoopList()[0]->GetHalfEdge();
        ASSERT_EQ(h->GetNext()->GetNext()->GetNext(), h);
    }
    std::set<std::pair<const DSVertex*, const DSVertex*>> pairs;
    for (const DSEdge* edge : solid.GetEdgeList())
    {
        ASSERT_TRUE(
            pairs.insert(std::minmax(edge->GetHalfEdge1()->GetVertex(), edge->GetHalfEdge2()->GetVertex()))
                .second);
    }
    std::size_t vertices = 0;
    const std::vector<std::int32_t>& footVertices = connection.GetFootVertices();
    for (std::size_t foot = 0; foot < footVertices.size(); ++foot)
    {
        if (footVertices[foot] >= 0)
        {
            ++vertices;
            const auto place =
                static_cast<std::size_t>(footVertices[foot]) - solid.GetVertexList()[0]->GetID();
            ASSERT_EQ(solid.GetVertexList()[place]->GetPosition(), connection.GetFeet().points[foot]);
        }
    }
    ASSERT_EQ(vertices, solid.GetVertexList().size());
}

/// Each step adds a face or shortens the front.
void GrowSoundly(const IndexedMesh& mesh, std::size_t points, unsigned seed, int checkEvery)
{
    Growth growth(mesh, points, seed);
    const ConsoleCapture console;
    const AssertionCapture assertions;
    const std::string before = DumpRecords(growth.stage.GetElements());
    IncrementalConnection connection;
    connection.Begin(&growth.stage.GetElements(), &growth.solid, growth.feet);
    connection.MakeSeed();
    for (int step = 0; !connection.IsFrontEmpty(); ++step)
    {
        const std::size_t faces = connection.GetNewSolid()->GetFaceList().size();
        const std::size_t front = connection.GetFrontEdges().size();
        connection.ConnectNext();
        const bool added = connection.GetNewSolid()->GetFaceList().size() > faces;
        ASSERT_TRUE(added || connection.GetFrontEdges().size() < front);
        if (step % checkEvery == 0)
        {
            ASSERT_NO_FATAL_FAILURE(ExpectSoundGrowth(connection));
        }
    }
    ExpectSoundGrowth(connection);
    EXPECT_TRUE(connection.IsModelUnchanged());
    EXPECT_TRUE(LinksHold(growth.solid));
    EXPECT_GT(connection.GetNewSolid()->GetVertexList().size(), 20U);
}

TEST(ConnectionOfRandomClouds, EndsAndIsSoundOnTheWay)
{
    for (unsigned seed = 0; seed < 3; ++seed)
    {
        GrowSoundly(Shaken(Sphere(2), seed), 300, seed, 7);
        GrowSoundly(Shaken(Placed(Torus(9, 7), 0.4, {}), seed), 300, seed, 7);
    }
}

TEST(ConnectionOfRandomClouds, EndsOnLargerOnes)
{
    GrowSoundly(Sphere(4), 8000, 1, 5000);
    GrowSoundly(Placed(TriangleCube(), 2.0, {-1, -1, -1}), 3000, 2, 2000);
}

TEST(ConnectionOfRandomClouds, EndsWithFeetInOnePlace)
{
    // Every fourth foot is there three times: triangles without a side are none.
    FitStage stage;
    DSSolid& solid = stage.Load(Sphere(1));
    std::vector<smVec3d> cloud;
    for (const smVec3d& p : ScatterOnFaces(solid, 200, 5))
    {
        cloud.insert(cloud.end(), cloud.size() % 4 == 0 ? 3 : 1, p);
    }
    const ConsoleCapture console;
    const AssertionCapture assertions;
    IncrementalConnection connection;
    connection.Begin(&stage.GetElements(), &solid, FindFeet(solid, cloud));
    connection.MakeSeed();
    while (!connection.IsFrontEmpty())
    {
        connection.ConnectNext();
    }
    ExpectSoundGrowth(connection);
}
}
}
