#include "GuiTest.h"
#include "WindowDump.h"
#include "resource.h"
#include <QAction>
#include <QApplication>
#include <QProcess>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

constexpr char kCubeObj[] = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 1 0\nv 0 0 1\nv 1 0 1\nv 0 1 1\nv 1 1 1\n"
                            "f 1 3 4 2\nf 5 6 8 7\nf 1 2 6 5\nf 3 7 8 4\nf 1 5 7 3\nf 2 4 8 6\n";
constexpr std::uint32_t kFront = 0xC0000001;
constexpr std::uint32_t kCube = 0xE0000000;

/// A cube from -1 to 1 that is looked at along -z, so that its front, the second face, fills three fifths of the
/// view's height.
class SelectionGuiTest : public GuiTest
{
protected:
    SelectionGuiTest()
    {
        m_Folder.Write("cube.obj", kCubeObj);
        App().GetPlatform().AnswerFile("cube.obj");
        Frame().OnCommand(ResourceID::ImportObj);
        Camera().SetLookAt({0, 0, 5}, {0, 0, 0}, {0, 1, 0});
        m_Centre = View().rect().center();
        TakeKeyboard();
        MoveTo({5, 5}); // a motion to where the mouse was in the test before is none
    }

    /// From the middle of the view, in fifths of its height, y up: the corner of the front is near (1.5, 1.5).
    QPoint Place(double x, double y) const
    {
        return m_Centre +
               QPoint(static_cast<int>(x * m_Centre.y() / 2.5), static_cast<int>(-y * m_Centre.y() / 2.5));
    }

    void Click(QPoint place)
    {
        MoveTo(place);
        Press(place);
        Release(place);
    }
    void RightClick(QPoint place) { QTest::mouseClick(View().windowHandle(), Qt::RightButton, {}, place); }

    /// The pop-up menu that is open, or null.
    static QMenu* GetPopup() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

    static std::vector<std::string> GetLabels(const QMenu& menu)
    {
        std::vector<std::string> labels;
        for (const QAction* action : menu.actions())
        {
            if (!action->isSeparator())
            {
                labels.push_back(action->text().toStdString());
            }
        }
        return labels;
    }

