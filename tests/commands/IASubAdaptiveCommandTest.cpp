#include "IASubAdaptiveCommand.h"
#include "Capture.h"
#include "Failure.h"
#include "LinksHold.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "RecordDump.h"
#include <gmock/gmock.h>
#include <limits>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A scene whose first child has the mesh for a solid.
class AdaptiveSubdivision : public testing::Test
{
protected:
    void Show(const IndexedMesh& mesh) { m_Scene.AppendLeaf(LoadQuietly(m_Elements, mesh)); }

    /// Runs without an answer: the dialog is cancelled.
    void Run()
    {
        IASubAdaptiveCommand command;
        command.SetElementManager(&m_Elements);
        command.SetSceneManager(&m_Scene);
        command.SetClearModels(
            [this]
            {
                m_Scene.Clear();
                m_Elements.Clear();
            });
        command.Execute();
    }

    void Subdivide(float maxArea)
    {
        GetTestPlatform().AnswerAreaThreshold(maxArea);
        Run();
    }

    /// The text of the Failure that ends the command, which must leave everything as it was.
    std::string GetRefusal(float maxArea)
    {
        const std::string before = DumpRecords(m_Elements);
        try
        {
            Subdivide(maxArea);
        }
        catch (const Failure& failure)
        {
            EXPECT_EQ(DumpRecords(m_Elements), before);
            EXPECT_EQ(m_Scene.GetRootGroup()->GetChildren().size(), 1U);
            return failure.GetMessage();
        }
        return "";
    }

    const DSSolid& GetModel() const
    {
        return *static_cast<const MANSceneLeaf*>(m_Scene.GetRootGroup()->GetChildren().at(0))->GetSolid();
    }

    testing::AssertionResult IsVertexAt(std::size_t place, double x, double y, double z) const
    {
        const smVec3d& p = GetModel().GetVertexList()[place]->GetPosition();
        if (p.x == x && p.y == y && p.z == z)
        {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << p.x << ' ' << p.y << ' ' << p.z;
    }

    std::vector<std::uint32_t> CornersOfFace(std::size_t place) const
    {
        const DSHalfEdge* h = GetModel().GetFaceList()[place]->GetLoopList()[0]->GetHalfEdge();
        return {h->GetVertex()->GetID(), h->GetNext()->GetVertex()->GetID(),
                h->GetPrev()->GetVertex()->GetID()};
    }

    ConsoleCapture m_Console;
    MANBrepElementManager m_Elements;
    MANSceneManager m_Scene;
};

/// A double pyramid over a square: one vertex of the square far away, so that four of the eight faces are large.
IndexedMesh LopsidedOctahedron()
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 1),  smVec3d(16, 0, 0), smVec3d(0, 1, 0),
                      smVec3d(-1, 0, 0), smVec3d(0, -1, 0), smVec3d(0, 0, -1)};
    for (const auto& [a, b] : {std::pair(2, 3), std::pair(3, 4), std::pair(4, 5), std::pair(5, 2)})
    {
        mesh.AddFace({1, a, b});
        mesh.AddFace({6, b, a});
    }
    return mesh;
}

TEST_F(AdaptiveSubdivision, SplitsEveryFaceInFourAboveZero)
{
    Show(CentredTetrahedron());
    Subdivide(0.0F);
    EXPECT_EQ(GetModel().GetFaceList().size(), 16U);
    EXPECT_EQ(GetModel().GetVertexList().size(), 10U);
    // The neighbours of p sum to -p, and 7/16 - 3/16 = 1/4, as in a Loop step.
    EXPECT_TRUE(IsVertexAt(0, 0.25, 0.25, 0.25));
    // (3 (a + b) + (c + d)) / 8 with a + b = (2,0,0) and c + d = (-2,0,0).
    EXPECT_TRUE(IsVertexAt(4, 0.5, 0, 0));
    EXPECT_THAT(CornersOfFace(0), ElementsAre(0, 4, 6));
    EXPECT_THAT(CornersOfFace(3), ElementsAre(4, 5, 6)) << "the middle comes last";
    EXPECT_EQ(EulerCharacteristic(GetModel()), 2);
    EXPECT_TRUE(LinksHold(GetModel()));
}

