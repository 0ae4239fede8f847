#include "IARecovery.h"
#include "FailingFileCalls.h"
#include "FailingMemory.h"
#include "SelectionTest.h"
#include "resource.h"
#include <csignal>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

namespace tessarine
{
namespace
{
using testing::AnyOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint64_t kMinute = 60000;

/// A machine whose clock goes when it is told to.
class ClockPlatform : public RecordingPlatform
{
public:
    std::uint64_t GetTickCount() override { return m_nNow; }
    std::uint64_t m_nNow = 1000;
};

/// A workbench whose model is kept in a state folder of its own.
class RecoveryTest : public testing::Test
{
protected:
    RecoveryTest()
    {
        m_Bench.SetRecovery(&m_Recovery);
        m_Folder.Write("a.obj", kTetrahedronObj);
        m_Platform.m_nNow += kMinute;
    }

    bool Import(const std::string& name)
    {
        m_Platform.AnswerFile(name);
        return Choose(ResourceID::ImportObj);
    }
    bool Choose(int id) { return IACommandRouter(m_Bench).Run("menu", id); }
    bool Send(ToolEvent::Kind kind, int x = 50) { return m_Bench.SendEvent({.kind = kind, .x = x, .y = 50}); }
    void Wait(std::uint64_t milliseconds = kMinute) { m_Platform.m_nNow += milliseconds; }

    /// The models that are kept by now.
    std::vector<std::filesystem::path> FindModels()
    {
        std::vector<std::filesystem::path> models;
        if (m_Folder.Has("state"))
        {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(m_Folder / "state"))
            {
                if (entry.path().filename() == "recovered.obj")
                {
                    models.push_back(entry.path());
                }
            }
        }
        return models;
    }
    /// How many faces the only one has; none where there is no model.
    long CountKeptFaces()
    {
        const auto models = FindModels();
        const std::string text = models.empty() ? "" : ReadFile(models.front());
        long faces = 0;
        for (std::size_t at = text.find("\nf "); at != std::string::npos; at = text.find("\nf ", at + 1))
        {
            ++faces;
        }
        return faces;
    }

    std::size_t CountFaces()
    {
        return m_Bench.GetController().GetElementManager().GetSolid(0xE0000000)->GetFaceList().size();
    }

