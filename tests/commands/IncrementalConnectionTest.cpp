#include "IncrementalConnection.h"
#include "FitStage.h"
#include "LinksHold.h"
#include "Refusal.h"
#include "Vectors.h"
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A tetrahedron, whose faces all lie within a ring of one another, and feet that a test puts on them.
class ConnectionTest : public testing::Test
{
protected:
    ConnectionTest() : m_Solid(m_Stage.Load(CentredTetrahedron())) {}

    /// Wherever they are.
    void AddFeet(std::size_t face, const std::vector<smVec3d>& points)
    {
        for (const smVec3d& point : points)
        {
            m_Feet.Add({m_Solid.GetFaceList()[face], point, 0.0, {}}, m_Feet.points.size());
        }
    }

    void Begin() { m_Connection.Begin(&m_Stage.GetElements(), &m_Solid, m_Feet); }

    void Seed()
    {
        Begin();
        m_Connection.MakeSeed();
    }

    void ConnectAll()
    {
        while (!m_Connection.IsFrontEmpty())
        {
            m_Connection.ConnectNext();
        }
    }

    /// The feet at the corners of the new triangles, each from its first corner in the loop on, the newest last.
    std::vector<std::vector<std::int32_t>> GetTriangles() const
    {
        std::vector<std::vector<std::int32_t>> triangles;
        for (const DSFace* face : m_Connection.GetNewSolid()->GetFaceList())
        {
            std::vector<std::int32_t> feet;
            const DSHalfEdge* const start = face->GetLoopList()[0]->GetHalfEdge();
            const DSHalfEdge* h = start;
            do
            {
                feet.push_back(FootOf(*h->GetVertex()));
                h = h->GetNext();
            } while (h != start);
            triangles.push_back(feet);
        }
        return triangles;
    }

    std::int32_t FootOf(const DSVertex& vertex) const
    {
        const auto& vertices = m_Connection.GetFootVertices();
        const auto id = static_cast<std::int32_t>(vertex.GetID());
        return static_cast<std::int32_t>(std::find(vertices.begin(), vertices.end(), id) - vertices.begin());
    }

    /// The edges by the feet at their ends, the smaller one first.
    std::vector<std::pair<std::int32_t, std::int32_t>> GetFront() const
    {
        std::vector<std::pair<std::int32_t, std::int32_t>> front;
        for (const DSEdge* edge : m_Connection.GetFrontEdges())
        {
            front.push_back(std::minmax(FootOf(*edge->GetHalfEdge1()->GetVertex()),
                                        FootOf(*edge->GetHalfEdge2()->GetVertex())));
        }
        return front;
    }

    FitStage m_Stage;
    DSSolid& m_Solid;
    FootList m_Feet;
    IncrementalConnection m_Connection;
    ConsoleCapture m_Console;
    AssertionCapture m_Assertions;
};

/// A centre and six around it, a little uneven so that no two are equally near.
std::vector<smVec3d> Wheel()
{
    constexpr double kSixth = 1.0471975511965976;
    std::vector<smVec3d> points{{0, 0, 0}};
    for (int i = 0; i < 6; ++i)
    {
        const double radius = 0.1 + 0.001 * i;
        points.emplace_back(radius * std::cos(kSixth * i), radius * std::sin(kSixth * i), 0.0);
    }
    return points;
}

using Pair = std::pair<std::int32_t, std::int32_t>;

TEST_F(ConnectionTest, CostsShapeAndLengths)
{
    // A triangle with sides 3, 4 and 5 tenths has twice the area 0.12.
    EXPECT_DOUBLE_EQ(IncrementalConnection::TriangleCost({0, 0, 0}, {0.3, 0, 0}, {0, 0.4, 0}),
                     0.01 * 0.25 / 0.12 + 0.4 + 0.5);
    // The candidate's own sides count, not that of the edge.
    EXPECT_DOUBLE_EQ(IncrementalConnection::TriangleCost({0, 0, 0}, {0, 0.4, 0}, {0.3, 0, 0}),
                     0.01 * 0.25 / 0.12 + 0.3 + 0.5);
}

