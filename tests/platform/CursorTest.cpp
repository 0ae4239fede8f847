#include "Cursor.h"
#include "CursorShapes.h"
#include "ImageBytes.h"
#include "ResourceFolder.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using ::testing::EndsWith;
using ::testing::HasSubstr;

/// One picture of a CUR file.
struct CurForm
{
    int bits = 32;
    int width = 1;
    int height = 1;
    unsigned hotX = 0;
    unsigned hotY = 0;
    std::uint32_t coloursUsed = 0;
    std::uint32_t compression = 0;
    std::uint32_t headerSize = 40;
    int maskHeight = -1; ///< as high as the picture where it is negative
};

std::string Picture(const CurForm& form, const std::string& data)
{
    const int maskHeight = form.maskHeight < 0 ? form.height : form.maskHeight;
    return Little32(form.headerSize) + Little32(static_cast<std::uint32_t>(form.width)) +
           Little32(static_cast<std::uint32_t>(form.height + maskHeight)) + Little16(1) +
           Little16(static_cast<unsigned>(form.bits)) + Little32(form.compression) + std::string(12, '\0') +
           Little32(form.coloursUsed) + Little32(0) + data;
}

std::string DirectoryEntry(const CurForm& form, std::size_t size, std::size_t offset)
{
    return Bytes({form.width % 256, form.height % 256, 0, 0}) + Little16(form.hotX) + Little16(form.hotY) +
           Little32(static_cast<std::uint32_t>(size)) + Little32(static_cast<std::uint32_t>(offset));
}

std::string Directory(unsigned count)
{
    return Little16(0) + Little16(2) + Little16(count);
}

std::string Cur(const CurForm& form, const std::string& data)
{
    const std::string picture = Picture(form, data);
    return Directory(1) + DirectoryEntry(form, picture.size(), 22) + picture;
}

std::string FaultOf(const std::string& bytes)
{
    try
    {
        DecodeCursor(bytes);
    }
    catch (const FileError& error)
    {
        return error.what();
    }
    return "no fault";
}

void ExpectPixels(const std::string& bytes, int width, int height, const std::vector<std::uint8_t>& pixels)
{
    ExpectImage(DecodeCursor(bytes).image, width, height, 4, pixels);
}

/// Drawn once for all tests.
const std::vector<DrawnCursor>& GetOwnCursors()
{
    static const std::vector<DrawnCursor> cursors = DrawCursors();
    return cursors;
}

const std::string kOnePixel = Bytes({1, 2, 3, 4}) + Little32(0); // blue first, and the mask
}

TEST(Cursor, OfThirtyTwoBitsHasAlpha)
{
    ExpectPixels(Cur({}, kOnePixel), 1, 1, {3, 2, 1, 4});
    // Where there is alpha the mask counts for nothing.
    const std::string masked = Bytes({1, 2, 3, 4, 5, 6, 7, 0}) + Bytes({0xC0, 0, 0, 0});
    ExpectPixels(Cur({.width = 2}, masked), 2, 1, {3, 2, 1, 4, 7, 6, 5, 0});
}

TEST(Cursor, OfThirtyTwoBitsWithoutAnyAlphaTakesItsMask)
{
    const std::string data = Bytes({1, 2, 3, 0, 0, 0, 0, 0}) + Bytes({0x40, 0, 0, 0});
    ExpectPixels(Cur({.width = 2}, data), 2, 1, {3, 2, 1, 255, 0, 0, 0, 0});
}

TEST(Cursor, StartsAtTheBottomLeft)
{
    const std::string data = Bytes({1, 1, 1, 9, 2, 2, 2, 9}) + Little32(0) + Little32(0);
    ExpectPixels(Cur({.height = 2}, data), 1, 2, {1, 1, 1, 9, 2, 2, 2, 9});
}

TEST(Cursor, OfTwentyFourBitsEndsItsRowsOnFourBytes)
{
    const std::string row = Bytes({1, 2, 3, 0});
    const std::string data = row + Bytes({4, 5, 6, 0}) + Little32(0) + Bytes({0x80, 0, 0, 0});
    // The second row is masked; its colour is not black, so that it inverts, and shows over black.
    ExpectPixels(Cur({.bits = 24, .height = 2}, data), 1, 2, {3, 2, 1, 255, 6, 5, 4, 255});
}

TEST(Cursor, OfOneBitIsBlackWhiteOrClear)
{
    const std::string palette = Little32(0) + Little32(0xFFFFFF);
    const std::string colours = Bytes({0x50, 0, 0, 0}); // black, white, black, white
    const std::string mask = Bytes({0x30, 0, 0, 0});    // drawn, drawn, clear, inverting
    ExpectPixels(Cur({.bits = 1, .width = 4}, palette + colours + mask), 4, 1,
                 {0, 0, 0, 255, 255, 255, 255, 255, 0, 0, 0, 0, 255, 255, 255, 255});
}

