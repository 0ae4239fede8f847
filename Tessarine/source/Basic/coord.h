#pragma once

namespace tessarine
{
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
    friend Coord operator/(const Coord& a, double t);

    double Dot(const Coord& other) const { return x * other.x + y * other.y + z * other.z; }
    Coord Cross(const Coord& other) const
    {
        return {y * other.z - z * other.y, z * other.x - x * other.z, x * other.y - y * other.x};
    }
    double Length() const;

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
    friend Coord2D operator/(const Coord2D& a, double t);

    double Dot(const Coord2D& other) const { return x * other.x + y * other.y; }
    /// The one component that the cross product has in the plane.
    double Cross(const Coord2D& other) const { return x * other.y - y * other.x; }
    double Length() const;

    /// A copy of length 1, or an unchanged copy.
    Coord2D Unit() const;

    /// In place. False, and the value as it was, when the length is below the threshold.
    bool Normalize();

    /// Turns about a point, counter-clockwise.
    Coord2D Rotated(const Coord2D& point, double angle) const;
    void Rotate(const Coord2D& point, double angle) { *this = Rotated(point, angle); }
};
}
