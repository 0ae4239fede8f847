#pragma once
#include "Assert.h"
#include "CExcp.h"
#include "smVec3f.h"
#include <cmath>

namespace tessarine
{
/// Ten times the double's machine epsilon: what a divisor or a length must exceed.
inline constexpr double smVec3d_zero = 2.220446049250313e-15;

/// Three doubles: a position, a direction or a normal.
/// Every binary operation takes a smVec3f on either side as well; the float is widened first.
///
/// Fails   Division by a scalar within smVec3d_zero of zero reports its assertion and throws CExcpDivideZero.
///         A length not above smVec3d_zero makes Normalize report its assertion, and divide all the same.
///         An index outside 0 to 2 is an assertion.
class smVec3d
{
public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    constexpr smVec3d() = default;
    constexpr smVec3d(double xValue, double yValue, double zValue) : x(xValue), y(yValue), z(zValue) {}

    /// Implicit: the mixed forms rest on it.
    constexpr smVec3d(const smVec3f& v) : x(v.x), y(v.y), z(v.z) {}

    double& operator[](int nIndex)
    {
        ASSERT(nIndex >= 0 && nIndex < 3);
        return nIndex == 0 ? x : (nIndex == 1 ? y : z);
    }
    const double& operator[](int nIndex) const
    {
        ASSERT(nIndex >= 0 && nIndex < 3);
        return nIndex == 0 ? x : (nIndex == 1 ? y : z);
    }

    smVec3d operator-() const { return {-x, -y, -z}; }

    smVec3d& operator+=(const smVec3d& other)
    {
        x += other.x;
        y += other.y;
        z += other.z;
        return *this;
    }
    smVec3d& operator-=(const smVec3d& other)
    {
        x -= other.x;
        y -= other.y;
        z -= other.z;
        return *this;
    }
    smVec3d& operator*=(double t)
    {
        x *= t;
        y *= t;
        z *= t;
        return *this;
    }
    smVec3d& operator/=(double t)
    {
        ASSERT_VALUE(t > smVec3d_zero || t < -smVec3d_zero);
        if (!(t > smVec3d_zero || t < -smVec3d_zero))
        {
            throw CExcpDivideZero();
        }
        x /= t;
        y /= t;
        z /= t;
        return *this;
    }

    friend smVec3d operator+(smVec3d a, const smVec3d& b) { return a += b; }
    friend smVec3d operator-(smVec3d a, const smVec3d& b) { return a -= b; }
    friend smVec3d operator*(smVec3d v, double t) { return v *= t; }
    friend smVec3d operator*(double t, smVec3d v) { return v *= t; }
    friend smVec3d operator/(smVec3d v, double t) { return v /= t; }

    double Dot(const smVec3d& other) const { return x * other.x + y * other.y + z * other.z; }

    smVec3d Cross(const smVec3d& other) const
    {
        return {y * other.z - z * other.y, z * other.x - x * other.z, x * other.y - y * other.x};
    }

    double Length() const { return std::sqrt(x * x + y * y + z * z); }

    void Normalize()
    {
        const double t = Length();
        ASSERT_VALUE(t > smVec3d_zero);
        x /= t;
        y /= t;
        z /= t;
    }

    /// Each component lies at or above the low corner's and at or below the high corner's.
    bool IsInBox(const smVec3d& low, const smVec3d& high) const
    {
        return x >= low.x && y >= low.y && z >= low.z && x <= high.x && y <= high.y && z <= high.z;
    }
};

inline double smVec3f::Dot(const smVec3d& other) const
{
    return smVec3d(*this).Dot(other);
}

inline smVec3d smVec3f::Cross(const smVec3d& other) const
{
    return smVec3d(*this).Cross(other);
}

inline bool smVec3f::IsInBox(const smVec3d& low, const smVec3d& high) const
{
    return smVec3d(*this).IsInBox(low, high);
}
}
