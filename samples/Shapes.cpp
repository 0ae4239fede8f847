#include "Shapes.h"
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace tessarine
{
namespace
{
Shape Ellipsoid(const smVec3d& centre, const smVec3d& radii)
{
    return [=](const smVec3d& p)
    {
        const smVec3d q = p - centre;
        const smVec3d once(q.x / radii.x, q.y / radii.y, q.z / radii.z);
        const smVec3d twice(once.x / radii.x, once.y / radii.y, once.z / radii.z);
        const double slope = twice.Length();
        const double value = once.Length();
        return slope < 1e-9 ? -std::min({radii.x, radii.y, radii.z}) : value * (value - 1.0) / slope;
    };
}

/// A limb with another radius at each end.
Shape Limb(const smVec3d& from, const smVec3d& to, double radiusFrom, double radiusTo)
{
    return [=](const smVec3d& p)
    {
        const smVec3d way = to - from;
        const double t = std::clamp((p - from).Dot(way) / way.Dot(way), 0.0, 1.0);
        return (p - from - way * t).Length() - (radiusFrom + (radiusTo - radiusFrom) * t);
    };
}

Shape RoundedBox(const smVec3d& halfExtent, double radius)
{
    return [=](const smVec3d& p)
    {
        const smVec3d beyond(std::abs(p.x) - halfExtent.x + radius, std::abs(p.y) - halfExtent.y + radius,
                             std::abs(p.z) - halfExtent.z + radius);
        const smVec3d outside(std::max(beyond.x, 0.0), std::max(beyond.y, 0.0), std::max(beyond.z, 0.0));
        return outside.Length() + std::min(std::max({beyond.x, beyond.y, beyond.z}), 0.0) - radius;
    };
}

double GetDistanceToSegment(const smVec3d& p, const smVec3d& from, const smVec3d& to)
{
    const smVec3d way = to - from;
    const double t = std::clamp((p - from).Dot(way) / way.Dot(way), 0.0, 1.0);
    return (p - from - way * t).Length();
}

/// A triangle of some thickness.
Shape Membrane(const smVec3d& a, const smVec3d& b, const smVec3d& c, double halfThickness)
{
    return [=](const smVec3d& p)
    {
        const smVec3d normal = (b - a).Cross(c - a);
        const auto isBeside = [&](const smVec3d& from, const smVec3d& to)
        { return (to - from).Cross(normal).Dot(p - from) > 0.0; };
        const bool isAbove = !isBeside(a, b) && !isBeside(b, c) && !isBeside(c, a);
        const double distance = isAbove
                                    ? std::abs((p - a).Dot(normal)) / normal.Length()
                                    : std::min({GetDistanceToSegment(p, a, b), GetDistanceToSegment(p, b, c),
                                                GetDistanceToSegment(p, c, a)});
        return distance - halfThickness;
    };
}

/// Joined so that the seams are rounded, by about the blend.
Shape Joined(std::vector<Shape> parts, double blend)
{
    return [parts = std::move(parts), blend](const smVec3d& p)
    {
        double joined = parts.front()(p);
        for (std::size_t i = 1; i < parts.size(); ++i)
        {
            const double part = parts[i](p);
            const double overlap = std::max(blend - std::abs(joined - part), 0.0) / blend;
            joined = std::min(joined, part) - overlap * overlap * blend * 0.25;
        }
        return joined;
    };
}

/// The parts and their mirror images.
Shape OnBothSides(Shape shape)
{
    return [shape = std::move(shape)](const smVec3d& p) { return shape({std::abs(p.x), p.y, p.z}); };
}
}

Shape MakeBoxShape()
{
    return RoundedBox({1.0, 0.7, 0.8}, 0.2);
}

Shape MakeBunnyShape()
{
    return OnBothSides(Joined({Ellipsoid({0, -0.35, -0.1}, {0.46, 0.52, 0.58}),           // body
                               Ellipsoid({0, 0.28, 0.34}, {0.3, 0.29, 0.34}),             // head
                               Limb({0.13, 0.46, 0.3}, {0.26, 0.98, 0.1}, 0.1, 0.085),    // ear
                               Ellipsoid({0.36, -0.62, 0.02}, {0.2, 0.27, 0.38}),         // thigh
                               Limb({0.34, -0.82, 0.08}, {0.34, -0.84, 0.42}, 0.11, 0.1), // foot
                               Limb({0.17, -0.3, 0.4}, {0.17, -0.82, 0.46}, 0.12, 0.09),  // front leg
                               Ellipsoid({0, -0.52, -0.66}, {0.16, 0.16, 0.16}),          // tail
                               Ellipsoid({0.1, 0.2, 0.6}, {0.11, 0.1, 0.1})},             // cheek
                              0.14));
}

Shape MakeDragonShape()
{
    return OnBothSides(Joined({Limb({0, 0, -0.3}, {0, 0.06, 0.3}, 0.26, 0.28),             // body
                               Limb({0, 0.15, 0.42}, {0, 0.55, 0.72}, 0.19, 0.13),         // neck
                               Limb({0, 0.62, 0.76}, {0, 0.58, 1.05}, 0.16, 0.09),         // head
                               Limb({0.07, 0.72, 0.72}, {0.14, 0.92, 0.56}, 0.055, 0.03),  // horn
                               Limb({0, -0.02, -0.5}, {0, -0.2, -0.95}, 0.2, 0.11),        // tail
                               Limb({0, -0.2, -0.95}, {0, -0.02, -1.3}, 0.11, 0.05),       // and its end
                               Limb({0.18, -0.1, 0.3}, {0.3, -0.6, 0.36}, 0.13, 0.09),     // front leg
                               Limb({0.3, -0.6, 0.36}, {0.3, -0.64, 0.52}, 0.09, 0.07),    // its foot
                               Limb({0.2, -0.1, -0.34}, {0.32, -0.6, -0.36}, 0.16, 0.1),   // hind leg
                               Limb({0.32, -0.6, -0.36}, {0.32, -0.64, -0.18}, 0.1, 0.07), // its foot
                               Limb({0.12, 0.22, 0.2}, {0.72, 0.78, 0.1}, 0.08, 0.055),    // arm of the wing
                               Membrane({0.16, 0.2, 0.22}, {0.74, 0.78, 0.1}, {0.62, 0.3, -0.5}, 0.045),
                               Membrane({0.16, 0.2, 0.22}, {0.62, 0.3, -0.5}, {0.12, 0.16, -0.3}, 0.045),
                               Membrane({0.74, 0.78, 0.1}, {1.1, 0.5, -0.3}, {0.62, 0.3, -0.5}, 0.045)},
                              0.1));
}

Shape MakeHorseShape()
{
    return OnBothSides(Joined({Limb({0, 0.1, -0.42}, {0, 0.08, 0.36}, 0.27, 0.27),       // body
                               Limb({0, 0.22, 0.48}, {0, 0.66, 0.78}, 0.19, 0.13),       // neck
                               Limb({0, 0.7, 0.8}, {0, 0.46, 1.06}, 0.14, 0.09),         // head
                               Limb({0.06, 0.8, 0.74}, {0.08, 0.92, 0.72}, 0.045, 0.03), // ear
                               Limb({0.15, 0.0, 0.42}, {0.16, -0.45, 0.44}, 0.13, 0.08), // front leg
                               Limb({0.16, -0.45, 0.44}, {0.16, -0.88, 0.42}, 0.08, 0.065),
                               Limb({0.16, -0.88, 0.42}, {0.16, -0.93, 0.5}, 0.07, 0.075), // its hoof
                               Limb({0.16, 0.04, -0.48}, {0.17, -0.4, -0.52}, 0.17, 0.09), // hind leg
                               Limb({0.17, -0.4, -0.52}, {0.17, -0.88, -0.6}, 0.09, 0.065),
                               Limb({0.17, -0.88, -0.6}, {0.17, -0.93, -0.52}, 0.07, 0.075), // its hoof
                               Limb({0, 0.24, -0.66}, {0, -0.3, -0.9}, 0.08, 0.1)},          // tail
                              0.1));
}

Shape MakeManShape()
{
    return OnBothSides(Joined({Ellipsoid({0, 0.78, 0.02}, {0.15, 0.19, 0.17}),                // head
                               Limb({0, 0.62, 0}, {0, 0.45, 0}, 0.08, 0.1),                   // neck
                               Limb({0, 0.36, 0}, {0, -0.02, 0}, 0.21, 0.17),                 // trunk
                               Limb({0.16, 0.42, 0}, {0.48, 0.2, 0}, 0.1, 0.07),              // arm
                               Limb({0.48, 0.2, 0}, {0.72, 0.38, 0.06}, 0.07, 0.055),         // forearm
                               Ellipsoid({0.77, 0.43, 0.08}, {0.075, 0.08, 0.06}),            // hand
                               Limb({0.11, -0.08, 0}, {0.17, -0.5, 0.02}, 0.13, 0.085),       // thigh
                               Limb({0.17, -0.5, 0.02}, {0.19, -0.9, -0.02}, 0.085, 0.06),    // shin
                               Limb({0.19, -0.93, -0.03}, {0.22, -0.94, 0.16}, 0.06, 0.055)}, // foot
                              0.08));
}

smVec3d GetNormal(const Shape& shape, const smVec3d& point)
{
    constexpr double kStep = 1e-5;
    smVec3d normal(shape(point + smVec3d(kStep, 0, 0)) - shape(point - smVec3d(kStep, 0, 0)),
                   shape(point + smVec3d(0, kStep, 0)) - shape(point - smVec3d(0, kStep, 0)),
                   shape(point + smVec3d(0, 0, kStep)) - shape(point - smVec3d(0, 0, kStep)));
    normal.Normalize();
    return normal;
}

smVec3d MoveToSurface(const Shape& shape, smVec3d point)
{
    constexpr int kSteps = 4;
    for (int step = 0; step < kSteps; ++step)
    {
        point -= GetNormal(shape, point) * shape(point);
    }
    return point;
}
}
