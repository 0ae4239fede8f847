#include "EigenTable.h"
#include "FileSizeLimit.h"
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

/// The 1026 vertices of a fine sphere: some thirty over each face of one with 32.
std::string SphereFile()
{
    const PositionList points = Sphere(4).positions;
    std::string text = std::to_string(points.size()) + '\n';
    for (const smVec3d& p : points)
    {
        text += std::to_string(p.x) + ' ' + std::to_string(p.y) + ' ' + std::to_string(p.z) + '\n';
    }
    return text;
}

class HierarchicalFitTest : public WorkbenchTest
{
protected:
    HierarchicalFitTest() { m_Folder.Write("data/horse.txta", SphereFile()); }

    bool Choose(int id) { return IACommandRouter(m_Bench).Run("menu", id); }
    bool Perform(void (IAController::*operation)())
    {
        return m_Bench.Perform("fit", Effect::ChangesModel, [&] { (GetController().*operation)(); });
    }
};

TEST_F(HierarchicalFitTest, LeaveTheOctreeOfBeforeWhereAnotherFails)
{
    DSSolid* solid = Show(Sphere(1));
    m_Folder.Write("data/bunny.txta", SphereFile());
    EXPECT_TRUE(Perform(&IAController::BuildOctree));
    const OCTNODE* octree = m_Bench.GetView().GetOctree();
    ASSERT_NE(octree, nullptr);
    solid->GetVertexList()[0]->GetPosition() = smVec3d(5, 0, 0);
    m_Folder.Write("data/bunny.txta", "0\n");
    EXPECT_FALSE(Perform(&IAController::BuildOctree));
    EXPECT_EQ(m_Bench.GetView().GetOctree(), octree);
    EXPECT_EQ(solid->GetVertexList()[0]->GetPosition().x, 5.0);
}

TEST_F(HierarchicalFitTest, LeavesANewMeshThatTheViewShows)
{
    DSSolid* solid = Show(Sphere(1));
    EXPECT_TRUE(Choose(ResourceID::RefineHierarchical));
    const Open3DView& view = m_Bench.GetView();
    ASSERT_NE(view.GetNewMesh(), nullptr);
    EXPECT_EQ(view.GetNewMesh()->GetVertexList().size(), 32U); // one for each face
    EXPECT_EQ(view.GetPointCloud().size(), 1026U);
    EXPECT_EQ(view.GetProjectedPoints().size(), 1026U);
    EXPECT_EQ(GetScene().GetRootGroup()->GetChildren().size(), 1U); // it is in no node
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U);
    EXPECT_TRUE(LinksHold(*solid));
    for (const int id : {ResourceID::ShowNewMesh, ResourceID::ShowPointCloud, ResourceID::ShowProjectedPoints,
                         ResourceID::ShowProjectionLines})
    {
        EXPECT_TRUE(Choose(id));
        EXPECT_TRUE(IACommandRouter(m_Bench).GetState(id).checked);
    }
}

TEST_F(HierarchicalFitTest, IsExportedBehindTheModelAsAnObjectThatStandsAlone)
{
    Show(Sphere(1));
    EXPECT_TRUE(Choose(ResourceID::RefineHierarchical));
    const DSSolid& dual = *m_Bench.GetView().GetNewMesh();
    const std::size_t vertices = dual.GetVertexList().size();
    const std::size_t faces = dual.GetFaceList().size();
    const std::size_t edges = dual.GetEdgeList().size();
    m_Platform.AnswerFile((m_Folder / "both.obj").string());
    EXPECT_TRUE(m_Bench.Perform("export", Effect::None, [this] { GetController().ExportObj(); }));
    const std::string text = m_Folder.Read("both.obj");
    EXPECT_THAT(text, HasSubstr("g object1 \n"));
    EXPECT_THAT(text, HasSubstr("# 32 faces in this object g object2 \n"));
    m_Folder.Write("dual.obj", text.substr(text.find("g object2 ")));
    EXPECT_TRUE(Import("dual.obj"));
    const DSSolid& imported = *GetScene().GetCurrentSolid();
    EXPECT_EQ(imported.GetVertexList().size(), vertices);
    EXPECT_EQ(imported.GetFaceList().size(), faces);
    EXPECT_EQ(imported.GetEdgeList().size(), edges);
    EXPECT_TRUE(LinksHold(imported));
}

TEST_F(HierarchicalFitTest, LeavesEverythingAsItWasWhereItFails)
{
    Show(Sphere(1));
    EXPECT_TRUE(Choose(ResourceID::RefineHierarchical));
    m_Folder.Write("data/horse.txta", "2\n0 0 0\n1 inf 0\n");
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(Choose(ResourceID::RefineHierarchical));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("line 3: a point's y is not finite"));
    EXPECT_EQ(PictureOf(m_Bench), before);
}

