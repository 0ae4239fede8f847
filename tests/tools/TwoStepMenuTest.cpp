#include "IACommandRouter.h"
#include "IAReconstructionSmoothTwoStepCommand.h"
#include "LinksHold.h"
#include "Picture.h"
#include "RandomMeshes.h"
#include "WorkbenchTest.h"
#include "resource.h"
#include <algorithm>
#include <random>
#include <set>

namespace tessarine
{
namespace
{
using testing::HasSubstr;

/// The corners of a cube, the middles of its sides, and points before those: on a ball of 18 vertices some stay free.
std::string CubeCloud()
{
    std::string text;
    int count = 0;
    for (int i = 0; i < 125; ++i)
    {
        const int x = i % 5 - 2;
        const int y = i / 5 % 5 - 2;
        const int z = i / 25 - 2;
        if (std::max({std::abs(x), std::abs(y), std::abs(z)}) == 2)
        {
            text += std::to_string(x) + ' ' + std::to_string(y) + ' ' + std::to_string(z) + '\n';
            ++count;
        }
    }
    return std::to_string(count) + '\n' + text;
}

/// One that a cloud of few points leaves hardly anything of.
IndexedMesh SmallBody(unsigned seed)
{
    switch (seed % 5)
    {
    case 0: return Shaken(Sphere(0), seed);
    case 1: return Shaken(Sphere(1), seed);
    case 2: return Torus(3 + static_cast<int>(seed % 4), 3 + static_cast<int>(seed % 3));
    case 3: return Beside(Shaken(Sphere(0), seed), Placed(Sphere(1), 1.0, {3, 0, 0}));
    default: return Sphere(2);
    }
}

std::string RandomCloud(std::size_t points, unsigned seed)
{
    std::mt19937 random(seed);
    std::string text = std::to_string(points) + '\n';
    for (std::size_t i = 0; i < 3 * points; ++i)
    {
        text += std::to_string(static_cast<int>(random() % 2001) - 1000) + ' ';
    }
    return text;
}

/// A closed mesh of triangles with three vertices each, of this Euler number.
testing::AssertionResult IsSound(const DSSolid& solid, int characteristic)
{
    for (const DSFace* face : solid.GetFaceList())
    {
        const DSHalfEdge* h = face->GetLoopList()[0]->GetHalfEdge();
        const std::set<const DSVertex*> corners{h->GetVertex(), h->GetNext()->GetVertex(),
                                                h->GetPrev()->GetVertex()};
        if (corners.size() != 3 || h->GetNext()->GetNext()->GetNext() != h)
        {
            return testing::AssertionFailure() << "face " << face->GetID() << " is no triangle";
        }
    }
    if (2 * solid.GetEdgeList().size() != 3 * solid.GetFaceList().size() ||
        EulerCharacteristic(solid) != characteristic)
    {
        return testing::AssertionFailure() << "the Euler number is " << EulerCharacteristic(solid);
    }
    return LinksHold(solid);
}

template <class TPlatform>
class TwoStepBench : public testing::Test
{
protected:
    DSSolid* Show(const IndexedMesh& mesh)
    {
        IAController& controller = m_Bench.GetController();
        DSSolid* solid = LoadQuietly(controller.GetElementManager(), mesh);
        controller.GetSceneManager().AppendLeaf(solid);
        return solid;
    }

    bool Choose(int id) { return IACommandRouter(m_Bench).Run("menu", id); }
    bool StartRefinement()
    {
        m_pSolid = Show(Sphere(1));
        m_Folder.Write("data/bunny.txta", CubeCloud());
        return Choose(ResourceID::RefineTwoStep);
    }
    IAReconstructionSmoothTwoStepCommand& Command() { return *m_Bench.GetController().GetTwoStepCommand(); }

    /// Model, overlays and history, and what the command keeps.
    std::string PictureOfAll()
    {
        std::string text = PictureOf(m_Bench) + std::to_string(Command().GetStepCount());
        for (const auto& [id, point] : Command().GetPairs().m_VertexPoint)
        {
            text += ' ' + std::to_string(id) + ':' + std::to_string(point);
        }
        for (const std::int32_t owner : Command().GetPairs().m_PointOwner)
        {
            text += ' ' + std::to_string(owner);
        }
        for (const smVec3d& p : Command().GetOldPositions())
        {
            text += ' ' + std::to_string(p.x) + ',' + std::to_string(p.y) + ',' + std::to_string(p.z);
        }
        return text;
    }

