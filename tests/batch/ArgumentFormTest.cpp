#include "ArgumentForm.h"
#include <gmock/gmock.h>
#include <initializer_list>
#include <stdexcept>

using namespace tessarine;

namespace
{
using Words = std::initializer_list<std::string_view>;

void ExpectTaken(std::string_view form, Words words)
{
    for (const std::string_view word : words)
    {
        EXPECT_TRUE(FindArgumentForm(form).accepts(word)) << form << ": " << word;
    }
}

void ExpectRefused(std::string_view form, Words words)
{
    for (const std::string_view word : words)
    {
        EXPECT_FALSE(FindArgumentForm(form).accepts(word)) << form << ": " << word;
    }
}
}

TEST(ArgumentForm, IsFoundByItsNameAlone)
{
    EXPECT_EQ(FindArgumentForm("RATIO").description, "a number from 0 to 1");
    EXPECT_THROW(FindArgumentForm("ratio"), std::logic_error);
}

TEST(ArgumentForm, TakesARatioWithBothEnds)
{
    ExpectTaken("RATIO", {"0", "1", "0.8", ".5", "1e-3", "1.0"});
    ExpectRefused("RATIO", {"-0.1", "1.0000001", "nan", "inf", "", "0,5", "50%", " 0.5", "0.5 ", "0x1"});
}

TEST(ArgumentForm, TakesFiniteNumbersOnly)
{
    ExpectTaken("EX", {"0", "-2.5", "1e300", "-.5"});
    ExpectRefused("EX", {"1e400", "nan", "-inf", "infinity", "--1", "1-", "", "one"});
}

TEST(ArgumentForm, TakesWholeNumbersWithinTheirRange)
{
    ExpectTaken("ID", {"0", "2147483647"});
    ExpectRefused("ID", {"2147483648", "-1", "1.0"});
    ExpectTaken("X", {"-5", "+5"}); // a captured mouse leaves the window
    ExpectRefused("X", {"+-5", "++5", "+"});
    ExpectTaken("NMAX", {"3"});
    ExpectRefused("NMAX", {"2"});
}

TEST(ArgumentForm, TakesTheRulesTolerancesAndStepsThatTheSolverKnows)
{
    ExpectTaken("ITOL", {"1", "4"});
    ExpectRefused("ITOL", {"0", "5"});
    ExpectTaken("TOL", {"1e-300"});
    ExpectRefused("TOL", {"0", "-1e-7"});
    ExpectTaken("ITMAX", {"2147483646"});
    ExpectRefused("ITMAX", {"2147483647", "0"}); // one step more is counted
}

TEST(ArgumentForm, TakesAllWhereACountMayBeAll)
{
    ExpectTaken("N|all", {"all", "1"});
    ExpectRefused("N|all", {"0", "ALL"});
}

TEST(ArgumentForm, TakesAnyFileNameButTheEmptyOne)
{
    ExpectTaken("FILE", {"a b.obj", "-"});
    ExpectRefused("FILE", {""});
}
