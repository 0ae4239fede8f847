#include "ImageBytes.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <tiffio.h>

namespace tessarine
{
namespace
{
using ::testing::EndsWith;
using ::testing::HasSubstr;

/// A file written by the library itself, rows from the top.
struct TiffForm
{
    std::uint32_t width = 2;
    std::uint32_t height = 2;
    int bits = 8;
    int samples = 3;
    int photometric = PHOTOMETRIC_RGB;
    int compression = COMPRESSION_NONE;
    std::optional<std::uint16_t> extraSample = {};
    int orientation = ORIENTATION_TOPLEFT;
    bool separate = false;
    std::vector<std::uint16_t> reds = {}; ///< the palette, with green and blue twice and thrice the value
};

std::string Tiff(const TiffForm& form, std::vector<std::vector<std::uint8_t>> rows)
{
    const TemporaryFolder folder;
    const std::string path = (folder / "t.tiff").string();
    TIFF* tiff = TIFFOpen(path.c_str(), "w");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, form.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, form.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, form.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, form.samples);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, form.photometric);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, form.compression);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, form.orientation);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, form.separate ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    if (form.extraSample)
    {
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &*form.extraSample);
    }
    std::vector<std::uint16_t> greens;
    std::vector<std::uint16_t> blues;
    for (const std::uint16_t red : form.reds)
    {
        greens.push_back(static_cast<std::uint16_t>(2 * red));
        blues.push_back(static_cast<std::uint16_t>(3 * red));
    }
    if (!form.reds.empty())
    {
        TIFFSetField(tiff, TIFFTAG_COLORMAP, form.reds.data(), greens.data(), blues.data());
    }
    for (std::uint32_t i = 0; i < rows.size(); ++i)
    {
        TIFFWriteScanline(tiff, rows[i].data(), i % form.height, static_cast<std::uint16_t>(i / form.height));
    }
    TIFFClose(tiff);
    return ReadFile(path);
}

/// The file with another number in a field of 16 bits.
std::string WithField(const std::string& file, unsigned tag, unsigned value)
{
    const std::size_t entry = file.find(Little16(tag) + Little16(TIFF_SHORT) + Little32(1));
    EXPECT_NE(entry, std::string::npos);
    return file.substr(0, entry + 8) + Little16(value) + file.substr(entry + 10);
}

const std::vector<std::vector<std::uint8_t>> kTwoByTwo = {{1, 2, 3, 4, 5, 6}, {7, 8, 9, 10, 11, 12}};
const std::vector<std::uint8_t> kTwoByTwoFromBottom = {7, 8, 9, 10, 11, 12, 1, 2, 3, 4, 5, 6};
}

TEST(Tiff, HasItsTopRowLast)
{
    ExpectImage(DecodeImage(Tiff({}, kTwoByTwo), "tiff"), 2, 2, 3, kTwoByTwoFromBottom);
}

