#pragma once
#include "IACommand.h"
#include "smMatrix44d.h"
#include "smVec3d.h"
#include <vector>

namespace tessarine
{
class IOViewFile;
class Open3DView;

/// Makes silhouettes with known cameras of labelled points: brings "Data\man.data" into the unit cube, draws it
/// from 90 directions as fat white points on black, and writes each frame as a numbered image of 800 x 600
/// pixels into the folder "data1", and the views into "data1\param.data".
///
/// Needs   A view with a surface; the folder, which is not made.
/// Fails   A missing file of points is reported as an assertion, and named (FileError). Failure without a
///         surface, and for points without extent; for an image that does not come to be, which tells those that
///         were. An image or a list of views is there whole or not at all.
/// Kept    The depth reaches from -1 to 3 along the view: points before it vanish.
class IAProjectionCommand : public IACommand
{
public:
    void SetView(Open3DView* pView) { m_pView = pView; }

    void Execute() override;

    static constexpr int kFrameWidth = 800;
    static constexpr int kFrameHeight = 600;

    /// The view from an elevation and an azimuth, in degrees, as a matrix for row vectors.
    static smMatrix44d MakeView(int elevation, int azimuth);

private:
    void LoadPoints();
    void SampleViews() const;
    /// @param written counts the images that are
    void SampleInto(IOViewFile& views, int& written) const;
    void DrawPoints(const smMatrix44d& view) const;

    Open3DView* m_pView = nullptr;
    std::vector<smVec3d> m_Points;
};
}
