#include "DSTexture.h"
#include "Capture.h"
#include "Image.h"
#include "LiteralResample.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <utility>

namespace tessarine
{
namespace
{
using Mode = DSTexture::ResampleMode;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::StartsWith;

std::pair<int, int> SizeOf(int width, int height)
{
    std::pair<int, int> size;
    DSTexture::ChooseTextureSize(width, height, size.first, size.second);
    return size;
}

std::vector<std::uint8_t> Noise(int width, int height, int components, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                                     static_cast<std::size_t>(components));
    for (auto& pixel : pixels)
    {
        pixel = static_cast<std::uint8_t>(random());
    }
    return pixels;
}

/// A texture of one line above another, twelve or fewer columns each, for numbers worked by hand.
DSTexture Texture(int width, int height, std::vector<std::uint8_t> grey)
{
    DSTexture texture;
    texture.SetImage(width, height, 1, std::move(grey));
    return texture;
}

/// Reads a pixmap from memory and keeps what it says.
struct PpmReading
{
    explicit PpmReading(const std::string& bytes)
    {
        ::testing::internal::CaptureStderr();
        texture.DecodePPM("a.ppm", bytes);
        said = ::testing::internal::GetCapturedStderr();
    }
    DSTexture texture;
    std::string said;
};

/// Reads a picture by its name and keeps what it says.
struct Loading
{
    explicit Loading(const std::string& name)
    {
        ConsoleCapture console;
        ::testing::internal::CaptureStderr();
        texture.LoadImage(name);
        said = ::testing::internal::GetCapturedStderr();
        lines = console.GetLines();
    }
    DSTexture texture;
    std::string said;
    std::vector<std::string> lines;
};

void ExpectPpmRefused(const std::string& bytes, const std::string& said)
{
    const PpmReading reading(bytes);
    EXPECT_EQ(reading.said, said) << bytes;
    EXPECT_FALSE(reading.texture.HasImage()) << bytes;
    EXPECT_EQ(reading.texture.GetWidth(), 0);
    EXPECT_EQ(reading.texture.GetHeight(), 0);
    EXPECT_EQ(reading.texture.GetFileName(), "a.ppm");
}

void ExpectPpmPixel(const std::string& header)
{
    const PpmReading reading(header + "abc");
    EXPECT_EQ(reading.said, "") << header;
    EXPECT_EQ(reading.texture.GetWidth(), 1);
    EXPECT_EQ(reading.texture.GetHeight(), 1);
    EXPECT_THAT(reading.texture.GetData(), ElementsAre('a', 'b', 'c'));
}
}

// ---- the size ----

TEST(ChooseTextureSize, HoldsTheWidthAndLeavesTheHeightsOwnPower)
{
    EXPECT_EQ(SizeOf(1024, 100), std::pair(512, 64)); // (100/64) / (128/100) = 1.2
}

TEST(ChooseTextureSize, GoesDownWhereASideIsNearerToTheLowerPower)
{
    EXPECT_EQ(SizeOf(300, 300), std::pair(256, 256)); // 1.17 / 1.7 = 0.69
}

TEST(ChooseTextureSize, GoesUpWhereASideIsMuchNearerToTheUpperPower)
{
    EXPECT_EQ(SizeOf(500, 500), std::pair(512, 512)); // 1.95 / 1.02 = 1.9
}

TEST(ChooseTextureSize, LeavesAPowerOfTwo)
{
    EXPECT_EQ(SizeOf(256, 256), std::pair(256, 256));
}

TEST(ChooseTextureSize, TurnsAtTheRootOfThreePointSix)
{
    // s*s / (2*p*p) > 1.8 where s > 1.8974 p
    EXPECT_EQ(SizeOf(485, 486), std::pair(256, 512));
    EXPECT_EQ(SizeOf(242, 243), std::pair(128, 256));
    EXPECT_EQ(SizeOf(30, 31), std::pair(16, 32));
}

TEST(ChooseTextureSize, HoldsOnlyTheLargerSide)
{
    EXPECT_EQ(SizeOf(1024, 2048), std::pair(1024, 512)); // the width is not looked at any more
    EXPECT_EQ(SizeOf(2048, 1024), std::pair(512, 1024));
}

