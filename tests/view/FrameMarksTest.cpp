// The marks on selected and hovered elements: the view's frames against their literal form, pixel by pixel.
#include "FrameComparison.h"

namespace tessarine
{
namespace
{
using namespace DisplayFlag;

class MarksTest : public FrameComparison
{
protected:
    MarksTest()
    {
        m_pSolid = BuildAndShow(Placed(Prism(7), 0.7, smVec3d(-0.2, 0.1, 0.0)));
        m_pOther = BuildAndShow(Placed(Sphere(2), 0.6, smVec3d(0.6, 0.2, 0.6)));
    }

    std::vector<std::uint32_t> GetIdsOfEachKind() const
    {
        return {m_pSolid->GetID(), m_pOther->GetFaceList()[9]->GetID(), m_pSolid->GetFaceList()[1]->GetID(),
                m_pSolid->GetEdgeList()[3]->GetID(), m_pSolid->GetVertexList()[8]->GetID()};
    }

    /// In every mode: which of them let the mark be seen is part of what is compared.
    void ExpectSameInEveryMode()
    {
        for (const std::uint32_t flags :
             {Wire, FlatShading, SmoothShading, Points, Wire | FlatShading, Wire | SmoothShading | Points,
              FlatShading | SmoothShading, FlatShading | NewMesh, SmoothShading | NewMesh,
              FlatShading | Blending | LineSmoothing, Texture, Texture | Wire,
              DisplayFlag::Grid | Texture | Points})
        {
            EXPECT_TRUE(SameFrames(flags));
        }
    }

    DSSolid* m_pSolid = nullptr;
    DSSolid* m_pOther = nullptr;
};

TEST_F(MarksTest, DrawsEachKindSelected)
{
    for (const std::uint32_t id : GetIdsOfEachKind())
    {
        m_Elements.ToggleSelect(id);
        ExpectSameInEveryMode();
        m_Elements.ToggleSelect(id);
    }
}

TEST_F(MarksTest, DrawsEachKindHovered)
{
    for (const std::uint32_t id : GetIdsOfEachKind())
    {
        m_View.GetHoverList() = {id};
        ExpectSameInEveryMode();
    }
}

TEST_F(MarksTest, DrawsEachKindSelectedAndHovered)
{
    for (const std::uint32_t id : GetIdsOfEachKind())
    {
        m_Elements.ToggleSelect(id);
        m_View.GetHoverList() = {id};
        ExpectSameInEveryMode();
        m_Elements.ToggleSelect(id);
    }
}

TEST_F(MarksTest, DrawsManyMarksInListOrder)
{
    for (const std::uint32_t id : GetIdsOfEachKind())
    {
        m_Elements.ToggleSelect(id);
    }
    m_View.GetHoverList() = {m_pOther->GetID(), m_pSolid->GetVertexList()[8]->GetID(),
                             m_pOther->GetFaceList()[9]->GetID(), m_pSolid->GetFaceList()[4]->GetID()};
    ExpectSameInEveryMode();
    std::reverse(m_View.GetHoverList().begin(), m_View.GetHoverList().end());
    ExpectSameInEveryMode();
}

TEST_F(MarksTest, DrawsEverySelectedFaceOfAModel)
{
    for (const DSFace* face : m_pOther->GetFaceList())
    {
        m_Elements.ToggleSelect(face->GetID());
    }
    ExpectSameInEveryMode();
}

TEST_F(MarksTest, DrawsTheMarksOfHiddenSolids)
{
    BuildAndShow(Placed(QuadCube(), 0.3, smVec3d(-0.8, 0.7, 0.0))); // to be seen where the marks are not
    m_pOther->SetVisible(false);
    m_Scene.GetLeafList()[0]->SetVisible(false);
    for (const std::uint32_t id : GetIdsOfEachKind())
    {
        m_Elements.ToggleSelect(id);
    }
    ExpectSameInEveryMode();
}

TEST_F(MarksTest, LeavesTheMaterialAsItWas)
{
    // A face without a material takes the one that the library holds: the marks' colour must not stay there.
    m_pSolid->GetFaceList()[0]->GetMaterial() = AddMaterial(smVec3f(0.9F, 0.2F, 0.1F));
    m_Elements.ToggleSelect(m_pOther->GetID());
    m_View.GetHoverList() = {m_pSolid->GetFaceList()[1]->GetID()};
    EXPECT_TRUE(SameFrames(FlatShading));
    EXPECT_TRUE(SameFrames(Texture));
    EXPECT_TRUE(SameFrames(SmoothShading));
    EXPECT_TRUE(SameFrames(Texture));
}

TEST_F(MarksTest, TakesTheRestOfTheMaterialFromTheLastFaceDrawn)
{
    // Of a mark only the diffuse colour is its own.
    DSMaterial* glowing = AddMaterial(smVec3f(0.2F, 0.2F, 0.2F));
    glowing->m_Emission = smVec3f(0.1F, 0.4F, 0.2F);
    m_pOther->SetMaterial(glowing);
    m_Elements.ToggleSelect(m_pSolid->GetID());
    ExpectSameInEveryMode();
}

TEST_F(MarksTest, DrawsTheLastOfTwoMarksInOnePlace)
{
    const std::uint32_t face = m_pSolid->GetFaceList()[1]->GetID();
    m_View.GetHoverList() = {m_pSolid->GetID(), face};
    m_Elements.ToggleSelect(face);
    ExpectSameInEveryMode();
    m_View.GetHoverList() = {face, m_pSolid->GetID()};
    ExpectSameInEveryMode();
}

TEST_F(MarksTest, PassesOverIdsThatNameNothing)
{
    m_Elements.ToggleSelect(m_pSolid->GetEdgeList()[3]->GetID());
    const DSFace* face = m_pSolid->GetFaceList()[2];
    const Picture before = DrawByView(Wire | FlatShading | Points);
    m_View.GetHoverList() = {0x0FFFFFFF, 0x20000000, 0x40000000, 0x8FFFFFFF, 0xA0000000,
                             0xCFFFFFFF, 0xEFFFFFFF, 0xF0000000, 0xFFFFFFFF};
    EXPECT_TRUE(SamePictures(DrawByView(Wire | FlatShading | Points), before));
    ExpectSameInEveryMode();
    m_View.GetHoverList().push_back(face->GetID());
    EXPECT_FALSE(SamePictures(DrawByView(Wire | FlatShading | Points), before));
}

TEST_F(MarksTest, SeesTheColourOfAMark)
{
    // What is compared here can fail: hovering shows, and so does selecting what is hovered.
    for (const std::uint32_t id : GetIdsOfEachKind())
    {
        m_View.GetHoverList().clear();
        const Picture plain = DrawByView(Wire | FlatShading);
        m_View.GetHoverList() = {id};
        const Picture hovered = DrawByView(Wire | FlatShading);
        m_Elements.ToggleSelect(id);
        EXPECT_FALSE(SamePictures(DrawLiterally(Wire | FlatShading), hovered)) << TellFlags(id);
        EXPECT_FALSE(SamePictures(plain, hovered)) << TellFlags(id);
        m_Elements.ToggleSelect(id);
    }
}
}
}
