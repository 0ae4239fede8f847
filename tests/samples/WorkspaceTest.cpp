#include "Workspace.h"
#include "Capture.h"
#include "Distance2D.h"
#include "EigenTable.h"
#include "FootSearch.h"
#include "IAGenerateSplatCommand.h"
#include "IAPointCloud.h"
#include "IAReconstructionSmoothEnergyFunctionCommand.h"
#include "IODatasetCameras.h"
#include "IODatasetImages.h"
#include "IODatasetText.h"
#include "IODatasetUnitizing.h"
#include "IOLoadObj.h"
#include "ImageFilter.h"
#include "LinksHold.h"
#include "LiteralSilhouette.h"
#include "MANSceneManager.h"
#include "Open3DView.h"
#include "Path.h"
#include "TemporaryFolder.h"
#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace tessarine
{
namespace
{
constexpr WorkspaceSize kSmall{1.5, 160, 120};

/// A coarse workspace, made once, that is the current folder.
class WorkspaceFiles : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_pFolder = new TemporaryFolder();
        WriteWorkspace(s_pFolder->GetPath(), kSmall);
    }
    static void TearDownTestSuite() { delete std::exchange(s_pFolder, nullptr); }

    WorkspaceFiles() { SetCurrentFolder(s_pFolder->GetPath()); }

    static IAPointCloud ReadCloud(const std::string& name)
    {
        IODatasetText text(name);
        IAPointCloud cloud;
        cloud.ReadPoints(text);
        return cloud;
    }

    static TemporaryFolder* s_pFolder;

private:
    CurrentFolderGuard m_Guard;
};

TemporaryFolder* WorkspaceFiles::s_pFolder = nullptr;

/// The pixel or one beside it is the object's: the mesh cuts corners of the shape that the cloud is on.
bool IsNearObject(const Image& image, int x, int y)
{
    for (int i = 0; i < 9; ++i)
    {
        const int pixel = (y + i / 3 - 1) * image.width + x + i % 3 - 1;
        if (image.pixels[static_cast<std::size_t>(3 * pixel)] != 0)
        {
            return true;
        }
    }
    return false;
}

/// A model, brought into a scene of its own.
struct ImportedModel
{
    explicit ImportedModel(const std::string& file)
    {
        IOLoadObj load(&scene, &elements);
        load.Load(file);
        pSolid = static_cast<const MANSceneLeaf&>(*scene.GetRootGroup()->GetChildren().at(0)).GetSolid();
    }

    ConsoleCapture console;
    MANBrepElementManager elements;
    MANSceneManager scene;
    const DSSolid* pSolid = nullptr;
};

TEST_F(WorkspaceFiles, HoldClosedModels)
{
    for (const char* file : {"box.obj", "bunny.obj", "dragon.obj", "horse.obj", "man.obj", "pebble.obj"})
    {
        ImportedModel model(file);
        EXPECT_TRUE(LinksHold(*model.pSolid)) << file;
        for (const DSEdge* edge : model.pSolid->GetEdgeList())
        {
            ASSERT_NE(edge->GetHalfEdge1(), nullptr) << file;
            ASSERT_NE(edge->GetHalfEdge2(), nullptr) << file;
        }
        EXPECT_EQ(model.console.Count("Solid fits Euler formular: true"), 1) << file;
    }
}

TEST_F(WorkspaceFiles, HaveTheirModelsInTheUnitCube)
{
    const ConsoleCapture console;
    for (const char* file : {"box.obj", "bunny.obj", "dragon.obj", "horse.obj", "man.obj"})
    {
        MANBrepElementManager elements;
        MANSceneManager scene;
        IOLoadObj load(&scene, &elements);
        load.ParseFile(file);
        double longest = 0.0;
        for (int axis = 0; axis < 3; ++axis)
        {
            const auto isLower = [axis](const smVec3d& a, const smVec3d& b) { return a[axis] < b[axis]; };
            const auto [low, high] =
                std::minmax_element(load.GetPositions().begin(), load.GetPositions().end(), isLower);
            EXPECT_NEAR((*low)[axis], -(*high)[axis], 2e-6) << file; // six digits
            longest = std::max(longest, (*high)[axis]);
        }
        EXPECT_EQ(longest, 1.0) << file;
    }
}