TEST_F(AdaptiveSubdivision, LeavesFacesWithoutAreaAtZero)
{
    // Flat from the side: three corners on a line, twice.
    IndexedMesh mesh = DegenerateTriangle();
    mesh.AddFace({3, 2, 1});
    Show(mesh);
    const AssertionCapture zeroNormals;
    Subdivide(0.0F);
    EXPECT_EQ(GetModel().GetFaceList().size(), 2U);
    Subdivide(-1.0F);
    EXPECT_EQ(GetModel().GetFaceList().size(), 8U);
}

TEST_F(AdaptiveSubdivision, BuildsTheModelAnewWithTheSameShapeBelowTheThreshold)
{
    const IndexedMesh mesh = CentredTetrahedron();
    LoadQuietly(m_Elements, QuadCube());
    Show(mesh);
    ASSERT_EQ(GetModel().GetID(), 0xE0000001U);
    Subdivide(1e30F);
    EXPECT_EQ(GetModel().GetID(), 0xE0000000U);
    EXPECT_EQ(m_Elements.GetSolidArray().size(), 1U) << "nothing else is left";
    EXPECT_EQ(GetModel().GetFaceList().size(), 4U);
    for (std::size_t i = 0; i < 4; ++i)
    {
        EXPECT_TRUE(IsVertexAt(i, mesh.positions[i].x, mesh.positions[i].y, mesh.positions[i].z));
    }
}

TEST_F(AdaptiveSubdivision, ComparesTwiceTheAreaAndStrictly)
{
    // Right-angled sides of length 1: an area of a half.
    IndexedMesh mesh = SingleTriangle();
    mesh.AddFace({3, 2, 1});
    Show(mesh);
    Subdivide(1.0F);
    EXPECT_EQ(GetModel().GetFaceList().size(), 2U);
    Subdivide(std::nextafter(1.0F, 0.0F));
    EXPECT_EQ(GetModel().GetFaceList().size(), 8U);
}

TEST_F(AdaptiveSubdivision, SplitsTheSmallNeighbourOfALargeFaceInTwo)
{
    Show(LopsidedOctahedron());
    Subdivide(10.0F);
    // Four large faces in four each; the four small ones have one edge in common with a large one each.
    EXPECT_EQ(GetModel().GetFaceList().size(), 4U * 4 + 4 * 2);
    EXPECT_TRUE(LinksHold(GetModel()));
    EXPECT_EQ(EulerCharacteristic(GetModel()), 2);
}

TEST_F(AdaptiveSubdivision, MovesOnlyVerticesOnSplitEdges)
{
    Show(LopsidedOctahedron());
    Subdivide(10.0F);
    EXPECT_TRUE(IsVertexAt(3, -1, 0, 0)) << "none of its faces is large";
    // Valence 4: 5/8 p + 3/32 of the neighbours, which sum to (15, 0, 0).
    EXPECT_TRUE(IsVertexAt(0, 1.40625, 0, 0.625));
    EXPECT_TRUE(IsVertexAt(1, 10, 0, 0)) << "its neighbours sum to zero";
}

TEST_F(AdaptiveSubdivision, NumbersTheNewVerticesAsTheFacesMeetThem)
{
    Show(LopsidedOctahedron());
    Subdivide(10.0F);
    // The first face is 0 1 2: its middles are 6, 7 and 8.
    EXPECT_THAT(CornersOfFace(0), ElementsAre(0, 6, 8));
    EXPECT_THAT(CornersOfFace(1), ElementsAre(6, 1, 7));
    EXPECT_THAT(CornersOfFace(2), ElementsAre(7, 2, 8));
    EXPECT_THAT(CornersOfFace(3), ElementsAre(6, 7, 8));
}

