#pragma once
#include "smVec3d.h"
#include <cstddef>
#include <vector>

namespace tessarine
{
/// Samples of a signed distance on a regular grid: below zero inside the hull of a body. The grid spans -1.2 to 1.2
/// in x and y, and -4 to 4 in z, so that a body need not be centred in depth.
class DistanceField
{
public:
    static constexpr int kCountX = 61;
    static constexpr int kCountY = 61;
    static constexpr int kCountZ = 201;
    static constexpr double kLowX = -1.2;
    static constexpr double kLowY = -1.2;
    static constexpr double kLowZ = -4.0;
    static constexpr double kStep = 0.04;

    /// No distance is larger.
    static constexpr float kOutside = 1000.0F;
    static constexpr float kInside = -1000.0F;

    /// Outside on the faces of the block, inside everywhere else.
    DistanceField();

    float GetValue(int i, int j, int k) const { return m_Values[ToIndex(i, j, k)]; }
    void SetValue(int i, int j, int k, float value) { m_Values[ToIndex(i, j, k)] = value; }

    /// The value at the low corner of the cell that a point lies in. Needs a point within the grid (asserted).
    float GetValueAt(const smVec3d& point) const;

    static smVec3d GetPosition(int i, int j, int k)
    {
        return {kLowX + kStep * i, kLowY + kStep * j, kLowZ + kStep * k};
    }

    /// All values, k fastest, i slowest.
    const std::vector<float>& GetValues() const { return m_Values; }
    std::vector<float>& GetValues() { return m_Values; }

    static std::size_t ToIndex(int i, int j, int k)
    {
        return (static_cast<std::size_t>(i) * kCountY + static_cast<std::size_t>(j)) * kCountZ +
               static_cast<std::size_t>(k);
    }

private:
    std::vector<float> m_Values;
};
}
