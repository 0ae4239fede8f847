#include "FrameComparison.h"
#include "Capture.h"
#include "LiteralFrame.h"
#include <GL/gl.h>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <sstream>
#include <utility>

namespace tessarine
{
namespace
{
constexpr std::size_t kPixelBytes = 4;

std::string TellColor(const std::uint8_t* pixel)
{
    return '(' + std::to_string(pixel[0]) + ", " + std::to_string(pixel[1]) + ", " +
           std::to_string(pixel[2]) + ')';
}
}

std::string TellFlags(std::uint32_t flags)
{
    std::ostringstream text;
    text << "0x" << std::hex << flags;
    return text.str();
}

testing::AssertionResult SamePictures(const Picture& actual, const Picture& expected)
{
    if (actual.width != expected.width || actual.height != expected.height)
    {
        return testing::AssertionFailure() << "the sizes differ";
    }
    int count = 0;
    int left = actual.width;
    int right = -1;
    int top = -1;
    int bottom = actual.height;
    std::string first;
    for (int y = 0; y < actual.height; ++y)
    {
        for (int x = 0; x < actual.width; ++x)
        {
            const std::size_t at =
                kPixelBytes * (static_cast<std::size_t>(y) * static_cast<std::size_t>(actual.width) +
                               static_cast<std::size_t>(x));
            if (std::memcmp(&actual.bytes[at], &expected.bytes[at], kPixelBytes) == 0)
            {
                continue;
            }
            if (count++ == 0)
            {
                first = '(' + std::to_string(x) + ", " + std::to_string(y) + ") is " +
                        TellColor(&actual.bytes[at]) + ", not " + TellColor(&expected.bytes[at]);
            }
            left = std::min(left, x);
            right = std::max(right, x);
            bottom = std::min(bottom, y);
            top = std::max(top, y);
        }
    }
    if (count == 0)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << count << " of " << actual.width * actual.height << " pixels differ, in columns " << left
           << " to " << right << " and rows " << bottom << " to " << top << " from the bottom; " << first;
}

FrameComparison::FrameComparison() : m_pLiteralSurface(GetTestPlatform().CreateGLSurface())
{
    m_View.SetController(nullptr, &m_Scene, &m_Elements);
    EXPECT_EQ(m_View.Create(), 0) << m_View.GetCreateError();
    m_View.InitState();
    m_View.Resize(0, 0, kWidth, kHeight);
    EXPECT_TRUE(m_pLiteralSurface->MakeCurrent());
    InitStateLiterally();
    glViewport(0, 0, kWidth, kHeight);
    EXPECT_TRUE(m_pLiteralSurface->Release());
    LookFrom(smVec3d(2.2, 1.6, 2.8));
}

FrameComparison::~FrameComparison()
{
    m_View.Destroy();
}

testing::AssertionResult FrameComparison::SameFrames(std::uint32_t flags, int& drawn)
{
    const Picture actual = DrawByView(flags);
    const Picture expected = DrawLiterally(flags);
    drawn = CountDrawnPixels(expected);
    testing::AssertionResult result = SamePictures(actual, expected);
    return result ? result : result << "; flags " << TellFlags(flags);
}

testing::AssertionResult FrameComparison::SameFrames(std::uint32_t flags)
{
    int drawn = 0;
    testing::AssertionResult result = SameFrames(flags, drawn);
    return drawn != 0
               ? result
               : testing::AssertionFailure() << "the frame of flags " << TellFlags(flags) << " is empty";
}

int FrameComparison::CountDrawnPixels(const Picture& picture) const
{
    const smVec3f& color = m_View.GetClearColor();
    const auto toByte = [](float value) { return static_cast<std::uint8_t>(std::lround(value * 255.0F)); };
    const std::array background{toByte(color.x), toByte(color.y), toByte(color.z)};
    int count = 0;
    for (std::size_t at = 0; at < picture.bytes.size(); at += kPixelBytes)
    {
        count += std::memcmp(&picture.bytes[at], background.data(), background.size()) != 0 ? 1 : 0;
    }
    return count;
}

Picture FrameComparison::DrawByView(std::uint32_t flags)
{
    m_View.SetDisplayFlags(flags);
    const ConsoleCapture console;
    m_View.Redraw();
    EXPECT_EQ(m_View.BeginContext(), 0);
    Picture picture = ReadPicture();
    EXPECT_EQ(m_View.EndContext(), 0);
    return picture;
}

Picture FrameComparison::DrawLiterally(std::uint32_t flags)
{
    m_View.SetDisplayFlags(flags);
    EXPECT_TRUE(m_pLiteralSurface->MakeCurrent());
    DrawFrameLiterally(m_View, m_Scene, m_Elements);
    Picture picture = ReadPicture();
    EXPECT_TRUE(m_pLiteralSurface->Release());
    return picture;
}

Picture FrameComparison::ReadPicture() const
{
    Picture picture{kWidth, kHeight, std::vector<std::uint8_t>(kPixelBytes * kWidth * kHeight)};
    glReadPixels(0, 0, kWidth, kHeight, GL_RGBA, GL_UNSIGNED_BYTE, picture.bytes.data());
    return picture;
}

DSSolid* FrameComparison::Build(const IndexedMesh& mesh)
{
    DSSolid* solid = LoadQuietly(m_Elements, mesh);
    const ConsoleCapture console;
    solid->CheckTopology(); // marks the boundary
    solid->CalcNormals();
    return solid;
}

MANSceneLeaf* FrameComparison::Show(DSSolid* solid)
{
    return ShowUnder(m_Scene.GetRootGroup(), solid);
}

MANSceneLeaf* FrameComparison::ShowUnder(MANSceneGroup* group, DSSolid* solid)
{
    MANSceneLeaf* leaf = m_Scene.NewLeaf();
    leaf->SetSolid(solid);
    leaf->SetParent(group);
    group->AddChild(leaf);
    return leaf;
}

DSMaterial* FrameComparison::AddMaterial(const smVec3f& color, float transparency)
{
    DSMaterial* material = m_Elements.GetMaterialManager().NewMaterial();
    material->m_Diffuse = color;
    material->m_Ambient = color * 0.5F;
    material->m_Specular = smVec3f(0.3F, 0.2F, 0.1F);
    material->m_fShininess = 12.0F;
    material->m_fTransparency = transparency;
    return material;
}

DSMaterial* FrameComparison::AddTexturedMaterial(int width, int height, int components,
                                                 std::vector<std::uint8_t> pixels)
{
    MANMaterialManager& materials = m_Elements.GetMaterialManager();
    DSTexture* texture = materials.NewTexture();
    texture->SetImage(width, height, components, std::move(pixels));
    DSTextureBinding* binding = materials.NewImage();
    binding->m_pTexture = texture;
    DSMaterial* material = materials.NewMaterial();
    material->m_pTexture = binding;
    return material;
}

DSSolid* FrameComparison::BuildTexturedSquare(const smVec2f& low, const smVec2f& high)
{
    const ConsoleCapture console;
    const IndexedMesh square = StackedSquares(1);
    DSSolid* solid =
        m_Elements.BuildTexturedSolid(square.positions, square.indices, square.faceSizes,
                                      {low, {high.x, low.y}, high, {low.x, high.y}}, {1, 2, 3, 4}, false);
    solid->CalcNormals();
    return solid;
}

void FrameComparison::LookFrom(const smVec3d& eye, const smVec3d& target)
{
    m_View.GetCamera()->SetLookAt(eye, target, smVec3d(0, 1, 0));
}
}
