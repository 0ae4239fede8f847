#include "IASmoothCommand.h"
#include "EigenTable.h"
#include "FitStage.h"
#include "LinksHold.h"
#include "RandomMeshes.h"
#include "Refusal.h"
#include "Vectors.h"
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr char kHorseCloudPath[] = "data/horse.txta";

class SmoothCommandTest : public FitCommandTest<IASmoothCommand>
{
protected:
    /// A model with its cloud, both taken.
    DSSolid& Take(const IndexedMesh& mesh, const std::vector<smVec3d>& cloud)
    {
        DSSolid& solid = m_Stage.Load(mesh);
        m_Cloud = m_Stage.WriteCloud(kHorseCloudPath, cloud);
        m_Command.TakeSolidAndCloud();
        return solid;
    }

    std::vector<smVec3d> m_Cloud; ///< as the file has it
};

double SixfoldVolume(const DSSolid& solid)
{
    double volume = 0.0;
    for (const DSFace* face : solid.GetFaceList())
    {
        const DSHalfEdge* first = face->GetLoopList()[0]->GetHalfEdge();
        for (const DSHalfEdge* h = first->GetNext(); h->GetNext() != first; h = h->GetNext())
        {
            volume += first->GetVertex()->GetPosition().Dot(
                h->GetVertex()->GetPosition().Cross(h->GetNext()->GetVertex()->GetPosition()));
        }
    }
    return volume;
}

std::size_t CountCornersOf(const DSFace& face)
{
    std::size_t count = 0;
    const DSHalfEdge* h = face.GetLoopList()[0]->GetHalfEdge();
    do
    {
        ++count;
        h = h->GetNext();
    } while (h != face.GetLoopList()[0]->GetHalfEdge());
    return count;
}

// --- the run

TEST_F(SmoothCommandTest, LeavesTheDualOfTheModelAsTheNewMesh)
{
    DSSolid& solid = m_Stage.Load(Sphere(1));
    m_Stage.WriteCloud(kHorseCloudPath, SphereCloud(2000, 1));
    m_Command.Execute();
    const DSSolid* dual = m_Command.GetDualSolid();
    ASSERT_NE(dual, nullptr);
    EXPECT_EQ(m_Stage.GetView().GetNewMesh(), dual);
    EXPECT_EQ(dual->GetVertexList().size(), solid.GetFaceList().size()); // many points over each face
    // Foot 0 is a corner of no polygon: around the three corners of its face there is one corner less.
    EXPECT_EQ(dual->GetFaceList().size(), solid.GetVertexList().size());
    std::size_t corners = 0;
    for (const DSFace* face : dual->GetFaceList())
    {
        corners += CountCornersOf(*face);
    }
    const bool isFirstFootTaken = solid.GetFaceList()[0]->GetTag() == 0 ||
                                  std::any_of(solid.GetFaceList().begin(), solid.GetFaceList().end(),
                                              [](const DSFace* face) { return face->GetTag() == 0; });
    EXPECT_EQ(corners, 3 * solid.GetFaceList().size() - (isFirstFootTaken ? 3 : 0));
    EXPECT_GT(SixfoldVolume(*dual), 0.0); // its faces turn outward, as those of the model
    EXPECT_TRUE(LinksHold(solid));
}

TEST_F(SmoothCommandTest, EndsOnTheCloudItself)
{
    m_Stage.Load(Sphere(1));
    m_Stage.WriteCloud(kHorseCloudPath, SphereCloud(500, 1));
    m_Command.Execute();
    const DSSolid& dual = *m_Command.GetDualSolid();
    ASSERT_EQ(m_Command.GetDualPointIndices().size(), dual.GetVertexList().size());
    for (std::size_t i = 0; i < dual.GetVertexList().size(); ++i)
    {
        const auto point = static_cast<std::size_t>(m_Command.GetDualPointIndices()[i]);
        EXPECT_EQ(dual.GetVertexList()[i]->GetPosition(), m_Stage.GetView().GetPointCloud()[point]);
    }
}

TEST_F(SmoothCommandTest, LeavesNormalsThatFitTheDualOnTheCloud)
{
    Take(Sphere(1), SphereCloud(500, 1));
    m_Command.BuildDualMesh();
    const DSSolid& dual = *m_Command.GetDualSolid();
    ASSERT_GT(dual.GetFaceList().size(), 0U);
    // The feet lie on the flat faces of the model, the points on the sphere: normals from before do not fit.
    for (const DSFace* face : dual.GetFaceList())
    {
        EXPECT_EQ(face->GetNormal(), face->ComputeNormal());
        EXPECT_NEAR(face->GetNormal().Length(), 1.0, 1e-12);
    }
    for (const DSVertex* vertex : dual.GetVertexList())
    {
        if (vertex->GetHalfEdge() != nullptr)
        {
            EXPECT_NEAR(vertex->GetNormal().Length(), 1.0, 1e-12);
        }
    }
}

TEST_F(SmoothCommandTest, ReportsTheTopologyOfTheDual)
{
    Take(Sphere(1), SphereCloud(500, 1));
    m_Command.BuildDualMesh();
    const DSSolid& dual = *m_Command.GetDualSolid();
    const auto count = [](const auto& list) { return std::to_string(list.size()); };
    EXPECT_EQ(m_Console.Count("m_VertexList.SIZE(): " + count(dual.GetVertexList())), 1);
    EXPECT_EQ(m_Console.Count("m_FaceList.Size(): " + count(dual.GetFaceList())), 1);
    EXPECT_EQ(m_Console.Count("m_EdgeList.Size(): " + count(dual.GetEdgeList())), 1);
}

