#include "BatchProcess.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::EndsWith;
using testing::HasSubstr;

/// Runs the tour with a batch tool that does nothing but fail at one operation.
ProcessResult Tour(const TemporaryFolder& folder, const std::vector<std::string>& arguments)
{
    folder.Write("batch", "#!/bin/sh\ncase \"$*\" in *subdivide-adaptive*)\n"
                          "echo first >&2; echo 'tessarine-batch: no <area> & more' >&2; exit 1;; esac\n");
    std::filesystem::permissions(folder / "batch", std::filesystem::perms::owner_all);
    std::vector<std::string> words{"TESSARINE_BATCH=" + (folder / "batch").string(), TESSARINE_TOUR};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return RunProgram("/usr/bin/env", folder, words);
}

TEST(Tour, SaysWhichStepFailedAndClosesItsPage)
{
    const TemporaryFolder folder;
    folder.Write("work/keep", "");
    const ProcessResult result = Tour(folder, {"work", "results"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "tessarine: step 06-adaptive failed: tessarine-batch: no <area> & more\n");
    const std::string page = folder.Read("results/tour.html");
    EXPECT_THAT(page, HasSubstr("<h2>Loop subdivision · Loop 细分</h2>"));
    EXPECT_THAT(page, HasSubstr("<strong>Step 06-adaptive failed"));
    EXPECT_THAT(page, HasSubstr("<pre>tessarine-batch: no &lt;area> &amp; more</pre>"));
    EXPECT_THAT(page, EndsWith("</section>\n</body></html>\n"));
    EXPECT_EQ(page.find("</html>"), page.rfind("</html>"));
}

TEST(Tour, TakesFoldersWhoseNamesBeginWithADash)
{
    const TemporaryFolder folder;
    folder.Write("-w/keep", "");
    const ProcessResult result = Tour(folder, {"-w", "-p"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("step 06-adaptive failed"));
    EXPECT_TRUE(folder.Has("-p/tour.html"));
    EXPECT_TRUE(folder.Has("-p/05-loop.txt"));
}

TEST(Tour, TellsItsUsageByStatusTwo)
{
    const TemporaryFolder folder;
    folder.Write("work/keep", "");
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{}, {"work"}, {"work", ""}, {"work", "results", "more"}})
    {
        const ProcessResult result = Tour(folder, arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors, "tessarine: usage: samples/tour WORKSPACE RESULTS\n");
    }
}

TEST(Tour, FailsWithoutItsFolders)
{
    const TemporaryFolder folder;
    folder.Write("work/keep", "");
    folder.Write("file", "");
    ProcessResult result = Tour(folder, {"none", "results"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("there is no folder none"));
    result = Tour(folder, {"work", "file/results"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("cannot make the folder file/results"));
    folder.Write("results/tour.html/keep", "");
    result = Tour(folder, {"work", "results"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("tour.html"));
}
}
}
