#include "BatchProcess.h"
#include "DumpCheck.h"
#include "File.h"
#include <cmath>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace tessarine;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace
{
constexpr char kTetrahedronConsole[] = "Unknow token! Line: 9,Index: 0\n"
                                       "Number of halfedge: 12\n"
                                       "m_VertexList.SIZE(): 4\n"
                                       "m_FaceList.Size(): 4\n"
                                       "m_EdgeList.Size(): 6\n"
                                       "total halfedge number: 12\n"
                                       "Solid fits Euler formular: true\n";

constexpr char kEmptyStatus[] = "就绪\n"
                                "顶点数";

/// A folder with the model tetra.obj.
class BatchProcess : public testing::Test
{
protected:
    BatchProcess() { m_Folder.Write("tetra.obj", kTetrahedron); }

    ProcessResult Run(const std::vector<std::string>& arguments, const std::string& input = "",
                      OutputTo outputTo = OutputTo::Test) const
    {
        return RunBatch(m_Folder, arguments, input, outputTo);
    }

    /// Expects status 2, nothing on standard output, and one line of this text on standard error.
    void ExpectUsageError(const std::vector<std::string>& arguments, const std::string& text,
                          const std::string& input = "") const
    {
        const ProcessResult result = Run(arguments, input);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.output, IsEmpty());
        EXPECT_EQ(result.errors, "tessarine-batch: " + text + "; see tessarine-batch --help\n");
    }

    TemporaryFolder m_Folder;
};
}

