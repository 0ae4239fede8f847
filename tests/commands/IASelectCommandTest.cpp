#include "IASelectCommand.h"
#include "FaceRuns.h"
#include "PickStage.h"
#include "Vectors.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::IsEmpty;

/// The id of an element by its index.
constexpr std::uint32_t FaceID(std::uint32_t index)
{
    return ElementKind::Face | index;
}
constexpr std::uint32_t SolidID(std::uint32_t index)
{
    return ElementKind::Solid | index;
}

class SelectCommand : public testing::Test
{
protected:
    SelectCommand()
    {
        m_Command.SetCamera(&m_Stage.m_Camera);
        m_Command.SetScene(&m_Stage.m_Scene);
    }

    void Pick(std::uint32_t kind, int x = 50, int y = 50)
    {
        m_Command.SetKind(kind);
        m_Command.SetMouse(x, y);
        m_Command.Execute();
    }

    void ExpectHit(std::uint32_t id) const
    {
        EXPECT_TRUE(m_Command.HasHit());
        EXPECT_EQ(m_Command.GetElementID(), id);
    }
    void ExpectNoHit() const
    {
        EXPECT_FALSE(m_Command.HasHit());
        EXPECT_EQ(m_Command.GetElementID(), 0U);
    }

    /// The ends of the edge that was found, by their ids.
    std::pair<std::uint32_t, std::uint32_t> FoundEnds() const
    {
        const DSHalfEdge* half = m_Stage.m_Elements.GetEdge(m_Command.GetElementID())->GetHalfEdge1();
        return std::minmax(half->GetVertex()->GetID(), half->GetNext()->GetVertex()->GetID());
    }

    PickStage m_Stage;
    AssertionCapture m_Assertions;
    IASelectCommand m_Command;
};

TEST_F(SelectCommand, IsNoCommandOfTheHistory)
{
    EXPECT_FALSE(m_Command.IsUndoable());
}

TEST_F(SelectCommand, FindsNothingInAnEmptyScene)
{
    for (const std::uint32_t kind :
         {ElementKind::Vertex, ElementKind::Edge, ElementKind::Face, ElementKind::Solid})
    {
        Pick(kind);
        ExpectNoHit();
    }
}

TEST_F(SelectCommand, FindsTheFaceTowardsTheEye)
{
    m_Stage.Show(CentredCube());
    Pick(ElementKind::Face);
    ExpectHit(FaceID(1));
}

TEST_F(SelectCommand, FindsNothingBesideTheModel)
{
    m_Stage.Show(CentredCube());
    // The front is 4.5 away, where a pixel is 0.0373 wide: it ends 13.4 pixels from the middle.
    Pick(ElementKind::Face, 63, 50);
    ExpectHit(FaceID(1));
    Pick(ElementKind::Face, 64, 50);
    ExpectNoHit();
    Pick(ElementKind::Solid, 50, 64);
    ExpectNoHit();
}

TEST_F(SelectCommand, FindsTheSolidOfTheFace)
{
    m_Stage.Show(Placed(CentredCube(), 1.0, smVec3d(3, 0, 0)));
    m_Stage.Show(CentredCube());
    Pick(ElementKind::Solid);
    ExpectHit(SolidID(1));
    Pick(0x12345678); // any other kind
    ExpectHit(SolidID(1));
}

TEST_F(SelectCommand, FindsTheVertexNearestToTheRay)
{
    m_Stage.Show(CentredCube());
    Pick(ElementKind::Vertex, 55, 46); // y down: the corner to the right and above, x and y and z at most
    ExpectHit(7);
    Pick(ElementKind::Vertex, 45, 54);
    ExpectHit(4);
}

TEST_F(SelectCommand, FindsTheEdgeNearestToTheRay)
{
    m_Stage.Show(CentredCube());
    Pick(ElementKind::Edge, 60, 51);
    ASSERT_TRUE(m_Command.HasHit());
    EXPECT_EQ(FoundEnds(), std::make_pair(5U, 7U)); // the right one
    Pick(ElementKind::Edge, 49, 60);
    EXPECT_EQ(FoundEnds(), std::make_pair(4U, 5U)); // the lower one
}

TEST_F(SelectCommand, TakesNoFaceFromBehind)
{
    m_Stage.Show(SquareAt(0));
    Pick(ElementKind::Face);
    ExpectHit(FaceID(0));
    m_Stage.m_Camera.SetLookAt({0, 0, -5}, {0, 0, 0}, {0, 1, 0});
    Pick(ElementKind::Face);
    ExpectNoHit();
}

