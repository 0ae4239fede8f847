#pragma once

namespace tessarine
{
class MANCommandManager;
class MANToolsManager;
class Open3DView;

/// A small state machine that turns the events of the view into the parameters of a command. The one on top of
/// the stack (MANToolsManager) is the mode of the view. A tool owns its command while it has one.
///
/// Positions are pixels of the client area, y down. Flags come as the window system gives them.
class IATool
{
public:
    virtual ~IATool() = default;
    IATool(const IATool&) = delete;
    IATool& operator=(const IATool&) = delete;

    /// Comes on top of the stack. View and command manager are set. What it throws keeps the tool off the
    /// stack.
    virtual void Enter() {}
    /// Is removed from the stack.
    virtual void Leave() {}
    virtual void OnLButtonDown(int /*x*/, int /*y*/, unsigned /*flags*/) {}
    virtual void OnLButtonUp(int /*x*/, int /*y*/, unsigned /*flags*/) {}
    virtual void OnRButtonDown(int /*x*/, int /*y*/, unsigned /*flags*/) {}
    virtual void OnRButtonUp(int /*x*/, int /*y*/, unsigned /*flags*/) {}
    virtual void OnMouseMove(int /*x*/, int /*y*/, unsigned /*flags*/) {}
    virtual void OnKeyDown(unsigned /*key*/, unsigned /*flags*/) {}
    virtual void OnKeyUp(unsigned /*key*/, unsigned /*flags*/) {}
    /// The window system asks which cursor the view has.
    virtual void OnSetCursor() {}

    unsigned GetToolID() const { return m_nToolID; }
    void SetToolID(unsigned id) { m_nToolID = id; }
    void SetView(Open3DView* view) { m_pView = view; }
    void SetCommandManager(MANCommandManager* manager) { m_pCommandManager = manager; }
    void SetToolManager(MANToolsManager* manager) { m_pToolManager = manager; }

protected:
    IATool() = default;

    unsigned m_nToolID = 0;
    Open3DView* m_pView = nullptr;
    MANCommandManager* m_pCommandManager = nullptr;
    MANToolsManager* m_pToolManager = nullptr;
};
}
