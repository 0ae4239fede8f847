#include "IASetMaterialCommand.h"
#include "Capture.h"
#include "MANBrepElementManager.h"
#include "Meshes.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

class SettingAMaterial : public testing::Test
{
protected:
    SettingAMaterial() { m_pSolid = LoadQuietly(m_Elements, CentredTetrahedron()); }

    void Run(std::uint32_t nKind = ElementKind::Solid)
    {
        IASetMaterialCommand command;
        command.SetElementManager(&m_Elements);
        command.SetKind(nKind);
        command.Execute();
    }

    /// A material in which every value differs from that of a new one.
    DSMaterial* AddMaterial()
    {
        DSMaterial* pMaterial = m_Elements.GetMaterialManager().NewMaterial();
        pMaterial->m_Ambient = smVec3f(0.1F, 0.2F, 0.3F);
        pMaterial->m_Diffuse = smVec3f(0.4F, 0.5F, 0.6F);
        pMaterial->m_Specular = smVec3f(0.7F, 0.8F, 0.9F);
        pMaterial->m_Emission = smVec3f(0.15F, 0.25F, 0.35F);
        pMaterial->m_fShininess = 12.0F;
        pMaterial->m_fTransparency = 0.5F;
        pMaterial->m_Name = "old";
        pMaterial->m_pTexture = m_Elements.GetMaterialManager().NewImage();
        return pMaterial;
    }

    const DSMaterial& GetNewest() const { return *m_Elements.GetMaterialManager().GetMaterialList().back(); }
    std::size_t CountMaterials() const { return m_Elements.GetMaterialManager().GetMaterialList().size(); }
    static std::size_t CountDialogs() { return GetTestPlatform().GetMaterialDialogs().size(); }

    MANBrepElementManager m_Elements;
    DSSolid* m_pSolid = nullptr;
    std::size_t m_nDialogsBefore = CountDialogs();
};

void ExpectSameValues(const DSMaterial& a, const DSMaterial& b)
{
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_EQ(a.m_Ambient[i], b.m_Ambient[i]);
        EXPECT_EQ(a.m_Diffuse[i], b.m_Diffuse[i]);
        EXPECT_EQ(a.m_Specular[i], b.m_Specular[i]);
        EXPECT_EQ(a.m_Emission[i], b.m_Emission[i]);
    }
    EXPECT_EQ(a.m_fShininess, b.m_fShininess);
    EXPECT_EQ(a.m_fTransparency, b.m_fTransparency);
}

TEST_F(SettingAMaterial, DoesNothingWithoutASelection)
{
    Run();
    EXPECT_EQ(CountMaterials(), 0U);
    EXPECT_EQ(CountDialogs(), m_nDialogsBefore);
}

TEST_F(SettingAMaterial, EditsACopyOfTheMaterialOfTheSolid)
{
    DSMaterial* pOld = AddMaterial();
    m_pSolid->SetMaterial(pOld);
    m_Elements.ToggleSelect(m_pSolid->GetID());
    Run();
    ASSERT_EQ(CountMaterials(), 2U);
    ExpectSameValues(GetNewest(), *pOld);
    EXPECT_EQ(GetNewest().m_Name, "");
    EXPECT_EQ(GetNewest().m_pTexture, nullptr);
    ASSERT_EQ(CountDialogs(), m_nDialogsBefore + 1);
    EXPECT_EQ(GetTestPlatform().GetMaterialDialogs().back().lock().get(), &GetNewest());
}

TEST_F(SettingAMaterial, LeavesTheModelItsLook)
{
    DSMaterial* pOld = AddMaterial();
    m_pSolid->SetMaterial(pOld);
    m_Elements.ToggleSelect(m_pSolid->GetID());
    Run();
    EXPECT_EQ(m_pSolid->GetMaterial(), pOld);
    EXPECT_EQ(m_pSolid->GetFaceList()[0]->GetMaterial(), pOld);
}

TEST_F(SettingAMaterial, StartsFromANewRecordWhereTheSolidHasNone)
{
    m_pSolid->SetMaterial(nullptr);
    m_Elements.ToggleSelect(m_pSolid->GetID());
    Run();
    ASSERT_EQ(CountMaterials(), 1U);
    ExpectSameValues(GetNewest(), DSMaterial());
    EXPECT_EQ(CountDialogs(), m_nDialogsBefore + 1);
}

TEST_F(SettingAMaterial, TakesTheFirstSelectedSolid)
{
    DSSolid* pSecond = LoadQuietly(m_Elements, QuadCube());
    pSecond->SetMaterial(AddMaterial());
    m_Elements.ToggleSelect(pSecond->GetID());
    m_Elements.ToggleSelect(m_pSolid->GetID());
    Run();
    ExpectSameValues(GetNewest(), *pSecond->GetMaterial());
}

TEST_F(SettingAMaterial, TakesTheMaterialOfAFaceForTheKindOfFaces)
{
    DSFace* pFace = m_pSolid->GetFaceList()[2];
    pFace->GetMaterial() = AddMaterial();
    m_Elements.ToggleSelect(pFace->GetID());
    Run(ElementKind::Face);
    ExpectSameValues(GetNewest(), *pFace->GetMaterial());
    EXPECT_EQ(CountDialogs(), m_nDialogsBefore + 1);
}

TEST_F(SettingAMaterial, MakesARecordAndNoMoreForOtherKinds)
{
    m_Elements.ToggleSelect(m_pSolid->GetID());
    Run(ElementKind::Edge);
    EXPECT_EQ(CountMaterials(), 1U);
    EXPECT_EQ(CountDialogs(), m_nDialogsBefore);
}

TEST_F(SettingAMaterial, RefusesASelectionOfAnotherKind)
{
    m_Elements.ToggleSelect(m_pSolid->GetFaceList()[0]->GetID());
    const AssertionCapture assertions;
    EXPECT_THROW(Run(), AssertionFailure);
    EXPECT_EQ(CountDialogs(), m_nDialogsBefore);
}

TEST_F(SettingAMaterial, FollowsNoIdThatIsGone)
{
    m_Elements.ToggleSelect(m_pSolid->GetID());
    m_Elements.DeleteSolid(m_pSolid);
    const MessageCapture messages;
    const AssertionCapture assertions;
    EXPECT_THROW(Run(), AssertionFailure);
    EXPECT_THAT(messages.GetTexts(), ElementsAre("The solid does not exsit!"));
    m_Elements.Clear();
    EXPECT_THROW(Run(), AssertionFailure); // beyond the end of the list
    EXPECT_EQ(CountDialogs(), m_nDialogsBefore);
}

TEST_F(SettingAMaterial, FollowsNoFaceThatIsGone)
{
    DSFace* pFace = m_pSolid->GetFaceList()[2];
    m_Elements.ToggleSelect(pFace->GetID());
    m_Elements.DeleteFace(pFace);
    const MessageCapture messages;
    const AssertionCapture assertions;
    EXPECT_THROW(Run(ElementKind::Face), AssertionFailure);
    EXPECT_THAT(messages.GetTexts(), ElementsAre("The face doesnot exsit!"));
    EXPECT_EQ(CountDialogs(), m_nDialogsBefore);
}

TEST_F(SettingAMaterial, NeedsTheElementManager)
{
    const AssertionCapture assertions;
    IASetMaterialCommand command;
    EXPECT_THROW(command.Execute(), AssertionFailure);
}
}
}
