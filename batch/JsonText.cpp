#include "JsonText.h"
#include <charconv>
#include <cmath>
#include <utility>

namespace tessarine
{
namespace
{
constexpr std::size_t kMostPending = std::size_t{1} << 16U;
constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

bool IsContinuation(std::string_view text, std::size_t index, unsigned char least, unsigned char most)
{
    return index < text.size() && static_cast<unsigned char>(text[index]) >= least &&
           static_cast<unsigned char>(text[index]) <= most;
}

/// How many bytes the UTF-8 sequence at the front has; 0 where there is none. Needs a byte above 0x7F.
/// The bounds of the second byte rule out overlong forms, surrogates and what lies beyond Unicode.
std::size_t SequenceLength(std::string_view text)
{
    struct Lead
    {
        unsigned char least, most, leastSecond, mostSecond;
        std::size_t length;
    };
    static constexpr Lead kLeads[] = {
        {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3}, {0xE1, 0xEC, 0x80, 0xBF, 3},
        {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3}, {0xF0, 0xF0, 0x90, 0xBF, 4},
        {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
    };
    const auto first = static_cast<unsigned char>(text.front());
    for (const Lead& lead : kLeads)
    {
        if (first < lead.least || first > lead.most)
        {
            continue;
        }
        bool whole = IsContinuation(text, 1, lead.leastSecond, lead.mostSecond);
        for (std::size_t i = 2; i < lead.length; ++i)
        {
            whole = whole && IsContinuation(text, i, 0x80, 0xBF);
        }
        return whole ? lead.length : 0;
    }
    return 0;
}
}

JsonText::JsonText(Sink sink) : m_Sink(std::move(sink))
{
    m_strPending.reserve(2 * kMostPending);
}

void JsonText::BeginLine(int indent)
{
    m_nIndent = indent;
}

void JsonText::Key(std::string_view name)
{
    Separate(", ");
    PutQuoted(name);
    m_strPending += ": ";
    m_bBehindKey = true;
}

void JsonText::Put(std::string_view text)
{
    Separate(",");
    PutQuoted(text);
    HandOnIfMuch();
}

void JsonText::Put(double value)
{
    PutReal(value);
}

void JsonText::Put(float value)
{
    PutReal(value);
}

template <class T>
void JsonText::PutReal(T value)
{
    if (std::isnan(value))
    {
        return Put("nan");
    }
    if (std::isinf(value))
    {
        return Put(value > 0 ? "inf" : "-inf");
    }
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    Plain(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void JsonText::PutInteger(long long value)
{
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    Plain(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void JsonText::PutUnsigned(unsigned long long value)
{
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    Plain(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void JsonText::Finish()
{
    m_strPending += '\n';
    m_Sink(m_strPending);
    m_strPending.clear();
}

void JsonText::Begin(char bracket)
{
    Separate(",");
    m_strPending += bracket;
    m_bFirst = true;
}

void JsonText::End(char bracket)
{
    StartLine(std::exchange(m_nIndent, -1));
    m_strPending += bracket;
    m_bFirst = false;
}

void JsonText::StartLine(int indent)
{
    if (indent >= 0)
    {
        m_strPending += '\n';
        m_strPending.append(static_cast<std::size_t>(indent), ' ');
    }
}

void JsonText::Separate(std::string_view separator)
{
    if (std::exchange(m_bBehindKey, false))
    {
        return;
    }
    const int indent = std::exchange(m_nIndent, -1);
    if (!std::exchange(m_bFirst, false))
    {
        m_strPending += indent < 0 ? separator : ",";
    }
    StartLine(indent);
}

void JsonText::Plain(std::string_view text)
{
    Separate(",");
    m_strPending += text;
    HandOnIfMuch();
}

void JsonText::PutQuoted(std::string_view text)
{
    m_strPending += '"';
    while (!text.empty())
    {
        const auto first = static_cast<unsigned char>(text.front());
        const std::size_t length = first < 0x80 ? 1 : SequenceLength(text);
        if (first < 0x80)
        {
            PutEscaped(text.front());
        }
        else
        {
            m_strPending += length != 0 ? text.substr(0, length) : kReplacementCharacter;
        }
        text.remove_prefix(length != 0 ? length : 1);
    }
    m_strPending += '"';
}

void JsonText::PutEscaped(char character)
{
    switch (character)
    {
    case '"': m_strPending += "\\\""; return;
    case '\\': m_strPending += "\\\\"; return;
    case '\n': m_strPending += "\\n"; return;
    case '\r': m_strPending += "\\r"; return;
    case '\t': m_strPending += "\\t"; return;
    default: break;
    }
    if (static_cast<unsigned char>(character) >= 0x20)
    {
        m_strPending += character;
        return;
    }
    constexpr std::string_view kHexDigits = "0123456789abcdef";
    const auto code = static_cast<unsigned char>(character);
    m_strPending += "\\u00";
    m_strPending += kHexDigits[code >> 4U];
    m_strPending += kHexDigits[code & 0xFU];
}

void JsonText::HandOnIfMuch()
{
    if (m_strPending.size() >= kMostPending)
    {
        m_Sink(m_strPending);
        m_strPending.clear();
    }
}
}
