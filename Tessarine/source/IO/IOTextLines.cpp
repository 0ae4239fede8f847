#include "IOTextLines.h"
#include <algorithm>
#include <cstring>

namespace tessarine
{
namespace
{
bool IsWhiteSpace(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}
}

IOLineCursor IOTextLines::Next()
{
    while (m_pAt != m_pEnd && IsWhiteSpace(*m_pAt))
    {
        ++m_pAt;
    }
    const char* const begin = m_pAt;
    const auto left = static_cast<std::size_t>(m_pEnd - begin);
    const auto* const newline = static_cast<const char*>(std::memchr(begin, '\n', left));
    if (newline == nullptr)
    {
        m_bAtEnd = true;
        m_pAt = m_pEnd;
        return {begin, m_pEnd};
    }
    m_pAt = newline + 1;
    return {begin, newline};
}

IOLineCursor IOTextLines::OpenFace(IOLineCursor line)
{
    line.SetIndex(1);
    line.SkipBlanks();
    if (line.Peek() == '\\')
    {
        line = Next();
    }
    line.DropCarriageReturns();
    return line;
}

std::size_t IOTextLines::GetNumberOf(const IOLineCursor& line) const
{
    return 1 + static_cast<std::size_t>(std::count(m_pBegin, line.GetBegin(), '\n'));
}
}
