#include "coord.h"
#include "Console.h"
#include <cmath>

namespace tessarine
{
namespace
{
constexpr double kZero = 1e-14;
}

Coord operator/(const Coord& a, double t)
{
    if (std::abs(t) < kZero)
    {
        DebugConsole() << "Coord Error: Divided by Zero\n";
        return a;
    }
    return {a.x / t, a.y / t, a.z / t};
}

double Coord::Length() const
{
    return std::sqrt(Dot(*this));
}

Coord Coord::Unit() const
{
    const double length = Length();
    if (length < kZero)
    {
        DebugConsole() << "Coord Error: unit, divided by zero\n";
        return *this;
    }
    return *this / length;
}

bool Coord::Normalize()
{
    const double length = Length();
    if (length < kZero)
    {
        DebugConsole() << "Coord Error: normalize, divided by zero\n";
        return false;
    }
    *this = *this / length;
    return true;
}

Coord Coord::Rotated(const Coord& axis, const Coord& point, double angle) const
{
    Coord direction = axis;
    if (!direction.Normalize())
    {
        return *this;
    }
    const Coord arm = *this - point;
    const double cosine = std::cos(angle);
    const Coord along = direction * (direction.Dot(arm) * (1.0 - cosine));
    return point + arm * cosine + direction.Cross(arm) * std::sin(angle) + along;
}

Coord2D operator/(const Coord2D& a, double t)
{
    if (std::abs(t) < kZero)
    {
        DebugConsole() << "Coord2D Error: divided by zero\n";
        return a;
    }
    return {a.x / t, a.y / t};
}

double Coord2D::Length() const
{
    return std::sqrt(Dot(*this));
}

Coord2D Coord2D::Unit() const
{
    const double length = Length();
    if (length < kZero)
    {
        DebugConsole() << "Coord2D Error: unit, divided by zero\n";
        return *this;
    }
    return *this / length;
}

bool Coord2D::Normalize()
{
    const double length = Length();
    if (length < kZero)
    {
        DebugConsole() << "Coord2D Error: normalize, divided by zero\n";
        return false;
    }
    *this = *this / length;
    return true;
}

Coord2D Coord2D::Rotated(const Coord2D& point, double angle) const
{
    const Coord2D arm = *this - point;
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    return {point.x + arm.x * cosine - arm.y * sine, point.y + arm.x * sine + arm.y * cosine};
}
}