TEST(Cursor, OfFourBitsHasTheLeftPixelInTheHighBits)
{
    const std::string palette = Bytes({1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0});
    const std::string data = Bytes({0x12, 0, 0, 0}) + Little32(0);
    ExpectPixels(Cur({.bits = 4, .width = 2, .coloursUsed = 3}, palette + data), 2, 1,
                 {6, 5, 4, 255, 9, 8, 7, 255});
}

TEST(Cursor, OfEightBitsHasAFullPaletteWhereItCountsNone)
{
    std::string palette;
    for (unsigned i = 0; i < 256; ++i)
    {
        palette += Little32(i << 16U | 0x0100U);
    }
    const std::string data = Bytes({200, 7, 0, 0}) + Bytes({0x40, 0, 0, 0});
    ExpectPixels(Cur({.bits = 8, .width = 2}, palette + data), 2, 1, {200, 1, 0, 255, 7, 1, 0, 255});
}

TEST(Cursor, WithAColourBeyondItsPaletteIsRefused)
{
    const std::string data = Little32(0) + Bytes({1, 0, 0, 0}) + Little32(0);
    EXPECT_THAT(FaultOf(Cur({.bits = 8, .coloursUsed = 1}, data)),
                EndsWith("a pixel has colour 1 of a palette of 1"));
}

TEST(Cursor, SkipsAPaletteBesidePlainColours)
{
    ExpectPixels(Cur({.coloursUsed = 2}, "palette!" + kOnePixel), 1, 1, {3, 2, 1, 4});
    EXPECT_THAT(FaultOf(Cur({.coloursUsed = 0xFFFFFFFF}, kOnePixel)),
                EndsWith("the file ends before its picture does"));
}

TEST(Cursor, TellsItsHotSpot)
{
    const std::string data(3 * 2 * 4 + 2 * 4, '\1');
    const Cursor cursor = DecodeCursor(Cur({.width = 3, .height = 2, .hotX = 2, .hotY = 1}, data));
    EXPECT_EQ(cursor.hotX, 2);
    EXPECT_EQ(cursor.hotY, 1);
    EXPECT_THAT(FaultOf(Cur({.width = 3, .height = 2, .hotX = 3, .hotY = 1}, data)),
                EndsWith("its hot spot lies outside its picture"));
    EXPECT_THAT(FaultOf(Cur({.width = 3, .height = 2, .hotX = 2, .hotY = 2}, data)),
                EndsWith("its hot spot lies outside its picture"));
}

TEST(Cursor, OfSeveralPicturesIsTheOneNearestToThirtyTwoPixels)
{
    const auto picture = [](const CurForm& form, char colour)
    {
        const auto width = static_cast<std::size_t>(form.width);
        return Picture(form, std::string(width * 4, colour) + std::string((width + 31) / 32 * 4, '\0'));
    };
    const CurForm forms[] = {{.width = 16}, {.width = 48}, {.width = 33}, {.width = 31}, {.width = 256}};
    std::string directory = Directory(5);
    std::string pictures;
    char colour = 10;
    for (const CurForm& form : forms)
    {
        const std::string bytes = picture(form, colour++);
        directory += DirectoryEntry(form, bytes.size(), 6 + 5 * 16 + pictures.size());
        pictures += bytes;
    }
    const Image image = DecodeCursor(directory + pictures).image;
    EXPECT_EQ(image.width, 33);
    EXPECT_EQ(image.pixels[0], 12); // the third: it is as near as the fourth, and stands first
}

TEST(Cursor, OfTheLargestSizeIsRead)
{
    const std::string data(256 * 256 * 4 + 256 * 32, '\7');
    EXPECT_EQ(DecodeCursor(Cur({.width = 256, .height = 256}, data)).image.height, 256);
    EXPECT_THAT(FaultOf(Cur({.width = 257, .height = 256}, data)), HasSubstr("257 x 512 pixels"));
    EXPECT_THAT(FaultOf(Cur({.width = 256, .height = 257}, data)), HasSubstr("at most 256 a side"));
}

