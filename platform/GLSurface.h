#pragma once
#include <stdexcept>
#include <string>

namespace tessarine
{
/// A place that GL draws on, with a context of its own: fixed-function GL, double-buffered RGBA with 24 colour
/// bits and 32 depth bits. The context is current only between MakeCurrent and Release.
class GLSurface
{
public:
    virtual ~GLSurface() = default;

    /// @return whether it is current now
    virtual bool MakeCurrent() = 0;
    /// @return whether no context is current now
    virtual bool Release() = 0;
    /// Shows what was drawn.
    virtual void SwapBuffers() = 0;

    /// Whether somebody sees the next frame. One that nobody sees may leave out all that changes pixels only.
    virtual bool IsWatched() const = 0;
};

/// No surface can be had here: what() says what is missing and what to do.
class GLSurfaceError : public std::runtime_error
{
public:
    /// @param step the text of the message box for the step that failed, "ChoosePixelFormat failed" and so on
    GLSurfaceError(std::string step, const std::string& reason)
        : std::runtime_error(reason), m_strStep(std::move(step))
    {
    }
    const std::string& GetStep() const { return m_strStep; }

private:
    std::string m_strStep;
};
}
