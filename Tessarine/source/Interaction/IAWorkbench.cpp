#include "IAWorkbench.h"
#include "Assert.h"
#include "Console.h"
#include "ErrorLine.h"
#include "Failure.h"
#include "FailureText.h"
#include "File.h"
#include "IADrawSplatTool.h"
#include "IAMoveTool.h"
#include "IARecovery.h"
#include "IASelectTool.h"
#include "Platform.h"
#include "TryTo.h"
#include <algorithm>

namespace tessarine
{
namespace
{
constexpr char kModelStays[] = "; the model is as it was";

/// Whether the command has told the user by a message box of its own what is being handled.
bool WasFailureShown()
{
    try
    {
        throw;
    }
    catch (const Failure& failure)
    {
        return failure.WasShown();
    }
    catch (...)
    {
        return false;
    }
}

/// Tells the user about the exception that is being handled. Where there is no memory even for the message, the caller still
/// learns that the operation failed.
void ShowFailure(const std::string& operation, const char* outcome) noexcept
{
    TryTo([&] { GetPlatform().ShowFailure(operation, DescribeFailure(outcome), WasFailureShown()); });
}

/// Needs no memory of its own: whatever fails is told.
/// @return whether the action ran to its end
template <class TAction>
bool RunAndTell(const std::string& operation, const char* outcome, const TAction& action)
{
    try
    {
        action();
        return true;
    }
    catch (...)
    {
        ShowFailure(operation, outcome);
        return false;
    }
}

/// Where there is no memory for the counts, the reports themselves are out.
void FinishReports() noexcept
{
    TryTo(
        []
        {
            EndAssertionReports();
            DebugConsole().Flush();
        });
}

/// The sentence must not fail what has been done.
void TellEndedMove(const std::string& operation) noexcept
{
    TryTo(
        [&]
        {
            PrintErrorLine("the move that was under way has ended: " + operation +
                           " may have changed what it moves");
        });
}

/// What the user did, in the words of the batch tool.
std::string GetName(ToolEvent::Kind kind)
{
    switch (kind)
    {
    case ToolEvent::Kind::LeftButtonDown: return "left-down";
    case ToolEvent::Kind::LeftButtonUp: return "left-up";
    case ToolEvent::Kind::RightButtonDown: return "right-down";
    case ToolEvent::Kind::RightButtonUp: return "right-up";
    case ToolEvent::Kind::MouseMove: return "mouse-move";
    case ToolEvent::Kind::KeyDown: return "key-down";
    case ToolEvent::Kind::KeyUp: return "key-up";
    case ToolEvent::Kind::SetCursor: break;
    }
    return "set-cursor";
}

/// Motions come by the hundred, and nobody wants to wait in the middle of one.
bool IsClickOrKey(ToolEvent::Kind kind)
{
    return kind != ToolEvent::Kind::MouseMove && kind != ToolEvent::Kind::SetCursor;
}

/// Any file: the framework's dialogs have no filter of the system's own.
FileQuestion AnyFile()
{
    return {"所有文件(*.*)|*.*||", ""};
}
}

IAWorkbench::IAWorkbench() : m_pController(std::make_unique<IAController>())
{
    m_ToolsManager.SetView(&m_View);
    m_ToolsManager.SetCommandManager(&m_CommandManager);
    m_ToolsManager.PushTool(m_ToolsManager.FindTool(ToolID::Select));
    NewDocument();
}

int IAWorkbench::CreateView()
{
    if (m_View.Create() != 0)
    {
        return -1;
    }
    try
    {
        m_View.InitState();
    }
    catch (...)
    {
        DestroyView(); // else the next frames would be drawn without that state
        throw;
    }
    return 0;
}

bool IAWorkbench::Perform(const std::string& operation, Effect effect, const std::function<void()>& action)
{
    BeginAssertionReports();
    if (effect != Effect::None)
    {
        ForgetPicks();
        KeepModel();
    }
    const unsigned modelBefore = m_pController->GetModelNumber();
    bool hasEndedMove = false;
    const bool done =
        RunAndTell(operation, kModelStays, [&] { hasEndedMove = RunOrRestore(effect, action); });
    if (done)
    {
        NoteOutcome(effect, modelBefore);
    }
    else if (effect != Effect::None)
    {
        RedrawAfterFailure();
    }
    if (hasEndedMove)
    {
        TellEndedMove(operation);
    }
    if (effect != Effect::None)
    {
        ForgetPicks(); // a frame behind a dialog may have looked at the model in the middle of the operation
    }
    PreparePicks();
    FinishReports();
    return done;
}

void IAWorkbench::KeepModel() noexcept
{
    if (m_pRecovery != nullptr)
    {
        m_pRecovery->Keep(*m_pController);
    }
}

/// Keeps what the operation made, too: a long one is worth most.
void IAWorkbench::NoteOutcome(Effect effect, unsigned modelBefore)
{
    const unsigned model = m_pController->GetModelNumber();
    const bool wasCancelled = effect == Effect::ReplacesModel && model == modelBefore;
    if (m_pRecovery == nullptr || effect == Effect::None || wasCancelled)
    {
        return;
    }
    if (effect == Effect::ReplacesDocument || (effect == Effect::ReplacesModel && model == m_nImportedModel))
    {
        m_pRecovery->MarkSafe();
        return;
    }
    m_pRecovery->MarkChanged();
    KeepModel();
}

/// Whatever changes the model passes the boundary, by an operation with an effect or by an event of another tool.
/// So what the select tool keeps of it holds from one of these to the next, and no longer.
void IAWorkbench::ForgetPicks()
{
    static_cast<IASelectTool*>(m_ToolsManager.FindTool(ToolID::Select))->ForgetModel();
}

void IAWorkbench::PreparePicks() noexcept
{
    if (IsSelectToolOnTop())
    {
        static_cast<IASelectTool*>(m_ToolsManager.GetCurrentTool())->PrepareModel();
    }
}

/// @return whether it has ended a move
bool IAWorkbench::RunOrRestore(Effect effect, const std::function<void()>& action)
{
    IACheckpoint before(*m_pController, m_View, m_CommandManager, effect);
    const unsigned modelBefore = m_pController->GetModelNumber();
    try
    {
        action();
        const bool isAnotherModel = m_pController->GetModelNumber() != modelBefore;
        return (isAnotherModel || effect == Effect::ChangesModel) && EndMoves();
    }
    catch (...)
    {
        before.Restore();
        throw;
    }
}

/// The operation may have shown some of what is no more. Where this fails too, the user has been told already, and the next
/// frame shows the model.
void IAWorkbench::RedrawAfterFailure() noexcept
{
    TryTo([this] { m_View.Redraw(); });
}

bool IAWorkbench::SendEvent(const ToolEvent& event)
{
    BeginAssertionReports();
    const bool isSelecting = IsSelectToolOnTop();
    if (!isSelecting)
    {
        ForgetPicks();
    }
    if (IsClickOrKey(event.kind))
    {
        KeepModel();
    }
    const bool isMoving = IsMoveUnderWay();
    const bool done = RunAndTell(GetName(event.kind), "", [&] { PassToTool(event); });
    if (isMoving && m_pRecovery != nullptr)
    {
        m_pRecovery->MarkChanged();
    }
    if (!isSelecting)
    {
        PreparePicks(); // a move may have ended
    }
    FinishReports();
    return done;
}

bool IAWorkbench::IsMoveUnderWay() const
{
    const auto* move = dynamic_cast<const IAMoveTool*>(m_ToolsManager.GetCurrentTool());
    return move != nullptr && move->IsUnderWay();
}

bool IAWorkbench::IsSelectToolOnTop() const
{
    const IATool* tool = m_ToolsManager.GetCurrentTool();
    return tool != nullptr && tool->GetToolID() == ToolID::Select;
}

void IAWorkbench::PassToTool(const ToolEvent& event)
{
    switch (event.kind)
    {
    case ToolEvent::Kind::LeftButtonDown: return m_ToolsManager.OnLButtonDown(event.x, event.y, event.flags);
    case ToolEvent::Kind::LeftButtonUp: return m_ToolsManager.OnLButtonUp(event.x, event.y, event.flags);
    case ToolEvent::Kind::RightButtonDown: return m_ToolsManager.OnRButtonDown(event.x, event.y, event.flags);
    case ToolEvent::Kind::RightButtonUp: return m_ToolsManager.OnRButtonUp(event.x, event.y, event.flags);
    case ToolEvent::Kind::MouseMove: return m_ToolsManager.OnMouseMove(event.x, event.y, event.flags);
    case ToolEvent::Kind::KeyDown: return m_ToolsManager.OnKeyDown(event.key, event.flags);
    case ToolEvent::Kind::KeyUp: return m_ToolsManager.OnKeyUp(event.key, event.flags);
    case ToolEvent::Kind::SetCursor: return m_ToolsManager.OnSetCursor();
    }
}

void IAWorkbench::NewDocument()
{
    auto controller = std::make_unique<IAController>();
    ConnectController(*controller);
    m_View.Redraw();
    EndMoves(); // what was moved goes with the old model
    static_cast<IADrawSplatTool*>(m_ToolsManager.FindTool(ToolID::DrawSplat))->EndDrag();
    m_pController = std::move(controller);
    m_nImportedModel = 0;
}

/// Takes the tools off the stack down to the lowest that moves. What ends the moves has been done: this cannot fail.
/// @return whether a move was under way
bool IAWorkbench::EndMoves() noexcept
{
    bool hasEnded = false;
    const auto asMoveTool = [](IATool* tool) { return dynamic_cast<IAMoveTool*>(tool); };
    const std::vector<IATool*>& stack = m_ToolsManager.GetToolStack();
    while (std::any_of(stack.begin(), stack.end(), asMoveTool))
    {
        if (IAMoveTool* move = asMoveTool(stack.back()))
        {
            hasEnded = hasEnded || move->IsUnderWay();
            move->End();
        }
        m_ToolsManager.DropTool();
    }
    return hasEnded;
}

void IAWorkbench::ConnectController(IAController& controller)
{
    ForgetPicks();
    controller.SetView(&m_View);
    controller.SetCommandManager(&m_CommandManager);
    controller.ClearModels();
}

void IAWorkbench::ImportObj()
{
    ForgetPicks();
    {
        const CurrentFolderGuard folder;
        const unsigned modelBefore = m_pController->GetModelNumber();
        m_pController->ImportObj();
        if (m_pController->GetModelNumber() != modelBefore)
        {
            m_nImportedModel = m_pController->GetModelNumber();
        }
    }
    m_pController->Redraw();
}

void IAWorkbench::ExportObj()
{
    const CurrentFolderGuard folder;
    m_pController->ExportObj();
}

std::optional<std::filesystem::path> IAWorkbench::OpenDocument()
{
    const CurrentFolderGuard folder;
    return GetPlatform().AskOpenFile(AnyFile());
}

std::optional<std::filesystem::path> IAWorkbench::SaveDocument()
{
    const CurrentFolderGuard folder;
    return GetPlatform().AskSaveFile(AnyFile());
}
}
