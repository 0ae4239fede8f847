#include "Capture.h"
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    tessarine::SetPlatform(&tessarine::GetTestPlatform());
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
