#include "MoveTests.h"
#include "Capture.h"
#include "RandomMeshes.h"
#include "Vectors.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
class MoveTests : public testing::Test
{
protected:
    /// A pole of a bipyramid of six sides, at (0, 0, 1) above a ring of radius 1.
    DSVertex& ShowPole()
    {
        m_pSolid = LoadQuietly(m_Elements, Bipyramid(6));
        return *m_pSolid->GetVertexList()[0];
    }

    MANBrepElementManager m_Elements;
    DSSolid* m_pSolid = nullptr;
    ConsoleCapture m_Console;
};

TEST_F(MoveTests, FoldWhereAFaceComesToLieOnItsNeighbour)
{
    DSVertex& pole = ShowPole();
    EXPECT_FALSE(WouldFold(pole, {0, 0, 2}));
    EXPECT_FALSE(WouldFold(pole, {0.3, 0.1, 0.5}));
    // Below the ring by a little less than the other pole: all six lie close above their neighbours, back to back.
    EXPECT_TRUE(WouldFold(pole, {0, 0, -0.99}));
    EXPECT_EQ(pole.GetPosition(), smVec3d(0, 0, 1));
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(MoveTests, FoldBeyondAHundredAndSixtyDegrees)
{
    DSVertex& pole = ShowPole();
    // The ring's sides are half the root of 3 away from the axis. A face above rises over them at some angle, that below
    // falls at another; their outer normals are what is left to 180 degrees apart.
    const double rim = std::sqrt(0.75);
    const double falls = std::atan(1.0 / rim);
    const auto poleFor = [&](double degrees)
    { return smVec3d(0, 0, rim * std::tan((180.0 - degrees) * std::acos(-1.0) / 180.0 - falls)); };
    EXPECT_FALSE(WouldFold(pole, poleFor(159.99)));
    EXPECT_TRUE(WouldFold(pole, poleFor(160.01)));
}

TEST_F(MoveTests, ProjectIntoTheRing)
{
    const DSVertex& pole = ShowPole();
    EXPECT_TRUE(ProjectsIntoRing(pole, {0, 0, 1}));
    const DSFace& face = *pole.GetHalfEdge()->GetLoop()->GetFace();
    EXPECT_TRUE(ProjectsIntoRing(pole, face.CalcCentroid() + face.ComputeNormal() * 0.3));
    EXPECT_FALSE(ProjectsIntoRing(pole, {0, 0, 1.5})) << "its feet lie beyond the pole";
    EXPECT_FALSE(ProjectsIntoRing(pole, {3, 0, 0}));
}

TEST_F(MoveTests, NameTheNearestEdgeWhereAVertexMayNotMove)
{
    DSVertex& pole = ShowPole();
    EXPECT_EQ(CheckVertexMove(pole, {0, 0, 1.5}), nullptr);
    EXPECT_EQ(m_Console.GetText(), "");
    // Below, its faces point inward, and those beyond lie before them.
    const DSEdge* edge = CheckVertexMove(pole, {0.5, 0.1, -0.7});
    ASSERT_NE(edge, nullptr);
    // The ring's first vertex is at (1, 0, 0), the nearest.
    const DSVertex* nearest = m_pSolid->GetVertexList()[1];
    EXPECT_TRUE(edge->GetHalfEdge1()->GetVertex() == nearest || edge->GetHalfEdge2()->GetVertex() == nearest);
    EXPECT_EQ(m_Console.GetText(), "cannot update this vertex...\n");
    EXPECT_EQ(pole.GetPosition(), smVec3d(0, 0, 1));
    EXPECT_EQ(CheckVertexMove(pole, {0, 0, -200}), nullptr) << "no far end lies within 100";
}

TEST_F(MoveTests, RefuseBeyondAHundredAndTwentyDegrees)
{
    // Below the other pole the faces point down and inward, and the ones beyond lie before them. The sides of the ring are
    // the rim away from the axis: from the horizontal one kind of normal is turned by its pole's angle down, the other
    // by the half turn less its own.
    DSVertex& pole = ShowPole();
    constexpr double kOtherPole = 0.2;
    m_pSolid->GetVertexList()[7]->GetPosition() = smVec3d(0, 0, -kOtherPole);
    const double rim = std::sqrt(0.75);
    const auto poleFor = [&](double degrees)
    {
        const double turn = std::acos(-1.0) * (degrees - 180.0) / 180.0;
        return smVec3d(0, 0, -rim / std::tan(turn + std::atan(rim / kOtherPole)));
    };
    EXPECT_EQ(CheckVertexMove(pole, poleFor(119.99)), nullptr);
    EXPECT_NE(CheckVertexMove(pole, poleFor(120.01)), nullptr);
}

TEST_F(MoveTests, LetASharpRidgeBe)
{
    // High above the ring the normals of faces across it are up to 139 degrees apart, and each lies behind the other.
    EXPECT_EQ(CheckVertexMove(ShowPole(), {0, 0, 50}), nullptr);
    EXPECT_EQ(m_Console.GetText(), "");
}
}
}
