#include "Matrix.h"
#include "Capture.h"
#include "GVF.h"
#include <Eigen/Eigenvalues>
#include <algorithm>
#include <array>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace tessarine
{
namespace
{
/// Row by row.
Matrix MakeMatrix(int nRows, int nColumns, std::initializer_list<double> values)
{
    Matrix matrix(nRows, nColumns);
    int place = 0;
    for (const double value : values)
    {
        matrix.SetElement(place / nColumns, place % nColumns, value);
        ++place;
    }
    return matrix;
}

std::vector<double> GetElements(const Matrix& matrix)
{
    std::vector<double> values;
    for (int row = 0; row < matrix.GetRowCount(); ++row)
    {
        for (int column = 0; column < matrix.GetColumnCount(); ++column)
        {
            values.push_back(matrix.GetElement(row, column));
        }
    }
    return values;
}

TEST(Matrix, HasOneElementUnlessToldOtherwise)
{
    const Matrix matrix;
    EXPECT_EQ(matrix.GetRowCount(), 1);
    EXPECT_EQ(matrix.GetColumnCount(), 1);
}

TEST(Matrix, RefusesPositionsThatAreNotThere)
{
    Matrix matrix = MakeMatrix(2, 3, {1, 2, 3, 4, 5, 6});
    for (const auto& [row, column] :
         {std::array{-1, 0}, std::array{0, -1}, std::array{2, 0}, std::array{0, 3}})
    {
        EXPECT_FALSE(matrix.SetElement(row, column, 7.0));
        const AssertionCapture capture;
        EXPECT_THROW(static_cast<void>(matrix.GetElement(row, column)), AssertionFailure);
    }
    EXPECT_THAT(GetElements(matrix), testing::ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_TRUE(matrix.SetElement(1, 2, 7.0));
    EXPECT_EQ(matrix.GetElement(1, 2), 7.0);
}

TEST(Matrix, CopiesARow)
{
    const Matrix matrix = MakeMatrix(2, 3, {1, 2, 3, 4, 5, 6});
    std::array<double, 3> row{};
    matrix.GetRow(1, row);
    EXPECT_THAT(row, testing::ElementsAre(4, 5, 6));
    const AssertionCapture capture;
    EXPECT_THROW(matrix.GetRow(2, row), AssertionFailure);
    std::array<double, 2> shorter{};
    EXPECT_THROW(matrix.GetRow(0, shorter), AssertionFailure);
}

TEST(Matrix, IsUnchangedByAnAssignmentToItself)
{
    Matrix matrix = MakeMatrix(1, 2, {1, 2});
    const Matrix& self = matrix;
    matrix = self;
    EXPECT_THAT(GetElements(matrix), testing::ElementsAre(1, 2));
}

TEST(Matrix, TakesTheElementsOfAnotherOfItsShapeOnly)
{
    Matrix matrix = MakeMatrix(2, 1, {1, 2});
    matrix = MakeMatrix(2, 1, {3, 4});
    EXPECT_THAT(GetElements(matrix), testing::ElementsAre(3, 4));
    const AssertionCapture capture;
    EXPECT_THROW(matrix = MakeMatrix(1, 2, {5, 6}), AssertionFailure);
    EXPECT_THAT(GetElements(matrix), testing::ElementsAre(3, 4));
}

TEST(Matrix, TellsWhetherThereIsSuchAShape)
{
    Matrix matrix = MakeMatrix(1, 2, {1, 2});
    EXPECT_TRUE(matrix.Resize(3, 2));
    EXPECT_EQ(matrix.GetRowCount(), 3);
    EXPECT_FALSE(matrix.Resize(0, 2));
    EXPECT_FALSE(matrix.SetElement(0, 0, 1.0)); // nothing is there
    EXPECT_FALSE(matrix.Resize(std::numeric_limits<int>::max(), std::numeric_limits<int>::max()));
    EXPECT_FALSE(matrix.SetElement(0, 0, 1.0));
    EXPECT_TRUE(matrix.Resize(1, 1));
    const AssertionCapture capture;
    EXPECT_THROW(Matrix(-1, 3), AssertionFailure);
}

TEST(Matrix, MultipliesRowsByColumns)
{
    const Matrix product =
        MakeMatrix(2, 3, {1, 2, 3, 4, 5, 6}) * MakeMatrix(3, 4, {1, 0, 0, 1, 0, 1, 0, 1, 0, 0, 1, 1});
    EXPECT_EQ(product.GetRowCount(), 2);
    EXPECT_EQ(product.GetColumnCount(), 4);
    EXPECT_THAT(GetElements(product), testing::ElementsAre(1, 2, 3, 6, 4, 5, 6, 15));
    const AssertionCapture capture;
    EXPECT_THROW(Matrix(2, 3) * Matrix(2, 3), AssertionFailure);
}

TEST(Matrix, AddsAndSubtractsElementByElement)
{
    const Matrix a = MakeMatrix(1, 3, {1, 2, 3});
    const Matrix b = MakeMatrix(1, 3, {10, 20, 40});
    EXPECT_THAT(GetElements(a + b), testing::ElementsAre(11, 22, 43));
    EXPECT_THAT(GetElements(b - a), testing::ElementsAre(9, 18, 37));
    const AssertionCapture capture;
    EXPECT_THROW(a + Matrix(3, 1), AssertionFailure);
    EXPECT_THROW(a - Matrix(3, 1), AssertionFailure);
}

TEST(Matrix, TransposesIntoANewOne)
{
    const Matrix transposed = MakeMatrix(2, 3, {1, 2, 3, 4, 5, 6}).Transpose();
    EXPECT_EQ(transposed.GetRowCount(), 3);
    EXPECT_THAT(GetElements(transposed), testing::ElementsAre(1, 4, 2, 5, 3, 6));
}

TEST(Matrix, PrintsItsElements)
{
    ConsoleCapture console;
    MakeMatrix(2, 2, {1, -2.5, 3, 1e-7}).Print("A");
    EXPECT_EQ(console.GetText(), "\nMatrix A(2, 2)\n"
                                 "M[0][0] = 1.000000,M[0][1] = -2.500000,\n"
                                 "M[1][0] = 3.000000,M[1][1] = 0.000000,\n\n");
}

TEST(Matrix, PrintsTheLongestNumber)
{
    ConsoleCapture console;
    MakeMatrix(1, 1, {-std::numeric_limits<double>::max()}).Print("");
    EXPECT_GT(console.GetText().size(), 330U);
    EXPECT_TRUE(console.GetText().ends_with(".000000,\n\n"));
}

TEST(Matrix, GivesTheGradientFlowInSwappedPlaces)
{
    const Matrix map = MakeMatrix(3, 4, {0, 1, 2, 3, 0, 5, 1, 2, 4, 4, 0, 1});
    Matrix first;
    Matrix second;
    ConsoleCapture console;
    Matrix::GVFOnMatrix(map, 0.2, 3, first, second);
    std::vector<double> u(12);
    std::vector<double> v(12);
    GVF(4, 3, GetElements(map).data(), u.data(), v.data(), 0.2, 3);
    EXPECT_EQ(GetElements(first), v);
    EXPECT_EQ(GetElements(second), u);
    EXPECT_NE(u, v);
    EXPECT_EQ(first.GetRowCount(), 3);
}

Matrix MakeSymmetric(int n, std::mt19937& random)
{
    Matrix matrix(n, n);
    for (int row = 0; row < n; ++row)
    {
        for (int column = row; column < n; ++column)
        {
            const double value = static_cast<double>(random()) / 4294967296.0 - 0.5;
            matrix.SetElement(row, column, value);
            matrix.SetElement(column, row, value);
        }
    }
    return matrix;
}

TEST(SymmetricEigen, AgreesWithAnotherSolver)
{
    std::mt19937 random(3);
    for (const int n : {1, 2, 3, 3, 3, 3, 3, 6, 10})
    {
        const Matrix matrix = MakeSymmetric(n, random);
        std::vector<double> values;
        Matrix vectors;
        ASSERT_TRUE(matrix.FindSymmetricEigen(values, vectors, 60, 1e-14));
        Eigen::MatrixXd dense(n, n);
        for (int row = 0; row < n; ++row)
        {
            for (int column = 0; column < n; ++column)
            {
                dense(row, column) = matrix.GetElement(row, column);
            }
        }
        for (int k = 0; k < n; ++k)
        {
            Eigen::VectorXd vector(n);
            for (int row = 0; row < n; ++row)
            {
                vector[row] = vectors.GetElement(row, k);
            }
            EXPECT_NEAR(vector.norm(), 1.0, 1e-14);
            EXPECT_LT((dense * vector - values[static_cast<std::size_t>(k)] * vector).norm(), 1e-13);
        }
        std::sort(values.begin(), values.end());
        const Eigen::VectorXd expected = Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd>(dense).eigenvalues();
        for (int k = 0; k < n; ++k)
        {
            EXPECT_NEAR(values[static_cast<std::size_t>(k)], expected[k], 1e-14);
        }
    }
}

TEST(SymmetricEigen, LeavesADiagonalMatrixAsItIs)
{
    const Matrix matrix = MakeMatrix(3, 3, {2, 0, 0, 0, -1, 0, 0, 0, 2});
    std::vector<double> values;
    Matrix vectors;
    ASSERT_TRUE(matrix.FindSymmetricEigen(values, vectors, 0, 0.0));
    EXPECT_THAT(values, testing::ElementsAre(2, -1, 2));
    EXPECT_THAT(GetElements(vectors), testing::ElementsAre(1, 0, 0, 0, 1, 0, 0, 0, 1));
}

TEST(SymmetricEigen, OfZerosIsTheUnitMatrix)
{
    std::vector<double> values;
    Matrix vectors;
    ASSERT_TRUE(Matrix(3, 3).FindSymmetricEigen(values, vectors, 60, 1e-6));
    EXPECT_THAT(values, testing::ElementsAre(0, 0, 0));
}

TEST(SymmetricEigen, NeedsItsSweeps)
{
    std::mt19937 random(5);
    const Matrix matrix = MakeSymmetric(8, random);
    std::vector<double> values{7.0};
    Matrix vectors;
    EXPECT_FALSE(matrix.FindSymmetricEigen(values, vectors, 1, 1e-12));
    EXPECT_THAT(values, testing::ElementsAre(7.0)); // not written
    EXPECT_EQ(vectors.GetRowCount(), 1);
    EXPECT_TRUE(matrix.FindSymmetricEigen(values, vectors, 10, 1e-12));
}

TEST(SymmetricEigen, MeasuresWhatIsLeftByTheSizeOfTheMatrix)
{
    // As of points close together: below 1e-6 throughout, and its axes lie aslant.
    const Matrix matrix = MakeMatrix(2, 2, {2e-9, 1e-9, 1e-9, 2e-9});
    std::vector<double> values;
    Matrix vectors;
    ASSERT_TRUE(matrix.FindSymmetricEigen(values, vectors, 60, 1e-6));
    EXPECT_NEAR(std::abs(vectors.GetElement(0, 0)), std::sqrt(0.5), 1e-6);
}

TEST(SymmetricEigen, HasNoneOfWhatIsNoNumber)
{
    const Matrix matrix = MakeMatrix(2, 2, {1, std::numeric_limits<double>::quiet_NaN(), 0, 1});
    std::vector<double> values;
    Matrix vectors;
    EXPECT_FALSE(matrix.FindSymmetricEigen(values, vectors, 60, 1e-6));
    const AssertionCapture capture;
    EXPECT_THROW(Matrix(2, 3).FindSymmetricEigen(values, vectors, 60, 1e-6), AssertionFailure);
}
}
}
