// The two-step correspondence of a closed model of 70k vertices with a cloud of 100k points on it, and of a tenth of
// both: the run with its three first steps, over the vertices that it takes away and those that it puts in. The points
// are drawn at random, so that many vertices find none of their own.
#include "Console.h"
#include "File.h"
#include "HeadlessPlatform.h"
#include "IAReconstructionSmoothTwoStepCommand.h"
#include "IOLoadObj.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Memory.h"
#include "Models.h"
#include "Open3DView.h"
#include "Timing.h"
#include <array>
#include <random>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
constexpr int kSteps = 3;
constexpr int kRounds = 5;

/// Message boxes that nobody wants to see.
class SilentPlatform : public HeadlessPlatform
{
public:
    void ShowMessage(const std::string& /*title*/, const std::string& /*text*/) override {}
};

struct Stores
{
    explicit Stores(const std::filesystem::path& path)
    {
        IOLoadObj reader(&scene, &elements);
        reader.Load(path.string());
    }

    MANSceneManager scene;
    MANBrepElementManager elements;
    Open3DView view;
};

/// Points on the faces of a model, and its corners farthest out, so that both have one box.
void WriteCloud(const std::filesystem::path& model, const std::filesystem::path& path, int points)
{
    const Stores stores(model);
    const DSSolid& solid = *stores.scene.GetCurrentSolid();
    std::vector<smVec3d> cloud;
    for (int axis = 0; axis < 3; ++axis)
    {
        const auto lies = [axis](const DSVertex* a, const DSVertex* b)
        { return a->GetPosition()[axis] < b->GetPosition()[axis]; };
        const auto& vertices = solid.GetVertexList();
        cloud.push_back((*std::min_element(vertices.begin(), vertices.end(), lies))->GetPosition());
        cloud.push_back((*std::max_element(vertices.begin(), vertices.end(), lies))->GetPosition());
    }
    std::mt19937 random(1);
    const auto draw = [&random] { return static_cast<double>(random()) / 4294967296.0; };
    while (cloud.size() < static_cast<std::size_t>(points))
    {
        const DSFace* face = solid.GetFaceList()[random() % solid.GetFaceList().size()];
        const DSHalfEdge* h = face->GetLoopList()[0]->GetHalfEdge();
        const double u = draw();
        const double v = draw() * (1.0 - u);
        cloud.push_back(
            h->GetVertex()->GetPosition() * (1.0 - u - v) + h->GetNext()->GetVertex()->GetPosition() * u +
            h->GetPrev()->GetVertex()->GetPosition() * v + face->ComputeNormal() * (draw() * 1e-3));
    }
    std::filesystem::create_directories(path.parent_path());
    ReplacingFile file(path);
    file.Write(std::to_string(cloud.size()) + '\n');
    for (const smVec3d& p : cloud)
    {
        std::array<char, 96> line{};
        std::snprintf(line.data(), line.size(), "%.7f %.7f %.7f\n", p.x, p.y, p.z);
        file.Write(line.data());
    }
    file.Commit();
}

struct Cost
{
    double runSeconds = 0.0;
    double stepSeconds = 0.0;
    double removed = 0.0;
    double added = 0.0;

    double PerOperation() const { return (runSeconds + stepSeconds) / (removed + added); }
};

/// One figure of a fresh process each time.
double Measure(const std::filesystem::path& model, double Cost::*figure)
{
    return InAProcessOfItsOwn(
        [&]
        {
            KeepFreedMemory(); // as the programs do
            Stores stores(model);
            const DSSolid& solid = *stores.scene.GetCurrentSolid();
            IAReconstructionSmoothTwoStepCommand command;
            command.SetElementManager(&stores.elements);
            command.SetSceneManager(&stores.scene);
            command.SetView(&stores.view);
            Cost cost;
            const auto before = static_cast<double>(solid.GetVertexList().size());
            double begin = ProcessorSeconds();
            command.Execute();
            cost.runSeconds = ProcessorSeconds() - begin;
            const auto left = static_cast<double>(solid.GetVertexList().size());
            cost.removed = before - left;
            begin = ProcessorSeconds();
            for (int step = 0; step < kSteps; ++step)
            {
                command.Step();
            }
            cost.stepSeconds = ProcessorSeconds() - begin;
            cost.added = static_cast<double>(solid.GetVertexList().size()) - left;
            return cost.*figure;
        });
}

/// A model with its cloud, in a folder of its own, and what its runs cost.
class Refinement
{
public:
    Refinement(const std::filesystem::path& folder, int vertices, int points)
        : m_Folder(folder / std::to_string(vertices)), m_nVertices(vertices), m_nPoints(points)
    {
        std::filesystem::create_directories(m_Folder);
        m_Model = WriteClosedModel(m_Folder, 2 * vertices);
        WriteCloud(m_Model, m_Folder / "data/bunny.txta", points);
        SetCurrentFolder(m_Folder);
        m_Cost.removed = Measure(m_Model, &Cost::removed);
        m_Cost.added = Measure(m_Model, &Cost::added);
    }

    void RunOnce()
    {
        SetCurrentFolder(m_Folder);
        m_RunSeconds.push_back(Measure(m_Model, &Cost::runSeconds));
        m_StepSeconds.push_back(Measure(m_Model, &Cost::stepSeconds));
    }

    Cost Report()
    {
        m_Cost.runSeconds = Median(m_RunSeconds);
        m_Cost.stepSeconds = Median(m_StepSeconds);
        std::printf(
            "%d vertices, %d points: run %.0f ms, %.0f vertices taken away; %d steps %.0f ms, %.0f put in; "
            "%.2f us for each\n",
            m_nVertices, m_nPoints, 1e3 * m_Cost.runSeconds, m_Cost.removed, kSteps, 1e3 * m_Cost.stepSeconds,
            m_Cost.added, 1e6 * m_Cost.PerOperation());
        return m_Cost;
    }

private:
    std::filesystem::path m_Folder;
    int m_nVertices;
    int m_nPoints;
    std::filesystem::path m_Model;
    std::vector<double> m_RunSeconds;
    std::vector<double> m_StepSeconds;
    Cost m_Cost;
};
}

int main()
{
    SilentPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {}); // the lines are made, and go nowhere
    const TemporaryFolder folder;
    const CurrentFolderGuard guard;
    Refinement small(folder.GetPath(), 7'000, 10'000);
    Refinement large(folder.GetPath(), 70'000, 100'000);
    for (int round = 0; round < kRounds; ++round) // in turn, so that a drift of the machine meets both
    {
        small.RunOnce();
        large.RunOnce();
    }
    const double ofSmall = small.Report().PerOperation();
    const double ofLarge = large.Report().PerOperation();
    return Judge("two steps at 70k vertices: time of an operation over that at 7k", ofLarge / ofSmall, 1.5)
               ? 0
               : 1;
}
