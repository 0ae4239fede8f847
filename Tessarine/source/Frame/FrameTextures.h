#pragma once
#include <GL/gl.h>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace tessarine
{
class DSTexture;
struct DSTextureBinding;

/// The textures of one frame: made before the models are drawn, and deleted after them. What takes time is
/// kept from frame to frame: the pixels of all sizes that GL is given.
class FrameTextures
{
public:
    using BindingList = std::vector<std::unique_ptr<DSTextureBinding>>;

    /// A texture for each binding that has an image; its name goes into the binding.
    ///
    /// Needs   A current context.
    /// Says    "Texture Name:" and the name, "Create Image Error..." where GL refuses the image, and what
    ///         GL's error is, or "Right".
    void Create(const BindingList& bindings);

    /// Needs   A current context.
    void Delete(const BindingList& bindings);

private:
    /// One size of an image as GL holds it: three bytes a pixel, lines without gaps.
    struct Level
    {
        GLsizei width = 0;
        GLsizei height = 0;
        std::vector<std::uint8_t> pixels;
    };
    /// All sizes of an image, the largest first.
    using Levels = std::vector<Level>;

    using KeptLevels = std::map<std::uint64_t, Levels>; ///< by DSTexture::GetImageNumber

    void CreateOne(const DSTexture& texture, KeptLevels& before);
    const Levels* FindKept(const DSTexture& texture, KeptLevels& before);
    static void Upload(const Levels& levels);
    static Levels ReadLevels();

    KeptLevels m_Kept; ///< of the images of the last frame
};
}