TEST_F(ConnectionTest, CostsInfinitelyMuchOnALineAndNoNumberAtAPoint)
{
    using Limits = std::numeric_limits<double>;
    const smVec3d a(0.25, 0, 0);
    const smVec3d b(0.5, 0, 0);
    EXPECT_EQ(IncrementalConnection::TriangleCost(a, b, {0.375, 0, 0}), Limits::infinity());
    EXPECT_EQ(IncrementalConnection::TriangleCost(a, b, a), Limits::infinity()); // at an end of the edge
    EXPECT_EQ(IncrementalConnection::TriangleCost(a, b, b), Limits::infinity());
    EXPECT_TRUE(std::isnan(IncrementalConnection::TriangleCost(a, a, a)));
}

TEST_F(ConnectionTest, StartsWithTheNearestFootAndTheCheapestThird)
{
    AddFeet(0, {{0, 0, 0}, {0.2, 0, 0}, {0.1, 0, 0}, {0.05, 0.3, 0}, {0.05, 0.1, 0}});
    Seed();
    EXPECT_EQ(m_Console.GetText(),
              "The size of projection points: 5\nSize of projection points: 5\nSet vIndex: (0,2,4)\n");
    EXPECT_THAT(m_Connection.GetFootVertices(),
                ElementsAre(0 + 4, -1, 1 + 4, -1, 2 + 4)); // behind the model's four
    EXPECT_THAT(m_Connection.GetNearFaces(), ElementsAre(m_Solid.GetFaceList()[0]));
    EXPECT_THAT(GetFront(), testing::UnorderedElementsAre(Pair(0, 2), Pair(2, 4), Pair(0, 4)));
    EXPECT_EQ(m_Connection.GetNewSolid()->GetFaceList().size(), 2U);
    EXPECT_EQ(m_Connection.GetNewSolid()->GetFaceList()[1], m_Connection.GetSeedFace());
    EXPECT_TRUE(LinksHold(*m_Connection.GetNewSolid()));
    EXPECT_EQ(m_Connection.GetFaceCount(), 0);
}

TEST_F(ConnectionTest, LetsTheFirstOfTheOtherFeetBeTheNearest)
{
    AddFeet(0, {{0, 0, 0}, {0.1, 0, 0}, {0, 0.2, 0}, {0.9, 0.9, 0}});
    Seed();
    EXPECT_EQ(m_Console.Count("Set vIndex: (0,1,2)"), 1);
}

TEST_F(ConnectionTest, TakesTheEarlierOfThirdsThatCostTheSame)
{
    AddFeet(0, {{0, 0, 0}, {0.125, 0, 0}, {0.0625, 0.25, 0}, {0.0625, -0.25, 0}});
    Seed();
    EXPECT_EQ(m_Console.Count("Set vIndex: (0,1,2)"), 1);
}

TEST_F(ConnectionTest, GoesOnToTheNextFootAndTheNextFace)
{
    AddFeet(0, {{0, 0, 0}, {0.1, 0, 0}, {0, 0.1, 0}});              // three are too few
    AddFeet(1, {{0, 0, 0}, {0.1, 0, 0}, {0.2, 0, 0}, {0.3, 0, 0}}); // on a line
    // The first is alone: what it makes with any two others costs too much.
    AddFeet(2, {{0.9, 0.9, 0.9}, {0, 0, 0}, {0.125, 0, 0}, {0, 0.25, 0}});
    Seed();
    EXPECT_EQ(m_Console.GetText(), "The size of projection points: 11\nSize of projection points: 4\n"
                                   "Size of projection points: 4\nSet vIndex: (8,9,10)\n");
    EXPECT_THAT(m_Connection.GetNearFaces(), ElementsAre(m_Solid.GetFaceList()[2]));
}

