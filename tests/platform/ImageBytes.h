#pragma once
#include "File.h"
#include "Image.h"
#include <cstdint>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <vector>

namespace tessarine
{
/// Files of pictures, spelt out byte by byte.
inline std::string Bytes(std::initializer_list<int> values)
{
    std::string bytes;
    for (const int value : values)
    {
        bytes += static_cast<char>(value);
    }
    return bytes;
}

inline std::string Little16(unsigned value)
{
    return Bytes({static_cast<int>(value & 255U), static_cast<int>(value >> 8U & 255U)});
}

inline std::string Little32(std::uint32_t value)
{
    return Little16(value & 0xFFFFU) + Little16(value >> 16U);
}

/// What is wrong with the file, or "no fault".
inline std::string FaultOfDecoding(const std::string& bytes, const std::string& ending)
{
    try
    {
        DecodeImage(bytes, ending);
    }
    catch (const FileError& error)
    {
        return error.what();
    }
    return "no fault";
}

inline void ExpectImage(const Image& image, int width, int height, int components,
                        const std::vector<std::uint8_t>& pixelsFromBottom)
{
    EXPECT_EQ(image.width, width);
    EXPECT_EQ(image.height, height);
    EXPECT_EQ(image.components, components);
    EXPECT_EQ(image.pixels, pixelsFromBottom);
}

inline std::string FaultOfEndingEarly(const std::string& ending)
{
    return "cannot read the " + ending + " picture: the file ends before its picture does";
}

/// Cut off anywhere, the file is refused for ending early.
inline void ExpectRefusedAtEveryLength(const std::string& bytes, const std::string& ending)
{
    EXPECT_EQ(FaultOfDecoding(bytes, ending), "no fault");
    for (std::size_t length = 1; length < bytes.size(); ++length)
    {
        EXPECT_EQ(FaultOfDecoding(bytes.substr(0, length), ending), FaultOfEndingEarly(ending))
            << "after " << length << " bytes";
    }
}

/// With any byte changed the file is refused or read, but nothing worse.
inline void ExpectSurvivesEveryChangedByte(std::string bytes, const std::string& ending)
{
    for (char& byte : bytes)
    {
        const char before = byte;
        for (const int value : {0, 1, 0x7F, 0x80, 0xFF})
        {
            byte = static_cast<char>(value);
            FaultOfDecoding(bytes, ending);
        }
        byte = before;
    }
}
}
