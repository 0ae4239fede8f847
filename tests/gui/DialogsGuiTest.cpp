#include "Failure.h"
#include "GuiTest.h"
#include "Open3DLight.h"
#include "resource.h"
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSlider>

namespace tessarine
{
namespace
{
using testing::HasSubstr;
using testing::IsEmpty;

class DialogsGuiTest : public GuiTest
{
protected:
    /// The open dialogs of a number, oldest first.
    static std::vector<QDialog*> GetDialogs(int id)
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        std::vector<QDialog*> dialogs;
        for (QWidget* window : QApplication::topLevelWidgets())
        {
            auto* dialog = qobject_cast<QDialog*>(window);
            if (dialog != nullptr && dialog->isVisible() && dialog->objectName() == QString::number(id))
            {
                dialogs.push_back(dialog);
            }
        }
        return dialogs;
    }

    QDialog& OpenLightingDialog()
    {
        const auto before = GetDialogs(ResourceID::SetLightingDialog);
        ClickButton(ResourceID::LightingDialog);
        for (QDialog* dialog : GetDialogs(ResourceID::SetLightingDialog))
        {
            if (std::find(before.begin(), before.end(), dialog) == before.end())
            {
                EXPECT_TRUE(QTest::qWaitForWindowExposed(dialog));
                return *dialog;
            }
        }
        throw std::logic_error("no lighting dialog was opened");
    }

    /// With the solid of a tetrahedron selected, as its pop-up would do it.
    QDialog& OpenMaterialDialog()
    {
        Frame().OnCommand(ResourceID::SetMaterial);
        const auto dialogs = GetDialogs(ResourceID::SetMaterialDialog);
        if (dialogs.empty())
        {
            throw std::logic_error("no material dialog was opened");
        }
        EXPECT_TRUE(QTest::qWaitForWindowExposed(dialogs.back()));
        return *dialogs.back();
    }

    DSSolid& SelectTetrahedron()
    {
        ImportTetrahedron();
        DSSolid& solid = *Elements().GetSolid(ElementKind::Solid);
        Elements().ToggleSelect(solid.GetID());
        return solid;
    }

    MANBrepElementManager& Elements() { return Bench().GetController().GetElementManager(); }
    const DSMaterial& NewestMaterial() { return *Elements().GetMaterialManager().GetMaterialList().back(); }
    Open3DLight& Light(std::size_t i)
    {
        return *Bench().GetController().GetSceneManager().GetLightList().at(i);
    }

    template <class TWidget>
    static TWidget& Control(const QDialog& dialog, int id)
    {
        auto* control = dialog.findChild<TWidget*>(QString::number(id));
        if (control == nullptr)
        {
            throw std::logic_error("no control " + std::to_string(id));
        }
        return *control;
    }

    static std::string Text(const QDialog& dialog, int edit)
    {
        return Control<QLineEdit>(dialog, edit).text().toStdString();
    }

    /// The title of the group that a control stands in.
    static std::string GroupOf(const QDialog& dialog, int id)
    {
        const auto* group = qobject_cast<QGroupBox*>(Control<QWidget>(dialog, id).parentWidget());
        return group == nullptr ? "" : group->title().toStdString();
    }

    /// The text of the next label on the left of a control.
    static std::string LabelOf(const QDialog& dialog, int id)
    {
        const auto& control = Control<QWidget>(dialog, id);
        const QLabel* nearest = nullptr;
        for (const auto* label : control.parentWidget()->findChildren<QLabel*>())
        {
            const QRect place = label->geometry();
            const int middle = control.geometry().center().y();
            if (place.top() <= middle && middle <= place.bottom() && place.right() < control.x() &&
                (nearest == nullptr || nearest->x() < place.x()))
            {
                nearest = label;
            }
        }
        return nearest == nullptr ? "" : nearest->text().toStdString();
    }

    /// Three sliders and their edits, in a group of its own.
    static void ExpectColourGroup(const QDialog& dialog, const std::string& title, int firstSlider,
                                  int firstEdit)
    {
        const char* const components[] = {"R", "G", "B"};
        for (int i = 0; i < 3; ++i)
        {
            EXPECT_EQ(GroupOf(dialog, firstSlider + i), title);
            EXPECT_EQ(GroupOf(dialog, firstEdit + i), title);
            EXPECT_EQ(LabelOf(dialog, firstSlider + i), components[i]) << title;
        }
    }

