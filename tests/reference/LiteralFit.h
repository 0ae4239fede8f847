#pragma once
#include "FootSearch.h"
#include <string>
#include <vector>

namespace tessarine
{
/// One search for a foot as it is defined: the tree made anew from the positions as they stand, the ring around each
/// vertex walked, and each face measured. Prints the number of candidates into `console`.
std::optional<Foot> FindFootLiterally(DSSolid& solid, const FootVariant& variant, const smVec3d& point,
                                      std::string& console);

/// The whole fit by energy: what it prints, and the new positions.
struct LiteralEnergyFit
{
    std::string console;
    std::vector<smVec3d> positions;
    std::vector<smVec3d> projected;
};
LiteralEnergyFit FitByEnergyLiterally(DSSolid& solid, const std::vector<smVec3d>& cloud);
}
