#pragma once
#include "DSBrep.h"
#include <array>
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

/// Goes over a list whose entries lead to other records. Each entry is met several times: while it is still ahead for
/// its own memory, for what the first of `ask` finds there, for what the next finds behind that, and so on; and at last
/// by `visit`. What goes over a large model waits for memory most of the time.
template <class T, class TVisit, class... TAsk>
void ForEachLookingAhead(const ElementList<T>& list, TVisit visit, TAsk... ask)
{
    constexpr std::size_t kEntriesApart = 16;
    const auto end = list.end();
    auto next = list.begin();
    std::array<typename ElementList<T>::Iterator, 1 + sizeof...(TAsk)> ahead;
    ahead.fill(next);
    for (std::size_t step = 0; next != end; ++step)
    {
        std::size_t stage = 0;
        const auto askAhead = [&](auto& askFor)
        {
            if (step >= stage * kEntriesApart && ahead[stage] != end)
            {
                askFor(*ahead[stage]++);
            }
            ++stage;
        };
        const auto askForEntry = [](const T* entry) { AskForMemory(entry, sizeof(T)); };
        askAhead(askForEntry);
        (askAhead(ask), ...);
        if (step >= stage * kEntriesApart)
        {
            visit(*next++);
        }
    }
}

inline void AskForVertexAt(const DSHalfEdge& h)
{
    AskForMemory(h.GetVertex(), sizeof(DSVertex));
}

/// The faces of a list likewise, by their first loops, the half-edges, which nearly always lie side by side, and what
/// these lead to. Entries may be null.
///
/// @param askAt called for the first half-edges of each face
template <class TVisit, class TAskAt>
void ForEachFaceLookingAhead(const ElementList<DSFace>& list, TVisit visit, TAskAt askAt)
{
    constexpr std::size_t kUsualCorners = 3;
    const auto firstLoopOf = [](const DSFace* pFace)
    { return pFace != nullptr && !pFace->GetLoopList().empty() ? pFace->GetLoopList()[0] : nullptr; };
    const auto entryOf = [=](const DSFace* pFace) -> const DSHalfEdge*
    {
        const DSLoop* pLoop = firstLoopOf(pFace);
        return pLoop != nullptr ? pLoop->GetHalfEdge() : nullptr;
    };
    ForEachLookingAhead(
        list, visit, [=](const DSFace* pFace) { AskForMemory(firstLoopOf(pFace), sizeof(DSLoop)); },
        [=](const DSFace* pFace) { AskForMemory(entryOf(pFace), kUsualCorners * sizeof(DSHalfEdge)); },
        [=](const DSFace* pFace)
        {
            const DSHalfEdge* h = entryOf(pFace);
            for (std::size_t i = 0; i < kUsualCorners && h != nullptr; ++i, h = h->GetNext())
            {
                askAt(*h);
            }
        });
}

/// The vertices of a list likewise, by their half-edges. Entries may be null.
template <class TVisit>
void ForEachVertexLookingAhead(const ElementList<DSVertex>& list, TVisit visit)
{
    ForEachLookingAhead(list, visit,
                        [](const DSVertex* pVertex)
                        {
                            if (pVertex != nullptr)
                            {
                                AskForMemory(pVertex->GetHalfEdge(), sizeof(DSHalfEdge));
                            }
                        });
}
}