    static void Click(QWidget& control, QPoint place)
    {
        QWidget* window = control.window();
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, control.mapTo(window, place));
    }
    static void ClickCheck(const QDialog& dialog, int id)
    {
        auto& check = Control<QCheckBox>(dialog, id);
        Click(check, {8, check.height() / 2});
    }
    static void ClickPushButton(const QDialog& dialog, int id)
    {
        auto& button = Control<QPushButton>(dialog, id);
        Click(button, button.rect().center());
    }

    /// By the keyboard: End is the right end, Left one to the left.
    static void Type(const QDialog& dialog, QWidget& control, std::initializer_list<Qt::Key> keys)
    {
        control.setFocus();
        for (const Qt::Key key : keys)
        {
            QTest::keyClick(dialog.windowHandle(), key);
        }
    }
    static void MoveToEnd(const QDialog& dialog, int slider)
    {
        Type(dialog, Control<QSlider>(dialog, slider), {Qt::Key_End});
    }

    std::size_t CountFaces() { return Elements().GetFaceArray().size(); }

    /// Types into the dialog of the adaptive subdivision, and presses a key there.
    void AnswerThreshold(const QString& text, Qt::Key key)
    {
        WhenDialogOpens(
            [text, key](QDialog& dialog)
            {
                EXPECT_EQ(dialog.windowTitle(), "设置细分参数");
                EXPECT_EQ(GroupOf(dialog, 1034), "自适应细分");
                EXPECT_EQ(LabelOf(dialog, 1034), "最大面积阈值：");
                auto& edit = Control<QLineEdit>(dialog, 1034);
                EXPECT_EQ(edit.text(), "0");
                edit.selectAll();
                QTest::keyClicks(&edit, text);
                QTest::keyClick(&edit, key);
            });
    }
};

TEST_F(DialogsGuiTest, ShowsTheFirstLight)
{
    const QDialog& dialog = OpenLightingDialog();
    EXPECT_EQ(dialog.windowTitle(), "设置光照属性");
    EXPECT_FALSE(dialog.isModal());
    const auto& combo = Control<QComboBox>(dialog, 1030);
    ASSERT_EQ(combo.count(), 3);
    EXPECT_EQ(combo.itemText(0), "Main Light");
    EXPECT_EQ(combo.itemText(1), "Aid Light");
    EXPECT_EQ(combo.itemText(2), "Bot Light");
    EXPECT_EQ(combo.currentIndex(), 0);
    for (const int slider : {1006, 1007, 1008})
    {
        EXPECT_EQ(Control<QSlider>(dialog, slider).value(), 178); // 0.7 * 255 = 178.5
        EXPECT_EQ(Text(dialog, slider + 3), "178");
    }
    EXPECT_EQ(Text(dialog, 1003), "0");
    EXPECT_EQ(Text(dialog, 1024), "0.61237");
    EXPECT_EQ(Text(dialog, 1025), "0.5");
    EXPECT_EQ(Text(dialog, 1026), "0.61237");
}

TEST_F(DialogsGuiTest, NamesTheControlsOfALight)
{
    const QDialog& dialog = OpenLightingDialog();
    EXPECT_EQ(LabelOf(dialog, 1030), "Select Light");
    ExpectColourGroup(dialog, "Ambient", 1000, 1003);
    ExpectColourGroup(dialog, "Diffuse", 1006, 1009);
    ExpectColourGroup(dialog, "Specular", 1012, 1015);
    EXPECT_EQ(Control<QCheckBox>(dialog, 1020).text(), "Ambient");
    EXPECT_EQ(Control<QCheckBox>(dialog, 1019).text(), "Diffuse");
    EXPECT_EQ(Control<QCheckBox>(dialog, 1021).text(), "Specular");
    const std::pair<int, std::string> axes[] = {{1024, "X"}, {1025, "Y"}, {1026, "Z"}};
    for (const auto& [edit, axis] : axes)
    {
        EXPECT_EQ(GroupOf(dialog, edit), "Position");
        EXPECT_EQ(LabelOf(dialog, edit), axis);
    }
}

