#pragma once
#include "smVec3d.h"
#include <string>
#include <vector>

namespace tessarine
{
class DSSolid;
class EigenTable;

/// The dual mesh of a solid over a cloud as it is defined: its vertices where they end, its faces in the order in
/// which they are walked, and the console up to the builder's lines.
struct LiteralDual
{
    std::string console;
    std::vector<smVec3d> positions;
    std::vector<std::vector<int>> faces; ///< places of positions
    std::vector<int> cloudIndices;
};
LiteralDual BuildDualLiterally(DSSolid& solid, const std::vector<smVec3d>& cloud);

/// What a fit prints, and where it leaves the vertices. The solid stays.
struct LiteralSmoothFit
{
    std::string console;
    std::vector<smVec3d> positions;
};
LiteralSmoothFit FitVerticesLiterally(const DSSolid& solid, const std::vector<smVec3d>& cloud);

/// Each sample evaluated with a projection of its own, and added to the matrix entry by entry.
LiteralSmoothFit FitLimitSurfaceLiterally(DSSolid& solid, const std::vector<smVec3d>& cloud,
                                          const EigenTable& table);
}
