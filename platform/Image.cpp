#include "Image.h"
#include "BmpReader.h"
#include "BmpWriter.h"
#include "File.h"
#include "GifReader.h"
#include "ImageDecoding.h"
#include "JpegCodec.h"
#include "PngCodec.h"
#include "TgaReader.h"
#include "TiffReader.h"
#include <algorithm>
#include <cctype>

namespace tessarine
{
namespace
{
/// What a name may end in, and who reads and writes such a file. Nobody writes where there is no writer.
struct ImageFormat
{
    std::string_view ending;
    Image (*decode)(std::string_view bytes, ImageBudget& budget);
    std::string (*encode)(const Image& image);
};

constexpr ImageFormat kFormats[] = {
    {"bmp", DecodeBmp, EncodeBmp},    {"png", DecodePng, EncodePng}, {"jpg", DecodeJpeg, EncodeJpeg},
    {"jpeg", DecodeJpeg, EncodeJpeg}, {"gif", DecodeGif, nullptr},   {"tga", DecodeTga, nullptr},
    {"tiff", DecodeTiff, nullptr},    {"tif", DecodeTiff, nullptr},
};

const ImageFormat* FindFormat(std::string name)
{
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto* format = std::find_if(std::begin(kFormats), std::end(kFormats),
                                      [&](const ImageFormat& entry) { return name.ends_with(entry.ending); });
    return format == std::end(kFormats) ? nullptr : format;
}

Image Decode(std::string_view bytes, const std::string& name, ImageBudget& budget)
{
    const ImageFormat* format = FindFormat(name);
    if (format == nullptr)
    {
        throw ImageFault("its name must end in bmp, png, jpg, gif, tga or tiff");
    }
    if (bytes.empty())
    {
        throw ImageFault("the file is empty");
    }
    return format->decode(bytes, budget);
}

std::string Encode(const Image& image, const std::string& name)
{
    const ImageFormat* format = FindFormat(name);
    if (format == nullptr || format->encode == nullptr)
    {
        throw ImageFault("its name must end in bmp, png or jpg");
    }
    CheckImageSize(image.width, image.height, image.components);
    const bool writable = image.components == 1 || image.components == 3 || image.components == 4;
    if (!writable || image.pixels.size() != static_cast<std::size_t>(image.width) *
                                                static_cast<std::size_t>(image.height) *
                                                static_cast<std::size_t>(image.components))
    {
        throw ImageFault("a picture of " + std::to_string(image.pixels.size()) + " bytes with " +
                         std::to_string(image.components) + " components a pixel is not written");
    }
    return format->encode(image);
}
}

bool ImageBudget::Take(std::size_t bytes)
{
    const bool isLeft = bytes <= m_nLeft;
    m_nLeft = isLeft ? m_nLeft - bytes : 0;
    return isLeft;
}

std::string ImageBudget::GetRefusal() const
{
    return "it and the pictures before it take more than " + std::to_string(m_nBytes >> 20U) + " MiB";
}

Image ReadImage(const std::filesystem::path& path)
{
    ImageBudget budget;
    return ReadImage(path, budget);
}

Image ReadImage(const std::filesystem::path& path, ImageBudget& budget)
{
    try
    {
        if (budget.IsSpent())
        {
            throw ImageFault(budget.GetRefusal());
        }
        return Decode(ReadFile(path, budget.GetFiles()), path.string(), budget);
    }
    catch (const ImageFault& fault)
    {
        throw FileError("cannot read " + path.string() + ": " + fault.what());
    }
}

Image DecodeImage(const std::string& bytes, const std::string& ending)
{
    try
    {
        ImageBudget budget;
        return Decode(bytes, ending, budget);
    }
    catch (const ImageFault& fault)
    {
        throw FileError("cannot read the " + ending + " picture: " + fault.what());
    }
}

void WriteImage(const Image& image, const std::filesystem::path& path)
{
    try
    {
        const std::string bytes = Encode(image, path.string());
        ReplacingFile file(path);
        file.Write(bytes);
        file.Commit();
    }
    catch (const ImageFault& fault)
    {
        throw FileError("cannot write " + path.string() + ": " + fault.what());
    }
}
}
