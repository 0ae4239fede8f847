#include "ACTEuler.h"
#include "Capture.h"
#include "IAMoveFaceCommand.h"
#include "IAMoveSolidCommand.h"
#include "IAMoveVertexCommand.h"
#include "MANBrepElementManager.h"
#include "Meshes.h"
#include "Refusal.h"
#include "Vectors.h"
#include <gmock/gmock.h>
#include <limits>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::HasSubstr;

constexpr smVec3d kAlongX(1, 0, 0);
constexpr smVec3d kAlongY(0, 1, 0);

class MoveCommands : public testing::Test
{
protected:
    DSSolid* Load(const IndexedMesh& mesh)
    {
        DSSolid* solid = LoadQuietly(m_Elements, mesh);
        solid->CalcNormals();
        return solid;
    }

    void Select(std::uint32_t type, const std::vector<std::uint32_t>& ids)
    {
        m_Elements.SetSelectType(type);
        for (const std::uint32_t id : ids)
        {
            m_Elements.ToggleSelect(id);
        }
    }

    void Prepare(IAMoveCommand& command, const smVec3d& direction)
    {
        command.SetElementManager(&m_Elements);
        command.SetDirection(direction);
        command.SavePositions();
    }

    static void Run(IAMoveCommand& command, double distance)
    {
        command.SetDistance(distance);
        command.Execute();
    }

    std::vector<smVec3d> GetPositions() const
    {
        std::vector<smVec3d> positions;
        for (const DSVertex* vertex : m_Elements.GetVertexArray())
        {
            positions.push_back(vertex->GetPosition());
        }
        return positions;
    }

    /// Why a run does not take place.
    static std::string GetRefusal(IAMoveCommand& command, double distance)
    {
        return tessarine::GetRefusal([&] { Run(command, distance); });
    }

    /// Selects an element of a triangle, prepares a command and deletes the element: neither a run nor another start
    /// is possible.
    template <class TCommand, class TDelete>
    void ExpectAssertionsWithout(std::uint32_t type, std::uint32_t id, TDelete deleteIt)
    {
        DSSolid* solid = Load(SingleTriangle());
        Select(type, {id});
        TCommand command;
        Prepare(command, kAlongX);
        deleteIt(*solid);
        EXPECT_THROW(Run(command, 1), AssertionFailure);
        EXPECT_THROW(Prepare(command, kAlongX), AssertionFailure);
    }

    AssertionCapture m_Assertions;
    MANBrepElementManager m_Elements;
};

using MoveVertices = MoveCommands;
using MoveFaces = MoveCommands;
using MoveSolids = MoveCommands;

TEST_F(MoveVertices, GoAlongAnAxisBySummedSteps)
{
    Load(SingleTriangle());
    Select(SelectType::Vertices, {1, 2});
    IAMoveVertexCommand command;
    Prepare(command, kAlongX);
    Run(command, 0.5);
    Run(command, -0.25);
    EXPECT_THAT(GetPositions(), ElementsAre(smVec3d(0, 0, 0), smVec3d(1.25, 0, 0), smVec3d(0.25, 1, 0)));
}

TEST_F(MoveVertices, KeepTheirNormalsAlongAnAxis)
{
    const DSSolid* solid = Load(SingleTriangle());
    Select(SelectType::Vertices, {1});
    IAMoveVertexCommand command;
    Prepare(command, smVec3d(0, 0, 1));
    Run(command, 3);
    EXPECT_EQ(solid->GetVertexList()[1]->GetNormal(), smVec3d(0, 0, 1));
    EXPECT_EQ(solid->GetFaceList()[0]->GetNormal(), smVec3d(0, 0, 1));
}

