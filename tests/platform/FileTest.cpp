#include "File.h"
#include "FileSizeLimit.h"
#include "TemporaryFolder.h"
#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tessarine
{
namespace
{
namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

template <class TAction>
std::string FaultOf(TAction action)
{
    try
    {
        action();
    }
    catch (const FileError& error)
    {
        return error.what();
    }
    return "no fault";
}

std::string FaultOfReading(const fs::path& path)
{
    return FaultOf([&] { ReadFile(path); });
}

void Replace(const fs::path& path, std::string_view bytes)
{
    ReplacingFile file(path);
    file.Write(bytes);
    file.Commit();
}

/// A user who has to ask for permission, also where the tests are run by one who need not.
class OrdinaryUser
{
public:
    explicit OrdinaryUser(const TemporaryFolder& folder)
    {
        if (m_nBefore == 0 && ::chown(folder.GetPath().c_str(), kNobody, kNobody) == 0)
        {
            EXPECT_EQ(::seteuid(kNobody), 0);
        }
    }
    ~OrdinaryUser() { EXPECT_EQ(::seteuid(m_nBefore), 0); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    static constexpr uid_t kNobody = 65534;
    uid_t m_nBefore = ::geteuid();
};

}

TEST(ReadFile, GivesEveryByteOfAFile)
{
    const TemporaryFolder folder;
    const std::string bytes("a\0b\r\n\xFF", 6);
    EXPECT_EQ(ReadFile(folder.Write("some.bin", bytes)), bytes);
}

TEST(ReadFile, GivesAnEmptyFileAsNothing)
{
    const TemporaryFolder folder;
    EXPECT_EQ(ReadFile(folder.Write("empty", "")), "");
}

TEST(ReadFile, ReadsAFileOfManyChunks)
{
    const TemporaryFolder folder;
    std::string bytes;
    for (int i = 0; i < 400000; ++i)
    {
        bytes += std::to_string(i);
    }
    EXPECT_EQ(ReadFile(folder.Write("large", bytes)), bytes);
}

TEST(ReadFile, ReadsAFileThatClaimsToBeEmpty)
{
    EXPECT_THAT(ReadFile("/proc/self/status"), HasSubstr("Pid:"));
}

TEST(ReadFile, FollowsSymbolicLinks)
{
    const TemporaryFolder folder;
    folder.Write("there", "text");
    fs::create_symlink("there", folder / "link");
    EXPECT_EQ(ReadFile(folder / "link"), "text");
}

TEST(ReadFile, TellsTheWorkingFolderOfAMissingRelativeName)
{
    const TemporaryCurrentFolder folder;
    EXPECT_EQ(FaultOfReading("Data/bunny.txta"),
              "cannot open Data/bunny.txta: no such file (working folder: " + folder.GetPath().string() +
                  ")");
}

TEST(ReadFile, TellsNoWorkingFolderForAnAbsoluteName)
{
    EXPECT_EQ(FaultOfReading("/no/such/file"), "cannot open /no/such/file: no such file");
}

TEST(ReadFile, RefusesAFolder)
{
    const TemporaryFolder folder;
    EXPECT_THAT(FaultOfReading(folder.GetPath()), EndsWith(": it is a folder"));
}

TEST(ReadFile, RefusesADevice)
{
    EXPECT_EQ(FaultOfReading("/dev/zero"), "cannot open /dev/zero: it is no ordinary file");
}

TEST(ReadFile, RefusesAPipeWithoutWaitingForAWriter)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_THAT(FaultOfReading(folder / "pipe"), EndsWith(": it is no ordinary file"));
}

TEST(ReadFile, RefusesAnEmptyName)
{
    EXPECT_EQ(FaultOfReading(""), "cannot open a file without a name");
}

TEST(ReadFile, RefusesANameThatIsTooLong)
{
    EXPECT_THAT(FaultOfReading("/" + std::string(5000, 'x')), EndsWith(": its name is too long"));
}

TEST(ReadFile, RefusesLinksThatFormACircle)
{
    const TemporaryFolder folder;
    fs::create_symlink("b", folder / "a");
    fs::create_symlink("a", folder / "b");
    EXPECT_THAT(FaultOfReading(folder / "a"), EndsWith(": its symbolic links form a circle"));
}

TEST(ReadFile, RefusesAFileWithoutPermission)
{
    const TemporaryFolder folder;
    const OrdinaryUser user(folder);
    const fs::path path = folder.Write("secret", "x");
    fs::permissions(path, fs::perms::none);
    EXPECT_THAT(FaultOfReading(path), EndsWith(": permission denied"));
}

TEST(ReadFile, TellsOfAnErrorWhileItReads)
{
    // Nothing is mapped at address 0 of a process.
    EXPECT_THAT(FaultOfReading("/proc/self/mem"), StartsWith("cannot read /proc/self/mem: "));
}

TEST(ReadFile, RefusesAFileThatCannotFitInMemory)
{
    const TemporaryFolder folder;
    const fs::path path = folder.Write("hole", "");
    std::error_code error;
    fs::resize_file(path, std::uintmax_t{1} << 42U, error);
    if (error)
    {
        GTEST_SKIP() << "this disk has no files with holes";
    }
    EXPECT_THAT(FaultOfReading(path), EndsWith(": it does not fit in the memory of this machine"));
}

TEST(ReadFile, RefusesAFileThatGoesOnBeyondItsSize)
{
    // It tells a size of 0 and gives eight bytes for each page that an address can name.
    const char* const endless = "/proc/self/pagemap";
    if (!fs::exists(endless))
    {
        GTEST_SKIP() << "this system has no ordinary file without an end";
    }
    EXPECT_EQ(
        FaultOfReading(endless),
        "cannot read /proc/self/pagemap: it gives more than 64 MiB, and more than the size that it tells");
}

TEST(ReadFile, TakesWhatItReadsFromABudget)
{
    const TemporaryFolder folder;
    const fs::path path = folder.Write("file", "12345");
    ReadBudget budget{11, "the files have more than 11 bytes"};
    EXPECT_EQ(ReadFile(path, budget), "12345");
    EXPECT_EQ(ReadFile(path, budget), "12345");
    EXPECT_EQ(budget.left, 1U);
    EXPECT_EQ(FaultOf([&] { ReadFile(path, budget); }),
              "cannot read " + path.string() + ": the files have more than 11 bytes");
    EXPECT_EQ(budget.left, 1U); // its size told, so nothing of it was read
    EXPECT_EQ(ReadFile(folder.Write("smaller", "6"), budget), "6");
}

TEST(ReadFile, TakesFromABudgetWhatItReadsOfAFileThatItRefuses)
{
    const char* const unsized = "/proc/self/status"; // tells a size of 0
    ReadBudget budget{10, "too much"};
    EXPECT_EQ(FaultOf([&] { ReadFile(unsized, budget); }), "cannot read /proc/self/status: too much");
    EXPECT_EQ(budget.left, 0U);
}

TEST(ReadFile, DoesNotLookForAFileWhenItsBudgetIsSpent)
{
    ReadBudget budget{0, "too much"};
    EXPECT_EQ(FaultOf([&] { ReadFile("/no/such/file", budget); }), "cannot read /no/such/file: too much");
}

TEST(ReadStream, GivesEveryByteOfAFile)
{
    const TemporaryFolder folder;
    EXPECT_EQ(ReadStream(folder.Write("file", std::string("a\0b\n", 4))), std::string("a\0b\n", 4));
}

TEST(ReadStream, WaitsForTheWriterOfAPipe)
{
    const TemporaryFolder folder;
    const std::string name = (folder / "pipe").string();
    ASSERT_EQ(::mkfifo(name.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(name) << "first" << std::flush << "second"; });
    EXPECT_EQ(ReadStream(name), "firstsecond");
    writer.join();
}

TEST(ReadStream, RefusesWhatHasNoEnd)
{
    EXPECT_EQ(FaultOf([] { ReadStream("/dev/zero"); }), "cannot read /dev/zero: it gives more than 64 MiB");
}

TEST(ReadStream, RefusesAFolderAndWhatIsMissing)
{
    const TemporaryFolder folder;
    EXPECT_THAT(FaultOf([&] { ReadStream(folder.GetPath()); }), EndsWith(": it is a folder"));
    EXPECT_THAT(FaultOf([&] { ReadStream(folder / "none"); }), EndsWith(": no such file"));
}

TEST(ReplacingFile, AppearsUnderItsNameOnlyWhenCommitted)
{
    const TemporaryFolder folder;
    ReplacingFile file(folder / "out");
    file.Write("some ");
    file.Write("text");
    EXPECT_FALSE(fs::exists(folder / "out"));
    file.Commit();
    EXPECT_EQ(ReadFile(folder / "out"), "some text");
    EXPECT_THAT(folder.List(), ElementsAre("out"));
}

TEST(ReplacingFile, LeavesTheOlderFileAndNothingElseWithoutCommit)
{
    const TemporaryFolder folder;
    folder.Write("out", "old");
    {
        ReplacingFile file(folder / "out");
        file.Write("new");
    }
    EXPECT_EQ(ReadFile(folder / "out"), "old");
    EXPECT_THAT(folder.List(), ElementsAre("out"));
}

TEST(ReplacingFile, WritesManyChunksWhole)
{
    const TemporaryFolder folder;
    std::string expected;
    {
        ReplacingFile file(folder / "out");
        for (int i = 0; i < 300000; ++i)
        {
            const std::string piece = "piece " + std::to_string(i) + "\n";
            file.Write(piece);
            expected += piece;
        }
        file.Write(expected);
        file.Commit();
    }
    EXPECT_EQ(ReadFile(folder / "out"), expected + expected);
}

TEST(ReplacingFile, KeepsThePermissionsOfTheFileItReplaces)
{
    const TemporaryFolder folder;
    fs::permissions(folder.Write("out", "old"), fs::perms(0664)); // the group's bit is one that a mask takes
    Replace(folder / "out", "new");
    EXPECT_EQ(fs::status(folder / "out").permissions(), fs::perms(0664));
}

TEST(ReplacingFile, GivesANewFileThePermissionsOfTheMask)
{
    const TemporaryFolder folder;
    const mode_t before = ::umask(027);
    Replace(folder / "out", "new");
    ::umask(before);
    EXPECT_EQ(fs::status(folder / "out").permissions(), fs::perms(0640));
}

TEST(ReplacingFile, ReplacesTheFileBehindALink)
{
    const TemporaryFolder folder;
    folder.Write("real/out", "old");
    fs::create_symlink("real/out", folder / "first");
    fs::create_symlink("first", folder / "second");
    Replace(folder / "second", "new");
    EXPECT_TRUE(fs::is_symlink(folder / "second"));
    EXPECT_TRUE(fs::is_symlink(folder / "first"));
    EXPECT_EQ(ReadFile(folder / "real/out"), "new");
}

TEST(ReplacingFile, MakesTheFileThatALinkPromises)
{
    const TemporaryFolder folder;
    fs::create_symlink("later", folder / "link");
    Replace(folder / "link", "new");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(ReadFile(folder / "later"), "new");
}

TEST(ReplacingFile, GoesWhereItsNameLedWhenItWasMade)
{
    const TemporaryFolder folder;
    const CurrentFolderGuard guard;
    SetCurrentFolder(folder.GetPath());
    ReplacingFile file("out");
    SetCurrentFolder("/");
    file.Write("text");
    file.Commit();
    EXPECT_EQ(ReadFile(folder / "out"), "text");
}

TEST(ReplacingFile, RefusesAFolder)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "sub");
    EXPECT_THAT(FaultOf([&] { ReplacingFile file(folder / "sub"); }), EndsWith("sub: it is a folder"));
    EXPECT_THAT(folder.List(), ElementsAre("sub"));
}

