#include "HullCarver.h"
#include <algorithm>
#include <array>

namespace tessarine
{
namespace
{
constexpr unsigned kDepthBits = 8;
constexpr std::uint32_t kDepthMask = (1U << kDepthBits) - 1;
constexpr std::size_t kBatch = 128; ///< points whose places are found before the layers there are read
static_assert(DistanceField::kCountZ <= 1 << kDepthBits);

/// The pixels of a plane's coordinate. A place is in a range of pixels where its fraction is; truncation goes toward
/// zero, so that a little before the first pixel is in it as well.
class PixelAxis
{
public:
    /// @param count of pixels; the last one counts as outside
    explicit PixelAxis(int count)
        : m_dScale(double{static_cast<float>(count) / 2.4F}), m_dMiddle(count >> 1), m_dEnd(count - 1)
    {
    }

    double ToPixel(double place) const { return place * m_dScale + m_dMiddle; }
    bool IsInside(double pixel) const { return pixel > -1.0 && pixel < m_dEnd; }

private:
    double m_dScale;
    double m_dMiddle;
    double m_dEnd;
};
}

HullCarver::HullCarver(DistanceField& field)
    : m_Field(field),
      m_Columns(std::size_t{DistanceField::kCountX} * DistanceField::kCountY),
      m_Depths(DistanceField::kCountZ)
{
    const std::vector<float>& values = field.GetValues();
    for (std::uint32_t column = 0; column < m_Columns.size(); ++column)
    {
        for (std::uint32_t k = 0; k < DistanceField::kCountZ; ++k)
        {
            if (values[column * DistanceField::kCountZ + k] < DistanceField::kOutside)
            {
                m_Left.push_back(column << kDepthBits | k);
            }
        }
    }
}

void HullCarver::AddView(const smMatrix44d& view, const SilhouetteDistance& silhouette)
{
    ProjectGrid(view);
    std::size_t kept = 0;
    std::array<PixelPlace, kBatch> places;
    for (std::size_t begin = 0; begin < m_Left.size(); begin += kBatch)
    {
        const std::size_t end = std::min(begin + kBatch, m_Left.size());
        FindPlaces(begin, end, silhouette, places.data());
        for (std::size_t n = begin; n < end; ++n)
        {
            const std::uint32_t point = m_Left[n];
            const PixelPlace& place = places[n - begin];
            float& value =
                m_Field.GetValues()[(point >> kDepthBits) * DistanceField::kCountZ + (point & kDepthMask)];
            if (place.x < 0)
            {
                value = DistanceField::kOutside;
                continue;
            }
            if (!silhouette.CannotExceed(place.x, place.y, value))
            {
                value = std::max(value, silhouette.GetDistance(place.x, place.y));
            }
            m_Left[kept] = point;
            kept += value < DistanceField::kOutside ? 1 : 0;
        }
    }
    m_Left.resize(kept);
}

/// Where the points from `begin` on are seen. Nothing here waits for the layers, which are fetched meanwhile.
void HullCarver::FindPlaces(std::size_t begin, std::size_t end, const SilhouetteDistance& silhouette,
                            PixelPlace* places) const
{
    const PixelAxis across(silhouette.GetWidth());
    const PixelAxis down(silhouette.GetHeight());
    for (std::size_t n = begin; n < end; ++n, ++places)
    {
        const PlanePart& column = m_Columns[m_Left[n] >> kDepthBits];
        const PlanePart& depth = m_Depths[m_Left[n] & kDepthMask];
        const double x = across.ToPixel(column.x + depth.x + m_Move.x);
        const double y = down.ToPixel(column.y + depth.y + m_Move.y);
        *places = {-1, -1};
        if (across.IsInside(x) && down.IsInside(y))
        {
            *places = {static_cast<int>(x), static_cast<int>(y)};
            silhouette.Prefetch(places->x, places->y);
        }
    }
}

/// The sums of products in the order in which a point is multiplied by a matrix, so that they round alike.
void HullCarver::ProjectGrid(const smMatrix44d& view)
{
    m_Move = {view.At(3, 0), view.At(3, 1)};
    for (int i = 0; i < DistanceField::kCountX; ++i)
    {
        for (int j = 0; j < DistanceField::kCountY; ++j)
        {
            const smVec3d point = DistanceField::GetPosition(i, j, 0);
            m_Columns[static_cast<std::size_t>(i) * DistanceField::kCountY + static_cast<std::size_t>(j)] = {
                point.x * view.At(0, 0) + point.y * view.At(1, 0),
                point.x * view.At(0, 1) + point.y * view.At(1, 1)};
        }
    }
    for (int k = 0; k < DistanceField::kCountZ; ++k)
    {
        const double z = DistanceField::GetPosition(0, 0, k).z;
        m_Depths[static_cast<std::size_t>(k)] = {z * view.At(2, 0), z * view.At(2, 1)};
    }
}
}