TEST_F(SmoothCommandTest, BuildsTheSameDualAgainFromAllPoints)
{
    Take(Sphere(1), SphereCloud(500, 1));
    m_Command.BuildDualMesh();
    const std::vector<std::int32_t> points = m_Command.GetDualPointIndices();
    const std::vector<std::int32_t> withFoot = m_Command.GetFeet().cloudIndices;
    ASSERT_FALSE(points.empty());
    m_Command.BuildDualMesh(); // the first one has marked the points of its vertices
    EXPECT_EQ(m_Command.GetDualPointIndices(), points);
    EXPECT_EQ(m_Command.GetFeet().cloudIndices, withFoot);
}

TEST_F(SmoothCommandTest, BuildsTheDualFromPointsThatVerticesHaveTakenAsWell)
{
    Take(Sphere(1), SphereCloud(500, 1));
    m_Command.FindVertexFeet();
    m_Command.BuildDualMesh();
    IASmoothCommand other;
    m_Stage.Equip(other);
    other.TakeSolidAndCloud();
    other.BuildDualMesh();
    EXPECT_EQ(m_Command.GetFeet().cloudIndices, other.GetFeet().cloudIndices);
    EXPECT_EQ(m_Command.GetDualPointIndices(), other.GetDualPointIndices());
}

TEST_F(SmoothCommandTest, ShowsTheCloudAndItsFeetAndThePointsOfTheFileWhereThereIsNone)
{
    m_Stage.Load(CentredTetrahedron());
    const std::vector<smVec3d> file =
        m_Stage.WriteCloud(kHorseCloudPath, {{10, 0, 0}, {0, 10, 10}, {5, 0, 9}, {9, 10, 1}});
    m_Command.Execute();
    const Open3DView& view = m_Stage.GetView();
    ASSERT_EQ(view.GetPointCloud().size(), 4U);
    EXPECT_EQ(view.GetPointCloud()[0], smVec3d(1, -1, -1)); // a box from 0 to 10
    std::set<std::size_t> withFoot(m_Command.GetFeet().cloudIndices.begin(),
                                   m_Command.GetFeet().cloudIndices.end());
    EXPECT_FALSE(withFoot.empty());
    for (std::size_t i = 0; i < 4; ++i)
    {
        if (withFoot.count(i) == 0)
        {
            EXPECT_EQ(view.GetProjectedPoints()[i], file[i]);
        }
    }
    for (std::size_t foot = 0; foot < m_Command.GetFeet().points.size(); ++foot)
    {
        const auto point = static_cast<std::size_t>(m_Command.GetFeet().cloudIndices[foot]);
        EXPECT_EQ(view.GetProjectedPoints()[point], m_Command.GetFeet().points[foot]);
    }
}

TEST_F(SmoothCommandTest, KeepsThePointsOfTheFileForPointsWithoutAFoot)
{
    // Corners of the cube opposite to those of the tetrahedron: no foot lies on it within the tolerance.
    m_Stage.Load(Placed(CentredTetrahedron(), 3.0, {1, 1, 1}));
    const std::vector<smVec3d> file =
        m_Stage.WriteCloud(kHorseCloudPath, {{0, 0, 0}, {8, 8, 8}, {8, 8, 8}, {8, 8, 0}});
    m_Command.Execute();
    EXPECT_EQ(m_Console.Count("There are 4points cannot find projection point.."),
              m_Command.GetFeet().points.empty() ? 1 : 0);
    for (std::size_t i = 0; i < file.size(); ++i)
    {
        const auto& indices = m_Command.GetFeet().cloudIndices;
        if (std::find(indices.begin(), indices.end(), static_cast<std::int32_t>(i)) == indices.end())
        {
            EXPECT_EQ(m_Stage.GetView().GetProjectedPoints()[i], file[i]);
        }
    }
}

TEST_F(SmoothCommandTest, BringsTheModelIntoTheCubeAndLeavesItInItsPlace)
{
    DSSolid& solid = m_Stage.Load(Placed(Sphere(1), 3.0, {7, 8, 9}));
    const std::size_t edges = solid.GetEdgeList().size();
    m_Stage.WriteCloud(kHorseCloudPath, SphereCloud(300, 1));
    m_Command.Execute();
    EXPECT_EQ(solid.GetVertexList()[0]->GetPosition().Length(), 1.0);
    EXPECT_EQ(solid.GetEdgeList().size(), edges);
    EXPECT_NEAR(solid.GetVertexList()[0]->GetNormal().Length(), 1.0, 1e-12); // fresh: the loader makes none
    EXPECT_EQ(m_Command.GetDualSolid()->GetID(), 0xE0000001U);               // behind the model's
}

TEST_F(SmoothCommandTest, BuildsAFurtherDualEachTimeAndKeepsTheOneBefore)
{
    m_Stage.Load(Sphere(1));
    m_Stage.WriteCloud(kHorseCloudPath, SphereCloud(300, 1));
    m_Command.Execute();
    const DSSolid* first = m_Command.GetDualSolid();
    const std::vector<std::int32_t> points = m_Command.GetDualPointIndices();
    IASmoothCommand second;
    m_Stage.Equip(second);
    second.Execute();
    EXPECT_NE(second.GetDualSolid(), first);
    EXPECT_EQ(m_Stage.GetElements().GetSolid(first->GetID()), first);
    EXPECT_EQ(second.GetDualPointIndices(), points); // the model was in the cube already
    EXPECT_EQ(m_Stage.GetView().GetNewMesh(), second.GetDualSolid());
}

