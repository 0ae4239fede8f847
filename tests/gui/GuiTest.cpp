#include "GuiTest.h"
#include "MenuTables.h"
#include "resource.h"
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QWindow>

namespace tessarine
{
namespace
{
constexpr QSize kFrameSize(1000, 700);
constexpr int kPollEvery = 5; // milliseconds

void Click(QWidget& widget, QPoint place)
{
    QWidget* window = widget.window();
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, widget.mapTo(window, place));
}

/// The menu that shows an action, at any depth of the bar.
QMenu* FindMenu(const QMenuBar& bar, QAction* action)
{
    for (QAction* title : bar.actions())
    {
        if (title->menu()->actions().contains(action))
        {
            return title->menu();
        }
    }
    return nullptr;
}
}

std::string& GetTerminalText()
{
    static std::string text;
    return text;
}

GuiTest::GuiTest()
{
    GetTerminalText().clear();
    App().GetRecentFiles() = CRecentFileList();
    const bool isThere = App().InitInstance({});
    EXPECT_TRUE(isThere);
    // Without a window manager a window has the size that it asks for.
    Frame().resize(kFrameSize);
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&Frame()));
    EXPECT_TRUE(QTest::qWaitForWindowExposed(View().windowHandle()));
    TakeKeyboard();
}

GuiTest::~GuiTest()
{
    App().ExitInstance();
    App().GetConsole().clear();
    const QStringList files = App().GetRecentFiles().GetFiles();
    for (const QString& file : files)
    {
        App().GetRecentFiles().Remove(file);
    }
}

void GuiTest::TakeKeyboard()
{
    Frame().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Frame()));
    View().setFocus();
}

QAction& GuiTest::Action(int id)
{
    auto* action = Frame().findChild<QAction*>(QString::number(id));
    EXPECT_NE(action, nullptr) << id;
    return *action;
}

std::string GuiTest::PaneText(int pane)
{
    const auto panes = Frame().statusBar()->findChildren<QLabel*>();
    return panes.at(pane)->text().toStdString();
}

QMenu& GuiTest::OpenMenu(const QString& title)
{
    const QMenuBar& bar = *Frame().menuBar();
    for (QAction* action : bar.actions())
    {
        if (action->text() == title)
        {
            Click(*Frame().menuBar(), bar.actionGeometry(action).center());
            EXPECT_TRUE(QTest::qWaitForWindowExposed(action->menu()));
            return *action->menu();
        }
    }
    throw std::logic_error("no menu " + title.toStdString());
}

void GuiTest::ChooseFromMenu(int id)
{
    QAction& action = Action(id);
    QMenu* menu = FindMenu(*Frame().menuBar(), &action);
    ASSERT_NE(menu, nullptr) << id;
    OpenMenu(menu->title());
    Click(*menu, menu->actionGeometry(&action).center());
}

QToolButton& GuiTest::Button(int id)
{
    QAction* action = &Action(id);
    for (auto* bar : Frame().findChildren<QToolBar*>())
    {
        if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action)))
        {
            return *button;
        }
    }
    throw std::logic_error("no button " + std::to_string(id));
}

void GuiTest::ClickButton(int id)
{
    QToolButton& button = Button(id);
    Click(button, button.rect().center());
}

bool GuiTest::StartAgain(const QString& file, const QString& importModel)
{
    App().ExitInstance();
    StartOptions options;
    options.file = file;
    options.importModel = importModel;
    return App().InitInstance(options);
}

void GuiTest::Press(QPoint place)
{
    QTest::mousePress(View().windowHandle(), Qt::LeftButton, {}, place);
}

void GuiTest::MoveTo(QPoint place)
{
    QTest::mouseMove(View().windowHandle(), place);
    QCoreApplication::processEvents(); // moves are compressed
}

void GuiTest::Release(QPoint place)
{
    QTest::mouseRelease(View().windowHandle(), Qt::LeftButton, {}, place);
}

void GuiTest::Drag(QPoint from, QPoint to)
{
    MoveTo(from);
    Press(from);
    MoveTo(to);
    Release(to);
}

void GuiTest::WhenDialogOpens(const std::function<void(QDialog&)>& action)
{
    auto* timer = new QTimer(&Frame());
    QObject::connect(timer, &QTimer::timeout, &Frame(),
                     [timer, action]
                     {
                         auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
                         if (dialog == nullptr || dialog->windowHandle() == nullptr)
                         {
                             return;
                         }
                         if (!dialog->isActiveWindow()) // a name typed without the keyboard is half taken
                         {
                             dialog->activateWindow();
                         }
                         else if (dialog->windowHandle()->isExposed())
                         {
                             timer->deleteLater();
                             timer->stop();
                             action(*dialog);
                         }
                     });
    timer->start(kPollEvery);
}

void GuiTest::AcceptMessage()
{
    WhenDialogOpens(
        [this](QDialog& dialog)
        {
            auto& box = dynamic_cast<QMessageBox&>(dialog);
            m_Messages.push_back(
                (box.windowTitle() + "|" + box.text() + "|" + box.informativeText()).toStdString());
            QTest::keyClick(box.windowHandle(), Qt::Key_Return);
        });
}

void GuiTest::AnswerFileDialog(const QString& name)
{
    WhenDialogOpens(
        [name](QDialog& dialog)
        {
            auto* edit = dialog.findChild<QLineEdit*>("fileNameEdit");
            ASSERT_NE(edit, nullptr);
            edit->setFocus();
            edit->selectAll();
            QTest::keyClicks(edit, name);
            QTest::keyClick(edit, Qt::Key_Return);
        });
}

void GuiTest::ImportTetrahedron()
{
    m_Folder.Write("tetrahedron.obj", kTetrahedronObj);
    AnswerFileDialog("tetrahedron.obj");
    ChooseFromMenu(ResourceID::ImportObj);
    App().GetConsole().ShowPending();
    TakeKeyboard();
}

QImage GuiTest::GrabView()
{
    QCoreApplication::processEvents();
    return Frame().screen()->grabWindow(View().winId()).toImage().convertToFormat(QImage::Format_RGB888);
}
}
