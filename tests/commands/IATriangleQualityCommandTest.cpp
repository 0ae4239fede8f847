#include "IATriangleQualityCommand.h"
#include "Capture.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "Vectors.h"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tessarine
{
namespace
{
TEST(TriangleQuality, OfAnEquilateralTriangleIsTwoOverTheRootOfThree)
{
    const double quality =
        TriangleQuality(smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(0.5, std::sqrt(0.75), 0));
    EXPECT_NEAR(quality, 2.0 / std::sqrt(3.0), 1e-15);
}

TEST(TriangleQuality, IsTheSquareOfTheLongestEdgeOverTwiceTheArea)
{
    // A right angle between 3 and 4: 25 / 12, whichever corner comes first.
    const smVec3d p(0, 0, 0);
    const smVec3d q(3, 0, 0);
    const smVec3d r(0, 0, 4);
    EXPECT_DOUBLE_EQ(TriangleQuality(p, q, r), 25.0 / 12.0);
    EXPECT_DOUBLE_EQ(TriangleQuality(q, r, p), 25.0 / 12.0);
    EXPECT_DOUBLE_EQ(TriangleQuality(r, p, q), 25.0 / 12.0);
    EXPECT_DOUBLE_EQ(TriangleQuality(p, r, q), 25.0 / 12.0);
    EXPECT_DOUBLE_EQ(TriangleQuality(7 * p, 7 * q, 7 * r), 25.0 / 12.0);
}

TEST(TriangleQuality, IsInfiniteWithoutArea)
{
    EXPECT_EQ(TriangleQuality(smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(2, 0, 0)),
              std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(TriangleQuality(smVec3d(1, 1, 1), smVec3d(1, 1, 1), smVec3d(1, 1, 1))));
}

class QualityCommand : public testing::Test
{
protected:
    DSSolid* Show(const IndexedMesh& mesh)
    {
        DSSolid* solid = LoadQuietly(m_Elements, mesh);
        m_Scene.AppendLeaf(solid);
        m_Command.SetSceneManager(&m_Scene);
        return solid;
    }

    MANBrepElementManager m_Elements;
    MANSceneManager m_Scene;
    IATriangleQualityCommand m_Command;
};

TEST_F(QualityCommand, BringsTheCurrentSolidIntoTheUnitCube)
{
    const DSSolid* solid = Show(SingleTriangle());
    m_Command.Execute();
    EXPECT_EQ(solid->GetVertexList()[0]->GetPosition(), smVec3d(-1, -1, 0));
    EXPECT_EQ(solid->GetVertexList()[1]->GetPosition(), smVec3d(1, -1, 0));
    EXPECT_EQ(solid->GetVertexList()[2]->GetPosition(), smVec3d(-1, 1, 0));
}

TEST_F(QualityCommand, AssertsThatThereIsASolid)
{
    const AssertionCapture assertions;
    m_Command.SetSceneManager(&m_Scene);
    EXPECT_THROW(m_Command.Execute(), AssertionFailure);
    EXPECT_THROW(m_Command.NormalizeSolid(), AssertionFailure);
    EXPECT_THROW(m_Command.EvaluateEdges(), AssertionFailure);
}

/// A rhombus of two equilateral triangles and its back: along the short diagonal both are perfect, along the long one
/// they have an angle of 120 degrees.
TEST_F(QualityCommand, MeasuresTheTwoTrianglesAtAnEdgeAndTheirFlip)
{
    const double h = std::sqrt(0.75);
    IndexedMesh rhombus;
    rhombus.positions = {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(0.5, h, 0), smVec3d(0.5, -h, 0)};
    rhombus.AddFace({1, 2, 3});
    rhombus.AddFace({2, 1, 4});
    rhombus.AddFace({3, 2, 4});
    rhombus.AddFace({1, 3, 4});
    const DSSolid* solid = Show(rhombus);
    const auto quality = IATriangleQualityCommand::EvaluateEdge(*solid->GetEdgeList()[0]);
    EXPECT_NEAR(quality.before, 2 * 2.0 / std::sqrt(3.0), 1e-14);
    // The long edge is 2h, so its square 3; twice the area is that of the other triangles, h.
    EXPECT_NEAR(quality.after, 2 * 3.0 / h, 1e-14);
}

TEST_F(QualityCommand, CalculatesTheNormalsAtEveryEdgeAndFlipsNothing)
{
    DSSolid* solid = Show(CentredTetrahedron());
    m_Command.SetSolid(solid);
    m_Command.EvaluateEdges();
    EXPECT_EQ(solid->GetEdgeList().size(), 6U);
    for (const DSFace* face : solid->GetFaceList())
    {
        EXPECT_NEAR(face->GetNormal().Length(), 1.0, 1e-15);
    }
}

TEST_F(QualityCommand, AssertsOnARim)
{
    const AssertionCapture assertions;
    m_Command.SetSolid(Show(SingleTriangle()));
    EXPECT_THROW(m_Command.EvaluateEdges(), AssertionFailure);
}
}
}
