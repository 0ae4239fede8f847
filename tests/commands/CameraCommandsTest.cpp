#include "Capture.h"
#include "IACameraAroundCommand.h"
#include "IACameraMoveCommand.h"
#include "IACameraOrbitCommand.h"
#include "IACameraZoomCommand.h"
#include "Open3DCamera.h"
#include "Vectors.h"
#include <cmath>
#include <gmock/gmock.h>
#include <random>

namespace tessarine
{
namespace
{
constexpr double kDegreesToRadians = 3.14159265358979323846 / 180.0;

void ExpectNear(const smVec3d& actual, const smVec3d& expected, double tolerance)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

smVec3d Unit(const smVec3d& v)
{
    return v * (1.0 / std::sqrt(v.Dot(v)));
}

/// What of `v` is at right angles to the unit vector `axis`, made as long as 1.
smVec3d Across(const smVec3d& v, const smVec3d& axis)
{
    return Unit(v - axis * v.Dot(axis));
}

/// The axes of the screen of a camera, and what is behind it, to which its view is the opposite.
struct Screen
{
    explicit Screen(const Open3DCamera& camera)
        : back(Unit(camera.GetPosition() - camera.GetTarget())),
          up(Across(camera.GetUp(), back)),
          right(Unit(up.Cross(back)))
    {
    }