TEST_F(DialogsGuiTest, EnablesTheGroupsOfTheColoursThatAreOn)
{
    const QDialog& dialog = OpenLightingDialog();
    const std::pair<int, bool> groups[] = {{1000, false}, {1006, true}, {1012, false}};
    for (const auto& [first, isOn] : groups)
    {
        for (int id = first; id < first + 3; ++id)
        {
            EXPECT_EQ(Control<QSlider>(dialog, id).isEnabled(), isOn) << id;
            EXPECT_EQ(Control<QLineEdit>(dialog, id + 3).isEnabled(), isOn) << id;
        }
    }
    EXPECT_FALSE(Control<QCheckBox>(dialog, 1020).isChecked());
    EXPECT_TRUE(Control<QCheckBox>(dialog, 1019).isChecked());
    EXPECT_FALSE(Control<QCheckBox>(dialog, 1021).isChecked());

    auto& disabled = Control<QSlider>(dialog, 1000);
    Click(disabled, disabled.rect().center());
    MoveToEnd(dialog, 1000);
    EXPECT_EQ(disabled.value(), 0);
    EXPECT_EQ(Light(0).m_Ambient.x, 0.0F);
}

TEST_F(DialogsGuiTest, FlipsTheFlagsOfALight)
{
    const QDialog& dialog = OpenLightingDialog();
    const std::pair<int, bool Open3DLight::*> checks[] = {{1020, &Open3DLight::m_bAmbient},
                                                          {1019, &Open3DLight::m_bDiffuse},
                                                          {1021, &Open3DLight::m_bSpecular}};
    const std::pair<int, int> firstSliders[] = {{1020, 1000}, {1019, 1006}, {1021, 1012}};
    for (std::size_t i = 0; i < 3; ++i)
    {
        const auto [id, flag] = checks[i];
        const bool before = Light(0).*flag;
        ClickCheck(dialog, id);
        EXPECT_EQ(Light(0).*flag, !before) << id;
        EXPECT_EQ(Control<QCheckBox>(dialog, id).isChecked(), !before) << id;
        EXPECT_EQ(Control<QSlider>(dialog, firstSliders[i].second).isEnabled(), !before) << id;
        ClickCheck(dialog, id);
        EXPECT_EQ(Light(0).*flag, before) << id;
    }
}

TEST_F(DialogsGuiTest, WritesEachComponentOfALightExactly)
{
    Light(0).m_bAmbient = Light(0).m_bSpecular = true;
    const QDialog& dialog = OpenLightingDialog();
    const std::pair<int, smVec3f Open3DLight::*> groups[] = {
        {1000, &Open3DLight::m_Ambient}, {1006, &Open3DLight::m_Diffuse}, {1012, &Open3DLight::m_Specular}};
    for (const auto& [first, colour] : groups)
    {
        for (int i = 0; i < 3; ++i)
        {
            MoveToEnd(dialog, first + i);
            EXPECT_EQ((Light(0).*colour)[i], 1.0F) << first + i;
            EXPECT_EQ(Text(dialog, first + 3 + i), "255");
            Type(dialog, Control<QSlider>(dialog, first + i), {Qt::Key_Left});
            EXPECT_EQ((Light(0).*colour)[i], static_cast<float>(254 / 255.0)) << first + i;
            EXPECT_EQ(Text(dialog, first + 3 + i), "254");
        }
    }
}

TEST_F(DialogsGuiTest, FollowsTheMouseThatDragsASlider)
{
    const QDialog& dialog = OpenLightingDialog();
    auto& slider = Control<QSlider>(dialog, 1006);
    QWindow* window = dialog.windowHandle();
    const auto at = [&](int position)
    {
        const int x = 6 + (slider.width() - 12) * position / 255;
        return slider.mapTo(&dialog, QPoint(x, slider.height() / 2));
    };
    QTest::mousePress(window, Qt::LeftButton, {}, at(178));
    for (const int position : {150, 100, 60})
    {
        QTest::mouseMove(window, at(position));
        QCoreApplication::processEvents();
        EXPECT_NEAR(slider.value(), position, 8);
        EXPECT_EQ(Light(0).m_Diffuse.x, static_cast<float>(slider.value() / 255.0));
        EXPECT_EQ(Text(dialog, 1009), std::to_string(slider.value()));
    }
    QTest::mouseRelease(window, Qt::LeftButton, {}, at(60));
}

