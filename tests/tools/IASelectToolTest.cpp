#include "Failure.h"
#include "SelectionTest.h"
#include "resource.h"

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kFront = 0xC0000001;
constexpr std::uint32_t kCube = 0xE0000000;

using SelectTool = SelectionTest;

TEST_F(SelectTool, MarksWhatIsUnderTheMouseByTheTypeOfTheSelection)
{
    MoveTo(50, 50);
    EXPECT_THAT(GetHover(), ElementsAre(kCube)); // the type of the start
    const std::pair<int, std::uint32_t> types[] = {{ResourceID::SelectVertices, 7},
                                                   {ResourceID::SelectFaces, kFront},
                                                   {ResourceID::SelectSolids, kCube}};
    for (const auto& [id, element] : types)
    {
        EXPECT_TRUE(Choose(id));
        MoveTo(55, 46);
        EXPECT_THAT(GetHover(), ElementsAre(element)) << id;
    }
    EXPECT_TRUE(Choose(ResourceID::SelectEdges));
    MoveTo(60, 51);
    ASSERT_EQ(GetHover().size(), 1U);
    EXPECT_EQ(GetHover()[0] & 0xF0000000, ElementKind::Edge);
}

TEST_F(SelectTool, TakesSolidsForATypeThatNobodyKnows)
{
    m_Bench.GetView().SetSelectType(0x5000009);
    MoveTo(50, 50);
    EXPECT_THAT(GetHover(), ElementsAre(kCube));
    RightDown(3, 4);
    EXPECT_THAT(m_Platform.GetPopups(), ElementsAre(HeadlessPlatform::Popup{3, 3, 4}));
}

TEST_F(SelectTool, MarksNothingBesideTheModelAndSaysNothing)
{
    MoveTo(50, 50);
    MoveTo(5, 5);
    EXPECT_THAT(GetHover(), IsEmpty());
    GetNewText();
    EXPECT_TRUE(LeftDown(50, 50)); // the position is that of the last motion
    EXPECT_EQ(GetNewText(), "");
    EXPECT_THAT(GetSelection(), IsEmpty());
}

TEST_F(SelectTool, HasNoHitBeforeTheFirstMotion)
{
    EXPECT_TRUE(LeftDown(50, 50));
    EXPECT_THAT(GetSelection(), IsEmpty());
    EXPECT_EQ(GetNewText(), "");
}

TEST_F(SelectTool, SelectsByOneClickAndTakesBackByTheNext)
{
    MoveTo(50, 50);
    GetNewText();
    EXPECT_TRUE(LeftDown());
    EXPECT_THAT(GetSelection(), ElementsAre(kCube));
    EXPECT_TRUE(m_pCube->IsSelected());
    EXPECT_EQ(GetNewText(), "ELEMENT ID:3758096384\n");
    EXPECT_TRUE(LeftDown());
    EXPECT_THAT(GetSelection(), IsEmpty());
    EXPECT_FALSE(m_pCube->IsSelected());
    EXPECT_EQ(GetNewText(), "ELEMENT ID:3758096384\n");
}

TEST_F(SelectTool, DrawsAFrameForEachMotionAndEachSelection)
{
    const auto wasDrawn = [this](auto event)
    {
        m_Platform.SetPaneText(1, "");
        event();
        return m_Platform.GetPaneText(1) != "";
    };
    EXPECT_TRUE(wasDrawn([this] { MoveTo(5, 5); }));
    EXPECT_FALSE(wasDrawn([this] { LeftDown(); }));
    EXPECT_TRUE(wasDrawn([this] { MoveTo(50, 50); }));
    EXPECT_TRUE(wasDrawn([this] { LeftDown(); }));
    EXPECT_FALSE(wasDrawn([this] { Send(Kind::LeftButtonUp, 50, 50); }));
    EXPECT_FALSE(wasDrawn([this] { RightDown(); }));
}