TEST_F(SmoothCommandTest, BuildsAnEmptyDualWhereNoFaceHasTwoFeet)
{
    m_Stage.Load(Sphere(2));
    m_Stage.WriteCloud(kHorseCloudPath, {{1, 0, 0}, {-1, 0, 0}});
    m_Command.Execute();
    ASSERT_NE(m_Command.GetDualSolid(), nullptr);
    EXPECT_EQ(m_Command.GetDualSolid()->GetVertexList().size(), 0U);
    EXPECT_EQ(m_Command.GetDualSolid()->GetFaceList().size(), 0U);
    EXPECT_EQ(m_Stage.GetView().GetNewMesh(), m_Command.GetDualSolid());
}

TEST_F(SmoothCommandTest, SaysWhyTheDualIsEmpty)
{
    m_Stage.Load(Sphere(2));
    m_Stage.WriteCloud(kHorseCloudPath, {{1, 0, 0}, {-1, 0, 0}});
    m_Command.Execute();
    EXPECT_EQ(m_Console.Count("The dual mesh is empty: no face of the model has two feet of the cloud."), 1);
    FitStage stage; // four points over one face: a vertex of the dual, and no polygon
    stage.Load(Sphere(1));
    stage.WriteCloud(
        kHorseCloudPath,
        {{1, 0, 0}, {-1, 0, 0}, {0.5, 0.7, 0.5}, {0.5, 0.6, 0.5}, {0.6, 0.6, 0.5}, {0.5, 0.6, 0.6}});
    IASmoothCommand command;
    stage.Equip(command);
    command.Execute();
    ASSERT_GT(command.GetDualSolid()->GetVertexList().size(), 0U);
    ASSERT_EQ(command.GetDualSolid()->GetFaceList().size(), 0U);
    EXPECT_EQ(m_Console.Count(
                  "The dual mesh has no polygon: around no vertex of the model are three faces with two "
                  "feet each, that of the very first foot left out."),
              1);
    EXPECT_EQ(m_Console.Count("The dual mesh is empty: no face of the model has two feet of the cloud."), 1);
    const std::size_t said = m_Console.GetText().size();
    FitStage full;
    full.Load(Sphere(1));
    full.WriteCloud(kHorseCloudPath, SphereCloud(2000, 1));
    IASmoothCommand other;
    full.Equip(other);
    other.Execute();
    EXPECT_EQ(m_Console.GetText().find("The dual mesh", said), std::string::npos);
}

TEST_F(SmoothCommandTest, TakesPolygonsAsTheyAre)
{
    m_Stage.Load(Placed(QuadTorus(8, 6), 0.7, {}));
    std::vector<smVec3d> cloud;
    for (const smVec3d& p : Placed(Torus(60, 40), 0.7, {}).positions)
    {
        cloud.push_back(p);
    }
    m_Stage.WriteCloud(kHorseCloudPath, cloud);
    m_Command.Execute();
    EXPECT_EQ(m_Command.GetDualSolid()->GetVertexList().size(), 48U); // one for each quadrilateral
    EXPECT_EQ(m_Command.GetDualSolid()->GetFaceList().size(), 48U);
}

TEST_F(SmoothCommandTest, AssertsFacesOfFewerThanTwentyCorners)
{
    m_Stage.Load(Prism(20));
    m_Stage.WriteCloud(kHorseCloudPath, SphereCloud(20, 1));
    const AssertionCapture assertions;
    EXPECT_THAT(RefuseToRun(), StartsWith("a face of the model has 20 corners, and a fit takes up to 19"));
    FitStage stage;
    stage.Load(Prism(19));
    stage.WriteCloud(kHorseCloudPath, SphereCloud(20, 1));
    IASmoothCommand command;
    stage.Equip(command);
    command.Execute();
    EXPECT_NE(command.GetDualSolid(), nullptr);
}

TEST_F(SmoothCommandTest, TakesAFlatCloud)
{
    m_Stage.Load(Sphere(1));
    m_Stage.WriteCloud(kHorseCloudPath, {{0, 0, 3}, {4, 0, 3}, {2, 1, 3}, {1, 1, 3}});
    m_Command.Execute();
    EXPECT_EQ(m_Stage.GetView().GetPointCloud()[0], smVec3d(-1, -0.25, 0)); // 4 by 1 by 0
}

TEST_F(SmoothCommandTest, TakesAFlatModel)
{
    // Two triangles back to back.
    IndexedMesh mesh;
    mesh.positions = {{0, 0, 5}, {4, 0, 5}, {0, 2, 5}};
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({1, 3, 2});
    DSSolid& solid = m_Stage.Load(mesh);
    m_Stage.WriteCloud(kHorseCloudPath, {{0, 0, 1}, {4, 0, 1}, {0, 2, 1}});
    const AssertionCapture assertions; // vertices between faces back to back have no normal
    m_Command.Execute();
    EXPECT_EQ(solid.GetVertexList()[1]->GetPosition(), smVec3d(1, -0.5, 0));
}

TEST_F(SmoothCommandTest, RefusesWhatHasNoExtent)
{
    IndexedMesh mesh = CentredTetrahedron();
    mesh.positions.assign(4, smVec3d(2, 2, 2));
    m_Stage.Load(mesh);
    m_Stage.WriteCloud(kHorseCloudPath, {{1, 0, 0}, {-1, 0, 0}});
    EXPECT_THAT(RefuseToRun(), StartsWith("all vertices of the model are at one place"));
    FitStage stage;
    stage.Load(Sphere(1));
    stage.WriteCloud(kHorseCloudPath, {{1, 2, 3}, {1, 2, 3}});
    IASmoothCommand command;
    stage.Equip(command);
    EXPECT_THAT(GetRefusal([&command] { command.Execute(); }), HasSubstr("are at one place"));
}

