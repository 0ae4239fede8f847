#include "UserWorkspace.h"
#include "TemporaryFolder.h"
#include <filesystem>
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
namespace fs = std::filesystem;

class UserWorkspace : public testing::Test
{
protected:
    fs::path GetDocuments() { return m_Folder / "home" / "documents"; }
    QString GetName() { return QString::fromStdString(GetDocuments().string()); }

    TemporaryCurrentFolder m_Folder;
};

TEST_F(UserWorkspace, IsEnteredAsItStands)
{
    fs::create_directories(GetDocuments() / "Tessarine");
    EnterUserWorkspace(GetName());
    EXPECT_TRUE(fs::equivalent(fs::current_path(), GetDocuments() / "Tessarine"));
    EXPECT_TRUE(fs::is_empty(fs::current_path()));
}

TEST_F(UserWorkspace, LeavesTheCurrentFolderWhereItCannotBeMade)
{
    m_Folder.Write("home", "no folder");
    const fs::path before = fs::current_path();
    EXPECT_THROW(EnterUserWorkspace(GetName()), fs::filesystem_error);
    EXPECT_EQ(fs::current_path(), before);
}

TEST_F(UserWorkspace, IsMadeWithTheSamplesOnFirstUse)
{
    EnterUserWorkspace(GetName(), {.coarseness = 8.0, .imageWidth = 20, .imageHeight = 15});
    EXPECT_TRUE(fs::equivalent(fs::current_path(), GetDocuments() / "Tessarine"));
    EXPECT_TRUE(fs::exists("bunny.obj"));
    EXPECT_TRUE(fs::exists("data/bunny/param.dat"));
    const auto inParent = std::distance(fs::directory_iterator(GetDocuments()), fs::directory_iterator());
    EXPECT_EQ(inParent, 1); // nothing is left of the making
}
}
}
