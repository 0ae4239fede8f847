#include "FitStage.h"
#include "IAPointCloud.h"
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

void CompareEnergyFits(const IndexedMesh& mesh, const std::vector<smVec3d>& points)
{
    FitStage stage;
    DSSolid& solid = stage.Load(mesh);
    IAPointCloud cloud;
    cloud.m_Points = stage.WriteCloud("data/dragon.txta", points);
    cloud.Normalize("data/dragon.txta");
    const LiteralEnergyFit literal = FitByEnergyLiterally(solid, cloud.m_Points);
    ConsoleCapture console;
    IAReconstructionSmoothEnergyFunctionCommand command;
    stage.Equip(command);
    command.Execute();
    EXPECT_EQ(console.GetText(), literal.console);
    EXPECT_EQ(stage.GetView().GetPointCloud(), cloud.m_Points);
    EXPECT_EQ(stage.GetView().GetProjectedPoints(), literal.projected);
    std::size_t place = 0;
    for (const DSVertex* vertex : solid.GetVertexList())
    {
        ASSERT_EQ(vertex->GetPosition(), literal.positions[place++]);
    }
}

TEST(FitAgainstLiteral, FitsByEnergyToTheSameBits)
{
    for (unsigned seed = 0; seed < 4; ++seed)
    {
        CompareEnergyFits(Shaken(seed % 2 == 0 ? Sphere(2) : Placed(Torus(9, 7), 0.7, {}), seed),
                          SphereCloud(400, seed));
    }
}

TEST(FitAgainstLiteral, FitsByEnergyToFewPointsToTheSameBits)
{
    for (std::size_t count = 2; count <= 10; ++count)
    {
        // None of the first six, the ends of the axes: a right side of zeros has no step in its plain form.
        std::vector<smVec3d> points = SphereCloud(6 + count, 5);
        points.erase(points.begin(), points.begin() + 6);
        CompareEnergyFits(Shaken(Sphere(2), 3), points);
        CompareEnergyFits(CentredTetrahedron(), points);
        CompareEnergyFits(Placed(TriangleCube(), 2.0, {-1, -1, -1}), points);
    }
}
}
}
