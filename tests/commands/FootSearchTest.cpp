#include "FootSearch.h"
#include "Capture.h"
#include "Failure.h"
#include "MeshWalks.h"
#include "Meshes.h"
#include "Vectors.h"
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FootSearchTest : public testing::Test
{
protected:
    DSSolid& Load(const IndexedMesh& mesh)
    {
        m_pSolid = LoadQuietly(m_Manager, mesh);
        return *m_pSolid;
    }

    MANBrepElementManager m_Manager;
    DSSolid* m_pSolid = nullptr;
    ConsoleCapture m_Console;
};

TEST_F(FootSearchTest, FindsTheFootOnAFace)
{
    FootSearch search(Load(TriangleCube()), kHierarchicalFeet);
    const std::optional<Foot> foot = search.Find({0.25, 0.125, 1.5});
    ASSERT_TRUE(foot.has_value());
    EXPECT_EQ(foot->point, smVec3d(0.25, 0.125, 1));
    EXPECT_EQ(foot->distance, 0.5);
    smVec3d sum;
    const DSHalfEdge* h = foot->face->GetLoopList()[0]->GetHalfEdge();
    for (int i = 0; i < 3; ++i)
    {
        sum += foot->barycentric[i] * h->GetVertex()->GetPosition();
        h = h->GetNext();
    }
    EXPECT_EQ(sum, foot->point);
    EXPECT_THAT(m_Console.GetText(), testing::MatchesRegex("Adjacent Face size: [0-9]+\n"));
}

TEST_F(FootSearchTest, GivesAPointOnAVertexToTheFirstFaceAroundIt)
{
    DSSolid& solid = Load(Sphere(1));
    for (const FootVariant& variant : {kHierarchicalFeet, kIncrementalFeet})
    {
        FootSearch search(solid, variant);
        for (const DSVertex* vertex : solid.GetVertexList())
        {
            const std::optional<Foot> foot = search.Find(vertex->GetPosition());
            ASSERT_TRUE(foot.has_value());
            EXPECT_EQ(foot->face, FacesAround(*vertex).front());
            EXPECT_NEAR(foot->distance, 0.0, 1e-15);
        }
    }
}

TEST_F(FootSearchTest, GivesAPointOnAnEdgeToTheEarlierCandidate)
{
    DSSolid& solid = Load(TriangleCube());
    // Below the middle of the diagonal of the bottom, from whose two faces the distance is exactly the same.
    const smVec3d point(0.5, 0.5, -0.25);
    DSHalfEdge* diagonal = nullptr;
    for (const DSEdge* edge : solid.GetEdgeList())
    {
        const smVec3d way = edge->GetHalfEdge1()->GetVertex()->GetPosition() -
                            edge->GetHalfEdge2()->GetVertex()->GetPosition();
        if (way.Dot(way) > 1.5 && way.z == 0.0 && edge->GetHalfEdge1()->GetVertex()->GetPosition().z == 0.0)
        {
            diagonal = edge->GetHalfEdge1();
        }
    }
    ASSERT_NE(diagonal, nullptr);
    NearestPoints nearest(solid);
    const auto first = static_cast<std::size_t>(nearest.Find(point, 3).front());
    const std::vector<DSFace*> ring = FacesAround(*solid.GetVertexList()[first]);
    const auto isAtDiagonal = [diagonal](const DSFace* face)
    { return face == diagonal->GetLoop()->GetFace() || face == diagonal->GetTwin()->GetLoop()->GetFace(); };
    DSFace* const expected = *std::find_if(ring.begin(), ring.end(), isAtDiagonal);
    EXPECT_EQ(FootSearch(solid, kHierarchicalFeet).Find(point)->face, expected);
    EXPECT_EQ(FootSearch(solid, kEnergyFeet).Find(point)->face, expected);
}

TEST_F(FootSearchTest, PrefersTheDeepestFaceForTheEnergy)
{
    // Three nearest vertices of the thin slab take in both of its sides: seen from above, the bottom looks down, so
    // that the point is deeper behind it.
    DSSolid& solid = Load(Placed(TriangleCube(), 1.0, {}));
    for (DSVertex* vertex : solid.GetVertexList())
    {
        vertex->GetPosition().z *= 0.01;
    }
    const smVec3d point(0.3, 0.25, 0.02);
    const std::optional<Foot> deepest = FootSearch(solid, kEnergyFeet).Find(point);
    ASSERT_TRUE(deepest.has_value());
    EXPECT_EQ(deepest->point.z, 0.0);
    EXPECT_NEAR(deepest->distance, 0.02, 1e-15);
}

