#pragma once
#include <cstddef>
#include <cstdint>

namespace tessarine
{
/// When a recovery file may be written: at most once a minute, and only as often that writing takes at most a twentieth
/// of the time since the start. How long a file will take is judged by those that were written before; one that
/// takes longer is made up for by a longer wait.
///
/// Units   Milliseconds of a clock that never goes back.
class RecoveryPace
{
public:
    explicit RecoveryPace(std::uint64_t start) : m_nStart(start) {}

    /// @param elements vertices and faces that are to be written
    bool IsDue(std::uint64_t now, std::size_t elements) const;
    /// Also of a file that failed.
    void NoteWriting(std::uint64_t begin, std::uint64_t end, std::size_t elements);

    std::uint64_t GetTimeSpent() const { return m_nSpent; }

private:
    double Foresee(std::size_t elements) const { return m_fFixed + m_fEach * static_cast<double>(elements); }

    std::uint64_t m_nStart;
    std::uint64_t m_nSpent = 0;
    std::uint64_t m_nLast = 0; ///< the end of the last one
    bool m_bWritten = false;
    double m_fFixed = 50.0;  ///< of a file: two or three waits for the disk
    double m_fEach = 0.0005; ///< of an element: a slow machine's
};
}
