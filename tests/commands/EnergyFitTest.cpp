#include "FitStage.h"
#include "IAPointCloud.h"
#include "IAReconstructionSmoothEnergyFunctionCommand.h"
#include "LinksHold.h"
#include "MeshWalks.h"
#include "Refusal.h"
#include "SolidNormalization.h"
#include "Vectors.h"
#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace tessarine
{
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
        const std::vector<DSFace*> faces = FacesAround(*vertex);
        const bool hasPoint =
            std::any_of(faces.begin(), faces.end(), [](const DSFace* face) { return face->GetTag() == 1; });
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

/// The steps of the fit up to its system.
class FitToItsSystem : public IAReconstructionSmoothEnergyFunctionCommand
{
public:
    const LeastSquaresSystem& Assemble()
    {
        TakeClosedSolid();
        LoadPoints(kDragonCloud);
        ShowCloud();
        FindFeet();
        InitSystem();
        AddPoints();
        return GetSystem();
    }
};

IndexedMesh UnitCube()
{
    return Placed(TriangleCube(), 2.0, {-1, -1, -1});
}

TEST_F(EnergyFitTest, MakesEntriesOfZerosForAPointOverACorner)
{
    DSSolid& solid = m_Stage.Load(UnitCube());
    m_Stage.WriteCloud(kDragonCloud, {{1, 1, 1}, {-1, -1, -1}});
    FitToItsSystem command;
    m_Stage.Equip(command);
    const LeastSquaresSystem& system = command.Assemble();
    // Two triangles have a point each, and no corner in common: six rows of three entries. The corner under the point
    // has 1 on the diagonal; all other entries are there, and zero.
    ASSERT_EQ(system.GetSize(), 6);
    int entries = 0;
    int ones = 0;
    int rowsOfThree = 0;
    for (int row = 0; row < system.GetSize(); ++row)
    {
        rowsOfThree += system.GetMatrix().GetColumnsOf(row).size() == 3 ? 1 : 0;
        for (const double value : system.GetMatrix().GetValuesOf(row))
        {
            EXPECT_TRUE(value == 0.0 || value == 1.0) << value;
            ones += value == 1.0 ? 1 : 0;
            ++entries;
        }
    }
    EXPECT_EQ(entries, 18);
    EXPECT_EQ(rowsOfThree, 6);
    EXPECT_EQ(ones, 2);
    EXPECT_EQ(std::count_if(solid.GetFaceList().begin(), solid.GetFaceList().end(),
                            [](const DSFace* face) { return face->GetTag() == 1; }),
              2);
}

TEST_F(EnergyFitTest, TakesAVertexOfNoWeightToTheOriginAndSaysError)
{
    DSSolid& solid = m_Stage.Load(UnitCube());
    m_Stage.WriteCloud(kDragonCloud, {{1, 1, 1}, {-1, -1, -1}});
    Fit();
    // Of the six corners of the two triangles, two have a point. The rows of the other four are zero on both sides, so
    // that the solution stays where it starts. Two corners touch no triangle with a point.
    EXPECT_EQ(m_Console.Count("The number of availible vertex: 6"), 1);
    EXPECT_EQ(m_Console.Count("error..."), 4);
    const std::vector<smVec3d> positions = PositionsOf(solid);
    EXPECT_EQ(std::count(positions.begin(), positions.end(), smVec3d(0, 0, 0)), 4);
    EXPECT_EQ(std::count(positions.begin(), positions.end(), smVec3d(1, 1, 1)), 1);
    EXPECT_EQ(std::count(positions.begin(), positions.end(), smVec3d(-1, -1, -1)), 1);
}

TEST_F(EnergyFitTest, LeavesCornersOnWhichThePointsStand)
{
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

struct CornersOfBox
{
    explicit CornersOfBox(const std::vector<smVec3d>& points) : low(points.at(0)), high(points.at(0))
    {
        for (const smVec3d& p : points)
        {
            for (int axis = 0; axis < 3; ++axis)
            {
                low[axis] = std::min(low[axis], p[axis]);
                high[axis] = std::max(high[axis], p[axis]);
            }
        }
    }

    smVec3d low;
    smVec3d high;
};

TEST_F(EnergyFitTest, HasSolidAndCloudOfDifferentBoxesInOneCube)
{
    // A slab of 3 x 1 x 0.3 around (100, 50, -20), and a flat cloud of 0.2 x 2 around (0, 7, 0.7).
    DSSolid& solid = m_Stage.Load(TriangleCube());
    for (DSVertex* vertex : solid.GetVertexList())
    {
        smVec3d& p = vertex->GetPosition();
        p = smVec3d(98.5 + 3.0 * p.x, 49.5 + p.y, -20.15 + 0.3 * p.z);
    }
    IAPointCloud cloud;
    cloud.m_Points = {{-0.1, 6, 0.7}, {0.1, 8, 0.7}, {0.05, 7.3, 0.7}};
    NormalizeSolid(solid);
    cloud.Normalize("cloud.txta");
    const CornersOfBox solidBox(PositionsOf(solid));
    const CornersOfBox cloudBox(cloud.m_Points);
    EXPECT_EQ(solidBox.low.x, -1.0);
    EXPECT_EQ(solidBox.high.x, 1.0);
    EXPECT_NEAR(solidBox.high.y, 1.0 / 3.0, 1e-5); // a coordinate of 100 in single precision
    EXPECT_EQ(cloudBox.low.y, -1.0);
    EXPECT_EQ(cloudBox.high.y, 1.0);
    EXPECT_NEAR(cloudBox.high.x, 0.1, 1e-15);
    EXPECT_EQ(cloudBox.low.z, 0.0);
    EXPECT_EQ(cloudBox.high.z, 0.0);
    for (const smVec3d& p : PositionsOf(solid)) // rounded, which the cloud is not
    {
        EXPECT_EQ(
            p, smVec3d(smVec3f(static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z))));
    }
    EXPECT_NEAR(cloud.m_Points[2].y, 0.3, 1e-14);
    EXPECT_NE(cloud.m_Points[2].y, double{static_cast<float>(cloud.m_Points[2].y)});
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

TEST_F(EnergyFitTest, ReportsAnEmptyCloudAndAMissingModelAsAssertions)
{
    const AssertionCapture assertions;
    EXPECT_THAT(RefuseToFit(), HasSubstr("there is no model"));
    m_Stage.Load(Sphere(1));
    m_Stage.GetFolder().Write(kDragonCloud, "0\n");
    EXPECT_THAT(RefuseToFit(), HasSubstr("data/dragon.txta holds no points"));
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(assertions.GetExpressions(),
                testing::ElementsAre("m_pSolid != nullptr", "!cloud.m_Points.empty()"));
#endif
}

/// Two tetrahedra that share vertex 1 and nothing else: all edges have two faces.
IndexedMesh TwoTetrahedraOnOneVertex()
{
    IndexedMesh mesh = Tetrahedron();
    for (const smVec3d& p : Placed(Tetrahedron(), -1.0, {}).positions)
    {
        mesh.positions.push_back(p);
    }
    const IndexList first = mesh.indices;
    for (std::size_t i = 0; i < first.size(); i += 3) // turned over, as they are mirrored
    {
        const auto other = [&first](std::size_t place) { return first[place] == 1 ? 1 : first[place] + 4; };
        mesh.AddFace({other(i), other(i + 2), other(i + 1)});
    }
    return mesh;
}

TEST_F(EnergyFitTest, RefusesAVertexWithTwoRingsBeforeAnythingChanges)
{
    DSSolid& solid = m_Stage.Load(TwoTetrahedraOnOneVertex());
    m_Stage.WriteCloud(kDragonCloud, SphereCloud(50, 1));
    const std::vector<smVec3d> before = PositionsOf(solid);
    EXPECT_THAT(RefuseToFit(),
                HasSubstr("at (0.000000, 0.000000, 0.000000) two parts of the surface share one"));
    EXPECT_EQ(PositionsOf(solid), before);
    EXPECT_TRUE(m_Stage.GetView().GetPointCloud().empty());
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(EnergyFitTest, RefusesAllButClosedModelsOfTriangles)
{
    ExpectRefusals<IAReconstructionSmoothEnergyFunctionCommand>(kDragonCloud, AllButClosedTriangles());
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
