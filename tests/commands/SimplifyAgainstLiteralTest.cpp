#include "IASimplifyCommand.h"
#include "LiteralSimplify.h"
#include "RandomMeshes.h"
#include "TrialModel.h"
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace tessarine
{
namespace
{
void SimplifyByCommand(MANBrepElementManager& elements, MANSceneManager& scene, float ratio)
{
    IASimplifyCommand command;
    command.SetElementManager(&elements);
    command.SetSceneManager(&scene);
    command.SetRatio(ratio);
    command.Execute();
}

/// @return whether the runs came to their ends
bool ExpectSameSimplification(TrialModel& first, TrialModel& second, float ratio, const std::string& name)
{
    return ExpectSameOutcome(
        first, [ratio](auto& elements, auto& scene) { SimplifyLiterally(elements, scene, ratio); }, second,
        [ratio](auto& elements, auto& scene) { SimplifyByCommand(elements, scene, ratio); },
        name + " at " + std::to_string(ratio));
}

bool ExpectSameSimplification(const IndexedMesh& mesh, float ratio, const std::string& name)
{
    TrialModel first(mesh, true);
    TrialModel second(mesh, true);
    return ExpectSameSimplification(first, second, ratio, name);
}

/// @return whether all runs came to their ends
bool ExpectSameAtAllRatios(const IndexedMesh& mesh, const std::string& name)
{
    bool good = true;
    for (const float ratio : {0.0F, 0.2F, 0.5F, 0.8F, 1.0F})
    {
        good = ExpectSameSimplification(mesh, ratio, name) && good;
    }
    return good;
}

/// A sheet with hills, and with some squares cut out of it.
IndexedMesh HillsWithHoles(int n)
{
    const IndexedMesh grid = Grid(n);
    IndexedMesh hills;
    hills.positions = grid.positions;
    for (smVec3d& p : hills.positions)
    {
        p.z = 0.1 * std::sin(9.0 * p.x) * std::cos(7.0 * p.y) + 0.02 * std::sin(40.0 * p.x * p.y);
    }
    for (std::size_t face = 0; face < grid.CountFaces(); ++face)
    {
        if (face / 2 % 37 != 11)
        {
            const std::int32_t* corners = &grid.indices[3 * face];
            hills.AddFace({corners[0], corners[1], corners[2]});
        }
    }
    return hills;
}

/// A closed surface with dents and bumps, as a scan has them.
IndexedMesh Bust(int levels)
{
    IndexedMesh bust = Sphere(levels);
    for (smVec3d& p : bust.positions)
    {
        p *= 1.0 + 0.2 * std::sin(3.0 * p.x + 2.0 * p.y) + 0.05 * std::sin(11.0 * p.z) * std::cos(13.0 * p.x);
        p.y *= 1.7;
    }
    return bust;
}

TEST(SimplifyAgainstLiteral, GivesTheSameOnClosedMeshes)
{
    EXPECT_TRUE(ExpectSameAtAllRatios(Tetrahedron(), "tetrahedron"));
    EXPECT_TRUE(ExpectSameAtAllRatios(TriangleCube(), "cube"));
    EXPECT_TRUE(ExpectSameAtAllRatios(Sphere(2), "sphere"));
    EXPECT_TRUE(ExpectSameAtAllRatios(Shaken(Sphere(3), 1), "shaken sphere"));
    EXPECT_TRUE(ExpectSameAtAllRatios(Torus(13, 9), "torus"));
    EXPECT_TRUE(ExpectSameAtAllRatios(Bust(4), "bust"));
}

TEST(SimplifyAgainstLiteral, GivesTheSameOnOpenMeshes)
{
    EXPECT_TRUE(ExpectSameAtAllRatios(SingleTriangle(), "triangle"));
    EXPECT_TRUE(ExpectSameAtAllRatios(Grid(9), "flat grid"));
    EXPECT_TRUE(ExpectSameAtAllRatios(Shaken(Grid(9), 2), "shaken grid"));
    EXPECT_TRUE(ExpectSameAtAllRatios(OpenFan(7), "fan"));
    EXPECT_TRUE(ExpectSameAtAllRatios(ClosedFan(9), "disc"));
    EXPECT_TRUE(ExpectSameAtAllRatios(HillsWithHoles(24), "hills"));
}

TEST(SimplifyAgainstLiteral, GivesTheSameOnSeveralPieces)
{
    EXPECT_TRUE(
        ExpectSameAtAllRatios(Beside(Bust(2), Beside(Shaken(Torus(8, 5), 3), Grid(4))), "three pieces"));
    EXPECT_TRUE(
        ExpectSameAtAllRatios(Beside(SingleTriangle(), SingleTriangle()), "two triangles, one on the other"));
}

TEST(SimplifyAgainstLiteral, GivesTheSameWhereTheSurfaceIsNone)
{
    EXPECT_TRUE(ExpectSameAtAllRatios(ThreeTrianglesOnOneEdge(), "three faces on an edge"));
    EXPECT_TRUE(ExpectSameAtAllRatios(BowTie(), "bow tie"));
    EXPECT_TRUE(ExpectSameAtAllRatios(JoinInFirstCorner(Bust(2), Torus(7, 5)), "two pieces in a vertex"));
    EXPECT_TRUE(ExpectSameAtAllRatios(Shaken(QuadCube(), 10), "quads"));
}

TEST(SimplifyAgainstLiteral, GivesTheSameAroundCrowdedVertices)
{
    EXPECT_TRUE(ExpectSameAtAllRatios(Shaken(Bipyramid(150), 4), "bipyramid"));
    EXPECT_TRUE(ExpectSameAtAllRatios(Shaken(OpenFan(120), 5), "open fan"));
    EXPECT_TRUE(
        ExpectSameAtAllRatios(Shaken(JoinInFirstCorner(Bipyramid(60), Bipyramid(50)), 6), "two fans"));
}

TEST(SimplifyAgainstLiteral, FailsTheSameWithoutArea)
{
    EXPECT_FALSE(ExpectSameAtAllRatios(DegenerateTriangle(), "collinear triangle"));
    EXPECT_FALSE(ExpectSameAtAllRatios(QuadCube(), "quads, whose edges are normals of others"));
    IndexedMesh quads = Shaken(QuadCube(), 10);
    quads.AddFace({1, 8}); // the quads have corners enough for it, but it has no normal
    EXPECT_FALSE(ExpectSameAtAllRatios(quads, "quads and a face of two corners"));
    IndexedMesh twins = Grid(3);
    twins.positions[1] = twins.positions[0];
    EXPECT_FALSE(ExpectSameAtAllRatios(twins, "two rim vertices in one place"));
}

TEST(SimplifyAgainstLiteral, GivesTheSameAfterASubdivision)
{
    for (const IndexedMesh& mesh : {Shaken(Sphere(1), 7), Shaken(Grid(4), 8)})
    {
        TrialModel first(mesh, false);
        TrialModel second(mesh, false);
        first.Subdivide();
        second.Subdivide();
        EXPECT_TRUE(ExpectSameSimplification(first, second, 0.5F, "subdivided"));
    }
}

TEST(SimplifyAgainstLiteral, GivesTheSameTwice)
{
    TrialModel first(Shaken(Sphere(2), 9), false);
    TrialModel second(Shaken(Sphere(2), 9), false);
    EXPECT_TRUE(ExpectSameSimplification(first, second, 0.5F, "first run"));
    EXPECT_TRUE(ExpectSameSimplification(first, second, 0.3F, "second run"));
}

class SimplifyAgainstLiteralTest : public testing::TestWithParam<unsigned>
{
};

TEST_P(SimplifyAgainstLiteralTest, GivesTheSameOnSpoiltMeshes)
{
    const unsigned seed = GetParam();
    ExpectSameAtAllRatios(Shaken(Spoilt(Torus(9, 7), seed), seed), "torus");
    ExpectSameAtAllRatios(Shaken(Spoilt(Grid(7), seed), seed), "grid");
    ExpectSameAtAllRatios(Spoilt(Grid(7), seed), "flat grid");
    ExpectSameAtAllRatios(Shaken(Spoilt(Bipyramid(60), seed), seed), "bipyramid");
    ExpectSameAtAllRatios(Spoilt(TriangleCube(), seed), "cube");
}

TEST_P(SimplifyAgainstLiteralTest, GivesTheSameOnFacesDrawnAtRandom)
{
    for (unsigned i = 0; i < 6; ++i)
    {
        const unsigned seed = 100 * GetParam() + i;
        EXPECT_TRUE(ExpectSameAtAllRatios(TriangleSoup(12, 14, seed), "few triangles"));
        EXPECT_TRUE(ExpectSameAtAllRatios(TriangleSoup(10, 60, seed), "many triangles"));
        EXPECT_TRUE(ExpectSameAtAllRatios(TriangleSoup(80, 160, seed), "loose triangles"));
    }
}

/// Their edges join a vertex with itself. A whisker, whose third corner no other face has, makes no rim: it adds as
/// many corners as neighbours.
TEST_P(SimplifyAgainstLiteralTest, GivesTheSameOnFacesWithRepeatedCorners)
{
    const unsigned seed = GetParam();
    std::mt19937 random(seed);
    IndexedMesh whiskers = Shaken(Sphere(1), seed);
    for (int i = 0; i < 8; ++i)
    {
        const auto root = static_cast<std::int32_t>(1 + 2 * i + random() % 2); // one whisker each
        whiskers.positions.emplace_back(1.0 + 0.1 * i, 0.5, 0.3 * i);
        const auto tip = static_cast<std::int32_t>(whiskers.positions.size());
        i % 2 == 0 ? whiskers.AddFace({root, root, tip}) : whiskers.AddFace({tip, root, root});
    }
    EXPECT_TRUE(ExpectSameAtAllRatios(whiskers, "whiskers"));

    whiskers.AddFace({18, 18, 18});
    EXPECT_FALSE(ExpectSameAtAllRatios(whiskers, "an edge of a rim vertex with itself has no length"));
}

INSTANTIATE_TEST_SUITE_P(Seeds, SimplifyAgainstLiteralTest, testing::Range(0U, 8U));
}
}
