#include "IODatasetCameras.h"
#include "IODatasetText.h"
#include "Refusal.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::HasSubstr;

constexpr char kTwoViews[] = "2\n800 600\n"
                             "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1\n"
                             "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 5\n";

IODatasetCameras ReadText(const std::string& content)
{
    IODatasetText text("param.dat", content);
    return ReadCameras(text);
}

std::string RefuseText(const std::string& content)
{
    return GetRefusal([&content] { ReadText(content); });
}

TEST(IODatasetCameras, ReadsTheViewsRowByRow)
{
    const IODatasetCameras cameras = ReadText(kTwoViews);
    EXPECT_EQ(cameras.GetImageCount(), 2);
    EXPECT_EQ(cameras.m_nImageWidth, 800);
    EXPECT_EQ(cameras.m_nImageHeight, 600);
    EXPECT_EQ(cameras.m_Views[1].At(0, 1), 2.0);
    EXPECT_EQ(cameras.m_Views[1].At(1, 0), 5.0);
    EXPECT_EQ(cameras.m_Views[1].At(3, 2), 15.0);
}

TEST(IODatasetCameras, KeepsTheLastEntryAtOneWhateverTheFileSays)
{
    EXPECT_EQ(ReadText(kTwoViews).m_Views[1].At(3, 3), 1.0); // the file says 5
}

TEST(IODatasetCameras, WidensSinglePrecision)
{
    const IODatasetCameras cameras = ReadText("1 8 8 0.1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1");
    EXPECT_EQ(cameras.m_Views[0].At(0, 0), double{0.1F});
}

TEST(IODatasetCameras, RefusesACountThatTheFileDoesNotKeep)
{
    EXPECT_EQ(RefuseText("3\n800 600\n" + std::string(kTwoViews).substr(10)),
              "param.dat, line 5: the file ends after 2 of 3 views");
    EXPECT_EQ(RefuseText("2000000000\n8 8\n"),
              "param.dat, line 3: the file ends after 0 of 2000000000 views");
    EXPECT_EQ(RefuseText("1\n8 8\n1 0 0 0 0 1 0 0\n"),
              "param.dat, line 4: the file ends before an entry of a view's matrix");
}

TEST(IODatasetCameras, RefusesToHaveNoView)
{
    EXPECT_THAT(RefuseText("0\n8 8\n"), HasSubstr("line 1: the number of views is 0"));
    EXPECT_THAT(RefuseText("-4\n8 8\n"), HasSubstr("line 1: the number of views is -4"));
    EXPECT_THAT(RefuseText(""), HasSubstr("line 1: the file ends before the number of views"));
}

TEST(IODatasetCameras, RefusesImagesWithoutAreaAndTooLargeOnes)
{
    EXPECT_THAT(RefuseText("1\n0 600\n"), HasSubstr("line 2: the width of the images is 0"));
    EXPECT_THAT(RefuseText("1\n800 -600\n"), HasSubstr("line 2: the height of the images is -600"));
    EXPECT_THAT(RefuseText("1\n800 20000\n"), HasSubstr("line 2: the height of the images is 20000"));
}

TEST(IODatasetCameras, RefusesEntriesThatAreNotFinite)
{
    EXPECT_EQ(RefuseText("1\n8 8\n1 0 0 0 0 1 0 nan\n"),
              "param.dat, line 3: an entry of a view's matrix is not finite");
}

TEST(IODatasetCameras, RefusesTheCountThatRunsIntoTheSizeOfASamplingRun)
{
    EXPECT_THAT(RefuseText("90800 600\n0.642788 0 0 0\n"),
                HasSubstr("line 2: the height of the images is 0"));
}

TEST(IODatasetCameras, InvertsAView)
{
    const IODatasetCameras cameras = ReadText("1 8 8 2 0 0 0 0 4 0 0 0 0 8 0 0 0 0 1");
    const smVec3d point = smVec3d(2.0, 4.0, 8.0) * cameras.GetInverse(0);
    EXPECT_EQ(point.x, 1.0);
    EXPECT_EQ(point.y, 1.0);
    EXPECT_EQ(point.z, 1.0);
}

TEST(IODatasetCameras, NamesTheLineOfAViewThatHasNoInverse)
{
    const IODatasetCameras cameras = ReadText("2\n8 8\n1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1\n\n"
                                              "1 0 0 0 0 1 0 0 0 0 0 0 0 0 0 1\n");
    EXPECT_NO_THROW(cameras.GetInverse(0));
    EXPECT_THAT(GetRefusal([&cameras] { cameras.GetInverse(1); }),
                testing::StartsWith("param.dat, line 5: the camera of image 2 has no inverse"));
}

TEST(IODatasetCameras, KnowWhereTheSizeOfTheImagesStands)
{
    EXPECT_EQ(ReadText(kTwoViews).GetSizeSource(), "param.dat, line 2");
}

TEST(IOViewFile, WritesACountOfOneDigitAsALineOfItsOwn)
{
    const TemporaryCurrentFolder folder;
    folder.Write("data1/keep", "");
    IOViewFile file("data1\\param.data", 800, 600);
    file.AddView(smMatrix44d(1, 0, -0.5, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1));
    file.Commit(9);
    EXPECT_EQ(folder.Read("data1/param.data"),
              "9\n800 600\n"
              "1.000000 0.000000 -0.500000 0.000000 0.000000 1.000000 0.000000 0.000000 "
              "0.000000 0.000000 1.000000 0.000000 0.000000 0.000000 0.000000 1.000000 \n");
}

TEST(IOViewFile, LetsACountOfTwoDigitsRunIntoTheNextLine)
{
    const TemporaryCurrentFolder folder;
    IOViewFile file("param.data", 800, 600);
    file.Commit(90);
    EXPECT_EQ(folder.Read("param.data"), "90800 600\n");
}

TEST(IOViewFile, MakesNoFolder)
{
    const TemporaryCurrentFolder folder;
    const std::string refusal = GetRefusal([] { IOViewFile("data1\\param.data", 800, 600); });
    EXPECT_THAT(refusal, HasSubstr("data1/param.data"));
    EXPECT_THAT(refusal, HasSubstr("working folder: " + folder.GetPath().string()));
    EXPECT_TRUE(folder.List().empty());
}

TEST(IOViewFile, LeavesNothingWithoutItsEnd)
{
    const TemporaryCurrentFolder folder;
    {
        IOViewFile file("param.data", 800, 600);
        file.AddView(smMatrix44d(true));
    }
    EXPECT_TRUE(folder.List().empty());
}
}
}
