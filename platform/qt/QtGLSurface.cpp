#include "QtGLSurface.h"
#include <QWindow>

namespace tessarine
{
namespace
{
std::string DescribeVersion(const QSurfaceFormat& format)
{
    return std::string(format.renderableType() == QSurfaceFormat::OpenGLES ? "OpenGL ES " : "OpenGL ") +
           std::to_string(format.majorVersion()) + "." + std::to_string(format.minorVersion());
}
}

bool HasFixedFunctions(const QSurfaceFormat& format)
{
    if (format.renderableType() == QSurfaceFormat::OpenGLES)
    {
        return false;
    }
    if (format.version() < std::pair(3, 1))
    {
        return true;
    }
    if (format.version() == std::pair(3, 1))
    {
        return format.testOption(QSurfaceFormat::DeprecatedFunctions);
    }
    return format.profile() != QSurfaceFormat::CoreProfile;
}

QtGLSurface::QtGLSurface(QWindow& window) : m_Window(window)
{
    if (!window.supportsOpenGL())
    {
        throw GLSurfaceError("ChoosePixelFormat failed",
                             "the display has no windows that OpenGL can draw on");
    }
    if (window.handle() == nullptr)
    {
        throw GLSurfaceError("SetPixelFormat failed", "the display gives no window for OpenGL");
    }
    m_Context.setFormat(window.requestedFormat());
    if (!m_Context.create())
    {
        throw GLSurfaceError(
            "wglCreateContext failed",
            "OpenGL is missing: install a driver for it (libgl1-mesa-dri has one that needs no "
            "graphics card) and check that the display offers GLX");
    }
    if (!HasFixedFunctions(m_Context.format()))
    {
        throw GLSurfaceError("wglCreateContext failed",
                             "the OpenGL driver gives " + DescribeVersion(m_Context.format()) +
                                 " without the compatibility profile, which Tessarine draws with");
    }
}

bool QtGLSurface::MakeCurrent()
{
    return m_Context.makeCurrent(&m_Window);
}

bool QtGLSurface::Release()
{
    m_Context.doneCurrent();
    return QOpenGLContext::currentContext() == nullptr;
}

void QtGLSurface::SwapBuffers()
{
    if (m_Window.isExposed())
    {
        m_Context.swapBuffers(&m_Window);
    }
}

bool QtGLSurface::IsWatched() const
{
    return m_Window.isExposed();
}
}
