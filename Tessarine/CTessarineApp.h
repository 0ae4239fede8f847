#pragma once
#include "CConsoleWnd.h"
#include "CDialogPlatform.h"
#include "CRecentFileList.h"
#include "Console.h"
#include "IARecovery.h"
#include <QApplication>
#include <QTranslator>
#include <memory>

namespace tessarine
{
class CMainFrame;
struct StartOptions;

/// The program with its window: the console, the machine with a window, the list of recent files, the frame.
class CTessarineApp : public QApplication
{
public:
    /// Opens the console. The words of the command line must outlive the object.
    CTessarineApp(int& argc, char** argv);
    ~CTessarineApp() override;

    /// The one of the process.
    static CTessarineApp& Get() { return *static_cast<CTessarineApp*>(qApp); }

    /// Opens the main window, maximised, with a new document and what the command line asks for.
    /// @return whether there is a window now; the user has been told why not
    bool InitInstance(const StartOptions& options);
    /// Closes the main window and the console. InitInstance may come again.
    void ExitInstance();

    /// @return whether the entry is one of the program's own
    bool OnCommand(int id);

    /// Answers every event, see Answer.h.
    bool notify(QObject* receiver, QEvent* event) override;

    CDialogPlatform& GetPlatform() { return m_Platform; }
    CConsoleWnd& GetConsole() { return m_Console; }
    CRecentFileList& GetRecentFiles() { return m_RecentFiles; }
    IARecovery& GetRecovery() { return m_Recovery; }
    /// Null before InitInstance.
    CMainFrame* GetFrame() { return m_pFrame.get(); }

private:
    void SpeakChinese();
    void TakeConsoleText(std::string_view text);
    void Show(std::string_view text);
    bool ProcessShellCommand(const StartOptions& options);
    void EnterWorkspace();
    void WaitForWindow();
    bool OfferRecovery();
    void ReportMissingGL();
    void OnAppAbout();

    QTranslator m_Translator;
    CDialogPlatform m_Platform;
    Platform* m_pPlatformBefore;
    CConsoleWnd m_Console;
    Console::Sink m_Terminal; ///< where the console's text goes besides
    CRecentFileList m_RecentFiles;
    IARecovery m_Recovery;
    std::unique_ptr<CMainFrame> m_pFrame;
    bool m_bShowingProgress = false;
};

/// The whole program.
/// @return the exit status: 0, 1 when there is nothing to show a window on, 2 when the words are wrong
int RunTessarine(int argc, char** argv);
}
