#include "SamplesTool.h"
#include "Capture.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(SamplesTool, ShowsItsUsageWhereItIsAskedFor)
{
    const TemporaryCurrentFolder folder;
    testing::internal::CaptureStdout();
    EXPECT_EQ(RunSamplesTool({"--help"}), 0);
    EXPECT_THAT(testing::internal::GetCapturedStdout(), StartsWith("Usage: tessarine-samples FOLDER\n"));
    EXPECT_TRUE(folder.List().empty());
}

TEST(SamplesTool, RefusesWordsThatAreNoFolderAndDoesNothing)
{
    const TemporaryCurrentFolder folder;
    const std::pair<std::vector<std::string>, const char*> faults[] = {
        {{}, "0 words are given"},
        {{"a", "b"}, "2 words are given"},
        {{""}, "the folder's name is empty"},
        {{"--force"}, "unknown option --force"},
    };
    for (const auto& [words, fault] : faults)
    {
        const ErrorLineCapture errors;
        EXPECT_EQ(RunSamplesTool(words), 2);
        EXPECT_THAT(errors.GetText(), HasSubstr(fault));
        EXPECT_THAT(errors.GetText(), HasSubstr("usage: tessarine-samples FOLDER"));
    }
    EXPECT_TRUE(folder.List().empty());
}

TEST(SamplesTool, SaysWhatToDoWhereItCannotMakeItsFolder)
{
    const TemporaryCurrentFolder folder;
    folder.Write("taken", "");
    for (const char* name : {"taken", "taken/below"})
    {
        const ErrorLineCapture errors;
        EXPECT_EQ(RunSamplesTool({name}), 1);
        EXPECT_THAT(errors.GetText(),
                    StartsWith(std::string("tessarine-samples: cannot make the folder ") + name));
        EXPECT_THAT(errors.GetText(), HasSubstr("; name a folder where you may write"));
    }
}
}
}
