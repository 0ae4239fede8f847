#include "GuiTest.h"
#include "IOSaveRecovery.h"
#include "StateFolder.h"
#include "resource.h"
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace tessarine
{
namespace
{
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// Windows that find what another one has left.
class RecoveryGuiTest : public GuiTest
{
protected:
    RecoveryGuiTest() : m_Copies(FindStateFolder() / "recovery") {}
    ~RecoveryGuiTest() override
    {
        for (IORecoveryFolder& copy : IORecoveryFolder::FindAbandoned(m_Copies))
        {
            copy.Remove();
        }
    }

    /// As a window leaves it whose process is ended: its lock goes, its copy stays.
    void LeaveASubdividedModel()
    {
        ImportTetrahedron();
        ChooseFromMenu(ResourceID::SubdivideLoop);
        IAController& controller = Bench().GetController();
        IORecoveryFolder copy = IORecoveryFolder::Create(m_Copies);
        copy.Replace(
            [&](const std::filesystem::path& path) {
                IOSaveRecovery(&controller.GetSceneManager(), &controller.GetElementManager())
                    .Save(path.string());
            });
    }

    /// Presses a button of each box that a new window opens, and takes down what the boxes say.
    bool StartAndAnswer(const QString& button)
    {
        QTimer poll; // goes on without the window of the test
        QObject::connect(&poll, &QTimer::timeout,
                         [this, button]
                         {
                             auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                             if (box == nullptr || !box->isVisible())
                             {
                                 return;
                             }
                             m_Boxes.push_back((box->text() + "|" + box->informativeText()).toStdString());
                             for (QAbstractButton* choice : box->buttons())
                             {
                                 if (choice->text().startsWith(button))
                                 {
                                     choice->click();
                                     return;
                                 }
                             }
                             box->close();
                         });
        poll.start(5);
        return StartAgain("");
    }

    std::size_t CountCopies() { return IORecoveryFolder::FindAbandoned(m_Copies).size(); }

    std::filesystem::path m_Copies;
    std::vector<std::string> m_Boxes;
};

/// A change of the model, as often as it takes until it is time for a copy: a second, as a copy of a small model is
/// foreseen to take 50 ms, and may take a twentieth.
TEST_F(RecoveryGuiTest, KeepsTheModelOfTheWindowUntilItIsClosed)
{
    ImportTetrahedron();
    const auto isKept = [this]
    {
        View().Perform("change", Effect::ChangesModel, [] {});
        return std::filesystem::exists(m_Copies) && !std::filesystem::is_empty(m_Copies);
    };
    EXPECT_TRUE(QTest::qWaitFor(isKept, 10000));
    EXPECT_EQ(CountCopies(), 0U); // the window lives
    App().ExitInstance();
    EXPECT_TRUE(std::filesystem::is_empty(m_Copies));
    EXPECT_TRUE(App().InitInstance({}));
}

TEST_F(RecoveryGuiTest, AsksNothingWhereNothingWasLeft)
{
    EXPECT_TRUE(StartAndAnswer("恢复"));
    EXPECT_THAT(m_Boxes, IsEmpty());
}

TEST_F(RecoveryGuiTest, BringsBackTheModelOfAKilledWindow)
{
    LeaveASubdividedModel();
    EXPECT_TRUE(StartAndAnswer("恢复"));
    ASSERT_THAT(m_Boxes, SizeIs(1));
    EXPECT_THAT(m_Boxes[0], HasSubstr("Tessarine 上次没有正常退出。是否恢复当时的模型?|模型保存于 "));
    EXPECT_EQ(PaneText(1), "顶点数: 10"); // 4 corners and 6 edges
    EXPECT_EQ(PaneText(2), "面片数: 16");
    EXPECT_EQ(Frame().windowTitle(), "recovered.obj - Tessarine");
    EXPECT_EQ(GetCurrentFolder(), m_Folder.GetPath());
    EXPECT_EQ(CountCopies(), 0U); // it is this window's own now
    EXPECT_FALSE(std::filesystem::is_empty(m_Copies));
    App().ExitInstance();
    EXPECT_TRUE(std::filesystem::is_empty(m_Copies));
    EXPECT_TRUE(App().InitInstance({}));
}

TEST_F(RecoveryGuiTest, LeavesTheCopyForLater)
{
    LeaveASubdividedModel();
    EXPECT_TRUE(StartAndAnswer("以后再说"));
    EXPECT_THAT(m_Boxes, SizeIs(1));
    EXPECT_EQ(PaneText(2), "面片数: 0");
    EXPECT_EQ(CountCopies(), 1U);
    EXPECT_TRUE(StartAndAnswer("no such button")); // the box is closed
    EXPECT_THAT(m_Boxes, SizeIs(2));
    EXPECT_EQ(CountCopies(), 1U);
}

TEST_F(RecoveryGuiTest, DiscardsTheCopy)
{
    LeaveASubdividedModel();
    EXPECT_TRUE(StartAndAnswer("丢弃"));
    EXPECT_THAT(m_Boxes, SizeIs(1));
    EXPECT_EQ(PaneText(2), "面片数: 0");
    EXPECT_TRUE(std::filesystem::is_empty(m_Copies));
}

TEST_F(RecoveryGuiTest, OffersOneModelAfterTheOtherUntilOneIsTaken)
{
    LeaveASubdividedModel();
    LeaveASubdividedModel();
    EXPECT_TRUE(StartAndAnswer("以后再说"));
    EXPECT_THAT(m_Boxes, SizeIs(2));
    EXPECT_TRUE(StartAndAnswer("恢复"));
    EXPECT_THAT(m_Boxes, SizeIs(3));
    EXPECT_EQ(CountCopies(), 1U);
}

TEST_F(RecoveryGuiTest, KeepsACopyThatCannotBeImported)
{
    IORecoveryFolder::Create(m_Copies).Replace([](const std::filesystem::path& path)
                                               { ReplacingFile(path).Commit(); });
    m_Folder.Write("broken.obj", "v 0 0 0\nf 1 2 3\n");
    for (const auto& entry : std::filesystem::directory_iterator(m_Copies))
    {
        std::filesystem::copy_file(m_Folder / "broken.obj", entry.path() / "1/recovered.obj",
                                   std::filesystem::copy_options::overwrite_existing);
    }
    EXPECT_TRUE(StartAndAnswer("恢复"));
    EXPECT_THAT(m_Boxes, SizeIs(2)); // and the one that tells why
    EXPECT_EQ(CountCopies(), 1U);
}
}
}
