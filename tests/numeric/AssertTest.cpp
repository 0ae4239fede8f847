#include "Assert.h"
#include "ErrorLine.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <string>

#if TESSARINE_ASSERTIONS
namespace tessarine
{
namespace
{
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// Assertions report as in the programs; what goes to standard error is kept.
class AssertionReport : public testing::Test
{
protected:
    AssertionReport()
        : m_HandlerBefore(SetAssertionHandler({})),
          m_ListenerBefore(SetErrorListener([this](std::string_view text) { m_strText += text; }))
    {
        BeginAssertionReports();
    }
    ~AssertionReport() override
    {
        EndAssertionReports();
        SetErrorListener(m_ListenerBefore);
        SetAssertionHandler(m_HandlerBefore);
    }

    std::size_t CountLines() const { return static_cast<std::size_t>(std::ranges::count(m_strText, '\n')); }

    std::string m_strText;

private:
    AssertionHandler m_HandlerBefore;
    ErrorListener m_ListenerBefore;
};

constexpr int kDemandLine = __LINE__ + 3;
void Demand(int number)
{
    ASSERT_VALUE(number > 3);
}

TEST_F(AssertionReport, NamesExpressionFileAndLine)
{
    Demand(3);
    EXPECT_THAT(m_strText,
                AllOf(StartsWith("Assertion failed: number > 3, file "),
                      EndsWith("numeric/AssertTest.cpp, line " + std::to_string(kDemandLine) + "\n")));
}

TEST_F(AssertionReport, IsTheMessageOfTheFailure)
{
    try
    {
        ASSERT(m_strText.size() > 1000);
        FAIL();
    }
    catch (const AssertionFailure& failure)
    {
        EXPECT_EQ(failure.GetMessage() + "\n", m_strText);
    }
}

TEST_F(AssertionReport, IsGivenTenTimesAPlaceAndThenCounted)
{
    for (int i = 0; i < 10; ++i)
    {
        Demand(0);
    }
    EXPECT_EQ(CountLines(), 10U);
    for (int i = 0; i < 35; ++i)
    {
        Demand(0);
    }
    EXPECT_EQ(CountLines(), 10U);
    ASSERT_VALUE(m_strText.empty()); // another place
    EXPECT_EQ(CountLines(), 11U);
    EndAssertionReports();
    EXPECT_EQ(CountLines(), 12U);
    EXPECT_THAT(m_strText, AllOf(HasSubstr("number > 3"), EndsWith(" (45 times)\n")));
}

TEST_F(AssertionReport, CountsAnewInTheNextCommand)
{
    for (int i = 0; i < 11; ++i)
    {
        Demand(0);
    }
    EndAssertionReports();
    EXPECT_EQ(CountLines(), 11U);
    BeginAssertionReports();
    Demand(0);
    EXPECT_EQ(CountLines(), 12U);
    EndAssertionReports();
    EXPECT_EQ(CountLines(), 12U);
}
}
}
#endif
