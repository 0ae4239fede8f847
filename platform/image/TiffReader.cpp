#include "TiffReader.h"
#include "ImageDecoding.h"
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <tiffio.h>

namespace tessarine
{
namespace
{
/// A file in memory as the library sees it, and the first thing that it complains of.
struct TiffSource
{
    std::string_view bytes;
    toff_t position = 0;
    bool hasEnded = false;  ///< the library has asked for more bytes than there are
    bool endsEarly = false; ///< it had done so when it complained
    char reason[300] = "";
};

TiffSource& GetSource(thandle_t handle)
{
    return *static_cast<TiffSource*>(handle);
}

tmsize_t OnRead(thandle_t handle, void* out, tmsize_t count)
{
    TiffSource& source = GetSource(handle);
    const toff_t left = source.bytes.size() - std::min<toff_t>(source.position, source.bytes.size());
    const auto taken = static_cast<std::size_t>(std::min<toff_t>(static_cast<toff_t>(count), left));
    source.hasEnded = source.hasEnded || taken < static_cast<std::size_t>(count);
    if (taken > 0)
    {
        std::memcpy(out, source.bytes.data() + source.position, taken);
    }
    source.position += taken;
    return static_cast<tmsize_t>(taken);
}

tmsize_t OnWrite(thandle_t /*handle*/, void* /*bytes*/, tmsize_t /*count*/)
{
    return -1;
}

toff_t OnSeek(thandle_t handle, toff_t offset, int whence)
{
    TiffSource& source = GetSource(handle);
    const toff_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? source.position : source.bytes.size();
    source.position = base + offset;
    return source.position;
}

int OnClose(thandle_t /*handle*/)
{
    return 0;
}

toff_t OnSize(thandle_t handle)
{
    return GetSource(handle).bytes.size();
}

[[gnu::format(printf, 4, 0)]] int OnError(TIFF* /*tiff*/, void* handle, const char* /*module*/,
                                          const char* format, va_list arguments)
{
    TiffSource& source = GetSource(handle);
    if (source.reason[0] == '\0')
    {
        std::vsnprintf(source.reason, sizeof source.reason, format, arguments);
        source.endsEarly = source.hasEnded;
    }
    return 1; // dealt with: nothing goes to standard error
}

int OnWarning(TIFF* /*tiff*/, void* /*source*/, const char* /*module*/, const char* /*format*/,
              va_list /*arguments*/)
{
    return 1;
}

struct CloseTiff
{
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

struct FreeOptions
{
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

/// Begun and ended together.
class RgbaReading
{
public:
    explicit RgbaReading(TIFF* tiff) : m_bBegun(TIFFRGBAImageBegin(&m_Image, tiff, 1, m_szReason) != 0) {}
    ~RgbaReading()
    {
        if (m_bBegun)
        {
            TIFFRGBAImageEnd(&m_Image);
        }
    }
    RgbaReading(const RgbaReading&) = delete;
    RgbaReading& operator=(const RgbaReading&) = delete;

    bool HasBegun() const { return m_bBegun; }
    const char* GetReason() const { return m_szReason; }

    /// Grey and colour as the file has them; whatever else becomes colour.
    int GetComponents() const
    {
        const bool grey =
            m_Image.photometric == PHOTOMETRIC_MINISBLACK || m_Image.photometric == PHOTOMETRIC_MINISWHITE;
        const bool alpha = (grey || m_Image.photometric == PHOTOMETRIC_RGB) && m_Image.alpha != 0;
        return (grey ? 1 : 3) + (alpha ? 1 : 0);
    }

    bool ReadFromBottom(std::uint32_t* raster)
    {
        m_Image.req_orientation = ORIENTATION_BOTLEFT;
        return TIFFRGBAImageGet(&m_Image, raster, m_Image.width, m_Image.height) != 0;
    }

private:
    char m_szReason[1024] = "";
    TIFFRGBAImage m_Image = {};
    bool m_bBegun;
};

/// The two orders of bytes, each in the plain and in the large form.
void CheckIsTiff(std::string_view bytes)
{
    constexpr std::string_view kMarks[] = {{"II*\0", 4}, {"MM\0*", 4}, {"II+\0", 4}, {"MM\0+", 4}};
    const bool isTiff =
        std::any_of(std::begin(kMarks), std::end(kMarks),
                    [&](std::string_view mark) { return mark.starts_with(bytes.substr(0, 4)); });
    if (!isTiff)
    {
        throw ImageFault("it is no TIFF file");
    }
}

class TiffReader
{
public:
    explicit TiffReader(std::string_view bytes) : m_Source{bytes} { Open(); }

