#include "BatchProcess.h"
#include "Image.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>

using namespace tessarine;
using testing::HasSubstr;

namespace
{
/// Five pixels by four, with a hole of one pixel; a marker where it is asked for.
Image MakeHoledSquare(bool hasMarker)
{
    Image image{5, 4, 3, {}};
    for (int i = 0; i < 20; ++i)
    {
        const bool isObject = i / 5 > 1 && i != 12;
        const std::uint8_t first = isObject ? 200 : 0;
        const std::uint8_t second = hasMarker && i == 0 ? 255 : first;
        image.pixels.insert(image.pixels.end(), {first, second, first});
    }
    return image;
}

std::int32_t ReadInt32(const std::string& bytes, std::size_t index)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
    {
        value |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes.at(4 * index + i))) << (8 * i);
    }
    return static_cast<std::int32_t>(value);
}
}

TEST(FilterImageOperation, FillsShortRunsAndTellsOfMarkers)
{
    const TemporaryFolder folder;
    WriteImage(MakeHoledSquare(false), folder / "in.bmp");
    const ProcessResult result = RunBatch(folder, {"filter-image", "in.bmp", "out.png"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, "Filter image ok..\nmarkers: false\n");
    Image expected = MakeHoledSquare(false);
    std::fill_n(expected.pixels.begin() + 3 * 12, 3, std::uint8_t{255});
    EXPECT_EQ(ReadImage(folder / "out.png").pixels, expected.pixels);
}

TEST(FilterImageOperation, TellsOfAMarkerInAFileOfAnyForm)
{
    const TemporaryFolder folder;
    WriteImage(MakeHoledSquare(true), folder / "in.png");
    EXPECT_EQ(RunBatch(folder, {"-q", "filter-image", "in.png", "out.bmp"}).output, "markers: true\n");
}

TEST(FilterImageOperation, FailsWithoutItsFileAndWithoutAnEndingThatItKnows)
{
    const TemporaryFolder folder;
    const ProcessResult missing = RunBatch(folder, {"filter-image", "in.bmp", "out.bmp"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.errors, HasSubstr("tessarine-batch: filter-image: cannot open in.bmp"));
    WriteImage(MakeHoledSquare(false), folder / "in.bmp");
    EXPECT_EQ(RunBatch(folder, {"filter-image", "in.bmp", "out.xyz"}).status, 1);
    EXPECT_FALSE(folder.Has("out.xyz"));
}

TEST(Distance2DOperation, WritesSizeAndLayersBottomRowFirst)
{
    const TemporaryFolder folder;
    WriteImage(MakeHoledSquare(false), folder / "in.bmp");
    EXPECT_EQ(RunBatch(folder, {"distance-2d", "in.bmp", "out.bin"}).status, 0);
    const std::string bytes = folder.Read("out.bin");
    ASSERT_EQ(bytes.size(), 4U * (2 + 20));
    EXPECT_EQ(ReadInt32(bytes, 0), 5);
    EXPECT_EQ(ReadInt32(bytes, 1), 4);
    EXPECT_EQ(ReadInt32(bytes, 2), 30);         // the corner at the bottom
    EXPECT_EQ(ReadInt32(bytes, 2 + 5 + 1), 1);  // below the outline
    EXPECT_EQ(ReadInt32(bytes, 2 + 10 + 2), 0); // the hole is filled before
    EXPECT_EQ(ReadInt32(bytes, 2 + 15 + 2), 1); // the border on the outline's other side
}

TEST(Distance2DOperation, WritesToStandardOutput)
{
    const TemporaryFolder folder;
    WriteImage(MakeHoledSquare(false), folder / "in.bmp");
    const ProcessResult result = RunBatch(folder, {"-q", "distance-2d", "in.bmp", "-"});
    EXPECT_EQ(result.output.size(), 4U * (2 + 20));
}

TEST(ProjectSamplesOperation, NamesTheFolderThatIsMissing)
{
    const TemporaryFolder folder;
    folder.Write("Data/man.data", "2\na 0 0 0\nb 1 1 1\n");
    const ProcessResult result = RunBatch(folder, {"project-samples"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("tessarine-batch: project-samples: "));
    EXPECT_THAT(result.errors, HasSubstr("data1/param.data"));
    EXPECT_THAT(result.errors, HasSubstr("(working folder: " + folder.GetPath().string() + ")"));
}

TEST(ProjectSamplesOperation, ReportsMissingPointsAndNamesThem)
{
    const TemporaryFolder folder;
    const ProcessResult result = RunBatch(folder, {"menu", "32805"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("cannot open Data/man.data: "));
}

TEST(ProjectSamplesOperation, WritesItsImagesInAViewOfAnySize)
{
    const TemporaryFolder folder;
    folder.Write("data/man.data", "2\na 0 0 0\nb 1 1 1\n");
    folder.Write("data1/keep", "");
    const ProcessResult result = RunBatch(folder, {"--window", "64x48", "project-samples"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(ReadImage(folder / "data1/90.bmp").width, 800);
    EXPECT_EQ(folder.Read("data1/param.data").substr(0, 10), "90800 600\n");
}

TEST(SolveOperation, WritesTheSolutionOfASystem)
{
    const TemporaryFolder folder;
    folder.Write("a.mtx", "2\t2\n2\n0\t2\n1\t1\n1\n1\t4\n");
    folder.Write("b.vec", "2\n5\n8\n");
    const ProcessResult result = RunBatch(folder, {"solve", "a.mtx", "b.vec", "x.vec"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(folder.Read("x.vec"), "2\n1.5\n2\n"); // 2 x + y = 5 and 4 y = 8
    EXPECT_THAT(result.output, HasSubstr("Iteration Step = 2, Estimated Error = 0.00000000"));
}

TEST(SolveOperation, TakesARuleAToleranceAndAMost)
{
    const TemporaryFolder folder;
    folder.Write("a.mtx", "2\t2\n2\n0\t2\n1\t1\n1\n1\t4\n");
    folder.Write("b.vec", "2\n5\n8\n");
    const ProcessResult result = RunBatch(folder, {"solve", "a.mtx", "b.vec", "x.vec", "1", "1e-7", "1"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("Iteration Step = 2,"));
    EXPECT_EQ(RunBatch(folder, {"solve", "a.mtx", "b.vec", "x.vec", "1"}).status, 2);
}

TEST(SolveOperation, FailsOnSizesThatDoNotFitAndOnMissingFiles)
{
    const TemporaryFolder folder;
    folder.Write("a.mtx", "2\t3\n0\n0\n");
    folder.Write("b.vec", "2\n5\n8\n");
    const ProcessResult result = RunBatch(folder, {"solve", "a.mtx", "b.vec", "x.vec"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors,
                HasSubstr("tessarine-batch: solve: a.mtx has to have as many rows and columns as "
                          "b.vec has values: they are 2, 3 and 2"));
    EXPECT_FALSE(folder.Has("x.vec"));
    EXPECT_EQ(RunBatch(folder, {"solve", "none.mtx", "b.vec", "x.vec"}).status, 1);
}

TEST(RefineEnergyOperation, MovesTheModelToItsCloud)
{
    const TemporaryFolder folder;
    folder.Write("tetra.obj",
                 "v 1 1 1\nv 1 -1 -1\nv -1 1 -1\nv -1 -1 1\nf 1 2 3\nf 1 4 2\nf 1 3 4\nf 2 4 3\n");
    folder.Write("data/dragon.txta", "2\n1 1 -1\n-1 -1 1\n");
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"import", "tetra.obj", "refine-energy"}, {"import", "tetra.obj", "menu", "32834"}})
    {
        const ProcessResult result = RunBatch(folder, words);
        EXPECT_EQ(result.status, 0) << result.errors;
        EXPECT_THAT(result.output, HasSubstr("点云大小: 2\nAdjacent Face size: 4\nAdjacent Face size: 4\n"));
        EXPECT_THAT(result.output, HasSubstr("The number of availible vertex: "));
        EXPECT_THAT(result.output, HasSubstr("Iteration Step = "));
    }
}

TEST(RefineEnergyOperation, FailsWithoutItsCloudAndWithoutAModel)
{
    const TemporaryFolder folder;
    const ProcessResult empty = RunBatch(folder, {"refine-energy"});
    EXPECT_EQ(empty.status, 1);
    EXPECT_THAT(empty.errors, HasSubstr("tessarine-batch: refine-energy: there is no model with faces"));
    folder.Write("tetra.obj",
                 "v 1 1 1\nv 1 -1 -1\nv -1 1 -1\nv -1 -1 1\nf 1 2 3\nf 1 4 2\nf 1 3 4\nf 2 4 3\n");
    const ProcessResult missing = RunBatch(folder, {"import", "tetra.obj", "refine-energy"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.errors, HasSubstr("tessarine-batch: refine-energy: cannot open Data/dragon.txta: "));
}