TEST_F(MoveVertices, GoAlongTheNormalThatEachStepComputes)
{
    const DSSolid* solid = Load(SingleTriangle());
    solid->GetVertexList()[1]->GetNormal() = smVec3d(1, 0, 0); // the sum starts from it
    Select(SelectType::Vertices, {1});
    IAMoveVertexCommand command;
    Prepare(command, IAMoveCommand::kAlongNormal);
    Run(command, std::sqrt(2.0));
    // (1, 0, 0) + (0, 0, 1), made a unit vector, times the root of 2
    EXPECT_NEAR((GetPositions()[1] - smVec3d(2, 0, 1)).Length(), 0.0, 1e-15);
    const smVec3d bent = smVec3d(std::sqrt(0.5), 0, std::sqrt(0.5) + 1); // the next sum leans further to z
    Run(command, 1.0);
    EXPECT_NEAR((GetPositions()[1] - smVec3d(2, 0, 1) - bent / bent.Length()).Length(), 0.0, 1e-15);
}

TEST_F(MoveVertices, AreRefusedWhereANormalIsNoNumberAndStay)
{
    const DSSolid* solid = Load(SingleTriangle());
    solid->GetVertexList()[2]->GetNormal() = smVec3d(0, 0, -1); // the sum with the face's is zero
    Select(SelectType::Vertices, {1, 2});
    IAMoveVertexCommand command;
    Prepare(command, IAMoveCommand::kAlongNormal);
    const auto before = GetPositions();
    EXPECT_EQ(GetRefusal(command, 1.0), "element 2 has no normal to move along: move it along an axis");
    EXPECT_EQ(GetPositions(), before);
    EXPECT_EQ(solid->GetVertexList()[1]->GetNormal(), smVec3d(0, 0, 1));
    EXPECT_EQ(solid->GetVertexList()[2]->GetNormal(), smVec3d(0, 0, -1));
}

TEST_F(MoveVertices, GoBackToWhereTheyWereKept)
{
    Load(CentredTetrahedron());
    Select(SelectType::Vertices, {3, 1});
    const auto before = GetPositions();
    IAMoveVertexCommand command;
    Prepare(command, kAlongY);
    Run(command, 0.1);
    Run(command, 0.7);
    command.Undo();
    EXPECT_EQ(GetPositions(), before);
}

TEST_F(MoveVertices, TakeForTheMarkerWhatIsNextToItInEachComponent)
{
    Load(SingleTriangle());
    Select(SelectType::Vertices, {1});
    const auto wayAlong = [this](const smVec3d& direction)
    {
        IAMoveVertexCommand command;
        Prepare(command, direction);
        const smVec3d before = GetPositions()[1];
        Run(command, 1.0);
        return GetPositions()[1] - before;
    };
    constexpr double kInside = 0.9e-10;
    constexpr double kOutside = 1.1e-10;
    const smVec3d marker = IAMoveCommand::kAlongNormal;
    // All three off by so much are further from the marker than 1e-10 together.
    EXPECT_EQ(wayAlong(marker + smVec3d(kInside, -kInside, kInside)), smVec3d(0, 0, 1));
    for (const double off : {kOutside, -kOutside})
    {
        for (const smVec3d& axis : {smVec3d(1, 0, 0), smVec3d(0, 1, 0), smVec3d(0, 0, 1)})
        {
            EXPECT_NEAR((wayAlong(marker + axis * off) - marker).Length(), 0.0, 1e-9);
        }
    }
}

TEST_F(MoveFaces, MoveTheirCornersAlongAnAxisAndSharedOnesTwice)
{
    Load(QuadCube());
    Select(SelectType::Faces, {0xC0000001, 0xC0000005}); // z = 1 and x = 1, which share the corners 5 and 7
    IAMoveFaceCommand command;
    Prepare(command, kAlongX);
    Run(command, 0.25);
    const auto after = GetPositions();
    EXPECT_EQ(after[0], smVec3d(0, 0, 0));
    EXPECT_EQ(after[4], smVec3d(0.25, 0, 1));
    EXPECT_EQ(after[1], smVec3d(1.25, 0, 0));
    EXPECT_EQ(after[5], smVec3d(1.5, 0, 1));
    EXPECT_EQ(after[7], smVec3d(1.5, 1, 1));
}

