#include "Capture.h"
#include "ViewTest.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::IsEmpty;

/// The square, lit by one light from the eye, so that a mark on a face shows its colour and the ambient light.
class MarkTest : public DrawnViewTest
{
protected:
    void SetUp() override
    {
        DrawnViewTest::SetUp();
        DSMaterial& material = m_Elements.GetMaterialManager().GetDefaultMaterial();
        material.m_Ambient = smVec3f();
        material.m_Specular = smVec3f();
        m_Scene.GetLightList().front()->m_Diffuse = smVec3f(1.0F, 1.0F, 1.0F);
        m_Scene.GetLightList().front()->m_Position = smVec4f(0.0F, 0.0F, 1.0F, 0.0F);
        m_pSolid = ShowSquare();
    }

    void Hover(const DSElement& element) { m_View.GetHoverList() = {element.GetID()}; }
    void Select(const DSElement& element) { m_View.ToggleSelect(element.GetID()); }

    DSSolid* m_pSolid = nullptr;
};

TEST_F(MarkTest, MarksAVertexByALargePoint)
{
    const DSVertex& vertex = *m_pSolid->GetVertexList()[0];
    Hover(vertex);
    EXPECT_EQ(Count(Draw(DisplayFlag::Wire), kBlue), 25); // five by five
    Select(vertex);
    EXPECT_EQ(Count(Draw(DisplayFlag::Wire), kYellow), 25);
    m_View.GetHoverList().clear();
    EXPECT_EQ(Count(Draw(DisplayFlag::Wire), kRed), 25);
}

TEST_F(MarkTest, MarksAnEdgeByABroadLine)
{
    const DSEdge& edge = *m_pSolid->GetEdgeList()[0];
    Select(edge);
    EXPECT_NEAR(Count(Draw(DisplayFlag::Wire), kRed), 2 * 43, 4);
    Hover(edge);
    EXPECT_NEAR(Count(Draw(DisplayFlag::Wire), kYellow), 2 * 43, 4);
}

TEST_F(MarkTest, MarksAFaceByItsColour)
{
    const DSFace& face = *m_pSolid->GetFaceList()[0];
    Hover(face);
    EXPECT_EQ(GetCentre(Draw(DisplayFlag::FlatShading)), kBlue);
    EXPECT_EQ(GetCentre(Draw(DisplayFlag::SmoothShading)), kBlue);
    Select(face);
    EXPECT_EQ(GetCentre(Draw(DisplayFlag::FlatShading)), kYellow);
}

TEST_F(MarkTest, MarksASolidByItsColour)
{
    Select(*m_pSolid);
    EXPECT_EQ(GetCentre(Draw(DisplayFlag::FlatShading)), kRed);
    EXPECT_EQ(GetCentre(Draw(DisplayFlag::SmoothShading)), kRed);
}

TEST_F(MarkTest, LeavesTheMaterialAsItWas)
{
    const Image before = Draw(DisplayFlag::FlatShading);
    Select(*m_pSolid);
    Hover(*m_pSolid->GetFaceList()[0]);
    Draw(DisplayFlag::FlatShading);
    Select(*m_pSolid); // and out again
    m_View.GetHoverList().clear();
    EXPECT_EQ(Draw(DisplayFlag::FlatShading).pixels, before.pixels);
}

TEST_F(MarkTest, DrawsMarksOnlyWhereTheirSwitchesAreOn)
{
    struct Row
    {
        std::uint32_t id;
        std::uint32_t shownWith;
    };
    const Row rows[] = {
        {m_pSolid->GetID(), DisplayFlag::FlatShading | DisplayFlag::SmoothShading},
        {m_pSolid->GetFaceList()[0]->GetID(), DisplayFlag::FlatShading | DisplayFlag::SmoothShading},
        {m_pSolid->GetEdgeList()[0]->GetID(),
         DisplayFlag::Wire | DisplayFlag::FlatShading | DisplayFlag::SmoothShading},
        {m_pSolid->GetVertexList()[0]->GetID(),
         DisplayFlag::Wire | DisplayFlag::FlatShading | DisplayFlag::SmoothShading | DisplayFlag::Points},
    };
    for (const Row& row : rows)
    {
        m_View.GetHoverList() = {row.id};
        for (const std::uint32_t flag :
             {DisplayFlag::Wire, DisplayFlag::FlatShading, DisplayFlag::SmoothShading, DisplayFlag::Points,
              DisplayFlag::Texture})
        {
            EXPECT_EQ(Count(Draw(flag), kBlue) > 0, (row.shownWith & flag) != 0)
                << std::hex << row.id << ' ' << flag;
        }
    }
}

TEST_F(MarkTest, DrawsHoverMarksOverSelectionMarks)
{
    Select(*m_pSolid);
    Hover(*m_pSolid->GetFaceList()[0]); // the face itself is not selected
    EXPECT_EQ(GetCentre(Draw(DisplayFlag::FlatShading)), kBlue);
}

TEST_F(MarkTest, SkipsIdsThatNameNothingAnyMoreWithoutAWord)
{
    const AssertionCapture assertions;
    const MessageCapture messages;
    const Image before = Draw(0x20C);
    m_View.GetHoverList() = {0x00001234, 0x80001234, 0xC0001234, 0xE0001234,
                             0xA0000000, 0x20000000, 0x40000000, 0xF0000000};
    for (const std::uint32_t id : {m_Elements.CreateVertex()->GetID(), m_Elements.CreateEdge()->GetID()})
    {
        m_View.ToggleSelect(id);
    }
    m_Elements.DeleteVertex(m_Elements.GetVertex(4));
    m_Elements.DeleteEdge(m_Elements.GetEdge(0x80000004));
    EXPECT_EQ(Draw(0x20C).pixels, before.pixels);
    EXPECT_EQ(m_Elements.GetSelectList().size(), 2U); // the lists stay
    EXPECT_THAT(messages.GetTexts(), IsEmpty());
    EXPECT_THAT(assertions.GetExpressions(), IsEmpty());
}
}
}
