#include "Capture.h"
#include "IASubLOOPCommand.h"
#include "LinksHold.h"
#include "LiteralLoop.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "RandomMeshes.h"
#include "RecordDump.h"
#include <cmath>
#include <functional>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
/// What a run leaves: the failure, the console and every record.
struct Outcome
{
    std::string failure;
    std::string console;
    std::string records;
};

void SubdivideByCommand(MANBrepElementManager& elements, MANSceneManager& scene)
{
    IASubLOOPCommand command;
    command.SetElementManager(&elements);
    command.SetSceneManager(&scene);
    command.Execute();
}

/// Runs twice on the mesh, which is the second solid of its manager.
Outcome Run(const IndexedMesh& mesh,
            const std::function<void(MANBrepElementManager&, MANSceneManager&)>& step)
{
    MANBrepElementManager elements;
    MANSceneManager scene;
    LoadQuietly(elements, QuadCube());
    const MANSceneLeaf* pLeaf = scene.AppendLeaf(LoadQuietly(elements, mesh));

    Outcome outcome;
    const AssertionCapture assertions;
    ConsoleCapture console;
    try
    {
        step(elements, scene);
        step(elements, scene);
    }
    catch (const IException& exception)
    {
        outcome.failure = exception.GetMessage();
    }
    outcome.console = console.GetText();
    EXPECT_TRUE(LinksHold(*pLeaf->GetSolid(), {.allowDisplacedHalfEdges = true, .allowTornEdges = true}));
    outcome.records = DumpRecords(elements);
    return outcome;
}

/// @return whether the mesh was subdivided
bool ExpectSame(const IndexedMesh& mesh, const std::string& name)
{
    const Outcome literal = Run(mesh, SubdivideLiterally);
    const Outcome command = Run(mesh, SubdivideByCommand);
    EXPECT_EQ(command.failure, literal.failure) << name;
    EXPECT_EQ(command.console, literal.console) << name;
    EXPECT_TRUE(command.records == literal.records) << name << ": the records differ";
    return literal.failure.empty();
}

TEST(LoopAgainstLiteral, GivesTheSameOnWholeMeshes)
{
    EXPECT_TRUE(ExpectSame(SingleTriangle(), "triangle"));
    EXPECT_TRUE(ExpectSame(Tetrahedron(), "tetrahedron"));
    EXPECT_TRUE(ExpectSame(QuadCube(), "cube of quads"));
    EXPECT_TRUE(ExpectSame(TriangleCube(), "cube of triangles"));
    EXPECT_TRUE(ExpectSame(Shaken(Sphere(2), 1), "sphere"));
    EXPECT_TRUE(ExpectSame(Shaken(Torus(9, 7), 2), "torus"));
    EXPECT_TRUE(ExpectSame(Shaken(Grid(6), 3), "grid"));
    EXPECT_TRUE(ExpectSame(OpenFan(5), "open fan"));
}

TEST(LoopAgainstLiteral, GivesTheSameOnBrokenMeshes)
{
    EXPECT_TRUE(ExpectSame(ThreeTrianglesOnOneEdge(), "three faces on an edge"));
    EXPECT_TRUE(ExpectSame(BowTie(), "bow tie"));
    EXPECT_TRUE(ExpectSame(DegenerateTriangle(), "collinear triangle"));
}

TEST(LoopAgainstLiteral, GivesTheSameAroundCrowdedVertices)
{
    EXPECT_TRUE(ExpectSame(Shaken(Bipyramid(200), 4), "bipyramid"));
    EXPECT_TRUE(ExpectSame(Shaken(OpenFan(200), 5), "open fan"));
    EXPECT_TRUE(ExpectSame(Shaken(JoinInFirstCorner(Bipyramid(60), Bipyramid(50)), 6), "two fans"));
    EXPECT_TRUE(ExpectSame(Shaken(JoinInFirstCorner(OpenFan(60), OpenFan(50)), 7), "two open fans"));
}

/// A fan of n triangles around the first vertex, whose first half-edge follows one that a third face has displaced;
/// and a second fan there, so that looking an edge up fails.
IndexedMesh CrowdedFanBehindADisplacedHalfEdge(int n)
{
    IndexedMesh mesh;
    const int x = n + 2;
    const int p = n + 3;
    const int q = n + 4;
    const int y = n + 5;
    mesh.positions.resize(static_cast<std::size_t>(y));
    for (std::size_t i = 0; i < mesh.positions.size(); ++i)
    {
        const auto t = static_cast<double>(i);
        mesh.positions[i] = smVec3d(std::cos(t), std::sin(2.0 * t), 0.1 * t);
    }
    mesh.indices = {1, p, q};
    mesh.faceSizes = {3};
    for (int i = 2; i < x; ++i)
    {
        mesh.indices.insert(mesh.indices.end(), {1, i, i + 1});
        mesh.faceSizes.push_back(3);
    }
    mesh.indices.insert(mesh.indices.end(), {x, 1, x, y});
    mesh.faceSizes.push_back(4);
    return mesh;
}

TEST(LoopAgainstLiteral, SaysTheSameWhereACrowdedFanEndsAtADisplacedHalfEdge)
{
    for (const int n : {8, 16, 17, 20, 40})
    {
        EXPECT_TRUE(ExpectSame(CrowdedFanBehindADisplacedHalfEdge(n), "fan of " + std::to_string(n)));
    }
}

TEST(LoopAgainstLiteral, GivesTheSameOnFacesOfManyCorners)
{
    IndexedMesh prism;
    constexpr int n = 60;
    prism.positions.resize(2 * static_cast<std::size_t>(n));
    for (int i = 1; i <= n; ++i)
    {
        prism.indices.push_back(i);
    }
    for (int i = 2 * n; i > n; --i)
    {
        prism.indices.push_back(i);
    }
    prism.faceSizes = {n, n};
    for (int i = 1; i < n; ++i) // one side is left out
    {
        prism.AddFace({i + 1, i, n + i, n + i + 1});
    }
    EXPECT_TRUE(ExpectSame(Shaken(prism, 8), "prism"));
    prism.AddFace({1, 2, n + 1}); // displaces a side of the long faces, whose loops become odd
    prism.AddFace({n + 2, n + 1, 1});
    EXPECT_TRUE(ExpectSame(Shaken(prism, 9), "prism with three faces on an edge"));
}

class LoopAgainstLiteralTest : public testing::TestWithParam<unsigned>
{
};

TEST_P(LoopAgainstLiteralTest, GivesTheSameOnSpoiltMeshes)
{
    const unsigned seed = GetParam();
    ExpectSame(Shaken(Spoilt(Torus(8, 6), seed), seed), "torus");
    ExpectSame(Shaken(Spoilt(Grid(6), seed), seed), "grid");
    ExpectSame(Shaken(Spoilt(Bipyramid(80), seed), seed), "bipyramid");
    ExpectSame(Shaken(Spoilt(OpenFan(80), seed), seed), "open fan");
    ExpectSame(Shaken(Spoilt(QuadCube(), seed), seed), "cube");
    ExpectSame(Shaken(Spoilt(JoinInFirstCorner(OpenFan(60), Bipyramid(50)), seed), seed), "two fans");
}

TEST_P(LoopAgainstLiteralTest, GivesTheSameOnFacesDrawnAtRandom)
{
    for (unsigned i = 0; i < 10; ++i)
    {
        ExpectSame(Soup(12, 10, 100 * GetParam() + i), "few faces");
        ExpectSame(Soup(6, 20, 100 * GetParam() + i), "many faces");
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, LoopAgainstLiteralTest, testing::Range(0U, 8U));
}
}
