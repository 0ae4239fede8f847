#include "IOTextLines.h"
#include "LiteralObjReader.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;

std::string TextOf(IOLineCursor line)
{
    std::string text;
    for (std::size_t i = 0; line.SetIndex(i), line.GetIndex() == i; ++i)
    {
        text += line.Peek();
    }
    text.pop_back(); // the end, which reads as zero
    return text;
}

std::vector<std::string> LinesOf(const std::string& text)
{
    std::vector<std::string> found;
    for (IOTextLines lines(text); !lines.IsAtEnd();)
    {
        found.push_back(TextOf(lines.Next()));
    }
    return found;
}

TEST(IOTextLines, SkipsBlankLinesAndWhiteSpaceInFrontOfALine)
{
    EXPECT_THAT(LinesOf("\n \t\n\v\f\r\n  one \n\n\ttwo"), ElementsAre("one ", "two"));
}

TEST(IOTextLines, EndsAfterALastLineWithoutNewline)
{
    EXPECT_THAT(LinesOf("one\ntwo"), ElementsAre("one", "two"));
}

TEST(IOTextLines, GivesOneMoreEmptyLineBehindANewline)
{
    EXPECT_THAT(LinesOf("one\n"), ElementsAre("one", ""));
    EXPECT_THAT(LinesOf("one\n \n\t"), ElementsAre("one", ""));
}

TEST(IOTextLines, GivesOneEmptyLineForAnEmptyText)
{
    EXPECT_THAT(LinesOf(""), ElementsAre(""));
    EXPECT_THAT(LinesOf(" \n"), ElementsAre(""));
}

TEST(IOTextLines, ReadsLinesOfAnyLength)
{
    const std::string line(100000, 'x');
    EXPECT_THAT(LinesOf(line + "\n" + line), ElementsAre(line, line));
}

TEST(IOTextLines, KeepsZerosAndCarriageReturnsOfALine)
{
    EXPECT_THAT(LinesOf(std::string("a\0b\r\nc", 6)), ElementsAre(std::string("a\0b\r", 4), "c"));
}

TEST(IOTextLines, GivesEmptyLinesBehindTheEnd)
{
    const std::string text("one");
    IOTextLines lines(text);
    lines.Next();
    ASSERT_TRUE(lines.IsAtEnd());
    EXPECT_TRUE(lines.Next().IsAtZero());
}

TEST(IOTextLines, OpensAFaceOnTheNextLineBehindABackslash)
{
    const std::string text("f \\ ignored\n\n  1 2 3\r\nnext");
    IOTextLines lines(text);
    EXPECT_EQ(TextOf(lines.OpenFace(lines.Next())), "1 2 3");
    EXPECT_EQ(TextOf(lines.Next()), "next");
}

TEST(IOTextLines, CountsLinesAsAnEditorDoes)
{
    const std::string text("\n\na\n\n b");
    IOTextLines lines(text);
    EXPECT_EQ(lines.GetNumberOf(lines.Next()), 3U);
    EXPECT_EQ(lines.GetNumberOf(lines.Next()), 5U);
}

TEST(IOTextLines, WalksRandomTextsAsAStreamDoes)
{
    static constexpr char kCharacters[] = "ab \t\n\n\v\f\r\xFF";
    std::mt19937 random(4711);
    for (int i = 0; i < 20000; ++i)
    {
        std::string text;
        for (auto length = random() % 12; length > 0; --length)
        {
            text += kCharacters[random() % sizeof kCharacters]; // the zero at the end, too
        }
        ASSERT_EQ(LinesOf(text), LiteralObjReader::ReadLines(text));
    }
}
}
}
