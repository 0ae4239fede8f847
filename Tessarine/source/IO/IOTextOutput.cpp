#include "IOTextOutput.h"
#include "IOFixedFormat.h"
#include <charconv>
#include <cstring>
#include <utility>

namespace tessarine
{
IOTextOutput::IOTextOutput(Sink sink)
    : m_Sink(std::move(sink)),
      m_pPiece(std::make_unique_for_overwrite<char[]>(kPieceSize)),
      m_pAt(m_pPiece.get())
{
}

IOTextOutput& IOTextOutput::operator<<(std::string_view text)
{
    if (text.size() >= kPieceSize)
    {
        Flush();
        m_Sink(text);
        return *this;
    }
    char* const out = GetRoom(text.size());
    std::memcpy(out, text.data(), text.size());
    m_pAt = out + text.size();
    return *this;
}

IOTextOutput& IOTextOutput::operator<<(std::int32_t value)
{
    constexpr std::size_t kMostDigits = 11;
    char* const out = GetRoom(kMostDigits);
    m_pAt = std::to_chars(out, out + kMostDigits, value).ptr;
    return *this;
}

IOTextOutput& IOTextOutput::operator<<(double value)
{
    m_pAt = FormatFixed(GetRoom(kMostFixedCharacters), value);
    return *this;
}

void IOTextOutput::Flush()
{
    const std::string_view pending(m_pPiece.get(), static_cast<std::size_t>(m_pAt - m_pPiece.get()));
    if (!pending.empty())
    {
        m_Sink(pending);
    }
    m_pAt = m_pPiece.get();
}

char* IOTextOutput::GetRoom(std::size_t count)
{
    if (static_cast<std::size_t>(m_pPiece.get() + kPieceSize - m_pAt) < count)
    {
        Flush();
    }
    return m_pAt;
}
}
