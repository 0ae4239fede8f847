#pragma once
#include <charconv>
#include <chrono>
#include <concepts>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace tessarine
{
/// The debug console: one buffered stream of plain lines for a person reading along.
///
/// Lines are gathered, and handed on at the end of a command, before a message box and at the process's end.
/// A line that comes a tenth of a second or more after the last time takes all before it along: only a line
/// looks at the clock, so what was written last can wait until something asks for a flush.
///
/// Numbers are printed as the C locale prints them; floating-point values with up to six significant digits.
class Console
{
public:
    using Sink = std::function<void(std::string_view)>;

    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    /// Flushes. A sink that throws loses the text.
    ~Console();

    Console& operator<<(std::string_view text)
    {
        Write(text);
        return *this;
    }
    Console& operator<<(const char* text) { return *this << std::string_view(text); }
    Console& operator<<(char character) { return *this << std::string_view(&character, 1); }
    Console& operator<<(double value);

    template <std::integral T>
    requires(!std::same_as<T, bool> && !std::same_as<T, char>) Console& operator<<(T value)
    {
        if (!m_bHeard)
        {
            return *this;
        }
        char digits[24];
        const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
        return *this << std::string_view(digits, static_cast<std::size_t>(end - digits));
    }

    /// Hands everything written so far to the sink.
    void Flush();

    /// Whether what is written reaches anybody. Work whose only product is text can be left out where it does not.
    bool IsHeard() const { return m_bHeard; }

    /// Where nobody listens, what is written from here on is dropped. Gives back what was set before.
    bool SetHeard(bool heard) { return std::exchange(m_bHeard, heard); }

    /// Sends the console elsewhere and gives back the sink before it. An empty sink means standard output.
    Sink SetSink(Sink sink);

private:
    void Write(std::string_view text);

    std::string m_strPending;
    Sink m_Sink;
    bool m_bHeard = true;
    std::chrono::steady_clock::time_point m_LastFlush;
};

/// The console of the process, titled "DebugOutput" where it has a window.
Console& DebugConsole();
}
