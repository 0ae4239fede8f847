#include "CTessarineView.h"
#include "Answer.h"
#include "CTessarineApp.h"
#include "MainFrm.h"
#include <QKeyEvent>
#include <QMouseEvent>

namespace tessarine
{
/// An action of the user is under way while it lives.
class CTessarineView::Occupied
{
public:
    explicit Occupied(CTessarineView& view) : m_View(view) { m_View.m_bOccupied = true; }
    ~Occupied()
    {
        m_View.m_bOccupied = false;
        m_View.m_bBadFrame = false;
        Answer([] { CTessarineApp::Get().GetPlatform().CloseDeadDialogs(); });
        Answer([] { CTessarineApp::Get().GetPlatform().ForgetHiddenMessages(); });
        Answer([this] { m_View.CatchUp(); });
    }
    Occupied(const Occupied&) = delete;
    Occupied& operator=(const Occupied&) = delete;

private:
    CTessarineView& m_View;
};

CTessarineView::CTessarineView(CMainFrame& frame) : NativeGLWidget(&frame), m_Frame(frame)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
}

CTessarineView::~CTessarineView()
{
    if (m_bCreated)
    {
        m_Workbench.GetView().Destroy();
    }
}

int CTessarineView::OnCreate()
{
    m_bCreated = m_Workbench.GetView().Create() == 0;
    return m_bCreated ? 0 : -1;
}

void CTessarineView::OnInitialUpdate()
{
    m_Workbench.GetView().InitState();
}

bool CTessarineView::Perform(const std::string& name, Effect effect, const std::function<void()>& action)
{
    if (m_bOccupied)
    {
        return false;
    }
    const Occupied occupied(*this);
    return m_Workbench.Perform(name, effect, action);
}

bool CTessarineView::RunCommand(const std::string& name, int id)
{
    if (m_bOccupied)
    {
        return false;
    }
    const Occupied occupied(*this);
    return m_Router.Run(name, id);
}

/// While an action is under way the model may be half made; but what it asks the user comes before anything.
bool CTessarineView::MayDraw() const
{
    return m_bCreated && !m_bDrawing && (!m_bOccupied || CTessarineApp::Get().GetPlatform().IsAsking());
}

void CTessarineView::Draw()
{
    if (!MayDraw())
    {
        m_bMissed = true;
        return;
    }
    if (m_bBadFrame)
    {
        return; // told already; drawing again would tell it again, and without an end
    }
    FollowSize();
    m_bDrawing = true;
    const bool done = m_Workbench.Perform("显示", Effect::None, [this] { m_Workbench.GetView().Redraw(); });
    m_bBadFrame = !done || m_Workbench.GetView().HasLostContext();
    m_bDrawing = false;
}

void CTessarineView::FollowSize()
{
    const QSize size = GetPixelSize();
    if (size != m_Size)
    {
        m_Workbench.GetView().Resize(0, 0, size.width(), size.height());
        m_Size = size;
    }
}

/// What came while an action was under way.
void CTessarineView::CatchUp()
{
    if (m_bMissed)
    {
        m_bMissed = false;
        update();
    }
}

void CTessarineView::paintEvent(QPaintEvent* /*event*/)
{
    Draw();
}

void CTessarineView::resizeEvent(QResizeEvent* event)
{
    NativeGLWidget::resizeEvent(event);
    if (MayDraw())
    {
        FollowSize();
    }
    else
    {
        m_bMissed = true;
    }
}

bool CTessarineView::event(QEvent* event)
{
    if (event->type() == kRedrawEvent)
    {
        Draw();
        return true;
    }
    return NativeGLWidget::event(event);
}

void CTessarineView::Send(const ToolEvent& event)
{
    if (!m_bCreated || m_bOccupied)
    {
        return;
    }
    FollowSize();
    {
        const Occupied occupied(*this);
        m_Workbench.SendEvent(event);
    }
    if (event.kind != ToolEvent::Kind::MouseMove && event.kind != ToolEvent::Kind::SetCursor)
    {
        m_Frame.UpdateCommands();
    }
}

/// Nothing is captured: what happens outside while a button is held is not the view's.
void CTessarineView::SendMouse(ToolEvent::Kind kind, const QMouseEvent& event)
{
    if (!rect().contains(event.position().toPoint()))
    {
        return;
    }
    const QPoint place = ToPixels(event.position());
    const auto flags = static_cast<unsigned>(event.buttons().toInt());
    Send({ToolEvent::Kind::SetCursor, place.x(), place.y(), 0, flags});
    Send({kind, place.x(), place.y(), 0, flags});
}

void CTessarineView::SendKey(ToolEvent::Kind kind, const QKeyEvent& event)
{
    Send({kind, 0, 0, static_cast<unsigned>(event.key()), event.nativeModifiers()});
}

void CTessarineView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
    {
        SendMouse(ToolEvent::Kind::LeftButtonDown, *event);
    }
    else if (event->button() == Qt::RightButton)
    {
        SendMouse(ToolEvent::Kind::RightButtonDown, *event);
    }
    NativeGLWidget::mousePressEvent(event);
}

void CTessarineView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
    {
        SendMouse(ToolEvent::Kind::LeftButtonUp, *event);
    }
    else if (event->button() == Qt::RightButton)
    {
        SendMouse(ToolEvent::Kind::RightButtonUp, *event);
    }
    NativeGLWidget::mouseReleaseEvent(event);
}

void CTessarineView::mouseMoveEvent(QMouseEvent* event)
{
    SendMouse(ToolEvent::Kind::MouseMove, *event);
    NativeGLWidget::mouseMoveEvent(event);
}

void CTessarineView::keyPressEvent(QKeyEvent* event)
{
    SendKey(ToolEvent::Kind::KeyDown, *event);
    NativeGLWidget::keyPressEvent(event);
}

void CTessarineView::keyReleaseEvent(QKeyEvent* event)
{
    SendKey(ToolEvent::Kind::KeyUp, *event);
    NativeGLWidget::keyReleaseEvent(event);
}

/// The tools that have a cursor set it now; for all others the pointer comes in as the arrow.
void CTessarineView::enterEvent(QEnterEvent* event)
{
    CTessarineApp::Get().GetPlatform().SetArrowCursor();
    const QPoint place = ToPixels(event->position());
    Send({ToolEvent::Kind::SetCursor, place.x(), place.y(), 0, 0});
    NativeGLWidget::enterEvent(event);
}
}
