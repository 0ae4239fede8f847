#include "SolidNormalization.h"
#include "Assert.h"
#include "DSBrep.h"
#include "Failure.h"
#include <algorithm>
#include <cmath>
#include <limits>

namespace tessarine
{
namespace
{
struct CornerBox
{
    smVec3d low;
    smVec3d high;

    void Widen(const smVec3d& p)
    {
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
};

bool FitsSinglePrecision(const smVec3d& p)
{
    constexpr double kLargest = std::numeric_limits<float>::max();
    return std::abs(p.x) <= kLargest && std::abs(p.y) <= kLargest && std::abs(p.z) <= kLargest;
}

[[noreturn]] void RefuseCoordinates()
{
    throw Failure(
        "the model's coordinates are too large or too small to be scaled into the unit cube, or no numbers: "
        "mend them in the file and import again");
}

CornerBox FindBox(const DSSolid& solid)
{
    const smVec3d& first = solid.GetVertexList()[0]->GetPosition();
    CornerBox box{first, first};
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        ASSERT(pVertex != nullptr);
        if (!FitsSinglePrecision(pVertex->GetPosition()))
        {
            RefuseCoordinates();
        }
        box.Widen(pVertex->GetPosition());
    }
    return box;
}

float RoundMoveAndScale(double value, double centre, double scale)
{
    const auto rounded = static_cast<float>(value);
    const auto moved = static_cast<float>(rounded - centre);
    return static_cast<float>(moved * scale);
}
}

void NormalizeSolid(DSSolid& solid)
{
    if (solid.GetVertexList().empty())
    {
        return;
    }
    const CornerBox box = FindBox(solid);
    const smVec3d centre = (box.high + box.low) / 2.0;
    const smVec3d extent = box.high - box.low;
    const double longest = std::max({extent.x, extent.y, extent.z});
    const double scale = longest > 0.0 ? 2.0 / longest : 1.0;
    if (!std::isfinite(scale))
    {
        RefuseCoordinates();
    }
    for (DSVertex* pVertex : solid.GetVertexList())
    {
        const smVec3d& p = pVertex->GetPosition();
        pVertex->SetPosition(RoundMoveAndScale(p.x, centre.x, scale), RoundMoveAndScale(p.y, centre.y, scale),
                             RoundMoveAndScale(p.z, centre.z, scale));
    }
}
}
