#include "Capture.h"
#include "ViewTest.h"
#include <GL/gl.h>
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kFlat = DisplayFlag::FlatShading;
constexpr std::uint32_t kSmooth = DisplayFlag::SmoothShading;
constexpr std::uint32_t kWire = DisplayFlag::Wire;
constexpr std::uint32_t kPoints = DisplayFlag::Points;

/// Turns the normals of all vertices of a solid into this one.
void SetVertexNormals(DSSolid& solid, const smVec3d& normal)
{
    for (DSVertex* pVertex : solid.GetVertexList())
    {
        pVertex->GetNormal() = normal;
    }
}

void SetDiffuse(DSMaterial& material, const smVec3f& color)
{
    material.m_Ambient = smVec3f();
    material.m_Specular = smVec3f();
    material.m_Diffuse = color;
}

/// No light but this white one, which shines along the view.
void LightFromTheEye(MANSceneManager& scene)
{
    for (const char* name : {"Aid Light", "Bot Light"})
    {
        scene.DeleteLight(name);
    }
    Open3DLight& light = *scene.GetLightList().front();
    light.m_Diffuse = smVec3f(1.0F, 1.0F, 1.0F);
    light.m_Position = smVec4f(0.0F, 0.0F, 1.0F, 0.0F);
}

// ---- what stands in the empty scene

TEST_F(DrawnViewTest, IsBlackInTheBeginning)
{
    EXPECT_EQ(CountLit(Draw(0xC)), 0);
}

TEST_F(DrawnViewTest, HasTheColourOfItsBackground)
{
    m_View.SetClearColor(smVec3f(0.2F, 0.4F, 1.0F));
    EXPECT_EQ(Count(Draw(0xC), Rgb{51, 102, 255}), kWidth * kHeight);
}

TEST_F(DrawnViewTest, DrawsAxesInRedGreenAndBlue)
{
    m_View.GetCamera()->SetLookAt(smVec3d(8.0, 8.0, 8.0), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 1.0, 0.0));
    const Image picture = Draw(DisplayFlag::Axes);
    const int red = Count(picture, kRed);
    EXPECT_GT(red, 15);
    EXPECT_GT(Count(picture, kGreen), 15);
    EXPECT_GT(Count(picture, kBlue), 15);
    EXPECT_EQ(red + Count(picture, kGreen) + Count(picture, kBlue), CountLit(picture));
}

TEST_F(DrawnViewTest, EndsEachAxisInAnArrowHead)
{
    // From close by: a head reaches from 4.9 to 5, and 0.04 around the axis.
    m_View.GetCamera()->SetLookAt(smVec3d(4.95, 0.0, 0.5), smVec3d(4.95, 0.0, 0.0), smVec3d(0.0, 1.0, 0.0));
    const Image picture = Draw(DisplayFlag::Axes);
    // The ring is seen from its side: an upright line of 0.08 at 4.9, so 0.05 left of the centre.
    // A unit is 90 / (2 * 0.5 * tan 22.5) = 217 pixels.
    const int ring = kWidth / 2 - 11;
    EXPECT_EQ(GetPixel(picture, ring, kHeight / 2 + 7), kRed);
    EXPECT_EQ(GetPixel(picture, ring, kHeight / 2 - 7), kRed);
    EXPECT_EQ(GetPixel(picture, ring + 5, kHeight / 2 + 7), kBlack);
}

TEST_F(DrawnViewTest, DrawsAGridWithEveryTenthLineBlack)
{
    m_View.SetClearColor(smVec3f(1.0F, 1.0F, 1.0F));
    // Straight down on line 9, which lies at 9 * 0.5 - 15.75 = -11.25, and its neighbours at -11.75, -10.75.
    m_View.GetCamera()->SetLookAt(smVec3d(-11.25, 2.0, -11.5), smVec3d(-11.25, 0.0, -11.5),
                                  smVec3d(0.0, 0.0, -1.0));
    const Image picture = Draw(DisplayFlag::Grid);
    int black = 0;
    int grey = 0;
    for (int x = 0; x < kWidth; ++x)
    {
        black += GetPixel(picture, x, kHeight / 2) == kBlack ? 1 : 0;
        grey += IsNear(GetPixel(picture, x, kHeight / 2), Rgb{77, 77, 77}) ? 1 : 0; // 0.3
    }
    EXPECT_EQ(black, 1);
    // 120 pixels are 120 / 54.3 = 2.2 units: lines at -11.75, -10.75, and at -12.25, -10.25 on the rim.
    EXPECT_EQ(grey, 4);
}

