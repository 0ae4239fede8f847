#include "IACommandRouter.h"
#include "Picture.h"
#include "Resources.h"
#include "WorkbenchTest.h"
#include "resource.h"

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

TEST_F(RouterTest, RefusesWhatComesLater)
{
    EXPECT_EQ(GetRefusal(32779), "\"显示线框\" (32779) comes with a later version of Tessarine");
    for (const MenuEntry& entry : GetMenuEntries())
    {
        if (entry.comesLater)
        {
            EXPECT_THAT(GetRefusal(entry.id), EndsWith(" comes with a later version of Tessarine"));
        }
    }
}

TEST_F(RouterTest, TakesEveryEntryOfTheDocumentToTheController)
{
    // What each says without a model, a dialog's answer or a kept command; nothing where it succeeds.
    const std::string later = " comes with a later version of Tessarine";
    const std::pair<int, std::string> reasons[] = {
        {32775, ""},
        {32783, ""},
        {32778, ""},
        {32835, "adaptive subdivision" + later},
        {32805, "projection sampling" + later},
        {32794, "building the initial mesh" + later},
        {32796, "hierarchical refinement" + later},
        {32828, "incremental refinement" + later},
        {32829, "two-step refinement" + later},
        {32834, "energy refinement" + later},
        {32821, "mesh optimisation" + later},
        {32840, "mesh optimisation" + later},
        {32841, "mesh optimisation" + later},
        {32802, "simplification needs a model: import one first"},
        {32803, "simplification needs a model: import one first"},
        {32804, "simplification needs a model: import one first"},
        {32833, "setting a material" + later},
        {32839, "generating splats" + later},
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
    EXPECT_THAT(GetRefusal(32826), HasSubstr("first step"));
    EXPECT_THAT(GetRefusal(32831), HasSubstr("second step"));
    EXPECT_THAT(GetRefusal(32832), HasSubstr("third step"));
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
