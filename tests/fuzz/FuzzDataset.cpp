// The first byte chooses what the rest is: one of the dataset's text files, or a silhouette.
#include "Console.h"
#include "Distance2D.h"
#include "Failure.h"
#include "File.h"
#include "HeadlessPlatform.h"
#include "IAPointCloud.h"
#include "IODatasetCameras.h"
#include "IODatasetText.h"
#include "IODatasetUnitizing.h"
#include "ImageFilter.h"
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{
using namespace tessarine;

void Demand(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}

void ReadCameraFile(IODatasetText& text)
{
    const IODatasetCameras cameras = ReadCameras(text);
    Demand(!cameras.m_Views.empty() && cameras.m_nImageWidth > 0 && cameras.m_nImageHeight > 0);
    for (int view = 0; view < cameras.GetImageCount(); ++view)
    {
        Demand(cameras.m_Views[static_cast<std::size_t>(view)].At(3, 3) == 1.0);
        cameras.GetInverse(view);
    }
}

void ReadPointFile(IODatasetText& text, bool isLabelled)
{
    IAPointCloud cloud;
    isLabelled ? cloud.ReadLabelledPoints(text) : cloud.ReadPoints(text);
    cloud.Unitize(text.GetName());
    const bool isFinite =
        std::all_of(cloud.m_Points.begin(), cloud.m_Points.end(),
                    [](const smVec3d& point)
                    { return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z); });
    Demand(isFinite);
}

/// Two bytes of sizes and options, then the pixels' first bytes.
void BuildField(const std::string& bytes)
{
    if (bytes.size() < 3)
    {
        return;
    }
    const int width = 1 + static_cast<unsigned char>(bytes[0]) % 64;
    const int runLength = static_cast<unsigned char>(bytes[1]) % 8;
    const bool fillBackground = static_cast<unsigned char>(bytes[1]) < 128;
    const int height = 1 + static_cast<int>(bytes.size()) / width;
    std::vector<std::uint8_t> image(static_cast<std::size_t>(width * height) * 3);
    for (std::size_t i = 2; i < bytes.size() && 3 * i < image.size(); ++i)
    {
        std::fill_n(image.begin() + static_cast<std::ptrdiff_t>(3 * i), 3,
                    static_cast<std::uint8_t>(bytes[i]));
    }
    FilterImage(width, height, image.data(), runLength, fillBackground);
    std::vector<std::int32_t> field(static_cast<std::size_t>(width * height));
    BuildDistance2D(width, height, image.data(), field.data());
    Demand(std::all_of(field.begin(), field.end(),
                       [](std::int32_t value)
                       { return std::abs(value) <= kMostLayers || std::abs(value) == kFarAway; }));
}

void Feed(int kind, const std::string& content)
{
    IODatasetText text("file", content);
    switch (kind)
    {
    case 0: return ReadCameraFile(text);
    case 1: static_cast<void>(ReadUnitizing(text)); return;
    case 2: return ReadPointFile(text, false);
    case 3: return ReadPointFile(text, true);
    default: return BuildField(content);
    }
}
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});
    if (size == 0)
    {
        return 0;
    }
    try
    {
        Feed(data[0] % 5, std::string(data + 1, data + size));
    }
    catch (const IException&) // a file that is refused
    {
    }
    return 0;
}
