#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace tessarine
{
/// Formats text into large pieces, which go to a sink.
/// What the sink throws passes through. What is pending at the end is handed over by Flush alone.
class IOTextOutput
{
public:
    using Sink = std::function<void(std::string_view)>;

    explicit IOTextOutput(Sink sink);

    IOTextOutput& operator<<(std::string_view text);
    /// As "%d".
    IOTextOutput& operator<<(std::int32_t value);
    /// As "%f".
    IOTextOutput& operator<<(double value);

    void Flush();

private:
    static constexpr std::size_t kPieceSize = std::size_t{1} << 16U;

    /// Room for `count` characters, fewer than a piece.
    char* GetRoom(std::size_t count);

    Sink m_Sink;
    std::unique_ptr<char[]> m_pPiece;
    char* m_pAt;
};
}
