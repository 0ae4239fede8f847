#include "MainFrm.h"
#include "Answer.h"
#include "CTessarineApp.h"
#include "CTessarineDoc.h"
#include "CTessarineView.h"
#include "LockedKeys.h"
#include "MenuTables.h"
#include "Pictures.h"
#include "ProgramSettings.h"
#include "Resources.h"
#include "StatusPanes.h"
#include "resource.h"
#include <QAction>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QStatusTipEvent>
#include <QTimer>
#include <QToolBar>

namespace tessarine
{
namespace
{
constexpr int kButtonSize = 24;
constexpr QSize kUsualSize(960, 720);
constexpr int kRecentNameLength = 60;

/// How wide a placeholder's text is in a font with Chinese characters of one width and all others of half of it.
int GetPaneWidth(const QFontMetrics& metrics, const QString& placeholder)
{
    int halves = 0;
    for (const QChar character : placeholder)
    {
        halves += character.unicode() < 0x100 ? 1 : 2;
    }
    return halves * metrics.horizontalAdvance(u'宽') / 2;
}

/// A menu's name for a file, with its number as the key.
QString GetRecentName(int index, QString path)
{
    if (path.size() > kRecentNameLength)
    {
        const int half = kRecentNameLength / 2;
        path = path.left(half - 1) + "…" + path.right(half);
    }
    return QString("&%1 %2").arg(index + 1).arg(path.replace('&', "&&"));
}

/// Moved, the other program would remove the file.
void AcceptCopy(QDropEvent& event)
{
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

/// The only file that is dragged, where it is a model; else empty.
QString GetDraggedModel(const QMimeData& data)
{
    const QList<QUrl> urls = data.urls();
    const QString path = urls.size() == 1 ? urls.constFirst().toLocalFile() : QString();
    return path.endsWith(".obj", Qt::CaseInsensitive) ? path : QString();
}

constexpr char kPlaceKey[] = "Main Frame/Place";
constexpr char kBarsKey[] = "Main Frame/Bars";

/// Answers the question that an import asks while it lives, and no other.
class FileAnswer
{
public:
    FileAnswer(QtPlatform& platform, std::filesystem::path path) : m_Platform(platform)
    {
        m_Platform.AnswerFile(std::move(path));
    }
    ~FileAnswer() { m_Platform.ForgetFileAnswer(); }
    FileAnswer(const FileAnswer&) = delete;
    FileAnswer& operator=(const FileAnswer&) = delete;

private:
    QtPlatform& m_Platform;
};

bool IsRecentFile(int id)
{
    return id >= ResourceID::RecentFile1 && id < ResourceID::RecentFile1 + CRecentFileList::kMostFiles;
}
}

/// While it lives, the pointer waits and the message line names the command.
class CMainFrame::RunningCommand
{
public:
    RunningCommand(CMainFrame& frame, std::string name) : m_Frame(frame)
    {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        m_Frame.m_strRunning = std::move(name);
        Answer(
            [this]
            {
                m_Frame.ShowMessageLine({});
                m_Frame.m_Panes[kMessagePane]->repaint();
            });
    }
    ~RunningCommand()
    {
        m_Frame.m_strRunning.clear();
        Answer(
            [this]
            {
                QGuiApplication::restoreOverrideCursor();
                m_Frame.ShowMessageLine({});
            });
    }
    RunningCommand(const RunningCommand&) = delete;
    RunningCommand& operator=(const RunningCommand&) = delete;

private:
    CMainFrame& m_Frame;
};

CMainFrame::CMainFrame(CTessarineApp& app)
    : m_App(app), m_Actions(*this, [this](int id) { Answer([this, id] { OnCommand(id); }); })
{
    setWindowTitle(QString::fromStdString(GetWindowTitle({})));
    setWindowIcon(LoadPicture(ResourceID::MainFrame));
    setIconSize({kButtonSize, kButtonSize});
    resize(kUsualSize); // when it is not maximised
    setAcceptDrops(true);
    setContextMenuPolicy(Qt::NoContextMenu);
    m_App.GetPlatform().SetMainWindow(this);
}

/// The view goes first, while the frame is whole: it ends its GL context with its window still there.
CMainFrame::~CMainFrame()
{
    qApp->removeEventFilter(this);
    m_pDocument.reset();
    delete m_pView;
}

bool CMainFrame::OnCreate()
{
    m_pToolBar = CreateToolBar(ResourceID::MainFrame, "工具栏", GetMainToolbar());
    m_pSelectToolBar = CreateToolBar(ResourceID::SelectToolbar, "选择工具栏", GetSelectToolbar());
    addToolBar(Qt::TopToolBarArea, m_pToolBar);
    insertToolBar(m_pToolBar, m_pSelectToolBar); // to its left, in the same row
    CreateStatusBar();
    for (const MenuLine& menu : GetMenuBar())
    {
        FillMenu(*menuBar()->addMenu(menu.title), menu.items);
    }
    CreatePopupMenus();
    if (!CreateView())
    {
        return false;
    }
    m_pDocument = std::make_unique<CTessarineDoc>(*this);
    UpdateCommands();
    return true;
}

void CMainFrame::RestorePlace()
{
    const QSettings settings = OpenSettings();
    restoreGeometry(settings.value(kPlaceKey).toByteArray());
    restoreState(settings.value(kBarsKey).toByteArray());
}

bool CMainFrame::ImportModel(const QString& path)
{
    const FileAnswer answer(m_App.GetPlatform(), QFile::encodeName(path).toStdString());
    const bool done = RunCommand(ResourceID::ImportObj);
    UpdateCommands();
    return done;
}

void CMainFrame::FillMenu(QMenu& menu, std::span<const MenuLine> lines)
{
    connect(&menu, &QMenu::aboutToShow, this, [this] { Answer([this] { UpdateCommands(); }); });
    for (const MenuLine& line : lines)
    {
        if (!line.items.empty())
        {
            FillMenu(*menu.addMenu(line.title), line.items);
        }
        else if (line.id == ResourceID::RecentFile1)
        {
            AddRecentFiles(menu, line);
        }
        else if (line.id != 0)
        {
            QAction* action = m_Actions.Get(line.id, line.title);
            action->setCheckable(action->isCheckable() || FindBar(line.id) != nullptr);
            menu.addAction(action);
        }
        else
        {
            menu.addSeparator();
        }
    }
}

void CMainFrame::CreatePopupMenus()
{
    std::vector<QPointer<QMenu>> menus;
    for (const MenuLine& line : GetSelectionMenus())
    {
        menus.emplace_back(new QMenu(line.title, this));
        FillMenu(*menus.back(), line.items);
    }
    m_App.GetPlatform().SetPopupMenus(std::move(menus));
}

void CMainFrame::AddRecentFiles(QMenu& menu, const MenuLine& line)
{
    for (int i = 0; i < CRecentFileList::kMostFiles; ++i)
    {
        QAction* action = m_Actions.Get(line.id + i, line.title);
        action->setStatusTip(FindCommandText(line.id)->status);
        menu.addAction(action);
    }
}

/// An empty list is one line that says what would stand there.
void CMainFrame::UpdateRecentFiles()
{
    const QStringList& files = m_App.GetRecentFiles().GetFiles();
    for (int i = 0; i < CRecentFileList::kMostFiles; ++i)
    {
        QAction* action = m_Actions.Get(ResourceID::RecentFile1 + i);
        const bool isThere = i < files.size();
        action->setVisible(isThere || i == 0);
        action->setText(isThere ? GetRecentName(i, files[i]) : QString("最近的文件"));
    }
}

QToolBar* CMainFrame::CreateToolBar(int id, const QString& title, std::span<const int> buttons)
{
    auto* bar = new QToolBar(title, this);
    bar->setObjectName(QString::number(id));
    bar->setAllowedAreas(Qt::AllToolBarAreas);
    for (const int button : buttons)
    {
        if (button == 0)
        {
            bar->addSeparator();
        }
        else
        {
            bar->addAction(m_Actions.Get(button));
        }
    }
    return bar;
}

void CMainFrame::CreateStatusBar()
{
    for (std::size_t i = 0; i < m_Panes.size(); ++i)
    {
        auto* pane = new QLabel(kPaneTexts[i]);
        pane->setTextFormat(Qt::PlainText);
        pane->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        const bool takesTheRest = i == kMessagePane;
        if (takesTheRest)
        {
            pane->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        }
        else
        {
            pane->setFixedWidth(GetPaneWidth(pane->fontMetrics(), kPaneTexts[i]) +
                                2 * (pane->frameWidth() + pane->fontMetrics().averageCharWidth()));
        }
        statusBar()->addPermanentWidget(pane, takesTheRest ? 1 : 0);
        m_Panes[i] = pane;
        m_App.GetPlatform().SetPane(static_cast<int>(i), pane);
    }
    UpdateKeyPanes();
    qApp->installEventFilter(this);
}

bool CMainFrame::CreateView()
{
    m_pView = new CTessarineView(*this);
    m_App.GetPlatform().SetView(m_pView);
    setCentralWidget(m_pView);
    return m_pView->OnCreate() == 0;
}

void CMainFrame::OnCommand(int id)
{
    if (!OnFrameCommand(id) && !m_App.OnCommand(id) && !m_pDocument->OnCommand(id))
    {
        RunCommand(id);
    }
    UpdateCommands();
}

/// A command of the document may take its time, one of the view does not.
/// @return whether it ran to its end
bool CMainFrame::RunCommand(int id)
{
    const MenuEntry* entry = FindMenuEntry(id);
    const std::string name = m_Actions.Get(id)->text().remove('&').toStdString();
    std::optional<RunningCommand> running;
    if (entry != nullptr && entry->handler == MenuHandler::Document && !IsCommandRunning())
    {
        running.emplace(*this, name);
    }
    const bool done = m_pView->RunCommand(name, id);
    if (done && id == ResourceID::ImportObj)
    {
        m_pDocument->OnImported(m_App.GetPlatform().GetChosenFile());
    }
    return done;
}

bool CMainFrame::OnFrameCommand(int id)
{
    if (QWidget* bar = FindBar(id))
    {
        bar->setVisible(bar->isHidden());
        return true;
    }
    if (id == ResourceID::AppExit)
    {
        close();
        return true;
    }
    return false;
}

QWidget* CMainFrame::FindBar(int id) const
{
    switch (id)
    {
    case ResourceID::ViewToolbar: return m_pToolBar;
    case ResourceID::ViewSelectToolbar: return m_pSelectToolBar;
    case ResourceID::ViewStatusBar: return statusBar();
    case ResourceID::ViewConsole: return &m_App.GetConsole();
    default: return nullptr;
    }
}

MenuState CMainFrame::GetState(int id) const
{
    if (const QWidget* bar = FindBar(id))
    {
        return {true, !bar->isHidden()};
    }
    if (IsRecentFile(id))
    {
        return {id - ResourceID::RecentFile1 < m_App.GetRecentFiles().GetFiles().size(), false};
    }
    if (id == ResourceID::AppExit)
    {
        return {true, false};
    }
    return m_pView->GetState(id);
}

void CMainFrame::UpdateCommands()
{
    UpdateRecentFiles();
    m_Actions.Update([this](int id) { return GetState(id); });
}

/// What is said about the entry under the mouse; without one, the command that is under way, or that all is ready.
void CMainFrame::ShowMessageLine(const QString& text)
{
    if (!text.isEmpty())
    {
        m_Panes[kMessagePane]->setText(text);
    }
    else
    {
        m_Panes[kMessagePane]->setText(IsCommandRunning() ? QString::fromStdString(m_strRunning)
                                                          : QString(kPaneTexts[kMessagePane]));
    }
}

bool CMainFrame::event(QEvent* event)
{
    if (event->type() == QEvent::StatusTip)
    {
        ShowMessageLine(static_cast<QStatusTipEvent*>(event)->tip());
        return true;
    }
    return QMainWindow::event(event);
}

void CMainFrame::closeEvent(QCloseEvent* event)
{
    event->setAccepted(m_pView == nullptr || !m_pView->IsOccupied());
    if (event->isAccepted())
    {
        QSettings settings = OpenSettings();
        settings.setValue(kPlaceKey, saveGeometry());
        settings.setValue(kBarsKey, saveState());
    }
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event)
{
    if (!m_pView->IsOccupied() && !GetDraggedModel(*event->mimeData()).isEmpty())
    {
        AcceptCopy(*event);
    }
}

void CMainFrame::dropEvent(QDropEvent* event)
{
    AcceptCopy(*event);
    // Once the other program has its answer: an import may take its time, and ask.
    QTimer::singleShot(0, this,
                       [this, path = GetDraggedModel(*event->mimeData())]
                       { Answer([&] { ImportWhenFree(path); }); });
}

/// A command may have begun meanwhile.
void CMainFrame::ImportWhenFree(const QString& path)
{
    if (m_pView->IsOccupied())
    {
        constexpr int kPause = 100; // milliseconds
        QTimer::singleShot(kPause, this, [this, path] { Answer([&] { ImportWhenFree(path); }); });
        return;
    }
    ImportModel(path);
}

/// The keys that stay down change anywhere, also while another program has the keyboard.
bool CMainFrame::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type())
    {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ApplicationActivate: UpdateKeyPanes(); break;
    default: break;
    }
    return QMainWindow::eventFilter(watched, event);
}

void CMainFrame::UpdateKeyPanes()
{
    const LockedKeys keys = ReadLockedKeys();
    m_Panes[kFirstKeyPane]->setEnabled(keys.capitals);
    m_Panes[kFirstKeyPane + 1]->setEnabled(keys.numbers);
    m_Panes[kFirstKeyPane + 2]->setEnabled(keys.scrolling);
}
}
