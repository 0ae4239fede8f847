#include "Angles.h"
#include "FitStage.h"
#include "IAReconstructionSmoothTwoStepCommand.h"
#include "LinksHold.h"
#include "ShapeMesh.h"
#include <gtest/gtest.h>
#include <numbers>

namespace tessarine
{
namespace
{
TEST(TwoStepOnBunny, BringsEverMorePointsIntoAMeshThatStaysWhole)
{
    const ShapeMesh made = MakeShapeMesh(MakeBunnyShape(), 0.1);
    IndexedMesh mesh;
    mesh.positions = made.points;
    for (const auto& [a, b, c] : made.triangles)
    {
        mesh.AddFace({a + 1, b + 1, c + 1});
    }
    FitStage stage;
    const DSSolid& solid = stage.Load(mesh);
    stage.WriteCloud("data/bunny.txta", ScatterPoints(MakeBunnyShape(), made, 15000));
    IAReconstructionSmoothTwoStepCommand command;
    stage.Equip(command);
    const ConsoleCapture console;
    command.Execute();
    const auto countOwned = [&command]
    {
        const auto& owners = command.GetPairs().m_PointOwner;
        return std::count_if(owners.begin(), owners.end(), [](std::int32_t owner) { return owner >= 0; });
    };
    auto owned = countOwned();
    EXPECT_GT(owned, static_cast<std::ptrdiff_t>(made.points.size() * 9 / 10));
    for (int step = 0; step < 5; ++step)
    {
        command.Step();
        EXPECT_GT(countOwned(), owned);
        owned = countOwned();
        EXPECT_TRUE(LinksHold(solid));
        EXPECT_EQ(EulerCharacteristic(solid), 2);
        // Of any closed mesh without handles: two pi for each vertex but two.
        const auto vertices = static_cast<double>(solid.GetVertexList().size());
        EXPECT_NEAR(SumCornerAngles(solid), 2 * std::numbers::pi * (vertices - 2), 1e-6);
    }
}
}
}
