// The frames of the display modes: the view's against their literal form, pixel by pixel.
#include "Capture.h"
#include "FrameComparison.h"
#include <cmath>
#include <random>

namespace tessarine
{
namespace
{
using namespace DisplayFlag;

/// Closed and open meshes, faces of three to ten corners, in several solids and groups.
class ModesTest : public FrameComparison
{
protected:
    void ShowRound()
    {
        BuildAndShow(Placed(Sphere(3), 0.5, smVec3d(-0.8, 0.5, 0.1)));
        BuildAndShow(Placed(Torus(16, 9), 0.5, smVec3d(0.3, -0.4, 0.2)));
    }

    void ShowEdged()
    {
        MANSceneGroup* group = m_Scene.NewGroup();
        group->SetParent(m_Scene.GetRootGroup());
        m_Scene.GetRootGroup()->AddChild(group);
        ShowUnder(group, Build(Placed(QuadCube(), 0.6, smVec3d(0.4, 0.3, -0.9))));
        ShowUnder(group, Build(Placed(Prism(7), 0.4, smVec3d(0.9, -0.5, 0.7))));
        BuildAndShow(Placed(TriangleCube(), 0.3, smVec3d(-0.2, 0.9, 0.6)));
    }

    void ShowOpen()
    {
        const AssertionCapture assertions; // of the degenerate triangle
        BuildAndShow(Placed(OpenFan(9), 0.7, smVec3d(-1.0, -0.8, 0.9)));
        BuildAndShow(Placed(NotchedFaces(), 0.3, smVec3d(-0.9, -1.1, 0.4)));
        BuildAndShow(Placed(ThreeTrianglesOnOneEdge(), 0.5, smVec3d(-0.6, -0.4, -0.9)));
        BuildAndShow(Placed(DegenerateTriangle(), 0.5, smVec3d(0.0, 1.2, 0.0)));
    }

    void ShowAll()
    {
        ShowRound();
        ShowEdged();
        ShowOpen();
    }

    /// A material on every third and every seventh face of each leaf's solid, none on the others.
    void PaintFaces(DSMaterial* third, DSMaterial* seventh)
    {
        for (const auto& leaf : m_Scene.GetLeafList())
        {
            int number = 0;
            for (DSFace* face : leaf->GetSolid()->GetFaceList())
            {
                face->GetMaterial() = number % 3 == 0 ? third : number % 7 == 0 ? seventh : nullptr;
                ++number;
            }
        }
    }

