#include "PairLists.h"
#include <bit>

namespace tessarine
{
std::size_t PairLists::GetSizeClass(std::int32_t nLines)
{
    return static_cast<std::size_t>(std::countr_zero(static_cast<std::uint32_t>(nLines)));
}

void PairLists::Allocate(PairList& list, std::int32_t nEntries)
{
    if (nEntries == 0)
    {
        list = {};
        return;
    }
    const auto lines = static_cast<std::uint32_t>((nEntries + kEntriesALine - 1) / kEntriesALine);
    list = {0, static_cast<std::int32_t>(std::bit_ceil(lines)), 0};
    auto& free = m_FreeBlocks[GetSizeClass(list.nLines)];
    if (!free.empty())
    {
        list.nFirstLine = free.back();
        free.pop_back();
        return;
    }
    list.nFirstLine = static_cast<std::int32_t>(m_Lines.size());
    m_Lines.resize(m_Lines.size() + static_cast<std::size_t>(list.nLines));
}

void PairLists::Free(PairList& list)
{
    if (list.nLines != 0)
    {
        m_FreeBlocks[GetSizeClass(list.nLines)].push_back(list.nFirstLine);
        list = {};
    }
}
}
