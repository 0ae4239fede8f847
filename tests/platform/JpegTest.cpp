#include "ImageBytes.h"
#include "TemporaryFolder.h"
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <jpeglib.h>

namespace tessarine
{
namespace
{
using ::testing::EndsWith;
using ::testing::HasSubstr;

/// A file written by the library itself, of one colour above and one below.
struct JpegForm
{
    int width = 16;
    int height = 16;
    J_COLOR_SPACE space = JCS_RGB;
    bool progressive = false;
};

std::string Jpeg(const JpegForm& form, const std::vector<JSAMPLE>& above, const std::vector<JSAMPLE>& below)
{
    jpeg_compress_struct jpeg = {};
    jpeg_error_mgr manager;
    jpeg.err = jpeg_std_error(&manager);
    jpeg_create_compress(&jpeg);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&jpeg, &bytes, &size);
    jpeg.image_width = static_cast<JDIMENSION>(form.width);
    jpeg.image_height = static_cast<JDIMENSION>(form.height);
    jpeg.input_components = static_cast<int>(above.size());
    jpeg.in_color_space = form.space;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, 100, TRUE);
    if (form.progressive)
    {
        jpeg_simple_progression(&jpeg);
    }
    jpeg_start_compress(&jpeg, TRUE);
    for (int y = 0; y < form.height; ++y)
    {
        const auto& colour = y < form.height / 2 ? above : below;
        std::vector<JSAMPLE> line;
        for (int x = 0; x < form.width; ++x)
        {
            line.insert(line.end(), colour.begin(), colour.end());
        }
        JSAMPLE* row = line.data();
        jpeg_write_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    std::string file(reinterpret_cast<const char*>(bytes), size);
    std::free(bytes);
    return file;
}

/// Blocks of one colour come through with hardly a loss.
void ExpectRow(const Image& image, int rowFromBottom, const std::vector<int>& colour)
{
    ASSERT_EQ(image.components, static_cast<int>(colour.size()));
    const std::size_t start = static_cast<std::size_t>(rowFromBottom * image.width) * colour.size();
    for (std::size_t i = 0; i < static_cast<std::size_t>(image.width) * colour.size(); ++i)
    {
        EXPECT_NEAR(image.pixels[start + i], colour[i % colour.size()], 3);
    }
}

void ExpectHalves(const Image& image, const std::vector<int>& above, const std::vector<int>& below)
{
    EXPECT_EQ(image.width, 16);
    EXPECT_EQ(image.height, 16);
    ExpectRow(image, 15, above);
    ExpectRow(image, 12, above); // the colours of the rows between run together
    ExpectRow(image, 3, below);
    ExpectRow(image, 0, below);
}
}

TEST(Jpeg, HasItsTopRowLast)
{
    ExpectHalves(DecodeImage(Jpeg({}, {200, 100, 50}, {10, 20, 30}), "jpg"), {200, 100, 50}, {10, 20, 30});
}

TEST(Jpeg, OfGreyHasOneComponent)
{
    ExpectHalves(DecodeImage(Jpeg({.space = JCS_GRAYSCALE}, {200}, {10}), "jpg"), {200}, {10});
}

TEST(Jpeg, MayBeProgressive)
{
    const std::string file = Jpeg({.progressive = true}, {200, 100, 50}, {10, 20, 30});
    ExpectHalves(DecodeImage(file, "jpg"), {200, 100, 50}, {10, 20, 30});
}

TEST(Jpeg, InInksBecomesColour)
{
    // The library marks a file of four inks as Adobe's, whose numbers are the light that is left:
    // 255 leaves all of it, and half the black halves the others.
    const std::string file = Jpeg({.space = JCS_CMYK}, {255, 255, 255, 128}, {255, 128, 0, 255});
    ExpectHalves(DecodeImage(file, "jpg"), {128, 128, 128}, {255, 128, 0});
}

TEST(Jpeg, CutOffAnywhereIsRefused)
{
    ExpectRefusedAtEveryLength(Jpeg({}, {200, 100, 50}, {10, 20, 30}), "jpg");
    ExpectRefusedAtEveryLength(Jpeg({.progressive = true}, {200, 100, 50}, {10, 20, 30}), "jpg");
}

TEST(Jpeg, SurvivesEveryChangedByteWithoutAWordOnStandardError)
{
    ::testing::internal::CaptureStderr();
    // The sides, behind the marker C0, stay: 64 KiB a side of nothing would take long to fill.
    std::string file = Jpeg({.width = 8, .height = 8}, {200, 100, 50}, {10, 20, 30});
    const std::size_t sides = file.find("\xFF\xC0");
    ASSERT_NE(sides, std::string::npos);
    ExpectSurvivesEveryChangedByte(file, "jpg");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(Jpeg, ThatClaimsTooManyPixelsIsRefused)
{
    std::string file = Jpeg({}, {200, 100, 50}, {10, 20, 30});
    const std::size_t sides = file.find("\xFF\xC0") + 5; // height, width, high bytes first
    file.replace(sides, 4, Bytes({0, 1, 0x40, 1}));
    EXPECT_THAT(FaultOfDecoding(file, "jpg"), HasSubstr("16385 x 1 pixels large"));
    file.replace(sides, 4, Bytes({0x40, 0, 0x40, 0}));
    EXPECT_THAT(FaultOfDecoding(file, "jpg"), EndsWith("take more than 512 MiB"));
}

TEST(Jpeg, OfNothingIsRefused)
{
    EXPECT_THAT(FaultOfDecoding("", "jpg"), EndsWith("the file is empty"));
    EXPECT_THAT(FaultOfDecoding("BM and more", "jpg"), EndsWith("it is no JPEG file"));
}

TEST(Jpeg, IsWrittenUprightInGreyAndColour)
{
    const TemporaryFolder folder;
    for (const int components : {1, 3, 4})
    {
        Image image{16, 16, components, {}};
        image.pixels.assign(std::size_t{128} * static_cast<std::size_t>(components), 20); // the lower half
        image.pixels.resize(std::size_t{256} * static_cast<std::size_t>(components), 220);
        WriteImage(image, folder / "out.jpg");
        const std::vector<int> light(components == 1 ? 1 : 3, 220); // alpha is left out
        const std::vector<int> dark(components == 1 ? 1 : 3, 20);
        ExpectHalves(ReadImage(folder / "out.jpg"), light, dark);
    }
}

TEST(Jpeg, KeepsItsColoursInOrder)
{
    const TemporaryFolder folder;
    Image image{8, 8, 4, {}};
    for (int i = 0; i < 64; ++i)
    {
        image.pixels.insert(image.pixels.end(), {200, 100, 50, 0});
    }
    WriteImage(image, folder / "out.jpg");
    ExpectRow(ReadImage(folder / "out.jpg"), 0, {200, 100, 50});
}
}
