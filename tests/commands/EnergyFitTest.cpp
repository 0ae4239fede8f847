#include "FitStage.h"
#include "IAReconstructionSmoothEnergyFunctionCommand.h"
#include "LinksHold.h"
#include "Refusal.h"
#include "Vectors.h"
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace tessarine
{
std::vector<smVec3d> SphereCloud(std::size_t count, unsigned seed)
{
    std::vector<smVec3d> points{{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};
    std::mt19937 random(seed);
    const auto draw = [&random] { return static_cast<double>(random()) / 2147483648.0 - 1.0; };
    while (points.size() < count)
    {
        const smVec3d p(draw(), draw(), draw());
        if (p.Length() < 1.0 && p.Length() > 0.1)
        {
            points.push_back(p / p.Length());
        }
    }
    return points;
}

namespace
{
using ::testing::EndsWith;
using ::testing::HasSubstr;

constexpr char kDragonCloud[] = "data/dragon.txta";

class EnergyFitTest : public testing::Test
{
protected:
    void Fit()
    {
        IAReconstructionSmoothEnergyFunctionCommand command;
        m_Stage.Equip(command);
        command.Execute();
    }

    std::string RefuseToFit()
    {
        return GetRefusal([this] { Fit(); });
    }

    FitStage m_Stage;
    ConsoleCapture m_Console;
};

std::vector<smVec3d> PositionsOf(const DSSolid& solid)
{
    std::vector<smVec3d> positions;
    for (const DSVertex* vertex : solid.GetVertexList())
    {
        positions.push_back(vertex->GetPosition());
    }
    return positions;
}

/// How far the points with a foot are from it, in the root of the mean square.
double DistanceFromFeet(const Open3DView& view)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < view.GetPointCloud().size(); ++i)
    {
        const smVec3d way = view.GetPointCloud()[i] - view.GetProjectedPoints()[i];
        sum += way.Dot(way);
    }
    return std::sqrt(sum / static_cast<double>(view.GetPointCloud().size()));
}

TEST_F(EnergyFitTest, BringsTheSurfaceNearerToTheCloud)
{
    DSSolid& solid = m_Stage.Load(Sphere(2));
    m_Stage.WriteCloud(kDragonCloud, SphereCloud(3000, 1));
    Fit();
    const double before = DistanceFromFeet(m_Stage.GetView());
    Fit();
    const double after = DistanceFromFeet(m_Stage.GetView());
    EXPECT_GT(before, 0.01);         // the chords of 128 faces lie below the sphere
    EXPECT_LT(after, 0.35 * before); // now they go through it
    EXPECT_TRUE(LinksHold(solid));
}

TEST_F(EnergyFitTest, ReachesTheCornersThatACloudOnItsFacesTells)
{
    // Points of the faces of the cube of side 2, and a model of side 1.8: each face is carried to its points.
    DSSolid& solid = m_Stage.Load(Placed(TriangleCube(), 1.8, {-0.9, -0.9, -0.9}));
    std::vector<smVec3d> cloud;
    std::mt19937 random(3);
    for (int i = 0; i < 1200; ++i)
    {
        smVec3d p;
        for (int axis = 0; axis < 3; ++axis)
        {
            p[axis] = 1.6 * static_cast<double>(random()) / 4294967296.0 - 0.8;
        }
        p[i % 3] = i % 2 == 0 ? 1.0 : -1.0;
        cloud.push_back(p);
    }
    m_Stage.WriteCloud(kDragonCloud, cloud);
    const std::vector<smVec3d> before = PositionsOf(solid);
    const std::vector<smVec3d> normals{solid.GetFaceList()[0]->GetNormal(),
                                       solid.GetVertexList()[0]->GetNormal()};
    Fit();
    const std::vector<smVec3d> after = PositionsOf(solid);
    for (std::size_t i = 0; i < after.size(); ++i)
    {
        EXPECT_GT(after[i].Length(), before[i].Length());
    }
    EXPECT_EQ(solid.GetFaceList()[0]->GetNormal(), normals[0]); // normals wait for the next operation
    EXPECT_EQ(solid.GetVertexList()[0]->GetNormal(), normals[1]);
}

TEST_F(EnergyFitTest, LeavesAVertexWithoutAPointOnAnyFaceAroundIt)
{
    DSSolid& solid = m_Stage.Load(Sphere(2));
    std::vector<smVec3d> cloud;
    for (const smVec3d& p : SphereCloud(2000, 2))
    {
        if (p.z > 0.5)
        {
            cloud.push_back({p.x, p.y, p.z});
        }
    }
    // The cap fills its own cube, so only some of the model's faces have a point.
    m_Stage.WriteCloud(kDragonCloud, cloud);
    const std::vector<smVec3d> before = PositionsOf(solid);
    Fit();
    const std::vector<smVec3d> after = PositionsOf(solid);
    std::size_t stayed = 0;
    for (std::size_t i = 0; i < before.size(); ++i)
    {
        const DSVertex* vertex = solid.GetVertexList()[i];
        bool hasPoint = false;
        DSHalfEdge* h = vertex->GetHalfEdge();
        do
        {
            hasPoint = hasPoint || h->GetLoop()->GetFace()->GetTag() == 1;
            h = h->GetTwin()->GetNext();
        } while (h != vertex->GetHalfEdge());
        stayed += hasPoint ? 0 : 1;
        EXPECT_EQ(before[i] == after[i], !hasPoint) << i;
    }
    EXPECT_GT(stayed, 0U);
    EXPECT_LT(stayed, before.size());
    EXPECT_EQ(m_Console.Count("The number of vertex: 66"), 1);
    EXPECT_EQ(m_Console.Count("The number of availible vertex: " + std::to_string(66 - stayed)), 1);
    EXPECT_EQ(m_Console.Count("The number of inavailible vertex: " + std::to_string(stayed)), 1);
}

TEST_F(EnergyFitTest, MovesNothingWhereNoPointHasAFoot)
{
    DSSolid& solid = m_Stage.Load(Placed(Tetrahedron(), 0.001, {5, 5, 5}));
    m_Stage.WriteCloud(kDragonCloud, {{1, -1, 1}, {-1, 1, -1}});
    const std::vector<smVec3d> before = PositionsOf(solid);
    Fit();
    EXPECT_EQ(PositionsOf(solid), before);
    EXPECT_EQ(m_Console.Count("There are 2points cannot find projection point.."), 1);
    EXPECT_EQ(m_Console.Count("The number of availible vertex: 0"), 1);
    EXPECT_EQ(m_Stage.GetView().GetProjectedPoints(), m_Stage.GetView().GetPointCloud());
}

TEST_F(EnergyFitTest, MakesEntriesOfZerosForAPointOverACorner)
{
    // Each cloud point is a corner of the model: its row has 1 on the diagonal and zeros beside it.
    DSSolid& solid = m_Stage.Load(Sphere(2));
    const std::vector<smVec3d> cloud = m_Stage.WriteCloud(kDragonCloud, PositionsOf(solid));
    for (std::size_t i = 0; i < cloud.size(); ++i)
    {
        solid.GetVertexList()[i]->GetPosition() = cloud[i];
    }
    const std::vector<smVec3d> before = PositionsOf(solid);
    Fit();
    const std::vector<smVec3d> after = PositionsOf(solid);
    for (std::size_t i = 0; i < before.size(); ++i)
    {
        EXPECT_NEAR((after[i] - before[i]).Length(), 0.0, 1e-6);
    }
    EXPECT_EQ(m_Console.Count("There are 0points cannot find projection point.."), 1);
}

TEST_F(EnergyFitTest, SizesTheFeetToTheCloud)
{
    m_Stage.Load(Sphere(1));
    m_Stage.GetView().GetProjectedPoints().assign(9, smVec3d(7, 7, 7));
    m_Stage.WriteCloud(kDragonCloud, SphereCloud(50, 1));
    Fit();
    EXPECT_EQ(m_Stage.GetView().GetProjectedPoints().size(), 50U);
    EXPECT_EQ(m_Stage.GetView().GetPointCloud().size(), 50U);
    m_Stage.WriteCloud(kDragonCloud, SphereCloud(6, 1));
    Fit();
    EXPECT_EQ(m_Stage.GetView().GetProjectedPoints().size(), 6U);
}

TEST_F(EnergyFitTest, TakesCloudsOfFewAndOfEqualPoints)
{
    const std::vector<smVec3d> clouds[] = {{{1, 0, 0}, {-1, 0, 0}},
                                           {{1, 0, 0}, {1, 0, 0}, {1, 0, 0}, {-1, 0, 0}, {-1, 0, 0}}};
    for (const std::vector<smVec3d>& cloud : clouds)
    {
        FitStage stage;
        stage.Load(Sphere(1));
        stage.WriteCloud(kDragonCloud, cloud);
        IAReconstructionSmoothEnergyFunctionCommand command;
        stage.Equip(command);
        command.Execute();
        EXPECT_EQ(m_Console.Count("点云大小: " + std::to_string(cloud.size())), 1);
    }
}

TEST_F(EnergyFitTest, RepeatsTheLastValuesOfAShortFile)
{
    m_Stage.Load(Sphere(1));
    m_Stage.GetFolder().Write(kDragonCloud, "4\n-1 -1 -1\n1 0 1\n0");
    Fit();
    const std::vector<smVec3d>& cloud = m_Stage.GetView().GetPointCloud();
    ASSERT_EQ(cloud.size(), 4U); // from (-1,-1,-1) to (1,0,1), centre (0,-1/2,0)
    EXPECT_EQ(cloud[2], smVec3d(0, 0.5, 1));
    EXPECT_EQ(cloud[3], cloud[2]);
}

TEST_F(EnergyFitTest, RefusesACloudThatCannotBe)
{
    m_Stage.Load(Sphere(1));
    m_Stage.GetFolder().Write(kDragonCloud, "-1\n");
    EXPECT_THAT(RefuseToFit(), EndsWith("data/dragon.txta, line 1: the number of points is -1"));
    m_Stage.GetFolder().Write(kDragonCloud, "2000000000\n0 0 0\n");
    EXPECT_THAT(RefuseToFit(), HasSubstr("the number of points is 2000000000, and the file has 17 bytes"));
    m_Stage.GetFolder().Write(kDragonCloud, "2\n0 0 0\n1 nan 0\n");
    EXPECT_THAT(RefuseToFit(), EndsWith("data/dragon.txta, line 3: a point's y is not finite"));
    m_Stage.GetFolder().Write(kDragonCloud, "0\n");
    EXPECT_THAT(RefuseToFit(), HasSubstr("holds no points"));
    m_Stage.GetFolder().Write(kDragonCloud, "1\n1 2 3\n");
    EXPECT_THAT(RefuseToFit(), HasSubstr("are at one place"));
}

TEST_F(EnergyFitTest, ReportsAMissingCloudAsAnAssertion)
{
    m_Stage.Load(Sphere(1));
    const AssertionCapture assertions;
    EXPECT_THAT(RefuseToFit(), HasSubstr("cannot open Data/dragon.txta"));
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(assertions.GetPaths(),
                testing::ElementsAre("source/Interaction/Command/Function Command/IAFittingCommand.cpp"));
#endif
}

TEST_F(EnergyFitTest, RefusesAllButClosedModelsOfTriangles)
{
    EXPECT_THAT(RefuseToFit(), HasSubstr("there is no model"));
    const std::pair<IndexedMesh, const char*> models[] = {
        {QuadCube(), "triangles only"},
        {Grid(2), "a closed model only"},
        {ThreeTrianglesOnOneEdge(), "a closed model only"},
    };
    for (const auto& [mesh, reason] : models)
    {
        FitStage stage;
        stage.Load(mesh);
        IAReconstructionSmoothEnergyFunctionCommand command;
        stage.Equip(command);
        EXPECT_THAT(GetRefusal([&command] { command.Execute(); }), HasSubstr(reason));
    }
}

TEST_F(EnergyFitTest, PassesOverVerticesWithoutFaces)
{
    IndexedMesh mesh = Sphere(1);
    mesh.positions.emplace_back(0.9, 0.9, 0.9);
    const DSSolid& solid = m_Stage.Load(mesh);
    m_Stage.WriteCloud(kDragonCloud, SphereCloud(500, 4));
    Fit();
    EXPECT_EQ(solid.GetVertexList()[18]->GetPosition(), smVec3d(0.9, 0.9, 0.9));
    EXPECT_EQ(m_Console.Count("The number of inavailible vertex: 1"), 1);
}

TEST_F(EnergyFitTest, AddsAnUmbrellaToEachVertex)
{
    const DSSolid& solid = m_Stage.Load(CentredTetrahedron());
    LeastSquaresSystem system;
    system.SetSize(4);
    IAReconstructionSmoothEnergyFunctionCommand::AddUmbrellaTerm(solid, system);
    // Each vertex is in the ring of three others, and each two are in that of two others: ninths.
    for (int i = 0; i < 4; ++i)
    {
        for (int j = 0; j < 4; ++j)
        {
            double value = 0.0;
            system.GetMatrix().GetValue(i, j, value);
            EXPECT_NEAR(value, i == j ? 3.0 / 9.0 : 2.0 / 9.0, 1e-15);
        }
    }
    // The others of (1,1,1) add up to (-1,-1,-1).
    EXPECT_NEAR(system.GetRightSide(0)[1], -1.0 / 3.0, 1e-15);
    const AssertionCapture assertions;
    system.SetSize(3);
    EXPECT_THROW(IAReconstructionSmoothEnergyFunctionCommand::AddUmbrellaTerm(solid, system),
                 AssertionFailure);
}
}
}
