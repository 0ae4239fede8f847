#include "ErrorLine.h"
#include "GuiTest.h"
#include "resource.h"
#include <QAction>
#include <QCheckBox>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QSettings>
#include <QTimer>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class FilesGuiTest : public GuiTest
{
protected:
    QString PathOf(const char* name) { return QString::fromStdString((m_Folder / name).string()); }

    /// @return whether the window takes it
    bool Drop(const QStringList& paths)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths)
        {
            urls.append(QUrl::fromLocalFile(path));
        }
        data.setUrls(urls);
        // The other program proposes to remove the file; the window only reads it.
        QDragEnterEvent enter({50, 50}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                              Qt::ShiftModifier);
        QApplication::sendEvent(&View(), &enter);
        if (enter.isAccepted())
        {
            EXPECT_EQ(enter.dropAction(), Qt::CopyAction);
            QDropEvent drop({50, 50}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                            Qt::ShiftModifier);
            EXPECT_EQ(drop.proposedAction(), Qt::MoveAction);
            QApplication::sendEvent(&View(), &drop);
            EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
        }
        return enter.isAccepted();
    }

    void Open(const char* name)
    {
        m_Folder.Write(name, "anything");
        AnswerFileDialog(name);
        ChooseFromMenu(ResourceID::FileOpen);
    }
};

TEST_F(FilesGuiTest, ImportsThroughTheFileDialog)
{
    ImportTetrahedron();
    EXPECT_EQ(PaneText(1), "顶点数: 4");
    EXPECT_EQ(PaneText(2), "面片数: 4");
    const std::string console = App().GetConsole().toPlainText().toStdString();
    EXPECT_THAT(console, HasSubstr("Solid fits Euler formular: "));
    EXPECT_THAT(GetTerminalText(), HasSubstr(console.substr(console.find("Solid fits"), 28)));
    EXPECT_THAT(GetMessages(), IsEmpty());
}

TEST_F(FilesGuiTest, OffersObjFilesAndSpeaksChinese)
{
    QStringList filters;
    QString title;
    WhenDialogOpens(
        [&](QDialog& dialog)
        {
            filters = dynamic_cast<QFileDialog&>(dialog).nameFilters();
            title = dialog.windowTitle();
            dialog.reject();
        });
    ChooseFromMenu(ResourceID::ImportObj);
    EXPECT_EQ(filters, QStringList{"Wavefront OBJ(*.obj)"});
    EXPECT_EQ(title, "打开");
}

TEST_F(FilesGuiTest, ComesBackToTheFolderOfBefore)
{
    m_Folder.Write("models/a.obj", kTetrahedronObj);
    AnswerFileDialog(PathOf("models/a.obj"));
    ChooseFromMenu(ResourceID::ImportObj);
    EXPECT_EQ(PaneText(1), "顶点数: 4");
    EXPECT_EQ(GetCurrentFolder(), m_Folder.GetPath());
}

TEST_F(FilesGuiTest, BeginsInTheFolderOfTheLastFile)
{
    m_Folder.Write("first/a.obj", kTetrahedronObj);
    m_Folder.Write("b.obj", kTetrahedronObj);
    App().GetPlatform().SetLastFolder(m_Folder / "first"); // as the run before has left it
    AnswerFileDialog("a.obj");
    ChooseFromMenu(ResourceID::ImportObj);
    EXPECT_EQ(PaneText(1), "顶点数: 4");
    AnswerFileDialog("../b.obj");
    ChooseFromMenu(ResourceID::ImportObj);
    EXPECT_EQ(App().GetPlatform().GetLastFolder(), m_Folder.GetPath());
    EXPECT_EQ(GetCurrentFolder(), m_Folder.GetPath());
    EXPECT_THAT(GetMessages(), IsEmpty());

    App().GetPlatform().SetLastFolder(m_Folder / "gone");
    AnswerFileDialog("b.obj"); // in the current folder
    ChooseFromMenu(ResourceID::ImportObj);
    EXPECT_THAT(GetMessages(), IsEmpty());
}

TEST_F(FilesGuiTest, ShowsTheModelsNameInTheTitle)
{
    m_Folder.Write("duck.obj", kTetrahedronObj);
    AnswerFileDialog("duck.obj");
    ChooseFromMenu(ResourceID::ImportObj);
    EXPECT_TRUE(Frame().windowTitle().contains("duck.obj")) << Frame().windowTitle().toStdString();

    WhenDialogOpens([](QDialog& dialog) { dialog.reject(); });
    ChooseFromMenu(ResourceID::ImportObj);
    EXPECT_TRUE(Frame().windowTitle().contains("duck.obj"));
    ChooseFromMenu(ResourceID::FileNew);
    EXPECT_FALSE(Frame().windowTitle().contains("duck.obj"));
}

