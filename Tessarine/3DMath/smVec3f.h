#pragma once
#include "Assert.h"
#include "CExcp.h"
#include <cmath>

namespace tessarine
{
class smVec3d;

/// Ten times the float's machine epsilon: what a divisor or a length must exceed.
inline constexpr float smVec3f_zero = 1.1920929e-6F;

/// Three floats in float arithmetic: a colour.
/// Together with a smVec3d it is widened first, and the result is double (see smVec3d.h).
///
/// Fails   Division by a scalar within smVec3f_zero of zero reports its assertion and throws CExcpDivideZero.
///         A length not above smVec3f_zero makes Normalize report its assertion, and divide all the same.
///         An index outside 0 to 2 is an assertion.
class smVec3f
{
public:
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;

    constexpr smVec3f() = default;
    constexpr smVec3f(float xValue, float yValue, float zValue) : x(xValue), y(yValue), z(zValue) {}

    float& operator[](int nIndex)
    {
        ASSERT(nIndex >= 0 && nIndex < 3);
        return nIndex == 0 ? x : (nIndex == 1 ? y : z);
    }
    const float& operator[](int nIndex) const
    {
        ASSERT(nIndex >= 0 && nIndex < 3);
        return nIndex == 0 ? x : (nIndex == 1 ? y : z);
    }

    smVec3f operator-() const { return {-x, -y, -z}; }

    smVec3f& operator+=(const smVec3f& other)
    {
        x += other.x;
        y += other.y;
        z += other.z;
        return *this;
    }
    smVec3f& operator-=(const smVec3f& other)
    {
        x -= other.x;
        y -= other.y;
        z -= other.z;
        return *this;
    }
    smVec3f& operator*=(float t)
    {
        x *= t;
        y *= t;
        z *= t;
        return *this;
    }
    smVec3f& operator/=(float t)
    {
        // clang-format off
        ASSERT_VALUE(t > smVec3f_zero || t < - smVec3f_zero);
        // clang-format on
        if (!(t > smVec3f_zero || t < -smVec3f_zero))
        {
            throw CExcpDivideZero();
        }
        x /= t;
        y /= t;
        z /= t;
        return *this;
    }

    friend smVec3f operator+(smVec3f a, const smVec3f& b) { return a += b; }
    friend smVec3f operator-(smVec3f a, const smVec3f& b) { return a -= b; }
    friend smVec3f operator*(smVec3f v, float t) { return v *= t; }
    friend smVec3f operator*(float t, smVec3f v) { return v *= t; }
    friend smVec3f operator/(smVec3f v, float t) { return v /= t; }

    float Dot(const smVec3f& other) const { return x * other.x + y * other.y + z * other.z; }
    double Dot(const smVec3d& other) const;

    smVec3f Cross(const smVec3f& other) const
    {
        return {y * other.z - z * other.y, z * other.x - x * other.z, x * other.y - y * other.x};
    }
    smVec3d Cross(const smVec3d& other) const;

    float Length() const { return std::sqrt(x * x + y * y + z * z); }

    void Normalize()
    {
        const float t = Length();
        ASSERT_VALUE(t > smVec3f_zero);
        x /= t;
        y /= t;
        z /= t;
    }

    /// Each component lies at or above the low corner's and at or below the high corner's.
    bool IsInBox(const smVec3f& low, const smVec3f& high) const
    {
        return x >= low.x && y >= low.y && z >= low.z && x <= high.x && y <= high.y && z <= high.z;
    }
    bool IsInBox(const smVec3d& low, const smVec3d& high) const;
};
}
