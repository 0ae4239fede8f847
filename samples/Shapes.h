#pragma once
#include "smVec3d.h"
#include <functional>

namespace tessarine
{
/// A body by a function that is negative inside, zero on its surface, and grows about as fast as the
/// distance. Only additions, products, divisions and square roots are in it, so that every machine makes the
/// same body.
using Shape = std::function<double(const smVec3d& point)>;

/// A box with rounded edges.
Shape MakeBoxShape();
/// A sitting animal with long ears.
Shape MakeBunnyShape();
/// An animal with wings and a long tail.
Shape MakeDragonShape();
/// An animal on four legs.
Shape MakeHorseShape();
/// A figure that stands upright, its arms held out.
Shape MakeManShape();

/// The direction in which the function grows, of unit length.
smVec3d GetNormal(const Shape& shape, const smVec3d& point);

/// The point of the surface that is reached along the normals.
smVec3d MoveToSurface(const Shape& shape, smVec3d point);
}
