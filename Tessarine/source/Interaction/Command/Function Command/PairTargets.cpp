#include "PairTargets.h"
#include <bit>
#include <cstdint>
#include <cstring>

namespace tessarine
{
namespace
{
constexpr int kLanes = kPairsAtATime;

/// A value of each of four pairs: vectors of the compiler, which every machine
/// of today has.
using Floats = float __attribute__((vector_size(kLanes * sizeof(float))));
/// A truth is all bits set, an untruth none.
using Ints = std::int32_t __attribute__((vector_size(kLanes * sizeof(std::int32_t))));

Floats Select(const Ints& condition, const Floats& yes, const Floats& no)
{
    return std::bit_cast<Floats>((condition & std::bit_cast<Ints>(yes)) |
                                 (~condition & std::bit_cast<Ints>(no)));
}

void SwapWhere(const Ints& condition, Floats& a, Floats& b)
{
    const Ints difference = (std::bit_cast<Ints>(a) ^ std::bit_cast<Ints>(b)) & condition;
    a = std::bit_cast<Floats>(std::bit_cast<Ints>(a) ^ difference);
    b = std::bit_cast<Floats>(std::bit_cast<Ints>(b) ^ difference);
}

Floats Abs(const Floats& v)
{
    return std::bit_cast<Floats>(std::bit_cast<Ints>(v) & INT32_MAX);
}

bool IsAny(const Ints& condition)
{
    return (condition[0] | condition[1] | condition[2] | condition[3]) != 0;
}

struct Points
{
    Floats x;
    Floats y;
    Floats z;
};

struct Quadrics
{
    Floats m00, m01, m02, m03, m11, m12, m13, m22, m23, m33;

    Floats Evaluate(const Points& p) const
    {
        return m33 + 2.0F * m23 * p.z + m22 * p.z * p.z + 2.0F * m13 * p.y + 2.0F * m12 * p.y * p.z +
               m11 * p.y * p.y + 2.0F * m03 * p.x + 2.0F * m02 * p.x * p.z + 2.0F * m01 * p.x * p.y +
               m00 * p.x * p.x;
    }

    /// Of the upper left 3 x 3 block, along the first row.
    Floats GetDeterminant() const
    {
        return m00 * (m11 * m22 - m12 * m12) - m01 * (m01 * m22 - m12 * m02) + m02 * (m01 * m12 - m11 * m02);
    }
};

/// Four linear equations for each pair, solved by Gauss-Jordan elimination with
/// complete pivoting. Columns that are done are not looked at again, and so not
/// written either.
class Equations
{
public:
    explicit Equations(const Quadrics& s)
        : m_Rows{{s.m00, s.m01, s.m02, s.m03},
                 {s.m01, s.m11, s.m12, s.m13},
                 {s.m02, s.m12, s.m22, s.m23},
                 {Floats{}, Floats{}, Floats{}, Floats{} + 1.0F}},
          m_Rhs{Floats{}, Floats{}, Floats{}, Floats{} + 1.0F}
    {
    }

    void Solve()
    {
        Eliminate<0>();
        Eliminate<1>();
        Eliminate<2>();
        Eliminate<3>();
        UndoColumnSwaps<2>();
        UndoColumnSwaps<1>();
        UndoColumnSwaps<0>();
    }

    /// Where no pivot was lost beside 1.
    Ints HasSolution() const { return ~m_IsSingular; }
    Points GetSolution() const { return {m_Rhs[0], m_Rhs[1], m_Rhs[2]}; }

private:
    template <int i>
    void Eliminate()
    {
        FindPivot<i>();
        const Floats pivot = m_Rows[i][i];
        m_IsSingular |= pivot + 1.0F == Floats{} + 1.0F;
        for (int column = i + 1; column < 4; ++column)
        {
            m_Rows[i][column] /= pivot;
        }
        m_Rhs[i] /= pivot;
        for (int row = 0; row < 4; ++row)
        {
            if (row != i)
            {
                SubtractRow<i>(row);
            }
        }
    }

    template <int i>
    void FindPivot()
    {
        Floats largest{};
        Ints found = Ints{} + 5 * i; // row and column in one number
        for (int row = i; row < 4; ++row)
        {
            for (int column = i; column < 4; ++column)
            {
                const Floats size = Abs(m_Rows[row][column]);
                const Ints isLarger = size > largest;
                largest = Select(isLarger, size, largest);
                found = (isLarger & (4 * row + column)) | (~isLarger & found);
            }
        }
        const Ints pivotRow = found >> 2;
        for (int row = i + 1; row < 4; ++row)
        {
            const Ints isIt = pivotRow == row;
            for (int column = i; column < 4; ++column)
            {
                SwapWhere(isIt, m_Rows[i][column], m_Rows[row][column]);
            }
            SwapWhere(isIt, m_Rhs[i], m_Rhs[row]);
        }
        m_PivotColumns[i] = found & 3;
        for (int column = i + 1; column < 4; ++column)
        {
            const Ints isIt = m_PivotColumns[i] == column;
            for (auto& row : m_Rows)
            {
                SwapWhere(isIt, row[i], row[column]);
            }
        }
    }

