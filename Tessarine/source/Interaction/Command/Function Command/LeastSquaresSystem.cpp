#include "LeastSquaresSystem.h"
#include "Assert.h"
#include "linbcg.h"

namespace tessarine
{
void LeastSquaresSystem::SetSize(int nUnknowns)
{
    m_Matrix.SetSize(nUnknowns, nUnknowns);
    for (std::vector<double>& side : m_RightSide)
    {
        side.assign(static_cast<std::size_t>(nUnknowns) + 1, 0.0);
    }
}

void LeastSquaresSystem::AddToRightSide(int nRow, const smVec3d& value)
{
    ASSERT(m_Matrix.IsValidRow(nRow));
    const std::size_t place = static_cast<std::size_t>(nRow) + 1;
    m_RightSide[0][place] += value.x;
    m_RightSide[1][place] += value.y;
    m_RightSide[2][place] += value.z;
}

void LeastSquaresSystem::DivideBy(double fDivisor)
{
    m_Matrix.DivideBy(fDivisor);
    for (std::vector<double>& side : m_RightSide)
    {
        for (double& value : side)
        {
            value /= fDivisor;
        }
    }
}

void LeastSquaresSystem::AddUmbrella(std::span<const int> around, const smVec3d& point)
{
    const auto n = static_cast<double>(around.size());
    for (const int row : around)
    {
        for (const int column : around)
        {
            m_Matrix.AddValue(row, column, 1.0 / (n * n));
        }
        AddToRightSide(row, {point.x / n, point.y / n, point.z / n});
    }
}

std::vector<smVec3d> LeastSquaresSystem::Solve() const
{
    constexpr int kRule = 3;
    constexpr double kTolerance = 1e-7;
    constexpr int kMostSteps = 200;
    CSparseMatrix transposed;
    m_Matrix.Transpose(transposed);
    std::vector<smVec3d> solution(static_cast<std::size_t>(GetSize()));
    for (int axis = 0; axis < 3; ++axis)
    {
        std::vector<double> x(solution.size() + 1);
        int iter = 0;
        double err = 0.0;
        linbcg(m_Matrix, transposed, GetSize(), GetRightSide(axis), x, kRule, kTolerance, kMostSteps, iter,
               err);
        SayEstimate(iter, err);
        for (std::size_t i = 0; i < solution.size(); ++i)
        {
            solution[i][axis] = x[i + 1];
        }
    }
    return solution;
}
}