TEST_F(FilesGuiTest, ImportsAModelThatIsDroppedOnTheWindow)
{
    m_Folder.Write("a.obj", kTetrahedronObj);
    Drop({PathOf("a.obj")});
    EXPECT_TRUE(QTest::qWaitFor([&] { return PaneText(1) == "顶点数: 4"; }));
}

TEST_F(FilesGuiTest, ImportsADroppedModelBehindACommandThatHasBegunMeanwhile)
{
    m_Folder.Write("a.obj", kTetrahedronObj);
    Drop({PathOf("a.obj")});
    View().Perform("test", Effect::None,
                   [this]
                   {
                       QCoreApplication::processEvents();
                       EXPECT_EQ(PaneText(1), "顶点数: 0");
                   });
    EXPECT_TRUE(QTest::qWaitFor([&] { return PaneText(1) == "顶点数: 4"; }));
}

TEST_F(FilesGuiTest, TakesNothingElseThatIsDropped)
{
    EXPECT_FALSE(Drop({PathOf("a.png")}));
    EXPECT_FALSE(Drop({PathOf("a.obj"), PathOf("b.obj")}));
    EXPECT_FALSE(Drop({}));
}

TEST_F(FilesGuiTest, AsksAgainBehindADropThatCameInTheMiddleOfACommand)
{
    m_Folder.Write("dropped.obj", "v 0 0 0\n");
    View().Perform("test", Effect::None,
                   [this] { EXPECT_FALSE(Frame().ImportModel(PathOf("dropped.obj"))); });
    ImportTetrahedron(); // by the dialog
    EXPECT_EQ(PaneText(1), "顶点数: 4");
    EXPECT_THAT(GetMessages(), IsEmpty());
}

TEST_F(FilesGuiTest, NeverSavesOverTheFileThatAnswersAnImport)
{
    ImportTetrahedron();
    m_Folder.Write("dropped.obj", "mine");
    App().GetPlatform().AnswerFile("dropped.obj");
    AnswerFileDialog("copy.obj");
    ChooseFromMenu(ResourceID::ExportObj);
    EXPECT_EQ(m_Folder.Read("dropped.obj"), "mine");
    EXPECT_TRUE(m_Folder.Has("copy.obj"));
}

TEST_F(FilesGuiTest, ImportsAWholePathFromAFolderThatIsGoneAndAsksAgainBehindAnother)
{
    m_Folder.Write("a.obj", kTetrahedronObj);
    std::filesystem::create_directory(m_Folder / "gone");
    SetCurrentFolder(m_Folder / "gone");
    std::filesystem::remove(m_Folder / "gone");
    EXPECT_TRUE(Frame().ImportModel(PathOf("a.obj")));
    AcceptMessage();
    EXPECT_FALSE(Frame().ImportModel("a.obj"));
    EXPECT_EQ(GetMessages().size(), 1U);
    SetCurrentFolder(m_Folder.GetPath());
    Frame().OnCommand(ResourceID::FileNew);
    ImportTetrahedron();
    EXPECT_EQ(PaneText(1), "顶点数: 4");
    EXPECT_EQ(GetMessages().size(), 1U);
}

TEST_F(FilesGuiTest, ImportsAFileWithAChineseName)
{
    m_Folder.Write("模型/四面体.obj", kTetrahedronObj);
    App().GetPlatform().AnswerFile("模型/四面体.obj");
    Frame().OnCommand(ResourceID::ImportObj);
    EXPECT_EQ(PaneText(1), "顶点数: 4");
}

TEST_F(FilesGuiTest, LeavesAllAsItWasWhenTheDialogIsCancelled)
{
    ImportTetrahedron();
    WhenDialogOpens([](QDialog& dialog) { dialog.reject(); });
    ChooseFromMenu(ResourceID::ImportObj);
    EXPECT_EQ(PaneText(1), "顶点数: 4");
    EXPECT_THAT(GetMessages(), IsEmpty());
}

TEST_F(FilesGuiTest, RefusesAModelOfAnotherEndingWithOneBox)
{
    m_Folder.Write("a.txt", "v 0 0 0\n");
    AnswerFileDialog("a.txt");
    AcceptMessage();
    ChooseFromMenu(ResourceID::ImportObj);
    EXPECT_THAT(GetMessages(), ElementsAre("错误|不能导入此类型文件!|"));
}

TEST_F(FilesGuiTest, TellsInOneBoxWhyAModelCannotBeRead)
{
    m_Folder.Write("a.obj", "v 0 0 0\nf 1 2 3\n");
    AnswerFileDialog("a.obj");
    AcceptMessage();
    ChooseFromMenu(ResourceID::ImportObj);
    ASSERT_EQ(GetMessages().size(), 1U);
    EXPECT_THAT(GetMessages()[0], StartsWith("Tessarine|“导入 ( .Obj )”未能完成。|"));
    EXPECT_THAT(GetMessages()[0], HasSubstr("a.obj"));
}