TEST_F(AdaptiveSubdivision, SaysWhatBuildingAndCheckingSay)
{
    Show(CentredTetrahedron());
    Subdivide(0.0F);
    EXPECT_THAT(m_Console.GetLines(),
                ElementsAre("Number of halfedge: 48", "m_VertexList.SIZE(): 10", "m_FaceList.Size(): 16",
                            "m_EdgeList.Size(): 24", "total halfedge number: 48"));
}

TEST_F(AdaptiveSubdivision, PutsOneLeafUnderAFreshRoot)
{
    Show(CentredTetrahedron());
    Show(QuadCube());
    m_Scene.Reset();
    Show(CentredTetrahedron());
    ASSERT_EQ(m_Scene.GetRootGroup()->GetID(), 0xC0000001U);
    Subdivide(0.0F);
    EXPECT_EQ(m_Scene.GetRootGroup()->GetID(), 0xC0000000U);
    EXPECT_EQ(m_Scene.GetLeafList().size(), 1U);
    EXPECT_EQ(m_Scene.GetRootGroup()->GetChildren().at(0)->GetParent(), m_Scene.GetRootGroup());
    EXPECT_EQ(m_Scene.GetLightList().size(), 3U);
}

TEST_F(AdaptiveSubdivision, CarriesNeitherMaterialsNorTheSelection)
{
    Show(CentredTetrahedron());
    auto* pSolid = m_Elements.GetSolid(0xE0000000);
    pSolid->SetMaterial(m_Elements.GetMaterialManager().NewMaterial());
    m_Elements.ToggleSelect(0xE0000000);
    Subdivide(0.0F);
    EXPECT_EQ(GetModel().GetMaterial(), nullptr);
    EXPECT_EQ(GetModel().GetFaceList()[0]->GetMaterial(), nullptr);
    EXPECT_FALSE(GetModel().IsSelected());
    EXPECT_THAT(m_Elements.GetSelectList(), ElementsAre(0xE0000000U)) << "the list keeps its ids";
}

TEST_F(AdaptiveSubdivision, ComputesTheNormals)
{
    Show(CentredTetrahedron());
    Subdivide(0.0F);
    for (const DSFace* pFace : GetModel().GetFaceList())
    {
        EXPECT_NEAR(pFace->GetNormal().Length(), 1.0, 1e-12);
    }
    EXPECT_NEAR(GetModel().GetVertexList()[4]->GetNormal().Length(), 1.0, 1e-12);
}