TEST_F(WorkspaceFiles, HaveFurOnEveryFaceOfTheBunny)
{
    const ImportedModel model("bunny.obj");
    for (const DSFace* face : model.pSolid->GetFaceList())
    {
        ASSERT_NE(face->GetMaterial(), nullptr);
        ASSERT_NE(face->GetMaterial()->m_pTexture, nullptr);
        EXPECT_EQ(face->GetMaterial()->m_pTexture->m_pTexture->GetWidth(), 256);
    }
}

TEST_F(WorkspaceFiles, HoldTheCloudsOfTheFits)
{
    EXPECT_EQ(ReadCloud("Data\\box.txta").m_Points.size(), 12000U); // so that faces have more than three
    EXPECT_EQ(ReadCloud("Data\\bunny.txta").m_Points.size(), 20000U);
    EXPECT_EQ(ReadCloud("Data\\dragon.txta").m_Points.size(), 60000U);
    EXPECT_EQ(ReadCloud("Data\\horse.txta").m_Points.size(), 12000U);
}

TEST_F(WorkspaceFiles, HoldTheTableForTheLimitSurface)
{
    EXPECT_EQ(ReadEigenTable().GetMostValence(), 50);
}

TEST_F(WorkspaceFiles, HaveTheirCloudsInTheUnitCube)
{
    IAPointCloud cloud = ReadCloud("Data\\bunny.txta");
    const std::vector<smVec3d> before = cloud.m_Points;
    cloud.Unitize("Data\\bunny.txta");
    for (std::size_t i = 0; i < before.size(); ++i)
    {
        ASSERT_LT((cloud.m_Points[i] - before[i]).Length(), 2e-6); // six digits
    }
}

TEST_F(WorkspaceFiles, HaveEveryPointOfTheBunnyInAllItsSilhouettes)
{
    const IAPointCloud cloud = ReadCloud("Data\\bunny.txta");
    const IODatasetCameras cameras = ReadCameras("data\\bunny\\param.dat");
    ASSERT_EQ(cameras.GetImageCount(), 90);
    const double acrossScale = cameras.m_nImageWidth / 2.4;
    const double upScale = cameras.m_nImageHeight / 2.4;
    for (int view = 0; view < cameras.GetImageCount(); ++view)
    {
        const Image image =
            ReadDatasetImage("data\\bunny\\", view + 1, kSmall.imageWidth, kSmall.imageHeight);
        for (const smVec3d& point : cloud.m_Points)
        {
            const smVec3d seen = point * cameras.m_Views[static_cast<std::size_t>(view)];
            const int x = static_cast<int>(seen.x * acrossScale + cameras.m_nImageWidth / 2);
            const int y = static_cast<int>(seen.y * upScale + cameras.m_nImageHeight / 2);
            ASSERT_TRUE(x > 0 && y > 0 && x < image.width - 1 && y < image.height - 1) << "view " << view;
            ASSERT_TRUE(IsNearObject(image, x, y)) << "view " << view;
        }
    }
}

TEST_F(WorkspaceFiles, AreFilteredAndMeasuredAsTheLiteralFormsDo)
{
    const ConsoleCapture console;
    for (const int number : {1, 19, 40, 77, 90})
    {
        Image image = ReadDatasetImage("data\\bunny\\", number, kSmall.imageWidth, kSmall.imageHeight);
        std::vector<std::uint8_t> expected = image.pixels;
        EXPECT_EQ(FilterImage(image.width, image.height, image.pixels.data(), 1, true),
                  FilterLiterally(image.width, image.height, expected, 1, true));
        EXPECT_EQ(image.pixels, expected);
        std::vector<std::int32_t> field(image.pixels.size() / 3);
        BuildDistance2D(image.width, image.height, image.pixels.data(), field.data());
        EXPECT_EQ(field, BuildDistanceLiterally(image.width, image.height, image.pixels));
    }
}

TEST_F(WorkspaceFiles, HaveMarkersInThreeOfFourViews)
{
    const IODatasetCameras cameras = ReadCameras("data\\man\\param.dat");
    EXPECT_EQ(cameras.GetImageCount(), 4);
    const IODatasetUnitizing unitizing = ReadUnitizing("data\\man\\unitize.dat");
    EXPECT_EQ(unitizing.m_nHalfWidth, 2);
    EXPECT_EQ(unitizing.m_fUnitizeScale, 1.0F);
    const ConsoleCapture console;
    for (int view = 0; view < 4; ++view)
    {
        Image image = ReadDatasetImage("data\\man\\", view + 1, kSmall.imageWidth, kSmall.imageHeight);
        EXPECT_EQ(FilterImage(image.width, image.height, image.pixels.data(), 0, true), view < 3);
        EXPECT_NO_THROW(cameras.GetInverse(view));
    }
}

