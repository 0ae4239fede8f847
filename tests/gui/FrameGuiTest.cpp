#include "GuiTest.h"
#include "MenuTables.h"
#include "ProgramSettings.h"
#include "Resources.h"
#include "resource.h"
#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

namespace tessarine
{
namespace
{
using testing::HasSubstr;

class FrameGuiTest : public GuiTest
{
protected:
    QToolBar& Bar(int id) { return *Frame().findChild<QToolBar*>(QString::number(id)); }
};

TEST_F(FrameGuiTest, StartsMaximisedWithANewDocument)
{
    EXPECT_TRUE(StartAgain(""));
    EXPECT_TRUE(Frame().isMaximized());
    EXPECT_EQ(Frame().windowTitle(), "无标题 - Tessarine");
}

TEST_F(FrameGuiTest, BeginsWithTheTextsOfItsPanes)
{
    EXPECT_EQ(PaneText(0), "就绪");
    EXPECT_EQ(PaneText(1), "顶点数: 0");
    EXPECT_EQ(PaneText(2), "面片数: 0");
    EXPECT_EQ(PaneText(3), "相机坐标                                  ");
    EXPECT_EQ(PaneText(4), "大写");
    EXPECT_EQ(PaneText(5), "数字");
    EXPECT_EQ(PaneText(6), "滚动");
}

TEST_F(FrameGuiTest, KeepsThePanesAsWideAsTheirPlaceholders)
{
    const auto panes = Frame().statusBar()->findChildren<QLabel*>();
    ASSERT_EQ(panes.size(), 7);
    const QFontMetrics metrics = panes[1]->fontMetrics();
    EXPECT_GT(panes[1]->width(), metrics.horizontalAdvance("顶点数: 1000000"));
    EXPECT_GT(panes[2]->width(), metrics.horizontalAdvance("面片数: 1000000"));
    EXPECT_GT(panes[3]->width(), metrics.horizontalAdvance("相机位置: (-100.00,-100.00,-100.00)"));
    const int before = panes[3]->width();
    panes[3]->setText("a text that is longer than the pane was ever meant for, by all that is known of it");
    QCoreApplication::processEvents();
    EXPECT_EQ(panes[3]->width(), before);
}

TEST_F(FrameGuiTest, HasTheMenusInTheirOrder)
{
    QStringList titles;
    for (const QAction* action : Frame().menuBar()->actions())
    {
        titles.append(action->text());
    }
    EXPECT_EQ(titles, (QStringList{"文件(&F)", "编辑(&E)", "显示(&V)", "选择(&S)", "细分(&D)", "简化(&M)",
                                   "优化(&O)", "重构(&R)", "重构辅助显示(&A)", "帮助(&H)"}));
}

TEST_F(FrameGuiTest, PutsTheSelectToolbarLeftOfTheMainOneInOneRow)
{
    const QToolBar& main = Bar(ResourceID::MainFrame);
    const QToolBar& select = Bar(ResourceID::SelectToolbar);
    EXPECT_EQ(main.y(), select.y());
    EXPECT_LE(select.geometry().right(), main.geometry().left());
}

TEST_F(FrameGuiTest, DocksBothToolbarsOnAllSides)
{
    for (const int id : {ResourceID::MainFrame, ResourceID::SelectToolbar})
    {
        QToolBar& bar = Bar(id);
        EXPECT_EQ(bar.allowedAreas(), Qt::AllToolBarAreas);
        EXPECT_TRUE(bar.isMovable());
        for (const Qt::ToolBarArea area :
             {Qt::LeftToolBarArea, Qt::RightToolBarArea, Qt::BottomToolBarArea, Qt::TopToolBarArea})
        {
            Frame().addToolBar(area, &bar);
            QCoreApplication::processEvents();
            EXPECT_EQ(Frame().toolBarArea(&bar), area);
        }
    }
}

TEST_F(FrameGuiTest, GivesEveryButtonAPictureATipAndAStatusText)
{
    for (const std::span<const int> bar : {GetMainToolbar(), GetSelectToolbar()})
    {
        for (const int id : bar)
        {
            if (id == 0)
            {
                continue;
            }
            const QToolButton& button = Button(id);
            EXPECT_FALSE(button.icon().isNull()) << id;
            EXPECT_EQ(button.icon().pixmap(24, 24).size(), QSize(24, 24)) << id;
            EXPECT_EQ(button.icon().pixmap(QSize(24, 24), 2).size(), QSize(48, 48)) << id;
            EXPECT_EQ(button.iconSize(), QSize(24, 24)) << id;
            EXPECT_FALSE(button.toolTip().isEmpty()) << id;
            EXPECT_FALSE(Action(id).statusTip().isEmpty()) << id;
        }
    }
}

TEST_F(FrameGuiTest, TellsInTheStatusLineWhatAButtonDoes)
{
    const QToolButton& button = Button(ResourceID::GenerateSplats);
    QTest::mouseMove(Frame().windowHandle(), button.mapTo(&Frame(), button.rect().center()));
    QCoreApplication::processEvents();
    EXPECT_EQ(PaneText(0), "add splat in the scene");
    QTest::mouseMove(Frame().windowHandle(), Frame().menuBar()->geometry().topRight() - QPoint(5, -5));
    QCoreApplication::processEvents();
    EXPECT_EQ(PaneText(0), "就绪");
}

TEST_F(FrameGuiTest, ShowsDisabledWhatNobodyAnswers)
{
    for (const int id : {57643, 57635, 57634, 57637, 32830, 32842})
    {
        EXPECT_FALSE(Action(id).isEnabled()) << id;
    }
    const QMenu& menu = OpenMenu("编辑(&E)");
    for (const QAction* action : menu.actions())
    {
        EXPECT_FALSE(action->isEnabled() && !action->isSeparator());
    }
    QTest::keyClick(menu.windowHandle(), Qt::Key_Escape);
}

TEST_F(FrameGuiTest, AnswersEveryOtherEntry)
{
    for (const MenuEntry& entry : GetMenuEntries())
    {
        if (const auto* action = Frame().findChild<QAction*>(QString::number(entry.id)))
        {
            EXPECT_EQ(action->isEnabled(), entry.handler != MenuHandler::None) << entry.id;
        }
    }
}

TEST_F(FrameGuiTest, RunsAnEntryByItsKeys)
{
    ImportTetrahedron();
    QTest::keyClick(Frame().windowHandle(), Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(PaneText(1), "顶点数: 0");
}

TEST_F(FrameGuiTest, KeepsTheKeyboardInTheViewAfterAButton)
{
    ClickButton(ResourceID::OrbitTool);
    EXPECT_TRUE(View().hasFocus());
}

TEST_F(FrameGuiTest, HasAnAboutBoxWithItsName)
{
    QString text;
    WhenDialogOpens(
        [&text](QDialog& dialog)
        {
            text = dialog.windowTitle();
            for (const QLabel* label : dialog.findChildren<QLabel*>())
            {
                text += "|" + label->text();
            }
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
        });
    ClickButton(ResourceID::AppAbout);
    EXPECT_THAT(text.toStdString(), HasSubstr("关于 Tessarine"));
    EXPECT_THAT(text.toStdString(), HasSubstr("Tessarine 0.1.0"));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(FrameGuiTest, HidesAndShowsItsBars)
{
    for (const int id : {ResourceID::ViewToolbar, ResourceID::ViewSelectToolbar, ResourceID::ViewStatusBar})
    {
        EXPECT_TRUE(Action(id).isChecked());
        ChooseFromMenu(id);
        EXPECT_FALSE(Action(id).isChecked());
        ChooseFromMenu(id);
        EXPECT_TRUE(Action(id).isChecked());
    }
}

TEST_F(FrameGuiTest, ComesBackWithItsBarsWhereTheyWere)
{
    auto* bar = Frame().findChild<QToolBar*>(QString::number(ResourceID::SelectToolbar));
    ASSERT_NE(bar, nullptr);
    Frame().addToolBar(Qt::LeftToolBarArea, bar);
    Frame().close();
    ASSERT_TRUE(StartAgain({}));
    bar = Frame().findChild<QToolBar*>(QString::number(ResourceID::SelectToolbar));
    EXPECT_EQ(Frame().toolBarArea(bar), Qt::LeftToolBarArea);
    OpenSettings().clear(); // the other tests begin as a first run does
}

TEST_F(FrameGuiTest, IsMaximisedAndComesBackWithThePlaceThatItHasOtherwise)
{
    const QRect place(40, 60, 700, 500);
    Frame().showNormal();
    Frame().setGeometry(place);
    QCoreApplication::processEvents();
    Frame().close();
    ASSERT_TRUE(StartAgain({}));
    EXPECT_TRUE(Frame().isMaximized());
    Frame().showNormal();
    QCoreApplication::processEvents();
    EXPECT_EQ(Frame().geometry(), place);
    OpenSettings().clear();
}

TEST_F(FrameGuiTest, ClosesWhileAMenuIsOpen)
{
    OpenMenu("文件(&F)");
    EXPECT_NE(QApplication::activePopupWidget(), nullptr);
    Frame().close();
    EXPECT_FALSE(Frame().isVisible());
    App().ExitInstance();
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(FrameGuiTest, StaysOpenWhileACommandAsks)
{
    WhenDialogOpens(
        [this](QDialog& dialog)
        {
            Frame().close();
            dialog.reject();
        });
    ChooseFromMenu(ResourceID::ImportObj);
    EXPECT_TRUE(Frame().isVisible());
    EXPECT_TRUE(Frame().close());
}

TEST_F(FrameGuiTest, EndsByItsEntry)
{
    ChooseFromMenu(ResourceID::AppExit);
    EXPECT_FALSE(Frame().isVisible());
}
}
}
