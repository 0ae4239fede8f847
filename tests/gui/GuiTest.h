#pragma once
#include "CTessarineApp.h"
#include "CTessarineDoc.h"
#include "CTessarineView.h"
#include "MainFrm.h"
#include "StartOptions.h"
#include "TemporaryFolder.h"
#include <QDialog>
#include <QMenu>
#include <QTest>
#include <QToolButton>
#include <functional>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace tessarine
{
/// What the program prints on the terminal besides its window.
std::string& GetTerminalText();

/// A fresh main window for each test, on the virtual display, in a temporary current folder. Mouse and keys go
/// the window system's way to it: to its windows, not to its widgets.
class GuiTest : public testing::Test
{
protected:
    GuiTest();
    ~GuiTest() override;

    static CTessarineApp& App() { return CTessarineApp::Get(); }
    CMainFrame& Frame() { return *App().GetFrame(); }
    CTessarineView& View() { return Frame().GetView(); }
    IAWorkbench& Bench() { return View().GetWorkbench(); }
    Open3DView& GLView() { return Bench().GetView(); }
    std::uint32_t Flags() { return GLView().GetDisplayFlags(); }
    Open3DCamera& Camera() { return *GLView().GetCamera(); }

    QAction& Action(int id);
    std::string PaneText(int pane);

    /// Runs an entry by the mouse: opens the menu that has it, and clicks it.
    void ChooseFromMenu(int id);
    /// Opens a menu of the menu bar by the mouse. It stays open.
    QMenu& OpenMenu(const QString& title);
    /// Clicks the button of an entry.
    void ClickButton(int id);
    QToolButton& Button(int id);

    // The left button on the view, at points of it.
    void Press(QPoint place);
    void MoveTo(QPoint place);
    void Release(QPoint place);
    void Drag(QPoint from, QPoint to);

    /// In place of the test's window, one that the command line asks for.
    bool StartAgain(const QString& file, const QString& importModel = {});

    /// Does what follows to the next modal dialog, as soon as it is there.
    void WhenDialogOpens(const std::function<void(QDialog& dialog)>& action);
    /// Closes the next message box, and keeps what it says.
    void AcceptMessage();
    /// Types a name into the next file dialog, and confirms.
    void AnswerFileDialog(const QString& name);
    /// What the message boxes said, oldest first: title, text, and the sentence below it.
    const std::vector<std::string>& GetMessages() const { return m_Messages; }

    /// Without a window manager nobody gives the keyboard back when a dialog is gone.
    void TakeKeyboard();

    /// Imports a tetrahedron through the menu and the file dialog.
    void ImportTetrahedron();

    /// What the screen shows of the view.
    QImage GrabView();

    TemporaryCurrentFolder m_Folder;

private:
    std::vector<std::string> m_Messages;
};

inline constexpr char kTetrahedronObj[] = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\n"
                                          "f 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n";
}
