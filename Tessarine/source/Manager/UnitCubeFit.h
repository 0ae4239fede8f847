#pragma once
#include "DSBrep.h"

namespace tessarine
{
/// How a solid is moved and scaled into the cube from -1 to 1: single precision throughout, each difference
/// and each product rounded, so that the largest extent may miss -1 or 1 by an ulp or more.
///
/// Fails   Coordinates that single precision cannot hold so: Failure, before anything was moved.
class UnitCubeFit
{
public:
    /// An extent of zero leaves the scale at 1, and a solid without vertices the centre at zero, too.
    explicit UnitCubeFit(const DSSolid& solid);

    float GetCentre(int axis) const { return m_fCentre[axis]; }
    float GetScale() const { return m_fScale; }

    void Apply(DSSolid& solid) const;

private:
    float m_fCentre[3] = {0.0F, 0.0F, 0.0F};
    float m_fScale = 1.0F;
};
}
