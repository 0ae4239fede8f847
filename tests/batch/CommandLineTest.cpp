#include "CommandLine.h"
#include "Operations.h"
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <set>
#include <sstream>

using namespace tessarine;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{
/// "import(a) export(b)"
std::string Spell(const std::vector<OperationCall>& calls)
{
    std::string text;
    for (const OperationCall& call : calls)
    {
        text += text.empty() ? "" : " ";
        text += call.pOperation->name;
        text += "(";
        for (const std::string& argument : call.arguments)
        {
            text += text.back() == '(' ? "" : ",";
            text += argument;
        }
        text += ")";
    }
    return text;
}

/// What a whole command line without quotes would run.
std::vector<OperationCall> ParseLine(const std::string& line)
{
    std::istringstream stream(line);
    return ParseOperations(ParseOptions({std::istream_iterator<std::string>(stream), {}}).words);
}

/// What is wrong with the words; empty when nothing is.
std::string ComplaintOn(const std::vector<std::string>& words)
{
    try
    {
        ParseOperations(words);
        return "";
    }
    catch (const UsageError& error)
    {
        return error.what();
    }
}

std::string ComplaintOnOptions(const std::vector<std::string>& words)
{
    try
    {
        ParseOptions(words);
        return "";
    }
    catch (const UsageError& error)
    {
        return error.what();
    }
}
}

TEST(BatchOptions, AreThoseOfTheManualWhenNoneIsGiven)
{
    const BatchOptions options = ParseOptions({"new"});

    EXPECT_FALSE(options.folder);
    EXPECT_FALSE(options.script);
    EXPECT_FALSE(options.quiet);
    EXPECT_FALSE(options.help);
    EXPECT_FALSE(options.version);
    EXPECT_EQ(options.viewWidth, 800);
    EXPECT_EQ(options.viewHeight, 600);
    EXPECT_EQ(options.threads, 1);
    EXPECT_THAT(options.words, ElementsAre("new"));
}

TEST(BatchOptions, HaveALongAndAShortForm)
{
    const BatchOptions brief = ParseOptions({"-C", "data", "-s", "run.txt", "-q"});
    const BatchOptions full = ParseOptions({"--directory", "data", "--script=run.txt", "--quiet"});

    for (const BatchOptions& options : {brief, full})
    {
        EXPECT_EQ(options.folder, "data");
        EXPECT_EQ(options.script, "run.txt");
        EXPECT_TRUE(options.quiet);
        EXPECT_THAT(options.words, IsEmpty());
    }
}

TEST(BatchOptions, EndAtTheFirstWordThatIsNone)
{
    const BatchOptions options =
        ParseOptions({"--window", "640x480", "--threads", "4", "import", "-q", "--version"});

    EXPECT_EQ(options.viewWidth, 640);
    EXPECT_EQ(options.viewHeight, 480);
    EXPECT_EQ(options.threads, 4);
    EXPECT_FALSE(options.quiet);
    EXPECT_FALSE(options.version);
    EXPECT_THAT(options.words, ElementsAre("import", "-q", "--version"));
}

TEST(BatchOptions, RefuseAnUnknownOne)
{
    EXPECT_EQ(ComplaintOnOptions({"--frobnicate", "new"}), "unknown option --frobnicate");
    EXPECT_EQ(ComplaintOnOptions({"-x"}), "unknown option -x");
    EXPECT_EQ(ComplaintOnOptions({"-q", "--frobnicate"}), "unknown option --frobnicate");
}

TEST(BatchOptions, RefuseAMissingValue)
{
    EXPECT_EQ(ComplaintOnOptions({"-C"}), "nothing stands behind -C, which takes a value");
    EXPECT_EQ(ComplaintOnOptions({"-q", "--script"}), "nothing stands behind --script, which takes a value");
    EXPECT_EQ(ComplaintOnOptions({"--window="}), "nothing stands behind --window=, which takes a value");
}

