#include "FitStage.h"
#include "IASmoothCommand.h"
#include "LiteralSmooth.h"
#include "LoopEigenAnalysis.h"
#include "RandomMeshes.h"
#include "Vectors.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::StartsWith;

/// A command that has taken a model and its cloud, on a stage of its own.
struct TakenModel
{
    explicit TakenModel(const IndexedMesh& mesh, const std::vector<smVec3d>& cloud) : solid(stage.Load(mesh))
    {
        stage.WriteCloud("data/horse.txta", cloud);
        stage.Equip(command);
        const ConsoleCapture quiet;
        command.TakeSolidAndCloud();
    }

    const std::vector<smVec3d>& GetCloud() { return stage.GetView().GetPointCloud(); }

    FitStage stage;
    IASmoothCommand command;
    DSSolid& solid;
};

std::vector<int> PlacesOfFace(const DSSolid& solid, const DSFace& face)
{
    std::vector<int> places;
    const DSHalfEdge* h = face.GetLoopList()[0]->GetHalfEdge();
    do
    {
        places.push_back(static_cast<int>(h->GetVertex()->GetID() - solid.GetVertexList()[0]->GetID()));
        h = h->GetNext();
    } while (h != face.GetLoopList()[0]->GetHalfEdge());
    return places;
}

TEST(SmoothAgainstLiteral, BuildsTheSameDual)
{
    const IndexedMesh meshes[] = {Sphere(2), Shaken(Sphere(2), 4), Shaken(Placed(Torus(9, 7), 0.7, {}), 5),
                                  Shaken(Placed(QuadTorus(9, 7), 0.7, {}), 6), CentredTetrahedron()};
    unsigned seed = 0;
    for (const IndexedMesh& mesh : meshes)
    {
        TakenModel model(mesh, SphereCloud(600, ++seed));
        const LiteralDual literal = BuildDualLiterally(model.solid, model.GetCloud());
        ConsoleCapture console;
        model.command.BuildDualMesh();
        EXPECT_THAT(console.GetText(), StartsWith(literal.console + "Number of halfedge: "));
        const DSSolid& dual = *model.command.GetDualSolid();
        EXPECT_EQ(model.command.GetDualPointIndices(), literal.cloudIndices);
        ASSERT_EQ(dual.GetVertexList().size(), literal.positions.size());
        for (std::size_t i = 0; i < literal.positions.size(); ++i)
        {
            EXPECT_EQ(dual.GetVertexList()[i]->GetPosition(), literal.positions[i]);
        }
        ASSERT_EQ(dual.GetFaceList().size(), literal.faces.size());
        for (std::size_t i = 0; i < literal.faces.size(); ++i)
        {
            EXPECT_EQ(PlacesOfFace(dual, *dual.GetFaceList()[i]), literal.faces[i]);
        }
    }
}

void ExpectPositions(const DSSolid& solid, const std::vector<smVec3d>& positions)
{
    ASSERT_EQ(solid.GetVertexList().size(), positions.size());
    std::size_t i = 0;
    for (const DSVertex* vertex : solid.GetVertexList())
    {
        ASSERT_EQ(vertex->GetPosition(), positions[i++]);
    }
}

TEST(SmoothAgainstLiteral, FitsVerticesToTheSameBits)
{
    const IndexedMesh meshes[] = {Sphere(2), Shaken(Bipyramid(40), 1), Shaken(Placed(Torus(9, 7), 0.7, {}), 5),
                                  Shaken(Prism(9), 2), CentredTetrahedron()};
    unsigned seed = 0;
    for (const IndexedMesh& mesh : meshes)
    {
        TakenModel model(mesh, SphereCloud(300, ++seed));
        const LiteralSmoothFit literal = FitVerticesLiterally(model.solid, model.GetCloud());
        ConsoleCapture console;
        model.command.FitVertices();
        EXPECT_EQ(console.GetText(), literal.console);
        ExpectPositions(model.solid, literal.positions);
    }
}
}
}