    /// Opens the pop-up by the right button, and clicks an entry.
    void ChooseFromPopup(QPoint place, int id)
    {
        RightClick(place);
        QMenu* menu = GetPopup();
        ASSERT_NE(menu, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
        QTest::mouseClick(menu->windowHandle(), Qt::LeftButton, {},
                          menu->actionGeometry(&Action(id)).center());
        EXPECT_TRUE(QTest::qWaitFor([] { return GetPopup() == nullptr; }));
    }

    const std::vector<std::uint32_t>& Selection()
    {
        return Bench().GetController().GetElementManager().GetSelectList();
    }
    const std::vector<std::uint32_t>& Hover() { return GLView().GetHoverList(); }
    unsigned ToolOnTop() { return Bench().GetToolsManager().GetCurrentTool()->GetToolID(); }
    const smVec3d& PositionOf(std::uint32_t vertex)
    {
        return Bench().GetController().GetElementManager().GetVertex(vertex)->GetPosition();
    }
    double PixelWay() { return Camera().GetViewVector().Length() / (200.0 * 6.0); }

    QPoint m_Centre;
};

TEST_F(SelectionGuiTest, MarksWhatIsUnderTheMouse)
{
    const QImage plain = GrabView();
    MoveTo(m_Centre);
    EXPECT_THAT(Hover(), ElementsAre(kCube));
    const QImage marked = GrabView();
    EXPECT_NE(marked, plain);
    MoveTo({3, 3});
    EXPECT_THAT(Hover(), IsEmpty());
    EXPECT_EQ(GrabView(), plain);
}

TEST_F(SelectionGuiTest, SelectsByAClickAndTakesBackByTheNext)
{
    Click(m_Centre);
    EXPECT_THAT(Selection(), ElementsAre(kCube));
    DebugConsole().Flush();
    EXPECT_THAT(GetTerminalText(), EndsWith("ELEMENT ID:3758096384\n"));
    Click(m_Centre);
    EXPECT_THAT(Selection(), IsEmpty());
}

TEST_F(SelectionGuiTest, SelectsVerticesEdgesFacesAndSolidsByTheirButtons)
{
    ClickButton(ResourceID::SelectVertices);
    Click(Place(1.3, 1.3));
    EXPECT_THAT(Selection(), ElementsAre(7U));
    ClickButton(ResourceID::SelectEdges);
    EXPECT_THAT(Selection(), IsEmpty());
    Click(Place(1.3, 0));
    ASSERT_EQ(Selection().size(), 1U);
    EXPECT_EQ(Selection()[0] & 0xF0000000, ElementKind::Edge);
    ClickButton(ResourceID::SelectFaces);
    Click(Place(-1, -1));
    EXPECT_THAT(Selection(), ElementsAre(kFront));
    ClickButton(ResourceID::SelectSolids);
    Click(Place(-1, -1));
    EXPECT_THAT(Selection(), ElementsAre(kCube));
}

TEST_F(SelectionGuiTest, OpensTheMenuOfTheTypeAtTheMouse)
{
    struct Expected
    {
        int type;
        std::string title;
        std::vector<std::string> labels;
    };
    const std::vector<std::string> axes{"沿 X 轴", "沿 Y 轴", "沿 Z 轴"};
    const auto with = [](std::vector<std::string> labels, const char* last)
    {
        labels.emplace_back(last);
        return labels;
    };
    const Expected menus[] = {{ResourceID::SelectVertices, "顶点操作", with(axes, "沿法向量")},
                              {ResourceID::SelectFaces, "面操作", with(axes, "沿法向量")},
                              {ResourceID::SelectSolids, "实体操作", with(axes, "设置材质")}};
    for (const Expected& expected : menus)
    {
        ClickButton(expected.type);
        RightClick(m_Centre);
        QMenu* menu = GetPopup();
        ASSERT_NE(menu, nullptr) << expected.title;
        EXPECT_EQ(menu->title().toStdString(), expected.title);
        EXPECT_EQ(GetLabels(*menu), expected.labels);
        EXPECT_EQ(menu->pos(), View().mapToGlobal(m_Centre));
        menu->close();
    }
}

TEST_F(SelectionGuiTest, OpensNoMenuForEdges)
{
    ClickButton(ResourceID::SelectEdges);
    RightClick(m_Centre);
    EXPECT_EQ(GetPopup(), nullptr);
}

TEST_F(SelectionGuiTest, ClosesTheMenuWithoutAChoice)
{
    Click(m_Centre);
    RightClick(m_Centre);
    QMenu* menu = GetPopup();
    ASSERT_NE(menu, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
    QTest::keyClick(menu->windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(GetPopup(), nullptr);
    EXPECT_EQ(ToolOnTop(), ToolID::Select);
    EXPECT_THAT(Selection(), ElementsAre(kCube));
}

struct MoveEntry
{
    int type;
    int id;
    smVec3d way; ///< of vertex 7, for one pixel's way
};

TEST_F(SelectionGuiTest, AcceptsAndTakesBackEachMove)
{
    const double oblique = 1.0 / std::sqrt(3.0);
    const MoveEntry moves[] = {{ResourceID::SelectVertices, 32806, {1, 0, 0}},
                               {ResourceID::SelectVertices, 32807, {0, 1, 0}},
                               {ResourceID::SelectVertices, 32808, {0, 0, 1}},
                               {ResourceID::SelectVertices, 32809, {oblique, oblique, oblique}},
                               {ResourceID::SelectFaces, 32810, {1, 0, 0}},
                               {ResourceID::SelectFaces, 32811, {0, 1, 0}},
                               {ResourceID::SelectFaces, 32812, {0, 0, 1}},
                               {ResourceID::SelectFaces, 32813, {0, 0, 1}},
                               {ResourceID::SelectSolids, 32814, {1, 0, 0}},
                               {ResourceID::SelectSolids, 32815, {0, 1, 0}},
                               {ResourceID::SelectSolids, 32816, {0, 0, 1}}};
    std::size_t accepted = 0;
    for (const MoveEntry& move : moves)
    {
        App().GetPlatform().AnswerFile("cube.obj");
        Frame().OnCommand(ResourceID::ImportObj);
        ClickButton(ResourceID::SelectTool);
        GLView().SetSelectType(0); // drops the selection of the cube before
        ClickButton(move.type);
        Click(Place(1.2, 1.2));
        for (const bool isAccepted : {false, true})
        {
            const smVec3d before = PositionOf(7);
            ChooseFromPopup(Place(1.2, 1.2), move.id);
            MoveTo(m_Centre);
            MoveTo(m_Centre + QPoint(30, 5));
            const smVec3d way = PositionOf(7) - before;
            EXPECT_NEAR((way - move.way * (30 * PixelWay())).Length(), 0.0, 1e-14) << move.id;
            if (isAccepted)
            {
                Press(m_Centre + QPoint(30, 5));
                Release(m_Centre + QPoint(30, 5));
                EXPECT_NEAR((PositionOf(7) - before - way).Length(), 0.0, 0.0);
                ++accepted;
            }
            else
            {
                RightClick(m_Centre + QPoint(30, 5));
                EXPECT_NEAR((PositionOf(7) - before).Length(), 0.0, 0.0);
                EXPECT_EQ(GetPopup(), nullptr);
            }
            EXPECT_EQ(ToolOnTop(), ToolID::Select) << move.id;
        }
    }
    EXPECT_EQ(Bench().GetCommandManager().GetHistorySize(), accepted);
    EXPECT_EQ(accepted, 11U);
}

TEST_F(SelectionGuiTest, GivesTheDumpThatTheBatchToolGivesForTheSameEvents)
{
    const QPoint corner = Place(1.2, 1.2);
    const QPoint right = corner + QPoint(40, 0);
    ClickButton(ResourceID::SelectFaces);
    Click(corner);
    ChooseFromPopup(corner, ResourceID::MoveFaceNormal);
    MoveTo(corner);
    MoveTo(right);
    Press(right);
    Release(right);
    ClickButton(ResourceID::SelectVertices);
    Click(corner);
    ChooseFromPopup(corner, ResourceID::MoveVertexNormal);
    MoveTo(corner);
    MoveTo(right);
    RightClick(right);
    MoveTo(Place(-1.2, 1.2));

    const auto at = [](const char* operation, QPoint place) {
        return QStringList{operation, QString::number(place.x()), QString::number(place.y())};
    };
    QStringList words{"-q", "--window", QString("%1x%2").arg(View().width()).arg(View().height()), "import",
                      "cube.obj"};
    words += QString("camera 0 0 5 0 0 0 menu 32788").split(' ');
    words += at("mouse-move", corner) + at("left-down", corner) + at("left-up", corner);
    words += at("right-down", corner) + QStringList{"menu", "32813"};
    words +=
        at("mouse-move", corner) + at("mouse-move", right) + at("left-down", right) + at("left-up", right);
    words += QStringList{"menu", "32786"};
    words += at("mouse-move", corner) + at("left-down", corner) + at("left-up", corner);
    words += at("right-down", corner) + QStringList{"menu", "32809"};
    words += at("mouse-move", corner) + at("mouse-move", right) + at("right-down", right);
    words += at("mouse-move", Place(-1.2, 1.2)) + QStringList{"dump", "batch.json"};
    QProcess batch;
    batch.start(TESSARINE_BATCH, words);
    ASSERT_TRUE(batch.waitForFinished());
    ASSERT_EQ(batch.exitCode(), 0) << batch.readAllStandardError().toStdString();

    EXPECT_EQ(DumpWindow(Bench()), m_Folder.Read("batch.json"));
    EXPECT_THAT(Selection(), ElementsAre(7U));
    EXPECT_EQ(Hover().size(), 1U);
}

/// The smallest rectangle with all pixels in which two pictures of one size differ.
QRect FindDifference(const QImage& a, const QImage& b)
{
    QRect difference;
    for (int y = 0; y < a.height(); ++y)
    {
        for (int x = 0; x < a.width(); ++x)
        {
            if (a.pixel(x, y) != b.pixel(x, y))
            {
                difference |= QRect(x, y, 1, 1);
            }
        }
    }
    return difference;
}

void ExpectNear(QPoint actual, QPoint expected)
{
    EXPECT_NEAR(actual.x(), expected.x(), 3);
    EXPECT_NEAR(actual.y(), expected.y(), 3);
}

TEST_F(SelectionGuiTest, DrawsASplatOverTheFrameWhileItIsDragged)
{
    Frame().OnCommand(ResourceID::DrawSplatTool);
    MoveTo(m_Centre);
    const QImage plain = GrabView();
    Press(Place(-1, -0.5));
    for (const QPoint& end : {Place(1, 1), Place(2, 1.5)})
    {
        MoveTo(end); // up and to the right: the splat goes from the lower left corner of its rectangle
        const QRect splat = FindDifference(GrabView(), plain);
        ExpectNear(splat.bottomLeft(), Place(-1, -0.5));
        ExpectNear(splat.topRight(), end);
    }
    Release(Place(2, 1.5));
    EXPECT_EQ(Bench().GetController().GetSceneManager().GetCutFaceList().size(), 1U);
    View().repaint();
    EXPECT_EQ(GrabView(), plain); // until its switch shows it
}
}
}