TEST(BatchOptions, RefuseToBeGivenTwice)
{
    EXPECT_EQ(ComplaintOnOptions({"-C", "a", "--directory=a", "new"}),
              "option -C, --directory is given more than once; give it once");
    EXPECT_EQ(ComplaintOnOptions({"-s", "a", "-s", "b"}),
              "option -s, --script is given more than once; give it once");
    EXPECT_EQ(ComplaintOnOptions({"--window", "1x1", "--window", "2x2", "new"}),
              "option --window is given more than once; give it once");
    EXPECT_EQ(ComplaintOnOptions({"--threads", "1", "--threads", "1", "--threads", "1", "new"}),
              "option --threads is given more than once; give it once");
    EXPECT_EQ(ComplaintOnOptions({"-qq", "new"}), "option -q, --quiet is given more than once; give it once");
    EXPECT_EQ(ComplaintOnOptions({"--help", "--help"}),
              "option --help is given more than once; give it once");
    EXPECT_EQ(ComplaintOnOptions({"--version", "--version"}),
              "option --version is given more than once; give it once");
}

TEST(BatchOptions, TakeNoValueWhereTheySwitch)
{
    EXPECT_EQ(ComplaintOnOptions({"--help=all"}), "option --help takes no value; leave out =all");
    EXPECT_EQ(ComplaintOnOptions({"--quiet=true", "new"}),
              "option -q, --quiet takes no value; leave out =true");
    EXPECT_EQ(ComplaintOnOptions({"--version=2"}), "option --version takes no value; leave out =2");
    EXPECT_EQ(ComplaintOnOptions({"-q=1", "new"}), "a switch takes no value; leave out =1");
}

TEST(BatchOptions, TakeValuesAsTheyStand)
{
    for (const char* name : {"[a,b]", "{}", "a=b", "-q", "%%", "'a'", "\"a\""})
    {
        EXPECT_EQ(ParseOptions({"-C", name, "new"}).folder, name);
        EXPECT_EQ(ParseOptions({std::string("--directory=") + name, "new"}).folder, name);
    }
    EXPECT_EQ(ParseOptions({"-s", "", "new"}).script, "");
}

TEST(BatchOptions, RefuseAWindowThatIsNoSize)
{
    for (const char* size : {"800", "800x", "x600", "0x600", "800x0", "-1x5", "800X600", "800x600x2",
                             "16385x1", "", "99999999999999999999x1", " 8x6", "8x6 ", "8.0x6"})
    {
        EXPECT_THAT(ComplaintOnOptions({"--window", size, "new"}), HasSubstr("WxH")) << size;
    }
    EXPECT_EQ(ComplaintOnOptions({"--window", "16384x1", "new"}), "");
}

TEST(BatchOptions, RefuseFewerThreadsThanOne)
{
    for (const char* count : {"0", "-1", "two", "1.5", "", "99999999999"})
    {
        EXPECT_THAT(ComplaintOnOptions({"--threads", count, "new"}), HasSubstr("whole number from 1"))
            << count;
    }
}

TEST(BatchOperations, StartAtEachWordThatNamesOne)
{
    EXPECT_EQ(Spell(ParseOperations({"new", "import", "a.obj", "subdivide-loop", "export", "b.obj"})),
              "new() import(a.obj) subdivide-loop() export(b.obj)");
}

TEST(BatchOperations, TakeTheWordBehindTwoDashesAsAnArgument)
{
    EXPECT_EQ(Spell(ParseOperations({"export", "--", "report", "report", "--", "--"})),
              "export(report) report(--)");
}

TEST(BatchOperations, TakeASingleDashAsAnArgument)
{
    EXPECT_EQ(Spell(ParseOperations({"report", "-", "dump", "-"})), "report(-) dump(-)");
}

TEST(BatchOperations, AreNoneInNoWords)
{
    EXPECT_THAT(ParseOperations({}), IsEmpty());
}

TEST(BatchOperations, RefuseAnUnknownName)
{
    EXPECT_EQ(ComplaintOn({"frobnicate", "new"}), "unknown operation \"frobnicate\"");
    EXPECT_EQ(ComplaintOn({"Import", "a.obj"}), "unknown operation \"Import\"");
    EXPECT_EQ(ComplaintOn({""}), "unknown operation \"\"");
    EXPECT_EQ(ComplaintOn({"import", "a.obj", "frobnicate"}),
              "import: \"frobnicate\" is neither its argument nor an operation; its form is: import FILE");
}

