#pragma once
#include "smVec3f.h"
#include <cmath>
#include <utility>

namespace tessarine
{
/// Solves the four linear equations of the rows by Gauss-Jordan elimination with complete pivoting. The rows and
/// the right-hand side are used up; the latter becomes the solution.
///
/// @return false where a pivot is lost beside 1
inline bool SolveByFullPivoting(float (&rows)[4][4], float (&rhs)[4])
{
    int columns[4];
    for (int i = 0; i < 4; ++i)
    {
        int pivotRow = i;
        int pivotColumn = i;
        float largest = 0.0F;
        for (int row = i; row < 4; ++row)
        {
            for (int column = i; column < 4; ++column)
            {
                if (std::abs(rows[row][column]) > largest)
                {
                    largest = std::abs(rows[row][column]);
                    pivotRow = row;
                    pivotColumn = column;
                }
            }
        }
        const float pivot = rows[pivotRow][pivotColumn];
        if (pivot + 1.0F == 1.0F)
        {
            return false;
        }
        std::swap(rows[i], rows[pivotRow]);
        std::swap(rhs[i], rhs[pivotRow]);
        for (auto& row : rows)
        {
            std::swap(row[i], row[pivotColumn]);
        }
        columns[i] = pivotColumn;
        for (float& entry : rows[i])
        {
            entry /= pivot;
        }
        rhs[i] /= pivot;
        for (int row = 0; row < 4; ++row)
        {
            const float factor = rows[row][i];
            if (row == i || factor == 0.0F)
            {
                continue;
            }
            for (int column = 0; column < 4; ++column)
            {
                rows[row][column] -= factor * rows[i][column];
            }
            rhs[row] -= factor * rhs[i];
        }
    }
    for (int i = 3; i >= 0; --i)
    {
        std::swap(rhs[i], rhs[columns[i]]);
    }
    return true;
}

/// The sum of squared distances to planes, as a symmetric 4 x 4 matrix of floats of which the upper triangle is
/// kept.
///
/// Source  M. Garland and P. Heckbert 1997.
class Quadric
{
public:
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
    friend Quadric operator+(Quadric a, const Quadric& b) { return a += b; }

    float Evaluate(const smVec3f& p) const
    {
        return m33 + 2 * m23 * p.z + m22 * p.z * p.z + 2 * m13 * p.y + 2 * m12 * p.y * p.z + m11 * p.y * p.y +
               2 * m03 * p.x + 2 * m02 * p.x * p.z + 2 * m01 * p.x * p.y + m00 * p.x * p.x;
    }

    /// Finds where the sum is smallest.
    /// @return false where the planes do not tell: they are all parallel to a line, or nearly so
    bool FindMinimum(smVec3f& minimum) const
    {
        constexpr float kLeastDeterminant = 0.01F;
        if (!(std::abs(GetDeterminant()) >= kLeastDeterminant))
        {
            return false;
        }
        float rows[4][4] = {
            {m00, m01, m02, m03}, {m01, m11, m12, m13}, {m02, m12, m22, m23}, {0.0F, 0.0F, 0.0F, 1.0F}};
        float rhs[4] = {0.0F, 0.0F, 0.0F, 1.0F};
        if (!SolveByFullPivoting(rows, rhs))
        {
            return false;
        }
        minimum = {rhs[0], rhs[1], rhs[2]};
        return true;
    }

private:
    /// Of the upper left 3 x 3 block, along the first row.
    float GetDeterminant() const
    {
        return m00 * (m11 * m22 - m12 * m12) - m01 * (m01 * m22 - m12 * m02) + m02 * (m01 * m12 - m11 * m02);
    }

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
};
}
