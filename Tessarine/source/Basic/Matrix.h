#pragma once
#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace tessarine
{
/// A dense matrix of doubles, line by line.
class Matrix
{
public:
    /// One row, one column.
    Matrix() : Matrix(1, 1) {}
    /// Of zeros. A shape that holds nothing, or more than there is memory for, is an assertion.
    Matrix(int nRows, int nColumns);
    Matrix(const Matrix& other) = default;
    virtual ~Matrix() = default;

    /// The other must have the same shape (asserted).
    Matrix& operator=(const Matrix& other);

    /// Drops the elements, and has zeros in the new shape.
    /// @return false where there is no such shape, or no memory for it; the matrix is then without elements
    bool Resize(int nRows, int nColumns);

    int GetRowCount() const { return m_nRows; }
    int GetColumnCount() const { return m_nColumns; }

    /// @return false, and nothing is written, for a position that is not there
    bool SetElement(int nRow, int nColumn, double value);
    /// The position must be there (asserted).
    double GetElement(int nRow, int nColumn) const;
    /// Copies a row; the buffer must have its length (both asserted).
    void GetRow(int nRow, std::span<double> buffer) const;

    /// The other must have as many rows as this has columns (asserted).
    Matrix operator*(const Matrix& other) const;
    /// Element by element; the other must have the same shape (asserted).
    Matrix operator+(const Matrix& other) const;
    Matrix operator-(const Matrix& other) const;
    Matrix Transpose() const;

    /// Eigenvalues and unit eigenvectors of a symmetric matrix, by sweeps of Jacobi rotations over all elements beside
    /// the diagonal, row by row.
    ///
    /// Needs   A square matrix (asserted); what stands below the diagonal is not looked at.
    /// @param eigenvalues   in no particular order
    /// @param eigenvectors  a column for each, in the same order
    /// @param nMostSweeps   rotations of all elements
    /// @param tolerance     what may be left beside the diagonal, as a share of the matrix (square root of the sum of
    ///                      squares)
    /// @return false where more is left; then neither result is written. So for elements that are no numbers
    bool FindSymmetricEigen(std::vector<double>& eigenvalues, Matrix& eigenvectors, int nMostSweeps,
                            double tolerance) const;

    /// The gradient vector flow (GVF) of an edge map with an element for each sample, a row of samples in a row.
    ///
    /// Kept    The first of the results takes v, the second u.
    static void GVFOnMatrix(const Matrix& edgeMatrix, double mu, int nIterations, Matrix& uMatrix,
                            Matrix& vMatrix);

    /// Says all elements, with the name that is given.
    void Print(const std::string& name) const;

private:
    bool IsThere(int nRow, int nColumn) const;
    bool HasShapeOf(const Matrix& other) const;
    std::size_t GetIndex(int nRow, int nColumn) const;

    int m_nColumns = 0;
    int m_nRows = 0;
    std::vector<double> m_Data;
};
}
