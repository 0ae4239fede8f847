// A motion of the mouse over a model of a million faces against the walk over all angles; the identity of both on
// a hundred thousand rays; a step of a move.
#include "Console.h"
#include "FaceRuns.h"
#include "HeadlessPlatform.h"
#include "IACommandRouter.h"
#include "IASelectCommand.h"
#include "IAWorkbench.h"
#include "LiteralPick.h"
#include "Memory.h"
#include "Meshes.h"
#include "Models.h"
#include "Timing.h"
#include "resource.h"
#include <random>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
constexpr int kWidth = 800;
constexpr int kHeight = 600;

/// A workbench with a model and a view that nobody sees: a frame costs nothing.
class Table
{
public:
    Table(HeadlessPlatform& platform, const std::filesystem::path& model)
    {
        m_Bench.GetView().Resize(0, 0, kWidth, kHeight);
        m_Bench.GetView().GetCamera()->SetLookAt({2.6, 1.5, 2.6}, {0, 0, 0}, {0, 1, 0});
        platform.AnswerFile(model.string());
        m_Bench.Perform("import", Effect::ReplacesModel, [this] { m_Bench.ImportObj(); });
    }

    IAWorkbench& GetBench() { return m_Bench; }

    void MoveMouse(int x, int y) { m_Bench.SendEvent({.kind = ToolEvent::Kind::MouseMove, .x = x, .y = y}); }
    /// Another place with every call, over the model.
    void MoveMouseOn()
    {
        m_nStep = (m_nStep + 37) % 100;
        MoveMouse(250 + m_nStep, 350);
    }
    void PickLiterallyThere()
    {
        PickLiterally(m_Bench.GetController().GetSceneManager(), *m_Bench.GetView().GetCamera(),
                      ElementKind::Solid, 250 + m_nStep, 350);
    }
    void MoveSolidABit()
    {
        MoveMouse(300, 350);
        m_Bench.SendEvent({.kind = ToolEvent::Kind::LeftButtonDown});
        Choose(ResourceID::MoveSolidX);
        MoveMouse(0, 0);
        MoveMouse(1, 0);
        m_Bench.SendEvent({.kind = ToolEvent::Kind::LeftButtonDown});
    }
    void Choose(int id) { IACommandRouter(m_Bench).Run("menu", id); }

private:
    IAWorkbench m_Bench;
    int m_nStep = 0;
};

/// Motions that follow each other; the first one behind an operation that may have changed everything, and what that
/// operation does for it; and the first one behind a move.
bool JudgeMotions(Table& table)
{
    constexpr int kRounds = 9;
    const auto changeAll = [&] { table.GetBench().Perform("nothing", Effect::ReplacesModel, [] {}); };
    const double ahead = Race({{"ahead", nullptr, changeAll}}, kRounds, ThreadSeconds)[0];
    const double first =
        Race({{"first", changeAll, [&] { table.MoveMouseOn(); }}}, kRounds, ThreadSeconds)[0];
    const double behindMove =
        Race({{"behind a move", [&] { table.MoveSolidABit(); }, [&] { table.MoveMouseOn(); }}}, kRounds,
             ThreadSeconds)[0];
    const auto seconds = Race({{"motion", nullptr, [&] { table.MoveMouseOn(); }},
                               {"literal", nullptr, [&] { table.PickLiterallyThere(); }}},
                              kRounds, ThreadSeconds);
    std::printf(
        "A motion over 1M faces: %.2f ms; over all angles: %.1f ms; the look at all faces at the end of an "
        "operation: %.1f ms\n",
        seconds[0] * 1e3, seconds[1] * 1e3, ahead * 1e3);
    bool good = Judge("motion over 1M faces, milliseconds", seconds[0] * 1e3, 20.0);
    good &= Judge("first motion behind another operation, milliseconds", first * 1e3, 20.0);
    good &= Judge("first motion behind a move, milliseconds", behindMove * 1e3, 20.0);
    good &=
        Judge("motion over 1M faces: times as fast as over all angles", seconds[1] / seconds[0], 20.0, false);
    return good;
}

/// A step of a solid of 500k vertices along an axis.
bool JudgeMove(Table& table)
{
    table.MoveMouse(300, 350);
    table.GetBench().SendEvent({.kind = ToolEvent::Kind::LeftButtonDown});
    if (table.GetBench().GetController().GetElementManager().GetSelectList().empty())
    {
        throw std::runtime_error("nothing is selected");
    }
    table.Choose(ResourceID::MoveSolidX);
    int x = 0;
    table.MoveMouse(x, 0);
    const double step = Race({{"step", nullptr, [&] { table.MoveMouse(++x, 0); }}}, 15, ThreadSeconds)[0];
    return Judge("step of a move of 500k vertices, milliseconds", step * 1e3, 10.0);
}