    template <int i>
    void SubtractRow(int row)
    {
        const Floats factor = m_Rows[row][i];
        const Ints isThere = factor != Floats{};
        for (int column = i + 1; column < 4; ++column)
        {
            Floats& entry = m_Rows[row][column];
            entry = Select(isThere, entry - factor * m_Rows[i][column], entry);
        }
        m_Rhs[row] = Select(isThere, m_Rhs[row] - factor * m_Rhs[i], m_Rhs[row]);
    }

    template <int i>
    void UndoColumnSwaps()
    {
        for (int column = i + 1; column < 4; ++column)
        {
            SwapWhere(m_PivotColumns[i] == column, m_Rhs[i], m_Rhs[column]);
        }
    }

    Floats m_Rows[4][4];
    Floats m_Rhs[4];
    Ints m_PivotColumns[4];
    Ints m_IsSingular{};
};

Floats LoadFour(const PairEnd* end, std::size_t offset)
{
    Floats values;
    std::memcpy(&values, reinterpret_cast<const char*>(end) + offset, sizeof values);
    return values;
}

/// Four values that lie behind one another in the pairs' ends, summed over the
/// two ends, a list for each value.
void SumFour(const PairEnd* const (&ends)[2][kLanes], std::size_t offset, Floats (&values)[4])
{
    Floats sums[kLanes];
    for (int i = 0; i < kLanes; ++i)
    {
        sums[i] = LoadFour(ends[0][i], offset) + LoadFour(ends[1][i], offset);
    }
    const Floats low01 = __builtin_shufflevector(sums[0], sums[1], 0, 4, 1, 5);
    const Floats high01 = __builtin_shufflevector(sums[0], sums[1], 2, 6, 3, 7);
    const Floats low23 = __builtin_shufflevector(sums[2], sums[3], 0, 4, 1, 5);
    const Floats high23 = __builtin_shufflevector(sums[2], sums[3], 2, 6, 3, 7);
    values[0] = __builtin_shufflevector(low01, low23, 0, 1, 4, 5);
    values[1] = __builtin_shufflevector(low01, low23, 2, 3, 6, 7);
    values[2] = __builtin_shufflevector(high01, high23, 0, 1, 4, 5);
    values[3] = __builtin_shufflevector(high01, high23, 2, 3, 6, 7);
}

Quadrics SumQuadrics(const PairEnd* const (&ends)[2][kLanes])
{
    static_assert(sizeof(Quadric) == 10 * sizeof(float) && sizeof(PairEnd) == 13 * sizeof(float));
    Floats first[4];
    Floats second[4];
    Floats third[4]; // of which the last two are sums of positions
    SumFour(ends, 0, first);
    SumFour(ends, 4 * sizeof(float), second);
    SumFour(ends, 8 * sizeof(float), third);
    return {first[0],  first[1],  first[2],  first[3], second[0],
            second[1], second[2], second[3], third[0], third[1]};
}

Points PositionsOf(const PairEnd* const (&ends)[kLanes])
{
    const smVec3f& a = ends[0]->position;
    const smVec3f& b = ends[1]->position;
    const smVec3f& c = ends[2]->position;
    const smVec3f& d = ends[3]->position;
    return {Floats{a.x, b.x, c.x, d.x}, Floats{a.y, b.y, c.y, d.y}, Floats{a.z, b.z, c.z, d.z}};
}

struct Targets
{
    Points position;
    Floats cost;

    void Replace(const Ints& condition, const Points& newPosition, const Floats& newCost)
    {
        position = {Select(condition, newPosition.x, position.x),
                    Select(condition, newPosition.y, position.y),
                    Select(condition, newPosition.z, position.z)};
        cost = Select(condition, newCost, cost);
    }

    void ReplaceByCheaper(const Quadrics& sums, const Points& candidate)
    {
        const Floats candidateCost = sums.Evaluate(candidate);
        Replace(candidateCost < cost, candidate, candidateCost);
    }
};

Targets FindCheapestCandidates(const Quadrics& sums, const PairEnd* const (&ends)[2][kLanes])
{
    const Points a = PositionsOf(ends[0]);
    const Points b = PositionsOf(ends[1]);
    Targets targets{a, sums.Evaluate(a)};
    targets.ReplaceByCheaper(sums, b);
    targets.ReplaceByCheaper(sums, {(a.x + b.x) / 2.0F, (a.y + b.y) / 2.0F, (a.z + b.z) / 2.0F});
    return targets;
}
}

void FindPairTargets(const PairEnd* const (&ends)[2][kPairsAtATime], PairTarget (&targets)[kPairsAtATime])
{
    constexpr float kLeastDeterminant = 0.01F;
    const Quadrics sums = SumQuadrics(ends);
    Ints isSolved = Abs(sums.GetDeterminant()) >= Floats{} + kLeastDeterminant;
    Targets found{};
    if (IsAny(isSolved))
    {
        Equations equations(sums);
        equations.Solve();
        isSolved &= equations.HasSolution();
        found.position = equations.GetSolution();
        found.cost = sums.Evaluate(found.position);
    }
    if (IsAny(~isSolved))
    {
        const Targets candidates = FindCheapestCandidates(sums, ends);
        found.Replace(~isSolved, candidates.position, candidates.cost);
    }
    for (int i = 0; i < kPairsAtATime; ++i)
    {
        targets[i] = {{found.position.x[i], found.position.y[i], found.position.z[i]}, found.cost[i]};
    }
}
}
