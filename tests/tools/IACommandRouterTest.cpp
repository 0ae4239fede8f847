#include "IACommandRouter.h"
#include "Picture.h"
#include "Resources.h"
#include "WorkbenchTest.h"
#include "resource.h"
#include <new>

namespace tessarine
{
namespace
{
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

class RouterTest : public WorkbenchTest
{
protected:
    bool Run(int id) { return m_Router.Run("menu", id); }

    /// What the user is told of an entry that does not run.
    std::string GetRefusal(int id)
    {
        const std::size_t before = m_Platform.GetFailures().size();
        EXPECT_FALSE(Run(id)) << id;
        EXPECT_EQ(m_Platform.GetFailures().size(), before + 1) << id;
        EXPECT_EQ(m_Platform.GetFailures().back().operation, "menu");
        return m_Platform.GetFailures().back().reason;
    }

    IACommandRouter m_Router{m_Bench};
};

TEST_F(RouterTest, RefusesANumberThatNoEntryHas)
{
    EXPECT_EQ(GetRefusal(1), "no command has the number 1");
    EXPECT_EQ(GetRefusal(-5), "no command has the number -5");
    EXPECT_EQ(GetRefusal(32785), "no command has the number 32785");
}

TEST_F(RouterTest, RefusesADisabledEntry)
{
    EXPECT_EQ(GetRefusal(57643), "\"撤消(&U)\" (57643) is disabled");
    for (const int id : {57643, 57635, 57634, 57637, 32830, 32842})
    {
        EXPECT_THAT(GetRefusal(id), EndsWith(" is disabled"));
    }
}

TEST_F(RouterTest, TakesEveryEntryOfTheDocumentToTheController)
{
    // What each says without a model, a dialog's answer or a kept command; nothing where it succeeds.
    const std::pair<int, std::string> reasons[] = {
        {32775, ""},
        {32783, ""},
        {32778, ""},
        {32835, "there is no model to subdivide: import one first"},
        {32796, "there is no model with faces to be fitted to a cloud: import one first"},
        {32828, "there is no model with faces to be fitted to a cloud: import one first"},
        {32829, "there is no model with faces to be fitted to a cloud: import one first"},
        {32834, "there is no model with faces to be fitted to a cloud: import one first"},
        {32821, "optimisation needs a model: import one first"},
        {32840, "optimisation needs a model: import one first"},
        {32841, "optimisation needs a model: import one first"},
        {32802, "simplification needs a model: import one first"},
        {32803, "simplification needs a model: import one first"},
        {32804, "simplification needs a model: import one first"},
        {32833, ""},
    };
    for (const auto& [id, reason] : reasons)
    {
        if (reason.empty())
        {
            EXPECT_TRUE(Run(id)) << id;
        }
        else
        {
            EXPECT_EQ(GetRefusal(id), reason) << id;
        }
    }
    EXPECT_THAT(GetRefusal(32794), HasSubstr("cannot open data/bunny/param.dat"));
    EXPECT_THAT(GetRefusal(32805), HasSubstr("cannot open Data/man.data"));
    EXPECT_THAT(GetRefusal(32839), HasSubstr("cannot open data/man/param.dat"));
    EXPECT_THAT(GetRefusal(32826), HasSubstr("first step"));
    EXPECT_THAT(GetRefusal(32831), HasSubstr("second step"));
    EXPECT_THAT(GetRefusal(32832), HasSubstr("third step"));
}

TEST_F(RouterTest, OpensALightingDialogOnTheLightsOfTheSceneEachTime)
{
    EXPECT_TRUE(Run(32784));
    EXPECT_TRUE(Run(32784));
    ASSERT_EQ(m_Platform.GetLightingDialogs().size(), 2U);
    for (const auto& lights : m_Platform.GetLightingDialogs())
    {
        ASSERT_EQ(lights.size(), 3U);
        EXPECT_EQ(lights[0].lock(), GetScene().GetLightList()[0]);
    }
    EXPECT_TRUE(Run(57600));
    EXPECT_TRUE(m_Platform.GetLightingDialogs()[0][0].expired()) << "a new document has lights of its own";
}

TEST_F(RouterTest, ShowsNoAboutBoxWithoutAWindow)
{
    EXPECT_TRUE(Run(ResourceID::AppAbout));
}

TEST_F(RouterTest, HasAnAnswerToEveryEntry)
{
    for (const MenuEntry& entry : GetMenuEntries())
    {
        const std::size_t before = m_Platform.GetFailures().size();
        const bool done = Run(entry.id);
        EXPECT_EQ(m_Platform.GetFailures().size(), before + (done ? 0 : 1)) << entry.id;
        if (!done)
        {
            EXPECT_THAT(m_Platform.GetFailures().back().reason, testing::Not(HasSubstr("no command")))
                << entry.id;
        }
    }
}

TEST_F(RouterTest, ImportsAndExportsThroughTheDialogs)
{
    m_Folder.Write("a.obj", kTetrahedronObj);
    m_Platform.AnswerFile("a.obj");
    EXPECT_TRUE(Run(ResourceID::ImportObj));
    EXPECT_EQ(m_Platform.GetPaneText(2), "面片数: 4");
    EXPECT_TRUE(Run(ResourceID::SubdivideLoop));
    m_Platform.AnswerFile("b.obj");
    EXPECT_TRUE(Run(ResourceID::ExportObj));
    EXPECT_THAT(m_Folder.Read("b.obj"), HasSubstr("# 16 faces in this object "));
}

TEST_F(RouterTest, LeavesTheModelWhenAnImportFails)
{
    Show(Tetrahedron());
    const std::string before = PictureOf(m_Bench);
    m_Platform.AnswerFile("missing.obj");
    EXPECT_THAT(GetRefusal(ResourceID::ImportObj), HasSubstr("missing.obj"));
    EXPECT_EQ(PictureOf(m_Bench), before);
}

TEST_F(RouterTest, MakesANewDocument)
{
    Show(Tetrahedron());
    EXPECT_TRUE(Run(ResourceID::FileNew));
    EXPECT_THAT(GetScene().GetRootGroup()->GetChildren(), IsEmpty());
}

TEST_F(RouterTest, ReadsAndWritesNothingByTheFrameworksFileCommands)
{
    m_Folder.Write("a.obj", kTetrahedronObj);
    Show(SingleTriangle());
    const std::string before = PictureOf(m_Bench);
    for (const int id : {ResourceID::FileOpen, ResourceID::FileSave, ResourceID::FileSaveAs})
    {
        EXPECT_TRUE(Run(id)); // cancelled
        m_Platform.AnswerFile("a.obj");
        EXPECT_TRUE(Run(id));
    }
    EXPECT_EQ(PictureOf(m_Bench), before);
    EXPECT_EQ(m_Folder.Read("a.obj"), kTetrahedronObj);
    EXPECT_EQ(std::filesystem::current_path(), m_Folder.GetPath());
}

TEST_F(RouterTest, EnablesAllButTheDisabledAndTheUnknown)
{
    EXPECT_TRUE(m_Router.GetState(32775).enabled);
    EXPECT_TRUE(m_Router.GetState(32779).enabled);
    EXPECT_FALSE(m_Router.GetState(57643).enabled);
    EXPECT_FALSE(m_Router.GetState(32830).enabled);
    EXPECT_FALSE(m_Router.GetState(1).enabled);
    EXPECT_FALSE(m_Router.GetState(1).checked);
}

TEST_F(RouterTest, ChecksASwitchByItsFlag)
{
    EXPECT_TRUE(m_Router.GetState(32779).checked); // wire and flat shading are on
    EXPECT_TRUE(m_Router.GetState(32780).checked);
    EXPECT_TRUE(m_Router.GetState(32820).checked);
    EXPECT_FALSE(m_Router.GetState(32819).checked);
    m_Bench.GetView().SetDisplayFlags(0x2000 | 0x20000);
    EXPECT_FALSE(m_Router.GetState(32779).checked);
    EXPECT_TRUE(m_Router.GetState(32819).checked);
    EXPECT_TRUE(m_Router.GetState(32838).checked);
}

TEST_F(RouterTest, ShowsNoCheckMarkOfGridAndAxes)
{
    m_Bench.GetView().SetDisplayFlags(0x3);
    EXPECT_FALSE(m_Router.GetState(32781).checked);
    EXPECT_FALSE(m_Router.GetState(32782).checked);
}

TEST_F(RouterTest, FlipsTheFlagOfEachSwitchAndDraws)
{
    const std::pair<int, std::uint32_t> switches[] = {
        {32779, 0x4},    {32781, 0x2},    {32782, 0x1},    {32799, 0x200},   {32798, 0x800},
        {32818, 0x1000}, {32822, 0x4000}, {32823, 0x8000}, {32824, 0x10000}, {32838, 0x20000},
    };
    for (const auto& [id, flag] : switches)
    {
        const std::uint32_t before = m_Bench.GetView().GetDisplayFlags();
        for (const std::uint32_t expected : {before ^ flag, before})
        {
            m_Platform.SetPaneText(1, "untouched");
            EXPECT_TRUE(Run(id)) << id;
            EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), expected) << id;
            EXPECT_EQ(m_Platform.GetPaneText(1), "顶点数: 0") << id;
        }
    }
}

