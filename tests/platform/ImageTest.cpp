#include "ImageBytes.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::StartsWith;
using ::testing::ThrowsMessage;

Image Sample(int components)
{
    Image image{3, 2, components, {}};
    for (int i = 0; i < 6 * components; ++i)
    {
        image.pixels.push_back(static_cast<std::uint8_t>(41 * i));
    }
    return image;
}

std::string FaultOfWriting(const Image& image, const std::filesystem::path& path)
{
    try
    {
        WriteImage(image, path);
    }
    catch (const FileError& error)
    {
        return error.what();
    }
    return "no fault";
}
}

TEST(Images, AreReadByTheEndingOfTheirNameInAnyCase)
{
    const TemporaryFolder folder;
    WriteImage(Sample(3), folder / "out.BMP");
    WriteImage(Sample(3), folder / "out.PnG");
    EXPECT_EQ(ReadImage(folder / "out.BMP").pixels, Sample(3).pixels);
    EXPECT_EQ(ReadImage(folder / "out.PnG").pixels, Sample(3).pixels);
    EXPECT_THAT(ReadFile(folder / "out.BMP"), StartsWith("BM"));
    EXPECT_THAT(ReadFile(folder / "out.PnG"), StartsWith("\x89PNG"));
}

TEST(Images, OfAnUnknownEndingAreRefused)
{
    const TemporaryFolder folder;
    EXPECT_THAT(
        [&] { ReadImage(folder.Write("a.xyz", "x")); },
        ThrowsMessage<FileError>(EndsWith("a.xyz: its name must end in bmp, png, jpg, gif, tga or tiff")));
    EXPECT_THAT(FaultOfWriting(Sample(3), folder / "a.gif"),
                EndsWith("a.gif: its name must end in bmp, png or jpg"));
}

TEST(Images, ThatAreMissingOrNoFilesAreRefused)
{
    const TemporaryFolder folder;
    EXPECT_THAT([&] { ReadImage(folder / "a.png"); },
                ThrowsMessage<FileError>(EndsWith("a.png: no such file")));
    std::filesystem::create_directory(folder / "b.png");
    EXPECT_THAT([&] { ReadImage(folder / "b.png"); },
                ThrowsMessage<FileError>(EndsWith("b.png: it is a folder")));
}

TEST(Images, ThatAreBrokenAreNamedInTheFault)
{
    const TemporaryFolder folder;
    const auto path = folder.Write("a.bmp", "BM");
    EXPECT_THAT(
        [&] { ReadImage(path); },
        ThrowsMessage<FileError>("cannot read " + path.string() + ": the file ends before its picture does"));
}

TEST(Images, ShareTheBytesOfABudget)
{
    const TemporaryFolder folder;
    ImageBudget budget(2 * 18 + 17); // a picture of 3 x 2 pixels has 18
    for (const char* name : {"a.bmp", "b.png", "c.jpg"})
    {
        WriteImage(Sample(3), folder / name);
    }
    EXPECT_EQ(ReadImage(folder / "a.bmp", budget).width, 3);
    EXPECT_EQ(ReadImage(folder / "b.png", budget).width, 3);
    EXPECT_FALSE(budget.IsSpent());
    EXPECT_THAT([&] { ReadImage(folder / "c.jpg", budget); },
                ThrowsMessage<FileError>(EndsWith("it and the pictures before it take more than 0 MiB")));
    EXPECT_TRUE(budget.IsSpent());
    EXPECT_THAT([&] { ReadImage(folder / "none.png", budget); }, // is not even looked for
                ThrowsMessage<FileError>(EndsWith("take more than 0 MiB")));
}

TEST(Images, WithLargeFilesAreNotRead)
{
    const TemporaryFolder folder;
    const auto path = folder.Write("hole.bmp", "BM");
    std::error_code error;
    std::filesystem::resize_file(path, (std::uintmax_t{1} << 30U) + 1, error);
    if (error)
    {
        GTEST_SKIP() << "this disk has no files with holes";
    }
    EXPECT_THAT(
        [&] { ReadImage(path); },
        ThrowsMessage<FileError>("cannot read " + path.string() +
                                 ": its file and those of the pictures before it have more than 1024 MiB"));
}

TEST(Images, ShareTheBytesOfTheirFiles)
{
    const TemporaryFolder folder;
    const auto broken = folder.Write("broken.bmp", std::string(100, 'x'));
    ImageBudget budget;
    budget.GetFiles().left = 250;
    for (int i = 0; i < 2; ++i) // what is refused counts as well
    {
        EXPECT_THROW(ReadImage(broken, budget), FileError);
    }
    EXPECT_EQ(budget.GetFiles().left, 50U);
    EXPECT_THAT([&] { ReadImage(broken, budget); },
                ThrowsMessage<FileError>(testing::HasSubstr("more than 1024 MiB")));
}

