#include "IASimplifyCommand.h"
#include "CExcp.h"
#include "Capture.h"
#include "Failure.h"
#include "LinksHold.h"
#include "MANSceneManager.h"
#include "MeshWalks.h"
#include "RandomMeshes.h"
#include "RecordDump.h"
#include "Vectors.h"
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <numbers>

namespace tessarine
{
namespace
{
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

IndexedMesh Icosahedron()
{
    const double g = std::numbers::phi;
    IndexedMesh mesh;
    mesh.positions = {smVec3d(-1, g, 0), smVec3d(1, g, 0), smVec3d(-1, -g, 0), smVec3d(1, -g, 0),
                      smVec3d(0, -1, g), smVec3d(0, 1, g), smVec3d(0, -1, -g), smVec3d(0, 1, -g),
                      smVec3d(g, 0, -1), smVec3d(g, 0, 1), smVec3d(-g, 0, -1), smVec3d(-g, 0, 1)};
    mesh.indices = {1, 12, 6,  1, 6,  2, 1,  2, 8, 1, 8,  11, 1, 11, 12, 2, 6, 10, 6, 12,
                    5, 12, 11, 3, 11, 8, 7,  8, 2, 9, 4,  10, 5, 4,  5,  3, 4, 3,  7, 4,
                    7, 9,  4,  9, 10, 5, 10, 6, 3, 5, 12, 7,  3, 11, 9,  7, 8, 10, 9, 2};
    mesh.faceSizes.assign(20, 3);
    return mesh;
}

/// Four triangles; the narrow waist is the edge between the first two vertices.
IndexedMesh HourGlass()
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0.01, 0), smVec3d(0, -0.01, 0), smVec3d(-1, 1, 0),
                      smVec3d(-1, -1, 0),  smVec3d(1, -1, 0),    smVec3d(1, 1, 0)};
    mesh.AddFace({1, 3, 4});
    mesh.AddFace({1, 4, 2});
    mesh.AddFace({1, 2, 5});
    mesh.AddFace({1, 5, 6});
    return mesh;
}

class Simplification : public testing::Test
{
protected:
    DSSolid* Show(const IndexedMesh& mesh)
    {
        DSSolid* solid = LoadQuietly(m_Elements, mesh);
        const AssertionCapture assertions;
        solid->CalcNormals();
        m_Scene.AppendLeaf(solid);
        return solid;
    }

    /// What it prints is lost.
    const DSSolid& Simplify(float ratio)
    {
        const ConsoleCapture console;
        Run(ratio);
        return *GetChild(m_Scene.GetRootGroup()->GetChildren().size() - 1)->GetSolid();
    }

    void Run(float ratio)
    {
        IASimplifyCommand command;
        command.SetElementManager(&m_Elements);
        command.SetSceneManager(&m_Scene);
        command.SetRatio(ratio);
        command.Execute();
    }

    /// Why it is refused.
    std::string GetRefusal(float ratio)
    {
        const std::string before = DumpRecords(m_Elements);
        try
        {
            Simplify(ratio);
        }
        catch (const Failure& failure)
        {
            EXPECT_EQ(DumpRecords(m_Elements), before);
            return failure.GetMessage();
        }
        return "";
    }

    const MANSceneLeaf* GetChild(std::size_t index) const
    {
        return static_cast<const MANSceneLeaf*>(m_Scene.GetRootGroup()->GetChildren().at(index));
    }

    MANBrepElementManager m_Elements;
    MANSceneManager m_Scene;
};

TEST_F(Simplification, LeavesHalfOfAnIcosahedron)
{
    Show(Icosahedron());
    const DSSolid& half = Simplify(0.5F);
    // Ten faces are to go, two at a time: five vertices go with them.
    EXPECT_EQ(half.GetFaceList().size(), 10U);
    EXPECT_EQ(half.GetVertexList().size(), 7U);
    EXPECT_TRUE(LinksHold(half));
    EXPECT_EQ(EulerCharacteristic(half), 2);
}

TEST_F(Simplification, HoldsTheRimOfAFlatSheetInPlace)
{
    Show(Grid(8));
    const DSSolid& sheet = Simplify(0.7F);
    const std::vector<smVec3d> positions = PositionsOf(sheet);
    EXPECT_LT(sheet.GetFaceList().size(), 128U / 2);
    for (const smVec3d& corner : {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(0, 1, 0), smVec3d(1, 1, 0)})
    {
        EXPECT_THAT(positions, Contains(corner)); // moving one would cost, and the rest is free
    }
    for (const DSEdge* edge : sheet.GetEdgeList())
    {
        if (edge->GetHalfEdge2() == nullptr)
        {
            const smVec3d& a = edge->GetHalfEdge1()->GetVertex()->GetPosition();
            const smVec3d& b = edge->GetHalfEdge1()->GetNext()->GetVertex()->GetPosition();
            EXPECT_TRUE((a.x == b.x && (a.x == 0 || a.x == 1)) || (a.y == b.y && (a.y == 0 || a.y == 1)));
        }
    }
    for (const smVec3d& position : positions)
    {
        EXPECT_EQ(position.z, 0);
    }
}

