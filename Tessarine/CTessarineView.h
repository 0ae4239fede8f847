#pragma once
#include "IACommandRouter.h"
#include "IAWorkbench.h"
#include "NativeGLWidget.h"
#include "ToolEvent.h"
#include "resource.h"
#include <QEvent>

namespace tessarine
{
class CMainFrame;

/// The view in the middle of the main window. It holds the workbench, hands mouse and keys to the tool on top,
/// and shows the frames that are drawn.
class CTessarineView : public NativeGLWidget
{
public:
    /// An event of this type draws a frame. Anybody may post it to the view.
    static constexpr QEvent::Type kRedrawEvent = static_cast<QEvent::Type>(ResourceID::RedrawMessage);

    explicit CTessarineView(CMainFrame& frame);
    ~CTessarineView() override;

    /// Gets the surface to draw on.
    /// @return 0, or -1 after the user was told why there is none
    int OnCreate();
    /// Puts GL into its fixed state. Once, behind OnCreate.
    void OnInitialUpdate();

    IAWorkbench& GetWorkbench() { return m_Workbench; }

    /// Runs an entry through the router.
    /// @param name tells it to the user
    /// @return whether it ran to its end
    bool RunCommand(const std::string& name, int id);
    MenuState GetState(int id) const { return m_Router.GetState(id); }

    /// The workbench's boundary. While an action is under way the view neither draws by itself nor passes events
    /// on, and a second action is not begun.
    bool Perform(const std::string& name, Effect effect, const std::function<void()>& action);
    bool IsOccupied() const { return m_bOccupied; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;

private:
    class Occupied;

    void Draw();
    bool MayDraw() const;
    void FollowSize();
    void CatchUp();
    void Send(const ToolEvent& event);
    void SendMouse(ToolEvent::Kind kind, const QMouseEvent& event);
    void SendKey(ToolEvent::Kind kind, const QKeyEvent& event);

    CMainFrame& m_Frame;
    IAWorkbench m_Workbench;
    IACommandRouter m_Router{m_Workbench};
    QSize m_Size;             ///< in pixels, as the workbench's view has it
    bool m_bCreated = false;  ///< whether there is a surface
    bool m_bOccupied = false; ///< an action is under way
    bool m_bDrawing = false;  ///< a frame is under way
    bool m_bMissed = false;   ///< something was to be drawn meanwhile
    bool m_bBadFrame = false; ///< the last frame failed: the next command draws again
};
}
