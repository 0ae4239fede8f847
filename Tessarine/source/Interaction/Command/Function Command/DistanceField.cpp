#include "DistanceField.h"
#include "Assert.h"
#include <algorithm>

namespace tessarine
{
namespace
{
bool IsRim(int index, int count)
{
    return index == 0 || index == count - 1;
}

/// The step of the grid below a coordinate, toward zero.
int ToStep(double coordinate, double low, int count)
{
    const double step = (coordinate - low) / DistanceField::kStep;
    ASSERT(step > -1.0 && step < count);
    return static_cast<int>(step);
}
}

DistanceField::DistanceField() : m_Values(ToIndex(kCountX, 0, 0), kInside)
{
    for (int i = 0; i < kCountX; ++i)
    {
        for (int j = 0; j < kCountY; ++j)
        {
            const bool isRim = IsRim(i, kCountX) || IsRim(j, kCountY);
            SetValue(i, j, 0, kOutside);
            SetValue(i, j, kCountZ - 1, kOutside);
            std::fill_n(m_Values.begin() + static_cast<std::ptrdiff_t>(ToIndex(i, j, 0)), isRim ? kCountZ : 1,
                        kOutside);
        }
    }
}

float DistanceField::GetValueAt(const smVec3d& point) const
{
    return GetValue(ToStep(point.x, kLowX, kCountX), ToStep(point.y, kLowY, kCountY),
                    ToStep(point.z, kLowZ, kCountZ));
}
}
