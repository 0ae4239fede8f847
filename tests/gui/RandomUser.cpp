#include "RandomUser.h"
#include "CTessarineView.h"
#include "MainFrm.h"
#include "MenuTables.h"
#include "StartOptions.h"
#include "resource.h"
#include <QApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QEventLoop>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTest>
#include <QThread>
#include <QToolBar>
#include <QToolButton>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>

namespace tessarine
{
namespace
{
constexpr int kBetweenEvents = 1; // milliseconds

/// What makes a model, or makes it grow, is chosen more often than one entry of many would be.
constexpr int kFavourites[] = {
    ResourceID::ImportObj,     ResourceID::ImportObj,      ResourceID::ImportObj,
    ResourceID::SubdivideLoop, ResourceID::SubdivideLoop,  ResourceID::SubdivideAdaptive,
    ResourceID::ExportObj,     ResourceID::LightingDialog, ResourceID::RefineTwoStep,
    ResourceID::TwoStepFirst,  ResourceID::SelectSolids,   ResourceID::FileOpen,
    ResourceID::RecentFile1,   ResourceID::SelectTool};

constexpr Qt::Key kKeys[] = {
    Qt::Key_A,     Qt::Key_X,      Qt::Key_Z,      Qt::Key_0,        Qt::Key_9,         Qt::Key_Space,
    Qt::Key_Tab,   Qt::Key_Return, Qt::Key_Escape, Qt::Key_Delete,   Qt::Key_Backspace, Qt::Key_Left,
    Qt::Key_Right, Qt::Key_Up,     Qt::Key_Down,   Qt::Key_Home,     Qt::Key_End,       Qt::Key_PageUp,
    Qt::Key_F1,    Qt::Key_F10,    Qt::Key_Menu,   Qt::Key_N,        Qt::Key_O,         Qt::Key_S,
    Qt::Key_V,     Qt::Key_C,      Qt::Key_Shift,  Qt::Key_CapsLock, Qt::Key_Alt};

constexpr Qt::KeyboardModifier kModifiers[] = {Qt::NoModifier,      Qt::NoModifier,    Qt::NoModifier,
                                               Qt::ControlModifier, Qt::ShiftModifier, Qt::AltModifier};

/// Names without a model behind them, and numbers.
constexpr const char* kTexts[] = {"absent.obj", "wrong.txt", "wrong.Obj", "data", "新模型.obj",   "new",
                                  "0.05",       "1e300",     "-1",        "",     "two words.obj"};

std::string Describe(const QWidget& widget)
{
    return widget.metaObject()->className() + (" " + widget.windowTitle().toStdString());
}

std::string Describe(QPoint place)
{
    return " " + std::to_string(place.x()) + " " + std::to_string(place.y());
}

void CollectEntries(std::span<const MenuLine> lines, std::vector<int>& ids)
{
    for (const MenuLine& line : lines)
    {
        CollectEntries(line.items, ids);
        if (line.id != 0 && line.id != ResourceID::AppExit) // closing the window is a habit of its own
        {
            ids.push_back(line.id);
        }
    }
}

/// The entries of the menu bar, and once more those that are chosen more often.
const std::vector<int>& GetEntries()
{
    static const std::vector<int> entries = []
    {
        std::vector<int> ids(std::begin(kFavourites), std::end(kFavourites));
        CollectEntries(GetMenuBar(), ids);
        return ids;
    }();
    return entries;
}

std::size_t CountFaces(CTessarineView& view)
{
    return view.GetWorkbench().GetController().GetElementManager().GetFaceArray().size();
}

/// The window below a widget that the display's events go to.
QWindow* WindowOf(const QWidget& widget)
{
    return widget.window()->windowHandle();
}
}

const RandomUser::Habit RandomUser::kHabits[] = {
    {28, &RandomUser::MoveOverView},    {8, &RandomUser::PressOnView},
    {8, &RandomUser::ReleaseOnView},    {8, &RandomUser::ClickOnView},
    {7, &RandomUser::OpenPopup},        {3, &RandomUser::TurnWheel},
    {4, &RandomUser::TypeOnWindow},     {1, &RandomUser::PostRedraw},
    {8, &RandomUser::ClickButton},      {12, &RandomUser::ChooseEntry},
    {2, &RandomUser::OpenMenu},         {4, &RandomUser::DropFile},
    {2, &RandomUser::Resize},           {1, &RandomUser::Minimise},
    {2, &RandomUser::ChangeFocus},      {1, &RandomUser::CloseWindow},
    {6, &RandomUser::UseSettingDialog}, {1, &RandomUser::CloseSettingDialog}};

RandomUser::RandomUser(unsigned seed, std::filesystem::path folder, const std::string& trace)
    : m_Choice(seed), m_Folder(std::move(folder))
{
    if (!trace.empty())
    {
        m_Trace.open(trace);
    }
    m_Next.setSingleShot(true);
    m_Next.setInterval(kBetweenEvents);
    m_Next.callOnTimeout([this] { Tick(); });
}

CTessarineView& RandomUser::View()
{
    return Frame().GetView();
}

void RandomUser::Note(const std::string& event)
{
    m_Trace << m_nDone << ' ' << event << std::endl; // to be there when the program ends with the event
}

void RandomUser::DoEvents(int count)
{
    m_nLeft = count;
    m_nOuterLevel = QThread::currentThread()->loopLevel() + 1;
    QEventLoop loop;
    m_pLoop = &loop;
    m_Next.start();
    loop.exec();
    m_pLoop = nullptr;
}

/// An event that opens a dialog returns when that is closed: the events that close it come from the dialog's own event
/// loop. While an event is under way otherwise, no other begins.
void RandomUser::Tick()
{
    m_Next.start();
    const int level = QThread::currentThread()->loopLevel();
    if (level <= m_nBusyLevel)
    {
        return;
    }
    const QScopedValueRollback<int> busy(m_nBusyLevel, level);
    if (m_nLeft > 0)
    {
        --m_nLeft;
        ++m_nDone;
        DoOne();
    }
    else
    {
        LeaveModal(level);
    }
}

void RandomUser::LeaveModal(int level)
{
    QWidget* const popup = QApplication::activePopupWidget();
    QWidget* const modal = popup != nullptr ? popup : QApplication::activeModalWidget();
    if (modal != nullptr)
    {
        Note("leave " + Describe(*modal));
        modal->close();
    }
    else if (m_pLoop != nullptr && level == m_nOuterLevel)
    {
        m_pLoop->quit();
    }
}

void RandomUser::PutAllAway()
{
    for (QWidget* dialog : FindSettingDialogs())
    {
        dialog->close();
    }
    if (Frame().isHidden())
    {
        Restart();
    }
    Note("put all away");
    Frame().OnCommand(ResourceID::FileNew);
    QTest::qWait(0); // the dialogs go
}

void RandomUser::DoOne()
{
    m_nMostFaces = std::max(m_nMostFaces, CountFaces(View()));
    if (QWidget* popup = QApplication::activePopupWidget())
    {
        UsePopup(*popup);
    }
    else if (QWidget* modal = QApplication::activeModalWidget())
    {
        UseDialog(*modal);
    }
    else if (Frame().isHidden())
    {
        Restart();
    }
    else if (CountFaces(View()) > kMostFaces)
    {
        Choose(ResourceID::FileNew);
    }
    else
    {
        DoAnything();
    }
}

void RandomUser::DoAnything()
{
    int all = 0;
    for (const Habit& habit : kHabits)
    {
        all += habit.weight;
    }
    int drawn = m_Choice.Below(all);
    for (const Habit& habit : kHabits)
    {
        drawn -= habit.weight;
        if (drawn < 0)
        {
            (this->*habit.act)();
            return;
        }
    }
}

/// Half of the time near the middle, where a model is.
QPoint RandomUser::ChoosePlace(const QWidget& widget)
{
    const QSize size = widget.size().expandedTo({1, 1});
    const auto between = [this](int length)
    { return m_Choice.Percent(50) ? m_Choice.Below(length) : length / 3 + m_Choice.Below(length / 3 + 1); };
    const int x = between(size.width());
    return {std::min(x, size.width() - 1), std::min(between(size.height()), size.height() - 1)};
}

void RandomUser::MoveOverView()
{
    const QPoint place = ChoosePlace(View());
    Note("move" + Describe(place));
    QTest::mouseMove(View().windowHandle(), place);
}

void RandomUser::PressOnView()
{
    const QPoint place = ChoosePlace(View());
    Note("press" + Describe(place));
    QTest::mousePress(View().windowHandle(), Qt::LeftButton, {}, place);
}

void RandomUser::ReleaseOnView()
{
    const QPoint place = ChoosePlace(View());
    Note("release" + Describe(place));
    QTest::mouseRelease(View().windowHandle(), Qt::LeftButton, {}, place);
}

void RandomUser::ClickOnView()
{
    Click(View().windowHandle(), m_Choice.Percent(90) ? Qt::LeftButton : Qt::MiddleButton,
          ChoosePlace(View()));
}

void RandomUser::OpenPopup()
{
    Click(View().windowHandle(), Qt::RightButton, ChoosePlace(View()));
}

void RandomUser::TurnWheel()
{
    Note("wheel");
    const QPoint place = ChoosePlace(View());
    QWheelEvent event(place, View().mapToGlobal(place), {}, {0, m_Choice.Percent(50) ? 120 : -120},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&View(), &event);
}

void RandomUser::TypeOnWindow()
{
    TypeKeys(Frame().windowHandle());
}

void RandomUser::PostRedraw()
{
    Note("post redraw");
    QApplication::postEvent(&View(), new QEvent(CTessarineView::kRedrawEvent));
}

void RandomUser::ClickButton()
{
    const auto buttons = Frame().findChildren<QToolButton*>();
    const QToolButton* button = m_Choice.Of(buttons);
    if (button->isVisible())
    {
        ClickOn(*button, Qt::LeftButton, button->rect().center());
    }
}

/// What takes seconds is chosen seldom.
void RandomUser::ChooseEntry()
{
    const int id = m_Choice.Of(GetEntries());
    if (id != ResourceID::BuildInitialMesh || m_Choice.Percent(20))
    {
        Choose(id);
    }
}

/// By the mouse where a menu has it, else as its key or button would.
void RandomUser::Choose(int id)
{
    auto* action = Frame().findChild<QAction*>(QString::number(id));
    Note("choose " + std::to_string(id));
    for (QAction* title : Frame().menuBar()->actions())
    {
        QMenu* menu = title->menu();
        if (menu->actions().contains(action))
        {
            QMenuBar& bar = *Frame().menuBar();
            ClickOn(bar, Qt::LeftButton, bar.actionGeometry(title).center());
            if (menu->isVisible())
            {
                ClickOn(*menu, Qt::LeftButton, menu->actionGeometry(action).center());
            }
            return;
        }
    }
    action->trigger();
}

void RandomUser::OpenMenu()
{
    QMenuBar& bar = *Frame().menuBar();
    ClickOn(bar, Qt::LeftButton, bar.actionGeometry(m_Choice.Of(bar.actions())).center());
}

void RandomUser::DropFile()
{
    const QString name = ChooseName();
    Note("drop " + name.toStdString());
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(m_Folder / name.toStdString()))});
    const QPoint place = ChoosePlace(View());
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&View(), &enter);
    if (enter.isAccepted())
    {
        QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&View(), &drop);
    }
}