TEST_F(ConnectionTest, FailsWhereNoFaceHasMoreThanThreeFeet)
{
    for (std::size_t face = 0; face < 4; ++face)
    {
        AddFeet(face, {{0, 0, 0}, {0.1, 0, 0}, {0, 0.1, 0}});
    }
    Begin();
    EXPECT_THAT(GetRefusal([this] { m_Connection.MakeSeed(); }),
                HasSubstr("no face of the model has four feet of the cloud"));
    EXPECT_EQ(m_Connection.GetNewSolid(), nullptr);
    EXPECT_EQ(m_Console.GetText(), "The size of projection points: 12\n");
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(m_Assertions.GetExpressions(), ElementsAre("seed.has_value()"));
#endif
}

TEST_F(ConnectionTest, FailsWhereAllFeetLieOnLinesOrInOnePlaceOrFarApart)
{
    AddFeet(0, {{0, 0, 0}, {0.125, 0, 0}, {0.25, 0, 0}, {0.5, 0, 0}, {0.75, 0, 0}});
    AddFeet(1, {{0.5, 0.5, 0.5}, {0.5, 0.5, 0.5}, {0.5, 0.5, 0.5}, {0.5, 0.5, 0.5}});
    AddFeet(2, {{0, 0, 0}, {0.5, 0, 0}, {0, 0.5, 0}, {0, 0, 0.5}}); // 1/2 and more to go from both ends
    Begin();
    EXPECT_THAT(GetRefusal([this] { m_Connection.MakeSeed(); }),
                HasSubstr("points on one line or far apart"));
}

TEST_F(ConnectionTest, SaysOfPointsThatComeTwiceThatTheyMakeNoTriangle)
{
    std::vector<smVec3d> feet;
    for (int i = 0; i < 75; ++i)
    {
        const smVec3d place(0.01 * i, 0.0001 * i * i, 0.0);
        feet.insert(feet.end(), {place, place});
    }
    AddFeet(1, feet);
    Begin();
    EXPECT_THAT(GetRefusal([this] { m_Connection.MakeSeed(); }),
                testing::AllOf(HasSubstr("there are faces with four feet"), HasSubstr("remove the doubles")));
}

TEST_F(ConnectionTest, StartsAtTheOneFootThatIsNoDouble)
{
    // Of the doubles nearest to it either may be taken, of thirds the earlier.
    AddFeet(0, {{0, 0, 0}, {0, 0, 0}, {0.1, 0, 0}, {0.05, 0.2, 0}, {0.05, 0.2, 0}});
    Seed();
    EXPECT_THAT(m_Console.GetLines().back(), testing::MatchesRegex("Set vIndex: .2,[01],3."));
}

TEST_F(ConnectionTest, FindsNoStartInManyFeetAtFewPlacesOrOnALineAsQuicklyAsInFew)
{
    // One search among all others for each of them would take minutes.
    std::vector<smVec3d> equal(40000, smVec3d(0.25, 0.5, 0.125));
    std::vector<smVec3d> line;
    for (int i = 0; i < 20000; ++i)
    {
        equal[static_cast<std::size_t>(i)].x = 0.01 * (i % 100);
        line.push_back(smVec3d(0.7, -0.9, 0.3) * (i / 20000.0));
    }
    AddFeet(0, equal);
    AddFeet(1, line);
    AddFeet(2, {{0, 0, 0}, {0.125, 0, 0}, {0, 0.25, 0}, {0.5, 0.5, 0}});
    Seed();
    EXPECT_THAT(m_Console.GetText(), testing::EndsWith("Set vIndex: (60000,60001,60002)\n"));
}