// ---- lights

TEST_F(DrawnViewTest, LightsAFaceByTheDefaultLights)
{
    ShowSquare();
    // The scene's own ambient light is 0.2; the main light meets the normal (0, 0, 1) at the cosine 0.61237 with
    // the diffuse colour 0.7; the half vector (0.61237, 0.5, 1.61237) gives the cosine 0.898, to the 40th
    // 0.0135, of the specular colour 0.75. 0.2 + 0.4287 + 0.0101 = 0.6388 = 163 / 255.
    const Rgb centre = GetCentre(Draw(kFlat));
    EXPECT_THAT(centre, Each(testing::AllOf(testing::Ge(162), testing::Le(164))));
}

TEST_F(DrawnViewTest, HoldsTheLightsInPlaceWhenTheCameraMoves)
{
    LightFromTheEye(m_Scene);
    ShowSquare();
    const Rgb before = GetCentre(Draw(kFlat));
    // From the side the light still falls straight on the square; no highlight moves either.
    m_Elements.GetMaterialManager().GetDefaultMaterial().m_Specular = smVec3f();
    m_View.GetCamera()->SetLookAt(smVec3d(4.0, 0.0, 3.0), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 1.0, 0.0));
    EXPECT_EQ(before, kWhite);
    EXPECT_EQ(GetCentre(Draw(kFlat)), kWhite);
}

TEST_F(DrawnViewTest, KeepsARemovedLightOnWithItsLastValues)
{
    ShowSquare();
    const Image before = Draw(kFlat);
    m_Scene.DeleteLight("Bot Light");
    m_Scene.DeleteLight("Aid Light");
    m_Scene.DeleteLight("Main Light");
    EXPECT_THAT(m_Scene.GetLightList(), IsEmpty());
    EXPECT_EQ(Draw(kFlat).pixels, before.pixels);
}

TEST_F(DrawnViewTest, SaysTheColoursThatItSendsForEachFrame)
{
    ConsoleCapture console;
    m_View.Redraw();
    EXPECT_THAT(console.GetLines(), IsEmpty());
    Open3DLight& light = *m_Scene.GetLightList().front();
    light.m_bAmbient = true;
    light.m_Ambient = smVec3f(0.1F, 0.2F, 0.3F);
    light.m_bSpecular = true;
    m_View.Redraw();
    m_View.Redraw();
    EXPECT_THAT(console.GetLines(), ElementsAre("Ambient:(0.1,0.2,0.3)", "Specular:(0,0,0)",
                                                "Ambient:(0.1,0.2,0.3)", "Specular:(0,0,0)"));
}

TEST_F(DrawnViewTest, DrawsWithMoreLightsThanThereAre)
{
    ShowSquare();
    const Image before = Draw(kFlat);
    for (int i = 0; i < 20; ++i)
    {
        m_Scene.NewLight()->m_Position = smVec4f(0.0F, 0.0F, -1.0F, 0.0F); // none shines on the square
    }
    EXPECT_EQ(Draw(kFlat).pixels, before.pixels);
}

// ---- surfaces

TEST_F(DrawnViewTest, DrawsAPolygonWhole)
{
    LightFromTheEye(m_Scene);
    ShowSquare();
    const Image picture = Draw(kFlat);
    EXPECT_EQ(Count(picture, kWhite), 44 * 44); // 2 * 21.7 pixels a side, by the centres that lie inside
}