TEST_F(MoveFaces, GoAlongTheirStoredNormalWhichStays)
{
    const DSSolid* solid = Load(QuadCube());
    solid->GetFaceList()[1]->GetNormal() = smVec3d(0, 2, 0);
    Select(SelectType::Faces, {0xC0000001});
    IAMoveFaceCommand command;
    Prepare(command, IAMoveCommand::kAlongNormal);
    Run(command, 0.5);
    EXPECT_EQ(GetPositions()[4], smVec3d(0, 1, 1));
    EXPECT_EQ(GetPositions()[0], smVec3d(0, 0, 0));
    EXPECT_EQ(solid->GetFaceList()[1]->GetNormal(), smVec3d(0, 2, 0));
}

TEST_F(MoveFaces, AreRefusedWhereANormalIsNoNumberAndStay)
{
    const DSSolid* solid = Load(QuadCube());
    solid->GetFaceList()[2]->GetNormal().y = std::numeric_limits<double>::infinity();
    Select(SelectType::Faces, {0xC0000001, 0xC0000002});
    IAMoveFaceCommand command;
    Prepare(command, IAMoveCommand::kAlongNormal);
    const auto before = GetPositions();
    EXPECT_THAT(GetRefusal(command, 0.5), HasSubstr("no normal"));
    EXPECT_EQ(GetPositions(), before);
}

TEST_F(MoveFaces, MoveAndRestoreTheCornersOfAllTheirLoops)
{
    IndexedMesh mesh = SingleTriangle();
    const IndexedMesh ring = Placed(SingleTriangle(), 0.1, smVec3d(0.2, 0.3, 0));
    mesh.positions.insert(mesh.positions.end(), ring.positions.begin(), ring.positions.end());
    mesh.AddFace({4, 6, 5});
    Load(mesh);
    ACTEuler(&m_Elements).KFMRH(0xE0000000, 0xC0000000, 0xC0000001);
    Select(SelectType::Faces, {0xC0000000});
    const auto before = GetPositions();
    for (const smVec3d& direction : {smVec3d(0, 0, 1), IAMoveCommand::kAlongNormal}) // the normal is the same
    {
        IAMoveFaceCommand command;
        Prepare(command, direction);
        Run(command, 0.5);
        for (std::size_t i = 0; i < before.size(); ++i)
        {
            EXPECT_EQ(GetPositions()[i], before[i] + smVec3d(0, 0, 0.5)) << i;
        }
        command.Undo();
        EXPECT_EQ(GetPositions(), before);
    }
}

TEST_F(MoveFaces, RestoreAllCornersExactly)
{
    Load(Placed(QuadCube(), 0.1, smVec3d(0.3, 0.7, -0.2)));
    Select(SelectType::Faces, {0xC0000001, 0xC0000005, 0xC0000002});
    const auto before = GetPositions();
    IAMoveFaceCommand command;
    Prepare(command, IAMoveCommand::kAlongNormal);
    Run(command, 0.3);
    Run(command, -0.1);
    command.Undo();
    EXPECT_EQ(GetPositions(), before);
}

TEST_F(MoveSolids, MoveAllVerticesOfThoseSelected)
{
    Load(SingleTriangle());
    Load(SingleTriangle());
    Select(SelectType::Solids, {0xE0000001});
    IAMoveSolidCommand command;
    Prepare(command, kAlongY);
    Run(command, 2.0);
    EXPECT_THAT(GetPositions(), ElementsAre(smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(0, 1, 0),
                                            smVec3d(0, 2, 0), smVec3d(1, 2, 0), smVec3d(0, 3, 0)));
    command.Undo();
    EXPECT_EQ(GetPositions()[5], smVec3d(0, 1, 0));
}

TEST_F(MoveSolids, StayWhereAPositionWouldBeNoNumber)
{
    const DSSolid* solid = Load(SingleTriangle());
    solid->GetVertexList()[2]->SetPosition(1.7e308, 0, 0);
    Select(SelectType::Solids, {0xE0000000});
    IAMoveSolidCommand command;
    Prepare(command, kAlongX);
    const auto before = GetPositions();
    EXPECT_THAT(GetRefusal(command, 1e308), HasSubstr("further than numbers reach"));
    EXPECT_EQ(GetPositions(), before);
}

