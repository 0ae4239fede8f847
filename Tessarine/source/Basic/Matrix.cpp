#include "Matrix.h"
#include "Assert.h"
#include "Console.h"
#include "GVF.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <exception>

namespace tessarine
{
Matrix::Matrix(int nRows, int nColumns)
{
    const bool isAllocated = Resize(nRows, nColumns);
    ASSERT(isAllocated);
}

Matrix& Matrix::operator=(const Matrix& other)
{
    if (this == &other)
    {
        return *this;
    }
    ASSERT(HasShapeOf(other));
    std::copy(other.m_Data.begin(), other.m_Data.end(), m_Data.begin());
    return *this;
}

bool Matrix::Resize(int nRows, int nColumns)
{
    m_Data = {};
    m_nRows = nRows;
    m_nColumns = nColumns;
    if (nRows <= 0 || nColumns <= 0)
    {
        return false;
    }
    try
    {
        m_Data.resize(static_cast<std::size_t>(nRows) * static_cast<std::size_t>(nColumns));
    }
    catch (const std::exception&) // too large for the memory, or for any
    {
        return false;
    }
    return true;
}

bool Matrix::IsThere(int nRow, int nColumn) const
{
    return nRow >= 0 && nRow < m_nRows && nColumn >= 0 && nColumn < m_nColumns && !m_Data.empty();
}

bool Matrix::HasShapeOf(const Matrix& other) const
{
    return m_nRows == other.m_nRows && m_nColumns == other.m_nColumns && m_Data.size() == other.m_Data.size();
}

std::size_t Matrix::GetIndex(int nRow, int nColumn) const
{
    return static_cast<std::size_t>(nColumn) +
           static_cast<std::size_t>(nRow) * static_cast<std::size_t>(m_nColumns);
}

bool Matrix::SetElement(int nRow, int nColumn, double value)
{
    if (!IsThere(nRow, nColumn))
    {
        return false;
    }
    m_Data[GetIndex(nRow, nColumn)] = value;
    return true;
}

double Matrix::GetElement(int nRow, int nColumn) const
{
    ASSERT(IsThere(nRow, nColumn));
    return m_Data[GetIndex(nRow, nColumn)];
}

void Matrix::GetRow(int nRow, std::span<double> buffer) const
{
    ASSERT(IsThere(nRow, 0));
    ASSERT(buffer.size() == static_cast<std::size_t>(m_nColumns));
    std::copy_n(m_Data.begin() + static_cast<std::ptrdiff_t>(GetIndex(nRow, 0)), buffer.size(),
                buffer.begin());
}

Matrix Matrix::operator*(const Matrix& other) const
{
    ASSERT(m_nColumns == other.m_nRows);
    Matrix product(m_nRows, other.m_nColumns);
    for (int row = 0; row < m_nRows; ++row)
    {
        for (int column = 0; column < other.m_nColumns; ++column)
        {
            double sum = 0.0;
            for (int k = 0; k < m_nColumns; ++k)
            {
                sum += GetElement(row, k) * other.GetElement(k, column);
            }
            product.SetElement(row, column, sum);
        }
    }
    return product;
}

Matrix Matrix::operator+(const Matrix& other) const
{
    ASSERT(HasShapeOf(other));
    Matrix sum(*this);
    std::transform(m_Data.begin(), m_Data.end(), other.m_Data.begin(), sum.m_Data.begin(), std::plus<>());
    return sum;
}

Matrix Matrix::operator-(const Matrix& other) const
{
    ASSERT(HasShapeOf(other));
    Matrix difference(*this);
    std::transform(m_Data.begin(), m_Data.end(), other.m_Data.begin(), difference.m_Data.begin(),
                   std::minus<>());
    return difference;
}

Matrix Matrix::Transpose() const
{
    Matrix transposed(m_nColumns, m_nRows);
    for (int row = 0; row < m_nRows; ++row)
    {
        for (int column = 0; column < m_nColumns; ++column)
        {
            transposed.SetElement(column, row, GetElement(row, column));
        }
    }
    return transposed;
}

namespace
{
using Lines = std::vector<std::vector<double>>;

/// The square root of the sum of squares, of a symmetric matrix's upper half and what mirrors it.
double MeasureSymmetric(const Lines& a, bool withDiagonal)
{
    double sum = 0.0;
    for (std::size_t p = 0; p < a.size(); ++p)
    {
        sum += withDiagonal ? a[p][p] * a[p][p] : 0.0;
        for (std::size_t q = p + 1; q < a.size(); ++q)
        {
            sum += 2.0 * a[p][q] * a[p][q];
        }
    }
    return std::sqrt(sum);
}

/// Turns the pair (x, y) by an angle with tangent t.
struct JacobiRotation
{
    double cosine;
    double sine;

