// The 2D distance fields of silhouettes of 800 x 600 pixels against their sweeps, and the filter before them.
#include "Distance2D.h"
#include "Console.h"
#include "ImageFilter.h"
#include "LiteralSilhouette.h"
#include "Memory.h"
#include "Timing.h"
#include <array>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
constexpr int kWidth = 800;
constexpr int kHeight = 600;
constexpr std::size_t kPixels = std::size_t{kWidth} * kHeight;

struct Disc
{
    int x;
    int y;
    int radius;
};

using Picture = std::vector<std::uint8_t>;
using Field = std::vector<std::int32_t>;

/// A body with a head and two ears, and a pixel missing here and there.
Picture MakeSilhouette(int shift)
{
    constexpr std::array<Disc, 7> kDiscs{{{400, 220, 160},
                                          {430, 400, 90},
                                          {380, 500, 30},
                                          {390, 540, 28},
                                          {470, 510, 30},
                                          {480, 550, 28},
                                          {270, 150, 50}}};
    Picture image(3 * kPixels);
    for (std::size_t i = 0; i < kPixels; ++i)
    {
        const int x = static_cast<int>(i % kWidth) - shift;
        const int y = static_cast<int>(i / kWidth);
        const bool isObject =
            i % 1009 != 0 && std::any_of(kDiscs.begin(), kDiscs.end(),
                                         [x, y](const Disc& disc)
                                         {
                                             const int dx = x - disc.x;
                                             const int dy = y - disc.y;
                                             return dx * dx + dy * dy < disc.radius * disc.radius;
                                         });
        std::fill_n(image.begin() + static_cast<std::ptrdiff_t>(3 * i), 3,
                    isObject ? std::uint8_t{255} : std::uint8_t{0});
    }
    return image;
}
}

int main()
{
    KeepFreedMemory(); // as the programs do
    DebugConsole().SetHeard(false);
    std::vector<Picture> images;
    for (int i = 0; i < 8; ++i)
    {
        images.push_back(MakeSilhouette(20 * i));
    }
    std::vector<Field> fields(images.size(), Field(kPixels));
    std::vector<Field> literalFields(images.size());
    std::vector<Picture> filtered;
    std::vector<Picture> literallyFiltered;
    const auto forEach = [&images](const auto& action)
    {
        for (std::size_t i = 0; i < images.size(); ++i)
        {
            action(i);
        }
    };
    const auto build = [&](std::size_t i)
    { BuildDistance2D(kWidth, kHeight, images[i].data(), fields[i].data()); };
    const auto buildLiterally = [&](std::size_t i)
    { literalFields[i] = BuildDistanceLiterally(kWidth, kHeight, images[i]); };
    const auto filter = [&](std::size_t i) { FilterImage(kWidth, kHeight, filtered[i].data(), 1, true); };
    const auto filterLiterally = [&](std::size_t i)
    { FilterLiterally(kWidth, kHeight, literallyFiltered[i], 1, true); };
    std::vector<double> seconds =
        Race({{"field", {}, [&] { forEach(build); }},
              {"literal field", {}, [&] { forEach(buildLiterally); }},
              {"filter", [&] { filtered = images; }, [&] { forEach(filter); }},
              {"literal filter", [&] { literallyFiltered = images; }, [&] { forEach(filterLiterally); }}},
             9);
    const double milliseconds = 1e3 / static_cast<double>(images.size());
    std::printf("field %.3f ms, literally %.3f ms; filter %.3f ms, literally %.3f ms\n",
                milliseconds * seconds[0], milliseconds * seconds[1], milliseconds * seconds[2],
                milliseconds * seconds[3]);
    if (fields != literalFields || filtered != literallyFiltered)
    {
        std::printf("the literal forms give something else\n");
        return 1;
    }
    return Judge("2D field of 800 x 600, times faster than its sweeps", seconds[1] / seconds[0], 15.0, false)
               ? 0
               : 1;
}
