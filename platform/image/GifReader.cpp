#include "GifReader.h"
#include "ImageDecoding.h"
#include <algorithm>
#include <cstring>
#include <gif_lib.h>
#include <memory>

namespace tessarine
{
namespace
{
int OnRead(GifFileType* gif, GifByteType* out, int count)
{
    auto& bytes = *static_cast<std::string_view*>(gif->UserData);
    const std::size_t taken = std::min(bytes.size(), static_cast<std::size_t>(count));
    if (taken > 0)
    {
        std::memcpy(out, bytes.data(), taken);
    }
    bytes.remove_prefix(taken);
    return static_cast<int>(taken);
}

[[noreturn]] void Fail(int error)
{
    if (error == D_GIF_ERR_READ_FAILED || error == D_GIF_ERR_NO_SCRN_DSCR || error == D_GIF_ERR_EOF_TOO_SOON)
    {
        throw ImageFault(kEndsEarly);
    }
    const char* reason = GifErrorString(error);
    throw ImageFault(std::string("its GIF data are broken (") +
                     (reason != nullptr ? reason : "no reason is known") + ")");
}

struct CloseGif
{
    void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};

class GifReader
{
public:
    explicit GifReader(std::string_view bytes) : m_Bytes(bytes)
    {
        int error = 0;
        m_pGif.reset(DGifOpen(&m_Bytes, OnRead, &error));
        if (m_pGif == nullptr)
        {
            Fail(error);
        }
    }

    Image Read(ImageBudget& budget)
    {
        GoToFirstFrame();
        const GifImageDesc& frame = m_pGif->Image;
        Image screen = MakeScreen(budget);
        CheckImageSize(frame.Width, frame.Height, 1);
        const ColorMapObject* colours = frame.ColorMap != nullptr ? frame.ColorMap : m_pGif->SColorMap;
        if (colours == nullptr)
        {
            throw ImageFault("it has no palette");
        }
        std::vector<GifPixelType> line(static_cast<std::size_t>(frame.Width));
        ForEachLine(frame,
                    [&](int y)
                    {
                        Check(DGifGetLine(m_pGif.get(), line.data(), frame.Width));
                        DrawLine(screen, frame, y, line, *colours);
                    });
        return screen;
    }

private:
    void Check(int result) const
    {
        if (result == GIF_ERROR)
        {
            const bool isUnexplained = m_pGif->Error == D_GIF_SUCCEEDED; // as some short reads are
            Fail(isUnexplained && m_Bytes.empty() ? D_GIF_ERR_EOF_TOO_SOON : m_pGif->Error);
        }
    }

    void GoToFirstFrame()
    {
        for (GifRecordType kind = UNDEFINED_RECORD_TYPE; kind != IMAGE_DESC_RECORD_TYPE;)
        {
            Check(DGifGetRecordType(m_pGif.get(), &kind));
            if (kind == TERMINATE_RECORD_TYPE)
            {
                throw ImageFault("it has no pixels");
            }
            if (kind == EXTENSION_RECORD_TYPE)
            {
                ReadExtension();
            }
        }
        Check(DGifGetImageDesc(m_pGif.get()));
    }

    /// Only one matters: it may name the frame's transparent colour.
    void ReadExtension()
    {
        int kind = 0;
        GifByteType* block = nullptr;
        Check(DGifGetExtension(m_pGif.get(), &kind, &block));
        while (block != nullptr)
        {
            GraphicsControlBlock control;
            if (kind == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
            {
                m_nTransparent = control.TransparentColor;
            }
            Check(DGifGetExtensionNext(m_pGif.get(), &block));
        }
    }

    /// A line at a time: a short file may have a large screen.
    static void Fill(Image& screen, const GifColorType& colour)
    {
        std::vector<std::uint8_t> line;
        for (int x = 0; x < screen.width; ++x)
        {
            line.insert(line.end(), {colour.Red, colour.Green, colour.Blue});
        }
        for (int row = 0; row < screen.height; ++row)
        {
            std::memcpy(GetRow(screen, row), line.data(), line.size());
        }
    }

    /// The screen in its background colour; black where the file names none.
    Image MakeScreen(ImageBudget& budget) const
    {
        const bool hasScreen = m_pGif->SWidth > 0 && m_pGif->SHeight > 0;
        const int width = hasScreen ? m_pGif->SWidth : m_pGif->Image.Width;
        const int height = hasScreen ? m_pGif->SHeight : m_pGif->Image.Height;
        TakePixels(budget, width, height, 3);
        Image screen = MakeImage(width, height, 3);
        const ColorMapObject* colours = m_pGif->SColorMap;
        if (colours != nullptr && m_pGif->SBackGroundColor < colours->ColorCount)
        {
            Fill(screen, colours->Colors[m_pGif->SBackGroundColor]);
        }
        return screen;
    }

    /// Lines in the order of the file: interlaced ones come in four passes.
    template <class TStep>
    static void ForEachLine(const GifImageDesc& frame, TStep step)
    {
        struct Pass
        {
            int first;
            int distance;
        };
        constexpr Pass kWhole[] = {{0, 1}};
        constexpr Pass kInterlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
        const Pass* pass = frame.Interlace ? std::begin(kInterlaced) : std::begin(kWhole);
        const Pass* end = frame.Interlace ? std::end(kInterlaced) : std::end(kWhole);
        for (; pass != end; ++pass)
        {
            for (int y = pass->first; y < frame.Height; y += pass->distance)
            {
                step(y);
            }
        }
    }

    /// What lies beside the screen is cut off.
    void DrawLine(Image& screen, const GifImageDesc& frame, int y, const std::vector<GifPixelType>& line,
                  const ColorMapObject& colours) const
    {
        const int screenY = frame.Top + y;
        const int count = std::min(frame.Width, screen.width - frame.Left);
        for (int x = 0; x < count && screenY < screen.height; ++x)
        {
            const int index = line[static_cast<std::size_t>(x)];
            if (index == m_nTransparent)
            {
                continue;
            }
            if (index >= colours.ColorCount)
            {
                throw ImageFault("a pixel has colour " + std::to_string(index) + " of a palette of " +
                                 std::to_string(colours.ColorCount));
            }
            const GifColorType& colour = colours.Colors[index];
            std::uint8_t* out =
                GetRow(screen, screen.height - 1 - screenY) + std::ptrdiff_t{3} * (frame.Left + x);
            out[0] = colour.Red;
            out[1] = colour.Green;
            out[2] = colour.Blue;
        }
    }

    std::string_view m_Bytes;
    std::unique_ptr<GifFileType, CloseGif> m_pGif;
    int m_nTransparent = NO_TRANSPARENT_COLOR;
};
}

Image DecodeGif(std::string_view bytes, ImageBudget& budget)
{
    CheckMark(bytes, "GIF8", "GIF");
    return GifReader(bytes).Read(budget);
}
}