TEST_F(ConnectionTest, TurnsTheSeedAsTheFaceThatItLiesOn)
{
    // The second face is that of another tetrahedron, turned round: what is right for one is left for the other.
    for (const double side : {1.0, -1.0})
    {
        FitStage stage;
        DSSolid& solid = stage.Load(CentredTetrahedron());
        DSFace* face = solid.GetFaceList()[0];
        const smVec3d n = face->ComputeNormal() * side;
        const smVec3d u = n.Cross({1, 0, 0});
        const smVec3d v = n.Cross(u);
        FootList feet;
        for (const smVec3d& p : {smVec3d(), u * 0.1, v * 0.2, (u + v) * 0.5})
        {
            feet.Add({face, p, 0.0, {}}, 0);
        }
        IncrementalConnection connection;
        connection.Begin(&stage.GetElements(), &solid, feet);
        connection.MakeSeed();
        EXPECT_NEAR(connection.GetSeedFace()->GetNormal().Dot(face->ComputeNormal()), 1.0, 1e-12);
    }
}

TEST_F(ConnectionTest, ReportsOnceThatTheCornersOfTheSeedHaveNoNormal)
{
    AddFeet(0, Wheel());
    Seed();
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(m_Assertions.GetExpressions(), ElementsAre("t > smVec3d_zero"));
#endif
    for (const DSVertex* vertex : m_Connection.GetNewSolid()->GetVertexList())
    {
        EXPECT_EQ(vertex->GetNormal(), smVec3d());
    }
}

TEST_F(ConnectionTest, AddsATriangleWithANewVertexBeyondTheFirstEdge)
{
    // Beyond side 1-2, the first of the front, lies foot 3; foot 4 does not.
    AddFeet(0, {{0, 0, 0}, {0.1, 0, 0}, {0.05, 0.09, 0}, {0.15, 0.08, 0}, {-0.2, -0.1, 0}});
    Seed();
    ASSERT_EQ(GetFront().front(), Pair(1, 2));
    m_Connection.ConnectNext();
    EXPECT_THAT(m_Connection.GetCandidates(), testing::ElementsAre(1, 2, 3)); // the edge's ends, and beyond
    EXPECT_THAT(m_Console.GetText(), testing::EndsWith("Before remove: 5\n"
                                                       "The number of vertexes have been created is: 3\n"
                                                       "After remove: 3\n"
                                                       "The vertex number: 2\n"
                                                       "The number of faces created: 2\n"));
    EXPECT_EQ(m_Connection.GetFaceCount(), 1);
    const DSSolid& solid = *m_Connection.GetNewSolid();
    EXPECT_EQ(solid.GetVertexList().size(), 4U);
    EXPECT_EQ(solid.GetVertexList()[3]->GetPosition(), smVec3d(0.15, 0.08, 0));
    EXPECT_EQ(m_Connection.GetFootVertices()[3],
              static_cast<std::int32_t>(solid.GetVertexList()[3]->GetID()));
    EXPECT_TRUE(LinksHold(solid));
    // The new edges to the start of the open side, then to its end: it runs against the side in the seed.
    const DSHalfEdge* seedSide = m_Connection.GetSeedFace()->GetLoopList()[0]->GetHalfEdge();
    const std::int32_t end = FootOf(*seedSide->GetVertex());
    const std::int32_t start = FootOf(*seedSide->GetNext()->GetVertex());
    const auto front = GetFront();
    ASSERT_EQ(front.size(), 4U);
    EXPECT_EQ(front[2], std::minmax({start, 3}));
    EXPECT_EQ(front[3], std::minmax({end, 3}));
    m_Connection.CalcNormals();
    for (std::size_t i = 1; i < 3; ++i) // both triangles, not the outer face
    {
        EXPECT_NEAR(solid.GetFaceList()[i]->GetNormal().Dot(m_Connection.GetSeedFace()->GetNormal()), 1.0,
                    1e-12);
    }
}

