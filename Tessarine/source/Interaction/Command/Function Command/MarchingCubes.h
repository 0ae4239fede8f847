#pragma once
#include "CubeTables.h"
#include "smVec3f.h"
#include <array>
#include <vector>

namespace tessarine
{
class DistanceField;

/// A cell of a grid: its corners and the values there. See CubeTables for their order.
struct GridCell
{
    std::array<smVec3f, kCubeCorners> p;
    std::array<float, kCubeCorners> val{};
};

/// A triangle of an isosurface, of which the side with the higher values is the back. Its points are what single
/// precision holds.
struct MCTriangle
{
    std::array<smVec3f, 3> p;
};

/// A soup ends where another cell might not find room.
inline constexpr std::size_t kMostTriangles = 1000000;

/// Where the level lies between two points, computed in double precision and rounded once.
/// Kept    The middle, where the values are nearly equal, and where one is zero exactly: a surface does not go
///         through a grid point that lies on it.
smVec3f InterpolateVertex(float isoLevel, const smVec3f& p1, const smVec3f& p2, float f1, float f2);

/// Appends the triangles of one cell. A corner whose value is strictly below the level lies inside.
/// Says    "same vertex: (" for each pair of corners at one place. The triangle stays.
/// @return how many
int Polygonise(const GridCell& cell, float isoLevel, std::vector<MCTriangle>& triangles);

/// Appends the triangles of all cells, k fastest.
/// Says    "Generate triangles mesh ok..", unless the soup has no more room: it is then cut off.
void GenerateMesh(const DistanceField& field, float isoLevel, std::vector<MCTriangle>& triangles);
}
