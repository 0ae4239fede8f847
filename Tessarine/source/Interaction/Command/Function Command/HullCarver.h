#pragma once
#include "DistanceField.h"
#include "SilhouetteDistance.h"
#include "smMatrix44d.h"
#include <cstdint>
#include <vector>

namespace tessarine
{
/// Takes silhouettes into a distance field, view by view: each grid point keeps the largest distance that any view
/// gives it, so that only what all views see inside stays inside.
///
/// A point that a view sees outside of its image, or far outside, has the largest distance there is, and is not
/// looked at again: the work of a view is linear in the points that are left.
class HullCarver
{
public:
    /// The field outlives the carver, and nothing else writes it meanwhile.
    explicit HullCarver(DistanceField& field);

    /// @param view see IODatasetCameras
    void AddView(const smMatrix44d& view, const SilhouetteDistance& silhouette);

private:
    /// Of a pixel; below zero outside of the image.
    struct PixelPlace
    {
        int x;
        int y;
    };

    void ProjectGrid(const smMatrix44d& view);
    void FindPlaces(std::size_t begin, std::size_t end, const SilhouetteDistance& silhouette,
                    PixelPlace* places) const;

    /// A part of a position on the image plane: what does not depend on depth, or what does.
    struct PlanePart
    {
        double x;
        double y;
    };

    DistanceField& m_Field;
    std::vector<std::uint32_t> m_Left; ///< column of the grid, and depth in the last eight bits
    std::vector<PlanePart> m_Columns;
    std::vector<PlanePart> m_Depths;
    PlanePart m_Move{}; ///< of all points
};
}