    void Turn(double& x, double& y) const
    {
        const double before = x;
        x = cosine * x - sine * y;
        y = sine * before + cosine * y;
    }
};

/// That which clears an element beside the diagonal; of the two the smaller angle.
JacobiRotation FindRotation(double app, double aqq, double apq)
{
    const double theta = (aqq - app) / (2.0 * apq);
    const double t = std::copysign(1.0, theta) / (std::abs(theta) + std::hypot(1.0, theta));
    const double cosine = 1.0 / std::hypot(1.0, t);
    return {cosine, t * cosine};
}

void ClearElement(Lines& a, Lines& vectors, std::size_t p, std::size_t q)
{
    if (a[p][q] == 0.0)
    {
        return;
    }
    const JacobiRotation rotation = FindRotation(a[p][p], a[q][q], a[p][q]);
    for (auto& line : a)
    {
        rotation.Turn(line[p], line[q]);
    }
    for (std::size_t k = 0; k < a.size(); ++k)
    {
        rotation.Turn(a[p][k], a[q][k]);
    }
    a[p][q] = 0.0;
    a[q][p] = 0.0;
    for (auto& line : vectors)
    {
        rotation.Turn(line[p], line[q]);
    }
}

void Sweep(Lines& a, Lines& vectors)
{
    for (std::size_t p = 0; p < a.size(); ++p)
    {
        for (std::size_t q = p + 1; q < a.size(); ++q)
        {
            ClearElement(a, vectors, p, q);
        }
    }
}
}

bool Matrix::FindSymmetricEigen(std::vector<double>& eigenvalues, Matrix& eigenvectors, int nMostSweeps,
                                double tolerance) const
{
    ASSERT(m_nRows == m_nColumns && !m_Data.empty());
    const auto order = static_cast<std::size_t>(m_nRows);
    Lines a(order, std::vector<double>(order));
    Lines vectors(a);
    for (std::size_t p = 0; p < order; ++p)
    {
        vectors[p][p] = 1.0;
        for (std::size_t q = p; q < order; ++q)
        {
            a[p][q] = a[q][p] = m_Data[p * order + q];
        }
    }
    const double most = tolerance * MeasureSymmetric(a, true);
    for (int sweep = 0; !(MeasureSymmetric(a, false) <= most); ++sweep)
    {
        if (sweep >= nMostSweeps)
        {
            return false;
        }
        Sweep(a, vectors);
    }
    eigenvalues.resize(order);
    eigenvectors.Resize(m_nRows, m_nRows);
    for (std::size_t p = 0; p < order; ++p)
    {
        eigenvalues[p] = a[p][p];
        std::copy(vectors[p].begin(), vectors[p].end(),
                  eigenvectors.m_Data.begin() + static_cast<std::ptrdiff_t>(p * order));
    }
    return true;
}

void Matrix::GVFOnMatrix(const Matrix& edgeMatrix, double mu, int nIterations, Matrix& uMatrix,
                         Matrix& vMatrix)
{
    std::vector<double> u(edgeMatrix.m_Data.size());
    std::vector<double> v(edgeMatrix.m_Data.size());
    const int nRows = edgeMatrix.m_nRows;
    const int nColumns = edgeMatrix.m_nColumns;
    GVF(nColumns, nRows, edgeMatrix.m_Data.data(), u.data(), v.data(), mu, nIterations);
    for (Matrix* pResult : {&uMatrix, &vMatrix})
    {
        pResult->m_nRows = nRows;
        pResult->m_nColumns = nColumns;
    }
    uMatrix.m_Data = std::move(v);
    vMatrix.m_Data = std::move(u);
}

void Matrix::Print(const std::string& name) const
{
    std::array<char, 400> text{}; // the longest double has 317 characters
    DebugConsole() << "\nMatrix " << name << "(" << m_nRows << ", " << m_nColumns << ")\n";
    for (int row = 0; row < m_nRows; ++row)
    {
        for (int column = 0; column < m_nColumns; ++column)
        {
            std::snprintf(text.data(), text.size(), "M[%d][%d] = %f,", row, column, GetElement(row, column));
            DebugConsole() << text.data();
        }
        DebugConsole() << '\n';
    }
    DebugConsole() << '\n';
}
}
