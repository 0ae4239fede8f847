#include "BatchProcess.h"
#include "Image.h"
#include "TemporaryFolder.h"
#include <bit>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace tessarine;
using testing::HasSubstr;
using testing::StartsWith;

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

namespace
{
/// A ball of radius 0.6, seen along the three axes in 72 x 72 pixels, and a few of its points.
void WriteBall(const TemporaryFolder& folder)
{
    constexpr int kSide = 72;
    constexpr int kRadius = 18;
    Image image{kSide, kSide, 3, {}};
    for (int i = 0; i < kSide * kSide; ++i)
    {
        const int x = 2 * (i % kSide) + 1 - kSide; // in half pixels
        const int y = 2 * (i / kSide) + 1 - kSide;
        image.pixels.insert(image.pixels.end(), 3, x * x + y * y < 4 * kRadius * kRadius ? 255 : 0);
    }
    folder.Write("data/bunny/param.dat", "3\n72 72\n"
                                         "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1\n"
                                         "0 0 -1 0 0 1 0 0 1 0 0 0 0 0 0 1\n"
                                         "1 0 0 0 0 0 1 0 0 -1 0 0 0 0 0 1\n");
    for (const char* name : {"1.bmp", "2.bmp", "3.bmp"})
    {
        WriteImage(image, folder / "data/bunny" / name);
    }
    std::string cloud = "25\n-0.6 0 0\n0.6 0 0\n";
    for (int i = 0; i < 23; ++i)
    {
        cloud += "0 0.6 0\n";
    }
    folder.Write("data/bunny.txta", cloud);
}

float ReadFloat32(const std::string& bytes, int i, int j, int k)
{
    return std::bit_cast<float>(ReadInt32(bytes, static_cast<std::size_t>((i * 61 + j) * 201 + k)));
}
}

TEST(ReconstructionOperations, GiveAClosedHull)
{
    const TemporaryFolder folder;
    WriteBall(folder);
    const ProcessResult result = RunBatch(
        folder, {"-q", "build-initial-mesh", "generate-mesh", "0", "export", "hull.obj", "report", "-"});
    EXPECT_EQ(result.status, 0) << result.errors;
    const nlohmann::json node = nlohmann::json::parse(result.output)["nodes"][0];
    EXPECT_EQ(node["boundaryEdges"], 0);
    EXPECT_EQ(node["eulerNumber"], 2);
    EXPECT_NEAR(node["max"][2].get<double>(), 0.6, 0.04); // a cell
    EXPECT_TRUE(folder.Has("hull.obj"));
    EXPECT_TRUE(folder.Has("pointDistance.dat"));
}

TEST(ReconstructionOperations, DumpTheFieldWithDepthFastest)
{
    const TemporaryFolder folder;
    WriteBall(folder);
    EXPECT_EQ(RunBatch(folder, {"-q", "menu", "32794", "dump-field", "field.bin"}).status, 0);
    const std::string bytes = folder.Read("field.bin");
    ASSERT_EQ(bytes.size(), 4U * 61 * 61 * 201);
    EXPECT_EQ(ReadFloat32(bytes, 0, 0, 0), 1000.0F);
    EXPECT_LT(ReadFloat32(bytes, 30, 30, 100), 0.0F);       // the middle
    EXPECT_EQ(ReadFloat32(bytes, 30, 30, 150), 1000.0F);    // z is 2
    EXPECT_GT(ReadFloat32(bytes, 30, 30 + 18, 100), 0.05F); // y is 0.72
}

TEST(ReconstructionOperations, ShowTheFieldAndTheOctree)
{
    const TemporaryFolder folder;
    WriteBall(folder);
    const ProcessResult result =
        RunBatch(folder, {"-q", "build-initial-mesh", "show-field", "menu", "32797", "dump", "-"});
    EXPECT_EQ(result.status, 0) << result.errors;
    const nlohmann::json dump = nlohmann::json::parse(result.output);
    const nlohmann::json& octree = dump["view"]["octree"];
    EXPECT_EQ(octree["points"], 25);
    EXPECT_EQ(octree["depth"], 1);
    EXPECT_EQ(octree["leaf"], false);
    EXPECT_EQ(octree["max"], nlohmann::json({1.2, 1.2, 1.0}));
    ASSERT_EQ(octree["children"].size(), 8U);
    EXPECT_EQ(octree["children"][0]["depth"], 2);
    EXPECT_EQ(octree["children"][0]["children"], nlohmann::json::array());
    EXPECT_GT(dump["vertices"].size(), 1000U);
    EXPECT_TRUE(dump["faces"].empty());
}