TEST_F(WorkspaceFiles, GiveACutFaceForEachMarkerLine)
{
    MANSceneManager scene;
    IAGenerateSplatCommand command;
    command.SetSceneManager(&scene);
    command.Execute();
    ASSERT_EQ(scene.GetCutFaceList().size(), 3U);
    // The first view looks along z: its line is the neck's, from -0.3 to 0.3 at 0.62.
    constexpr double kPixelWidth = 4.0 / kSmall.imageWidth;
    constexpr double kPixelHeight = 4.0 / kSmall.imageHeight;
    const CutFace& neck = scene.GetCutFaceList()[0];
    EXPECT_NEAR(neck[0].x, -0.3, kPixelWidth);
    EXPECT_NEAR(neck[1].x, 0.3, kPixelWidth);
    for (const smVec3d& corner : neck)
    {
        EXPECT_NEAR(corner.y, 0.62, kPixelHeight);
        EXPECT_NEAR(std::abs(corner.z), 0.2, 1e-6);
    }
}

/// The root of the mean square of what lies between the points and the model.
double DistanceBetween(const std::vector<smVec3d>& cloud, DSSolid& solid)
{
    FootSearch search(solid, kIncrementalFeet);
    double sum = 0.0;
    for (const smVec3d& point : cloud)
    {
        const std::optional<Foot> foot = search.Find(point);
        const double toVertex = search.GetVertexDistance();
        const double nearest = foot ? std::min(toVertex, (point - foot->point).Length()) : toVertex;
        sum += nearest * nearest;
    }
    return std::sqrt(sum / static_cast<double>(cloud.size()));
}

TEST_F(WorkspaceFiles, HaveADragonThatTheEnergyFitBringsNearerToItsCloud)
{
    ImportedModel model("dragon.obj");
    DSSolid& dragon = *model.scene.GetCurrentSolid();
    Open3DView view;
    IAPointCloud cloud = ReadCloud("Data\\dragon.txta");
    cloud.Normalize("Data\\dragon.txta");
    const double before = DistanceBetween(cloud.m_Points, dragon);
    IAReconstructionSmoothEnergyFunctionCommand command;
    command.SetElementManager(&model.elements);
    command.SetSceneManager(&model.scene);
    command.SetView(&view);
    command.Execute();
    EXPECT_TRUE(LinksHold(dragon));
    EXPECT_GT(before, 0.0004);
    EXPECT_LT(DistanceBetween(cloud.m_Points, dragon), 0.6 * before);
}

TEST_F(WorkspaceFiles, HaveLabelledPointsInAFrameOfTheirOwn)
{
    IODatasetText text("Data\\man.data");
    IAPointCloud cloud;
    cloud.ReadLabelledPoints(text);
    EXPECT_EQ(cloud.m_Points.size(), 5000U);
    const auto isLower = [](const smVec3d& a, const smVec3d& b) { return a.y < b.y; };
    const auto [lowest, highest] = std::minmax_element(cloud.m_Points.begin(), cloud.m_Points.end(), isLower);
    EXPECT_NEAR(lowest->y, 0.0, 1e-4);
    EXPECT_NEAR(highest->y, 176.0, 1e-4);
    EXPECT_TRUE(std::filesystem::is_empty("data1"));
}

TEST_F(WorkspaceFiles, AreTheSameAgainInFoldersOfAnyCase)
{
    const TemporaryFolder again;
    again.Write("Data/Bunny/keep", "");
    WriteWorkspace(again.GetPath(), kSmall);
    EXPECT_FALSE(again.Has("data")); // what reads it takes the one that is there
    SetCurrentFolder(again.GetPath());
    for (const auto& entry : std::filesystem::recursive_directory_iterator(s_pFolder->GetPath()))
    {
        if (entry.is_regular_file())
        {
            const auto name = std::filesystem::relative(entry.path(), s_pFolder->GetPath());
            ASSERT_EQ(again.Read(ResolveForReading(name)), s_pFolder->Read(name)) << name;
        }
    }
}
}
}
