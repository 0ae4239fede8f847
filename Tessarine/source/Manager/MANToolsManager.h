#pragma once
#include "IATool.h"
#include <memory>
#include <vector>

namespace tessarine
{
/// The ids of the tools: a space of their own, although some numbers are those of commands, too.
namespace ToolID
{
inline constexpr unsigned MoveCamera = 0x4000001;
inline constexpr unsigned Zoom = 0x4000002;
inline constexpr unsigned Orbit = 0x4000003;
inline constexpr unsigned Around = 0x4000004;
inline constexpr unsigned Select = 0x5000001;
inline constexpr unsigned DrawSplat = 0x5000006;
inline constexpr unsigned MoveVertex = 0x6000001;
inline constexpr unsigned MoveFace = 0x6000003;
inline constexpr unsigned MoveSolid = 0x6000004;
}

/// Makes all tools once, keeps those in use on a stack, and passes the events of the view to the one on top.
/// From the first push on there is always one.
class MANToolsManager
{
public:
    /// With the nine tools, and none on the stack.
    MANToolsManager();
    MANToolsManager(const MANToolsManager&) = delete;
    MANToolsManager& operator=(const MANToolsManager&) = delete;
    /// Deletes the tools. None of them leaves.
    ~MANToolsManager() = default;

    /// Makes a tool of the class that `id` names, and owns it.
    ///
    /// Fails   An unknown id gives a message box and null.
    IATool* RegisterTool(unsigned id);
    /// Null where no tool has the id.
    IATool* FindTool(unsigned id) const;

    /// The tool on top; null before the first push.
    IATool* GetCurrentTool() const { return m_pCurrentTool; }
    /// The end is the top.
    const std::vector<IATool*>& GetToolStack() const { return m_ToolStack; }

    void SetView(Open3DView* view) { m_pView = view; }
    void SetCommandManager(MANCommandManager* manager) { m_pCommandManager = manager; }

    /// Puts a tool on top, if it is not there, and lets it enter. The tool below is not told.
    ///
    /// Fails   A null tool is an assertion. A tool that cannot enter is taken off again, and what it threw goes
    ///         on.
    void PushTool(IATool* tool);

    /// Lets the tool on top leave and takes it off. The tool below goes on in the state that it was left in.
    ///
    /// Says    "Size of current tool stack: " and the size before.
    /// Fails   An empty stack is an assertion.
    /// Kept    Without a tool below, the tool that left stays the current one.
    IATool* PopTool();
    /// The same where there is no way back, as what the tool was for has been done: neither a console that cannot be
    /// written nor a tool that refuses to leave keeps it. There is one.
    void DropTool() noexcept;

    /// Puts the tool of an id in the place of the one on top. Nothing where no tool has the id, or it is the
    /// one on top.
    ///
    /// Fails   Where the new tool cannot enter the one before it enters again, and what was thrown goes on.
    void ChangeTool(unsigned id);

    // The events of the view. No tool on the stack is an assertion.

    void OnLButtonDown(int x, int y, unsigned flags) { GetTop().OnLButtonDown(x, y, flags); }
    void OnLButtonUp(int x, int y, unsigned flags) { GetTop().OnLButtonUp(x, y, flags); }
    void OnRButtonDown(int x, int y, unsigned flags) { GetTop().OnRButtonDown(x, y, flags); }
    void OnRButtonUp(int x, int y, unsigned flags) { GetTop().OnRButtonUp(x, y, flags); }
    void OnMouseMove(int x, int y, unsigned flags) { GetTop().OnMouseMove(x, y, flags); }
    void OnKeyDown(unsigned key, unsigned flags) { GetTop().OnKeyDown(key, flags); }
    /// Kept: a key that goes up reaches no tool.
    void OnKeyUp(unsigned /*key*/, unsigned /*flags*/) {}
    void OnSetCursor() { GetTop().OnSetCursor(); }

private:
    IATool& GetTop() const;
    void TellSize() const;
    void TakeOff(IATool* tool) noexcept;
    void ReturnTo(IATool* tool) noexcept;

    IATool* m_pCurrentTool = nullptr;
    std::vector<IATool*> m_ToolStack;
    std::vector<std::unique_ptr<IATool>> m_RegisteredTools;
    Open3DView* m_pView = nullptr;
    MANCommandManager* m_pCommandManager = nullptr;
};
}
