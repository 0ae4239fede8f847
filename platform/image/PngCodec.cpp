#include "PngCodec.h"
#include "ImageDecoding.h"
#include "LibraryCall.h"
#include <cstring>
#include <png.h>

namespace tessarine
{
namespace
{
constexpr png_alloc_size_t kMostChunkBytes = png_alloc_size_t{8} << 20U; // colour profiles and texts
constexpr std::size_t kMostDeflation = 1032;
constexpr std::string_view kMark = "\x89PNG\r\n\x1A\n";
constexpr std::size_t kKindOffset = 12;
constexpr std::size_t kWidthOffset = 16;
constexpr std::size_t kHeightOffset = 20;
constexpr std::size_t kHeaderEnd = 33;

std::int64_t ReadBig32(std::string_view bytes, std::size_t offset)
{
    return png_get_uint_32(reinterpret_cast<png_const_bytep>(bytes.data() + offset));
}

/// The library refuses an impossible size without naming it.
void CheckHeader(std::string_view bytes)
{
    CheckMark(bytes, kMark, "PNG");
    if (bytes.size() < kHeaderEnd)
    {
        throw ImageFault(kEndsEarly);
    }
    if (bytes.substr(kKindOffset, 4) == "IHDR")
    {
        CheckImageSize(ReadBig32(bytes, kWidthOffset), ReadBig32(bytes, kHeightOffset), 1);
    }
}

[[noreturn]] void OnError(png_structp png, png_const_charp reason)
{
    static_cast<LibraryCall*>(png_get_error_ptr(png))->Fail("its PNG data are broken", reason);
}

void OnWarning(png_structp /*png*/, png_const_charp /*text*/) {}

/// Row pointers from the top, as the library wants them, into a buffer that starts at the bottom.
std::vector<png_bytep> RowsFromTop(Image& image)
{
    std::vector<png_bytep> rows;
    for (int row = image.height - 1; row >= 0; --row)
    {
        rows.push_back(GetRow(image, row));
    }
    return rows;
}

class PngReading
{
public:
    explicit PngReading(std::string_view bytes)
        : m_Bytes(bytes),
          m_nFileBytes(bytes.size()),
          m_pPng(png_create_read_struct(PNG_LIBPNG_VER_STRING, &m_Call, OnError, OnWarning)),
          m_pInfo(m_pPng != nullptr ? png_create_info_struct(m_pPng) : nullptr)
    {
        if (m_pInfo == nullptr)
        {
            png_destroy_read_struct(&m_pPng, nullptr, nullptr);
            throw ImageFault("there is no memory for it");
        }
    }
    ~PngReading() { png_destroy_read_struct(&m_pPng, &m_pInfo, nullptr); }
    PngReading(const PngReading&) = delete;
    PngReading& operator=(const PngReading&) = delete;

    Image Read(ImageBudget& budget)
    {
        m_Call.Run([this] { ReadHeader(); });
        CheckLength();
        const png_uint_32 width = png_get_image_width(m_pPng, m_pInfo);
        const png_uint_32 height = png_get_image_height(m_pPng, m_pInfo);
        const int components = png_get_channels(m_pPng, m_pInfo);
        TakePixels(budget, width, height, components);
        Image image = MakeImage(width, height, components);
        std::vector<png_bytep> rows = RowsFromTop(image);
        m_Call.Run(
            [this, &rows]
            {
                png_read_image(m_pPng, rows.data());
                png_read_end(m_pPng, nullptr);
            });
        return image;
    }

private:
    static void OnRead(png_structp png, png_bytep out, png_size_t count)
    {
        auto& bytes = static_cast<PngReading*>(png_get_io_ptr(png))->m_Bytes;
        if (count > bytes.size())
        {
            static_cast<LibraryCall*>(png_get_error_ptr(png))->Fail(kEndsEarly);
        }
        std::memcpy(out, bytes.data(), count);
        bytes.remove_prefix(count);
    }

    void ReadHeader()
    {
        png_set_read_fn(m_pPng, this, OnRead);
        png_set_user_limits(m_pPng, kMostPixelsASide, kMostPixelsASide);
        png_set_chunk_malloc_max(m_pPng, kMostChunkBytes);
        png_read_info(m_pPng, m_pInfo);
        m_nPackedBytes = png_get_rowbytes(m_pPng, m_pInfo) * png_get_image_height(m_pPng, m_pInfo);
        png_set_expand(m_pPng); // palettes, small greys and transparent colours to whole bytes
        png_set_scale_16(m_pPng);
        png_set_interlace_handling(m_pPng);
        png_read_update_info(m_pPng, m_pInfo);
    }

    /// A picture that cannot come out of so few bytes is refused before it is allocated.
    void CheckLength() const
    {
        if (m_nPackedBytes > m_nFileBytes * kMostDeflation)
        {
            throw ImageFault(kEndsEarly);
        }
    }

    LibraryCall m_Call;
    std::string_view m_Bytes;
    std::size_t m_nFileBytes;
    std::size_t m_nPackedBytes = 0; ///< of all rows as the file has them
    png_structp m_pPng;
    png_infop m_pInfo = nullptr;
};

class PngWriting
{
public:
    PngWriting()
        : m_pPng(png_create_write_struct(PNG_LIBPNG_VER_STRING, &m_Call, OnError, OnWarning)),
          m_pInfo(m_pPng != nullptr ? png_create_info_struct(m_pPng) : nullptr)
    {
        if (m_pInfo == nullptr)
        {
            png_destroy_write_struct(&m_pPng, nullptr);
            throw ImageFault("there is no memory for it");
        }
    }
    ~PngWriting() { png_destroy_write_struct(&m_pPng, &m_pInfo); }
    PngWriting(const PngWriting&) = delete;
    PngWriting& operator=(const PngWriting&) = delete;

    std::string Write(const Image& image)
    {
        m_Call.Run([this, &image] { WriteAll(image); });
        return std::move(m_strOut);
    }

private:
    static void OnWrite(png_structp png, png_bytep bytes, png_size_t count)
    {
        if (!static_cast<PngWriting*>(png_get_io_ptr(png))->Append(bytes, count))
        {
            png_error(png, "out of memory");
        }
    }

    static void OnFlush(png_structp /*png*/) {}

    bool Append(const png_byte* bytes, std::size_t count) noexcept
    {
        try
        {
            m_strOut.append(bytes, bytes + count);
            return true;
        }
        catch (const std::bad_alloc&)
        {
            return false;
        }
    }

    void WriteAll(const Image& image)
    {
        constexpr int kColourTypes[] = {PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_GRAY_ALPHA, PNG_COLOR_TYPE_RGB,
                                        PNG_COLOR_TYPE_RGB_ALPHA};
        png_set_write_fn(m_pPng, this, OnWrite, OnFlush);
        png_set_IHDR(m_pPng, m_pInfo, static_cast<png_uint_32>(image.width),
                     static_cast<png_uint_32>(image.height), 8, kColourTypes[image.components - 1],
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(m_pPng, m_pInfo);
        for (int row = image.height - 1; row >= 0; --row)
        {
            png_write_row(m_pPng, GetRow(image, row));
        }
        png_write_end(m_pPng, nullptr);
    }

    LibraryCall m_Call;
    std::string m_strOut;
    png_structp m_pPng;
    png_infop m_pInfo = nullptr;
};
}

Image DecodePng(std::string_view bytes, ImageBudget& budget)
{
    CheckHeader(bytes);
    return PngReading(bytes).Read(budget);
}

std::string EncodePng(const Image& image)
{
    return PngWriting().Write(image);
}
}
