#include "GuiTest.h"
#include "resource.h"
#include <QLabel>
#include <QMenuBar>
#include <QProcess>
#include <QStatusBar>

namespace tessarine
{
namespace
{
using testing::HasSubstr;

/// What a program of its own did.
struct Outcome
{
    int status = -1;
    std::string output;
    std::string errors;
};

Outcome Finish(QProcess& process)
{
    EXPECT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished(20000)) << "still running";
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput().toStdString(), process.readAllStandardError().toStdString()};
}

Outcome RunProgram(const QStringList& words, const QProcessEnvironment& environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(TESSARINE_PROGRAM, words);
    return Finish(process);
}

/// Moves the display's own pointer and presses its keys, while the window goes on handling events.
void RunXdotool(const QStringList& words)
{
    QProcess process;
    process.start("xdotool", words);
    EXPECT_TRUE(QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 20000));
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    QCoreApplication::processEvents();
}

QStringList PointerTo(const QWidget& widget, QPoint place)
{
    const QPoint point = widget.mapToGlobal(place);
    return {"mousemove", QString::number(point.x()), QString::number(point.y())};
}

class PointerGuiTest : public GuiTest
{
protected:
    PointerGuiTest() { App().GetConsole().hide(); }
};

TEST_F(PointerGuiTest, DragsWithTheDisplaysOwnPointer)
{
    const QToolButton& zoom = Button(ResourceID::ZoomTool);
    RunXdotool(PointerTo(zoom, zoom.rect().center()) + QStringList{"click", "1"});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !Action(ResourceID::SelectTool).isChecked(); }));
    const double distance = Camera().GetViewVector().Length();
    RunXdotool(PointerTo(View(), {300, 300}) + QStringList{"mousedown", "1"} + PointerTo(View(), {300, 270}) +
               QStringList{"mouseup", "1"});
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return std::abs(Camera().GetViewVector().Length() - distance - 1) < 1e-9; }));
}

TEST_F(PointerGuiTest, OpensAMenuWithTheDisplaysOwnPointerAndClosesTheWindowUnderIt)
{
    QMenuBar& bar = *Frame().menuBar();
    RunXdotool(PointerTo(bar, bar.actionGeometry(bar.actions().constFirst()).center()) +
               QStringList{"click", "1"});
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; }));
    Frame().close();
    App().ExitInstance();
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(PointerGuiTest, ShowsTheKeysThatStayDown)
{
    const auto panes = Frame().statusBar()->findChildren<QLabel*>();
    RunXdotool(PointerTo(View(), {300, 300}));
    for (const char* key : {"Caps_Lock", "Num_Lock"})
    {
        const QLabel* pane = key[0] == 'C' ? panes[4] : panes[5];
        const bool before = pane->isEnabled();
        RunXdotool({"key", key});
        EXPECT_TRUE(QTest::qWaitFor([&] { return pane->isEnabled() != before; })) << key;
        RunXdotool({"key", key});
        EXPECT_TRUE(QTest::qWaitFor([&] { return pane->isEnabled() == before; })) << key;
    }
}

class ProcessGuiTest : public testing::Test
{
protected:
    QProcessEnvironment m_Environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(ProcessGuiTest, TellsItsOptionsWithoutADisplay)
{
    m_Environment.remove("DISPLAY");
    const Outcome help = RunProgram({"--help"}, m_Environment);
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, HasSubstr("--import MODEL"));
    const Outcome version = RunProgram({"--version"}, m_Environment);
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.output, testing::StartsWith("tessarine 0."));
}

TEST_F(ProcessGuiTest, SaysThatThereIsNoDisplay)
{
    m_Environment.remove("DISPLAY");
    const Outcome outcome = RunProgram({}, m_Environment);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("there is no display"));
    m_Environment.insert("DISPLAY", ":32767");
    EXPECT_EQ(RunProgram({}, m_Environment).status, 1);
}

TEST_F(ProcessGuiTest, LooksForTheDisplayThatItIsToldToUse)
{
    for (const char* option : {"-display", "--display"})
    {
        const Outcome outcome = RunProgram({option, ":32767"}, m_Environment);
        EXPECT_EQ(outcome.status, 1) << option;
        EXPECT_THAT(outcome.errors, HasSubstr("there is no display")) << option;
    }
    const QString display = m_Environment.value("DISPLAY");
    m_Environment.remove("DISPLAY");
    EXPECT_EQ(RunProgram({"-display", display, "--nonsense"}, m_Environment).status,
              2); // it came past the display
}

TEST_F(ProcessGuiTest, RefusesPlatformsThatItCannotDrawOn)
{
    for (const char* platform : {"offscreen", "nonsense"})
    {
        const Outcome outcome = RunProgram({"-platform", platform}, m_Environment);
        EXPECT_EQ(outcome.status, 1) << platform;
        EXPECT_THAT(outcome.errors, HasSubstr("leave out -platform")) << platform;
    }
}

TEST_F(ProcessGuiTest, TakesThePlatformThatItUsesAnyway)
{
    EXPECT_EQ(RunProgram({"-platform", "xcb", "--nonsense"}, m_Environment).status,
              2); // it came past the display
}

TEST_F(ProcessGuiTest, NamesAWordBehindOneDashWhole)
{
    const Outcome outcome = RunProgram({"-nonsense"}, m_Environment);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("nonsense"));
}

TEST_F(ProcessGuiTest, RefusesWordsThatItDoesNotKnow)
{
    const Outcome outcome = RunProgram({"--nonsense"}, m_Environment);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("nonsense"));
    EXPECT_THAT(outcome.errors, HasSubstr("--help"));
}

/// Without a word; its boxes are closed by the display's own keys.
Outcome RunAndCloseBoxes(const QProcessEnvironment& environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(TESSARINE_PROGRAM, QStringList());
    const auto closeABox = [&process]
    {
        QProcess::execute("xdotool", {"search", "--onlyvisible", "--name", "^Tessarine$", "mousemove",
                                      "--window", "%1", "20", "20"});
        QProcess::execute("xdotool", {"key", "Return"}); // goes to the window under the pointer
        return process.state() == QProcess::NotRunning;
    };
    EXPECT_TRUE(QTest::qWaitFor(closeABox, 20000));
    return Finish(process);
}

TEST_F(ProcessGuiTest, SaysWhatIsMissingWithoutOpenGL)
{
    m_Environment.insert("QT_XCB_GL_INTEGRATION", "none");
    const Outcome outcome = RunAndCloseBoxes(m_Environment);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("Tessarine cannot draw: "));
    EXPECT_THAT(outcome.errors, HasSubstr("OpenGL"));
}

TEST_F(ProcessGuiTest, SaysWhatIsMissingWithoutTheCompatibilityProfile)
{
    m_Environment.insert("MESA_GL_VERSION_OVERRIDE", "3.1FC");
    const Outcome outcome = RunAndCloseBoxes(m_Environment);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("compatibility profile"));
}
}
}