TEST_F(SelectTool, KeepsWhatAnEventHasDoneWhoseFrameFailsAndSaysNothingElse)
{
    MoveTo(5, 5);
    FailingPanes platform;
    platform.Fail();
    EXPECT_FALSE(MoveTo(50, 50));
    EXPECT_THAT(GetHover(), ElementsAre(kCube));
    EXPECT_FALSE(LeftDown());
    EXPECT_THAT(GetSelection(), ElementsAre(kCube));
    EXPECT_TRUE(m_pCube->IsSelected());
    EXPECT_THAT(platform.GetFailures(),
                ElementsAre(RecordingPlatform::Shown{"mouse-move", "not enough memory"},
                            RecordingPlatform::Shown{"left-down", "not enough memory"}));
}

TEST_F(SelectTool, DropsTheSelectionWithAnotherTypeEvenWhenItHasNothingToTake)
{
    Select(50, 50);
    EXPECT_TRUE(Choose(ResourceID::SelectSolids)); // the same type
    EXPECT_THAT(GetSelection(), ElementsAre(kCube));
    EXPECT_TRUE(Choose(ResourceID::SelectEdges));
    EXPECT_THAT(GetSelection(), IsEmpty());
    EXPECT_FALSE(m_pCube->IsSelected());
}

TEST_F(SelectTool, OpensThePopupOfTheType)
{
    const std::pair<int, std::vector<HeadlessPlatform::Popup>> popups[] = {
        {ResourceID::SelectVertices, {{0, 8, 9}}},
        {ResourceID::SelectEdges, {}},
        {ResourceID::SelectFaces, {{2, 8, 9}}},
        {ResourceID::SelectSolids, {{3, 8, 9}}}};
    for (const auto& [id, expected] : popups)
    {
        Choose(id);
        const std::size_t before = m_Platform.GetPopups().size();
        EXPECT_TRUE(RightDown(8, 9)); // nothing needs to be selected
        const std::vector<HeadlessPlatform::Popup> opened(m_Platform.GetPopups().begin() +
                                                              static_cast<std::ptrdiff_t>(before),
                                                          m_Platform.GetPopups().end());
        EXPECT_EQ(opened, expected) << id;
    }
}

TEST_F(SelectTool, LeavesSelectionAndMarkWhenItLeaves)
{
    Select(50, 50);
    Choose(ResourceID::OrbitTool);
    MoveTo(1, 1);
    EXPECT_THAT(GetHover(), ElementsAre(kCube));
    EXPECT_THAT(GetSelection(), ElementsAre(kCube));
    Choose(ResourceID::SelectTool);
    EXPECT_TRUE(LeftDown()); // it has come with a new command: no hit yet
    EXPECT_THAT(GetSelection(), ElementsAre(kCube));
    MoveTo(1, 1);
    EXPECT_THAT(GetHover(), IsEmpty());
}

TEST_F(SelectTool, OnlySaysSoWhenTheElementOfAClickIsGone)
{
    MoveTo(50, 50);
    m_Bench.NewDocument();
    GetNewText();
    EXPECT_TRUE(LeftDown());
    EXPECT_THAT(m_Platform.GetTexts(), ElementsAre("The element doesnot exist!"));
    EXPECT_THAT(GetSelection(), IsEmpty());
    EXPECT_EQ(GetNewText(), "");
    EXPECT_THAT(GetHover(), ElementsAre(kCube)); // as it was; a frame passes it over
    EXPECT_THAT(m_Platform.GetFailures(), IsEmpty());
}

TEST_F(SelectTool, OnlySaysSoWhenTheElementOfAClickWasDeleted)
{
    MoveTo(50, 50);
    GetElements().DeleteSolid(m_pCube);
    EXPECT_TRUE(LeftDown());
    EXPECT_THAT(m_Platform.GetTexts(), ElementsAre("The element doesnot exist!"));
}

