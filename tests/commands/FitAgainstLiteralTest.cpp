#include "FitStage.h"
#include "IAReconstructionSmoothEnergyFunctionCommand.h"
#include "LiteralFit.h"
#include "RandomMeshes.h"
#include "Vectors.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
void ExpectSameFoot(const std::optional<Foot>& foot, const std::optional<Foot>& literal)
{
    ASSERT_EQ(foot.has_value(), literal.has_value());
    if (foot)
    {
        EXPECT_EQ(foot->face, literal->face);
        EXPECT_EQ(foot->point, literal->point);
        EXPECT_EQ(foot->distance, literal->distance);
        EXPECT_EQ(foot->barycentric, literal->barycentric);
    }
}

void CompareFeet(const IndexedMesh& mesh, const std::vector<FootVariant>& variants)
{
    FitStage stage;
    DSSolid& solid = stage.Load(mesh);
    for (const FootVariant& variant : variants)
    {
        ConsoleCapture console;
        std::string literalConsole;
        FootSearch search(solid, variant);
        for (const smVec3d& p : SphereCloud(150, 9))
        {
            ExpectSameFoot(search.Find(p), FindFootLiterally(solid, variant, p, literalConsole));
        }
        EXPECT_EQ(console.GetText(), literalConsole);
    }
}

TEST(FitAgainstLiteral, FindsTheSameFeet)
{
    const std::vector<FootVariant> all{kHierarchicalFeet, kIncrementalFeet, kEnergyFeet, kTwoStepFeet};
    CompareFeet(Sphere(2), all);
    CompareFeet(Shaken(Sphere(2), 4), all);
    CompareFeet(Shaken(Placed(Torus(9, 7), 0.7, {}), 5), all);
    CompareFeet(CentredTetrahedron(), all);
    CompareFeet(Shaken(Prism(7), 6), {kHierarchicalFeet});
}

TEST(FitAgainstLiteral, FitsByEnergyToTheSameBits)
{
    for (unsigned seed = 0; seed < 4; ++seed)
    {
        FitStage stage;
        DSSolid& solid = stage.Load(Shaken(seed % 2 == 0 ? Sphere(2) : Placed(Torus(9, 7), 0.7, {}), seed));
        const std::vector<smVec3d> cloud = stage.WriteCloud("data/dragon.txta", SphereCloud(400, seed));
        const LiteralEnergyFit literal = FitByEnergyLiterally(solid, cloud);
        ConsoleCapture console;
        IAReconstructionSmoothEnergyFunctionCommand command;
        stage.Equip(command);
        command.Execute();
        EXPECT_EQ(console.GetText(), literal.console);
        EXPECT_EQ(stage.GetView().GetPointCloud(), cloud);
        EXPECT_EQ(stage.GetView().GetProjectedPoints(), literal.projected);
        std::size_t place = 0;
        for (const DSVertex* vertex : solid.GetVertexList())
        {
            ASSERT_EQ(vertex->GetPosition(), literal.positions[place++]);
        }
    }
}
}
}
