#pragma once
#include <vector>

namespace tessarine
{
class CSparseMatrix;

/// Solves A x = b by the biconjugate gradient method without preconditioning, from the x that it is given.
/// All vectors are one-based and have n + 1 elements.
///
/// Needs   A square matrix of n rows and its transpose; itmax below the largest int (asserted).
/// Says    "illegal itol in linbcg" for a rule below 1 or above 4; "iter=... err=..." every 100 steps; where
///         a step would divide by zero or by no number, that the iteration ends there.
/// Source  R. Fletcher 1976.
/// Kept    One step more than itmax can be done. A rule above 4 knows no estimate, so that its first step has no
///         direction to go.
/// @param itol what the error is measured by: 1 |r| / |b|, 2 the same of the preconditioned, 3 the estimated error of
///        x, 4 the same by largest components
/// @param iter the steps done
/// @param err the estimated error; the iteration stops where it is at most tol
/// @return false where it ended because a step would divide by zero or by no number
bool linbcg(const CSparseMatrix& A, const CSparseMatrix& At, int n, const std::vector<double>& b,
            std::vector<double>& x, int itol, double tol, int itmax, int& iter, double& err);

/// The line that tells of a solution.
void SayEstimate(int iter, double err);
}
