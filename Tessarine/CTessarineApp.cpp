#include "CTessarineApp.h"
#include "Answer.h"
#include "CAboutDlg.h"
#include "CTessarineDoc.h"
#include "CTessarineView.h"
#include "Display.h"
#include "ErrorLine.h"
#include "MainFrm.h"
#include "Pictures.h"
#include "ProgramSettings.h"
#include "RecoveryOffer.h"
#include "ResourceFolder.h"
#include "StartOptions.h"
#include "StateFolder.h"
#include "Streams.h"
#include "UserWorkspace.h"
#include "resource.h"
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QTimer>
#include <algorithm>
#include <chrono>

namespace tessarine
{
namespace
{
constexpr int kDone = 0;
constexpr int kNoWindow = 1;
constexpr int kUsage = 2;
constexpr char kFolderKey[] = "File Dialogs/Folder";

/// Where the windows of this user keep their models.
std::filesystem::path FindRecoveryFolder()
{
    const std::filesystem::path state = FindStateFolder();
    return state.empty() ? state : state / "recovery";
}

void Complain(const std::string& text)
{
    PrintErrorLine("tessarine: " + text);
}
}

CTessarineApp::CTessarineApp(int& argc, char** argv)
    : QApplication(argc, argv), m_pPlatformBefore(SetPlatform(&m_Platform)), m_Recovery(FindRecoveryFolder())
{
    RestoreNumberForm();
    SpeakChinese();
    setWindowIcon(LoadPicture(ResourceID::MainFrame));
    SetResourceFolder(FindResourceFolder());
    m_Terminal = DebugConsole().SetSink([this](std::string_view text) { TakeConsoleText(text); });
    SetErrorListener([this](std::string_view line) { Show(line); });
    m_Console.show();
    m_Platform.SetLastFolder(QFile::encodeName(OpenSettings().value(kFolderKey).toString()).toStdString());
}

CTessarineApp::~CTessarineApp()
{
    ExitInstance();
    if (const std::filesystem::path& folder = m_Platform.GetLastFolder(); !folder.empty())
    {
        OpenSettings().setValue(kFolderKey, QFile::decodeName(folder.c_str()));
    }
    SetErrorListener({});
    DebugConsole().SetSink(std::move(m_Terminal));
    SetPlatform(m_pPlatformBefore);
}

bool CTessarineApp::notify(QObject* receiver, QEvent* event)
{
    bool isTaken = false;
    return Answer([&] { isTaken = QApplication::notify(receiver, event); }) && isTaken;
}

/// The standard dialogs and buttons, like all else.
void CTessarineApp::SpeakChinese()
{
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China));
    if (m_Translator.load("qtbase_zh_CN", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    {
        installTranslator(&m_Translator);
    }
}

void CTessarineApp::TakeConsoleText(std::string_view text)
{
    m_Terminal(text);
    Show(text);
}

/// While a command is under way nothing else would show its progress: what has to be painted is, but the user's
/// input waits.
void CTessarineApp::Show(std::string_view text)
{
    const bool isShown = m_Console.Append(text);
    if (isShown && m_pFrame != nullptr && m_pFrame->IsCommandRunning() && !m_bShowingProgress)
    {
        m_bShowingProgress = true;
        processEvents(QEventLoop::ExcludeUserInputEvents);
        m_bShowingProgress = false;
    }
}

bool CTessarineApp::InitInstance(const StartOptions& options)
{
    const QString model =
        options.importModel.isEmpty() ? QString() : QFileInfo(options.importModel).absoluteFilePath();
    if (options.workspace)
    {
        EnterWorkspace();
    }
    m_pFrame = std::make_unique<CMainFrame>(*this);
    if (!m_pFrame->OnCreate())
    {
        ReportMissingGL();
        m_pFrame.reset();
        return false;
    }
    m_pFrame->GetView().GetWorkbench().SetRecovery(&m_Recovery);
    m_pFrame->GetDocument().OnNewDocument();
    m_pFrame->GetView().OnInitialUpdate();
    m_Console.show();
    if (!ProcessShellCommand(options))
    {
        return false;
    }
    m_pFrame->RestorePlace();
    m_pFrame->showMaximized();
    m_pFrame->raise(); // over the console
    m_pFrame->activateWindow();
    m_pFrame->GetView().setFocus();
    if (!OfferRecovery() && !model.isEmpty())
    {
        WaitForWindow();
        m_pFrame->ImportModel(model);
    }
    return true;
}

/// The models of windows that were ended, one after the other, until the user takes one.
/// @return whether there is one now
bool CTessarineApp::OfferRecovery()
{
    for (IORecoveryFolder& copy : m_Recovery.FindAbandoned())
    {
        switch (AskAboutRecovery(*m_pFrame, copy.GetTime()))
        {
        case RecoveryAnswer::Recover:
            WaitForWindow();
            if (m_pFrame->ImportModel(QFile::decodeName(copy.GetModel().c_str())))
            {
                m_Recovery.Adopt(std::move(copy));
                return true;
            }
            break;
        case RecoveryAnswer::Discard: copy.Remove(); break;
        case RecoveryAnswer::Later: break;
        }
    }
    return false;
}

/// Without it the program works in the folder where it was started.
void CTessarineApp::EnterWorkspace()
{
    try
    {
        EnterUserWorkspace();
    }
    catch (const std::exception& error)
    {
        m_Platform.ShowMessage("Tessarine",
                               std::string("the workspace folder cannot be used: ") + error.what());
    }
}

/// While a command runs the view does not draw by itself: the window manager first has to show the window and to give
/// it its place and size, which nothing announces.
void CTessarineApp::WaitForWindow()
{
    constexpr std::chrono::milliseconds enough(300);
    QEventLoop loop;
    QTimer::singleShot(enough, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

bool CTessarineApp::ProcessShellCommand(const StartOptions& options)
{
    return options.file.isEmpty() ||
           m_pFrame->GetDocument().OnOpenDocument(QFileInfo(options.file).absoluteFilePath());
}

/// The step that failed has been shown; this is what it means.
void CTessarineApp::ReportMissingGL()
{
    const std::string reason =
        "Tessarine cannot draw: " + m_pFrame->GetView().GetWorkbench().GetView().GetCreateError();
    Complain(reason);
    m_Platform.ShowMessage("Tessarine", reason);
}

void CTessarineApp::ExitInstance()
{
    m_pFrame.reset();
    m_Recovery.End();
    m_Console.hide();
}

bool CTessarineApp::OnCommand(int id)
{
    const QStringList& files = m_RecentFiles.GetFiles();
    const int recent = id - ResourceID::RecentFile1;
    if (recent >= 0 && recent < files.size())
    {
        m_pFrame->GetDocument().OnOpenDocument(QString(files[recent]));
        return true;
    }
    if (id == ResourceID::AppAbout)
    {
        OnAppAbout();
        return true;
    }
    return false;
}

void CTessarineApp::OnAppAbout()
{
    CAboutDlg(m_pFrame.get()).exec();
}

int RunTessarine(int argc, char** argv)
{
    PrepareStreams();
    PrepareForDisplay();
    QStringList words;
    std::transform(argv, argv + argc, std::back_inserter(words),
                   [](const char* word) { return QFile::decodeName(word); });
    if (const StartOptions options = ParseStartOptions(words); options.help || options.version)
    {
        WriteStandardOutput(options.help ? GetStartHelp().toStdString()
                                         : "tessarine " TESSARINE_VERSION "\n");
        return kDone;
    }
    const DisplayConnection display(argc, argv);
    if (!display.GetProblem().empty())
    {
        Complain(display.GetProblem());
        return kNoWindow;
    }
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    CTessarineApp app(argc, argv);
    const StartOptions options = ParseStartOptions(QCoreApplication::arguments());
    if (!options.error.isEmpty())
    {
        Complain(options.error.toStdString() + "; see tessarine --help");
        return kUsage;
    }
    return app.InitInstance(options) ? QApplication::exec() : kNoWindow;
}
}
