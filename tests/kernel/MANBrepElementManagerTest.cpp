#include "MANBrepElementManager.h"
#include "ACTEuler.h"
#include "Capture.h"
#include "Failure.h"
#include "LinksHold.h"
#include "Meshes.h"
#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tessarine
{
namespace
{
class ElementManager : public testing::Test
{
protected:
    DSSolid* Load(const IndexedMesh& mesh) { return LoadQuietly(m_Manager, mesh); }

    /// A quad 0 1 2 3 whose face has the two-corner ring 4 5 as its second loop.
    DSSolid* LoadFaceOfTwoLoops()
    {
        IndexedMesh mesh;
        mesh.positions.resize(4);
        mesh.AddFace({1, 2, 3, 4});
        DSSolid* pSolid = Load(mesh);
        const std::uint32_t solid = pSolid->GetID();
        const std::uint32_t face = pSolid->GetFaceList()[0]->GetID();
        ACTEuler euler(&m_Manager);
        std::uint32_t vertex = 0;
        euler.MEVStrut(solid, face, 0, vertex, smVec3d(4, 0, 0));
        euler.MEVStrut(solid, face, 4, vertex, smVec3d(5, 0, 0));
        euler.KEMR(solid, face, 0, 4);
        return pSolid;
    }

    MANBrepElementManager m_Manager;
    AssertionCapture m_Assertions;
    MessageCapture m_Messages;
    ConsoleCapture m_Console;
};

using Texts = std::vector<std::string>;
}

TEST_F(ElementManager, HandsOutIDsWithTheTagOfTheKind)
{
    m_Manager.CreateVertex();
    EXPECT_EQ(m_Manager.CreateVertex()->GetID(), 0x00000001U);
    EXPECT_EQ(m_Manager.CreateHalfEdge()->GetID(), 0x20000000U);
    EXPECT_EQ(m_Manager.CreateEdge()->GetID(), 0x80000000U);
    EXPECT_EQ(m_Manager.CreateLoop()->GetID(), 0xA0000000U);
    EXPECT_EQ(m_Manager.CreateFace()->GetID(), 0xC0000000U);
    EXPECT_EQ(m_Manager.CreateSolid()->GetID(), 0xE0000000U);
    EXPECT_EQ(m_Manager.CreateFace()->GetID(), 0xC0000001U);
}

TEST_F(ElementManager, FindsEachKindByItsID)
{
    DSSolid* pSolid = Load(Tetrahedron());
    EXPECT_EQ(m_Manager.GetSolid(0xE0000000), pSolid);
    EXPECT_EQ(m_Manager.GetVertex(3)->GetID(), 3U);
    EXPECT_EQ(m_Manager.GetHalfEdge(0x2000000B)->GetID(), 0x2000000BU);
    EXPECT_EQ(m_Manager.GetEdge(0x80000005)->GetID(), 0x80000005U);
    EXPECT_EQ(m_Manager.GetLoop(0xA0000003)->GetID(), 0xA0000003U);
    EXPECT_EQ(m_Manager.GetFace(0xC0000003)->GetID(), 0xC0000003U);
    for (const std::uint32_t id : {0x3U, 0x2000000BU, 0x80000005U, 0xA0000003U, 0xC0000003U, 0xE0000000U})
    {
        EXPECT_EQ(m_Manager.GetElement(id)->GetID(), id);
    }
}

TEST_F(ElementManager, NamesTheKindOfAnID)
{
    using Manager = MANBrepElementManager;
    EXPECT_EQ(Manager::GetElementType(0x0FFFFFFF), ElementKind::Vertex);
    EXPECT_EQ(Manager::GetElementType(0x20000001), ElementKind::HalfEdge);
    EXPECT_EQ(Manager::GetElementType(0x80000001), ElementKind::Edge);
    EXPECT_EQ(Manager::GetElementType(0xA0000001), ElementKind::Loop);
    EXPECT_EQ(Manager::GetElementType(0xC0000001), ElementKind::Face);
    EXPECT_EQ(Manager::GetElementType(0xE0000001), ElementKind::Solid);
    for (const std::uint32_t nibble : {1U, 3U, 4U, 5U, 6U, 7U, 9U, 0xBU, 0xDU, 0xFU})
    {
        EXPECT_EQ(Manager::GetElementType(nibble << 28U), 0xF0000000U);
    }
}

TEST_F(ElementManager, ShowsThatAnElementOfNoKindDoesNotExist)
{
    EXPECT_EQ(m_Manager.GetElement(0x40000000), nullptr);
    EXPECT_EQ(m_Messages.GetTexts(), Texts{"The element doesnot exist!"});
}

TEST_F(ElementManager, ShowsAMessageForEachKindOfDeletedElement)
{
    Load(SingleTriangle());
    m_Manager.DeleteSolid(m_Manager.GetSolid(0xE0000000));
    m_Manager.DeleteFace(m_Manager.GetFace(0xC0000000));
    m_Manager.DeleteEdge(m_Manager.GetEdge(0x80000000));
    m_Manager.DeleteHalfEdge(m_Manager.GetHalfEdge(0x20000000));
    m_Manager.DeleteLoop(m_Manager.GetLoop(0xA0000000));
    m_Manager.DeleteVertex(m_Manager.GetVertex(0));
    for (const std::uint32_t id : {0xE0000000U, 0xC0000000U, 0x80000000U, 0x20000000U, 0xA0000000U, 0x0U})
    {
        EXPECT_EQ(m_Manager.GetElement(id), nullptr);
    }
    EXPECT_EQ(m_Messages.GetTexts(),
              (Texts{"The solid does not exsit!", "The face doesnot exsit!", "The edge doesnot exsit!",
                     "The halfedge doesnot exsit!", "The loop doesnot exsit!", "The vertex doesnot exsit!"}));
}

TEST_F(ElementManager, RefusesAnIDOfAnotherKind)
{
    Load(SingleTriangle());
    EXPECT_THROW(m_Manager.GetVertex(0xC0000000), AssertionFailure);
    EXPECT_THROW(m_Manager.GetFace(0x00000000), AssertionFailure);
    EXPECT_THROW(m_Manager.GetSolid(0x80000000), AssertionFailure);
#if TESSARINE_ASSERTIONS
    EXPECT_EQ(m_Assertions.GetPaths()[0], "source/Manager/MANBrepElementManager.cpp");
#endif
}

TEST_F(ElementManager, RefusesAnIndexBeyondTheArray)
{
    Load(SingleTriangle());
    EXPECT_THROW(m_Manager.GetVertex(3), AssertionFailure);
    EXPECT_THROW(m_Manager.GetHalfEdge(0x20000003), AssertionFailure);
    EXPECT_THROW(m_Manager.GetElement(0xE0000001), AssertionFailure);
}

TEST_F(ElementManager, NeverUsesAnIDAgain)
{
    Load(SingleTriangle());
    m_Manager.DeleteVertex(m_Manager.GetVertex(1));
    EXPECT_EQ(m_Manager.CreateVertex()->GetID(), 3U);
    EXPECT_EQ(m_Manager.GetVertexArray().size(), 4U);
    EXPECT_EQ(m_Manager.GetVertexArray()[1], nullptr);
}

TEST_F(ElementManager, DeletesWithoutTouchingListsOrLinks)
{
    DSSolid* pSolid = Load(Tetrahedron());
    DSHalfEdge* pHalfEdge = m_Manager.GetVertex(0)->GetHalfEdge();
    const DSVertex* pVertex = pHalfEdge->GetVertex();
    m_Manager.DeleteVertex(m_Manager.GetVertex(0));
    EXPECT_EQ(pSolid->GetVertexList().size(), 4U);
    EXPECT_EQ(pHalfEdge->GetVertex(), pVertex);
}

TEST_F(ElementManager, RefusesToDeleteWhatItDidNotMake)
{
    DSVertex stranger;
    stranger.SetID(7);
    EXPECT_THROW(m_Manager.DeleteVertex(&stranger), AssertionFailure);
    EXPECT_THROW(m_Manager.DeleteVertex(nullptr), AssertionFailure);
}

TEST_F(ElementManager, RefusesToDeleteARecordInAnothersName)
{
    Load(SingleTriangle());
    DSVertex stranger;
    stranger.SetID(1);
    EXPECT_THROW(m_Manager.DeleteVertex(&stranger), AssertionFailure);
    EXPECT_NE(m_Manager.GetVertexArray()[1], nullptr);
    m_Manager.DeleteVertex(m_Manager.GetVertex(1));
    EXPECT_NO_THROW(m_Manager.DeleteVertex(&stranger)) << "an empty slot is no error";
}

TEST_F(ElementManager, StartsTheIDsAnewWhenCleared)
{
    Load(Tetrahedron());
    m_Manager.GetMaterialManager().NewMaterial();
    m_Manager.ToggleSelect(2);
    m_Manager.Clear();
    EXPECT_EQ(m_Manager.GetVertexArray().size(), 0U);
    EXPECT_EQ(m_Manager.GetHalfEdgeArray().size(), 0U);
    EXPECT_EQ(m_Manager.GetEdgeArray().size(), 0U);
    EXPECT_EQ(m_Manager.GetLoopArray().size(), 0U);
    EXPECT_EQ(m_Manager.GetFaceArray().size(), 0U);
    EXPECT_EQ(m_Manager.GetSolidArray().size(), 0U);
    EXPECT_EQ(m_Manager.CreateVertex()->GetID(), 0U);
    EXPECT_EQ(m_Manager.GetSelectList(), std::vector<std::uint32_t>{2});
    EXPECT_EQ(m_Manager.GetMaterialManager().GetMaterialList().size(), 1U);
}

TEST_F(ElementManager, TogglesAnElementInAndOutOfTheSelection)
{
    Load(Tetrahedron());
    m_Manager.ToggleSelect(0xC0000001);
    m_Manager.ToggleSelect(3);
    EXPECT_EQ(m_Manager.GetSelectList(), (std::vector<std::uint32_t>{0xC0000001, 3}));
    EXPECT_TRUE(m_Manager.GetFace(0xC0000001)->IsSelected());
    m_Manager.ToggleSelect(0xC0000001);
    EXPECT_FALSE(m_Manager.GetFace(0xC0000001)->IsSelected());
    EXPECT_EQ(m_Manager.GetSelectList(), std::vector<std::uint32_t>{3});
}

TEST_F(ElementManager, SelectsNothingThatDoesNotExist)
{
    m_Manager.ToggleSelect(0x40000000);
    EXPECT_TRUE(m_Manager.GetSelectList().empty());
    EXPECT_EQ(m_Messages.GetTexts().size(), 1U);
}

TEST_F(ElementManager, DropsTheSelectionWhenItsKindChanges)
{
    Load(Tetrahedron());
    EXPECT_EQ(m_Manager.GetSelectType(), 0x5000005U);
    m_Manager.ToggleSelect(1);
    m_Manager.SetSelectType(0xC0000000);
    EXPECT_EQ(m_Manager.GetSelectType(), 0xC0000000U);
    EXPECT_FALSE(m_Manager.GetVertex(1)->IsSelected());
    EXPECT_TRUE(m_Manager.GetSelectList().empty());
}

TEST_F(ElementManager, DropsASelectionOfElementsThatAreGone)
{
    Load(Tetrahedron());
    m_Manager.ToggleSelect(0xC0000001);
    m_Manager.ToggleSelect(1);
    m_Manager.DeleteVertex(m_Manager.GetVertex(1));
    m_Manager.SetSelectType(0);
    m_Manager.ToggleSelect(0xC0000001);
    m_Manager.Clear();
    EXPECT_NO_THROW(m_Manager.SetSelectType(1));
    EXPECT_TRUE(m_Manager.GetSelectList().empty());
    EXPECT_TRUE(m_Messages.GetTexts().empty());
}

TEST_F(ElementManager, FindsTheEdgeBetweenTwoVerticesFromBothSides)
{
    Load(Tetrahedron());
    for (std::uint32_t a = 0; a < 4; ++a)
    {
        for (std::uint32_t b = 0; b < 4; ++b)
        {
            if (a != b)
            {
                const DSEdge* pEdge = m_Manager.FindEdge(a, b);
                ASSERT_NE(pEdge, nullptr);
                EXPECT_EQ(pEdge, m_Manager.FindEdge(b, a));
            }
        }
    }
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(ElementManager, SaysBothIDsWhereThereIsNoEdge)
{
    Load(BowTie());
    EXPECT_EQ(m_Manager.FindEdge(1, 3), nullptr);
    EXPECT_EQ(m_Console.GetText(), "V1 ID: 1\nV2 ID: 3\n");
}

TEST_F(ElementManager, DoesNotFindTheRimEdgeThatOnlyArrivesAtAnOpenVertex)
{
    Load(SingleTriangle());
    EXPECT_EQ(m_Manager.FindEdge(0, 2), nullptr);
    EXPECT_EQ(m_Console.GetText(), "V1 ID: 0\nV2 ID: 2\n");
    EXPECT_EQ(m_Manager.FindEdge(2, 0), m_Manager.GetEdge(0x80000002));
}

TEST_F(ElementManager, FindsAnEdgeThatTheWalkMeetsOnItsWayBack)
{
    // The half-edges 0, 3, 6 leave the hub; turning forward from 0 leads out at once, backward to 3 and 6.
    Load(OpenFan(3));
    m_Manager.GetVertex(0)->GetHalfEdge() = m_Manager.GetHalfEdge(0x20000000);
    EXPECT_EQ(m_Manager.FindEdge(0, 3), m_Manager.GetHalfEdge(0x20000006)->GetEdge());
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(ElementManager, RefusesToLookAlongLinksThatAreNull)
{
    DSSolid* pSolid = Load(SingleTriangle());
    const DSFace* pFace = pSolid->GetFaceList()[0];
    m_Manager.GetHalfEdge(0x20000001)->GetVertex() = nullptr;
    EXPECT_THROW(m_Manager.FindEdge(0, 2), AssertionFailure);
    EXPECT_THROW(m_Manager.FindFaceEdge(pFace, 0, 2), AssertionFailure);
    m_Manager.GetHalfEdge(0x20000000)->GetNext() = nullptr;
    EXPECT_THROW(m_Manager.FindEdge(0, 2), AssertionFailure);
    EXPECT_THROW(m_Manager.FindFaceEdge(pFace, 0, 2), AssertionFailure);
    pFace->GetLoopList()[0]->GetHalfEdge() = nullptr;
    EXPECT_THROW(m_Manager.FindFaceEdge(pFace, 0, 2), AssertionFailure);
}

TEST_F(ElementManager, SaysTheIDsThatNameNoVertex)
{
    Load(SingleTriangle());
    EXPECT_EQ(m_Manager.FindEdge(0xC0000000, 3), nullptr);
    EXPECT_EQ(m_Console.GetText(), "V1 ID: 3221225472\nV2 ID: 3\n");
}

TEST_F(ElementManager, LooksForAnEdgeFromTheSecondVertexWhenTheFirstHasNoHalfEdge)
{
    Load(SingleTriangle());
    m_Manager.GetVertex(1)->GetHalfEdge() = nullptr;
    EXPECT_EQ(m_Manager.FindEdge(1, 0), m_Manager.GetVertex(0)->GetHalfEdge()->GetEdge());
    m_Manager.GetVertex(0)->GetHalfEdge() = nullptr;
    EXPECT_EQ(m_Manager.FindEdge(1, 0), nullptr);
}

TEST_F(ElementManager, FindsAnEdgeOfAFaceInBothDirections)
{
    DSSolid* pSolid = Load(Tetrahedron());
    const DSFace* pFace = pSolid->GetFaceList()[0]; // corners 0 2 1
    const DSEdge* pEdge = m_Manager.FindFaceEdge(pFace, 0, 2);
    ASSERT_NE(pEdge, nullptr);
    EXPECT_EQ(m_Manager.FindFaceEdge(pFace, 2, 0), pEdge);
    EXPECT_EQ(m_Manager.FindFaceEdge(pFace, 0, 3), nullptr);
    EXPECT_EQ(m_Console.GetText(), "");
    EXPECT_THROW(m_Manager.FindFaceEdge(nullptr, 0, 1), AssertionFailure);
}

TEST_F(ElementManager, FindsAnEdgeOfAFaceInItsSecondLoop)
{
    const DSFace* pFace = LoadFaceOfTwoLoops()->GetFaceList()[0];
    ASSERT_EQ(pFace->GetLoopList().size(), 2U);
    const DSEdge* pEdge = m_Manager.FindFaceEdge(pFace, 5, 4);
    EXPECT_EQ(pEdge, m_Manager.GetEdge(0x80000005));
    EXPECT_EQ(m_Manager.FindFaceEdge(pFace, 4, 5), pEdge);
    EXPECT_EQ(m_Manager.FindFaceEdge(pFace, 0, 4), nullptr) << "the edge between the loops is gone";
}

TEST_F(ElementManager, UnitizesTheLargestExtentToTwo)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.positions = {smVec3d(1, 10, 0), smVec3d(5, 10, 0), smVec3d(1, 12, 1)};
    DSSolid* pSolid = Load(mesh);
    float cx = 0;
    float cy = 0;
    float cz = 0;
    EXPECT_EQ(m_Manager.UnitizeSolid(pSolid, cx, cy, cz), 0.5F); // 2 over the extent in x, 4
    EXPECT_EQ(cx, 3.0F);
    EXPECT_EQ(cy, 11.0F);
    EXPECT_EQ(cz, 0.5F);
    EXPECT_EQ(pSolid->GetVertexList()[0]->GetPosition().x, -1.0);
    EXPECT_EQ(pSolid->GetVertexList()[1]->GetPosition().x, 1.0);
    EXPECT_EQ(pSolid->GetVertexList()[2]->GetPosition().y, 0.5);
    EXPECT_EQ(pSolid->GetVertexList()[2]->GetPosition().z, 0.25);
}

TEST_F(ElementManager, UnitizesInSinglePrecisionRoundingEachStep)
{
    IndexedMesh mesh = SingleTriangle();
    const float values[] = {0.1F, 0.7F, 0.3F};
    for (int i = 0; i < 3; ++i)
    {
        mesh.positions[i] = smVec3d(values[i], 0, 0);
    }
    DSSolid* pSolid = Load(mesh);
    float cx = 0;
    float cy = 0;
    float cz = 0;
    const float scale = m_Manager.UnitizeSolid(pSolid, cx, cy, cz);
    const volatile float centre = (0.7F + 0.1F) / 2;
    const volatile float expectedScale = 2.0F / (0.7F - 0.1F);
    EXPECT_EQ(cx, centre);
    EXPECT_EQ(scale, expectedScale);
    for (int i = 0; i < 3; ++i)
    {
        const volatile float difference = values[i] - centre;
        const volatile float product = difference * expectedScale;
        EXPECT_EQ(pSolid->GetVertexList()[i]->GetPosition().x, static_cast<double>(product));
    }
}

TEST_F(ElementManager, UnitizesTheDifferenceOfADoubleAndTheCentre)
{
    // The centre is 0.5 and the scale 2 on both axes.
    IndexedMesh mesh = SingleTriangle();
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(1, 1, 0),
                      smVec3d(0.5 + std::ldexp(1, -40), 0.75 + std::ldexp(1, -30), 0)};
    DSSolid* pSolid = Load(mesh);
    float cx = 0;
    float cy = 0;
    float cz = 0;
    ASSERT_EQ(m_Manager.UnitizeSolid(pSolid, cx, cy, cz), 2.0F);
    const smVec3d& position = pSolid->GetVertexList()[2]->GetPosition();
    // As a float, x would be 0.5 already, and the difference zero.
    EXPECT_EQ(position.x, std::ldexp(1, -39));
    // The difference 0.25 + 2^-30 is 0.25 as a float, whose spacing there is 2^-25.
    EXPECT_EQ(position.y, 0.5);
}

TEST_F(ElementManager, OnlyCentresASolidWithoutExtent)
{
    IndexedMesh mesh = SingleTriangle();
    mesh.positions = {smVec3d(3, 4, 5), smVec3d(3, 4, 5), smVec3d(3, 4, 5)};
    DSSolid* pSolid = Load(mesh);
    float cx = 0;
    float cy = 0;
    float cz = 0;
    EXPECT_EQ(m_Manager.UnitizeSolid(pSolid, cx, cy, cz), 1.0F);
    EXPECT_EQ(cy, 4.0F);
    for (const DSVertex* pVertex : pSolid->GetVertexList())
    {
        EXPECT_EQ(pVertex->GetPosition().Length(), 0.0);
    }
}

TEST_F(ElementManager, LeavesASolidWithoutVertices)
{
    float cx = 7;
    float cy = 7;
    float cz = 7;
    EXPECT_EQ(m_Manager.UnitizeSolid(m_Manager.CreateSolid(), cx, cy, cz), 1.0F);
    EXPECT_EQ(cx, 0.0F);
    EXPECT_EQ(cy, 0.0F);
    EXPECT_EQ(cz, 0.0F);
    EXPECT_THROW(m_Manager.UnitizeSolid(nullptr, cx, cy, cz), AssertionFailure);
}

TEST_F(ElementManager, RefusesCoordinatesThatSinglePrecisionCannotHold)
{
    for (const double far : {1e300, 3e38, 1e-40, std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity()})
    {
        IndexedMesh mesh = SingleTriangle();
        mesh.positions = {smVec3d(far, 0, 0), smVec3d(-far, 0, 0), smVec3d(0, 0, 0)};
        DSSolid* pSolid = Load(mesh);
        float cx = 0;
        float cy = 0;
        float cz = 0;
        EXPECT_THROW(m_Manager.UnitizeSolid(pSolid, cx, cy, cz), Failure) << far;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(pSolid->GetVertexList()[0]->GetPosition().x),
                  std::bit_cast<std::uint64_t>(far))
            << "nothing was moved";
    }
}

