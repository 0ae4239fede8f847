#pragma once
#include "Assert.h"
#include "CExcp.h"
#include <cmath>

namespace tessarine
{
class smVec4d;

/// Ten times the float's machine epsilon: what a divisor or a length must exceed.
inline constexpr float smVec4f_zero = 1.1920929e-6F;

/// Four floats in float arithmetic: a homogeneous point, or a light's place.
/// Together with a smVec4d it is widened first, and the result is double (see smVec4d.h).
///
/// Fails   Division by a scalar, or by w, within smVec4f_zero of zero reports its assertion and throws
///         CExcpDivideZero.
///         A length not above smVec4f_zero makes Normalize report its assertion, and divide all the same.
///         An index outside 0 to 3 is an assertion.
class smVec4f
{
public:
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;
    float w = 0.0F;

    constexpr smVec4f() = default;
    constexpr smVec4f(float xValue, float yValue, float zValue, float wValue)
        : x(xValue), y(yValue), z(zValue), w(wValue)
    {
    }

    float& operator[](int nIndex)
    {
        ASSERT(nIndex >= 0 && nIndex < 4);
        return nIndex < 2 ? (nIndex == 0 ? x : y) : (nIndex == 2 ? z : w);
    }
    const float& operator[](int nIndex) const
    {
        ASSERT(nIndex >= 0 && nIndex < 4);
        return nIndex < 2 ? (nIndex == 0 ? x : y) : (nIndex == 2 ? z : w);
    }

    smVec4f operator-() const { return {-x, -y, -z, -w}; }

    smVec4f& operator+=(const smVec4f& other)
    {
        x += other.x;
        y += other.y;
        z += other.z;
        w += other.w;
        return *this;
    }
    smVec4f& operator-=(const smVec4f& other)
    {
        x -= other.x;
        y -= other.y;
        z -= other.z;
        w -= other.w;
        return *this;
    }
    smVec4f& operator*=(float t)
    {
        x *= t;
        y *= t;
        z *= t;
        w *= t;
        return *this;
    }
    smVec4f& operator/=(float t)
    {
        ASSERT_VALUE(t > smVec4f_zero || t < -smVec4f_zero);
        if (!(t > smVec4f_zero || t < -smVec4f_zero))
        {
            throw CExcpDivideZero();
        }
        x /= t;
        y /= t;
        z /= t;
        w /= t;
        return *this;
    }

    friend smVec4f operator+(smVec4f a, const smVec4f& b) { return a += b; }
    friend smVec4f operator-(smVec4f a, const smVec4f& b) { return a -= b; }
    friend smVec4f operator*(smVec4f v, float t) { return v *= t; }
    friend smVec4f operator*(float t, smVec4f v) { return v *= t; }
    friend smVec4f operator/(smVec4f v, float t) { return v /= t; }

    float Dot(const smVec4f& other) const { return x * other.x + y * other.y + z * other.z + w * other.w; }
    double Dot(const smVec4d& other) const;

    /// Over all four components.
    float Length() const { return std::sqrt(x * x + y * y + z * z + w * w); }

    void Normalize()
    {
        const float l = Length();
        ASSERT_VALUE(l > smVec4f_zero);
        x /= l;
        y /= l;
        z /= l;
        w /= l;
    }

    /// The homogeneous division: x, y, z by w, which becomes 1.
    void Homogenize()
    {
        ASSERT_VALUE(w > smVec4f_zero || w < -smVec4f_zero);
        if (!(w > smVec4f_zero || w < -smVec4f_zero))
        {
            throw CExcpDivideZero();
        }
        x /= w;
        y /= w;
        z /= w;
        w = 1.0F;
    }

    /// Each component lies at or above the low corner's and at or below the high corner's.
    bool IsInBox(const smVec4f& low, const smVec4f& high) const
    {
        return x >= low.x && y >= low.y && z >= low.z && w >= low.w && x <= high.x && y <= high.y &&
               z <= high.z && w <= high.w;
    }
    bool IsInBox(const smVec4d& low, const smVec4d& high) const;
};
}