    smVec3d back;
    smVec3d up;
    smVec3d right;
};

struct Angles
{
    double elevation; ///< degrees over the ground plane
    double azimuth;   ///< degrees in it, from z towards x, 0 to 360
};

Angles AnglesOf(const Open3DCamera& camera)
{
    const smVec3d view = camera.GetViewVector();
    const double azimuth = std::atan2(view.x, view.z) / kDegreesToRadians;
    return {std::atan2(view.y, std::hypot(view.x, view.z)) / kDegreesToRadians,
            azimuth < 0.0 ? azimuth + 360.0 : azimuth};
}

Open3DCamera CameraAt(const smVec3d& eye, const smVec3d& target)
{
    Open3DCamera camera;
    camera.SetLookAt(eye, target, smVec3d(0.0, 1.0, 0.0));
    return camera;
}

/// Cameras all over the place.
std::vector<Open3DCamera> MixedCameras()
{
    std::mt19937 random(7); // NOLINT(bugprone-random-generator-seed): the same cameras in every run
    std::uniform_real_distribution<double> place(-20.0, 20.0);
    std::vector<Open3DCamera> cameras(1); // the first as it starts
    for (int i = 0; i < 50; ++i)
    {
        Open3DCamera camera;
        camera.SetLookAt(smVec3d(place(random), place(random), place(random)),
                         smVec3d(place(random), place(random), place(random)),
                         smVec3d(place(random), place(random), place(random)));
        cameras.push_back(camera);
    }
    return cameras;
}

template <class TCommand>
void Step(Open3DCamera& camera, double x, double y)
{
    TCommand command;
    command.SetCamera(&camera);
    command.SetDelta(x, y);
    command.Execute();
}

void Zoom(Open3DCamera& camera, double distance)
{
    IACameraZoomCommand command;
    command.SetCamera(&camera);
    command.SaveState();
    command.SetDistance(distance);
    command.Execute();
}

// --- looking around

TEST(CameraAround, TurnsALevelViewByTheAngles)
{
    // Along -x: elevation 0, azimuth 270.
    Open3DCamera camera = CameraAt(smVec3d(1.0, 2.0, 3.0), smVec3d(-4.0, 2.0, 3.0));
    Step<IACameraAroundCommand>(camera, 20.0, 30.0);

    EXPECT_EQ(camera.GetPosition(), smVec3d(1.0, 2.0, 3.0));
    EXPECT_NEAR(AnglesOf(camera).azimuth, 290.0, 1e-7); // ten decimals of pi
    EXPECT_NEAR(AnglesOf(camera).elevation, 30.0, 1e-7);
    EXPECT_NEAR(camera.GetViewVector().Length(), 5.0, 1e-12);
}

TEST(CameraAround, TurnsAViewTowardsXTheOtherWayRound)
{
    Open3DCamera camera = CameraAt(smVec3d(0.0, 0.0, 0.0), smVec3d(3.0, 0.0, 3.0)); // azimuth 45
    Step<IACameraAroundCommand>(camera, -50.0, 0.0);
    EXPECT_NEAR(AnglesOf(camera).azimuth, 355.0, 1e-7);
    EXPECT_NEAR(AnglesOf(camera).elevation, 0.0, 1e-7);
}

TEST(CameraAround, TakesTheAngleToZInSpaceForTheAzimuth)
{
    Open3DCamera camera; // the view is (-10, -4, -10), of length sqrt(216), and leads to the side of -x
    const double elevation = std::asin(-4.0 / std::sqrt(216.0)) / kDegreesToRadians;
    const double angleToZ = std::acos(-10.0 / std::sqrt(216.0)) / kDegreesToRadians;
    Step<IACameraAroundCommand>(camera, 0.0, 0.0);

    EXPECT_NEAR(AnglesOf(camera).azimuth, 360.0 - angleToZ, 1e-7); // 227.1 degrees; in the plane it was 225
    EXPECT_NEAR(AnglesOf(camera).elevation, elevation, 1e-7);
}

TEST(CameraAround, StopsAtAnElevationOf89Degrees)
{
    for (const double direction : {1.0, -1.0})
    {
        Open3DCamera camera;
        for (int i = 0; i < 40; ++i)
        {
            Step<IACameraAroundCommand>(camera, 0.0, direction * 10.0);
        }
        EXPECT_NEAR(AnglesOf(camera).elevation, direction * 89.0, 1e-6);
        Step<IACameraAroundCommand>(camera, 0.0, direction * 0.4);
        EXPECT_NEAR(AnglesOf(camera).elevation, direction * 89.0, 1e-6);
        Step<IACameraAroundCommand>(camera, 0.0, direction * -9.0);
        EXPECT_NEAR(AnglesOf(camera).elevation, direction * 80.0, 1e-6);
    }
}

TEST(CameraAround, ComesDownFromAVerticalView)
{
    Open3DCamera camera;
    camera.SetLookAt(smVec3d(0.0, 5.0, 0.0), smVec3d(), smVec3d(0.0, 0.0, 1.0));
    Step<IACameraAroundCommand>(camera, 0.0, 0.0);
    EXPECT_NEAR(AnglesOf(camera).elevation, -89.0, 1e-6);
    EXPECT_NEAR(AnglesOf(camera).azimuth, 90.0, 1e-4); // acos(0)
    EXPECT_NEAR(camera.GetViewVector().Length(), 5.0, 1e-12);
}

TEST(CameraAround, PutsTheWorldsYAxisUpAgain)
{
    Open3DCamera camera;
    camera.SetLookAt(smVec3d(0.0, 0.0, 5.0), smVec3d(), smVec3d(1.0, 0.0, 0.0));
    Step<IACameraAroundCommand>(camera, 0.0, 0.0);
    ExpectNear(camera.GetUp(), smVec3d(0.0, 1.0, 0.0), 1e-9);
}

TEST(CameraAround, KeepsEyeAndDistance)
{
    for (Open3DCamera camera : MixedCameras())
    {
        const smVec3d eye = camera.GetPosition();
        const double distance = camera.GetViewVector().Length();
        Step<IACameraAroundCommand>(camera, 33.0, -12.0);
        EXPECT_EQ(camera.GetPosition(), eye);
        EXPECT_NEAR(camera.GetViewVector().Length(), distance, 1e-12);
    }
}

TEST(CameraAround, HasNothingToUndo)
{
    Open3DCamera camera;
    IACameraAroundCommand command;
    command.SetCamera(&camera);
    command.SaveState();
    command.SetDelta(10.0, 5.0);
    command.Execute();
    const smVec3d target = camera.GetTarget();
    command.Undo();
    EXPECT_EQ(camera.GetTarget(), target);
}

// --- orbiting

TEST(CameraOrbit, MovesTheEyeByTheClosedForm)
{
    // With k and h a tenth of the deltas, the eye lies in the direction
    //   back - k up - h sqrt(1 + k^2) right,
    // and the up vector is that of up - k b, with b = (back - k up) / sqrt(1 + k^2), made a unit vector, less
    // h right, made upright to the view.
    for (const Open3DCamera& before : MixedCameras())
    {
        const Screen screen(before);
        const double distance = before.GetViewVector().Length();
        const double h = 0.3;
        const double k = -0.2;
        Open3DCamera camera = before;
        Step<IACameraOrbitCommand>(camera, 10.0 * h, 10.0 * k);

        const double stretch = std::sqrt(1.0 + k * k);
        const smVec3d back = Unit(screen.back - screen.up * k - screen.right * (h * stretch));
        const smVec3d tilted =
            Unit(screen.up - (screen.back - screen.up * k) * (k / stretch)) - screen.right * h;
        EXPECT_EQ(camera.GetTarget(), before.GetTarget());
        ExpectNear(camera.GetPosition(), before.GetTarget() + back * distance, 1e-12);
        ExpectNear(camera.GetUp(), Across(tilted, back), 1e-13);
    }
}

TEST(CameraOrbit, MovesTheEyeAgainstTheScreensAxes)
{
    Open3DCamera camera = CameraAt(smVec3d(0.0, 0.0, 5.0), smVec3d());
    Step<IACameraOrbitCommand>(camera, 1.0, 0.0);
    // A tenth to the left of a unit vector.
    ExpectNear(camera.GetPosition(), smVec3d(-0.1, 0.0, 1.0) * (5.0 / std::sqrt(1.01)), 1e-14);
    camera = CameraAt(smVec3d(0.0, 0.0, 5.0), smVec3d());
    Step<IACameraOrbitCommand>(camera, 0.0, 1.0);
    ExpectNear(camera.GetPosition(), smVec3d(0.0, -0.1, 1.0) * (5.0 / std::sqrt(1.01)), 1e-14);
}

TEST(CameraOrbit, GoesBackByItsUndo)
{
    Open3DCamera camera;
    camera.SetLookAt(camera.GetPosition(), smVec3d(1.0, 0.0, 0.0), camera.GetUp());
    const Open3DCamera before = camera;
    IACameraOrbitCommand command;
    command.SetCamera(&camera);
    command.SaveState();
    command.SetDelta(3.0, 4.0);
    command.Execute();
    command.Execute();
    command.Undo();
    EXPECT_EQ(camera.GetPosition(), before.GetPosition());
    EXPECT_EQ(camera.GetTarget(), before.GetTarget());
    ExpectNear(camera.GetUp(), before.GetUp(), 1e-15);
}

// --- panning

TEST(CameraMove, MovesEyeAndTargetInThePlaneOfTheScreen)
{
    for (const Open3DCamera& before : MixedCameras())
    {
        const Screen screen(before);
        Open3DCamera camera = before;
        Step<IACameraMoveCommand>(camera, 2.0, -0.5);
        // The camera's first up vector is not at right angles to its view: it is taken as it is.
        const smVec3d step = screen.right * 2.0 - before.GetUp() * 0.5;
        ExpectNear(camera.GetPosition(), before.GetPosition() + step, 1e-13);
        ExpectNear(camera.GetTarget(), before.GetTarget() + step, 1e-13);
        ExpectNear(camera.GetUp(), screen.up, 1e-14);
        EXPECT_NEAR(camera.GetViewVector().Length(), before.GetViewVector().Length(), 1e-13);
    }
}

TEST(CameraMove, GoesBackByItsUndo)
{
    Open3DCamera camera;
    IACameraMoveCommand command;
    command.SetCamera(&camera);
    command.SaveState();
    command.SetDelta(3.0, 4.0);
    command.Execute();
    command.Undo();
    EXPECT_EQ(camera.GetPosition(), smVec3d(10.0, 4.0, 10.0));
    EXPECT_EQ(camera.GetTarget(), smVec3d(0.0, 0.0, 0.0));
}

// --- zooming

TEST(CameraZoom, MovesTheEyeAlongTheView)
{
    Open3DCamera camera = CameraAt(smVec3d(1.0, 1.0, 6.0), smVec3d(1.0, 1.0, 1.0));
    Zoom(camera, 2.5);
    ExpectNear(camera.GetPosition(), smVec3d(1.0, 1.0, 8.5), 1e-15);
    EXPECT_EQ(camera.GetTarget(), smVec3d(1.0, 1.0, 1.0));
    Zoom(camera, -7.0);
    ExpectNear(camera.GetPosition(), smVec3d(1.0, 1.0, 1.5), 1e-15);
}

TEST(CameraZoom, StopsAtTheNearAndAtTheFarPlane)
{
    Open3DCamera camera = CameraAt(smVec3d(0.0, 0.0, 6.0), smVec3d());
    Zoom(camera, -5.95); // 0.05 would be left
    EXPECT_NEAR(camera.GetViewVector().Length(), 0.1F, 1e-15);
    Zoom(camera, -1e9);
    EXPECT_NEAR(camera.GetViewVector().Length(), 0.1F, 1e-15);
    Zoom(camera, 199.95);
    EXPECT_NEAR(camera.GetViewVector().Length(), 200.0, 1e-12);
    Zoom(camera, 1e9);
    EXPECT_NEAR(camera.GetViewVector().Length(), 200.0, 1e-12);
}

TEST(CameraZoom, SetsTargetAndUpVectorBackToTheSnapshot)
{
    Open3DCamera camera = CameraAt(smVec3d(0.0, 0.0, 6.0), smVec3d());
    IACameraZoomCommand command;
    command.SetCamera(&camera);
    command.SaveState();
    camera.SetLookAt(smVec3d(8.0, 0.0, 2.0), smVec3d(8.0, 0.0, -3.0), smVec3d(1.0, 0.0, 0.0));
    command.SetDistance(0.0);
    command.Execute();

    ExpectNear(camera.GetPosition(), smVec3d(0.0, 0.0, 5.0), 1e-15); // the direction and distance of now
    EXPECT_EQ(camera.GetTarget(), smVec3d(0.0, 0.0, 0.0));
    ExpectNear(camera.GetUp(), smVec3d(0.0, 1.0, 0.0), 1e-15);
}

TEST(CameraZoom, GoesBackByItsUndo)
{
    Open3DCamera camera;
    IACameraZoomCommand command;
    command.SetCamera(&camera);
    command.SaveState();
    command.SetDistance(3.0);
    command.Execute();
    command.Execute();
    command.Undo();
    EXPECT_EQ(camera.GetPosition(), smVec3d(10.0, 4.0, 10.0));
}

TEST(CameraZoom, LeavesTheCameraWhereTheStepLeadsToNoView)
{
    const AssertionCapture assertions;
    Open3DCamera camera = CameraAt(smVec3d(0.0, 0.0, 6.0), smVec3d());
    IACameraZoomCommand command;
    command.SetCamera(&camera);
    command.SaveState();
    camera.SetLookAt(smVec3d(0.0, 6.0, 0.0), smVec3d(), smVec3d(0.0, 0.0, 1.0)); // along the kept up vector
    command.SetDistance(1.0);
    EXPECT_THROW(command.Execute(), AssertionFailure);
    EXPECT_EQ(camera.GetPosition(), smVec3d(0.0, 6.0, 0.0));
}

template <class TCommand>
void ExpectAssertionWithoutCamera()
{
    const AssertionCapture assertions;
    TCommand command;
    EXPECT_THROW(command.Execute(), AssertionFailure);
    EXPECT_THROW(command.SaveState(), AssertionFailure);
}

TEST(CameraCommands, NeedACamera)
{
    ExpectAssertionWithoutCamera<IACameraAroundCommand>();
    ExpectAssertionWithoutCamera<IACameraOrbitCommand>();
    ExpectAssertionWithoutCamera<IACameraMoveCommand>();
    ExpectAssertionWithoutCamera<IACameraZoomCommand>();
}
}
}