/// Small windows are drawn faster; now and then one is very small.
void RandomUser::Resize()
{
    const int least = m_Choice.Percent(80) ? 300 : 0;
    const QSize size(least + m_Choice.Below(350), least + m_Choice.Below(200));
    Note("resize" + Describe(QPoint(size.width(), size.height())));
    Frame().resize(size);
}

void RandomUser::Minimise()
{
    Note("minimise");
    if (Frame().isMinimized())
    {
        Frame().showNormal();
    }
    else
    {
        Frame().showMinimized();
    }
}

void RandomUser::ChangeFocus()
{
    Note("focus");
    switch (m_Choice.Below(3))
    {
    case 0: Frame().activateWindow(); break;
    case 1: CTessarineApp::Get().GetConsole().activateWindow(); break;
    default: View().setFocus(); break;
    }
}

/// Seldom, so that much comes together in one run of the program.
void RandomUser::CloseWindow()
{
    if (m_Choice.Percent(10))
    {
        Note("close the window");
        Frame().close();
    }
}

/// What a user does who starts the program again.
void RandomUser::Restart()
{
    if (QThread::currentThread()->loopLevel() == m_nOuterLevel || m_pLoop == nullptr)
    {
        Note("restart");
        CTessarineApp::Get().ExitInstance();
        StartOptions options;
        options.importModel = m_Choice.Percent(50) ? ChooseName() : QString();
        CTessarineApp::Get().InitInstance(options);
        Frame().resize(QSize(600, 450));
    }
}

