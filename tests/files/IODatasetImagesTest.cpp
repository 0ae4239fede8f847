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
    EXPECT_EQ(GetRefusal([] { ReadDatasetImage(kFolder, 1, 2, 1, "param.dat, line 2"); }),
              "data/bunny/1.bmp is 1 x 2 pixels, and param.dat, line 2 says 2 x 1");
}

/// The head of a grey picture of 16384 pixels a side, which takes 256 MiB as it is.
std::string MakeVastBitmap()
{
    const std::string zeros(24, '\0');
    const std::string side("\0\x40\0\0", 4);
    std::string head = "BM" + zeros.substr(0, 8) + std::string("\x36\4\0\0\x28\0\0\0", 8) + side + side +
                       std::string("\1\0\10\0", 4) + zeros;
    for (int grey = 0; grey < 256; ++grey)
    {
        head += std::string(3, static_cast<char>(grey)) + '\0';
    }
    return head;
}

TEST(DatasetImages, AreRefusedBeforeThreeComponentsTakeMoreThanPicturesMay)
{
    const TemporaryCurrentFolder folder;
    folder.Write("data/bunny/1.bmp", MakeVastBitmap());
    const std::string refusal =
        "cannot read data/bunny/1.bmp: its 16384 x 16384 pixels take more than 512 MiB";
    EXPECT_EQ(GetRefusal([] { ReadDatasetImage(kFolder, 1, 16384, 16384); }), refusal);
    EXPECT_EQ(GetRefusal([] { ReadColourImage("data/bunny/1.bmp"); }), refusal);
    // As a picture of its own kind it is not too large, and only ends early.
    EXPECT_THAT(GetRefusal([] { ReadImage("data/bunny/1.bmp"); }), HasSubstr("the file ends before"));
}

TEST(DatasetImages, TellWhichOneIsMissing)
{
    const TemporaryCurrentFolder folder;
    EXPECT_THAT(GetRefusal([] { ReadDatasetImage(kFolder, 2, 1, 1); }), HasSubstr("data/bunny/2.bmp"));
}
}
}
