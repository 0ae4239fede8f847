#include "IAMoveTool.h"
#include "Assert.h"
#include "Console.h"
#include "Failure.h"
#include "IAController.h"
#include "IAMoveCommand.h"
#include "MANCommandManager.h"
#include "MANToolsManager.h"
#include "Open3DView.h"
#include <cstdint>
#include <utility>

namespace tessarine
{
IAMoveTool::IAMoveTool(unsigned commandID) : m_nCommandID(commandID) {}

IAMoveTool::~IAMoveTool() = default;

void IAMoveTool::Enter()
{
    ASSERT(m_pCommandManager != nullptr);
    ASSERT(m_pView != nullptr && m_pView->GetController() != nullptr);
    std::unique_ptr<IACommand> command = m_pCommandManager->CreateCommand(m_nCommandID);
    ASSERT(command != nullptr);
    m_pCommand.reset(static_cast<IAMoveCommand*>(command.release()));
    m_pCommand->SetDirection(m_Direction);
    m_pCommand->SetElementManager(&m_pView->GetController()->GetElementManager());
    m_pCommand->SavePositions();
    m_nState = State::Ready;
}

void IAMoveTool::Leave()
{
    try
    {
        ASSERT(m_nState == State::Idle);
    }
    catch (const AssertionFailure&)
    {
        throw Failure(
            "a move is under way: end it first, by a left click, or by a right click behind a motion, "
            "which takes it back");
    }
}

void IAMoveTool::OnMouseMove(int x, int /*y*/, unsigned /*flags*/)
{
    if (m_nState == State::Ready)
    {
        m_nLastX = x;
        m_nState = State::Moving;
    }
    else if (m_nState == State::Moving)
    {
        RunStep(x);
    }
}

void IAMoveTool::RunStep(int x)
{
    // Counted in 64 bits: two positions may lie further apart than an int reaches.
    m_pCommand->SetDistance(static_cast<double>(std::int64_t{x} - m_nLastX) * GetMoveScale());
    try
    {
        m_pCommand->Execute();
    }
    catch (...)
    {
        Accept(); // else every motion would tell it again
        throw;
    }
    m_nLastX = x;
    m_pView->Redraw();
}

/// The way of a pixel: the further off the eye, the longer.
double IAMoveTool::GetMoveScale() const
{
    const Open3DCamera& camera = *m_pView->GetCamera();
    return camera.GetViewVector().Length() / (camera.GetFar() * 6.0);
}

void IAMoveTool::OnLButtonDown(int /*x*/, int /*y*/, unsigned /*flags*/)
{
    if (m_nState == State::Moving)
    {
        Accept();
    }
    else if (m_nState == State::Ready)
    {
        m_nState = State::Idle;
        m_pToolManager->DropTool();
    }
    DebugConsole() << "After OnLButtonDown....." << '\n';
}

void IAMoveTool::Accept()
{
    std::unique_ptr<IACommand> command = std::move(m_pCommand);
    m_nState = State::Idle;
    m_pToolManager->DropTool();
    m_pCommandManager->StoreCommand(std::move(command));
}

void IAMoveTool::OnRButtonDown(int /*x*/, int /*y*/, unsigned /*flags*/)
{
    if (m_nState == State::Moving)
    {
        Cancel();
    }
    DebugConsole() << "After OnRButtonDown...." << '\n';
}

void IAMoveTool::Cancel()
{
    const std::unique_ptr<IAMoveCommand> command = std::move(m_pCommand);
    m_nState = State::Idle;
    try
    {
        if (!command->CanUndo())
        {
            throw Failure(
                "the selection is not the one that was moved any more: the move has ended, and what it "
                "moved stays there");
        }
        command->Undo();
        m_pView->Redraw();
    }
    catch (...)
    {
        m_pToolManager->DropTool();
        throw;
    }
    m_pToolManager->DropTool();
}

void IAMoveTool::End()
{
    m_nState = State::Idle;
    m_pCommand.reset();
}
}