TEST(ReplacingFile, RefusesADevice)
{
    EXPECT_EQ(FaultOf([] { ReplacingFile file("/dev/null"); }),
              "cannot write /dev/null: it is no ordinary file");
}

TEST(ReplacingFile, RefusesAMissingFolder)
{
    const TemporaryFolder folder;
    EXPECT_THAT(FaultOf([&] { ReplacingFile file(folder / "no/out"); }), EndsWith("no/out: no such folder"));
}

TEST(ReplacingFile, RefusesANameThatIsTooLong)
{
    const TemporaryFolder folder;
    EXPECT_THAT(FaultOf([&] { Replace(folder / std::string(300, 'x'), "new"); }),
                EndsWith(": its name is too long"));
    EXPECT_TRUE(folder.List().empty());
}

TEST(ReplacingFile, TakesANameOfTheGreatestLength)
{
    const TemporaryFolder folder;
    const std::string name(255, 'x');
    Replace(folder / name, "new");
    EXPECT_EQ(ReadFile(folder / name), "new");
}

TEST(ReplacingFile, RefusesNoNameAtAll)
{
    EXPECT_EQ(FaultOf([] { ReplacingFile file(""); }), "cannot write a file without a name");
    EXPECT_EQ(FaultOf([] { ReplacingFile file("/"); }), "cannot write /: it names no file");
}