TEST_F(SelectCommand, TakesTheNearestFaceOfASolid)
{
    IndexedMesh mesh = SquareAt(0);
    const IndexedMesh nearer = SquareAt(1);
    mesh.positions.insert(mesh.positions.end(), nearer.positions.begin(), nearer.positions.end());
    mesh.AddFace({5, 6, 7, 8});
    mesh.AddFace({1, 2, 3, 4}); // at the depth of the first
    m_Stage.Show(mesh);
    Pick(ElementKind::Face);
    ExpectHit(FaceID(1));
}

TEST_F(SelectCommand, LetsTheFaceBehindTheEyeWin)
{
    IndexedMesh mesh = SquareAt(0);
    const IndexedMesh behind = SquareAt(10);
    mesh.positions.insert(mesh.positions.end(), behind.positions.begin(), behind.positions.end());
    mesh.AddFace({5, 6, 7, 8});
    m_Stage.Show(mesh);
    Pick(ElementKind::Face);
    ExpectHit(FaceID(1));
}

TEST_F(SelectCommand, LetsALaterSolidReplaceANearerHit)
{
    m_Stage.Show(SquareAt(1));
    m_Stage.Show(SquareAt(0));
    Pick(ElementKind::Face);
    ExpectHit(FaceID(1));
}

TEST_F(SelectCommand, KeepsTheHitOfAnEarlierSolidWhereALaterOneHasNone)
{
    m_Stage.Show(SquareAt(1));
    m_Stage.Show(Placed(SquareAt(0), 1.0, smVec3d(5, 0, 0)));
    Pick(ElementKind::Solid);
    ExpectHit(SolidID(0));
}

TEST_F(SelectCommand, CountsAFaceBeyondTheFarPlaneAsNoHit)
{
    m_Stage.Show(SquareAt(0)); // 5 away
    m_Stage.m_Camera.SetFar(5.0F);
    for (const std::uint32_t kind :
         {ElementKind::Vertex, ElementKind::Edge, ElementKind::Face, ElementKind::Solid})
    {
        Pick(kind);
        ExpectNoHit();
    }
    m_Stage.m_Camera.SetFar(5.1F);
    Pick(ElementKind::Face);
    ExpectHit(FaceID(0));
}

TEST_F(SelectCommand, MissesTheFacesThatHaveACornerOnTheRayAndReportsNothing)
{
    m_Stage.Show(ClosedFan(6)); // its middle on the axis
    Pick(ElementKind::Face);
    ExpectNoHit();
    EXPECT_THAT(m_Assertions.GetExpressions(), IsEmpty());
    Pick(ElementKind::Face, 52, 49);
    EXPECT_TRUE(m_Command.HasHit());
}

// A pixel is 0.0414 wide at depth 5: the square ends 24 pixels from the middle, its hole 6 pixels.
TEST_F(SelectCommand, SumsTheAnglesFromLoopToLoopAndLooksBehindEach)
{
    m_Stage.JoinFaces(*m_Stage.Show(SquareAndHole()), FaceID(0), FaceID(1));
    Pick(ElementKind::Face, 65, 50);
    ExpectHit(FaceID(0));
    Pick(ElementKind::Face); // a whole turn behind the first loop; the hole takes it back too late
    ExpectHit(FaceID(0));
    Pick(ElementKind::Face, 75, 50);
    ExpectNoHit();
}

TEST_F(SelectCommand, SeesThroughAHoleThatIsTheFirstLoop)
{
    m_Stage.JoinFaces(*m_Stage.Show(SquareAndHole()), FaceID(1), FaceID(0));
    Pick(ElementKind::Face); // a turn back, then one forth: none
    ExpectNoHit();
    Pick(ElementKind::Face, 65, 50);
    ExpectHit(FaceID(1));
}

TEST_F(SelectCommand, FindsVerticesAndEdgesOfAllLoops)
{
    m_Stage.JoinFaces(*m_Stage.Show(SquareAndHole()), FaceID(0), FaceID(1));
    Pick(ElementKind::Vertex, 53, 47);
    ExpectHit(6); // of the hole, up right
    Pick(ElementKind::Vertex, 68, 32);
    ExpectHit(2); // of the square, up right
    Pick(ElementKind::Edge, 59, 50);
    EXPECT_EQ(FoundEnds(), std::make_pair(5U, 6U));
    Pick(ElementKind::Edge, 70, 50);
    EXPECT_EQ(FoundEnds(), std::make_pair(1U, 2U));
}

TEST_F(SelectCommand, FindsNoVertexFurtherThanAHundredThousandFromTheRay)
{
    m_Stage.Show(Placed(SquareAt(0), 70710, smVec3d())); // times the root of 2: corners 99999 away
    Pick(ElementKind::Vertex);
    EXPECT_TRUE(m_Command.HasHit());
    m_Stage.Show(Placed(SquareAt(0), 70712, smVec3d())); // 100002 away
    Pick(ElementKind::Vertex);
    ExpectNoHit();
    Pick(ElementKind::Face);
    ExpectHit(FaceID(1));
}

