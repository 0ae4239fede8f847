#include "Capture.h"
#include "ViewTest.h"
#include <GL/gl.h>
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;

/// The square with a texture over the whole of it, lit so that the texture's own colours show.
class TextureTest : public DrawnViewTest
{
protected:
    void SetUp() override
    {
        DrawnViewTest::SetUp();
        for (const auto& pLight : m_Scene.GetLightList())
        {
            pLight->m_Position =
                smVec4f(0.0F, 0.0F, 1.0F, 0.0F); // with GL's own material: 0.04 + 3 * 0.7 * 0.8
        }
        m_pSolid = ShowSquare();
        MANMaterialManager& materials = m_Elements.GetMaterialManager();
        m_pTexture = materials.NewTexture();
        m_pBinding = materials.NewImage();
        m_pBinding->m_pTexture = m_pTexture;
        DSMaterial* material = materials.NewMaterial();
        material->m_pTexture = m_pBinding;
        m_pSolid->SetMaterial(material);
        // From the lower left corner around, as the square's corners stand.
        const smVec2f corners[] = {{0.0F, 0.0F}, {1.0F, 0.0F}, {1.0F, 1.0F}, {0.0F, 1.0F}};
        DSHalfEdge* pHalfEdge = m_pSolid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge();
        for (const smVec2f& corner : corners)
        {
            pHalfEdge->GetTexCoord() = corner;
            pHalfEdge = pHalfEdge->GetNext();
        }
    }

    Image DrawTexture()
    {
        const ConsoleCapture console;
        return Draw(DisplayFlag::Texture);
    }

    /// The middle of a quarter of the square.
    Rgb GetQuarter(const Image& picture, int right, int up) const
    {
        return GetPixel(picture, kWidth / 2 + (right != 0 ? 11 : -11), kHeight / 2 + (up != 0 ? 11 : -11));
    }

    /// Lower left, lower right, upper left, upper right.
    std::vector<Rgb> GetQuarters(const Image& picture) const
    {
        return {GetQuarter(picture, 0, 0), GetQuarter(picture, 1, 0), GetQuarter(picture, 0, 1),
                GetQuarter(picture, 1, 1)};
    }

    /// Four quarters, each filled with a colour: an image of 16 by 16 pixels.
    void SetQuarters(int components, const std::array<std::array<std::uint8_t, 4>, 4>& colors)
    {
        std::vector<std::uint8_t> pixels;
        for (int y = 0; y < 16; ++y)
        {
            for (int x = 0; x < 16; ++x)
            {
                const auto& color = colors.at(static_cast<unsigned>(y / 8 * 2 + x / 8));
                pixels.insert(pixels.end(), color.begin(), color.begin() + components);
            }
        }
        m_pTexture->SetImage(16, 16, components, std::move(pixels));
    }

    DSSolid* m_pSolid = nullptr;
    DSTexture* m_pTexture = nullptr;
    DSTextureBinding* m_pBinding = nullptr;
};

constexpr std::array<std::array<std::uint8_t, 4>, 4> kFourColors{
    {{255, 0, 0, 9}, {0, 255, 0, 9}, {0, 0, 255, 9}, {255, 255, 0, 9}}};

TEST_F(TextureTest, ShowsTheImageUpright)
{
    SetQuarters(3, kFourColors);
    EXPECT_THAT(GetQuarters(DrawTexture()), ElementsAre(kRed, kGreen, kBlue, kYellow));
}

TEST_F(TextureTest, LeavesOutAlpha)
{
    SetQuarters(3, kFourColors);
    const Image three = DrawTexture();
    SetQuarters(4, kFourColors);
    EXPECT_EQ(DrawTexture().pixels, three.pixels);
}

TEST_F(TextureTest, ShowsGreyAsThreeEqualColours)
{
    const std::array<std::array<std::uint8_t, 4>, 4> greys{
        {{255, 1, 0, 0}, {0, 2, 0, 0}, {128, 3, 0, 0}, {64, 4, 0, 0}}};
    SetQuarters(1, greys);
    const Image one = DrawTexture();
    EXPECT_THAT(GetQuarters(one), ElementsAre(kWhite, kBlack, Rgb{128, 128, 128}, Rgb{64, 64, 64}));
    SetQuarters(2, greys);
    EXPECT_EQ(DrawTexture().pixels, one.pixels);
}