TEST_F(DialogsGuiTest, ShowsTheLightThatIsChosenByName)
{
    const QDialog& dialog = OpenLightingDialog();
    Type(dialog, Control<QComboBox>(dialog, 1030), {Qt::Key_Down, Qt::Key_Down});
    EXPECT_EQ(Text(dialog, 1025), "-1");
    MoveToEnd(dialog, 1008);
    EXPECT_EQ(Light(2).m_Diffuse.z, 1.0F);
    EXPECT_EQ(Light(0).m_Diffuse.z, 0.7F);
    Type(dialog, Control<QComboBox>(dialog, 1030), {Qt::Key_Up});
    EXPECT_EQ(Text(dialog, 1024), "-0.61237");
}

TEST_F(DialogsGuiTest, ShowsColoursSwitchesAndPositionOfTheLightThatIsChosen)
{
    Light(2).m_bAmbient = Light(2).m_bSpecular = true;
    Light(2).m_bDiffuse = false;
    Light(2).m_Ambient = smVec3f(0.2F, 0.4F, 0.6F);
    Light(2).m_Diffuse = smVec3f(1.0F, 0.0F, 0.8F);
    Light(2).m_Specular = smVec3f(0.0F, 1.0F, 0.4F);
    Light(2).m_Position[0] = 0.25F;
    Light(2).m_Position[2] = -3.0F;
    const QDialog& dialog = OpenLightingDialog();
    Type(dialog, Control<QComboBox>(dialog, 1030), {Qt::Key_Down, Qt::Key_Down});

    struct Group
    {
        int check;
        int firstSlider;
        bool isOn;
        int numbers[3];
    };
    const Group groups[] = {{1020, 1000, true, {51, 102, 153}},
                            {1019, 1006, false, {255, 0, 204}},
                            {1021, 1012, true, {0, 255, 102}}};
    for (const auto& [check, firstSlider, isOn, numbers] : groups)
    {
        EXPECT_EQ(Control<QCheckBox>(dialog, check).isChecked(), isOn) << check;
        for (int i = 0; i < 3; ++i)
        {
            const int slider = firstSlider + i;
            EXPECT_EQ(Control<QSlider>(dialog, slider).value(), numbers[i]) << slider;
            EXPECT_EQ(Text(dialog, slider + 3), std::to_string(numbers[i])) << slider;
            EXPECT_EQ(Control<QSlider>(dialog, slider).isEnabled(), isOn) << slider;
            EXPECT_EQ(Control<QLineEdit>(dialog, slider + 3).isEnabled(), isOn) << slider;
        }
    }
    EXPECT_EQ(Text(dialog, 1024), "0.25");
    EXPECT_EQ(Text(dialog, 1025), "-1");
    EXPECT_EQ(Text(dialog, 1026), "-3");
}

TEST_F(DialogsGuiTest, ChoosesTheLastLightWhereNoneHasTheName)
{
    const QDialog& dialog = OpenLightingDialog();
    Light(1).m_Name = "renamed";
    Type(dialog, Control<QComboBox>(dialog, 1030), {Qt::Key_Down});
    EXPECT_EQ(Text(dialog, 1025), "-1");
}

TEST_F(DialogsGuiTest, DisablesTheButtonsOfAddAndDelete)
{
    const QDialog& dialog = OpenLightingDialog();
    EXPECT_EQ(Control<QPushButton>(dialog, 1028).text(), "Add");
    EXPECT_EQ(Control<QPushButton>(dialog, 1029).text(), "Delete");
    for (const int id : {1028, 1029})
    {
        EXPECT_FALSE(Control<QPushButton>(dialog, id).isEnabled());
        ClickPushButton(dialog, id);
    }
    EXPECT_EQ(Bench().GetController().GetSceneManager().GetLightList().size(), 3U);
}

