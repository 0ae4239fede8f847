#include "IAProjectionCommand.h"
#include "Assert.h"
#include "Failure.h"
#include "FailureText.h"
#include "FreeList.h"
#include "IAPointCloud.h"
#include "IODatasetCameras.h"
#include "IODatasetImages.h"
#include "IODatasetText.h"
#include "Open3DView.h"
#include "VertexRun.h"
#include <GL/gl.h>
#include <GL/glu.h>

namespace tessarine
{
namespace
{
constexpr char kPointFile[] = "Data\\man.data";
constexpr char kViewFile[] = "data1\\param.data";
constexpr char kImageFolder[] = "data1\\";

constexpr int kFirstElevation = -50;
constexpr int kEndOfElevations = 90;
constexpr int kElevationStep = 30;
constexpr int kEndOfAzimuths = 360;
constexpr int kAzimuthStep = 20;
constexpr double kRadiansOfADegree = 0.017453292519943295;
constexpr float kPointSize = 6.0F;

/// A box of 4 around the origin, seen along the z axis from 1 on.
void PrepareFrame()
{
    constexpr double kHalf = 2.0;
    glViewport(0, 0, IAProjectionCommand::kFrameWidth, IAProjectionCommand::kFrameHeight);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-kHalf, kHalf, -kHalf, kHalf, -kHalf, kHalf);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    gluLookAt(0, 0, 1, 0, 0, 0, 0, 1, 0);
    glClearColor(0, 0, 0, 0);
    glClearDepth(1.0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

/// What has become of the folder where not all is written.
std::string DescribeImages(int written)
{
    return (written == 0 ? std::string("; no image is new")
                         : "; new are the images 1 to " + std::to_string(written)) +
           ", and the list of views was not written";
}
}

void IAProjectionCommand::Execute()
{
    ASSERT(m_pView != nullptr);
    LoadPoints();
    SampleViews();
    FreeList(m_Points);
}

smMatrix44d IAProjectionCommand::MakeView(int elevation, int azimuth)
{
    // A rotation takes row vectors the other way round.
    return MakeRotationY(-azimuth * kRadiansOfADegree) * MakeRotationX(-elevation * kRadiansOfADegree);
}

void IAProjectionCommand::LoadPoints()
{
    IODatasetText file(kPointFile);
    ASSERT_VALUE(file.IsOpen()); // the reader tells what is missing
    IAPointCloud cloud;
    cloud.ReadLabelledPoints(file);
    cloud.Unitize(file.GetName());
    m_Points = std::move(cloud.m_Points);
}

void IAProjectionCommand::SampleViews() const
{
    IOViewFile views(kViewFile, kFrameWidth, kFrameHeight);
    int written = 0;
    try
    {
        SampleInto(views, written);
        views.Commit(written);
    }
    catch (...)
    {
        throw Failure(DescribeFailure() + DescribeImages(written));
    }
}

void IAProjectionCommand::SampleInto(IOViewFile& views, int& written) const
{
    Image frame{kFrameWidth, kFrameHeight, 3, {}};
    for (int elevation = kFirstElevation; elevation < kEndOfElevations; elevation += kElevationStep)
    {
        for (int azimuth = 0; azimuth < kEndOfAzimuths; azimuth += kAzimuthStep)
        {
            const smMatrix44d view = MakeView(elevation, azimuth);
            views.AddView(view);
            m_pView->DrawApart(frame, [&] { DrawPoints(view); });
            WriteDatasetImage(frame, kImageFolder, written + 1);
            ++written;
        }
    }
}

void IAProjectionCommand::DrawPoints(const smMatrix44d& view) const
{
    PrepareFrame();
    glPushAttrib(GL_LIGHTING_BIT);
    glDisable(GL_LIGHTING);
    glPointSize(kPointSize);
    glColor3f(1, 1, 1);
    {
        VertexRun<PlainCorner> points(GL_POINTS);
        for (const smVec3d& point : m_Points)
        {
            points.AddPoint({ToSingle(point * view)});
        }
    }
    glEnable(GL_LIGHTING);
    glPopAttrib();
}
}
