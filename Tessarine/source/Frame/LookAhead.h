#pragma once
#include "ElementList.h"
#include <cstddef>

namespace tessarine
{
/// Asks for memory that will be read soon. Nothing is read now: any address will do.
inline void AskForMemory(const void* address, std::size_t bytes)
{
    constexpr std::size_t kLineBytes = 64;
    const auto* line = static_cast<const char*>(address);
    for (std::size_t offset = 0; offset < bytes; offset += kLineBytes)
    {
        __builtin_prefetch(line + offset);
    }
}

/// Goes over a list whose entries lead to other records. Each entry is met four times: thrice while it is still
/// ahead, for its own memory, for what `askFirst` finds there, and for what `askThen` finds behind that; and
/// at last by `visit`. A frame of a large model waits for memory most of the time.
template <class T, class TAskFirst, class TAskThen, class TVisit>
void ForEachLookingAhead(const ElementList<T>& list, TAskFirst askFirst, TAskThen askThen, TVisit visit)
{
    constexpr int kEntriesApart = 16;
    const auto end = list.end();
    auto own = list.begin();
    auto first = own;
    auto then = own;
    auto next = own;
    for (int step = 0; next != end; ++step)
    {
        if (own != end)
        {
            AskForMemory(*own++, sizeof(T));
        }
        if (step >= kEntriesApart && first != end)
        {
            askFirst(*first++);
        }
        if (step >= 2 * kEntriesApart && then != end)
        {
            askThen(*then++);
        }
        if (step >= 3 * kEntriesApart)
        {
            visit(*next++);
        }
    }
}
}
