#pragma once
#include "BlockAllocator.h"
#include <cstdint>

namespace tessarine
{
/// Base of every object that can stand in a heap: it knows its own place there.
class CHeapable
{
public:
    static constexpr std::int32_t NOT_IN_HEAP = -47;

    bool IsInHeap() const { return m_nHeapPos != NOT_IN_HEAP; }
    std::int32_t GetHeapPos() const { return m_nHeapPos; }
    void SetHeapPos(std::int32_t nHeapPos) { m_nHeapPos = nHeapPos; }
    void NotInHeap() { m_nHeapPos = NOT_IN_HEAP; }

private:
    std::int32_t m_nHeapPos = NOT_IN_HEAP;
};

/// One entry of a heap. The object is not owned.
struct CHeapNode
{
    float key = 0.0F;
    CHeapable* object = nullptr;
};

/// A binary maximum heap of keyed objects, each of which knows its position, so that a key can be changed and
/// an object removed in logarithmic time.
///
/// Needs   The objects stay alive and in place while they stand in the heap, and stand in one heap at most.
///         A null object is an assertion.
/// Says    A note when it grows, and a warning for a position or an object that is not in the heap; the heap
///         is then as it was.
/// Cost    Logarithmic; the storage is allocated once when the capacity given is large enough.
/// Kept    Equal keys do not swap on the way up, and of two equal children the left one rises: which of equal
///         keys comes out first shows in the results.
class CIndexedHeap
{
public:
    explicit CIndexedHeap(std::int32_t nCapacity);
    CIndexedHeap(const CIndexedHeap&) = delete;
    CIndexedHeap& operator=(const CIndexedHeap&) = delete;

    std::int32_t GetSize() const { return m_nSize; }
    std::int32_t GetCapacity() const { return static_cast<std::int32_t>(m_Nodes.size() - kFirst); }

    /// The node at a position from 0 to the size, which is not part of it (asserted).
    const CHeapNode& GetNode(std::int32_t nPosition) const;

    void Insert(CHeapable* pObject, float key);
    void Update(CHeapable* pObject, float key);

    /// Asks for the memory that an Update of the object will look at. For speed alone.
    void Prefetch(const CHeapable& object) const
    {
        const std::int32_t nPosition = object.GetHeapPos();
        if (nPosition > 0 && nPosition < m_nSize)
        {
            __builtin_prefetch(&Node(nPosition), 1);
            __builtin_prefetch(&Node((nPosition - 1) / 2));
            PrefetchBelow(nPosition, 1);
        }
    }

    /// Takes the node with the largest key; null when the heap is empty.
    /// The node lies behind the heap's end: read it before the next Insert.
    CHeapNode* Extract();

    /// Takes the node at any position, as Extract does. A position outside the heap prints the warning and
    /// gives null: there is no node to go on with.
    CHeapNode* Remove(std::int32_t nPosition);

private:
    /// Two children, and four grandchildren, lie in one line of the cache where node 0 is the second of its line.
    static constexpr std::size_t kFirst = 1;

    static std::size_t Place(std::int32_t nPosition) { return static_cast<std::size_t>(nPosition) + kFirst; }
    CHeapNode& Node(std::int32_t nPosition) { return m_Nodes[Place(nPosition)]; }
    const CHeapNode& Node(std::int32_t nPosition) const { return m_Nodes[Place(nPosition)]; }
    float Key(std::int32_t nPosition) const { return Node(nPosition).key; }
    void PrefetchBelow(std::int32_t nPosition, int nLevels) const
    {
        const std::int64_t nFirst = ((static_cast<std::int64_t>(nPosition) + 1) << nLevels) - 1;
        if (nFirst < m_nSize)
        {
            __builtin_prefetch(&Node(static_cast<std::int32_t>(nFirst)));
        }
    }
    void Grow();
    void Swap(std::int32_t nFirst, std::int32_t nSecond);
    void Put(std::int32_t nPosition, const CHeapNode& node)
    {
        Node(nPosition) = node;
        node.object->SetHeapPos(nPosition);
    }
    std::int32_t FindLargerChild(std::int32_t nPosition, float key) const;
    void SiftUp(std::int32_t nPosition);
    void SiftDown(std::int32_t nPosition);
    CHeapNode* TakeOut(std::int32_t nPosition);

    BlockVector<CHeapNode> m_Nodes; ///< as many as the capacity, behind kFirst unused ones
    std::int32_t m_nSize = 0;
};
}
