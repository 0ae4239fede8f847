#pragma once
#include "Assert.h"
#include "CExcp.h"
#include "smVec3d.h"
#include "smVec4d.h"
#include <array>
#include <cmath>
#include <utility>

namespace tessarine
{
/// Ten times the double's machine epsilon: what a divisor must exceed.
inline constexpr double smMatrix44d_zero = 2.220446049250313e-15;

/// Sixteen doubles, column by column: the element at row r, column c stands at position r + 4 * c, as OpenGL
/// takes it. Vectors are columns: a translation stands in positions 12, 13, 14.
///
/// Units   Angles are radians.
/// Fails   A row or column outside 0 to 3 is an assertion. Division by a scalar within smMatrix44d_zero of
///         zero reports its assertion, and divides all the same. Invert throws CExcpSingularMatrix; v * M in
///         its four-component form throws CExcpDivideZero.
class smMatrix44d
{
public:
    /// All zero, or the identity.
    explicit smMatrix44d(bool bIdentity = false)
    {
        if (bIdentity)
        {
            Identity();
        }
    }

    /// Row by row.
    smMatrix44d(double m00, double m01, double m02, double m03, //
                double m10, double m11, double m12, double m13, //
                double m20, double m21, double m22, double m23, //
                double m30, double m31, double m32, double m33)
        : m_Elements{m00, m10, m20, m30, m01, m11, m21, m31, m02, m12, m22, m32, m03, m13, m23, m33}
    {
    }

    /// The sixteen elements in their stored order.
    const double* GetData() const { return m_Elements.data(); }

    double& At(int nRow, int nCol)
    {
        CheckRow(nRow);
        CheckColumn(nCol);
        return Element(nRow, nCol);
    }
    const double& At(int nRow, int nCol) const
    {
        CheckRow(nRow);
        CheckColumn(nCol);
        return Element(nRow, nCol);
    }

    smVec4d GetRow(int nRow) const
    {
        CheckRow(nRow);
        return {Element(nRow, 0), Element(nRow, 1), Element(nRow, 2), Element(nRow, 3)};
    }
    void SetRow(int nRow, const smVec4d& row)
    {
        CheckRow(nRow);
        Element(nRow, 0) = row.x;
        Element(nRow, 1) = row.y;
        Element(nRow, 2) = row.z;
        Element(nRow, 3) = row.w;
    }
    smVec4d GetColumn(int nCol) const
    {
        CheckColumn(nCol);
        return {Element(0, nCol), Element(1, nCol), Element(2, nCol), Element(3, nCol)};
    }
    void SetColumn(int nCol, const smVec4d& column)
    {
        CheckColumn(nCol);
        Element(0, nCol) = column.x;
        Element(1, nCol) = column.y;
        Element(2, nCol) = column.z;
        Element(3, nCol) = column.w;
    }

    /// What remains without one row and one column, column by column.
    std::array<double, 9> GetMinor(int nExcludedRow, int nExcludedCol) const;

    /// The upper-left 3x3 block, column by column.
    std::array<double, 9> GetUpperLeft() const { return GetMinor(3, 3); }

    void Identity();

    smMatrix44d& operator+=(const smMatrix44d& other);
    smMatrix44d& operator-=(const smMatrix44d& other);
    smMatrix44d& operator*=(double t);
    smMatrix44d& operator/=(double t);
    smMatrix44d& operator*=(const smMatrix44d& other) { return *this = *this * other; }

    friend smMatrix44d operator+(smMatrix44d a, const smMatrix44d& b) { return a += b; }
    friend smMatrix44d operator-(smMatrix44d a, const smMatrix44d& b) { return a -= b; }
    friend smMatrix44d operator*(smMatrix44d m, double t) { return m *= t; }
    friend smMatrix44d operator*(double t, smMatrix44d m) { return m *= t; }
    friend smMatrix44d operator/(smMatrix44d m, double t) { return m /= t; }
    friend smMatrix44d operator*(const smMatrix44d& a, const smMatrix44d& b);

    /// The row form with a homogeneous division: x, y, z are divided by the resulting w, which stays.
    friend smVec4d operator*(const smVec4d& v, const smMatrix44d& m);