TEST(ReplacingFile, RefusesLinksThatFormACircle)
{
    const TemporaryFolder folder;
    fs::create_symlink("b", folder / "a");
    fs::create_symlink("a", folder / "b");
    EXPECT_THAT(FaultOf([&] { ReplacingFile file(folder / "a"); }),
                EndsWith(": its symbolic links form a circle"));
}

TEST(ReplacingFile, RefusesAFileThatTheUserMayNotWrite)
{
    const TemporaryFolder folder;
    const OrdinaryUser user(folder);
    const fs::path path = folder.Write("out", "old");
    fs::permissions(path, fs::perms::owner_read);
    EXPECT_THAT(FaultOf([&] { ReplacingFile file(path); }), EndsWith(": permission denied"));
}

TEST(ReplacingFile, RefusesAFolderThatTheUserMayNotWrite)
{
    const TemporaryFolder folder;
    const OrdinaryUser user(folder);
    fs::create_directory(folder / "closed");
    fs::permissions(folder / "closed", fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_THAT(FaultOf([&] { ReplacingFile file(folder / "closed/out"); }),
                EndsWith(": permission denied in its folder"));
}

TEST(ReplacingFile, LeavesTheOlderFileWhenTheDiskIsFull)
{
    const TemporaryFolder folder;
    folder.Write("out", "old");
    {
        const FileSizeLimit limit(1000);
        EXPECT_THAT(FaultOf([&] { Replace(folder / "out", std::string(5000000, 'x')); }),
                    StartsWith("cannot write "));
        EXPECT_THAT(FaultOf([&] { Replace(folder / "out", std::string(2000, 'x')); }),
                    EndsWith(": it would exceed the largest size of a file"));
    }
    EXPECT_EQ(ReadFile(folder / "out"), "old");
    EXPECT_THAT(folder.List(), ElementsAre("out"));
}

TEST(ReplacingFile, LeavesNothingWhenTheTargetBecameAFolder)
{
    const TemporaryFolder folder;
    {
        ReplacingFile file(folder / "out");
        fs::create_directory(folder / "out");
        EXPECT_THAT(FaultOf([&] { file.Commit(); }), EndsWith(": it is a folder"));
    }
    EXPECT_THAT(folder.List(), ElementsAre("out"));
}

TEST(ReplacingFile, WritesTwoFilesOfOneFolderAtOnce)
{
    const TemporaryFolder folder;
    ReplacingFile first(folder / "first");
    ReplacingFile second(folder / "second");
    first.Write("1");
    second.Write("2");
    second.Commit();
    first.Commit();
    EXPECT_EQ(ReadFile(folder / "first") + ReadFile(folder / "second"), "12");
}

TEST(ListFolder, NamesWhatIsThere)
{
    const TemporaryFolder folder;
    folder.Write("a", "");
    folder.Write("b/c", "");
    folder.Write(".hidden", "");
    std::vector<std::string> names;
    EXPECT_TRUE(ListFolder(folder.GetPath(), names));
    EXPECT_THAT(names, UnorderedElementsAre("a", "b", ".hidden"));
    EXPECT_FALSE(ListFolder(folder / "missing", names));
    EXPECT_FALSE(ListFolder(folder / "a", names));
}

TEST(RemoveTree, TakesAllThatIsInAFolderAndFollowsNoLink)
{
    const TemporaryFolder folder;
    folder.Write("kept/file", "bytes");
    folder.Write("gone/deep/file", "bytes");
    fs::create_directory_symlink(folder / "kept", folder / "gone/link");
    RemoveTree(folder / "gone");
    EXPECT_THAT(folder.List(), ElementsAre("kept"));
    EXPECT_EQ(folder.Read("kept/file"), "bytes");
    RemoveTree(folder / "missing");
}

TEST(FlushToDisk, TakesFilesAndFoldersThatAreThere)
{
    const TemporaryFolder folder;
    FlushToDisk(folder.Write("file", "bytes"));
    FlushToDisk(folder.GetPath());
    EXPECT_THAT(FaultOf([&] { FlushToDisk(folder / "missing"); }), EndsWith("missing: no such file"));
}

TEST(CurrentFolder, IsRestoredByItsGuard)
{
    const TemporaryFolder folder;
    const fs::path before = GetCurrentFolder();
    {
        const CurrentFolderGuard guard;
        SetCurrentFolder(folder.GetPath());
        EXPECT_EQ(GetCurrentFolder(), folder.GetPath());
    }
    EXPECT_EQ(GetCurrentFolder(), before);
}

TEST(CurrentFolder, IsRestoredAlsoWhereItWasMovedOrRemoved)
{
    const TemporaryFolder folder;
    const CurrentFolderGuard home;
    fs::create_directory(folder / "before");
    SetCurrentFolder(folder / "before");
    {
        const CurrentFolderGuard guard;
        SetCurrentFolder("/");
        fs::rename(folder / "before", folder / "after");
    }
    EXPECT_EQ(GetCurrentFolder(), folder / "after");
    fs::remove(folder / "after");
    {
        const CurrentFolderGuard guard;
        SetCurrentFolder("/");
    }
    EXPECT_THAT(FaultOf([] { GetCurrentFolder(); }), HasSubstr("it was removed"));
}

TEST(CurrentFolder, IsNotOneThatIsMissing)
{
    EXPECT_EQ(FaultOf([] { SetCurrentFolder("/no/such/folder"); }),
              "cannot enter the folder /no/such/folder: no such folder");
}

TEST(CurrentFolder, IsToldToBeGoneWhenItWasRemoved)
{
    const CurrentFolderGuard guard;
    {
        const TemporaryFolder folder;
        SetCurrentFolder(folder.GetPath());
    }
    EXPECT_EQ(FaultOf([] { GetCurrentFolder(); }),
              "cannot tell the current folder: it was removed; start from another one");
    EXPECT_EQ(FaultOfReading("x"), "cannot open x: no such file");
}

TEST(ReplacingFile, LeavesNothingBehindWhenASignalEndsTheProgram)
{
    const TemporaryFolder folder;
    const pid_t child = ::fork();
    if (child == 0)
    {
        RemoveTemporaryFilesOnSignals();
        ReplacingFile file(folder / "out");
        file.Write("half of it");
        ReplacingFile second(folder / "second");
        ReplacingFile(folder / "third").Write("given up");
        ::raise(SIGTERM);
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    EXPECT_TRUE(fs::is_empty(folder.GetPath()));
}

TEST(ReplacingFile, RefusesTheStreamsOfAProcess)
{
    for (const char* name : {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1", "/dev/../dev/stderr"})
    {
        EXPECT_THAT(FaultOf([&] { ReplacingFile file(name); }),
                    HasSubstr("an operation that can print what it makes does so for the name -"));
    }
    const TemporaryFolder folder;
    fs::create_symlink("/dev/stdout", folder / "link");
    EXPECT_THAT(FaultOf([&] { ReplacingFile file(folder / "link"); }),
                EndsWith("link: it is no ordinary file; an operation that can print what it makes does so "
                         "for the name -"));
    const CurrentFolderGuard guard;
    SetCurrentFolder("/dev");
    EXPECT_THAT(FaultOf([] { ReplacingFile file("stdout"); }),
                HasSubstr("an operation that can print what it makes does so for the name -"));
}

TEST(CurrentFolderGuard, RefusesAFolderThatCouldNotBeEnteredAgain)
{
    const TemporaryFolder folder;
    const CurrentFolderGuard home;
    const OrdinaryUser user(folder);
    fs::create_directory(folder / "closed");
    SetCurrentFolder(folder / "closed");
    fs::permissions(folder / "closed", fs::perms::none);
    EXPECT_THAT(FaultOf([] { const CurrentFolderGuard guard; }),
                HasSubstr("permission denied; start from another one"));
    fs::permissions(folder / "closed", fs::perms::owner_all);
}
}
