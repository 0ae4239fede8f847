#include "RecoveryPace.h"

namespace tessarine
{
namespace
{
constexpr std::uint64_t kLeastDistance = 60000;
constexpr double kShare = 0.05;
constexpr std::size_t kMany = 10000; ///< elements, from which on they and not the file take the time
}

bool RecoveryPace::IsDue(std::uint64_t now, std::size_t elements) const
{
    if (m_bWritten && now - m_nLast < kLeastDistance)
    {
        return false;
    }
    return static_cast<double>(m_nSpent) + Foresee(elements) <= kShare * static_cast<double>(now - m_nStart);
}

void RecoveryPace::NoteWriting(std::uint64_t begin, std::uint64_t end, std::size_t elements)
{
    const auto time = static_cast<double>(end - begin);
    if (elements >= kMany)
    {
        m_fEach = time / static_cast<double>(elements);
    }
    else
    {
        m_fFixed = time;
    }
    m_nSpent += end - begin;
    m_nLast = end;
    m_bWritten = true;
}
}
