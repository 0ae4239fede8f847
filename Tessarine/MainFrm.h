#pragma once
#include "CCommandActions.h"
#include <QMainWindow>
#include <array>
#include <memory>
#include <span>
#include <string>

class QLabel;

namespace tessarine
{
class CTessarineApp;
class CTessarineDoc;
class CTessarineView;
struct MenuLine;

/// The main window: menus, the two toolbars, the status bar with its seven panes, and the view in the middle.
/// It takes an entry that the user chose to whoever answers it.
class CMainFrame : public QMainWindow
{
public:
    explicit CMainFrame(CTessarineApp& app);
    ~CMainFrame() override;

    /// Makes the bars, the view and the document.
    /// @return whether all of them could be made; the user has been told why not
    bool OnCreate();

    CTessarineView& GetView() { return *m_pView; }
    CTessarineDoc& GetDocument() { return *m_pDocument; }

    /// Puts the window and its toolbars where they were in the last run.
    void RestorePlace();

    /// Imports a model as the entry of the menu does, without asking for its name.
    /// @return whether it is there now
    bool ImportModel(const QString& path);

    /// Runs an entry of the menus and toolbars.
    void OnCommand(int id);
    /// How an entry is shown.
    MenuState GetState(int id) const;

    /// Shows every entry of the menus and toolbars as it stands.
    void UpdateCommands();

    /// Whether a command is under way that may take its time.
    bool IsCommandRunning() const { return !m_strRunning.empty(); }

protected:
    bool event(QEvent* event) override;
    /// A window whose action is under way stays: it would end with the action half done.
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    /// One OBJ file is imported.
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class RunningCommand;

    void ImportWhenFree(const QString& path);
    void FillMenu(QMenu& menu, std::span<const MenuLine> lines);
    void CreatePopupMenus();
    void AddRecentFiles(QMenu& menu, const MenuLine& line);
    void UpdateRecentFiles();
    QToolBar* CreateToolBar(int id, const QString& title, std::span<const int> buttons);
    void CreateStatusBar();
    bool CreateView();
    bool OnFrameCommand(int id);
    QWidget* FindBar(int id) const;
    bool RunCommand(int id);
    void ShowMessageLine(const QString& text);
    void UpdateKeyPanes();

    CTessarineApp& m_App;
    CCommandActions m_Actions;
    QToolBar* m_pToolBar = nullptr;
    QToolBar* m_pSelectToolBar = nullptr;
    std::array<QLabel*, 7> m_Panes{};
    CTessarineView* m_pView = nullptr; ///< a child of the window
    std::unique_ptr<CTessarineDoc> m_pDocument;
    std::string m_strRunning; ///< the name of the command that is under way
};
}
