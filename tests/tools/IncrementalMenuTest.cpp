#include "FailingMemory.h"
#include "IACommandRouter.h"
#include "IAReconstructionSmoothCommand.h"
#include "IncrementalConnection.h"
#include "LinksHold.h"
#include "Picture.h"
#include "WorkbenchTest.h"
#include "resource.h"
#include <cmath>

namespace tessarine
{
namespace
{
using testing::HasSubstr;

/// Points around the sphere in a spiral, and the ends of the axes.
std::string SpiralCloud(int count)
{
    std::string text = std::to_string(count + 6) + "\n1 0 0\n-1 0 0\n0 1 0\n0 -1 0\n0 0 1\n0 0 -1\n";
    for (int i = 0; i < count; ++i)
    {
        const double z = 1.0 - (2.0 * i + 1.0) / count;
        const double radius = std::sqrt(1.0 - z * z);
        text += std::to_string(radius * std::cos(2.4 * i)) + ' ' +
                std::to_string(radius * std::sin(2.4 * i)) + ' ' + std::to_string(z) + '\n';
    }
    return text;
}

/// The workbench with a model over which a new mesh is growing.
class IncrementalMenuTest : public WorkbenchTest
{
protected:
    IncrementalMenuTest()
    {
        m_pSolid = Show(Sphere(1));
        m_Folder.Write("data/box.txta", SpiralCloud(120));
    }

    bool Choose(int id) { return IACommandRouter(m_Bench).Run("menu", id); }
    bool Refine() { return Choose(ResourceID::RefineIncremental); }
    bool Connect(std::uint64_t steps)
    {
        return m_Bench.Perform("connect-next", Effect::ChangesModel,
                               [this, steps] { GetController().ConnectNext(steps); });
    }
    bool Save()
    {
        return m_Bench.Perform("save-environment", Effect::None,
                               [this] { GetController().SaveEnvironment(); });
    }

    /// The environment as saved, which has the whole state but the counter.
    std::string GetEnvironment()
    {
        EXPECT_TRUE(Save());
        return m_Folder.Read("data/SmoothEnvionment.data") +
               std::to_string(GetController().GetIncrementalCommand()->Save()->GetFaceCount());
    }

    DSSolid* m_pSolid = nullptr;
};

TEST_F(IncrementalMenuTest, KeepsItsCommandForTheStepsBehind)
{
    EXPECT_TRUE(Refine());
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U);
    const IAReconstructionSmoothCommand* first = GetController().GetIncrementalCommand();
    const DSSolid* newMesh = m_Bench.GetView().GetNewMesh();
    EXPECT_TRUE(Connect(10));
    EXPECT_TRUE(
        m_Bench.Perform("connect-next", Effect::ChangesModel, [this] { GetController().ConnectAll(); }));
    EXPECT_GT(newMesh->GetFaceList().size(), 100U);
    EXPECT_EQ(m_Bench.GetView().GetNewMesh(), newMesh);
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U); // the steps make no commands
    EXPECT_TRUE(Refine());
    EXPECT_NE(GetController().GetIncrementalCommand(), first);
    EXPECT_NE(m_Bench.GetView().GetNewMesh(), newMesh);
    EXPECT_EQ(newMesh->GetVertexList()[0]->GetID(),
              18U); // it stays in the stores, behind the model's vertices
    for (const int id : {ResourceID::ShowNewMesh, ResourceID::ShowProjectionLines})
    {
        EXPECT_TRUE(Choose(id));
    }
}

