#include "CIndexedHeap.h"
#include "Assert.h"
#include "Console.h"
#include <algorithm>
#include <limits>
#include <utility>

namespace tessarine
{
namespace
{
std::size_t CheckedCapacity(std::int32_t nCapacity)
{
    ASSERT(nCapacity >= 0);
    return static_cast<std::size_t>(nCapacity);
}
}

CIndexedHeap::CIndexedHeap(std::int32_t nCapacity) : m_Nodes(CheckedCapacity(nCapacity) + kFirst) {}

const CHeapNode& CIndexedHeap::GetNode(std::int32_t nPosition) const
{
    ASSERT(nPosition >= 0 && nPosition < m_nSize);
    return Node(nPosition);
}

void CIndexedHeap::Insert(CHeapable* pObject, float key)
{
    ASSERT(pObject != nullptr);
    if (m_nSize == GetCapacity())
    {
        Grow();
    }
    pObject->SetHeapPos(m_nSize);
    Node(m_nSize) = {key, pObject};
    ++m_nSize;
    SiftUp(m_nSize - 1);
}

void CIndexedHeap::Grow()
{
    ASSERT(m_nSize <= std::numeric_limits<std::int32_t>::max() / 2);
    const std::int32_t nDoubled = std::max(2 * m_nSize, 1); // a heap of capacity 0 has nothing to double
    DebugConsole() << "NOTE: Growing heap from " << m_nSize << " to " << nDoubled << '\n';
    m_Nodes.resize(static_cast<std::size_t>(nDoubled) + kFirst);
}

void CIndexedHeap::Update(CHeapable* pObject, float key)
{
    ASSERT(pObject != nullptr);
    const std::int32_t nPosition = pObject->GetHeapPos();
    if (nPosition >= m_nSize)
    {
        DebugConsole() << "WARNING: Attempting to update past end of heap!\n";
        return;
    }
    if (nPosition < 0) // NOT_IN_HEAP, or no position at all
    {
        DebugConsole() << "WARNING: Attempting to update object not in heap!\n";
        return;
    }
    const float oldKey = std::exchange(Node(nPosition).key, key);
    if (key < oldKey)
    {
        SiftDown(nPosition);
    }
    else
    {
        SiftUp(nPosition);
    }
}

CHeapNode* CIndexedHeap::Extract()
{
    if (m_nSize == 0)
    {
        return nullptr;
    }
    CHeapNode* pTop = TakeOut(0);
    SiftDown(0);
    return pTop;
}

CHeapNode* CIndexedHeap::Remove(std::int32_t nPosition)
{
    if (nPosition < 0 || nPosition >= m_nSize)
    {
        DebugConsole() << "WARNING: Attempt to delete invalid heap node.\n";
        return nullptr;
    }
    CHeapNode* pRemoved = TakeOut(nPosition);
    if (nPosition == m_nSize) // it was the last: nothing took its place
    {
        return pRemoved;
    }
    if (Key(nPosition) < pRemoved->key)
    {
        SiftDown(nPosition);
    }
    else
    {
        SiftUp(nPosition);
    }
    return pRemoved;
}

/// Swaps a node behind the heap's end. What took its place is not sifted yet.
CHeapNode* CIndexedHeap::TakeOut(std::int32_t nPosition)
{
    Swap(nPosition, m_nSize - 1);
    --m_nSize;
    Node(m_nSize).object->NotInHeap();
    return &Node(m_nSize);
}

void CIndexedHeap::Swap(std::int32_t nFirst, std::int32_t nSecond)
{
    std::swap(Node(nFirst), Node(nSecond));
    Node(nFirst).object->SetHeapPos(nFirst);
    Node(nSecond).object->SetHeapPos(nSecond);
}

/// The nodes on the way move down by one place each, and the node itself is put down at the end.
void CIndexedHeap::SiftUp(std::int32_t nPosition)
{
    const CHeapNode moving = Node(nPosition);
    const std::int32_t nStart = nPosition;
    while (nPosition > 0 && Key((nPosition - 1) / 2) < moving.key)
    {
        const std::int32_t nParent = (nPosition - 1) / 2;
        Put(nPosition, Node(nParent));
        nPosition = nParent;
    }
    if (nPosition != nStart)
    {
        Put(nPosition, moving);
    }
}

void CIndexedHeap::SiftDown(std::int32_t nPosition)
{
    const CHeapNode moving = Node(nPosition);
    const std::int32_t nStart = nPosition;
    for (std::int32_t nChild = FindLargerChild(nPosition, moving.key); nChild != nPosition;
         nChild = FindLargerChild(nPosition, moving.key))
    {
        PrefetchBelow(nChild, 2);
        Put(nPosition, Node(nChild));
        nPosition = nChild;
    }
    if (nPosition != nStart)
    {
        Put(nPosition, moving);
    }
}

/// The child that a node with this key would change places with, or the position itself.
std::int32_t CIndexedHeap::FindLargerChild(std::int32_t nPosition, float key) const
{
    if (nPosition >= m_nSize / 2)
    {
        return nPosition; // no left child
    }
    const std::int32_t nLeft = 2 * nPosition + 1;
    const std::int32_t nRight = nLeft + 1;
    if (nRight < m_nSize)
    {
        // Which child is larger cannot be foreseen, so nothing branches on it.
        const std::int32_t nLarger = nLeft + (Key(nRight) > Key(nLeft) ? 1 : 0);
        if (Key(nLarger) > key)
        {
            return nLarger;
        }
        if (Key(nRight) > key && !(Key(nLeft) > key)) // beside a key that is no number
        {
            return nRight;
        }
        return nPosition;
    }
    return Key(nLeft) > key ? nLeft : nPosition;
}
}
