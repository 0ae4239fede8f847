#include "LiteralResample.h"
#include <cmath>

namespace tessarine
{
namespace
{
struct Source
{
    const std::vector<std::uint8_t>& pixels;
    int width;
    int height;
    int components;

    /// The byte at a column and line, where that is inside the buffer; else that of the nearest pixel.
    int At(long column, long line, int component) const
    {
        long index = (line * width + column) * components + component;
        if (index >= static_cast<long>(pixels.size()))
        {
            line = line > height - 1 ? height - 1 : line;
            column = column > width - 1 ? width - 1 : column;
            index = (line * width + column) * components + component;
        }
        return pixels[static_cast<std::size_t>(index)];
    }
};

double Nearest(double value)
{
    double result = std::floor(value);
    const double fraction = value - result;
    if (fraction >= 0.5)
    {
        result = result + 1;
    }
    return result;
}

double P(double t)
{
    return t > 0 ? t : 0;
}

double R(double t)
{
    const double a = P(t + 2) * P(t + 2) * P(t + 2);
    const double b = P(t + 1) * P(t + 1) * P(t + 1);
    const double c = P(t) * P(t) * P(t);
    const double d = P(t - 1) * P(t - 1) * P(t - 1);
    return (a - 4 * b + 6 * c - 4 * d) / 6;
}

int SampleNearest(const Source& from, double sx, double sy, int component)
{
    return from.At(static_cast<long>(Nearest(sx)), static_cast<long>(Nearest(sy)), component);
}

int SampleBilinear(const Source& from, double sx, double sy, int component)
{
    const long x = static_cast<long>(std::floor(sx));
    const long y = static_cast<long>(std::floor(sy));
    const double fx = sx - std::floor(sx);
    const double fy = sy - std::floor(sy);
    const long nextLine = fy < 1e-8 ? y : y + 1;
    const int left =
        static_cast<int>(from.At(x, y, component) * (1 - fy) + from.At(x, nextLine, component) * fy);
    const int right =
        static_cast<int>(from.At(x + 1, y, component) * (1 - fy) + from.At(x + 1, nextLine, component) * fy);
    return static_cast<int>(left * (1 - fx) + right * fx);
}

int SampleCubic(const Source& from, double sx, double sy, int component)
{
    const long x = static_cast<long>(std::floor(sx));
    const long y = static_cast<long>(std::floor(sy));
    const double fx = sx - std::floor(sx);
    const double fy = sy - std::floor(sy);
    double sum = 0;
    for (long dx = -1; dx <= 2; ++dx)
    {
        for (long dy = -1; dy <= 2; ++dy)
        {
            long column = x + dx < 0 ? 0 : x + dx;
            column = column > from.width - 1 ? from.width - 1 : column;
            long line = y + dy < 0 ? 0 : y + dy;
            line = line > from.height - 1 ? from.height - 1 : line;
            sum += from.At(column, line, component) * R(static_cast<double>(dx) - fx) *
                   R(fy - static_cast<double>(dy));
        }
    }
    return static_cast<int>(sum);
}
}

std::vector<std::uint8_t> ResampleLiterally(const std::vector<std::uint8_t>& pixels, int width, int height,
                                            int components, int newWidth, int newHeight,
                                            DSTexture::ResampleMode mode)
{
    const Source from{pixels, width, height, components};
    const int wholeX = width / newWidth;
    const int wholeY = height / newHeight;
    std::vector<std::uint8_t> result;
    for (int y = 0; y < newHeight; ++y)
    {
        for (int x = 0; x < newWidth; ++x)
        {
            for (int component = 0; component < components; ++component)
            {
                const double sx = static_cast<double>(x) * width / newWidth;
                const double sy = static_cast<double>(y) * height / newHeight;
                int value = 0;
                switch (mode)
                {
                case DSTexture::ResampleMode::Nearest: value = SampleNearest(from, sx, sy, component); break;
                case DSTexture::ResampleMode::Bilinear:
                    value = SampleBilinear(from, sx, sy, component);
                    break;
                case DSTexture::ResampleMode::Cubic:
                    value = SampleCubic(from, static_cast<double>(x) * wholeX,
                                        static_cast<double>(y) * wholeY, component);
                    break;
                }
                result.push_back(static_cast<std::uint8_t>(value));
            }
        }
    }
    return result;
}
}
