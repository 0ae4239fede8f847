#include "CIndexedHeap.h"
#include "Reports.h"
#include <deque>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace tessarine
{
namespace
{
constexpr const char* kInvalidNode = "WARNING: Attempt to delete invalid heap node.\n";
constexpr const char* kPastEnd = "WARNING: Attempting to update past end of heap!\n";
constexpr const char* kNotInHeap = "WARNING: Attempting to update object not in heap!\n";

/// An object with a name of its own.
class Item : public CHeapable
{
public:
    explicit Item(int nName) : m_nName(nName) {}
    int GetName() const { return m_nName; }

private:
    int m_nName;
};

int NameOf(const CHeapNode& node)
{
    return static_cast<const Item*>(node.object)->GetName();
}

testing::AssertionResult IsHeap(const CIndexedHeap& heap)
{
    for (std::int32_t i = 0; i < heap.GetSize(); ++i)
    {
        if (heap.GetNode(i).object->GetHeapPos() != i)
        {
            return testing::AssertionFailure() << "the object at " << i << " has another position";
        }
        if (i > 0 && heap.GetNode((i - 1) / 2).key < heap.GetNode(i).key)
        {
            return testing::AssertionFailure() << "the key at " << i << " is above its parent's";
        }
    }
    return testing::AssertionSuccess();
}

std::vector<int> NamesInOrder(const CIndexedHeap& heap)
{
    std::vector<int> names;
    names.reserve(static_cast<std::size_t>(heap.GetSize()));
    for (std::int32_t i = 0; i < heap.GetSize(); ++i)
    {
        names.push_back(NameOf(heap.GetNode(i)));
    }
    return names;
}

/// A heap with the items 0, 1, 2, ... of the given keys, put in one after the other.
class FilledHeap
{
public:
    explicit FilledHeap(const std::vector<float>& keys) : m_Heap(static_cast<std::int32_t>(keys.size()))
    {
        for (const float key : keys)
        {
            m_Items.emplace_back(static_cast<int>(m_Items.size()));
            m_Heap.Insert(&m_Items.back(), key);
        }
    }

    CIndexedHeap* operator->() { return &m_Heap; }
    CIndexedHeap& operator*() { return m_Heap; }
    Item& GetItem(std::size_t nName) { return m_Items[nName]; }

    std::vector<int> ExtractAll()
    {
        std::vector<int> names;
        while (const CHeapNode* pNode = m_Heap.Extract())
        {
            names.push_back(NameOf(*pNode));
        }
        return names;
    }

private:
    std::deque<Item> m_Items;
    CIndexedHeap m_Heap;
};

TEST(CHeapable, StandsInNoHeapAtFirst)
{
    CHeapable object;
    EXPECT_FALSE(object.IsInHeap());
    EXPECT_EQ(object.GetHeapPos(), -47);
    object.SetHeapPos(0);
    EXPECT_TRUE(object.IsInHeap());
    object.NotInHeap();
    EXPECT_FALSE(object.IsInHeap());
    EXPECT_EQ(object.GetHeapPos(), CHeapable::NOT_IN_HEAP);
}

TEST(CIndexedHeap, GivesTheLargestKeyFirst)
{
    FilledHeap heap({3, 9, -1, 7, 4});
    EXPECT_TRUE(IsHeap(*heap));
    EXPECT_EQ(heap.ExtractAll(), (std::vector<int>{1, 3, 4, 0, 2}));
}

TEST(CIndexedHeap, GivesNothingWhenEmpty)
{
    CIndexedHeap heap(3);
    EXPECT_EQ(heap.Extract(), nullptr);
    EXPECT_EQ(heap.GetSize(), 0);
    EXPECT_EQ(heap.GetCapacity(), 3);
}

TEST(CIndexedHeap, GivesTheNodeWithItsKey)
{
    FilledHeap heap({3, 9});
    const CHeapNode* pNode = heap->Extract();
    EXPECT_EQ(pNode->object, &heap.GetItem(1));
    EXPECT_EQ(pNode->key, 9.0F);
}

TEST(CIndexedHeap, MarksAnExtractedObjectAndWarnsWhenItIsUpdated)
{
    FilledHeap heap({3, 9});
    heap->Extract();
    EXPECT_EQ(heap.GetItem(1).GetHeapPos(), -47);
    ConsoleCapture console;
    heap->Update(&heap.GetItem(1), 5.0F);
    EXPECT_EQ(console.GetText(), kNotInHeap);
    EXPECT_EQ(NamesInOrder(*heap), (std::vector<int>{0}));
}

TEST(CIndexedHeap, WarnsWhenAnObjectPastItsEndIsUpdated)
{
    FilledHeap heap({3, 9});
    Item stray(7);
    stray.SetHeapPos(2);
    ConsoleCapture console;
    heap->Update(&stray, 50.0F);
    EXPECT_EQ(console.GetText(), kPastEnd);
    EXPECT_EQ(heap->GetNode(0).key, 9.0F);
}

TEST(CIndexedHeap, TakesAnyNegativePositionForNoPosition)
{
    FilledHeap heap({3, 9});
    Item stray(7);
    stray.SetHeapPos(-1);
    ConsoleCapture console;
    heap->Update(&stray, 50.0F);
    EXPECT_EQ(heap->Remove(-1), nullptr);
    EXPECT_EQ(heap->Remove(CHeapable::NOT_IN_HEAP), nullptr);
    EXPECT_EQ(console.GetText(), std::string(kNotInHeap) + kInvalidNode + kInvalidNode);
    EXPECT_EQ(heap->GetSize(), 2);
    EXPECT_TRUE(IsHeap(*heap));
}

TEST(CIndexedHeap, KeepsEqualKeysInPlaceOnTheWayUp)
{
    FilledHeap heap({5, 5, 5, 5});
    EXPECT_EQ(NamesInOrder(*heap), (std::vector<int>{0, 1, 2, 3}));
}

TEST(CIndexedHeap, LetsTheLeftOfTwoEqualChildrenRise)
{
    FilledHeap heap({5, 5, 5, 1});
    // Item 3 comes to the top and sinks below its left child.
    EXPECT_EQ(NameOf(*heap->Extract()), 0);
    EXPECT_EQ(NamesInOrder(*heap), (std::vector<int>{1, 3, 2}));
}

TEST(CIndexedHeap, SinksOnlyBelowAStrictlyLargerChild)
{
    FilledHeap heap({9, 5, 5, 5});
    heap->Extract(); // item 3 comes to the top with the key of its children
    EXPECT_EQ(NamesInOrder(*heap), (std::vector<int>{3, 1, 2}));
}

TEST(CIndexedHeap, MovesAnUpdatedObjectBothWays)
{
    FilledHeap heap({6, 5, 4, 3, 2});
    heap->Update(&heap.GetItem(4), 10.0F);
    EXPECT_EQ(NamesInOrder(*heap), (std::vector<int>{4, 0, 2, 3, 1}));
    EXPECT_TRUE(IsHeap(*heap));
    heap->Update(&heap.GetItem(4), 0.0F);
    EXPECT_EQ(NamesInOrder(*heap), (std::vector<int>{0, 1, 2, 3, 4}));
    EXPECT_TRUE(IsHeap(*heap));
}

TEST(CIndexedHeap, ReplacesAKeyByTheSameWithoutAMove)
{
    FilledHeap heap({5, 5, 5});
    heap->Update(&heap.GetItem(2), 5.0F);
    EXPECT_EQ(NamesInOrder(*heap), (std::vector<int>{0, 1, 2}));
}

TEST(CIndexedHeap, RemovesTheLastNodeWithoutAnyMove)
{
    FilledHeap heap({6, 5, 4, 3, 2});
    const CHeapNode* pNode = heap->Remove(4);
    EXPECT_EQ(NameOf(*pNode), 4);
    EXPECT_EQ(pNode->key, 2.0F);
    EXPECT_FALSE(heap.GetItem(4).IsInHeap());
    EXPECT_EQ(NamesInOrder(*heap), (std::vector<int>{0, 1, 2, 3}));
}

TEST(CIndexedHeap, RemovesTheOnlyNode)
{
    FilledHeap heap({6});
    EXPECT_EQ(NameOf(*heap->Remove(0)), 0);
    EXPECT_EQ(heap->GetSize(), 0);
    EXPECT_EQ(heap->Extract(), nullptr);
}

TEST(CIndexedHeap, SinksWhatReplacesALargerNode)
{
    FilledHeap heap({9, 8, 4, 7, 6, 3});
    heap->Remove(heap.GetItem(1).GetHeapPos()); // item 5 with key 3 takes its place, below 7 and 6
    EXPECT_EQ(NamesInOrder(*heap), (std::vector<int>{0, 3, 2, 5, 4}));
    EXPECT_TRUE(IsHeap(*heap));
}

TEST(CIndexedHeap, RaisesWhatReplacesASmallerNode)
{
    // Item 3 with key 1 below item 1 with key 2; the last, item 6, has key 8 below item 2 with key 9.
    FilledHeap heap({10, 2, 9, 1, 1, 8, 8});
    heap->Remove(heap.GetItem(3).GetHeapPos());
    EXPECT_EQ(NamesInOrder(*heap), (std::vector<int>{0, 6, 2, 1, 4, 5}));
    EXPECT_TRUE(IsHeap(*heap));
}

TEST(CIndexedHeap, WarnsWhenANodePastItsEndIsRemoved)
{
    FilledHeap heap({6, 5});
    ConsoleCapture console;
    EXPECT_EQ(heap->Remove(2), nullptr);
    EXPECT_EQ(heap->Remove(std::numeric_limits<std::int32_t>::max()), nullptr);
    EXPECT_EQ(console.GetText(), std::string(kInvalidNode) + kInvalidNode);
    EXPECT_EQ(NamesInOrder(*heap), (std::vector<int>{0, 1}));
}

TEST(CIndexedHeap, DoublesItselfAndSaysSo)
{
    ConsoleCapture console;
    CIndexedHeap heap(4);
    std::deque<Item> items;
    for (int i = 0; i < 5; ++i)
    {
        EXPECT_EQ(console.GetText(), "") << "before item " << i;
        items.emplace_back(i);
        heap.Insert(&items.back(), static_cast<float>(i));
    }
    EXPECT_EQ(console.GetText(), "NOTE: Growing heap from 4 to 8\n");
    EXPECT_EQ(heap.GetCapacity(), 8);
    EXPECT_EQ(heap.GetSize(), 5);
    EXPECT_TRUE(IsHeap(heap));
}

TEST(CIndexedHeap, GrowsFromNothingToOne)
{
    ConsoleCapture console;
    CIndexedHeap heap(0);
    Item first(0);
    Item second(1);
    heap.Insert(&first, 1.0F);
    heap.Insert(&second, 2.0F);
    EXPECT_EQ(console.GetText(), "NOTE: Growing heap from 0 to 1\nNOTE: Growing heap from 1 to 2\n");
    EXPECT_EQ(NamesInOrder(heap), (std::vector<int>{1, 0}));
}

TEST(CIndexedHeap, RefusesWhatIsNoObjectOrNoCapacity)
{
    AssertionCapture reports;
    CIndexedHeap heap(1);
    EXPECT_THROW(heap.Insert(nullptr, 1.0F), AssertionFailure);
    EXPECT_THROW(heap.Update(nullptr, 1.0F), AssertionFailure);
    EXPECT_THROW(heap.GetNode(0), AssertionFailure);
    EXPECT_THROW(CIndexedHeap(-1), AssertionFailure);
    EXPECT_EQ(heap.GetSize(), 0);
}

TEST(CIndexedHeap, StaysInItsBoundsWithKeysThatAreNoNumbers)
{
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    FilledHeap heap({1, kNan, 5, kNan, 7, kNan, 3, 9});
    heap->Update(&heap.GetItem(2), kNan);
    heap->Remove(heap->GetSize() - 1);
    EXPECT_EQ(heap.ExtractAll().size(), 7U);
    for (std::size_t i = 0; i < 8; ++i)
    {
        EXPECT_FALSE(heap.GetItem(i).IsInHeap());
    }
}

// ---- against a literal model

/// The heap once more as a bare list of pairs, each rule as it is told, positions found by search.
class LiteralHeap
{
public:
    struct Entry
    {
        float key;
        int nName;
    };

    void Insert(int nName, float key)
    {
        m_Entries.push_back({key, nName});
        Raise(m_Entries.size() - 1);
    }

    void Update(int nName, float key)
    {
        const std::size_t i = PositionOf(nName);
        const float old = m_Entries[i].key;
        m_Entries[i].key = key;
        key < old ? Sink(i) : Raise(i);
    }

    Entry Extract()
    {
        const Entry top = TakeLastTo(0);
        Sink(0);
        return top;
    }

    Entry Remove(int nName)
    {
        const std::size_t i = PositionOf(nName);
        const bool bLast = i + 1 == m_Entries.size();
        const Entry removed = TakeLastTo(i);
        if (!bLast)
        {
            m_Entries[i].key < removed.key ? Sink(i) : Raise(i);
        }
        return removed;
    }

    std::size_t PositionOf(int nName) const
    {
        std::size_t i = 0;
        while (m_Entries[i].nName != nName)
        {
            ++i;
        }
        return i;
    }

    const std::vector<Entry>& GetEntries() const { return m_Entries; }

private:
    Entry TakeLastTo(std::size_t i)
    {
        const Entry taken = m_Entries[i];
        m_Entries[i] = m_Entries.back();
        m_Entries.pop_back();
        return taken;
    }

    void Raise(std::size_t i)
    {
        if (i == 0 || !(m_Entries[(i - 1) / 2].key < m_Entries[i].key))
        {
            return;
        }
        std::swap(m_Entries[i], m_Entries[(i - 1) / 2]);
        Raise((i - 1) / 2);
    }

    void Sink(std::size_t i)
    {
        std::size_t m = i;
        for (const std::size_t child : {2 * i + 1, 2 * i + 2})
        {
            if (child < m_Entries.size() && m_Entries[child].key > m_Entries[m].key)
            {
                m = child;
            }
        }
        if (m != i)
        {
            std::swap(m_Entries[i], m_Entries[m]);
            Sink(m);
        }
    }

    std::vector<Entry> m_Entries;
};

/// Drives a heap and the literal one through the same random operations.
class HeapPair
{
public:
    explicit HeapPair(unsigned nSeed) : m_Generator(nSeed), m_Heap(8) {}

    void Step()
    {
        const int nChoice = Random(10);
        if (m_Literal.GetEntries().empty() || nChoice < 4)
        {
            Insert();
        }
        else if (nChoice < 7)
        {
            Update();
        }
        else if (nChoice < 9)
        {
            Remove();
        }
        else
        {
            Extract();
        }
    }

    testing::AssertionResult AreEqual() const
    {
        const auto& entries = m_Literal.GetEntries();
        if (static_cast<std::size_t>(m_Heap.GetSize()) != entries.size())
        {
            return testing::AssertionFailure() << "sizes differ";
        }
        for (std::size_t i = 0; i < entries.size(); ++i)
        {
            const CHeapNode& node = m_Heap.GetNode(static_cast<std::int32_t>(i));
            if (NameOf(node) != entries[i].nName || node.key != entries[i].key)
            {
                return testing::AssertionFailure() << "nodes " << i << " differ";
            }
        }
        return IsHeap(m_Heap);
    }

private:
    int Random(int nEnd) { return static_cast<int>(m_Generator() % static_cast<unsigned>(nEnd)); }

    /// Few different keys: ties are the rule.
    float RandomKey() { return static_cast<float>(Random(12)) - 6.0F; }

    Item& RandomItemInHeap()
    {
        const auto& entries = m_Literal.GetEntries();
        const int nEntry = Random(static_cast<int>(entries.size()));
        return m_Items[static_cast<std::size_t>(entries[static_cast<std::size_t>(nEntry)].nName)];
    }

    void Insert()
    {
        m_Items.emplace_back(static_cast<int>(m_Items.size()));
        const float key = RandomKey();
        m_Heap.Insert(&m_Items.back(), key);
        m_Literal.Insert(m_Items.back().GetName(), key);
    }

    void Update()
    {
        Item& item = RandomItemInHeap();
        const float key = RandomKey();
        m_Heap.Update(&item, key);
        m_Literal.Update(item.GetName(), key);
    }

    void Remove()
    {
        Item& item = RandomItemInHeap();
        const CHeapNode* pNode = m_Heap.Remove(item.GetHeapPos());
        const auto removed = m_Literal.Remove(item.GetName());
        ExpectTaken(pNode, removed);
    }

    void Extract()
    {
        const CHeapNode* pNode = m_Heap.Extract();
        const auto top = m_Literal.Extract();
        ExpectTaken(pNode, top);
    }

    static void ExpectTaken(const CHeapNode* pNode, const LiteralHeap::Entry& expected)
    {
        ASSERT_NE(pNode, nullptr);
        EXPECT_EQ(NameOf(*pNode), expected.nName);
        EXPECT_EQ(pNode->key, expected.key);
        EXPECT_FALSE(pNode->object->IsInHeap());
    }

    std::mt19937 m_Generator;
    std::deque<Item> m_Items;
    CIndexedHeap m_Heap;
    LiteralHeap m_Literal;
};

TEST(CIndexedHeap, StandsNodeForNodeLikeTheLiteralHeap)
{
    ConsoleCapture console; // the growing notes are not for here
    for (unsigned nSeed = 1; nSeed <= 20; ++nSeed)
    {
        HeapPair pair(nSeed);
        for (int step = 0; step < 400; ++step)
        {
            pair.Step();
            ASSERT_TRUE(pair.AreEqual()) << "seed " << nSeed << ", step " << step;
        }
    }
}
}
}