TEST(BatchOperations, RefuseAWrongNumberOfArguments)
{
    EXPECT_EQ(ComplaintOn({"import"}), "import: 0 arguments given; its form is: import FILE");
    EXPECT_EQ(ComplaintOn({"import", "export", "b.obj"}),
              "import: 0 arguments given; its form is: import FILE");
    EXPECT_EQ(ComplaintOn({"mouse-move", "1"}), "mouse-move: 1 argument given; its form is: mouse-move X Y");
}

TEST(BatchOperations, LeaveOutArgumentsInBracketsOnlyTogether)
{
    EXPECT_EQ(ComplaintOn({"solve", "a", "b", "c"}), "");
    EXPECT_EQ(ComplaintOn({"solve", "a", "b", "c", "3", "1e-7", "200"}), "");
    EXPECT_EQ(ComplaintOn({"solve", "a", "b", "c", "3"}),
              "solve: 4 arguments given; its form is: solve A.mtx B.vec X.vec [ITOL TOL ITMAX]");
    EXPECT_EQ(ComplaintOn({"camera", "1", "2", "3", "0", "0", "0"}), "");
    EXPECT_EQ(ComplaintOn({"camera", "1", "2", "3", "0", "0", "0", "0", "-1", "0.5"}), "");
    EXPECT_NE(ComplaintOn({"camera", "1", "2", "3", "0", "0", "0", "0"}), "");
    EXPECT_EQ(ComplaintOn({"make-eigen-table", "f"}), "");
    EXPECT_EQ(ComplaintOn({"make-eigen-table", "f", "3"}), "");
    EXPECT_EQ(ComplaintOn({"connect-next"}), "");
    EXPECT_EQ(ComplaintOn({"connect-next", "7"}), "");
    EXPECT_EQ(ComplaintOn({"connect-next", "all"}), "");
}

TEST(BatchOperations, RefuseAnArgumentOfTheWrongForm)
{
    EXPECT_EQ(ComplaintOn({"simplify", "1.5"}), "simplify: \"1.5\" is no RATIO (a number from 0 to 1)");
    EXPECT_EQ(ComplaintOn({"simplify", "0.2x"}), "simplify: \"0.2x\" is no RATIO (a number from 0 to 1)");
    EXPECT_EQ(ComplaintOn({"subdivide-adaptive", "big"}),
              "subdivide-adaptive: \"big\" is no AREA (a number)");
    EXPECT_EQ(ComplaintOn({"menu", "0x8000"}), "menu: \"0x8000\" is no ID (a whole number from 0)");
    EXPECT_EQ(ComplaintOn({"import", ""}), "import: \"\" is no FILE (the name of a file)");
    EXPECT_NE(ComplaintOn({"optimize", "one"}), "");
    EXPECT_NE(ComplaintOn({"connect-next", "0"}), "");
    EXPECT_NE(ComplaintOn({"make-eigen-table", "f", "2"}), "");
    EXPECT_NE(ComplaintOn({"limit-point", "-1", "0", "0"}), "");
    EXPECT_NE(ComplaintOn({"camera", "1", "2", "3", "0", "0", "nan"}), "");
}

TEST(BatchOperations, RefuseOptionsBehindThem)
{
    EXPECT_EQ(ComplaintOn({"import", "--quiet"}),
              "option --quiet stands behind an operation; options come first");
    EXPECT_EQ(ComplaintOn({"import", "--", "--quiet"}), "");
}

TEST(BatchOperations, RefuseTwoDashesWithNothingToProtect)
{
    EXPECT_EQ(ComplaintOn({"import", "--"}), "nothing stands behind the last --");
    EXPECT_EQ(ComplaintOn({"--", "import", "x"}),
              "-- stands in front of an argument, and \"import\" has no operation");
}

