#include "IAProjectionCommand.h"
#include "Capture.h"
#include "FailingFileCalls.h"
#include "IODatasetImages.h"
#include "Open3DView.h"
#include "Refusal.h"
#include "TemporaryFolder.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

/// A folder with a dataset to sample, and a view of another size than the images.
class ProjectionTest : public testing::Test
{
protected:
    ProjectionTest() { m_View.Resize(0, 0, 64, 48); }

    void CreateSurface()
    {
        ASSERT_EQ(m_View.Create(), 0);
        m_View.InitState();
    }

    void Sample()
    {
        IAProjectionCommand command;
        command.SetView(&m_View);
        command.Execute();
    }

    std::string RefuseToSample()
    {
        return GetRefusal([this] { Sample(); });
    }

    TemporaryCurrentFolder m_Folder;
    Open3DView m_View;
};

/// The corners of the white pixels' box and their number.
struct WhiteBox
{
    int left = 1 << 20;
    int right = -1;
    int bottom = 1 << 20;
    int top = -1;
    int count = 0;
};

WhiteBox FindWhite(const Image& image)
{
    WhiteBox box;
    for (int i = 0; i < image.width * image.height; ++i)
    {
        if (image.pixels[static_cast<std::size_t>(3 * i)] == 255)
        {
            box.left = std::min(box.left, i % image.width);
            box.right = std::max(box.right, i % image.width);
            box.bottom = std::min(box.bottom, i / image.width);
            box.top = std::max(box.top, i / image.width);
            ++box.count;
        }
    }
    return box;
}

void ExpectRotation(const smMatrix44d& view, const smVec3d& point, const smVec3d& image)
{
    const smVec3d turned = point * view;
    EXPECT_NEAR(turned.x, image.x, 1e-12);
    EXPECT_NEAR(turned.y, image.y, 1e-12);
    EXPECT_NEAR(turned.z, image.z, 1e-12);
}

TEST(ProjectionView, TurnsAboutTheVerticalFirst)
{
    // Azimuth 90: x' = z and z' = -x. Elevation 90: y' = -z' and z'' = y.
    ExpectRotation(IAProjectionCommand::MakeView(0, 90), {1, 2, 3}, {3, 2, -1});
    ExpectRotation(IAProjectionCommand::MakeView(90, 0), {1, 2, 3}, {1, -3, 2});
    ExpectRotation(IAProjectionCommand::MakeView(90, 90), {1, 2, 3}, {3, 1, 2});
}

TEST_F(ProjectionTest, WritesNinetyImagesAndTheirViews)
{
    CreateSurface();
    m_Folder.Write("data/man.data", "3\nleft -1 0 0\nright 1 0 0\nfront 0 0 1\n");
    m_Folder.Write("data1/keep", "");
    Sample();

    EXPECT_TRUE(m_Folder.Has("data1/90.bmp"));
    EXPECT_FALSE(m_Folder.Has("data1/91.bmp"));
    // The unitised points are (-1, 0, -1/2), (1, 0, -1/2), (0, 0, 1/2), and 200 pixels across and 150 up are one
    // unit. Image 1, elevation -50: y = z sin 50, 0.38 down and up, so 57 pixels; image 19, -20: 26 pixels.
    const WhiteBox first = FindWhite(ReadDatasetImage("data1\\", 1, 800, 600));
    EXPECT_EQ(first.count, 3 * 36); // squares of 6 x 6 pixels
    EXPECT_NEAR(first.left, 197, 1);
    EXPECT_NEAR(first.right, 602, 1);
    EXPECT_NEAR(first.bottom, 300 - 57 - 3, 1);
    EXPECT_NEAR(first.top, 300 + 57 + 2, 1);
    const WhiteBox nineteenth = FindWhite(ReadDatasetImage("data1\\", 19, 800, 600));
    EXPECT_NEAR(nineteenth.left, 197, 1);
    EXPECT_NEAR(nineteenth.top, 300 + 26 + 2, 1);

    // Image 40, elevation 10, azimuth 60: the second point's depth, -1.12 cos 10, is before the box.
    EXPECT_EQ(FindWhite(ReadDatasetImage("data1\\", 40, 800, 600)).count, 2 * 36);

    const std::string views = m_Folder.Read("data1/param.data");
    EXPECT_THAT(views,
                StartsWith("90800 600\n1.000000 0.000000 0.000000 0.000000 0.000000 0.642788 -0.766044 "));
    EXPECT_EQ(std::count(views.begin(), views.end(), '\n'), 91);
}