TEST(Tiff, MayBeStoredFromTheBottom)
{
    ExpectImage(DecodeImage(Tiff({.orientation = ORIENTATION_BOTLEFT}, kTwoByTwo), "tiff"), 2, 2, 3,
                {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
}

TEST(Tiff, IsReadInTheUsualCompressions)
{
    for (const int compression : {COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_PACKBITS})
    {
        ExpectImage(DecodeImage(Tiff({.compression = compression}, kTwoByTwo), "tiff"), 2, 2, 3,
                    kTwoByTwoFromBottom);
    }
}

TEST(Tiff, MayKeepItsChannelsApart)
{
    const std::string file = Tiff({.height = 1, .separate = true}, {{1, 4}, {2, 5}, {3, 6}});
    ExpectImage(DecodeImage(file, "tiff"), 2, 1, 3, {1, 2, 3, 4, 5, 6});
}

TEST(Tiff, OfGreyHasOneComponent)
{
    const std::string file = Tiff({.samples = 1, .photometric = PHOTOMETRIC_MINISBLACK}, {{1, 2}, {3, 4}});
    ExpectImage(DecodeImage(file, "tiff"), 2, 2, 1, {3, 4, 1, 2});
}

TEST(Tiff, WhereZeroIsWhiteIsTurnedRound)
{
    const std::string file =
        Tiff({.height = 1, .samples = 1, .photometric = PHOTOMETRIC_MINISWHITE}, {{0, 55}});
    ExpectImage(DecodeImage(file, "tiff"), 2, 1, 1, {255, 200});
}

TEST(Tiff, OfOneBitIsBlackAndWhite)
{
    const std::string file = Tiff(
        {.width = 4, .height = 1, .bits = 1, .samples = 1, .photometric = PHOTOMETRIC_MINISBLACK}, {{0xA0}});
    ExpectImage(DecodeImage(file, "tiff"), 4, 1, 1, {255, 0, 255, 0});
}

TEST(Tiff, KeepsItsColoursBesideAlpha)
{
    for (const std::uint16_t kind : {EXTRASAMPLE_UNASSALPHA, EXTRASAMPLE_ASSOCALPHA})
    {
        const std::string file =
            Tiff({.height = 1, .samples = 4, .extraSample = kind}, {{200, 100, 50, 128, 1, 2, 3, 0}});
        ExpectImage(DecodeImage(file, "tiff"), 2, 1, 4, {200, 100, 50, 128, 1, 2, 3, 0});
    }
}

TEST(Tiff, OfGreyWithAlphaHasTwo)
{
    const std::string file = Tiff({.height = 1,
                                   .samples = 2,
                                   .photometric = PHOTOMETRIC_MINISBLACK,
                                   .extraSample = std::uint16_t{EXTRASAMPLE_UNASSALPHA}},
                                  {{200, 128, 3, 4}});
    ExpectImage(DecodeImage(file, "tiff"), 2, 1, 2, {200, 128, 3, 4});
}

TEST(Tiff, OfSixteenBitsIsBroughtToEight)
{
    const std::string file = Tiff({.width = 1, .height = 1, .bits = 16}, {{0, 0, 255, 255, 0x34, 0x80}});
    ExpectImage(DecodeImage(file, "tiff"), 1, 1, 3, {0, 255, 128}); // the low byte first; 0x8034 is 127.7
}

TEST(Tiff, WithAPaletteHasThreeComponents)
{
    std::vector<std::uint16_t> reds(256);
    reds[1] = 10 << 8;
    reds[2] = 20 << 8;
    const std::string file =
        Tiff({.height = 1, .samples = 1, .photometric = PHOTOMETRIC_PALETTE, .reds = reds}, {{1, 2}});
    ExpectImage(DecodeImage(file, "tiff"), 2, 1, 3, {10, 20, 30, 20, 40, 60});
}

TEST(Tiff, CutOffAnywhereIsRefusedOrWhole)
{
    ::testing::internal::CaptureStderr();
    const std::string file = Tiff({.compression = COMPRESSION_LZW}, kTwoByTwo);
    for (std::size_t length = 0; length < file.size(); ++length)
    {
        try
        {
            // The link to a further picture, at the very end, may be missing.
            ExpectImage(DecodeImage(file.substr(0, length), "tiff"), 2, 2, 3, kTwoByTwoFromBottom);
        }
        catch (const FileError&)
        {
            continue;
        }
        EXPECT_GE(length + 200, file.size());
    }
    for (const std::size_t length : {std::size_t{1}, std::size_t{5}, std::size_t{9}, file.size() / 2})
    {
        EXPECT_EQ(FaultOfDecoding(file.substr(0, length), "tiff"), FaultOfEndingEarly("tiff"));
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(Tiff, SurvivesEveryChangedByteWithoutAWordOnStandardError)
{
    ::testing::internal::CaptureStderr();
    ExpectSurvivesEveryChangedByte(Tiff({}, kTwoByTwo), "tiff");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(Tiff, OfManySamplesAPixelTakesAllTheirBytes)
{
    constexpr int kSamples = 100;
    const std::vector<std::uint8_t> row(2 * kSamples);
    const std::string file = Tiff({.samples = kSamples, .photometric = PHOTOMETRIC_MINISBLACK}, {row, row});
    ExpectImage(DecodeImage(file, "tiff"), 2, 2, 2, {0, 255, 0, 255, 0, 255, 0, 255});
    const std::string large = WithField(WithField(file, TIFFTAG_IMAGEWIDTH, 4096), TIFFTAG_IMAGELENGTH, 4096);
    EXPECT_THAT(FaultOfDecoding(large, "tiff"),
                EndsWith("take more than 512 MiB")); // of 32 MiB in the picture
}

TEST(Tiff, ThatClaimsTooManyPixelsIsRefused)
{
    const std::string file = Tiff({}, kTwoByTwo);
    EXPECT_THAT(FaultOfDecoding(WithField(WithField(file, TIFFTAG_IMAGEWIDTH, 16385), TIFFTAG_IMAGELENGTH, 1),
                                "tiff"),
                HasSubstr("16385 x 1 pixels large"));
    EXPECT_THAT(
        FaultOfDecoding(WithField(WithField(file, TIFFTAG_IMAGEWIDTH, 16384), TIFFTAG_IMAGELENGTH, 16384),
                        "tiff"),
        EndsWith("take more than 512 MiB"));
}

TEST(Tiff, ThatClaimsMorePixelsThanItHasIsRefused)
{
    const std::string file = Tiff({}, kTwoByTwo);
    EXPECT_EQ(FaultOfDecoding(WithField(file, TIFFTAG_IMAGEWIDTH, 16000), "tiff"),
              FaultOfEndingEarly("tiff"));
}

TEST(Tiff, WithoutPixelsIsRefused)
{
    const std::string file = Tiff({}, kTwoByTwo);
    EXPECT_THAT(FaultOfDecoding(WithField(file, TIFFTAG_IMAGEWIDTH, 0), "tiff"),
                EndsWith("it has no pixels"));
    EXPECT_THAT(FaultOfDecoding(WithField(file, TIFFTAG_IMAGELENGTH, 0), "tiff"),
                EndsWith("it has no pixels"));
}

TEST(Tiff, WithoutADirectoryIsRefused)
{
    const std::string whole = Tiff({}, kTwoByTwo);
    const std::string file = whole.substr(0, 4) + Little32(0) + whole.substr(8); // where the directory stands
    EXPECT_THAT(FaultOfDecoding(file, "tiff"), EndsWith("its TIFF data are broken (it holds no picture)"));
}

TEST(Tiff, OfARareCompressionIsRefused)
{
    const std::string file = WithField(Tiff({}, kTwoByTwo), TIFFTAG_COMPRESSION, COMPRESSION_SGILOG);
    EXPECT_THAT(FaultOfDecoding(file, "tiff"), EndsWith("a TIFF of compression 34676 is not read"));
}

TEST(Tiff, OfNothingIsRefused)
{
    EXPECT_THAT(FaultOfDecoding("", "tiff"), EndsWith("the file is empty"));
    EXPECT_THAT(FaultOfDecoding("BM and more", "tiff"), EndsWith("it is no TIFF file"));
}
}
