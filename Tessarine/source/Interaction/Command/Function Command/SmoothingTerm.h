#pragma once

namespace tessarine
{
class CSparseMatrix;
class DSSolid;

/// Adds a term to a system over the vertices of a solid that holds each vertex to those around it and around these.
///
/// Needs   A closed solid whose vertices' ids are their places in its list (asserted); as many unknowns as vertices
///         (asserted).
/// Kept    An entry is scaled whenever it is touched, with what it held before. The entries of the second ring take
///         the difference of the first.
void AddSmoothingTerm(const DSSolid& solid, double fWeight, CSparseMatrix& matrix);
}