TEST_F(DrawnViewTest, ShowsFrontFacesOnly)
{
    ShowSquare();
    m_View.GetCamera()->SetLookAt(smVec3d(0.0, 0.0, -5.0), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 1.0, 0.0));
    EXPECT_EQ(CountLit(Draw(kFlat)), 0);
}

TEST_F(DrawnViewTest, LightsByFaceNormalsOrByVertexNormals)
{
    LightFromTheEye(m_Scene);
    DSSolid* solid = ShowSquare();
    SetVertexNormals(*solid, smVec3d(0.0, 1.0, 0.0)); // the light only grazes these
    EXPECT_EQ(GetCentre(Draw(kFlat)), kWhite);
    EXPECT_NE(GetCentre(Draw(kSmooth)), kWhite);
    EXPECT_EQ(Draw(kFlat | kSmooth).pixels, Draw(kSmooth).pixels); // the corners' own come last
}

TEST_F(DrawnViewTest, ShowsNoSurfaceWithoutAShading)
{
    ShowSquare();
    EXPECT_EQ(CountLit(Draw(0)), 0);
}

TEST_F(DrawnViewTest, AppliesTheMaterialsOfFacesAndTheDefaultWhereThereIsNone)
{
    LightFromTheEye(m_Scene);
    SetDiffuse(m_Elements.GetMaterialManager().GetDefaultMaterial(), smVec3f(0.0F, 1.0F, 0.0F));
    DSMaterial* pBlue = m_Elements.GetMaterialManager().NewMaterial();
    SetDiffuse(*pBlue, smVec3f(0.0F, 0.0F, 1.0F));
    IndexedMesh mesh;
    for (const double x : {-1.5, 0.0, 1.5})
    {
        mesh.positions.insert(mesh.positions.end(), {smVec3d(x - 0.5, -0.5, 0.0), smVec3d(x + 0.5, -0.5, 0.0),
                                                     smVec3d(x, 0.5, 0.0)});
    }
    mesh.AddFace({1, 2, 3});
    mesh.AddFace({4, 5, 6});
    mesh.AddFace({7, 8, 9});
    DSSolid* solid = Build(mesh);
    solid->CalcNormals();
    Show(solid);
    solid->GetFaceList()[0]->GetMaterial() = nullptr;
    solid->GetFaceList()[1]->GetMaterial() = pBlue;
    solid->GetFaceList()[2]->GetMaterial() = nullptr; // the default, and not that of the face before

    const Image picture = Draw(kFlat);
    EXPECT_EQ(GetPixel(picture, kWidth / 2 - 33, kHeight / 2), kGreen); // 1.5 units
    EXPECT_EQ(GetCentre(picture), kBlue);
    EXPECT_EQ(GetPixel(picture, kWidth / 2 + 33, kHeight / 2), kGreen);
}

TEST_F(DrawnViewTest, LetsTheLastOfSeveralFacesAtOnePlaceWin)
{
    LightFromTheEye(m_Scene);
    DSMaterial* pRed = m_Elements.GetMaterialManager().NewMaterial();
    SetDiffuse(*pRed, smVec3f(1.0F, 0.0F, 0.0F));
    DSMaterial* pBlue = m_Elements.GetMaterialManager().NewMaterial();
    SetDiffuse(*pBlue, smVec3f(0.0F, 0.0F, 1.0F));
    IndexedMesh mesh;
    mesh.positions = {smVec3d(-1.0, -1.0, 0.0), smVec3d(1.0, -1.0, 0.0), smVec3d(0.0, 1.0, 0.0)};
    for (int i = 0; i < 3; ++i)
    {
        mesh.AddFace({1, 2, 3});
    }
    DSSolid* solid = Build(mesh);
    for (DSFace* pFace : solid->GetFaceList())
    {
        pFace->CalcNormal();
        pFace->GetMaterial() = pBlue;
    }
    Show(solid);
    solid->GetFaceList()[1]->GetMaterial() = pRed;
    EXPECT_EQ(GetCentre(Draw(kFlat)), kBlue);
    solid->GetFaceList()[2]->GetMaterial() = pRed;
    EXPECT_EQ(GetCentre(Draw(kFlat)), kRed);
}