    TemporaryCurrentFolder m_Folder;
    ConsoleCapture m_Console;
    ClockPlatform m_Platform;
    IARecovery m_Recovery{m_Folder / "state"};
    IAWorkbench m_Bench;
};

TEST_F(RecoveryTest, KeepsWhatACommandHasMade)
{
    ASSERT_TRUE(Import("a.obj"));
    EXPECT_THAT(FindModels(), IsEmpty()); // it lies in its own file
    Choose(ResourceID::SubdivideLoop);
    EXPECT_EQ(CountKeptFaces(), 16);
}

TEST_F(RecoveryTest, KeepsTheModelBeforeTheNextCommandChangesIt)
{
    Import("a.obj");
    Choose(ResourceID::SubdivideLoop); // kept
    Choose(ResourceID::SubdivideLoop); // within the minute
    EXPECT_EQ(CountKeptFaces(), 16);
    Wait();
    m_Bench.Perform("operation", Effect::ChangesModel, [this] { EXPECT_EQ(CountKeptFaces(), 64); });
}

TEST_F(RecoveryTest, KeepsTheModelOnceAMinuteAtMost)
{
    Import("a.obj");
    Choose(ResourceID::SubdivideLoop);
    Wait(kMinute - 1);
    Choose(ResourceID::SubdivideLoop);
    EXPECT_EQ(CountKeptFaces(), 16);
    Wait(1);
    Choose(ResourceID::SubdivideLoop);
    EXPECT_EQ(CountKeptFaces(), 64);
}

TEST_F(RecoveryTest, KeepsTheModelWithTheNextClick)
{
    Import("a.obj");
    Choose(ResourceID::SubdivideLoop);
    Choose(ResourceID::SubdivideLoop);
    Wait();
    Send(ToolEvent::Kind::MouseMove);
    EXPECT_EQ(CountKeptFaces(), 16); // a motion is not to be held up
    Send(ToolEvent::Kind::LeftButtonDown);
    EXPECT_EQ(CountKeptFaces(), 64);
}

TEST_F(RecoveryTest, KeepsWhatAMoveHasChanged)
{
    Import("a.obj");
    Choose(ResourceID::SelectSolids);
    m_Bench.GetController().GetElementManager().ToggleSelect(0xE0000000);
    Choose(ResourceID::MoveSolidX);
    Send(ToolEvent::Kind::MouseMove, 0);
    Send(ToolEvent::Kind::MouseMove, 300);
    EXPECT_THAT(FindModels(), IsEmpty());
    Send(ToolEvent::Kind::LeftButtonDown);
    EXPECT_EQ(CountKeptFaces(), 4);
    const double x = m_Bench.GetController().GetElementManager().GetVertex(0)->GetPosition().x;
    EXPECT_THAT(ReadFile(FindModels().front()), HasSubstr("v " + std::to_string(x) + " "));
}

TEST_F(RecoveryTest, KeepsNothingForACommandThatFails)
{
    Import("a.obj");
    EXPECT_FALSE(m_Bench.Perform("operation", Effect::ChangesModel, [] { throw std::bad_alloc(); }));
    Wait();
    Choose(ResourceID::ShowGrid);
    Send(ToolEvent::Kind::LeftButtonDown);
    EXPECT_THAT(FindModels(), IsEmpty());
}

TEST_F(RecoveryTest, KeepsNothingForADialogThatIsCancelled)
{
    Import("a.obj");
    EXPECT_TRUE(Choose(ResourceID::ImportObj));
    EXPECT_TRUE(Choose(ResourceID::SubdivideAdaptive));
    EXPECT_THAT(FindModels(), IsEmpty());
}

TEST_F(RecoveryTest, KeepsAnAdaptivelySubdividedModel)
{
    Import("a.obj");
    m_Platform.AnswerAreaThreshold(0.0F);
    EXPECT_TRUE(Choose(ResourceID::SubdivideAdaptive));
    EXPECT_EQ(CountKeptFaces(), 16);
}

TEST_F(RecoveryTest, KeepsNoEmptyDocument)
{
    Choose(ResourceID::FileNew);
    m_Bench.Perform("operation", Effect::ChangesModel, [] {});
    EXPECT_THAT(FindModels(), IsEmpty());
    EXPECT_FALSE(m_Folder.Has("state"));
}

TEST_F(RecoveryTest, WritesNothingWithoutAStateFolder)
{
    IARecovery none("");
    m_Bench.SetRecovery(&none);
    Import("a.obj");
    Choose(ResourceID::SubdivideLoop);
    EXPECT_THAT(m_Folder.List(), ElementsAre("a.obj"));
    EXPECT_THAT(none.FindAbandoned(), IsEmpty());
}

TEST_F(RecoveryTest, LeavesNothingAfterACleanExit)
{
    Import("a.obj");
    Choose(ResourceID::SubdivideLoop);
    m_Recovery.End();
    EXPECT_THAT(m_Folder.List("state"), IsEmpty());
    m_Recovery.End(); // of a window that has kept nothing
}

TEST_F(RecoveryTest, OffersNothingAfterACleanExitWithoutMemory)
{
    Import("a.obj");
    Choose(ResourceID::SubdivideLoop);
    ASSERT_THAT(FindModels(), SizeIs(1));
    {
        const InjectedFault fault(GetMemoryPlan(), 0, FaultMode::FromThenOn);
        m_Recovery.End();
    }
    EXPECT_THAT(IORecoveryFolder::FindAbandoned(m_Folder / "state"), IsEmpty());
}

TEST_F(RecoveryTest, KeepsAnAdoptedCopyUntilThereIsANewerOne)
{
    Import("a.obj");
    {
        IARecovery killed(m_Folder / "state");
        m_Bench.SetRecovery(&killed);
        Wait();
        Choose(ResourceID::SubdivideLoop);
    }
    m_Bench.SetRecovery(&m_Recovery);
    auto abandoned = m_Recovery.FindAbandoned();
    ASSERT_THAT(abandoned, SizeIs(1));
    ASSERT_TRUE(Import(abandoned[0].GetModel().string()));
    EXPECT_EQ(CountFaces(), 16U);
    m_Recovery.Adopt(std::move(abandoned[0]));
    EXPECT_THAT(m_Recovery.FindAbandoned(), IsEmpty());
    EXPECT_EQ(CountKeptFaces(), 16);
    Wait();
    Choose(ResourceID::SubdivideLoop);
    EXPECT_THAT(FindModels(), SizeIs(1));
    EXPECT_EQ(CountKeptFaces(), 64);
    m_Recovery.End();
    EXPECT_THAT(m_Folder.List("state"), IsEmpty());
}

TEST_F(RecoveryTest, GoesOnInAnotherFolderWhereItsOwnWasRemoved)
{
    Import("a.obj");
    Choose(ResourceID::SubdivideLoop);
    std::filesystem::remove_all(m_Folder / "state");
    Wait();
    Choose(ResourceID::SubdivideLoop);
    EXPECT_EQ(CountKeptFaces(), 64);
    EXPECT_EQ(m_Console.Count("The recovery file was not written"), 0);
}

TEST_F(RecoveryTest, TellsOnceThatNothingCanBeWritten)
{
    m_Folder.Write("state", "a file where a folder should be");
    Import("a.obj");
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_TRUE(Choose(ResourceID::SubdivideLoop)); // no command fails for it
        Wait();
    }
    const std::string path = (m_Folder / "state").string();
    EXPECT_EQ(m_Console.Count("The recovery file was not written: cannot write " + path +
                              ": a part of its path is a file"),
              1);
    EXPECT_THAT(m_Platform.GetFailures(), IsEmpty());
}

