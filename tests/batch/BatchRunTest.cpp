#include "BatchRun.h"
#include "BatchProcess.h"
#include "CommandLine.h"
#include "File.h"
#include "Operations.h"
#include <gmock/gmock.h>
#include <map>
#include <sstream>

using namespace tessarine;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{
/// A quiet run in a folder of its own.
class BatchRuns : public testing::Test
{
protected:
    BatchRuns() : m_Run(Quiet())
    {
        SetCurrentFolder(m_Folder.GetPath());
        m_Folder.Write("tetra.obj", kTetrahedron);
    }

    bool Run(const std::vector<std::string>& words) { return m_Run.RunAll(ParseOperations(words)); }

    std::string Dump()
    {
        EXPECT_TRUE(Run({"dump", "dump.json"}));
        return m_Folder.Read("dump.json");
    }

    static BatchOptions Quiet()
    {
        BatchOptions options;
        options.quiet = true;
        return options;
    }

    CurrentFolderGuard m_FolderBefore;
    TemporaryFolder m_Folder;
    BatchRun m_Run;
};
}

TEST_F(BatchRuns, LeaveTheModelAsItWasWhenAnImportFails)
{
    m_Folder.Write("bad.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 9\n");
    ASSERT_TRUE(Run({"import", "tetra.obj", "subdivide-loop"}));
    const std::string before = Dump();
    ASSERT_THAT(before, Not(IsEmpty()));

    EXPECT_FALSE(Run({"import", "bad.obj"}));
    EXPECT_EQ(Dump(), before);
    EXPECT_FALSE(Run({"import", "missing.obj"}));
    EXPECT_EQ(Dump(), before);
    EXPECT_FALSE(Run({"import", "tetra.stl"}));
    EXPECT_EQ(Dump(), before);
}

TEST_F(BatchRuns, LeaveTheModelAsItWasWhenAnOperationCannotRun)
{
    ASSERT_TRUE(Run({"import", "tetra.obj"}));
    const std::string before = Dump();

    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"generate-splats"},
                                               {"menu", "57643"},
                                               {"menu", "1"},
                                               {"export", "a.stl"},
                                               {"export", "missing/a.obj"}})
    {
        EXPECT_FALSE(Run(words)) << words[0];
        EXPECT_EQ(Dump(), before) << words[0];
    }
}

TEST_F(BatchRuns, RunNothingBehindAFailure)
{
    EXPECT_FALSE(Run({"import", "tetra.obj", "import", "missing.obj", "export", "out.obj"}));
    EXPECT_FALSE(m_Folder.Has("out.obj"));
}

TEST_F(BatchRuns, StayInTheirFolder)
{
    m_Folder.Write("below/model.obj", kTetrahedron);

    EXPECT_TRUE(Run({"import", "below/model.obj", "export", "below/out.obj"}));
    EXPECT_EQ(GetCurrentFolder(), m_Folder.GetPath());
    EXPECT_TRUE(m_Folder.Has("below/out.obj"));
    EXPECT_FALSE(Run({"import", "below/missing.obj"}));
    EXPECT_EQ(GetCurrentFolder(), m_Folder.GetPath());
}

TEST(BatchOperations, LookAtFramesWherePicturesOrTexturesAreAskedFor)
{
    const auto looks = [](const char* name, const char* argument)
    { return LooksAtFrames(*FindOperation(name), {argument}); };
    EXPECT_TRUE(looks("render", "a.png"));
    EXPECT_TRUE(looks("menu", "32792"));
    EXPECT_FALSE(looks("menu", "32779"));
    EXPECT_FALSE(looks("import", "a.obj"));
}

/// A word of each form that the operation behind it may be given, if an unusual one.
std::string GetWordFor(const std::string& form)
{
    static const std::map<std::string, std::string> kWords = {
        {"AREA", "1e-3"}, {"RATIO", "0.5"}, {"MODE", "2"}, {"LEVEL", "-0.5"}, {"N|all", "all"},
        {"NMAX", "3"},    {"FACE", "0"},    {"ITOL", "5"}, {"TOL", "+1e-7"},  {"ITMAX", "1"},
        {"ID", "0"},      {"X", "-1"},      {"Y", "+1"},   {"V", "0.25"},     {"W", "0.5"}};
    const auto word = kWords.find(form);
    return word != kWords.end() ? word->second : "a.txt";
}

std::vector<std::string> GetWordsFor(const Operation& operation)
{
    std::vector<std::string> words{std::string(operation.name)};
    std::string forms(operation.arguments);
    std::erase_if(forms, [](char letter) { return letter == '[' || letter == ']'; });
    std::istringstream stream(forms);
    for (std::string form; stream >> form;)
    {
        words.push_back(GetWordFor(form));
    }
    return words;
}

TEST(BatchOperations, OfALaterVersionAreKnownWithTheirArgumentsAndFail)
{
    const TemporaryFolder folder;
    for (const Operation& operation : GetOperations())
    {
        if (ComesLater(operation))
        {
            const ProcessResult result = RunBatch(folder, GetWordsFor(operation));
            EXPECT_EQ(result.status, 1) << operation.name;
            EXPECT_THAT(result.errors, HasSubstr("comes with a later version")) << operation.name;
        }
    }
}
