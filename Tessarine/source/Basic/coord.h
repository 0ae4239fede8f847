#pragma once
#include <cmath>

namespace tessarine
{
/// Divisors and lengths below it count as zero.
inline constexpr double Coord_zero = 1e-14;

/// Prints the line of a division that was not carried out.
[[gnu::cold]] void SayCoordError(const char* line);

/// Three doubles: the older point and vector type, which prints a line and goes on where the others throw.
///
/// Says    "Coord Error: ..." when a divisor or a length is below 1e-14; nothing is divided then.
/// Units   Angles are radians.
class Coord
{
public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    constexpr Coord() = default;
    constexpr Coord(double xValue, double yValue, double zValue) : x(xValue), y(yValue), z(zValue) {}

    /// Exact.
    friend bool operator==(const Coord&, const Coord&) = default;

    friend Coord operator+(const Coord& a, const Coord& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend Coord operator-(const Coord& a, const Coord& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend Coord operator*(const Coord& a, double t) { return {a.x * t, a.y * t, a.z * t}; }
    friend Coord operator*(double t, const Coord& a) { return a * t; }

    /// The value as it is when t is below the threshold.
    friend Coord operator/(const Coord& a, double t)
    {
        if (std::abs(t) < Coord_zero)
        {
            SayCoordError("Coord Error: Divided by Zero");
            return a;
        }
        return {a.x / t, a.y / t, a.z / t};
    }

    double Dot(const Coord& other) const { return x * other.x + y * other.y + z * other.z; }
    Coord Cross(const Coord& other) const
    {
        return {y * other.z - z * other.y, z * other.x - x * other.z, x * other.y - y * other.x};
    }
    double Length() const { return std::sqrt(Dot(*this)); }

    /// A copy of length 1, or an unchanged copy.
    Coord Unit() const;

    /// In place. False, and the value as it was, when the length is below the threshold.
    bool Normalize();

    /// Turns about the axis through a point, counter-clockwise seen against the axis.
    /// An axis that cannot be normalised turns nothing.
    Coord Rotated(const Coord& axis, const Coord& point, double angle) const;
    void Rotate(const Coord& axis, const Coord& point, double angle) { *this = Rotated(axis, point, angle); }
};

/// The same with two components.
class Coord2D
{
public:
    double x = 0.0;
    double y = 0.0;

    constexpr Coord2D() = default;
    constexpr Coord2D(double xValue, double yValue) : x(xValue), y(yValue) {}

    /// Exact.
    friend bool operator==(const Coord2D&, const Coord2D&) = default;

    friend Coord2D operator+(const Coord2D& a, const Coord2D& b) { return {a.x + b.x, a.y + b.y}; }
    friend Coord2D operator-(const Coord2D& a, const Coord2D& b) { return {a.x - b.x, a.y - b.y}; }
    friend Coord2D operator*(const Coord2D& a, double t) { return {a.x * t, a.y * t}; }
    friend Coord2D operator*(double t, const Coord2D& a) { return a * t; }

    /// The value as it is when t is below the threshold.
    friend Coord2D operator/(const Coord2D& a, double t)
    {
        if (std::abs(t) < Coord_zero)
        {
            SayCoordError("Coord2D Error: divided by zero");
            return a;
        }
        return {a.x / t, a.y / t};
    }

    double Dot(const Coord2D& other) const { return x * other.x + y * other.y; }
    /// The one component that the cross product has in the plane.
    double Cross(const Coord2D& other) const { return x * other.y - y * other.x; }
    double Length() const { return std::sqrt(Dot(*this)); }

    /// A copy of length 1, or an unchanged copy.
    Coord2D Unit() const;

    /// In place. False, and the value as it was, when the length is below the threshold.
    bool Normalize();

    /// Turns about a point, counter-clockwise.
    Coord2D Rotated(const Coord2D& point, double angle) const;
    void Rotate(const Coord2D& point, double angle) { *this = Rotated(point, angle); }
};

inline Coord Coord::Unit() const
{
    const double length = Length();
    if (length < Coord_zero)
    {
        SayCoordError("Coord Error: unit, divided by zero");
        return *this;
    }
    return *this / length;
}

inline bool Coord::Normalize()
{
    const double length = Length();
    if (length < Coord_zero)
    {
        SayCoordError("Coord Error: normalize, divided by zero");
        return false;
    }
    *this = *this / length;
    return true;
}

inline Coord Coord::Rotated(const Coord& axis, const Coord& point, double angle) const
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

inline Coord2D Coord2D::Unit() const
{
    const double length = Length();
    if (length < Coord_zero)
    {
        SayCoordError("Coord2D Error: unit, divided by zero");
        return *this;
    }
    return *this / length;
}

inline bool Coord2D::Normalize()
{
    const double length = Length();
    if (length < Coord_zero)
    {
        SayCoordError("Coord2D Error: normalize, divided by zero");
        return false;
    }
    *this = *this / length;
    return true;
}

inline Coord2D Coord2D::Rotated(const Coord2D& point, double angle) const
{
    const Coord2D arm = *this - point;
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    return {point.x + arm.x * cosine - arm.y * sine, point.y + arm.x * sine + arm.y * cosine};
}
}