TEST_F(RouterTest, LetsFlatAndSmoothShadingExcludeEachOther)
{
    EXPECT_TRUE(Run(32819)); // from wire and flat
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0x2004U);
    EXPECT_TRUE(Run(32820));
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0xCU);
    EXPECT_TRUE(Run(32820)); // both may be off
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0x4U);
    EXPECT_TRUE(Run(32819));
    EXPECT_TRUE(Run(32819));
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0x4U);
}

TEST_F(RouterTest, ShowsTheTexturedModelAlone)
{
    m_Bench.GetView().SetDisplayFlags(0x3FE0F); // everything but the smoothings
    EXPECT_TRUE(Run(32792));
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0x3DC13U); // less 0x4, 0x8, 0x2000, 0x200, and 0x10
    EXPECT_TRUE(Run(32792));                                  // no switch: it stays
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0x3DC13U);
    EXPECT_TRUE(Run(32820)); // flat shading wins over textures, whose flag stays
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0x3DC1BU);
}

TEST_F(RouterTest, LeavesTheFlagsByTheEntryThatOnlyShowsOne)
{
    EXPECT_TRUE(Run(32780));
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0xCU);
}

TEST_F(RouterTest, RefusesAnOctreeWhereThereIsNone)
{
    EXPECT_THAT(GetRefusal(32797), HasSubstr("no octree"));
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0xCU);
    m_Bench.GetView().SetDisplayFlags(0x40C); // left on by a document that had one
    EXPECT_TRUE(Run(32797));
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0xCU);
}

