#include "BatchRun.h"
#include "BatchProcess.h"
#include "CommandLine.h"
#include "File.h"
#include "Operations.h"
#include <gmock/gmock.h>

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

TEST_F(BatchRuns, EndAMoveWhereASubdivisionBuildsAnotherModel)
{
    ASSERT_TRUE(Run({"import", "tetra.obj", "menu", "32786"}));
    m_Run.GetWorkbench().GetController().GetElementManager().ToggleSelect(0);
    ASSERT_TRUE(Run({"menu", "32806", "mouse-move", "0", "0", "mouse-move", "10", "0"}));
    ASSERT_TRUE(Run({"subdivide-adaptive", "0"}));
    const std::string before = Dump();
    EXPECT_TRUE(Run({"right-down", "1", "1"})); // nothing to take back
    EXPECT_EQ(Dump(), before);
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
