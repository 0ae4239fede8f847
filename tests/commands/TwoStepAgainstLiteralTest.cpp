#include "FitStage.h"
#include "IAReconstructionSmoothTwoStepCommand.h"
#include "LinksHold.h"
#include "LiteralTwoStep.h"
#include "RandomMeshes.h"
#include "RecordDump.h"
#include "Refusal.h"
#include "SolidNormalization.h"
#include "Vectors.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
/// The command and the plainest form on two models that are alike.
class TwoStepRace
{
public:
    TwoStepRace(const IndexedMesh& mesh, const std::vector<smVec3d>& cloud)
        : m_Cloud(m_Stage.WriteCloud("data/bunny.txta", cloud)),
          m_LiteralSolid(*LoadQuietly(m_LiteralElements, mesh)),
          m_Literal(m_LiteralElements, m_LiteralSolid, m_Cloud)
    {
        m_Stage.Load(mesh);
        m_Stage.Equip(m_Command);
        NormalizeSolid(m_LiteralSolid);
        m_Literal.m_Console = "点云大小: " + std::to_string(cloud.size()) + "\n";
    }

    /// @return whether the run came to its end
    bool Run()
    {
        const bool isWhole = GetRefusal([this] { m_Command.Execute(); }).empty();
        EXPECT_EQ(m_Literal.Run(), isWhole);
        EXPECT_TRUE(m_Console.GetText() == m_Literal.m_Console);
        if (isWhole)
        {
            ExpectTheSame();
        }
        return isWhole;
    }

    void Step()
    {
        m_Command.Step();
        m_Literal.Step();
        ExpectTheSame();
    }

    std::size_t CountVertices() const { return m_LiteralSolid.GetVertexList().size(); }

private:
    void ExpectTheSame()
    {
        EXPECT_TRUE(DumpRecords(m_Stage.GetElements()) == DumpRecords(m_LiteralElements));
        EXPECT_TRUE(m_Console.GetText() == m_Literal.m_Console);
        EXPECT_EQ(m_Stage.GetView().GetPointCloud(), m_Cloud);
        EXPECT_EQ(m_Stage.GetView().GetProjectedPoints(), m_Literal.m_Projected);
        EXPECT_EQ(m_Command.GetPairs().m_PointOwner, m_Literal.m_PointOwner);
        EXPECT_EQ(m_Command.GetPairs().m_VertexPoint, m_Literal.m_VertexPoint);
        EXPECT_EQ(m_Command.GetOldPositions(), m_Literal.m_OldPositions);
        EXPECT_TRUE(LinksHold(m_LiteralSolid));
    }

    const AssertionCapture m_Assertions;
    ConsoleCapture m_Console;
    FitStage m_Stage;
    std::vector<smVec3d> m_Cloud;
    MANBrepElementManager m_LiteralElements;
    DSSolid& m_LiteralSolid;
    IAReconstructionSmoothTwoStepCommand m_Command;
    LiteralTwoStep m_Literal;
};

class TwoStepAgainstLiteral : public testing::TestWithParam<unsigned>
{
};

TEST_P(TwoStepAgainstLiteral, PairsAndStepsTheSame)
{
    const unsigned seed = GetParam();
    for (const IndexedMesh& mesh : {Sphere(2), Shaken(Sphere(2), seed), Shaken(Torus(9, 7), seed)})
    {
        TwoStepRace race(mesh, SphereCloud(300, seed));
        ASSERT_TRUE(race.Run());
        const std::size_t before = race.CountVertices();
        race.Step();
        race.Step();
        EXPECT_GT(race.CountVertices(), before);
    }
}

TEST_P(TwoStepAgainstLiteral, RemovesTheSameWherePointsAreFew)
{
    const unsigned seed = GetParam();
    TwoStepRace race(Shaken(Sphere(2), seed), SphereCloud(45, seed)); // 66 vertices
    if (race.Run())
    {
        EXPECT_LE(race.CountVertices(), 45U);
        race.Step();
    }
}

TEST_P(TwoStepAgainstLiteral, RefusesTheSameWherePointsAreTooFew)
{
    const unsigned seed = GetParam();
    int refused = 0;
    for (std::size_t points = 6; points <= 20; ++points)
    {
        refused += TwoStepRace(Shaken(Sphere(1), seed), SphereCloud(points, seed)).Run() ? 0 : 1;
        refused += TwoStepRace(Torus(6, 5), SphereCloud(points, seed)).Run() ? 0 : 1;
    }
    EXPECT_GT(refused, 0);
    EXPECT_LT(refused, 30);
}

INSTANTIATE_TEST_SUITE_P(Seeds, TwoStepAgainstLiteral, testing::Range(0U, 4U));
}
}