TEST(ReconstructionOperations, FailWithoutAField)
{
    const TemporaryFolder folder;
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"generate-mesh", "0"}, {"show-field"}, {"dump-field", "field.bin"}})
    {
        const ProcessResult result = RunBatch(folder, words);
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.errors, HasSubstr("there is no distance field: build the initial mesh first"));
    }
    EXPECT_FALSE(folder.Has("field.bin"));
    EXPECT_THAT(RunBatch(folder, {"build-initial-mesh"}).errors,
                HasSubstr("(working folder: " + folder.GetPath().string() + ")"));
}

TEST(GenerateSplatsOperation, NamesWhatIsMissing)
{
    const TemporaryFolder folder;
    const ProcessResult result = RunBatch(folder, {"generate-splats"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("tessarine-batch: generate-splats: cannot open data/man/param.dat"));
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

TEST(SolveOperation, TellsOfWhatIsNoSolution)
{
    const TemporaryFolder folder;
    folder.Write("flat.mtx", "2\t2\n1\n0\t1\n1\n1\t-1\n"); // (1, 1) and its image (1, -1) are at right angles
    folder.Write("b.vec", "2\n1\n1\n");
    const ProcessResult broken = RunBatch(folder, {"solve", "flat.mtx", "b.vec", "x.vec"});
    EXPECT_EQ(broken.status, 0);
    EXPECT_THAT(broken.errors,
                testing::StartsWith("x.vec is no solution: the iteration cannot go on behind step 0"));
    folder.Write("none.vec", "2\n0\n0\n"); // 0 is its solution, though there is no step to do
    EXPECT_EQ(RunBatch(folder, {"solve", "flat.mtx", "none.vec", "x.vec"}).errors, "");

    folder.Write("a.mtx", "3\t3\n1\n0\t1\n1\n1\t2\n1\n2\t3\n");
    folder.Write("c.vec", "3\n1\n1\n1\n");
    const ProcessResult early = RunBatch(folder, {"solve", "a.mtx", "c.vec", "x.vec", "1", "1e-7", "1"});
    EXPECT_EQ(early.status, 0);
    EXPECT_THAT(
        early.errors,
        testing::StartsWith("x.vec is no solution within TOL: the estimated error is still above it after 2 "
                            "steps"));
    EXPECT_EQ(RunBatch(folder, {"solve", "a.mtx", "c.vec", "x.vec", "1", "1e-7", "2"}).errors, "");
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

/// A tetrahedron, points in its corners, and three more over its faces.
void WriteTwoStepData(const TemporaryFolder& folder)
{
    folder.Write("tetra.obj",
                 "v 1 1 1\nv 1 -1 -1\nv -1 1 -1\nv -1 -1 1\nf 1 2 3\nf 1 4 2\nf 1 3 4\nf 2 4 3\n");
    folder.Write("data/bunny.txta", "7\n1 1 1\n1 -1 -1\n-1 1 -1\n-1 -1 1\n.5 -.4 .5\n.5 .5 -.4\n-.4 .5 .5\n");
}

TEST(TwoStepOperations, BringPointsIntoTheMesh)
{
    const TemporaryFolder folder;
    WriteTwoStepData(folder);
    const ProcessResult result =
        RunBatch(folder, {"import", "tetra.obj", "refine-two-step", "two-step-first", "two-step-second",
                          "two-step-third", "two-step-first", "report", "r.json"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_THAT(result.output,
                HasSubstr("点云大小: 7\n\nPoints Cloud ANN Init is OK\nRefine init mesh ok...\n"));
    EXPECT_THAT(result.output, HasSubstr("Calculate footpoint ok..\nThere are "));
    EXPECT_THAT(folder.Read("r.json"), HasSubstr("\"vertices\": 7, \"faces\": 10, \"edges\": 15"));
    // Three timings a step.
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 6);
    EXPECT_THAT(result.errors, StartsWith("message box \"Tessarine\": 0."));
    const ProcessResult again =
        RunBatch(folder, {"import", "tetra.obj", "menu", "32829", "menu", "32826", "menu", "32831", "menu",
                          "32832", "menu", "32826", "report", "again.json"});
    EXPECT_EQ(again.status, 0) << again.errors;
    EXPECT_EQ(folder.Read("again.json"), folder.Read("r.json"));
}

TEST(TwoStepOperations, FailWithoutTheFirst)
{
    const TemporaryFolder folder;
    WriteTwoStepData(folder);
    const std::pair<std::vector<std::string>, const char*> operations[] = {
        {{"two-step-first"}, "first"},
        {{"two-step-second"}, "second"},
        {{"two-step-third"}, "third"},
        {{"menu", "32826"}, "first"},
        {{"import", "tetra.obj", "refine-two-step", "new", "two-step-first"}, "first"},
        {{"import", "tetra.obj", "refine-two-step", "import", "tetra.obj", "two-step-first"}, "first"}};
    for (const auto& [words, step] : operations)
    {
        const ProcessResult result = RunBatch(folder, words);
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.errors, HasSubstr(std::string(": the ") + step +
                                             " step needs a two-step refinement that has run"));
    }
    EXPECT_EQ(RunBatch(folder, {"refine-two-step"}).status, 1);
    EXPECT_EQ(RunBatch(folder, {"two-step-first", "1"}).status, 2);
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

namespace
{
constexpr char kCentredTetra[] =
    "v 1 1 1\nv 1 -1 -1\nv -1 1 -1\nv -1 -1 1\nf 1 2 3\nf 1 4 2\nf 1 3 4\nf 2 4 3\n";

/// The corners of the tetrahedron, and nine points on a face, some of which fall on another.
std::string MakeBoxCloud()
{
    std::string text = "13\n1 1 1\n1 -1 -1\n-1 1 -1\n-1 -1 1\n";
    for (int i = 0; i < 9; ++i)
    {
        const double u = -0.1 + 0.1 * (i % 3) + 0.003 * i; // x + y - z = 1 on the face
        const double v = -0.1 + 0.1 * (i / 3);
        text += std::to_string(1.0 / 3 + u) + ' ' + std::to_string(1.0 / 3 + v) + ' ' +
                std::to_string(-1.0 / 3 + u + v) + '\n';
    }
    return text;
}
}

TEST(IncrementalOperations, GrowANewMeshStepByStep)
{
    const TemporaryFolder folder;
    folder.Write("tetra.obj", kCentredTetra);
    folder.Write("data/box.txta", MakeBoxCloud());
    const ProcessResult result =
        RunBatch(folder, {"import", "tetra.obj", "refine-incremental", "dump", "seed.json", "connect-next",
                          "connect-next", "2", "menu", "32824", "connect-next", "all", "connect-next", "all",
                          "save-environment", "dump", "all.json"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("点云大小: 13\n"));
    EXPECT_THAT(result.output, HasSubstr("Set vIndex: ("));
    EXPECT_THAT(result.output, HasSubstr("The number of faces created: 2\n"));

    const auto seed = nlohmann::json::parse(folder.Read("seed.json"));
    const auto all = nlohmann::json::parse(folder.Read("all.json"));
    EXPECT_EQ(seed["view"]["newMesh"], 0xE0000001U);
    EXPECT_EQ(all["view"]["newMesh"], 0xE0000001U);
    EXPECT_EQ(seed["solids"][1]["faces"].size(), 2U);
    EXPECT_GT(all["solids"][1]["faces"].size(), 2U);
    EXPECT_EQ(all["view"]["projectedPoints"].size(), 13U);
    EXPECT_EQ(all["scene"]["children"].size(), 1U); // the new mesh is in no scene
    EXPECT_THAT(folder.Read("data/SmoothEnvionment.data"),
                testing::StartsWith("-536870911\n-1073741819\n0\n"));
}

TEST(IncrementalOperations, FailBeforeTheRunAndForAnotherModel)
{
    const TemporaryFolder folder;
    folder.Write("tetra.obj", kCentredTetra);
    folder.Write("data/box.txta", MakeBoxCloud());
    const std::string reason = "no new mesh has been started on this model: run incremental refinement first";
    for (const std::string operation : {"connect-next", "save-environment"})
    {
        const ProcessResult before = RunBatch(folder, {"import", "tetra.obj", operation});
        EXPECT_EQ(before.status, 1);
        EXPECT_THAT(before.errors, HasSubstr("tessarine-batch: " + operation + ": " + reason));
        for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
                 {"import", "tetra.obj", "refine-incremental", "import", "tetra.obj", operation},
                 {"import", "tetra.obj", "refine-incremental", "new", operation}})
        {
            const ProcessResult behind = RunBatch(folder, words);
            EXPECT_EQ(behind.status, 1);
            EXPECT_THAT(behind.errors, HasSubstr(operation + ": " + reason));
        }
    }
    EXPECT_FALSE(folder.Has("data/SmoothEnvionment.data"));
}

TEST(IncrementalOperations, FailWithoutACloudWithoutAModelAndWithoutAStart)
{
    const TemporaryFolder folder;
    EXPECT_THAT(RunBatch(folder, {"refine-incremental"}).errors,
                HasSubstr("refine-incremental: there is no model with faces"));
    folder.Write("tetra.obj", kCentredTetra);
    EXPECT_THAT(RunBatch(folder, {"import", "tetra.obj", "refine-incremental"}).errors,
                HasSubstr("tessarine-batch: refine-incremental: cannot open Data/box.txta: "));
    folder.Write("data/box.txta", "4\n1 1 1\n1 -1 -1\n-1 1 -1\n-1 -1 1\n");
    const ProcessResult noStart = RunBatch(folder, {"import", "tetra.obj", "menu", "32828"});
    EXPECT_EQ(noStart.status, 1);
    EXPECT_THAT(noStart.errors, HasSubstr("tessarine-batch: menu: no face of the model has four feet"));
}