TEST_F(ProjectionTest, WritesTheSameBytesAgain)
{
    CreateSurface();
    m_Folder.Write("Data/man.data", "3\nleft -1 0 0\nright 1 0.3 0\nfront 0 0 0.7\n");
    m_Folder.Write("data1/keep", "");
    Sample();
    std::filesystem::rename(m_Folder / "data1", m_Folder / "first");
    m_Folder.Write("data1/keep", "");
    m_View.Resize(0, 0, 100, 30); // neither the window's size nor what was drawn there counts
    m_View.Redraw();
    Sample();
    const std::set<std::string> names = m_Folder.List("data1");
    EXPECT_EQ(names.size(), 92U); // with the list of the views and what was there
    for (const std::string& name : names)
    {
        EXPECT_TRUE(m_Folder.Read("first/" + name) == m_Folder.Read("data1/" + name)) << name;
    }
}

TEST_F(ProjectionTest, ReportsTheMissingPointsFromTheCommand)
{
    const AssertionCapture assertions;
    const std::string refusal = RefuseToSample();
    EXPECT_THAT(refusal, HasSubstr("cannot open Data/man.data: "));
    EXPECT_THAT(refusal, HasSubstr("working folder: " + m_Folder.GetPath().string()));
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(assertions.GetPaths(),
                ElementsAre("source/Interaction/Command/Function Command/IAProjectionCommand.cpp"));
#endif
}

TEST_F(ProjectionTest, MakesNoFolder)
{
    CreateSurface();
    m_Folder.Write("Data/man.data", "2\na 0 0 0\nb 1 1 1\n");
    EXPECT_THAT(RefuseToSample(), HasSubstr("data1/param.data"));
    EXPECT_FALSE(m_Folder.Has("data1"));
}

TEST_F(ProjectionTest, RefusesPointsWithoutExtent)
{
    m_Folder.Write("Data/man.data", "1\na 1 2 3\n");
    EXPECT_THAT(RefuseToSample(), HasSubstr("all points of Data/man.data are at one place"));
    m_Folder.Write("Data/man.data", "0\n");
    EXPECT_THAT(RefuseToSample(), HasSubstr("Data/man.data holds no points"));
}

TEST_F(ProjectionTest, LeavesNoListOfViewsWithoutItsImages)
{
    m_Folder.Write("Data/man.data", "2\na 0 0 0\nb 1 1 1\n");
    m_Folder.Write("data1/keep", "");
    EXPECT_THAT(RefuseToSample(), HasSubstr("nothing can be drawn here")); // the view has no surface
    EXPECT_FALSE(m_Folder.Has("data1/param.data"));
}

TEST_F(ProjectionTest, TellsThatNoImageIsThereWhereNothingCanBeDrawn)
{
    m_Folder.Write("Data/man.data", "2\na 0 0 0\nb 1 1 1\n");
    std::filesystem::create_directory(m_Folder / "data1");
    EXPECT_THAT(RefuseToSample(), EndsWith("; no image is new, and the list of views was not written"));
}

TEST_F(ProjectionTest, TellsWhichImagesAreThereWhereOneCannotBeWritten)
{
    CreateSurface();
    m_Folder.Write("Data/man.data", "2\na 0 0 0\nb 1 1 1\n");
    m_Folder.Write("data1/4.bmp/occupied", ""); // a folder of this name
    const std::string refusal = RefuseToSample();
    EXPECT_THAT(refusal, HasSubstr("data1/4.bmp"));
    EXPECT_THAT(refusal, EndsWith("; new are the images 1 to 3, and the list of views was not written"));
    EXPECT_TRUE(m_Folder.Has("data1/3.bmp"));
    EXPECT_FALSE(m_Folder.Has("data1/param.data"));
    m_Folder.Write("data1/1.bmp", "");
    std::filesystem::remove(m_Folder / "data1/1.bmp");
    m_Folder.Write("data1/1.bmp/occupied", "");
    EXPECT_THAT(RefuseToSample(), EndsWith("; no image is new, and the list of views was not written"));
}

TEST_F(ProjectionTest, TellsThatAllImagesAreThereWhereTheListOfViewsCannotBeWritten)
{
    CreateSurface();
    m_Folder.Write("Data/man.data", "2\na 0 0 0\nb 1 1 1\n");
    std::filesystem::create_directory(m_Folder / "data1");
    Sample(); // the first run makes other calls: its files are not there yet
    {
        const InjectedFault none(GetFileCallPlan(), FaultPlan::kNone, FaultMode::Once);
        Sample();
    }
    const long last = GetFileCallPlan().CountPassed() - 1; // the list takes its name
    const InjectedFault fault(GetFileCallPlan(), last, FaultMode::Once);
    const std::string refusal = RefuseToSample();
    EXPECT_THAT(refusal, StartsWith("cannot write data1/param.data"));
    EXPECT_THAT(refusal, EndsWith("; new are the images 1 to 90, and the list of views was not written"));
}

TEST(IAProjectionCommand, AssertsItsView)
{
    const AssertionCapture assertions;
    EXPECT_THROW(IAProjectionCommand().Execute(), AssertionFailure);
}
}
}
