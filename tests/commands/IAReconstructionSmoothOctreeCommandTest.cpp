#include "IAReconstructionSmoothOctreeCommand.h"
#include "FitStage.h"
#include "Refusal.h"
#include "Vectors.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
constexpr char kCloud[] = "Data/bunny.txta";

class OctreeCommandTest : public FitCommandTest<IAReconstructionSmoothOctreeCommand>
{
protected:
    /// The console's lines.
    std::vector<std::string> Run()
    {
        m_Command.Execute();
        return m_Console.GetLines();
    }
};

TEST_F(OctreeCommandTest, ShowsTheCloudAndTheBoxesAroundIt)
{
    const DSSolid& solid = m_Stage.Load(Placed(TriangleCube(), 10.0, smVec3d(3, 4, 5)));
    m_Stage.WriteCloud(kCloud, SphereCloud(200, 1));
    EXPECT_THAT(Run(), testing::ElementsAre("点云大小: 200", "total face number:200"));
    EXPECT_EQ(m_Stage.GetView().GetPointCloud().size(), 200U);
    EXPECT_EQ(m_Stage.GetView().GetOctree(), m_Command.GetOctree().GetRoot());
    const OCTNODE& root = *m_Command.GetOctree().GetRoot();
    EXPECT_EQ(root.GetMin(), smVec3d(-1, -1, -1));
    EXPECT_EQ(root.GetMax(), smVec3d(1, 1, 1));
    EXPECT_EQ(root.GetPoints().size(), 200U);
    EXPECT_FALSE(root.IsLeaf());
    EXPECT_EQ(solid.GetVertexList()[0]->GetPosition(), smVec3d(-1, -1, -1)); // the cube's first corner
}

TEST_F(OctreeCommandTest, TakesOpenModelsAndPolygons)
{
    m_Stage.Load(NotchedFaces());
    m_Stage.WriteCloud(kCloud, SphereCloud(20, 1));
    EXPECT_EQ(RefuseToRun(), "");
}

TEST_F(OctreeCommandTest, TakesAFlatCloud)
{
    m_Stage.Load(Grid(2));
    std::vector<smVec3d> line;
    for (int i = 0; i < 30; ++i)
    {
        line.emplace_back(i, 7, 7);
    }
    m_Stage.WriteCloud(kCloud, line);
    EXPECT_EQ(RefuseToRun(), "");
    EXPECT_EQ(m_Stage.GetView().GetPointCloud().front(), smVec3d(-1, 0, 0));
    EXPECT_EQ(m_Stage.GetView().GetPointCloud().back(), smVec3d(1, 0, 0));
}

TEST_F(OctreeCommandTest, RefusesWhatHasNoExtent)
{
    m_Stage.Load(Placed(Tetrahedron(), 0.0, smVec3d(1, 2, 3)));
    m_Stage.WriteCloud(kCloud, SphereCloud(20, 1));
    EXPECT_THAT(RefuseToRun(), testing::HasSubstr("all vertices of the model are at one place"));
}

TEST_F(OctreeCommandTest, RefusesACloudWithoutExtent)
{
    m_Stage.Load(Tetrahedron());
    m_Stage.WriteCloud(kCloud, std::vector<smVec3d>(12, smVec3d(1, 2, 3)));
    EXPECT_THAT(RefuseToRun(), testing::HasSubstr("bunny.txta"));
    EXPECT_EQ(m_Stage.GetView().GetOctree(), nullptr);
}

TEST_F(OctreeCommandTest, NeedsAModelAndTheCloud)
{
    EXPECT_THAT(RefuseToRun(), testing::HasSubstr("import one first"));
    m_Stage.Load(Tetrahedron());
    const AssertionCapture capture;
    EXPECT_THAT(RefuseToRun(), testing::HasSubstr("bunny.txta: no such file"));
}
}
}