std::vector<QWidget*> RandomUser::FindSettingDialogs() const
{
    std::vector<QWidget*> dialogs;
    for (QWidget* window : QApplication::topLevelWidgets())
    {
        if (qobject_cast<QDialog*>(window) != nullptr && window->isVisible() && !window->isModal())
        {
            dialogs.push_back(window);
        }
    }
    std::sort(dialogs.begin(), dialogs.end(),
              [](const QWidget* a, const QWidget* b) { return a->winId() < b->winId(); });
    return dialogs;
}

void RandomUser::UseSettingDialog()
{
    if (const auto dialogs = FindSettingDialogs(); !dialogs.empty())
    {
        QWidget& dialog = *m_Choice.Of(dialogs);
        m_Choice.Percent(70) ? ClickSomewhere(dialog) : TypeKey(WindowOf(dialog));
    }
}

void RandomUser::CloseSettingDialog()
{
    if (const auto dialogs = FindSettingDialogs(); !dialogs.empty())
    {
        Note("close a dialog");
        m_Choice.Of(dialogs)->close();
    }
}

void RandomUser::UsePopup(QWidget& popup)
{
    const auto* menu = qobject_cast<QMenu*>(&popup);
    const int drawn = m_Choice.Below(100);
    if (menu != nullptr && drawn < 50 && !menu->actions().isEmpty())
    {
        ClickOn(popup, Qt::LeftButton, menu->actionGeometry(m_Choice.Of(menu->actions())).center());
    }
    else if (drawn < 70)
    {
        Note("leave " + Describe(popup));
        PressKey(WindowOf(popup), Qt::Key_Escape, {});
    }
    else if (drawn < 85)
    {
        TypeKey(WindowOf(popup));
    }
    else
    {
        ClickOn(popup, Qt::LeftButton, ChoosePlace(popup));
    }
}