TEST_F(HierarchicalFitTest, LeavesEverythingAsItWasWhereTheMatrixCannotBeWritten)
{
    Show(Sphere(1));
    m_Folder.Write("data/CheckCofficientMatrix.data/keep", ""); // a folder in its place
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(Perform(&IAController::FitVertices));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("CheckCofficientMatrix.data"));
    EXPECT_EQ(PictureOf(m_Bench), before);
    EXPECT_FALSE(m_Folder.Has("data/CheckFootPoint.data")); // they come together or not at all
    m_Folder.Write("data/CheckFootPoint.data", "of before");
    EXPECT_FALSE(Perform(&IAController::FitVertices));
    EXPECT_EQ(m_Folder.Read("data/CheckFootPoint.data"), "of before");
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_Folder / "data"))
    {
        names.push_back(entry.path().filename().string());
    }
    EXPECT_THAT(names, testing::UnorderedElementsAre("horse.txta", "CheckFootPoint.data",
                                                     "CheckCofficientMatrix.data")); // nothing unfinished
}

TEST_F(HierarchicalFitTest, LeavesBothFilesOfBeforeWhereTheDiskIsFullAtTheEndOfTheSecond)
{
    constexpr std::size_t kBetweenTheLengths = 3500;
    Show(Sphere(1));
    m_Folder.Write("data/CheckFootPoint.data", "of before");
    m_Folder.Write("data/CheckCofficientMatrix.data", "of before");
    {
        const FileSizeLimit limit(kBetweenTheLengths);
        EXPECT_FALSE(Perform(&IAController::FitVertices));
    }
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("CheckCofficientMatrix.data"));
    EXPECT_EQ(m_Folder.Read("data/CheckFootPoint.data"), "of before");
    EXPECT_EQ(m_Folder.Read("data/CheckCofficientMatrix.data"), "of before");
    EXPECT_TRUE(Perform(&IAController::FitVertices));
    EXPECT_LT(m_Folder.Read("data/CheckFootPoint.data").size(), kBetweenTheLengths);
    EXPECT_GT(m_Folder.Read("data/CheckCofficientMatrix.data").size(), kBetweenTheLengths);
}

TEST_F(HierarchicalFitTest, FitsTheVerticesWithAFreshCommand)
{
    Show(Sphere(1));
    EXPECT_TRUE(Perform(&IAController::FitVertices));
    EXPECT_EQ(m_Bench.GetView().GetNewMesh(), nullptr);
    EXPECT_EQ(m_Bench.GetView().GetPointCloud().size(), 1026U);
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U);
    EXPECT_TRUE(m_Folder.Has("data/CheckFootPoint.data"));
    EXPECT_TRUE(m_Folder.Has("data/CheckCofficientMatrix.data"));
}

TEST_F(HierarchicalFitTest, FitsALimitSurfaceOnlyWithATable)
{
    Show(Placed(Torus(5, 4), 0.5, {}));
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(Perform(&IAController::FitLimitSurface));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("lpdata50NT.dat"));
    EXPECT_EQ(PictureOf(m_Bench), before);
    WriteEigenTable(m_Folder / "data/lpdata50NT.dat", 6);
    EXPECT_TRUE(Perform(&IAController::FitLimitSurface));
    EXPECT_TRUE(m_Folder.Has("data/CheckFootPoint.data"));
}

TEST_F(HierarchicalFitTest, RefusesALimitSurfaceOfAModelThatIsNotSubdivided)
{
    Show(CentredTetrahedron());
    WriteEigenTable(m_Folder / "data/lpdata50NT.dat", 8);
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(Perform(&IAController::FitLimitSurface));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("subdivide the model once"));
    EXPECT_EQ(PictureOf(m_Bench), before);
    EXPECT_TRUE(Choose(ResourceID::SubdivideLoop));
    EXPECT_TRUE(Perform(&IAController::FitLimitSurface)); // ids are not places behind a step
}

TEST_F(HierarchicalFitTest, ForgetsTheNewMeshWithTheModel)
{
    Show(Sphere(1));
    EXPECT_TRUE(Choose(ResourceID::RefineHierarchical));
    m_Folder.Write("tetra.obj", kTetrahedronObj);
    EXPECT_TRUE(Import("tetra.obj"));
    EXPECT_EQ(m_Bench.GetView().GetNewMesh(), nullptr);
}
}
}
