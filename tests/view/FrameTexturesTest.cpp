// Frames in texture mode: the view's against their literal form, pixel by pixel.
#include "Capture.h"
#include "FrameComparison.h"
#include <string>

namespace tessarine
{
namespace
{
using namespace DisplayFlag;

class TexturesTest : public FrameComparison
{
protected:
    TexturesTest() { LookFrom(smVec3d(0.9, 0.8, 1.6), smVec3d(0.5, 0.5, 0.0)); }

    /// Bytes that differ from pixel to pixel and from component to component.
    static std::vector<std::uint8_t> MakeBytes(std::size_t count)
    {
        std::vector<std::uint8_t> bytes(count);
        for (std::size_t i = 0; i < count; ++i)
        {
            bytes[i] = static_cast<std::uint8_t>((i * 73 + i / 7 * 11) % 256);
        }
        return bytes;
    }

    DSMaterial* AddPattern(int width, int height, int components)
    {
        return AddTexturedMaterial(
            width, height, components,
            MakeBytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                      static_cast<std::size_t>(components)));
    }

    DSSolid* ShowSquare(DSMaterial* material, const smVec2f& low = {0, 0}, const smVec2f& high = {1, 1})
    {
        DSSolid* solid = BuildTexturedSquare(low, high);
        solid->SetMaterial(material);
        return Show(solid)->GetSolid();
    }