TEST_F(SmoothCommandTest, ReportsAMissingCloudAsAnAssertion)
{
    m_Stage.Load(Sphere(1));
    const AssertionCapture assertions;
    EXPECT_THAT(RefuseToRun(), HasSubstr("cannot open Data/horse.txta"));
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(assertions.GetPaths(),
                ElementsAre("source/Interaction/Command/Function Command/IAFittingCommand.cpp"));
#endif
}

TEST_F(SmoothCommandTest, RefusesOpenModels)
{
    EXPECT_THAT(RefuseToRun(), HasSubstr("there is no model"));
    IndexedMesh pillow; // two faces of two corners
    pillow.positions = {{0, 0, 0}, {1, 0, 0}};
    pillow.AddFace({1, 2});
    pillow.AddFace({2, 1});
    ExpectRefusals<IASmoothCommand>(kHorseCloudPath, {{Grid(2), "a closed model only"},
                                                      {ThreeTrianglesOnOneEdge(), "a closed model only"},
                                                      {pillow, "fewer than three corners"}});
}

TEST_F(SmoothCommandTest, PassesOverVerticesWithoutFaces)
{
    IndexedMesh mesh = Sphere(1);
    mesh.positions.emplace_back(0.5, 0.5, 0.5);
    m_Stage.Load(mesh);
    m_Stage.WriteCloud(kHorseCloudPath, SphereCloud(2000, 4));
    m_Command.Execute();
    EXPECT_EQ(m_Command.GetDualSolid()->GetFaceList().size(), 18U); // around those with faces
}

// --- the fit of the vertices

/// The errors that were printed, in order.
std::vector<double> AverageErrors(ConsoleCapture& console)
{
    std::vector<double> errors;
    for (const std::string& line : console.GetLines())
    {
        constexpr std::string_view name = "Average Error: ";
        if (line.starts_with(name))
        {
            errors.push_back(std::stod(line.substr(name.size())));
        }
    }
    return errors;
}

TEST_F(SmoothCommandTest, FitsTheVerticesTwiceAndLowersTheError)
{
    m_Stage.GetFolder().Write("data/keep", "");
    Take(Sphere(2), SphereCloud(400, 1));
    m_Command.FitVertices();
    const std::vector<double> errors = AverageErrors(m_Console);
    ASSERT_EQ(errors.size(), 2U);
    EXPECT_GT(errors[0], 0.02);             // 400 points on a sphere are 0.18 apart
    EXPECT_LT(errors[1], 0.01 * errors[0]); // the weight of the other term is a thousandth over the vertices
    EXPECT_NEAR(m_Command.GetAverageError(), errors[1], 1e-6 * errors[1]);
    EXPECT_LE(m_Command.GetAverageError(), m_Command.GetMaxError());
}

TEST_F(SmoothCommandTest, PrintsTheRootOfTheMeanSquareAsTheAverage)
{
    // Four targets, each at the same corner of the cube but for one that is a vertex: d = 2 root 2 three times.
    m_Stage.GetFolder().Write("data/keep", "");
    Take(CentredTetrahedron(), {{1, 1, 1}, {-9, -9, -9}});
    m_Command.FitVertices();
    const std::vector<std::string> lines = m_Console.GetLines();
    // The cloud ends at (1,1,1) and (-1,-1,-1), which is nearer to three of the corners, at 2.
    const auto total = std::find(lines.begin(), lines.end(), "Total Error: 12");
    ASSERT_NE(total, lines.end());
    EXPECT_EQ(*(total - 1), "***********************");
    EXPECT_EQ(*(total + 1), "Max Error: 2");
    EXPECT_EQ(*(total + 2), "Average Error: 1.73205"); // root of 12 / 4
    EXPECT_EQ(*(total + 3), "***********************");
    EXPECT_EQ(m_Console.Count("Const Matrix init OK...."), 6); // three times, in both rounds
}

TEST_F(SmoothCommandTest, WritesSamplesTargetsAndMatrix)
{
    m_Stage.GetFolder().Write("data/keep", "");
    DSSolid& solid = Take(CentredTetrahedron(), {{1, 1, 1}, {-1, -1, -1}});
    m_Command.FitVertices();
    // All four vertices are in each other's ring; valences 3. d = -2 (1/3 + 1/3), scaled by w = 0.001 / 4 when an
    // entry is touched: once for the edge, and as the second ring from each of the other two neighbours.
    const double w = 0.001 / 4;
    const double d = -4.0 / 3.0;
    const auto touch = [&](double value) { return (value + d) * w; };
    const double beside = touch(touch(touch(0.0)));
    const double diagonal = 2.0 + 2 * (3.0 / 9.0 + 1) * w;
    char text[200];
    std::snprintf(text, sizeof text, "项: 4\n0 0 %f\n", diagonal);
    const std::string file = m_Stage.GetFolder().Read("data/CheckCofficientMatrix.data");
    EXPECT_THAT(file, StartsWith(text));
    EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 4 * 5);
    std::snprintf(text, sizeof text, "0 1 %f\n", beside);
    EXPECT_THAT(file, HasSubstr(text));
    // The second round starts from where the first has left the vertex; the target is the same.
    const std::string feet = m_Stage.GetFolder().Read("data/CheckFootPoint.data");
    EXPECT_EQ(std::count(feet.begin(), feet.end(), '\n'), 4);
    EXPECT_THAT(feet, HasSubstr(" 1.000000 1.000000 1.000000 0.00"));
    EXPECT_NEAR((solid.GetVertexList()[0]->GetPosition() - smVec3d(1, 1, 1)).Length(), 0.0, 0.01);
}

