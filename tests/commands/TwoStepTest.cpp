#include "Angles.h"
#include "FootSearch.h"
#include "LinksHold.h"
#include "RandomMeshes.h"
#include "RecordDump.h"
#include "TriangleSurgery.h"
#include "TwoStepStage.h"
#include "Vectors.h"
#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <set>

namespace tessarine
{
namespace
{
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;

class TwoStep : public TwoStepStage
{
protected:
    void RunOnSphere(const IndexedMesh& mesh, std::size_t points)
    {
        Show(mesh);
        m_Cloud = m_Stage.WriteCloud(kBunnyCloud, SphereCloud(points, 1));
        m_Command.Execute();
    }

    /// That owners and points are each other's inverse, and the vertices stand on their points.
    void ExpectPairs()
    {
        const PointPairs& pairs = m_Command.GetPairs();
        std::size_t paired = 0;
        for (const auto& [id, point] : pairs.m_VertexPoint)
        {
            if (point >= 0)
            {
                ++paired;
                const DSVertex* vertex = m_Stage.GetElements().GetVertexArray()[id];
                ASSERT_NE(vertex, nullptr);
                EXPECT_EQ(vertex->GetPosition(), m_Cloud[static_cast<std::size_t>(point)]);
                EXPECT_EQ(OwnerOf(static_cast<std::size_t>(point)), static_cast<std::int32_t>(id));
            }
        }
        EXPECT_EQ(paired + CountFree(), m_Cloud.size());
    }

