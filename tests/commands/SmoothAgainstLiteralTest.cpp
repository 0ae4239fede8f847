#include "FitStage.h"
#include "IASmoothCommand.h"
#include "LiteralSmooth.h"
#include "RandomMeshes.h"
#include "Vectors.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

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
    for (const std::uint32_t id : CornerIDsOf(face))
    {
        places.push_back(static_cast<int>(id - solid.GetVertexList()[0]->GetID()));
    }
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
    const IndexedMesh meshes[] = {Sphere(2), Shaken(Bipyramid(40), 1),
                                  Shaken(Placed(Torus(9, 7), 0.7, {}), 5), Shaken(Prism(9), 2),
                                  CentredTetrahedron()};
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

/// The table of the valences that a test needs, by its own analysis.
void WriteTable(FitStage& stage, int most)
{
    stage.GetFolder().Write("data/keep", "");
    WriteEigenTable(stage.GetFolder() / "data/lpdata50NT.dat", most);
}

/// One Loop step of connectivity, each corner and each middle of an edge where it is: no two irregular vertices are
/// neighbours.
IndexedMesh Quartered(const IndexedMesh& mesh)
{
    IndexedMesh fine;
    fine.positions = mesh.positions;
    std::map<std::pair<std::int32_t, std::int32_t>, std::int32_t> middles;
    const auto middleOf = [&](std::int32_t a, std::int32_t b)
    {
        const auto [entry, isNew] = middles.try_emplace(std::minmax(a, b), 0);
        if (isNew)
        {
            const auto at = [&](std::int32_t i) { return mesh.positions[static_cast<std::size_t>(i) - 1]; };
            fine.positions.push_back((at(a) + at(b)) / 2.0);
            entry->second = static_cast<std::int32_t>(fine.positions.size());
        }
        return entry->second;
    };
    for (std::size_t i = 0; i < mesh.indices.size(); i += 3)
    {
        const std::int32_t a = mesh.indices[i];
        const std::int32_t b = mesh.indices[i + 1];
        const std::int32_t c = mesh.indices[i + 2];
        const std::int32_t ab = middleOf(a, b);
        const std::int32_t bc = middleOf(b, c);
        const std::int32_t ca = middleOf(c, a);
        fine.AddFace({a, ab, ca});
        fine.AddFace({b, bc, ab});
        fine.AddFace({c, ca, bc});
        fine.AddFace({ab, bc, ca});
    }
    return fine;
}

void CompareLimitFit(const IndexedMesh& mesh, std::size_t points, int most)
{
    TakenModel model(mesh, SphereCloud(points, 7));
    WriteTable(model.stage, most);
    IASmoothCommand command; // the table is read when it is made
    model.stage.Equip(command);
    ConsoleCapture console;
    command.TakeSolidAndCloud();
    const std::string before = console.GetText();
    const LiteralSmoothFit literal =
        FitLimitSurfaceLiterally(model.solid, model.GetCloud(), ReadEigenTable());
    command.FitLimitSurface();
    EXPECT_EQ(console.GetText(), before + literal.console);
    ExpectPositions(model.solid, literal.positions);
}

TEST(SmoothAgainstLiteral, FitsALimitSurfaceToTheSameBits)
{
    CompareLimitFit(Quartered(CentredTetrahedron()), 40, 6); // valences 3 and 6
}

TEST(SmoothAgainstLiteral, FitsALimitSurfaceWithControlVerticesThatStandInAPatchTwice)
{
    CompareLimitFit(Placed(Torus(3, 3), 0.7, {}), 40,
                    6); // nine vertices, all of valence 6, in patches of twelve
}
}
}