    /// From all sides, from afar, and from so near that faces and edges are cut by the planes of the view.
    void ExpectSameFromEverywhere(std::uint32_t flags)
    {
        const struct
        {
            smVec3d eye;
            smVec3d target;
        } places[] = {{{2.2, 1.6, 2.8}, {0, 0, 0}},   {{-2.5, 1.0, -2.0}, {0, 0, 0}},
                      {{0.3, -3.0, 1.5}, {0, 0, 0}},  {{10, 4, 10}, {0, 0, 0}},
                      {{0.8, -0.4, 0.2}, {0, 0, 0}},  {{-0.8, 0.5, 0.7}, {-0.8, 0.5, 0.1}},
                      {{0, 0, 150}, {0.1, 0.1, 0.1}}, {{0.1, 0.05, 0}, {1, 0, 0}}};
        int drawnInAll = 0;
        for (const auto& place : places)
        {
            LookFrom(place.eye, place.target);
            int drawn = 0;
            EXPECT_TRUE(SameFrames(flags, drawn))
                << "seen from " << place.eye.x << ", " << place.eye.y << ", " << place.eye.z;
            drawnInAll += drawn;
        }
        EXPECT_GT(drawnInAll, 0) << "all frames of flags " << TellFlags(flags) << " are empty";
    }
};

TEST_F(ModesTest, DrawsTheWireFrame)
{
    ShowAll();
    ExpectSameFromEverywhere(Wire);
}

TEST_F(ModesTest, DrawsHighlightedEdgesInRed)
{
    ShowAll();
    int number = 0;
    for (DSEdge* edge : m_Scene.GetLeafList()[0]->GetSolid()->GetEdgeList())
    {
        edge->GetHighlight() = ++number % 4 == 0;
    }
    ExpectSameFromEverywhere(Wire);
}

TEST_F(ModesTest, DrawsBoundaryEdges)
{
    ShowAll();
    ExpectSameFromEverywhere(Wire | BoundaryEdges);
}

TEST_F(ModesTest, TakesTheEndsOfAnEdgeFromTheOtherHalfEdge)
{
    DSSolid* solid = BuildAndShow(OpenFan(5));
    for (DSEdge* edge : solid->GetEdgeList())
    {
        std::swap(edge->GetHalfEdge1(), edge->GetHalfEdge2()); // on the rim the first is null now
    }
    ExpectSameFromEverywhere(Wire | BoundaryEdges);
}

TEST_F(ModesTest, DrawsFlatShading)
{
    ShowAll();
    ExpectSameFromEverywhere(FlatShading);
}

TEST_F(ModesTest, DrawsSmoothShading)
{
    ShowAll();
    ExpectSameFromEverywhere(SmoothShading);
}

TEST_F(ModesTest, DrawsBothShadingsAtOnce)
{
    ShowAll();
    ExpectSameFromEverywhere(FlatShading | SmoothShading);
}

TEST_F(ModesTest, DrawsTheWireFrameOverTheFaces)
{
    ShowAll();
    ExpectSameFromEverywhere(Wire | FlatShading);
    ExpectSameFromEverywhere(Wire | SmoothShading);
}

TEST_F(ModesTest, DrawsPoints)
{
    ShowAll();
    ExpectSameFromEverywhere(Points);
    ExpectSameFromEverywhere(Points | Wire | FlatShading);
}

TEST_F(ModesTest, DrawsPointsWithoutANormalInRed)
{
    DSSolid* solid = BuildAndShow(Torus(12, 8));
    const double almost[] = {0.0, 9e-11, 1e-10, -9e-11, -1.1e-10};
    std::size_t number = 0;
    for (DSVertex* vertex : solid->GetVertexList())
    {
        if (number % 2 == 0)
        {
            vertex->GetNormal() = smVec3d(0.0, almost[number / 2 % 5], 0.0);
        }
        ++number;
    }
    ExpectSameFromEverywhere(Points);
}

TEST_F(ModesTest, DrawsPointsWhoseNormalIsNoNumberInWhite)
{
    // All faces at the corners are degenerate, and zero cannot be normalised.
    const AssertionCapture assertions;
    const DSSolid* solid = BuildAndShow(DegenerateTriangle());
    ASSERT_TRUE(std::isnan(solid->GetVertexList()[0]->GetNormal().x));
    EXPECT_TRUE(SameFrames(Points));
}

TEST_F(ModesTest, DrawsSelectedVerticesLarger)
{
    const DSSolid* solid = BuildAndShow(Torus(12, 8));
    for (std::size_t i = 0; i < solid->GetVertexList().size(); i += 5)
    {
        m_Elements.ToggleSelect(solid->GetVertexList()[i]->GetID());
    }
    ExpectSameFromEverywhere(Points);
    ExpectSameFromEverywhere(Points | Wire | SmoothShading);
}

TEST_F(ModesTest, DrawsAModelOfManyFaces)
{
    // Enough for buffers of any sensible size to be filled more than once.
    BuildAndShow(Torus(160, 100));
    EXPECT_TRUE(SameFrames(FlatShading));
    EXPECT_TRUE(SameFrames(SmoothShading | Wire));
    EXPECT_TRUE(SameFrames(Points));
}

TEST_F(ModesTest, SetsTheMaterialOfEachFace)
{
    ShowAll();
    PaintFaces(AddMaterial(smVec3f(0.9F, 0.2F, 0.1F)), AddMaterial(smVec3f(0.1F, 0.4F, 0.9F)));
    ExpectSameFromEverywhere(FlatShading);
    ExpectSameFromEverywhere(SmoothShading);
}

TEST_F(ModesTest, SetsEveryColourOfAMaterial)
{
    ShowAll();
    DSMaterial* shining = AddMaterial(smVec3f(0.2F, 0.2F, 0.2F));
    shining->m_Specular = smVec3f(1.0F, 0.9F, 0.2F);
    shining->m_fShininess = 3.0F;
    DSMaterial* glowing = AddMaterial(smVec3f(0.2F, 0.2F, 0.2F));
    glowing->m_Emission = smVec3f(0.1F, 0.4F, 0.2F);
    PaintFaces(shining, glowing);
    ExpectSameFromEverywhere(FlatShading);
    ExpectSameFromEverywhere(SmoothShading);
}

TEST_F(ModesTest, KeepsTheLastShininessThatTheLibraryTook)
{
    // One above 128 is refused, and the one before it stays.
    ShowRound();
    DSMaterial* refused = AddMaterial(smVec3f(0.5F, 0.2F, 0.2F));
    refused->m_fShininess = 500.0F;
    refused->m_Specular = smVec3f(1.0F, 1.0F, 1.0F);
    PaintFaces(AddMaterial(smVec3f(0.2F, 0.6F, 0.2F)), refused);
    for (DSFace* face : m_Scene.GetLeafList()[0]->GetSolid()->GetFaceList())
    {
        face->GetMaterial() = refused;
    }
    ExpectSameFromEverywhere(FlatShading);
    ExpectSameFromEverywhere(SmoothShading);
}

TEST_F(ModesTest, DrawsTransparentFacesInListOrder)
{
    ShowAll();
    PaintFaces(AddMaterial(smVec3f(0.9F, 0.2F, 0.1F), 0.4F), AddMaterial(smVec3f(0.1F, 0.4F, 0.9F), 0.7F));
    ExpectSameFromEverywhere(FlatShading | Blending);
    ExpectSameFromEverywhere(SmoothShading | Blending | Wire);
}

TEST_F(ModesTest, LetsTheLastOfSeveralFacesInOnePlaceWin)
{
    // The materials come and go, so that an order by material is not that of the list.
    DSMaterial* red = AddMaterial(smVec3f(1.0F, 0.0F, 0.0F));
    DSMaterial* blue = AddMaterial(smVec3f(0.0F, 0.0F, 1.0F));
    DSSolid* solid = BuildAndShow(Placed(StackedSquares(4), 2.0, smVec3d(-1, -1, 0)));
    DSMaterial* const materials[] = {red, blue, red, nullptr, blue};
    for (std::size_t first = 0; first < 2; ++first)
    {
        for (std::size_t i = 0; i < 4; ++i)
        {
            solid->GetFaceList()[i]->GetMaterial() = materials[first + i];
        }
        ExpectSameFromEverywhere(FlatShading);
        ExpectSameFromEverywhere(SmoothShading | Wire);
    }
}

TEST_F(ModesTest, DrawsSolidsInOnePlaceOneAfterTheOther)
{
    DSMaterial* red = AddMaterial(smVec3f(1.0F, 0.0F, 0.0F));
    const DSSolid* solid = BuildAndShow(QuadCube());
    solid->GetFaceList()[1]->GetMaterial() = red;
    DSSolid* second = BuildAndShow(QuadCube());
    second->SetMaterial(red);
    second->GetFaceList()[1]->GetMaterial() = nullptr;
    ExpectSameFromEverywhere(FlatShading);
    ExpectSameFromEverywhere(Wire | SmoothShading | Points);
}

TEST_F(ModesTest, DrawsPolygonsThatAreNotFlatAsTheyAre)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> shift(-0.25, 0.25);
    for (const int corners : {5, 8, 31})
    {
        IndexedMesh mesh = Prism(corners);
        for (smVec3d& position : mesh.positions)
        {
            position += smVec3d(shift(random), shift(random), shift(random));
        }
        BuildAndShow(Placed(mesh, 0.4, smVec3d(0.05 * corners - 1.0, 0.3, 0.0)));
    }
    ExpectSameFromEverywhere(FlatShading);
    ExpectSameFromEverywhere(SmoothShading);
    ExpectSameFromEverywhere(Texture);
}

TEST_F(ModesTest, DrawsGridAndAxes)
{
    for (const std::uint32_t flags : {DisplayFlag::Grid, Axes, DisplayFlag::Grid | Axes})
    {
        m_View.SetClearColor(smVec3f(0.2F, 0.3F, 0.4F)); // black lines show as well
        ExpectSameFromEverywhere(flags);
    }
    ShowAll();
    ExpectSameFromEverywhere(DisplayFlag::Grid | Axes | Wire | FlatShading);
}

TEST_F(ModesTest, SmoothsLinesOfTheNextFramesGridToo)
{
    // The grid is drawn before the switch is set: in the state that the last frame left.
    ShowAll();
    EXPECT_TRUE(SameFrames(DisplayFlag::Grid | Axes | Wire));
    EXPECT_TRUE(SameFrames(DisplayFlag::Grid | Axes | Wire | LineSmoothing | Blending));
    EXPECT_TRUE(SameFrames(DisplayFlag::Grid | Axes | Wire | LineSmoothing));
    EXPECT_TRUE(SameFrames(DisplayFlag::Grid | Axes | Wire));
    EXPECT_TRUE(SameFrames(DisplayFlag::Grid | Axes | Wire));
}

TEST_F(ModesTest, SmoothsPolygons)
{
    ShowAll();
    PaintFaces(AddMaterial(smVec3f(0.9F, 0.2F, 0.1F), 0.4F), nullptr);
    ExpectSameFromEverywhere(FlatShading | PolygonSmoothing);
    ExpectSameFromEverywhere(FlatShading | PolygonSmoothing | Blending);
    ExpectSameFromEverywhere(SmoothShading | Wire | PolygonSmoothing | LineSmoothing | Blending);
}

TEST_F(ModesTest, BlendsOnlyWithItsOwnSwitch)
{
    ShowAll();
    PaintFaces(AddMaterial(smVec3f(0.9F, 0.2F, 0.1F), 0.4F), nullptr);
    EXPECT_TRUE(SameFrames(FlatShading));
    EXPECT_TRUE(SameFrames(FlatShading | PolygonSmoothing | LineSmoothing));
    EXPECT_TRUE(SameFrames(FlatShading | Blending));
    EXPECT_TRUE(SameFrames(FlatShading));
}

TEST_F(ModesTest, HidesLeavesAndGroups)
{
    ShowAll();
    MANSceneGroup* group = m_Scene.GetGroupList()[1].get();
    for (const std::uint32_t flags : {Wire | FlatShading, Points | Wire, SmoothShading, Texture})
    {
        group->SetVisible(false);
        EXPECT_TRUE(SameFrames(flags));
        m_Scene.GetLeafList()[0]->SetVisible(false);
        EXPECT_TRUE(SameFrames(flags));
        group->SetVisible(true);
        EXPECT_TRUE(SameFrames(flags));
        m_Scene.GetLeafList()[0]->SetVisible(true);
        EXPECT_TRUE(SameFrames(flags));
    }
}

TEST_F(ModesTest, DrawsTheWireFrameOfAHiddenSolid)
{
    DSSolid* hidden = BuildAndShow(Sphere(2));
    BuildAndShow(Placed(QuadCube(), 0.8, smVec3d(0.5, 0.5, 0.5)));
    hidden->SetVisible(false);
    for (const std::uint32_t flags :
         {Wire | FlatShading, Wire | SmoothShading | Points, Wire | Texture, Points, FlatShading})
    {
        EXPECT_TRUE(SameFrames(flags));
    }
}

TEST_F(ModesTest, HidesEverythingUnderAHiddenRoot)
{
    ShowAll();
    m_Scene.GetRootGroup()->SetVisible(false);
    EXPECT_TRUE(SamePictures(DrawByView(Wire | FlatShading), DrawLiterally(Wire | FlatShading)));
    EXPECT_EQ(CountDrawnPixels(DrawByView(Wire | FlatShading)), 0);
}

TEST_F(ModesTest, DrawsAnEmptySceneInTheClearColour)
{
    m_View.SetClearColor(smVec3f(0.25F, 0.5F, 0.75F));
    const Picture picture = DrawByView(Wire | FlatShading);
    EXPECT_TRUE(SamePictures(picture, DrawLiterally(Wire | FlatShading)));
    EXPECT_EQ(CountDrawnPixels(picture), 0);
    EXPECT_EQ(picture.bytes[0], 64); // a quarter of 255, to the nearest
    EXPECT_EQ(picture.bytes[2], 191);
}

TEST_F(ModesTest, DrawsNothingOfASolidWithoutAMode)
{
    ShowAll();
    EXPECT_EQ(CountDrawnPixels(DrawByView(0)), 0);
    EXPECT_EQ(CountDrawnPixels(DrawLiterally(0)), 0);
}

TEST_F(ModesTest, SendsTheColoursThatALightSwitchesOn)
{
    ShowAll();
    EXPECT_TRUE(SameFrames(FlatShading));
    Open3DLight* light = m_Scene.GetLight("Aid Light");
    light->m_bAmbient = true;
    light->m_Ambient = smVec3f(0.3F, 0.1F, 0.0F);
    EXPECT_TRUE(SameFrames(FlatShading));
    light->m_bSpecular = true;
    light->m_Specular = smVec3f(0.0F, 0.6F, 0.9F);
    EXPECT_TRUE(SameFrames(SmoothShading));
    light->m_bAmbient = false; // what was sent stays
    light->m_bDiffuse = false;
    light->m_Diffuse = smVec3f(1.0F, 1.0F, 1.0F);
    light->m_Position = smVec4f(0.5F, 0.2F, 0.9F, 1.0F);
    EXPECT_TRUE(SameFrames(SmoothShading));
}

TEST_F(ModesTest, LeavesARemovedLightOn)
{
    ShowAll();
    EXPECT_TRUE(SameFrames(FlatShading));
    m_Scene.DeleteLight("Main Light");
    EXPECT_TRUE(SameFrames(FlatShading));
    LookFrom(smVec3d(-2.5, 1.0, -2.0)); // the light that was removed keeps its place before the eye
    EXPECT_TRUE(SameFrames(FlatShading));
}

TEST_F(ModesTest, DrawsWithMoreLightsThanThereAre)
{
    ShowAll();
    for (int i = 0; i < 9; ++i)
    {
        Open3DLight* light = m_Scene.NewLight();
        light->m_bAmbient = true;
        light->m_bSpecular = true;
        light->m_Diffuse = smVec3f(0.1F, 0.02F * static_cast<float>(i), 0.05F);
        light->m_Specular = smVec3f(0.05F, 0.1F, 0.02F * static_cast<float>(i));
        light->m_Position = smVec4f(static_cast<float>(i) - 4.0F, 1.0F, 2.0F, i % 2 == 0 ? 0.0F : 1.0F);
    }
    ExpectSameFromEverywhere(SmoothShading);
    ExpectSameFromEverywhere(Texture);
}

TEST_F(ModesTest, FollowsTheCamera)
{
    ShowAll();
    m_View.GetCamera()->SetFovy(70.0F);
    m_View.GetCamera()->SetNear(2.5F);
    m_View.GetCamera()->SetFar(4.0F);
    ExpectSameFromEverywhere(Wire | FlatShading | DisplayFlag::Grid);
}

TEST_F(ModesTest, SeesOneBitOfDifference)
{
    // What is compared here can fail: each of these switches shows.
    ShowAll();
    const std::uint32_t flags = Wire | FlatShading;
    const Picture picture = DrawByView(flags);
    for (const std::uint32_t bit :
         {DisplayFlag::Grid, Axes, Wire, FlatShading, BoundaryEdges, LineSmoothing, Points, SmoothShading})
    {
        // Twice: the smoothing of lines is seen where blending is on as well.
        const std::uint32_t other = (flags ^ bit) | (bit == LineSmoothing ? Blending : 0);
        const testing::AssertionResult result = SamePictures(picture, DrawLiterally(other));
        EXPECT_FALSE(result) << TellFlags(bit);
    }
}

TEST_F(ModesTest, TellsWhereAFrameDiffers)
{
    const Picture before{3, 2, std::vector<std::uint8_t>(24, 7)};
    Picture after = before;
    after.bytes[4] = 8;                 // column 1 of row 0
    after.bytes[4 * (3 + 2) + 2] = 255; // column 2 of row 1
    EXPECT_TRUE(SamePictures(before, before));
    EXPECT_STREQ(SamePictures(after, before).message(),
                 "2 of 6 pixels differ, in columns 1 to 2 and rows 0 to 1 from the bottom; "
                 "(1, 0) is (8, 7, 7), not (7, 7, 7)");
}
}
}
