#include "SparseMatrix.h"
#include "Capture.h"
#include "LiteralMatrix.h"
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;

/// About a quarter of the places filled, each row in an order of its own.
CSparseMatrix MakeRandomMatrix(int rows, int columns, unsigned seed)
{
    std::mt19937 random(seed);
    CSparseMatrix matrix(rows, columns);
    for (int i = 0; i < rows * columns / 4; ++i)
    {
        const int row = static_cast<int>(random() % static_cast<unsigned>(rows));
        const int column = static_cast<int>(random() % static_cast<unsigned>(columns));
        matrix.SetValue(row, column, static_cast<double>(random()) / 4294967296.0 - 0.5);
    }
    return matrix;
}

void ExpectSame(const CSparseMatrix& a, const CSparseMatrix& b)
{
    ASSERT_EQ(a.GetRowCount(), b.GetRowCount());
    ASSERT_EQ(a.GetColumnCount(), b.GetColumnCount());
    for (int row = 0; row < a.GetRowCount(); ++row)
    {
        ASSERT_EQ(a.GetColumnsOf(row), b.GetColumnsOf(row)) << row;
        ASSERT_EQ(a.GetValuesOf(row), b.GetValuesOf(row)) << row;
    }
}

double ValueAt(const CSparseMatrix& matrix, int row, int column)
{
    double value = -1.0;
    EXPECT_TRUE(matrix.GetValue(row, column, value));
    return value;
}

TEST(CSparseMatrix, KeepsTheEntriesOfARowInTheOrderOfTheirInsertion)
{
    CSparseMatrix matrix(2, 4);
    EXPECT_TRUE(matrix.SetValue(1, 3, 1.0));
    EXPECT_TRUE(matrix.SetValue(1, 0, 2.0));
    EXPECT_FALSE(matrix.SetValue(1, 3, 3.0)); // overwritten where it stands
    EXPECT_THAT(matrix.GetColumnsOf(1), ElementsAre(3, 0));
    EXPECT_THAT(matrix.GetValuesOf(1), ElementsAre(3.0, 2.0));
    EXPECT_TRUE(matrix.GetColumnsOf(0).empty());
}

TEST(CSparseMatrix, RefusesAnInvalidRowByAMessageBox)
{
    const MessageCapture messages;
    CSparseMatrix matrix(2, 2);
    EXPECT_FALSE(matrix.SetValue(2, 0, 1.0));
    EXPECT_FALSE(matrix.SetValue(-1, 0, 1.0));
    EXPECT_THAT(messages.GetTexts(), ElementsAre("Error: Invalid Row Index", "Error: Invalid Row Index"));
    EXPECT_FALSE(matrix.HasEntry(2, 0));
}

TEST(CSparseMatrix, AssertsItsColumnsAndItsSize)
{
    const AssertionCapture assertions;
    CSparseMatrix matrix(2, 2);
    EXPECT_THROW(matrix.SetValue(0, 2, 1.0), AssertionFailure);
    EXPECT_THROW(matrix.SetValue(0, -1, 1.0), AssertionFailure);
    EXPECT_THROW(matrix.AddValue(2, 0, 1.0), AssertionFailure);
    EXPECT_THROW(matrix.SetSize(-1, 2), AssertionFailure);
}

TEST(CSparseMatrix, GivesZeroForAnAbsentEntry)
{
    CSparseMatrix matrix(2, 2);
    EXPECT_EQ(ValueAt(matrix, 0, 1), 0.0);
    EXPECT_EQ(ValueAt(matrix, 9, 1), 0.0);
    matrix.SetValue(0, 1, 0.0);
    EXPECT_TRUE(matrix.HasEntry(0, 1)); // an entry all the same
}

TEST(CSparseMatrix, AddsToEntriesAndMakesThem)
{
    CSparseMatrix matrix(1, 2);
    matrix.AddValue(0, 1, 2.0);
    matrix.AddValue(0, 1, 0.5);
    matrix.AddValue(0, 0, -0.0);
    EXPECT_THAT(matrix.GetColumnsOf(0), ElementsAre(1, 0));
    EXPECT_THAT(matrix.GetValuesOf(0), ElementsAre(2.5, 0.0));
    EXPECT_FALSE(std::signbit(matrix.GetValuesOf(0)[1])); // 0 + -0 is 0
}

TEST(CSparseMatrix, FindsTheEntriesOfLongRows)
{
    constexpr int kLength = 1000;
    CSparseMatrix matrix(1, kLength);
    for (int column = kLength - 1; column >= 0; column -= 2)
    {
        EXPECT_TRUE(matrix.SetValue(0, column, column));
    }
    EXPECT_FALSE(matrix.SetValue(0, 501, -1.0));
    EXPECT_EQ(ValueAt(matrix, 0, 501), -1.0);
    EXPECT_EQ(ValueAt(matrix, 0, 500), 0.0);
    EXPECT_TRUE(matrix.RemoveEntry(0, 701));
    EXPECT_FALSE(matrix.RemoveEntry(0, 701));
    EXPECT_EQ(ValueAt(matrix, 0, 703), 703.0);
    EXPECT_EQ(ValueAt(matrix, 0, 1), 1.0);
    for (int column = kLength - 1; column > 20; column -= 2) // until the row is short
    {
        matrix.RemoveEntry(0, column);
    }
    EXPECT_EQ(matrix.GetColumnsOf(0).front(), 19);
    EXPECT_EQ(ValueAt(matrix, 0, 19), 19.0);
}

