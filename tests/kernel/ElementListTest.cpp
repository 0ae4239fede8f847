#include "ElementList.h"
#include <gtest/gtest.h>
#include <memory>
#include <random>

namespace tessarine
{
namespace
{
struct Item
{
    std::uint32_t id;
    std::uint32_t GetID() const { return id; }
};

/// Does everything to a list and to a plain array, which has to hold the same.
class Pair
{
public:
    Item* Make(std::uint32_t id) { return m_Items.emplace_back(std::make_unique<Item>(Item{id})).get(); }

    void Append(Item* item)
    {
        list.push_back(item);
        plain.push_back(item);
    }
    bool Remove(Item* item)
    {
        const auto found = std::find(plain.begin(), plain.end(), item);
        const bool isThere = found != plain.end();
        if (isThere)
        {
            plain.erase(found);
        }
        return list.Remove(item) == isThere;
    }
    testing::AssertionResult IsSame() const
    {
        if (list.size() != plain.size())
        {
            return testing::AssertionFailure() << "sizes " << list.size() << " and " << plain.size();
        }
        if (!std::equal(list.begin(), list.end(), plain.begin(), plain.end()))
        {
            return testing::AssertionFailure() << "the iteration differs";
        }
        for (std::size_t i = 0; i < plain.size(); ++i)
        {
            if (list[i] != plain[i])
            {
                return testing::AssertionFailure() << "entry " << i << " differs";
            }
        }
        return testing::AssertionSuccess();
    }

