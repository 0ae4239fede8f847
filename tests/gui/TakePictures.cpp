#include "GuiTest.h"
#include "resource.h"
#include <QLineEdit>
#include <QScreen>

/// Takes the pictures of the manual: the real window, driven like in the tests.
namespace tessarine
{
namespace
{
constexpr QSize kPictureSize(880, 600);

/// A cube whose every face names its material, as only the first face behind such a line has one.
constexpr char kCubeObj[] = "mtllib cube.mtl\n"
                            "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 0 1\nv 1 0 1\nv 1 1 1\nv 0 1 1\n"
                            "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
                            "usemtl tiles\nf 1/1 4/2 3/3 2/4\nusemtl tiles\nf 5/1 6/2 7/3 8/4\n"
                            "usemtl tiles\nf 1/1 2/2 6/3 5/4\nusemtl tiles\nf 3/1 4/2 8/3 7/4\n"
                            "usemtl tiles\nf 2/1 3/2 7/3 6/4\nusemtl tiles\nf 1/1 5/2 8/3 4/4\n";
constexpr char kCubeMtl[] = "newmtl tiles\nKa 0.3 0.3 0.3\nKd 0.8 0.8 0.8\nKs 0 0 0\nmap_Kd tiles.png\n";

class Pictures : public GuiTest
{
protected:
    Pictures()
    {
        App().GetConsole().hide();
        Frame().resize(kPictureSize);
        Camera().SetLookAt({2.6, 1.5, 2.6}, {0, 0, 0}, {0, 1, 0});
        EXPECT_TRUE(QTest::qWaitFor([this] { return Camera().GetWidth() == View().width(); }));
    }

    /// A wide window, with the model at its left.
    void MakeRoomForDialog()
    {
        Frame().resize(1200, kPictureSize.height());
        Camera().SetLookAt({3.2, 1.5, 2.0}, {0.6, 0, -0.6}, {0, 1, 0});
        EXPECT_TRUE(QTest::qWaitFor([this] { return Camera().GetWidth() == View().width(); }));
    }

    void Import(const char* model)
    {
        App().GetPlatform().AnswerFile(model);
        Frame().OnCommand(ResourceID::ImportObj);
        TakeKeyboard();
    }

    void ImportPebble() { Import(TESSARINE_SAMPLE "/pebble.obj"); }

    void ImportCube()
    {
        m_Folder.Write("cube.obj", kCubeObj);
        m_Folder.Write("cube.mtl", kCubeMtl);
        QImage tiles(64, 64, QImage::Format_RGB888);
        for (int y = 0; y < tiles.height(); ++y)
        {
            for (int x = 0; x < tiles.width(); ++x)
            {
                const bool isLight = (x / 16 + y / 16) % 2 == 0;
                tiles.setPixelColor(x, y, isLight ? QColor(235, 225, 200) : QColor(70, 110, 150));
            }
        }
        tiles.save("tiles.png");
        Camera().SetLookAt({3.4, 2.0, 2.8}, {0, 0, 0}, {0, 1, 0});
        Import("cube.obj");
    }

    /// Saves what the screen shows where the window stands.
    void Take(const char* name)
    {
        MoveTo({5, 5}); // away from buttons and their tips
        TakeWithPointer(name);
    }

