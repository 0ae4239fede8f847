#include "IAGenerateSplatCommand.h"
#include "Assert.h"
#include "ErrorLine.h"
#include "Failure.h"
#include "IODatasetCameras.h"
#include "IODatasetImages.h"
#include "IODatasetUnitizing.h"
#include "MANSceneManager.h"
#include "MarkerPixels.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
namespace
{
constexpr char kMarkedCameras[] = "data\\man\\param.dat";
constexpr char kUnitizingFile[] = "data\\man\\unitize.dat";
constexpr char kMarkedFolder[] = "data\\man\\";

/// The place of a pixel on the plane of the view, in its units.
PlanePoint ToViewPlane(const Pixel& pixel, const Image& image, const IODatasetUnitizing& unitizing)
{
    const double pixelsAcross = image.width / (2.0 * unitizing.m_nHalfWidth);
    const double pixelsDown = image.height / (2.0 * unitizing.m_nHalfHeight);
    return {pixel.x / pixelsAcross - unitizing.m_nHalfWidth, pixel.y / pixelsDown - unitizing.m_nHalfHeight};
}

/// In single precision.
smVec3d ToUnitFrame(const smVec3d& point, const IODatasetUnitizing& unitizing)
{
    const smVec3f single(static_cast<float>(point.x), static_cast<float>(point.y),
                         static_cast<float>(point.z));
    return unitizing.m_fUnitizeScale * (single - unitizing.m_UnitizeCenter);
}

void CheckReach(const CutFace& splat, const IODatasetUnitizing& unitizing)
{
    const auto isFinite = [](const smVec3d& corner)
    { return std::isfinite(corner.x) && std::isfinite(corner.y) && std::isfinite(corner.z); };
    if (!std::all_of(splat.begin(), splat.end(), isFinite))
    {
        throw Failure(unitizing.m_strFile + ", line " + std::to_string(unitizing.m_nScaleLine) +
                      ": with this centre and scale a cut face lies beyond single precision");
    }
}
}

void IAGenerateSplatCommand::Execute()
{
    ASSERT(m_pSceneManager != nullptr);
    const IODatasetCameras cameras = ReadCameras(kMarkedCameras);
    const IODatasetUnitizing unitizing = ReadUnitizing(kUnitizingFile);
    bool hasMarkers = false;
    for (int view = 0; view < cameras.GetImageCount(); ++view)
    {
        const Image image = ReadDatasetImage(kMarkedFolder, view + 1, cameras.m_nImageWidth,
                                             cameras.m_nImageHeight, cameras.GetSizeSource());
        const std::vector<Pixel> ends = FindMarkerEnds(image);
        if (ends.empty())
        {
            continue;
        }
        hasMarkers = true;
        CutFace splat = MakeCutFace(ToViewPlane(ends[0], image, unitizing),
                                    ToViewPlane(ends[1], image, unitizing), cameras.GetInverse(view));
        for (smVec3d& corner : splat)
        {
            corner = ToUnitFrame(corner, unitizing);
        }
        CheckReach(splat, unitizing);
        m_pSceneManager->GetCutFaceList().push_back(splat);
    }
    if (!hasMarkers)
    {
        PrintErrorLine(
            "no image of data/man has a marker (a pixel without red and with green), so there is no cut "
            "face to add: draw lines in pure green where to cut, outside of the silhouette's red");
    }
}
}
