#include "Failure.h"
#include "IACommandRouter.h"
#include "LinksHold.h"
#include "Picture.h"
#include "RandomMeshes.h"
#include "WorkbenchTest.h"
#include "resource.h"

namespace tessarine
{
namespace
{
using testing::HasSubstr;

class OptimizeTest : public WorkbenchTest
{
protected:
    bool Optimize(int mode)
    {
        return m_Bench.Perform("optimize", Effect::ChangesModel,
                               [this, mode] { GetController().OptimizeMesh(mode); });
    }
};

TEST_F(OptimizeTest, SwapsByTheFirstAndTheThirdMenuEntry)
{
    IACommandRouter router(m_Bench);
    for (const int id : {ResourceID::OptimizeMesh1, ResourceID::OptimizeMesh3})
    {
        GetController().ClearModels();
        DSSolid* solid = Show(Shaken(Torus(9, 7), 1));
        EXPECT_TRUE(router.Run("menu", id));
        EXPECT_GT(GetElements().GetEdgeArray().size(), 189U);
        EXPECT_EQ(solid->GetEdgeList().size(), 189U);
        EXPECT_TRUE(LinksHold(*solid));
    }
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 2U);
}

TEST_F(OptimizeTest, RemovesZeroEdgesByTheSecondMenuEntry)
{
    DSSolid* solid = Show(Shaken(Sphere(1), 1));
    const DSEdge* edge = solid->GetEdgeList()[7];
    edge->GetHalfEdge1()->GetVertex()->GetPosition() = edge->GetHalfEdge2()->GetVertex()->GetPosition();
    EXPECT_TRUE(IACommandRouter(m_Bench).Run("menu", ResourceID::OptimizeMesh2));
    EXPECT_EQ(solid->GetFaceList().size(), 30U);
    EXPECT_TRUE(LinksHold(*solid));
}

TEST_F(OptimizeTest, LeavesAModelWithARim)
{
    Show(Grid(3));
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(Optimize(1));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("12 sides of faces without just one other face"));
    EXPECT_EQ(PictureOf(m_Bench), before);
}

TEST_F(OptimizeTest, LeavesTheModelWhereASwapWouldGiveATriangleWithoutArea)
{
    IndexedMesh mesh = Shaken(Torus(12, 9), 4);
    const IndexedMesh octahedron = Sphere(0);
    mesh = Beside(mesh, octahedron);
    mesh.positions[108] = smVec3d(0, 0, 0); // between two others of the octahedron
    Show(mesh);
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(Optimize(1));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("triangle without area"));
    EXPECT_EQ(PictureOf(m_Bench), before);
}

TEST_F(OptimizeTest, CanBeTakenBackByAFailureOfWhatFollows)
{
    DSSolid* solid = Show(Shaken(Sphere(2), 2));
    solid->CalcNormals();
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(m_Bench.Perform("optimize", Effect::ChangesModel,
                                 [this]
                                 {
                                     GetController().OptimizeMesh(1);
                                     EXPECT_GT(GetElements().GetEdgeArray().size(), 192U);
                                     throw Failure("no");
                                 }));
    EXPECT_EQ(PictureOf(m_Bench), before);
    EXPECT_TRUE(Optimize(1));
    EXPECT_TRUE(LinksHold(*solid));
}

TEST_F(OptimizeTest, IsToldThatThereIsNoModel)
{
    EXPECT_FALSE(Optimize(2));
    EXPECT_EQ(m_Platform.GetOnlyReason(), "optimisation needs a model: import one first");
}
}
}
