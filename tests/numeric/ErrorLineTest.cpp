#include "ErrorLine.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
TEST(ErrorLine, SpellsOutWhatWouldMoveATerminal)
{
    EXPECT_EQ(SpellOut(std::string_view("a\nb\rc\td\0e\x1B[0m\x7F", 14)), "a\\nb\\rc\\td\\x00e\\x1B[0m\\x7F");
}

TEST(ErrorLine, LeavesTextOfAnyLanguageAsItIs)
{
    EXPECT_EQ(SpellOut("不能导入此类型文件!"), "不能导入此类型文件!");
}

TEST(ErrorLine, GoesToWhoListensAsWell)
{
    std::string heard;
    const ErrorListener before = SetErrorListener([&heard](std::string_view line) { heard += line; });
    ::testing::internal::CaptureStderr();
    PrintErrorLine("one\ttwo");
    SetErrorListener(before);
    PrintErrorLine("three");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "one\\ttwo\nthree\n");
    EXPECT_EQ(heard, "one\\ttwo\n");
}

TEST(ErrorLine, LeavesOutTheMiddleOfAVeryLongLineAndNoPartOfACharacter)
{
    std::string text = "head ";
    for (int i = 0; i < 1000000; ++i)
    {
        text += "文";
    }
    const std::string line = SpellOut(text + " tail");
    EXPECT_LT(line.size(), 8300U);
    EXPECT_GT(line.size(), 8100U); // longer than any path
    EXPECT_TRUE(line.starts_with("head 文"));
    EXPECT_TRUE(line.ends_with("文 tail"));
    EXPECT_NE(line.find("文 ... 文"), std::string::npos);
}
}
}
