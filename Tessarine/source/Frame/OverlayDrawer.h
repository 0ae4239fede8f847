#pragma once
#include "smVec3d.h"
#include <array>
#include <vector>

namespace tessarine
{
class OCTNODE;

/// What the commands leave to be shown over the scene. Each operation needs a current context, and turns
/// lighting on at its end.

/// Reports the assertion of every child that is null.
void CheckOctree(const OCTNODE& root);

/// The boxes of the leaves. A child that is null is passed over.
void DrawOctree(const OCTNODE& root);

void DrawPointCloud(const std::vector<smVec3d>& points);

/// A short line from each point along its normal; from those that have one.
void DrawPointNormals(const std::vector<smVec3d>& points, const std::vector<smVec3d>& normals);

void DrawProjectedPoints(const std::vector<smVec3d>& points);

/// A stippled line from each point to its projection.
///
/// Needs   Lists of one size.
void DrawProjectionLines(const std::vector<smVec3d>& points, const std::vector<smVec3d>& projections);

/// A quadrilateral by its outline.
void DrawQuad(const std::array<smVec3d, 4>& corners);
}
