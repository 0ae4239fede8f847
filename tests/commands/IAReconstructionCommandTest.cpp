#include "IAReconstructionCommand.h"
#include "Capture.h"
#include "Distance2D.h"
#include "IAProjectionCommand.h"
#include "IODatasetImages.h"
#include "ImageFilter.h"
#include "LinksHold.h"
#include "LiteralField.h"
#include "LiteralSurface.h"
#include "MANSceneManager.h"
#include "Open3DView.h"
#include "PointWelder.h"
#include "Refusal.h"
#include "TemporaryFolder.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <gmock/gmock.h>
#include <optional>

namespace tessarine
{
namespace
{
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

constexpr int kWidth = 160;
constexpr int kHeight = 120;
constexpr smVec3d kHalfAxes(0.9, 0.5, 0.7);

std::size_t ToPixel(int x, int y)
{
    return static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x);
}

/// The silhouette of an ellipsoid in a view.
class Ellipse
{
public:
    explicit Ellipse(const smMatrix44d& view)
    {
        const std::array<double, 3> half{kHalfAxes.x, kHalfAxes.y, kHalfAxes.z};
        for (int axis = 0; axis < 3; ++axis)
        {
            const double square = half[static_cast<std::size_t>(axis)] * half[static_cast<std::size_t>(axis)];
            m_dXX += view.At(axis, 0) * view.At(axis, 0) * square;
            m_dXY += view.At(axis, 0) * view.At(axis, 1) * square;
            m_dYY += view.At(axis, 1) * view.At(axis, 1) * square;
        }
    }

    bool Has(double u, double v) const
    {
        const double determinant = m_dXX * m_dYY - m_dXY * m_dXY;
        return (m_dYY * u * u - 2 * m_dXY * u * v + m_dXX * v * v) / determinant < 1.0;
    }

private:
    double m_dXX = 0.0;
    double m_dXY = 0.0;
    double m_dYY = 0.0;
};

Image DrawEllipse(const smMatrix44d& view)
{
    const Ellipse ellipse(view);
    Image image{kWidth, kHeight, 3, {}};
    for (int y = 0; y < kHeight; ++y)
    {
        for (int x = 0; x < kWidth; ++x)
        {
            const double u = (x + 0.5 - kWidth / 2.0) * 2.4 / kWidth;
            const double v = (y + 0.5 - kHeight / 2.0) * 2.4 / kHeight;
            image.pixels.insert(image.pixels.end(), 3, ellipse.Has(u, v) ? 255 : 0);
        }
    }
    return image;
}

std::vector<smMatrix44d> GetViewsAround()
{
    std::vector<smMatrix44d> views;
    for (const int elevation : {-30, 10, 60})
    {
        for (int azimuth = 0; azimuth < 180; azimuth += 30)
        {
            views.push_back(IAProjectionCommand::MakeView(elevation, azimuth));
        }
    }
    return views;
}

std::string FormatCameraFile(const std::vector<smMatrix44d>& views)
{
    std::string text =
        std::to_string(views.size()) + "\n" + std::to_string(kWidth) + " " + std::to_string(kHeight) + "\n";
    for (const smMatrix44d& view : views)
    {
        for (int i = 0; i < 16; ++i)
        {
            text += std::to_string(view.At(i / 4, i % 4)) + (i < 15 ? " " : "\n");
        }
    }
    return text;
}

/// A folder with the silhouettes of an ellipsoid and a cloud of it.
class ReconstructionTest : public testing::Test
{
protected:
    ReconstructionTest()
    {
        m_Folder.Write("Data/bunny.txta", "3\n-0.9 0 0\n0.9 0 0\n0 0.5 0\n");
        Prepare(GetViewsAround());
    }

    void Prepare(const std::vector<smMatrix44d>& views)
    {
        m_Folder.Write("Data/bunny/param.dat", FormatCameraFile(views));
        for (std::size_t i = 0; i < views.size(); ++i)
        {
            WriteDatasetImage(DrawEllipse(views[i]), "data\\bunny\\", static_cast<int>(i) + 1);
        }
    }

