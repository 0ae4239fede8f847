#pragma once
#include "SparseMatrix.h"
#include "smVec3d.h"
#include <array>
#include <span>
#include <vector>

namespace tessarine
{
/// One symmetric system of equations for three coordinates: the unknowns are points, and the matrix and right sides
/// are sums of what each term of an energy gives.
class LeastSquaresSystem
{
public:
    /// So many unknowns, and no term.
    void SetSize(int nUnknowns);

    int GetSize() const { return m_Matrix.GetRowCount(); }
    CSparseMatrix& GetMatrix() { return m_Matrix; }
    const CSparseMatrix& GetMatrix() const { return m_Matrix; }
    /// One-based, as the solver takes it: row r stands at r + 1.
    const std::vector<double>& GetRightSide(int nAxis) const
    {
        return m_RightSide[static_cast<std::size_t>(nAxis)];
    }

    void AddToRightSide(int nRow, const smVec3d& value);

    /// Every entry and all right sides.
    void DivideBy(double fDivisor);

    /// The square of the distance between the mean of the unknowns around a vertex and a point.
    void AddUmbrella(std::span<const int> around, const smVec3d& point);

    /// Solves for x, y and z, each from zero, in at most 200 steps.
    ///
    /// Says    The steps and the estimated error of each, which is the only sign of a system that is not well posed.
    std::vector<smVec3d> Solve() const;

private:
    CSparseMatrix m_Matrix;
    std::array<std::vector<double>, 3> m_RightSide;
};
}
