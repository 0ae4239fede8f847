#include "DumpCheck.h"
#include "GuiTest.h"
#include "RandomUser.h"
#include "WindowDump.h"
#include "Workspace.h"
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <sstream>
#include <unistd.h>

namespace tessarine
{
namespace
{
constexpr int kBetweenChecks = 200;
constexpr int kBetweenSamples = 1000;

/// A number of the long run, as tests/gui/random-events gives it.
int ReadNumber(const char* variable, int otherwise)
{
    const char* const text = std::getenv(variable);
    return text == nullptr ? otherwise : std::atoi(text);
}

/// What the process has in memory, in KiB.
long ReadResidentSize()
{
    long pages = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

class RandomEventsGuiTest : public GuiTest
{
protected:
    RandomEventsGuiTest()
    {
        QApplication::setQuitOnLastWindowClosed(false); // it would end the event loop of the test
        WriteWorkspace(m_Folder.GetPath(), {.coarseness = 8.0, .imageWidth = 40, .imageHeight = 30});
        m_Folder.Write("tetrahedron.obj", kTetrahedronObj);
        m_Folder.Write("empty.obj", "");
        m_Folder.Write("no-such-corner.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 4\n");
        m_Folder.Write("three-faces-at-an-edge.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nv 0 -1 0\n"
                                                     "f 1 2 3\nf 1 2 4\nf 1 2 5\n");
        m_Folder.Write("open-with-a-quad.obj",
                       "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 0\nf 1 2 3 4\nf 2 5 3\n");
        m_Folder.Write("no-library.obj",
                       "mtllib absent.mtl\nusemtl red\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
        Frame().resize(QSize(600, 450));
    }
    ~RandomEventsGuiTest() override { QApplication::setQuitOnLastWindowClosed(true); }

    void CheckModel(const RandomUser& user)
    {
        std::istringstream dump(DumpWindow(Bench()));
        EXPECT_EQ(CheckDump(dump).breach, "") << "after " << user.GetEventCount() << " events";
    }

    /// The model put away. What is freed and kept for later counts as resident, not as used.
    void PrintSample(const RandomUser& user)
    {
        std::printf(
            "after %d events: %ld KiB resident, %zu KiB used, %zu commands kept, models of up to %zu faces\n",
            user.GetEventCount(), ReadResidentSize(), mallinfo2().uordblks / 1024 + mallinfo2().hblkhd / 1024,
            Bench().GetCommandManager().GetHistorySize(), user.GetMostFaces());
        std::fflush(stdout);
    }
};

TEST_F(RandomEventsGuiTest, LeaveTheModelWhole)
{
    const int count = ReadNumber("TESSARINE_EVENTS", 2 * kBetweenChecks);
    const char* const trace = std::getenv("TESSARINE_EVENT_TRACE");
    RandomUser user(static_cast<unsigned>(ReadNumber("TESSARINE_EVENT_SEED", 1)), m_Folder.GetPath(),
                    trace == nullptr ? "" : trace);
    while (user.GetEventCount() < count)
    {
        user.DoEvents(std::min(kBetweenChecks, count - user.GetEventCount()));
        CheckModel(user);
        if (user.GetEventCount() % kBetweenSamples == 0)
        {
            user.PutAllAway();
            GetTerminalText().clear();
            PrintSample(user);
        }
    }
    user.PutAllAway();
    CheckModel(user);
    EXPECT_EQ(user.GetEventCount(), count);
    EXPECT_GT(user.GetMostFaces(), 4U) << "no model was ever there";
    std::printf("events: %d, the model checked after every %d\n", user.GetEventCount(), kBetweenChecks);
}
}
}