/// A scene of some solids, picked by the command in both ways and literally.
class Comparison
{
public:
    explicit Comparison(const std::vector<IndexedMesh>& meshes)
    {
        for (const IndexedMesh& mesh : meshes)
        {
            MANSceneLeaf* leaf = m_Scene.NewLeaf();
            leaf->SetSolid(LoadQuietly(m_Elements, mesh));
            m_Scene.GetRootGroup()->AddChild(leaf);
        }
        m_Camera.SetSize(kWidth, kHeight);
        m_Command.SetCamera(&m_Camera);
        m_Command.SetScene(&m_Scene);
    }

    /// @return how many rays give anything else
    int CountDifferences(int rays)
    {
        constexpr std::uint32_t kKinds[] = {ElementKind::Vertex, ElementKind::Edge, ElementKind::Face,
                                            ElementKind::Solid};
        int differences = 0;
        for (int ray = 0; ray < rays; ++ray)
        {
            Aim(ray);
            const std::uint32_t kind = kKinds[ray % 4];
            const int x = ray % 5 == 0 ? kWidth / 2 : static_cast<int>(m_Random() % kWidth);
            const int y = ray % 5 == 0 ? kHeight / 2 : static_cast<int>(m_Random() % kHeight);
            const LiteralHit literal = PickLiterally(m_Scene, m_Camera, kind, x, y);
            const bool isSame = Pick(kind, x, y, nullptr) == literal && Pick(kind, x, y, &m_Runs) == literal;
            differences += isSame ? 0 : 1;
            m_nHits += literal.isHit ? 1 : 0;
        }
        return differences;
    }
    int CountHits() const { return m_nHits; }

private:
    /// At a vertex, the middle of two, or near one; from anywhere.
    void Aim(int ray)
    {
        const smVec3d& first = GetVertex();
        const smVec3d target = ray % 2 == 0 ? first : (first + GetVertex()) * 0.5;
        std::uniform_real_distribution<double> within(-4.0, 4.0);
        const smVec3d off(within(m_Random), within(m_Random), within(m_Random));
        m_Camera.SetLookAt(target + off, target, smVec3d(0.1, 1.0, 0.05));
    }

    const smVec3d& GetVertex()
    {
        const auto& vertices = m_Elements.GetVertexArray();
        return vertices[m_Random() % vertices.size()]->GetPosition();
    }

    LiteralHit Pick(std::uint32_t kind, int x, int y, FaceRuns* runs)
    {
        m_Command.SetFaceRuns(runs);
        m_Command.SetKind(kind);
        m_Command.SetMouse(x, y);
        m_Command.Execute();
        return {m_Command.HasHit(), m_Command.GetElementID()};
    }

    MANBrepElementManager m_Elements;
    MANSceneManager m_Scene;
    Open3DCamera m_Camera;
    IASelectCommand m_Command;
    FaceRuns m_Runs;
    std::mt19937 m_Random{20};
    int m_nHits = 0;
};

bool JudgeIdentity()
{
    const std::vector<std::vector<IndexedMesh>> scenes = {
        {Sphere(4)},
        {Torus(40, 20)},
        {Prism(60), NotchedFaces(), TriangleCube()},
        {Sphere(2), Placed(Torus(20, 10), 0.7, smVec3d(1, 0, 0)), StackedSquares(20)},
        {Placed(Torus(30, 15), 1.0, smVec3d(4e6, -7e5, 3e6))}};
    const int rays = 100000 / static_cast<int>(scenes.size());
    int differences = 0;
    int hits = 0;
    for (const auto& scene : scenes)
    {
        Comparison comparison(scene);
        differences += comparison.CountDifferences(rays);
        hits += comparison.CountHits();
    }
    std::printf("100000 rays over %zu scenes and four types: %d hits\n", scenes.size(), hits);
    return Judge("rays whose pick is not that over all angles", differences, 0.0);
}
}

int main()
{
    KeepFreedMemory(); // as the programs do
    HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});
    bool good = JudgeIdentity();
    TemporaryFolder folder;
    Table table(platform, WriteClosedModel(folder.GetPath(), 1000000));
    good &= JudgeMotions(table);
    good &= JudgeMove(table);
    return good ? 0 : 1;
}
