#include "IACommandRouter.h"
#include "LinksHold.h"
#include "Picture.h"
#include "WorkbenchTest.h"
#include "resource.h"

namespace tessarine
{
namespace
{
using testing::HasSubstr;

class EnergyFitMenuTest : public WorkbenchTest
{
protected:
    bool Choose(int id) { return IACommandRouter(m_Bench).Run("menu", id); }
};

constexpr char kEightPoints[] = "8\n1 1 1\n1 1 -1\n1 -1 1\n1 -1 -1\n-1 1 1\n-1 1 -1\n-1 -1 1\n-1 -1 -1\n";

TEST_F(EnergyFitMenuTest, FitsTheModelAndLeavesItsOverlays)
{
    DSSolid* solid = Show(Sphere(1));
    m_Folder.Write("data/dragon.txta", kEightPoints);
    EXPECT_TRUE(Choose(ResourceID::RefineEnergy));
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U);
    EXPECT_TRUE(LinksHold(*solid));
    const Open3DView& view = m_Bench.GetView();
    EXPECT_EQ(view.GetPointCloud().size(), 8U);
    EXPECT_EQ(view.GetProjectedPoints().size(), 8U);
    for (const int id :
         {ResourceID::ShowPointCloud, ResourceID::ShowProjectedPoints, ResourceID::ShowProjectionLines})
    {
        EXPECT_TRUE(Choose(id));
        EXPECT_TRUE(IACommandRouter(m_Bench).GetState(id).checked);
    }
}

TEST_F(EnergyFitMenuTest, LeavesEverythingAsItWasWhereItFails)
{
    Show(Sphere(1));
    m_Folder.Write("data/dragon.txta", kEightPoints);
    EXPECT_TRUE(Choose(ResourceID::RefineEnergy));
    m_Folder.Write("data/dragon.txta", "2\n0 0 0\n1 inf 0\n");
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(Choose(ResourceID::RefineEnergy));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("line 3: a point's y is not finite"));
    EXPECT_EQ(PictureOf(m_Bench), before);
}

TEST_F(EnergyFitMenuTest, LeavesAModelOfTrianglesWithoutArea)
{
    // All corners at one place: each face takes every point, and has no shares to give.
    IndexedMesh mesh = CentredTetrahedron();
    mesh.positions.assign(4, smVec3d());
    Show(mesh);
    m_Folder.Write("data/dragon.txta", kEightPoints);
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(Choose(ResourceID::RefineEnergy));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("a triangle without area"));
    EXPECT_EQ(PictureOf(m_Bench), before);
}
}
}
