#pragma once
#include "EigenTable.h"
#include "Matrix.h"
#include "smVec3d.h"
#include <array>
#include <span>
#include <vector>

namespace tessarine
{
/// The place of a sample in a triangle, with all that does not depend on where the control vertices are: it serves
/// every patch of its valence.
///
/// The triangle's corners are C[0] at (0, 0), C[1] at (1, 0) and C[N] at (0, 1), in the order of CollectPatch.
///
/// Needs   v and w from 0 to 1 and not both 0 (asserted).
/// Fails   Failure for data whose numbers lead to a weight that is not finite.
/// Kept    The level is told one lower than the sub-triangles' own. The result is the point of the limit surface where
///         2^-n <= v + w and both are at most 2^-n for an n of 1 or more, and anywhere at valence 6; elsewhere it is a
///         polynomial that carries on from there.
class LimitSample
{
public:
    LimitSample(const EigenData& data, double v, double w);

    /// For each eigenvector, the value of its basis function.
    const std::vector<double>& GetBasis() const { return m_Basis; }
    /// For each control vertex, its share of the point; their sum is 1 but for rounding.
    const std::vector<double>& GetWeights() const { return m_Weights; }

private:
    std::vector<double> m_Basis;
    std::vector<double> m_Weights;
};

/// A patch whose control vertices have been brought into the eigenbasis, once for all its samples.
class LimitPatch
{
public:
    /// @param c the control vertices in the order of CollectPatch, as many as the data's order (asserted)
    LimitPatch(const EigenData& data, std::span<const smVec3d> c);

    /// Fails   Failure where the point is not finite.
    /// @param sample of the patch's valence (asserted)
    smVec3d EvalEigenPatch(const LimitSample& sample) const;

private:
    void ProjectControlPoints(const EigenData& data, std::span<const smVec3d> c);

    std::vector<smVec3d> m_Projected;
};

/// The values of the twelve basis functions of a patch without an irregular vertex.
/// Needs   v and w from 0 to 1 (asserted).
std::array<double, EigenData::kBasisSize> GetBoxSplineBasis(double v, double w);

/// The point with coefficients b on such a patch.
double EvalBoxSpline(std::span<const double, EigenData::kBasisSize> b, double v, double w);

/// The point of the limit surface, and the share of each control vertex in it. Needs as LimitSample.
///
/// Cost    That of a projection: for many samples, keep LimitPatch and LimitSample.
/// @param weights takes a column, in the order of the control vertices
smVec3d EvalLimitPoint(std::span<const smVec3d> c, double v, double w, int nValence, const EigenTable& table,
                       Matrix& weights);
}