    void MakeCommand()
    {
        m_Command.emplace();
        m_Command->SetSceneManager(&m_Scene);
        m_Command->SetElementManager(&m_Elements);
        m_Command->SetView(&m_View);
    }

    void Execute()
    {
        MakeCommand();
        m_Command->Execute();
    }

    std::string RefuseToExecute()
    {
        return GetRefusal([this] { Execute(); });
    }

    const DSSolid& GetLastSolid() const
    {
        const auto& children = m_Scene.GetRootGroup()->GetChildren();
        return *static_cast<const MANSceneLeaf*>(children.back())->GetSolid();
    }

    ConsoleCapture m_Console;
    TemporaryCurrentFolder m_Folder;
    MANSceneManager m_Scene;
    MANBrepElementManager m_Elements;
    Open3DView m_View;
    std::optional<IAReconstructionCommand> m_Command;
};

/// Pixels of the object in a view that the solid does not come nearer to than a cell.
int CountUncovered(const DSSolid& solid, const smMatrix44d& view)
{
    constexpr int kReach = 3; // a cell is 2.7 pixels wide
    const Image given = DrawEllipse(view);
    std::vector<char> covered(static_cast<std::size_t>(kWidth) * kHeight);
    for (const DSFace* face : solid.GetFaceList())
    {
        std::array<smVec3d, 3> p;
        const DSHalfEdge* halfEdge = face->GetLoopList()[0]->GetHalfEdge();
        for (smVec3d& corner : p)
        {
            corner = halfEdge->GetVertex()->GetPosition() * view;
            corner.x = corner.x * kWidth / 2.4 + kWidth / 2.0 - 0.5;
            corner.y = corner.y * kHeight / 2.4 + kHeight / 2.0 - 0.5;
            halfEdge = halfEdge->GetNext();
        }
        const auto side = [&p](std::size_t i, double x, double y)
        {
            const smVec3d& a = p[i];
            const smVec3d& b = p[(i + 1) % 3];
            return (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x);
        };
        const auto [left, right] = std::minmax({p[0].x, p[1].x, p[2].x});
        const auto [low, high] = std::minmax({p[0].y, p[1].y, p[2].y});
        for (int y = static_cast<int>(std::ceil(low)); y <= high; ++y)
        {
            for (int x = static_cast<int>(std::ceil(left)); x <= right; ++x)
            {
                const bool isIn = (side(0, x, y) >= 0 && side(1, x, y) >= 0 && side(2, x, y) >= 0) ||
                                  (side(0, x, y) <= 0 && side(1, x, y) <= 0 && side(2, x, y) <= 0);
                covered[ToPixel(x, y)] |= isIn ? 1 : 0;
            }
        }
    }
    int uncovered = 0;
    for (std::size_t i = ToPixel(0, kReach); i < ToPixel(0, kHeight - kReach);
         ++i) // the object is not on the border
    {
        bool isCovered = false;
        for (std::size_t step = 0; step <= kReach; ++step)
        {
            isCovered = isCovered || covered[i - step] != 0 || covered[i + step] != 0 ||
                        covered[i - step * kWidth] != 0 || covered[i + step * kWidth] != 0;
        }
        uncovered += given.pixels[3 * i] != 0 && !isCovered ? 1 : 0;
    }
    return uncovered;
}

TEST_F(ReconstructionTest, TellsItsProgressInOrder)
{
    Prepare({smMatrix44d(true), IAProjectionCommand::MakeView(0, 90)});
    Execute();
    EXPECT_THAT(m_Console.GetLines(),
                ElementsAre("Filter image ok..", "Calculate 3D distance field ok..", "Current image = 1",
                            "Filter image ok..", "Calculate 3D distance field ok..", "Current image = 2",
                            "total face number:3", "The size of node in the octree:1",
                            // The corners of the root are all outside.
                            "A node outside the border...", "The number of inside&outside node is 1"));
}

TEST_F(ReconstructionTest, TellsBoxesThatLieInsideTheHull)
{
    // Twenty points at the centre of the unitised cloud, and two that hold its box.
    std::string cloud = "22\n-1 -1 -1\n1 1 1\n";
    for (int i = 0; i < 20; ++i)
    {
        cloud += "0.1 0.1 0.1\n";
    }
    m_Folder.Write("Data/bunny.txta", cloud);
    Execute();
    EXPECT_THAT(m_Console.GetLines(), Contains("The size of node in the octree:65"));
    EXPECT_THAT(m_Console.GetLines(), Contains("A node inside the border..."));
    EXPECT_THAT(m_Console.GetLines(), Contains("A node outside the border...")); // with (1, 1, 1)
    // The box of (-1, -1, -1) reaches to the middle, and is neither.
    EXPECT_THAT(m_Console.GetText(), EndsWith("The number of inside&outside node is 2\n"));
}

TEST_F(ReconstructionTest, LeavesTheSceneAndFillsTheOverlays)
{
    Execute();
    EXPECT_TRUE(m_Scene.GetRootGroup()->GetChildren().empty());
    ASSERT_EQ(m_View.GetPointCloud().size(), 3U);
    EXPECT_EQ(m_View.GetPointCloud()[1].x, 1.0); // unitised
    EXPECT_EQ(m_View.GetOctree(), m_Command->GetOctreeRoot());
    ASSERT_NE(m_View.GetOctree(), nullptr);
    EXPECT_EQ(m_View.GetOctree()->GetPoints().size(), 3U);
    EXPECT_TRUE(m_Scene.GetCutFaceList().empty());
}

TEST_F(ReconstructionTest, UnitisesTheCloudTwice)
{
    Prepare({smMatrix44d(true)});
    m_Folder.Write("Data/bunny.txta", "2\n1000000 0 0\n1000000.0625 0 0\n");
    Execute();
    // Single precision holds both, and not their middle, which becomes the first: 0 and 2. Once more: -1 and 1.
    ASSERT_EQ(m_View.GetPointCloud().size(), 2U);
    EXPECT_EQ(m_View.GetPointCloud()[0].x, -1.0);
    EXPECT_EQ(m_View.GetPointCloud()[1].x, 1.0);
}

TEST_F(ReconstructionTest, WritesTheFieldAtEachPoint)
{
    Execute();
    // The points, unitised by their longest side, are (-1, -0.28, 0), (1, -0.28, 0) and (0, 0.28, 0).
    ASSERT_EQ(m_Command->GetPointDistances().size(), 3U);
    EXPECT_EQ(m_Command->GetPointDistances()[2], m_Command->GetField().GetValue(30, 36, 100));
    const std::string text = m_Folder.Read("pointDistance.dat");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
    std::array<char, 100> line{};
    std::snprintf(line.data(), line.size(), "0.000000 %f 0.000000 %f\n", m_View.GetPointCloud()[2].y,
                  double{m_Command->GetPointDistances()[2]});
    EXPECT_THAT(text, EndsWith(line.data()));
}

TEST_F(ReconstructionTest, HasTheFieldOfTheLiteralForm)
{
    const std::vector<smMatrix44d> views = GetViewsAround();
    Prepare({views[1], views[8]});
    Execute();
    LiteralField literal;
    const IODatasetCameras cameras = ReadCameras("data\\bunny\\param.dat");
    for (int view = 0; view < 2; ++view)
    {
        Image image = ReadDatasetImage("data\\bunny\\", view + 1, kWidth, kHeight);
        FilterImage(kWidth, kHeight, image.pixels.data(), 1, true);
        std::vector<std::int32_t> layers(static_cast<std::size_t>(kWidth) * kHeight);
        BuildDistance2D(kWidth, kHeight, image.pixels.data(), layers.data());
        literal.AddView(cameras.m_Views[static_cast<std::size_t>(view)], kWidth, kHeight, layers);
    }
    EXPECT_EQ(m_Command->GetField().GetValues(), literal.GetValues());
}

/// An image whose markers fill columns 40 to 120 from row 60 on.
Image DrawMarked(int rows)
{
    Image image = DrawEllipse(smMatrix44d(true));
    for (int x = 40; x <= 120; ++x)
    {
        for (int y = 60; y < 60 + rows; ++y)
        {
            image.pixels[3 * ToPixel(x, y)] = 0;
        }
    }
    return image;
}

void ExpectCorners(const CutFace& face, const CutFace& expected)
{
    for (std::size_t i = 0; i < face.size(); ++i)
    {
        EXPECT_NEAR((face[i] - expected[i]).Length(), 0.0, 1e-12) << i;
    }
}

constexpr double kCutDepth = double{0.2F};

TEST_F(ReconstructionTest, AddsACutFaceForAnImageWithMarkers)
{
    Prepare({smMatrix44d(true)});
    WriteDatasetImage(DrawMarked(2), "data\\bunny\\", 1);
    Execute();
    // u is 40 / 80 - 1 and 120 / 80 - 1, v is 60 / 60 - 1 and 61 / 60 - 1.
    ExpectCorners(m_Scene.GetCutFaceList().at(0), {{{-0.5, 0, kCutDepth},
                                                    {0.5, 1.0 / 60, kCutDepth},
                                                    {0.5, 1.0 / 60, -kCutDepth},
                                                    {-0.5, 0, -kCutDepth}}});
}

TEST_F(ReconstructionTest, TurnsACutFaceBackFromTheViewOfItsImage)
{
    Prepare({smMatrix44d(true), IAProjectionCommand::MakeView(90, 90)});
    WriteDatasetImage(DrawMarked(2), "data\\bunny\\", 2);
    Execute();
    // The second view takes (x, y, z) to (z, x, y), so that (u, v, depth) was (v, depth, u).
    ASSERT_EQ(m_Scene.GetCutFaceList().size(), 1U);
    ExpectCorners(m_Scene.GetCutFaceList()[0], {{{0, kCutDepth, -0.5},
                                                 {1.0 / 60, kCutDepth, 0.5},
                                                 {1.0 / 60, -kCutDepth, 0.5},
                                                 {0, -kCutDepth, -0.5}}});
}

TEST_F(ReconstructionTest, AddsNothingForAMarkerThatTheFilterTookAway)
{
    Prepare({smMatrix44d(true)});
    WriteDatasetImage(DrawMarked(1), "data\\bunny\\", 1); // a run of one in each column
    Execute();
    EXPECT_TRUE(m_Scene.GetCutFaceList().empty());
}

TEST_F(ReconstructionTest, NeedsAnInverseOnlyForMarkers)
{
    smMatrix44d flat(true);
    flat.At(2, 2) = 0.0;
    Prepare({flat});
    EXPECT_EQ(RefuseToExecute(), "");
    WriteDatasetImage(DrawMarked(2), "data\\bunny\\", 1);
    EXPECT_THAT(RefuseToExecute(), HasSubstr("/param.dat, line 3: the camera of image 1 has no inverse"));
}

TEST_F(ReconstructionTest, ReportsAMissingCloudFromTheCommand)
{
    std::filesystem::remove(m_Folder / "Data/bunny.txta");
    Prepare({smMatrix44d(true)});
    const AssertionCapture assertions;
    EXPECT_THAT(RefuseToExecute(), HasSubstr("cannot open Data/bunny.txta: "));
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(assertions.GetPaths(),
                ElementsAre("source/Interaction/Command/Function Command/IAReconstructionCommand.cpp"));
#endif
}

TEST_F(ReconstructionTest, RefusesFilesThatLie)
{
    Prepare({smMatrix44d(true)});
    m_Folder.Write("Data/bunny.txta", "0\n");
    EXPECT_THAT(RefuseToExecute(), HasSubstr("holds no points"));
    m_Folder.Write("Data/bunny.txta", "1\n1 2 3\n");
    EXPECT_THAT(RefuseToExecute(), HasSubstr("are at one place"));
    m_Folder.Write("Data/bunny.txta", "2\n1 2 3\nnan 2 3\n");
    EXPECT_THAT(RefuseToExecute(), HasSubstr("bunny.txta, line 3: "));
    m_Folder.Write("Data/bunny.txta", "3\n1 2 3\n1 1 1\n");
    EXPECT_THAT(RefuseToExecute(), HasSubstr("the file ends after 2 of 3 points"));
    EXPECT_FALSE(m_Folder.Has("pointDistance.dat"));
}

TEST_F(ReconstructionTest, RefusesCamerasAndImagesThatDoNotFit)
{
    Prepare({smMatrix44d(true)});
    m_Folder.Write("Data/bunny/param.dat", "2\n160 120\n1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1\n");
    EXPECT_THAT(RefuseToExecute(), HasSubstr("the file ends after 1 of 2 views"));
    m_Folder.Write("Data/bunny/param.dat", "1\n100 120\n1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1\n");
    EXPECT_THAT(RefuseToExecute(),
                HasSubstr("1.bmp is 160 x 120 pixels, and Data/bunny/param.dat, line 2 says 100 x 120"));
    m_Folder.Write("Data/bunny/param.dat", "1\n160 0\n1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1\n");
    EXPECT_THAT(RefuseToExecute(), HasSubstr("the height of the images is 0"));
    std::filesystem::remove(m_Folder / "Data/bunny/param.dat");
    EXPECT_THAT(RefuseToExecute(), HasSubstr("bunny/param.dat: no such file"));
    Prepare({smMatrix44d(true)});
    std::filesystem::remove(m_Folder / "Data/bunny/1.bmp");
    EXPECT_THAT(RefuseToExecute(), HasSubstr("bunny/1.bmp: no such file"));
}

TEST_F(ReconstructionTest, LeavesNoDistancesHalfWritten)
{
    Prepare({smMatrix44d(true)});
    m_Folder.Write("pointDistance.dat/occupied", ""); // a folder of this name
    EXPECT_THAT(RefuseToExecute(), HasSubstr("pointDistance.dat"));
    EXPECT_TRUE(m_Folder.Has("pointDistance.dat/occupied"));
    EXPECT_EQ(m_Folder.List().size(), 2U);
}

TEST_F(ReconstructionTest, GivesAClosedHullThatCoversItsSilhouettes)
{
    Execute();
    m_Command->GenerateMesh(0.0F);
    m_Command->BuildSolid();
    const DSSolid& hull = GetLastSolid();
    EXPECT_TRUE(LinksHold(hull));
    for (const DSEdge* edge : hull.GetEdgeList())
    {
        ASSERT_NE(edge->GetHalfEdge2(), nullptr);
        ASSERT_NE(edge->GetHalfEdge1(), nullptr);
    }
    EXPECT_THAT(m_Console.GetLines(), Contains("solid flag: true"));
    for (const DSVertex* vertex : hull.GetVertexList())
    {
        // Outside the body but for a cell and half a pixel at most, 0.1 of the shortest half axis; facing outward.
        const smVec3d& p = vertex->GetPosition();
        const smVec3d scaled(p.x / kHalfAxes.x, p.y / kHalfAxes.y, p.z / kHalfAxes.z);
        ASSERT_GT(scaled.Length(), 0.9);
        ASSERT_LT(scaled.Length(), 1.25);
        ASSERT_GT(vertex->GetNormal().Dot(p), 0.0);
    }
    for (const smMatrix44d& view :
         GetViewsAround()) // the surface goes through the middle of the outline's pixels
    {
        EXPECT_EQ(CountUncovered(hull, view), 0);
    }
}

TEST_F(ReconstructionTest, WeldsAsTheLiteralForm)
{
    Execute();
    m_Command->GenerateMesh(0.0F);
    const std::vector<LiteralTriangle> triangles = GenerateLiterally(m_Command->GetField().GetValues(), 0.0F);
    ASSERT_EQ(m_Command->GetTriangles().size(), triangles.size());
    const LiteralWeld weld = WeldLiterally(triangles);
    m_Command->BuildSolid();
    EXPECT_THAT(m_Console.GetText(), HasSubstr("vCount: " + std::to_string(weld.vList.size()) +
                                               "\nvList.Size(): " + std::to_string(weld.vList.size()) +
                                               "\nfv.Size(): " + std::to_string(weld.fv.size()) +
                                               "\nfn.Size(): " + std::to_string(weld.fn.size()) + "\n"));
    const DSSolid& hull = GetLastSolid();
    ASSERT_EQ(hull.GetVertexList().size(), weld.vList.size());
    for (std::size_t i = 0; i < weld.vList.size(); ++i)
    {
        ASSERT_EQ((hull.GetVertexList()[i]->GetPosition() - weld.vList[i]).Length(), 0.0) << i;
    }
    // The corners of the first face stand backwards behind its first.
    const DSHalfEdge* first = hull.GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge();
    const auto vertexAt = [&](std::size_t corner)
    { return hull.GetVertexList()[static_cast<std::size_t>(weld.fv[corner]) - 1]; };
    EXPECT_EQ(first->GetVertex(), vertexAt(0));
    EXPECT_EQ(first->GetNext()->GetVertex(), vertexAt(2));
    EXPECT_EQ(first->GetPrev()->GetVertex(), vertexAt(1));
}

TEST_F(ReconstructionTest, StartsItsTrianglesAnewWithEachMesh)
{
    Execute();
    m_Command->GenerateMesh(0.0F);
    const std::size_t count = m_Command->GetTriangles().size();
    m_Command->GenerateMesh(0.0F);
    EXPECT_EQ(m_Command->GetTriangles().size(), count);
    m_Command->BuildSolid();
    m_Command->BuildSolid();
    EXPECT_EQ(m_Scene.GetRootGroup()->GetChildren().size(), 2U); // those before stay, and stay visible
}

TEST_F(ReconstructionTest, BuildsAnEmptySolidWhereNothingIsInside)
{
    MakeCommand();
    m_Command->GenerateMesh(-2000.0F);
    const ErrorLineCapture errors;
    m_Command->BuildSolid();
    EXPECT_EQ(GetLastSolid().GetVertexList().size(), 0U);
    EXPECT_THAT(errors.GetText(),
                testing::StartsWith("the surface has no face, as the field does not cross its level"));
}

TEST_F(ReconstructionTest, LeavesOutTrianglesWithoutArea)
{
    Execute();
    // Samples an ulp below the level: single precision holds no place between them and the surface.
    const float value = m_Command->GetField().GetValue(42, 38, 110); // at (0.48, 0.32, 0.4)
    m_Command->GenerateMesh(std::nextafter(value, 1.0F));
    m_Command->BuildSolid();
    const int leftOut = m_Console.Count(" Ambiguous triangle:");
    EXPECT_GT(leftOut, 0);
    EXPECT_THAT(m_Console.GetText(), HasSubstr("same vertex: ("));
    EXPECT_EQ(GetLastSolid().GetFaceList().size(),
              m_Command->GetTriangles().size() - static_cast<std::size_t>(leftOut));
}

TEST_F(ReconstructionTest, ShowsTheFieldInHalfItsSize)
{
    Prepare({smMatrix44d(true)});
    Execute();
    m_Command->ShowField();
    const DSSolid& points = GetLastSolid();
    EXPECT_EQ(points.GetFaceList().size(), 0U);
    const std::vector<float>& values = m_Command->GetField().GetValues();
    EXPECT_EQ(static_cast<std::ptrdiff_t>(points.GetVertexList().size()),
              std::count_if(values.begin(), values.end(),
                            [](float value) { return value != 1000.0F && value != -1000.0F; }));
    bool hasZero = false;
    for (const DSVertex* vertex : points.GetVertexList())
    {
        const smVec3d& p = vertex->GetPosition();
        const float value = m_Command->GetField().GetValueAt(p * 2.0 + smVec3d(0.02, 0.02, 0.02));
        const double shade = value == 0.0F ? 1.0 : double{value} / 2.0;
        ASSERT_EQ(vertex->GetNormal().x, 1.0);
        ASSERT_EQ(vertex->GetNormal().y, shade);
        ASSERT_EQ(vertex->GetNormal().z, shade);
        hasZero = hasZero || value == 0.0F;
    }
    EXPECT_TRUE(hasZero);
}

TEST(IAReconstructionCommand, AssertsWhatItWorksOn)
{
    const AssertionCapture assertions;
    EXPECT_THROW(IAReconstructionCommand().Execute(), AssertionFailure);
    EXPECT_THROW(IAReconstructionCommand().BuildSolid(), AssertionFailure);
    EXPECT_THROW(IAReconstructionCommand().ShowField(), AssertionFailure);
}
}
}
