#include "IODatasetImages.h"
#include "Refusal.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr char kFolder[] = "data\\bunny\\";

TEST(DatasetImages, AreNumberedFromTheFolderOn)
{
    EXPECT_EQ(GetDatasetImageName(kFolder, 1), "data\\bunny\\1.bmp");
    EXPECT_EQ(GetDatasetImageName(kFolder, 90), "data\\bunny\\90.bmp");
}

TEST(DatasetImages, ComeBackByteForByte)
{
    const TemporaryCurrentFolder folder;
    folder.Write("data/bunny/param.dat", "");
    const Image image{3, 2, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18}};
    WriteDatasetImage(image, kFolder, 7);
    EXPECT_TRUE(folder.Has("data/bunny/7.bmp"));
    EXPECT_EQ(ReadDatasetImage(kFolder, 7, 3, 2).pixels, image.pixels);
}

TEST(DatasetImages, HaveThreeComponentsWhateverTheFileHas)
{
    EXPECT_THAT(WithThreeComponents({2, 1, 1, {7, 9}}).pixels, ElementsAre(7, 7, 7, 9, 9, 9));
    EXPECT_THAT(WithThreeComponents({1, 1, 2, {7, 100}}).pixels, ElementsAre(7, 7, 7));
    EXPECT_THAT(WithThreeComponents({1, 1, 4, {1, 2, 3, 100}}).pixels, ElementsAre(1, 2, 3));
    EXPECT_THAT(WithThreeComponents({1, 1, 3, {1, 2, 3}}).pixels, ElementsAre(1, 2, 3));
}

TEST(DatasetImages, MustHaveTheSizeThatTheCameraFileSays)
{
    const TemporaryCurrentFolder folder;
    folder.Write("data/bunny/param.dat", "");
    WriteDatasetImage({1, 2, 3, std::vector<std::uint8_t>(6)}, kFolder, 1);
    EXPECT_EQ(GetRefusal([] { ReadDatasetImage(kFolder, 1, 2, 1); }),
              "data/bunny/1.bmp is 1 x 2 pixels, and its camera file says 2 x 1");
}

TEST(DatasetImages, TellWhichOneIsMissing)
{
    const TemporaryCurrentFolder folder;
    EXPECT_THAT(GetRefusal([] { ReadDatasetImage(kFolder, 2, 1, 1); }), HasSubstr("data/bunny/2.bmp"));
}
}
}
