#include "MANCommandManager.h"
#include "Capture.h"
#include "Failure.h"
#include "IACameraAroundCommand.h"
#include "IACameraMoveCommand.h"
#include "IACameraOrbitCommand.h"
#include "IACameraZoomCommand.h"
#include "IADrawSplatCommand.h"
#include "IAGenerateSplatCommand.h"
#include "IAMoveFaceCommand.h"
#include "IAMoveSolidCommand.h"
#include "IAMoveVertexCommand.h"
#include "IAProjectionCommand.h"
#include "IAReconstructionCommand.h"
#include "IAReconstructionSmoothCommand.h"
#include "IAReconstructionSmoothEnergyFunctionCommand.h"
#include "IAReconstructionSmoothTwoStepCommand.h"
#include "IARefineMeshCommand.h"
#include "IASelectCommand.h"
#include "IASetMaterialCommand.h"
#include "IASimplifyCommand.h"
#include "IASmoothCommand.h"
#include "IASubAdaptiveCommand.h"
#include "IASubLOOPCommand.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

/// A command that tells when it is deleted.
class TellingCommand : public IACommand
{
public:
    TellingCommand(std::vector<int>& deleted, int name, bool undoable = true)
        : IACommand(undoable), m_Deleted(deleted), m_nName(name)
    {
    }
    ~TellingCommand() override { m_Deleted.push_back(m_nName); }

private:
    std::vector<int>& m_Deleted;
    int m_nName;
};

TEST(Command, HasStepsThatDoNothingUntilAClassHasThem)
{
    class Plain : public IACommand
    {
    };
    Plain command;
    command.Execute();
    command.Undo();
    command.Reserve1();
    command.Reserve2();
    EXPECT_TRUE(command.IsUndoable());
}

class UnknownId : public testing::TestWithParam<unsigned>
{
};

TEST_P(UnknownId, ShowsAMessageAndGivesNothing)
{
    const MessageCapture messages;
    EXPECT_EQ(MANCommandManager::CreateCommand(GetParam()), nullptr);
    EXPECT_THAT(messages.GetTexts(), ElementsAre("This command does not exist!"));
}

INSTANTIATE_TEST_SUITE_P(GapsAndStrangers, UnknownId,
                         testing::Values(0x6000005U, 0x7000003U, 0U, 0x1000000U, 0x1000005U, 0x8000002U,
                                         0xFFFFFFFFU));

template <class TCommand>
bool Makes(unsigned id)
{
    const auto command = MANCommandManager::CreateCommand(id);
    return dynamic_cast<TCommand*>(command.get()) != nullptr && command->IsUndoable();
}

TEST(CommandManager, MakesTheAdaptiveSubdivisionAndTheSettingOfAMaterial)
{
    EXPECT_TRUE(Makes<IASubAdaptiveCommand>(0x4000002));
    EXPECT_TRUE(Makes<IASetMaterialCommand>(0x8000001));
}

TEST(CommandManager, MakesTheFitByEnergy)
{
    EXPECT_TRUE(Makes<IAReconstructionSmoothTwoStepCommand>(0x6000006));
    EXPECT_TRUE(Makes<IAReconstructionSmoothEnergyFunctionCommand>(0x6000007));
}

TEST(CommandManager, MakesTheCameraCommands)
{
    EXPECT_TRUE(Makes<IACameraMoveCommand>(0x1000001));
    EXPECT_TRUE(Makes<IACameraZoomCommand>(0x1000002));
    EXPECT_TRUE(Makes<IACameraOrbitCommand>(0x1000003));
    EXPECT_TRUE(Makes<IACameraAroundCommand>(0x1000004));
}

TEST(CommandManager, MakesTheCommandsOfTheSelection)
{
    const auto select = MANCommandManager::CreateCommand(0x5000001); // the only one that no history keeps
    EXPECT_NE(dynamic_cast<IASelectCommand*>(select.get()), nullptr);
    EXPECT_TRUE(Makes<IADrawSplatCommand>(0x5000002));
    EXPECT_TRUE(Makes<IAMoveVertexCommand>(0x7000001));
    EXPECT_TRUE(Makes<IAMoveFaceCommand>(0x7000002));
    EXPECT_TRUE(Makes<IAMoveSolidCommand>(0x7000004));
}

