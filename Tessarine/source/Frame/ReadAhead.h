#pragma once
#include "ElementList.h"

namespace tessarine
{
/// Visits the entries of a list in order. Some entries before its visit, an entry is asked for: there the
/// memory can be told what the visit will follow. For speed alone: a frame follows every link of a model, and
/// mostly waits for the records.
template <class T, class TAsk, class TVisit>
void VisitReadingAhead(const ElementList<T>& list, TAsk ask, TVisit visit)
{
    constexpr int kDistance = 16;
    auto ahead = list.begin();
    const auto end = list.end();
    for (int i = 0; i < kDistance && ahead != end; ++i)
    {
        ++ahead;
    }
    for (const T* pElement : list)
    {
        if (ahead != end)
        {
            ask(**ahead);
            ++ahead;
        }
        visit(*pElement);
    }
}
}
