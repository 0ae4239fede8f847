// The first byte chooses what the rest is: a matrix, a vector, a system of both, or a triangulation of a cloud.
#include "Console.h"
#include "Failure.h"
#include "HeadlessPlatform.h"
#include "IASmoothCommand.h"
#include "IAWorkbench.h"
#include "ScratchFolder.h"
#include "SparseMatrix.h"
#include "linbcg.h"
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <string>

namespace
{
using namespace tessarine;

constexpr char kMatrixFile[] = "a.mtx";
constexpr char kVectorFile[] = "b.vec";

void Demand(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}

void Write(const std::string& name, const std::string& content)
{
    std::ofstream(name, std::ios::binary) << content;
}

/// The matrix, which reads as it is written but for the digits that the file keeps.
CSparseMatrix ReadMatrix(const std::string& content)
{
    Write(kMatrixFile, content);
    CSparseMatrix matrix;
    matrix.ReadMatrix(kMatrixFile);
    matrix.WriteMatrix(kMatrixFile);
    CSparseMatrix again;
    again.ReadMatrix(kMatrixFile);
    Demand(again.GetRowCount() == matrix.GetRowCount() && again.GetColumnCount() == matrix.GetColumnCount());
    for (int row = 0; row < matrix.GetRowCount(); ++row)
    {
        Demand(again.GetColumnsOf(row) == matrix.GetColumnsOf(row));
    }
    return matrix;
}

CSparseMatrix ReadVector(const std::string& content)
{
    Write(kVectorFile, content);
    CSparseMatrix vector;
    vector.ReadVector(kVectorFile);
    Demand(vector.GetColumnCount() == 1);
    return vector;
}

/// A matrix, a byte that no text has, a right side.
void SolveSystem(const std::string& content)
{
    const std::size_t middle = std::min(content.find('\xFF'), content.size());
    const CSparseMatrix matrix = ReadMatrix(content.substr(0, middle));
    const CSparseMatrix rightSide = ReadVector(content.substr(std::min(middle + 1, content.size())));
    const int n = matrix.GetRowCount();
    if (matrix.GetColumnCount() != n || rightSide.GetRowCount() != n)
    {
        return;
    }
    CSparseMatrix transposed;
    matrix.Transpose(transposed);
    const auto length = static_cast<std::size_t>(n) + 1;
    std::vector<double> b(length, 0.0);
    for (int row = 0; row < n; ++row)
    {
        rightSide.GetValue(row, 0, b[static_cast<std::size_t>(row) + 1]);
    }
    for (int rule = 1; rule <= 4; ++rule)
    {
        std::vector<double> x(length, 0.0);
        int steps = 0;
        double error = 0.0;
        linbcg(matrix, transposed, n, b, x, rule, 1e-7, 20, steps, error);
        Demand(steps <= 21 &&
               std::all_of(x.begin(), x.end(), [](double each) { return std::isfinite(each); }));
    }
}

/// A tetrahedron over a cloud of its own corners.
void ReadTriangulation(HeadlessPlatform& platform, const std::string& content)
{
    IAWorkbench workbench;
    Write("model.obj", "v 1 1 1\nv -1 -1 1\nv -1 1 -1\nv 1 -1 -1\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n");
    std::filesystem::create_directory("data");
    Write("data/horse.txta", "4\n1 1 1\n-1 -1 1\n-1 1 -1\n1 -1 -1\n");
    Write("data/result.txt", content);
    platform.AnswerFile("model.obj");
    Demand(workbench.Perform("import", Effect::ReplacesModel, [&] { workbench.ImportObj(); }));
    IASmoothCommand command;
    command.SetElementManager(&workbench.GetController().GetElementManager());
    command.SetSceneManager(&workbench.GetController().GetSceneManager());
    command.SetView(&workbench.GetView());
    command.TakeSolidAndCloud();
    const std::size_t before =
        workbench.GetController().GetSceneManager().GetRootGroup()->GetChildren().size();
    const bool isRead = workbench.Perform("read", Effect::ChangesModel, [&] { command.ReadResult(); });
    const std::size_t after =
        workbench.GetController().GetSceneManager().GetRootGroup()->GetChildren().size();
    Demand(after == before + (isRead ? 1 : 0));
}

void Feed(HeadlessPlatform& platform, int kind, const std::string& content)
{
    switch (kind)
    {
    case 0: ReadMatrix(content); break;
    case 1: ReadVector(content); break;
    case 2: SolveSystem(content); break;
    default: ReadTriangulation(platform, content); break;
    }
}
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static HeadlessPlatform platform;
    static const ScratchFolder folder;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});
    if (size == 0)
    {
        return 0;
    }
    try
    {
        Feed(platform, data[0] % 4, std::string(data + 1, data + size));
    }
    catch (const IException&) // a file that is refused
    {
    }
    return 0;
}
