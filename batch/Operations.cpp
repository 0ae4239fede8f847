#include "Operations.h"
#include "ArgumentForm.h"
#include "Assert.h"
#include "BatchRun.h"
#include "Distance2D.h"
#include "Dump.h"
#include "EigenTable.h"
#include "ErrorLine.h"
#include "Failure.h"
#include "File.h"
#include "IACommandRouter.h"
#include "IAReconstructionCommand.h"
#include "IODatasetImages.h"
#include "ImageFilter.h"
#include "LimitText.h"
#include "PngCodec.h"
#include "QualityText.h"
#include "Report.h"
#include "SparseMatrix.h"
#include "linbcg.h"
#include "resource.h"
#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace tessarine
{
namespace
{
using Group = OperationGroup;
using Arguments = std::vector<std::string>;

constexpr std::string_view kStandardOutput = "-";
constexpr std::string_view kAll = "all";

/// The numbers of an operation, whose form was checked before it ran.
double NumberAt(const Arguments& arguments, std::size_t index)
{
    double value = 0.0;
    ReadNumber(arguments[index], value);
    return value;
}

int IntegerAt(const Arguments& arguments, std::size_t index)
{
    long long value = 0;
    ReadInteger(arguments[index], std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), value);
    return static_cast<int>(value);
}

std::uint64_t CountAt(const Arguments& arguments, std::size_t index)
{
    return static_cast<std::uint64_t>(IntegerAt(arguments, index));
}

bool RunNew(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::ReplacesDocument, [&run] { run.GetWorkbench().NewDocument(); });
}

bool RunImport(BatchRun& run, const Arguments& arguments)
{
    run.GetPlatform().AnswerFile(arguments[0]);
    return run.Perform(Effect::ReplacesModel, [&run] { run.GetWorkbench().ImportObj(); });
}

bool RunExport(BatchRun& run, const Arguments& arguments)
{
    run.GetPlatform().AnswerFile(arguments[0]);
    return run.Perform(Effect::None, [&run] { run.GetWorkbench().ExportObj(); });
}

bool RunSubdivideLoop(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::ChangesModel, [&run] { run.GetWorkbench().GetController().SubdivideLoop(); });
}

bool RunSimplify(BatchRun& run, const Arguments& arguments)
{
    const double ratio = NumberAt(arguments, 0);
    return run.Perform(Effect::Adds, [&run, ratio]
                       { run.GetWorkbench().GetController().Simplify(static_cast<float>(ratio)); });
}

bool RunOptimize(BatchRun& run, const Arguments& arguments)
{
    const int mode = IntegerAt(arguments, 0);
    return run.Perform(Effect::ChangesModel,
                       [&run, mode] { run.GetWorkbench().GetController().OptimizeMesh(mode); });
}

bool RunTriangleQuality(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::None,
                       [&run]
                       {
                           const auto& scene = run.GetWorkbench().GetController().GetSceneManager();
                           const DSSolid* solid = scene.GetCurrentSolid();
                           if (solid == nullptr)
                           {
                               throw Failure("there is no model to measure: import one first");
                           }
                           run.WriteOutput(MakeQualityText(*solid));
                       });
}

bool RunProjectSamples(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::None, [&run] { run.GetWorkbench().GetController().ProjectSamples(); });
}

bool RunBuildInitialMesh(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::ChangesModel,
                       [&run] { run.GetWorkbench().GetController().BuildInitialMesh(); });
}

bool RunGenerateSplats(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::Adds, [&run] { run.GetWorkbench().GetController().GenerateSplats(); });
}

bool RunShowField(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::Adds, [&run] { run.GetWorkbench().GetController().ShowField(); });
}

/// Beyond all floats stands infinity.
float ToFloat(double value)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    if (std::abs(value) <= std::numeric_limits<float>::max())
    {
        return static_cast<float>(value);
    }
    return value > 0.0 ? infinity : -infinity;
}

bool RunSubdivideAdaptive(BatchRun& run, const Arguments& arguments)
{
    run.GetPlatform().AnswerAreaThreshold(ToFloat(NumberAt(arguments, 0)));
    return run.Perform(Effect::ReplacesModel,
                       [&run] { run.GetWorkbench().GetController().SubdivideAdaptive(); });
}

bool RunGenerateMesh(BatchRun& run, const Arguments& arguments)
{
    return run.Perform(Effect::Adds, [&]
                       { run.GetWorkbench().GetController().GenerateMesh(ToFloat(NumberAt(arguments, 0))); });
}