TEST_F(AdaptiveSubdivision, ChangesNothingWhenTheDialogIsCancelled)
{
    Show(CentredTetrahedron());
    const std::string before = DumpRecords(m_Elements);
    const int asked = GetTestPlatform().CountThresholdQuestions();
    Run();
    EXPECT_EQ(GetTestPlatform().CountThresholdQuestions(), asked + 1);
    EXPECT_EQ(DumpRecords(m_Elements), before);
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(AdaptiveSubdivision, SaysNothingOfAModelThatItCannotTakeWhenTheDialogIsCancelled)
{
    Show(QuadCube());
    EXPECT_NO_THROW(Run());
}

TEST_F(AdaptiveSubdivision, AsksForNothingWithoutAModel)
{
    const int asked = GetTestPlatform().CountThresholdQuestions();
    EXPECT_THROW(Run(), Failure);
    EXPECT_EQ(GetTestPlatform().CountThresholdQuestions(), asked);
}

TEST_F(AdaptiveSubdivision, RefusesAThresholdThatIsNoNumber)
{
    Show(CentredTetrahedron());
    EXPECT_THAT(GetRefusal(std::numeric_limits<float>::quiet_NaN()), HasSubstr("not a number"));
}

TEST_F(AdaptiveSubdivision, TakesAThresholdBeyondAllAreas)
{
    Show(CentredTetrahedron());
    Subdivide(std::numeric_limits<float>::infinity());
    EXPECT_EQ(GetModel().GetFaceList().size(), 4U);
    Subdivide(-std::numeric_limits<float>::infinity());
    EXPECT_EQ(GetModel().GetFaceList().size(), 16U);
}

TEST_F(AdaptiveSubdivision, RefusesAnOpenModel)
{
    Show(SingleTriangle());
    EXPECT_THAT(GetRefusal(0.0F), HasSubstr("closed models only"));
    EXPECT_EQ(m_Console.GetText(), "") << "no walk comes to the border";
}

TEST_F(AdaptiveSubdivision, RefusesAThirdFaceOnAnEdge)
{
    // Two tetrahedra with an edge in common: every edge has two half-edges or more.
    IndexedMesh mesh = CentredTetrahedron();
    mesh.positions.emplace_back(5, 5, 5);
    mesh.positions.emplace_back(5, 5, -5);
    for (const auto& [a, b, c] :
         {std::tuple(1, 2, 5), std::tuple(2, 1, 6), std::tuple(1, 5, 6), std::tuple(2, 6, 5)})
    {
        mesh.AddFace({a, b, c});
    }
    Show(mesh);
    EXPECT_THAT(GetRefusal(0.0F), HasSubstr("more than two"));
}

TEST_F(AdaptiveSubdivision, RefusesFacesOfOtherThanThreeCorners)
{
    Show(QuadCube());
    EXPECT_THAT(GetRefusal(0.0F), HasSubstr("triangles only"));
}

TEST_F(AdaptiveSubdivision, RefusesAFaceOfOneCorner)
{
    IndexedMesh mesh = CentredTetrahedron();
    mesh.AddFace({2});
    Show(mesh);
    EXPECT_THAT(GetRefusal(0.0F), HasSubstr("triangles only"));
}

TEST_F(AdaptiveSubdivision, RefusesAFaceOfTwoCorners)
{
    IndexedMesh mesh; // closed: both sides lie along one edge
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(1, 0, 0)};
    mesh.AddFace({1, 2});
    Show(mesh);
    EXPECT_THAT(GetRefusal(0.0F), HasSubstr("triangles only"));
}

TEST_F(AdaptiveSubdivision, RefusesPositionsThatAreNotFinite)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.AddFace({3, 2, 1});
    mesh.positions[1].x = std::numeric_limits<double>::max(); // 3 p is beyond all numbers
    Show(mesh);
    EXPECT_THAT(GetRefusal(0.0F), HasSubstr("not a finite number"));
}

TEST_F(AdaptiveSubdivision, TakesBackItsMarksWhenItFails)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.AddFace({3, 2, 1});
    mesh.positions[1].x = std::numeric_limits<double>::max();
    Show(mesh);
    EXPECT_NE(GetRefusal(0.0F), "");
    for (const DSEdge* pEdge : GetModel().GetEdgeList())
    {
        EXPECT_FALSE(pEdge->GetSplit());
        EXPECT_EQ(pEdge->GetSplitVertex(), 0);
    }
}

TEST_F(AdaptiveSubdivision, StopsAtAnEdgeWithoutItsFirstHalfEdge)
{
    Show(CentredTetrahedron());
    m_Elements.GetSolid(0xE0000000)->GetEdgeList().push_back(m_Elements.CreateEdge());
    const AssertionCapture assertions;
    EXPECT_THROW(Subdivide(0.0F), AssertionFailure);
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(assertions.GetPaths(),
                ElementsAre("source/Interaction/Command/SubCommand/IASubAdaptiveCommand.cpp"));
#endif
}

TEST_F(AdaptiveSubdivision, EndsWhereWalksStrayTooFar)
{
    // Every second face turned over: each walk leads through much of the mesh.
    IndexedMesh mesh = Torus(120, 120);
    for (std::size_t i = 0; i < mesh.indices.size(); i += 6)
    {
        std::swap(mesh.indices[i], mesh.indices[i + 1]);
    }
    Show(mesh);
    EXPECT_THAT(GetRefusal(0.0F), HasSubstr("run against their neighbours"));
}

TEST_F(AdaptiveSubdivision, NeedsToBeToldHowToClear)
{
    const AssertionCapture assertions;
    IASubAdaptiveCommand command;
    command.SetElementManager(&m_Elements);
    command.SetSceneManager(&m_Scene);
    EXPECT_THROW(command.Execute(), AssertionFailure);
}
}
}
