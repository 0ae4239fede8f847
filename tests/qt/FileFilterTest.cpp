#include "FileFilter.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
TEST(FileFilter, NamesThePatternOnce)
{
    EXPECT_EQ(ParseFileFilter("Obj Files(*.obj)|*.obj||"), QStringList{"Obj Files(*.obj)"});
}

TEST(FileFilter, OffersEveryPairUpToAnEmptyName)
{
    EXPECT_EQ(ParseFileFilter("A|*.a|B|*.b||"), (QStringList{"A(*.a)", "B(*.b)"}));
    // The filter of the import has its end in the middle.
    EXPECT_EQ(ParseFileFilter("Wavefront OBJ(*.obj)|*.obj||所有文件(*.*)|*.*||"),
              QStringList{"Wavefront OBJ(*.obj)"});
}

TEST(FileFilter, TakesEveryFileForTwoStars)
{
    EXPECT_EQ(ParseFileFilter("所有文件(*.*)|*.*||"), QStringList{"所有文件(*)"});
}

TEST(FileFilter, ParsesSeveralPatternsOfOneName)
{
    EXPECT_EQ(ParseFileFilter("图像|*.bmp;*.png||"), QStringList{"图像(*.bmp *.png)"});
}

TEST(FileFilter, IsEmptyWithoutAPair)
{
    EXPECT_TRUE(ParseFileFilter("").isEmpty());
    EXPECT_TRUE(ParseFileFilter("|").isEmpty());
    EXPECT_TRUE(ParseFileFilter("name").isEmpty());
}
}
}