TEST_F(FilesGuiTest, FitsLongNamesIntoItsBoxes)
{
    const auto expectAFit = [this](const std::string& reason)
    {
        WhenDialogOpens(
            [](QDialog& dialog)
            {
                EXPECT_LE(dialog.width(), dialog.screen()->size().width());
                EXPECT_LE(dialog.height(), dialog.screen()->size().height());
                for (const QLabel* label : dialog.findChildren<QLabel*>())
                {
                    EXPECT_TRUE(dialog.rect().contains(label->geometry()));
                    EXPECT_LE(label->minimumSizeHint().width(), label->width())
                        << label->text().toStdString();
                }
                QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
            });
        GetPlatform().ShowFailure("import", reason, false);
    };
    expectAFit("cannot open " + std::string(250, 'a') + ".obj: no such file");
    std::string folders;
    for (int i = 0; i < 3000; ++i)
    {
        folders += "a/";
    }
    expectAFit("cannot open " + std::string(500, '\n') + ".obj: no such file");
    expectAFit("cannot open " + QString(150, QChar::LineSeparator).toStdString() + ".obj: no such file");
    expectAFit("cannot open " + folders + "b.obj: its name is too long");
}

TEST_F(FilesGuiTest, LeavesOutBoxesThatTheUserDoesNotWantAgainInACommand)
{
    std::vector<bool> checked;
    const auto answer = [&](bool keepsShowing)
    {
        WhenDialogOpens(
            [&checked, keepsShowing](QDialog& dialog)
            {
                auto& box = dynamic_cast<QMessageBox&>(dialog);
                EXPECT_EQ(box.text(), "The vertex doesnot exsit!");
                EXPECT_EQ(box.checkBox()->text(), "本次命令中不再显示");
                checked.push_back(box.checkBox()->isChecked());
                box.checkBox()->setChecked(!keepsShowing);
                QTest::keyClick(box.windowHandle(), Qt::Key_Return);
            });
        ShowRepeatingMessage("The vertex doesnot exsit!");
    };
    std::string errors;
    const ErrorListener before = SetErrorListener([&errors](std::string_view text) { errors += text; });
    View().Perform("test", Effect::None,
                   [&]
                   {
                       answer(true);
                       answer(false);
                       for (int i = 0; i < 1000; ++i)
                       {
                           ShowRepeatingMessage("The vertex doesnot exsit!"); // a box would wait for ever
                       }
                   });
    EXPECT_EQ(checked, (std::vector<bool>{true, true}));
    SetErrorListener(before);
    EXPECT_EQ(errors, "message box not shown again: The vertex doesnot exsit! (1000 times)\n");
    View().Perform("another", Effect::None, [&] { answer(true); });
    EXPECT_EQ(checked.size(), 3U);
}

TEST_F(FilesGuiTest, ExportsWithTheEndingAddedIntoTheChosenFolder)
{
    ImportTetrahedron();
    m_Folder.Write("out/keep", "");
    AnswerFileDialog(PathOf("out/copy"));
    ChooseFromMenu(ResourceID::ExportObj);
    EXPECT_THAT(m_Folder.Read("out/copy.obj"), HasSubstr("v "));
    EXPECT_EQ(GetCurrentFolder(), m_Folder.GetPath());
}

TEST_F(FilesGuiTest, OpensAFileByNameOnly)
{
    ImportTetrahedron();
    Open("other.obj");
    EXPECT_EQ(Frame().windowTitle(), "other.obj - Tessarine");
    EXPECT_EQ(PaneText(1), "顶点数: 4"); // nothing was read, nothing is gone
}

TEST_F(FilesGuiTest, WritesNothingWhenItSaves)
{
    Open("a.obj");
    ChooseFromMenu(ResourceID::FileSave); // has a name, and so does not ask
    EXPECT_EQ(m_Folder.Read("a.obj"), "anything");
    AnswerFileDialog("b.obj");
    ChooseFromMenu(ResourceID::FileSaveAs);
    EXPECT_FALSE(m_Folder.Has("b.obj"));
    EXPECT_EQ(Frame().windowTitle(), "b.obj - Tessarine");
}

TEST_F(FilesGuiTest, AsksForANameWhenItSavesANewDocument)
{
    AnswerFileDialog("b.obj");
    ClickButton(ResourceID::FileSave);
    EXPECT_EQ(Frame().windowTitle(), "b.obj - Tessarine");
}