    void ExpectSameNearAndFar(std::uint32_t flags)
    {
        for (const smVec3d& eye : {smVec3d(0.9, 0.8, 1.6), smVec3d(0.4, 0.5, 0.2), smVec3d(3, 4, 12)})
        {
            LookFrom(eye, smVec3d(0.5, 0.5, 0.0));
            EXPECT_TRUE(SameFrames(flags));
        }
    }
};

TEST_F(TexturesTest, DrawsATexture)
{
    ShowSquare(AddPattern(64, 32, 3));
    ExpectSameNearAndFar(Texture);
    ExpectSameNearAndFar(Texture | Wire | Points);
}

TEST_F(TexturesTest, RepeatsATextureBeyondItsEdges)
{
    ShowSquare(AddPattern(16, 16, 3), {-1.5F, -0.5F}, {2.5F, 3.0F});
    ExpectSameNearAndFar(Texture);
}

TEST_F(TexturesTest, ConvertsWhatHasOtherThanThreeComponents)
{
    for (const int components : {1, 2, 4})
    {
        DSSolid* square = ShowSquare(AddPattern(32, 16, components));
        ExpectSameNearAndFar(Texture);
        square->SetVisible(false);
    }
}

TEST_F(TexturesTest, DrawsAPixmapOfAnySize)
{
    // Rows of 15 bytes: an upload takes them for rows of 16, and nothing is read behind the last one.
    const std::size_t count = std::size_t{5} * 7 * 3;
    const auto bytes = MakeBytes(count);
    DSMaterial* material = AddTexturedMaterial(0, 0, 0, {});
    material->m_pTexture->m_pTexture->DecodePPM("odd.ppm",
                                                "P6\n5 7\n255\n" + std::string(bytes.begin(), bytes.end()));
    ASSERT_EQ(material->m_pTexture->m_pTexture->GetWidth(), 5);
    ShowSquare(material);
    ExpectSameNearAndFar(Texture);
}

TEST_F(TexturesTest, DrawsWithoutATextureThatHasNoImage)
{
    ShowSquare(AddTexturedMaterial(0, 0, 0, {}));
    ExpectSameNearAndFar(Texture);
    DSMaterial* bare = AddPattern(16, 16, 3);
    bare->m_pTexture->m_pTexture = nullptr; // a binding to nothing
    BuildAndShow(Placed(QuadCube(), 0.5, smVec3d(0.2, 0.2, -0.1)))->SetMaterial(bare);
    ExpectSameNearAndFar(Texture);
}

TEST_F(TexturesTest, DrawsTexturedAndPlainFacesSideBySide)
{
    DSMaterial* one = AddPattern(32, 32, 3);
    DSMaterial* two = AddPattern(16, 64, 3);
    DSMaterial* plain = AddMaterial(smVec3f(0.9F, 0.2F, 0.1F));
    ShowSquare(one);
    DSSolid* cube = BuildAndShow(Placed(QuadCube(), 0.5, smVec3d(0.2, 0.2, -0.1)));
    DSMaterial* const materials[] = {one, two, nullptr, plain, two, one};
    for (std::size_t i = 0; i < 6; ++i)
    {
        cube->GetFaceList()[i]->GetMaterial() = materials[i];
    }
    BuildAndShow(Placed(Torus(16, 9), 0.3, smVec3d(0.5, 0.4, 0.1)));
    ExpectSameNearAndFar(Texture);
}

TEST_F(TexturesTest, LetsTheLastOfSeveralTexturesInOnePlaceWin)
{
    DSMaterial* one = AddPattern(32, 32, 3);
    DSMaterial* two = AddPattern(16, 64, 3);
    for (DSMaterial* material : {one, two, one})
    {
        ShowSquare(material);
        ExpectSameNearAndFar(Texture);
    }
}

TEST_F(TexturesTest, TakesTheMaterialThatTheLastFrameLeft)
{
    DSMaterial* glowing = AddPattern(32, 32, 3);
    glowing->m_Emission = smVec3f(0.1F, 0.4F, 0.2F);
    ShowSquare(glowing);
    EXPECT_TRUE(SameFrames(Texture)); // the library's own material
    EXPECT_TRUE(SameFrames(FlatShading));
    EXPECT_TRUE(SameFrames(Texture));                 // glows
    EXPECT_TRUE(SameFrames(SmoothShading | Texture)); // shading goes first
    EXPECT_TRUE(SameFrames(Texture | Wire));
}

TEST_F(TexturesTest, FindsTheStateThatAnUnseenFrameLeft)
{
    // The material that the library holds is that of the last face, drawn for somebody or not.
    DSMaterial* glowing = AddPattern(32, 32, 3);
    glowing->m_Emission = smVec3f(0.1F, 0.4F, 0.2F);
    ShowSquare(glowing);
    m_Scene.GetLight("Aid Light")->m_bAmbient = true;
    m_Scene.GetLight("Aid Light")->m_Ambient = smVec3f(0.3F, 0.1F, 0.0F);
    GetTestPlatform().SetWatched(false);
    DrawByView(FlatShading | LineSmoothing | DisplayFlag::Grid);
    GetTestPlatform().SetWatched(true);
    DrawLiterally(FlatShading | LineSmoothing | DisplayFlag::Grid);
    m_Scene.GetLight("Aid Light")->m_bAmbient = false;
    EXPECT_TRUE(SameFrames(Texture | DisplayFlag::Grid | Blending));
}

TEST_F(TexturesTest, FindsTheShininessThatAnUnseenFrameLeft)
{
    // The last face's is refused, so that of the faces before it stays.
    DSMaterial* dull = AddPattern(32, 32, 3);
    dull->m_Specular = smVec3f(1.0F, 1.0F, 1.0F);
    dull->m_fShininess = 2.0F;
    DSMaterial* refused = AddPattern(32, 32, 3);
    refused->m_Specular = smVec3f(0.9F, 0.9F, 0.9F);
    refused->m_fShininess = 250.0F;
    ShowSquare(refused);
    DSSolid* sphere = BuildAndShow(Placed(Sphere(2), 0.4, smVec3d(0.5, 0.5, 0.0)));
    sphere->SetMaterial(refused);
    sphere->GetFaceList()[5]->GetMaterial() = dull;
    m_Scene.GetLight("Main Light")->m_bSpecular = true;
    m_Scene.GetLight("Main Light")->m_Specular = smVec3f(1.0F, 1.0F, 1.0F);
    GetTestPlatform().SetWatched(false);
    DrawByView(FlatShading);
    GetTestPlatform().SetWatched(true);
    DrawLiterally(FlatShading);
    EXPECT_TRUE(SameFrames(Texture));
}

TEST_F(TexturesTest, SeesThePixelsOfATexture)
{
    // What is compared here can fail: one other byte in the image shows.
    auto bytes = MakeBytes(std::size_t{16} * 16 * 3);
    DSMaterial* material = AddTexturedMaterial(16, 16, 3, bytes);
    ShowSquare(material);
    const Picture picture = DrawByView(Texture);
    bytes[std::size_t{8 * 16 + 8} * 3] ^= 0x80U;
    material->m_pTexture->m_pTexture->SetImage(16, 16, 3, bytes);
    EXPECT_FALSE(SamePictures(picture, DrawLiterally(Texture)));
    EXPECT_TRUE(SameFrames(Texture)); // the view shows the image as it is now
}
}
}