TEST_F(BatchProcess, PrintsTheConsoleOfAnImport)
{
    const ProcessResult result = Run({"import", "tetra.obj"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, kTetrahedronConsole);
    EXPECT_THAT(result.errors, IsEmpty());
}

// The links follow from the builder's order: a half-edge a corner in file order, a vertex keeps the last that
// was made at it, and an edge is made where a half-edge first meets its pair of vertices. 1/sqrt(3) =
// 0.5773502691896258.
TEST_F(BatchProcess, DumpsATetrahedronToTheLetter)
{
    EXPECT_EQ(Run({"import", "tetra.obj", "dump", "dump.json"}).status, 0);

    const std::string expected = ReadFile(TESSARINE_GOLDEN "/tetrahedron.json");
    EXPECT_EQ(m_Folder.Read("dump.json"), expected);
    EXPECT_EQ(Run({"-q", "import", "tetra.obj", "dump", "-"}).output, expected);
}

TEST_F(BatchProcess, DumpsALoopStepWithAllLinksInOrder)
{
    EXPECT_EQ(Run({"import", "tetra.obj", "subdivide-loop", "subdivide-loop", "dump", "dump.json"}).status,
              0);

    std::ifstream dump(m_Folder.GetPath() / "dump.json");
    const DumpFindings findings = CheckDump(dump);
    EXPECT_THAT(findings.breach, IsEmpty());
    EXPECT_EQ(findings.solids, 3U);            // the model and two snapshots
    EXPECT_EQ(findings.faces, 64U + 4U + 16U); // theirs
}

TEST_F(BatchProcess, SubdividesWhatIsAboveAnArea)
{
    m_Folder.Write("axes.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 3 2\nf 1 2 4\nf 2 3 4\nf 3 1 4\n");
    const auto countFaces = [this](const std::vector<std::string>& words)
    {
        std::vector<std::string> all = {"-q", "import", "axes.obj"};
        all.insert(all.end(), words.begin(), words.end());
        all.insert(all.end(), {"report", "-"});
        const ProcessResult result = Run(all);
        EXPECT_EQ(result.status, 0);
        return nlohmann::json::parse(result.output)["nodes"][0]["faces"].get<int>();
    };
    // In the cube from -1 to 1 the right angles have sides of 2, so that the measures are 4 and 4 sqrt(3).
    EXPECT_EQ(countFaces({"subdivide-adaptive", "3.9"}), 16);
    EXPECT_EQ(countFaces({"subdivide-adaptive", "4"}), 4 + 3 * 2) << "the large face and its neighbours";
    EXPECT_EQ(countFaces({"subdivide-adaptive", "7"}), 4);
    EXPECT_EQ(countFaces({"subdivide-adaptive", "1e300"}), 4);
    EXPECT_EQ(countFaces({"subdivide-adaptive", "-1e300"}), 16);
    EXPECT_EQ(countFaces({"subdivide-loop", "subdivide-adaptive", "0"}), 64);
    EXPECT_EQ(countFaces({"menu", "32835"}), 4) << "the dialog is cancelled";
}

TEST_F(BatchProcess, LeavesAnOpenModelThatIsToBeSubdividedAdaptively)
{
    m_Folder.Write("open.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    const ProcessResult result =
        Run({"-q", "import", "open.obj", "subdivide-adaptive", "0", "export", "out.obj"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors,
                AllOf(StartsWith("tessarine-batch: subdivide-adaptive: "), HasSubstr("closed")));
    EXPECT_FALSE(m_Folder.Has("out.obj"));
    ExpectUsageError({"subdivide-adaptive", "nan"}, "subdivide-adaptive: \"nan\" is no AREA (a number)");
}

TEST_F(BatchProcess, MakesAMaterialForTheSelection)
{
    EXPECT_EQ(Run({"-q", "import", "tetra.obj", "set-material", "menu", "32784", "dump", "dump.json"}).status,
              0);
    EXPECT_TRUE(nlohmann::json::parse(m_Folder.Read("dump.json"))["materials"].empty())
        << "nothing is selected";
}

TEST_F(BatchProcess, HoldsTheConsoleBackWhenQuietButNotWhatIsAskedFor)
{
    EXPECT_THAT(Run({"-q", "import", "tetra.obj"}).output, IsEmpty());

    const ProcessResult result = Run({"--quiet", "import", "tetra.obj", "report", "-", "status"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, AllOf(StartsWith("{\n  \"nodes\": [\n    {\"id\""), HasSubstr("}\n就绪\n")));
}

TEST_F(BatchProcess, PrintsTheVersion)
{
    const ProcessResult result = Run({"--version"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "tessarine-batch 0.1.0\n");
}

TEST_F(BatchProcess, PrintsTheHelp)
{
    const ProcessResult result = Run({"--help"});

    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, StartsWith("Usage: tessarine-batch [OPTION]..."));
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(Run({"--help", "export"}).output, StartsWith("export FILE\n"));
    ExpectUsageError({"--help", "exprt"}, "unknown operation \"exprt\"");
}

TEST_F(BatchProcess, PrintsTheSevenPanes)
{
    const ProcessResult result = Run({"-q", "import", "tetra.obj", "status"});

    EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), 7);
    EXPECT_THAT(result.output, StartsWith(kEmptyStatus));
    EXPECT_THAT(result.output, EndsWith("\n大写\n数字\n滚动\n"));
    EXPECT_THAT(result.output, HasSubstr("4"));
}

TEST_F(BatchProcess, ExportsWhatItImported)
{
    EXPECT_EQ(Run({"import", "tetra.obj", "export", "out.obj"}).status, 0);

    const ProcessResult again = Run({"-q", "import", "out.obj", "report", "-"});
    const nlohmann::json node = nlohmann::json::parse(again.output)["nodes"][0];
    EXPECT_EQ(node["vertices"], 4);
    EXPECT_EQ(node["faces"], 4);
    EXPECT_EQ(node["eulerNumber"], 2);
    EXPECT_THAT(m_Folder.List(), ElementsAre("out.obj", "tetra.obj"));
}

TEST_F(BatchProcess, FindsAMaterialLibraryBesideItsModel)
{
    m_Folder.Write("models/boxed.obj", std::string("mtllib boxed.mtl\nusemtl red\n") + kTetrahedron);
    m_Folder.Write("models/boxed.mtl", "newmtl red\nKd 1 0 0\n");

    const ProcessResult result = Run({"-q", "import", "models/boxed.obj", "dump", "dump.json"});
    EXPECT_EQ(result.status, 0);
    const nlohmann::json dump = nlohmann::json::parse(m_Folder.Read("dump.json")); // in the folder of the run
    EXPECT_EQ(dump["materials"][0]["name"], "red");
}

TEST_F(BatchProcess, WorksInTheFolderOfItsOption)
{
    m_Folder.Write("below/other.obj", kTetrahedron);

    EXPECT_EQ(Run({"-C", "below", "import", "other.obj", "export", "out.obj"}).status, 0);
    EXPECT_TRUE(m_Folder.Has("below/out.obj"));
    EXPECT_EQ(Run({"--directory=below", "-s", "run.txt"}).status,
              2); // a script's path, too, is relative to it
    m_Folder.Write("below/run.txt", "import other.obj\n");
    EXPECT_EQ(Run({"--directory=below", "-s", "run.txt"}).status, 0);
}

TEST_F(BatchProcess, TakesNamesAsTheyStand)
{
    m_Folder.Write("a\\b.obj", kTetrahedron);
    m_Folder.Write("a/b.obj", "v 0 0 0\n");
    const ProcessResult result = Run({"import", "a\\b.obj", "export", "c\\d.obj", "report", "e\\f.json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("m_VertexList.SIZE(): 4"));
    EXPECT_TRUE(m_Folder.Has("c\\d.obj") && m_Folder.Has("e\\f.json"));

    EXPECT_EQ(Run({"import", "TETRA.obj"}).status, 1);
    EXPECT_EQ(Run({"-s", "Run.txt"}).status, 2);
}

TEST_F(BatchProcess, SaysOnTheConsoleThatAFileInAMissingFolderCannotBeOpened)
{
    const ProcessResult result = Run({"import", "missing/a.obj"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "Cannot open file!!\n");
    EXPECT_THAT(result.errors,
                AllOf(HasSubstr("missing/a.obj: no such f"), HasSubstr("tessarine-batch: import: ")));

    EXPECT_THAT(Run({"import", "missing/a.txt"}).errors, HasSubstr("不能导入此类型文件!"));
}

TEST_F(BatchProcess, SaysTheSameOfAFolderThatCannotBeLookedInto)
{
    std::filesystem::create_symlink("second", m_Folder.GetPath() / "first");
    std::filesystem::create_symlink("first", m_Folder.GetPath() / "second");
    m_Folder.Write("file", "");
    for (const std::string& folder : {std::string("first"), std::string(300, 'a'), std::string("file")})
    {
        const ProcessResult result = Run({"import", folder + "/a.obj", "status"});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.output, "Cannot open file!!\n") << folder;
        EXPECT_THAT(result.errors, HasSubstr("tessarine-batch: import: cannot ")) << folder;
        EXPECT_THAT(result.errors, Not(HasSubstr("filesystem error"))) << folder;
    }
}

TEST_F(BatchProcess, TakesTheWordBehindTwoDashesForAFile)
{
    m_Folder.Write("report", kTetrahedron);

    const ProcessResult result = Run({"import", "--", "report"});
    EXPECT_EQ(result.status, 1); // the file is there, but its ending is refused
    EXPECT_THAT(result.errors, StartsWith("message box \"错误\": 不能导入此类型文件!\n"));

    EXPECT_EQ(Run({"import", "tetra.obj", "dump", "--", "status"}).status, 0);
    EXPECT_TRUE(m_Folder.Has("status"));
}

TEST_F(BatchProcess, SetsTheViewSize)
{
    const auto aspectOf = [this](const std::vector<std::string>& options)
    {
        std::vector<std::string> words = options;
        words.insert(words.end(), {"report", "-"});
        return nlohmann::json::parse(Run(words).output)["camera"]["aspect"].get<double>();
    };
    EXPECT_EQ(aspectOf({}), 1.3333334); // 800 x 600, a float
    EXPECT_EQ(aspectOf({"--window", "640x320"}), 2.0);
}

TEST_F(BatchProcess, GivesTheSameResultsWithThreads)
{
    Run({"import", "tetra.obj", "subdivide-loop", "dump", "one.json"});
    Run({"--threads", "4", "import", "tetra.obj", "subdivide-loop", "dump", "four.json"});

    EXPECT_THAT(m_Folder.Read("one.json"), testing::Not(IsEmpty()));
    EXPECT_EQ(m_Folder.Read("one.json"), m_Folder.Read("four.json"));
}

TEST_F(BatchProcess, StartsAnEmptyDocument)
{
    Run({"dump", "fresh.json"});
    EXPECT_EQ(Run({"-q", "import", "tetra.obj", "new", "dump", "new.json"}).status, 0);

    EXPECT_EQ(m_Folder.Read("new.json"), m_Folder.Read("fresh.json"));
}

TEST_F(BatchProcess, SubdividesByLoop)
{
    const ProcessResult result = Run({"-q", "import", "tetra.obj", "subdivide-loop", "report", "-"});
    const nlohmann::json report = nlohmann::json::parse(result.output);

    EXPECT_EQ(report["nodes"][0]["vertices"], 10); // 4 and one on each of the 6 edges
    EXPECT_EQ(report["nodes"][0]["faces"], 16);
    EXPECT_EQ(report["nodes"][0]["edges"], 24);
    EXPECT_EQ(report["nodes"][1]["faces"], 4); // the mesh before, kept
    EXPECT_EQ(report["nodes"][1]["solidVisible"], false);
    EXPECT_EQ(report["history"], 1);
}

TEST_F(BatchProcess, SubdividesNothingWithoutAModelAndSaysNothing)
{
    const ProcessResult result = Run({"subdivide-loop"});

    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_THAT(result.errors, IsEmpty());
}

// --- scripts

TEST_F(BatchProcess, RunsAScriptAndThenTheCommandLine)
{
    m_Folder.Write(
        "run.txt",
        "# the model\r\nimport \"tetra.obj\"  # closed\r\n\r\nexport one.obj report report.json\n");

    EXPECT_EQ(Run({"-s", "run.txt", "export", "two.obj"}).status, 0);
    EXPECT_TRUE(m_Folder.Has("report.json"));
    EXPECT_THAT(m_Folder.Read("one.obj"), testing::Not(IsEmpty()));
    EXPECT_EQ(m_Folder.Read("one.obj"), m_Folder.Read("two.obj"));
}

TEST_F(BatchProcess, ReadsAScriptFromStandardInput)
{
    const ProcessResult result = Run({"-q", "--script", "-"}, "import tetra.obj\nexport out.obj");

    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(m_Folder.Has("out.obj"));
}

TEST_F(BatchProcess, ReadsAScriptFromAPipe)
{
    const std::string name = (m_Folder.GetPath() / "pipe").string();
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(name) << "import tetra.obj\nexport out.obj\n"; });
    const ProcessResult result = Run({"-q", "-s", "pipe"});
    const int end = open(name.c_str(), O_RDONLY | O_NONBLOCK); // the writer goes on though nobody has read
    writer.join();
    close(end);
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(m_Folder.Has("out.obj"));

    EXPECT_EQ(Run({"-q", "-s", "/dev/stdin"}, "import tetra.obj\nexport second.obj\n").status, 0);
    EXPECT_TRUE(m_Folder.Has("second.obj"));
}

TEST_F(BatchProcess, ChecksTheWholeScriptBeforeItRuns)
{
    m_Folder.Write("run.txt", "import tetra.obj\nexport out.obj\nfrobnicate\n");

    ExpectUsageError({"-s", "run.txt"}, "run.txt, line 3: unknown operation \"frobnicate\"");
    ExpectUsageError({"-s", "-"},
                     "standard input, line 1: export: 0 arguments given; its form is: export FILE",
                     "export\nout.obj\n");
    EXPECT_FALSE(m_Folder.Has("out.obj"));
}

TEST_F(BatchProcess, RefusesAScriptThatCannotBeRead)
{
    const ProcessResult missing = Run({"-s", "missing.txt", "new"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_THAT(missing.errors, AllOf(StartsWith("tessarine-batch: cannot open missing.txt: no such file"),
                                      EndsWith("; see tessarine-batch --help\n")));

    EXPECT_EQ(Run({"-s", ".", "new"}).status, 2); // a folder
    EXPECT_EQ(Run({"-s", "", "new"}).status, 2);
}

TEST_F(BatchProcess, RefusesAnEmptyScript)
{
    m_Folder.Write("run.txt", "# nothing\n");
    ExpectUsageError({"-s", "run.txt"}, "no operation is given");
}

// --- usage

TEST_F(BatchProcess, RunsNothingWhenAnyWordIsWrong)
{
    ExpectUsageError({"import", "tetra.obj", "export", "out.obj", "simplify", "2"},
                     "simplify: \"2\" is no RATIO (a number from 0 to 1)");
    ExpectUsageError({"dump", "out.json", "frobnicate"},
                     "dump: \"frobnicate\" is neither its argument nor an operation; its form is: dump FILE");
    EXPECT_THAT(m_Folder.List(), ElementsAre("tetra.obj"));
}

TEST_F(BatchProcess, RefusesAnEmptyCommandLine)
{
    ExpectUsageError({}, "no operation is given");
    ExpectUsageError({"-q"}, "no operation is given");
}

TEST_F(BatchProcess, RefusesOptionsThatSayNothing)
{
    ExpectUsageError({"--frobnicate", "new"}, "unknown option --frobnicate");
    ExpectUsageError({"-C", ".", "-C", ".", "export", "out.obj"},
                     "option -C, --directory is given more than once; give it once");
    ExpectUsageError({"--help=all"}, "option --help takes no value; leave out =all");
    ExpectUsageError({"--threads", "0", "new"}, "--threads: \"0\" is no whole number from 1");
    ExpectUsageError({"--window", "800", "new"},
                     "--window: \"800\" is no WxH, as 800x600, from 1x1 to 16384x16384");
}

TEST_F(BatchProcess, RefusesAFolderThatIsNone)
{
    const ProcessResult missing = Run({"-C", "missing", "new"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_THAT(missing.errors,
                StartsWith("tessarine-batch: cannot enter the folder missing: no such folder"));

    const ProcessResult file = Run({"-C", "tetra.obj", "new"});
    EXPECT_EQ(file.status, 2);
    EXPECT_THAT(file.errors, StartsWith("tessarine-batch: cannot enter the folder tetra.obj: "));
}

// --- failures

TEST_F(BatchProcess, FailsOnAMissingModelAndRunsNothingBehindIt)
{
    const ProcessResult result = Run({"import", "missing.obj", "export", "out.obj"});

    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "Cannot open file!!\n");
    EXPECT_THAT(result.errors, AllOf(StartsWith("tessarine-batch: import: cannot open "),
                                     HasSubstr("missing.obj"), HasSubstr("no such file")));
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1);
    EXPECT_THAT(m_Folder.List(), ElementsAre("tetra.obj"));
}

TEST_F(BatchProcess, NamesScriptAndLineOfWhatFails)
{
    m_Folder.Write("run.txt", "new\n\nreport a.json import missing.obj # no such file\nnew\n");
    EXPECT_THAT(Run({"-s", "run.txt"}).errors,
                StartsWith("tessarine-batch: import: run.txt, line 3: cannot open "));
    EXPECT_THAT(Run({"-s", "-"}, "menu 1").errors,
                StartsWith("tessarine-batch: menu: standard input, line 1: no command has the number 1"));
    m_Folder.Write("short.txt", "new\n");
    EXPECT_THAT(Run({"-s", "short.txt", "menu", "1"}).errors,
                StartsWith("tessarine-batch: menu: no command has the number 1"));
}

TEST_F(BatchProcess, FailsInAMissingFolder)
{
    EXPECT_EQ(Run({"import", "missing/a.obj"}).status, 1);
    EXPECT_EQ(Run({"import", "tetra.obj", "export", "missing/a.obj"}).status, 1);
    EXPECT_EQ(Run({"report", "missing/a.json"}).status, 1);
    EXPECT_EQ(Run({"dump", "missing/a.json"}).status, 1);
}

TEST_F(BatchProcess, FailsOnARefusedExtensionWithTheBoxOfTheWindow)
{
    m_Folder.Write("tetra.Obj", kTetrahedron);

    const ProcessResult import = Run({"import", "tetra.Obj"});
    EXPECT_EQ(import.status, 1);
    EXPECT_EQ(import.errors,
              "message box \"错误\": 不能导入此类型文件!\n"
              "tessarine-batch: import: the name of a model must end in .obj or .OBJ: tetra.Obj\n");

    const ProcessResult saving = Run({"-q", "import", "tetra.obj", "export", "tetra.stl"});
    EXPECT_EQ(saving.status, 1);
    EXPECT_EQ(saving.errors,
              "message box \"错误\": 不能保存成此类型文件!\n"
              "tessarine-batch: export: the name of a model must end in .obj or .OBJ: tetra.stl\n");
    EXPECT_FALSE(m_Folder.Has("tetra.stl"));
}

TEST_F(BatchProcess, DoesNotReplaceWhatItsOwnStreamsLeadTo)
{
    const ProcessResult result = Run({"new", "report", "/dev/stdout"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("an operation that can print what it makes does so for the name -"));
}

TEST_F(BatchProcess, SpellsOutControlCharactersInMessages)
{
    EXPECT_THAT(Run({"a\n\x1B[31mb"}).errors, HasSubstr("a\\n\\x1B[31mb"));
    m_Folder.Write("dos.obj", "mtllib m.mtl\r\nv 0 0 0\r\nv 1 0 0\r\nv 0 1 0\r\nf 1 2 3\r\n");
    const ProcessResult result = Run({"import", "dos.obj"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.errors, HasSubstr("m.mtl\\r"));
    EXPECT_THAT(result.errors, HasSubstr("save the file with plain line ends"));
}

TEST_F(BatchProcess, TellsOfAFileThatGivesNoVertex)
{
    m_Folder.Write("wide.obj", std::string("\xFF\xFEv\0 \0", 6));
    const ProcessResult result = Run({"import", "wide.obj"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.errors, HasSubstr("wide.obj: no line gives a vertex, so the model is empty"));
}

TEST_F(BatchProcess, TellsOfTheFirstCoordinateThatIsNoNumber)
{
    for (const char* vertex : {"v nan 0 0", "v 0 inf 0", "v 0 0 x", "v 1,5 0 0", "v 0 0 1e+5", "v 1.2.3 0 0",
                               "v 1-2 3 4", "v 0 0 0\rv 1 0 0"})
    {
        m_Folder.Write("odd.obj", std::string("# a\nv 0 0 0\n") + vertex + "\n" + vertex + "\n");
        const ProcessResult result = Run({"import", "odd.obj"});
        EXPECT_EQ(result.status, 0) << vertex;
        EXPECT_THAT(result.errors, HasSubstr("odd.obj, line 3: a coordinate is no plain decimal number"))
            << vertex;
        EXPECT_THAT(result.errors, Not(HasSubstr("line 4"))) << vertex;
    }
    m_Folder.Write("plain.obj", "v 0 -1.5 .5e-2\r\nv 1 2 3\r\r\nv 1 2\t3 \nv 1 2 3 4\nv 1 2");
    EXPECT_THAT(Run({"import", "plain.obj"}).errors, Not(HasSubstr("coordinate")));
}

TEST_F(BatchProcess, SaysWhenItsStandardOutputMayNotGrow)
{
    m_Folder.Write("tetra.obj", kTetrahedron);
    const std::string command =
        "ulimit -f 1; \"" TESSARINE_BATCH "\" -q import tetra.obj dump - >grown.json 2>why.txt";
    const int status = std::system(("cd '" + m_Folder.GetPath().string() + "'; " + command).c_str());
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_THAT(m_Folder.Read("why.txt"), HasSubstr("cannot write to standard output: File too large"));
}

TEST_F(BatchProcess, TellsOfAByteOrderMark)
{
    m_Folder.Write("marked.obj", "\xEF\xBB\xBFv 9 9 9\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    EXPECT_THAT(Run({"import", "marked.obj"}).errors, HasSubstr("a byte-order mark hides the first line"));
}

TEST_F(BatchProcess, FailsOnNumbersOutsideTheModel)
{
    m_Folder.Write("bad.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 4\n");

    const ProcessResult result = Run({"import", "bad.obj", "export", "out.obj"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, AllOf(StartsWith("tessarine-batch: import: "), HasSubstr("4")));
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1);
    EXPECT_FALSE(m_Folder.Has("out.obj"));
}

TEST_F(BatchProcess, SimplifiesAndSaysWhatIsLeft)
{
    const ProcessResult run =
        Run({"import", "tetra.obj", "subdivide-loop", "simplify", "0.5", "export", "out.obj"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    // Of 16 faces 8 go; tetrahedron, snapshot, subdivision and result have 12, 12, 36 more and 24 half-edges.
    EXPECT_THAT(run.output, HasSubstr("sTriangles: 8\nsVertexes: 6\nfn.Size(): 8\nNumber of halfedge: 84\n"));
    EXPECT_THAT(m_Folder.Read("out.obj"), HasSubstr("# 8 faces in this object "));
}

TEST_F(BatchProcess, FailsToSimplifyWithoutAModel)
{
    const ProcessResult result = Run({"simplify", "0.5"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "tessarine-batch: simplify: simplification needs a model: import one first\n");
}

TEST_F(BatchProcess, OptimizesInEveryMode)
{
    const ProcessResult run = Run({"-q", "import", "tetra.obj", "subdivide-loop", "optimize", "1", "optimize",
                                   "2", "optimize", "3", "export", "out.obj"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    EXPECT_THAT(m_Folder.Read("out.obj"), HasSubstr("# 16 faces in this object "));
}

TEST_F(BatchProcess, FailsToOptimizeAModelWithARim)
{
    m_Folder.Write("open.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    const ProcessResult run = Run({"-q", "import", "open.obj", "optimize", "1"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, AllOf(StartsWith("tessarine-batch: optimize: "), HasSubstr("3 sides of faces")));
    EXPECT_EQ(Run({"-q", "import", "open.obj", "optimize", "2"}).status, 0);
}

TEST_F(BatchProcess, PrintsTheQualityOfTheTriangles)
{
    // Edges of 2 root 2 everywhere: 8 over twice the area of 2 root 3, which is 2 / root 3.
    const ProcessResult result = Run({"-q", "import", "tetra.obj", "triangle-quality"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output,
              "1.1547005383792517\n1.1547005383792517\n1.1547005383792517\n1.1547005383792517\n");

    const ProcessResult empty = Run({"triangle-quality"});
    EXPECT_EQ(empty.status, 1);
    EXPECT_EQ(empty.errors,
              "tessarine-batch: triangle-quality: there is no model to measure: import one first\n");
}

TEST_F(BatchProcess, LeavesTheModelAsItIsWhenItsQualityIsMeasured)
{
    m_Folder.Write("far.obj", "v 5 5 5\nv 9 5 5\nv 5 9 5\nf 1 2 3\n");
    EXPECT_EQ(
        Run({"import", "far.obj", "dump", "before.json", "triangle-quality", "dump", "after.json"}).status,
        0);
    EXPECT_EQ(m_Folder.Read("after.json"), m_Folder.Read("before.json"));
}

TEST_F(BatchProcess, RunsMenuCommandsByTheirNumber)
{
    const ProcessResult result = Run({"-q", "import", "tetra.obj", "menu", "32778", "report", "-"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(nlohmann::json::parse(result.output)["nodes"][0]["faces"], 16); // the Loop step
}

TEST_F(BatchProcess, CancelsTheDialogOfAMenuCommand)
{
    const ProcessResult result =
        Run({"-q", "import", "tetra.obj", "menu", "32775", "menu", "32783", "report", "-"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(nlohmann::json::parse(result.output)["nodes"][0]["faces"], 4); // the model stays
    EXPECT_THAT(m_Folder.List(), ElementsAre("tetra.obj"));
}

TEST_F(BatchProcess, FailsOnMenuNumbersThatDoNothing)
{
    const auto complaintOn = [this](const std::string& number)
    {
        const ProcessResult result = Run({"menu", number});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1);
        return result.errors;
    };
    EXPECT_EQ(complaintOn("12345"), "tessarine-batch: menu: no command has the number 12345\n");
    EXPECT_THAT(complaintOn("57643"),
                AllOf(StartsWith("tessarine-batch: menu: "), HasSubstr("is disabled"))); // undo
    EXPECT_THAT(complaintOn("32830"), HasSubstr("is disabled"));
    EXPECT_THAT(complaintOn("32842"), HasSubstr("is disabled")); // the space partition
}

TEST_F(BatchProcess, LeavesAnOldResultWhenTheNewOneCannotBeWritten)
{
    m_Folder.Write("out.json/keep", "");

    const ProcessResult result = Run({"dump", "out.json"}); // a folder
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, StartsWith("tessarine-batch: dump: cannot write out.json: "));
    EXPECT_TRUE(m_Folder.Has("out.json/keep"));
}

// --- the view and the mouse

namespace
{
nlohmann::json CameraOf(const ProcessResult& result)
{
    EXPECT_EQ(result.status, 0);
    return nlohmann::json::parse(result.output)["camera"];
}
}

TEST_F(BatchProcess, LooksFromWhereTheCameraIsPut)
{
    const nlohmann::json upright = CameraOf(Run({"camera", "0", "3", "-4", "0", "0", "0", "report", "-"}));
    EXPECT_EQ(upright["position"], nlohmann::json({0.0, 3.0, -4.0}));
    EXPECT_EQ(upright["target"], nlohmann::json({0.0, 0.0, 0.0}));
    EXPECT_NEAR(upright["up"][1].get<double>(), 0.8, 1e-15); // (0, 3, -4)/5 turned by 90 degrees
    EXPECT_NEAR(upright["up"][2].get<double>(), 0.6, 1e-15);

    const nlohmann::json turned =
        CameraOf(Run({"camera", "0", "0", "5", "0", "0", "1", "-2", "0", "0", "report", "-"}));
    EXPECT_EQ(turned["target"], nlohmann::json({0.0, 0.0, 1.0}));
    EXPECT_EQ(turned["up"][0], -1.0);
}

TEST_F(BatchProcess, LeavesTheCameraWhereNothingWouldBeSeen)
{
    const std::vector<std::vector<std::string>> views = {
        {"camera", "0", "5", "0", "0", "0", "0"},                        // along the up vector
        {"camera", "1", "2", "3", "1", "2", "3"},                        // the eye on the target
        {"camera", "0", "0", "5", "0", "0", "0", "0", "0", "0"},         // no up vector
        {"camera", "0", "0", "5", "0", "0", "0", "0", "0", "-7"},        // the up vector along the view
        {"camera", "1e200", "0", "5", "0", "0", "0"},                    // beyond what a double can square
        {"camera", "1e308", "0", "0", "-1e308", "0", "0", "0", "1", "0"} // beyond what it can subtract
    };
    for (const std::vector<std::string>& view : views)
    {
        const ProcessResult result = Run(view);
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.errors, HasSubstr("tessarine-batch: camera: there is no view like that: "));
    }
    ExpectUsageError({"camera", "0", "0", "inf", "0", "0", "0"}, "camera: \"inf\" is no EZ (a number)");
}

TEST_F(BatchProcess, DragsTheCameraWithTheToolOnTop)
{
    // The eye starts at (10, 4, 10), the target at 0: |eye| = sqrt(216). 30 pixels down are one unit nearer.
    const ProcessResult result =
        Run({"-q",  "tool",       "67108866",   "left-down", "400",    "300",     "mouse-move",
             "400", "315",        "mouse-move", "400",       "330",    "left-up", "400",
             "330", "mouse-move", "0",          "0",         "report", "-",       "status"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.errors, IsEmpty());
    const std::size_t end = result.output.find("\n}\n") + 3;
    const nlohmann::json report = nlohmann::json::parse(result.output.substr(0, end));
    EXPECT_EQ(report["tool"], 67108866);
    EXPECT_NEAR(report["camera"]["position"][0].get<double>(), 10.0 * (1.0 - 1.0 / std::sqrt(216.0)), 1e-13);
    // 10 (1 - 1/sqrt(216)) = 9.3196, and two fifths of it
    EXPECT_THAT(result.output.substr(end), HasSubstr("\n相机位置: (9.32,3.73,9.32)\n"));
}

TEST_F(BatchProcess, DoesTheSameDragTwiceAlike)
{
    const std::vector<std::string> words = {"import",  "tetra.obj", "tool",       "67108867", "left-down",
                                            "10",      "10",        "mouse-move", "-30",      "77",
                                            "left-up", "0",         "0",          "report",   "-"};
    EXPECT_EQ(Run(words).output, Run(words).output);
    EXPECT_THAT(Run(words).output, HasSubstr("Size of current tool stack: 1\n"));
}

TEST_F(BatchProcess, TakesTheSamePictureAfterTheSameDrag)
{
    const auto draw = [this](const std::string& picture)
    {
        EXPECT_EQ(Run({"import", "tetra.obj", "tool", "67108867", "left-down", "10", "10", "mouse-move",
                       "-30", "77", "left-up", "0", "0", "render", picture})
                      .status,
                  0);
        return m_Folder.Read(picture);
    };
    const std::string first = draw("a.png");
    EXPECT_THAT(first, testing::StartsWith("\x89PNG"));
    EXPECT_TRUE(first == draw("b.png"));
    EXPECT_EQ(Run({"import", "tetra.obj", "render", "undragged.png"}).status, 0);
    EXPECT_FALSE(first == m_Folder.Read("undragged.png"));
}

TEST_F(BatchProcess, SendsEveryMouseOperationToTheSelectToolToo)
{
    const ProcessResult result = Run({"mouse-move", "1", "2", "left-down", "1", "2", "left-up", "1", "2",
                                      "right-down", "1", "2", "right-up", "1", "2", "report", "-"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(nlohmann::json::parse(result.output)["tool"], 83886081);
}

TEST_F(BatchProcess, FailsOnToolsThatCannotBeTaken)
{
    EXPECT_EQ(Run({"tool", "5"}).errors, "tessarine-batch: tool: no tool has the number 5\n");
    EXPECT_EQ(Run({"tool", "5"}).status, 1);
    const ProcessResult vertices = Run({"tool", "100663297"}); // 0x6000001, while solids are selected
    EXPECT_EQ(vertices.status, 1);
    EXPECT_THAT(vertices.errors, HasSubstr("tessarine-batch: tool: an internal check failed: "));
    EXPECT_EQ(Run({"tool", "83886081"}).output, ""); // the current one
}

// --- standard output that does not take what is written

TEST_F(BatchProcess, FailsWhenStandardOutputIsFull)
{
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"status"}, {"report", "-"}, {"dump", "-"}, {"import", "tetra.obj"}})
    {
        const ProcessResult result = Run(words, "", OutputTo::FullDisk);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.errors, "tessarine-batch: " + words[0] +
                                     ": cannot write to standard output: No space left on device\n");
    }
    EXPECT_EQ(Run({"--help"}, "", OutputTo::FullDisk).status, 1);
    EXPECT_EQ(Run({"--version"}, "", OutputTo::FullDisk).status, 1);
}

TEST_F(BatchProcess, RunsNothingBehindAConsoleThatIsLost)
{
    EXPECT_EQ(Run({"import", "tetra.obj", "export", "out.obj"}, "", OutputTo::FullDisk).status, 1);
    EXPECT_FALSE(m_Folder.Has("out.obj"));
}

TEST_F(BatchProcess, FailsAndIsNotKilledWhenNobodyReadsStandardOutput)
{
    const ProcessResult result = Run({"dump", "-"}, "", OutputTo::ClosedPipe);

    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "tessarine-batch: dump: cannot write to standard output: Broken pipe\n");
}

TEST_F(BatchProcess, FailsWhenStandardOutputIsClosed)
{
    const ProcessResult result = Run({"status"}, "", OutputTo::Nowhere);

    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, StartsWith("tessarine-batch: status: cannot write to standard output: "));
}

TEST_F(BatchProcess, WritesNoConsoleIntoAFileWhenStandardOutputIsClosed)
{
    Run({"-q", "import", "tetra.obj", "export", "expected.obj"});

    EXPECT_EQ(Run({"-q", "import", "tetra.obj", "export", "out.obj"}, "", OutputTo::Nowhere).status, 0);
    EXPECT_EQ(m_Folder.Read("out.obj"), m_Folder.Read("expected.obj"));
}

TEST_F(BatchProcess, NeedsNoStandardOutputWhenNothingIsPrinted)
{
    EXPECT_EQ(Run({"-q", "import", "tetra.obj"}, "", OutputTo::FullDisk).status, 0);
}
