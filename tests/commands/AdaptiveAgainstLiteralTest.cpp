#include "Capture.h"
#include "IASubAdaptiveCommand.h"
#include "IASubLOOPCommand.h"
#include "LiteralAdaptive.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "RecordDump.h"
#include <gtest/gtest.h>
#include <random>

namespace tessarine
{
namespace
{
class AdaptiveModel
{
public:
    /// The mesh is the second solid of its manager, so that ids and places differ; each Loop step sets them further
    /// apart.
    AdaptiveModel(const IndexedMesh& mesh, int loopSteps)
    {
        const ConsoleCapture console;
        LoadQuietly(elements, QuadCube());
        scene.AppendLeaf(LoadQuietly(elements, mesh));
        for (int i = 0; i < loopSteps; ++i)
        {
            IASubLOOPCommand command;
            command.SetElementManager(&elements);
            command.SetSceneManager(&scene);
            command.Execute();
        }
    }

    void SubdivideByCommand(float maxArea)
    {
        GetTestPlatform().AnswerAreaThreshold(maxArea);
        IASubAdaptiveCommand command;
        command.SetElementManager(&elements);
        command.SetSceneManager(&scene);
        command.SetClearModels(
            [this]
            {
                scene.Clear();
                elements.Clear();
            });
        command.Execute();
    }

    std::size_t CountFacesOfModel() const { return elements.GetFaceArray().size(); }

    MANBrepElementManager elements;
    MANSceneManager scene;
};

/// @return how many faces come of it
std::size_t ExpectSameAsLiteral(const IndexedMesh& mesh, float maxArea, int loopSteps,
                                const std::string& name)
{
    const AssertionCapture assertions;
    AdaptiveModel literal(mesh, loopSteps);
    AdaptiveModel command(mesh, loopSteps);
    std::string literalConsole;
    {
        ConsoleCapture console;
        SubdivideAdaptivelyLiterally(literal.elements, literal.scene, maxArea);
        literalConsole = console.GetText();
    }
    ConsoleCapture console;
    command.SubdivideByCommand(maxArea);
    EXPECT_EQ(console.GetText(), literalConsole) << name;
    EXPECT_TRUE(DumpRecords(command.elements) == DumpRecords(literal.elements))
        << name << ": the records differ";
    return command.CountFacesOfModel();
}

/// Turns the corners of each face on, so that every pattern comes in every rotation, and shakes the vertices.
IndexedMesh TurnedAndShaken(IndexedMesh mesh, unsigned seed, double width)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> shake(-width, width);
    for (smVec3d& position : mesh.positions)
    {
        position += smVec3d(shake(random), shake(random), shake(random));
    }
    for (auto face = mesh.indices.begin(); face != mesh.indices.end(); face += 3)
    {
        std::rotate(face, face + static_cast<std::ptrdiff_t>(random() % 3), face + 3);
    }
    return mesh;
}

class AdaptiveAgainstLiteral : public testing::TestWithParam<unsigned>
{
};

TEST_P(AdaptiveAgainstLiteral, GivesTheSameOnClosedMeshesOfRandomFaces)
{
    const unsigned seed = GetParam();
    const IndexedMesh torus = TurnedAndShaken(Torus(11, 8), seed, 0.2);
    const IndexedMesh sphere = TurnedAndShaken(Sphere(2), seed, 0.15);
    std::size_t most = 0;
    std::size_t least = SIZE_MAX;
    for (const float maxArea : {0.0F, 0.05F, 0.1F, 0.2F, 0.4F, 0.8F, 100.0F})
    {
        const std::size_t faces = ExpectSameAsLiteral(torus, maxArea, 0, "torus");
        most = std::max(most, faces);
        least = std::min(least, faces);
        ExpectSameAsLiteral(sphere, maxArea, 0, "sphere");
    }
    EXPECT_EQ(least, torus.CountFaces()); // none was split, and all
    EXPECT_EQ(most, 4 * torus.CountFaces());
}

TEST_P(AdaptiveAgainstLiteral, GivesTheSameAfterLoopSubdivision)
{
    const unsigned seed = GetParam();
    const IndexedMesh mesh = TurnedAndShaken(Torus(5, 4), seed, 0.3);
    for (const float maxArea : {0.0F, 0.1F, 0.3F})
    {
        ExpectSameAsLiteral(mesh, maxArea, 1, "torus");
        ExpectSameAsLiteral(mesh, maxArea, 2, "torus");
    }
}

TEST_P(AdaptiveAgainstLiteral, GivesTheSameWhereFacesAreTurnedOver)
{
    // Both sides of an edge run the same way then, and the walks lead to other vertices.
    IndexedMesh mesh = TurnedAndShaken(Torus(7, 5), GetParam(), 0.2);
    std::mt19937 random(GetParam());
    for (auto face = mesh.indices.begin(); face != mesh.indices.end(); face += 3)
    {
        if (random() % 8 == 0)
        {
            std::swap(face[0], face[1]);
        }
    }
    ExpectSameAsLiteral(mesh, 0.15F, 0, "torus");
}

TEST(AdaptiveAgainstLiteralOnce, GivesTheSameOnSolidsOfFewFaces)
{
    IndexedMesh backToBack = SingleTriangle();
    backToBack.AddFace({3, 2, 1});
    IndexedMesh withLooseVertex = CentredTetrahedron();
    withLooseVertex.positions.emplace_back(9, 9, 9);
    for (const float maxArea : {-1.0F, 0.0F, 1.0F, 1e30F})
    {
        ExpectSameAsLiteral(backToBack, maxArea, 0, "two triangles");
        ExpectSameAsLiteral(withLooseVertex, maxArea, 0, "tetrahedron");
        ExpectSameAsLiteral(TriangleCube(), maxArea, 0, "cube");
        ExpectSameAsLiteral(IndexedMesh(), maxArea, 0, "nothing");
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, AdaptiveAgainstLiteral, testing::Range(0U, 6U));
}
}
