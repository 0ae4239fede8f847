#include "Console.h"
#include <cstdio>
#include <utility>

namespace tessarine
{
namespace
{
constexpr std::size_t kMostPending = 1U << 16U;
constexpr auto kLongestWait = std::chrono::milliseconds(100);

void WriteToStandardOutput(std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}
}

Console::Console() : m_Sink(WriteToStandardOutput), m_LastFlush(std::chrono::steady_clock::now())
{
    m_strPending.reserve(2 * kMostPending);
}

Console::~Console()
{
    try
    {
        Flush();
    }
    catch (...) // NOLINT(bugprone-empty-catch): there is nobody left to tell
    {
    }
}

Console& Console::operator<<(double value)
{
    if (!m_bHeard)
    {
        return *this;
    }
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6).ptr;
    return *this << std::string_view(digits, static_cast<std::size_t>(end - digits));
}

void Console::Write(std::string_view text)
{
    if (!m_bHeard)
    {
        return;
    }
    m_strPending += text;
    if (text.empty() || text.back() != '\n')
    {
        return;
    }
    if (m_strPending.size() >= kMostPending || std::chrono::steady_clock::now() - m_LastFlush >= kLongestWait)
    {
        Flush();
    }
}

void Console::Flush()
{
    m_LastFlush = std::chrono::steady_clock::now();
    if (m_strPending.empty())
    {
        return;
    }
    m_Sink(m_strPending);
    m_strPending.clear();
}

Console::Sink Console::SetSink(Sink sink)
{
    Flush();
    return std::exchange(m_Sink, sink ? std::move(sink) : Sink(WriteToStandardOutput));
}

Console& DebugConsole()
{
    static Console console;
    return console;
}
}
