#include "smMatrix44d.h"
#include "Reports.h"
#include "smVec3f.h"
#include "smVec4f.h"
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <type_traits>

namespace tessarine
{
namespace
{
static_assert(std::is_trivially_copyable_v<smMatrix44d> && std::is_standard_layout_v<smMatrix44d>);
static_assert(sizeof(smMatrix44d) == 128);
static_assert(!std::is_convertible_v<bool, smMatrix44d>);
static_assert(std::is_same_v<decltype(smVec3d() * smMatrix44d()), smVec3d>);
static_assert(std::is_same_v<decltype(smVec3f() * smMatrix44d()), smVec3d>);
static_assert(std::is_same_v<decltype(smVec4d() * smMatrix44d()), smVec4d>);
static_assert(std::is_same_v<decltype(smVec4f() * smMatrix44d()), smVec4d>);

/// A second 4x4 matrix, row by row, that shares nothing with the one under test.
using Table = std::array<std::array<double, 4>, 4>;

smMatrix44d MatrixOf(const Table& t)
{
    return {t[0][0], t[0][1], t[0][2], t[0][3], t[1][0], t[1][1], t[1][2], t[1][3],
            t[2][0], t[2][1], t[2][2], t[2][3], t[3][0], t[3][1], t[3][2], t[3][3]};
}

Table TableOf(const smMatrix44d& m)
{
    Table table;
    for (std::size_t position = 0; position < 16; ++position)
    {
        table[position % 4][position / 4] = m.GetData()[position];
    }
    return table;
}

const Table kIdentity{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};

/// Row r holds 10 r + c + 1.
const Table kCounted{{{1, 2, 3, 4}, {11, 12, 13, 14}, {21, 22, 23, 24}, {31, 32, 33, 34}}};

template <class TOperation>
Table EachElement(TOperation operation)
{
    Table result;
    for (std::size_t r = 0; r < 4; ++r)
    {
        for (std::size_t c = 0; c < 4; ++c)
        {
            result[r][c] = operation(r, c);
        }
    }
    return result;
}

Table Product(const Table& a, const Table& b)
{
    return EachElement(
        [&](std::size_t r, std::size_t c)
        {
            double sum = 0.0;
            for (std::size_t k = 0; k < 4; ++k)
            {
                sum += a[r][k] * b[k][c];
            }
            return sum;
        });
}

Table Transposed(const Table& a)
{
    return EachElement([&](std::size_t r, std::size_t c) { return a[c][r]; });
}

double Determinant3(const std::array<std::array<double, 3>, 3>& m)
{
    return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
           m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
           m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

double Cofactor(const Table& a, std::size_t row, std::size_t column)
{
    std::array<std::array<double, 3>, 3> rest;
    for (std::size_t r = 0; r < 3; ++r)
    {
        for (std::size_t c = 0; c < 3; ++c)
        {
            rest[r][c] = a[r < row ? r : r + 1][c < column ? c : c + 1];
        }
    }
    return ((row + column) % 2 == 0 ? 1.0 : -1.0) * Determinant3(rest);
}

double Determinant(const Table& a)
{
    double sum = 0.0;
    for (std::size_t c = 0; c < 4; ++c)
    {
        sum += a[0][c] * Cofactor(a, 0, c);
    }
    return sum;
}

/// The inverse by cofactors: another road than elimination.
Table InverseByCofactors(const Table& a)
{
    const double determinant = Determinant(a);
    return EachElement([&](std::size_t r, std::size_t c) { return Cofactor(a, c, r) / determinant; });
}

testing::AssertionResult IsNear(const smMatrix44d& m, const Table& expected, double tolerance)
{
    const Table table = TableOf(m);
    for (std::size_t r = 0; r < 4; ++r)
    {
        for (std::size_t c = 0; c < 4; ++c)
        {
            if (!(std::abs(table[r][c] - expected[r][c]) <= tolerance))
            {
                return testing::AssertionFailure() << "element (" << r << "," << c << ") is " << table[r][c]
                                                   << ", expected " << expected[r][c];
            }
        }
    }
    return testing::AssertionSuccess();
}

class RandomTables
{
public:
    Table operator()()
    {
        return EachElement([&](std::size_t, std::size_t) { return Number(); });
    }
    double Number() { return m_Distribution(m_Generator); }

private:
    std::mt19937 m_Generator{44};
    std::uniform_real_distribution<double> m_Distribution{-3.0, 3.0};
};

constexpr int kMatrixRounds = 200;
constexpr double kTight = 1e-14;

// ---- making, reading, writing

TEST(smMatrix44d, StartsAsZerosOrAsTheIdentity)
{
    EXPECT_EQ(TableOf(smMatrix44d()), Table{});
    EXPECT_EQ(TableOf(smMatrix44d(false)), Table{});
    EXPECT_EQ(TableOf(smMatrix44d(true)), kIdentity);
    smMatrix44d m = MatrixOf(kCounted);
    m.Identity();
    EXPECT_EQ(TableOf(m), kIdentity);
}

TEST(smMatrix44d, TakesSixteenNumbersRowByRowAndStoresThemColumnByColumn)
{
    const smMatrix44d m(1, 2, 3, 4, 11, 12, 13, 14, 21, 22, 23, 24, 31, 32, 33, 34);
    const std::array<double, 16> stored{1, 11, 21, 31, 2, 12, 22, 32, 3, 13, 23, 33, 4, 14, 24, 34};
    for (std::size_t i = 0; i < 16; ++i)
    {
        EXPECT_EQ(m.GetData()[i], stored[i]) << "position " << i;
    }
}

TEST(smMatrix44d, GivesEachElementByReference)
{
    smMatrix44d m;
    const smMatrix44d& fixed = m;
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            m.At(r, c) = 10 * r + c + 1;
            const int nPosition = r + 4 * c;
            EXPECT_EQ(&fixed.At(r, c), m.GetData() + nPosition);
        }
    }
    EXPECT_EQ(TableOf(m), kCounted);
}

TEST(smMatrix44d, ReadsAndWritesWholeRowsAndColumns)
{
    const smMatrix44d counted = MatrixOf(kCounted);
    smMatrix44d byRows;
    smMatrix44d byColumns;
    for (int i = 0; i < 4; ++i)
    {
        const smVec4d row = counted.GetRow(i);
        const smVec4d column = counted.GetColumn(i);
        for (int k = 0; k < 4; ++k)
        {
            EXPECT_EQ(row[k], 10 * i + k + 1);
            EXPECT_EQ(column[k], 10 * k + i + 1);
        }
        byRows.SetRow(i, row);
        byColumns.SetColumn(i, column);
    }
    EXPECT_EQ(TableOf(byRows), kCounted);
    EXPECT_EQ(TableOf(byColumns), kCounted);
}

TEST(smMatrix44d, RefusesARowOutsideTheMatrix)
{
    for (const int nRow : {-1, 4, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
    {
        AssertionCapture reports;
        smMatrix44d m;
        const smMatrix44d& fixed = m;
        EXPECT_THROW(m.At(nRow, 0), AssertionFailure);
        EXPECT_THROW(fixed.At(nRow, 0), AssertionFailure);
        EXPECT_THROW(m.GetRow(nRow), AssertionFailure);
        EXPECT_THROW(m.SetRow(nRow, smVec4d()), AssertionFailure);
        const std::vector<std::string> expected(4, "nRow >=0 && nRow <= 3");
        EXPECT_EQ(reports.GetExpressions(), WhereReported(expected));
    }
}

TEST(smMatrix44d, RefusesAColumnOutsideTheMatrix)
{
    for (const int nCol : {-1, 4, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
    {
        AssertionCapture reports;
        smMatrix44d m;
        const smMatrix44d& fixed = m;
        EXPECT_THROW(m.At(0, nCol), AssertionFailure);
        EXPECT_THROW(fixed.At(0, nCol), AssertionFailure);
        EXPECT_THROW(m.GetColumn(nCol), AssertionFailure);
        EXPECT_THROW(m.SetColumn(nCol, smVec4d()), AssertionFailure);
        const std::vector<std::string> expected(4, "nCol >=0 && nCol <= 3");
        EXPECT_EQ(reports.GetExpressions(), WhereReported(expected));
    }
}

TEST(smMatrix44d, NamesTheBrokenRuleAndItsSourceInTheFailure)
{
    AssertionCapture reports;
    try
    {
        smMatrix44d().At(0, 4);
        FAIL() << "not refused";
    }
    catch (const AssertionFailure& failure)
    {
        EXPECT_STREQ(failure.GetSite().expression, "nCol >=0 && nCol <= 3");
        EXPECT_STREQ(failure.GetSite().path, "3DMath/smMatrix44d.h");
    }
}

TEST(smMatrix44d, CopiesAMinorColumnByColumn)
{
    const smMatrix44d m = MatrixOf(kCounted);
    EXPECT_EQ(m.GetMinor(1, 2), (std::array<double, 9>{1, 21, 31, 2, 22, 32, 4, 24, 34}));
    EXPECT_EQ(m.GetMinor(0, 0), (std::array<double, 9>{12, 22, 32, 13, 23, 33, 14, 24, 34}));
    EXPECT_EQ(m.GetMinor(3, 0), (std::array<double, 9>{2, 12, 22, 3, 13, 23, 4, 14, 24}));
}

TEST(smMatrix44d, CopiesTheUpperLeftBlockColumnByColumn)
{
    EXPECT_EQ(MatrixOf(kCounted).GetUpperLeft(), (std::array<double, 9>{1, 11, 21, 2, 12, 22, 3, 13, 23}));
}

TEST(smMatrix44d, RefusesAMinorWithoutARowOrColumnThatItHas)
{
    for (const int nOutside : {-1, 4})
    {
        AssertionCapture reports;
        EXPECT_THROW(smMatrix44d().GetMinor(nOutside, 0), AssertionFailure);
        EXPECT_THROW(smMatrix44d().GetMinor(0, nOutside), AssertionFailure);
        EXPECT_EQ(reports.GetExpressions(), WhereReported({"nExcludedRow >=0 && nExcludedRow <= 3",
                                                           "nExcludedCol >=0 && nExcludedCol <= 3"}));
    }
}

// ---- arithmetic

TEST(smMatrix44d, AddsSubtractsAndScalesElementByElement)
{
    RandomTables random;
    for (int round = 0; round < kMatrixRounds; ++round)
    {
        const Table a = random();
        const Table b = random();
        const double t = random.Number();
        const auto sum = EachElement([&](std::size_t r, std::size_t c) { return a[r][c] + b[r][c]; });
        const auto difference = EachElement([&](std::size_t r, std::size_t c) { return a[r][c] - b[r][c]; });
        const auto scaled = EachElement([&](std::size_t r, std::size_t c) { return a[r][c] * t; });
        const auto quotient = EachElement([&](std::size_t r, std::size_t c) { return a[r][c] / t; });
        smMatrix44d m = MatrixOf(a);
        EXPECT_EQ(TableOf(m + MatrixOf(b)), sum);
        EXPECT_EQ(TableOf(m - MatrixOf(b)), difference);
        EXPECT_EQ(TableOf(m * t), scaled);
        EXPECT_EQ(TableOf(t * m), scaled);
        EXPECT_EQ(TableOf(m / t), quotient);
        EXPECT_EQ(TableOf(m += MatrixOf(b)), sum);
        m = MatrixOf(a);
        EXPECT_EQ(TableOf(m -= MatrixOf(b)), difference);
        m = MatrixOf(a);
        EXPECT_EQ(TableOf(m *= t), scaled);
        m = MatrixOf(a);
        EXPECT_EQ(TableOf(m /= t), quotient);
    }
}

TEST(smMatrix44d, ReportsADivisorAtTheThresholdAndDividesAllTheSame)
{
    AssertionCapture reports;
    const smMatrix44d m = smMatrix44d(true) / smMatrix44d_zero;
    EXPECT_EQ(m.At(0, 0), 1.0 / 2.220446049250313e-15);
    const smMatrix44d infinite = smMatrix44d(true) / 0.0;
    EXPECT_EQ(infinite.At(3, 3), std::numeric_limits<double>::infinity());
    const std::vector<std::string> expected(2, "t > smMatrix44d_zero || t < -smMatrix44d_zero");
    EXPECT_EQ(reports.GetExpressions(), WhereReported(expected));
}

TEST(smMatrix44d, DividesByANumberBeyondTheThresholdWithoutAReport)
{
    AssertionCapture reports;
    EXPECT_EQ((smMatrix44d(true) / 3e-15).At(0, 0), 1.0 / 3e-15);
    EXPECT_EQ((smMatrix44d(true) / -3e-15).At(0, 0), 1.0 / -3e-15);
    EXPECT_TRUE(reports.GetExpressions().empty());
}

TEST(smMatrix44d, MultipliesRowsByColumns)
{
    // Row 0 of the first by column 0 of the second: 1*1 + 2*0 + 0*2 + 3*1.
    const smMatrix44d a(1, 2, 0, 3, 0, 1, 4, 0, 5, 0, 1, 0, 0, 0, 2, 1);
    const smMatrix44d b(1, 0, 2, 0, 0, 3, 0, 1, 2, 0, 1, 0, 1, 1, 0, 2);
    const Table expected{{{4, 9, 2, 8}, {8, 3, 4, 1}, {7, 0, 11, 0}, {5, 1, 2, 2}}};
    EXPECT_EQ(TableOf(a * b), expected);
}

TEST(smMatrix44d, MultipliesAsTheNaiveProductDoes)
{
    RandomTables random;
    for (int round = 0; round < kMatrixRounds; ++round)
    {
        const Table a = random();
        const Table b = random();
        EXPECT_EQ(TableOf(MatrixOf(a) * MatrixOf(b)), Product(a, b));
        smMatrix44d m = MatrixOf(a);
        EXPECT_EQ(&(m *= MatrixOf(b)), &m);
        EXPECT_EQ(TableOf(m), Product(a, b));
    }
}

TEST(smMatrix44d, MultipliesOntoItself)
{
    RandomTables random;
    const Table a = random();
    smMatrix44d m = MatrixOf(a);
    m *= m;
    EXPECT_EQ(TableOf(m), Product(a, a));
}

TEST(smMatrix44d, TransposesInPlaceAndIntoAnother)
{
    smMatrix44d m = MatrixOf(kCounted);
    smMatrix44d other(true);
    m.Transpose(other);
    EXPECT_EQ(TableOf(other), Transposed(kCounted));
    EXPECT_EQ(TableOf(m), kCounted);
    m.Transpose(m);
    EXPECT_EQ(TableOf(m), Transposed(kCounted)) << "the target may be the source";
    m.Transpose();
    EXPECT_EQ(TableOf(m), kCounted);
}

// ---- the inverse

TEST(smMatrix44d, InvertsAMatrixWorkedByHand)
{
    // A translation after a scale: the inverse scales back what was moved back.
    const smMatrix44d m(2, 0, 0, 6, 0, 4, 0, -4, 0, 0, 8, 16, 0, 0, 0, 1);
    const Table expected{{{0.5, 0, 0, -3}, {0, 0.25, 0, 1}, {0, 0, 0.125, -2}, {0, 0, 0, 1}}};
    smMatrix44d inverse;
    ASSERT_TRUE(smMatrix44d::Inverse(m, inverse));
    EXPECT_EQ(TableOf(inverse), expected);
}

TEST(smMatrix44d, InvertsAPermutationThroughItsExchanges)
{
    // Row r has its 1 in column (r + 1) mod 4: every pivot has to be fetched from further on.
    const Table shift{{{0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}, {1, 0, 0, 0}}};
    smMatrix44d inverse;
    ASSERT_TRUE(smMatrix44d::Inverse(MatrixOf(shift), inverse));
    EXPECT_EQ(TableOf(inverse), Transposed(shift));
}

TEST(smMatrix44d, InvertsAsTheCofactorsDo)
{
    RandomTables random;
    int nCompared = 0;
    for (int round = 0; round < kMatrixRounds; ++round)
    {
        const Table a = random();
        if (std::abs(Determinant(a)) < 1.0) // badly conditioned: both roads lose digits
        {
            continue;
        }
        ++nCompared;
        smMatrix44d inverse;
        ASSERT_TRUE(smMatrix44d::Inverse(MatrixOf(a), inverse));
        EXPECT_TRUE(IsNear(inverse, InverseByCofactors(a), 1e-10));
        EXPECT_TRUE(IsNear(MatrixOf(a) * inverse, kIdentity, 1e-11));
    }
    EXPECT_GT(nCompared, kMatrixRounds / 2);
}

/// The elimination once more, in the order of its steps, on a plain table: the same bits must come out.
bool LiteralInverse(const Table& source, Table& target)
{
    Table w; // w[a][b]
    int perm[4] = {0, 1, 2, 3};
    for (std::size_t a = 0; a < 4; ++a)
    {
        for (std::size_t b = 0; b < 4; ++b)
        {
            w[a][b] = source[b][a];
        }
    }
    for (std::size_t k = 0; k < 4; ++k)
    {
        std::size_t p = k;
        for (std::size_t b = k; b < 4; ++b)
        {
            p = w[k][b] * w[k][b] > w[k][p] * w[k][p] ? b : p;
        }
        if (w[k][p] == 0.0)
        {
            return false;
        }
        for (std::size_t a = 0; a < 4; ++a)
        {
            std::swap(w[a][k], w[a][p]);
        }
        std::swap(perm[k], perm[p]);
        const Table before = w;
        const double inv = 1 / before[k][k];
        for (std::size_t a = 0; a < 4; ++a)
        {
            for (std::size_t b = 0; b < 4; ++b)
            {
                const double negated = before[k][b] * -inv;
                w[a][b] = a == k && b == k ? inv
                          : a == k         ? negated
                          : b == k         ? inv * before[a][k]
                                           : before[a][b] + negated * before[a][k];
            }
        }
    }
    for (std::size_t b = 0; b < 4; ++b)
    {
        for (std::size_t a = 0; a < 4; ++a)
        {
            target[b][static_cast<std::size_t>(perm[a])] = w[a][b];
        }
    }
    return true;
}

TEST(smMatrix44d, InvertsBitForBitAsTheStepsWrittenOut)
{
    RandomTables random;
    for (int round = 0; round < kMatrixRounds; ++round)
    {
        const Table a = random();
        Table expected{};
        ASSERT_TRUE(LiteralInverse(a, expected));
        smMatrix44d inverse;
        ASSERT_TRUE(smMatrix44d::Inverse(MatrixOf(a), inverse));
        EXPECT_EQ(TableOf(inverse), expected);
    }
}

TEST(smMatrix44d, RefusesToInvertAMatrixWithAZeroColumn)
{
    RandomTables random;
    for (std::size_t column = 0; column < 4; ++column)
    {
        Table a = random();
        for (std::size_t r = 0; r < 4; ++r)
        {
            a[r][column] = 0.0;
        }
        smMatrix44d target = MatrixOf(kCounted);
        EXPECT_FALSE(smMatrix44d::Inverse(MatrixOf(a), target)) << "column " << column;
        EXPECT_EQ(TableOf(target), kCounted) << "the target stays";
        smMatrix44d m = MatrixOf(a);
        EXPECT_THROW(m.Invert(), CExcpSingularMatrix);
        EXPECT_EQ(TableOf(m), a);
    }
}

TEST(smMatrix44d, InvertsWithAPivotOfTenToTheMinus300)
{
    const smMatrix44d m = MakeScale(1e-300, 1, 1); // its square is 0, the test is for the element
    smMatrix44d inverse;
    ASSERT_TRUE(smMatrix44d::Inverse(m, inverse));
    EXPECT_EQ(inverse.At(0, 0), 1.0 / 1e-300);
    EXPECT_EQ(inverse.At(1, 1), 1.0);
}

TEST(smMatrix44d, InvertsInPlace)
{
    RandomTables random;
    const smMatrix44d m = MatrixOf(random());
    smMatrix44d apart;
    ASSERT_TRUE(smMatrix44d::Inverse(m, apart));
    smMatrix44d inPlace = m;
    ASSERT_TRUE(smMatrix44d::Inverse(inPlace, inPlace));
    EXPECT_EQ(TableOf(inPlace), TableOf(apart));
    smMatrix44d inverted = m;
    inverted.Invert();
    EXPECT_EQ(TableOf(inverted), TableOf(apart));
}

// ---- elementary matrices

const double kAngle = 0.7;
const double kCos = std::cos(kAngle);
const double kSin = std::sin(kAngle);
const Table kRotationX{{{1, 0, 0, 0}, {0, kCos, -kSin, 0}, {0, kSin, kCos, 0}, {0, 0, 0, 1}}};
const Table kRotationY{{{kCos, 0, kSin, 0}, {0, 1, 0, 0}, {-kSin, 0, kCos, 0}, {0, 0, 0, 1}}};
const Table kRotationZ{{{kCos, -kSin, 0, 0}, {kSin, kCos, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
const Table kTranslation{{{1, 0, 0, 1}, {0, 1, 0, 2}, {0, 0, 1, 3}, {0, 0, 0, 1}}};
const Table kScale{{{2, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 5, 0}, {0, 0, 0, 1}}};

TEST(smMatrix44d, RotatesAboutTheThreeAxes)
{
    EXPECT_EQ(TableOf(MakeRotationX(kAngle)), kRotationX);
    EXPECT_EQ(TableOf(MakeRotationY(kAngle)), kRotationY);
    EXPECT_EQ(TableOf(MakeRotationZ(kAngle)), kRotationZ);
}

TEST(smMatrix44d, OverwritesItselfWithAnElementaryMatrix)
{
    smMatrix44d m = MatrixOf(kCounted);
    m.SetRotationX(kAngle);
    EXPECT_EQ(TableOf(m), kRotationX);
    m.SetRotationY(kAngle);
    EXPECT_EQ(TableOf(m), kRotationY);
    m.SetRotationZ(kAngle);
    EXPECT_EQ(TableOf(m), kRotationZ);
    m.SetRotation(kAngle, smVec3d(0, 0, 2));
    EXPECT_TRUE(IsNear(m, kRotationZ, kTight));
    m.SetTranslation(smVec3d(1, 2, 3));
    EXPECT_EQ(TableOf(m), kTranslation);
    m.SetScale(smVec3d(2, 3, 5));
    EXPECT_EQ(TableOf(m), kScale);
}

TEST(smMatrix44d, TranslatesByAVectorOfEitherWidthOrThreeNumbers)
{
    EXPECT_EQ(TableOf(MakeTranslation(smVec3d(1, 2, 3))), kTranslation);
    EXPECT_EQ(TableOf(MakeTranslation(smVec3f(1, 2, 3))), kTranslation);
    EXPECT_EQ(TableOf(MakeTranslation(1, 2, 3)), kTranslation);
    smMatrix44d m;
    m.SetTranslation(smVec3f(1, 2, 3));
    EXPECT_EQ(TableOf(m), kTranslation);
    m.Identity();
    m.SetTranslation(1, 2, 3);
    EXPECT_EQ(TableOf(m), kTranslation);
}

TEST(smMatrix44d, KeepsATranslationInPositions12To14)
{
    const smMatrix44d m = MakeTranslation(1, 2, 3);
    EXPECT_EQ(m.GetData()[12], 1.0);
    EXPECT_EQ(m.GetData()[13], 2.0);
    EXPECT_EQ(m.GetData()[14], 3.0);
    EXPECT_EQ(m.GetData()[15], 1.0);
}

TEST(smMatrix44d, ScalesByAVectorOfEitherWidthOrThreeNumbersOrOne)
{
    EXPECT_EQ(TableOf(MakeScale(smVec3d(2, 3, 5))), kScale);
    EXPECT_EQ(TableOf(MakeScale(smVec3f(2, 3, 5))), kScale);
    EXPECT_EQ(TableOf(MakeScale(2, 3, 5)), kScale);
    const Table even{{{7, 0, 0, 0}, {0, 7, 0, 0}, {0, 0, 7, 0}, {0, 0, 0, 1}}};
    EXPECT_EQ(TableOf(MakeScale(7)), even);
    smMatrix44d m;
    m.SetScale(smVec3f(2, 3, 5));
    EXPECT_EQ(TableOf(m), kScale);
    m.SetScale(2, 3, 5);
    EXPECT_EQ(TableOf(m), kScale);
    m.SetScale(7.0);
    EXPECT_EQ(TableOf(m), even);
}

TEST(smMatrix44d, RotatesAboutAnAxisOfAnyLength)
{
    EXPECT_TRUE(IsNear(MakeRotation(kAngle, smVec3d(9, 0, 0)), kRotationX, kTight));
    EXPECT_TRUE(IsNear(MakeRotation(kAngle, smVec3d(0, 0.01, 0)), kRotationY, kTight));
    EXPECT_TRUE(IsNear(MakeRotation(kAngle, smVec3d(0, 0, 1)), kRotationZ, kTight));
    EXPECT_TRUE(IsNear(MakeRotation(kAngle, smVec3d(0, 0, -1)), Transposed(kRotationZ), kTight));
}

TEST(smMatrix44d, RotatesByAThirdOfATurnAboutTheSpaceDiagonal)
{
    const double third = 2.0 * std::acos(-1.0) / 3.0;
    const Table cycle{{{0, 0, 1, 0}, {1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 0, 1}}}; // x to y to z to x
    EXPECT_TRUE(IsNear(MakeRotation(third, smVec3d(1, 1, 1)), cycle, kTight));
}

TEST(smMatrix44d, RotatesAboutAnAxisAsRodriguesDoes)
{
    RandomTables random;
    for (int round = 0; round < kMatrixRounds; ++round)
    {
        const smVec3d axis(random.Number(), random.Number(), random.Number());
        const smVec3d v(random.Number(), random.Number(), random.Number());
        const double angle = random.Number();
        const smVec3d u = axis / axis.Length();
        const smVec3d turned =
            v * std::cos(angle) + u.Cross(v) * std::sin(angle) + u * (u.Dot(v) * (1.0 - std::cos(angle)));
        const Table m = TableOf(MakeRotation(angle, axis));
        for (std::size_t r = 0; r < 3; ++r)
        {
            EXPECT_NEAR(m[r][0] * v.x + m[r][1] * v.y + m[r][2] * v.z, turned[static_cast<int>(r)], 1e-13);
            EXPECT_EQ(m[r][3], 0.0);
            EXPECT_EQ(m[3][r], 0.0);
        }
        EXPECT_EQ(m[3][3], 1.0);
    }
}

TEST(smMatrix44d, ReportsAnAxisWithoutLength)
{
    AssertionCapture reports;
    const smMatrix44d m = MakeRotation(kAngle, smVec3d());
    EXPECT_EQ(reports.GetExpressions(), WhereReported({"t > smVec3d_zero"}));
    EXPECT_TRUE(std::isnan(m.At(0, 0))) << "the axis was divided all the same";
}

TEST(smMatrix44d, MultipliesElementaryMatricesFromTheLeft)
{
    const smMatrix44d start = MatrixOf(RandomTables()());
    const Table startTable = TableOf(start);
    smMatrix44d m = start;
    m.RotateX(kAngle);
    EXPECT_EQ(TableOf(m), Product(kRotationX, startTable));
    m = start;
    m.RotateY(kAngle);
    EXPECT_EQ(TableOf(m), Product(kRotationY, startTable));
    m = start;
    m.RotateZ(kAngle);
    EXPECT_EQ(TableOf(m), Product(kRotationZ, startTable));
    m = start;
    m.Rotate(kAngle, smVec3d(0, 3, 0));
    EXPECT_TRUE(IsNear(m, Product(kRotationY, startTable), kTight));
    m = start;
    m.Scale(smVec3d(2, 3, 5));
    EXPECT_EQ(TableOf(m), Product(kScale, startTable));
    m = start;
    m.Translate(smVec3d(1, 2, 3));
    EXPECT_TRUE(IsNear(m, Product(kTranslation, startTable), kTight));
}

TEST(smMatrix44d, TranslatesByMultiplesOfItsLastRow)
{
    smMatrix44d m = MatrixOf(kCounted); // last row 31, 32, 33, 34
    m.Translate(smVec3d(1, 2, -1));
    const Table expected{{{32, 34, 36, 38}, {73, 76, 79, 82}, {-10, -10, -10, -10}, {31, 32, 33, 34}}};
    EXPECT_EQ(TableOf(m), expected);
}

TEST(smMatrix44d, ComposesByAFloatVectorToo)
{
    smMatrix44d m = MatrixOf(kCounted);
    m.Translate(smVec3f(1, 2, -1));
    smMatrix44d wide = MatrixOf(kCounted);
    wide.Translate(smVec3d(1, 2, -1));
    EXPECT_EQ(TableOf(m), TableOf(wide));
    m.Scale(smVec3f(2, 3, 5));
    wide.Scale(smVec3d(2, 3, 5));
    EXPECT_EQ(TableOf(m), TableOf(wide));
}

// ---- vectors in the row form

TEST(smMatrix44d, AddsRowThreeToAPointInTheRowForm)
{
    const smMatrix44d m = MatrixOf(kCounted);
    const smVec3d q = smVec3d(1, 10, 100) * m;
    // Column by column: 1 * row 0 + 10 * row 1 + 100 * row 2 + row 3.
    EXPECT_EQ(q.x, 1 + 110 + 2100 + 31);
    EXPECT_EQ(q.y, 2 + 120 + 2200 + 32);
    EXPECT_EQ(q.z, 3 + 130 + 2300 + 33);
}

TEST(smMatrix44d, DoesNotTranslateAPointInTheRowForm)
{
    const smVec3d q = smVec3d(4, 5, 6) * MakeTranslation(1, 2, 3);
    EXPECT_EQ(q.x, 4.0);
    EXPECT_EQ(q.y, 5.0);
    EXPECT_EQ(q.z, 6.0);
}

TEST(smMatrix44d, TranslatesARowVectorByItsTranspose)
{
    smMatrix44d m = MakeTranslation(1, 2, 3);
    m.Transpose();
    const smVec3d q = smVec3d(4, 5, 6) * m;
    EXPECT_EQ(q.x, 5.0);
    EXPECT_EQ(q.y, 7.0);
    EXPECT_EQ(q.z, 9.0);
}

TEST(smMatrix44d, DividesByTheResultingWInTheFourComponentForm)
{
    const smMatrix44d m(2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 8, 3, 0, 0, 0, 1);
    const smVec4d q = smVec4d(1, 1, 1, 1) * m; // w = 3 + 1
    EXPECT_EQ(q.x, 0.5);
    EXPECT_EQ(q.y, 1.0);
    EXPECT_EQ(q.z, 2.0);
    EXPECT_EQ(q.w, 4.0);
}

TEST(smMatrix44d, ReckonsTheRowFormsAsTheNaiveProductDoes)
{
    RandomTables random;
    for (int round = 0; round < kMatrixRounds; ++round)
    {
        const Table m = random();
        const smVec4d v(random.Number(), random.Number(), random.Number(), random.Number());
        std::array<double, 4> row;
        std::array<double, 4> point;
        for (std::size_t j = 0; j < 4; ++j)
        {
            row[j] = v.x * m[0][j] + v.y * m[1][j] + v.z * m[2][j] + v.w * m[3][j];
            point[j] = v.x * m[0][j] + v.y * m[1][j] + v.z * m[2][j] + m[3][j];
        }
        const smVec4d q = v * MatrixOf(m);
        const smVec3d p = smVec3d(v.x, v.y, v.z) * MatrixOf(m);
        for (int j = 0; j < 3; ++j)
        {
            EXPECT_EQ(q[j], row[static_cast<std::size_t>(j)] / row[3]);
            EXPECT_EQ(p[j], point[static_cast<std::size_t>(j)]);
        }
        EXPECT_EQ(q.w, row[3]);
    }
}

TEST(smMatrix44d, WidensFloatVectorsInTheRowForms)
{
    const smMatrix44d m = MatrixOf(RandomTables()());
    const smVec3f narrow3(0.1F, 0.2F, 0.3F);
    const smVec4f narrow4(0.1F, 0.2F, 0.3F, 0.4F);
    const smVec3d q3 = narrow3 * m;
    const smVec3d wide3 = smVec3d(0.1F, 0.2F, 0.3F) * m;
    const smVec4d q4 = narrow4 * m;
    const smVec4d wide4 = smVec4d(0.1F, 0.2F, 0.3F, 0.4F) * m;
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_EQ(q3[i], wide3[i]);
        EXPECT_EQ(q4[i], wide4[i]);
    }
    EXPECT_EQ(q4.w, wide4.w);
}

TEST(smMatrix44d, ThrowsWithoutAReportWhenTheResultingWIsZero)
{
    AssertionCapture reports;
    smMatrix44d m(true);
    for (const double w : {0.0, smMatrix44d_zero, -smMatrix44d_zero})
    {
        EXPECT_THROW(smVec4d(1, 2, 3, w) * m, CExcpDivideZero);
    }
    EXPECT_THROW(smVec4f(1, 2, 3, 0) * m, CExcpDivideZero);
    EXPECT_NO_THROW(smVec4d(1, 2, 3, 3e-15) * m);
    EXPECT_TRUE(reports.GetExpressions().empty());
}

TEST(smMatrix44d, DoesNotDivideInTheThreeComponentForm)
{
    const smMatrix44d m(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0); // w would be 0
    const smVec3d q = smVec3d(1, 2, 3) * m;
    EXPECT_EQ(q.z, 3.0);
}
}
}
