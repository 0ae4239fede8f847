#include "ImageBytes.h"
#include <gif_lib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::EndsWith;
using ::testing::HasSubstr;

int Append(GifFileType* gif, const GifByteType* bytes, int count)
{
    static_cast<std::string*>(gif->UserData)->append(bytes, bytes + count);
    return count;
}

/// A file written by the library itself, lines in the order of the file. Colours 0 to 3: black, red, green,
/// blue.
struct GifForm
{
    int width = 3;
    int height = 2;
    int left = 0;
    int top = 0;
    int screenWidth = 3;
    int screenHeight = 2;
    int background = 0;
    int transparent = NO_TRANSPARENT_COLOR;
    bool interlaced = false;
    bool ownPalette = false; ///< the frame's, with red and blue exchanged
};

std::string Gif(const GifForm& form, std::vector<std::vector<GifPixelType>> lines)
{
    const GifColorType colours[] = {{0, 0, 0}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}};
    const GifColorType exchanged[] = {{0, 0, 0}, {0, 0, 255}, {0, 255, 0}, {255, 0, 0}};
    std::string file;
    int error = 0;
    GifFileType* gif = EGifOpen(&file, Append, &error);
    ColorMapObject* map = GifMakeMapObject(4, colours);
    ColorMapObject* own = form.ownPalette ? GifMakeMapObject(4, exchanged) : nullptr;
    EGifSetGifVersion(gif, true);
    EGifPutScreenDesc(gif, form.screenWidth, form.screenHeight, 2, form.background, map);
    if (form.transparent != NO_TRANSPARENT_COLOR)
    {
        const GraphicsControlBlock control{DISPOSAL_UNSPECIFIED, false, 0, form.transparent};
        GifByteType block[4];
        const auto size = EGifGCBToExtension(&control, block);
        EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(size), block);
    }
    EGifPutImageDesc(gif, form.left, form.top, form.width, form.height, form.interlaced, own);
    for (auto& line : lines)
    {
        EGifPutLine(gif, line.data(), static_cast<int>(line.size()));
    }
    EGifCloseFile(gif, &error);
    GifFreeMapObject(map);
    GifFreeMapObject(own);
    return file;
}

std::vector<std::uint8_t> Coloured(const std::vector<int>& indices)
{
    std::vector<std::uint8_t> pixels;
    for (const int index : indices)
    {
        for (int channel = 1; channel <= 3; ++channel)
        {
            pixels.push_back(index == channel ? 255 : 0);
        }
    }
    return pixels;
}

const std::vector<std::vector<GifPixelType>> kThreeByTwo = {{1, 2, 3}, {3, 0, 1}};
}

TEST(Gif, HasItsTopRowLast)
{
    ExpectImage(DecodeImage(Gif({}, kThreeByTwo), "gif"), 3, 2, 3, Coloured({3, 0, 1, 1, 2, 3}));
}

TEST(Gif, PrefersThePaletteOfItsFrame)
{
    ExpectImage(DecodeImage(Gif({.ownPalette = true}, kThreeByTwo), "gif"), 3, 2, 3,
                Coloured({1, 0, 3, 3, 2, 1}));
}

TEST(Gif, LaysItsFrameOnTheScreen)
{
    const std::string file = Gif(
        {.width = 1, .height = 1, .left = 1, .top = 0, .screenWidth = 3, .screenHeight = 2, .background = 3},
        {{1}});
    ExpectImage(DecodeImage(file, "gif"), 3, 2, 3, Coloured({3, 3, 3, 3, 1, 3}));
}

TEST(Gif, ShowsTheBackgroundThroughTransparentPixels)
{
    ExpectImage(DecodeImage(Gif({.background = 2, .transparent = 3}, kThreeByTwo), "gif"), 3, 2, 3,
                Coloured({2, 0, 1, 1, 2, 2}));
}

TEST(Gif, CutsOffWhatLiesBesideTheScreen)
{
    const std::string file = Gif({.left = 2, .top = 1, .screenWidth = 3, .screenHeight = 2}, kThreeByTwo);
    ExpectImage(DecodeImage(file, "gif"), 3, 2, 3, Coloured({0, 0, 1, 0, 0, 0}));
}

TEST(Gif, MayBeInterlaced)
{
    // Eleven lines of one pixel come as 0 8, 4, 2 6 10, 1 3 5 7 9; each has the colour of its number
    // modulo 4.
    std::vector<std::vector<GifPixelType>> lines;
    for (const int y : {0, 8, 4, 2, 6, 10, 1, 3, 5, 7, 9})
    {
        lines.push_back({static_cast<GifPixelType>(y % 4)});
    }
    const std::string file =
        Gif({.width = 1, .height = 11, .screenWidth = 1, .screenHeight = 11, .interlaced = true}, lines);
    ExpectImage(DecodeImage(file, "gif"), 1, 11, 3, Coloured({2, 1, 0, 3, 2, 1, 0, 3, 2, 1, 0}));
}

TEST(Gif, ShowsItsFirstFrame)
{
    std::string file = Gif({}, kThreeByTwo);
    const std::string other = Gif({}, {{2, 2, 2}, {2, 2, 2}});
    const std::size_t frame = 13 + 12; // behind the screen and its four colours
    ASSERT_EQ(other[frame], ',');
    file.pop_back(); // the trailer
    file += other.substr(frame);
    ExpectImage(DecodeImage(file, "gif"), 3, 2, 3, Coloured({3, 0, 1, 1, 2, 3}));
}

TEST(Gif, CutOffAnywhereInItsFrameIsRefused)
{
    std::string file = Gif({.transparent = 2}, kThreeByTwo);
    file.pop_back(); // the trailer comes after all frames, and only the first is of use
    ExpectRefusedAtEveryLength(file, "gif");
}

TEST(Gif, SurvivesEveryChangedByteWithoutAWordOnStandardError)
{
    ::testing::internal::CaptureStderr();
    ExpectSurvivesEveryChangedByte(Gif({.transparent = 2}, kThreeByTwo), "gif");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(Gif, ThatClaimsTooManyPixelsIsRefused)
{
    EXPECT_THAT(FaultOfDecoding(Gif({.screenWidth = 16385}, kThreeByTwo), "gif"),
                HasSubstr("16385 x 2 pixels large"));
    EXPECT_THAT(FaultOfDecoding(Gif({.screenWidth = 16384, .screenHeight = 16384}, kThreeByTwo), "gif"),
                EndsWith("take more than 512 MiB"));
}

TEST(Gif, WithoutAFrameIsRefused)
{
    const std::string file = Gif({}, kThreeByTwo);
    EXPECT_THAT(FaultOfDecoding(file.substr(0, 25) + ";", "gif"), EndsWith("it has no pixels"));
}

TEST(Gif, WithoutAPaletteIsRefused)
{
    std::string file = Gif({}, kThreeByTwo);
    file[10] = static_cast<char>(file[10] & 0x7F); // no palette is announced,
    file.erase(13, 12);                            // and none is there
    EXPECT_THAT(FaultOfDecoding(file, "gif"), EndsWith("it has no palette"));
}

TEST(Gif, OfNothingIsRefused)
{
    EXPECT_THAT(FaultOfDecoding("", "gif"), EndsWith("the file is empty"));
    EXPECT_THAT(FaultOfDecoding("BM and more", "gif"), EndsWith("it is no GIF file"));
}
}
