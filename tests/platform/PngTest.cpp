#include "ImageBytes.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>

namespace tessarine
{
namespace
{
using ::testing::EndsWith;
using ::testing::HasSubstr;

/// A file written by the library itself, rows from the top as they are packed.
struct PngForm
{
    int width = 2;
    int height = 2;
    int bits = 8;
    int colourType = PNG_COLOR_TYPE_RGB;
    int interlace = PNG_INTERLACE_NONE;
    std::vector<png_color> palette = {};
    std::vector<png_byte> paletteAlpha = {};
    int transparentGrey = -1;
};

void Append(png_structp png, png_bytep bytes, png_size_t count)
{
    static_cast<std::string*>(png_get_io_ptr(png))->append(bytes, bytes + count);
}

std::string Png(const PngForm& form, std::vector<std::vector<png_byte>> rowsFromTop)
{
    std::string file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, Append, nullptr);
    png_set_IHDR(png, info, static_cast<png_uint_32>(form.width), static_cast<png_uint_32>(form.height),
                 form.bits, form.colourType, form.interlace, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (!form.palette.empty())
    {
        png_set_PLTE(png, info, form.palette.data(), static_cast<int>(form.palette.size()));
    }
    png_color_16 transparent = {};
    transparent.gray = static_cast<png_uint_16>(form.transparentGrey);
    if (form.transparentGrey >= 0)
    {
        png_set_tRNS(png, info, nullptr, 0, &transparent);
    }
    if (!form.paletteAlpha.empty())
    {
        png_set_tRNS(png, info, form.paletteAlpha.data(), static_cast<int>(form.paletteAlpha.size()),
                     nullptr);
    }
    png_write_info(png, info);
    std::vector<png_bytep> rows;
    rows.reserve(rowsFromTop.size());
    for (auto& row : rowsFromTop)
    {
        rows.push_back(row.data());
    }
    png_write_image(png, rows.data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return file;
}

const std::vector<std::vector<png_byte>> kTwoByTwo = {{1, 2, 3, 4, 5, 6}, {7, 8, 9, 10, 11, 12}};
}

TEST(Png, HasItsTopRowLast)
{
    ExpectImage(DecodeImage(Png({}, kTwoByTwo), "png"), 2, 2, 3, {7, 8, 9, 10, 11, 12, 1, 2, 3, 4, 5, 6});
}

TEST(Png, MayBeInterlaced)
{
    const std::string file = Png({.interlace = PNG_INTERLACE_ADAM7}, kTwoByTwo);
    ExpectImage(DecodeImage(file, "png"), 2, 2, 3, {7, 8, 9, 10, 11, 12, 1, 2, 3, 4, 5, 6});
}

TEST(Png, OfGreyHasOneComponent)
{
    const std::string file = Png({.colourType = PNG_COLOR_TYPE_GRAY}, {{1, 2}, {3, 4}});
    ExpectImage(DecodeImage(file, "png"), 2, 2, 1, {3, 4, 1, 2});
}

TEST(Png, OfFewBitsIsSpreadOverTheWholeRange)
{
    const std::string file =
        Png({.width = 4, .height = 1, .bits = 2, .colourType = PNG_COLOR_TYPE_GRAY}, {{0x1B}});
    ExpectImage(DecodeImage(file, "png"), 4, 1, 1, {0, 85, 170, 255});
}

TEST(Png, OfGreyWithAlphaHasTwo)
{
    const std::string file = Png({.height = 1, .colourType = PNG_COLOR_TYPE_GRAY_ALPHA}, {{1, 2, 3, 4}});
    ExpectImage(DecodeImage(file, "png"), 2, 1, 2, {1, 2, 3, 4});
}

TEST(Png, OfColourWithAlphaHasFour)
{
    const std::string file =
        Png({.width = 1, .height = 1, .colourType = PNG_COLOR_TYPE_RGB_ALPHA}, {{1, 2, 3, 4}});
    ExpectImage(DecodeImage(file, "png"), 1, 1, 4, {1, 2, 3, 4});
}

TEST(Png, WithATransparentGreyHasAlpha)
{
    const std::string file =
        Png({.height = 1, .colourType = PNG_COLOR_TYPE_GRAY, .transparentGrey = 7}, {{7, 8}});
    ExpectImage(DecodeImage(file, "png"), 2, 1, 2, {7, 0, 8, 255});
}

TEST(Png, OfSixteenBitsIsBroughtToEight)
{
    // 0x1234 of 0xFFFF is 18.1 of 255, 0x80FF is 128.5
    const std::string file =
        Png({.height = 1, .bits = 16, .colourType = PNG_COLOR_TYPE_GRAY}, {{0x12, 0x34, 0x80, 0xFF}});
    ExpectImage(DecodeImage(file, "png"), 2, 1, 1, {18, 128});
}

TEST(Png, WithAPaletteHasThreeComponents)
{
    const PngForm form{.height = 1, .colourType = PNG_COLOR_TYPE_PALETTE, .palette = {{1, 2, 3}, {4, 5, 6}}};
    ExpectImage(DecodeImage(Png(form, {{1, 0}}), "png"), 2, 1, 3, {4, 5, 6, 1, 2, 3});
}

TEST(Png, WithATransparentPaletteHasFour)
{
    const PngForm form{.height = 1,
                       .colourType = PNG_COLOR_TYPE_PALETTE,
                       .palette = {{1, 2, 3}, {4, 5, 6}},
                       .paletteAlpha = {9}};
    ExpectImage(DecodeImage(Png(form, {{1, 0}}), "png"), 2, 1, 4, {4, 5, 6, 255, 1, 2, 3, 9});
}

TEST(Png, CutOffAnywhereIsRefused)
{
    ExpectRefusedAtEveryLength(Png({}, kTwoByTwo), "png");
}

TEST(Png, WithAWrongChecksumIsRefused)
{
    std::string file = Png({}, kTwoByTwo);
    const std::size_t checksum =
        file.find("IEND") - 8; // behind the pixels, before the length of the next chunk
    file[checksum] = static_cast<char>(file[checksum] ^ 1);
    EXPECT_THAT(FaultOfDecoding(file, "png"), HasSubstr("its PNG data are broken (IDAT: CRC error)"));
}

TEST(Png, SurvivesEveryChangedByte)
{
    ExpectSurvivesEveryChangedByte(Png({}, kTwoByTwo), "png");
}

TEST(Png, SaysNothingOnStandardErrorByItself)
{
    ::testing::internal::CaptureStderr();
    ExpectSurvivesEveryChangedByte(Png({}, kTwoByTwo), "png");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(Png, ThatClaimsTooManyPixelsIsRefused)
{
    // A header of the greatest sides, with the checksum that the library would write.
    const auto headerOf = [](png_uint_32 width, png_uint_32 height, int colourType)
    {
        std::string file;
        png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
        png_infop info = png_create_info_struct(png);
        png_set_write_fn(png, &file, Append, nullptr);
        png_set_IHDR(png, info, width, height, 8, colourType, PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(png, info);
        png_destroy_write_struct(&png, &info);
        return file + std::string("\0\0\0\0IDAT\x35\xAF\x06\x1E", 12);
    };
    EXPECT_THAT(FaultOfDecoding(headerOf(16385, 1, PNG_COLOR_TYPE_RGB), "png"),
                EndsWith("it is 16385 x 1 pixels large; at most 16384 a side are read"));
    EXPECT_THAT(FaultOfDecoding(headerOf(16384, 16384, PNG_COLOR_TYPE_GRAY), "png"),
                EndsWith("the file ends before its picture does"));
    const std::string large = headerOf(16384, 16384, PNG_COLOR_TYPE_RGB) + std::string(800000, 'x');
    EXPECT_THAT(FaultOfDecoding(large, "png"), EndsWith("take more than 512 MiB"));
}

TEST(Png, OfAnImpossibleSizeIsRefused)
{
    std::string file = Png({}, kTwoByTwo);
    file.replace(16, 8, Bytes({0, 0, 0, 0, 0, 0, 0, 2})); // width and height, high bytes first
    EXPECT_THAT(FaultOfDecoding(file, "png"), EndsWith("it has no pixels"));
    file.replace(16, 8, std::string(8, '\xFF'));
    EXPECT_THAT(FaultOfDecoding(file, "png"), HasSubstr("it is 4294967295 x 4294967295 pixels large"));
}

TEST(Png, OfNothingIsRefused)
{
    EXPECT_THAT(FaultOfDecoding("", "png"), EndsWith("the file is empty"));
    EXPECT_THAT(FaultOfDecoding("BM and more", "png"), EndsWith("it is no PNG file"));
}

TEST(Png, ComesBackByteForByte)
{
    const TemporaryFolder folder;
    for (const int components : {1, 3, 4})
    {
        Image image{3, 2, components, {}};
        for (int i = 0; i < 6 * components; ++i)
        {
            image.pixels.push_back(static_cast<std::uint8_t>(37 * i));
        }
        WriteImage(image, folder / "out.png");
        ExpectImage(ReadImage(folder / "out.png"), 3, 2, components, image.pixels);
    }
}

TEST(Png, IsWrittenUpright)
{
    const TemporaryFolder folder;
    WriteImage({1, 2, 1, {10, 20}}, folder / "out.png");
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    ASSERT_NE(png_image_begin_read_from_file(&image, (folder / "out.png").c_str()), 0);
    image.format = PNG_FORMAT_RGB; // grey of the file's own gamma, three times
    std::vector<std::uint8_t> fromTop(6);
    ASSERT_NE(png_image_finish_read(&image, nullptr, fromTop.data(), 0, nullptr), 0);
    EXPECT_GT(fromTop[0], fromTop[3]); // row 0 of the buffer, 10, is the bottom line
}
}
