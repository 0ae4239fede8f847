#include "ProgressLine.h"
#include "BatchProcess.h"
#include "Image.h"
#include <gmock/gmock.h>
#include <utility>

namespace tessarine
{
namespace
{
using namespace std::chrono_literals;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr char kLastConsoleLine[] = "Solid fits Euler formular: true";

/// What stays on the screen of a terminal that was sent the text.
std::string GetScreen(const std::string& sent)
{
    const std::string eraseToEnd = "\033[K";
    std::string screen;
    std::string line;
    std::size_t column = 0;
    for (std::size_t i = 0; i < sent.size(); ++i)
    {
        if (sent.compare(i, eraseToEnd.size(), eraseToEnd) == 0)
        {
            line.resize(column);
            i += eraseToEnd.size() - 1;
        }
        else if (sent[i] == '\r')
        {
            column = 0;
        }
        else if (sent[i] == '\n')
        {
            screen += std::exchange(line, "") + '\n';
        }
        else
        {
            line.resize(std::max(line.size(), column + 1), ' ');
            line[column++] = sent[i];
        }
    }
    return screen + line;
}

class Progress : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!HasTerminals())
        {
            GTEST_SKIP() << "this machine gives no terminals: is /dev/pts mounted?";
        }
        m_Folder.Write("tetra.obj", kTetrahedron);
    }

    TemporaryFolder m_Folder;
};

TEST_F(Progress, ComesBackBelowTheConsole)
{
    const ProcessResult result = RunBatchAtTerminal(m_Folder, {"import", "tetra.obj"}, true);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.errors, StartsWith("import ...\r"));
    EXPECT_THAT(result.errors, HasSubstr(std::string(kLastConsoleLine) + "\r\nimport ..."));
    EXPECT_EQ(GetScreen(result.errors), RunBatch(m_Folder, {"import", "tetra.obj"}).output);
}

TEST_F(Progress, StandsWhereTheConsoleGoesToAFile)
{
    const ProcessResult result =
        RunBatchAtTerminal(m_Folder, {"import", "tetra.obj", "subdivide-loop"}, false);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr(kLastConsoleLine));
    EXPECT_THAT(result.errors, HasSubstr("\033[Kimport ...")); // again, behind what the console handed on
    EXPECT_THAT(result.errors, HasSubstr("subdivide-loop ..."));
    EXPECT_EQ(GetScreen(result.errors), "");
}

TEST_F(Progress, ComesBackBelowAnErrorLineAndGoesAtTheEnd)
{
    const ProcessResult result = RunBatchAtTerminal(m_Folder, {"-q", "import", "none.obj"}, true);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("no such file\r\nimport ..."));
    EXPECT_EQ(GetScreen(result.errors), RunBatch(m_Folder, {"-q", "import", "none.obj"}).errors);
}

TEST_F(Progress, LeavesHalfALineAsItIs)
{
    WriteImage({1, 1, 3, {0, 0, 0}}, m_Folder / "dot.bmp");
    const ProcessResult piped = RunBatch(m_Folder, {"-q", "distance-2d", "dot.bmp", "-"});
    ASSERT_EQ(piped.output.size(), 4U * 3) << piped.errors;
    const ProcessResult result = RunBatchAtTerminal(m_Folder, {"-q", "distance-2d", "dot.bmp", "-"}, true);
    EXPECT_THAT(result.errors, EndsWith(piped.output));
}

TEST_F(Progress, TellsTheSecondsFromTheFirstOn)
{
    EXPECT_EQ(MakeProgressText("import", 0s), "import ...");
    EXPECT_EQ(MakeProgressText("import", 1s), "import ... 1 s");
    EXPECT_EQ(MakeProgressText("import", 75s), "import ... 75 s");
}
}
}
