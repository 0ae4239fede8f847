#include "FileLock.h"
#include "TemporaryFolder.h"
#include <csignal>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessarine
{
namespace
{
TEST(FileLock, IsHeldByOneAtATime)
{
    const TemporaryFolder folder;
    auto first = FileLock::Take(folder / "lock");
    ASSERT_TRUE(first);
    EXPECT_FALSE(FileLock::Take(folder / "lock"));
    const FileLock moved = std::move(*first);
    first.reset();
    EXPECT_FALSE(FileLock::Take(folder / "lock"));
}

TEST(FileLock, EndsWithItsHolder)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(FileLock::Take(folder / "lock"));
    EXPECT_TRUE(FileLock::Take(folder / "lock"));
}

TEST(FileLock, EndsWithAKilledProcess)
{
    const TemporaryFolder folder;
    const pid_t child = ::fork();
    if (child == 0)
    {
        const auto lock = FileLock::Take(folder / "lock");
        ::raise(lock ? SIGKILL : SIGTERM);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(WTERMSIG(status), SIGKILL);
    EXPECT_TRUE(FileLock::Take(folder / "lock"));
}

TEST(FileLock, IsNotHadWhereNoFileCanBe)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(FileLock::Take(folder / "missing/lock"));
    EXPECT_FALSE(FileLock::Take(folder.GetPath()));
}

TEST(FileLock, NeitherFollowsALinkNorWaitsForAPipe)
{
    const TemporaryFolder folder;
    std::filesystem::create_symlink("/dev/null", folder / "link");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(FileLock::Take(folder / "link"));
    EXPECT_FALSE(FileLock::Take(folder / "pipe"));
}
}
}
