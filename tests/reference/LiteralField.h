#pragma once
#include "smMatrix44d.h"
#include <cstdint>
#include <vector>

namespace tessarine
{
/// The 3D field as it is defined: every point of the grid is projected into every view and traced afresh.
class LiteralField
{
public:
    LiteralField();

    void AddView(const smMatrix44d& view, int width, int height, const std::vector<std::int32_t>& layers);

    const std::vector<float>& GetValues() const { return m_Values; }

private:
    std::vector<float> m_Values;
};

/// The value of one point in one view.
float GetValueLiterally(const smVec3d& point, const smMatrix44d& view, int width, int height,
                        const std::vector<std::int32_t>& layers);
}
