#pragma once
#include "GLSurface.h"

namespace tessarine
{
/// What the machine without a window would show of the view.
struct OffscreenView
{
    int width = 800; ///< pixels
    int height = 600;
    bool isWatched = true; ///< whether somebody looks at the next frame
};

/// A surface in memory, by EGL with no display server. Its pixels are those of a window: a pixel buffer of
/// the window's format, no framebuffer object.
class OffscreenSurface : public GLSurface
{
public:
    /// Throws GLSurfaceError.
    /// @param view is read again at each MakeCurrent: another size gives another buffer in the same context
    explicit OffscreenSurface(const OffscreenView& view);
    ~OffscreenSurface() override;
    OffscreenSurface(const OffscreenSurface&) = delete;
    OffscreenSurface& operator=(const OffscreenSurface&) = delete;

    bool MakeCurrent() override;
    bool Release() override;
    /// Nobody sees the buffer: what was drawn stays readable.
    void SwapBuffers() override {}
    bool IsWatched() const override { return m_View.isWatched; }

private:
    bool CreateBuffer();

    const OffscreenView& m_View;
    int m_nWidth = 0;
    int m_nHeight = 0;
    // EGL's handles are plain pointers.
    void* m_pDisplay = nullptr;
    void* m_pConfig = nullptr;
    void* m_pContext = nullptr;
    void* m_pBuffer = nullptr;
};
}