    /// The row form for a point with w = 1, without division: it adds row 3, not the translation in column 3.
    friend smVec3d operator*(const smVec3d& v, const smMatrix44d& m);

    void Transpose();
    void Transpose(smMatrix44d& target) const;

    /// Gauss-Jordan elimination with pivoting. False, and the target as it was, when a pivot is zero exactly.
    /// The target may be the source.
    static bool Inverse(const smMatrix44d& source, smMatrix44d& target);
    void Invert();

    /// The elementary matrices in place of this one.
    void SetRotationX(double angle) { SetPlaneRotation(angle, 1, 2); }
    void SetRotationY(double angle) { SetPlaneRotation(angle, 2, 0); }
    void SetRotationZ(double angle) { SetPlaneRotation(angle, 0, 1); }
    /// About an axis through the origin, of any length that Normalize takes.
    void SetRotation(double angle, smVec3d axis);
    void SetTranslation(const smVec3d& v);
    void SetTranslation(double x, double y, double z) { SetTranslation(smVec3d(x, y, z)); }
    void SetScale(const smVec3d& v);
    void SetScale(double x, double y, double z) { SetScale(smVec3d(x, y, z)); }
    void SetScale(double factor) { SetScale(smVec3d(factor, factor, factor)); }

    /// The elementary matrices multiplied from the left onto this one.
    void RotateX(double angle);
    void RotateY(double angle);
    void RotateZ(double angle);
    void Rotate(double angle, const smVec3d& axis);
    void Translate(const smVec3d& v);
    void Scale(const smVec3d& v);

private:
    static void CheckRow(int nRow)
    {
        // clang-format off
        ASSERT(nRow >=0 && nRow <= 3);
        // clang-format on
    }
    static void CheckColumn(int nCol)
    {
        // clang-format off
        ASSERT(nCol >=0 && nCol <= 3);
        // clang-format on
    }

    static std::size_t Position(int nRow, int nCol)
    {
        return static_cast<std::size_t>(nRow) + 4 * static_cast<std::size_t>(nCol);
    }
    double& Element(int nRow, int nCol) { return m_Elements[Position(nRow, nCol)]; }
    const double& Element(int nRow, int nCol) const { return m_Elements[Position(nRow, nCol)]; }

    void SetPlaneRotation(double angle, int nFrom, int nTo);
    int FindPivotColumn(int nRow) const;
    void SwapColumns(int nFirst, int nSecond);
    void EliminateAround(int nPivot);
    void PermuteRows(const std::array<int, 4>& newRows);