TEST_F(Simplification, CountsOneFaceForAPairOnTheRim)
{
    // Both faces of this square have all corners on the rim. The goal is one face, and a contraction of a side takes
    // one; that of the diagonal takes both.
    Show(Grid(1));
    EXPECT_EQ(Simplify(0.5F).GetFaceList().size(), 1U);
}

TEST_F(Simplification, CountsOneFaceForEachPairOnTheRim)
{
    // Two triangles without anything in common: of each goal of one, one pair.
    Show(Beside(SingleTriangle(), SingleTriangle()));
    EXPECT_EQ(Simplify(0.5F).GetFaceList().size(), 1U);
    EXPECT_EQ(Simplify(0.9F).GetFaceList().size(), 1U); // 1.8 is truncated
    EXPECT_EQ(Simplify(1.0F).GetFaceList().size(), 0U);
}

TEST_F(Simplification, CountsOneFaceForAPairOnTheRimEvenWhenNoneGoes)
{
    // Both pairs of the small triangle are cheaper than any of the large one. The first takes the face with it.
    Show(Beside(Placed(SingleTriangle(), 0.01, smVec3d(5, 0, 0)), SingleTriangle()));
    EXPECT_EQ(Simplify(0.5F).GetFaceList().size(), 1U);
    EXPECT_EQ(Simplify(1.0F).GetFaceList().size(), 1U);
}

TEST_F(Simplification, CountsOneFaceForAPairOnTheRimEvenWhenTwoGo)
{
    // The edge across the waist lies between two faces, and is by far the cheapest. All vertices lie on the rim.
    Show(HourGlass());
    EXPECT_EQ(Simplify(0.25F).GetFaceList().size(), 2U);
    EXPECT_EQ(Simplify(0.5F).GetFaceList().size(), 1U); // the goal is two, so that a second pair goes
}

TEST_F(Simplification, LeavesAboutTheShareThatTheMenuNames)
{
    Show(Shaken(Sphere(3), 1));
    // 512 faces: 409, 256 and 102 are to go, two at a time.
    EXPECT_EQ(Simplify(0.8F).GetFaceList().size(), 102U);
    EXPECT_EQ(Simplify(0.5F).GetFaceList().size(), 256U);
    EXPECT_EQ(Simplify(0.2F).GetFaceList().size(), 410U);
}

TEST_F(Simplification, ContractsOnePairWhereNoneIsAskedFor)
{
    Show(Shaken(Sphere(1), 2));
    EXPECT_EQ(Simplify(0.0F).GetFaceList().size(), 30U);
    EXPECT_EQ(Simplify(-0.0F).GetFaceList().size(), 30U);
}

TEST_F(Simplification, MayLeaveNothing)
{
    Show(Tetrahedron());
    ConsoleCapture console;
    const ErrorLineCapture errors;
    Run(1.0F);
    EXPECT_EQ(errors.GetText(), "simplification has left no face\n");
    EXPECT_EQ(console.GetText(), "sTriangles: 0\nsVertexes: 0\nfn.Size(): 0\nNumber of halfedge: 12\n");
    ASSERT_EQ(m_Scene.GetRootGroup()->GetChildren().size(), 2U);
    EXPECT_TRUE(GetChild(1)->GetSolid()->GetVertexList().empty());
    EXPECT_TRUE(GetChild(1)->IsVisible());
}

/// In double precision 10 * 0.7F is a little less than 7, and three contractions would be enough.
TEST_F(Simplification, CountsFacesInSinglePrecision)
{
    Show(Shaken(Bipyramid(5), 3));
    EXPECT_EQ(Simplify(0.7F).GetFaceList().size(), 2U);
}

TEST_F(Simplification, SaysWhatIsLeft)
{
    Show(Icosahedron());
    ConsoleCapture console;
    Run(0.5F);
    // The input has 60 half-edges, and the result 30.
    EXPECT_EQ(console.GetText(), "sTriangles: 10\nsVertexes: 7\nfn.Size(): 10\nNumber of halfedge: 90\n");
}

