#pragma once
#include "SolidDrawer.h"
#include <cstdint>

namespace tessarine
{
class FrameTextures;
class MANBrepElementManager;
class MANSceneGroup;
class MANSceneLeaf;
class MANSceneManager;
class MANSceneNode;
class Open3DView;

/// One frame of a view: what is drawn, and in which order.
///
/// Needs   A current context, to be drawn.
class Open3DFrame
{
public:
    /// @param isWatched whether somebody sees it; otherwise only what outlives it is done
    Open3DFrame(const Open3DView& view, const MANSceneManager& scene, const MANBrepElementManager& elements,
                bool isWatched);

    /// Says alone what a frame says, of its lights and of overlays that cannot be drawn. Needs no context.
    void Say() const;

    /// @param textures are those of this frame while it is drawn
    void Draw(FrameTextures& textures) const;

private:
    void SetUp() const;
    void DrawOverlays() const;
    void DrawNewMesh() const;
    void DrawScene(FrameTextures& textures) const;
    void DrawGroup(const MANSceneGroup& group) const;
    void DrawNode(const MANSceneNode& node) const;
    void DrawLeaf(const MANSceneLeaf& leaf) const;
    void DrawFilled(const DSSolid& solid) const;
    void DrawMarks() const;
    void DrawCutFaces() const;
    bool HasFlag(std::uint32_t flag) const;

    const Open3DView& m_View;
    const MANSceneManager& m_Scene;
    const MANBrepElementManager& m_Elements;
    bool m_bWatched;
    SolidDrawer m_Solids;
};
}
