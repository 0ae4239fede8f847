#pragma once
#include "BlockAllocator.h"
#include <array>
#include <cstdint>
#include <vector>

namespace tessarine
{
/// A list of pair numbers at a vertex. The numbers stand in PairLists; those of pairs that have left the list
/// are holes.
struct PairList
{
    std::int32_t nFirstLine = 0;
    std::int32_t nLines = 0;   ///< of the cache, a power of two, or 0
    std::int32_t nEntries = 0; ///< with the holes
};

/// The storage of the lists of pairs, in whole lines of the cache: one line is enough for nearly every vertex.
class PairLists
{
public:
    static constexpr std::int32_t kHole = -1;

    /// Makes room for so many lists of one line.
    void Reserve(std::size_t lists) { m_Lines.reserve(lists); }

    /// Gives a list a place of its own, for so many entries at least; none for none. What it held is lost.
    void Allocate(PairList& list, std::int32_t nEntries);

    std::int32_t* GetEntries(const PairList& list)
    {
        return m_Lines[static_cast<std::size_t>(list.nFirstLine)].entries.data();
    }

    static std::int32_t GetCapacity(const PairList& list) { return kEntriesALine * list.nLines; }

    /// The place of the list can be used again.
    void Free(PairList& list);

private:
    static constexpr std::int32_t kEntriesALine = 16;

    struct alignas(64) Line
    {
        std::array<std::int32_t, kEntriesALine> entries;
    };

    static std::size_t GetSizeClass(std::int32_t nLines);

    BlockVector<Line> m_Lines;
    std::array<std::vector<std::int32_t>, 32> m_FreeBlocks; ///< first lines, by the logarithm of their number
};
}
