#include "Matrix.h"
#include "Capture.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
TEST(Matrix, RefusesPositionsThatAreNotThere)
{
    Matrix matrix;
    EXPECT_FALSE(matrix.SetElement(-1, 0, 7.0));
    EXPECT_FALSE(matrix.SetElement(0, 1, 7.0));
    EXPECT_FALSE(matrix.SetElement(1, 0, 7.0));
    EXPECT_EQ(matrix.GetElement(0, 0), 0.0);
    EXPECT_TRUE(matrix.SetElement(0, 0, 7.0));
    EXPECT_EQ(matrix.GetElement(0, 0), 7.0);
}
}
}
