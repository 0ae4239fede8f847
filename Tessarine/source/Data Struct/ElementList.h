#pragma once
#include "Assert.h"
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

namespace tessarine
{
/// The elements of one kind of a solid, in the order of insertion; they are not owned.
///
/// The list behaves as an array from which an entry is taken out by moving the tail down, at another cost: a
/// removal leaves a hole, holes are counted block by block in a binary indexed tree (Fenwick 1994), and the
/// list closes up when half of it is holes. An entry is found by its id, because ids nearly always increase
/// along a list; where they do not, it is searched from the front.
///
/// Needs   An element is removed from the list before it is deleted: the list reads the ids of its entries.
///         T has GetID(). Entries may be null.
/// Fails   An index beyond the list is an assertion.
/// Cost    Constant without holes, logarithmic with them; Remove logarithmic on the average, linear in a list
///         whose ids do not increase.
template <class T>
class ElementList
{
public:
    /// Goes over the entries in order. A removal makes it invalid.
    class Iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = T*;
        using difference_type = std::ptrdiff_t;
        using pointer = T* const*;
        using reference = T* const&;

        Iterator() = default;
        reference operator*() const { return m_pList->m_Entries[m_nPlace]; }
        Iterator& operator++()
        {
            m_nPlace = m_pList->NextFilled(m_nPlace + 1);
            return *this;
        }
        Iterator operator++(int)
        {
            Iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const Iterator& other) const { return m_nPlace == other.m_nPlace; }

    private:
        friend class ElementList;
        Iterator(const ElementList* list, std::size_t place) : m_pList(list), m_nPlace(place) {}

        const ElementList* m_pList = nullptr;
        std::size_t m_nPlace = 0;
    };

    ElementList() = default;
    ElementList(const ElementList&) = default;
    ElementList(ElementList&& other) noexcept { Swap(other); }
    ElementList& operator=(ElementList other) noexcept
    {
        Swap(other);
        return *this;
    }
    ~ElementList() = default;

    std::size_t size() const { return m_Entries.size() - m_nHoles; }
    bool empty() const { return size() == 0; }

    T* operator[](std::size_t index) const
    {
        ASSERT(index < size());
        return m_Entries[m_nHoles == 0 ? index : FindPlace(index)];
    }

    T* back() const { return (*this)[size() - 1]; }

    Iterator begin() const { return {this, NextFilled(0)}; }
    Iterator end() const { return {this, m_Entries.size()}; }

    void reserve(std::size_t count) { m_Entries.reserve(count + m_nHoles); }

    void push_back(T* element)
    {
        MakeRoomForOne();
        m_Entries.push_back(element);
        if (m_bKnowsIDs)
        {
            AppendID(element);
        }
        if (m_nHoles != 0)
        {
            AppendFilled();
        }
    }

    void clear()
    {
        m_nHoles = 0;
        m_bKnowsIDs = false;
        m_IDs.clear();
        m_Entries.clear();
        m_Filled.clear();
        m_BlockTree.clear();
    }

    /// Takes out the first entry that is this element; the order of the others stays.
    /// @return whether there was one
    bool Remove(const T* element)
    {
        const std::size_t place = FindFirst(element);
        if (place == m_Entries.size())
        {
            return false;
        }
        if (m_nHoles == 0)
        {
            CountEntries();
        }
        m_Filled[place / kWordBits] &= ~(std::uint64_t{1} << (place % kWordBits));
        AddToBlock(place / kBlockEntries, -1);
        ++m_nHoles;
        if (2 * m_nHoles > m_Entries.size())
        {
            CloseUp();
        }
        return true;
    }

private:
    static constexpr std::size_t kWordBits = 64;
    static constexpr std::size_t kBlockEntries = 512;
    static constexpr std::size_t kBlockWords = kBlockEntries / kWordBits;

    void Swap(ElementList& other) noexcept
    {
        m_Entries.swap(other.m_Entries);
        std::swap(m_nHoles, other.m_nHoles);
        m_IDs.swap(other.m_IDs);
        std::swap(m_bKnowsIDs, other.m_bKnowsIDs);
        std::swap(m_bIDsIncrease, other.m_bIDsIncrease);
        m_Filled.swap(other.m_Filled);
        m_BlockTree.swap(other.m_BlockTree);
    }

    bool IsFilled(std::size_t place) const
    {
        return m_nHoles == 0 || ((m_Filled[place / kWordBits] >> (place % kWordBits)) & 1U) != 0;
    }

    /// The first filled place from here on, or the end.
    std::size_t NextFilled(std::size_t place) const
    {
        if (m_nHoles == 0 || place >= m_Entries.size())
        {
            return place;
        }
        std::size_t word = place / kWordBits;
        std::uint64_t bits = m_Filled[word] & (~std::uint64_t{0} << (place % kWordBits));
        while (bits == 0)
        {
            if (++word == m_Filled.size())
            {
                return m_Entries.size();
            }
            bits = m_Filled[word];
        }
        return word * kWordBits + static_cast<std::size_t>(std::countr_zero(bits));
    }

    /// The place of the entry with this index, among holes.
    std::size_t FindPlace(std::size_t index) const
    {
        std::size_t block = 0;
        for (std::size_t step = std::bit_floor(m_BlockTree.size()); step != 0; step /= 2)
        {
            if (block + step <= m_BlockTree.size() && m_BlockTree[block + step - 1] <= index)
            {
                block += step;
                index -= m_BlockTree[block - 1];
            }
        }
        std::size_t word = block * kBlockWords;
        for (auto count = CountBits(word); count <= index; count = CountBits(++word))
        {
            index -= count;
        }
        std::uint64_t bits = m_Filled[word];
        for (; index != 0; --index)
        {
            bits &= bits - 1;
        }
        return word * kWordBits + static_cast<std::size_t>(std::countr_zero(bits));
    }

