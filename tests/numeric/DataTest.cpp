#include "Data.h"
#include "Failure.h"
#include "Reports.h"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

namespace tessarine
{
namespace
{
const std::vector<std::string> kAbsent{"Error : Data Not In This Array"};

Data Filled(const std::vector<double>& values)
{
    Data data;
    for (const double value : values)
    {
        data.Append(value);
    }
    return data;
}

std::vector<double> ValuesOf(const Data& data)
{
    std::vector<double> values;
    values.reserve(static_cast<std::size_t>(data.GetSize()));
    for (int i = 0; i < data.GetSize(); ++i)
    {
        values.push_back(data[i]);
    }
    return values;
}

TEST(Data, StartsEmpty)
{
    const Data data;
    EXPECT_EQ(data.GetSize(), 0);
    EXPECT_EQ(data.GetCapacity(), 0);
}

TEST(Data, FindsTheFirstExactOccurrence)
{
    const Data data = Filled({0.1, 0.3, 0.3});
    EXPECT_EQ(data.Find(0.3), 1);
    EXPECT_EQ(data.Find(0.1 + 0.2), -1); // 0.30000000000000004
    EXPECT_EQ(Data().Find(0.0), -1);
    EXPECT_EQ(
        Filled({std::numeric_limits<double>::quiet_NaN()}).Find(std::numeric_limits<double>::quiet_NaN()),
        -1);
}

TEST(Data, GoesRoundAsARing)
{
    const Data data = Filled({10, 20, 30});
    EXPECT_EQ(data.Next(10), 20.0);
    EXPECT_EQ(data.Next(30), 10.0) << "behind the last stands the first";
    EXPECT_EQ(data.Previous(30), 20.0);
    EXPECT_EQ(data.Previous(10), 30.0) << "before the first stands the last";
}

TEST(Data, GivesASingleElementAsItsOwnNeighbour)
{
    const Data data = Filled({10});
    EXPECT_EQ(data.Next(10), 10.0);
    EXPECT_EQ(data.Previous(10), 10.0);
}

TEST(Data, GoesOnFromTheFirstOfEqualValues)
{
    const Data data = Filled({7, 1, 7, 2});
    EXPECT_EQ(data.Next(7), 1.0);
    EXPECT_EQ(data.Previous(7), 2.0);
}

TEST(Data, ShowsAMessageForTheNextOfAnAbsentValue)
{
    MessageCapture messages;
    EXPECT_EQ(Filled({1, 2}).Next(3), 0.0);
    EXPECT_EQ(messages.GetTexts(), kAbsent);
}

TEST(Data, ShowsAMessageForThePreviousOfAnAbsentValue)
{
    MessageCapture messages;
    EXPECT_EQ(Data().Previous(3), 0.0);
    EXPECT_EQ(messages.GetTexts(), kAbsent);
}

TEST(Data, RemovesTheFirstOccurrence)
{
    Data data = Filled({1, 2, 3, 2});
    data.Remove(2);
    EXPECT_EQ(ValuesOf(data), (std::vector<double>{1, 3, 2}));
}

TEST(Data, RefusesToRemoveAnAbsentValue)
{
    AssertionCapture reports;
    Data data = Filled({1, 2});
    EXPECT_THROW(data.Remove(3), AssertionFailure);
    EXPECT_EQ(data.GetSize(), 2);
}

TEST(Data, AddsAValueOnce)
{
    Data data;
    data.AddUnique(4);
    data.AddUnique(5);
    data.AddUnique(4);
    EXPECT_EQ(ValuesOf(data), (std::vector<double>{4, 5}));
}

TEST(Data, PopsItsLastElement)
{
    Data data = Filled({1, 2});
    EXPECT_EQ(data.PopLast(), 2.0);
    EXPECT_EQ(data.PopLast(), 1.0);
    EXPECT_EQ(data.PopLast(), 0.0) << "an empty array has nothing to pop";
    EXPECT_EQ(data.GetSize(), 0);
}

TEST(Data, ReadsAndWritesByIndexWithinItsBounds)
{
    AssertionCapture reports;
    Data data = Filled({1, 2});
    data[1] = 9;
    const Data& fixed = data;
    EXPECT_EQ(fixed[1], 9.0);
    EXPECT_THROW(data[-1], AssertionFailure);
    EXPECT_THROW(data[2], AssertionFailure);
    EXPECT_THROW(fixed[-1], AssertionFailure);
    EXPECT_THROW(fixed[2], AssertionFailure);
}

TEST(Data, GrowsByFourWhileItIsSmall)
{
    Data data;
    std::vector<int> capacities;
    for (int i = 0; i < 9; ++i)
    {
        data.Append(i);
        capacities.push_back(data.GetCapacity());
    }
    EXPECT_EQ(capacities, (std::vector<int>{4, 4, 4, 4, 8, 8, 8, 8, 12}));
}

/// Appends until the storage grows, and gives the growth.
int NextGrowth(Data& data)
{
    const int nBefore = data.GetCapacity();
    while (data.GetCapacity() == nBefore)
    {
        data.Append(0.0);
    }
    return data.GetCapacity() - nBefore;
}

TEST(Data, GrowsByAnEighthOfItsSizeUpTo1024)
{
    Data data;
    for (int i = 0; i < 80; ++i)
    {
        data.Append(0.0);
    }
    while (data.GetSize() < 20000)
    {
        const int nSize = data.GetCapacity(); // full when it grows
        const int nExpected = nSize / 8 < 4 ? 4 : (nSize / 8 > 1024 ? 1024 : nSize / 8);
        ASSERT_EQ(NextGrowth(data), nExpected) << "at size " << nSize;
    }
}

TEST(Data, GrowsByTheStepThatItIsGiven)
{
    Data data;
    data.SetGrowthStep(7);
    EXPECT_EQ(NextGrowth(data), 7);
    EXPECT_EQ(NextGrowth(data), 7);
    data.SetGrowthStep(0);
    EXPECT_EQ(NextGrowth(data), 4);
    AssertionCapture reports;
    EXPECT_THROW(data.SetGrowthStep(-1), AssertionFailure);
}

TEST(Data, MakesRoomForACopyAtOnce)
{
    const Data ten = Filled({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    EXPECT_EQ(Data(ten).GetCapacity(), 10); // more than 0 + 4
    Data other = Filled({1, 2, 3, 4, 5, 6, 7, 8});
    other = ten;
    EXPECT_EQ(other.GetCapacity(), 12); // 8 + 4, more than 10
    EXPECT_EQ(ValuesOf(other), ValuesOf(ten));
}

TEST(Data, CopiesByElement)
{
    Data data = Filled({1, 2});
    Data copy(data);
    data[0] = 7;
    EXPECT_EQ(ValuesOf(copy), (std::vector<double>{1, 2}));
    copy = data;
    EXPECT_EQ(ValuesOf(copy), (std::vector<double>{7, 2}));
    Data& same = copy;
    copy = same;
    EXPECT_EQ(ValuesOf(copy), (std::vector<double>{7, 2}));
}

TEST(Data, KeepsItsGrowthStepWhenItIsAssignedTo)
{
    Data data;
    data.SetGrowthStep(7);
    data = Filled({1, 2});
    EXPECT_EQ(data.GetCapacity(), 7);
    EXPECT_EQ(NextGrowth(data), 7);
}

TEST(Data, DumpsItsSize)
{
    std::ostringstream dump;
    Filled({1, 2, 3}).Dump(dump);
    EXPECT_EQ(dump.str(), "with 3 elements");
}

TEST(Data, ComesBackFromAStreamBitForBit)
{
    const Data data = Filled({0.1, -0.0, std::numeric_limits<double>::denorm_min(), 1e308});
    std::stringstream stream;
    data.Serialize(stream);
    Data read = Filled({99});
    read.Deserialize(stream);
    EXPECT_EQ(ValuesOf(read), ValuesOf(data));
    EXPECT_TRUE(std::signbit(read[1]));
}

TEST(Data, StaysAsItWasWhenTheStreamIsCutShort)
{
    std::stringstream whole;
    Filled({1, 2, 3}).Serialize(whole);
    const std::string bytes = whole.str();
    for (std::size_t nLength = 0; nLength < bytes.size(); ++nLength)
    {
        std::istringstream cut(bytes.substr(0, nLength));
        Data data = Filled({99});
        EXPECT_THROW(data.Deserialize(cut), Failure) << nLength << " bytes";
        EXPECT_EQ(ValuesOf(data), (std::vector<double>{99}));
    }
}

TEST(Data, RefusesAStreamThatClaimsMoreThanItHas)
{
    std::istringstream lying(std::string("\xff\xff\xff\x7f", 4) + std::string(16, '\0'));
    Data data;
    EXPECT_THROW(data.Deserialize(lying), Failure);
}

TEST(Data, RefusesAStreamThatClaimsLessThanNothing)
{
    std::istringstream lying(std::string("\xff\xff\xff\xff", 4));
    Data data = Filled({99});
    EXPECT_THROW(data.Deserialize(lying), Failure);
    EXPECT_EQ(ValuesOf(data), (std::vector<double>{99}));
}
}
}