TEST_F(SmoothCommandTest, NeedsAFolderToWriteInto)
{
    m_Stage.Load(Sphere(1));
    m_Cloud = m_Stage.WriteCloud(kHorseCloudPath, SphereCloud(50, 1));
    m_Command.TakeSolidAndCloud();
    std::filesystem::remove_all(m_Stage.GetFolder() / "data");
    EXPECT_THAT(GetRefusal([this] { m_Command.FitVertices(); }), HasSubstr("Data/CheckFootPoint.data"));
}

TEST_F(SmoothCommandTest, AssertsThatIdsArePlaces)
{
    LoadQuietly(m_Stage.GetElements(), Tetrahedron()); // the model is the second solid
    Take(Sphere(1), SphereCloud(50, 1));
    const AssertionCapture assertions;
    EXPECT_THAT(GetRefusal([this] { m_Command.FitVertices(); }),
                HasSubstr("export the model, import that file"));
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(assertions.GetExpressions(),
                testing::ElementsAre("pVertex->GetID() == static_cast<std::uint32_t>(i)"));
#endif
}

TEST_F(SmoothCommandTest, BringsVerticesWithoutFacesToTheirTargets)
{
    IndexedMesh mesh = Sphere(1);
    mesh.positions.emplace_back(0.5, 0.1, 0.0);
    DSSolid& solid = Take(mesh, SphereCloud(50, 1));
    m_Command.FitVertices();
    // 2 (1 + 0.001 / 19) x = 2 t: nothing holds it back but its own share of the other term.
    EXPECT_NEAR(solid.GetVertexList()[18]->GetPosition().Length(), 1.0, 1e-3);
}

// --- the fit of the limit surface

/// A command that finds the table of valences up to 8.
class LimitFitTest : public SmoothCommandTest
{
protected:
    LimitFitTest()
    {
        m_Stage.GetFolder().Write("data/keep", "");
        WriteEigenTable(m_Stage.GetFolder() / "data/lpdata50NT.dat", 8);
    }

    /// What the fit says against it; the model must be as it was taken.
    std::string RefuseToFit(const IndexedMesh& mesh)
    {
        FitStage stage;
        stage.GetFolder().Write("data/keep", "");
        std::filesystem::copy_file(m_Stage.GetFolder() / "data/lpdata50NT.dat",
                                   stage.GetFolder() / "data/lpdata50NT.dat");
        const DSSolid& solid = stage.Load(mesh);
        stage.WriteCloud(kHorseCloudPath, SphereCloud(30, 1));
        IASmoothCommand command;
        stage.Equip(command);
        command.TakeSolidAndCloud();
        const smVec3d before = solid.GetVertexList()[0]->GetPosition();
        const std::string refusal = GetRefusal([&command] { command.FitLimitSurface(); });
        EXPECT_EQ(solid.GetVertexList()[0]->GetPosition(), before);
        EXPECT_FALSE(stage.GetFolder().Has("data/CheckFootPoint.data"));
        return refusal;
    }
};

TEST_F(LimitFitTest, LowersTheErrorOfALimitSurface)
{
    // A torus has valence 6 everywhere. Its limit surface lies within the mesh, the points on it.
    m_Stage.Load(Placed(Torus(7, 5), 0.7, {}));
    m_Stage.WriteCloud(kHorseCloudPath, Placed(Torus(70, 40), 0.7, {}).positions);
    IASmoothCommand command;
    m_Stage.Equip(command);
    command.TakeSolidAndCloud();
    command.FitLimitSurface();
    const std::vector<double> errors = AverageErrors(m_Console);
    ASSERT_EQ(errors.size(), 4U);
    EXPECT_LT(errors[3], 0.5 * errors[0]);
    EXPECT_EQ(m_Console.Count("Points Cloud ANN Init is OK"), 4);
    // 70 faces of 1326 samples.
    const std::string feet = m_Stage.GetFolder().Read("data/CheckFootPoint.data");
    EXPECT_EQ(std::count(feet.begin(), feet.end(), '\n'), 70 * 1326);
}

TEST_F(LimitFitTest, RefusesFacesWithTwoIrregularCorners)
{
    EXPECT_THAT(RefuseToFit(CentredTetrahedron()), HasSubstr("subdivide the model once"));
    EXPECT_THAT(RefuseToFit(Sphere(0)), HasSubstr("subdivide the model once")); // an octahedron
}

TEST_F(LimitFitTest, RefusesPolygonsAndValencesWithoutAnEntry)
{
    EXPECT_THAT(RefuseToFit(QuadTorus(4, 4)), HasSubstr("triangles only"));
    EXPECT_THAT(RefuseToFit(Bipyramid(9)), HasSubstr("9"));
    IndexedMesh pillow;
    pillow.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    pillow.AddFace({1, 2, 3});
    pillow.AddFace({1, 3, 2});
    EXPECT_THAT(RefuseToFit(pillow), HasSubstr("two faces only"));
}

TEST_F(LimitFitTest, LeavesVerticesThatNoPatchReaches)
{
    IndexedMesh mesh = Torus(5, 4);
    mesh.positions.emplace_back(0.25, 0.25, 0.0);
    const DSSolid& solid = m_Stage.Load(mesh);
    m_Stage.WriteCloud(kHorseCloudPath, SphereCloud(30, 1));
    IASmoothCommand command;
    m_Stage.Equip(command);
    command.TakeSolidAndCloud();
    const smVec3d before = solid.GetVertexList()[20]->GetPosition();
    command.FitLimitSurface();
    EXPECT_EQ(solid.GetVertexList()[20]->GetPosition(), before);
}