TEST_F(FilesGuiTest, StartsANewDocumentWithTheCameraAndTheSwitchesOfBefore)
{
    ImportTetrahedron();
    Open("a.obj");
    ClickButton(ResourceID::ShowGrid);
    ClickButton(ResourceID::ZoomTool);
    Drag({300, 300}, {300, 330});
    const std::uint32_t flags = Flags();
    const smVec3d eye = Camera().GetPosition();
    ClickButton(ResourceID::FileNew);
    EXPECT_EQ(Frame().windowTitle(), "无标题 - Tessarine");
    EXPECT_EQ(PaneText(1), "顶点数: 0");
    EXPECT_EQ(PaneText(2), "面片数: 0");
    EXPECT_EQ(Flags(), flags);
    EXPECT_EQ(Camera().GetPosition().x, eye.x);
}

TEST_F(FilesGuiTest, ListsTheLastFourFilesTheNewestFirst)
{
    for (const char* name : {"a.obj", "b.obj", "c.obj", "d.obj", "e.obj", "c.obj"})
    {
        Open(name);
    }
    EXPECT_EQ(App().GetRecentFiles().GetFiles(),
              (QStringList{PathOf("c.obj"), PathOf("e.obj"), PathOf("d.obj"), PathOf("b.obj")}));
    const QMenu& menu = OpenMenu("文件(&F)");
    QStringList shown;
    for (const QAction* action : menu.actions())
    {
        if (action->isVisible() && action->text().startsWith('&'))
        {
            shown.append(action->text().section('/', -1));
        }
    }
    EXPECT_EQ(shown, (QStringList{"c.obj", "e.obj", "d.obj", "b.obj"}));
    QTest::keyClick(menu.windowHandle(), Qt::Key_Escape);
}

TEST_F(FilesGuiTest, KeepsTheListForTheNextRun)
{
    Open("a.obj");
    EXPECT_EQ(CRecentFileList().GetFiles(), QStringList{PathOf("a.obj")});
    const QSettings settings("Local AppWizard-Generated Applications", "Tessarine");
    EXPECT_EQ(settings.value("Recent File List/File1").toString(), PathOf("a.obj"));
}

TEST_F(FilesGuiTest, OpensAFileOfTheList)
{
    Open("a.obj");
    Open("b.obj");
    ChooseFromMenu(ResourceID::RecentFile1 + 1);
    EXPECT_EQ(Frame().windowTitle(), "a.obj - Tessarine");
    EXPECT_EQ(App().GetRecentFiles().GetFiles().constFirst(), PathOf("a.obj"));
}

TEST_F(FilesGuiTest, DropsAFileOfTheListThatIsGone)
{
    Open("a.obj");
    std::filesystem::remove(m_Folder / "a.obj");
    AcceptMessage();
    ChooseFromMenu(ResourceID::RecentFile1);
    ASSERT_EQ(GetMessages().size(), 1U);
    EXPECT_THAT(GetMessages()[0], HasSubstr("no such file"));
    EXPECT_TRUE(App().GetRecentFiles().GetFiles().isEmpty());
}

TEST_F(FilesGuiTest, SaysWhereTheListWillStand)
{
    const QAction& action = Action(ResourceID::RecentFile1);
    EXPECT_EQ(action.text(), "最近的文件");
    EXPECT_TRUE(action.isVisible());
    EXPECT_FALSE(action.isEnabled());
    EXPECT_FALSE(Action(ResourceID::RecentFile1 + 1).isVisible());
}

TEST_F(FilesGuiTest, OpensTheFileOfTheCommandLine)
{
    m_Folder.Write("a.obj", kTetrahedronObj);
    EXPECT_TRUE(StartAgain("a.obj"));
    EXPECT_EQ(Frame().windowTitle(), "a.obj - Tessarine");
    EXPECT_EQ(App().GetRecentFiles().GetFiles(), QStringList{PathOf("a.obj")});
    EXPECT_EQ(PaneText(1), "顶点数: 0");
}

TEST_F(FilesGuiTest, DoesNotStartWithAFileThatIsMissing)
{
    QTimer poll; // goes on without the window of the test
    QObject::connect(&poll, &QTimer::timeout,
                     []
                     {
                         if (auto* box = QApplication::activeModalWidget())
                         {
                             box->close();
                         }
                     });
    poll.start(5);
    EXPECT_FALSE(StartAgain("missing.obj"));
}

TEST_F(FilesGuiTest, ImportsTheModelOfTheCommandLine)
{
    m_Folder.Write("models/a.obj", kTetrahedronObj);
    EXPECT_TRUE(StartAgain("", "models/a.obj"));
    EXPECT_EQ(PaneText(1), "顶点数: 4");
    EXPECT_EQ(Frame().windowTitle(), "a.obj - Tessarine");
    EXPECT_EQ(GetCurrentFolder(), m_Folder.GetPath());
}
}
}