TEST_F(TextureTest, ShowsAPixmapOfItsOwnSize)
{
    // 6 x 4: lines of 18 bytes, where GL looks for lines of 20; each is one colour.
    std::string bytes = "P6\n6 4 255\n";
    for (int i = 0; i < 6 * 4; ++i)
    {
        bytes += std::string("\xFF\0\0", 3);
    }
    m_pTexture->DecodePPM("p.ppm", bytes);
    ASSERT_TRUE(m_pTexture->HasImage());
    EXPECT_EQ(m_pTexture->GetComponents(), 0); // a pixmap does not say how many it has
    const Rgb left = GetQuarter(DrawTexture(), 0, 0);
    EXPECT_EQ(left[0] + left[1] + left[2], 255); // one of the three, wherever the lines begin
}

TEST_F(TextureTest, ConvertsLinesOfAnyLength)
{
    // Five pixels a line make 15 bytes, and GL starts each line at a multiple of four.
    m_pTexture->SetImage(5, 3, 1, std::vector<std::uint8_t>(15, 255));
    EXPECT_THAT(GetQuarters(DrawTexture()), ElementsAre(kWhite, kWhite, kWhite, kWhite));
}

TEST_F(TextureTest, SaysWhatGLSaysOfEachTextureInEachFrame)
{
    SetQuarters(3, kFourColors);
    DSTextureBinding* second = m_Elements.GetMaterialManager().NewImage();
    second->m_pTexture = m_pTexture;
    m_Elements.GetMaterialManager().NewImage(); // without an image: no texture, no word
    m_View.SetDisplayFlags(DisplayFlag::Texture);
    ConsoleCapture console;
    m_View.Redraw();
    m_View.Redraw();
    // The names are the driver's to choose. The filter for magnifying takes no mipmaps, and GL refuses it.
    const auto name = testing::StartsWith("Texture Name:");
    const char* error = "Error:GL_INVALID_ENUM";
    EXPECT_THAT(console.GetLines(), ElementsAre(name, error, name, error, name, error, name, error));
}

TEST_F(TextureTest, SaysThatAnEmptyImageIsNone)
{
    m_View.SetDisplayFlags(DisplayFlag::Texture);
    ConsoleCapture console;
    m_View.Redraw();
    EXPECT_THAT(console.GetLines(),
                ElementsAre("Texture Name:1", "Create Image Error...", "Error:GL_INVALID_ENUM"));
    EXPECT_EQ(GetCentre(DrawTexture()), kWhite); // the face is drawn without
}

TEST_F(TextureTest, DeletesTheTexturesWithTheFrame)
{
    SetQuarters(3, kFourColors);
    DrawTexture();
    ASSERT_EQ(m_View.BeginContext(), 0);
    for (unsigned name = 1; name < 9; ++name)
    {
        EXPECT_FALSE(glIsTexture(name));
    }
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    m_View.EndContext();
}

TEST_F(TextureTest, GivesGLTheSameInLaterFrames)
{
    // A size that GLU brings to powers of two, with detail.
    std::vector<std::uint8_t> pixels(std::size_t{3} * 40 * 24);
    for (std::size_t i = 0; i < pixels.size(); ++i)
    {
        pixels[i] = static_cast<std::uint8_t>(i * i % 251);
    }
    m_pTexture->SetImage(40, 24, 3, std::move(pixels));
    const Image first = DrawTexture();
    EXPECT_EQ(DrawTexture().pixels, first.pixels);
    EXPECT_EQ(DrawTexture().pixels, first.pixels);
    Draw(0);
    EXPECT_EQ(DrawTexture().pixels, first.pixels);
}

TEST_F(TextureTest, ShowsANewImageInItsNextFrame)
{
    SetQuarters(3, kFourColors);
    DrawTexture();
    m_pTexture->SetImage(1, 1, 3, {0, 255, 255});
    EXPECT_EQ(GetCentre(DrawTexture()), kCyan);
}

TEST_F(TextureTest, DrawsFacesWithoutATextureInTheMaterialThatGLHolds)
{
    SetQuarters(3, kFourColors);
    m_pSolid->SetMaterial(nullptr);
    EXPECT_EQ(GetCentre(DrawTexture()), kWhite); // GL's own material in the beginning

    DSMaterial& green = m_Elements.GetMaterialManager().GetDefaultMaterial();
    green.m_Ambient = green.m_Specular = smVec3f();
    green.m_Diffuse = smVec3f(0.0F, 1.0F, 0.0F);
    Draw(DisplayFlag::FlatShading);
    EXPECT_EQ(GetCentre(DrawTexture()), kGreen); // what the shaded frame has left
}

TEST_F(TextureTest, PrefersAShading)
{
    SetQuarters(3, kFourColors);
    const ConsoleCapture console;
    const Image shaded = Draw(DisplayFlag::FlatShading);
    EXPECT_EQ(Draw(DisplayFlag::FlatShading | DisplayFlag::Texture).pixels, shaded.pixels);
}
}
}
