#include "IAReconstructionSmoothCommand.h"
#include "FitStage.h"
#include "IncrementalConnection.h"
#include "LinksHold.h"
#include "RecordDump.h"
#include "Refusal.h"
#include "Vectors.h"
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

constexpr char kBoxFile[] = "data/box.txta";

class IncrementalFitTest : public FitCommandTest<IAReconstructionSmoothCommand>
{
protected:
    void Run() { m_Command.Execute(); }

    const IncrementalConnection& GetConnection() const { return *m_Command.Save(); }

    AssertionCapture m_Assertions;
};

TEST_F(IncrementalFitTest, StartsANewMeshAndShowsIt)
{
    const DSSolid& solid = m_Stage.Load(Sphere(1));
    const std::vector<smVec3d> cloud = m_Stage.WriteCloud(kBoxFile, SphereCloud(400, 1));
    Run();
    const DSSolid* newMesh = m_Stage.GetView().GetNewMesh();
    ASSERT_NE(newMesh, nullptr);
    EXPECT_EQ(newMesh, GetConnection().GetNewSolid());
    EXPECT_EQ(newMesh->GetFaceList().size(), 2U);
    EXPECT_TRUE(LinksHold(*newMesh));
    EXPECT_TRUE(LinksHold(solid));
    EXPECT_EQ(m_Stage.GetView().GetPointCloud(), cloud);
    EXPECT_EQ(m_Stage.GetView().GetProjectedPoints().size(), 400U);
    // Each point with a foot has it in the overlay, and on the face's list.
    const FootList& feet = GetConnection().GetFeet();
    ASSERT_GT(feet.points.size(), 300U);
    for (std::size_t i = 0; i < feet.points.size(); ++i)
    {
        EXPECT_EQ(m_Stage.GetView().GetProjectedPoints()[static_cast<std::size_t>(feet.cloudIndices[i])],
                  feet.points[i]);
        EXPECT_THAT(feet.faces[i]->GetTagList(), testing::Contains(static_cast<std::int32_t>(i)));
    }
    const std::vector<std::string> lines = m_Console.GetLines();
    EXPECT_EQ(lines.front(), "点云大小: 400");
    EXPECT_THAT(lines.back(), testing::MatchesRegex("Set vIndex: \\([0-9]+,[0-9]+,[0-9]+\\)"));
    EXPECT_EQ(m_Console.Count("The size of projection points: " + std::to_string(feet.points.size())), 1);
}

TEST_F(IncrementalFitTest, BringsModelAndCloudIntoTheSameCube)
{
    const DSSolid& solid = m_Stage.Load(Placed(Sphere(1), 7.0, {3, 4, 5}));
    std::vector<smVec3d> cloud = SphereCloud(300, 2);
    for (smVec3d& p : cloud)
    {
        p = p * 0.25 + smVec3d(0, 0, 9);
    }
    m_Stage.WriteCloud(kBoxFile, cloud);
    Run();
    double largest = 0.0;
    for (const DSVertex* vertex : solid.GetVertexList())
    {
        largest = std::max(largest, std::abs(vertex->GetPosition().x));
    }
    EXPECT_NEAR(largest, 1.0, 1e-6);
    EXPECT_NEAR(m_Stage.GetView().GetPointCloud()[0].x, 1.0, 1e-6);
    EXPECT_LT(m_Console.GetText().find("There are "),
              m_Console.GetText().find("The size of projection points: "));
}

TEST_F(IncrementalFitTest, KeepsInTheOverlayWhatAPointWithoutAFootHad)
{
    m_Stage.Load(Sphere(1));
    std::vector<smVec3d> cloud = SphereCloud(300, 3);
    cloud.emplace_back(0.001, 0.002,
                       0.003); // the centre: the perpendiculars meet the planes, not the near faces
    m_Stage.WriteCloud(kBoxFile, cloud);
    m_Stage.GetView().GetProjectedPoints().assign(301, smVec3d(7, 7, 7));
    Run();
    std::set<std::size_t> found;
    for (const std::int32_t point : GetConnection().GetFeet().cloudIndices)
    {
        found.insert(static_cast<std::size_t>(point));
    }
    for (std::size_t i = 0; i < 301; ++i)
    {
        EXPECT_EQ(m_Stage.GetView().GetProjectedPoints()[i] == smVec3d(7, 7, 7), !found.contains(i)) << i;
    }
}

TEST_F(IncrementalFitTest, GoesOnStepByStepAsInOneGo)
{
    m_Stage.Load(Sphere(1));
    m_Stage.WriteCloud(kBoxFile, SphereCloud(200, 4));
    Run();
    FitStage other;
    other.Load(Sphere(1));
    other.WriteCloud(kBoxFile, SphereCloud(200, 4));
    IAReconstructionSmoothCommand command;
    other.Equip(command);
    command.Execute();
    command.ConnectAll();
    EXPECT_TRUE(command.Save()->IsFrontEmpty());

    int calls = 0;
    for (; !GetConnection().IsFrontEmpty(); ++calls)
    {
        m_Command.ConnectNext(calls % 3 == 0 ? 1 : 5);
    }
    EXPECT_GT(calls, 20);
    EXPECT_EQ(DumpRecords(m_Stage.GetElements()), DumpRecords(other.GetElements()));
}

