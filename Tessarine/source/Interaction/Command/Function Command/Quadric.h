#pragma once
#include "smVec3f.h"

namespace tessarine
{
/// The sum of the squared distances to planes, as a symmetric 4 x 4 matrix of floats of which the upper
/// triangle is kept, row by row.
///
/// Source  M. Garland and P. Heckbert 1997.
struct Quadric
{
    float m00 = 0.0F;
    float m01 = 0.0F;
    float m02 = 0.0F;
    float m03 = 0.0F;
    float m11 = 0.0F;
    float m12 = 0.0F;
    float m13 = 0.0F;
    float m22 = 0.0F;
    float m23 = 0.0F;
    float m33 = 0.0F;

    /// The plane of the points p with normal . p + d = 0.
    void AddPlane(const smVec3f& normal, float d)
    {
        m00 += normal.x * normal.x;
        m01 += normal.x * normal.y;
        m02 += normal.x * normal.z;
        m03 += normal.x * d;
        m11 += normal.y * normal.y;
        m12 += normal.y * normal.z;
        m13 += normal.y * d;
        m22 += normal.z * normal.z;
        m23 += normal.z * d;
        m33 += d * d;
    }

    Quadric& operator+=(const Quadric& other)
    {
        m00 += other.m00;
        m01 += other.m01;
        m02 += other.m02;
        m03 += other.m03;
        m11 += other.m11;
        m12 += other.m12;
        m13 += other.m13;
        m22 += other.m22;
        m23 += other.m23;
        m33 += other.m33;
        return *this;
    }
};
}
