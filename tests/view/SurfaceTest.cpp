#include "Capture.h"
#include "Failure.h"
#include "HeadlessPlatform.h"
#include "ViewTest.h"
#include <GL/gl.h>
#include <functional>
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::HasSubstr;

/// A surface that does what the test wants. Its context is never current: GL's calls do nothing.
class FakeSurface : public GLSurface
{
public:
    struct Behaviour
    {
        bool activates = true;
        bool deactivates = true;
        std::function<void()> onSwap = [] {};
        int activations = 0;
        int releases = 0;
    };

    explicit FakeSurface(Behaviour& behaviour) : m_Behaviour(behaviour) {}
    bool MakeCurrent() override
    {
        ++m_Behaviour.activations;
        return m_Behaviour.activates;
    }
    bool Release() override
    {
        ++m_Behaviour.releases;
        return m_Behaviour.deactivates;
    }
    void SwapBuffers() override { m_Behaviour.onSwap(); }
    bool IsWatched() const override { return true; }

private:
    Behaviour& m_Behaviour;
};

/// A machine with surfaces of the test's own, or with none.
class FakeMachine : public HeadlessPlatform
{
public:
    FakeMachine() : m_pBefore(SetPlatform(this)) {}
    ~FakeMachine() override { SetPlatform(m_pBefore); }

    std::unique_ptr<GLSurface> CreateGLSurface() override
    {
        if (!m_strFailedStep.empty())
        {
            throw GLSurfaceError(m_strFailedStep, "the driver is missing; install it");
        }
        return std::make_unique<FakeSurface>(m_Behaviour);
    }

    std::string m_strFailedStep;
    FakeSurface::Behaviour m_Behaviour;

private:
    Platform* m_pBefore;
};

class FakeMachineTest : public ViewTest
{
protected:
    std::vector<std::string> GetMessages() const
    {
        std::vector<std::string> texts;
        for (const auto& message : m_Machine.GetMessages())
        {
            texts.push_back(message.text);
        }
        return texts;
    }

    FakeMachine m_Machine;
};

TEST_F(FakeMachineTest, NamesTheStepThatFailedAndKeepsTheReason)
{
    for (const char* step : {"ChoosePixelFormat failed", "SetPixelFormat failed", "wglCreateContext failed"})
    {
        m_Machine.m_strFailedStep = step;
        EXPECT_EQ(m_View.Create(), -1);
        EXPECT_EQ(GetMessages().back(), step);
        EXPECT_EQ(m_View.GetCreateError(), "the driver is missing; install it");
        EXPECT_FALSE(m_View.HasSurface());
    }
    EXPECT_EQ(m_Machine.GetMessages().size(), 3U);
}

TEST_F(FakeMachineTest, SaysWhatTexturesMissWhereThereIsNoGL)
{
    m_Machine.m_strFailedStep = "SetPixelFormat failed";
    EXPECT_EQ(m_View.Create(), -1);
    try
    {
        m_View.ShowTexture();
        FAIL() << "there are textures";
    }
    catch (const Failure& failure)
    {
        EXPECT_THAT(failure.GetMessage(), HasSubstr("the driver is missing; install it"));
    }
    EXPECT_EQ(m_View.GetDisplayFlags(), 0xCU);
}

TEST_F(FakeMachineTest, ForgetsTheReasonWithTheNextSurface)
{
    m_Machine.m_strFailedStep = "SetPixelFormat failed";
    EXPECT_EQ(m_View.Create(), -1);
    m_Machine.m_strFailedStep.clear();
    EXPECT_EQ(m_View.Create(), 0);
    EXPECT_EQ(m_View.GetCreateError(), "");
}

TEST_F(FakeMachineTest, HasNoSurfaceWhoseContextCannotBeUsed)
{
    m_Machine.m_Behaviour.activates = false;
    EXPECT_EQ(m_View.Create(), -1);
    EXPECT_THAT(GetMessages(), ElementsAre("wglCreateContext failed"));
}

TEST_F(FakeMachineTest, SaysThatAContextCannotBeActivatedOrReleased)
{
    ASSERT_EQ(m_View.Create(), 0);
    EXPECT_EQ(m_View.BeginContext(), 0);
    EXPECT_EQ(m_View.EndContext(), 0);
    EXPECT_FALSE(m_View.HasLostContext());
    m_Machine.m_Behaviour.activates = false;
    m_Machine.m_Behaviour.deactivates = false;
    EXPECT_EQ(m_View.BeginContext(), -1);
    EXPECT_EQ(m_View.EndContext(), -1);
    EXPECT_TRUE(m_View.HasLostContext());
    EXPECT_THAT(GetMessages(), ElementsAre("Context activiate failed", "Context deactiviate failed"));
}

TEST_F(FakeMachineTest, StillCountsWhereTheContextCannotBeActivated)
{
    ASSERT_EQ(m_View.Create(), 0);
    Show(Build(Tetrahedron()));
    m_Machine.m_Behaviour.activates = false;
    m_View.Redraw();
    EXPECT_EQ(m_Machine.GetPaneText(1), "顶点数: 4");
    EXPECT_THAT(GetMessages(), ElementsAre("Context activiate failed"));
    EXPECT_THROW(m_View.TakePicture(), Failure);
}

TEST_F(FakeMachineTest, DoesNothingWhenAskedForAFrameWithinAFrame)
{
    ASSERT_EQ(m_View.Create(), 0);
    int swaps = 0;
    m_Machine.m_Behaviour.onSwap = [this, &swaps]
    {
        ++swaps;
        m_View.Redraw();
    };
    m_Machine.m_Behaviour.activations = 0;
    m_View.Redraw();
    EXPECT_EQ(swaps, 1);
    EXPECT_EQ(m_Machine.m_Behaviour.activations, 1);
    m_View.Redraw();
    EXPECT_EQ(swaps, 2); // the next frame is one again
}

