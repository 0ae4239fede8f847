#include "SwapTests.h"
#include "Capture.h"
#include "IARefineMeshCommand.h"
#include "LinksHold.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "SwapMeshes.h"
#include "TriangleSurgery.h"
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
IndexedMesh QuadOnABody(const smVec3d& a, const smVec3d& b, const smVec3d& c, const smVec3d& d)
{
    IndexedMesh mesh;
    mesh.positions = {a,
                      b,
                      c,
                      d,
                      smVec3d(-4, -3, 0),
                      smVec3d(4, -3, 0),
                      smVec3d(4, 3, 0),
                      smVec3d(-4, 3, 0),
                      smVec3d(0, 0, -20)};
    for (const auto& [i, j, k] :
         {std::array{1, 2, 3}, std::array{2, 1, 4}, std::array{1, 5, 4}, std::array{5, 6, 4},
          std::array{4, 6, 2}, std::array{6, 7, 2}, std::array{2, 7, 3}, std::array{7, 8, 3},
          std::array{3, 8, 1}, std::array{8, 5, 1}, std::array{6, 5, 9}, std::array{7, 6, 9},
          std::array{8, 7, 9}, std::array{5, 8, 9}})
    {
        mesh.AddFace({i, j, k});
    }
    return mesh;
}

namespace
{
using testing::StartsWith;

class SwapTests : public testing::Test
{
protected:
    /// The edge 1-2 between the corners 3 and 4.
    DSEdge& Show(const IndexedMesh& mesh)
    {
        m_Elements.Clear();
        DSSolid* solid = LoadQuietly(m_Elements, mesh);
        const AssertionCapture assertions;
        solid->CalcNormals();
        return *m_Elements.FindEdge(0, 1);
    }

    bool Favours(const IndexedMesh& mesh)
    {
        const DSEdge& edge = Show(mesh);
        for (DSFace* face : m_Elements.GetFaceArray())
        {
            face->GetNormal() = smVec3d(0, 0, 0); // as swaps before leave it
        }
        return ShouldSwap(*edge.GetHalfEdge1(), *edge.GetHalfEdge2());
    }

    bool FavoursByAngle(const IndexedMesh& mesh)
    {
        const DSEdge& edge = Show(mesh);
        return ShouldSwapByAngle(*edge.GetHalfEdge1(), *edge.GetHalfEdge2());
    }

    MANBrepElementManager m_Elements;
};

/// A quadrilateral that is wider than high, with the long diagonal.
IndexedMesh FlatQuad(double halfHeight)
{
    return QuadOnABody({-2, 0, 0}, {2, 0, 0}, {0, halfHeight, 0}, {0, -halfHeight, 0});
}

double InRadians(double degrees)
{
    return degrees * std::acos(-1.0) / 180.0;
}

/// The same, folded along its diagonal: each half leaves the plane.
IndexedMesh FoldedQuad(double direction, double degrees = 65.0)
{
    const double y = 0.5 * std::cos(InRadians(degrees));
    const double z = direction * 0.5 * std::sin(InRadians(degrees));
    return QuadOnABody({-2, 0, 0}, {2, 0, 0}, {0, y, z}, {0, -y, z});
}

TEST_F(SwapTests, FavourTheShortDiagonal)
{
    // 4^2 over 1 twice against 2^2 + 0.5^2 over 1 twice.
    EXPECT_TRUE(Favours(FlatQuad(0.5)));
}

TEST_F(SwapTests, LeaveADiagonalThatIsNotMuchLonger)
{
    EXPECT_FALSE(Favours(FlatQuad(2.0))); // both are 4 long
    // With half the height y the sums are 16/y and (4 + y^2)/y: they differ by 1 where y^2 + y = 12, at 3; but from 2 on
    // the longest edge is the other one. In between the gain is more than 1 below y = 1.6.
    EXPECT_TRUE(Favours(FlatQuad(1.5)));
    EXPECT_FALSE(Favours(FlatQuad(1.9)));
}

TEST_F(SwapTests, LeaveAnEdgeAtAVertexOfThree)
{
    const DSEdge& edge = Show(FlatQuad(0.5));
    DSFace* face = edge.GetHalfEdge1()->GetLoop()->GetFace();
    TriangleSurgery surgery(&m_Elements);
    const DSHalfEdge* h = surgery.SplitFace(*face, {0, 0.1, 0})->GetHalfEdge();
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_FALSE(ShouldSwap(*h, *h->GetTwin()));
        EXPECT_FALSE(ShouldSwap(*h->GetTwin(), *h));
        h = h->GetTwin()->GetNext();
    }
}

TEST_F(SwapTests, LeaveCornersOnOneLine)
{
    EXPECT_FALSE(Favours(QuadOnABody({0, 0, 0}, {2, 0, 0}, {0, 0.5, 0}, {0, -0.5, 0})));
}