TEST_F(RouterTest, RefusesProjectionLinesOfListsThatDiffer)
{
    m_Bench.GetView().GetPointCloud().resize(2);
    m_Bench.GetView().GetProjectedPoints().resize(3);
    EXPECT_THAT(GetRefusal(32823), HasSubstr("3 projected points for 2 points"));
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0xCU);
    m_Bench.GetView().GetProjectedPoints().resize(2);
    EXPECT_TRUE(Run(32823));
    EXPECT_TRUE(m_Router.GetState(32823).checked);
}

TEST_F(RouterTest, HidesAndShowsTheFirstModel)
{
    EXPECT_THAT(GetRefusal(32827), HasSubstr("there is no model to show or hide"));
    Show(Tetrahedron());
    Show(Tetrahedron());
    EXPECT_TRUE(Run(32827));
    EXPECT_FALSE(GetScene().GetRootGroup()->GetChildren()[0]->IsVisible());
    EXPECT_TRUE(GetScene().GetRootGroup()->GetChildren()[1]->IsVisible());
    EXPECT_FALSE(m_Router.GetState(32827).checked);
    EXPECT_TRUE(Run(32827));
    EXPECT_TRUE(m_Router.GetState(32827).checked);
}

TEST_F(RouterTest, TakesTheToolsByTheirButtons)
{
    const std::pair<int, unsigned> buttons[] = {
        {32771, 0x4000003}, {32772, 0x4000001}, {32773, 0x4000004}, {32774, 0x4000002}, {32790, 0x5000001}};
    for (const auto& [id, tool] : buttons)
    {
        EXPECT_TRUE(Run(id));
        EXPECT_EQ(m_Bench.GetToolsManager().GetCurrentTool()->GetToolID(), tool) << id;
        EXPECT_EQ(m_Bench.GetToolsManager().GetToolStack().size(), 1U);
        EXPECT_EQ(m_Router.GetState(32790).checked, id == 32790);
    }
    EXPECT_FALSE(m_Router.GetState(32771).checked); // the camera's buttons show no mark
    EXPECT_EQ(m_Console.Count("Size of current tool stack: 1"), 5);
    EXPECT_TRUE(Run(32790)); // the current one
    EXPECT_EQ(m_Console.Count("Size of current tool stack: 1"), 5);
}