TEST(BatchHelp, FitsAScreenWithThePrompt)
{
    std::istringstream help(GetHelpText());
    int lines = 0;
    for (std::string line; std::getline(help, line); ++lines)
    {
        EXPECT_LE(line.size(), 80U) << line;
    }
    EXPECT_LE(lines, 23) << "the prompt needs one";
}

TEST(BatchHelp, NamesEveryOperation)
{
    const std::string help = GetHelpText();
    for (const Operation& operation : GetOperations())
    {
        EXPECT_THAT(help, HasSubstr(" " + GetUsage(operation)));
    }
}

TEST(BatchHelp, TellsFormPurposeAndExampleOfOneOperation)
{
    EXPECT_EQ(GetHelpText({"status"}),
              "status\n"
              "    prints the seven panes of the status bar, one a line\n"
              "    tessarine-batch -q import bunny.obj status\n"
              "The examples' files are made by tessarine-samples FOLDER; matrices are yours.\n");
    EXPECT_THROW(GetHelpText({"frobnicate"}), UsageError);
}

TEST(BatchHelp, HasAnExampleOfEveryOperation)
{
    for (const Operation& operation : GetOperations())
    {
        const std::vector<OperationCall> calls = ParseLine(std::string(operation.example));
        EXPECT_TRUE(std::ranges::any_of(calls, [&operation](const OperationCall& call)
                                        { return call.pOperation == &operation; }))
            << operation.name;
    }
}

/// The first arguments of those of a line's operations, without their endings.
std::set<std::string> StemsOf(const std::vector<OperationCall>& calls,
                              const std::set<std::string_view>& operations)
{
    std::set<std::string> stems;
    for (const OperationCall& call : calls)
    {
        if (operations.count(call.pOperation->name) != 0)
        {
            stems.insert(std::filesystem::path(call.arguments.front()).stem().string());
        }
    }
    return stems;
}

TEST(BatchHelp, HasExamplesThatLeaveTheSamplesAsTheyAre)
{
    std::set<std::string> samples;
    std::set<std::string> written;
    for (const Operation& operation : GetOperations())
    {
        const std::vector<OperationCall> calls = ParseLine(std::string(operation.example));
        const std::set<std::string> own =
            StemsOf(calls, {"export", "render", "report", "dump", "dump-field"});
        std::ranges::set_difference(StemsOf(calls, {"import"}), own, std::inserter(samples, samples.end()));
        written.insert(own.begin(), own.end());
    }
    std::vector<std::string> overwritten; // a model's picture has its name
    std::ranges::set_intersection(samples, written, std::back_inserter(overwritten));
    EXPECT_THAT(overwritten, IsEmpty());
}

TEST(BatchHelp, EndsWithAnExample)
{
    const std::string help = GetHelpText();
    const std::string program = "  tessarine-batch ";
    const std::string example = help.substr(help.rfind(program) + program.size());
    EXPECT_EQ(Spell(ParseLine(example)), "import(a.obj) simplify(0.8) export(b.obj) report(report)");
}

TEST(BatchHelp, KnowsTheFormOfEveryArgument)
{
    for (const Operation& operation : GetOperations())
    {
        std::vector<std::string> words{std::string(operation.name)};
        const auto blanks = std::count(operation.arguments.begin(), operation.arguments.end(), ' ');
        words.resize(operation.arguments.empty() ? 1 : static_cast<std::size_t>(blanks) + 2, "3");
        const bool isRatio = operation.arguments == "RATIO";
        EXPECT_EQ(ComplaintOn(words).empty(), !isRatio) << operation.name;
    }
}

TEST(BatchTour, ShowsEveryOperation)
{
    std::ifstream file(TESSARINE_TOUR);
    std::string script(std::istreambuf_iterator<char>(file), {});
    std::ranges::replace(script, '(', ' ');
    std::istringstream stream(script);
    const std::vector<std::string> words(std::istream_iterator<std::string>(stream), {});
    for (const Operation& operation : GetOperations())
    {
        const bool isMadeByAWord = operation.name == "render" || operation.name == "export"; // PICTURE, MODEL
        EXPECT_TRUE(isMadeByAWord || std::ranges::count(words, operation.name) > 0) << operation.name;
    }
}
