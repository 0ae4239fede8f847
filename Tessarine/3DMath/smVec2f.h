#pragma once
#include "Assert.h"
#include <cmath>

namespace tessarine
{
/// Two floats: a texture coordinate or a place on the screen.
/// Divides unchecked and has no normalisation.
class smVec2f
{
public:
    float x = 0.0F;
    float y = 0.0F;

    constexpr smVec2f() = default;
    constexpr smVec2f(float xValue, float yValue) : x(xValue), y(yValue) {}

    float& operator[](int nIndex)
    {
        ASSERT(nIndex >= 0 && nIndex < 2);
        return nIndex == 0 ? x : y;
    }
    const float& operator[](int nIndex) const
    {
        ASSERT(nIndex >= 0 && nIndex < 2);
        return nIndex == 0 ? x : y;
    }

    smVec2f operator-() const { return {-x, -y}; }

    smVec2f& operator+=(const smVec2f& other)
    {
        x += other.x;
        y += other.y;
        return *this;
    }
    smVec2f& operator-=(const smVec2f& other)
    {
        x -= other.x;
        y -= other.y;
        return *this;
    }
    smVec2f& operator*=(float t)
    {
        x *= t;
        y *= t;
        return *this;
    }
    smVec2f& operator/=(float t)
    {
        x /= t;
        y /= t;
        return *this;
    }

    friend smVec2f operator+(smVec2f a, const smVec2f& b) { return a += b; }
    friend smVec2f operator-(smVec2f a, const smVec2f& b) { return a -= b; }
    friend smVec2f operator*(smVec2f v, float t) { return v *= t; }
    friend smVec2f operator*(float t, smVec2f v) { return v *= t; }
    friend smVec2f operator/(smVec2f v, float t) { return v /= t; }

    float Dot(const smVec2f& other) const { return x * other.x + y * other.y; }
    float Length() const { return std::sqrt(x * x + y * y); }

    /// Each component lies at or above the low corner's and at or below the high corner's.
    bool IsInBox(const smVec2f& low, const smVec2f& high) const
    {
        return x >= low.x && y >= low.y && x <= high.x && y <= high.y;
    }
};
}
