#include "ImageDecoding.h"
#include <algorithm>

namespace tessarine
{
void CheckMark(std::string_view bytes, std::string_view mark, const std::string& format)
{
    if (!mark.starts_with(bytes.substr(0, mark.size())))
    {
        throw ImageFault("it is no " + format + " file");
    }
}

void CheckImageSize(std::int64_t width, std::int64_t height, int components)
{
    if (width < 1 || height < 1)
    {
        throw ImageFault("it has no pixels");
    }
    if (width > kMostPixelsASide || height > kMostPixelsASide)
    {
        throw ImageFault("it is " + std::to_string(width) + " x " + std::to_string(height) +
                         " pixels large; at most " + std::to_string(kMostPixelsASide) + " a side are read");
    }
    if (static_cast<std::size_t>(width * height * components) > kMostDecodedBytes)
    {
        throw ImageFault("its " + std::to_string(width) + " x " + std::to_string(height) +
                         " pixels take more than " + std::to_string(kMostDecodedBytes >> 20U) + " MiB");
    }
}

void TakePixels(ImageBudget& budget, std::int64_t width, std::int64_t height, int components)
{
    const int counted = std::max(components, budget.GetLeastComponents());
    CheckImageSize(width, height, counted);
    if (!budget.Take(static_cast<std::size_t>(width * height * counted)))
    {
        throw ImageFault(budget.GetRefusal());
    }
}

Image MakeImage(std::int64_t width, std::int64_t height, int components)
{
    CheckImageSize(width, height, components);
    Image image{static_cast<int>(width), static_cast<int>(height), components, {}};
    image.pixels.resize(static_cast<std::size_t>(width * height * components));
    return image;
}
}