TEST_F(Simplification, ShowsTheResultAndHidesTheInput)
{
    const DSSolid* input = Show(Icosahedron());
    const std::vector<smVec3d> before = PositionsOf(*input);
    const DSSolid& result = Simplify(0.5F);
    ASSERT_EQ(m_Scene.GetRootGroup()->GetChildren().size(), 2U);
    EXPECT_EQ(GetChild(0)->GetSolid(), input);
    EXPECT_FALSE(GetChild(0)->IsVisible());
    EXPECT_FALSE(input->IsVisible());
    EXPECT_EQ(GetChild(1)->GetSolid(), &result);
    EXPECT_EQ(GetChild(1)->GetParent(), m_Scene.GetRootGroup());
    EXPECT_TRUE(GetChild(1)->IsVisible());
    EXPECT_TRUE(result.IsVisible());
    EXPECT_EQ(PositionsOf(*input), before);
    EXPECT_EQ(input->GetFaceList().size(), 20U);
    EXPECT_TRUE(LinksHold(*input));
    for (const DSVertex* vertex : result.GetVertexList())
    {
        EXPECT_NEAR(vertex->GetNormal().Length(), 1.0, 1e-12);
    }
}

TEST_F(Simplification, StartsFromTheInputAgain)
{
    Show(Shaken(Sphere(2), 4));
    const std::vector<smVec3d> first = PositionsOf(Simplify(0.5F));
    EXPECT_EQ(PositionsOf(Simplify(0.5F)), first);
    EXPECT_EQ(m_Scene.GetRootGroup()->GetChildren().size(), 3U);
}

TEST_F(Simplification, GivesTheSameResultWhenOneCommandRunsTwice)
{
    Show(Shaken(Sphere(1), 5));
    const ConsoleCapture console;
    IASimplifyCommand command;
    command.SetElementManager(&m_Elements);
    command.SetSceneManager(&m_Scene);
    command.SetRatio(0.5F);
    command.Execute();
    command.Execute();
    EXPECT_EQ(PositionsOf(*GetChild(1)->GetSolid()), PositionsOf(*GetChild(2)->GetSolid()));
}

TEST_F(Simplification, WorksOnASolidWhoseIdsDoNotStartAtZero)
{
    Show(Shaken(Sphere(1), 6));
    const std::vector<smVec3d> expected = PositionsOf(Simplify(0.5F));
    MANBrepElementManager elements;
    MANSceneManager scene;
    LoadQuietly(elements, TriangleCube());
    DSSolid* second = LoadQuietly(elements, Shaken(Sphere(1), 6));
    second->CalcNormals();
    MANSceneLeaf* leaf = scene.NewLeaf();
    scene.GetRootGroup()->AddChild(leaf);
    leaf->SetSolid(second);
    const ConsoleCapture console;
    IASimplifyCommand command;
    command.SetElementManager(&elements);
    command.SetSceneManager(&scene);
    command.SetRatio(0.5F);
    command.Execute();
    EXPECT_EQ(PositionsOf(*static_cast<MANSceneLeaf*>(scene.GetRootGroup()->GetChildren()[1])->GetSolid()),
              expected);
}

TEST_F(Simplification, AssertsThatACornerStandsInTheVertexList)
{
    DSSolid* other = Show(SingleTriangle());
    DSSolid* stray = LoadQuietly(m_Elements, SingleTriangle());
    other->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge()->GetVertex() = stray->GetVertexList()[1];
    const AssertionCapture assertions;
    EXPECT_THROW(Simplify(0.5F), AssertionFailure);

    // The same where the ids are not in a row.
    other->GetVertexList().push_back(stray->GetVertexList()[2]);
    EXPECT_THROW(Simplify(0.5F), AssertionFailure);
}

TEST_F(Simplification, IsRefusedForAShareThatIsNone)
{
    Show(Tetrahedron());
    for (const float ratio :
         {-0.1F, 1.0001F, std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
          -std::numeric_limits<float>::infinity()})
    {
        EXPECT_EQ(GetRefusal(ratio),
                  "the share of the faces that simplification removes must be a number from 0 to 1");
    }
    EXPECT_EQ(m_Scene.GetRootGroup()->GetChildren().size(), 1U);
}

TEST_F(Simplification, IsRefusedWithoutAModel)
{
    EXPECT_EQ(GetRefusal(0.5F), "simplification needs a model: import one first");
    m_Scene.AppendLeaf(nullptr);
    EXPECT_EQ(GetRefusal(0.5F), "simplification needs a model: import one first");
}

TEST_F(Simplification, IsRefusedWhereTheFirstChildIsAGroup)
{
    m_Scene.GetRootGroup()->AddChild(m_Scene.NewGroup());
    EXPECT_EQ(GetRefusal(0.5F), "simplification needs a model: import one first");
}

TEST_F(Simplification, LeavesNothingOfAModelWithoutFaces)
{
    IndexedMesh points;
    points.positions = {smVec3d(0, 0, 0), smVec3d(1, 0, 0)};
    Show(points);
    EXPECT_TRUE(Simplify(0.5F).GetVertexList().empty());
    EXPECT_FALSE(GetChild(0)->IsVisible());
}