    TemporaryCurrentFolder m_Folder;
    ConsoleCapture m_Console;
    AssertionCapture m_Assertions;
    TPlatform m_Platform;
    IAWorkbench m_Bench;
    DSSolid* m_pSolid = nullptr;
};

using TwoStepMenuTest = TwoStepBench<RecordingPlatform>;
using TwoStepFrameTest = TwoStepBench<FailingPanes>;

TEST_F(TwoStepMenuTest, KeepsTheCommandForItsThreeButtons)
{
    ASSERT_TRUE(StartRefinement());
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U);
    const std::size_t vertices = m_pSolid->GetVertexList().size();
    EXPECT_TRUE(Choose(ResourceID::TwoStepFirst));
    EXPECT_EQ(Command().GetStepCount(), 1);
    EXPECT_GT(m_pSolid->GetVertexList().size(), vertices);
    const smVec3d moved = m_pSolid->GetVertexList()[vertices]->GetPosition();
    EXPECT_TRUE(Choose(ResourceID::TwoStepSecond));
    const smVec3d foot = m_pSolid->GetVertexList()[vertices]->GetPosition();
    EXPECT_GT((moved - foot).Length(), 0.0);
    EXPECT_TRUE(Choose(ResourceID::TwoStepThird));
    EXPECT_EQ((m_pSolid->GetVertexList()[vertices]->GetPosition() - moved).Length(), 0.0);
    EXPECT_TRUE(LinksHold(*m_pSolid));
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U) << "steps are no commands";
    EXPECT_TRUE(m_Platform.GetFailures().empty());
    for (const int id :
         {ResourceID::ShowPointCloud, ResourceID::ShowProjectedPoints, ResourceID::ShowProjectionLines})
    {
        EXPECT_TRUE(Choose(id));
    }
}

TEST_F(TwoStepMenuTest, HandsTheButtonsToTheLatestCommand)
{
    ASSERT_TRUE(StartRefinement());
    const auto* first = &Command();
    ASSERT_TRUE(Choose(ResourceID::RefineTwoStep));
    EXPECT_NE(&Command(), first);
    EXPECT_TRUE(Choose(ResourceID::TwoStepFirst));
    EXPECT_EQ(first->GetStepCount(), 0);
    EXPECT_EQ(Command().GetStepCount(), 1);
}

TEST_F(TwoStepMenuTest, IgnoresTheButtonsWithoutACommandAndSaysSoOnTheConsole)
{
    const std::pair<int, const char*> buttons[] = {{ResourceID::TwoStepFirst, "the first step"},
                                                   {ResourceID::TwoStepSecond, "the second step"},
                                                   {ResourceID::TwoStepThird, "the third step"}};
    for (const auto& [id, name] : buttons)
    {
        EXPECT_FALSE(Choose(id));
        const RecordingPlatform::Shown& failure = m_Platform.GetFailures().back();
        EXPECT_EQ(failure.reason, std::string(name) +
                                      " needs a two-step refinement that has run on this model: "
                                      "run it first (\"两步对应算法\", refine-two-step)");
        EXPECT_TRUE(failure.wasShown) << "a window shows nothing";
        EXPECT_EQ(m_Console.Count(failure.reason), 1);
    }
}

TEST_F(TwoStepMenuTest, ForgetsTheCommandWithItsModel)
{
    ASSERT_TRUE(StartRefinement());
    m_Folder.Write("tetra.obj", kTetrahedronObj);
    m_Platform.AnswerFile("tetra.obj");
    ASSERT_TRUE(Choose(ResourceID::ImportObj));
    EXPECT_EQ(m_Bench.GetController().GetTwoStepCommand(), nullptr);
    EXPECT_FALSE(Choose(ResourceID::TwoStepFirst));

    ASSERT_TRUE(Choose(ResourceID::FileNew));
    ASSERT_TRUE(StartRefinement());
    ASSERT_TRUE(Choose(ResourceID::FileNew));
    EXPECT_EQ(m_Bench.GetController().GetTwoStepCommand(), nullptr);
    EXPECT_FALSE(Choose(ResourceID::TwoStepThird));
}