/// The list of a selection that has outlived a model: its solid and that of the next have the same id.
class MoveASolidListedTwice : public MoveCommands
{
protected:
    MoveASolidListedTwice()
    {
        Load(SingleTriangle());
        Select(SelectType::Solids, {0xE0000000});
        m_Elements.Clear();
        m_pSolid = Load(SingleTriangle());
        m_Elements.ToggleSelect(0xE0000000);
        EXPECT_THAT(m_Elements.GetSelectList(), ElementsAre(0xE0000000, 0xE0000000));
    }

    DSSolid* m_pSolid = nullptr;
};

TEST_F(MoveASolidListedTwice, GoesTwiceAsFar)
{
    IAMoveSolidCommand command;
    Prepare(command, kAlongX);
    Run(command, 0.25);
    EXPECT_THAT(GetPositions(), ElementsAre(smVec3d(0.5, 0, 0), smVec3d(1.5, 0, 0), smVec3d(0.5, 1, 0)));
}

TEST_F(MoveASolidListedTwice, StaysWhereTheSecondTimeWouldLeaveTheNumbers)
{
    m_pSolid->GetVertexList()[2]->SetPosition(1e308, 0, 0); // 1.5e308 is a number, 2e308 is none
    IAMoveSolidCommand command;
    Prepare(command, kAlongX);
    const auto before = GetPositions();
    EXPECT_THAT(GetRefusal(command, 0.5e308), HasSubstr("further than numbers reach"));
    EXPECT_EQ(GetPositions(), before);
}

TEST_F(MoveCommands, DoNothingWithAnEmptySelection)
{
    Load(SingleTriangle());
    const auto before = GetPositions();
    m_Elements.SetSelectType(SelectType::Vertices);
    IAMoveVertexCommand command;
    Prepare(command, kAlongX);
    Run(command, 1);
    command.Undo();
    EXPECT_EQ(GetPositions(), before);
}

TEST_F(MoveCommands, AssertTheirTypeOfSelection)
{
    Load(SingleTriangle());
    IAMoveVertexCommand vertices;
    EXPECT_THROW(Prepare(vertices, kAlongX), AssertionFailure); // the type of the start is solids
    IAMoveFaceCommand faces;
    EXPECT_THROW(Prepare(faces, kAlongX), AssertionFailure);
    m_Elements.SetSelectType(SelectType::Faces);
    IAMoveSolidCommand solids;
    EXPECT_THROW(Prepare(solids, kAlongX), AssertionFailure);
}

TEST_F(MoveCommands, AssertThatWhatIsSelectedIsStillThere)
{
    Load(SingleTriangle());
    Select(SelectType::Vertices, {2});
    m_Elements.Clear(); // the selection stays
    IAMoveVertexCommand command;
    EXPECT_THROW(Prepare(command, kAlongX), AssertionFailure);
}

TEST_F(MoveVertices, AssertThatNoneWasDeleted)
{
    ExpectAssertionsWithout<IAMoveVertexCommand>(SelectType::Vertices, 2,
                                                 [this](DSSolid& /*solid*/)
                                                 { m_Elements.DeleteVertex(m_Elements.GetVertex(2)); });
}

TEST_F(MoveFaces, AssertThatNoneWasDeleted)
{
    ExpectAssertionsWithout<IAMoveFaceCommand>(SelectType::Faces, 0xC0000000,
                                               [this](const DSSolid& solid)
                                               { m_Elements.DeleteFace(solid.GetFaceList()[0]); });
}

TEST_F(MoveSolids, AssertThatNoneWasDeleted)
{
    ExpectAssertionsWithout<IAMoveSolidCommand>(SelectType::Solids, 0xE0000000,
                                                [this](DSSolid& solid) { m_Elements.DeleteSolid(&solid); });
}

TEST_F(MoveCommands, AssertOnUndoThatTheSelectionHasAsManyVerticesAsBefore)
{
    Load(SingleTriangle());
    Select(SelectType::Vertices, {1});
    IAMoveVertexCommand command;
    Prepare(command, kAlongX);
    Run(command, 1);
    m_Elements.ToggleSelect(2);
    EXPECT_THROW(command.Undo(), AssertionFailure);
    EXPECT_EQ(GetPositions()[1], smVec3d(2, 0, 0));
}
}
}