TEST(CSparseMatrix, IsWithoutEntriesOnceItsSizeIsSet)
{
    CSparseMatrix matrix = MakeRandomMatrix(4, 40, 1);
    matrix.SetSize(4, 40);
    EXPECT_FALSE(matrix.HasEntry(0, 0));
    matrix.Clear();
    EXPECT_EQ(matrix.GetRowCount(), 0);
    EXPECT_EQ(matrix.GetEpsilon(), 1e-14);
}

TEST(CSparseMatrix, LooksForExactValues)
{
    CSparseMatrix matrix(2, 2);
    matrix.SetValue(1, 1, 0.1);
    EXPECT_TRUE(matrix.HasValue(0.1));
    EXPECT_FALSE(matrix.HasValue(std::nextafter(0.1, 1.0)));
    EXPECT_FALSE(matrix.HasValue(0.0)); // absent entries are none
}

TEST(CSparseMatrix, MultipliesAsRowsAgainstColumns)
{
    for (unsigned seed = 0; seed < 20; ++seed)
    {
        const CSparseMatrix a = MakeRandomMatrix(17, 40, seed);
        const CSparseMatrix b = MakeRandomMatrix(40, 45, seed + 100);
        CSparseMatrix product;
        CSparseMatrix expected;
        EXPECT_TRUE(a.Multiply(b, product));
        MultiplyLiterally(a, b, expected);
        ExpectSame(product, expected);
    }
}

TEST(CSparseMatrix, StoresAProductThatCancels)
{
    CSparseMatrix a(1, 2);
    a.SetValue(0, 0, 1.0);
    a.SetValue(0, 1, -1.0);
    CSparseMatrix b(2, 2);
    b.SetValue(0, 0, 3.0);
    b.SetValue(1, 0, 3.0);
    EXPECT_TRUE(a.Multiply(b, a)); // into itself
    EXPECT_THAT(a.GetColumnsOf(0), ElementsAre(0));
    EXPECT_THAT(a.GetValuesOf(0), ElementsAre(0.0));
}

TEST(CSparseMatrix, RefusesSizesThatDoNotFit)
{
    const MessageCapture messages;
    const CSparseMatrix a(2, 3);
    CSparseMatrix result(1, 1);
    EXPECT_FALSE(a.Multiply(a, result));
    EXPECT_THAT(messages.GetTexts(), ElementsAre("Error: Matrix Multiply Condition Not Favored"));
    EXPECT_FALSE(a.Add(CSparseMatrix(3, 2), result));
    EXPECT_FALSE(a.Subtract(CSparseMatrix(2, 2), result));
    EXPECT_EQ(result.GetRowCount(), 1);
    double value = 7.0;
    EXPECT_FALSE(a.Dot(a, value));
    EXPECT_FALSE(CSparseMatrix(2, 1).Dot(CSparseMatrix(3, 1), value));
    EXPECT_EQ(value, 7.0);
}

TEST(CSparseMatrix, AddsAndSubtractsPlaceByPlace)
{
    for (unsigned seed = 0; seed < 20; ++seed)
    {
        CSparseMatrix a = MakeRandomMatrix(9, 50, seed);
        CSparseMatrix b = MakeRandomMatrix(9, 50, seed + 100);
        a.SetValue(0, 7, 0.25);
        b.SetValue(0, 7, 0.25); // gone from the difference
        CSparseMatrix result;
        CSparseMatrix expected;
        EXPECT_TRUE(a.Add(b, result));
        AddLiterally(a, b, 1.0, expected);
        ExpectSame(result, expected);
        EXPECT_TRUE(a.Subtract(b, result));
        AddLiterally(a, b, -1.0, expected);
        ExpectSame(result, expected);
        EXPECT_FALSE(result.HasEntry(0, 7));
    }
}

TEST(CSparseMatrix, LeavesOutSumsBelowAHundredthOfATrillionth)
{
    // 1e-14 itself is not below.
    CSparseMatrix a(1, 4);
    a.SetValue(0, 0, 0.9e-14);
    a.SetValue(0, 1, 1e-14);
    a.SetValue(0, 2, -0.9e-14);
    a.SetValue(0, 3, -1e-14);
    const CSparseMatrix none(1, 4);
    CSparseMatrix result;
    EXPECT_TRUE(a.Add(none, result));
    EXPECT_THAT(result.GetColumnsOf(0), ElementsAre(1, 3));
    EXPECT_TRUE(none.Subtract(a, result));
    EXPECT_THAT(result.GetColumnsOf(0), ElementsAre(1, 3));
    EXPECT_THAT(result.GetValuesOf(0), ElementsAre(-1e-14, 1e-14));
}

