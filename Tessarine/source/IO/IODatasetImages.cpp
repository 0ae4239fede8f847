#include "IODatasetImages.h"
#include "Failure.h"
#include "Path.h"

namespace tessarine
{
namespace
{
std::string DescribeSize(int width, int height)
{
    return std::to_string(width) + " x " + std::to_string(height);
}
}

std::string GetDatasetImageName(const std::string& folder, int number)
{
    return folder + std::to_string(number) + ".bmp";
}

Image WithThreeComponents(Image image)
{
    if (image.components == 3)
    {
        return image;
    }
    const auto step = static_cast<std::size_t>(image.components);
    const bool isGrey = step < 3;
    Image converted{image.width, image.height, 3, {}};
    converted.pixels.reserve(image.pixels.size() / step * 3);
    for (std::size_t i = 0; i < image.pixels.size(); i += step)
    {
        for (std::size_t channel = 0; channel < 3; ++channel)
        {
            converted.pixels.push_back(image.pixels[i + (isGrey ? 0 : channel)]);
        }
    }
    return converted;
}

Image ReadColourImage(const std::filesystem::path& path)
{
    ImageBudget budget(kMostDecodedBytes, 3);
    return WithThreeComponents(ReadImage(path, budget));
}

Image ReadDatasetImage(const std::string& folder, int number, int width, int height,
                       const std::string& sizeSource)
{
    const std::string name = GetDatasetImageName(folder, number);
    Image image = ReadColourImage(ResolveForReading(name));
    if (image.width != width || image.height != height)
    {
        throw Failure(ResolveForReading(name).string() + " is " + DescribeSize(image.width, image.height) +
                      " pixels, and " + sizeSource + " says " + DescribeSize(width, height));
    }
    return image;
}

void WriteDatasetImage(const Image& image, const std::string& folder, int number)
{
    WriteImage(image, ResolveForWriting(GetDatasetImageName(folder, number)));
}
}