TEST_F(SelectCommand, FindsNoEdgeFurtherThanAHundredThousandFromTheRay)
{
    m_Stage.Show(Placed(SquareAt(0), 99999, smVec3d()));
    Pick(ElementKind::Edge);
    EXPECT_TRUE(m_Command.HasHit());
    m_Stage.Show(Placed(SquareAt(0), 100001, smVec3d()));
    Pick(ElementKind::Edge);
    ExpectNoHit();
    Pick(ElementKind::Face);
    ExpectHit(FaceID(1));
}

TEST_F(SelectCommand, PassesOverWhatIsNotVisible)
{
    MANSceneGroup* group = m_Stage.m_Scene.NewGroup();
    group->SetParent(m_Stage.m_Scene.GetRootGroup());
    m_Stage.m_Scene.GetRootGroup()->AddChild(group);
    DSSolid* solid = m_Stage.ShowBelow(*group, SquareAt(0));
    Pick(ElementKind::Face);
    ExpectHit(FaceID(0));

    group->SetVisible(false);
    Pick(ElementKind::Face);
    ExpectNoHit();
    group->SetVisible(true);
    m_Stage.m_pLeaf->SetVisible(false);
    Pick(ElementKind::Face);
    ExpectNoHit();
    m_Stage.m_pLeaf->SetVisible(true);
    solid->SetVisible(false);
    Pick(ElementKind::Face);
    ExpectNoHit();
    solid->SetVisible(true);
    m_Stage.m_Scene.GetRootGroup()->SetVisible(false);
    Pick(ElementKind::Face);
    ExpectNoHit();
}

TEST_F(SelectCommand, ForgetsTheHitOfTheRunBefore)
{
    m_Stage.Show(SquareAt(0));
    Pick(ElementKind::Face);
    Pick(ElementKind::Face, 1, 1);
    ExpectNoHit();
}

TEST_F(SelectCommand, ComputesTheNormalOfAFaceThatItMeetsAfresh)
{
    const DSSolid* solid = m_Stage.Show(SquareAt(0));
    solid->GetFaceList()[0]->GetNormal() = smVec3d(1, 0, 0);
    Pick(ElementKind::Face);
    EXPECT_EQ(solid->GetFaceList()[0]->GetNormal(), smVec3d(0, 0, 1));
}

TEST_F(SelectCommand, FindsNothingInAViewWithoutArea)
{
    m_Stage.Show(SquareAt(0));
    m_Stage.m_Camera.SetSize(0, 0);
    Pick(ElementKind::Face, 0, 0);
    ExpectNoHit();
}

TEST_F(SelectCommand, MissesFacesWhoseCornersAreNoNumbers)
{
    const DSSolid* solid = m_Stage.Show(SquareAt(0));
    solid->GetVertexList()[2]->SetPosition(std::numeric_limits<double>::quiet_NaN(), 1, 0);
    Pick(ElementKind::Face);
    ExpectNoHit();
    solid->GetVertexList()[2]->SetPosition(std::numeric_limits<double>::infinity(), 1, 0);
    Pick(ElementKind::Face);
    ExpectNoHit();
}

TEST_F(SelectCommand, AssertsThatItHasACameraAndAScene)
{
    IASelectCommand bare;
    EXPECT_THROW(bare.Execute(), AssertionFailure);
    bare.SetCamera(&m_Stage.m_Camera);
    EXPECT_THROW(bare.Execute(), AssertionFailure);
}

TEST_F(SelectCommand, FindsTheSameByTheRunsOfFaces)
{
    m_Stage.Show(Sphere(5)); // 8192 faces, 64 runs
    FaceRuns runs;
    int hits = 0;
    for (int x = 0; x < 100; x += 3)
    {
        m_Command.SetFaceRuns(nullptr);
        Pick(ElementKind::Face, x, 41);
        const auto plain = std::make_pair(m_Command.HasHit(), m_Command.GetElementID());
        m_Command.SetFaceRuns(&runs);
        Pick(ElementKind::Face, x, 41);
        EXPECT_EQ(std::make_pair(m_Command.HasHit(), m_Command.GetElementID()), plain) << x;
        hits += plain.first ? 1 : 0;
    }
    EXPECT_GT(hits, 10);
    EXPECT_EQ(runs.Get(*m_Stage.m_Elements.GetSolid(SolidID(0))).size(), 64U);
}
}
}
