#pragma once
#include "smVec3d.h"
#include <array>
#include <cstdint>
#include <vector>

namespace tessarine
{
using LiteralTriangle = std::array<smVec3d, 3>;

/// The surface of a field's samples (61 x 61 x 201) as it is defined: every cell in turn, each edge interpolated from
/// what the cell's own corners say.
std::vector<LiteralTriangle> GenerateLiterally(const std::vector<float>& values, float isoLevel);

/// Points and one-based corners of the triangles, by a search through all points for each corner.
struct LiteralWeld
{
    std::vector<smVec3d> vList;
    std::vector<std::int32_t> fv;
    std::vector<std::int32_t> fn;
};
LiteralWeld WeldLiterally(const std::vector<LiteralTriangle>& triangles);

/// An octree over points: each box with the number of its points, in the order of creation.
struct LiteralBox
{
    smVec3d low;
    smVec3d high;
    int depth;
    bool isLeaf;
    std::size_t points;
};
std::vector<LiteralBox> BuildOctreeLiterally(const std::vector<smVec3d>& points);

/// The same of a cloud in the cube from -1 to 1, from the largest corner down, half sizes and bounds in single precision.
std::vector<LiteralBox> BuildCloudOctreeLiterally(const std::vector<smVec3d>& points, int maxDepth,
                                                  std::size_t minPoints);
}
