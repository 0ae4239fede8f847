#include "DSTexture.h"
#include "Assert.h"
#include "Console.h"
#include "ErrorLine.h"
#include "File.h"
#include "Image.h"
#include "Path.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace tessarine
{
namespace
{
constexpr int kLargestSide = 512;
constexpr int kSmallestSide = 16;
constexpr float kRoundUpAbove = 1.8F;
constexpr int kGlRgb = 6407;

bool EndsInOneOf(std::string_view name, std::initializer_list<std::string_view> endings)
{
    return std::any_of(endings.begin(), endings.end(),
                       [&](std::string_view ending) { return name.ends_with(ending); });
}

// ---- the portable pixmap ----

constexpr std::size_t kLongestPpmLine = 70;

struct PpmHeader
{
    int width = 0;
    int height = 0;
    std::size_t pixelOffset = 0;
};

/// Cuts the next line off the front, its newline included; a longer one is cut after 70 characters.
std::string_view TakeLine(std::string_view& rest)
{
    const std::size_t newline = rest.substr(0, kLongestPpmLine).find('\n');
    const std::size_t length =
        newline == std::string_view::npos ? std::min(rest.size(), kLongestPpmLine) : newline + 1;
    const std::string_view line = rest.substr(0, length);
    rest.remove_prefix(length);
    return line;
}

/// One whole number behind white space. Beyond 32 bits it saturates.
std::optional<int> ScanInteger(std::string_view& text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    const bool negative = text.starts_with('-');
    const std::size_t sign = negative || text.starts_with('+') ? 1 : 0;
    const std::size_t end = std::min(text.find_first_not_of("0123456789", sign), text.size());
    if (end == sign)
    {
        return std::nullopt;
    }
    long long value = 0;
    for (const char digit : text.substr(sign, end - sign))
    {
        value = std::min<long long>(value * 10 + (digit - '0'), std::numeric_limits<int>::max());
    }
    text.remove_prefix(end);
    return static_cast<int>(negative ? -value : value);
}

/// Width, height and maximum on one to three lines, with comment lines between.
std::optional<PpmHeader> ScanPpmHeader(std::string_view bytes)
{
    std::string_view rest = bytes;
    TakeLine(rest);
    std::array<int, 3> numbers = {};
    for (std::size_t counter = 0; counter < numbers.size();)
    {
        if (rest.empty())
        {
            return std::nullopt;
        }
        std::string_view line = TakeLine(rest);
        if (line.starts_with('#'))
        {
            continue;
        }
        for (auto number = ScanInteger(line); number && counter < numbers.size(); number = ScanInteger(line))
        {
            numbers[counter++] = *number;
        }
    }
    return PpmHeader{numbers[0], numbers[1], bytes.size() - rest.size()};
}

/// What is wrong with the size, or nothing; then its bytes are taken.
std::string FaultOfPpm(const PpmHeader& header, std::size_t bytes, ImageBudget& budget)
{
    if (header.width < 1 || header.height < 1)
    {
        return "The PPM file has no pixels";
    }
    const std::size_t needed =
        static_cast<std::size_t>(header.width) * static_cast<std::size_t>(header.height) * 3;
    if (header.width > kMostPixelsASide || header.height > kMostPixelsASide || needed > kMostDecodedBytes)
    {
        return "The PPM file is too large: " + std::to_string(header.width) + " x " +
               std::to_string(header.height) + " pixels; at most " + std::to_string(kMostPixelsASide) +
               " a side and " + std::to_string(kMostDecodedBytes >> 20U) + " MiB are read";
    }
    if (needed > bytes - header.pixelOffset)
    {
        return "The PPM file ends before its pixels do";
    }
    return budget.Take(needed) ? "" : budget.GetRefusal();
}

// ---- the size ----

int RoundSide(int side)
{
    int power = 1;
    while (power <= side / 2)
    {
        power *= 2;
    }
    const float above = static_cast<float>(side) / static_cast<float>(power);
    const float below = 2.0F * static_cast<float>(power) / static_cast<float>(side);
    return above / below > kRoundUpAbove ? power * 2 : power;
}

// ---- the samplers ----

/// The image that is resampled, and the size that it gets.
struct Resampling
{
    const std::uint8_t* pixels;
    int width;
    int height;
    int components;
    int newWidth;
    int newHeight;

    double GetX(int x) const { return static_cast<double>(x) * width / newWidth; }
    double GetY(int y) const { return static_cast<double>(y) * height / newHeight; }

    /// A column past the end of its line is the start of the next one; past the end of the image the nearest
    /// pixel counts.
    const std::uint8_t* GetPixel(int x, int y) const
    {
        const auto count = static_cast<std::int64_t>(width) * height;
        std::int64_t index = static_cast<std::int64_t>(y) * width + x;
        if (index >= count)
        {
            index = static_cast<std::int64_t>(std::min(y, height - 1)) * width + std::min(x, width - 1);
        }
        return pixels + index * components;
    }
};

int Round(double value)
{
    const double whole = std::floor(value);
    return static_cast<int>(value - whole >= 0.5 ? whole + 1.0 : whole);
}

void SampleNearest(const Resampling& from, int x, int y, std::uint8_t* out)
{
    std::copy_n(from.GetPixel(Round(from.GetX(x)), Round(from.GetY(y))), from.components, out);
}

void SampleBilinear(const Resampling& from, int x, int y, std::uint8_t* out)
{
    constexpr double kSameLine = 1e-8;
    const double sx = from.GetX(x);
    const double sy = from.GetY(y);
    const int left = static_cast<int>(std::floor(sx));
    const int low = static_cast<int>(std::floor(sy));
    const double fx = sx - left;
    const double fy = sy - low;
    const int high = fy < kSameLine ? low : low + 1;
    const std::uint8_t* lowLeft = from.GetPixel(left, low);
    const std::uint8_t* lowRight = from.GetPixel(left + 1, low);
    const std::uint8_t* highLeft = from.GetPixel(left, high);
    const std::uint8_t* highRight = from.GetPixel(left + 1, high);
    for (int i = 0; i < from.components; ++i)
    {
        const int atLeft = static_cast<int>(lowLeft[i] * (1.0 - fy) + highLeft[i] * fy);
        const int atRight = static_cast<int>(lowRight[i] * (1.0 - fy) + highRight[i] * fy);
        out[i] = static_cast<std::uint8_t>(static_cast<int>(atLeft * (1.0 - fx) + atRight * fx));
    }
}

double CubeOfPositive(double t)
{
    return t > 0.0 ? t * t * t : 0.0;
}

/// The cubic B-spline.
double WeightAt(double t)
{
    return (CubeOfPositive(t + 2.0) - 4.0 * CubeOfPositive(t + 1.0) + 6.0 * CubeOfPositive(t) -
            4.0 * CubeOfPositive(t - 1.0)) /
           6.0;
}

void SampleCubic(const Resampling& from, int x, int y, std::uint8_t* out)
{
    const int columnStep = from.width / from.newWidth;
    const int lineStep = from.height / from.newHeight;
    const double sx = static_cast<double>(x) * columnStep;
    const double sy = static_cast<double>(y) * lineStep;
    const int column = static_cast<int>(std::floor(sx));
    const int line = static_cast<int>(std::floor(sy));
    for (int i = 0; i < from.components; ++i)
    {
        double sum = 0.0;
        for (int dx = -1; dx <= 2; ++dx)
        {
            for (int dy = -1; dy <= 2; ++dy)
            {
                const std::uint8_t* pixel = from.GetPixel(std::clamp(column + dx, 0, from.width - 1),
                                                          std::clamp(line + dy, 0, from.height - 1));
                sum += pixel[i] * WeightAt(dx - (sx - column)) * WeightAt((sy - line) - dy);
            }
        }
        out[i] = static_cast<std::uint8_t>(static_cast<int>(sum));
    }
}

using Sampler = void (*)(const Resampling&, int x, int y, std::uint8_t* out);

Sampler GetSampler(DSTexture::ResampleMode mode)
{
    switch (mode)
    {
    case DSTexture::ResampleMode::Bilinear: return SampleBilinear;
    case DSTexture::ResampleMode::Cubic: return SampleCubic;
    default: return SampleNearest;
    }
}
}

void DSTexture::LoadImage(const std::string& fileName)
{
    ImageBudget budget;
    LoadImage(fileName, budget);
}

void DSTexture::LoadImage(const std::string& fileName, ImageBudget& budget)
{
    if (EndsInOneOf(fileName, {"PPM", "ppm"}))
    {
        ReadPPM(fileName, budget);
    }
    else if (EndsInOneOf(fileName, {"BMP", "bmp", "PNG", "png", "JPG", "jpg", "GIF", "gif", "TGA", "tga",
                                    "TIFF", "tiff"}))
    {
        ReadPicture(fileName, budget);
    }
}

void DSTexture::ReadPicture(const std::string& fileName, ImageBudget& budget)
{
    SetImage(0, 0, 0, {});
    m_strFileName = fileName;
    try
    {
        const std::filesystem::path path = ResolveForReading(fileName);
        Image image = ReadImage(path, budget);
        DebugConsole() << "Image File's component is:" << image.components << '\n';
        DebugConsole() << "GL_RGB is:" << kGlRgb << '\n';
        SetImage(image.width, image.height, image.components, std::move(image.pixels));
        NotePath(path);
    }
    catch (const FileError& error)
    {
        PrintErrorLine(error.what());
        return;
    }
    if (Resample(ResampleMode::Nearest))
    {
        TakeResampled();
    }
}

/// A picture that was removed meanwhile has none.
void DSTexture::NotePath(const std::filesystem::path& path)
{
    std::error_code gone;
    m_Path = std::filesystem::canonical(path, gone);
}

void DSTexture::TakeResampled()
{
    m_pData = std::exchange(m_pNewData, {});
    m_nWidth = m_nNewWidth;
    m_nHeight = m_nNewHeight;
}

void DSTexture::ReadPPM(const std::string& fileName)
{
    ImageBudget budget;
    ReadPPM(fileName, budget);
}

void DSTexture::ReadPPM(const std::string& fileName, ImageBudget& budget)
{
    SetImage(0, 0, m_nComponents, {});
    m_strFileName = fileName;
    if (budget.IsSpent())
    {
        PrintErrorLine(fileName + ": " + budget.GetRefusal());
        return;
    }
    try
    {
        const std::filesystem::path path = ResolveForReading(fileName);
        DecodePPM(fileName, ReadFile(path, budget.GetFiles()), budget);
        NotePath(path);
    }
    catch (const FileError& error)
    {
        PrintErrorLine("Can not open the PPM file!");
        PrintErrorLine(error.what());
    }
}

void DSTexture::DecodePPM(const std::string& fileName, std::string_view bytes)
{
    ImageBudget budget;
    DecodePPM(fileName, bytes, budget);
}

void DSTexture::DecodePPM(const std::string& fileName, std::string_view bytes, ImageBudget& budget)
{
    SetImage(0, 0, m_nComponents, {});
    m_strFileName = fileName;
    if (!bytes.starts_with("P6"))
    {
        PrintErrorLine(fileName + ": Not a raw PPM file");
        return;
    }
    const auto header = ScanPpmHeader(bytes);
    const std::string fault =
        header ? FaultOfPpm(*header, bytes.size(), budget) : "The PPM file ends before its size is told";
    if (!fault.empty())
    {
        PrintErrorLine(fileName + ": " + fault);
        return;
    }
    const auto* first = bytes.begin() + static_cast<std::ptrdiff_t>(header->pixelOffset);
    m_pData.assign(first, first + std::ptrdiff_t{header->width} * header->height * 3);
    m_nWidth = header->width;
    m_nHeight = header->height;
}

void DSTexture::ChooseTextureSize(int width, int height, int& newWidth, int& newHeight)
{
    newWidth = RoundSide(width);
    newHeight = RoundSide(height);
    // Scaling by the side that is already held changes nothing, so only the smallest side is left to do.
    if (newHeight > newWidth && newHeight > kLargestSide)
    {
        newHeight = kLargestSide;
        newWidth = std::max(newWidth, kSmallestSide);
    }
    else if (newWidth > kLargestSide)
    {
        newWidth = kLargestSide;
        newHeight = std::max(newHeight, kSmallestSide);
    }
}

bool DSTexture::Resample(ResampleMode mode)
{
    if (!HasImage())
    {
        return false;
    }
    ChooseTextureSize(m_nWidth, m_nHeight, m_nNewWidth, m_nNewHeight);
    if (m_nNewWidth == m_nWidth && m_nNewHeight == m_nHeight)
    {
        return false;
    }
    const Resampling from{m_pData.data(), m_nWidth, m_nHeight, m_nComponents, m_nNewWidth, m_nNewHeight};
    const Sampler sample = GetSampler(mode);
    const auto components = static_cast<std::size_t>(m_nComponents);
    m_pNewData.resize(static_cast<std::size_t>(m_nNewWidth) * static_cast<std::size_t>(m_nNewHeight) *
                      components);
    std::uint8_t* out = m_pNewData.data();
    for (int y = 0; y < m_nNewHeight; ++y)
    {
        for (int x = 0; x < m_nNewWidth; ++x, out += components)
        {
            sample(from, x, y, out);
        }
    }
    return true;
}

void DSTexture::SetImage(int width, int height, int components, std::vector<std::uint8_t> pixels)
{
    static std::uint64_t s_nImages = 0;
    m_nImageNumber = ++s_nImages;
    m_Path.clear();
    ASSERT(pixels.size() == std::size_t{1} * static_cast<unsigned>(width) * static_cast<unsigned>(height) *
                                static_cast<unsigned>(components));
    m_nWidth = width;
    m_nHeight = height;
    m_nComponents = components;
    m_pData = std::move(pixels);
    m_nNewWidth = 0;
    m_nNewHeight = 0;
    m_pNewData.clear();
}
}
