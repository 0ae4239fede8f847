#pragma once
#include "Assert.h"
#include <cstdint>

namespace tessarine
{
/// Ends a walk over links that run into a circle without coming back to the walk's start, which only links
/// that contradict one another do: an assertion fails before the circle was gone round three times (R. Brent
/// 1980).
class CycleGuard
{
public:
    /// To be called at each element of the walk, not again at its start.
    void Visit(const void* element)
    {
        const bool walkEnds = element != m_pMark;
        ASSERT(walkEnds);
        if (++m_nSteps == m_nNextMark)
        {
            m_pMark = element;
            m_nNextMark *= 2;
        }
    }

private:
    const void* m_pMark = nullptr;
    std::uint64_t m_nSteps = 0;
    std::uint64_t m_nNextMark = 8;
};
}
