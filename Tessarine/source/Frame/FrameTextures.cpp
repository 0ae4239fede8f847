#include "FrameTextures.h"
#include "Console.h"
#include "MANMaterialManager.h"
#include <GL/glu.h>
#include <algorithm>
#include <utility>

namespace tessarine
{
namespace
{
constexpr std::size_t kColors = 3;
constexpr std::size_t kLineAlignment = 4; // of GL, unless it is told otherwise

/// Lines of pixels without gaps, while it lives.
class PackedLines
{
public:
    PackedLines()
    {
        glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    }
    ~PackedLines() { glPopClientAttrib(); }
    PackedLines(const PackedLines&) = delete;
    PackedLines& operator=(const PackedLines&) = delete;
};

/// Red, green and blue of each pixel, in lines that begin where GL looks for them. Grey counts for all three,
/// and alpha is left out.
void ConvertPixels(const DSTexture& texture, std::size_t lineBytes, std::vector<std::uint8_t>& out)
{
    const auto components = static_cast<std::size_t>(texture.GetComponents());
    const auto width = static_cast<std::size_t>(texture.GetWidth());
    const std::size_t second = components < kColors ? 0 : 1;
    const std::vector<std::uint8_t>& pixels = texture.GetData();
    for (std::size_t pixel = 0; (pixel + 1) * components <= pixels.size(); ++pixel)
    {
        const std::uint8_t* from = &pixels[pixel * components];
        std::uint8_t* to = &out[pixel / width * lineBytes + pixel % width * kColors];
        to[0] = from[0];
        to[1] = from[second];
        to[2] = from[2 * second];
    }
}

/// The pixels as GL reads them.
///
/// Kept    Three components go as they lie, although GL takes each line to begin at a multiple of four
///         bytes; what it looks for behind the last one is black.
std::vector<std::uint8_t> MakeUpload(const DSTexture& texture)
{
    const auto width = static_cast<std::size_t>(std::max(0, texture.GetWidth()));
    const auto height = static_cast<std::size_t>(std::max(0, texture.GetHeight()));
    const std::size_t lineBytes = (width * kColors + kLineAlignment - 1) / kLineAlignment * kLineAlignment;
    std::vector<std::uint8_t> upload(lineBytes * height);
    const int components = texture.GetComponents();
    if (components == 1 || components == 2 || components == 4)
    {
        ConvertPixels(texture, lineBytes, upload);
    }
    else // a pixmap has three and does not say so
    {
        const std::vector<std::uint8_t>& pixels = texture.GetData();
        std::copy_n(pixels.begin(), std::min(pixels.size(), upload.size()), upload.begin());
    }
    return upload;
}

/// @return 0 when GL has taken it, in all sizes
GLint BuildMipmaps(const DSTexture& texture)
{
    const std::vector<std::uint8_t> upload = MakeUpload(texture);
    return gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGB, texture.GetWidth(), texture.GetHeight(), GL_RGB,
                             GL_UNSIGNED_BYTE, upload.data());
}

const char* DescribeError(GLenum error)
{
    switch (error)
    {
    case GL_INVALID_ENUM: return "Error:GL_INVALID_ENUM";
    case GL_INVALID_VALUE: return "Error:GL_INVALID_VALUE";
    case GL_INVALID_OPERATION: return "Error:GL_INVALID_OPERATION";
    default: return "Right";
    }
}

/// Kept    The two filters are this way round: GL refuses the second, and magnifies without mipmaps.
void SetFilters()
{
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
}
}

void FrameTextures::Create(const BindingList& bindings)
{
    KeptLevels before = std::exchange(m_Kept, {});
    for (const auto& pBinding : bindings)
    {
        if (pBinding->m_pTexture == nullptr)
        {
            continue;
        }
        glGenTextures(1, &pBinding->m_nName);
        glBindTexture(GL_TEXTURE_2D, pBinding->m_nName);
        SetFilters();
        DebugConsole() << "Texture Name:" << pBinding->m_nName << '\n';
        CreateOne(*pBinding->m_pTexture, before);
    }
}

void FrameTextures::CreateOne(const DSTexture& texture, KeptLevels& before)
{
    const Levels* pKept = FindKept(texture, before);
    GLint result = 0;
    if (pKept != nullptr)
    {
        Upload(*pKept);
    }
    else
    {
        result = BuildMipmaps(texture);
    }
    if (result != 0)
    {
        DebugConsole() << "Create Image Error..." << '\n';
    }
    DebugConsole() << DescribeError(glGetError()) << '\n';
    if (pKept == nullptr && result == 0)
    {
        m_Kept[texture.GetImageNumber()] = ReadLevels();
    }
}

/// The sizes of this frame or of the one before; several bindings may share an image.
const FrameTextures::Levels* FrameTextures::FindKept(const DSTexture& texture, KeptLevels& before)
{
    m_Kept.insert(before.extract(texture.GetImageNumber()));
    const auto found = m_Kept.find(texture.GetImageNumber());
    return found != m_Kept.end() ? &found->second : nullptr;
}

void FrameTextures::Upload(const Levels& levels)
{
    const PackedLines packed;
    GLint number = 0;
    for (const Level& level : levels)
    {
        glTexImage2D(GL_TEXTURE_2D, number++, GL_RGB, level.width, level.height, 0, GL_RGB, GL_UNSIGNED_BYTE,
                     level.pixels.data());
    }
}

/// What GL holds of the bound texture.
FrameTextures::Levels FrameTextures::ReadLevels()
{
    const PackedLines packed;
    Levels levels;
    do
    {
        Level& level = levels.emplace_back();
        const auto number = static_cast<GLint>(levels.size() - 1);
        glGetTexLevelParameteriv(GL_TEXTURE_2D, number, GL_TEXTURE_WIDTH, &level.width);
        glGetTexLevelParameteriv(GL_TEXTURE_2D, number, GL_TEXTURE_HEIGHT, &level.height);
        level.pixels.resize(static_cast<std::size_t>(level.width) * static_cast<std::size_t>(level.height) *
                            kColors);
        glGetTexImage(GL_TEXTURE_2D, number, GL_RGB, GL_UNSIGNED_BYTE, level.pixels.data());
    } while (levels.back().width > 1 || levels.back().height > 1);
    return levels;
}

void FrameTextures::Delete(const BindingList& bindings)
{
    for (const auto& pBinding : bindings)
    {
        glDeleteTextures(1, &pBinding->m_nName);
        pBinding->m_nName = 0;
    }
}
}