TEST_F(IncrementalFitTest, HasUnitNormalsBehindEachOperation)
{
    m_Stage.Load(Sphere(1));
    m_Stage.WriteCloud(kBoxFile, SphereCloud(200, 4));
    Run();
    m_Command.ConnectNext(60);
    int units = 0;
    for (const DSVertex* vertex : m_Stage.GetView().GetNewMesh()->GetVertexList())
    {
        const double length = vertex->GetNormal().Length();
        EXPECT_TRUE(length == 0.0 || std::abs(length - 1.0) < 1e-12);
        units += length > 0.5 ? 1 : 0;
    }
    EXPECT_GT(units, 20);
}

TEST_F(IncrementalFitTest, DoesNothingBehindTheLastEdge)
{
    m_Stage.Load(Sphere(1));
    m_Stage.WriteCloud(kBoxFile, SphereCloud(100, 4));
    Run();
    m_Command.ConnectAll();
    const std::string records = DumpRecords(m_Stage.GetElements());
    const std::string console = m_Console.GetText();
    m_Command.ConnectAll();
    m_Command.ConnectNext(3);
    EXPECT_EQ(DumpRecords(m_Stage.GetElements()), records);
    EXPECT_EQ(m_Console.GetText(), console);
}

TEST_F(IncrementalFitTest, RefusesToGoOnWhereTheFeetAreNotThoseOfTheRun)
{
    DSSolid& solid = m_Stage.Load(Sphere(1));
    m_Stage.WriteCloud(kBoxFile, SphereCloud(200, 4));
    Run();
    m_Command.ConnectNext();
    const IAReconstructionSmoothCommand::State before = m_Command.Save();
    solid.GetFaceList()[0]->GetTagList().push_back(0);
    for (const std::string& refusal :
         {GetRefusal([this] { m_Command.ConnectNext(); }), GetRefusal([this] { m_Command.ConnectAll(); }),
          GetRefusal([this] { m_Command.SaveEnvironment(); })})
    {
        EXPECT_THAT(refusal, HasSubstr("start anew"));
    }
    EXPECT_EQ(m_Command.Save(), before);
}

TEST_F(IncrementalFitTest, AssertsThatItHasRun)
{
    EXPECT_THROW(m_Command.ConnectNext(), AssertionFailure);
    EXPECT_THROW(m_Command.SaveEnvironment(), AssertionFailure);
}

TEST_F(IncrementalFitTest, WritesAPointOfTheCloudALine)
{
    m_Stage.Load(Sphere(1));
    m_Stage.WriteCloud(kBoxFile, SphereCloud(100, 4));
    Run();
    m_Command.SaveEnvironment();
    std::string ending = "100\n";
    for (int i = 0; i < 100; ++i)
    {
        ending += "0\n";
    }
    EXPECT_THAT(m_Stage.GetFolder().Read("data/SmoothEnvionment.data"), EndsWith(ending));
}

TEST_F(IncrementalFitTest, TakesAFlatModelAndAFlatCloud)
{
    // Two triangles back to back, and points in their plane: an extent of zero along z.
    IndexedMesh sheet;
    sheet.positions = {{-1, -1, 0}, {1, -1, 0}, {-1, 1, 0}};
    sheet.AddFace({1, 2, 3});
    sheet.AddFace({1, 3, 2});
    m_Stage.Load(sheet);
    m_Stage.WriteCloud(
        kBoxFile, {{-1, -1, 0}, {1, -1, 0}, {-1, 1, 0}, {-0.5, -0.5, 0}, {-0.4, -0.5, 0}, {-0.5, -0.4, 0}});
    Run();
    m_Command.ConnectAll();
    EXPECT_TRUE(LinksHold(*m_Stage.GetView().GetNewMesh()));
}

TEST_F(IncrementalFitTest, LeavesTheViewAloneWithoutASeed)
{
    m_Stage.Load(Sphere(2));
    m_Stage.WriteCloud(kBoxFile, {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}});
    EXPECT_THAT(RefuseToRun(), HasSubstr("no face of the model has four feet"));
    EXPECT_EQ(m_Stage.GetView().GetNewMesh(), nullptr);
    EXPECT_EQ(m_Command.Save(), nullptr);
}

TEST_F(IncrementalFitTest, RefusesModelsAndCloudsThatItCannotTake)
{
    EXPECT_THAT(RefuseToRun(), HasSubstr("there is no model"));
    m_Stage.Load(Sphere(1));
    EXPECT_THAT(RefuseToRun(), HasSubstr("cannot open Data/box.txta"));
    m_Stage.GetFolder().Write(kBoxFile, "0\n");
    EXPECT_THAT(RefuseToRun(), HasSubstr("holds no points"));
    m_Stage.GetFolder().Write(kBoxFile, "1\n1 2 3\n");
    EXPECT_THAT(RefuseToRun(), HasSubstr("are at one place"));
    IndexedMesh point = CentredTetrahedron();
    point.positions.assign(4, smVec3d(2, 2, 2));
    ExpectRefusals<IAReconstructionSmoothCommand>(
        kBoxFile,
        {{QuadCube(), "triangles only"}, {Grid(2), "a closed model only"}, {point, "are at one place"}});
}
}
}
