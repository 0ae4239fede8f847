#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tessarine
{
/// Reads numbers and words from one line of text, in place.
///
/// Behind the line's end every character reads as zero, and a reader that stands there stays there. A zero
/// within the line is a character like any other to ReadChar, and the end to everything else.
class IOLineCursor
{
public:
    IOLineCursor() = default;

    /// Needs   The character at `end` can be read and is no part of a number: a newline, a blank, or the zero
    ///         that ends a string.
    IOLineCursor(const char* begin, const char* end) : m_pBegin(begin), m_pEnd(end), m_pAt(begin) {}

    const char* GetBegin() const { return m_pBegin; }
    std::size_t GetIndex() const { return static_cast<std::size_t>(m_pAt - m_pBegin); }
    void SetIndex(std::size_t index) { m_pAt = index < GetLength() ? m_pBegin + index : m_pEnd; }

    /// The character `ahead` places on.
    char Peek(std::size_t ahead = 0) const
    {
        return ahead < static_cast<std::size_t>(m_pEnd - m_pAt) ? m_pAt[ahead] : '\0';
    }
    bool IsAtZero() const { return Peek() == '\0'; }
    /// Whether a blank or the line's end comes next; carriage returns are part of the end.
    bool IsAtWordEnd() const
    {
        std::size_t ahead = 0;
        while (Peek(ahead) == '\r')
        {
            ++ahead;
        }
        return Peek(ahead) == '\0' || (ahead == 0 && IsBlank(Peek()));
    }

    /// The character at the index, whatever it is, which is consumed.
    char ReadChar() { return m_pAt != m_pEnd ? *m_pAt++ : '\0'; }

    void SkipBlanks()
    {
        while (m_pAt != m_pEnd && IsBlank(*m_pAt))
        {
            ++m_pAt;
        }
    }

    /// A decimal number behind blanks, with or without a minus; 0 where there is none. A plus is no part of
    /// it. Numbers beyond 32 bits become the largest or the smallest one.
    std::int32_t ReadInt();

    /// A decimal number behind blanks, with fraction and exponent; 0 where there is none.
    ///
    /// Each step is rounded to single precision: digit by digit for the whole part and for the fraction,
    /// which is then divided by 10 once for each of its digits, and once for each unit of the exponent.
    ///
    /// Kept    The precision of all models rests on this order. Do not hand it to a library.
    float ReadFloat();

    /// The word behind blanks, up to the next blank or zero. IsAtZero then tells which one ended it.
    std::string_view ReadToken();

    /// Takes carriage returns, and blanks between them, off the line's end.
    void DropCarriageReturns();

private:
    /// Digits as a number in single precision, each step rounded.
    struct Digits
    {
        float value;
        std::int64_t count;
    };

    static bool IsBlank(char character) { return character == ' ' || character == '\t'; }
    static unsigned ToDigit(char character)
    {
        return static_cast<unsigned>(static_cast<unsigned char>(character)) - '0';
    }
    static bool IsDigit(char character) { return ToDigit(character) < 10U; }

    std::size_t GetLength() const { return static_cast<std::size_t>(m_pEnd - m_pBegin); }
    bool ReadMinus();
    /// Stops at zero or infinity, which no further division changes.
    static float DivideByTens(float value, std::int64_t times);
    Digits ReadDigits();
    float ReadMoreDigits(float value);
    float ReadExponent(float value);

    const char* m_pBegin = nullptr;
    const char* m_pEnd = nullptr;
    const char* m_pAt = nullptr;
};

inline bool IOLineCursor::ReadMinus()
{
    const bool minus = *m_pAt == '-' && m_pAt != m_pEnd;
    m_pAt += minus ? 1 : 0;
    return minus;
}

inline std::int32_t IOLineCursor::ReadInt()
{
    constexpr std::int64_t kBeyond = std::int64_t{1} << 31U;
    SkipBlanks();
    const bool minus = ReadMinus();
    std::int64_t value = 0;
    for (unsigned digit = ToDigit(*m_pAt); digit < 10U; digit = ToDigit(*++m_pAt))
    {
        value = value * 10 + digit;
        value = value < kBeyond ? value : kBeyond;
    }
    return static_cast<std::int32_t>(minus ? -value : value - (value == kBeyond ? 1 : 0));
}

inline IOLineCursor::Digits IOLineCursor::ReadDigits()
{
    // Whole numbers of 24 bits are exact in single precision, and so is every step that stays among them.
    constexpr std::uint32_t kLastExact = ((1U << 24U) - 10U) / 10U;
    const char* const begin = m_pAt;
    std::uint32_t exact = 0;
    unsigned digit = ToDigit(*m_pAt);
    for (; digit < 10U && exact <= kLastExact; digit = ToDigit(*++m_pAt))
    {
        exact = exact * 10 + digit;
    }
    auto value = static_cast<float>(exact);
    if (digit < 10U)
    {
        value = ReadMoreDigits(value);
    }
    return {value, m_pAt - begin};
}

inline float IOLineCursor::DivideByTens(float value, std::int64_t times)
{
    for (; times > 0; --times)
    {
        const float tenth = value / 10.0F;
        if (tenth == value)
        {
            break;
        }
        value = tenth;
    }
    return value;
}

inline float IOLineCursor::ReadFloat()
{
    SkipBlanks();
    const bool minus = ReadMinus();
    float value = ReadDigits().value;
    if (*m_pAt == '.')
    {
        ++m_pAt;
        const auto [fraction, count] = ReadDigits();
        value = value + DivideByTens(fraction, count);
    }
    if (*m_pAt == 'e' || *m_pAt == 'E')
    {
        value = ReadExponent(value);
    }
    return minus ? -value : value;
}
}