    ElementList<Item> list;
    std::vector<Item*> plain;

private:
    std::vector<std::unique_ptr<Item>> m_Items;
};
}

TEST(ElementList, KeepsTheOrderOfInsertion)
{
    Pair pair;
    for (std::uint32_t id = 0; id < 10; ++id)
    {
        pair.Append(pair.Make(id));
    }
    EXPECT_TRUE(pair.IsSame());
    EXPECT_EQ(pair.list.back()->id, 9U);
}

TEST(ElementList, KeepsTheOrderUnderRemoval)
{
    Pair pair;
    for (std::uint32_t id = 0; id < 10; ++id)
    {
        pair.Append(pair.Make(id));
    }
    EXPECT_TRUE(pair.Remove(pair.plain[4]));
    EXPECT_TRUE(pair.Remove(pair.plain[0]));
    EXPECT_TRUE(pair.Remove(pair.plain.back()));
    EXPECT_TRUE(pair.IsSame());
    EXPECT_EQ(pair.list.back()->id, 8U);
}

TEST(ElementList, SaysThatAnEntryWasNotThere)
{
    Pair pair;
    Item* pItem = pair.Make(3);
    pair.Append(pItem);
    EXPECT_TRUE(pair.list.Remove(pItem));
    EXPECT_FALSE(pair.list.Remove(pItem));
    Item other{3};
    EXPECT_FALSE(pair.list.Remove(&other));
}

TEST(ElementList, RemovesTheFirstOfEqualEntries)
{
    Pair pair;
    Item* pItem = pair.Make(5);
    pair.Append(pItem);
    pair.Append(pair.Make(7));
    pair.Append(pItem);
    EXPECT_TRUE(pair.Remove(pItem));
    EXPECT_TRUE(pair.IsSame());
    EXPECT_EQ(pair.list[0]->id, 7U);
}

TEST(ElementList, FindsEntriesWhoseIDsDoNotIncrease)
{
    Pair pair;
    for (const std::uint32_t id : {5U, 3U, 9U, 1U})
    {
        pair.Append(pair.Make(id));
    }
    EXPECT_TRUE(pair.Remove(pair.plain[1]));
    EXPECT_TRUE(pair.Remove(pair.plain[2]));
    EXPECT_TRUE(pair.IsSame());
}

TEST(ElementList, NoticesALateEntryWithASmallID)
{
    Pair pair;
    for (std::uint32_t id = 10; id < 20; ++id)
    {
        pair.Append(pair.Make(id));
    }
    pair.Remove(pair.plain[3]);
    Item* pLate = pair.Make(2);
    pair.Append(pLate);
    EXPECT_TRUE(pair.Remove(pLate));
    EXPECT_TRUE(pair.IsSame());
}

TEST(ElementList, DoesNotReadTheIDsOfRemovedEntries)
{
    Pair pair;
    std::vector<std::unique_ptr<Item>> items;
    for (std::uint32_t id = 0; id < 100; ++id)
    {
        items.push_back(std::make_unique<Item>(Item{id}));
        pair.Append(items.back().get());
    }
    for (const int gone : {50, 25, 75, 49, 51})
    {
        EXPECT_TRUE(pair.Remove(items[gone].get()));
        items[gone].reset(); // the sanitizer sees a read from here on
    }
    EXPECT_TRUE(pair.Remove(items[52].get()));
    EXPECT_TRUE(pair.IsSame());
}

TEST(ElementList, TakesNullEntries)
{
    Pair pair;
    Item* pItem = pair.Make(4);
    pair.Append(nullptr);
    pair.Append(pItem);
    pair.Append(nullptr);
    EXPECT_TRUE(pair.IsSame());
    EXPECT_TRUE(pair.Remove(nullptr));
    EXPECT_TRUE(pair.IsSame());
    EXPECT_TRUE(pair.Remove(pItem));
    EXPECT_TRUE(pair.IsSame());
}

TEST(ElementList, StartsAnewWhenItIsCleared)
{
    Pair pair;
    for (std::uint32_t id = 0; id < 10; ++id)
    {
        pair.Append(pair.Make(id));
    }
    pair.Remove(pair.plain[2]);
    pair.Remove(pair.plain[1]);
    pair.list.clear();
    EXPECT_TRUE(pair.list.empty());
    EXPECT_EQ(pair.list.begin(), pair.list.end());
    pair.plain.clear();
    pair.Append(pair.Make(1));
    EXPECT_TRUE(pair.IsSame());
}

TEST(ElementList, RefusesAnIndexBeyondItsEntries)
{
    Pair pair;
    pair.Append(pair.Make(1));
    EXPECT_THROW(pair.list[1], AssertionFailure);
    pair.Remove(pair.plain[0]);
    EXPECT_THROW(pair.list[0], AssertionFailure);
    EXPECT_THROW(pair.list.back(), AssertionFailure);
}

TEST(ElementList, CopiesAndMovesWithItsHoles)
{
    Pair pair;
    for (std::uint32_t id = 0; id < 2000; ++id)
    {
        pair.Append(pair.Make(id));
    }
    pair.Remove(pair.plain[1000]);
    ElementList<Item> copy = pair.list;
    EXPECT_TRUE(copy.Remove(pair.plain[3]));
    EXPECT_TRUE(pair.IsSame());
    ElementList<Item> moved = std::move(copy);
    EXPECT_EQ(moved.size(), 1998U);
    EXPECT_TRUE(copy.empty()); // NOLINT(bugprone-use-after-move): a moved list is an empty one
}

/// Appending and removing at random places, near the front and near the end, with ids in order or not.
TEST(ElementList, BehavesAsAPlainArrayOverLongRandomSequences)
{
    std::mt19937 random(20);
    for (int round = 0; round < 30; ++round)
    {
        Pair pair;
        const bool inOrder = round % 3 != 0;
        const std::size_t most = 200U << (round % 5);
        std::uint32_t nextID = 0;
        for (std::size_t step = 0; step < 3 * most; ++step)
        {
            const bool grows = random() % 10 < (step < most ? 8U : 4U);
            if (grows || pair.plain.empty())
            {
                pair.Append(pair.Make(inOrder ? nextID++ : random() % 1000));
                continue;
            }
            const std::size_t size = pair.plain.size();
            const std::size_t places[] = {random() % size, size - 1,
                                          random() % std::min<std::size_t>(size, 9)};
            const std::size_t place = places[random() % 3];
            ASSERT_EQ(pair.list[place], pair.plain[place]);
            ASSERT_TRUE(pair.Remove(pair.plain[place]));
            if (step % 101 == 0)
            {
                ASSERT_TRUE(pair.IsSame());
            }
        }
        ASSERT_TRUE(pair.IsSame());
    }
}

TEST(ElementList, TakesOutAHundredThousandEntriesInNoTime)
{
    constexpr std::uint32_t kCount = 200000;
    std::vector<Item> items(kCount);
    ElementList<Item> list;
    for (std::uint32_t id = 0; id < kCount; ++id)
    {
        items[id].id = id;
        list.push_back(&items[id]);
    }
    // Shifting the tail or searching from the front would move some 10^10 entries.
    for (std::uint32_t id = 0; id < kCount; id += 2)
    {
        ASSERT_TRUE(list.Remove(&items[kCount - 1 - id]));
    }
    // The odd ones are gone.
    EXPECT_EQ(list.size(), kCount / 2);
    EXPECT_EQ(list[kCount / 4]->id, kCount / 2);
}
}