    std::vector<smVec3d> GetPositions() const
    {
        std::vector<smVec3d> positions;
        for (const DSVertex* vertex : m_Solid->GetVertexList())
        {
            positions.push_back(vertex->GetPosition());
        }
        return positions;
    }
};

TEST_F(TwoStep, PairsEachVertexWithAPointOfItsOwn)
{
    RunOnSphere(Sphere(2), 400);
    EXPECT_EQ(m_Solid->GetVertexList().size(), 66U);
    EXPECT_EQ(CountFree(), 400U - 66U);
    ExpectPairs();
    EXPECT_TRUE(LinksHold(*m_Solid));
    EXPECT_THAT(m_Console.GetText(), testing::StartsWith("点云大小: 400\n\nPoints Cloud ANN Init is OK\n"));
    EXPECT_EQ(m_Console.GetLines().back(), "Refine init mesh ok...");
    EXPECT_EQ(m_Stage.GetView().GetPointCloud(), m_Cloud);
    EXPECT_EQ(m_Command.GetOldPositions().size(), 66U);
    EXPECT_EQ(m_Command.GetStepCount(), 0);
}

TEST_F(TwoStep, ShowsWhereAVertexWasForItsPoint)
{
    RunOnSphere(Sphere(2), 400);
    const auto& projected = m_Stage.GetView().GetProjectedPoints();
    ASSERT_EQ(projected.size(), m_Cloud.size());
    std::size_t moved = 0;
    for (std::size_t i = 0; i < m_Cloud.size(); ++i)
    {
        if (OwnerOf(i) < 0)
        {
            EXPECT_EQ(projected[i], m_Cloud[i]);
        }
        else
        {
            // Ids are places: this is the first solid.
            EXPECT_EQ(projected[i], m_Command.GetOldPositions()[static_cast<std::size_t>(OwnerOf(i))]);
            moved += projected[i] == m_Cloud[i] ? 0 : 1;
        }
    }
    EXPECT_GT(moved, 0U);
}

TEST_F(TwoStep, BringsModelAndCloudIntoOneCube)
{
    Show(Placed(Sphere(2), 7.0, {20, 30, -40}));
    std::vector<smVec3d> points = SphereCloud(300, 2);
    for (smVec3d& p : points)
    {
        p = p * 0.25 + smVec3d(5, 5, 5);
    }
    m_Stage.WriteCloud(kBunnyCloud, points);
    m_Command.Execute();
    m_Cloud = m_Stage.GetView().GetPointCloud();
    EXPECT_EQ(m_Solid->GetVertexList().size(), 66U);
    ExpectPairs();
    for (const smVec3d& p : GetPositions())
    {
        EXPECT_NEAR(p.Length(), 1.0, 4e-6); // single precision at 5.25, four times as large in the cube
    }
}

TEST_F(TwoStep, AccumulatesVertexNormalsOverItsTwoPasses)
{
    // The first pass adds the face normals to zero, the second one to the unit vector that came of it.
    RunOnOwnCorners(CentredTetrahedron());
    MANBrepElementManager elements;
    DSSolid* other = LoadQuietly(elements, CentredTetrahedron());
    other->CalcNormals();
    other->CalcNormals();
    for (std::size_t i = 0; i < 4; ++i)
    {
        EXPECT_EQ(m_Solid->GetVertexList()[i]->GetNormal(), other->GetVertexList()[i]->GetNormal());
    }
}

TEST_F(TwoStep, RemovesAVertexWhosePointsAreAllTaken)
{
    const MessageCapture messages;
    RunOnSphere(Sphere(1), 12); // 18 vertices
    EXPECT_LE(m_Solid->GetVertexList().size(), 12U);
    EXPECT_TRUE(LinksHold(*m_Solid));
    EXPECT_EQ(EulerCharacteristic(*m_Solid), 2);
    ExpectPairs();
    const std::size_t removed = 18 - m_Solid->GetVertexList().size();
    EXPECT_EQ(m_Console.Count("There still exsits error points..."), static_cast<int>(removed));
    EXPECT_EQ(m_Console.Count("One edge clipped.."), static_cast<int>(removed));
    // Each entry of a vertex that is gone stays, and gives a box in both passes.
    EXPECT_EQ(m_Command.GetPairs().m_VertexPoint.size(), 18U);
    EXPECT_EQ(messages.GetTexts(), std::vector<std::string>(2 * removed, "The vertex doesnot exsit!"));
}

TEST_F(TwoStep, DoesNotLookAtPointsThatAreTaken)
{
    // A sphere on its own corners, and one vertex more in the middle of a face: no point is left for that.
    Show(Sphere(1));
    TriangleSurgery(&m_Stage.GetElements()).SplitFace(*m_Solid->GetFaceList()[4], {0.4, 0.4, 0.4});
    std::vector<smVec3d> corners = GetPositions();
    corners.resize(18);
    m_Cloud = m_Stage.WriteCloud(kBunnyCloud, corners);
    // Only the sixteen nearest are asked for, and all of them belong to vertices before it.
    m_Command.Execute();
    EXPECT_EQ(m_Console.Count("Find topology error..."), 0);
    EXPECT_EQ(m_Console.Count("There still exsits error points..."), 1);
    EXPECT_EQ(m_Solid->GetVertexList().size(), 18U);
    EXPECT_EQ(m_Solid->GetFaceList().size(), 32U);
    EXPECT_TRUE(LinksHold(*m_Solid));
}

TEST_F(TwoStep, EndsWithAFailureWhereTheMeshWouldLoseItsLastFaces)
{
    Show(Sphere(2));
    m_Stage.WriteCloud(kBunnyCloud, {{1, 0, 0}, {-1, 0, 0}});
    EXPECT_THAT(RefusalOfRun(), HasSubstr("the cloud has too few points near this mesh"));
}

TEST_F(TwoStep, TakesCloudsOfAnyNumberOfPoints)
{
    for (std::size_t count = 2; count <= 20; ++count)
    {
        FitStage stage;
        const DSSolid& solid = stage.Load(Sphere(1));
        std::vector<smVec3d> points = SphereCloud(20, 3);
        points.resize(count);
        stage.WriteCloud(kBunnyCloud, points);
        IAReconstructionSmoothTwoStepCommand command;
        stage.Equip(command);
        const std::string refusal = GetRefusal([&] { command.Execute(); });
        EXPECT_TRUE(refusal.empty() || refusal.find("too few points") != std::string::npos) << refusal;
        EXPECT_TRUE(LinksHold(solid)) << count;
    }
}

TEST_F(TwoStep, GivesOneOfEqualPointsToEachVertex)
{
    std::vector<smVec3d> points = SphereCloud(200, 4);
    const std::size_t half = points.size();
    for (std::size_t i = 0; i < half; ++i)
    {
        const smVec3d p = points[i];
        points.push_back(p);
    }
    Show(Sphere(2));
    m_Cloud = m_Stage.WriteCloud(kBunnyCloud, points);
    m_Command.Execute();
    ExpectPairs();
    EXPECT_TRUE(LinksHold(*m_Solid));
}

TEST_F(TwoStep, RefusesACloudThatCannotBe)
{
    Show(Sphere(1));
    const std::pair<const char*, const char*> files[] = {
        {"-1\n", "line 1: the number of points is -1"},
        {"2000000000\n0 0 0\n", "the number of points is 2000000000"},
        {"2\n0 0 0\n1 nan 0\n", "line 3: a point's y is not finite"},
        {"0\n", "holds no points"},
        {"1\n1 2 3\n", "are at one place"},
    };
    for (const auto& [text, reason] : files)
    {
        m_Stage.GetFolder().Write(kBunnyCloud, text);
        EXPECT_THAT(RefusalOfRun(), HasSubstr(reason));
    }
}

TEST_F(TwoStep, ReportsAMissingCloudAsAnAssertion)
{
    Show(Sphere(1));
    const AssertionCapture assertions;
    EXPECT_THAT(RefusalOfRun(), HasSubstr("cannot open Data/bunny.txta"));
#if TESSARINE_ASSERTIONS
    EXPECT_EQ(assertions.GetPaths().size(), 1U);
#endif
}

TEST_F(TwoStep, RefusesAllButClosedModelsOfTriangles)
{
    EXPECT_THAT(RefusalOfRun(), HasSubstr("there is no model"));
    ExpectRefusals<IAReconstructionSmoothTwoStepCommand>(kBunnyCloud, AllButClosedTriangles());
}

TEST_F(TwoStep, LeavesVerticesWithoutFaces)
{
    IndexedMesh mesh = Sphere(1);
    mesh.positions.emplace_back(0.9, 0.9, 0.9);
    RunOnSphere(mesh, 100);
    EXPECT_EQ(m_Solid->GetVertexList()[18]->GetPosition(), smVec3d(static_cast<float>(0.9), 0.9F, 0.9F));
    EXPECT_EQ(m_Command.GetPairs().FindPoint(18), PointPairs::kNone);
    const MessageCapture messages;
    m_Command.Step();
    // Such a vertex counts, and has no angles.
    EXPECT_THAT(messages.GetTexts(), testing::Contains("After sub Self Intersection!"));
}

TEST_F(TwoStep, IsRefusedWhereTwoBodiesShareAVertex)
{
    Show(JoinInFirstCorner(Sphere(1), Placed(Sphere(1), 1.0, {2, 0, 0})));
    m_Stage.WriteCloud(kBunnyCloud, {{0, -1, -1}, {0, 1, 1}});
    EXPECT_THAT(RefusalOfRun(), HasSubstr("each vertex has one ring of faces"));
    EXPECT_EQ(m_Console.Count("One edge clipped.."), 0);
}

TEST_F(TwoStep, EndsWithAFailureWhereTheEdgeOfAVertexLeadsBackToIt)
{
    // Two faces that name the first vertex twice, each with a corner of its own.
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(0, 1, 0)};
    mesh.AddFace({1, 1, 2});
    mesh.AddFace({1, 1, 3});
    const AssertionCapture assertions; // they have no normals
    Show(mesh);
    DSVertex& vertex = *m_Solid->GetVertexList()[0];
    vertex.GetHalfEdge() = m_Solid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge();
    ASSERT_EQ(vertex.GetHalfEdge()->GetNext()->GetVertex(), &vertex);
    m_Stage.WriteCloud(kBunnyCloud, {{0, -1, -1}, {0, 1, 1}});
    EXPECT_EQ(RefusalOfRun(), kTooFewPoints);
    // As often as there are half-edges.
    EXPECT_EQ(m_Console.Count("CollapseEdge error !!! "), 6);
}

TEST_F(TwoStep, RefusesModelsThatCannotBeBroughtIntoTheCube)
{
    const IndexedMesh models[] = {Placed(Sphere(1), 0.0, {1, 2, 3}), Placed(Sphere(1), 1e-310, {0, 0, 0}),
                                  Placed(Sphere(1), 1e300, {0, 0, 0})};
    const char* const reasons[] = {"all vertices of the model are at one place", "too large or too small",
                                   "too large or too small"};
    for (std::size_t i = 0; i < std::size(models); ++i)
    {
        FitStage stage;
        const AssertionCapture assertions; // faces without area
        stage.Load(models[i]);
        stage.WriteCloud(kBunnyCloud, SphereCloud(100, 1));
        IAReconstructionSmoothTwoStepCommand command;
        stage.Equip(command);
        const std::string before = DumpRecords(stage.GetElements());
        EXPECT_THAT(GetRefusal([&command] { command.Execute(); }), HasSubstr(reasons[i]));
        EXPECT_EQ(DumpRecords(stage.GetElements()), before);
    }
}

TEST_F(TwoStep, BringsPointsIntoTheMeshStepByStep)
{
    RunOnSphere(Sphere(2), 600);
    std::size_t free = CountFree();
    for (int step = 1; step <= 4; ++step)
    {
        const std::size_t faces = m_Solid->GetFaceList().size();
        const std::size_t vertices = m_Solid->GetVertexList().size();
        m_Command.Step();
        EXPECT_LT(CountFree(), free);
        EXPECT_LE(free - CountFree(), faces) << "one point at most per face";
        EXPECT_EQ(m_Solid->GetVertexList().size() - vertices, free - CountFree());
        free = CountFree();
        EXPECT_EQ(m_Command.GetStepCount(), step);
        EXPECT_TRUE(LinksHold(*m_Solid));
        EXPECT_EQ(EulerCharacteristic(*m_Solid), 2);
        EXPECT_TRUE(IsAngleSumOfSphere(*m_Solid, SumCornerAngles(*m_Solid)));
        ExpectPairs();
    }
}

TEST_F(TwoStep, ShowsHowLongItsThreeStagesTook)
{
    /// A clock that goes on by 1.234 s whenever it is read.
    class SlowPlatform : public HeadlessPlatform
    {
    public:
        SlowPlatform() : m_pBefore(SetPlatform(this)) {}
        ~SlowPlatform() override { SetPlatform(m_pBefore); }
        std::uint64_t GetTickCount() override { return m_nTicks += 1234; }

    private:
        Platform* m_pBefore;
        std::uint64_t m_nTicks = 0;
    };
    RunOnSphere(Sphere(1), 60);
    const SlowPlatform platform;
    m_Command.Step();
    std::vector<std::string> texts;
    for (const auto& message : platform.GetMessages())
    {
        texts.push_back(message.text);
    }
    EXPECT_EQ(texts, std::vector<std::string>(3, "1.23"));
}

TEST_F(TwoStep, DoesNothingMoreWithoutFreePoints)
{
    RunOnOwnCorners(Sphere(1));
    ASSERT_EQ(CountFree(), 0U);
    const std::vector<smVec3d> before = GetPositions();
    const MessageCapture messages;
    m_Command.Step();
    m_Command.Step();
    EXPECT_EQ(GetPositions(), before);
    EXPECT_EQ(m_Solid->GetFaceList().size(), 32U);
    EXPECT_EQ(messages.GetTexts().size(), 6U);
    EXPECT_THAT(messages.GetTexts(), testing::Each(MatchesRegex("[0-9]+\\.[0-9][0-9]")));
    EXPECT_EQ(m_Console.Count("There are 0points cannot find projection point.."), 2);
}

TEST_F(TwoStep, TellsWhereTheAnglesAreNoSpheres)
{
    // A torus: its angles add up to 2 pi a vertex.
    const MessageCapture messages;
    RunOnOwnCorners(Torus(9, 7));
    m_Command.Step();
    EXPECT_THAT(messages.GetTexts(), testing::Contains("After sub Self Intersection!"));
    EXPECT_THAT(messages.GetTexts(), testing::Contains("After update Self Intersection!"));
}

/// The octahedron, whose corners are those of the cube's faces.
struct EdgeOfOctahedron
{
    explicit EdgeOfOctahedron(const DSSolid& solid)
    {
        DSHalfEdge* h1 = solid.GetEdgeList()[5]->GetHalfEdge1();
        DSHalfEdge* h2 = solid.GetEdgeList()[5]->GetHalfEdge2();
        const bool inOrder = h1->GetLoop()->GetFace()->GetID() < h2->GetLoop()->GetFace()->GetID();
        first = inOrder ? h1 : h2;
        second = inOrder ? h2 : h1;
    }
    static smVec3d NormalAt(const DSHalfEdge* h) { return h->GetLoop()->GetFace()->ComputeNormal(); }
    smVec3d At(double share) const
    {
        return first->GetVertex()->GetPosition() * (1 - share) + second->GetVertex()->GetPosition() * share;
    }

