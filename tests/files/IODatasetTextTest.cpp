#include "IODatasetText.h"
#include "Refusal.h"
#include "TemporaryFolder.h"
#include <clocale>
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

namespace tessarine
{
namespace
{
using ::testing::HasSubstr;

float ReadOneFloat(const std::string& word)
{
    IODatasetText text("numbers", word);
    return text.ReadFloat("a number");
}

std::string RefuseOneFloat(const std::string& word)
{
    return GetRefusal([&word] { ReadOneFloat(word); });
}

TEST(IODatasetText, ReadsIntegersInEveryBaseThatTheScanFormatKnows)
{
    IODatasetText text("numbers", "12 010 0x15 -0x1F +7 \n\t 08");
    EXPECT_EQ(text.ReadInteger("a number"), 12);
    EXPECT_EQ(text.ReadInteger("a number"), 8);
    EXPECT_EQ(text.ReadInteger("a number"), 21);
    EXPECT_EQ(text.ReadInteger("a number"), -31);
    EXPECT_EQ(text.ReadInteger("a number"), 7);
    EXPECT_EQ(text.ReadInteger("a number"), 0); // no digit of base 8 follows the 0
    EXPECT_EQ(text.ReadInteger("a number"), 8);
    EXPECT_TRUE(text.IsAtEnd());
}

TEST(IODatasetText, ReadsDecimalsWithoutABaseOfTheirOwn)
{
    IODatasetText text("numbers", "010 0x15");
    EXPECT_EQ(text.ReadDecimal("a number"), 10);
    EXPECT_EQ(text.ReadDecimal("a number"), 0);
    EXPECT_EQ(GetRefusal([&text] { text.ReadDecimal("a number"); }),
              "numbers, line 1: \"x15\" stands where a number should be");
}

TEST(IODatasetText, EndsANumberWhereNoMoreOfItFollows)
{
    IODatasetText text("numbers", "0.642788-5e1");
    EXPECT_EQ(text.ReadDecimal("a number"), 0);
    EXPECT_EQ(text.ReadFloat("a number"), 0.642788F);
    EXPECT_EQ(text.ReadFloat("a number"), -50.0F);
}

TEST(IODatasetText, RoundsOnceToSinglePrecisionAsTheLibraryDoes)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
    std::uniform_int_distribution<int> exponent(-50, 40);
    for (int i = 0; i < 20000; ++i)
    {
        char word[64];
        std::snprintf(word, sizeof word, "%.17ge%d", mantissa(random), exponent(random));
        float expected = 0.0F;
        ASSERT_EQ(std::sscanf(word, "%f", &expected), 1);
        if (std::abs(expected) <= std::numeric_limits<float>::max())
        {
            ASSERT_EQ(ReadOneFloat(word), expected) << word;
        }
        else
        {
            ASSERT_THAT(RefuseOneFloat(word), HasSubstr("a number is not finite")) << word;
        }
    }
}

TEST(IODatasetText, ReadsEveryFormOfFloatThatTheScanFormatKnows)
{
    EXPECT_EQ(ReadOneFloat("+1.5"), 1.5F);
    EXPECT_EQ(ReadOneFloat(".5"), 0.5F);
    EXPECT_EQ(ReadOneFloat("5."), 5.0F);
    EXPECT_EQ(ReadOneFloat("0x1.8p1"), 3.0F);
    EXPECT_EQ(ReadOneFloat("1e-60"), 0.0F);
    EXPECT_EQ(ReadOneFloat("1e-45"), std::numeric_limits<float>::denorm_min());
}

TEST(IODatasetText, RefusesNumbersThatAreNotFinite)
{
    for (const char* word : {"nan", "-nan", "inf", "Infinity", "1e39", "-1e400"})
    {
        EXPECT_EQ(RefuseOneFloat(word), "numbers, line 1: a number is not finite") << word;
    }
}

TEST(IODatasetText, RefusesIntegersBeyond32Bits)
{
    for (const char* word : {"2147483648", "-2147483649", "99999999999999999999"})
    {
        IODatasetText text("numbers", word);
        EXPECT_EQ(GetRefusal([&text] { text.ReadInteger("a number"); }),
                  "numbers, line 1: a number is beyond 32 bits");
    }
}

TEST(IODatasetText, NamesTheLineOfWhatItRefuses)
{
    IODatasetText text("numbers", "1\n\n2 three");
    text.ReadDecimal("a number");
    EXPECT_EQ(text.GetLine(), 1);
    text.ReadDecimal("a number");
    EXPECT_EQ(text.GetLine(), 3);
    EXPECT_EQ(GetRefusal([&text] { text.ReadDecimal("a number"); }),
              "numbers, line 3: \"three\" stands where a number should be");
}

TEST(IODatasetText, ShowsTheStartOfALongWord)
{
    EXPECT_EQ(RefuseOneFloat("abcdefghijklmnopqrstuvwxyz"),
              "numbers, line 1: \"abcdefghijklmnopqrst\" stands where a number should be");
}

TEST(IODatasetText, TellsThatItEnds)
{
    IODatasetText text("numbers", "1 \n ");
    EXPECT_FALSE(text.IsAtEnd());
    text.ReadDecimal("a number");
    EXPECT_TRUE(text.IsAtEnd());
    EXPECT_EQ(GetRefusal([&text] { text.ReadFloat("a number"); }),
              "numbers, line 2: the file ends before a number");
}

TEST(IODatasetText, SkipsWordsOfAnyLength)
{
    IODatasetText text("numbers", std::string(1000, 'n') + " 1");
    text.SkipWord("a name");
    EXPECT_EQ(text.ReadDecimal("a number"), 1);
    EXPECT_THAT(GetRefusal([&text] { text.SkipWord("a name"); }), HasSubstr("ends before a name"));
}

TEST(IODatasetText, TakesAZeroByteForNoNumber)
{
    using namespace std::string_literals;
    IODatasetText text("numbers", "1\0002"s);
    EXPECT_EQ(text.ReadDecimal("a number"), 1);
    EXPECT_FALSE(text.IsAtEnd());
    EXPECT_THAT(GetRefusal([&text] { text.ReadDecimal("a number"); }),
                HasSubstr("stands where a number should be"));
}

TEST(IODatasetText, FindsTheFolderInEitherSpelling)
{
    const TemporaryCurrentFolder folder;
    folder.Write("data/Bunny/param.dat", "5");
    IODatasetText text("Data\\bunny\\param.dat");
    EXPECT_TRUE(text.IsOpen());
    EXPECT_EQ(text.GetName(), "data/Bunny/param.dat");
    EXPECT_EQ(text.ReadDecimal("a number"), 5);
}

TEST(IODatasetText, TellsWhatCannotBeOpenedAndWhere)
{
    const TemporaryCurrentFolder folder;
    IODatasetText text("Data\\bunny.txta");
    EXPECT_FALSE(text.IsOpen());
    const std::string refusal = GetRefusal([&text] { text.ReadInteger("a number"); });
    EXPECT_THAT(refusal, HasSubstr("cannot open Data/bunny.txta: "));
    EXPECT_THAT(refusal, HasSubstr("(working folder: " + folder.GetPath().string() + ")"));
}

TEST(IODatasetText, TellsOfAMissingFileInTheFolderThatIsThere)
{
    const TemporaryCurrentFolder folder;
    folder.Write("data/other.txta", "");
    IODatasetText text("Data\\bunny.txta");
    EXPECT_THAT(GetRefusal([&text] { text.ReadInteger("a number"); }),
                HasSubstr("cannot open data/bunny.txta: "));
}

TEST(IODatasetText, ReadsAPointWhateverTheLocale)
{
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8"); // where it is there
    EXPECT_EQ(ReadOneFloat("1.5"), 1.5F);
    EXPECT_EQ(ReadOneFloat("+1.5"), 1.5F);
    std::setlocale(LC_NUMERIC, before.c_str());
}
}
}