void RandomUser::UseDialog(QWidget& dialog)
{
    if (auto* files = qobject_cast<QFileDialog*>(&dialog))
    {
        KeepInFolder(*files);
    }
    if (!dialog.isActiveWindow())
    {
        dialog.activateWindow();
    }
    const int drawn = m_Choice.Below(100);
    if (drawn < 20)
    {
        Note("leave " + Describe(dialog));
        PressKey(WindowOf(dialog), Qt::Key_Escape, {});
    }
    else if (drawn < 60)
    {
        TypeText(WindowOf(dialog), ChooseName());
    }
    else if (drawn < 80)
    {
        ClickSomewhere(dialog);
    }
    else
    {
        TypeKeys(WindowOf(dialog));
    }
}

/// Nothing but names below the folder can be chosen by the event that follows, and nothing can be deleted.
void RandomUser::KeepInFolder(QFileDialog& dialog) const
{
    const QString folder = QString::fromStdString(m_Folder);
    dialog.setOption(QFileDialog::ReadOnly);
    if (!(dialog.directory().absolutePath() + '/').startsWith(folder + '/'))
    {
        dialog.setDirectory(folder);
    }
}

/// A model that is there, or a name without one.
QString RandomUser::ChooseName()
{
    if (m_Choice.Percent(25))
    {
        return QString(m_Choice.Of(kTexts));
    }
    const QStringList models =
        QDir(QString::fromStdString(m_Folder)).entryList({"*.obj"}, QDir::Files, QDir::Name);
    return m_Choice.Of(models);
}

void RandomUser::ClickSomewhere(QWidget& window)
{
    std::vector<const QWidget*> shown;
    for (const QWidget* child : window.findChildren<QWidget*>())
    {
        if (child->isVisible() && !child->isWindow() && child->window() == &window &&
            !child->size().isEmpty())
        {
            shown.push_back(child);
        }
    }
    if (!shown.empty())
    {
        const QWidget& child = *m_Choice.Of(shown);
        ClickOn(child, m_Choice.Percent(85) ? Qt::LeftButton : Qt::RightButton, ChoosePlace(child));
    }
}

void RandomUser::ClickOn(const QWidget& widget, Qt::MouseButton button, QPoint place)
{
    Click(WindowOf(widget), button, widget.mapTo(widget.window(), place));
}

/// What is pressed may take its window away before it is released.
void RandomUser::Click(const QPointer<QWindow>& window, Qt::MouseButton button, QPoint place)
{
    Note("click " + std::to_string(button) + Describe(place) + " on " +
         (window.isNull() ? "" : window->objectName().toStdString()));
    if (!window.isNull() && QRect({}, window->size()).contains(place)) // the others nobody can reach
    {
        QTest::mousePress(window, button, {}, place);
    }
    if (!window.isNull() && QRect({}, window->size()).contains(place))
    {
        QTest::mouseRelease(window, button, {}, place);
    }
}

void RandomUser::TypeKey(const QPointer<QWindow>& window)
{
    PressKey(window, m_Choice.Of(kKeys), {});
}

/// Pressed with others by events of their own, after which the window must still be there: a pop-up goes with Alt.
void RandomUser::TypeKeys(const QPointer<QWindow>& window)
{
    PressKey(window, m_Choice.Of(kKeys), m_Choice.Of(kModifiers));
}

void RandomUser::PressKey(const QPointer<QWindow>& window, Qt::Key key, Qt::KeyboardModifier modifier)
{
    Note("key " + std::to_string(key) + " " + std::to_string(modifier));
    if (!window.isNull())
    {
        QTest::keyPress(window, key, modifier);
    }
    if (!window.isNull())
    {
        QTest::keyRelease(window, key, modifier);
    }
}

/// In place of what stands in the field, and confirms.
void RandomUser::TypeText(const QPointer<QWindow>& window, const QString& text)
{
    Note("type " + text.toStdString());
    if (auto* edit = qobject_cast<QLineEdit*>(QApplication::focusWidget()))
    {
        edit->setText(text); // all letters of the display's keyboard are not all letters
    }
    PressKey(window, Qt::Key_Return, {});
}
}
