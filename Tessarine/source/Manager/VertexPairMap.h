#pragma once
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tessarine
{
class DSEdge;

/// From an unordered pair of vertex ids to the edge between them: an open-addressing hash table for one
/// build.
class VertexPairMap
{
public:
    using Key = std::uint64_t;

    /// The same key for both directions.
    static Key MakeKey(std::uint32_t a, std::uint32_t b)
    {
        return a < b ? Key{a} << 32U | b : Key{b} << 32U | a;
    }

    explicit VertexPairMap(std::size_t expectedPairs) : m_Cells(expectedPairs + expectedPairs / 2 + 16) {}

    /// Asks the machine to fetch what Find will look at first.
    void Prefetch(Key key) const { __builtin_prefetch(&m_Cells[HomeOf(key)]); }

    /// The edge of this pair, null when the pair is new: then it is to be set. Valid until the next Find.
    DSEdge*& Find(Key key)
    {
        if (m_nUsed >= m_Cells.size() - m_Cells.size() / 4)
        {
            Grow();
        }
        Cell& cell = FindCell(key);
        if (cell.edge == nullptr)
        {
            cell.key = key;
            ++m_nUsed;
        }
        return cell.edge;
    }

private:
    struct Cell
    {
        Key key = 0;
        DSEdge* edge = nullptr;
    };

    std::size_t HomeOf(Key key) const
    {
        key *= 0x9E3779B97F4A7C15U;
        key ^= key >> 32U;
        key *= 0xD6E8FEB86659FD93U;
        return static_cast<std::size_t>((key >> 32U) * m_Cells.size() >> 32U);
    }

    Cell& FindCell(Key key)
    {
        std::size_t place = HomeOf(key);
        while (m_Cells[place].edge != nullptr && m_Cells[place].key != key)
        {
            place = place + 1 == m_Cells.size() ? 0 : place + 1;
        }
        return m_Cells[place];
    }

    void Grow()
    {
        std::vector<Cell> old(2 * m_Cells.size());
        old.swap(m_Cells);
        for (const Cell& cell : old)
        {
            if (cell.edge != nullptr)
            {
                FindCell(cell.key) = cell;
            }
        }
    }

    std::vector<Cell> m_Cells;
    std::size_t m_nUsed = 0;
};
}