TEST_F(SelectTool, KeepsTheListsOverAnImportAndADrawsOverThem)
{
    Choose(ResourceID::SelectFaces);
    Select(50, 50);
    m_Folder.Write("a.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    EXPECT_TRUE(Import("a.obj")); // it has one face, and the list the second of the cube
    EXPECT_THAT(GetSelection(), ElementsAre(kFront));
    EXPECT_THAT(GetHover(), ElementsAre(kFront));
    EXPECT_TRUE(Choose(ResourceID::ShowGrid)); // a frame
    EXPECT_TRUE(Choose(ResourceID::SelectVertices));
    EXPECT_THAT(GetSelection(), IsEmpty());
    EXPECT_THAT(m_Platform.GetFailures(), IsEmpty());
}

TEST_F(SelectTool, PicksInTheNewDocumentWhicheverToolWasOnTopWhenItCame)
{
    for (const int tool : {ResourceID::SelectTool, ResourceID::DrawSplatTool})
    {
        Choose(tool); // the splat tool lies on the select tool
        m_Bench.NewDocument();
        ShowCube();
        Choose(ResourceID::SelectTool);
        MoveTo(50, 50);
        EXPECT_THAT(GetHover(), ElementsAre(kCube)) << tool;
        m_Bench.NewDocument();
        MoveTo(50, 50);
        EXPECT_THAT(GetHover(), IsEmpty()) << tool;
    }
}

TEST_F(SelectTool, SeesWhatEachOperationHasChanged)
{
    MoveTo(50, 50);
    EXPECT_THAT(GetHover(), ElementsAre(kCube));
    EXPECT_TRUE(m_Bench.Perform("move", Effect::ChangesModel,
                                [this]
                                {
                                    for (DSVertex* vertex : m_pCube->GetVertexList())
                                    {
                                        vertex->GetPosition().x += 2.0;
                                    }
                                }));
    MoveTo(50, 50);
    EXPECT_THAT(GetHover(), IsEmpty());
    MoveTo(90, 50); // 2 is 53.6 pixels to the right at the front's depth; its left side is at 40.2
    EXPECT_THAT(GetHover(), ElementsAre(kCube));
}

TEST_F(SelectTool, SeesWhatAMoveHasChanged)
{
    for (const bool isAccepted : {true, false})
    {
        Choose(ResourceID::SelectSolids);
        GetElements().ToggleSelect(kCube);
        Choose(ResourceID::MoveSolidX);
        MoveTo(0, 0);
        MoveTo(480, 0); // 480 pixels of a 240th: 2 to the right
        isAccepted ? LeftDown() : RightDown();
        MoveTo(50, 50);
        EXPECT_THAT(GetHover(), IsEmpty()) << isAccepted;
        MoveTo(90, 50);
        EXPECT_THAT(GetHover(), ElementsAre(kCube)) << isAccepted;
        GetElements().ToggleSelect(kCube);
    }
}

TEST_F(SelectTool, SeesTheModelBeforeAnOperationThatFailed)
{
    MoveTo(50, 50);
    const auto moveAndFail = [this]
    {
        for (DSVertex* vertex : m_pCube->GetVertexList())
        {
            vertex->GetPosition().x += 2.0;
        }
        throw Failure("no");
    };
    EXPECT_FALSE(m_Bench.Perform("move", Effect::ChangesModel, moveAndFail));
    MoveTo(50, 50);
    EXPECT_THAT(GetHover(), ElementsAre(kCube));
    MoveTo(90, 50);
    EXPECT_THAT(GetHover(), IsEmpty());
}

TEST_F(SelectTool, SeesWhatComesToBeVisible)
{
    m_pCube->SetVisible(false);
    EXPECT_TRUE(Choose(ResourceID::ShowGrid));
    MoveTo(50, 50);
    EXPECT_THAT(GetHover(), IsEmpty());
    m_pCube->SetVisible(true);
    EXPECT_TRUE(Choose(ResourceID::ShowGrid));
    MoveTo(50, 50);
    EXPECT_THAT(GetHover(), ElementsAre(kCube));
}

TEST_F(SelectTool, GivesTheNumbersOfWhatItMarks)
{
    ShowCube();
    Choose(ResourceID::SubdivideLoop); // child 0 has 24 triangles and 6 quadrilaterals now
    EXPECT_EQ(m_Platform.GetPaneText(2), "面片数: 30");
    MoveTo(50, 50); // the second cube: a later solid
    EXPECT_EQ(m_Platform.GetPaneText(2), "面片数: 6");
    MoveTo(1, 1);
    EXPECT_EQ(m_Platform.GetPaneText(2), "面片数: 30");
}
}
}
