#include "Capture.h"
#include "OCTNODE.h"
#include "ViewTest.h"
#include <GL/gl.h>
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;

/// What a frame leaves in GL that shows in the next one.
std::vector<float> GetState(Open3DView& view)
{
    std::vector<float> state;
    EXPECT_EQ(view.BeginContext(), 0);
    const auto take = [&state](auto get, int count)
    {
        float values[16] = {};
        get(values);
        state.insert(state.end(), values, values + count);
    };
    for (const GLenum name : {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_EMISSION})
    {
        take([name](float* values) { glGetMaterialfv(GL_FRONT, name, values); }, 4);
    }
    take([](float* values) { glGetMaterialfv(GL_FRONT, GL_SHININESS, values); }, 1);
    for (GLenum light = GL_LIGHT0; light < GL_LIGHT0 + 8; ++light)
    {
        for (const GLenum name : {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_POSITION})
        {
            take([light, name](float* values) { glGetLightfv(light, name, values); }, 4);
        }
        state.push_back(glIsEnabled(light));
    }
    for (const GLenum name : {GL_PROJECTION_MATRIX, GL_MODELVIEW_MATRIX})
    {
        take([name](float* values) { glGetFloatv(name, values); }, 16);
    }
    for (const GLenum name : {GL_LINE_WIDTH, GL_POINT_SIZE})
    {
        take([name](float* values) { glGetFloatv(name, values); }, 1);
    }
    for (const GLenum name : {GL_LIGHTING, GL_BLEND, GL_POLYGON_SMOOTH, GL_LINE_SMOOTH, GL_LINE_STIPPLE,
                              GL_POLYGON_OFFSET_FILL, GL_TEXTURE_2D, GL_VERTEX_ARRAY, GL_NORMAL_ARRAY})
    {
        state.push_back(glIsEnabled(name));
    }
    view.EndContext();
    return state;
}

class UnwatchedFrameTest : public DrawnViewTest
{
protected:
    void SetUp() override
    {
        DrawnViewTest::SetUp();
        m_pSolid = ShowSquare();
        m_pMaterial = m_Elements.GetMaterialManager().NewMaterial();
        m_pMaterial->m_Diffuse = smVec3f(0.1F, 0.2F, 0.3F);
        m_pMaterial->m_Emission = smVec3f(0.4F, 0.5F, 0.6F);
        m_pMaterial->m_fShininess = 7.0F;
    }

    /// The state after a frame with these switches, seen or not.
    std::vector<float> GetStateAfter(std::uint32_t flags, bool watched)
    {
        m_View.SetDisplayFlags(flags);
        GetTestPlatform().SetWatched(watched);
        m_View.Redraw();
        return GetState(m_View);
    }

    DSSolid* m_pSolid = nullptr;
    DSMaterial* m_pMaterial = nullptr;
};

TEST_F(UnwatchedFrameTest, LeavesTheStateOfAFrameThatIsSeen)
{
    m_Scene.NewLight()->m_bSpecular = true;
    m_pSolid->SetMaterial(m_pMaterial);
    const std::vector<float> fresh = GetState(m_View);
    const std::vector<float> unseen =
        GetStateAfter(0xFFFFF & ~(DisplayFlag::Octree | DisplayFlag::Texture), false);
    EXPECT_NE(unseen, fresh);
    EXPECT_EQ(unseen, GetStateAfter(0xFFFFF & ~(DisplayFlag::Octree | DisplayFlag::Texture), true));
}

TEST_F(UnwatchedFrameTest, LeavesTheMaterialOfTheLastFaceDrawn)
{
    DSSolid* second = ShowSquare(0.5);
    second->SetMaterial(m_pMaterial);
    const std::vector<float> unseen = GetStateAfter(DisplayFlag::FlatShading, false);
    EXPECT_FLOAT_EQ(unseen[4], 0.1F); // the second colour, diffuse
    EXPECT_EQ(unseen, GetStateAfter(DisplayFlag::FlatShading, true));
    second->SetVisible(false);
    EXPECT_FLOAT_EQ(GetStateAfter(DisplayFlag::FlatShading, false)[4], 1.0F); // the default of the first
}

