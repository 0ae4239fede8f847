#include "RecordArray.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace tessarine
{
namespace
{
/// Counts itself, so that a record that is lost or destroyed twice shows.
struct Counted
{
    static inline int alive = 0;

    std::uint64_t number = 0;
    std::string text = "a text that is too long to stand inside the string itself";

    Counted() { ++alive; }
    Counted(const Counted& other) : number(other.number), text(other.text) { ++alive; }
    Counted(Counted&& other) noexcept : number(other.number), text(std::move(other.text)) { ++alive; }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --alive; }
};

class RecordArrayOfCounted : public testing::Test
{
protected:
    void SetUp() override { Counted::alive = 0; }

    void Fill(RecordArray<Counted>& array, int count)
    {
        for (int i = 0; i < count; ++i)
        {
            Counted* pRecord = array.Create();
            pRecord->number = array.size() - 1;
        }
    }
};
}

TEST_F(RecordArrayOfCounted, KeepsAddressesWhileItGrows)
{
    RecordArray<Counted> array;
    Counted* pFirst = array.Create();
    pFirst->number = 17;
    Fill(array, 50000);
    EXPECT_EQ(array[0], pFirst);
    EXPECT_EQ(pFirst->number, 17U);
    EXPECT_EQ(array[49999]->number, 49999U);
}

TEST_F(RecordArrayOfCounted, LeavesNullInTheSlotOfADeletedRecord)
{
    RecordArray<Counted> array;
    Fill(array, 3);
    array.Delete(1);
    EXPECT_EQ(array.size(), 3U);
    EXPECT_EQ(array[1], nullptr);
    EXPECT_EQ(Counted::alive, 2);
    array.Delete(1); // a null slot stays as it is
    EXPECT_EQ(Counted::alive, 2);
}

TEST_F(RecordArrayOfCounted, UsesTheMemoryButNotTheSlotOfADeletedRecordAgain)
{
    RecordArray<Counted> array;
    Fill(array, 3);
    Counted* pOld = array[1];
    array.Delete(1);
    Counted* pNew = array.Create();
    EXPECT_EQ(pNew, pOld);
    EXPECT_EQ(array[3], pNew);
    EXPECT_EQ(array[1], nullptr);
}

TEST_F(RecordArrayOfCounted, DestroysAllRecordsWhenCleared)
{
    RecordArray<Counted> array;
    Fill(array, 1000);
    array.Delete(500);
    array.Clear();
    EXPECT_EQ(Counted::alive, 0);
    EXPECT_TRUE(array.empty());
}