TEST_F(DrawnViewTest, DrawsNothingForFacesOfLessThanThreeCorners)
{
    IndexedMesh mesh;
    mesh.positions = {smVec3d(-1.0, 0.0, 0.0), smVec3d(1.0, 0.0, 0.0)};
    mesh.AddFace({1, 2});
    DSSolid* solid = Build(mesh);
    m_Elements.CreateFace()->GetSolid() = solid; // one without any
    solid->GetFaceList().push_back(m_Elements.GetFace(0xC0000001));
    Show(solid);
    EXPECT_EQ(CountLit(Draw(kFlat)), 0);
    EXPECT_EQ(CountLit(Draw(kSmooth)), 0);
}

// ---- edges

TEST_F(DrawnViewTest, DrawsEdgesOverTheirFaces)
{
    // The faces step back by their slope, so they are looked at from the side.
    m_View.GetCamera()->SetLookAt(smVec3d(3.0, 0.5, 4.0), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 1.0, 0.0));
    ShowSquare();
    const int edges = Count(Draw(kWire), kEdge);
    EXPECT_GT(edges, 140);
    const Image picture = Draw(kWire | kFlat);
    EXPECT_GT(Count(picture, kEdge), edges * 9 / 10);
    EXPECT_FALSE(IsNear(GetCentre(picture), kEdge));
    EXPECT_GT(CountLit(picture), 1000);
}

TEST_F(DrawnViewTest, DrawsHighlightedEdgesRed)
{
    DSSolid* solid = ShowSquare();
    solid->GetEdgeList()[1]->GetHighlight() = true;
    const Image picture = Draw(kWire);
    EXPECT_GT(Count(picture, kRed), 40);
    EXPECT_GT(Count(picture, kEdge), 120);
}

TEST_F(DrawnViewTest, FindsTheEndsOfAnEdgeThatHasOnlyItsSecondHalfEdge)
{
    DSSolid* solid = ShowSquare();
    const Image before = Draw(kWire);
    for (DSEdge* pEdge : solid->GetEdgeList())
    {
        std::swap(pEdge->GetHalfEdge1(), pEdge->GetHalfEdge2());
    }
    // Each line runs the other way, and may end a pixel earlier.
    EXPECT_NEAR(Count(Draw(kWire), kEdge), Count(before, kEdge), 4);
}

TEST_F(DrawnViewTest, PassesOverAnEdgeWithoutHalfEdges)
{
    DSSolid* solid = ShowSquare();
    solid->GetEdgeList().push_back(m_Elements.CreateEdge());
    m_View.GetHoverList() = {solid->GetEdgeList().back()->GetID()};
    EXPECT_GT(Count(Draw(kWire), kEdge), 160);
}

TEST_F(DrawnViewTest, DrawsBoundaryEdgesBroadAndBright)
{
    const Rgb bright{51, 255, 51}; // (0.2, 1, 0.2)
    DSSolid* solid = ShowSquare();
    EXPECT_EQ(Count(Draw(kWire | DisplayFlag::BoundaryEdges), bright), 0); // nobody has looked for them
    const ConsoleCapture console;
    solid->CheckTopology();
    const Image picture = Draw(kWire | DisplayFlag::BoundaryEdges);
    EXPECT_GT(Count(picture, bright), 2 * 4 * 40);
    EXPECT_EQ(Count(Draw(DisplayFlag::BoundaryEdges), bright), 0); // they are part of the wire frame
}

// ---- points

TEST_F(DrawnViewTest, DrawsPointsWithoutANormalRed)
{
    DSSolid* solid = ShowSquare();
    EXPECT_EQ(Count(Draw(kPoints), kWhite), 4);
    solid->GetVertexList()[0]->GetNormal() = smVec3d(0.0, 0.0, 0.0);
    solid->GetVertexList()[2]->GetNormal() = smVec3d(0.0, -9e-11, 0.0);
    solid->GetVertexList()[3]->GetNormal() = smVec3d(0.0, 0.0, 1e-10); // just too long for none
    const Image picture = Draw(kPoints);
    EXPECT_EQ(Count(picture, kRed), 2);
    EXPECT_EQ(Count(picture, kWhite), 2);
}

