#include "Answer.h"
#include "ErrorLine.h"
#include "FailingMemory.h"
#include "GuiTest.h"
#include "resource.h"
#include <QPaintEvent>
#include <QTextBlock>

namespace tessarine
{
namespace
{
using testing::EndsWith;
using testing::HasSubstr;

class ConsoleGuiTest : public GuiTest
{
protected:
    CConsoleWnd& Window() { return App().GetConsole(); }

    std::string ShownText()
    {
        DebugConsole().Flush();
        Window().ShowPending();
        return Window().toPlainText().toStdString();
    }
};

TEST_F(ConsoleGuiTest, HasItsTitleAndIsOpen)
{
    EXPECT_EQ(Window().windowTitle(), "DebugOutput");
    EXPECT_TRUE(Window().isVisible());
    EXPECT_TRUE(Window().isReadOnly());
}

TEST_F(ConsoleGuiTest, ShowsWhatAlsoReachesTheTerminal)
{
    DebugConsole() << "one " << 1 << '\n' << "顶点\n";
    EXPECT_THAT(ShownText(), EndsWith("one 1\n顶点\n"));
    EXPECT_THAT(GetTerminalText(), EndsWith("one 1\n顶点\n"));
}

TEST_F(ConsoleGuiTest, ShowsErrorLinesBetweenTheOthers)
{
    DebugConsole() << "before\n";
    PrintErrorLine("a.ppm: Not a raw PPM file");
    DebugConsole() << "behind\n";
    EXPECT_THAT(ShownText(), EndsWith("before\na.ppm: Not a raw PPM file\nbehind\n"));
}

/// Fails in what an event leads to.
class FailingObject : public QObject
{
public:
    bool event(QEvent* /*event*/) override { throw std::bad_alloc(); }
};

TEST_F(ConsoleGuiTest, TellsWhatEndsTheAnswerToAnEvent)
{
    FailingObject object;
    QEvent event(QEvent::User);
    EXPECT_FALSE(QCoreApplication::sendEvent(&object, &event));
    EXPECT_THAT(ShownText(),
                EndsWith("tessarine: the window could not do all that was asked of it: not enough memory\n"));
}

TEST_F(ConsoleGuiTest, GoesOnBehindAnEventThatHasNoMemoryAtAll)
{
    FailingObject object;
    QEvent event(QEvent::User);
    bool isTaken = true;
    {
        const InjectedFault fault(GetMemoryPlan(), 0, FaultMode::FromThenOn);
        isTaken = QCoreApplication::sendEvent(&object, &event);
    }
    EXPECT_FALSE(isTaken);
    DebugConsole() << "behind\n";
    EXPECT_THAT(ShownText(), EndsWith("behind\n"));
}

TEST_F(ConsoleGuiTest, TellsWhatEndsAnAnswer)
{
    EXPECT_FALSE(Answer([] { throw std::runtime_error("no such entry"); }));
    EXPECT_THAT(ShownText(), EndsWith("asked of it: no such entry\n"));
    EXPECT_FALSE(Answer([] { throw 7; }));
    EXPECT_THAT(ShownText(), EndsWith("asked of it: an unknown error\n"));
    EXPECT_TRUE(Answer([] {}));
}

TEST_F(ConsoleGuiTest, KeepsFiveHundredLines)
{
    for (int i = 0; i < 10000; ++i)
    {
        DebugConsole() << "line " << i << '\n';
    }
    const std::string text = ShownText();
    // The last of the five hundred is the empty one that is written next.
    EXPECT_EQ(Window().blockCount(), 500);
    EXPECT_EQ(text.substr(0, 10), "line 9501\n");
    EXPECT_THAT(text, EndsWith("line 9999\n"));
    EXPECT_THAT(GetTerminalText(), HasSubstr("line 0\n"));
}

TEST_F(ConsoleGuiTest, JoinsWhatComesInPieces)
{
    Window().clear();
    Window().Append("\xE9\xA1");
    Window().Append("\xB6 and");
    Window().Append(" more\r\n");
    EXPECT_EQ(ShownText(), "顶 and more\n");
}

TEST_F(ConsoleGuiTest, BreaksALineThatNeverEnds)
{
    Window().clear();
    Window().Append(std::string(5000000, 'x'));
    ShownText();
    EXPECT_LE(Window().blockCount(), 500);
    EXPECT_LE(Window().document()->lastBlock().length(), CConsoleWnd::kLongestLine + 1);
}

TEST_F(ConsoleGuiTest, StaysHiddenWhenItWasClosedUntilItsEntryShowsIt)
{
    Window().close();
    EXPECT_FALSE(Window().isVisible());
    DebugConsole() << "unseen\n";
    EXPECT_THAT(ShownText(), EndsWith("unseen\n"));
    EXPECT_FALSE(Window().isVisible());
    ChooseFromMenu(ResourceID::ViewConsole);
    EXPECT_TRUE(Window().isVisible());
    EXPECT_TRUE(Action(ResourceID::ViewConsole).isChecked());
}

/// Looks on whenever the console is painted.
class PaintWatch : public QObject
{
public:
    PaintWatch(QWidget& watched, std::function<void()> look) : m_Watched(watched), m_Look(std::move(look))
    {
        m_Watched.installEventFilter(this);
    }
    ~PaintWatch() override { m_Watched.removeEventFilter(this); }
    PaintWatch(const PaintWatch&) = delete;
    PaintWatch& operator=(const PaintWatch&) = delete;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
        {
            m_Look();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QWidget& m_Watched;
    std::function<void()> m_Look;
};

TEST_F(ConsoleGuiTest, PaintsWhileACommandRunsThatNamesItselfAndMakesThePointerWait)
{
    std::string lines = kTetrahedronObj;
    for (int i = 0; i < 100000; ++i)
    {
        lines += "x\n"; // a line on the console each
    }
    m_Folder.Write("long.obj", lines);
    int paints = 0;
    std::string name;
    Qt::CursorShape shape = Qt::ArrowCursor;
    const PaintWatch watch(*Window().viewport(),
                           [&]
                           {
                               if (Frame().IsCommandRunning() && QGuiApplication::overrideCursor() != nullptr)
                               {
                                   ++paints;
                                   name = PaneText(0);
                                   shape = QGuiApplication::overrideCursor()->shape();
                               }
                           });
    AnswerFileDialog("long.obj");
    ChooseFromMenu(ResourceID::ImportObj);

    EXPECT_GT(paints, 0);
    EXPECT_EQ(name, "导入 ( .Obj )");
    EXPECT_EQ(shape, Qt::WaitCursor);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(PaneText(0), "就绪");
}

TEST_F(ConsoleGuiTest, HasNoWaitingPointerInTheDialogsOfACommand)
{
    bool isWaiting = true;
    WhenDialogOpens(
        [&](QDialog& dialog)
        {
            isWaiting = QGuiApplication::overrideCursor() != nullptr;
            dialog.reject();
        });
    ChooseFromMenu(ResourceID::ImportObj);
    EXPECT_FALSE(isWaiting);
}
}
}