TEST(CommandManager, MakesASimplificationAndAnOptimisation)
{
    EXPECT_TRUE(Makes<IASimplifyCommand>(0x6000008));
    EXPECT_TRUE(Makes<IARefineMeshCommand>(0x6000009));
}

TEST(CommandManager, MakesTheCommandsOfTheSilhouettes)
{
    EXPECT_TRUE(Makes<IAGenerateSplatCommand>(0x5000003));
    EXPECT_TRUE(Makes<IAProjectionCommand>(0x6000001));
    EXPECT_TRUE(Makes<IAReconstructionCommand>(0x6000002));
}

TEST(CommandManager, MakesALoopSubdivision)
{
    EXPECT_TRUE(Makes<IASubLOOPCommand>(0x4000001));
}

TEST(CommandManager, MakesTheTwoStepCorrespondence)
{
    EXPECT_TRUE(Makes<IAReconstructionSmoothTwoStepCommand>(0x6000006));
}

TEST(CommandManager, MakesTheHierarchicalFit)
{
    EXPECT_TRUE(Makes<IASmoothCommand>(0x6000003));
}

TEST(CommandManager, MakesTheIncrementalRefinement)
{
    EXPECT_TRUE(Makes<IAReconstructionSmoothCommand>(0x6000004));
}

TEST(CommandManager, KeepsEveryCommandThatItStores)
{
    std::vector<int> deleted;
    {
        MANCommandManager manager;
        EXPECT_EQ(manager.GetHistorySize(), 0U);
        EXPECT_EQ(manager.GetCurrent(), 0);
        for (int n = 1; n <= 5; ++n)
        {
            manager.StoreCommand(std::make_unique<TellingCommand>(deleted, n));
            EXPECT_EQ(manager.GetHistorySize(), static_cast<std::size_t>(n));
            EXPECT_EQ(manager.GetCurrent(), n);
        }
        EXPECT_THAT(deleted, IsEmpty());
    }
    EXPECT_THAT(deleted, ElementsAre(1, 2, 3, 4, 5)); // in index order
}

TEST(CommandManager, LeavesACommandThatCannotBeUndoneToItsCaller)
{
    std::vector<int> deleted;
    MANCommandManager manager;
    std::unique_ptr<IACommand> command = std::make_unique<TellingCommand>(deleted, 1, false);
    manager.StoreCommand(std::move(command));
    EXPECT_NE(command, nullptr); // NOLINT(bugprone-use-after-move): that it was not moved is the point
    EXPECT_EQ(manager.GetHistorySize(), 0U);
    EXPECT_EQ(manager.GetCurrent(), 0);
    EXPECT_THAT(deleted, IsEmpty());
}

TEST(CommandManager, AssertsThatAStoredCommandIsThere)
{
    const AssertionCapture assertions;
    MANCommandManager manager;
    EXPECT_THROW(manager.StoreCommand(nullptr), AssertionFailure);
}

TEST(CommandManager, DeletesAReleasedCommandAndAcceptsNone)
{
    std::vector<int> deleted;
    MANCommandManager::ReleaseCommand(std::make_unique<TellingCommand>(deleted, 1));
    MANCommandManager::ReleaseCommand(nullptr);
    EXPECT_THAT(deleted, ElementsAre(1));
}

TEST(CommandManager, GoesBackToACheckpoint)
{
    std::vector<int> deleted;
    MANCommandManager manager;
    manager.StoreCommand(std::make_unique<TellingCommand>(deleted, 1));
    const auto before = manager.Save();
    manager.StoreCommand(std::make_unique<TellingCommand>(deleted, 2));
    manager.StoreCommand(std::make_unique<TellingCommand>(deleted, 3));
    manager.Restore(before);
    EXPECT_THAT(deleted, ElementsAre(3, 2));
    EXPECT_EQ(manager.GetHistorySize(), 1U);
    EXPECT_EQ(manager.GetCurrent(), 1);
}
}
}