TEST_F(RouterTest, PushesTheToolOfTheSplats)
{
    EXPECT_TRUE(Run(32836));
    EXPECT_EQ(m_Bench.GetToolsManager().GetToolStack().size(), 2U);
    EXPECT_EQ(m_Bench.GetToolsManager().GetCurrentTool()->GetToolID(), 0x5000006U);
}

TEST_F(RouterTest, DropsTheSelectionWithItsTypeOnly)
{
    DSSolid* solid = Show(Tetrahedron());
    m_Bench.GetView().ToggleSelect(solid->GetID());
    EXPECT_TRUE(Run(32789)); // the type in force
    EXPECT_TRUE(solid->IsSelected());
    const std::pair<int, std::uint32_t> types[] = {
        {32786, 0x5000002}, {32787, 0x5000003}, {32788, 0x5000004}, {32789, 0x5000005}};
    for (const auto& [id, type] : types)
    {
        EXPECT_TRUE(Run(id));
        EXPECT_EQ(GetElements().GetSelectType(), type);
        EXPECT_TRUE(m_Router.GetState(id).checked);
        EXPECT_FALSE(solid->IsSelected());
        EXPECT_THAT(GetElements().GetSelectList(), IsEmpty());
    }
}

TEST_F(RouterTest, TurnsASwitchBackWhoseFrameFails)
{
    const std::uint32_t before = m_Bench.GetView().GetDisplayFlags();
    m_Bench.Perform("menu", Effect::None,
                    [this]
                    {
                        m_Bench.GetView().SetDisplayFlags(0x1);
                        throw std::bad_alloc();
                    });
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), before);
}

TEST_F(RouterTest, ChecksTheSelectionTypeInForce)
{
    EXPECT_TRUE(m_Router.GetState(32789).checked);
    EXPECT_FALSE(m_Router.GetState(32786).checked);
    m_Bench.GetView().SetSelectType(0x5000002);
    EXPECT_FALSE(m_Router.GetState(32789).checked);
    EXPECT_TRUE(m_Router.GetState(32786).checked);
}

TEST_F(RouterTest, ChecksTheOriginalModelWhileItIsVisible)
{
    EXPECT_FALSE(m_Router.GetState(32827).checked); // there is none
    Show(Tetrahedron());
    EXPECT_TRUE(m_Router.GetState(32827).checked);
    GetScene().GetRootGroup()->GetChildren().front()->SetVisible(false);
    EXPECT_FALSE(m_Router.GetState(32827).checked);
}
}
}
