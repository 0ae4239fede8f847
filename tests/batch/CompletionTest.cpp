#include "ArgumentForm.h"
#include "BatchProcess.h"
#include "CommandLine.h"
#include "Operations.h"
#include <gmock/gmock.h>
#include <iterator>
#include <sstream>

namespace tessarine
{
namespace
{
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;

/// What bash offers for the last of the words, in a folder with a few files.
class BatchCompletion : public testing::Test
{
protected:
    BatchCompletion()
    {
        for (const char* file : {"a.obj", "b.vec", "data/in.bmp", "data/fine models/c.obj"})
        {
            m_Folder.Write(file, "");
        }
    }

    std::vector<std::string> Complete(const std::vector<std::string>& words) const
    {
        std::vector<std::string> arguments{"-c",
                                           "COMP_WORDS=(\"$@\") COMP_CWORD=$(($# - 1)); . \"$0\"; "
                                           "_tessarine_batch; printf '%s\\n' \"${COMPREPLY[@]}\"",
                                           TESSARINE_COMPLETION, "tessarine-batch"};
        arguments.insert(arguments.end(), words.begin(), words.end());
        const ProcessResult result = RunProgram("/bin/bash", m_Folder, arguments);
        EXPECT_THAT(result.errors, IsEmpty());
        std::istringstream stream(result.output);
        std::vector<std::string> offered;
        for (std::string line; std::getline(stream, line) && !line.empty();)
        {
            offered.push_back(line);
        }
        return offered;
    }

    TemporaryFolder m_Folder;
};

std::vector<std::string> GetNames()
{
    std::vector<std::string> names;
    for (const Operation& operation : GetOperations())
    {
        names.emplace_back(operation.name);
    }
    return names;
}

bool IsFile(const std::string& argument)
{
    return FindArgumentForm(argument).accepts("a file's name");
}

TEST_F(BatchCompletion, OffersEveryOperationAndNothingElse)
{
    EXPECT_EQ(Complete({""}), GetNames());
    EXPECT_EQ(Complete({"import", "a.obj", ""}), GetNames());
    EXPECT_THAT(Complete({"import", "a.obj", "two-step-"}),
                ElementsAre("two-step-first", "two-step-second", "two-step-third"));
    EXPECT_EQ(Complete({"--help", "import", ""}), GetNames());
}

TEST_F(BatchCompletion, OffersOptionsThatAreThere)
{
    const std::vector<std::string> options = Complete({"-"});
    EXPECT_THAT(options, Contains("--threads"));
    for (const std::string& option : options)
    {
        try
        {
            ParseOptions({option});
        }
        catch (const UsageError& error)
        {
            EXPECT_THAT(error.what(), Not(StartsWith("unknown option")));
        }
    }
}

TEST_F(BatchCompletion, OffersFilesForEveryArgumentThatIsOne)
{
    for (const Operation& operation : GetOperations())
    {
        std::istringstream stream{std::string(operation.arguments)};
        const std::vector<std::string> forms(std::istream_iterator<std::string>(stream), {});
        std::vector<std::string> words{"import", "a.obj", std::string(operation.name)};
        for (const std::string& form : forms)
        {
            words.emplace_back();
            const bool isFile = form.front() != '[' && form.back() != ']' && IsFile(form);
            EXPECT_EQ(Complete(words).front() == "a.obj", isFile) << operation.name << ' ' << form;
            words.back() = "1";
        }
    }
}

TEST_F(BatchCompletion, OffersModelsAndFoldersToImport)
{
    EXPECT_THAT(Complete({"import", ""}), UnorderedElementsAre("a.obj", "data"));
    EXPECT_THAT(Complete({"import", "data/"}), ElementsAre("data/fine models"));
}

TEST_F(BatchCompletion, CountsTheArgumentBehindTwoDashes)
{
    EXPECT_THAT(Complete({"solve", "--", "report", "b"}), ElementsAre("b.vec"));
    EXPECT_THAT(Complete({"filter-image", "--", "b"}), ElementsAre("b.vec"));
    EXPECT_THAT(Complete({"export", "--", "report", "stat"}), ElementsAre("status"));
}

TEST_F(BatchCompletion, LooksForFilesInTheFolderToWorkIn)
{
    for (const std::vector<std::string>& option : std::vector<std::vector<std::string>>{
             {"-C", "data"}, {"--directory", "data"}, {"--directory", "=", "data"}})
    {
        const auto complete = [&](std::vector<std::string> words)
        {
            words.insert(words.begin(), option.begin(), option.end());
            return Complete(words);
        };
        EXPECT_THAT(complete({"filter-image", "i"}), ElementsAre("in.bmp"));
        EXPECT_THAT(complete({"import", ""}), ElementsAre("fine models/"));
        EXPECT_THAT(complete({"-s", ""}), UnorderedElementsAre("in.bmp", "fine models/"));
        EXPECT_THAT(complete({"stat"}), ElementsAre("status"));
    }
    EXPECT_THAT(Complete({"-C", "data/fine\\ models", "import", ""}), ElementsAre("c.obj"));
}

TEST_F(BatchCompletion, LooksNowhereElseWhereTheShellHasAPathForItsFolders)
{
    ASSERT_EQ(::setenv("CDPATH", ".:data", 1), 0);
    EXPECT_THAT(Complete({"-C", "data", "filter-image", "i"}), ElementsAre("in.bmp"));
    EXPECT_THAT(Complete({"-C", "fine\\ models", "import", ""}), IsEmpty());
    ::unsetenv("CDPATH");
}

TEST_F(BatchCompletion, OffersFoldersToWorkIn)
{
    EXPECT_THAT(Complete({"-C", ""}), ElementsAre("data"));
    EXPECT_THAT(Complete({"--directory", "=", "d"}), ElementsAre("data"));
    EXPECT_THAT(Complete({"--directory", "="}), ElementsAre("data"));
    EXPECT_THAT(Complete({"-q", "-s", ""}), UnorderedElementsAre("a.obj", "b.vec", "data"));
}
}
}
