#pragma once
#include "Assert.h"
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace tessarine
{
class DSLoop;

/// The loops of a face, in order and not owned. Nearly every face has one, which needs no memory of its own.
/// An index beyond the list is an assertion.
class LoopList
{
    union Room
    {
        DSLoop* one;
        DSLoop** many; ///< on the heap, when there is room for more than one
    };

public:
    LoopList() = default;
    LoopList(const LoopList& other) : LoopList()
    {
        Grow(other.m_nSize);
        std::copy(other.begin(), other.end(), begin());
        m_nSize = other.m_nSize;
    }
    LoopList(LoopList&& other) noexcept : LoopList() { Swap(other); }
    LoopList& operator=(LoopList other) noexcept
    {
        Swap(other);
        return *this;
    }
    ~LoopList()
    {
        if (IsOnHeap())
        {
            delete[] m_Room.many;
        }
    }

    std::size_t size() const { return m_nSize; }
    bool empty() const { return m_nSize == 0; }

    DSLoop*& operator[](std::size_t index)
    {
        ASSERT(index < m_nSize);
        return begin()[index];
    }
    DSLoop* operator[](std::size_t index) const
    {
        ASSERT(index < m_nSize);
        return begin()[index];
    }

    DSLoop** begin() { return IsOnHeap() ? m_Room.many : &m_Room.one; }
    DSLoop** end() { return begin() + m_nSize; }
    DSLoop* const* begin() const { return IsOnHeap() ? m_Room.many : &m_Room.one; }
    DSLoop* const* end() const { return begin() + m_nSize; }

    void push_back(DSLoop* loop)
    {
        if (m_nSize == m_nCapacity)
        {
            Grow(2 * m_nSize);
        }
        begin()[m_nSize++] = loop;
    }

    /// Takes out the first equal pointer; the order of the others stays.
    /// @return whether there was one
    bool Remove(const DSLoop* loop)
    {
        DSLoop** found = std::find(begin(), end(), loop);
        if (found == end())
        {
            return false;
        }
        std::move(found + 1, end(), found);
        --m_nSize;
        return true;
    }

    void clear() { m_nSize = 0; }

private:
    bool IsOnHeap() const { return m_nCapacity > 1; }

    void Swap(LoopList& other) noexcept
    {
        std::swap(m_nSize, other.m_nSize);
        std::swap(m_nCapacity, other.m_nCapacity);
        std::swap(m_Room, other.m_Room);
    }

    void Grow(std::uint32_t capacity)
    {
        if (capacity <= m_nCapacity)
        {
            return;
        }
        auto* pMany = new DSLoop*[capacity];
        std::copy(begin(), end(), pMany);
        if (IsOnHeap())
        {
            delete[] m_Room.many;
        }
        m_Room.many = pMany;
        m_nCapacity = capacity;
    }

    std::uint32_t m_nSize = 0;
    std::uint32_t m_nCapacity = 1;
    Room m_Room{nullptr};
};
}