TEST_F(DialogsGuiTest, WritesToTheSameLightFromTwoDialogs)
{
    const QDialog& first = OpenLightingDialog();
    const QDialog& second = OpenLightingDialog();
    ASSERT_NE(&first, &second);
    MoveToEnd(first, 1006);
    EXPECT_EQ(Light(0).m_Diffuse.x, 1.0F);
    EXPECT_EQ(Text(second, 1009), "178") << "they are independent";
    MoveToEnd(second, 1007);
    EXPECT_EQ(Light(0).m_Diffuse.x, 1.0F);
    EXPECT_EQ(Light(0).m_Diffuse.y, 1.0F);
    // What the other dialog did shows with the next refresh.
    ClickCheck(second, 1019);
    EXPECT_EQ(Text(second, 1009), "255");
}

TEST_F(DialogsGuiTest, DrawsTheViewInTheNewLight)
{
    ImportTetrahedron();
    Camera().SetLookAt({2, 2, 2}, {0, 0, 0}, {0, 1, 0});
    GLView().Redraw();
    const QDialog& dialog = OpenLightingDialog();
    const_cast<QDialog&>(dialog).move(Frame().mapToGlobal(QPoint(Frame().width() + 5, 0)));
    const QImage before = GrabView();
    for (const int slider : {1006, 1007, 1008})
    {
        Type(dialog, Control<QSlider>(dialog, slider), {Qt::Key_Home});
    }
    EXPECT_NE(GrabView(), before);
}

TEST_F(DialogsGuiTest, ShowsTheArrowOverItsDialogs)
{
    ClickButton(ResourceID::OrbitTool);
    SelectTetrahedron();
    for (const QDialog* dialog : {&OpenLightingDialog(), &OpenMaterialDialog()})
    {
        EXPECT_EQ(dialog->cursor().shape(), Qt::ArrowCursor);
        for (const auto* control : dialog->findChildren<QWidget*>())
        {
            EXPECT_EQ(control->cursor().shape(), Qt::ArrowCursor) << control->objectName().toStdString();
        }
    }
}

TEST_F(DialogsGuiTest, KeepsTheLightsOverAnImport)
{
    const QDialog& dialog = OpenLightingDialog();
    MoveToEnd(dialog, 1006);
    ImportTetrahedron();
    ASSERT_EQ(GetDialogs(ResourceID::SetLightingDialog).size(), 1U);
    MoveToEnd(dialog, 1007);
    EXPECT_EQ(Light(0).m_Diffuse.x, 1.0F);
    EXPECT_EQ(Light(0).m_Diffuse.y, 1.0F);
}

TEST_F(DialogsGuiTest, ClosesTheDialogsOfADocumentThatGoes)
{
    SelectTetrahedron();
    OpenLightingDialog();
    OpenLightingDialog();
    OpenMaterialDialog();
    ClickButton(ResourceID::FileNew);
    EXPECT_THAT(GetDialogs(ResourceID::SetLightingDialog), IsEmpty());
    EXPECT_THAT(GetDialogs(ResourceID::SetMaterialDialog), IsEmpty());
    const QDialog& dialog = OpenLightingDialog();
    MoveToEnd(dialog, 1006);
    EXPECT_EQ(Light(0).m_Diffuse.x, 1.0F);
}

TEST_F(DialogsGuiTest, WritesNothingOnceItsLightIsGone)
{
    const QDialog& dialog = OpenLightingDialog();
    Bench().GetController().GetSceneManager().DeleteLight("Main Light");
    MoveToEnd(dialog, 1006);
    EXPECT_FALSE(Control<QSlider>(dialog, 1006).isEnabled());
    EXPECT_EQ(Light(0).m_Diffuse.x, 0.7F);
    Type(dialog, Control<QComboBox>(dialog, 1030), {Qt::Key_Down});
    EXPECT_EQ(Text(dialog, 1024), "-0.61237") << "the next one can be chosen";
}