TEST_F(Simplification, LeavesOutVerticesThatNoFaceUses)
{
    IndexedMesh mesh = Shaken(Sphere(1), 7);
    mesh.positions.insert(mesh.positions.begin(), smVec3d(9, 9, 9));
    for (std::int32_t& index : mesh.indices)
    {
        ++index;
    }
    Show(mesh);
    const DSSolid& result = Simplify(0.0F);
    EXPECT_EQ(result.GetVertexList().size(), 17U);
}

TEST_F(Simplification, IsRefusedForPositionsThatAreNotFinite)
{
    const std::string reason = "vertex 2 stands at a position that is not a finite number in single "
                               "precision, which cannot be simplified: "
                               "mend it in the file and import again";
    DSSolid* solid = Show(Tetrahedron());
    for (const double bad :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e39})
    {
        solid->GetVertexList()[1]->GetPosition().y = bad;
        EXPECT_EQ(GetRefusal(0.5F), reason);
    }
}

TEST_F(Simplification, IsRefusedWhereSinglePrecisionOverflows)
{
    IndexedMesh mesh = Shaken(Sphere(3), 8);
    for (smVec3d& position : mesh.positions)
    {
        position *= 1e38; // each is finite; the planes of many faces add up to more than a float holds
    }
    Show(mesh);
    EXPECT_THAT(GetRefusal(0.9F), HasSubstr("to a position that is not a finite number"));
}

TEST_F(Simplification, TakesThreeCornersOfQuadsForAFace)
{
    // Of the 24 corners 18 are read, as six faces. The first pair goes, which two of them have.
    Show(Shaken(QuadCube(), 10));
    const ErrorLineCapture errors;
    EXPECT_EQ(Simplify(0.0F).GetFaceList().size(), 4U);
    EXPECT_THAT(errors.GetText(), StartsWith("simplification is for triangles"));
}

TEST_F(Simplification, IsRefusedForTooFewCorners)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.AddFace({1, 2});
    Show(mesh);
    EXPECT_EQ(GetRefusal(0.5F),
              "the model has faces with fewer than three corners, which cannot be simplified: remove "
              "them from the file and import again");
}

TEST_F(Simplification, EndsAtARimEdgeWithoutLength)
{
    IndexedMesh mesh = Grid(2);
    mesh.positions[1] = mesh.positions[0];
    Show(mesh);
    const AssertionCapture assertions;
    EXPECT_THROW(Simplify(0.5F), CExcpDivideZero);
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(assertions.GetExpressions(), ElementsAre("t > smVec3f_zero"));
#endif
    EXPECT_EQ(m_Elements.GetSolidArray().size(), 1U);
}

TEST_F(Simplification, PassesOverAnInnerEdgeWithoutLength)
{
    IndexedMesh mesh = Shaken(Sphere(2), 11);
    mesh.positions[static_cast<std::size_t>(mesh.indices[1]) - 1] =
        mesh.positions[static_cast<std::size_t>(mesh.indices[0]) - 1];
    Show(mesh);
    const AssertionCapture assertions;
    EXPECT_EQ(Simplify(0.0F).GetFaceList().size(), 126U);
    EXPECT_THAT(assertions.GetExpressions(), IsEmpty());
}

TEST_F(Simplification, ReportsAVertexBetweenFacesThatFoldOverOneAnother)
{
    // A pillow: front and back of two triangles. The contraction of one pair leaves two faces back to back.
    IndexedMesh pillow;
    pillow.positions = {smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(1, 1, 0), smVec3d(0, 1, 0)};
    pillow.AddFace({1, 2, 3});
    pillow.AddFace({1, 3, 4});
    pillow.AddFace({1, 3, 2});
    pillow.AddFace({1, 4, 3});
    Show(pillow);
    const AssertionCapture assertions;
    const DSSolid& result = Simplify(0.0F);
    EXPECT_EQ(result.GetFaceList().size(), 2U);
#if TESSARINE_ASSERTIONS
    EXPECT_FALSE(assertions.GetExpressions().empty());
#endif
    EXPECT_THAT(assertions.GetExpressions(), Each("t > smVec3d_zero"));
}

TEST_F(Simplification, LeavesEveryFlatVertexFreeOfCost)
{
    Show(Grid(6));
    const DSSolid& sheet = Simplify(0.2F);
    for (const smVec3d& position : PositionsOf(sheet))
    {
        // Singular planes: one of the ends, or their middle, which a tie never takes.
        EXPECT_NEAR(std::round(position.x * 6), position.x * 6, 1e-6);
        EXPECT_NEAR(std::round(position.y * 6), position.y * 6, 1e-6);
    }
}
}
}