TEST_F(FootSearchTest, TakesAFootOutsideItsFaceByLessThanTheTolerance)
{
    DSSolid& solid = Load(TriangleCube());
    // Beyond the top's edge at x = 1 by d the areas are 2 d too many.
    const std::pair<FootVariant, double> tolerances[] = {{kHierarchicalFeet, 0.0001},
                                                         {kIncrementalFeet, 0.0001},
                                                         {kEnergyFeet, 1e-8},
                                                         {kTwoStepFeet, 0.00001}};
    for (const auto& [variant, tolerance] : tolerances)
    {
        const std::optional<Foot> foot = FootSearch(solid, variant).Find({1.0 + 0.49 * tolerance, 0.5, 1.5});
        ASSERT_TRUE(foot.has_value()) << tolerance;
        EXPECT_EQ(foot->distance, 0.5);
        EXPECT_FALSE(FootSearch(solid, variant).Find({1.0 + 0.51 * tolerance, 0.5, 1.5}).has_value())
            << tolerance;
    }
}

TEST_F(FootSearchTest, LeavesAFaceAHundredOrMoreBelowForTheEnergy)
{
    DSSolid& solid = Load(TriangleCube());
    EXPECT_TRUE(FootSearch(solid, kEnergyFeet).Find({0.25, 0.125, std::nextafter(101.0, 0.0)}).has_value());
    EXPECT_FALSE(FootSearch(solid, kEnergyFeet).Find({0.25, 0.125, 101.0}).has_value());
    EXPECT_TRUE(FootSearch(solid, kHierarchicalFeet).Find({0.25, 0.125, 101.0}).has_value());
}

/// A pyramid on its apex, whose base around vertex 1 is four triangles of the double area `width` in the plane z = 0.
IndexedMesh FlatFanOnItsApex(double width)
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0),      smVec3d(width, 0, 0), smVec3d(0, 1, 0),
                      smVec3d(-width, 0, 0), smVec3d(0, -1, 0),    smVec3d(0, 0, -1)};
    for (const int i : {0, 1, 2, 3})
    {
        const int next = (i + 1) % 4;
        mesh.AddFace({1, i + 2, next + 2});
        mesh.AddFace({6, next + 2, i + 2});
    }
    return mesh;
}

TEST_F(FootSearchTest, LeavesAFaceOfTenMillionTimesTheMoveOrMoreInTwoSteps)
{
    const double move = std::ldexp(1.0, -24);
    const double width = 1e7 * move; // so that the double area over the move is the bound itself
    const smVec3d point(0.125, 0.125, move);
    EXPECT_FALSE(FootSearch(Load(FlatFanOnItsApex(width)), kTwoStepFeet).Find(point).has_value());
    const double less = std::nextafter(width, 0.0);
    EXPECT_TRUE(FootSearch(Load(FlatFanOnItsApex(less)), kTwoStepFeet).Find(point).has_value());
}

TEST_F(FootSearchTest, NeverTakesAPointOnItsFaceInTwoSteps)
{
    DSSolid& solid = Load(TriangleCube());
    // Two other sides have its foot on their rims, 1/8 and 1/4 away: the larger move wins.
    const std::optional<Foot> foot = FootSearch(solid, kTwoStepFeet).Find({0.25, 0.125, 0});
    ASSERT_TRUE(foot.has_value());
    EXPECT_EQ(foot->distance, 0.25);
}

TEST_F(FootSearchTest, RefusesAFootWhoseWayToThePointIsCutInTwoSteps)
{
    // Above the octahedron's face, the side across the nearest corner has a foot as well, and a larger move; but its way
    // leads through the face. In the other variants nothing is asked.
    DSSolid& solid = Load(Sphere(0));
    const DSFace& face = *solid.GetFaceList()[2];
    const smVec3d point = face.CalcCentroid() + face.ComputeNormal() * 0.1;
    FootVariant uncut = kTwoStepFeet;
    uncut.refusesCuts = false;
    const std::optional<Foot> far = FootSearch(solid, uncut).Find(point);
    ASSERT_TRUE(far.has_value());
    EXPECT_NE(far->face, &face);
    EXPECT_GT(far->distance, 0.5);
    EXPECT_EQ(m_Console.Count("Intersect the face!!!"), 0);
    const std::optional<Foot> foot = FootSearch(solid, kTwoStepFeet).Find(point);
    ASSERT_TRUE(foot.has_value());
    EXPECT_EQ(foot->face, &face);
    EXPECT_EQ(m_Console.Count("Intersect the face!!!"), 1);
}