TEST(Cursor, OfAnotherKindIsRefused)
{
    EXPECT_EQ(FaultOf("no cursor at all"), "cannot read the cursor: it is no CUR file");
    std::string icon = Cur({}, kOnePixel);
    icon[2] = 1;
    EXPECT_THAT(FaultOf(icon), EndsWith("it is no CUR file"));
    EXPECT_THAT(FaultOf(Directory(0) + std::string(16, '\0')), EndsWith("it is no CUR file"));
    EXPECT_THAT(FaultOf(Cur({.headerSize = 12}, kOnePixel)), EndsWith("its picture is of no known kind"));
    EXPECT_THAT(FaultOf(Cur({.bits = 16}, kOnePixel)),
                EndsWith("a cursor of 16 bits and compression 0 is not read"));
    EXPECT_THAT(FaultOf(Cur({.compression = 3}, kOnePixel)),
                EndsWith("a cursor of 32 bits and compression 3 is not read"));
    EXPECT_THAT(FaultOf(Directory(1) + DirectoryEntry({}, 8, 22) + "\x89PNG\r\n\x1A\n"),
                EndsWith("a cursor that is packed as PNG is not read"));
}

TEST(Cursor, WithoutPixelsOrWithAnOddMaskIsRefused)
{
    for (const CurForm& form : {CurForm{.width = 0}, CurForm{.width = -1}, CurForm{.height = 0},
                                CurForm{.height = -1}, CurForm{.height = 1, .maskHeight = 2}})
    {
        EXPECT_THAT(FaultOf(Cur(form, kOnePixel)), HasSubstr("pixels with its mask is not read"));
    }
}

TEST(Cursor, CutOffAnywhereIsRefused)
{
    const std::string whole = Cur({.bits = 1, .width = 2, .height = 2}, std::string(8 + 16, '\0'));
    EXPECT_EQ(FaultOf(whole), "no fault");
    for (std::size_t length = 0; length < whole.size(); ++length)
    {
        EXPECT_NE(FaultOf(whole.substr(0, length)), "no fault") << "after " << length << " bytes";
    }
}

TEST(Cursor, SurvivesEveryChangedByte)
{
    std::string bytes = Cur({.bits = 4, .width = 2, .coloursUsed = 2}, std::string(8 + 4 + 4, '\0'));
    for (char& byte : bytes)
    {
        const char before = byte;
        for (const int value : {0, 1, 0x7F, 0x80, 0xFF})
        {
            byte = static_cast<char>(value);
            FaultOf(bytes);
        }
        byte = before;
    }
    EXPECT_EQ(FaultOf(bytes), "no fault");
}

TEST(Cursor, IsReadFromTheCurrentFolderByItsOldName)
{
    const TemporaryCurrentFolder folder;
    folder.Write("Res/orbit.cur", Cur({}, kOnePixel));
    EXPECT_EQ(ReadCursor("res\\Orbit.CUR").image.pixels, (std::vector<std::uint8_t>{3, 2, 1, 4}));
}

TEST(Cursor, ThatIsMissingOrBrokenIsTold)
{
    const TemporaryCurrentFolder folder;
    folder.Write("res/Zoom.CUR", "no cursor at all");
    EXPECT_THAT([] { ReadCursor("res\\Zoom.CUR"); },
                testing::ThrowsMessage<FileError>("cannot read res/Zoom.CUR: it is no CUR file"));
    EXPECT_THAT([] { ReadCursor("res\\Move.CUR"); },
                testing::ThrowsMessage<FileError>(HasSubstr("cannot open res/Move.CUR: no such file")));
}

// --- the project's own

TEST(OwnCursors, LieInTheTreeAsTheyAreDrawn)
{
    for (const DrawnCursor& drawn : GetOwnCursors())
    {
        const std::string path = std::string(TESSARINE_RES) + "/" + drawn.fileName;
        EXPECT_EQ(ReadFile(path), EncodeCursor(drawn.cursor))
            << path << " is to be drawn anew: tessarine-cursors Tessarine/res";
    }
}

TEST(OwnCursors, AreReadAsTheyAreDrawn)
{
    for (const DrawnCursor& drawn : GetOwnCursors())
    {
        const Cursor read = DecodeCursor(EncodeCursor(drawn.cursor));
        EXPECT_EQ(read.image.width, 32);
        EXPECT_EQ(read.image.height, 32);
        EXPECT_EQ(read.image.pixels, drawn.cursor.image.pixels);
        EXPECT_EQ(read.hotX, drawn.cursor.hotX);
        EXPECT_EQ(read.hotY, drawn.cursor.hotY);
    }
}

TEST(OwnCursors, PointWithAPixelThatIsDrawn)
{
    for (const DrawnCursor& drawn : GetOwnCursors())
    {
        const Image& image = drawn.cursor.image;
        const std::size_t row = static_cast<std::size_t>(image.height - 1 - drawn.cursor.hotY);
        const std::size_t pixel = row * 32 + static_cast<std::size_t>(drawn.cursor.hotX);
        EXPECT_EQ(image.pixels[pixel * 4 + 3], 255) << drawn.fileName;
        EXPECT_EQ(image.pixels[3], 0) << drawn.fileName; // and the corner is clear
    }
}
}
