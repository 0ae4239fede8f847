#include "IARefineMeshCommand.h"
#include "IASimplifyCommand.h"
#include "LinksHold.h"
#include "LiteralOptimize.h"
#include "LiteralSimplify.h"
#include "RandomMeshes.h"
#include "ShapeMesh.h"
#include "TrialModel.h"
#include <gtest/gtest.h>
#include <string>

namespace tessarine
{
namespace
{
template <class TCommand, class TSetting>
void RunCommand(MANBrepElementManager& elements, MANSceneManager& scene, void (TCommand::*set)(TSetting),
                TSetting setting)
{
    TCommand command;
    command.SetElementManager(&elements);
    command.SetSceneManager(&scene);
    (command.*set)(setting);
    command.Execute();
}

IndexedMesh MeshOf(const std::string& name)
{
    const ShapeMesh made = name == "box"     ? MakeShapeMesh(MakeBoxShape(), 0.09)
                           : name == "bunny" ? MakeShapeMesh(MakeBunnyShape(), 0.07)
                                             : MakeShapeMesh(MakeHorseShape(), 0.055);
    IndexedMesh mesh;
    mesh.positions = made.points;
    for (const auto& [a, b, c] : made.triangles)
    {
        mesh.AddFace({a + 1, b + 1, c + 1});
    }
    return mesh;
}

/// As a scan is: no three corners lie on one line any more.
IndexedMesh Noisy(const IndexedMesh& mesh)
{
    constexpr double kScale = 32.0;
    const smVec3d origin(0, 0, 0);
    return Placed(Shaken(Placed(mesh, kScale, origin), 1), 1.0 / kScale, origin);
}

/// Two models of one mesh: one for an operator's plainest form, one for the command.
struct TrialPair
{
    explicit TrialPair(const IndexedMesh& mesh) : literal(mesh, false), fast(mesh, false) {}

    void ExpectSameSimplification(float ratio, const std::string& name)
    {
        EXPECT_TRUE(ExpectSameOutcome(
            literal, [ratio](auto& elements, auto& scene) { SimplifyLiterally(elements, scene, ratio); },
            fast,
            [ratio](auto& elements, auto& scene)
            { RunCommand(elements, scene, &IASimplifyCommand::SetRatio, ratio); },
            name));
    }

    void ExpectSameOptimisation(int mode, const std::string& name)
    {
        EXPECT_TRUE(ExpectSameOutcome(
            literal, [mode](auto& elements, auto& scene) { OptimizeLiterally(elements, scene, mode); }, fast,
            [mode](auto& elements, auto& scene)
            { RunCommand(elements, scene, &IARefineMeshCommand::SetMode, mode); },
            name));
        EXPECT_TRUE(LinksHold(fast.GetSolid())) << name;
    }

    TrialModel literal;
    TrialModel fast;
};

/// On a few thousand faces that bend as those of a model do.
class OperatorsOnShapes : public testing::TestWithParam<std::string>
{
protected:
    const IndexedMesh m_Mesh = MeshOf(GetParam());
};

TEST_P(OperatorsOnShapes, SimplifyTheSameToAHalf)
{
    TrialPair(m_Mesh).ExpectSameSimplification(0.5F, GetParam());
}

TEST_P(OperatorsOnShapes, SimplifyTheSameToAFifth)
{
    TrialPair(m_Mesh).ExpectSameSimplification(0.8F, GetParam());
}

TEST_P(OperatorsOnShapes, SwapTheSame)
{
    TrialPair trial(Noisy(m_Mesh));
    const std::size_t edges = trial.fast.GetSolid().GetEdgeList().size();
    trial.ExpectSameOptimisation(1, GetParam());
    // Each swap gives an edge with a new id, and the last one stands at the end.
    const std::size_t swaps = (trial.fast.GetSolid().GetEdgeList().back()->GetID() & 0x7FFFFFFFU) + 1 - edges;
    EXPECT_GT(swaps, m_Mesh.CountFaces() / 20);
}

TEST_P(OperatorsOnShapes, RemoveTheSameZeroEdges)
{
    TrialPair trial(Pinched(m_Mesh, 40, 1));
    trial.ExpectSameOptimisation(2, GetParam());
    EXPECT_LT(trial.fast.GetSolid().GetFaceList().size(), m_Mesh.CountFaces() - 60); // two with most edges
}

INSTANTIATE_TEST_SUITE_P(Of, OperatorsOnShapes, testing::Values("box", "bunny", "horse"),
                         [](const auto& instance) { return instance.param; });
}
}
