#pragma once
#include "Image.h"
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tessarine
{
/// Why a picture is not read. what() completes "cannot read NAME: ".
class ImageFault : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

inline constexpr char kEndsEarly[] = "the file ends before its picture does";

/// Throws ImageFault when the file does not begin with the mark of its format; the part of it that a very short
/// file has passes.
void CheckMark(std::string_view bytes, std::string_view mark, const std::string& format);

/// Throws ImageFault when a picture of this size is empty or larger than pictures may be.
void CheckImageSize(std::int64_t width, std::int64_t height, int components);

/// Checks the size and takes its bytes. Throws ImageFault also when the budget has not so many. For a decoder, once,
/// before it allocates.
void TakePixels(ImageBudget& budget, std::int64_t width, std::int64_t height, int components);

/// A black picture. Throws as CheckImageSize does, before it allocates.
Image MakeImage(std::int64_t width, std::int64_t height, int components);

/// The first byte of a row, counted from the bottom.
inline std::uint8_t* GetRow(Image& image, int row)
{
    return image.pixels.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(image.width) *
                                     static_cast<std::size_t>(image.components);
}

inline const std::uint8_t* GetRow(const Image& image, int row)
{
    return image.pixels.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(image.width) *
                                     static_cast<std::size_t>(image.components);
}
}