TEST(Images, OfEveryFormatCountOnce)
{
    const TemporaryFolder folder;
    const std::string tga = Bytes({0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1, 0, 24, 0, 1, 2, 3});
    const std::string gif = "GIF89a" + Bytes({1, 0, 1, 0, 0x80, 0, 0, 9, 8, 7, 6,    5, 4, 0x2C, 0,
                                              0, 0, 0, 1, 0,    1, 0, 0, 2, 2, 0x44, 1, 0, 0x3B});
    // Width, height, bits, compression, kind, place of the pixels, samples, rows and bytes of the strip.
    const auto entry = [](int tag, unsigned value)
    { return Little16(static_cast<unsigned>(tag)) + Little16(4) + Little32(1) + Little32(value); };
    const std::string tiff = "II*" + std::string(1, '\0') + Little32(8) + Little16(9) + entry(256, 1) +
                             entry(257, 1) + entry(258, 8) + entry(259, 1) + entry(262, 1) + entry(273, 4) +
                             entry(277, 1) + entry(278, 1) + entry(279, 1) + Little32(0);
    WriteImage({1, 1, 3, {1, 2, 3}}, folder / "a.bmp");
    WriteImage({1, 1, 1, {1}}, folder / "grey.bmp");
    WriteImage({1, 1, 3, {1, 2, 3}}, folder / "a.png");
    WriteImage({1, 1, 3, {1, 2, 3}}, folder / "a.jpg");
    folder.Write("a.tga", tga);
    folder.Write("a.gif", gif);
    folder.Write("a.tiff", tiff);
    for (const auto& [name, bytes] : std::vector<std::pair<const char*, std::size_t>>{{"a.bmp", 3},
                                                                                      {"grey.bmp", 1},
                                                                                      {"a.png", 3},
                                                                                      {"a.jpg", 3},
                                                                                      {"a.tga", 3},
                                                                                      {"a.gif", 3},
                                                                                      {"a.tiff", 1}})
    {
        ImageBudget enough(bytes);
        EXPECT_EQ(ReadImage(folder / name, enough).width, 1) << name;
        EXPECT_TRUE(enough.IsSpent()) << name;
        ImageBudget tooSmall(bytes - 1);
        EXPECT_THROW(ReadImage(folder / name, tooSmall), FileError) << name;
    }
}

TEST(Images, ComeBackFromABmpByteForByte)
{
    const TemporaryFolder folder;
    for (const int components : {1, 3, 4})
    {
        WriteImage(Sample(components), folder / "out.bmp");
        ExpectImage(ReadImage(folder / "out.bmp"), 3, 2, components, Sample(components).pixels);
    }
}

TEST(Images, AreWrittenAsABmpThatEveryViewerKnows)
{
    const TemporaryFolder folder;
    WriteImage({1, 2, 3, {1, 2, 3, 4, 5, 6}}, folder / "out.bmp");
    const std::string expected = "BM" + Little32(62) + Little32(0) + Little32(54) + Little32(40) +
                                 Little32(1) + Little32(2) + Little16(1) + Little16(24) + Little32(0) +
                                 Little32(8) + std::string(16, '\0') + Bytes({3, 2, 1, 0, 6, 5, 4, 0});
    EXPECT_EQ(ReadFile(folder / "out.bmp"), expected);
}

TEST(Images, OfGreyAreWrittenAsABmpOfEightBits)
{
    const TemporaryFolder folder;
    WriteImage({1, 1, 1, {7}}, folder / "out.bmp");
    const std::string file = ReadFile(folder / "out.bmp");
    EXPECT_EQ(file.size(), 54U + 1024U + 4U);
    EXPECT_EQ(file.substr(28, 2), Little16(8));
    EXPECT_EQ(file.substr(54 + 4 * 200, 4), Bytes({200, 200, 200, 0}));
    EXPECT_EQ(file.substr(54 + 1024), Bytes({7, 0, 0, 0}));
}

TEST(Images, ThatAreNoneAreNotWritten)
{
    const TemporaryFolder folder;
    EXPECT_NE(FaultOfWriting({0, 2, 3, {}}, folder / "out.bmp"), "no fault");
    EXPECT_NE(FaultOfWriting({2, -1, 3, {}}, folder / "out.bmp"), "no fault");
    EXPECT_NE(FaultOfWriting(Sample(2), folder / "out.png"), "no fault");
    EXPECT_NE(FaultOfWriting({2, 2, 3, {1, 2, 3}}, folder / "out.png"), "no fault");
    EXPECT_NE(FaultOfWriting({2, 2, -3, {1, 2, 3}}, folder / "out.png"), "no fault");
    EXPECT_NE(FaultOfWriting({20000, 1, 1, std::vector<std::uint8_t>(20000)}, folder / "out.png"),
              "no fault");
    EXPECT_TRUE(folder.List().empty());
}

TEST(Images, ReplaceAnOlderFileWhole)
{
    const TemporaryFolder folder;
    folder.Write("out.png", std::string(100000, 'x'));
    WriteImage(Sample(3), folder / "out.png");
    EXPECT_EQ(ReadImage(folder / "out.png").pixels, Sample(3).pixels);
    EXPECT_THAT(folder.List(), ElementsAre("out.png"));
}
}