TEST_F(UnwatchedFrameTest, ChangesNoPixel)
{
    const auto read = [this]
    {
        std::vector<std::uint8_t> pixels(std::size_t{3} * kWidth * kHeight);
        EXPECT_EQ(m_View.BeginContext(), 0);
        glReadPixels(0, 0, kWidth, kHeight, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
        m_View.EndContext();
        return pixels;
    };
    m_View.SetDisplayFlags(0xC);
    m_View.Redraw();
    const auto before = read();
    GetStateAfter(0xF | DisplayFlag::Points, false);
    EXPECT_EQ(read(), before);
}

TEST_F(UnwatchedFrameTest, CountsAndSaysTheSame)
{
    DSTexture* texture = m_Elements.GetMaterialManager().NewTexture();
    texture->SetImage(1, 1, 3, {1, 2, 3});
    m_Elements.GetMaterialManager().NewImage()->m_pTexture = texture;
    m_Scene.GetLightList().front()->m_bAmbient = true;
    m_View.SetDisplayFlags(DisplayFlag::Texture);
    GetTestPlatform().SetWatched(false);
    ConsoleCapture console;
    EXPECT_THAT(DrawCounters(), ElementsAre("顶点数: 4", "面片数: 1"));
    EXPECT_THAT(console.GetLines(),
                ElementsAre("Ambient:(0,0,0)", "Texture Name:1", "Error:GL_INVALID_ENUM"));
}

TEST_F(UnwatchedFrameTest, ReportsOverlaysThatCannotBeDrawn)
{
    m_View.GetPointCloud().resize(2);
    OCTNODE octree;
    octree.SetLeaf(false);
    m_View.SetOctree(&octree);
    m_View.SetDisplayFlags(DisplayFlag::Octree | DisplayFlag::ProjectionLines);
    const auto getReports = [this](bool watched)
    {
        const AssertionCapture assertions;
        GetTestPlatform().SetWatched(watched);
        m_View.Redraw();
        return assertions.GetExpressions();
    };
    const std::vector<std::string> unseen = getReports(false);
    EXPECT_EQ(unseen.size(), 9U); // a report a child, and the lists
    EXPECT_EQ(unseen, getReports(true));
    m_View.Destroy();
    EXPECT_EQ(unseen, getReports(true)); // nowhere to draw
    m_View.SetOctree(nullptr);
}

TEST_F(UnwatchedFrameTest, LeavesTheErrorOfAShininessThatIsRefused)
{
    const auto getError = [this](bool watched)
    {
        GetTestPlatform().SetWatched(watched);
        m_View.Redraw();
        EXPECT_EQ(m_View.BeginContext(), 0);
        const GLenum error = glGetError();
        m_View.EndContext();
        return error;
    };
    m_View.SetDisplayFlags(DisplayFlag::FlatShading);
    EXPECT_EQ(getError(false), GLenum{GL_NO_ERROR});
    m_pMaterial->m_fShininess = 200.0F; // GL takes 128 at most
    m_pSolid->SetMaterial(m_pMaterial);
    ShowSquare(0.5)->SetMaterial(m_Elements.GetMaterialManager().NewMaterial());
    EXPECT_EQ(getError(false), GLenum{GL_INVALID_VALUE});
    EXPECT_EQ(getError(true), GLenum{GL_INVALID_VALUE});
}

TEST_F(UnwatchedFrameTest, PrintsNothingWhereNothingIsSaid)
{
    int writes = 0;
    const auto kept = DebugConsole().SetSink([&writes](std::string_view) { ++writes; });
    m_View.SetDisplayFlags(0xC);
    for (const bool watched : {false, true})
    {
        GetTestPlatform().SetWatched(watched);
        m_View.Redraw();
    }
    DebugConsole().SetSink(kept);
    EXPECT_EQ(writes, 0);
}

TEST_F(UnwatchedFrameTest, DoesNotConcernAPicture)
{
    const Image seen = Draw(0xC);
    EXPECT_GT(CountLit(seen), 1000);
    GetTestPlatform().SetWatched(false);
    EXPECT_EQ(Draw(0xC).pixels, seen.pixels);
}
}
}