TEST_F(LimitFitTest, TakesASolidBehindAnother)
{
    LoadQuietly(m_Stage.GetElements(), Tetrahedron()); // ids are not places
    m_Stage.Load(Torus(5, 4));
    m_Stage.WriteCloud(kHorseCloudPath, SphereCloud(30, 1));
    IASmoothCommand command;
    m_Stage.Equip(command);
    command.TakeSolidAndCloud();
    command.FitLimitSurface();
    EXPECT_EQ(AverageErrors(m_Console).size(), 4U);
}

TEST_F(SmoothCommandTest, RunsWithoutATableAndFitsNoLimitSurface)
{
    m_Stage.Load(Torus(5, 4));
    m_Stage.WriteCloud(kHorseCloudPath, SphereCloud(300, 1));
    m_Command.Execute();
    EXPECT_NE(m_Command.GetDualSolid(), nullptr);
    EXPECT_THAT(GetRefusal([this] { m_Command.FitLimitSurface(); }), HasSubstr("lpdata50NT.dat"));
}

// --- further operations

TEST_F(SmoothCommandTest, ReadsATriangulationOfTheCloud)
{
    Take(CentredTetrahedron(), {{1, 1, 1}, {-1, -1, -1}, {1, 0, 0}, {0, 1, 0}});
    m_Stage.GetFolder().Write("data/result.txt", "2\n0 2 3\n1 3 2\n");
    m_Command.ReadResult();
    const DSSolid* solid = m_Stage.GetElements().GetSolid(0xE0000001U);
    EXPECT_EQ(solid->GetVertexList().size(), 4U);
    EXPECT_EQ(solid->GetFaceList().size(), 2U);
    EXPECT_EQ(solid->GetEdgeList().size(), 5U);
    EXPECT_EQ(solid->GetVertexList()[2]->GetPosition(), m_Stage.GetView().GetPointCloud()[2]);
    const DSHalfEdge* h = solid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge();
    EXPECT_EQ(h->GetVertex(), solid->GetVertexList()[0]);
    EXPECT_EQ(h->GetNext()->GetVertex(), solid->GetVertexList()[2]);
    EXPECT_EQ(m_Stage.GetScene().GetRootGroup()->GetChildren().size(), 2U);
}

TEST_F(SmoothCommandTest, RefusesATriangulationThatCannotBe)
{
    Take(CentredTetrahedron(), {{1, 1, 1}, {-1, -1, -1}});
    const auto refusal = [this] { return GetRefusal([this] { m_Command.ReadResult(); }); };
    EXPECT_THAT(refusal(), HasSubstr("ata/result.txt: no such file"));
    const std::pair<const char*, const char*> files[] = {
        {"-1\n", "line 1: the number of triangles is -1"},
        {"1\n0 1 2\n", "line 2: a triangle has point 2 of 2"},
        {"1\n0 1 -1\n", "line 2: a triangle has point -1 of 2"},
        {"2000000000\n0 1 1\n", "the file ends"},
        {"one\n", "line 1"},
    };
    for (const auto& [text, reason] : files)
    {
        m_Stage.GetFolder().Write("data/result.txt", text);
        EXPECT_THAT(refusal(), HasSubstr(reason)) << text;
    }
    EXPECT_EQ(m_Stage.GetScene().GetRootGroup()->GetChildren().size(), 1U);
}

TEST_F(SmoothCommandTest, MovesAllVerticesOfOneSecondByOneLength)
{
    DSSolid& solid = Take(Sphere(1), SphereCloud(50, 1));
    solid.CalcNormals();
    m_Command.SetClock([] { return std::time_t{1}; });
    m_Command.PerturbVertices();
    // (1 * 214013 + 2531011) >> 16 is 41, below half of 32767.
    for (const DSVertex* vertex : solid.GetVertexList())
    {
        EXPECT_NEAR(vertex->GetPosition().Length(), 1.0 + 0.06 * 41 / 32767.0, 1e-6);
    }
    m_Command.SetClock([] { return std::time_t{7000}; });
    m_Command.PerturbVertices();
    // (7000 * 214013 + 2531011) >> 16 is 22897 in its lower 15 bits, above half: inward.
    EXPECT_NEAR(solid.GetVertexList()[0]->GetPosition().Length(),
                1.0 + 0.06 * 41 / 32767.0 - 0.06 * 22897 / 32767.0, 1e-6);
}

TEST_F(SmoothCommandTest, MovesNoVertexWhereANormalIsNoNumber)
{
    DSSolid& solid = Take(Sphere(1), SphereCloud(50, 1));
    solid.CalcNormals();
    solid.GetVertexList()[17]->GetNormal().x = std::nan("");
    const smVec3d before = solid.GetVertexList()[0]->GetPosition();
    EXPECT_THAT(GetRefusal([this] { m_Command.PerturbVertices(); }), HasSubstr("has no normal"));
    EXPECT_EQ(solid.GetVertexList()[0]->GetPosition(), before);
}

TEST_F(SmoothCommandTest, EstimatesTheNormalsOfAPlane)
{
    std::vector<smVec3d> cloud;
    for (int i = 0; i < 25; ++i)
    {
        cloud.emplace_back(i % 5, i / 5, 0.5 * (i % 5)); // a plane that rises by a half along x
    }
    Take(Sphere(1), cloud);
    m_Command.EstimateNormals();
    const std::vector<smVec3d>& normals = m_Stage.GetView().GetPointNormals();
    ASSERT_EQ(normals.size(), 25U);
    const smVec3d expected = smVec3d(-0.5, 0, 1) / std::sqrt(1.25);
    for (const smVec3d& normal : normals)
    {
        EXPECT_NEAR(std::abs(normal.Dot(expected)), 1.0, 1e-9);
    }
}