    std::array<double, 16> m_Elements{};
};

inline std::array<double, 9> smMatrix44d::GetMinor(int nExcludedRow, int nExcludedCol) const
{
    // clang-format off
    ASSERT(nExcludedRow >=0 && nExcludedRow <= 3);
    ASSERT(nExcludedCol >=0 && nExcludedCol <= 3);
    // clang-format on
    std::array<double, 9> remaining{};
    auto next = remaining.begin();
    for (int c = 0; c < 3; ++c)
    {
        for (int r = 0; r < 3; ++r)
        {
            *next++ = Element(r < nExcludedRow ? r : r + 1, c < nExcludedCol ? c : c + 1);
        }
    }
    return remaining;
}

inline void smMatrix44d::Identity()
{
    m_Elements = {1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0};
}

inline smMatrix44d& smMatrix44d::operator+=(const smMatrix44d& other)
{
    for (std::size_t i = 0; i < 16; ++i)
    {
        m_Elements[i] += other.m_Elements[i];
    }
    return *this;
}

inline smMatrix44d& smMatrix44d::operator-=(const smMatrix44d& other)
{
    for (std::size_t i = 0; i < 16; ++i)
    {
        m_Elements[i] -= other.m_Elements[i];
    }
    return *this;
}

inline smMatrix44d& smMatrix44d::operator*=(double t)
{
    for (double& element : m_Elements)
    {
        element *= t;
    }
    return *this;
}

inline smMatrix44d& smMatrix44d::operator/=(double t)
{
    ASSERT_VALUE(t > smMatrix44d_zero || t < -smMatrix44d_zero);
    for (double& element : m_Elements)
    {
        element /= t;
    }
    return *this;
}

inline smMatrix44d operator*(const smMatrix44d& a, const smMatrix44d& b)
{
    smMatrix44d product;
    for (int c = 0; c < 4; ++c)
    {
        for (int r = 0; r < 4; ++r)
        {
            product.Element(r, c) = a.Element(r, 0) * b.Element(0, c) + a.Element(r, 1) * b.Element(1, c) +
                                    a.Element(r, 2) * b.Element(2, c) + a.Element(r, 3) * b.Element(3, c);
        }
    }
    return product;
}

inline smVec4d operator*(const smVec4d& v, const smMatrix44d& m)
{
    const double w = v.Dot(m.GetColumn(3));
    if (std::abs(w) <= smMatrix44d_zero)
    {
        throw CExcpDivideZero();
    }
    return {v.Dot(m.GetColumn(0)) / w, v.Dot(m.GetColumn(1)) / w, v.Dot(m.GetColumn(2)) / w, w};
}

inline smVec3d operator*(const smVec3d& v, const smMatrix44d& m)
{
    const smVec4d point(v.x, v.y, v.z, 1.0);
    return {point.Dot(m.GetColumn(0)), point.Dot(m.GetColumn(1)), point.Dot(m.GetColumn(2))};
}

inline void smMatrix44d::Transpose()
{
    for (int c = 1; c < 4; ++c)
    {
        for (int r = 0; r < c; ++r)
        {
            std::swap(Element(r, c), Element(c, r));
        }
    }
}

inline void smMatrix44d::Transpose(smMatrix44d& target) const
{
    target = *this;
    target.Transpose();
}

inline bool smMatrix44d::Inverse(const smMatrix44d& source, smMatrix44d& target)
{
    smMatrix44d work = source;
    work.Transpose();
    std::array<int, 4> permutation{0, 1, 2, 3};
    for (int k = 0; k < 4; ++k)
    {
        const int p = work.FindPivotColumn(k);
        if (work.Element(k, p) == 0.0) // exactly: a pivot of 1e-300 is a pivot
        {
            return false;
        }
        work.SwapColumns(k, p);
        std::swap(permutation[static_cast<std::size_t>(k)], permutation[static_cast<std::size_t>(p)]);
        work.EliminateAround(k);
    }
    work.PermuteRows(permutation);
    work.Transpose();
    target = work;
    return true;
}

/// The column, from the diagonal on, with the largest square in this row; the first of equal ones.
inline int smMatrix44d::FindPivotColumn(int nRow) const
{
    int nBest = nRow;
    for (int b = nRow + 1; b < 4; ++b)
    {
        if (Element(nRow, b) * Element(nRow, b) > Element(nRow, nBest) * Element(nRow, nBest))
        {
            nBest = b;
        }
    }
    return nBest;
}

inline void smMatrix44d::SwapColumns(int nFirst, int nSecond)
{
    for (int a = 0; a < 4; ++a)
    {
        std::swap(Element(a, nFirst), Element(a, nSecond));
    }
}

inline void smMatrix44d::EliminateAround(int nPivot)
{
    const double inverse = 1.0 / Element(nPivot, nPivot);
    Element(nPivot, nPivot) = inverse;
    for (int b = 0; b < 4; ++b)
    {
        if (b == nPivot)
        {
            continue;
        }
        Element(nPivot, b) = Element(nPivot, b) * -inverse;
        for (int a = 0; a < 4; ++a)
        {
            if (a != nPivot)
            {
                Element(a, b) = Element(a, b) + Element(nPivot, b) * Element(a, nPivot);
            }
        }
    }
    for (int a = 0; a < 4; ++a)
    {
        if (a != nPivot)
        {
            Element(a, nPivot) = inverse * Element(a, nPivot);
        }
    }
}

/// Row a goes to row newRows[a].
inline void smMatrix44d::PermuteRows(const std::array<int, 4>& newRows)
{
    const smMatrix44d old = *this;
    for (int a = 0; a < 4; ++a)
    {
        SetRow(newRows[static_cast<std::size_t>(a)], old.GetRow(a));
    }
}

inline void smMatrix44d::Invert()
{
    if (!Inverse(*this, *this))
    {
        throw CExcpSingularMatrix();
    }
}

inline void smMatrix44d::SetPlaneRotation(double angle, int nFrom, int nTo)
{
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    Identity();
    Element(nFrom, nFrom) = cosine;
    Element(nTo, nFrom) = sine;
    Element(nFrom, nTo) = -sine;
    Element(nTo, nTo) = cosine;
}

inline void smMatrix44d::SetRotation(double angle, smVec3d axis)
{
    axis.Normalize();
    const auto [x, y, z] = axis;
    const smMatrix44d outer(x * x, x * y, x * z, 0.0, //
                            y * x, y * y, y * z, 0.0, //
                            z * x, z * y, z * z, 0.0, //
                            0.0, 0.0, 0.0, 0.0);
    const smMatrix44d block(1.0, 0.0, 0.0, 0.0, //
                            0.0, 1.0, 0.0, 0.0, //
                            0.0, 0.0, 1.0, 0.0, //
                            0.0, 0.0, 0.0, 0.0);
    const smMatrix44d skew(0.0, -z, y, 0.0, //
                           z, 0.0, -x, 0.0, //
                           -y, x, 0.0, 0.0, //
                           0.0, 0.0, 0.0, 0.0);
    *this = outer + std::cos(angle) * (block - outer) + std::sin(angle) * skew;
    Element(3, 3) = 1.0;
}

inline void smMatrix44d::SetTranslation(const smVec3d& v)
{
    Identity();
    SetColumn(3, smVec4d(v.x, v.y, v.z, 1.0));
}

inline void smMatrix44d::SetScale(const smVec3d& v)
{
    Identity();
    Element(0, 0) = v.x;
    Element(1, 1) = v.y;
    Element(2, 2) = v.z;
}

inline smMatrix44d MakeRotationX(double angle)
{
    smMatrix44d matrix;
    matrix.SetRotationX(angle);
    return matrix;
}

inline smMatrix44d MakeRotationY(double angle)
{
    smMatrix44d matrix;
    matrix.SetRotationY(angle);
    return matrix;
}

inline smMatrix44d MakeRotationZ(double angle)
{
    smMatrix44d matrix;
    matrix.SetRotationZ(angle);
    return matrix;
}

inline smMatrix44d MakeRotation(double angle, const smVec3d& axis)
{
    smMatrix44d matrix;
    matrix.SetRotation(angle, axis);
    return matrix;
}

inline smMatrix44d MakeTranslation(const smVec3d& v)
{
    smMatrix44d matrix;
    matrix.SetTranslation(v);
    return matrix;
}

inline smMatrix44d MakeTranslation(double x, double y, double z)
{
    return MakeTranslation(smVec3d(x, y, z));
}

inline smMatrix44d MakeScale(const smVec3d& v)
{
    smMatrix44d matrix;
    matrix.SetScale(v);
    return matrix;
}

inline smMatrix44d MakeScale(double x, double y, double z)
{
    return MakeScale(smVec3d(x, y, z));
}

inline smMatrix44d MakeScale(double factor)
{
    return MakeScale(smVec3d(factor, factor, factor));
}

inline void smMatrix44d::RotateX(double angle)
{
    *this = MakeRotationX(angle) * *this;
}

inline void smMatrix44d::RotateY(double angle)
{
    *this = MakeRotationY(angle) * *this;
}

inline void smMatrix44d::RotateZ(double angle)
{
    *this = MakeRotationZ(angle) * *this;
}

inline void smMatrix44d::Rotate(double angle, const smVec3d& axis)
{
    *this = MakeRotation(angle, axis) * *this;
}

inline void smMatrix44d::Translate(const smVec3d& v)
{
    for (int c = 0; c < 4; ++c)
    {
        Element(0, c) += v.x * Element(3, c);
        Element(1, c) += v.y * Element(3, c);
        Element(2, c) += v.z * Element(3, c);
    }
}

inline void smMatrix44d::Scale(const smVec3d& v)
{
    *this = MakeScale(v) * *this;
}
}
