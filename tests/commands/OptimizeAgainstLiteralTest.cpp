#include "IARefineMeshCommand.h"
#include "LinksHold.h"
#include "LiteralOptimize.h"
#include "RandomMeshes.h"
#include "TrialModel.h"
#include <gtest/gtest.h>
#include <random>

namespace tessarine
{
namespace
{
void OptimizeByCommand(MANBrepElementManager& elements, MANSceneManager& scene, int mode)
{
    IARefineMeshCommand command;
    command.SetElementManager(&elements);
    command.SetSceneManager(&scene);
    command.SetMode(mode);
    command.Execute();
}

/// @return whether the runs came to their ends
bool ExpectSameOptimisation(TrialModel& first, TrialModel& second, int mode, const std::string& name)
{
    const bool good = ExpectSameOutcome(
        first, [mode](auto& elements, auto& scene) { OptimizeLiterally(elements, scene, mode); }, second,
        [mode](auto& elements, auto& scene) { OptimizeByCommand(elements, scene, mode); }, name);
    if (good)
    {
        EXPECT_TRUE(LinksHold(
            second.GetSolid(),
            {.allowDisplacedHalfEdges = true, .allowOneVertexLoops = true, .allowSameDirection = true}))
            << name;
    }
    return good;
}

bool ExpectSameOptimisation(const IndexedMesh& mesh, int mode, const std::string& name)
{
    TrialModel first(mesh, true);
    TrialModel second(mesh, true);
    return ExpectSameOptimisation(first, second, mode, name);
}

/// Pulls some corners onto one beside them.
IndexedMesh Pinched(IndexedMesh mesh, int count, unsigned seed)
{
    std::mt19937 random(seed);
    for (int i = 0; i < count; ++i)
    {
        const std::size_t corner = random() % (mesh.indices.size() / 3) * 3;
        mesh.positions[static_cast<std::size_t>(mesh.indices[corner] - 1)] =
            mesh.positions[static_cast<std::size_t>(mesh.indices[corner + 1] - 1)];
    }
    return mesh;
}

class OptimizeAgainstLiteralTest : public testing::TestWithParam<unsigned>
{
};

TEST_P(OptimizeAgainstLiteralTest, SwapsTheSameOnClosedMeshes)
{
    const unsigned seed = GetParam();
    for (const int mode : {1, 3})
    {
        EXPECT_TRUE(ExpectSameOptimisation(Shaken(Sphere(2), seed), mode, "sphere"));
        EXPECT_TRUE(ExpectSameOptimisation(Shaken(Torus(9, 7), seed), mode, "torus"));
        EXPECT_TRUE(ExpectSameOptimisation(Beside(Shaken(Torus(6, 5), seed), Shaken(Sphere(1), seed)), mode,
                                           "two pieces"));
    }
}

TEST_P(OptimizeAgainstLiteralTest, SwapsTheSameWhereSwapsGoFar)
{
    const unsigned seed = GetParam();
    ExpectSameOptimisation(Shaken(Shaken(Shaken(Sphere(2), seed), seed + 1), seed + 2), 1,
                           "very noisy sphere");
    ExpectSameOptimisation(Shaken(Bipyramid(40), seed), 1, "bipyramid");
    ExpectSameOptimisation(Shaken(JoinInFirstCorner(Bipyramid(12), Sphere(1)), seed), 1,
                           "two fans in a vertex");
    ExpectSameOptimisation(Shaken(Prism(9), seed), 1, "prism with long faces");
    ExpectSameOptimisation(Shaken(QuadTorus(5, 4), seed), 1, "torus of quads");
}

TEST_P(OptimizeAgainstLiteralTest, RemovesTheSameZeroEdges)
{
    const unsigned seed = GetParam();
    EXPECT_TRUE(ExpectSameOptimisation(Pinched(Shaken(Sphere(2), seed), 12, seed), 2, "sphere"));
    EXPECT_TRUE(ExpectSameOptimisation(Pinched(Shaken(Torus(8, 6), seed), 30, seed), 2, "torus"));
    EXPECT_TRUE(ExpectSameOptimisation(Pinched(Shaken(Grid(6), seed), 12, seed), 2, "grid with its rim"));
    EXPECT_TRUE(
        ExpectSameOptimisation(Pinched(Shaken(JoinInFirstCorner(Bipyramid(8), Sphere(1)), seed), 10, seed), 2,
                               "two fans in a vertex"));
    EXPECT_TRUE(ExpectSameOptimisation(Pinched(Spoilt(Sphere(2), seed), 20, seed), 2, "spoilt sphere"));
    EXPECT_TRUE(ExpectSameOptimisation(Pinched(Soup(12, 30, seed), 8, seed), 2, "faces drawn at random"));
    EXPECT_TRUE(ExpectSameOptimisation(Pinched(QuadCube(), 2, seed), 2, "quads"));
}

INSTANTIATE_TEST_SUITE_P(Seeds, OptimizeAgainstLiteralTest, testing::Range(0U, 6U));

TEST(OptimizeAgainstLiteral, GivesTheSameOnWholeMeshes)
{
    for (const int mode : {0, 1, 2, 3, 4})
    {
        EXPECT_TRUE(ExpectSameOptimisation(Tetrahedron(), mode, "tetrahedron"));
        EXPECT_TRUE(ExpectSameOptimisation(TriangleCube(), mode, "cube"));
        EXPECT_TRUE(ExpectSameOptimisation(QuadCube(), mode, "cube of quads"));
        EXPECT_TRUE(ExpectSameOptimisation(Sphere(2), mode, "sphere"));
    }
}

TEST(OptimizeAgainstLiteral, RemovesTheSameWhereAllStandsInOnePlace)
{
    IndexedMesh point = Sphere(2);
    for (smVec3d& position : point.positions)
    {
        position = smVec3d(1, 2, 3);
    }
    EXPECT_TRUE(ExpectSameOptimisation(point, 2, "a sphere in one point"));
}

TEST(OptimizeAgainstLiteral, GivesTheSameTwiceAndAfterASubdivision)
{
    TrialModel first(Shaken(Sphere(1), 7), false);
    TrialModel second(Shaken(Sphere(1), 7), false);
    first.Subdivide();
    second.Subdivide();
    EXPECT_TRUE(ExpectSameOptimisation(first, second, 1, "subdivided"));
    EXPECT_TRUE(ExpectSameOptimisation(first, second, 3, "again"));
    EXPECT_TRUE(ExpectSameOptimisation(first, second, 2, "and without zero edges"));
}
}
}
