#include "HullCarver.h"

namespace tessarine
{
namespace
{
constexpr unsigned kDepthBits = 8;
constexpr std::uint32_t kDepthMask = (1U << kDepthBits) - 1;
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
    const PixelAxis across(silhouette.GetWidth());
    const PixelAxis down(silhouette.GetHeight());
    const double moveX = view.At(3, 0);
    const double moveY = view.At(3, 1);
    float* const values = m_Field.GetValues().data();
    std::uint32_t* kept = m_Left.data();
    for (const std::uint32_t point : m_Left)
    {
        const std::uint32_t index = point >> kDepthBits;
        const PlanePart& column = m_Columns[index];
        const PlanePart& depth = m_Depths[point & kDepthMask];
        const double x = across.ToPixel(column.x + depth.x + moveX);
        const double y = down.ToPixel(column.y + depth.y + moveY);
        float& value = values[index * DistanceField::kCountZ + (point & kDepthMask)];
        if (!across.IsInside(x) || !down.IsInside(y))
        {
            value = DistanceField::kOutside;
            continue;
        }
        const int pixelX = static_cast<int>(x);
        const int pixelY = static_cast<int>(y);
        if (!silhouette.CannotExceed(pixelX, pixelY, value))
        {
            const float distance = silhouette.GetDistance(pixelX, pixelY);
            value = value < distance ? distance : value;
        }
        *kept = point;
        kept += value < DistanceField::kOutside ? 1 : 0;
    }
    m_Left.resize(static_cast<std::size_t>(kept - m_Left.data()));
}

/// The sums of products in the order in which a point is multiplied by a matrix, so that they round alike.
void HullCarver::ProjectGrid(const smMatrix44d& view)
{
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