TEST_F(ConnectionTest, GoesAroundAFootAndClosesTheLastTriangleWithoutANewVertex)
{
    AddFeet(0, Wheel());
    Seed();
    ConnectAll();
    const DSSolid& solid = *m_Connection.GetNewSolid();
    EXPECT_EQ(solid.GetVertexList().size(), 7U);
    EXPECT_EQ(solid.GetFaceList().size(), 1 + 6U);
    EXPECT_EQ(solid.GetEdgeList().size(), 12U);
    EXPECT_EQ(GetTriangles().front().size(), 6U); // the outer face goes around the wheel
    EXPECT_EQ(m_Console.Count("The point has a vertex already.."), 1);
    EXPECT_EQ(m_Console.Count("Connect the two faces.."), 0);
    EXPECT_EQ(m_Console.Count("The number of faces created: 6"), 1);
    EXPECT_EQ(m_Console.Count("The number of faces created: 7"), 0);
    EXPECT_TRUE(LinksHold(solid));
    m_Connection.CalcNormals();
    for (const DSVertex* vertex : solid.GetVertexList())
    {
        // Five corners of the rim have two triangles' normals and the outer one's; all lie along z or cancel out.
        EXPECT_EQ(vertex->GetNormal().x, 0.0);
        EXPECT_EQ(vertex->GetNormal().y, 0.0);
    }
}

TEST_F(ConnectionTest, JoinsNoCornersThatARimOfThreeHasJoined)
{
    // A tetrahedron with wide angles at sides 0-2, 2-1 and 1-3: foot 3 lies beyond the first two of them and is
    // joined there. Foot 0 lies beyond side 1-3 of the three that are left open then.
    AddFeet(0, {{0, -0.03125, 0}, {0.125, 0, 0}, {0.125, 0.125, 0}, {0.140625, 0.15625, 0.125}});
    Seed();
    ConnectAll();
    const DSSolid& solid = *m_Connection.GetNewSolid();
    EXPECT_EQ(m_Console.Count("Connect the two faces.."), 1);
    EXPECT_EQ(solid.GetFaceList().size(), 1 + 3U);
    EXPECT_EQ(solid.GetEdgeList().size(), 6U);
    EXPECT_EQ(GetTriangles().front().size(), 3U);
    EXPECT_TRUE(LinksHold(solid));
}

/// A corner beyond a side whose triangle costs exactly as much as the limit of 1, and one that hardly costs less.
struct LimitCorners
{
    smVec3d at;
    smVec3d below;
};

LimitCorners FindLimitCorners(const smVec3d& a, const smVec3d& b)
{
    for (double y = 0.3; y < 0.4; y += 0.001)
    {
        smVec3d below(0.2, y, 0.0);
        smVec3d above(0.9, y, 0.0);
        for (int i = 0; i < 100; ++i)
        {
            const smVec3d middle((below.x + above.x) / 2.0, y, 0.0);
            (IncrementalConnection::TriangleCost(a, b, middle) < 1.0 ? below : above) = middle;
        }
        if (IncrementalConnection::TriangleCost(a, b, above) == 1.0 &&
            IncrementalConnection::TriangleCost(b, a, above) == 1.0 &&
            IncrementalConnection::TriangleCost(b, a, below) < 1.0)
        {
            return {above, below};
        }
    }
    return {};
}

TEST_F(ConnectionTest, TakesNoCornerThatCostsAsMuchAsTheLimit)
{
    const std::vector<smVec3d> corners{{0, 0, 0}, {0.1, 0, 0}, {0.05, 0.09, 0}};
    const LimitCorners limit = FindLimitCorners(corners[1], corners[2]);
    ASSERT_EQ(IncrementalConnection::TriangleCost(corners[1], corners[2], limit.at), 1.0);
    AddFeet(0, corners);
    AddFeet(0, {limit.at});
    Seed();
    ASSERT_EQ(GetFront().front(), Pair(1, 2));
    m_Connection.ConnectNext();
    EXPECT_THAT(m_Connection.GetCandidates(), ElementsAre(1, 2, 3));
    EXPECT_EQ(m_Console.Count("Cannot find point!"), 1);
    EXPECT_EQ(m_Connection.GetFaceCount(), 0);
}

