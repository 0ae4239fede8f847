#include "JpegCodec.h"
#include "ImageDecoding.h"
#include "LibraryCall.h"
#include <cstdlib>
// The library's header needs these two before it.
#include <cstddef>
#include <cstdio>

#include <jerror.h>
#include <jpeglib.h>

namespace tessarine
{
namespace
{
constexpr int kQuality = 95;
constexpr int kMostScans = 100;                  // a progressive picture has about ten
constexpr long kMostLibraryBytes = 1280L << 20U; // the coefficients of the largest picture, and some

/// The library's error handling, and the way out of it.
struct ErrorExit
{
    jpeg_error_mgr manager; // first, so that the library's pointer to it is one to this
    LibraryCall call;
};

ErrorExit& GetExit(j_common_ptr jpeg)
{
    return *reinterpret_cast<ErrorExit*>(jpeg->err);
}

[[noreturn]] void OnError(j_common_ptr jpeg)
{
    char reason[JMSG_LENGTH_MAX];
    jpeg->err->format_message(jpeg, reason);
    GetExit(jpeg).call.Fail("its JPEG data are broken", reason);
}

/// The library goes on where data are missing or wrong and invents the rest; that is no picture.
void OnMessage(j_common_ptr jpeg, int level)
{
    if (level >= 0)
    {
        return;
    }
    switch (jpeg->err->msg_code)
    {
    case JWRN_ADOBE_XFORM:
    case JWRN_EXTRANEOUS_DATA:
    case JWRN_JFIF_MAJOR:
    case JWRN_NOT_SEQUENTIAL:
    case JWRN_TOO_MUCH_DATA: return; // the picture is whole all the same
    case JWRN_JPEG_EOF: GetExit(jpeg).call.Fail(kEndsEarly);
    default: OnError(jpeg);
    }
}

void OnOutput(j_common_ptr /*jpeg*/) {}

void Install(ErrorExit& exit)
{
    jpeg_std_error(&exit.manager);
    exit.manager.error_exit = OnError;
    exit.manager.emit_message = OnMessage;
    exit.manager.output_message = OnOutput;
}

void OnProgress(j_common_ptr jpeg)
{
    const auto* decompress = reinterpret_cast<j_decompress_ptr>(jpeg);
    if (decompress->input_scan_number > kMostScans)
    {
        GetExit(jpeg).call.Fail("it is stored in too many scans");
    }
}

class JpegReading
{
public:
    explicit JpegReading(std::string_view bytes) : m_Bytes(bytes) { Install(m_Exit); }
    ~JpegReading() { jpeg_destroy_decompress(&m_Jpeg); }
    JpegReading(const JpegReading&) = delete;
    JpegReading& operator=(const JpegReading&) = delete;

    Image Read(ImageBudget& budget)
    {
        m_Exit.call.Run([this] { ReadHeader(); });
        const int components = m_Jpeg.num_components == 1 ? 1 : 3;
        TakePixels(budget, m_Jpeg.image_width, m_Jpeg.image_height, components);
        Image image = MakeImage(m_Jpeg.image_width, m_Jpeg.image_height, components);
        std::vector<JSAMPLE> inks(IsInInks() ? std::size_t{4} * m_Jpeg.image_width : 0);
        m_Exit.call.Run(
            [&]
            {
                jpeg_start_decompress(&m_Jpeg);
                for (int row = image.height - 1; row >= 0; --row)
                {
                    ReadRow(GetRow(image, row), inks);
                }
                jpeg_finish_decompress(&m_Jpeg);
            });
        return image;
    }

private:
    bool IsInInks() const { return m_Jpeg.out_color_space == JCS_CMYK; }

    void ReadHeader()
    {
        m_Jpeg.err = &m_Exit.manager;
        jpeg_create_decompress(&m_Jpeg);
        m_Progress.progress_monitor = OnProgress;
        m_Jpeg.progress = &m_Progress;
        m_Jpeg.mem->max_memory_to_use = kMostLibraryBytes;
        jpeg_mem_src(&m_Jpeg, reinterpret_cast<const unsigned char*>(m_Bytes.data()), m_Bytes.size());
        jpeg_read_header(&m_Jpeg, TRUE);
        if (m_Jpeg.num_components == 1)
        {
            m_Jpeg.out_color_space = JCS_GRAYSCALE;
        }
        else
        {
            m_Jpeg.out_color_space = m_Jpeg.num_components == 4 ? JCS_CMYK : JCS_RGB;
        }
    }