TEST_F(TwoStepMenuTest, KeepsTheCommandOverAnImportThatFails)
{
    ASSERT_TRUE(StartRefinement());
    const std::string before = PictureOfAll();
    m_Platform.AnswerFile("none.obj");
    EXPECT_FALSE(Choose(ResourceID::ImportObj));
    EXPECT_EQ(PictureOfAll(), before);
    EXPECT_TRUE(Choose(ResourceID::TwoStepFirst));
}

TEST_F(TwoStepMenuTest, LeavesEverythingAsItWasWhereTheRunFails)
{
    ASSERT_TRUE(StartRefinement());
    const std::string before = PictureOfAll();
    m_Folder.Write("data/bunny.txta", "2\n1 0 0\n-1 0 0\n");
    EXPECT_FALSE(Choose(ResourceID::RefineTwoStep));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("the cloud has too few points near this mesh"));
    EXPECT_EQ(PictureOfAll(), before);
    EXPECT_TRUE(Choose(ResourceID::TwoStepFirst)) << "the command before goes on";
}

TEST_F(TwoStepMenuTest, EndsInASoundMeshOrLeavesEverythingAsItWas)
{
    int refused = 0;
    int whole = 0;
    for (unsigned seed = 0; seed < 60; ++seed)
    {
        ASSERT_TRUE(Choose(ResourceID::FileNew));
        m_pSolid = Show(SmallBody(seed));
        const int characteristic = EulerCharacteristic(*m_pSolid);
        m_Folder.Write("data/bunny.txta", RandomCloud(2 + seed % 23, seed));
        const std::string before = PictureOf(m_Bench);
        if (!Choose(ResourceID::RefineTwoStep))
        {
            EXPECT_THAT(m_Platform.GetFailures().back().reason,
                        HasSubstr("the cloud has too few points near this mesh"));
            EXPECT_EQ(PictureOf(m_Bench), before) << seed;
            ++refused;
            continue;
        }
        ++whole;
        EXPECT_TRUE(IsSound(*m_pSolid, characteristic)) << seed;
        for (const int id : {ResourceID::TwoStepFirst, ResourceID::TwoStepThird, ResourceID::SubdivideLoop})
        {
            EXPECT_TRUE(Choose(id)) << seed;
            EXPECT_TRUE(IsSound(*m_pSolid, characteristic)) << seed;
        }
    }
    EXPECT_GE(refused, 10);
    EXPECT_GE(whole, 10);
}

TEST_F(TwoStepMenuTest, LeavesEverythingAsItWasWhereVerticesCannotBePutBack)
{
    m_pSolid = Show(Sphere(1));
    m_Folder.Write("data/bunny.txta",
                   "10\n1 0 0\n-1 0 0\n0 1 0\n0 -1 0\n0 0 1\n0 0 -1\n.6 .6 .6\n.6 -.6 .6\n-.6 "
                   ".6 .6\n.6 .6 -.6\n");
    ASSERT_TRUE(Choose(ResourceID::RefineTwoStep));
    ASSERT_LT(m_pSolid->GetVertexList().size(), 18U);
    const std::string before = PictureOfAll();
    EXPECT_FALSE(Choose(ResourceID::TwoStepSecond));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("the vertices cannot be put back"));
    EXPECT_EQ(PictureOfAll(), before);
}

TEST_F(TwoStepFrameTest, LeavesModelAndCommandAsTheyWereWhereAStepFails)
{
    ASSERT_TRUE(StartRefinement());
    const std::string before = PictureOfAll();
    m_Platform.Fail(); // the frame behind the step
    for (const int id : {ResourceID::TwoStepFirst, ResourceID::TwoStepSecond, ResourceID::TwoStepThird})
    {
        EXPECT_FALSE(Choose(id));
        EXPECT_EQ(PictureOfAll(), before);
    }
}

TEST_F(TwoStepMenuTest, StepsOnAfterAnotherOperationHasChangedTheMesh)
{
    ASSERT_TRUE(StartRefinement());
    ASSERT_TRUE(Choose(ResourceID::OptimizeMesh1));
    ASSERT_TRUE(Choose(ResourceID::SubdivideLoop));
    EXPECT_TRUE(Choose(ResourceID::TwoStepFirst));
    EXPECT_TRUE(LinksHold(*m_pSolid));
}
}
}