TEST_F(ConnectionTest, TakesACornerThatCostsHardlyLessThanTheLimit)
{
    const std::vector<smVec3d> corners{{0, 0, 0}, {0.1, 0, 0}, {0.05, 0.09, 0}};
    AddFeet(0, corners);
    AddFeet(0, {FindLimitCorners(corners[1], corners[2]).below});
    Seed();
    m_Connection.ConnectNext();
    EXPECT_EQ(m_Console.Count("Cannot find point!"), 0);
    EXPECT_EQ(m_Connection.GetFaceCount(), 1);
}

TEST_F(ConnectionTest, LeavesAHoleBehindAnEdgeWithoutACandidate)
{
    // All but the third corner are used up by the seed, and the fourth is too far away.
    AddFeet(0, {{0, 0, 0}, {0.1, 0, 0}, {0, 0.1, 0}, {0.9, -0.9, 0}});
    Seed();
    m_Connection.ConnectNext();
    EXPECT_EQ(m_Console.Count("Cannot find point!"), 1);
    EXPECT_EQ(m_Connection.GetFrontEdges().size(), 2U);
    EXPECT_EQ(m_Connection.GetFaceCount(), 0);
    EXPECT_THAT(m_Connection.GetNearFaces(), ElementsAre(m_Solid.GetFaceList()[0]));
    ConnectAll();
    EXPECT_EQ(m_Console.Count("Cannot find point!"), 3);
    EXPECT_EQ(m_Connection.GetNewSolid()->GetFaceList().size(), 2U);
}

TEST_F(ConnectionTest, DoesNothingWithAnEmptyFront)
{
    AddFeet(0, {{0, 0, 0}, {0.1, 0, 0}, {0, 0.1, 0}, {0.9, -0.9, 0}});
    Seed();
    ConnectAll();
    const std::string before = m_Console.GetText();
    m_Connection.ConnectNext();
    EXPECT_EQ(m_Console.GetText(), before);
}

TEST_F(ConnectionTest, PassesOverAnEdgeThatWasClosedFromAnother)
{
    AddFeet(0, Wheel());
    Seed();
    ConnectAll();
    // Beside the six spokes and the seed's far side five sides of the rim were made: of the twelve edges the last
    // triangle closed one spoke while it still was in the front, and no more is said of it than of a hole.
    const std::vector<std::string> lines = m_Console.GetLines();
    int passedOver = 0;
    for (std::size_t i = 1; i < lines.size(); ++i)
    {
        passedOver +=
            lines[i] == "Cannot find point!" && lines[i - 1].find("The vertex number: ") != 0 ? 1 : 0;
    }
    EXPECT_EQ(passedOver, 1);
}

TEST_F(ConnectionTest, KeepsCandidatesOutOfTheTrianglesBesideTheEdge)
{
    // A strip of three triangles around a corner that turns by more than half a circle: what lies within the first of
    // them is beyond the last side, and no candidate.
    AddFeet(0, Wheel());
    AddFeet(0, {{0.03, 0.02, 0}});
    Seed();
    ConnectAll();
    EXPECT_TRUE(LinksHold(*m_Connection.GetNewSolid()));
    double area = 0.0;
    const auto& faces = m_Connection.GetNewSolid()->GetFaceList();
    for (std::size_t i = 1; i < faces.size(); ++i)
    {
        const DSHalfEdge* h = faces[i]->GetLoopList()[0]->GetHalfEdge();
        const smVec3d a = h->GetVertex()->GetPosition();
        area += (h->GetNext()->GetVertex()->GetPosition() - a)
                    .Cross(h->GetPrev()->GetVertex()->GetPosition() - a)
                    .Dot(m_Connection.GetSeedFace()->GetNormal()) /
                2.0;
    }
    EXPECT_GT(area, 0.0);
    EXPECT_LT(area, 0.0287); // the hexagon over the six
}

TEST_F(ConnectionTest, GoesOnFromACopy)
{
    AddFeet(0, Wheel());
    Seed();
    const IncrementalConnection before = m_Connection;
    m_Connection.ConnectNext();
    EXPECT_EQ(before.GetFrontEdges().size(), 3U);
    EXPECT_EQ(m_Connection.GetFrontEdges().size(), 2U); // nothing lies beyond the wheel's rim
}

