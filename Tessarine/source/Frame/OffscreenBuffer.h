#pragma once

namespace tessarine
{
/// A buffer for colour and depth apart from the surface of the current context: everything is drawn into it
/// and read from it while it lives.
///
/// Needs   A current context, from the construction to the end.
/// Fails   Failure where the context has no such buffers, or none of this size.
class OffscreenBuffer
{
public:
    /// @param width, height in pixels
    OffscreenBuffer(int width, int height);
    ~OffscreenBuffer();
    OffscreenBuffer(const OffscreenBuffer&) = delete;
    OffscreenBuffer& operator=(const OffscreenBuffer&) = delete;

    /// Puts what was drawn on the surface, from its lower left corner on.
    void CopyToSurface() const;

private:
    void Free();

    int m_nWidth;
    int m_nHeight;
    unsigned m_nBuffer = 0; ///< GL's name
    unsigned m_nColor = 0;
    unsigned m_nDepth = 0;
};
}
