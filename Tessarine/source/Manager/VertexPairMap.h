#pragma once
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tessarine
{
/// From an unordered pair of vertex ids to the number of the edge between them, for one build.
///
/// The pairs of a vertex stand together, one cache line for the vertices in the order of their ids: the faces
/// of a file are nearly always neighbours of the faces before them, and so are their vertices. What does not
/// fit into a line goes to an open-addressing hash table, so that no mesh is slow.
class VertexPairMap
{
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    /// Both directions of a pair are the same pair.
    struct Pair
    {
        std::uint32_t low;
        std::uint32_t high;

        Pair() = default;
        Pair(std::uint32_t a, std::uint32_t b) : low(std::min(a, b)), high(std::max(a, b)) {}
        bool operator==(const Pair&) const = default;
    };

    /// For the ids from firstID on, `vertices` of them.
    VertexPairMap(std::uint32_t firstID, std::size_t vertices, std::size_t expectedPairs)
        : m_nFirstID(firstID),
          m_Lines(std::min(vertices, expectedPairs / 3) + 1),
          m_nLinesAVertex((m_Lines.size() << 32U) / (vertices + 1)),
          m_Cells(expectedPairs / 16 + 16)
    {
    }

    /// Asks the machine to fetch what Find will look at first.
    void Prefetch(Pair pair) const { __builtin_prefetch(&m_Lines[LineOf(pair)], 1); }

    /// The number of this pair, kNone when the pair is new: then it is to be set. Valid until the next Find.
    std::uint32_t& Find(Pair pair)
    {
        Line& line = m_Lines[LineOf(pair)];
        for (std::uint32_t i = 0; i < line.used; ++i)
        {
            if (line.entries[i].pair == pair)
            {
                return line.entries[i].number;
            }
        }
        if (line.used == line.entries.size())
        {
            return FindCell(pair);
        }
        Entry& entry = line.entries[line.used++];
        entry = {pair, kNone};
        return entry.number;
    }

private:
    struct Entry
    {
        Pair pair;
        std::uint32_t number;
    };
    struct alignas(64) Line
    {
        std::array<Entry, 5> entries;
        std::uint32_t used;
    };
    struct Cell
    {
        Pair pair{0, 0};
        std::uint32_t number = kNone;
        bool used = false;
    };

    std::size_t LineOf(Pair pair) const { return (pair.low - m_nFirstID) * m_nLinesAVertex >> 32U; }

    std::size_t HomeOf(Pair pair) const
    {
        std::uint64_t hash = (std::uint64_t{pair.low} << 32U | pair.high) * 0x9E3779B97F4A7C15U;
        hash ^= hash >> 32U;
        hash *= 0xD6E8FEB86659FD93U;
        return (hash >> 32U) * m_Cells.size() >> 32U;
    }

    std::uint32_t& FindCell(Pair pair)
    {
        if (m_nUsedCells >= m_Cells.size() - m_Cells.size() / 3)
        {
            GrowCells();
        }
        Cell& cell = ProbeCells(pair);
        if (!cell.used)
        {
            cell = {pair, kNone, true};
            ++m_nUsedCells;
        }
        return cell.number;
    }

    Cell& ProbeCells(Pair pair)
    {
        std::size_t place = HomeOf(pair);
        while (m_Cells[place].used && m_Cells[place].pair != pair)
        {
            place = place + 1 == m_Cells.size() ? 0 : place + 1;
        }
        return m_Cells[place];
    }

    void GrowCells()
    {
        std::vector<Cell> old(2 * m_Cells.size());
        old.swap(m_Cells);
        for (const Cell& cell : old)
        {
            if (cell.used)
            {
                ProbeCells(cell.pair) = cell;
            }
        }
    }

    std::uint32_t m_nFirstID;
    std::vector<Line> m_Lines;
    std::uint64_t m_nLinesAVertex; ///< in units of 2^-32
    std::vector<Cell> m_Cells;
    std::size_t m_nUsedCells = 0;
};
}