    std::size_t CountBits(std::size_t word) const
    {
        return static_cast<std::size_t>(std::popcount(m_Filled[word]));
    }

    /// The first filled place that holds the element, or the end.
    std::size_t FindFirst(const T* element)
    {
        if (element != nullptr && !m_bKnowsIDs)
        {
            CollectIDs();
        }
        if (element == nullptr || !m_bIDsIncrease)
        {
            return FindFrom(0, m_Entries.size(), element);
        }
        const auto [first, last] = std::equal_range(m_IDs.begin(), m_IDs.end(), element->GetID());
        return FindFrom(static_cast<std::size_t>(first - m_IDs.begin()),
                        static_cast<std::size_t>(last - m_IDs.begin()), element);
    }

    std::size_t FindFrom(std::size_t place, std::size_t end, const T* element) const
    {
        for (; place != end; ++place)
        {
            if (m_Entries[place] == element && IsFilled(place))
            {
                return place;
            }
        }
        return m_Entries.size();
    }

    /// The ids are kept beside the entries, as those of holes cannot be read any more.
    void CollectIDs()
    {
        CloseUp();
        m_IDs.clear();
        m_IDs.reserve(m_Entries.capacity());
        m_bIDsIncrease = true;
        for (const T* pElement : m_Entries)
        {
            AppendID(pElement);
        }
        m_bKnowsIDs = true;
    }

    /// A null entry counts as one more of the id before it.
    void AppendID(const T* element)
    {
        const std::uint32_t before = m_IDs.empty() ? 0 : m_IDs.back();
        const std::uint32_t id = element != nullptr ? element->GetID() : before;
        m_bIDsIncrease = m_bIDsIncrease && id >= before;
        m_IDs.push_back(id);
    }

    /// So that push_back changes nothing when there is no memory.
    void MakeRoomForOne()
    {
        const auto reserveOneMore = [](auto& list)
        {
            if (list.size() == list.capacity())
            {
                list.reserve(std::max<std::size_t>(4, 2 * list.size()));
            }
        };
        reserveOneMore(m_Entries);
        if (m_bKnowsIDs)
        {
            reserveOneMore(m_IDs);
        }
        if (m_nHoles != 0)
        {
            reserveOneMore(m_Filled);
            reserveOneMore(m_BlockTree);
        }
    }

    /// Marks all places as filled.
    void CountEntries()
    {
        const std::size_t count = m_Entries.size();
        m_BlockTree.reserve((count + kBlockEntries - 1) / kBlockEntries);
        m_Filled.assign((count + kWordBits - 1) / kWordBits, ~std::uint64_t{0});
        if (count % kWordBits != 0)
        {
            m_Filled.back() >>= kWordBits - count % kWordBits;
        }
        m_BlockTree.clear();
        for (std::size_t place = 0; place < count; place += kBlockEntries)
        {
            AppendBlock(static_cast<std::uint32_t>(std::min(kBlockEntries, count - place)));
        }
    }

    /// Marks the last place, which is new, as filled.
    void AppendFilled()
    {
        const std::size_t place = m_Entries.size() - 1;
        if (place % kWordBits == 0)
        {
            m_Filled.push_back(0);
        }
        m_Filled.back() |= std::uint64_t{1} << (place % kWordBits);
        if (place % kBlockEntries == 0)
        {
            AppendBlock(1);
        }
        else
        {
            AddToBlock(place / kBlockEntries, 1);
        }
    }

    /// One more node of the tree: the sum of the blocks that it stands for.
    void AppendBlock(std::uint32_t entries)
    {
        const std::size_t node = m_BlockTree.size() + 1;
        std::uint32_t sum = entries;
        for (std::size_t step = 1; (node & step) == 0; step *= 2)
        {
            sum += m_BlockTree[node - step - 1];
        }
        m_BlockTree.push_back(sum);
    }

    void AddToBlock(std::size_t block, int change)
    {
        for (std::size_t node = block + 1; node <= m_BlockTree.size(); node += node & (~node + 1))
        {
            m_BlockTree[node - 1] += static_cast<std::uint32_t>(change);
        }
    }

    /// Moves the entries together, so that no hole is left.
    void CloseUp()
    {
        if (m_nHoles == 0)
        {
            return;
        }
        std::size_t to = 0;
        for (std::size_t from = NextFilled(0); from != m_Entries.size(); from = NextFilled(from + 1), ++to)
        {
            m_Entries[to] = m_Entries[from];
            if (m_bKnowsIDs)
            {
                m_IDs[to] = m_IDs[from];
            }
        }
        m_Entries.resize(to);
        m_IDs.resize(m_bKnowsIDs ? to : 0);
        m_nHoles = 0;
    }

    std::vector<T*> m_Entries;
    std::size_t m_nHoles = 0;
    std::vector<std::uint32_t> m_IDs; ///< of the entries, once one was removed
    bool m_bKnowsIDs = false;
    bool m_bIDsIncrease = true;
    std::vector<std::uint64_t> m_Filled;    ///< while there are holes: a bit a place
    std::vector<std::uint32_t> m_BlockTree; ///< while there are holes: filled places, summed over blocks
};
}