    Image Read(ImageBudget& budget)
    {
        const bool isComplete = TIFFReadDirectory(m_pTiff.get()) != 0;
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        if (TIFFGetField(m_pTiff.get(), TIFFTAG_IMAGEWIDTH, &width) != 0 &&
            TIFFGetField(m_pTiff.get(), TIFFTAG_IMAGELENGTH, &height) != 0)
        {
            CheckImageSize(width, height, 1); // the library names no size where it refuses one
        }
        if (!isComplete)
        {
            Fail("it holds no picture");
        }
        CheckCompression();
        KeepColoursBesideAlpha();
        RgbaReading reading(m_pTiff.get());
        if (!reading.HasBegun())
        {
            Fail(reading.GetReason());
        }
        TakePixels(budget, width, height, std::max(reading.GetComponents(), CountBytesAPixel()));
        const auto raster = std::make_unique_for_overwrite<std::uint32_t[]>(std::size_t{width} * height);
        if (!reading.ReadFromBottom(raster.get()))
        {
            Fail("it cannot be decoded");
        }
        return Unpack(raster.get(), MakeImage(width, height, reading.GetComponents()));
    }

private:
    void Open()
    {
        const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
        if (options == nullptr)
        {
            throw ImageFault("there is no memory for it");
        }
        TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), kMostDecodedBytes);
        TIFFOpenOptionsSetErrorHandlerExtR(options.get(), OnError, &m_Source);
        TIFFOpenOptionsSetWarningHandlerExtR(options.get(), OnWarning, &m_Source);
        // h: the directory is read later, so that what it holds can be asked for though it is broken.
        m_pTiff.reset(TIFFClientOpenExt("picture", "rmh", &m_Source, OnRead, OnWrite, OnSeek, OnClose, OnSize,
                                        nullptr, nullptr, options.get()));
        if (m_pTiff == nullptr)
        {
            Fail("its header cannot be read");
        }
    }

    /// The rare methods are left out: each is a decoder of its own that a hostile file could reach.
    void CheckCompression()
    {
        std::uint16_t method = COMPRESSION_NONE;
        TIFFGetFieldDefaulted(m_pTiff.get(), TIFFTAG_COMPRESSION, &method);
        constexpr std::uint16_t kRead[] = {
            COMPRESSION_NONE,          COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3,
            COMPRESSION_CCITTFAX4,     COMPRESSION_LZW,      COMPRESSION_JPEG,
            COMPRESSION_ADOBE_DEFLATE, COMPRESSION_DEFLATE,  COMPRESSION_PACKBITS};
        if (std::find(std::begin(kRead), std::end(kRead), method) == std::end(kRead))
        {
            throw ImageFault("a TIFF of compression " + std::to_string(method) + " is not read");
        }
    }

    /// As stored, where there may be many more than those of the picture: the library unpacks them all.
    int CountBytesAPixel()
    {
        std::uint16_t samples = 1;
        std::uint16_t bits = 1;
        TIFFGetFieldDefaulted(m_pTiff.get(), TIFFTAG_SAMPLESPERPIXEL, &samples);
        TIFFGetFieldDefaulted(m_pTiff.get(), TIFFTAG_BITSPERSAMPLE, &bits);
        constexpr int kBitsAByte = 8;
        return (samples * bits + kBitsAByte - 1) / kBitsAByte;
    }

    /// The library would multiply colours by an unassociated alpha; said to be associated, they are left
    /// alone.
    void KeepColoursBesideAlpha()
    {
        std::uint16_t count = 0;
        const std::uint16_t* kinds = nullptr;
        TIFFGetFieldDefaulted(m_pTiff.get(), TIFFTAG_EXTRASAMPLES, &count, &kinds);
        if (count > 0 && kinds[0] == EXTRASAMPLE_UNASSALPHA)
        {
            std::vector<std::uint16_t> associated(kinds, kinds + count);
            associated[0] = EXTRASAMPLE_ASSOCALPHA;
            TIFFSetField(m_pTiff.get(), TIFFTAG_EXTRASAMPLES, count, associated.data());
        }
    }

    static Image Unpack(const std::uint32_t* raster, Image image)
    {
        const bool colour = image.components >= 3;
        const bool alpha = image.components % 2 == 0;
        std::uint8_t* out = image.pixels.data();
        for (const std::uint32_t* end =
                 raster + image.pixels.size() / static_cast<std::size_t>(image.components);
             raster != end; ++raster)
        {
            *out++ = static_cast<std::uint8_t>(TIFFGetR(*raster));
            if (colour)
            {
                *out++ = static_cast<std::uint8_t>(TIFFGetG(*raster));
                *out++ = static_cast<std::uint8_t>(TIFFGetB(*raster));
            }
            if (alpha)
            {
                *out++ = static_cast<std::uint8_t>(TIFFGetA(*raster));
            }
        }
        return image;
    }

    [[noreturn]] void Fail(const char* otherwise) const
    {
        if (m_Source.endsEarly)
        {
            throw ImageFault(kEndsEarly);
        }
        const char* reason = m_Source.reason[0] != '\0' ? m_Source.reason : otherwise;
        throw ImageFault(std::string("its TIFF data are broken (") + reason + ")");
    }

    TiffSource m_Source;
    std::unique_ptr<TIFF, CloseTiff> m_pTiff;
};
}

Image DecodeTiff(std::string_view bytes, ImageBudget& budget)
{
    CheckIsTiff(bytes);
    return TiffReader(bytes).Read(budget);
}
}
