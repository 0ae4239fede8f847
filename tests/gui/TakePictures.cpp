#include "GuiTest.h"
#include "resource.h"
#include <QScreen>

/// Takes the pictures of the manual: the real window, driven like in the tests.
namespace tessarine
{
namespace
{
constexpr QSize kPictureSize(880, 600);
constexpr int kMenuHeight = 260; ///< every menu ends above

class Pictures : public GuiTest
{
protected:
    Pictures()
    {
        App().GetConsole().hide();
        Frame().resize(kPictureSize);
        Camera().SetLookAt({1.8, 0.85, 2.35}, {0, 0, 0}, {0, 1, 0});
        EXPECT_TRUE(QTest::qWaitFor([this] { return Camera().GetWidth() == View().width(); }));
    }

    /// A wide window, with the model at its left.
    void MakeRoomForDialog()
    {
        Frame().resize(1200, kPictureSize.height());
        Camera().SetLookAt({2.4, 0.9, 1.6}, {0.5, 0, -0.7}, {0, 1, 0});
        EXPECT_TRUE(QTest::qWaitFor([this] { return Camera().GetWidth() == View().width(); }));
    }

    void Import(const char* model)
    {
        App().GetPlatform().AnswerFile(model);
        Frame().OnCommand(ResourceID::ImportObj);
        TakeKeyboard();
    }

    /// The bunny with a fifth of its faces, so that its wires can be told apart.
    void ImportBunny()
    {
        Import(TESSARINE_SAMPLE "/bunny.obj");
        Frame().OnCommand(ResourceID::Simplify20);
        AnswerFileDialog("bunny.obj");
        Frame().OnCommand(ResourceID::ExportObj);
        Import("bunny.obj");
    }

    /// With the menu that a click with the right button opens there.
    void TakePopup(const char* name, QPoint place)
    {
        MoveTo(place);
        QTest::mousePress(View().windowHandle(), Qt::RightButton, {}, place);
        QTest::mouseRelease(View().windowHandle(), Qt::RightButton, {}, place);
        QWidget* popup = QApplication::activePopupWidget();
        ASSERT_NE(popup, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(popup));
        TakeWithPointer(name);
        popup->close();
    }

    /// Saves what the screen shows where the window stands.
    void Take(const char* name)
    {
        MoveTo({5, 5}); // away from buttons and their tips
        TakeWithPointer(name);
    }

    /// The upper part alone, where a height is given.
    void TakeWithPointer(const char* name, int height = 0)
    {
        QCoreApplication::processEvents();
        QRect place = Frame().frameGeometry();
        place.setHeight(height > 0 ? height : place.height());
        const QImage picture =
            Frame().screen()->grabWindow(0, place.x(), place.y(), place.width(), place.height()).toImage();
        EXPECT_TRUE(picture.convertToFormat(QImage::Format_RGB888)
                        .save(QString(TESSARINE_PICTURES "/%1.png").arg(name), "PNG", 0));
    }
};

TEST_F(Pictures, Window)
{
    ImportBunny();
    Take("window");
}

TEST_F(Pictures, ImportAndNew)
{
    Take("import-before");
    Import(TESSARINE_SAMPLE "/bunny.obj");
    Take("import-after");
    ClickButton(ResourceID::FileNew);
    Take("new-after");
}

TEST_F(Pictures, HoverAndPopup)
{
    ImportBunny();
    Camera().SetLookAt({0.9, 0.35, 1.1}, {0, -0.1, 0}, {0, 1, 0});
    ClickButton(ResourceID::SelectFaces);
    for (const QPoint off : {QPoint(60, 90), QPoint(100, 60), QPoint(0, 110)})
    {
        const QPoint place = View().rect().center() + off;
        MoveTo(place);
        Press(place);
        Release(place);
    }
    TakePopup("popup", View().rect().center() + QPoint(150, 90));
}

TEST_F(Pictures, Menus)
{
    ImportBunny();
    const std::pair<const char*, const char*> menus[] = {{"文件(&F)", "menu-file"},
                                                         {"显示(&V)", "menu-display"},
                                                         {"重构(&R)", "menu-reconstruction"},
                                                         {"重构辅助显示(&A)", "menu-overlays"}};
    for (const auto& [title, name] : menus)
    {
        const QMenu& menu = OpenMenu(title);
        TakeWithPointer(name, kMenuHeight);
        QTest::keyClick(menu.windowHandle(), Qt::Key_Escape);
    }
}

/// Shows a dialog at the right of the window.
void Place(QWidget& dialog, const QWidget& frame)
{
    dialog.move(frame.mapToGlobal(QPoint(frame.width() - dialog.width() - 20, 150)));
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    dialog.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
}

QWidget& FindDialog(int id)
{
    for (QWidget* window : QApplication::topLevelWidgets())
    {
        if (window->objectName() == QString::number(id))
        {
            return *window;
        }
    }
    throw std::logic_error("no dialog " + std::to_string(id));
}

TEST_F(Pictures, LightingDialogOfTheStart)
{
    MakeRoomForDialog();
    ImportBunny();
    ClickButton(ResourceID::LightingDialog);
    Place(FindDialog(ResourceID::SetLightingDialog), Frame());
    Take("lighting-before");
}

TEST_F(Pictures, LightingDialog)
{
    MakeRoomForDialog();
    ImportBunny();
    Open3DLight& light = *Bench().GetController().GetSceneManager().GetLightList().front();
    light.m_Diffuse = smVec3f(0.9F, 0.55F, 0.2F);
    ClickButton(ResourceID::LightingDialog);
    Place(FindDialog(ResourceID::SetLightingDialog), Frame());
    TakeWithPointer("lighting");
}

TEST_F(Pictures, MenuOfSolid)
{
    MakeRoomForDialog();
    ImportBunny();
    const QPoint place = View().rect().center() + QPoint(-150, 90);
    MoveTo(place);
    Press(place);
    Release(place);
    TakePopup("material-before", place);
}

TEST_F(Pictures, MaterialDialog)
{
    MakeRoomForDialog();
    ImportBunny();
    MANBrepElementManager& elements = Bench().GetController().GetElementManager();
    elements.ToggleSelect(ElementKind::Solid);
    Frame().OnCommand(ResourceID::SetMaterial);
    Place(FindDialog(ResourceID::SetMaterialDialog), Frame());
    TakeWithPointer("material");
}

TEST_F(Pictures, SubdivisionDialog)
{
    ImportBunny();
    WhenDialogOpens(
        [this](QDialog& dialog)
        {
            TakeWithPointer("subdivision-dialog");
            dialog.reject();
        });
    ChooseFromMenu(ResourceID::SubdivideAdaptive);
}

TEST_F(Pictures, Console)
{
    ImportBunny();
    App().GetConsole().show();
    App().GetConsole().move(Frame().pos() + QPoint(285, 185));
    App().GetConsole().raise();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&App().GetConsole()));
    App().GetConsole().ShowPending();
    TakeWithPointer("console");
}
}
}