TEST_F(RecordArrayOfCounted, DestroysAllRecordsAtItsEnd)
{
    {
        RecordArray<Counted> array;
        Fill(array, 1000);
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST_F(RecordArrayOfCounted, MakesReservedRecordsOneBehindTheOther)
{
    RecordArray<Counted> array;
    Fill(array, 10);
    array.Reserve(5010);
    Fill(array, 5000);
    for (std::size_t i = 11; i < array.size(); ++i)
    {
        ASSERT_EQ(array[i], array[i - 1] + 1);
    }
}

TEST_F(RecordArrayOfCounted, RefusesAnIndexBeyondItsSlots)
{
    RecordArray<Counted> array;
    Fill(array, 3);
    EXPECT_THROW(array[3], AssertionFailure);
    EXPECT_THROW(array.Delete(3), AssertionFailure);
}

TEST_F(RecordArrayOfCounted, RestoresValuesAtTheirAddressesAfterChanges)
{
    RecordArray<Counted> array;
    Fill(array, 100);
    Counted* pDeletedLater = array[40];
    array.Delete(7);
    auto saved = array.Save();

    array[5]->number = 999;
    array.Delete(40);
    Fill(array, 5000);
    array.Restore(std::move(saved));

    ASSERT_EQ(array.size(), 100U);
    EXPECT_EQ(array[5]->number, 5U);
    EXPECT_EQ(array[5]->text, Counted().text);
    EXPECT_EQ(array[7], nullptr);
    EXPECT_EQ(array[40], pDeletedLater);
    EXPECT_EQ(array[40]->number, 40U);
    EXPECT_EQ(Counted::alive, 99);
}

TEST_F(RecordArrayOfCounted, RestoresValuesAtTheirAddressesAfterClear)
{
    RecordArray<Counted> array;
    Fill(array, 3000);
    Counted* pRecord = array[2500];
    auto saved = array.Save();
    array.Clear();
    Fill(array, 10);
    array.Restore(std::move(saved));
    EXPECT_EQ(array.size(), 3000U);
    EXPECT_EQ(array[2500], pRecord);
    EXPECT_EQ(pRecord->number, 2500U);
    EXPECT_EQ(Counted::alive, 3000);
}

TEST_F(RecordArrayOfCounted, TakesFreeMemoryInTheSameOrderAfterARestore)
{
    RecordArray<Counted> array;
    Fill(array, 100);
    array.Delete(10);
    array.Delete(20);
    array.Delete(30);
    auto saved = array.Save();
    const Counted* addresses[] = {array.Create(), array.Create(), array.Create(), array.Create()};
    array.Restore(std::move(saved));
    for (const Counted* pAddress : addresses)
    {
        EXPECT_EQ(array.Create(), pAddress);
    }
}

TEST_F(RecordArrayOfCounted, IsEmptyAfterTake)
{
    RecordArray<Counted> array;
    Fill(array, 100);
    const auto taken = array.Take();
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(Counted::alive, 100);
    Counted* pNew = array.Create();
    EXPECT_EQ(array[0], pNew);
}

TEST_F(RecordArrayOfCounted, BringsTakenRecordsBack)
{
    RecordArray<Counted> array;
    Fill(array, 100);
    array.Delete(3);
    Counted* pRecord = array[50];
    auto taken = array.Take();
    Fill(array, 1000);
    array.Restore(std::move(taken));
    EXPECT_EQ(array.size(), 100U);
    EXPECT_EQ(array[50], pRecord);
    EXPECT_EQ(array[3], nullptr);
    EXPECT_EQ(Counted::alive, 99);
}

TEST_F(RecordArrayOfCounted, DestroysTakenRecordsThatAreNotBroughtBack)
{
    RecordArray<Counted> array;
    Fill(array, 100);
    {
        auto taken = array.Take();
        auto moved = std::move(taken);
        taken = std::move(moved);
        EXPECT_EQ(Counted::alive, 100);
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST_F(RecordArrayOfCounted, RestoresOneCheckpointInsideAnother)
{
    RecordArray<Counted> array;
    Fill(array, 100);
    auto outer = array.Save();
    array[1]->number = 1000;
    {
        auto inner = array.Take();
        Fill(array, 5);
        array.Restore(std::move(inner));
    }
    EXPECT_EQ(array[1]->number, 1000U);
    array.Restore(std::move(outer));
    EXPECT_EQ(array[1]->number, 1U);
    EXPECT_EQ(Counted::alive, 100);
}

TEST_F(RecordArrayOfCounted, RestoresAnEmptyArray)
{
    RecordArray<Counted> array;
    auto saved = array.Save();
    Fill(array, 100);
    array.Restore(std::move(saved));
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(Counted::alive, 0);
}

TEST_F(RecordArrayOfCounted, RewindsToAMark)
{
    RecordArray<Counted> array;
    Fill(array, 100);
    array.Delete(7);
    const Counted* pLast = array[99];
    const auto mark = array.GetMark();
    Fill(array, 5000); // several blocks
    array.Delete(200);
    array.Rewind(mark);
    ASSERT_EQ(array.size(), 100U);
    EXPECT_EQ(array[7], nullptr);
    EXPECT_EQ(array[99], pLast);
    EXPECT_EQ(pLast->number, 99U);
    EXPECT_EQ(Counted::alive, 99);
}

TEST_F(RecordArrayOfCounted, MakesTheSameRecordsAgainAfterARewind)
{
    RecordArray<Counted> array;
    Fill(array, 50); // of the hundred or so that the first block has room for
    array.Delete(10);
    array.Delete(20);
    const auto mark = array.GetMark();
    std::vector<const Counted*> addresses;
    std::generate_n(std::back_inserter(addresses), 12, [&] { return array.Create(); });
    array.Delete(51); // its memory is the first to be used again now
    array.Rewind(mark);
    for (const Counted* pAddress : addresses)
    {
        EXPECT_EQ(array.Create(), pAddress);
    }
    EXPECT_EQ(array.size(), 62U);
}

TEST_F(RecordArrayOfCounted, RewindsAReservation)
{
    RecordArray<Counted> array;
    const auto mark = array.GetMark();
    array.Reserve(1000);
    Fill(array, 10);
    array.Rewind(mark);
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(Counted::alive, 0);
    Fill(array, 10);
    EXPECT_EQ(array[9]->number, 9U);
}

namespace
{
struct Refusing
{
    static inline bool refuses = false;
    std::uint64_t number = 0;
    Refusing()
    {
        if (refuses)
        {
            throw std::runtime_error("refused");
        }
    }
};
}

TEST(RecordArray, IsUnchangedWhenARecordCannotBeMade)
{
    RecordArray<Refusing> array;
    array.Create();
    array.Create();
    array.Delete(0);
    Refusing::refuses = true;
    EXPECT_THROW(array.Create(), std::runtime_error);
    Refusing::refuses = false;
    EXPECT_EQ(array.size(), 2U);
    array.Create();
    EXPECT_EQ(array.size(), 3U);
    EXPECT_NE(array[2], array[1]);
}
}
