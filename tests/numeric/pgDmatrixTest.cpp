#include "pgDmatrix.h"
#include "Capture.h"
#include "Failure.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace tessarine
{
namespace
{
TEST(pgDmatrix, TakesItsIndicesFromItsBounds)
{
    pgDmatrix matrix(-1, 1, 5, 6);
    EXPECT_EQ(matrix.GetRowCount(), 3);
    EXPECT_EQ(matrix.GetColumnCount(), 2);
    matrix(-1, 5) = 1.0;
    matrix(1, 6) = 2.0;
    EXPECT_EQ(matrix(-1, 5), 1.0);
    EXPECT_EQ(matrix(1, 6), 2.0);
    EXPECT_EQ(matrix(0, 5), 0.0);
}

TEST(pgDmatrix, AssertsItsBounds)
{
    const AssertionCapture assertions;
    const pgDmatrix matrix(0, 1, 0, 1);
    EXPECT_THROW(matrix(2, 0), AssertionFailure);
    EXPECT_THROW(matrix(0, -1), AssertionFailure);
    EXPECT_THROW(pgDmatrix(1, 0, 0, 0), AssertionFailure);
}

TEST(pgDmatrix, SaysThatThereIsNotEnoughMemory)
{
    constexpr int kMost = std::numeric_limits<int>::max();
    const MessageCapture messages;
    EXPECT_THROW(pgDmatrix(1, kMost, 1, kMost), Failure);
    EXPECT_THAT(messages.GetTexts(), ::testing::ElementsAre("allocation failure 1 in pgDmatrix()"));
    EXPECT_THAT(messages.GetTitles(), ::testing::ElementsAre("error"));
}

TEST(pgDmatrix, DumpsItsRows)
{
    const TemporaryCurrentFolder folder;
    folder.Write("C:/keep", "");
    pgDmatrix matrix(1, 2, 0, 1);
    matrix(1, 1) = -0.5;
    matrix.Dump();
    EXPECT_EQ(folder.Read("C:/11123.txt"), "2 * 2\n1:\t0.000000\t-0.500000\t\n2:\t0.000000\t0.000000\t\n");
}

TEST(pgDmatrix, CannotDumpIntoAFolderThatIsNotThere)
{
    const TemporaryCurrentFolder folder;
    EXPECT_THROW(pgDmatrix(0, 0, 0, 0).Dump(), FileError);
    EXPECT_TRUE(folder.List().empty());
}
}
}
