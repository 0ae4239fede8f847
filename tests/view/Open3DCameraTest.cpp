#include "Open3DCamera.h"
#include "Capture.h"
#include "Vectors.h"
#include <cmath>
#include <gmock/gmock.h>
#include <limits>

namespace tessarine
{
namespace
{
void ExpectNear(const smVec3d& actual, const smVec3d& expected)
{
    EXPECT_NEAR((actual - expected).Length(), 0.0, 1e-14);
}

TEST(Camera, StartsAtItsDefaults)
{
    const Open3DCamera camera;
    EXPECT_EQ(camera.GetNear(), 0.1F);
    EXPECT_EQ(camera.GetFar(), 200.0F);
    EXPECT_EQ(camera.GetFovy(), 45.0F);
    EXPECT_EQ(camera.GetAspect(), 1.0F);
    EXPECT_EQ(camera.GetPosition(), smVec3d(10.0, 4.0, 10.0));
    EXPECT_EQ(camera.GetTarget(), smVec3d(0.0, 0.0, 0.0));
    EXPECT_EQ(camera.GetUp(), smVec3d(0.0, 1.0, 0.0));
}

TEST(Camera, LooksFromTheEyeToTheTarget)
{
    const Open3DCamera camera;
    EXPECT_EQ(camera.GetViewVector(), smVec3d(-10.0, -4.0, -10.0));
    // (-10, -4, -10) x (0, 1, 0) = (-4*0 - -10*1, -10*0 - -10*0, -10*1 - -4*0)
    EXPECT_EQ(camera.GetSideVector(), smVec3d(10.0, 0.0, -10.0));
}

TEST(Camera, KeepsTheUpVectorAtRightAnglesToTheView)
{
    Open3DCamera camera;
    camera.SetLookAt(smVec3d(0.0, 3.0, 4.0), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 1.0, 0.0));
    EXPECT_EQ(camera.GetPosition(), smVec3d(0.0, 3.0, 4.0));
    EXPECT_EQ(camera.GetTarget(), smVec3d(0.0, 0.0, 0.0));
    ExpectNear(camera.GetUp(), smVec3d(0.0, 0.8, -0.6)); // (0, 3, 4)/5 turned by 90 degrees
}

TEST(Camera, KeepsAnUpVectorOfLengthOne)
{
    Open3DCamera camera;
    camera.SetLookAt(smVec3d(0.0, 0.0, 5.0), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 7.0, 0.0));
    ExpectNear(camera.GetUp(), smVec3d(0.0, 1.0, 0.0));
}

void ExpectRefused(const smVec3d& position, const smVec3d& target, const smVec3d& up)
{
    const AssertionCapture assertions;
    Open3DCamera camera;
    EXPECT_THROW(camera.SetLookAt(position, target, up), AssertionFailure);
    EXPECT_EQ(camera.GetPosition(), smVec3d(10.0, 4.0, 10.0));
    EXPECT_EQ(camera.GetTarget(), smVec3d(0.0, 0.0, 0.0));
    EXPECT_EQ(camera.GetUp(), smVec3d(0.0, 1.0, 0.0));
}

TEST(Camera, RefusesAnUpVectorAlongTheView)
{
    ExpectRefused(smVec3d(0.0, 5.0, 0.0), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 1.0, 0.0));
}

TEST(Camera, RefusesAnUpVectorThatOnlyRoundingLeadsOffTheView)
{
    const smVec3d view(0.1, 0.7, 0.3);
    const smVec3d up = view * 1.1 * 1e6; // its cross product with the view is not quite zero
    EXPECT_GT(up.Cross(view).Length(), 0.0);
    ExpectRefused(view, smVec3d(0.0, 0.0, 0.0), up);
}

TEST(Camera, RefusesAnEyeOnTheTarget)
{
    ExpectRefused(smVec3d(1.0, 2.0, 3.0), smVec3d(1.0, 2.0, 3.0), smVec3d(0.0, 1.0, 0.0));
}

TEST(Camera, RefusesAnUpVectorOfLengthZero)
{
    ExpectRefused(smVec3d(1.0, 2.0, 3.0), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 0.0, 0.0));
}

TEST(Camera, RefusesNumbersThatAreNone)
{
    const double none = std::numeric_limits<double>::quiet_NaN();
    ExpectRefused(smVec3d(none, 2.0, 3.0), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 1.0, 0.0));
    // The squares of these are beyond the largest double.
    ExpectRefused(smVec3d(1e200, 2.0, 3.0), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 1.0, 0.0));
}

TEST(Camera, TakesAPixelToTheNearPlane)
{
    Open3DCamera camera;
    camera.SetLookAt(smVec3d(0.0, 0.0, 5.0), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 1.0, 0.0));
    camera.SetSize(200, 100);
    const double near = 0.1F;
    const double high = near * std::tan(45.0 * (3.1415926535 / 180.0) / 2.0);
    EXPECT_EQ(camera.ScreenToNearPlane(100, 50), smVec3d(0.0, 0.0, 5.0 - near));
    ExpectNear(camera.ScreenToNearPlane(0, 0), smVec3d(-2.0 * high, high, 5.0 - near));
    ExpectNear(camera.ScreenToNearPlane(150, 75), smVec3d(high, -high / 2.0, 5.0 - near));
}

TEST(Camera, TakesItsAspectFromTheSize)
{
    Open3DCamera camera;
    camera.SetSize(800, 600);
    EXPECT_EQ(camera.GetAspect(), 800.0F / 600.0F);
    EXPECT_EQ(camera.GetWidth(), 800);
    EXPECT_EQ(camera.GetHeight(), 600);
}

TEST(Camera, KeepsItsAspectInAWindowWithoutHeight)
{
    Open3DCamera camera;
    camera.SetSize(800, 600);
    camera.SetSize(640, 0);
    EXPECT_EQ(camera.GetAspect(), 800.0F / 600.0F);
    EXPECT_EQ(camera.GetWidth(), 640);
    EXPECT_EQ(camera.GetHeight(), 0);
}

TEST(Camera, TakesItsOwnFieldsInAnotherOrder)
{
    Open3DCamera camera;
    camera.SetLookAt(camera.GetTarget(), camera.GetPosition(), camera.GetUp());
    EXPECT_EQ(camera.GetPosition(), smVec3d(0.0, 0.0, 0.0));
    EXPECT_EQ(camera.GetTarget(), smVec3d(10.0, 4.0, 10.0));
    // The unit vector of (0,1,0) - (v.(0,1,0) / v.v) v with v = (10, 4, 10), v.v = 216
    const double length = std::sqrt(200.0 / 216.0);
    ExpectNear(camera.GetUp(),
               smVec3d(-40.0 / 216.0 / length, 200.0 / 216.0 / length, -40.0 / 216.0 / length));
}
}
}