TEST_F(IncrementalMenuTest, IsExportedBehindTheModelAsAnObjectThatStandsAlone)
{
    EXPECT_TRUE(Refine());
    EXPECT_TRUE(Connect(1000));
    const DSSolid& grown = *m_Bench.GetView().GetNewMesh();
    const std::size_t vertices = grown.GetVertexList().size();
    const std::size_t faces = grown.GetFaceList().size();
    const std::size_t edges = grown.GetEdgeList().size();
    m_Platform.AnswerFile((m_Folder / "both.obj").string());
    EXPECT_TRUE(m_Bench.Perform("export", Effect::None, [this] { GetController().ExportObj(); }));
    const std::string text = m_Folder.Read("both.obj");
    EXPECT_THAT(text, HasSubstr("# 32 faces in this object g object2 \n"));
    m_Folder.Write("grown.obj", text.substr(text.find("g object2 ")));
    EXPECT_TRUE(Import("grown.obj"));
    const DSSolid& imported = *GetScene().GetCurrentSolid();
    EXPECT_EQ(imported.GetVertexList().size(), vertices);
    EXPECT_EQ(imported.GetFaceList().size(), faces); // what is open is one of them
    EXPECT_EQ(imported.GetEdgeList().size(), edges);
    EXPECT_TRUE(LinksHold(imported));
}

TEST_F(IncrementalMenuTest, RefusesTheStepsBeforeTheRun)
{
    const char* const refusal =
        "no new mesh has been started on this model: run incremental refinement first (\"递增连接算法\")";
    EXPECT_FALSE(Connect(1));
    EXPECT_EQ(m_Platform.GetOnlyReason(), refusal);
    EXPECT_FALSE(Save());
    EXPECT_FALSE(
        m_Bench.Perform("connect-next", Effect::ChangesModel, [this] { GetController().ConnectAll(); }));
    EXPECT_EQ(m_Platform.GetFailures().back().reason, refusal);
}

TEST_F(IncrementalMenuTest, ForgetsTheModelThatAnImportTakesAway)
{
    EXPECT_TRUE(Refine());
    m_Folder.Write("tetra.obj", kTetrahedronObj);
    EXPECT_TRUE(Import("tetra.obj"));
    EXPECT_EQ(m_Bench.GetView().GetNewMesh(), nullptr);
    EXPECT_FALSE(Connect(1));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("no new mesh has been started on this model"));
    EXPECT_FALSE(Save());
}

TEST_F(IncrementalMenuTest, ForgetsTheModelOfTheDocumentBefore)
{
    EXPECT_TRUE(Refine());
    m_Bench.NewDocument();
    EXPECT_EQ(m_Bench.GetView().GetNewMesh(), nullptr);
    EXPECT_FALSE(Connect(1));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("no new mesh has been started on this model"));
}

TEST_F(IncrementalMenuTest, ForgetsTheModelThatAdaptiveSubdivisionReplaces)
{
    EXPECT_TRUE(Refine());
    m_Platform.AnswerAreaThreshold(0.0F);
    EXPECT_TRUE(
        m_Bench.Perform("subdivide", Effect::ReplacesModel, [this] { GetController().SubdivideAdaptive(); }));
    EXPECT_EQ(m_Bench.GetView().GetNewMesh(), nullptr);
    EXPECT_FALSE(Connect(1));
}

TEST_F(IncrementalMenuTest, GoesOnBehindAnImportThatFails)
{
    EXPECT_TRUE(Refine());
    EXPECT_TRUE(Connect(5));
    const std::string environment = GetEnvironment();
    const DSSolid* newMesh = m_Bench.GetView().GetNewMesh();
    m_Folder.Write("bad.obj", "v 0 0 0\nf 1 2 3\n");
    EXPECT_FALSE(Import("bad.obj"));
    EXPECT_EQ(m_Bench.GetView().GetNewMesh(), newMesh);
    EXPECT_EQ(GetEnvironment(), environment);
    EXPECT_TRUE(Connect(5));
}

TEST_F(IncrementalMenuTest, GoesOnBehindARunThatFails)
{
    EXPECT_TRUE(Refine());
    EXPECT_TRUE(Connect(5));
    const std::string before = PictureOf(m_Bench);
    const std::string environment = GetEnvironment();
    m_Folder.Write("data/box.txta", "2\n1 1 1\n-1 -1 -1\n"); // no seed
    EXPECT_FALSE(Refine());
    EXPECT_EQ(PictureOf(m_Bench), before);
    EXPECT_EQ(GetEnvironment(), environment);
}

