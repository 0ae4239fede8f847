#include "IOLineCursor.h"

namespace tessarine
{
float IOLineCursor::ReadMoreDigits(float value)
{
    for (; IsDigit(*m_pAt); ++m_pAt)
    {
        value = value * 10.0F;
        value = value + static_cast<float>(ToDigit(*m_pAt));
    }
    return value;
}

float IOLineCursor::ReadExponent(float value)
{
    ++m_pAt;
    const std::int64_t exponent = ReadInt();
    if (exponent < 0)
    {
        return DivideByTens(value, -exponent);
    }
    for (std::int64_t times = exponent; times > 0; --times)
    {
        const float next = value * 10.0F;
        if (next == value)
        {
            break; // zero or infinity
        }
        value = next;
    }
    return value;
}

std::string_view IOLineCursor::ReadToken()
{
    SkipBlanks();
    const char* const begin = m_pAt;
    while (m_pAt != m_pEnd && *m_pAt != '\0' && !IsBlank(*m_pAt))
    {
        ++m_pAt;
    }
    return {begin, static_cast<std::size_t>(m_pAt - begin)};
}

void IOLineCursor::DropCarriageReturns()
{
    while (m_pEnd != m_pAt && (m_pEnd[-1] == '\r' || IsBlank(m_pEnd[-1])))
    {
        --m_pEnd;
    }
}
}