TEST_F(DialogsGuiTest, EndsWithItsDialogsOpen)
{
    SelectTetrahedron();
    OpenLightingDialog();
    OpenMaterialDialog();
    EXPECT_TRUE(StartAgain({}));
    EXPECT_THAT(GetDialogs(ResourceID::SetLightingDialog), IsEmpty());
}

TEST_F(DialogsGuiTest, OpensNoMaterialDialogWithoutASelection)
{
    ImportTetrahedron();
    Frame().OnCommand(ResourceID::SetMaterial);
    EXPECT_THAT(GetDialogs(ResourceID::SetMaterialDialog), IsEmpty());
    EXPECT_THAT(Elements().GetMaterialManager().GetMaterialList(), IsEmpty());
}

TEST_F(DialogsGuiTest, ShowsTheMaterialOfTheSolid)
{
    SelectTetrahedron().SetMaterial(nullptr);
    const QDialog& dialog = OpenMaterialDialog();
    EXPECT_EQ(dialog.windowTitle(), "设置材质");
    EXPECT_FALSE(dialog.isModal());
    // A new record: 1 for ambient and diffuse, 0.75 * 255 = 191.25, 0; 40 as it is; 1 * 100.
    const std::pair<int, std::string> texts[] = {{1003, "255"}, {1004, "255"}, {1005, "255"}, {1009, "255"},
                                                 {1010, "255"}, {1011, "255"}, {1015, "191"}, {1016, "191"},
                                                 {1017, "191"}, {1018, "0"},   {1019, "0"},   {1020, "0"},
                                                 {1021, "40"},  {1022, "100"}};
    for (const auto& [edit, text] : texts)
    {
        EXPECT_EQ(Text(dialog, edit), text) << edit;
        EXPECT_TRUE(Control<QLineEdit>(dialog, edit).isReadOnly()) << edit;
    }
    EXPECT_EQ(Control<QSlider>(dialog, 1036).value(), 40);
    EXPECT_EQ(Control<QSlider>(dialog, 1036).maximum(), 128);
    EXPECT_EQ(Control<QSlider>(dialog, 1037).maximum(), 100);
    EXPECT_EQ(NewestMaterial().m_fShininess, 40.0F) << "showing it writes nothing";
    EXPECT_EQ(NewestMaterial().m_Specular.x, 0.75F);
}

TEST_F(DialogsGuiTest, NamesTheControlsOfAMaterial)
{
    SelectTetrahedron();
    const QDialog& dialog = OpenMaterialDialog();
    ExpectColourGroup(dialog, "Ambient", 1000, 1003);
    ExpectColourGroup(dialog, "Diffuse", 1006, 1009);
    ExpectColourGroup(dialog, "Specular", 1012, 1015);
    ExpectColourGroup(dialog, "Emissive", 1033, 1018);
    const std::pair<int, std::string> groups[] = {
        {1036, "Shininess"}, {1021, "Shininess"}, {1037, "Transparency"}, {1022, "Transparency"}};
    for (const auto& [control, title] : groups)
    {
        EXPECT_EQ(GroupOf(dialog, control), title) << control;
    }
    EXPECT_EQ(Control<QPushButton>(dialog, ResourceID::OK).text(), "OK");
    EXPECT_EQ(Control<QPushButton>(dialog, ResourceID::Cancel).text(), "Cancel");
}

TEST_F(DialogsGuiTest, WritesEachComponentOfAMaterialExactly)
{
    SelectTetrahedron();
    const QDialog& dialog = OpenMaterialDialog();
    const std::tuple<int, int, smVec3f DSMaterial::*> groups[] = {{1000, 1003, &DSMaterial::m_Ambient},
                                                                  {1006, 1009, &DSMaterial::m_Diffuse},
                                                                  {1012, 1015, &DSMaterial::m_Specular},
                                                                  {1033, 1018, &DSMaterial::m_Emission}};
    for (const auto& [slider, edit, colour] : groups)
    {
        for (int i = 0; i < 3; ++i)
        {
            Type(dialog, Control<QSlider>(dialog, slider + i), {Qt::Key_Home, Qt::Key_Right});
            EXPECT_EQ((NewestMaterial().*colour)[i], static_cast<float>(1 / 255.0)) << slider + i;
            EXPECT_EQ(Text(dialog, edit + i), "1") << edit + i;
            MoveToEnd(dialog, slider + i);
            EXPECT_EQ((NewestMaterial().*colour)[i], 1.0F) << slider + i;
        }
    }
}