TEST_F(RecoveryTest, GoesOnWithoutMemoryForACopy)
{
    Import("a.obj");
    Choose(ResourceID::SubdivideLoop);
    m_Recovery.MarkChanged();
    const auto kept = DebugConsole().SetSink([](std::string_view) {});
    for (long spared = 0; spared < 1000; ++spared)
    {
        Wait();
        m_Recovery.MarkChanged();
        const InjectedFault fault(GetMemoryPlan(), spared, FaultMode::Once);
        m_Recovery.Keep(m_Bench.GetController());
        if (!GetMemoryPlan().HasFailed())
        {
            break;
        }
    }
    EXPECT_FALSE(GetMemoryPlan().HasFailed());
    DebugConsole().SetSink(kept);
    EXPECT_EQ(CountKeptFaces(), 16);
    EXPECT_THAT(FindModels(), SizeIs(1));
}

/// The models that a start would be offered, with their libraries.
std::vector<std::string> ReadAbandoned(const std::filesystem::path& state)
{
    std::vector<std::string> texts;
    for (const IORecoveryFolder& copy : IORecoveryFolder::FindAbandoned(state))
    {
        texts.push_back(ReadFile(copy.GetModel()));
        const std::filesystem::path library = copy.GetModel().replace_extension(".mtl");
        texts.back() += exists(library) ? ReadFile(library) : "";
    }
    return texts;
}

/// Windows that keep the model of the workbench, each in a state folder of its own, and are killed behind it.
class FailingRecoveryTest : public RecoveryTest
{
protected:
    void Keep(IARecovery& recovery)
    {
        Wait();
        recovery.MarkChanged();
        recovery.Keep(m_Bench.GetController());
    }

    /// What is found behind one to which no call fails.
    std::string KeepWhole(const std::string& state)
    {
        {
            IARecovery recovery(m_Folder / state);
            Keep(recovery);
        }
        const auto found = ReadAbandoned(m_Folder / state);
        EXPECT_THAT(found, SizeIs(1));
        return found.empty() ? "" : found.front();
    }

