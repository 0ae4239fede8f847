#include "ResourceFolder.h"
#include "TemporaryFolder.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
/// A resource folder for the time of a test.
class ResourceFolderTest : public testing::Test
{
protected:
    ResourceFolderTest() { m_Own.Write("res/Zoom.CUR", "own"); }
    ~ResourceFolderTest() override { SetResourceFolder({}); }

    TemporaryFolder m_Own;
    TemporaryCurrentFolder m_Current;
};
}

TEST_F(ResourceFolderTest, FindsAFileOfTheCurrentFolderFirst)
{
    m_Current.Write("res/Zoom.CUR", "current");
    SetResourceFolder(m_Own.GetPath());
    EXPECT_EQ(ResolveResource("res\\Zoom.CUR"), "res/Zoom.CUR");
}

TEST_F(ResourceFolderTest, FindsAFileOfTheProgramWhereTheCurrentFolderHasNone)
{
    SetResourceFolder(m_Own.GetPath());
    EXPECT_EQ(ResolveResource("res\\Zoom.CUR"), m_Own.GetPath() / "res/Zoom.CUR");
    EXPECT_EQ(ResolveResource("RES\\zoom.cur"), m_Own.GetPath() / "res/Zoom.CUR");
}

TEST_F(ResourceFolderTest, GivesTheNameWhereThereIsNoSuchFile)
{
    EXPECT_EQ(ResolveResource("res\\Zoom.CUR"), "res/Zoom.CUR"); // no folder was set
    SetResourceFolder(m_Own.GetPath());
    EXPECT_EQ(ResolveResource("res\\Move.CUR"), "res/Move.CUR");
    EXPECT_EQ(ResolveResource("/no/such/file"), "/no/such/file");
}

TEST_F(ResourceFolderTest, LiesBesideTheProgramInABuildTree)
{
    EXPECT_EQ(FindResourceFolder(m_Own.GetPath()), m_Own.GetPath());
}

TEST_F(ResourceFolderTest, LiesUnderShareOnceInstalled)
{
    m_Current.Write("bin/program", "");
    m_Current.Write("share/tessarine/res/Zoom.CUR", "");
    EXPECT_EQ(FindResourceFolder(m_Current.GetPath() / "bin"), m_Current.GetPath() / "share/tessarine");
}

TEST_F(ResourceFolderTest, IsNoneWhereTheProgramCameAlone)
{
    EXPECT_EQ(FindResourceFolder(m_Current.GetPath() / "bin"), "");
    EXPECT_EQ(FindResourceFolder(), ""); // this test program has no files of its own
}
}
