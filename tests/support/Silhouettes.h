#pragma once
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tessarine
{
/// A small image, drawn in text with its row 0 first: '#' object, '.' background, 'm' a marker.
struct DrawnImage
{
    explicit DrawnImage(const std::vector<std::string_view>& rows)
        : width(static_cast<int>(rows.front().size())), height(static_cast<int>(rows.size()))
    {
        for (const std::string_view row : rows)
        {
            for (const char pixel : row)
            {
                const std::uint8_t first = pixel == '#' ? 255 : 0;
                pixels.insert(pixels.end(),
                              {first, pixel == '.' ? std::uint8_t{0} : std::uint8_t{255}, first});
            }
        }
    }

    std::vector<std::string> GetRows() const
    {
        std::vector<std::string> rows(static_cast<std::size_t>(height));
        for (std::size_t i = 0; i < pixels.size(); i += 3)
        {
            const char pixel = pixels[i] != 0 ? '#' : (pixels[i + 1] != 0 ? 'm' : '.');
            rows[i / 3 / static_cast<std::size_t>(width)] += pixel;
        }
        return rows;
    }

    int width;
    int height;
    std::vector<std::uint8_t> pixels;
};

/// Discs of object and background one upon another, with a sprinkle of wrong pixels, markers among them.
inline std::vector<std::uint8_t> MakeRandomSilhouette(int width, int height, unsigned seed, int discs,
                                                      double sprinkle)
{
    std::mt19937 random(seed);
    std::vector<std::uint8_t> image(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    const auto paint = [&](std::size_t pixel, bool isObject)
    {
        for (std::size_t channel = 0; channel < 3; ++channel)
        {
            image[3 * pixel + channel] = isObject ? static_cast<std::uint8_t>(1 + random() % 255) : 0;
        }
    };
    for (int i = 0; i < discs; ++i)
    {
        const int centreX = static_cast<int>(random() % static_cast<unsigned>(width));
        const int centreY = static_cast<int>(random() % static_cast<unsigned>(height));
        const int radius = 1 + static_cast<int>(random() % static_cast<unsigned>(width / 3 + 1));
        for (int y = 0; y < height; ++y)
        {
            for (int x = 0; x < width; ++x)
            {
                if ((x - centreX) * (x - centreX) + (y - centreY) * (y - centreY) < radius * radius)
                {
                    paint(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                              static_cast<std::size_t>(x),
                          i % 2 == 0);
                }
            }
        }
    }
    std::uniform_real_distribution<double> chance(0.0, 1.0);
    for (std::size_t pixel = 0; pixel < image.size() / 3; ++pixel)
    {
        if (chance(random) < sprinkle)
        {
            paint(pixel, random() % 2 == 0);
            image[3 * pixel + 1] = static_cast<std::uint8_t>(random() % 2);
        }
    }
    return image;
}
}
