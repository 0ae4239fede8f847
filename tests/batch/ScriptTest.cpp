#include "CommandLine.h"
#include "Operations.h"
#include <gmock/gmock.h>

using namespace tessarine;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
std::vector<std::string> NamesIn(const std::vector<OperationCall>& calls)
{
    std::vector<std::string> names;
    names.reserve(calls.size());
    for (const OperationCall& call : calls)
    {
        names.emplace_back(call.pOperation->name);
    }
    return names;
}

std::string ComplaintOn(const std::string& text)
{
    try
    {
        ParseScript(text, "run.txt");
        return "";
    }
    catch (const UsageError& error)
    {
        return error.what();
    }
}
}

TEST(BatchScript, HoldsOneOrMoreOperationsALine)
{
    const auto calls = ParseScript("new\nimport a.obj subdivide-loop\nexport b.obj\n", "run.txt");

    EXPECT_THAT(NamesIn(calls), ElementsAre("new", "import", "subdivide-loop", "export"));
    EXPECT_THAT(calls[1].arguments, ElementsAre("a.obj"));
    EXPECT_THAT(calls[3].arguments, ElementsAre("b.obj"));
}

TEST(BatchScript, KeepsThePlaceOfEachOperation)
{
    const auto calls = ParseScript("new\n\nimport a.obj status\n", "run.txt");

    EXPECT_EQ(calls[0].place, "run.txt, line 1");
    EXPECT_EQ(calls[1].place, "run.txt, line 3");
    EXPECT_EQ(calls[2].place, "run.txt, line 3");
}

TEST(BatchScript, DoesNotCarryArgumentsOverTheLineEnd)
{
    EXPECT_EQ(ComplaintOn("import\na.obj\n"),
              "run.txt, line 1: import: 0 arguments given; its form is: import FILE");
}

TEST(BatchScript, SkipsEmptyLinesAndComments)
{
    EXPECT_THAT(NamesIn(ParseScript("\n  \t\n# all of it\nnew # import nothing\n#", "run.txt")),
                ElementsAre("new"));
    EXPECT_THAT(ParseScript("", "run.txt"), IsEmpty());
}

TEST(BatchScript, StartsACommentAtOnceButNotInQuotes)
{
    EXPECT_THAT(ParseScript("import a.obj#b", "run.txt")[0].arguments, ElementsAre("a.obj"));
    EXPECT_THAT(ParseScript("import \"a#b.obj\"", "run.txt")[0].arguments, ElementsAre("a#b.obj"));
}

TEST(BatchScript, KeepsBlanksInQuotesTogether)
{
    EXPECT_THAT(ParseScript("import \"a  b.obj\"", "run.txt")[0].arguments, ElementsAre("a  b.obj"));
    EXPECT_THAT(ParseScript("import folder\" of \"a.obj", "run.txt")[0].arguments,
                ElementsAre("folder of a.obj"));
    EXPECT_THAT(ParseScript("import \"Data\\a.obj\"", "run.txt")[0].arguments, ElementsAre("Data\\a.obj"));
}

TEST(BatchScript, RefusesAnOpenQuotation)
{
    EXPECT_EQ(ComplaintOn("new\nimport \"a.obj\nexport b.obj\n"),
              "run.txt, line 2: a double quote is not closed on its line");
}

TEST(BatchScript, RefusesAnEmptyFileName)
{
    EXPECT_EQ(ComplaintOn("import \"\""), "run.txt, line 1: import: \"\" is no FILE (the name of a file)");
}

TEST(BatchScript, ToleratesLineEndsOfOtherSystems)
{
    const auto calls = ParseScript("new\r\nimport a.obj\r\n", "run.txt");

    EXPECT_THAT(NamesIn(calls), ElementsAre("new", "import"));
    EXPECT_THAT(calls[1].arguments, ElementsAre("a.obj"));
}

TEST(BatchScript, ToleratesAByteOrderMark)
{
    EXPECT_THAT(NamesIn(ParseScript("\xEF\xBB\xBFnew\n", "run.txt")), ElementsAre("new"));
}

TEST(BatchScript, RefusesWhatIsNoText)
{
    EXPECT_EQ(ComplaintOn(std::string("new\n\0", 5)),
              "run.txt: it has zero bytes, so it is no script; save it as UTF-8");
}

TEST(BatchScript, NeedsNoNewlineAtItsEnd)
{
    EXPECT_THAT(NamesIn(ParseScript("new\nstatus", "run.txt")), ElementsAre("new", "status"));
}

TEST(BatchScript, TakesTheWordBehindTwoDashesAsAnArgument)
{
    EXPECT_THAT(ParseScript("export -- report", "run.txt")[0].arguments, ElementsAre("report"));
}

TEST(BatchScript, NamesTheLineOfAnUnknownOperation)
{
    EXPECT_EQ(ComplaintOn("new\n\n# x\nfrobnicate\n"), "run.txt, line 4: unknown operation \"frobnicate\"");
}