TEST_F(ElementManager, RefusesACoordinateThatIsNoNumberInAnyVertex)
{
    for (const double none :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()})
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            IndexedMesh mesh = SingleTriangle();
            mesh.positions[2][axis] = none;
            DSSolid* pSolid = Load(mesh);
            float cx = 7;
            float cy = 7;
            float cz = 7;
            EXPECT_THROW(m_Manager.UnitizeSolid(pSolid, cx, cy, cz), Failure) << none << " on " << axis;
            EXPECT_EQ(cx, 7.0F);
            EXPECT_EQ(pSolid->GetVertexList()[0]->GetPosition().x, 0.0);
            EXPECT_EQ(pSolid->GetVertexList()[1]->GetPosition().x, 1.0);
        }
    }
}

TEST_F(ElementManager, CopiesPositionsAndConnectivityAlone)
{
    DSSolid* pSource = Load(Torus(5, 4));
    pSource->CalcNormals();
    DSSolid* pTarget = m_Manager.CreateSolid();
    m_Manager.CopySolid(pSource, pTarget);
    EXPECT_TRUE(LinksHold(*pTarget));
    EXPECT_TRUE(LinksHold(*pSource));
    ASSERT_EQ(pTarget->GetVertexList().size(), 20U);
    ASSERT_EQ(pTarget->GetEdgeList().size(), 60U);
    ASSERT_EQ(pTarget->GetFaceList().size(), 40U);
    EXPECT_EQ(pTarget->GetVertexList()[0]->GetID(), 20U);
    EXPECT_EQ(pTarget->GetVertexList()[7]->GetPosition().x, pSource->GetVertexList()[7]->GetPosition().x);
    EXPECT_EQ(pTarget->GetVertexList()[7]->GetNormal().Length(), 0.0);
    EXPECT_EQ(pTarget->GetFaceList()[0]->GetMaterial(), nullptr);
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(ElementManager, CopiesNoTextureCoordinates)
{
    const IndexedMesh mesh = SingleTriangle();
    DSSolid* pSource = m_Manager.BuildTexturedSolid(mesh.positions, mesh.indices, mesh.faceSizes,
                                                    {smVec2f(0.5F, 0.25F)}, {1, 1, 1}, false);
    ASSERT_EQ(m_Manager.GetHalfEdgeArray()[0]->GetTexCoord().x, 0.5F);
    m_Manager.CopySolid(pSource, m_Manager.CreateSolid());
    for (std::size_t copied = 3; copied < 6; ++copied)
    {
        EXPECT_EQ(m_Manager.GetHalfEdgeArray()[copied]->GetTexCoord().x, 0.0F);
        EXPECT_EQ(m_Manager.GetHalfEdgeArray()[copied]->GetTexCoord().y, 0.0F);
    }
}

TEST_F(ElementManager, CopiesAllLoopsOfAFace)
{
    DSSolid* pSource = LoadFaceOfTwoLoops();
    DSSolid* pTarget = m_Manager.CreateSolid();
    m_Manager.CopySolid(pSource, pTarget);
    EXPECT_TRUE(LinksHold(*pTarget));
    EXPECT_EQ(pTarget->GetEdgeList().size(), 5U); // four of the quad, one of the ring
    const LoopList& loops = pTarget->GetFaceList()[0]->GetLoopList();
    ASSERT_EQ(loops.size(), 2U);
    const DSHalfEdge* pRing = loops[1]->GetHalfEdge(); // starts at 5, as the source's ring does
    EXPECT_EQ(pRing->GetVertex(), pTarget->GetVertexList()[5]);
    EXPECT_EQ(pRing->GetVertex()->GetPosition().x, 5.0);
    EXPECT_EQ(pRing->GetNext()->GetVertex(), pTarget->GetVertexList()[4]);
    EXPECT_EQ(pRing->GetTwin(), pRing->GetNext());
}

TEST_F(ElementManager, CopiesTheMarkOfARepeatedEdge)
{
    DSSolid* pSource = Load(ThreeTrianglesOnOneEdge());
    DSSolid* pTarget = m_Manager.CreateSolid();
    m_Manager.CopySolid(pSource, pTarget);
    for (std::size_t i = 0; i < 7; ++i)
    {
        EXPECT_EQ(pSource->GetEdgeList()[i]->IsRepeated(), i == 0);
        EXPECT_EQ(pTarget->GetEdgeList()[i]->IsRepeated(), i == 0);
    }
}

TEST_F(ElementManager, CopiesTheCornersOfEachFaceInTheirOrder)
{
    Load(SingleTriangle()); // so that ids are no places in the list
    DSSolid* pSource = Load(QuadCube());
    DSSolid* pTarget = m_Manager.CreateSolid();
    m_Manager.CopySolid(pSource, pTarget);
    for (std::size_t face = 0; face < 6; ++face)
    {
        const DSHalfEdge* pFrom = pSource->GetFaceList()[face]->GetLoopList()[0]->GetHalfEdge();
        const DSHalfEdge* pTo = pTarget->GetFaceList()[face]->GetLoopList()[0]->GetHalfEdge();
        for (int corner = 0; corner < 4; ++corner)
        {
            EXPECT_EQ(pFrom->GetVertex()->GetID() - 3, pTo->GetVertex()->GetID() - 3 - 8);
            pFrom = pFrom->GetNext();
            pTo = pTo->GetNext();
        }
    }
}

TEST_F(ElementManager, CopiesASolidWhoseListHasGapsInItsIDs)
{
    Load(QuadCube());
    IndexedMesh mesh;
    mesh.positions = {smVec3d(0, 0, 0), smVec3d(9, 9, 9), smVec3d(1, 0, 0), smVec3d(0, 1, 0)};
    mesh.AddFace({1, 3, 4});
    DSSolid* pSource = Load(mesh);
    DSVertex* pUnused = pSource->GetVertexList()[1];
    ASSERT_TRUE(pSource->GetVertexList().Remove(pUnused));
    m_Manager.DeleteVertex(pUnused);
    DSSolid* pTarget = m_Manager.CreateSolid();
    m_Manager.CopySolid(pSource, pTarget);
    EXPECT_TRUE(LinksHold(*pTarget));
    EXPECT_EQ(pTarget->GetVertexList()[1]->GetPosition().x, 1.0);
}

TEST_F(ElementManager, CopiesANullEntryAsAVertexAtTheOrigin)
{
    DSSolid* pSource = Load(SingleTriangle());
    pSource->GetVertexList().push_back(nullptr);
    DSSolid* pTarget = m_Manager.CreateSolid();
    m_Manager.CopySolid(pSource, pTarget);
    ASSERT_EQ(pTarget->GetVertexList().size(), 4U);
    ASSERT_NE(pTarget->GetVertexList()[3], nullptr);
    EXPECT_EQ(pTarget->GetVertexList()[3]->GetPosition().Length(), 0.0);
}

TEST_F(ElementManager, RefusesToCopyACornerWhoseVertexIsNotInTheList)
{
    DSSolid* pSource = Load(SingleTriangle());
    pSource->GetVertexList().Remove(pSource->GetVertexList()[1]);
    EXPECT_THROW(m_Manager.CopySolid(pSource, m_Manager.CreateSolid()), AssertionFailure);
}

TEST_F(ElementManager, RefusesToCopyIntoASolidThatIsNotEmpty)
{
    DSSolid* pSource = Load(SingleTriangle());
    EXPECT_THROW(m_Manager.CopySolid(pSource, pSource), AssertionFailure);
}

TEST_F(ElementManager, CopiesAnEmptySolid)
{
    DSSolid* pTarget = m_Manager.CreateSolid();
    m_Manager.CopySolid(m_Manager.CreateSolid(), pTarget);
    EXPECT_TRUE(pTarget->GetVertexList().empty());
}
}
