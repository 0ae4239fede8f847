#include "IAWorkbench.h"
#include "Assert.h"
#include "CExcp.h"
#include "Console.h"
#include "Failure.h"
#include "File.h"
#include "Platform.h"
#include <exception>
#include <new>

namespace tessarine
{
namespace
{
constexpr char kModelStays[] = "; the model is as it was";

/// A sentence for an exception of the system that carries no message.
std::string DescribeByClass(const IException& exception)
{
    if (dynamic_cast<const CExcpDivideZero*>(&exception) != nullptr)
    {
        return "a division by zero, or a vector of length zero";
    }
    if (dynamic_cast<const CExcpSingularMatrix*>(&exception) != nullptr)
    {
        return "a matrix that has no inverse";
    }
    return "an error that has no description";
}

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

/// Why the operation ended, by the exception that is being handled.
std::string DescribeFailure()
{
    try
    {
        throw;
    }
    catch (const AssertionFailure& failure)
    {
        const AssertionSite& site = failure.GetSite();
        return std::string("an internal check failed: ") + site.expression + " (" + site.path + ", line " +
               std::to_string(site.line) + ")" + kModelStays;
    }
    catch (const Failure& failure)
    {
        return failure.GetMessage();
    }
    catch (const IException& exception)
    {
        const std::string& message = exception.GetMessage();
        const bool isContextOnly = message.empty() || message.back() == ' ';
        return message + (isContextOnly ? DescribeByClass(exception) : "") + kModelStays;
    }
    catch (const std::bad_alloc&)
    {
        return std::string("not enough memory") + kModelStays;
    }
    catch (const std::exception& exception)
    {
        return exception.what();
    }
    catch (...)
    {
        return std::string("an unknown error") + kModelStays;
    }
}

/// Tells the user about the exception that is being handled.
void ShowFailure(const std::string& operation) noexcept
{
    try
    {
        GetPlatform().ShowFailure(operation, DescribeFailure(), WasFailureShown());
    }
    catch (...) // no memory even for the message: the caller still learns that the operation failed
    {
    }
}

void FinishReports() noexcept
{
    try
    {
        EndAssertionReports();
        DebugConsole().Flush();
    }
    catch (...) // no memory for the counts; the reports themselves are out
    {
    }
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
    m_View.InitState();
    return 0;
}

bool IAWorkbench::Perform(const std::string& operation, Effect effect, const std::function<void()>& action)
{
    BeginAssertionReports();
    const bool done = RunOrRestore(operation, effect, action);
    if (!done && effect != Effect::None)
    {
        RedrawAfterFailure();
    }
    FinishReports();
    return done;
}

bool IAWorkbench::RunOrRestore(const std::string& operation, Effect effect,
                               const std::function<void()>& action)
{
    try
    {
        IACheckpoint before(*m_pController, m_View, m_CommandManager, effect);
        try
        {
            action();
        }
        catch (...)
        {
            before.Restore();
            throw;
        }
        return true;
    }
    catch (...)
    {
        ShowFailure(operation);
        return false;
    }
}

/// The operation may have shown some of what is no more.
void IAWorkbench::RedrawAfterFailure() noexcept
{
    try
    {
        m_View.Redraw();
    }
    catch (...) // the user has been told already; the next frame shows the model
    {
    }
}

bool IAWorkbench::SendEvent(const ToolEvent& event)
{
    return Perform(GetName(event.kind), Effect::None, [&] { PassToTool(event); });
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
    m_pController = std::move(controller);
}

void IAWorkbench::ConnectController(IAController& controller)
{
    controller.SetView(&m_View);
    controller.SetCommandManager(&m_CommandManager);
    controller.ClearModels();
}

void IAWorkbench::ImportObj()
{
    {
        const CurrentFolderGuard folder;
        m_pController->ImportObj();
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