bool RunSetMaterial(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::Adds, [&run] { run.GetWorkbench().GetController().SetMaterialOfSelection(); });
}

bool RunMenu(BatchRun& run, const Arguments& arguments)
{
    long long id = 0;
    ReadInteger(arguments[0], 0, std::numeric_limits<int>::max(), id);
    return IACommandRouter(run.GetWorkbench()).Run(run.GetOperationName(), static_cast<int>(id));
}

smVec3d VectorAt(const Arguments& arguments, std::size_t index)
{
    return {NumberAt(arguments, index), NumberAt(arguments, index + 1), NumberAt(arguments, index + 2)};
}

bool RunCamera(BatchRun& run, const Arguments& arguments)
{
    const smVec3d up = arguments.size() > 6 ? VectorAt(arguments, 6) : smVec3d(0.0, 1.0, 0.0);
    return run.Perform(
        Effect::None,
        [&]
        {
            try
            {
                run.GetWorkbench().GetView().GetCamera()->SetLookAt(VectorAt(arguments, 0),
                                                                    VectorAt(arguments, 3), up);
            }
            catch (const AssertionFailure&)
            {
                throw Failure("there is no view like that: give an eye apart from the target, and "
                              "an up vector that does not lie along the way between them");
            }
        });
}

bool RunTool(BatchRun& run, const Arguments& arguments)
{
    const auto id = static_cast<unsigned>(IntegerAt(arguments, 0));
    return run.Perform(Effect::None,
                       [&]
                       {
                           MANToolsManager& tools = run.GetWorkbench().GetToolsManager();
                           if (tools.FindTool(id) == nullptr)
                           {
                               throw Failure("no tool has the number " + arguments[0]);
                           }
                           tools.ChangeTool(id);
                       });
}

template <ToolEvent::Kind kind>
bool RunMouse(BatchRun& run, const Arguments& arguments)
{
    return run.GetWorkbench().SendEvent(
        {.kind = kind, .x = IntegerAt(arguments, 0), .y = IntegerAt(arguments, 1)});
}

bool RunStatus(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::None,
                       [&run]
                       {
                           std::string lines;
                           for (int pane = 0; pane < HeadlessPlatform::kPaneCount; ++pane)
                           {
                               lines += run.GetPlatform().GetPaneText(pane) + '\n';
                           }
                           run.WriteOutput(lines);
                       });
}

/// Runs write(sink), where the sink leads to standard output or to a file that appears when all is written.
template <class TWrite>
void WriteResult(BatchRun& run, const std::string& name, TWrite write)
{
    if (name == kStandardOutput)
    {
        write([&run](std::string_view text) { run.WriteOutput(text); });
        return;
    }
    ReplacingFile file(name);
    write([&file](std::string_view text) { file.Write(text); });
    file.Commit();
}

bool RunReport(BatchRun& run, const Arguments& arguments)
{
    return run.Perform(Effect::None,
                       [&]
                       {
                           const std::string report = MakeReport(run.GetDocument());
                           WriteResult(run, arguments[0], [&report](const auto& sink) { sink(report); });
                       });
}

bool RunDump(BatchRun& run, const Arguments& arguments)
{
    return run.Perform(Effect::None,
                       [&]
                       {
                           const BatchDocument document = run.GetDocument();
                           WriteResult(run, arguments[0],
                                       [&document](const auto& sink) { WriteDump(document, sink); });
                       });
}

/// Standard output takes a picture as well, to be passed on.
bool RunRender(BatchRun& run, const Arguments& arguments)
{
    return run.Perform(Effect::None,
                       [&]
                       {
                           const std::string png = EncodePng(run.GetWorkbench().GetView().TakePicture());
                           WriteResult(run, arguments[0], [&png](const auto& sink) { sink(png); });
                       });
}

/// A picture in the form of the silhouettes, filtered as every reconstruction does.
/// @param hasMarker whether it had a marker before
Image ReadFiltered(const std::string& name, bool& hasMarker)
{
    constexpr int kRunLength = 1;
    constexpr bool kFillBackground = true;
    Image image = ReadColourImage(name);
    hasMarker = FilterImage(image.width, image.height, image.pixels.data(), kRunLength, kFillBackground);
    return image;
}

