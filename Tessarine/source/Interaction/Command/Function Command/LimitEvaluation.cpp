#include "LimitEvaluation.h"
#include "Assert.h"
#include "Failure.h"
#include <cmath>

namespace tessarine
{
namespace
{
constexpr int kDegree = 4;

using Powers = std::array<double, kDegree + 1>;

/// factor * u^u * v^v * w^w
struct QuarticTerm
{
    int factor;
    int u;
    int v;
    int w;
};

constexpr std::size_t kMostTerms = 15;
constexpr double kQuarticDivisor = 12.0;

/// Each basis function times the divisor; entries without a factor add nothing.
constexpr std::array<std::array<QuarticTerm, kMostTerms>, EigenData::kBasisSize> kQuartics{{
    {{{1, 4, 0, 0}, {2, 3, 1, 0}}},
    {{{1, 4, 0, 0}, {2, 3, 0, 1}}},
    {{{1, 4, 0, 0},
      {2, 3, 0, 1},
      {6, 3, 1, 0},
      {6, 2, 1, 1},
      {12, 2, 2, 0},
      {6, 1, 2, 1},
      {6, 1, 3, 0},
      {2, 0, 3, 1},
      {1, 0, 4, 0}}},
    {{{6, 4, 0, 0},
      {24, 3, 0, 1},
      {24, 2, 0, 2},
      {8, 1, 0, 3},
      {1, 0, 0, 4},
      {24, 3, 1, 0},
      {60, 2, 1, 1},
      {36, 1, 1, 2},
      {6, 0, 1, 3},
      {24, 2, 2, 0},
      {36, 1, 2, 1},
      {12, 0, 2, 2},
      {8, 1, 3, 0},
      {6, 0, 3, 1},
      {1, 0, 4, 0}}},
    {{{1, 4, 0, 0},
      {6, 3, 0, 1},
      {12, 2, 0, 2},
      {6, 1, 0, 3},
      {1, 0, 0, 4},
      {2, 3, 1, 0},
      {6, 2, 1, 1},
      {6, 1, 1, 2},
      {2, 0, 1, 3}}},
    {{{2, 1, 3, 0}, {1, 0, 4, 0}}},
    {{{1, 4, 0, 0},
      {6, 3, 0, 1},
      {12, 2, 0, 2},
      {6, 1, 0, 3},
      {1, 0, 0, 4},
      {8, 3, 1, 0},
      {36, 2, 1, 1},
      {36, 1, 1, 2},
      {8, 0, 1, 3},
      {24, 2, 2, 0},
      {60, 1, 2, 1},
      {24, 0, 2, 2},
      {24, 1, 3, 0},
      {24, 0, 3, 1},
      {6, 0, 4, 0}}},
    {{{1, 4, 0, 0},
      {8, 3, 0, 1},
      {24, 2, 0, 2},
      {24, 1, 0, 3},
      {6, 0, 0, 4},
      {6, 3, 1, 0},
      {36, 2, 1, 1},
      {60, 1, 1, 2},
      {24, 0, 1, 3},
      {12, 2, 2, 0},
      {36, 1, 2, 1},
      {24, 0, 2, 2},
      {6, 1, 3, 0},
      {8, 0, 3, 1},
      {1, 0, 4, 0}}},
    {{{2, 1, 0, 3}, {1, 0, 0, 4}}},
    {{{2, 0, 3, 1}, {1, 0, 4, 0}}},
    {{{2, 1, 0, 3},
      {1, 0, 0, 4},
      {6, 1, 1, 2},
      {6, 0, 1, 3},
      {6, 1, 2, 1},
      {12, 0, 2, 2},
      {2, 1, 3, 0},
      {6, 0, 3, 1},
      {1, 0, 4, 0}}},
    {{{2, 0, 1, 3}, {1, 0, 0, 4}}},
}};

Powers GetPowers(double x)
{
    Powers powers{};
    for (int k = 0; k <= kDegree; ++k)
    {
        powers[static_cast<std::size_t>(k)] = std::pow(x, k);
    }
    return powers;
}

bool IsParameter(double value)
{
    return value >= 0.0 && value <= 1.0;
}

/// One sub-triangle, and a place in it.
struct SubTriangle
{
    std::size_t k;
    double v;
    double w;
};

/// Kept: strict comparisons; where the level's logarithm is exact, both scaled parameters are at most 0.5.
SubTriangle FindSubTriangle(double v, double w)
{
    constexpr double kMiddle = 0.5;
    if (v > kMiddle)
    {
        return {0, 2.0 * v - 1.0, 2.0 * w};
    }
    if (w > kMiddle)
    {
        return {2, 2.0 * v, 2.0 * w - 1.0};
    }
    return {1, 1.0 - 2.0 * v, 1.0 - 2.0 * w};
}

double CountHalvings(double parameter)
{
    return -std::log(parameter) / std::log(2.0);
}

int FindLevel(double v, double w)
{
    const double ofV = CountHalvings(v);
    const double ofW = CountHalvings(w);
    return static_cast<int>(std::floor(ofV < ofW ? ofV : ofW));
}

/// On its sub-triangle, without the eigenvalues' powers.
std::vector<double> EvalEigenBasis(const EigenData& data, const SubTriangle& place)
{
    const auto order = static_cast<std::size_t>(data.GetOrder());
    const std::vector<double>& coefficients = data.m_Coefficients[place.k];
    const auto splines = GetBoxSplineBasis(place.v, place.w);
    std::vector<double> values(order);
    for (std::size_t j = 0; j < splines.size(); ++j)
    {
        for (std::size_t i = 0; i < order; ++i)
        {
            values[i] += coefficients[i + order * j] * splines[j];
        }
    }
    return values;
}

/// Numbers of a table can be too large, or eigenvalues too small, for what is made of them.
void DemandFinite(bool isFinite)
{
    if (!isFinite)
    {
        throw Failure(
            "the table for the limit surface (data/lpdata50NT.dat) holds numbers from which no point can be "
            "computed: make a new one (tessarine-batch make-eigen-table FILE)");
    }
}
}

std::array<double, EigenData::kBasisSize> GetBoxSplineBasis(double v, double w)
{
    ASSERT(IsParameter(v) && IsParameter(w));
    const Powers ofU = GetPowers(1.0 - v - w);
    const Powers ofV = GetPowers(v);
    const Powers ofW = GetPowers(w);
    std::array<double, EigenData::kBasisSize> basis{};
    for (std::size_t j = 0; j < basis.size(); ++j)
    {
        for (const QuarticTerm& term : kQuartics[j])
        {
            basis[j] += term.factor * ofU[static_cast<std::size_t>(term.u)] *
                        ofV[static_cast<std::size_t>(term.v)] * ofW[static_cast<std::size_t>(term.w)];
        }
        basis[j] /= kQuarticDivisor;
    }
    return basis;
}

double EvalBoxSpline(std::span<const double, EigenData::kBasisSize> b, double v, double w)
{
    const auto basis = GetBoxSplineBasis(v, w);
    double value = 0.0;
    for (std::size_t j = 0; j < basis.size(); ++j)
    {
        value += b[j] * basis[j];
    }
    return value;
}

LimitSample::LimitSample(const EigenData& data, double v, double w)
{
    ASSERT(IsParameter(v) && IsParameter(w));
    ASSERT(v > 0.0 || w > 0.0);
    const int n = FindLevel(v, w);
    const double scale = std::pow(2.0, n - 1);
    m_Basis = EvalEigenBasis(data, FindSubTriangle(v * scale, w * scale));
    const std::size_t order = m_Basis.size();
    for (std::size_t i = 0; i < order; ++i)
    {
        m_Basis[i] *= std::pow(data.m_Eigenvalues[i], n - 1);
    }
    m_Weights.resize(order);
    for (std::size_t j = 0; j < order; ++j)
    {
        for (std::size_t i = 0; i < order; ++i)
        {
            m_Weights[j] += data.m_InvEigenvectors[i + order * j] * m_Basis[i];
        }
        DemandFinite(std::isfinite(m_Weights[j]));
    }
}

LimitPatch::LimitPatch(const EigenData& data, std::span<const smVec3d> c)
{
    ProjectControlPoints(data, c);
}

void LimitPatch::ProjectControlPoints(const EigenData& data, std::span<const smVec3d> c)
{
    const auto order = static_cast<std::size_t>(data.GetOrder());
    ASSERT(c.size() == order);
    m_Projected.resize(order);
    for (std::size_t j = 0; j < order; ++j)
    {
        for (std::size_t i = 0; i < order; ++i)
        {
            m_Projected[i] += c[j] * data.m_InvEigenvectors[i + order * j];
        }
    }
}

smVec3d LimitPatch::EvalEigenPatch(const LimitSample& sample) const
{
    const std::vector<double>& basis = sample.GetBasis();
    ASSERT(basis.size() == m_Projected.size());
    smVec3d point;
    for (std::size_t i = 0; i < basis.size(); ++i)
    {
        point += m_Projected[i] * basis[i];
    }
    DemandFinite(std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z));
    return point;
}

smVec3d EvalLimitPoint(std::span<const smVec3d> c, double v, double w, int nValence, const EigenTable& table,
                       Matrix& weights)
{
    const EigenData& data = table.Get(nValence);
    const LimitSample sample(data, v, w);
    const LimitPatch patch(data, c);
    const std::vector<double>& shares = sample.GetWeights();
    weights.Resize(static_cast<int>(shares.size()), 1);
    for (std::size_t j = 0; j < shares.size(); ++j)
    {
        weights.SetElement(static_cast<int>(j), 0, shares[j]);
    }
    return patch.EvalEigenPatch(sample);
}
}
