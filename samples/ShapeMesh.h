#pragma once
#include "Shapes.h"
#include <array>
#include <vector>

namespace tessarine
{
/// A closed mesh of triangles on the surface of a shape, with the corners counterclockwise from outside.
struct ShapeMesh
{
    std::vector<smVec3d> points;
    std::vector<smVec3d> normals; ///< of the shape, one a point
    std::vector<std::array<int, 3>> triangles;
};

/// @param cell about the length of an edge; details that are smaller get lost
ShapeMesh MakeShapeMesh(const Shape& shape, double cell);

/// A cube's centre and half of its edge: what a model fills whose longest side is the edge.
struct UnitFrame
{
    smVec3d centre;
    double half;

    smVec3d ToUnit(const smVec3d& point) const { return (point - centre) * (1.0 / half); }
};

UnitFrame FindUnitFrame(const std::vector<smVec3d>& points);

/// Points spread evenly over the shape, and the mesh's outermost points first, so that both have one box.
/// @param count more than six
std::vector<smVec3d> ScatterPoints(const Shape& shape, const ShapeMesh& mesh, int count);
}