    DSHalfEdge* first;
    DSHalfEdge* second;
};

TEST_F(TwoStep, LeavesTheFaceAcrossForTheNextStepWhereAFootLiesOnAnEdge)
{
    MANBrepElementManager elements;
    const EdgeOfOctahedron plan(*LoadQuietly(elements, Sphere(0)));
    const smVec3d onEdge = plan.At(0.4) + EdgeOfOctahedron::NormalAt(plan.first) * 0.1;
    const smVec3d across =
        plan.second->GetLoop()->GetFace()->CalcCentroid() + EdgeOfOctahedron::NormalAt(plan.second) * 0.1;
    RunOnOwnCorners(Sphere(0), {onEdge, across});
    ASSERT_EQ(CountFree(), 2U);
    m_Command.Step();
    EXPECT_GE(OwnerOf(6), 0);
    EXPECT_EQ(OwnerOf(7), -1);
    EXPECT_EQ(m_Console.Count("Edge collapse ok..."), 1);
    EXPECT_EQ(m_Solid->GetFaceList().size(), 10U);
    m_Command.Step();
    EXPECT_GE(OwnerOf(7), 0);
    EXPECT_EQ(m_Solid->GetVertexList().size(), 8U);
    EXPECT_TRUE(LinksHold(*m_Solid));
}

TEST_F(TwoStep, SplitsTheSecondEdgeForAFootInTheSecondCorner)
{
    // The shares are 0, 1, 0: the first one is looked at first, and stands for the edge behind the second corner.
    MANBrepElementManager elements;
    const DSFace& face = *LoadQuietly(elements, Sphere(1))->GetFaceList()[0];
    const DSHalfEdge* h0 = face.GetLoopList()[0]->GetHalfEdge();
    const DSVertex* second = h0->GetNext()->GetVertex();
    const DSVertex* third = h0->GetPrev()->GetVertex();
    const AssertionCapture assertions; // an edge without length has no direction
    RunOnOwnCorners(Sphere(1), {second->GetPosition() + face.ComputeNormal() * 0.1});
    ASSERT_EQ(CountFree(), 1U);
    m_Command.Step();
    ASSERT_GE(OwnerOf(18), 0);
    const auto id = static_cast<std::uint32_t>(OwnerOf(18));
    EXPECT_EQ(m_Console.Count("Edge collapse ok..."), 1);
    EXPECT_EQ(m_Stage.GetElements().GetVertex(id)->GetValence(), 4);
    EXPECT_NE(m_Stage.GetElements().FindEdge(id, second->GetID()), nullptr);
    EXPECT_NE(m_Stage.GetElements().FindEdge(id, third->GetID()), nullptr);
    EXPECT_EQ(m_Stage.GetElements().FindEdge(second->GetID(), third->GetID()), nullptr);
    EXPECT_TRUE(LinksHold(*m_Solid));
}

TEST_F(TwoStep, PutsTheVerticesBackAndOnTheirPointsAgain)
{
    RunOnSphere(Sphere(2), 300);
    const std::vector<smVec3d> onPoints = GetPositions();
    const std::vector<smVec3d> before = m_Command.GetOldPositions();
    m_Command.Restore();
    EXPECT_EQ(GetPositions(), before); // no vertex was removed, and ids are places
    m_Command.Update();
    EXPECT_EQ(GetPositions(), onPoints);
    m_Command.Update();
    m_Command.Restore();
    EXPECT_EQ(GetPositions(), onPoints) << "the second move found them where they are";
}

TEST_F(TwoStep, PutsNewVerticesBackToTheirFeet)
{
    RunOnSphere(Sphere(1), 100);
    const std::vector<smVec3d> before = GetPositions();
    FootSearch search(*m_Solid, kTwoStepFeet);
    std::vector<std::optional<Foot>> feet;
    for (const smVec3d& point : m_Cloud)
    {
        feet.push_back(search.Find(point));
    }
    m_Command.Step();
    m_Command.Restore();
    const std::vector<smVec3d> after = GetPositions();
    ASSERT_GT(after.size(), before.size());
    EXPECT_TRUE(std::equal(before.begin(), before.end(), after.begin()));
    for (std::size_t i = before.size(); i < after.size(); ++i)
    {
        const std::int32_t point = m_Command.GetPairs().FindPoint(m_Solid->GetVertexList()[i]->GetID());
        ASSERT_GE(point, 0);
        const std::optional<Foot>& foot = feet[static_cast<std::size_t>(point)];
        ASSERT_TRUE(foot);
        EXPECT_EQ(after[i], foot->point);
        EXPECT_GT((after[i] - m_Cloud[static_cast<std::size_t>(point)]).Length(), 1e-6)
            << "on a chord of the sphere";
    }
}

TEST_F(TwoStep, CannotPutBackOnceVerticesWereRemoved)
{
    RunOnSphere(Sphere(1), 12);
    ASSERT_LT(m_Solid->GetVertexList().size(), 18U);
    EXPECT_THAT(GetRefusal([this] { m_Command.Restore(); }), HasSubstr("the vertices cannot be put back"));
}

TEST_F(TwoStep, RefusesAStepOnAModelThatIsNoLongerClosed)
{
    RunOnSphere(Sphere(1), 100);
    m_Solid->GetEdgeList()[0]->GetHalfEdge2() = nullptr;
    EXPECT_THAT(GetRefusal([this] { m_Command.Step(); }), HasSubstr("a closed model only"));
}

TEST_F(TwoStep, SizesTheFeetToItsCloudBeforeAStep)
{
    RunOnSphere(Sphere(1), 100);
    m_Stage.GetView().GetPointCloud().resize(3); // another fit has come in between
    m_Stage.GetView().GetProjectedPoints().resize(3);
    m_Command.Step();
    EXPECT_EQ(m_Stage.GetView().GetPointCloud(), m_Cloud);
    EXPECT_EQ(m_Stage.GetView().GetProjectedPoints().size(), m_Cloud.size());
}

TEST_F(TwoStep, TakesItsStateBack)
{
    RunOnSphere(Sphere(1), 100);
    auto before = m_Command.SaveState();
    m_Command.Step();
    EXPECT_NE(m_Command.GetPairs().m_VertexPoint, before.pairs.m_VertexPoint);
    const auto points = before.pairs.m_VertexPoint;
    const auto owners = before.pairs.m_PointOwner;
    m_Command.RestoreState(std::move(before));
    EXPECT_EQ(m_Command.GetPairs().m_VertexPoint, points);
    EXPECT_EQ(m_Command.GetPairs().m_PointOwner, owners);
    EXPECT_EQ(m_Command.GetOldPositions().size(), 18U);
    EXPECT_EQ(m_Command.GetStepCount(), 0);
}

TEST_F(TwoStep, EndsInTimeWhereEverythingIsJoined)
{
    // Far more vertices than points: row by row each joins the next, whose edges get more and more.
    Show(Torus(60, 60));
    m_Stage.WriteCloud(kBunnyCloud, SphereCloud(40, 5));
    const std::string refusal = RefusalOfRun();
    EXPECT_TRUE(refusal.empty() || refusal.find("too few points") != std::string::npos) << refusal;
}
}
}
