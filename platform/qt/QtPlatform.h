#pragma once
#include "NativeGLWidget.h"
#include "Platform.h"
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

class QDialog;
class QFileDialog;
class QMessageBox;

namespace tessarine
{

/// The machine with a window: message boxes, file dialogs, status panes and cursors of Qt. The dialogs of the
/// settings are left to who knows what is set there.
/// It holds on to none of its widgets; what they did is left out where they are gone.
class QtPlatform : public Platform
{
public:
    static constexpr int kPaneCount = 7;

    void ShowMessage(const std::string& title, const std::string& text) override;
    void ShowRepeatingMessage(const std::string& title, const std::string& text) override;
    void ShowFailure(const std::string& operation, const std::string& reason, bool wasShown) override;
    std::optional<std::filesystem::path> AskOpenFile(const FileQuestion& question) override;
    std::optional<std::filesystem::path> AskSaveFile(const FileQuestion& question) override;
    void SetPaneText(int pane, const std::string& text) override;
    void SetCursorFromFile(const std::string& name) override;
    void SetArrowCursor() override;
    void ShowPopupMenu(int subMenu, int x, int y) override;
    std::unique_ptr<GLSurface> CreateGLSurface() override;

    /// Whose boxes and dialogs they are.
    void SetMainWindow(QWidget* window) { m_pMainWindow = window; }
    /// Where GL draws, and the cursor shows.
    void SetView(NativeGLWidget* view) { m_pView = view; }
    /// The sub-menus of the selection's pop-up menu.
    void SetPopupMenus(std::vector<QPointer<QMenu>> menus) { m_PopupMenus = std::move(menus); }
    void SetPane(int pane, QLabel* label) { m_Panes.at(static_cast<std::size_t>(pane)) = label; }

    /// The file of the last dialog; empty when it was cancelled.
    const std::filesystem::path& GetChosenFile() const { return m_ChosenFile; }
    /// The folder of the last file that a user chose, where the next dialog begins; empty for the current one.
    const std::filesystem::path& GetLastFolder() const { return m_LastFolder; }
    void SetLastFolder(std::filesystem::path folder) { m_LastFolder = std::move(folder); }

    /// Answers the next question for a file that is there, without showing the dialog.
    void AnswerFile(std::filesystem::path path) { m_FileAnswer = std::move(path); }
    /// Should the question not have come.
    void ForgetFileAnswer() noexcept { m_FileAnswer.reset(); }

    /// An operation ends, and with it what its user chose not to see again. Standard error tells how often it came.
    void ForgetHiddenMessages();

    /// Whether a command asks the user for something just now. Nothing has changed before: the view may be drawn.
    bool IsAsking() const { return m_bAsking; }

protected:
    QWidget* GetDialogParent() const;
    /// Shows a dialog that a command asks by.
    /// @return whether the user has answered, and not cancelled
    bool AskUser(QDialog& dialog);
    /// Has the view drawn soon.
    void InvalidateView();

private:
    std::filesystem::path TakeFileAnswer();
    std::filesystem::path FindFirstFolder() const;
    std::optional<std::filesystem::path> Ask(QFileDialog& dialog, const FileQuestion& question);
    void Show(QMessageBox& box);

    QPointer<QWidget> m_pMainWindow;
    QPointer<NativeGLWidget> m_pView;
    std::array<QPointer<QLabel>, kPaneCount> m_Panes;
    std::vector<QPointer<QMenu>> m_PopupMenus;
    std::optional<std::filesystem::path> m_FileAnswer;
    std::filesystem::path m_ChosenFile;
    std::filesystem::path m_LastFolder;
    std::map<std::string, int> m_HiddenMessages; ///< how often each has come since
    bool m_bAsking = false;
};
}
