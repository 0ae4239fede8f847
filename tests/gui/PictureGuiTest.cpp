#include "DisplayFlag.h"
#include "GuiTest.h"
#include "resource.h"
#include <QProcess>
#include <QWindow>

namespace tessarine
{
namespace
{
class PictureGuiTest : public GuiTest
{
protected:
    /// The same picture without a window, by the batch tool.
    QImage RenderOffScreen(const QStringList& operations)
    {
        const QSize pixels = View().size() * View().devicePixelRatio();
        const QString size = QString("%1x%2").arg(pixels.width()).arg(pixels.height());
        QProcess batch;
        batch.start(TESSARINE_BATCH, QStringList{"-q", "--window", size} + operations +
                                         QStringList{"render", "off-screen.png"});
        EXPECT_TRUE(batch.waitForFinished());
        EXPECT_EQ(batch.exitCode(), 0) << batch.readAllStandardError().toStdString();
        return QImage("off-screen.png").convertToFormat(QImage::Format_RGB888);
    }
};

TEST_F(PictureGuiTest, IsBlackWithoutAModel)
{
    const QImage picture = GrabView();
    EXPECT_EQ(picture.size(), View().size());
    QImage black(picture.size(), QImage::Format_RGB888);
    black.fill(Qt::black);
    EXPECT_EQ(picture, black);
}

TEST_F(PictureGuiTest, IsTheSameInTheWindowAndOffScreen)
{
    ImportTetrahedron();
    const QStringList import{"import", "tetrahedron.obj"};
    EXPECT_EQ(GrabView(), RenderOffScreen(import));
    ClickButton(ResourceID::ShowGrid);
    ClickButton(ResourceID::ShowAxes);
    ChooseFromMenu(ResourceID::VertexNormals);
    EXPECT_EQ(GrabView(),
              RenderOffScreen(import + QStringList{"menu", "32782", "menu", "32781", "menu", "32819"}));
}

TEST_F(PictureGuiTest, IsTheSameInTheWindowAndOffScreenInPointsAndTextures)
{
    m_Folder.Write("squares.ppm", "P3\n2 2\n255\n255 0 0 0 255 0 0 0 255 255 255 0\n");
    m_Folder.Write("squares.mtl", "newmtl squares\nKd 1 1 1\nmap_Kd squares.ppm\n");
    m_Folder.Write("square.obj", "mtllib squares.mtl\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\n"
                                 "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nusemtl squares\nf 1/1 2/2 3/3 4/4\n");
    AnswerFileDialog("square.obj");
    ChooseFromMenu(ResourceID::ImportObj);
    const QStringList import{"import", "square.obj"};
    ChooseFromMenu(ResourceID::ShowPoints);
    EXPECT_EQ(GrabView(), RenderOffScreen(import + QStringList{"menu", "32799"}));
    ChooseFromMenu(ResourceID::ShowTexture);
    const QImage textured = GrabView();
    EXPECT_EQ(textured, RenderOffScreen(import + QStringList{"menu", "32792"}));
    EXPECT_NE(textured, RenderOffScreen(import));
}

TEST_F(PictureGuiTest, StaysWhenItIsPaintedAgain)
{
    ImportTetrahedron();
    const QImage first = GrabView();
    View().repaint();
    View().repaint();
    EXPECT_EQ(GrabView(), first);
}

TEST_F(PictureGuiTest, StaysWhenAMenuHasCoveredIt)
{
    ImportTetrahedron();
    ClickButton(ResourceID::ShowGrid);
    const QImage first = GrabView();
    const QMenu& menu = OpenMenu("文件(&F)");
    QTest::keyClick(menu.windowHandle(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return GrabView() == first; }));
}

TEST_F(PictureGuiTest, IsDrawnByTheMessageThatAnybodyMayPost)
{
    App().GetPlatform().SetPaneText(1, "stale");
    QCoreApplication::postEvent(&View(), new QEvent(CTessarineView::kRedrawEvent));
    QCoreApplication::processEvents();
    EXPECT_EQ(PaneText(1), "顶点数: 0");
}

TEST_F(PictureGuiTest, FollowsTheSizeOfTheWindow)
{
    ImportTetrahedron();
    Frame().resize(700, 600);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Camera().GetWidth() == View().width(); }));
    EXPECT_EQ(Camera().GetHeight(), View().height());
    EXPECT_FLOAT_EQ(Camera().GetAspect(),
                    static_cast<float>(View().width()) / static_cast<float>(View().height()));
    EXPECT_EQ(GrabView(), RenderOffScreen({"import", "tetrahedron.obj"}));
}

TEST_F(PictureGuiTest, SurvivesAViewWithoutArea)
{
    ImportTetrahedron();
    const float aspect = Camera().GetAspect();
    View().setFixedHeight(0);
    QCoreApplication::processEvents();
    View().repaint();
    ClickButton(ResourceID::ShowGrid);
    Drag({10, 0}, {20, 0});
    EXPECT_TRUE(std::isfinite(Camera().GetAspect()));
    View().setFixedSize(0, 0);
    QCoreApplication::processEvents();
    ClickButton(ResourceID::ShowGrid);
    View().setMinimumSize(0, 0);
    View().setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    Frame().resize(999, 700);
    Frame().resize(1000, 700);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Camera().GetAspect() == aspect; }));
}
}
}