    void ReadRow(JSAMPLE* out, std::vector<JSAMPLE>& inks)
    {
        JSAMPLE* row = IsInInks() ? inks.data() : out;
        jpeg_read_scanlines(&m_Jpeg, &row, 1);
        for (std::size_t i = 0; i < inks.size(); i += 4)
        {
            for (std::size_t channel = 0; channel < 3; ++channel)
            {
                *out++ = MixInks(inks[i + channel], inks[i + 3]);
            }
        }
    }

    /// Programs that say that they are Adobe's store the light that is left, the others the ink.
    JSAMPLE MixInks(unsigned ink, unsigned black) const
    {
        const unsigned light = m_Jpeg.saw_Adobe_marker != 0 ? ink * black : (255 - ink) * (255 - black);
        return static_cast<JSAMPLE>((light + 127) / 255);
    }

    std::string_view m_Bytes;
    ErrorExit m_Exit = {};
    jpeg_progress_mgr m_Progress = {};
    jpeg_decompress_struct m_Jpeg = {};
};

class JpegWriting
{
public:
    JpegWriting() { Install(m_Exit); }
    ~JpegWriting()
    {
        jpeg_destroy_compress(&m_Jpeg);
        std::free(m_pBytes);
    }
    JpegWriting(const JpegWriting&) = delete;
    JpegWriting& operator=(const JpegWriting&) = delete;

    std::string Write(const Image& image)
    {
        std::vector<JSAMPLE> opaque(image.components == 4 ? static_cast<std::size_t>(image.width) * 3 : 0);
        m_Exit.call.Run([&] { WriteAll(image, opaque); });
        return {reinterpret_cast<const char*>(m_pBytes), m_nBytes};
    }

private:
    void WriteAll(const Image& image, std::vector<JSAMPLE>& opaque)
    {
        m_Jpeg.err = &m_Exit.manager;
        jpeg_create_compress(&m_Jpeg);
        jpeg_mem_dest(&m_Jpeg, &m_pBytes, &m_nBytes);
        m_Jpeg.image_width = static_cast<JDIMENSION>(image.width);
        m_Jpeg.image_height = static_cast<JDIMENSION>(image.height);
        m_Jpeg.input_components = image.components == 1 ? 1 : 3;
        m_Jpeg.in_color_space = image.components == 1 ? JCS_GRAYSCALE : JCS_RGB;
        jpeg_set_defaults(&m_Jpeg);
        jpeg_set_quality(&m_Jpeg, kQuality, TRUE);
        jpeg_start_compress(&m_Jpeg, TRUE);
        for (int row = image.height - 1; row >= 0; --row)
        {
            WriteRow(GetRow(image, row), opaque);
        }
        jpeg_finish_compress(&m_Jpeg);
    }

    void WriteRow(const JSAMPLE* pixel, std::vector<JSAMPLE>& opaque)
    {
        for (std::size_t i = 0; i < opaque.size(); ++i)
        {
            opaque[i] = pixel[i / 3 * 4 + i % 3];
        }
        auto* row = opaque.empty() ? const_cast<JSAMPLE*>(pixel) : opaque.data(); // the library only reads it
        jpeg_write_scanlines(&m_Jpeg, &row, 1);
    }

    ErrorExit m_Exit = {};
    unsigned char* m_pBytes = nullptr;
    unsigned long m_nBytes = 0;
    jpeg_compress_struct m_Jpeg = {};
};
}

Image DecodeJpeg(std::string_view bytes, ImageBudget& budget)
{
    CheckMark(bytes, "\xFF\xD8", "JPEG");
    return JpegReading(bytes).Read(budget);
}

std::string EncodeJpeg(const Image& image)
{
    return JpegWriting().Write(image);
}
}
