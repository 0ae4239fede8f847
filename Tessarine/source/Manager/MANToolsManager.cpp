#include "MANToolsManager.h"
#include "Assert.h"
#include "Console.h"
#include "IAAroundTool.h"
#include "IADrawSplatTool.h"
#include "IAMoveCameraTool.h"
#include "IAMoveFaceTool.h"
#include "IAMoveSolidTool.h"
#include "IAMoveVertexTool.h"
#include "IAOrbitTool.h"
#include "IASelectTool.h"
#include "IAZoomTool.h"
#include "Platform.h"
#include "TryTo.h"
#include <algorithm>

namespace tessarine
{
namespace
{
template <class TTool>
std::unique_ptr<IATool> Make()
{
    return std::make_unique<TTool>();
}

struct ToolClass
{
    unsigned id;
    std::unique_ptr<IATool> (*make)();
};

/// In the order in which they are registered.
constexpr ToolClass kToolClasses[] = {
    {ToolID::Select, Make<IASelectTool>},         {ToolID::Around, Make<IAAroundTool>},
    {ToolID::Orbit, Make<IAOrbitTool>},           {ToolID::Zoom, Make<IAZoomTool>},
    {ToolID::MoveCamera, Make<IAMoveCameraTool>}, {ToolID::MoveVertex, Make<IAMoveVertexTool>},
    {ToolID::MoveFace, Make<IAMoveFaceTool>},     {ToolID::MoveSolid, Make<IAMoveSolidTool>},
    {ToolID::DrawSplat, Make<IADrawSplatTool>},
};
}

MANToolsManager::MANToolsManager()
{
    for (const ToolClass& entry : kToolClasses)
    {
        RegisterTool(entry.id);
    }
}

IATool* MANToolsManager::RegisterTool(unsigned id)
{
    const auto* found = std::find_if(std::begin(kToolClasses), std::end(kToolClasses),
                                     [id](const ToolClass& entry) { return entry.id == id; });
    if (found == std::end(kToolClasses))
    {
        ShowMessage("This tool does not exist!");
        return nullptr;
    }
    std::unique_ptr<IATool> tool = found->make();
    tool->SetToolID(id);
    tool->SetToolManager(this);
    m_RegisteredTools.push_back(std::move(tool));
    return m_RegisteredTools.back().get();
}

IATool* MANToolsManager::FindTool(unsigned id) const
{
    const auto found = std::find_if(m_RegisteredTools.begin(), m_RegisteredTools.end(),
                                    [id](const auto& tool) { return tool->GetToolID() == id; });
    return found == m_RegisteredTools.end() ? nullptr : found->get();
}

void MANToolsManager::PushTool(IATool* tool)
{
    ASSERT(tool != nullptr);
    if (tool == m_pCurrentTool)
    {
        return;
    }
    m_ToolStack.push_back(tool);
    tool->SetView(m_pView);
    tool->SetCommandManager(m_pCommandManager);
    try
    {
        tool->Enter();
    }
    catch (...)
    {
        m_ToolStack.pop_back();
        throw;
    }
    m_pCurrentTool = tool;
}

IATool* MANToolsManager::PopTool()
{
    TellSize();
    ASSERT(!m_ToolStack.empty());
    IATool* top = m_ToolStack.back();
    top->Leave();
    TakeOff(top);
    return top;
}

void MANToolsManager::DropTool() noexcept
{
    IATool* top = m_ToolStack.back();
    TryTo([this] { TellSize(); });
    TryTo([top] { top->Leave(); });
    TakeOff(top);
}

void MANToolsManager::TellSize() const
{
    DebugConsole() << "Size of current tool stack: " << m_ToolStack.size() << '\n';
}

void MANToolsManager::TakeOff(IATool* tool) noexcept
{
    // By value and from below, should a tool stand on the stack twice.
    m_ToolStack.erase(std::find(m_ToolStack.begin(), m_ToolStack.end(), tool));
    if (!m_ToolStack.empty())
    {
        m_pCurrentTool = m_ToolStack.back();
    }
}

void MANToolsManager::ChangeTool(unsigned id)
{
    IATool* tool = FindTool(id);
    if (tool == nullptr || tool == m_pCurrentTool)
    {
        return;
    }
    IATool* before = PopTool();
    try
    {
        PushTool(tool);
    }
    catch (...)
    {
        ReturnTo(before);
        throw;
    }
}

/// Puts a tool back that has just been taken off; there is room for it. If it cannot enter any more it stays
/// idle, and another can still be chosen.
void MANToolsManager::ReturnTo(IATool* tool) noexcept
{
    m_ToolStack.push_back(tool);
    m_pCurrentTool = tool;
    TryTo([tool] { tool->Enter(); }); // the user is told what ended the change
}

IATool& MANToolsManager::GetTop() const
{
    ASSERT(m_pCurrentTool != nullptr);
    return *m_pCurrentTool;
}
}