bool RunFilterImage(BatchRun& run, const Arguments& arguments)
{
    return run.Perform(Effect::None,
                       [&]
                       {
                           bool hasMarker = false;
                           WriteImage(ReadFiltered(arguments[0], hasMarker), arguments[1]);
                           run.WriteOutput(hasMarker ? "markers: true\n" : "markers: false\n");
                       });
}

/// As little-endian bytes.
template <class T>
void AppendBytes(std::string& bytes, T value)
{
    const auto word = std::bit_cast<std::uint32_t>(value);
    for (unsigned shift = 0; shift < 32; shift += 8)
    {
        bytes += static_cast<char>(word >> shift & 0xFFU);
    }
}

std::string MakeDistanceFile(const Image& image)
{
    std::vector<std::int32_t> field(image.pixels.size() / 3);
    BuildDistance2D(image.width, image.height, image.pixels.data(), field.data());
    std::string bytes;
    bytes.reserve(sizeof(std::int32_t) * (field.size() + 2));
    AppendBytes(bytes, image.width);
    AppendBytes(bytes, image.height);
    for (const std::int32_t value : field)
    {
        AppendBytes(bytes, value);
    }
    return bytes;
}

bool RunDistance2D(BatchRun& run, const Arguments& arguments)
{
    return run.Perform(Effect::None,
                       [&]
                       {
                           bool hasMarker = false;
                           const std::string bytes = MakeDistanceFile(ReadFiltered(arguments[0], hasMarker));
                           WriteResult(run, arguments[1], [&bytes](const auto& sink) { sink(bytes); });
                       });
}

bool RunDumpField(BatchRun& run, const Arguments& arguments)
{
    return run.Perform(
        Effect::None,
        [&]
        {
            const std::vector<float>& values =
                run.GetWorkbench().GetController().GetReconstructionCommand().GetField().GetValues();
            std::string bytes;
            bytes.reserve(sizeof(float) * values.size());
            for (const float value : values)
            {
                AppendBytes(bytes, value);
            }
            WriteResult(run, arguments[0], [&bytes](const auto& sink) { sink(bytes); });
        });
}

bool RunRefineHierarchical(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::ChangesModel,
                       [&run] { run.GetWorkbench().GetController().RefineHierarchical(); });
}

bool RunFitVertices(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::ChangesModel, [&run] { run.GetWorkbench().GetController().FitVertices(); });
}

bool RunFitLimitSurface(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::ChangesModel,
                       [&run] { run.GetWorkbench().GetController().FitLimitSurface(); });
}

bool RunRefineIncremental(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::ChangesModel,
                       [&run] { run.GetWorkbench().GetController().RefineIncremental(); });
}

bool RunConnectNext(BatchRun& run, const Arguments& arguments)
{
    return run.Perform(Effect::ChangesModel,
                       [&]
                       {
                           IAController& controller = run.GetWorkbench().GetController();
                           if (!arguments.empty() && arguments[0] == kAll)
                           {
                               controller.ConnectAll();
                               return;
                           }
                           controller.ConnectNext(arguments.empty() ? 1 : CountAt(arguments, 0));
                       });
}

bool RunSaveEnvironment(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::None, [&run] { run.GetWorkbench().GetController().SaveEnvironment(); });
}

bool RunRefineEnergy(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::ChangesModel, [&run] { run.GetWorkbench().GetController().RefineEnergy(); });
}

template <void (IAController::*step)()>
bool RunTwoStep(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::ChangesModel, [&run] { (run.GetWorkbench().GetController().*step)(); });
}

bool RunBuildOctree(BatchRun& run, const Arguments& /*arguments*/)
{
    return run.Perform(Effect::ChangesModel, [&run] { run.GetWorkbench().GetController().BuildOctree(); });
}

bool RunMakeEigenTable(BatchRun& run, const Arguments& arguments)
{
    constexpr int kUsualMost = 50;
    return run.Perform(
        Effect::None,
        [&] { WriteEigenTable(arguments[0], arguments.size() > 1 ? IntegerAt(arguments, 1) : kUsualMost); });
}

bool RunLimitPoint(BatchRun& run, const Arguments& arguments)
{
    return run.Perform(
        Effect::None,
        [&]
        {
            const DSSolid* solid = run.GetWorkbench().GetController().GetSceneManager().GetCurrentSolid();
            if (solid == nullptr)
            {
                throw Failure("there is no model with a limit surface: import one first");
            }
            run.WriteOutput(MakeLimitText(*solid, IntegerAt(arguments, 0), NumberAt(arguments, 1),
                                          NumberAt(arguments, 2), ReadEigenTable()));
        });
}