    void TakeWithPointer(const char* name)
    {
        QCoreApplication::processEvents();
        const QRect place = Frame().frameGeometry();
        const QImage picture =
            Frame().screen()->grabWindow(0, place.x(), place.y(), place.width(), place.height()).toImage();
        EXPECT_TRUE(picture.convertToFormat(QImage::Format_RGB888)
                        .save(QString(TESSARINE_PICTURES "/%1.png").arg(name), "PNG", 0));
    }
};

TEST_F(Pictures, Start)
{
    Take("start");
}

TEST_F(Pictures, WireAndFlat)
{
    ImportPebble();
    Take("wire-and-flat");
}

TEST_F(Pictures, Smooth)
{
    ImportPebble();
    ChooseFromMenu(ResourceID::ShowWire);
    ChooseFromMenu(ResourceID::VertexNormals);
    Take("smooth");
}

TEST_F(Pictures, Points)
{
    ImportPebble();
    ChooseFromMenu(ResourceID::ShowWire);
    ChooseFromMenu(ResourceID::FaceNormals);
    ChooseFromMenu(ResourceID::ShowPoints);
    Take("points");
}

TEST_F(Pictures, Textured)
{
    ImportCube();
    ChooseFromMenu(ResourceID::ShowTexture);
    Take("textured");
}

TEST_F(Pictures, GridAndAxes)
{
    ImportPebble();
    ClickButton(ResourceID::ShowGrid);
    ClickButton(ResourceID::ShowAxes);
    ClickButton(ResourceID::OrbitTool);
    Drag({400, 200}, {402, 199});
    Take("grid-and-axes");
}

TEST_F(Pictures, Selection)
{
    ImportPebble();
    const QPoint place = View().rect().center() + QPoint(20, -15);
    const std::pair<int, const char*> types[] = {{ResourceID::SelectVertices, "selected-vertex"},
                                                 {ResourceID::SelectEdges, "selected-edge"},
                                                 {ResourceID::SelectFaces, "selected-face"},
                                                 {ResourceID::SelectSolids, "selected-solid"}};
    for (const auto& [type, name] : types)
    {
        Camera().SetLookAt({1.3, 0.75, 1.3}, {0, 0, 0}, {0, 1, 0});
        ClickButton(type);
        MoveTo(place);
        Press(place);
        Release(place);
        Take(name); // with the pointer away, so that the hover mark is away, too
    }
}

TEST_F(Pictures, HoverAndPopup)
{
    ImportPebble();
    Camera().SetLookAt({1.3, 0.75, 1.3}, {0, 0, 0}, {0, 1, 0});
    ClickButton(ResourceID::SelectFaces);
    for (const QPoint off : {QPoint(0, 0), QPoint(40, 10), QPoint(-60, 20)})
    {
        const QPoint place = View().rect().center() + off;
        MoveTo(place);
        Press(place);
        Release(place);
    }
    const QPoint place = View().rect().center() + QPoint(110, -60);
    MoveTo(place);
    QTest::mousePress(View().windowHandle(), Qt::RightButton, {}, place);
    QTest::mouseRelease(View().windowHandle(), Qt::RightButton, {}, place);
    QWidget* popup = QApplication::activePopupWidget();
    ASSERT_NE(popup, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(popup));
    TakeWithPointer("popup");
    popup->close();
}

TEST_F(Pictures, Menus)
{
    ImportPebble();
    const std::pair<const char*, const char*> menus[] = {{"文件(&F)", "menu-file"},
                                                         {"显示(&V)", "menu-display"},
                                                         {"重构(&R)", "menu-reconstruction"},
                                                         {"重构辅助显示(&A)", "menu-overlays"}};
    for (const auto& [title, name] : menus)
    {
        const QMenu& menu = OpenMenu(title);
        TakeWithPointer(name);
        QTest::keyClick(menu.windowHandle(), Qt::Key_Escape);
    }
}

TEST_F(Pictures, About)
{
    WhenDialogOpens(
        [this](QDialog& dialog)
        {
            TakeWithPointer("about");
            dialog.accept();
        });
    ClickButton(ResourceID::AppAbout);
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

TEST_F(Pictures, LightingDialog)
{
    MakeRoomForDialog();
    ImportPebble();
    Open3DLight& light = *Bench().GetController().GetSceneManager().GetLightList().front();
    light.m_Diffuse = smVec3f(0.9F, 0.55F, 0.2F);
    ClickButton(ResourceID::LightingDialog);
    Place(FindDialog(ResourceID::SetLightingDialog), Frame());
    TakeWithPointer("lighting");
}

TEST_F(Pictures, MaterialDialog)
{
    MakeRoomForDialog();
    ImportPebble();
    MANBrepElementManager& elements = Bench().GetController().GetElementManager();
    elements.ToggleSelect(ElementKind::Solid);
    Frame().OnCommand(ResourceID::SetMaterial);
    Place(FindDialog(ResourceID::SetMaterialDialog), Frame());
    TakeWithPointer("material");
}

TEST_F(Pictures, SubdivisionDialog)
{
    ImportPebble();
    WhenDialogOpens(
        [this](QDialog& dialog)
        {
            TakeWithPointer("subdivision-dialog");
            dialog.reject();
        });
    ChooseFromMenu(ResourceID::SubdivideAdaptive);
}

TEST_F(Pictures, AdaptiveSubdivision)
{
    ImportPebble();
    WhenDialogOpens(
        [](QDialog& dialog)
        {
            dialog.findChild<QLineEdit*>()->setText("0.01");
            dialog.accept();
        });
    ChooseFromMenu(ResourceID::SubdivideAdaptive);
    TakeKeyboard();
    Take("adaptive");
}

TEST_F(Pictures, FileDialog)
{
    m_Folder.Write("duck.obj", "");
    m_Folder.Write("pebble.obj", "");
    WhenDialogOpens(
        [this](QDialog& dialog)
        {
            TakeWithPointer("file-dialog");
            dialog.reject();
        });
    ChooseFromMenu(ResourceID::ImportObj);
}

TEST_F(Pictures, Console)
{
    ImportPebble();
    App().GetConsole().show();
    App().GetConsole().move(Frame().pos() + QPoint(20, 300));
    App().GetConsole().raise();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&App().GetConsole()));
    App().GetConsole().ShowPending();
    TakeWithPointer("console");
}
}
}
