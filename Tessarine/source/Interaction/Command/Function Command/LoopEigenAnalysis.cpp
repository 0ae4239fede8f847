#include "LoopEigenAnalysis.h"
#include "Assert.h"
#include "EigenTable.h"
#include <Eigen/LU>
#include <algorithm>
#include <array>
#include <numbers>
#include <utility>
#include <vector>

namespace tessarine
{
namespace
{
using Eigen::MatrixXd;
using Eigen::VectorXd;

constexpr int kOuter = 5; ///< control vertices beyond the ring
/// What parts the two equal eigenvalues at valence 3.
constexpr double kSplit = 1.0 / (1 << 26);

/// The cosine of the share k / n of a whole turn, to the last bit the same on every machine.
double CosineOfTurn(long k, long n)
{
    constexpr int kTerms = 9; // below 2^-60 at an eighth of a turn
    k = ((k % n) + n) % n;
    k = 2 * k > n ? n - k : k;
    if (4 * k > n)
    {
        return -CosineOfTurn(n - 2 * k, 2 * n);
    }
    const bool takeSine = 8 * k > n; // of what is missing to a quarter
    const double x =
        takeSine ? 2.0 * std::numbers::pi * static_cast<double>(n - 4 * k) / static_cast<double>(4 * n)
                 : 2.0 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(n);
    double sum = 0.0;
    for (int i = kTerms; i > 0; --i)
    {
        const int power = takeSine ? 2 * i + 1 : 2 * i;
        sum = -(1.0 + sum) * x * x / (power * (power - 1));
    }
    return (1.0 + sum) * (takeSine ? x : 1.0);
}

double SineOfTurn(long k, long n)
{
    return CosineOfTurn(4 * k - n, 4 * n);
}

/// What a vertex keeps of itself in a step.
double GetCentreWeight(int nValence)
{
    return nValence <= 3 ? 1.0 - 3.0 * nValence / 16.0 : 5.0 / 8.0;
}

/// One old point's share in a new one.
struct Share
{
    int place;
    double weight;
};

using Mask = std::vector<Share>;

/// A step of subdivision on the patch, whose points are numbered as CollectPatch does. Around the same vertex it gives the
/// points 0 to N + 5 of the patch half as large, and six more beyond.
class LoopStep
{
public:
    explicit LoopStep(int nValence) : m_nValence(nValence) {}

    Mask GetMask(int nNewPoint) const;

private:
    Mask MoveCentre() const;
    /// A vertex of valence 6.
    static Mask Move(int vertex, const std::array<int, 6>& around);
    /// An edge from a to b, between the triangles with the corners c and d.
    static Mask Split(int a, int b, int c, int d);

    int m_nValence;
};

Mask LoopStep::MoveCentre() const
{
    const int n = m_nValence;
    const double centre = GetCentreWeight(n);
    Mask mask{{0, centre}};
    for (int i = 1; i <= n; ++i)
    {
        mask.push_back({i, (1.0 - centre) / n});
    }
    return mask;
}

Mask LoopStep::Move(int vertex, const std::array<int, 6>& around)
{
    Mask mask{{vertex, 5.0 / 8.0}};
    for (const int neighbour : around)
    {
        mask.push_back({neighbour, 1.0 / 16.0});
    }
    return mask;
}

Mask LoopStep::Split(int a, int b, int c, int d)
{
    return {{a, 3.0 / 8.0}, {b, 3.0 / 8.0}, {c, 1.0 / 8.0}, {d, 1.0 / 8.0}};
}

Mask LoopStep::GetMask(int nNewPoint) const
{
    const int n = m_nValence;
    if (nNewPoint == 0)
    {
        return MoveCentre();
    }
    if (nNewPoint <= n)
    {
        return Split(0, nNewPoint, nNewPoint == 1 ? n : nNewPoint - 1, nNewPoint == n ? 1 : nNewPoint + 1);
    }
    switch (nNewPoint - n)
    {
    case 1: return Split(1, n, 0, n + 1);
    case 2: return Move(1, {0, n, n + 1, n + 2, n + 3, 2});
    case 3: return Split(1, 2, 0, n + 3);
    case 4: return Move(n, {0, 1, n + 1, n + 4, n + 5, n - 1});
    case 5: return Split(n, n - 1, 0, n + 5);
    case 6: return Split(1, n + 1, n, n + 2);
    case 7: return Split(1, n + 2, n + 1, n + 3);
    case 8: return Split(1, n + 3, n + 2, 2);
    case 9: return Split(n, n + 1, 1, n + 4);
    case 10: return Split(n, n + 4, n + 1, n + 5);
    default: return Split(n, n + 5, n + 4, n - 1);
    }
}

/// Which new points are the control vertices of each sub-triangle's patch, in the order of its twelve basis functions.
std::array<std::array<int, EigenData::kBasisSize>, EigenData::kSubTriangles> GetSubPatches(int n)
{
    return {{{2, 0, n + 3, 1, n, n + 8, n + 2, n + 1, n + 4, n + 7, n + 6, n + 9},
             {n + 9, n + 6, n + 4, n + 1, n + 2, n + 5, n, 1, n + 3, n - 1, 0, 2},
             {0, n - 1, 1, n, n + 5, n + 2, n + 1, n + 4, n + 11, n + 6, n + 9, n + 10}}};
}

/// An eigenvalue with its eigenvector, and the row of the inverse.
struct EigenTriple
{
    double value;
    VectorXd vector;
    VectorXd inverse;
};

/// The step's matrix is lower block-triangular: the vertex with its ring, then the five vertices beyond. The ring's
/// eigenvectors are its Fourier modes.
class LoopEigenSolver
{
public:
    explicit LoopEigenSolver(int nValence);