TEST_F(DrawnViewTest, DrawsSelectedPointsLarge)
{
    DSSolid* solid = ShowSquare();
    solid->GetVertexList()[1]->SetSelected(true);
    const Image picture = Draw(kPoints);
    EXPECT_EQ(Count(picture, Rgb{128, 255, 51}), 16); // (0.5, 1, 0.2), four by four
    EXPECT_EQ(Count(picture, kWhite), 3);
}

TEST_F(DrawnViewTest, SkipsNullEntriesAmongThePoints)
{
    DSSolid* solid = ShowSquare();
    solid->GetVertexList().push_back(nullptr);
    EXPECT_EQ(Count(Draw(kPoints), kWhite), 4);
}

// ---- the tree

TEST_F(DrawnViewTest, DrawsTheWireOfAnInvisibleSolidAndNothingElseOfIt)
{
    DSSolid* solid = ShowSquare();
    solid->SetVisible(false);
    const Image wire = Draw(kWire | kFlat | kPoints);
    EXPECT_EQ(Count(wire, kEdge), CountLit(wire));
    EXPECT_GT(CountLit(wire), 100);
    EXPECT_EQ(CountLit(Draw(kSmooth | kPoints)), 0);
    EXPECT_EQ(CountLit(Draw(DisplayFlag::Texture)), 0);
}

TEST_F(DrawnViewTest, DrawsNothingBelowAnInvisibleNode)
{
    ShowSquare();
    MANSceneNode* leaf = m_Scene.GetRootGroup()->GetChildren().front();
    leaf->SetVisible(false);
    EXPECT_EQ(CountLit(Draw(0xC)), 0);
    leaf->SetVisible(true);
    m_Scene.GetRootGroup()->SetVisible(false);
    EXPECT_EQ(CountLit(Draw(0xC)), 0);
}

TEST_F(DrawnViewTest, DrawsTheLeavesOfGroups)
{
    ShowSquare();
    MANSceneGroup* root = m_Scene.GetRootGroup();
    MANSceneNode* leaf = root->GetChildren().front();
    MANSceneGroup* group = m_Scene.NewGroup();
    root->RemoveChild(leaf);
    root->AddChild(group);
    group->AddChild(leaf);
    EXPECT_GT(CountLit(Draw(0xC)), 1000);
    group->SetVisible(false);
    EXPECT_EQ(CountLit(Draw(0xC)), 0);
}

TEST_F(DrawnViewTest, PassesOverALeafWithoutASolid)
{
    Show(nullptr);
    EXPECT_EQ(CountLit(Draw(0xC)), 0);
}

// ---- switches that no menu sets

TEST_F(DrawnViewTest, BlendsOnlyWithTheSwitchOfBlending)
{
    DSMaterial& material = m_Elements.GetMaterialManager().GetDefaultMaterial();
    material.m_fTransparency = 0.5F;
    ShowSquare();
    const Rgb opaque = GetCentre(Draw(kFlat));
    EXPECT_EQ(GetCentre(Draw(kFlat | DisplayFlag::PolygonSmoothing | DisplayFlag::LineSmoothing)), opaque);
    const Rgb blended = GetCentre(Draw(kFlat | DisplayFlag::Blending));
    EXPECT_NEAR(blended[0], opaque[0] / 2.0, 1.0); // half of it is the black behind
}

TEST_F(DrawnViewTest, LeavesNoErrorInGL)
{
    ShowSquare();
    m_View.GetHoverList() = {0, 0x80000000, 0xC0000000, 0xE0000000};
    Draw(0xFFFFFFFF & ~(DisplayFlag::Texture | DisplayFlag::Octree));
    ASSERT_EQ(m_View.BeginContext(), 0);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    m_View.EndContext();
}
}
}