TEST_F(IncrementalMenuTest, RefusesTheStepsWhereAnotherOperationChangedTheModel)
{
    EXPECT_TRUE(Refine());
    EXPECT_TRUE(
        m_Bench.Perform("subdivide", Effect::ChangesModel, [this] { GetController().SubdivideLoop(); }));
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(Connect(1));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("start anew (\"递增连接算法\")"));
    EXPECT_EQ(PictureOf(m_Bench), before);
    m_Folder.Write("data/box.txta", SpiralCloud(2000)); // enough for the finer model
    EXPECT_TRUE(Refine());
    EXPECT_TRUE(Connect(1));
}

TEST_F(IncrementalMenuTest, RefusesTheStepsWhereAnotherOperationMovedTheModel)
{
    const std::string cloud = SpiralCloud(120);
    for (const char* name : {"data/horse.txta", "data/dragon.txta"})
    {
        m_Folder.Write(name, cloud);
    }
    for (void (IAController::*fit)() : {&IAController::FitVertices, &IAController::RefineEnergy})
    {
        EXPECT_TRUE(Refine());
        EXPECT_TRUE(m_Bench.Perform("fit", Effect::ChangesModel, [&] { (GetController().*fit)(); }));
        const std::string before = PictureOf(m_Bench);
        ASSERT_FALSE(Connect(1));
        EXPECT_THAT(m_Platform.GetFailures().back().reason, HasSubstr("start anew (\"递增连接算法\")"));
        EXPECT_EQ(PictureOf(m_Bench), before);
    }
}

TEST_F(IncrementalMenuTest, GoesOnBehindAnOperationThatBringsTheModelIntoItsCubeAgain)
{
    m_pSolid->GetVertexList()[0]->GetPosition() = smVec3d(0.1, 0.2, 1.7); // no box whose middle is exact
    m_Folder.Write("data/bunny.txta", SpiralCloud(120));
    EXPECT_TRUE(Refine());
    EXPECT_TRUE(Connect(2));
    EXPECT_TRUE(m_Bench.Perform("octree", Effect::ChangesModel, [this] { GetController().BuildOctree(); }));
    EXPECT_TRUE(Connect(2));
}

/// How the memory ends.
class IncrementalMenuOutOfMemory : public IncrementalMenuTest, public testing::WithParamInterface<FaultMode>
{
};

TEST_P(IncrementalMenuOutOfMemory, LeavesModelAndCommand)
{
    EXPECT_TRUE(Refine());
    EXPECT_TRUE(Connect(20));
    const std::string before = PictureOf(m_Bench);
    const std::string environment = GetEnvironment();
    const auto kept = DebugConsole().SetSink([](std::string_view) {}); // one that needs no memory
    bool done = false;
    for (long spared = 0; !done; ++spared)
    {
        {
            const InjectedFault fault(GetMemoryPlan(), spared, GetParam());
            done = Connect(3);
        }
        ASSERT_EQ(PictureOf(m_Bench) == before, !done) << "allocation " << spared;
        ASSERT_EQ(GetEnvironment() == environment, !done) << "allocation " << spared;
    }
    DebugConsole().SetSink(kept);
}

INSTANTIATE_TEST_SUITE_P(Modes, IncrementalMenuOutOfMemory,
                         testing::Values(FaultMode::Once, FaultMode::FromThenOn));

/// The machine on which no frame comes to its end.
class IncrementalMenuWithoutFrames : public IncrementalMenuTest
{
protected:
    FailingPanes m_Panes;
};

TEST_F(IncrementalMenuWithoutFrames, LeavesModelAndCommandWhereTheLastFrameFails)
{
    EXPECT_TRUE(Refine());
    EXPECT_TRUE(Connect(4));
    const std::string before = PictureOf(m_Bench);
    const std::string environment = GetEnvironment();
    m_Panes.Fail();
    EXPECT_FALSE(Connect(4));
    EXPECT_EQ(PictureOf(m_Bench), before);
    EXPECT_EQ(GetEnvironment(), environment);
}
}
}