TEST_F(SwapTests, LeaveASharpRidgeAndNotAValley)
{
    EXPECT_TRUE(Favours(FoldedQuad(1.0)));
    EXPECT_FALSE(Favours(FoldedQuad(-1.0)));
}

TEST_F(SwapTests, CallARidgeSharpBeyondAHundredAndTwentyDegrees)
{
    EXPECT_TRUE(Favours(FoldedQuad(-1.0, 59.995))); // twice that between the normals
    EXPECT_FALSE(Favours(FoldedQuad(-1.0, 60.005)));
}

TEST_F(SwapTests, CallAFaceBeyondFoldedFromAHundredAndTwentyDegreesOn)
{
    // The face beyond the side 1-3, from (-2, 0, 0) to (0, 0.5, 0), is turned up about it.
    const auto turnedBy = [](double degrees)
    {
        IndexedMesh mesh = FlatQuad(0.5);
        const smVec3d middle(-1, 0.25, 0);
        const smVec3d outward = smVec3d(-0.5, 2, 0) / std::sqrt(4.25);
        mesh.positions[7] =
            middle + outward * std::cos(InRadians(degrees)) + smVec3d(0, 0, std::sin(InRadians(degrees)));
        return mesh;
    };
    EXPECT_TRUE(Favours(turnedBy(119.99)));
    EXPECT_FALSE(Favours(turnedBy(120.01)));
}

TEST_F(SwapTests, LeaveWhatWouldLieUnderAFold)
{
    // The face beyond the side 1-3 is turned over, with its corner above the new triangle or below it.
    IndexedMesh mesh = FlatQuad(0.5);
    mesh.positions[7] = smVec3d(1, -1, 0.2);
    EXPECT_FALSE(Favours(mesh));
    mesh.positions[7].z = -0.2;
    EXPECT_TRUE(Favours(mesh));
}

TEST_F(SwapTests, LeaveAQuadWithANotch)
{
    EXPECT_FALSE(Favours(QuadOnABody({-2, 0, 0}, {2, 0, 0}, {0, 0.5, 0}, {3.5, -0.2, 0})));
}

TEST_F(SwapTests, ByAngleFavourAnEdgeAcrossAFold)
{
    // The new triangles' normals are (-2, 0, 1) and (2, 0, 1): a dot product of -3/5, 127 degrees.
    const auto roof = [](double z) { return QuadOnABody({-1, 0, z}, {1, 0, z}, {0, 1, 0}, {0, -1, 0}); };
    EXPECT_TRUE(FavoursByAngle(roof(-2.0)));
    EXPECT_FALSE(FavoursByAngle(roof(2.0))) << "the edge is a ridge";
    EXPECT_FALSE(FavoursByAngle(roof(-1.0))) << "90 degrees";
    // The normals (z, 0, 1) and (-z, 0, 1) are twice the angle apart whose tangent is z.
    EXPECT_FALSE(FavoursByAngle(roof(-std::tan(InRadians(54.995)))));
    EXPECT_TRUE(FavoursByAngle(roof(-std::tan(InRadians(55.005)))));
}

TEST(FootInsideTriangle, IsMeasuredOnThePlane)
{
    const TriangleCorners triangle{smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(0, 1, 0)};
    EXPECT_TRUE(FootInsideTriangle({0.25, 0.25, 7}, triangle));
    // Beyond a side by y the areas add up to twice y more.
    EXPECT_TRUE(FootInsideTriangle({0.25, -0.49e-4, 1}, triangle));
    EXPECT_FALSE(FootInsideTriangle({0.25, -0.51e-4, 1}, triangle));
    EXPECT_FALSE(FootInsideTriangle({0, 0, 0}, {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(2, 0, 0)}));
}

TEST(SwapEdgesOfOptimisation, TakeTheEdgesInTheirOrder)
{
    MANBrepElementManager elements;
    MANSceneManager scene;
    DSSolid* solid = LoadQuietly(elements, FlatQuad(0.5));
    solid->CalcNormals();
    scene.AppendLeaf(solid);
    const std::uint32_t longDiagonal = elements.FindEdge(0, 1)->GetID();
    IARefineMeshCommand command;
    command.SetElementManager(&elements);
    command.SetSceneManager(&scene);
    ConsoleCapture console;
    command.SwapEdges();
    EXPECT_EQ(elements.GetEdgeArray()[longDiagonal & ~ElementKind::Edge], nullptr);
    EXPECT_NE(elements.FindEdge(2, 3), nullptr);
    EXPECT_TRUE(LinksHold(*solid));
    // The long diagonal is the first edge of the first face. Its place is looked at again, with the edge that moved up.
    const std::vector<std::string> lines = console.GetLines();
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines[0], "Current edge number: 0");
    EXPECT_EQ(lines[1], "Current edge number: 0");
    EXPECT_EQ(lines[2], "Current edge number: 1");
    EXPECT_EQ(lines.back(), "Current edge number: 20"); // 21 edges, and no totals
    EXPECT_THAT(lines, testing::Each(StartsWith("Current edge number: ")));
}
}
}
