#include "Assert.h"
#include "BatchProcess.h"
#include "TemporaryFolder.h"
#include <charconv>
#include <cmath>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <numeric>
#include <sstream>

namespace tessarine
{
namespace
{
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;

/// A bipyramid over n corners, whose poles have valence n.
std::string MakeSpindle(int n)
{
    std::string text = "v 0 0 1\nv 0 0 -1\n";
    for (int i = 0; i < n; ++i)
    {
        const double angle = 2.0 * 3.14159265358979 * i / n;
        text += "v " + std::to_string(std::cos(angle)) + ' ' + std::to_string(std::sin(angle)) + " 0\n";
    }
    for (int i = 0; i < n; ++i)
    {
        const std::string a = std::to_string(3 + i);
        const std::string b = std::to_string(3 + (i + 1) % n);
        text += "f 1 " + a + ' ' + b + "\nf 2 " + b + ' ' + a + '\n';
    }
    return text;
}

std::vector<double> ReadLine(std::istream& stream)
{
    std::string line;
    std::getline(stream, line);
    std::istringstream words(line);
    std::vector<double> numbers;
    for (double number = 0.0; words >> number;)
    {
        numbers.push_back(number);
    }
    return numbers;
}

TEST(LimitPointOperation, PrintsValenceVerticesWeightsAndPoint)
{
    const TemporaryFolder folder;
    folder.Write("spindle.obj", MakeSpindle(7));
    std::filesystem::create_directory(folder.GetPath() / "data");
    const ProcessResult result =
        RunBatch(folder, {"-q", "make-eigen-table", "data/lpdata50NT.dat", "7", "import", "spindle.obj",
                          "subdivide-loop", "limit-point", "0", "0.25", "0.25", "dump", "model.json"});
    EXPECT_EQ(result.status, 0) << result.errors;
    std::istringstream stream(result.output);
    EXPECT_EQ(ReadLine(stream), std::vector<double>{7});
    const std::vector<double> ids = ReadLine(stream);
    const std::vector<double> weights = ReadLine(stream);
    const std::vector<double> point = ReadLine(stream);
    EXPECT_EQ(stream.get(), std::char_traits<char>::eof());
    ASSERT_EQ(ids.size(), 13U);
    ASSERT_EQ(weights.size(), 13U);
    ASSERT_EQ(point.size(), 3U);
    EXPECT_NEAR(std::accumulate(weights.begin(), weights.end(), 0.0), 1.0, 1e-12);
    const nlohmann::json dump = nlohmann::json::parse(folder.Read("model.json"));
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        double sum = 0.0;
        for (std::size_t i = 0; i < ids.size(); ++i)
        {
            sum += weights[i] * dump["vertices"][static_cast<std::size_t>(ids[i])]["p"][axis].get<double>();
        }
        EXPECT_NEAR(point[axis], sum, 1e-14);
    }
}

TEST(LimitPointOperation, FailsAndSaysWhy)
{
    const TemporaryFolder folder;
    folder.Write("spindle.obj", MakeSpindle(8));
    folder.Write("open.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    std::filesystem::create_directory(folder.GetPath() / "data");
    const auto reasonOf = [&folder](const std::vector<std::string>& words)
    {
        const ProcessResult result = RunBatch(folder, words);
        EXPECT_EQ(result.status, 1);
        return result.errors;
    };
    EXPECT_THAT(reasonOf({"limit-point", "0", "0.5", "0.5"}), HasSubstr("limit-point: there is no model"));
    const std::vector<std::string> model{"import", "spindle.obj", "subdivide-loop", "limit-point"};
    const auto limitOf = [&](const std::string& face, const std::string& v, const std::string& w)
    {
        std::vector<std::string> words = model;
        words.insert(words.end(), {face, v, w});
        return reasonOf(words);
    };
    EXPECT_THAT(limitOf("0", "0.5", "0.5"), HasSubstr("cannot open data/lpdata50NT.dat: no such file"));
    ASSERT_EQ(RunBatch(folder, {"make-eigen-table", "data/lpdata50NT.dat", "7"}).status, 0);
    EXPECT_THAT(limitOf("0", "0.5", "0.5"), HasSubstr("ends at the valence 7, and 8 is needed"));
    EXPECT_THAT(limitOf("64", "0.5", "0.5"), HasSubstr("the model has no face 64: it has 64"));
    ASSERT_EQ(RunBatch(folder, {"make-eigen-table", "data/lpdata50NT.dat", "8"}).status, 0);
    const auto reportAnd = [](const std::string& report, const std::string& sentence)
    {
        const std::string failure = "tessarine-batch: limit-point: " + sentence;
        return TESSARINE_ASSERTIONS != 0 ? ContainsRegex("Assertion failed: " + report + "[^\n]*\n" + failure)
                                         : ContainsRegex(failure);
    };
    EXPECT_THAT(limitOf("0", "0", "0"), reportAnd("v > 0.0 .. w > 0.0", "there is no point at this V and W"));
    EXPECT_THAT(limitOf("0", "0.5", "1.5"),
                reportAnd("IsParameter.v. && IsParameter.w.", "there is no point at this V and W"));
    EXPECT_THAT(reasonOf({"import", "spindle.obj", "limit-point", "0", "0.5", "0.5"}),
                reportAnd("CountTriangles", "the limit surface of face 0")); // two irregular corners
    EXPECT_THAT(reasonOf({"import", "open.obj", "limit-point", "0", "0.5", "0.5"}),
                reportAnd("pTwin != nullptr", "the limit surface of face 0"));
}

TEST(LimitPointOperation, RefusesATableFromWhichNoPointComes)
{
    const TemporaryFolder folder;
    folder.Write("spindle.obj", MakeSpindle(6));
    std::filesystem::create_directory(folder.GetPath() / "data");
    ASSERT_EQ(RunBatch(folder, {"make-eigen-table", "data/lpdata50NT.dat", "6"}).status, 0);
    std::string table = folder.Read("data/lpdata50NT.dat");
    const double large = 1e308;
    for (std::size_t place = 4; place + 8 <= table.size(); place += 8)
    {
        std::memcpy(table.data() + place, &large, sizeof large);
    }
    folder.Write("data/lpdata50NT.dat", table);
    const ProcessResult result = RunBatch(
        folder, {"-q", "import", "spindle.obj", "subdivide-loop", "limit-point", "0", "0.25", "0.3"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_THAT(result.errors, AllOf(HasSubstr("data/lpdata50NT.dat"), HasSubstr("make a new one")));
}

TEST(MakeEigenTableOperation, WritesTheTableForFiftyValences)
{
    const TemporaryFolder folder;
    const ProcessResult result = RunBatch(folder, {"make-eigen-table", "table.dat"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, IsEmpty());
    // For K from 9 to 56, K + K K + 36 K numbers.
    std::size_t numbers = 0;
    for (std::size_t k = 9; k <= 56; ++k)
    {
        numbers += k + k * k + 36 * k;
    }
    EXPECT_EQ(folder.Read("table.dat").size(), 4 + 8 * numbers);
}

TEST(MakeEigenTableOperation, FailsWhereItCannotWrite)
{
    const TemporaryFolder folder;
    const ProcessResult nowhere = RunBatch(folder, {"make-eigen-table", "none/table.dat", "3"});
    EXPECT_EQ(nowhere.status, 1);
    EXPECT_THAT(nowhere.errors, HasSubstr("cannot write none/table.dat: no such folder"));
    const ProcessResult silly = RunBatch(folder, {"make-eigen-table", "table.dat", "2147483647"});
    EXPECT_EQ(silly.status, 1);
    EXPECT_THAT(silly.errors, HasSubstr("from 3 to 1000, not 2147483647"));
    EXPECT_FALSE(folder.Has("table.dat"));
}

TEST(BuildOctreeOperation, ShowsTheBoxesAndMovesTheModelIntoTheCube)
{
    const TemporaryFolder folder;
    folder.Write("spindle.obj", MakeSpindle(5));
    folder.Write("data/bunny.txta",
                 "12\n0 0 0\n2 0 0\n2 2 0\n0 2 2\n0 0 2\n2 2 2\n0 2 0\n2 0 2\n2 2 2\n2 2 2\n2 2 2\n2 2 2\n");
    const ProcessResult result =
        RunBatch(folder, {"import", "spindle.obj", "build-octree", "menu", "32797", "dump", "model.json"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("点云大小: 12\ntotal face number:12\n"));
    const nlohmann::json view = nlohmann::json::parse(folder.Read("model.json"))["view"];
    EXPECT_EQ(view["pointCloud"][0], nlohmann::json({-1, -1, -1}));
    EXPECT_EQ(view["octree"]["min"], nlohmann::json({-1, -1, -1}));
    EXPECT_EQ(view["octree"]["points"], 12);
    EXPECT_EQ(view["octree"]["children"][0]["points"], 5); // (1, 1, 1)
    EXPECT_EQ(view["octree"]["children"][0]["max"], nlohmann::json({1, 1, 1}));
    EXPECT_EQ(view["octree"]["children"][6]["points"], 1); // (-1, -1, -1)
}

TEST(BuildOctreeOperation, StaysWhereTheOctreeWasWhenItFails)
{
    const TemporaryFolder folder;
    folder.Write("spindle.obj", MakeSpindle(5));
    const ProcessResult result = RunBatch(folder, {"import", "spindle.obj", "build-octree"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors,
                HasSubstr("tessarine-batch: build-octree: cannot open Data/bunny.txta: no such file"));
}

TEST(BuildOctreeOperation, HasNoEntryInTheMenu)
{
    const TemporaryFolder folder;
    const ProcessResult result = RunBatch(folder, {"menu", "32842"});
    EXPECT_EQ(result.status, 1);
}
}
}