TEST(CSparseMatrix, TakesTheProductOfTwoColumns)
{
    CSparseMatrix a(3, 1);
    CSparseMatrix b(3, 1);
    a.SetValue(0, 0, 2.0);
    a.SetValue(2, 0, 3.0);
    b.SetValue(2, 0, 5.0);
    double value = 0.0;
    EXPECT_TRUE(a.Dot(b, value));
    EXPECT_EQ(value, 15.0);
}

TEST(CSparseMatrix, TransposesRowByRow)
{
    CSparseMatrix matrix(2, 3);
    matrix.SetValue(1, 2, 1.0);
    matrix.SetValue(0, 2, 2.0);
    CSparseMatrix transposed;
    matrix.Transpose(transposed);
    EXPECT_EQ(transposed.GetRowCount(), 3);
    EXPECT_THAT(transposed.GetColumnsOf(2), ElementsAre(0, 1));
    EXPECT_THAT(transposed.GetValuesOf(2), ElementsAre(2.0, 1.0));
}

TEST(CSparseMatrix, MultipliesAOneBasedVector)
{
    CSparseMatrix matrix = MakeRandomMatrix(30, 50, 3);
    std::vector<double> x(51);
    for (std::size_t i = 0; i < x.size(); ++i)
    {
        x[i] = std::sqrt(static_cast<double>(i)) - 3.0;
    }
    std::vector<double> y(31, 9.0);
    matrix.MultiplyVector2(x, y, 50);
    EXPECT_EQ(y[0], 9.0);
    y[0] = 0.0;
    EXPECT_EQ(y, MultiplyVectorLiterally(matrix, x));
    matrix.SetValue(4, 4, 1e3);
    matrix.AddValue(5, 4, 1e3);
    matrix.RemoveEntry(4, matrix.GetColumnsOf(4).front());
    matrix.MultiplyVector2(x, y, 50);
    EXPECT_EQ(y, MultiplyVectorLiterally(matrix, x)); // as it stands by now
}

TEST(CSparseMatrix, LeavesAVectorOfAnotherLength)
{
    ConsoleCapture console;
    const CSparseMatrix matrix(2, 2);
    std::vector<double> y{1.0, 2.0, 3.0};
    matrix.MultiplyVector2(y, y, 3);
    EXPECT_EQ(console.GetText(), "Error: CSparseMatrix::MultiplyVector2\n");
    EXPECT_THAT(y, ElementsAre(1.0, 2.0, 3.0));
}

TEST(CSparseMatrix, CountsWhatIsNotSymmetric)
{
    ConsoleCapture console;
    CSparseMatrix matrix(40, 40);
    matrix.SetValue(0, 1, 1.0); // its counterpart is 0
    matrix.SetValue(2, 3, 1.0);
    matrix.SetValue(3, 2, 1.0 + 0.9e-10);
    EXPECT_TRUE(matrix.CheckSymmetric()); // 1 of 1600 places
    matrix.SetValue(5, 7, 1.0);
    EXPECT_FALSE(matrix.CheckSymmetric());
    EXPECT_EQ(console.GetText(), "\n# Not Symmetric Elements = 1\n\n# Not Symmetric Elements = 2\n");
}

TEST(CSparseMatrix, CountsADifferenceOfExactlyATenBillionth)
{
    const ConsoleCapture console;
    CSparseMatrix matrix(2, 2);
    matrix.SetValue(0, 1, 1e-10); // its counterpart is 0
    EXPECT_FALSE(matrix.CheckSymmetric());
    matrix.SetValue(0, 1, std::nextafter(1e-10, 0.0));
    EXPECT_TRUE(matrix.CheckSymmetric());
}

TEST(CSparseMatrix, SaysItsMean)
{
    ConsoleCapture console;
    CSparseMatrix matrix(2, 2);
    EXPECT_EQ(matrix.AverageValue(), 0.0);
    matrix.SetValue(0, 0, 1.0);
    matrix.SetValue(1, 0, 2.0);
    EXPECT_EQ(matrix.AverageValue(), 1.5);
    EXPECT_EQ(console.GetText(), "\n# Average Elements = 0.000000\n\n# Average Elements = 1.500000\n");
}

TEST(CSparseMatrix, PrintsAllPlaces)
{
    ConsoleCapture console;
    CSparseMatrix matrix(2, 2);
    matrix.SetValue(0, 1, -1.5);
    matrix.Print();
    EXPECT_EQ(console.GetText(), "\n Print Matrix\n  0.0000\t -1.5000\t\n  0.0000\t  0.0000\t\n");
}
}
}
