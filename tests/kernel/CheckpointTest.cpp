#include "Capture.h"
#include "LinksHold.h"
#include "Meshes.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
class ManagerCheckpoint : public testing::Test
{
protected:
    void SetUp() override
    {
        m_pSolid = LoadQuietly(m_Manager, Sphere(2));
        m_pFace = m_pSolid->GetFaceList()[17];
        m_pFace->GetTagList() = {1, 2, 3};
        m_Manager.ToggleSelect(5);
        m_Manager.ToggleSelect(0xC0000003);
    }

    void ExpectAsBefore()
    {
        ASSERT_EQ(m_Manager.GetSolid(0xE0000000), m_pSolid);
        EXPECT_EQ(m_Manager.GetSolidArray().size(), 1U);
        EXPECT_EQ(m_Manager.GetFaceArray().size(), 128U);
        EXPECT_EQ(m_Manager.GetFace(0xC0000011), m_pFace);
        EXPECT_EQ(m_pSolid->GetFaceList()[17], m_pFace);
        EXPECT_EQ(m_pFace->GetTagList(), (std::vector<std::int32_t>{1, 2, 3}));
        EXPECT_EQ(m_pFace->GetMaterial(), &m_Manager.GetMaterialManager().GetDefaultMaterial());
        EXPECT_TRUE(LinksHold(*m_pSolid));
        EXPECT_EQ(EulerCharacteristic(*m_pSolid), 2);
        EXPECT_EQ(m_Manager.GetSelectList(), (std::vector<std::uint32_t>{5, 0xC0000003}));
        EXPECT_TRUE(m_Manager.GetVertex(5)->IsSelected());
        EXPECT_EQ(m_Manager.CreateVertex()->GetID(), m_pSolid->GetVertexList().size());
    }

    void Ruin()
    {
        m_Manager.SetSelectType(7);
        m_Manager.ToggleSelect(0x80000001);
        m_Manager.GetMaterialManager().NewMaterial();
        m_pFace->GetTagList().clear();
        for (int i = 0; i < 20; ++i)
        {
            DSFace* pFace = m_pSolid->GetFaceList()[static_cast<std::size_t>(i)];
            m_pSolid->GetFaceList().Remove(pFace);
            m_Manager.DeleteFace(pFace);
            m_Manager.CreateFace();
        }
        LoadQuietly(m_Manager, Torus(20, 20));
    }

    MANBrepElementManager m_Manager;
    DSSolid* m_pSolid = nullptr;
    DSFace* m_pFace = nullptr;
};
}

TEST_F(ManagerCheckpoint, BringsBackWhatACommandChanged)
{
    auto saved = m_Manager.Save();
    Ruin();
    m_Manager.Restore(std::move(saved));
    ExpectAsBefore();
    EXPECT_EQ(m_Manager.GetSelectType(), 0x5000005U);
    EXPECT_TRUE(m_Manager.GetMaterialManager().GetMaterialList().empty());
}

TEST_F(ManagerCheckpoint, BringsBackWhatWasCleared)
{
    auto saved = m_Manager.Save();
    m_Manager.Clear();
    LoadQuietly(m_Manager, Torus(30, 30));
    m_Manager.Restore(std::move(saved));
    ExpectAsBefore();
}

TEST_F(ManagerCheckpoint, TakeLeavesTheManagerAsAfterClear)
{
    const auto taken = m_Manager.Take();
    EXPECT_TRUE(m_Manager.GetSolidArray().empty());
    EXPECT_EQ(m_Manager.CreateVertex()->GetID(), 0U);
    EXPECT_EQ(m_Manager.GetSelectList().size(), 2U);
}

TEST_F(ManagerCheckpoint, BringsBackWhatWasTaken)
{
    auto taken = m_Manager.Take();
    LoadQuietly(m_Manager, Torus(30, 30));
    m_Manager.Restore(std::move(taken));
    ExpectAsBefore();
}

TEST_F(ManagerCheckpoint, LeavesTheModelWhenItIsDropped)
{
    {
        const auto saved = m_Manager.Save();
    }
    ExpectAsBefore();
}

TEST_F(ManagerCheckpoint, RewindsWhatWasAddedAndHidden)
{
    DSSolid* pHidden = LoadQuietly(m_Manager, QuadCube());
    pHidden->SetVisible(false);
    m_Manager.DeleteSolid(LoadQuietly(m_Manager, Tetrahedron()));
    const std::size_t materials = m_Manager.GetMaterialManager().GetMaterialList().size();
    auto mark = m_Manager.GetMark();
    m_Manager.GetMaterialManager().NewMaterial();
    const std::size_t vertices = m_Manager.GetVertexArray().size();
    LoadQuietly(m_Manager, Torus(20, 20));
    m_pSolid->SetVisible(false);
    pHidden->SetVisible(true);
    m_Manager.Rewind(std::move(mark));
    EXPECT_TRUE(m_pSolid->IsVisible());
    EXPECT_FALSE(pHidden->IsVisible());
    EXPECT_EQ(m_Manager.GetSolidArray().size(), 3U);
    EXPECT_EQ(m_Manager.GetSolidArray()[2], nullptr);
    EXPECT_EQ(m_Manager.GetMaterialManager().GetMaterialList().size(), materials);
    EXPECT_EQ(m_Manager.CreateVertex()->GetID(), vertices);
    EXPECT_TRUE(LinksHold(*m_pSolid));
    EXPECT_TRUE(LinksHold(*pHidden));
}

TEST_F(ManagerCheckpoint, BringsBackListsWithHoles)
{
    DSFace* pGone = m_pSolid->GetFaceList()[3];
    m_pSolid->GetFaceList().Remove(pGone);
    auto saved = m_Manager.Save();
    m_pSolid->GetFaceList().Remove(m_pFace);
    m_Manager.Restore(std::move(saved));
    EXPECT_EQ(m_pSolid->GetFaceList().size(), 127U);
    EXPECT_EQ(m_pSolid->GetFaceList()[16], m_pFace);
    EXPECT_TRUE(m_pSolid->GetFaceList().Remove(m_pFace));
}
}