    /// By falling eigenvalue.
    std::vector<EigenTriple> Solve();

private:
    using OuterMatrix = Eigen::Matrix<double, kOuter, kOuter>;

    EigenTriple& Add(double value);
    void AddMeans();
    void AddMode(long nTurns);
    void CarryOutwards();
    void AddOuter();

    int m_nInner;
    MatrixXd m_OuterFromInner;
    OuterMatrix m_OuterFromOuter = OuterMatrix::Zero();
    std::vector<EigenTriple> m_Triples;
};

LoopEigenSolver::LoopEigenSolver(int nValence)
    : m_nInner(nValence + 1), m_OuterFromInner(MatrixXd::Zero(kOuter, nValence + 1))
{
    const LoopStep step(nValence);
    for (int row = 0; row < kOuter; ++row)
    {
        for (const Share& share : step.GetMask(m_nInner + row))
        {
            if (share.place < m_nInner)
            {
                m_OuterFromInner(row, share.place) += share.weight;
            }
            else
            {
                m_OuterFromOuter(row, share.place - m_nInner) += share.weight;
            }
        }
    }
}

EigenTriple& LoopEigenSolver::Add(double value)
{
    const VectorXd zero = VectorXd::Zero(m_nInner + kOuter);
    return m_Triples.emplace_back(EigenTriple{value, zero, zero});
}

/// All of the ring alike: the constant, and the vertex against its ring.
void LoopEigenSolver::AddMeans()
{
    const int n = m_nInner - 1;
    const double centre = GetCentreWeight(n);
    const double against = (centre - 1.0) * 8.0 / 3.0; // the vertex, where its ring is 1
    EigenTriple& constant = Add(1.0);
    constant.vector.head(m_nInner).setOnes();
    constant.inverse.segment(1, n).setConstant(against / (against - 1.0) / n);
    constant.inverse[0] = -1.0 / (against - 1.0);
    EigenTriple& opposed = Add(centre - 3.0 / 8.0 + (n == 3 ? kSplit : 0.0));
    opposed.vector.segment(1, n).setOnes();
    opposed.vector[0] = against;
    opposed.inverse.segment(1, n).setConstant(-1.0 / (against - 1.0) / n);
    opposed.inverse[0] = 1.0 / (against - 1.0);
}

/// A wave that runs round the ring so many times: its cosine, and its sine where there is one.
void LoopEigenSolver::AddMode(long nTurns)
{
    const long n = m_nInner - 1;
    const double value = 3.0 / 8.0 + CosineOfTurn(nTurns, n) / 4.0;
    const bool isAlternating = 2 * nTurns == n;
    const double norm = isAlternating ? 1.0 : 2.0;
    for (const bool takeSine : {false, true})
    {
        if (takeSine && isAlternating)
        {
            return;
        }
        EigenTriple& mode = Add(value);
        for (long i = 1; i <= n; ++i)
        {
            mode.vector[i] = takeSine ? SineOfTurn(nTurns * i, n) : CosineOfTurn(nTurns * i, n);
        }
        mode.inverse = mode.vector * (norm / static_cast<double>(n));
    }
}

/// What the vertices beyond have in the eigenvectors of vertex and ring. The wave that alternates shares the eigenvalue
/// 1/8 with three of the outer vectors; its equations have solutions all the same.
void LoopEigenSolver::CarryOutwards()
{
    for (EigenTriple& triple : m_Triples)
    {
        const OuterMatrix shifted = m_OuterFromOuter - triple.value * OuterMatrix::Identity();
        const Eigen::Matrix<double, kOuter, 1> right = -(m_OuterFromInner * triple.vector.head(m_nInner));
        triple.vector.tail(kOuter) = shifted.fullPivLu().solve(right);
    }
}

/// Those in which vertex and ring are zero.
void LoopEigenSolver::AddOuter()
{
    OuterMatrix vectors;
    int nFound = 0;
    std::array<double, kOuter> values{};
    for (const double value : {1.0 / 8.0, 1.0 / 16.0})
    {
        const MatrixXd kernel = (m_OuterFromOuter - value * OuterMatrix::Identity()).fullPivLu().kernel();
        for (int column = 0; column < kernel.cols(); ++column)
        {
            values[static_cast<std::size_t>(nFound)] = value;
            vectors.col(nFound++) = kernel.col(column);
        }
    }
    ASSERT(nFound == kOuter);
    const OuterMatrix inverse = vectors.inverse();
    const std::size_t nInner = m_Triples.size();
    for (int i = 0; i < kOuter; ++i)
    {
        EigenTriple& outer = Add(values[static_cast<std::size_t>(i)]);
        outer.vector.tail(kOuter) = vectors.col(i);
        outer.inverse.tail(kOuter) = inverse.row(i).transpose();
        for (std::size_t j = 0; j < nInner; ++j)
        {
            const double share = inverse.row(i).dot(m_Triples[j].vector.tail(kOuter).transpose());
            outer.inverse -= share * m_Triples[j].inverse;
        }
    }
}

std::vector<EigenTriple> LoopEigenSolver::Solve()
{
    AddMeans();
    for (int turns = 1; 2 * turns <= m_nInner - 1; ++turns)
    {
        AddMode(turns);
    }
    CarryOutwards();
    AddOuter();
    std::stable_sort(m_Triples.begin(), m_Triples.end(),
                     [](const EigenTriple& a, const EigenTriple& b) { return a.value > b.value; });
    return std::move(m_Triples);
}

/// The eigenvector's twelve control values on each sub-triangle.
void FillCoefficients(const LoopStep& step, int nValence, const std::vector<EigenTriple>& triples,
                      EigenData& data)
{
    const std::size_t order = triples.size();
    const auto patches = GetSubPatches(nValence);
    for (std::size_t k = 0; k < patches.size(); ++k)
    {
        data.m_Coefficients[k].assign(order * EigenData::kBasisSize, 0.0);
        for (std::size_t j = 0; j < EigenData::kBasisSize; ++j)
        {
            for (const Share& share : step.GetMask(patches[k][j]))
            {
                for (std::size_t i = 0; i < order; ++i)
                {
                    data.m_Coefficients[k][i + order * j] += share.weight * triples[i].vector[share.place];
                }
            }
        }
    }
}
}

EigenData AnalyseLoopStep(int nValence)
{
    ASSERT(nValence >= EigenTable::kLeastValence);
    const std::vector<EigenTriple> triples = LoopEigenSolver(nValence).Solve();
    const std::size_t order = triples.size();
    EigenData data;
    data.m_InvEigenvectors.resize(order * order);
    for (std::size_t i = 0; i < order; ++i)
    {
        data.m_Eigenvalues.push_back(triples[i].value);
        for (std::size_t j = 0; j < order; ++j)
        {
            data.m_InvEigenvectors[i + order * j] = triples[i].inverse[static_cast<Eigen::Index>(j)];
        }
    }
    FillCoefficients(LoopStep(nValence), nValence, triples, data);
    return data;
}
}
