#include "BatchProcess.h"
#include "Meshes.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace tessarine
{
namespace
{
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// A coarse sphere as a model, and the vertices of a fine one as its cloud.
void WriteSphereAndCloud(const TemporaryFolder& folder)
{
    std::string model;
    const IndexedMesh mesh = Sphere(1);
    for (const smVec3d& p : mesh.positions)
    {
        model += "v " + std::to_string(p.x) + ' ' + std::to_string(p.y) + ' ' + std::to_string(p.z) + '\n';
    }
    for (std::size_t i = 0; i < mesh.indices.size(); i += 3)
    {
        model += "f " + std::to_string(mesh.indices[i]) + ' ' + std::to_string(mesh.indices[i + 1]) + ' ' +
                 std::to_string(mesh.indices[i + 2]) + '\n';
    }
    folder.Write("sphere.obj", model);
    const PositionList points = Sphere(4).positions;
    std::string cloud = std::to_string(points.size()) + '\n';
    for (const smVec3d& p : points)
    {
        cloud += std::to_string(p.x) + ' ' + std::to_string(p.y) + ' ' + std::to_string(p.z) + '\n';
    }
    folder.Write("Data/horse.txta", cloud);
}

std::vector<double> AverageErrorsIn(const std::string& console)
{
    constexpr std::string_view name = "Average Error: ";
    std::vector<double> errors;
    for (std::size_t at = console.find(name); at != std::string::npos; at = console.find(name, at + 1))
    {
        errors.push_back(std::stod(console.substr(at + name.size())));
    }
    return errors;
}

TEST(HierarchicalOperations, LeaveANewMeshInTheView)
{
    const TemporaryFolder folder;
    WriteSphereAndCloud(folder);
    const ProcessResult result = RunBatch(
        folder, {"-q", "import", "sphere.obj", "refine-hierarchical", "menu", "32824", "report", "-"});
    EXPECT_EQ(result.status, 0) << result.errors;
    const nlohmann::json report = nlohmann::json::parse(result.output);
    EXPECT_EQ(report["overlays"]["newMesh"], 0xE0000001U);
    EXPECT_EQ(report["overlays"]["pointCloud"], 1026);
    EXPECT_EQ(report["nodes"].size(), 1U); // the dual is in none
    EXPECT_EQ(report["flags"].get<unsigned>() & 0x10000U, 0x10000U);
}

TEST(HierarchicalOperations, FitTheVertices)
{
    const TemporaryFolder folder;
    WriteSphereAndCloud(folder);
    const ProcessResult result = RunBatch(folder, {"import", "sphere.obj", "fit-vertices"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(AverageErrorsIn(result.output).size(), 2U);
    EXPECT_THAT(folder.Read("Data/CheckCofficientMatrix.data"), StartsWith("项: "));
    const std::string feet = folder.Read("Data/CheckFootPoint.data");
    EXPECT_EQ(std::count(feet.begin(), feet.end(), '\n'), 18);
}

TEST(HierarchicalOperations, FitTheLimitSurfaceAndLowerItsError)
{
    const TemporaryFolder folder;
    WriteSphereAndCloud(folder);
    const ProcessResult result = RunBatch(folder, {"make-eigen-table", "Data/lpdata50NT.dat", "6", "import",
                                                   "sphere.obj", "fit-limit-surface"});
    EXPECT_EQ(result.status, 0) << result.errors;
    const std::vector<double> errors = AverageErrorsIn(result.output);
    ASSERT_EQ(errors.size(), 4U);
    EXPECT_LT(errors[3], 0.5 * errors[0]); // the limit of a sphere of 32 faces lies far within
}

TEST(HierarchicalOperations, FailWithoutModelCloudAndTable)
{
    const TemporaryFolder folder;
    for (const char* operation : {"refine-hierarchical", "fit-vertices", "fit-limit-surface"})
    {
        const ProcessResult result = RunBatch(folder, {operation});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.errors, StartsWith("Assertion failed: m_pSolid != nullptr, file "));
        EXPECT_THAT(result.errors,
                    EndsWith("tessarine-batch: " + std::string(operation) +
                             ": there is no model with faces to be fitted to a cloud: import one first\n"));
    }
    WriteSphereAndCloud(folder);
    const ProcessResult table = RunBatch(folder, {"-q", "import", "sphere.obj", "fit-limit-surface"});
    EXPECT_EQ(table.status, 1);
    EXPECT_THAT(table.errors, HasSubstr("lpdata50NT.dat"));
    std::filesystem::remove_all(folder / "Data");
    const ProcessResult cloud = RunBatch(folder, {"-q", "import", "sphere.obj", "refine-hierarchical"});
    EXPECT_EQ(cloud.status, 1);
    EXPECT_THAT(cloud.errors, HasSubstr("cannot open Data/horse.txta"));
}
}
}