TEST_F(FootSearchTest, TestsLargerFacesByTheirKind)
{
    DSSolid& solid = Load(QuadCube());
    EXPECT_TRUE(FootSearch(solid, kHierarchicalFeet).Find({0.5, 0.5, 1.5}).has_value());
    const MessageCapture messages;
    FootSearch search(solid, kTwoStepFeet);
    EXPECT_FALSE(search.Find({0.5, 0.5, 1.5}).has_value());
    EXPECT_FALSE(search.Find({0.5, 0.5, 1.5}).has_value());
    EXPECT_THAT(messages.GetTexts(), ElementsAre("There are more than three edges! "));
    const AssertionCapture assertions;
    EXPECT_THROW(FootSearch(solid, kIncrementalFeet).Find({0.5, 0.5, 1.5}), AssertionFailure);
    EXPECT_THROW(FootSearch(solid, kEnergyFeet).Find({0.5, 0.5, 1.5}), AssertionFailure);
}

TEST_F(FootSearchTest, AssertsFewerThanTwentyCorners)
{
    EXPECT_TRUE(FootSearch(Load(Prism(19)), kHierarchicalFeet).Find({0.1, 0.0, 2.0}).has_value());
    const AssertionCapture assertions;
    EXPECT_THROW(FootSearch(Load(Prism(20)), kHierarchicalFeet).Find({0.1, 0.0, 2.0}), Failure);
}

TEST_F(FootSearchTest, HasNoCandidatesAroundAVertexWithoutFaces)
{
    IndexedMesh mesh = CentredTetrahedron();
    mesh.positions.emplace_back(9, 9, 9);
    FootSearch search(Load(mesh), kTwoStepFeet);
    EXPECT_FALSE(search.Find({8, 8, 8}).has_value());
    EXPECT_EQ(m_Console.GetText(), "Adjacent Face size: 0\n");
    EXPECT_NEAR(search.GetVertexDistance(), std::sqrt(3.0), 1e-15);
}

TEST_F(FootSearchTest, AssertsClosedRings)
{
    const AssertionCapture assertions;
    EXPECT_THROW(FootSearch(Load(Grid(2)), kHierarchicalFeet), AssertionFailure);
}

TEST_F(FootSearchTest, ListsTheFeetOfACloud)
{
    DSSolid& solid = Load(TriangleCube());
    solid.GetFaceList()[3]->GetTagList() = {7};
    FootSearch search(solid, kHierarchicalFeet);
    // On the top; one that takes no part; beyond a corner; on the top again.
    const std::vector<smVec3d> cloud{{0.5, 0.25, 1.5}, {0.5, 0.5, 2}, {2, 2, 2}, {0.75, 0.25, 1.25}};
    std::vector<smVec3d> projected = cloud;
    const FootList feet = CalculateFootPoints(
        solid, cloud, [](std::size_t i) { return i != 1; }, search, &projected);
    EXPECT_THAT(feet.cloudIndices, ElementsAre(0, 3));
    EXPECT_EQ(projected[0], smVec3d(0.5, 0.25, 1));
    EXPECT_EQ(projected[1], cloud[1]);
    EXPECT_EQ(projected[2], cloud[2]);
    EXPECT_EQ(projected[3], feet.points[1]);
    EXPECT_EQ(feet.faces[0], feet.faces[1]);
    EXPECT_THAT(feet.faces[0]->GetTagList(), ElementsAre(0, 1));
    EXPECT_THAT(m_Console.GetLines().size(), 5U); // three searches
    EXPECT_EQ(m_Console.GetLines()[3], "Calculate footpoint ok..");
    EXPECT_EQ(m_Console.GetLines()[4], "There are 1points cannot find projection point..");
    for (DSFace* face : solid.GetFaceList())
    {
        if (face != feet.faces[0])
        {
            EXPECT_THAT(face->GetTagList(), IsEmpty());
        }
    }
    const AssertionCapture assertions;
    EXPECT_THROW(CalculateFootPoints(
                     solid, {}, [](std::size_t) { return true; }, search, nullptr),
                 AssertionFailure);
}

TEST(FindNearestOf, KeepsTheEarliestOfEqualPoints)
{
    const std::vector<smVec3d> points{{5, 0, 0}, {1, 0, 0}, {-1, 0, 0}};
    EXPECT_EQ(FindNearestOf(points, {0, 0, 0}), &points[1]);
    EXPECT_EQ(FindNearestOf({}, {0, 0, 0}), nullptr);
}
}
}
