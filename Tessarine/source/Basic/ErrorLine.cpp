#include "ErrorLine.h"
#include "Console.h"
#include <cstdio>
#include <utility>

namespace tessarine
{
namespace
{
constexpr std::size_t kLongest = 8192;

ErrorListener& GetListener()
{
    static ErrorListener listener;
    return listener;
}

std::string SpellOut(char character)
{
    switch (character)
    {
    case '\n': return "\\n";
    case '\r': return "\\r";
    case '\t': return "\\t";
    default: break;
    }
    constexpr unsigned char kDelete = 0x7F;
    const auto code = static_cast<unsigned char>(character);
    if (code >= ' ' && code != kDelete)
    {
        return std::string(1, character);
    }
    char digits[8];
    std::snprintf(digits, sizeof digits, "\\x%02X", code);
    return digits;
}

/// Whether a UTF-8 character goes on at this byte.
bool IsContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Keeps both ends: a message has its reason at the end.
std::string WithoutMiddle(const std::string& line)
{
    if (line.size() <= kLongest)
    {
        return line;
    }
    std::size_t head = kLongest / 2;
    std::size_t tail = line.size() - kLongest / 2;
    while (IsContinuation(line[head]))
    {
        --head;
    }
    while (tail < line.size() && IsContinuation(line[tail]))
    {
        ++tail;
    }
    return line.substr(0, head) + " ... " + line.substr(tail);
}
}

ErrorListener SetErrorListener(ErrorListener listener)
{
    return std::exchange(GetListener(), std::move(listener));
}

std::string SpellOut(std::string_view text)
{
    std::string line;
    for (const char character : text)
    {
        line += SpellOut(character);
    }
    return WithoutMiddle(line);
}

void PrintErrorLine(std::string_view text)
{
    DebugConsole().Flush();
    const std::string line = SpellOut(text) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
    if (const ErrorListener& listener = GetListener())
    {
        listener(line);
    }
}
}