TEST(ChooseTextureSize, HoldsTheWidthOfASquare)
{
    EXPECT_EQ(SizeOf(1024, 1024), std::pair(512, 1024));
}

TEST(ChooseTextureSize, RaisesTheSmallerSideOnlyWhereItHoldsTheLarger)
{
    EXPECT_EQ(SizeOf(4, 1024), std::pair(16, 512));
    EXPECT_EQ(SizeOf(1024, 4), std::pair(512, 16));
    EXPECT_EQ(SizeOf(4, 512), std::pair(4, 512));
    EXPECT_EQ(SizeOf(1, 1), std::pair(1, 1));
}

TEST(ChooseTextureSize, GivesPowersOfTwoNearTheSidesForEverySide)
{
    for (int side = 1; side <= 512; ++side)
    {
        const int chosen = SizeOf(side, side).first;
        EXPECT_EQ(chosen & (chosen - 1), 0) << side;
        EXPECT_LE(chosen, side * 2 / 1.89) << side; // never more than the upper power that it is close to
        EXPECT_GT(chosen * 2, side) << side;        // never below the lower power
    }
}

// ---- resampling ----

TEST(Resample, LeavesAnImageWhoseSizeStays)
{
    DSTexture texture = Texture(4, 1, {1, 2, 3, 4});
    EXPECT_FALSE(texture.Resample(Mode::Nearest));
    EXPECT_THAT(texture.GetData(), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(texture.GetNewData(), IsEmpty());
}

TEST(Resample, LeavesARecordWithoutAnImage)
{
    DSTexture texture;
    EXPECT_FALSE(texture.Resample(Mode::Nearest));
}

TEST(Resample, TakesTheNearestColumnAndTheUpperOneInTheMiddle)
{
    // 6 columns become 4: 0, 1.5, 3, 4.5
    DSTexture texture = Texture(6, 1, {10, 20, 30, 40, 50, 60});
    EXPECT_TRUE(texture.Resample(Mode::Nearest));
    EXPECT_EQ(texture.GetNewWidth(), 4);
    EXPECT_EQ(texture.GetNewHeight(), 1);
    EXPECT_THAT(texture.GetNewData(), ElementsAre(10, 30, 40, 60));
    EXPECT_THAT(texture.GetData(), ElementsAre(10, 20, 30, 40, 50, 60)); // nothing is replaced here
}

TEST(Resample, TakesTheNearestLine)
{
    // 5 lines become 4: 0, 1.25, 2.5, 3.75
    DSTexture texture = Texture(1, 5, {10, 20, 30, 40, 50});
    EXPECT_TRUE(texture.Resample(Mode::Nearest));
    EXPECT_THAT(texture.GetNewData(), ElementsAre(10, 20, 40, 50));
}

TEST(Resample, BlendsAndTruncates)
{
    // 1.5 between 20 and 35 is 27.5, 4.5 between 50 and 61 is 55.5
    DSTexture texture = Texture(6, 1, {10, 20, 35, 40, 50, 61});
    EXPECT_TRUE(texture.Resample(Mode::Bilinear));
    EXPECT_THAT(texture.GetNewData(), ElementsAre(10, 27, 40, 55));
}

TEST(Resample, TruncatesAlongYBeforeItBlendsAlongX)
{
    // At (1.5, 1.5) the half of 1 and 2 is 1, that of 2 and 3 is 2, and the half of these is 1. Without the
    // first truncation it would be 2.
    DSTexture texture = Texture(3, 3, {0, 0, 0, 0, 1, 2, 0, 2, 3});
    EXPECT_TRUE(texture.Resample(Mode::Bilinear));
    EXPECT_EQ(texture.GetNewData()[3], 1);
}

TEST(Resample, StepsByWholePixelsInTheCubicMode)
{
    // 6 / 4 is 1, so the first four columns are smoothed with 1/6, 4/6, 1/6; the lines above and below are
    // the line itself. (10 + 4*10 + 20) / 6 = 11.7, (10 + 80 + 30) / 6 = 20, 30, 40 - a hair less when
    // summed.
    DSTexture texture = Texture(6, 1, {10, 20, 30, 40, 50, 60});
    EXPECT_TRUE(texture.Resample(Mode::Cubic));
    const auto& pixels = texture.GetNewData();
    ASSERT_EQ(pixels.size(), 4U);
    EXPECT_EQ(pixels[0], 11);
    EXPECT_NEAR(pixels[1], 20, 1);
    EXPECT_NEAR(pixels[2], 30, 1);
    EXPECT_NEAR(pixels[3], 40, 1);
}

TEST(Resample, ReadsTheStartOfTheNextLinePastTheEndOfOne)
{
    // A single column becomes 16: those from 8 on round to column 1, the pixel of the line above.
    std::vector<std::uint8_t> column(1024);
    column[0] = 7;
    column[1] = 9;
    DSTexture texture = Texture(1, 1024, column);
    EXPECT_TRUE(texture.Resample(Mode::Nearest));
    EXPECT_EQ(texture.GetNewWidth(), 16);
    EXPECT_EQ(texture.GetNewData()[7], 7);
    EXPECT_EQ(texture.GetNewData()[8], 9);
}

TEST(Resample, NeverReadsPastTheLastPixel)
{
    std::vector<std::uint8_t> row(1024);
    row.back() = 5;
    DSTexture wide = Texture(1024, 1, row); // one line becomes 16, the upper ones from line 1
    EXPECT_TRUE(wide.Resample(Mode::Nearest));
    EXPECT_EQ(wide.GetNewData().size(), 512U * 16U);
    EXPECT_EQ(wide.GetNewData().back(), 0); // column 1022
    DSTexture high = Texture(1, 1024, row);
    EXPECT_TRUE(high.Resample(Mode::Bilinear));
    EXPECT_EQ(high.GetNewData().size(), 512U * 16U);
}

TEST(Resample, GivesBitForBitWhatTheLiteralFormGives)
{
    const std::pair<int, int> sizes[] = {{3, 3},   {5, 7},  {6, 6},  {31, 30},  {61, 9},
                                         {33, 62}, {90, 1}, {1, 77}, {700, 12}, {12, 1025}};
    unsigned seed = 0;
    for (const auto& [width, height] : sizes)
    {
        for (const int components : {1, 2, 3, 4})
        {
            for (const Mode mode : {Mode::Nearest, Mode::Bilinear, Mode::Cubic})
            {
                const auto pixels = Noise(width, height, components, ++seed);
                DSTexture texture;
                texture.SetImage(width, height, components, pixels);
                ASSERT_TRUE(texture.Resample(mode));
                EXPECT_EQ(texture.GetNewData(),
                          ResampleLiterally(pixels, width, height, components, texture.GetNewWidth(),
                                            texture.GetNewHeight(), mode))
                    << width << " x " << height << " x " << components << ", mode " << static_cast<int>(mode);
            }
        }
    }
}

// ---- the portable pixmap ----

TEST(PPM, KeepsTheOrderOfItsFile)
{
    const PpmReading reading("P6\n1 2\n255\nabcdef");
    EXPECT_EQ(reading.said, "");
    EXPECT_EQ(reading.texture.GetWidth(), 1);
    EXPECT_EQ(reading.texture.GetHeight(), 2);
    EXPECT_THAT(reading.texture.GetData(), ElementsAre('a', 'b', 'c', 'd', 'e', 'f'));
    EXPECT_EQ(reading.texture.GetFileName(), "a.ppm");
}

TEST(PPM, DoesNotSetTheComponents)
{
    EXPECT_EQ(PpmReading("P6\n1 1 255\nabc").texture.GetComponents(), 0);

    DSTexture texture = Texture(1, 1, {7});
    texture.DecodePPM("a.ppm", "P6\n1 1 255\nabc");
    EXPECT_EQ(texture.GetComponents(), 1); // of the picture before
}

TEST(PPM, HasItsNumbersOnOneToThreeLines)
{
    ExpectPpmPixel("P6\n1 1 255\n");
    ExpectPpmPixel("P6\n1 1\n255\n");
    ExpectPpmPixel("P6\n1\n1 255\n");
    ExpectPpmPixel("P6\n1\n1\n255\n");
}

TEST(PPM, HasCommentsBetweenItsLines)
{
    ExpectPpmPixel("P6\n# made by hand\n1 1\n#\n# twice\n255\n");
    ExpectPpmPixel("P6\n1\n# between width and height\n1\n255\n");
}

TEST(PPM, HasEmptyLinesAndCarriageReturns)
{
    ExpectPpmPixel("P6\r\n\r\n  1\t1\r\n\n255\r\n");
}

TEST(PPM, DoesNotLookAtTheMaximum)
{
    ExpectPpmPixel("P6\n1 1\n65535\n");
    ExpectPpmPixel("P6\n1 1\n-7\n");
}

TEST(PPM, LooksForNumbersBehindTheLineOfItsMark)
{
    ExpectPpmPixel("P6 2 2 255\n1 1 255\n"); // what stands beside the mark does not count
}

TEST(PPM, DropsWhatFollowsTheNumbersOnTheirLine)
{
    ExpectPpmPixel("P6\n1 1 255 and more\n");
}

TEST(PPM, CutsALineAfterSeventyCharacters)
{
    // 68 blanks and "1", then the newline is the 70th character
    ExpectPpmPixel("P6\n" + std::string(68, ' ') + "1\n1 255\n");
    // the comment ends after 70 characters; what is left of it counts
    ExpectPpmPixel("P6\n#" + std::string(69, 'x') + "1 1 255\n");
    // nothing is lost where the cut falls between two numbers
    ExpectPpmPixel("P6\n" + std::string(69, ' ') + "11 255\n");
}

TEST(PPM, IgnoresWhatFollowsItsPixels)
{
    EXPECT_THAT(PpmReading("P6\n1 1 255\nabcdef").texture.GetData(), ElementsAre('a', 'b', 'c'));
}

TEST(PPM, OfAnotherKindIsRefused)
{
    ExpectPpmRefused("P3\n1 1 255\n1 2 3", "a.ppm: Not a raw PPM file\n");
    ExpectPpmRefused("", "a.ppm: Not a raw PPM file\n");
    ExpectPpmRefused("P", "a.ppm: Not a raw PPM file\n");
}

TEST(PPM, WithoutPixelsIsRefused)
{
    for (const char* numbers : {"0 1 255", "1 0 255", "-1 1 255", "1 -1 255", "-1 -1 255"})
    {
        ExpectPpmRefused(std::string("P6\n") + numbers + "\nabc", "a.ppm: The PPM file has no pixels\n");
    }
}

TEST(PPM, ThatClaimsTooManyPixelsIsRefused)
{
    const auto tooLarge = [](const std::string& size)
    {
        return "a.ppm: The PPM file is too large: " + size +
               " pixels; at most 16384 a side and 512 MiB are read\n";
    };
    ExpectPpmRefused("P6\n16385 1 255\nabc", tooLarge("16385 x 1"));
    ExpectPpmRefused("P6\n1 16385 255\nabc", tooLarge("1 x 16385"));
    ExpectPpmRefused("P6\n16384 16384 255\nabc", tooLarge("16384 x 16384"));
    ExpectPpmRefused("P6\n4294967297 1 255\nabc",
                     tooLarge("2147483647 x 1")); // saturates, does not wrap to 1
    ExpectPpmRefused("P6\n" + std::string(60, '9') + " 1 1\nabc", tooLarge("2147483647 x 1"));
    ExpectPpmRefused("P6\n2147483647 2147483647 255\nabc", tooLarge("2147483647 x 2147483647"));
}

TEST(PPM, WithALargeFileIsNotRead)
{
    const TemporaryCurrentFolder folder;
    folder.Write("hole.ppm", "P6\n1 1\n255\nabc");
    std::error_code error;
    std::filesystem::resize_file("hole.ppm", (std::uintmax_t{1} << 30U) + 1, error);
    if (error)
    {
        GTEST_SKIP() << "this disk has no files with holes";
    }
    const Loading loading("hole.ppm");
    EXPECT_FALSE(loading.texture.HasImage());
    EXPECT_THAT(loading.said, testing::HasSubstr("have more than 1024 MiB"));
}

TEST(PPM, CutOffAnywhereIsRefused)
{
    const std::string file = "P6\n# one\n2 1\n255\nabcdef";
    for (std::size_t length = 0; length < file.size(); ++length)
    {
        const PpmReading reading(file.substr(0, length));
        EXPECT_FALSE(reading.texture.HasImage()) << length;
        EXPECT_THAT(reading.said, StartsWith("a.ppm: ")) << length;
    }
    EXPECT_TRUE(PpmReading(file).texture.HasImage());
}

TEST(PPM, WhoseNumbersNeverComeIsRefused)
{
    ExpectPpmRefused("P6\n# nothing\nwidth 1\n1 x 2\n", "a.ppm: The PPM file ends before its size is told\n");
}

TEST(PPM, ThatIsNotThereIsToldOnStandardError)
{
    const TemporaryCurrentFolder folder;
    std::filesystem::create_directories("folder.ppm");
    folder.Write("two.PPM", "");
    folder.Write("Two.ppm", "");
    const std::string there = " (working folder: " + folder.GetPath().string() + ")";
    const std::pair<const char*, std::string> reasons[] = {
        {"none.ppm", "cannot open none.ppm: no such file" + there},
        {"folder.ppm", "cannot open folder.ppm: it is a folder" + there},
        {"two.ppm",
         "cannot tell which file two.ppm means: there are Two.ppm and two.PPM; rename one of them"}};
    for (const auto& [name, reason] : reasons)
    {
        const Loading loading(name);
        EXPECT_EQ(loading.said, "Can not open the PPM file!\n" + reason + "\n");
        EXPECT_THAT(loading.lines, IsEmpty());
        EXPECT_FALSE(loading.texture.HasImage());
        EXPECT_EQ(loading.texture.GetFileName(), name);
    }
}

// ---- loading by name ----

TEST(LoadImage, UsesAPixmapOfAnySizeAsItIs)
{
    const TemporaryCurrentFolder folder;
    folder.Write("a.ppm", "P6\n3 1 255\nabcdefghi"); // 3 would become 2
    const Loading loading("a.ppm");
    EXPECT_EQ(loading.texture.GetWidth(), 3);
    EXPECT_EQ(loading.texture.GetData().size(), 9U);
    EXPECT_THAT(loading.lines, IsEmpty());
    EXPECT_EQ(loading.said, "");
}

TEST(LoadImage, TellsTheComponentsAndTheFormat)
{
    const TemporaryCurrentFolder folder;
    WriteImage({2, 1, 3, {1, 2, 3, 4, 5, 6}}, "a.bmp");
    const Loading loading("a.bmp");
    EXPECT_THAT(loading.lines, ElementsAre("Image File's component is:3", "GL_RGB is:6407"));
    EXPECT_EQ(loading.said, "");
    EXPECT_EQ(loading.texture.GetComponents(), 3);
    EXPECT_EQ(loading.texture.GetFileName(), "a.bmp");
    EXPECT_THAT(loading.texture.GetData(), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(LoadImage, BringsThePictureToItsSizeByTheNearestPixel)
{
    const TemporaryCurrentFolder folder;
    WriteImage({6, 1, 1, {10, 20, 30, 40, 50, 60}}, "a.png");
    const Loading loading("a.png");
    EXPECT_THAT(loading.lines, ElementsAre("Image File's component is:1", "GL_RGB is:6407"));
    EXPECT_EQ(loading.texture.GetWidth(), 4);
    EXPECT_EQ(loading.texture.GetHeight(), 1);
    EXPECT_THAT(loading.texture.GetData(), ElementsAre(10, 30, 40, 60));
    EXPECT_THAT(loading.texture.GetNewData(), IsEmpty());
}

TEST(LoadImage, HasTheBottomLineFirst)
{
    const TemporaryCurrentFolder folder;
    WriteImage({1, 2, 1, {10, 20}}, "a.png");
    EXPECT_THAT(Loading("a.png").texture.GetData(), ElementsAre(10, 20));
}

TEST(LoadImage, KnowsEveryEndingInLargeAndInSmallLetters)
{
    const TemporaryCurrentFolder folder;
    for (const char* ending : {"BMP", "bmp", "PNG", "png", "JPG", "jpg"})
    {
        const std::string name = std::string("a.") + ending;
        WriteImage({1, 1, 1, {10}}, name);
        EXPECT_TRUE(Loading(name).texture.HasImage()) << name;
    }
    for (const char* ending : {"GIF", "gif", "TGA", "tga", "TIFF", "tiff"})
    {
        const std::string name = std::string("a.") + ending;
        folder.Write(name, "broken");
        const Loading loading(name);
        EXPECT_THAT(loading.said, StartsWith("cannot read " + name + ": ")) << name;
        EXPECT_EQ(loading.texture.GetFileName(), name);
    }
    for (const char* ending : {"PPM", "ppm"})
    {
        const std::string name = std::string("a.") + ending;
        folder.Write(name, "P6\n1 1 255\nabc");
        EXPECT_TRUE(Loading(name).texture.HasImage()) << name;
    }
}

TEST(LoadImage, DoesNothingForAnyOtherEnding)
{
    const TemporaryCurrentFolder folder;
    for (const char* name : {"a.Bmp", "a.pPm", "a.Png", "a.jpeg", "a.tif", "a.txt", "a.bmp\r", "mp", ""})
    {
        const Loading loading(name);
        EXPECT_EQ(loading.texture.GetFileName(), "") << name;
        EXPECT_FALSE(loading.texture.HasImage()) << name;
        EXPECT_THAT(loading.lines, IsEmpty()) << name;
        EXPECT_EQ(loading.said, "") << name;
    }
}

TEST(LoadImage, LeavesTheNameAndNoImageForAMissingPicture)
{
    const TemporaryCurrentFolder folder;
    const Loading loading("data\\none.png");
    EXPECT_EQ(loading.texture.GetFileName(), "data\\none.png");
    EXPECT_FALSE(loading.texture.HasImage());
    EXPECT_THAT(loading.lines, IsEmpty());
    EXPECT_EQ(loading.said, "cannot open data/none.png: no such file (working folder: " +
                                folder.GetPath().string() + ")\n");
}

TEST(LoadImage, LeavesTheNameAndNoImageForABrokenOrRefusedPicture)
{
    const TemporaryCurrentFolder folder;
    folder.Write("a.bmp", "BM");
    std::filesystem::create_directory("b.bmp");
    for (const char* name : {"a.bmp", "b.bmp"})
    {
        const Loading loading(name);
        EXPECT_EQ(loading.texture.GetFileName(), name);
        EXPECT_FALSE(loading.texture.HasImage());
        EXPECT_THAT(loading.lines, IsEmpty());
        EXPECT_THAT(loading.said, EndsWith("\n"));
    }
}

TEST(LoadImage, ForgetsTheImageBefore)
{
    const TemporaryCurrentFolder folder;
    DSTexture texture = Texture(2, 1, {1, 2});
    ::testing::internal::CaptureStderr();
    texture.LoadImage("none.png");
    ::testing::internal::GetCapturedStderr();
    EXPECT_FALSE(texture.HasImage());
    EXPECT_EQ(texture.GetComponents(), 0);
}

TEST(LoadImage, FindsItsFileWhateverTheCaseAndTheSlashes)
{
    const TemporaryCurrentFolder folder;
    std::filesystem::create_directory("Data");
    WriteImage({1, 1, 1, {10}}, "Data/Wall.PNG");
    const Loading loading(".\\data\\wall.png");
    EXPECT_TRUE(loading.texture.HasImage());
    EXPECT_EQ(loading.texture.GetFileName(), ".\\data\\wall.png");
}
}