TEST_F(DialogsGuiTest, WritesAShininessOfAnotherScaleThanItShows)
{
    SelectTetrahedron();
    const QDialog& dialog = OpenMaterialDialog();
    MoveToEnd(dialog, 1036);
    EXPECT_EQ(NewestMaterial().m_fShininess, 1.0F);
    EXPECT_EQ(Text(dialog, 1021), "128");
    Type(dialog, Control<QSlider>(dialog, 1036), {Qt::Key_Left});
    EXPECT_EQ(NewestMaterial().m_fShininess, static_cast<float>(127 / 128.0));
}

TEST_F(DialogsGuiTest, WritesTheTransparencyToTheConsoleAsWell)
{
    SelectTetrahedron();
    const QDialog& dialog = OpenMaterialDialog();
    GetTerminalText().clear();
    Type(dialog, Control<QSlider>(dialog, 1037), {Qt::Key_Left, Qt::Key_Home});
    EXPECT_EQ(NewestMaterial().m_fTransparency, 0.0F);
    EXPECT_EQ(GetTerminalText(), "0.99\n0\n");
}

TEST_F(DialogsGuiTest, ClosesTheMaterialDialogByEitherButtonWithTheEditsInTheRecord)
{
    SelectTetrahedron();
    for (const int button : {ResourceID::OK, ResourceID::Cancel})
    {
        const QDialog& dialog = OpenMaterialDialog();
        Type(dialog, Control<QSlider>(dialog, 1033), {Qt::Key_End});
        ClickPushButton(dialog, button);
        EXPECT_THAT(GetDialogs(ResourceID::SetMaterialDialog), IsEmpty());
        EXPECT_EQ(NewestMaterial().m_Emission.x, 1.0F);
    }
}

TEST_F(DialogsGuiTest, LeavesTheModelItsLookWhileAMaterialIsEdited)
{
    DSSolid& solid = SelectTetrahedron();
    const DSMaterial* before = solid.GetMaterial();
    const QDialog& dialog = OpenMaterialDialog();
    MoveToEnd(dialog, 1033);
    EXPECT_EQ(solid.GetMaterial(), before);
}

TEST_F(DialogsGuiTest, DrawsTheViewAnewWithEachMoveOfASlider)
{
    SelectTetrahedron();
    const std::pair<const QDialog*, int> sliders[] = {{&OpenLightingDialog(), 1006},
                                                      {&OpenMaterialDialog(), 1033}};
    for (const auto& [dialog, slider] : sliders)
    {
        Control<QSlider>(*dialog, slider).setFocus();
        QCoreApplication::processEvents();
        App().GetPlatform().SetPaneText(1, ""); // a frame writes the number of vertices there
        QCoreApplication::processEvents();
        EXPECT_EQ(PaneText(1), "");
        MoveToEnd(*dialog, slider);
        EXPECT_TRUE(QTest::qWaitFor([this] { return PaneText(1) == "顶点数: 4"; })) << slider;
    }
}

TEST_F(DialogsGuiTest, TakesNumbersBeyondTheRangeOfItsSliders)
{
    DSMaterial odd;
    odd.m_Ambient = smVec3f(2.0F, -1.0F, NAN);
    odd.m_fShininess = 1000.0F;
    odd.m_fTransparency = INFINITY;
    SelectTetrahedron().SetMaterial(&odd);
    const QDialog& dialog = OpenMaterialDialog();
    EXPECT_EQ(Text(dialog, 1003), "510");
    EXPECT_EQ(Control<QSlider>(dialog, 1000).value(), 255);
    EXPECT_EQ(Text(dialog, 1004), "-255");
    EXPECT_EQ(Control<QSlider>(dialog, 1001).value(), 0);
    EXPECT_EQ(Text(dialog, 1005), "0");
    EXPECT_EQ(Text(dialog, 1021), "1000");
    EXPECT_EQ(Text(dialog, 1022), "2147483647");
    EXPECT_EQ(NewestMaterial().m_Ambient.x, 2.0F);
    SelectTetrahedron(); // the material of this test goes before the model
}