TEST_F(SmoothCommandTest, EstimatesANormalFromSixNeighbours)
{
    // Five on a line, the sixth beside it, and all others far off their plane.
    Take(Sphere(1), {{0, 0, 0},
                     {0.11, 0, 0},
                     {-0.1, 0, 0},
                     {0.2, 0, 0},
                     {-0.21, 0, 0},
                     {0, 0.3, 0},
                     {1, 1, 1},
                     {-1, -1, -1},
                     {1, -1, 1},
                     {-1, 1, 1}});
    m_Command.EstimateNormals();
    EXPECT_EQ(m_Stage.GetView().GetPointNormals()[0], smVec3d(0, 0, 1));
}

TEST_F(SmoothCommandTest, TakesTheEarlierOfTwoDirectionsWithoutSpread)
{
    std::vector<smVec3d> cloud; // on the x axis: none along y, and none along z
    for (int i = -4; i <= 4; ++i)
    {
        cloud.emplace_back(i, 0, 0);
    }
    Take(Sphere(1), cloud);
    m_Command.EstimateNormals();
    EXPECT_THAT(m_Stage.GetView().GetPointNormals(), testing::Each(smVec3d(0, 1, 0)));
}

TEST_F(SmoothCommandTest, GivesEachVertexAFreePointOfItsEightNearest)
{
    // Four vertices, and four points near the first: each takes the nearest that is left.
    DSSolid& solid = Take(CentredTetrahedron(), {{1, 1, 1}, {-1, -1, -1}, {0.9, 0.9, 0.9}, {0.8, 0.8, 0.8}});
    // The second takes (-1,-1,-1), the third (0.8, ...), which is nearer to it than (0.9, ...).
    EXPECT_THAT(m_Command.FindVertexFeet(), ElementsAre(0, 1, 3, 2));
    EXPECT_EQ(m_Console.Count("m_Points.Size()== 4"), 1);
    EXPECT_EQ(m_Console.Count("There still exsits error points..."), 0);
    EXPECT_EQ(m_Console.Count("Find init vertex footpoint ok..."), 1);
    EXPECT_THAT(m_Command.FindVertexFeet(), ElementsAre(-1, -1, -1, -1)); // none is free any more
    EXPECT_EQ(m_Console.Count("There still exsits error points..."),
              static_cast<int>(solid.GetVertexList().size()));
}

TEST_F(SmoothCommandTest, LooksNoFurtherThanTheEightNearestForAVertex)
{
    std::vector<smVec3d> cloud; // eight at each vertex, and one in the middle that none of them gets
    for (const smVec3d& vertex : CentredTetrahedron().positions)
    {
        for (int i = 0; i < 8; ++i)
        {
            cloud.push_back(vertex * (1.0 - 0.01 * i));
        }
    }
    cloud.emplace_back(0, 0, 0);
    Take(CentredTetrahedron(), cloud);
    for (int i = 0; i < 8; ++i)
    {
        m_Command.FindVertexFeet(); // each vertex takes one
    }
    EXPECT_EQ(m_Console.Count("There still exsits error points..."), 0);
    EXPECT_THAT(m_Command.FindVertexFeet(), testing::Each(-1));
    EXPECT_EQ(m_Console.Count("There still exsits error points..."), 4);
}

TEST_F(SmoothCommandTest, CountsThePointsWithoutAFoot)
{
    Take(Sphere(2), {{1, 0, 0}, {-1, 0, 0}, {0, 0.01, 1}, {0, 0.02, 0.01}});
    m_Command.BuildDualMesh();
    const std::vector<smVec3d> projected = m_Command.CheckProjection();
    ASSERT_EQ(projected.size(), 4U);
    int without = 0;
    for (std::size_t i = 0; i < 4; ++i)
    {
        const auto& indices = m_Command.GetFeet().cloudIndices;
        const bool hasFoot =
            std::find(indices.begin(), indices.end(), static_cast<std::int32_t>(i)) != indices.end();
        without += hasFoot ? 0 : 1;
        EXPECT_EQ(projected[i], hasFoot ? m_Stage.GetView().GetPointCloud()[i] : smVec3d());
    }
    EXPECT_EQ(m_Console.Count("check the unprojected ponits number: " + std::to_string(without)), 1);
}

TEST_F(SmoothCommandTest, SaysHowManyPointsHaveNoFootAndNotHowManyHaveOne)
{
    // Beside the sides of an octahedron's square, where no perpendicular lands; and two points on its faces.
    Take(Sphere(0),
         {{1, 0.9, 0}, {-1, -0.9, 0}, {1, -0.9, 0}, {-1, 0.9, 0}, {0.25, 0.25, 0.5}, {0.25, 0.25, -0.5}});
    m_Command.BuildDualMesh();
    ASSERT_THAT(m_Command.GetFeet().cloudIndices, ElementsAre(4, 5));
    m_Command.CheckProjection();
    EXPECT_EQ(m_Console.Count("check the unprojected ponits number: 4"), 1);
}