    /// A window in m_State to which a call fails.
    /// @param before the state folder that it takes its copy over from; empty for none
    /// @param goesOn whether it keeps the model again before it is killed
    void KeepFailing(const std::string& before, long spared, FaultMode mode, bool goesOn)
    {
        std::filesystem::remove_all(m_State);
        if (!before.empty())
        {
            std::filesystem::copy(m_Folder / before, m_State, std::filesystem::copy_options::recursive);
        }
        IARecovery recovery(m_State);
        for (IORecoveryFolder& copy : recovery.FindAbandoned())
        {
            recovery.Adopt(std::move(copy));
        }
        {
            const InjectedFault fault(GetFileCallPlan(), spared, mode);
            Keep(recovery);
        }
        if (goesOn)
        {
            Keep(recovery);
        }
    }

    /// Has each call fail in turn.
    void TryEachCall(const std::string& before, FaultMode mode, bool goesOn,
                     const testing::Matcher<std::vector<std::string>>& expected)
    {
        for (long spared = 0; spared == 0 || GetFileCallPlan().HasFailed(); ++spared)
        {
            KeepFailing(before, spared, mode, goesOn);
            EXPECT_THAT(ReadAbandoned(m_State), expected) << "behind " << spared << " calls";
        }
        EXPECT_THAT(m_Platform.GetFailures(), IsEmpty());
    }

    /// A model with a library and a picture.
    void ImportPainted()
    {
        m_Folder.Write("painted.obj",
                       "mtllib paint.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nusemtl red\nf 1/1 2/1 3/1\n");
        m_Folder.Write("paint.mtl", "newmtl red\nmap_Kd red.ppm\n");
        m_Folder.Write("red.ppm", "P6\n1 1\n255\nabc");
        ASSERT_TRUE(Import("painted.obj"));
    }

    std::filesystem::path m_State = m_Folder / "failing";
};

TEST_F(FailingRecoveryTest, LeavesOneOfTwoModelsWholeWhateverCallFails)
{
    Import("a.obj");
    const std::string before = KeepWhole("before");
    ImportPainted();
    const std::string after = KeepWhole("after");
    ASSERT_NE(before, after);
    for (const FaultMode mode : {FaultMode::Once, FaultMode::FromThenOn})
    {
        TryEachCall("before", mode, false, ElementsAre(AnyOf(before, after)));
        TryEachCall("before", mode, true, ElementsAre(after));
    }
}

TEST_F(FailingRecoveryTest, LeavesNoPartOfAFirstModelWhateverCallFails)
{
    ImportPainted();
    const std::string whole = KeepWhole("whole");
    for (const FaultMode mode : {FaultMode::Once, FaultMode::FromThenOn})
    {
        TryEachCall("", mode, false, AnyOf(IsEmpty(), ElementsAre(whole)));
        TryEachCall("", mode, true, ElementsAre(whole));
    }
}

/// Subdivides a model, and is then killed in the midst of the next command.
[[noreturn]] void WorkAndBeKilled(const std::filesystem::path& model, const std::filesystem::path& state)
{
    ClockPlatform platform;
    IARecovery recovery(state);
    IAWorkbench bench;
    bench.SetRecovery(&recovery);
    platform.m_nNow += kMinute;
    platform.AnswerFile(model.string());
    IACommandRouter(bench).Run("import", ResourceID::ImportObj);
    IACommandRouter(bench).Run("subdivide", ResourceID::SubdivideLoop);
    bench.Perform("the next", Effect::ChangesModel, [] { ::raise(SIGKILL); });
    ::_exit(1);
}

TEST_F(RecoveryTest, KeepsTheModelOfAProcessThatWasKilled)
{
    const pid_t child = ::fork();
    if (child == 0)
    {
        WorkAndBeKilled(m_Folder / "a.obj", m_Folder / "state");
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);

    const auto abandoned = m_Recovery.FindAbandoned();
    ASSERT_THAT(abandoned, SizeIs(1));
    EXPECT_THAT(abandoned[0].GetModel().parent_path().parent_path().filename().string(),
                testing::StartsWith("window-" + std::to_string(child) + "-"));
    ASSERT_TRUE(Import(abandoned[0].GetModel().string()));
    EXPECT_EQ(CountFaces(), 16U);
}
}
}
