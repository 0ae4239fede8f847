// Every operation, with a failure at each place where it asks for memory, looks at an assertion or calls the system for a
// file: what was, is. Where there are many places every n-th is tried, the same ones in each run.
#include "Faults.h"
#include "BoundaryWatch.h"
#include "DumpCheck.h"
#include "FailingMemory.h"
#include "FaultStage.h"
#include "FaultWorkspace.h"
#include "Operations.h"
#include "OwnCode.h"
#include "ResourceFolder.h"
#include "Resources.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace tessarine
{
namespace
{
using Files = std::map<std::string, std::string>;

/// What the whole run has tried, by kind.
struct FaultTally
{
    long operations = 0;
    long places = 0;
    long injected = 0;
    long outside = 0; ///< of them: failed before or behind the boundary, in the batch tool's own code
};

std::map<FaultKind, FaultTally> g_Tallies;
long g_nBrokenDisks = 0;

/// What is being tried, for the line of a process that ends.
std::string g_strTried;

const char* NameOf(FaultKind kind)
{
    switch (kind)
    {
    case FaultKind::Memory: return "memory";
    case FaultKind::Assertion: return "assertions";
    case FaultKind::FileCall: break;
    }
    return "file calls";
}

/// What every message for a failure of a kind says somewhere.
const char* GetReasonOf(FaultKind kind)
{
    switch (kind)
    {
    case FaultKind::Memory: return "memory";
    case FaultKind::Assertion:
        return "^tessarine-batch: [^:]+: .+"; // many checks have a sentence of their own
    case FaultKind::FileCall: break;
    }
    return ": cannot (open|read|write|work)";
}

[[noreturn]] void TellWhatWasTried()
{
    const std::string line = "ended at " + g_strTried + '\n';
    static_cast<void>(::write(STDERR_FILENO, line.data(), line.size()));
    std::abort();
}

class FaultEnvironment : public testing::Environment
{
public:
    void SetUp() override
    {
        std::set_terminate(TellWhatWasTried);
        AskAtAssertions();
        SetResourceFolder(TESSARINE_FOLDER);
        m_pWorkspace = std::make_unique<FaultWorkspace>();
    }

    void TearDown() override
    {
        m_pWorkspace.reset();
        for (const auto& [kind, tally] : g_Tallies)
        {
            std::printf(
                "faults: %-10s %4ld operations, %9ld places, %6ld failures injected, %ld of them outside the "
                "boundary\n",
                NameOf(kind), tally.operations, tally.places, tally.injected, tally.outside);
        }
        std::printf("faults: disks      %4ld operations on a full disk, in a read-only or a missing folder\n",
                    g_nBrokenDisks);
    }

private:
    std::unique_ptr<FaultWorkspace> m_pWorkspace;
};

const auto* const g_pEnvironment = testing::AddGlobalTestEnvironment(new FaultEnvironment);

/// Takes away what a run has written.
void RemoveAllBut(const Files& files)
{
    for (const auto& [name, content] : ReadAllFiles())
    {
        if (files.count(name) == 0)
        {
            std::filesystem::remove(name);
        }
    }
}

/// Every file is as before or as a whole run leaves it.
testing::AssertionResult AreWhole(const Files& files, const Files& before, const Files& after)
{
    const auto isOneOf = [](const Files& list, const std::string& name, const std::string& content)
    {
        const auto found = list.find(name);
        return found != list.end() && found->second == content;
    };
    for (const auto& [name, content] : files)
    {
        if (!isOneOf(before, name, content) && !isOneOf(after, name, content))
        {
            return testing::AssertionFailure() << name << " is left";
        }
    }
    for (const auto& [name, content] : before)
    {
        if (files.count(name) == 0)
        {
            return testing::AssertionFailure() << name << " is gone";
        }
    }
    return testing::AssertionSuccess();
}

/// A case and what a run without any failure makes of it.
class FaultTrial
{
public:
    FaultTrial(const FaultCase& faultCase, FaultKind kind)
        : m_Case(faultCase), m_Kind(kind), m_Plan(GetFaultPlan(kind))
    {
        m_FilesBefore = ReadAllFiles();
        if (m_Kind == FaultKind::Memory) // what a process asks for once has been given
        {
            FaultStage(m_Case).Run();
            RemoveAllBut(m_FilesBefore);
        }
        FaultStage stage(m_Case);
        m_strBefore = stage.Describe();
        const InjectedFault none(m_Plan, FaultPlan::kNone, FaultMode::Once);
        m_bRuns = stage.Run() == FaultEnd::Done;
        m_nPlaces = m_Plan.CountPassed();
        m_strAfter = stage.Describe();
        m_FilesAfter = ReadAllFiles();
        RemoveAllBut(m_FilesBefore);
    }

    void TryAll()
    {
        ASSERT_TRUE(m_bRuns) << m_Case.name;
        for (const FaultMode mode : {FaultMode::Once, FaultMode::FromThenOn})
        {
            TryAll(mode);
        }
        EXPECT_TRUE(m_bReached || m_Kind != FaultKind::Memory || MayNeedNoMemory())
            << "no failure came within the boundary";
        FaultTally& tally = g_Tallies[m_Kind];
        ++tally.operations;
        tally.places += m_nPlaces;
    }

private:
    void TryAll(FaultMode mode)
    {
        // A command looks at thousands of assertions.
        const int mostAssertions = m_Case.event ? 12 : 40;
        const long most =
            m_Kind == FaultKind::Assertion ? std::min(m_Case.most, mostAssertions) : m_Case.most;
        const long stride = (m_nPlaces + most - 1) / most;
        for (long spared = stride / 2; spared < m_nPlaces;
             spared += stride) // the first places are much alike
        {
            g_strTried = m_Case.name + ", " + NameOf(m_Kind) + ", place " + std::to_string(spared) +
                         (mode == FaultMode::Once ? "" : " and all behind it");
            Try(spared, mode);
            if (testing::Test::HasFailure())
            {
                FAIL() << g_strTried;
            }
        }
        ExpectRunsAsEver();
    }

    void Try(long spared, FaultMode mode)
    {
        if (m_pStage == nullptr)
        {
            m_pStage = std::make_unique<FaultStage>(m_Case);
        }
        FaultEnd end = FaultEnd::Done;
        {
            const ToldFailures told;
            {
                const InjectedFault fault(m_Plan, spared, mode);
                end = m_pStage->Run();
            }
            ExpectTold(end, mode);
        }
        const bool hasFailed = m_Plan.HasFailed();
        FaultTally& tally = g_Tallies[m_Kind];
        tally.injected += hasFailed ? 1 : 0;
        tally.outside += end == FaultEnd::FailedOutside ? 1 : 0;
        m_bReached = m_bReached || (hasFailed && end != FaultEnd::FailedOutside);
        const bool done = end == FaultEnd::Done;
        EXPECT_TRUE(hasFailed || done) << "it failed by itself";
        EXPECT_NE(end, FaultEnd::Leaked) << "it left the boundary";
        EXPECT_TRUE(AreWhole(ReadAllFiles(), m_FilesBefore, m_FilesAfter));
        RemoveAllBut(m_FilesBefore);
        Judge(done);
    }

    /// One message for a failure, unless the memory for it is missing as well; none without one.
    void ExpectTold(FaultEnd end, FaultMode mode) const
    {
        if (end == FaultEnd::FailedOutside)
        {
            EXPECT_EQ(ToldFailures::Count(), 0)
                << ToldFailures::GetLast(); // the batch tool's last line tells it
            return;
        }
        const bool mayBeLost = m_Kind == FaultKind::Memory && mode == FaultMode::FromThenOn;
        const int expected = end == FaultEnd::Done || (mayBeLost && ToldFailures::Count() == 0) ? 0 : 1;
        EXPECT_EQ(ToldFailures::Count(), expected) << ToldFailures::GetLast();
        if (ToldFailures::Count() > 0)
        {
            EXPECT_THAT(std::string(ToldFailures::GetLast()), testing::ContainsRegex(GetReasonOf(m_Kind)));
        }
    }

    void Judge(bool done)
    {
        const std::string now = m_pStage->Describe();
        if (done && m_Case.doesWithout && m_Kind == FaultKind::FileCall)
        {
            EXPECT_TRUE(FaultStage::TakeShape(now) == FaultStage::TakeShape(m_strAfter)) << "it ran half";
            ExpectWorksOn();
        }
        else if (done) // what failed was not needed
        {
            EXPECT_TRUE(now == m_strAfter) << "it ran, and to another end";
            m_pStage.reset();
        }
        else if (m_Case.outcome == FaultOutcome::Nothing)
        {
            EXPECT_TRUE(now == m_strBefore) << "it failed, and left something";
            LookNowAndThen();
        }
        else
        {
            const std::string records = FaultStage::TakeRecords(now);
            EXPECT_TRUE(records == FaultStage::TakeRecords(m_strBefore) ||
                        records == FaultStage::TakeRecords(m_strAfter))
                << "it failed in the middle of a step";
            ExpectWorksOn();
        }
    }

    /// As half of the events, and a look from elsewhere, whose words are read before the boundary.
    bool MayNeedNoMemory() const { return m_nPlaces == 0 || m_Case.name.starts_with("camera "); }

    /// A document that many operations have failed on still gives what it always gave.
    void LookNowAndThen()
    {
        constexpr int kFailures = 10;
        if (++m_nFailures % kFailures == 0)
        {
            ExpectRunsAsEver();
        }
    }

    void ExpectRunsAsEver()
    {
        if (m_pStage == nullptr)
        {
            return;
        }
        EXPECT_EQ(m_pStage->Run(), FaultEnd::Done) << "it fails for good";
        EXPECT_TRUE(m_pStage->Describe() == m_strAfter) << "it does something else than before it failed";
        RemoveAllBut(m_FilesBefore);
        m_pStage.reset();
    }

    /// Where a view or a tool may stay changed, the next event comes to its end over a sound model.
    void ExpectWorksOn()
    {
        EXPECT_EQ(m_pStage->Move(), FaultEnd::Done) << "the next motion fails";
        EXPECT_EQ(m_pStage->Run(), FaultEnd::Done) << "it fails for good";
        std::istringstream dump(m_pStage->MakeDump());
        EXPECT_EQ(CheckDump(dump).breach, "");
        m_pStage.reset();
    }

    const FaultCase& m_Case;
    FaultKind m_Kind;
    FaultPlan& m_Plan;
    bool m_bRuns = false;
    long m_nPlaces = 0;
    long m_nFailures = 0;
    bool m_bReached = false; ///< whether a failure has come within the boundary
    std::string m_strBefore;
    std::string m_strAfter;
    Files m_FilesBefore;
    Files m_FilesAfter;
    std::unique_ptr<FaultStage> m_pStage;
};

std::string NameCase(const testing::TestParamInfo<FaultCase>& info)
{
    std::string name = std::to_string(info.index) + "_" + info.param.operation;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

class FaultTest : public testing::TestWithParam<FaultCase>
{
protected:
    static void TryKind(FaultKind kind)
    {
        if (!CanFail(kind))
        {
            GTEST_SKIP() << "this build does not ask at its " << NameOf(kind);
        }
        std::optional<OwnMemoryOnly> own;
        if (LooksAtFrame(
                GetParam())) // the libraries below GL end the process themselves when there is no memory
        {
            own.emplace();
        }
        FaultTrial(GetParam(), kind).TryAll();
    }
};

TEST_P(FaultTest, LeavesWhatWasWithoutMemory)
{
    TryKind(FaultKind::Memory);
}

TEST_P(FaultTest, LeavesWhatWasWhereAnAssertionFails)
{
    TryKind(FaultKind::Assertion);
}

TEST_P(FaultTest, LeavesWhatWasWhereAFileFails)
{
    TryKind(FaultKind::FileCall);
}

INSTANTIATE_TEST_SUITE_P(Operations, FaultTest, testing::ValuesIn(GetFaultCases()), NameCase);
INSTANTIATE_TEST_SUITE_P(Menus, FaultTest, testing::ValuesIn(MakeMenuCases()), NameCase);

void* AskInCallback(void* isOwn, unsigned count, unsigned size)
{
    *static_cast<bool*>(isOwn) = IsOwnCodeRunning();
    return std::calloc(count, size);
}

void GiveBack(void* /*isOwn*/, void* memory)
{
    std::free(memory);
}

TEST(OwnCode, RunsWhereNoOtherLibraryWaits)
{
    EXPECT_TRUE(IsOwnCodeRunning());
    bool isOwn = true;
    z_stream stream{};
    stream.zalloc = AskInCallback;
    stream.zfree = GiveBack;
    stream.opaque = &isOwn;
    ASSERT_EQ(inflateInit(&stream), Z_OK);
    EXPECT_FALSE(isOwn);
    inflateEnd(&stream);
}

TEST(FaultCases, LeaveNoOperationOut)
{
    std::set<std::string> tried{"menu"}; // has cases of its own
    for (const FaultCase& faultCase : GetFaultCases())
    {
        tried.insert(faultCase.operation.substr(0, faultCase.operation.find(' ')));
    }
    for (const Operation& operation : GetOperations())
    {
        EXPECT_EQ(tried.count(std::string(operation.name)), 1U) << operation.name;
    }
}

/// Breaks the disk in a way of its own while it lives.
class FullDisk
{
public:
    FullDisk()
    {
        ::getrlimit(RLIMIT_FSIZE, &m_Before);
        const rlimit none{0, m_Before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_Before); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_Before{};
};

/// Permissions do not bind the superuser, who becomes somebody else.
class ReadOnlyFolder
{
public:
    explicit ReadOnlyFolder(std::string folder) : m_strFolder(std::move(folder))
    {
        ::chmod(".", kReadable);
        ::chmod(m_strFolder.c_str(), kReadable);
        if (::geteuid() == 0 && ::seteuid(kNobody) != 0)
        {
            throw std::runtime_error("the superuser cannot become another user");
        }
    }
    ~ReadOnlyFolder()
    {
        static_cast<void>(::seteuid(::getuid()));
        ::chmod(m_strFolder.c_str(), kWritable);
        ::chmod(".", kWritable);
    }
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

private:
    static constexpr mode_t kReadable = 0555;
    static constexpr mode_t kWritable = 0755;
    static constexpr uid_t kNobody = 65534;
    std::string m_strFolder;
};

class MissingFolder
{
public:
    explicit MissingFolder(const std::string& folder) : m_strFolder(folder)
    {
        std::filesystem::rename(m_strFolder, m_strFolder + ".away");
    }
    ~MissingFolder()
    {
        std::error_code error;
        std::filesystem::rename(m_strFolder + ".away", m_strFolder, error);
    }
    MissingFolder(const MissingFolder&) = delete;
    MissingFolder& operator=(const MissingFolder&) = delete;

private:
    std::string m_strFolder;
};

std::vector<FaultCase> ListWriters()
{
    std::vector<FaultCase> writers;
    for (const FaultCase& faultCase : GetFaultCases())
    {
        if (!faultCase.folder.empty())
        {
            writers.push_back(faultCase);
        }
    }
    return writers;
}

class WriterTest : public testing::TestWithParam<FaultCase>
{
protected:
    /// @tparam TBroken breaks the disk while it lives
    template <class TBroken, class... TArguments>
    static void ExpectFailsWithoutATrace(const TArguments&... arguments)
    {
        const Files filesAtFirst = ReadAllFiles();
        FaultStage stage(GetParam());
        const Files filesBefore = ReadAllFiles();
        const std::string before = stage.Describe();
        bool done = true;
        {
            const TBroken broken(arguments...);
            done = stage.Run() == FaultEnd::Done;
        }
        EXPECT_FALSE(done);
        EXPECT_TRUE(stage.Describe() == before);
        EXPECT_TRUE(ReadAllFiles() == filesBefore);
        EXPECT_EQ(stage.Run(), FaultEnd::Done);
        RemoveAllBut(filesAtFirst);
        ++g_nBrokenDisks;
    }
};

TEST_P(WriterTest, FailsWithoutATraceOnAFullDisk)
{
    ExpectFailsWithoutATrace<FullDisk>();
}

TEST_P(WriterTest, FailsWithoutATraceInAReadOnlyFolder)
{
    ExpectFailsWithoutATrace<ReadOnlyFolder>(GetParam().folder);
}

TEST_P(WriterTest, FailsWithoutATraceInAMissingFolder)
{
    if (GetParam().folder == ".")
    {
        GTEST_SKIP() << "it writes into the working folder";
    }
    ExpectFailsWithoutATrace<MissingFolder>(GetParam().folder);
}

INSTANTIATE_TEST_SUITE_P(Operations, WriterTest, testing::ValuesIn(ListWriters()), NameCase);
}
}
