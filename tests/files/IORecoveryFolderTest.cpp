#include "IORecoveryFolder.h"
#include "FailingFileCalls.h"
#include "TemporaryFolder.h"
#include <chrono>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/stat.h>

namespace tessarine
{
namespace
{
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

void WriteInto(IORecoveryFolder& folder, const std::string& text)
{
    folder.Replace([&text](const fs::path& path) { std::ofstream(path) << text; });
}

/// One of a process that was killed.
void LeaveBehind(const fs::path& parent, const std::string& text)
{
    IORecoveryFolder folder = IORecoveryFolder::Create(parent);
    WriteInto(folder, text);
}

std::vector<std::string> TextsOf(const std::vector<IORecoveryFolder>& folders)
{
    std::vector<std::string> texts;
    for (const IORecoveryFolder& folder : folders)
    {
        texts.push_back(ReadFile(folder.GetModel()));
    }
    return texts;
}

class RecoveryFolderTest : public testing::Test
{
protected:
    std::vector<IORecoveryFolder> FindAbandoned() { return IORecoveryFolder::FindAbandoned(m_Parent); }
    /// The only entry.
    fs::path GetEntry() { return m_Parent / *m_Folder.List("state/recovery").begin(); }

    TemporaryFolder m_Folder;
    fs::path m_Parent = m_Folder / "state/recovery";
};

TEST_F(RecoveryFolderTest, IsFoundWhenItsHolderIsGone)
{
    LeaveBehind(m_Parent, "model");
    EXPECT_THAT(TextsOf(FindAbandoned()), ElementsAre("model"));
    EXPECT_THAT(TextsOf(FindAbandoned()), ElementsAre("model")); // who looks and does nothing leaves it
}

TEST_F(RecoveryFolderTest, IsLeftAloneWhileItsHolderLives)
{
    IORecoveryFolder folder = IORecoveryFolder::Create(m_Parent);
    EXPECT_THAT(FindAbandoned(), IsEmpty());
    WriteInto(folder, "model");
    EXPECT_THAT(FindAbandoned(), IsEmpty());
    EXPECT_EQ(ReadFile(folder.GetModel()), "model");
}

TEST_F(RecoveryFolderTest, IsFoundByOneWindowAlone)
{
    LeaveBehind(m_Parent, "model");
    const auto found = FindAbandoned();
    EXPECT_THAT(found, SizeIs(1));
    EXPECT_THAT(FindAbandoned(), IsEmpty());
}

TEST_F(RecoveryFolderTest, IsForItsUserAlone)
{
    LeaveBehind(m_Parent, "model");
    struct stat status = {};
    ASSERT_EQ(::stat(GetEntry().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    EXPECT_THAT(GetEntry().filename().string(), StartsWith("window-" + std::to_string(::getpid()) + "-"));
}

TEST_F(RecoveryFolderTest, HoldsTheLastModel)
{
    IORecoveryFolder folder = IORecoveryFolder::Create(m_Parent);
    EXPECT_EQ(folder.GetModel(), "");
    WriteInto(folder, "one");
    WriteInto(folder, "two");
    EXPECT_EQ(ReadFile(folder.GetModel()), "two");
    EXPECT_THAT(m_Folder.List(GetEntry()), ElementsAre("2", "lock"));
}

TEST_F(RecoveryFolderTest, KeepsTheModelBeforeOneThatFails)
{
    IORecoveryFolder folder = IORecoveryFolder::Create(m_Parent);
    const auto fail = [&folder]
    {
        folder.Replace(
            [](const fs::path& path)
            {
                std::ofstream(path) << "half";
                throw std::runtime_error("full");
            });
    };
    EXPECT_THROW(fail(), std::runtime_error);
    EXPECT_EQ(folder.GetModel(), "");
    EXPECT_THAT(m_Folder.List(GetEntry()), ElementsAre("lock"));
    WriteInto(folder, "whole");
    EXPECT_THROW(fail(), std::runtime_error);
    EXPECT_EQ(ReadFile(folder.GetModel()), "whole");
    EXPECT_THAT(m_Folder.List(GetEntry()), ElementsAre("1", "lock"));
}

TEST_F(RecoveryFolderTest, GoesOnWhereAKilledProcessStopped)
{
    LeaveBehind(m_Parent, "old");
    fs::create_directory(GetEntry() / "2.part");
    std::ofstream(GetEntry() / "2.part" / "recovered.obj") << "half";
    auto found = FindAbandoned();
    EXPECT_THAT(TextsOf(found), ElementsAre("old"));
    WriteInto(found[0], "new");
    EXPECT_EQ(ReadFile(found[0].GetModel()), "new");
    EXPECT_THAT(m_Folder.List(GetEntry()), ElementsAre("2", "lock"));
}

TEST_F(RecoveryFolderTest, TakesTheLaterOfTwoModelsThatAreWhole)
{
    LeaveBehind(m_Parent, "old"); // killed behind the renaming, before the older one went
    fs::create_directory(GetEntry() / "10");
    std::ofstream(GetEntry() / "10" / "recovered.obj") << "new";
    EXPECT_THAT(TextsOf(FindAbandoned()), ElementsAre("new"));
    EXPECT_THAT(m_Folder.List(GetEntry()), ElementsAre("10", "lock"));
}

TEST_F(RecoveryFolderTest, IsRemovedWithoutAModel)
{
    IORecoveryFolder::Create(m_Parent);
    fs::create_directory(GetEntry() / "1.part");
    EXPECT_THAT(FindAbandoned(), IsEmpty());
    EXPECT_THAT(m_Folder.List("state/recovery"), IsEmpty());
}

TEST_F(RecoveryFolderTest, IsGoneOnceRemoved)
{
    LeaveBehind(m_Parent, "model");
    FindAbandoned()[0].Remove();
    EXPECT_THAT(FindAbandoned(), IsEmpty());
    EXPECT_THAT(m_Folder.List("state/recovery"), IsEmpty());
}

TEST_F(RecoveryFolderTest, ComesTheLatestFirst)
{
    for (const char* text : {"old", "new", "older"})
    {
        LeaveBehind(m_Parent, text);
    }
    const auto now = fs::file_time_type::clock::now();
    for (const fs::directory_entry& entry : fs::directory_iterator(m_Parent))
    {
        const fs::path model = entry.path() / "1/recovered.obj";
        const std::string text = ReadFile(model);
        const int age = text == "new" ? 1 : text == "old" ? 2 : 3;
        fs::last_write_time(model, now - std::chrono::hours(age));
    }
    const auto found = FindAbandoned();
    EXPECT_THAT(TextsOf(found), ElementsAre("new", "old", "older"));
    EXPECT_EQ(found[0].GetTime(), now - std::chrono::hours(1));
}

TEST_F(RecoveryFolderTest, PassesOverWhatIsNotItsOwn)
{
    m_Folder.Write("state/recovery/window-1-abcdef", "a file");
    m_Folder.Write("elsewhere/1/recovered.obj", "not to be touched");
    m_Folder.Write("state/recovery/other/1/recovered.obj", "another program's");
    fs::create_directory_symlink(m_Folder / "elsewhere", m_Parent / "window-2-abcdef");
    EXPECT_THAT(FindAbandoned(), IsEmpty());
    EXPECT_THAT(m_Folder.List("state/recovery"), ElementsAre("other", "window-1-abcdef", "window-2-abcdef"));
    EXPECT_THAT(m_Folder.List("elsewhere"), ElementsAre("1"));
}

TEST_F(RecoveryFolderTest, RemovesNothingThatSomebodyElseHasPutThere)
{
    m_Folder.Write("state/recovery/window-1-photos/a.jpg", "not a model");
    EXPECT_THAT(FindAbandoned(), IsEmpty());
    EXPECT_EQ(ReadFile(m_Parent / "window-1-photos/a.jpg"), "not a model");
    fs::remove_all(m_Parent / "window-1-photos");
    for (const char* other :
         {"window-photos/2024/a.jpg", "window-1-holidays/1/a.jpg", "window-x-photos/1/a.jpg"})
    {
        m_Folder.Write(fs::path("state/recovery") / other, "not a model");
        EXPECT_THAT(FindAbandoned(), IsEmpty());
        EXPECT_EQ(ReadFile(m_Parent / other), "not a model");
    }
    fs::remove_all(m_Parent);

    LeaveBehind(m_Parent, "model");
    std::ofstream(GetEntry() / "notes.txt") << "mine";
    EXPECT_THAT(TextsOf(FindAbandoned()), ElementsAre("model"));
    EXPECT_EQ(ReadFile(GetEntry() / "notes.txt"), "mine");
    FindAbandoned()[0].Remove();
    EXPECT_THAT(m_Folder.List(GetEntry()), ElementsAre("lock", "notes.txt"));
    EXPECT_THAT(GetEntry().filename().string(), StartsWith(".window-"));
    EXPECT_THAT(FindAbandoned(), IsEmpty());
}

TEST_F(RecoveryFolderTest, RemovesNothingOfSomebodyElseWhateverFailsInLooking)
{
    const auto isKept = [this](const fs::path& name, fs::file_time_type time)
    {
        const fs::path folder = m_Parent / name;
        fs::create_directories(folder);
        std::ofstream(folder / "a.jpg") << "not a model";
        bool hasFailed = true;
        for (long spared = 0; hasFailed; ++spared)
        {
            fs::last_write_time(folder, time);
            {
                const InjectedFault fault(GetFileCallPlan(), spared, FaultMode::Once);
                FindAbandoned();
                hasFailed = GetFileCallPlan().HasFailed();
            }
            if (!fs::exists(folder / "a.jpg"))
            {
                return testing::AssertionFailure() << "gone, call " << spared;
            }
        }
        return testing::AssertionSuccess();
    };
    const auto now = fs::file_time_type::clock::now();
    EXPECT_TRUE(isKept("window-1-photos", now));
    EXPECT_TRUE(isKept(".window-1-photos", now - std::chrono::hours(2)));
}

/// One who removes it is killed behind its renaming and so many further calls.
bool IsFoundBehindARemovalOf(const fs::path& parent, long calls)
{
    {
        auto found = IORecoveryFolder::FindAbandoned(parent);
        const InjectedFault fault(GetFileCallPlan(), 1 + calls, FaultMode::FromThenOn);
        found.at(0).Remove();
    }
    return !IORecoveryFolder::FindAbandoned(parent).empty();
}

TEST_F(RecoveryFolderTest, IsNotFoundWhereItsRemovalStopped)
{
    for (const char* foreign : {"", "notes.txt"})
    {
        bool hasFailed = true;
        for (long calls = 0; hasFailed; ++calls)
        {
            LeaveBehind(m_Parent, "model");
            std::ofstream(GetEntry() / foreign) << "mine";
            EXPECT_FALSE(IsFoundBehindARemovalOf(m_Parent, calls)) << calls;
            hasFailed = GetFileCallPlan().HasFailed();
            fs::remove_all(m_Parent);
        }
    }
}

TEST_F(RecoveryFolderTest, SurvivesALossOfPowerAsSoonAsItIsMade)
{
    const FlushLog log;
    const IORecoveryFolder folder = IORecoveryFolder::Create(m_Parent);
    EXPECT_THAT(log.GetLines(),
                ElementsAre("fsync " + (m_Folder / "state").string(), "fsync " + m_Folder.GetPath().string(),
                            "rename " + GetEntry().string(), "fsync " + m_Parent.string()));
}

TEST_F(RecoveryFolderTest, IsWhollyMadeOrNotAtAllWhateverCallFails)
{
    for (long spared = 0;; ++spared)
    {
        bool isMade = true;
        try
        {
            const InjectedFault fault(GetFileCallPlan(), spared, FaultMode::Once);
            IORecoveryFolder::Create(m_Parent);
        }
        catch (const FileError&)
        {
            isMade = false;
        }
        if (fs::exists(m_Parent))
        {
            EXPECT_THAT(m_Folder.List("state/recovery"), SizeIs(isMade ? 1 : 0)) << spared;
        }
        EXPECT_TRUE(isMade || GetFileCallPlan().HasFailed());
        if (!GetFileCallPlan().HasFailed())
        {
            break;
        }
        fs::remove_all(m_Folder / "state");
    }
}

TEST_F(RecoveryFolderTest, KeepsItsModelWhateverCallFailsWhileItIsLookedFor)
{
    LeaveBehind(m_Parent, "model");
    for (const FaultMode mode : {FaultMode::Once, FaultMode::FromThenOn})
    {
        for (long spared = 0;; ++spared)
        {
            {
                const InjectedFault fault(GetFileCallPlan(), spared, mode);
                FindAbandoned();
            }
            EXPECT_THAT(TextsOf(FindAbandoned()), ElementsAre("model")) << spared;
            if (!GetFileCallPlan().HasFailed())
            {
                break;
            }
        }
    }
}

TEST_F(RecoveryFolderTest, ClearsAwayWhatWasLeftHalfMadeOrHalfRemoved)
{
    LeaveBehind(m_Parent, "model");
    const fs::path listed = GetEntry();
    for (const char* name : {".window-1-aaaaaa", ".window-1-bbbbbb", ".window-1-cccccc"})
    {
        m_Folder.Write(fs::path("state/recovery") / name / "1/recovered.obj", "half");
    }
    const auto now = fs::file_time_type::clock::now();
    for (const char* old : {".window-1-aaaaaa", ".window-1-bbbbbb"})
    {
        fs::last_write_time(m_Parent / old, now - std::chrono::hours(2));
    }
    const auto lock = FileLock::Take(m_Parent / ".window-1-bbbbbb" / "lock"); // of one who still works on it
    fs::last_write_time(m_Parent / ".window-1-bbbbbb", now - std::chrono::hours(2));
    EXPECT_THAT(TextsOf(FindAbandoned()), ElementsAre("model"));
    EXPECT_THAT(m_Folder.List("state/recovery"),
                ElementsAre(".window-1-bbbbbb", ".window-1-cccccc", listed.filename().string()));
}

TEST_F(RecoveryFolderTest, IsNoneWhereThereIsNoFolder)
{
    EXPECT_THAT(FindAbandoned(), IsEmpty());
    EXPECT_THAT(IORecoveryFolder::FindAbandoned(""), IsEmpty());
}

TEST_F(RecoveryFolderTest, SaysWhyItCannotBeMade)
{
    m_Folder.Write("state", "a file where a folder should be");
    try
    {
        IORecoveryFolder::Create(m_Parent);
        FAIL();
    }
    catch (const FileError& error)
    {
        EXPECT_EQ(error.what(), "cannot write " + m_Parent.string() + ": a part of its path is a file");
    }
}
}
}
