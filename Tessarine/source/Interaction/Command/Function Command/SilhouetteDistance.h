#pragma once
#include <cstddef>
#include <cstdint>

namespace tessarine
{
/// How far a pixel of a silhouette is from its outline, by the layers of its 2D field (see Distance2D).
///
/// The field spans -1.2 to 1.2 across. A layer is traced to the outline from neighbour to neighbour, and the distance
/// is that to the pixel found or to a nearer one beside it.
/// Kept    One scale for both directions, that of the width. A trace that leads nowhere stays where it began, so that
///         the distance is zero. Neighbours outside the image are passed over.
class SilhouetteDistance
{
public:
    /// @param layers width * height entries, which outlive this
    SilhouetteDistance(int width, int height, const std::int32_t* layers);

    int GetWidth() const { return m_nWidth; }
    int GetHeight() const { return m_nHeight; }
    std::int32_t GetLayer(int x, int y) const { return m_pLayers[std::ptrdiff_t{y} * m_nWidth + x]; }

    /// The distance in units of the plane, above zero outside; 1000 and -1000 beyond the layers.
    float GetDistance(int x, int y) const;

    /// Whether a distance of this layer cannot be above `value`: true in few cases where it could not, false where it
    /// might.
    bool CannotExceed(int x, int y, float value) const;

private:
    bool IsWithinReach(int x, int y) const;
    /// The square of the distance to the outline, in pixels.
    template <bool isWithinReach>
    int TraceOutline(int x, int y) const;
    template <bool isWithinReach>
    bool StepDown(int& x, int& y, bool& found) const;

    int m_nWidth;
    int m_nHeight;
    const std::int32_t* m_pLayers;
    float m_fScale; ///< pixels a unit
};
}
