#include "ArgumentForm.h"
#include <gmock/gmock.h>
#include <stdexcept>

using namespace tessarine;

namespace
{
bool Accepts(std::string_view form, std::string_view word)
{
    return FindArgumentForm(form).accepts(word);
}
}

TEST(ArgumentForm, IsFoundByItsNameAlone)
{
    EXPECT_EQ(FindArgumentForm("RATIO").description, "a number from 0 to 1");
    EXPECT_THROW(FindArgumentForm("ratio"), std::logic_error);
}

TEST(ArgumentForm, TakesARatioWithBothEnds)
{
    for (const char* word : {"0", "1", "0.8", ".5", "1e-3", "1.0"})
    {
        EXPECT_TRUE(Accepts("RATIO", word)) << word;
    }
    for (const char* word : {"-0.1", "1.0000001", "nan", "inf", "", "0,5", "50%", " 0.5", "0.5 ", "0x1"})
    {
        EXPECT_FALSE(Accepts("RATIO", word)) << word;
    }
}

TEST(ArgumentForm, TakesFiniteNumbersOnly)
{
    for (const char* word : {"0", "-2.5", "1e300", "-.5"})
    {
        EXPECT_TRUE(Accepts("EX", word)) << word;
    }
    for (const char* word : {"1e400", "nan", "-inf", "infinity", "--1", "1-", "", "one"})
    {
        EXPECT_FALSE(Accepts("EX", word)) << word;
    }
}

TEST(ArgumentForm, TakesWholeNumbersWithinTheirRange)
{
    EXPECT_TRUE(Accepts("ID", "0"));
    EXPECT_TRUE(Accepts("ID", "2147483647"));
    EXPECT_FALSE(Accepts("ID", "2147483648"));
    EXPECT_FALSE(Accepts("ID", "-1"));
    EXPECT_FALSE(Accepts("ID", "1.0"));
    EXPECT_TRUE(Accepts("X", "-5")); // a captured mouse leaves the window
    EXPECT_TRUE(Accepts("NMAX", "3"));
    EXPECT_FALSE(Accepts("NMAX", "2"));
    EXPECT_TRUE(Accepts("X", "+5"));
    EXPECT_FALSE(Accepts("X", "+-5"));
    EXPECT_FALSE(Accepts("X", "++5"));
    EXPECT_FALSE(Accepts("X", "+"));
}

TEST(ArgumentForm, TakesTheRulesTolerancesAndStepsThatTheSolverKnows)
{
    EXPECT_TRUE(Accepts("ITOL", "1"));
    EXPECT_TRUE(Accepts("ITOL", "4"));
    EXPECT_FALSE(Accepts("ITOL", "0"));
    EXPECT_FALSE(Accepts("ITOL", "5"));
    EXPECT_TRUE(Accepts("TOL", "1e-300"));
    EXPECT_FALSE(Accepts("TOL", "0"));
    EXPECT_FALSE(Accepts("TOL", "-1e-7"));
    EXPECT_TRUE(Accepts("ITMAX", "2147483646"));
    EXPECT_FALSE(Accepts("ITMAX", "2147483647")); // one step more is counted
    EXPECT_FALSE(Accepts("ITMAX", "0"));
}

TEST(ArgumentForm, TakesAllWhereACountMayBeAll)
{
    EXPECT_TRUE(Accepts("N|all", "all"));
    EXPECT_TRUE(Accepts("N|all", "1"));
    EXPECT_FALSE(Accepts("N|all", "0"));
    EXPECT_FALSE(Accepts("N|all", "ALL"));
}

TEST(ArgumentForm, TakesAnyFileNameButTheEmptyOne)
{
    EXPECT_TRUE(Accepts("FILE", "a b.obj"));
    EXPECT_TRUE(Accepts("FILE", "-"));
    EXPECT_FALSE(Accepts("FILE", ""));
}
