#include "LiteralField.h"
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace tessarine
{
namespace
{
/// One view's 2D field, entry by entry.
struct LiteralLayers
{
    int width;
    int height;
    const std::vector<std::int32_t>& entries;

    bool Has(int x, int y) const { return x >= 0 && x < width && y >= 0 && y < height; }
    std::int32_t At(int x, int y) const
    {
        return entries[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                       static_cast<std::size_t>(x)];
    }
};

constexpr int kOffsets[8][2] = {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};

/// Moves (x, y) to the outline, or leaves it where no way leads there.
void TraceLiterally(const LiteralLayers& layers, int& x, int& y)
{
    const std::int32_t layer = layers.At(x, y);
    int steps = 0;
    int cx = x;
    int cy = y;
    while (std::abs(layer) + 2 > steps)
    {
        for (const auto& offset : kOffsets)
        {
            const int nx = cx + offset[0];
            const int ny = cy + offset[1];
            if (!layers.Has(nx, ny))
            {
                continue;
            }
            if (layers.At(nx, ny) == 0)
            {
                x = nx;
                y = ny;
                return;
            }
            if (std::abs(layers.At(nx, ny)) < std::abs(layers.At(cx, cy)))
            {
                cx = nx;
                cy = ny;
                break;
            }
        }
        ++steps;
    }
}

double MeasureLiterally(int qx, int qy, int px, int py)
{
    return std::sqrt(static_cast<double>((qx - px) * (qx - px) + (qy - py) * (qy - py)));
}

double FindRadiusLiterally(const LiteralLayers& layers, int px, int py)
{
    int qx = px;
    int qy = py;
    TraceLiterally(layers, qx, qy);
    double r = MeasureLiterally(qx, qy, px, py);
    for (int s = 1; s <= 2; ++s)
    {
        for (const auto& offset : kOffsets)
        {
            const int x = qx + s * offset[0];
            const int y = qy + s * offset[1];
            if (layers.Has(x, y) && layers.At(x, y) == 0 && MeasureLiterally(x, y, px, py) < r)
            {
                r = MeasureLiterally(x, y, px, py);
            }
        }
    }
    return r;
}

bool IsOnFace(int i, int j, int k)
{
    return i == 0 || i == 60 || j == 0 || j == 60 || k == 0 || k == 200;
}
}

float GetValueLiterally(const smVec3d& point, const smMatrix44d& view, int width, int height,
                        const std::vector<std::int32_t>& layers)
{
    const smVec3d q = point * view;
    const float scaleX = static_cast<float>(width) / 2.4F;
    const float scaleY = static_cast<float>(height) / 2.4F;
    const double x = std::trunc(q.x * double{scaleX} + (width >> 1));
    const double y = std::trunc(q.y * double{scaleY} + (height >> 1));
    if (!(0 <= x && x < width - 1 && 0 <= y && y < height - 1))
    {
        return 1000.0F;
    }
    const LiteralLayers view2D{width, height, layers};
    const int px = static_cast<int>(x);
    const int py = static_cast<int>(y);
    const std::int32_t e = view2D.At(px, py);
    if (e >= 21)
    {
        return 1000.0F;
    }
    if (e > 0)
    {
        return static_cast<float>(FindRadiusLiterally(view2D, px, py) / double{scaleX});
    }
    if (e == 0)
    {
        return 0.0F;
    }
    if (e < -20)
    {
        return -1000.0F;
    }
    return static_cast<float>(-FindRadiusLiterally(view2D, px, py) / double{scaleX});
}

LiteralField::LiteralField()
{
    for (int i = 0; i <= 60; ++i)
    {
        for (int j = 0; j <= 60; ++j)
        {
            for (int k = 0; k <= 200; ++k)
            {
                m_Values.push_back(IsOnFace(i, j, k) ? 1000.0F : -1000.0F);
            }
        }
    }
}

void LiteralField::AddView(const smMatrix44d& view, int width, int height,
                           const std::vector<std::int32_t>& layers)
{
    float* stored = m_Values.data();
    for (int i = 0; i <= 60; ++i)
    {
        for (int j = 0; j <= 60; ++j)
        {
            for (int k = 0; k <= 200; ++k, ++stored)
            {
                const smVec3d point(-1.2 + 0.04 * i, -1.2 + 0.04 * j, -4.0 + 0.04 * k);
                const float value = GetValueLiterally(point, view, width, height, layers);
                if (*stored < value)
                {
                    *stored = value;
                }
            }
        }
    }
}
}