TEST_F(ConnectionTest, KnowsWhetherItsModelIsThere)
{
    AddFeet(0, Wheel());
    AddFeet(2, {{0.5, 0, 0}});
    Seed();
    EXPECT_TRUE(m_Connection.IsModelUnchanged());
    DSFace* face = m_Solid.GetFaceList()[2];
    face->GetTagList().clear();
    EXPECT_FALSE(m_Connection.IsModelUnchanged());
    face->GetTagList() = {7, 7};
    EXPECT_FALSE(m_Connection.IsModelUnchanged());
    face->GetTagList() = {6};
    EXPECT_FALSE(m_Connection.IsModelUnchanged()); // foot 6 lies on another
    face->GetTagList() = {-1};
    EXPECT_FALSE(m_Connection.IsModelUnchanged());
    face->GetTagList() = {8};
    EXPECT_FALSE(m_Connection.IsModelUnchanged());
    face->GetTagList() = {7};
    EXPECT_TRUE(m_Connection.IsModelUnchanged());
    m_Solid.GetFaceList().push_back(m_Stage.GetElements().CreateFace());
    EXPECT_FALSE(m_Connection.IsModelUnchanged());
    m_Stage.GetElements().Clear();
    EXPECT_FALSE(m_Connection.IsModelUnchanged());
}

TEST_F(ConnectionTest, KnowsWhetherItsModelIsWhereItWas)
{
    AddFeet(0, Wheel());
    Seed();
    smVec3d& position = m_Solid.GetVertexList()[3]->GetPosition();
    const smVec3d before = position;
    position.z += 1e-5;
    EXPECT_FALSE(m_Connection.IsModelUnchanged());
    position = smVec3d(std::nan(""), 0, 0);
    EXPECT_FALSE(m_Connection.IsModelUnchanged());
    position = before + smVec3d(2e-7, 0, -2e-7); // twice the single precision's step below 1
    EXPECT_TRUE(m_Connection.IsModelUnchanged());
    m_Solid.GetVertexList().push_back(m_Stage.GetElements().CreateVertex());
    EXPECT_FALSE(m_Connection.IsModelUnchanged());
}

TEST_F(ConnectionTest, WritesItsEnvironmentWithSignedIdsAndWholeNumbers)
{
    AddFeet(0, {{0, 0, 0}, {0.1, 0, 0}, {0, 0.125, 0}, {1.75, -2.5, 3e300}});
    Seed();
    m_Stage.GetFolder().Write("data/box.txta", "");
    m_Connection.SaveEnvironment({false, true, false, false});
    // Solid 1, face 5 and edges 6 to 8 of the stores: the model has one solid, four faces and six edges before them.
    const auto id = [](std::uint32_t kind, std::uint32_t index)
    { return std::to_string(static_cast<std::int32_t>(kind | index)) + "\n"; };
    const std::string face0 = id(0xC0000000, 0);
    std::string edges;
    for (const DSEdge* edge : m_Connection.GetFrontEdges())
    {
        edges += std::to_string(static_cast<std::int32_t>(edge->GetID())) + "\n";
    }
    EXPECT_EQ(m_Stage.GetFolder().Read("data/SmoothEnvionment.data"),
              id(0xE0000000, 1) + id(0xC0000000, 5) + "3\n" + edges + "1\n" + face0 +
                  "4\n0 0 0\n0 0 0\n0 0 0\n1 -2 2147483647\n" + "4\n4\n5\n6\n-1\n" + "4\n" + face0 + face0 +
                  face0 + face0 + "4\n0\n1\n0\n0\n");
}

TEST_F(ConnectionTest, FailsToWriteItsEnvironmentWithoutTheFolder)
{
    AddFeet(0, Wheel());
    Seed();
    EXPECT_THAT(GetRefusal([this] { m_Connection.SaveEnvironment({}); }),
                HasSubstr("data/SmoothEnvionment.data"));
}
}
}