/// Whether x leaves more of b than the share `tol`. Vectors are one-based.
bool IsNoSolution(const CSparseMatrix& matrix, const std::vector<double>& b, const std::vector<double>& x,
                  double tol)
{
    std::vector<double> product(b.size());
    matrix.MultiplyVector2(x, product, matrix.GetColumnCount());
    double left = 0.0;
    double whole = 0.0;
    for (std::size_t i = 1; i < b.size(); ++i)
    {
        left = std::hypot(left, b[i] - product[i]);
        whole = std::hypot(whole, b[i]);
    }
    return !(left <= tol * whole);
}

/// A x = b by files: two to read, one to write.
void Solve(const Arguments& arguments, int itol, double tol, int itmax)
{
    CSparseMatrix matrix;
    CSparseMatrix rightSide;
    CSparseMatrix transposed;
    matrix.ReadMatrix(arguments[0]);
    rightSide.ReadVector(arguments[1]);
    const int n = matrix.GetRowCount();
    if (matrix.GetColumnCount() != n || rightSide.GetRowCount() != n)
    {
        throw Failure(arguments[0] + " has to have as many rows and columns as " + arguments[1] +
                      " has values: they are " + std::to_string(n) + ", " +
                      std::to_string(matrix.GetColumnCount()) + " and " +
                      std::to_string(rightSide.GetRowCount()));
    }
    matrix.Transpose(transposed);
    std::vector<double> b(1);
    std::vector<double> x(static_cast<std::size_t>(n) + 1);
    for (int row = 0; row < n; ++row)
    {
        rightSide.GetValue(row, 0, b.emplace_back());
    }
    int iter = 0;
    double err = 0.0;
    const bool wentOn = linbcg(matrix, transposed, n, b, x, itol, tol, itmax, iter, err);
    SayEstimate(iter, err);
    if (!wentOn && IsNoSolution(matrix, b, x, tol))
    {
        PrintErrorLine(arguments[2] + " is no solution: the iteration cannot go on behind step " +
                       std::to_string(iter - 1) +
                       ", where it would divide by zero or by no number; look whether " + arguments[0] +
                       " has an inverse, and whether its numbers and those of " + arguments[1] +
                       " are within reason");
    }
    else if (wentOn && iter > itmax && !(err <= tol))
    {
        PrintErrorLine(arguments[2] +
                       " is no solution within TOL: the estimated error is still above it after " +
                       std::to_string(iter) + " steps; allow more of them (ITMAX), or look whether " +
                       arguments[0] + " has an inverse");
    }
    CSparseMatrix solution(n, 1);
    for (int row = 0; row < n; ++row)
    {
        solution.SetValue(row, 0, x[static_cast<std::size_t>(row) + 1]);
    }
    solution.WriteVector(arguments[2]);
}

bool RunSolve(BatchRun& run, const Arguments& arguments)
{
    constexpr int kRule = 3;
    constexpr double kTolerance = 1e-7;
    constexpr int kMostSteps = 200;
    return run.Perform(Effect::None,
                       [&]
                       {
                           if (arguments.size() == 3)
                           {
                               Solve(arguments, kRule, kTolerance, kMostSteps);
                               return;
                           }
                           Solve(arguments, IntegerAt(arguments, 3), NumberAt(arguments, 4),
                                 IntegerAt(arguments, 5));
                       });
}