TEST_F(DialogsGuiTest, ClosesTheDialogOfAMaterialThatAFailureTakesBack)
{
    SelectTetrahedron();
    AcceptMessage();
    View().Perform("材质", Effect::ChangesModel,
                   [this]
                   {
                       Bench().GetController().SetMaterialOfSelection();
                       throw Failure("on purpose");
                   });
    EXPECT_EQ(GetMessages().size(), 1U);
    EXPECT_THAT(Elements().GetMaterialManager().GetMaterialList(), IsEmpty());
    EXPECT_THAT(GetDialogs(ResourceID::SetMaterialDialog), IsEmpty());
}

TEST_F(DialogsGuiTest, SubdividesByTheThresholdOfTheDialog)
{
    ImportTetrahedron();
    AnswerThreshold("1e-3", Qt::Key_Return);
    ChooseFromMenu(ResourceID::SubdivideAdaptive);
    EXPECT_EQ(CountFaces(), 16U);
    EXPECT_EQ(PaneText(2), "面片数: 16");
    TakeKeyboard();
    AnswerThreshold("100", Qt::Key_Return);
    ChooseFromMenu(ResourceID::SubdivideAdaptive);
    EXPECT_EQ(CountFaces(), 16U);
}

TEST_F(DialogsGuiTest, LeavesTheModelWhenTheDialogIsCancelled)
{
    ImportTetrahedron();
    const DSSolid* before = Elements().GetSolid(ElementKind::Solid);
    AnswerThreshold("0", Qt::Key_Escape);
    ChooseFromMenu(ResourceID::SubdivideAdaptive);
    EXPECT_EQ(CountFaces(), 4U);
    EXPECT_EQ(Elements().GetSolid(ElementKind::Solid), before);
    EXPECT_THAT(GetMessages(), IsEmpty());
}

TEST_F(DialogsGuiTest, AsksAgainForAThresholdThatIsNoNumber)
{
    ImportTetrahedron();
    std::vector<std::string> messages;
    WhenDialogOpens(
        [&](QDialog& dialog)
        {
            auto& edit = Control<QLineEdit>(dialog, 1034);
            for (const char* text : {"", "big", "1,5", "nan", "inf", "1e39", "0x10"})
            {
                WhenDialogOpens(
                    [&messages](QDialog& box)
                    {
                        messages.push_back(dynamic_cast<QMessageBox&>(box).text().toStdString());
                        QTest::keyClick(box.windowHandle(), Qt::Key_Return);
                    });
                edit.setText(text);
                QTest::keyClick(&edit, Qt::Key_Return);
                EXPECT_TRUE(dialog.isVisible()) << text;
            }
            edit.setText(" +.5e0 ");
            QTest::keyClick(&edit, Qt::Key_Return);
        });
    ChooseFromMenu(ResourceID::SubdivideAdaptive);
    ASSERT_EQ(messages.size(), 7U);
    EXPECT_THAT(messages[0], HasSubstr("请输入一个数字"));
    EXPECT_EQ(CountFaces(), 16U);
}

TEST_F(DialogsGuiTest, TellsWhyAModelCannotBeSubdivided)
{
    m_Folder.Write("open.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    AnswerFileDialog("open.obj");
    ChooseFromMenu(ResourceID::ImportObj);
    TakeKeyboard();
    WhenDialogOpens(
        [this](QDialog& dialog)
        {
            AcceptMessage();
            QTest::keyClick(&Control<QLineEdit>(dialog, 1034), Qt::Key_Return);
        });
    ChooseFromMenu(ResourceID::SubdivideAdaptive);
    ASSERT_EQ(GetMessages().size(), 1U);
    EXPECT_THAT(GetMessages()[0], HasSubstr("closed models only"));
    EXPECT_EQ(CountFaces(), 1U);
}
}
}