TEST_F(FakeMachineTest, ReleasesTheContextWhenAFrameEndsEarly)
{
    ASSERT_EQ(m_View.Create(), 0);
    m_Machine.m_Behaviour.releases = 0;
    m_Machine.m_Behaviour.onSwap = [] { throw std::bad_alloc(); };
    EXPECT_THROW(m_View.Redraw(), std::bad_alloc);
    EXPECT_EQ(m_Machine.m_Behaviour.releases, 1);
    m_Machine.m_Behaviour.onSwap = [] {};
    EXPECT_NO_THROW(m_View.Redraw());
    EXPECT_EQ(m_Machine.m_Behaviour.releases, 2);
}

TEST_F(ViewTest, AssertsASurfaceWhereItIsNeeded)
{
    const AssertionCapture assertions;
    EXPECT_THROW(m_View.Destroy(), AssertionFailure);
    EXPECT_THROW(m_View.BeginContext(), AssertionFailure);
    EXPECT_THROW(m_View.EndContext(), AssertionFailure);
    EXPECT_THROW(m_View.InitState(), AssertionFailure);
}

TEST_F(ViewTest, SaysWhyItTakesNoPictureWithoutASurface)
{
    m_View.Resize(0, 0, 8, 8);
    try
    {
        m_View.TakePicture();
        FAIL() << "there is a picture";
    }
    catch (const Failure& failure)
    {
        EXPECT_THAT(failure.GetMessage(), HasSubstr("nothing can be drawn here"));
    }
}

TEST_F(ViewTest, SaysTheColoursOfLightsWithoutASurface)
{
    m_Scene.GetLightList()[1]->m_bSpecular = true;
    m_Scene.GetLightList()[1]->m_Specular = smVec3f(0.5F, 0.25F, 1.0F);
    ConsoleCapture console;
    m_View.Redraw();
    EXPECT_THAT(console.GetLines(), ElementsAre("Specular:(0.5,0.25,1)"));
}

TEST_F(DrawnViewTest, IsCurrentWithinAnOperationOnly)
{
    EXPECT_EQ(glGetString(GL_VERSION), nullptr);
    ASSERT_EQ(m_View.BeginContext(), 0);
    EXPECT_NE(glGetString(GL_VERSION), nullptr);
    ASSERT_EQ(m_View.EndContext(), 0);
    m_View.Redraw();
    EXPECT_EQ(glGetString(GL_VERSION), nullptr);
}

TEST_F(DrawnViewTest, SetsTheStateThatStaysForAllFrames)
{
    ASSERT_EQ(m_View.BeginContext(), 0);
    int depthFunction = 0;
    glGetIntegerv(GL_DEPTH_FUNC, &depthFunction);
    int shadeModel = 0;
    glGetIntegerv(GL_SHADE_MODEL, &shadeModel);
    EXPECT_EQ(depthFunction, GL_LEQUAL);
    EXPECT_EQ(shadeModel, GL_SMOOTH);
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_TRUE(glIsEnabled(GL_CULL_FACE));
    m_View.EndContext();
}

TEST_F(DrawnViewTest, IsReadFromItsBottomLineUp)
{
    ShowSquare();
    // A high eye that looks level: the square lies in the lower half.
    m_View.GetCamera()->SetLookAt(smVec3d(0.0, 1.2, 5.0), smVec3d(0.0, 1.2, 0.0), smVec3d(0.0, 1.0, 0.0));
    const Image picture = Draw(DisplayFlag::FlatShading);
    EXPECT_EQ(picture.width, kWidth);
    EXPECT_EQ(picture.height, kHeight);
    EXPECT_EQ(picture.components, 3);
    EXPECT_NE(GetPixel(picture, kWidth / 2, kHeight / 4), kBlack);
    EXPECT_EQ(GetPixel(picture, kWidth / 2, 3 * kHeight / 4), kBlack);
}

TEST_F(DrawnViewTest, FollowsTheSizeOfTheWindow)
{
    ShowSquare();
    GetTestPlatform().SetViewSize(31, 17); // lines of 93 bytes
    m_View.Resize(0, 0, 31, 17);
    const Image picture = Draw(DisplayFlag::FlatShading);
    EXPECT_EQ(picture.pixels.size(), 31U * 17U * 3U);
    EXPECT_NE(GetCentre(picture), kBlack);
}

TEST_F(DrawnViewTest, IsDrawnWithoutAreaAndGivesNoPicture)
{
    ShowSquare();
    for (const auto& [width, height] : {std::pair{0, 0}, {0, 50}, {50, 0}})
    {
        GetTestPlatform().SetViewSize(width, height);
        m_View.Resize(0, 0, width, height);
        EXPECT_NO_THROW(m_View.Redraw());
        EXPECT_THROW(m_View.TakePicture(), Failure);
    }
}

TEST_F(DrawnViewTest, GivesTheSamePictureAgain)
{
    Show(Build(Torus(12, 7)))->GetSolid()->CalcNormals();
    const Image first = Draw(0xF);
    EXPECT_GT(CountLit(first), 100);
    EXPECT_EQ(Draw(0xF).pixels, first.pixels);
}

TEST_F(DrawnViewTest, CanBeDestroyedAndCreatedAgain)
{
    ShowSquare();
    const Image before = Draw(DisplayFlag::FlatShading);
    m_View.Destroy();
    EXPECT_NO_THROW(m_View.Redraw());
    ASSERT_EQ(m_View.Create(), 0);
    m_View.InitState();
    m_View.Resize(0, 0, kWidth, kHeight);
    EXPECT_EQ(Draw(DisplayFlag::FlatShading).pixels, before.pixels);
}
}
}
