#pragma once
#include "Distance2D.h"
#include "DistanceField.h"
#include <array>
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

    /// Has the layer ready soon. For speed alone.
    void Prefetch(int x, int y) const { __builtin_prefetch(m_pLayers + (std::ptrdiff_t{y} * m_nWidth + x)); }

    /// The distance in units of the plane, above zero outside; 1000 and -1000 beyond the layers.
    float GetDistance(int x, int y) const
    {
        const std::int32_t layer = GetLayer(x, y);
        if (layer > kOutermostTraced)
        {
            return DistanceField::kOutside;
        }
        return layer < -kOutermostTraced ? DistanceField::kInside : TraceDistance(x, y);
    }

    /// Whether a distance of this layer cannot be above `value`: true in few cases where it could not, false where it
    /// might.
    ///
    /// A pixel of layer n is between n / sqrt(2) and n * sqrt(2) pixels from the outline; the factors leave room for
    /// rounding.
    bool CannotExceed(int x, int y, float value) const
    {
        constexpr float kMost = 1.41422F;
        constexpr float kLeast = 0.7071F;
        const std::int32_t layer = GetLayer(x, y);
        if (layer < -kOutermostTraced)
        {
            return true;
        }
        const float farthest = static_cast<float>(layer) * (layer > 0 ? kMost : kLeast);
        return layer <= kOutermostTraced && value * m_fScale >= farthest && IsWithinReach(x, y);
    }

private:
    static constexpr int kOutermostTraced = kMostLayers - 1;
    static constexpr int kRings = 2;
    /// From a pixel with this margin no trace comes to the border, where layers do not lead to the outline.
    static constexpr int kReach = kMostLayers + 2 + kRings;

    bool IsWithinReach(int x, int y) const
    {
        return x >= kReach && y >= kReach && x < m_nWidth - kReach && y < m_nHeight - kReach;
    }
    float TraceDistance(int x, int y) const;
    /// The square of the distance to the outline, in pixels.
    template <bool isWithinReach>
    int TraceOutline(int x, int y) const;
    struct Trace;
    template <class TIsInside>
    bool StepDown(Trace& trace, TIsInside isInside) const;

    int m_nWidth;
    int m_nHeight;
    const std::int32_t* m_pLayers;
    float m_fScale;                          ///< pixels a unit
    std::array<std::ptrdiff_t, 8> m_Steps{}; ///< to the neighbours of a pixel
};
}
