#pragma once
#include "SparseMatrix.h"
#include <vector>

namespace tessarine
{
/// The operations of sparse matrices as they are defined, in the time that this takes: row against row, and
/// place by place.
bool MultiplyLiterally(const CSparseMatrix& a, const CSparseMatrix& b, CSparseMatrix& result);
bool AddLiterally(const CSparseMatrix& a, const CSparseMatrix& b, double sign, CSparseMatrix& result);
std::vector<double> MultiplyVectorLiterally(const CSparseMatrix& a, const std::vector<double>& x);

/// The biconjugate gradient iteration in one piece. Breakdowns are not looked for.
void SolveLiterally(const CSparseMatrix& a, const CSparseMatrix& transposed, const std::vector<double>& b,
                    std::vector<double>& x, int itol, double tol, int itmax, int& iter, double& err);
}