TEST_F(SmoothCommandTest, BuildsAnOctreeAndFindsTheNearestPointOfALeaf)
{
    EXPECT_EQ(m_Command.NearestInLeaf({0, 0, 0}), nullptr); // no octree yet
    Take(Sphere(1), SphereCloud(99, 3));
    m_Command.BuildOctree();
    EXPECT_TRUE(m_Command.GetOctreeRoot()->IsLeaf()); // it takes a hundred
    EXPECT_EQ(m_Console.Count("total face number:99"), 1);
    EXPECT_EQ(*m_Command.NearestInLeaf({0.9, 0.01, 0.0}), smVec3d(1, 0, 0));
}

TEST_F(SmoothCommandTest, FindsTheLeafOfAPointByTheFirstChildThatHoldsIt)
{
    Take(Sphere(1), SphereCloud(4000, 3));
    m_Command.BuildOctree();
    const OCTNODE* root = m_Command.GetOctreeRoot();
    EXPECT_EQ(root->GetMin(), smVec3d(-1, -1, -1));
    EXPECT_EQ(root->GetMax(), smVec3d(1, 1, 1));
    for (const smVec3d& p : m_Stage.GetView().GetPointCloud())
    {
        const OCTNODE* leaf = m_Command.FindLeaf(p);
        ASSERT_NE(leaf, nullptr);
        EXPECT_TRUE(leaf->IsLeaf());
        EXPECT_LE(leaf->GetDepth(), 6);
        EXPECT_EQ(*m_Command.NearestInLeaf(p), p);
    }
    const OCTNODE* node =
        m_Command.FindLeaf({0, 0, 0}); // a corner of all eight: the first, which has the largest corner
    while (node->GetParent() != root)
    {
        node = node->GetParent();
    }
    EXPECT_EQ(node, root->GetChildren()[0]);
    EXPECT_EQ(m_Command.FindLeaf({1.1, 0, 0}), nullptr);
    EXPECT_EQ(m_Command.NearestInLeaf({0.01, 0.01, 0.01}), nullptr); // an empty leaf
}

TEST_F(SmoothCommandTest, GrowsAMeshOverItsFeetByTheSameOperations)
{
    Take(Sphere(1), SphereCloud(1500, 3));
    m_Command.BuildDualMesh();
    const AssertionCapture
        assertions; // corners between the triangles and the face behind them have no normal
    m_Command.MakeSeed();
    const IncrementalConnection& connection = m_Command.GetConnection();
    ASSERT_NE(connection.GetNewSolid(), nullptr);
    EXPECT_EQ(m_Stage.GetView().GetNewMesh(), connection.GetNewSolid());
    EXPECT_EQ(connection.GetFrontEdges().size(), 3U);
    const std::size_t seeded = connection.GetNewSolid()->GetFaceList().size();
    for (int i = 0; i < 10; ++i)
    {
        m_Command.ConnectNext();
    }
    EXPECT_GT(connection.GetNewSolid()->GetFaceList().size(), seeded);
    m_Command.SaveEnvironment();
    EXPECT_THAT(m_Stage.GetFolder().Read("data/SmoothEnvionment.data"), testing::Not(testing::IsEmpty()));
}

TEST_F(SmoothCommandTest, ConnectsNothingWithoutAFront)
{
    m_Command.ConnectNext(); // before there is a seed
    EXPECT_EQ(m_Console.GetText(), "");
    Take(Sphere(1), SphereCloud(300, 3));
    m_Command.BuildDualMesh();
    const AssertionCapture assertions;
    m_Command.MakeSeed();
    const IncrementalConnection& connection = m_Command.GetConnection();
    for (int i = 0; i < 5000 && !connection.IsFrontEmpty(); ++i)
    {
        m_Command.ConnectNext();
    }
    ASSERT_TRUE(connection.IsFrontEmpty());
    const smVec3d mark(3, 4, 5);
    connection.GetNewSolid()->GetFaceList()[1]->GetNormal() = mark;
    const std::string said = m_Console.GetText();
    m_Command.ConnectNext();
    EXPECT_EQ(m_Console.GetText(), said);
    EXPECT_EQ(connection.GetNewSolid()->GetFaceList()[1]->GetNormal(), mark);
}

TEST_F(SmoothCommandTest, LeavesTheNormalsOfTheTrianglesThatItAdds)
{
    Take(Sphere(1), SphereCloud(1500, 3));
    m_Command.BuildDualMesh();
    const AssertionCapture assertions;
    m_Command.MakeSeed();
    const IncrementalConnection& connection = m_Command.GetConnection();
    for (int i = 0; i < 10; ++i)
    {
        m_Command.ConnectNext();
        for (const DSFace* face : connection.GetNewSolid()->GetFaceList())
        {
            EXPECT_EQ(face->GetNormal(), face->ComputeNormal());
            EXPECT_NEAR(face->GetNormal().Length(), 1.0, 1e-12);
        }
    }
    EXPECT_GT(connection.GetFaceCount(), 0);
}

TEST_F(SmoothCommandTest, WritesWhichPointsTheDualHasTakenIntoTheEnvironment)
{
    Take(Sphere(1), SphereCloud(300, 3));
    m_Command.BuildDualMesh();
    const AssertionCapture assertions;
    m_Command.MakeSeed();
    m_Command.SaveEnvironment();
    std::string expected = std::to_string(m_Cloud.size()) + "\n";
    const std::vector<std::int32_t>& taken = m_Command.GetDualPointIndices();
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(m_Cloud.size()); ++i)
    {
        expected += std::find(taken.begin(), taken.end(), i) == taken.end() ? "0\n" : "1\n";
    }
    EXPECT_THAT(m_Stage.GetFolder().Read("data/SmoothEnvionment.data"), testing::EndsWith("\n" + expected));
}
}
}
