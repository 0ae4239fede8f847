#pragma once
#include "Assert.h"
#include "CExcp.h"
#include "smVec4f.h"
#include <cmath>

namespace tessarine
{
/// Ten times the double's machine epsilon: what a divisor or a length must exceed.
inline constexpr double smVec4d_zero = 2.220446049250313e-15;

/// Four doubles: a homogeneous point, or a row or a column of a matrix.
/// Every binary operation takes a smVec4f on either side as well; the float is widened first.
///
/// Fails   Division by a scalar, or by w, within smVec4d_zero of zero reports its assertion and throws
///         CExcpDivideZero.
///         A length not above smVec4d_zero makes Normalize report its assertion, and divide all the same.
///         An index outside 0 to 3 is an assertion.
class smVec4d
{
public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 0.0;

    constexpr smVec4d() = default;
    constexpr smVec4d(double xValue, double yValue, double zValue, double wValue)
        : x(xValue), y(yValue), z(zValue), w(wValue)
    {
    }
    /// Implicit: the mixed forms rest on it.
    constexpr smVec4d(const smVec4f& v) : x(v.x), y(v.y), z(v.z), w(v.w) {}

    double& operator[](int nIndex)
    {
        ASSERT(nIndex >= 0 && nIndex < 4);
        return nIndex < 2 ? (nIndex == 0 ? x : y) : (nIndex == 2 ? z : w);
    }
    const double& operator[](int nIndex) const
    {
        ASSERT(nIndex >= 0 && nIndex < 4);
        return nIndex < 2 ? (nIndex == 0 ? x : y) : (nIndex == 2 ? z : w);
    }

    smVec4d operator-() const { return {-x, -y, -z, -w}; }

    smVec4d& operator+=(const smVec4d& other)
    {
        x += other.x;
        y += other.y;
        z += other.z;
        w += other.w;
        return *this;
    }
    smVec4d& operator-=(const smVec4d& other)
    {
        x -= other.x;
        y -= other.y;
        z -= other.z;
        w -= other.w;
        return *this;
    }
    smVec4d& operator*=(double t)
    {
        x *= t;
        y *= t;
        z *= t;
        w *= t;
        return *this;
    }
    smVec4d& operator/=(double t)
    {
        ASSERT_VALUE(t > smVec4d_zero || t < -smVec4d_zero);
        if (!(t > smVec4d_zero || t < -smVec4d_zero))
        {
            throw CExcpDivideZero();
        }
        x /= t;
        y /= t;
        z /= t;
        w /= t;
        return *this;
    }

    friend smVec4d operator+(smVec4d a, const smVec4d& b) { return a += b; }
    friend smVec4d operator-(smVec4d a, const smVec4d& b) { return a -= b; }
    friend smVec4d operator*(smVec4d v, double t) { return v *= t; }
    friend smVec4d operator*(double t, smVec4d v) { return v *= t; }
    friend smVec4d operator/(smVec4d v, double t) { return v /= t; }

    double Dot(const smVec4d& other) const { return x * other.x + y * other.y + z * other.z + w * other.w; }

    /// Over all four components.
    double Length() const { return std::sqrt(x * x + y * y + z * z + w * w); }

    void Normalize()
    {
        const double l = Length();
        ASSERT_VALUE(l > smVec4d_zero);
        x /= l;
        y /= l;
        z /= l;
        w /= l;
    }

    /// The homogeneous division: x, y, z by w, which becomes 1.
    void Homogenize()
    {
        ASSERT_VALUE(w > smVec4d_zero || w < -smVec4d_zero);
        if (!(w > smVec4d_zero || w < -smVec4d_zero))
        {
            throw CExcpDivideZero();
        }
        x /= w;
        y /= w;
        z /= w;
        w = 1.0;
    }

    /// Each component lies at or above the low corner's and at or below the high corner's.
    bool IsInBox(const smVec4d& low, const smVec4d& high) const
    {
        return x >= low.x && y >= low.y && z >= low.z && w >= low.w && x <= high.x && y <= high.y &&
               z <= high.z && w <= high.w;
    }
};

inline double smVec4f::Dot(const smVec4d& other) const
{
    return smVec4d(*this).Dot(other);
}

inline bool smVec4f::IsInBox(const smVec4d& low, const smVec4d& high) const
{
    return smVec4d(*this).IsInBox(low, high);
}
}
