#include "Capture.h"
#include "Refusal.h"
#include "SparseMatrix.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

CSparseMatrix MakeIdentity()
{
    CSparseMatrix matrix(2, 2);
    matrix.SetValue(0, 0, 1.0);
    matrix.SetValue(1, 1, 1.0);
    return matrix;
}

TEST(SparseMatrixFiles, HoldSizesThenEachRow)
{
    const TemporaryCurrentFolder folder;
    GetTestPlatform().AnswerFile("a.mtx");
    EXPECT_TRUE(MakeIdentity().SaveToFile());
    EXPECT_EQ(folder.Read("a.mtx"), "2\t2\n1\n0\t1\n1\n1\t1\n");
    EXPECT_EQ(GetTestPlatform().GetFileQuestions().back(),
              (FileQuestion{"Matrix File (*.mtx)|*.mtx||", ".mtx", "Store Matrix File"}));
    GetTestPlatform().AnswerFile("a.mtx");
    CSparseMatrix matrix;
    EXPECT_TRUE(matrix.LoadFromFile());
    EXPECT_EQ(GetTestPlatform().GetFileQuestions().back().title, "Open Matrix File");
    EXPECT_EQ(matrix.GetRowCount(), 2);
    EXPECT_THAT(matrix.GetColumnsOf(1), ElementsAre(1));
}

TEST(SparseMatrixFiles, HoldAVectorByItsLengthAndValues)
{
    const TemporaryCurrentFolder folder;
    CSparseMatrix vector(3, 1);
    vector.SetValue(0, 0, 1.0 / 3.0);
    vector.SetValue(2, 0, -1e-20);
    GetTestPlatform().AnswerFile("b.vec");
    EXPECT_TRUE(vector.SaveVector());
    EXPECT_EQ(GetTestPlatform().GetFileQuestions().back(),
              (FileQuestion{"Vector File (*.vec)|*.vec||", ".vec", "Store Vector File"}));
    EXPECT_EQ(folder.Read("b.vec"), "3\n0.333333\n0\n-1e-20\n");
    GetTestPlatform().AnswerFile("b.vec");
    EXPECT_TRUE(vector.LoadVector());
    EXPECT_EQ(GetTestPlatform().GetFileQuestions().back().title, "Open Vector File");
    double value = 0.0;
    vector.GetValue(0, 0, value);
    EXPECT_EQ(value, 0.333333);
}

TEST(SparseMatrixFiles, StayAsideWhereTheUserCancels)
{
    CSparseMatrix matrix = MakeIdentity();
    EXPECT_FALSE(matrix.SaveToFile());
    EXPECT_FALSE(matrix.LoadFromFile());
    EXPECT_FALSE(matrix.LoadVector());
    EXPECT_FALSE(CSparseMatrix(1, 1).SaveVector());
    EXPECT_EQ(matrix.GetRowCount(), 2);
}

std::string RefuseMatrix(const std::string& content)
{
    const TemporaryCurrentFolder folder;
    folder.Write("a.mtx", content);
    CSparseMatrix matrix = MakeIdentity();
    const std::string refusal = GetRefusal([&matrix] { matrix.ReadMatrix("a.mtx"); });
    EXPECT_EQ(matrix.GetRowCount(), 2); // as it was
    return refusal;
}

TEST(SparseMatrixFiles, RefuseWhatIsNoMatrixWithItsLine)
{
    EXPECT_EQ(
        RefuseMatrix("2 2\n1\n2 1\n0\n"),
        "a.mtx, line 3: an entry stands in row 0, column 2, and the matrix has 2 columns, counted from 0");
    EXPECT_EQ(RefuseMatrix("1 2\n2\n0 1\n0 1\n"),
              "a.mtx, line 4: a second entry stands in row 0, column 0 (both count from 0)");
    EXPECT_THAT(RefuseMatrix("1 2\n1\n-1 1\n"), HasSubstr("in row 0, column -1, and the matrix has 2"));
    EXPECT_EQ(RefuseMatrix("-1 2\n"),
              "a.mtx, line 1: the number of rows is -1; it must be 0 at least, and no "
              "more than the file's 5 bytes");
    EXPECT_THAT(RefuseMatrix("2000000000 2000000000\n"),
                HasSubstr("the number of rows is 2000000000; it must"));
    EXPECT_THAT(RefuseMatrix("1 -2\n0\n"), EndsWith("the number of columns is -2; it must be 0 at least"));
    EXPECT_THAT(RefuseMatrix("1 2\n-3\n"), HasSubstr("the number of entries is -3; it must"));
    EXPECT_THAT(RefuseMatrix("1 2\n1\n0 nan\n"), EndsWith("line 3: an entry's value is not finite"));
    EXPECT_THAT(RefuseMatrix("1 2\n1\n0 1e999\n"), EndsWith("not finite"));
    EXPECT_THAT(RefuseMatrix("1 2\n1\n0"), EndsWith("the file ends before an entry's value"));
    EXPECT_THAT(RefuseMatrix(""), EndsWith("the file ends before the number of rows"));
}

TEST(SparseMatrixFiles, RefuseWhatIsNoVector)
{
    const TemporaryCurrentFolder folder;
    folder.Write("b.vec", "3\n1\n2\n");
    CSparseMatrix vector;
    EXPECT_THAT(GetRefusal([&vector] { vector.ReadVector("b.vec"); }),
                EndsWith("the file ends before a value"));
    EXPECT_THAT(GetRefusal([&vector] { vector.ReadVector("none.vec"); }), HasSubstr("cannot open none.vec"));
    const AssertionCapture assertions;
    EXPECT_THROW(CSparseMatrix(2, 2).WriteVector("c.vec"), AssertionFailure);
}
}
}
