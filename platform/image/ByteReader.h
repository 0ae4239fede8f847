#pragma once
#include "ImageDecoding.h"
#include <cstdint>
#include <string_view>

namespace tessarine
{
/// Reads little-endian numbers off the front of a file in memory. Throws ImageFault past its end.
class ByteReader
{
public:
    explicit ByteReader(std::string_view bytes) : m_Bytes(bytes) {}

    std::size_t GetPosition() const { return m_nPosition; }
    std::size_t GetLeft() const { return m_Bytes.size() - m_nPosition; }

    void SkipTo(std::size_t position)
    {
        if (position > m_Bytes.size())
        {
            throw ImageFault(kEndsEarly);
        }
        m_nPosition = position;
    }

    std::string_view Take(std::size_t count)
    {
        if (count > GetLeft())
        {
            throw ImageFault(kEndsEarly);
        }
        const std::string_view taken = m_Bytes.substr(m_nPosition, count);
        m_nPosition += count;
        return taken;
    }

    std::uint8_t TakeByte() { return static_cast<std::uint8_t>(Take(1)[0]); }

    std::uint16_t Take16()
    {
        const unsigned low = TakeByte();
        return static_cast<std::uint16_t>(low | static_cast<unsigned>(TakeByte()) << 8U);
    }

    std::uint32_t Take32()
    {
        const std::uint32_t low = Take16();
        return low | static_cast<std::uint32_t>(Take16()) << 16U;
    }

private:
    std::string_view m_Bytes;
    std::size_t m_nPosition = 0;
};
}