constexpr Operation kOperations[] = {
    {"new", "", Group::Document, "starts an empty document", "import bunny.obj new report -", RunNew},
    {"import", "FILE", Group::Document, "replaces the document's model by the one of an .obj file",
     "import bunny.obj render bunny-view.png", RunImport},
    {"export", "FILE", Group::Document, "writes the visible solids of the document to an .obj file",
     "import pebble.obj subdivide-loop export finer.obj", RunExport},
    {"report", "FILE", Group::Document,
     "writes what the document holds, as a page of JSON (- is standard output)",
     "-q import bunny.obj report -", RunReport},
    {"dump", "FILE", Group::Document,
     "writes everything that the document holds, as JSON (- is standard output)",
     "-q import box.obj dump records.json", RunDump},
    {"dump-field", "FILE", Group::Document, "writes the kept distance field",
     "build-initial-mesh dump-field field.bin", RunDumpField},

    {"subdivide-loop", "", Group::MenuCommand, "one Loop subdivision of the current model",
     "import pebble.obj subdivide-loop export finer.obj", RunSubdivideLoop},
    {"subdivide-adaptive", "AREA", Group::MenuCommand, "splits the faces with an area measure above AREA",
     "import pebble.obj subdivide-adaptive 0.004 export finer.obj", RunSubdivideAdaptive},
    {"simplify", "RATIO", Group::MenuCommand, "takes away the share RATIO of the faces",
     "import bunny.obj simplify 0.8 export coarse.obj", RunSimplify},
    {"optimize", "MODE", Group::MenuCommand, "1 and 3: swaps diagonals; 2: removes edges without length",
     "import bunny.obj optimize 1 export better.obj", RunOptimize},
    {"project-samples", "", Group::MenuCommand, "renders labelled points from 90 directions into images",
     "project-samples", RunProjectSamples},
    {"build-initial-mesh", "", Group::MenuCommand,
     "distance field of the silhouettes, and the octree of the cloud",
     "build-initial-mesh generate-mesh 0 export hull.obj", RunBuildInitialMesh},
    {"refine-hierarchical", "", Group::MenuCommand, "builds the dual of the mesh over the cloud",
     "import horse.obj refine-hierarchical export both.obj", RunRefineHierarchical},
    {"refine-incremental", "", Group::MenuCommand, "starts a new mesh over the feet of the cloud",
     "import box.obj refine-incremental connect-next all export both.obj", RunRefineIncremental},
    {"refine-two-step", "", Group::MenuCommand, "pairs the vertices with points of the cloud",
     "import bunny.obj refine-two-step export paired.obj", RunTwoStep<&IAController::RefineTwoStep>},
    {"two-step-first", "", Group::MenuCommand, "brings further points into the mesh of refine-two-step",
     "import bunny.obj refine-two-step two-step-first export fine.obj",
     RunTwoStep<&IAController::TwoStepFirst>},
    {"two-step-second", "", Group::MenuCommand, "puts its vertices back to before they moved",
     "import bunny.obj simplify 0.5 export a.obj import a.obj refine-two-step two-step-second",
     RunTwoStep<&IAController::TwoStepSecond>},
    {"two-step-third", "", Group::MenuCommand, "moves its vertices onto their points again",
     "import bunny.obj simplify 0.5 export a.obj import a.obj refine-two-step two-step-second two-step-third",
     RunTwoStep<&IAController::TwoStepThird>},
    {"refine-energy", "", Group::MenuCommand, "fits the mesh by an energy function",
     "import dragon.obj refine-energy export fitted.obj", RunRefineEnergy},
    {"generate-splats", "", Group::MenuCommand, "makes the cut faces of the model's splats",
     "import man.obj generate-splats render cuts.png", RunGenerateSplats},
    {"set-material", "", Group::MenuCommand, "makes a material of its own from the selected solid's",
     "import box.obj menu 32789 mouse-move 400 300 left-down 400 300 set-material", RunSetMaterial},
    {"menu", "ID", Group::MenuCommand, "runs the menu, toolbar or pop-up command of this number",
     "import bunny.obj menu 32779 render flat.png", RunMenu},

    {"generate-mesh", "LEVEL", Group::KeptCommand, "mesh of the kept distance field at LEVEL",
     "build-initial-mesh generate-mesh 0 export hull.obj", RunGenerateMesh},
    {"show-field", "", Group::KeptCommand, "shows the kept distance field",
     "build-initial-mesh show-field menu 32799 render field.png", RunShowField},
    {"connect-next", "[N|all]", Group::KeptCommand, "N steps (1) of the kept incremental command, or all",
     "import box.obj refine-incremental connect-next 100 save-environment", RunConnectNext},
    {"save-environment", "", Group::KeptCommand, "saves the kept incremental command's environment",
     "import box.obj refine-incremental connect-next all save-environment", RunSaveEnvironment},
    {"fit-vertices", "", Group::KeptCommand, "fits the vertices to the cloud",
     "import horse.obj fit-vertices export fitted.obj", RunFitVertices},
    {"fit-limit-surface", "", Group::KeptCommand, "fits the limit surface to the cloud",
     "import horse.obj simplify 0.98 export a.obj import a.obj subdivide-loop fit-limit-surface",
     RunFitLimitSurface},
    {"build-octree", "", Group::KeptCommand, "divides the space of the cloud",
     "import bunny.obj build-octree menu 32797 render octree.png", RunBuildOctree},
    {"triangle-quality", "", Group::KeptCommand, "prints min, median, mean and max of the faces' quality",
     "-q import bunny.obj triangle-quality", RunTriangleQuality},
    {"make-eigen-table", "FILE [NMAX]", Group::KeptCommand,
     "writes the loop evaluation data up to valence NMAX (50)", "make-eigen-table table.dat 12",
     RunMakeEigenTable},
    {"limit-point", "FACE V W", Group::KeptCommand,
     "prints a point of the limit surface and its control vertices",
     "-q import pebble.obj subdivide-loop limit-point 0 0.2 0.3", RunLimitPoint},
    {"solve", "A.mtx B.vec X.vec [ITOL TOL ITMAX]", Group::KeptCommand,
     "solves a sparse system by biconjugate gradients (3 1e-7 200)", "solve A.mtx b.vec x.vec", RunSolve},
    {"filter-image", "IN OUT", Group::KeptCommand, "filters an image by runs and fills its background",
     "filter-image data/bunny/1.bmp clean.png", RunFilterImage},
    {"distance-2d", "IMAGE OUT", Group::KeptCommand, "writes the distance field of an image",
     "distance-2d data/bunny/1.bmp layers.bin", RunDistance2D},

    {"camera", "EX EY EZ TX TY TZ [UX UY UZ]", Group::ViewAndInput, "eye, target and up vector (0 1 0)",
     "import bunny.obj camera 1.7 0.8 2.2 0 0 0 render near.png", RunCamera},
    {"tool", "ID", Group::ViewAndInput, "makes the tool of this number the current one",
     "import bunny.obj tool 67108867 left-down 9 9 mouse-move 99 9 render turned.png", RunTool},
    {"mouse-move", "X Y", Group::ViewAndInput, "moves the mouse to a pixel of the view, y down",
     "-q import bunny.obj menu 32788 mouse-move 400 300 report -", RunMouse<ToolEvent::Kind::MouseMove>},
    {"left-down", "X Y", Group::ViewAndInput, "presses the left button",
     "-q import bunny.obj menu 32788 mouse-move 400 300 left-down 400 300 report -",
     RunMouse<ToolEvent::Kind::LeftButtonDown>},
    {"left-up", "X Y", Group::ViewAndInput, "releases the left button",
     "import bunny.obj tool 67108867 left-down 9 9 mouse-move 99 9 left-up 99 9",
     RunMouse<ToolEvent::Kind::LeftButtonUp>},
    {"right-down", "X Y", Group::ViewAndInput, "presses the right button",
     "import bunny.obj menu 32788 right-down 400 300 right-up 400 300",
     RunMouse<ToolEvent::Kind::RightButtonDown>},
    {"right-up", "X Y", Group::ViewAndInput, "releases the right button",
     "import bunny.obj menu 32788 right-down 400 300 right-up 400 300",
     RunMouse<ToolEvent::Kind::RightButtonUp>},
    {"render", "FILE", Group::ViewAndInput, "writes one frame as PNG (- is standard output)",
     "import bunny.obj render bunny-view.png", RunRender},
    {"status", "", Group::ViewAndInput, "prints the seven panes of the status bar, one a line",
     "-q import bunny.obj status", RunStatus},
};
}

std::span<const Operation> GetOperations()
{
    return kOperations;
}

const Operation* FindOperation(std::string_view name)
{
    const auto* found = std::find_if(std::begin(kOperations), std::end(kOperations),
                                     [name](const Operation& operation) { return operation.name == name; });
    return found != std::end(kOperations) ? found : nullptr;
}

bool LooksAtFrames(const Operation& operation, const std::vector<std::string>& arguments)
{
    if (operation.handler == &RunMenu)
    {
        long long id = 0;
        ReadInteger(arguments[0], 0, std::numeric_limits<int>::max(), id);
        return id == ResourceID::ShowTexture || id == ResourceID::ProjectSamples;
    }
    return operation.handler == &RunRender || operation.handler == &RunProjectSamples;
}

std::string GetUsage(const Operation& operation)
{
    std::string usage(operation.name);
    if (!operation.arguments.empty())
    {
        usage += ' ';
        usage += operation.arguments;
    }
    return usage;
}
}
