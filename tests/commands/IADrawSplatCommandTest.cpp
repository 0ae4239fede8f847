#include "IADrawSplatCommand.h"
#include "Capture.h"
#include "Open3DCamera.h"
#include "Vectors.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::SizeIs;

class DrawSplat : public testing::Test
{
protected:
    DrawSplat()
    {
        m_Camera.SetLookAt({0, 0, 5}, {0, 0, 0}, {0, 1, 0});
        m_Camera.SetSize(200, 100);
        m_Command.SetCamera(&m_Camera);
        m_Command.SetScene(&m_Scene);
    }

    MANSceneManager m_Scene;
    Open3DCamera m_Camera;
    IADrawSplatCommand m_Command;
};

TEST_F(DrawSplat, StandsOnALineOfTheNearPlaneAndReachesAHundredthToEitherSide)
{
    m_Command.SetStart(100, 50);
    m_Command.SetEnd(200, 50);
    m_Command.Execute();
    ASSERT_THAT(m_Scene.GetCutFaceList(), SizeIs(1));
    const double near = 5 - double{0.1F};
    const double right = 2 * double{0.1F} * std::tan(22.5 * 3.1415926535 / 180); // twice as wide as high
    const double k = 0.01F;
    const smVec3d corners[] = {
        {0, 0, near + k}, {right, 0, near + k}, {right, 0, near - k}, {0, 0, near - k}};
    for (int i = 0; i < 4; ++i)
    {
        EXPECT_NEAR((m_Scene.GetCutFaceList()[0][static_cast<std::size_t>(i)] - corners[i]).Length(), 0.0,
                    1e-15);
    }
}

TEST_F(DrawSplat, IsALineAlongTheViewWhereItsEndsAreOnePixel)
{
    m_Command.SetStart(37, 20);
    m_Command.SetEnd(37, 20);
    const CutFace quad = m_Command.MakeQuad();
    EXPECT_EQ(quad[0], quad[1]);
    EXPECT_EQ(quad[2], quad[3]);
    EXPECT_NEAR((quad[0] - quad[3]).Length(), 0.02, 1e-8); // k is a float
}

TEST_F(DrawSplat, StaysWhereItIsWhenTheCameraMoves)
{
    m_Command.Execute();
    const CutFace first = m_Scene.GetCutFaceList()[0];
    m_Camera.SetLookAt({5, 0, 0}, {0, 0, 0}, {0, 1, 0});
    m_Command.Execute();
    ASSERT_THAT(m_Scene.GetCutFaceList(), SizeIs(2));
    EXPECT_EQ(m_Scene.GetCutFaceList()[0][2], first[2]);
    EXPECT_FALSE(m_Scene.GetCutFaceList()[1][2] == first[2]);
}

TEST_F(DrawSplat, AssertsThatTheViewHasAnArea)
{
    const AssertionCapture assertions;
    m_Camera.SetSize(0, 100);
    EXPECT_THROW(m_Command.Execute(), AssertionFailure);
    EXPECT_THAT(m_Scene.GetCutFaceList(), SizeIs(0));
}
}
}
