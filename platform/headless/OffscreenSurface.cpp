#include "OffscreenSurface.h"
#include "Image.h"
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#define EGL_NO_X11 // no type of a window system in EGL's headers
#include <EGL/egl.h>
#include <EGL/eglext.h>

namespace tessarine
{
namespace
{
constexpr char kChooseStep[] = "ChoosePixelFormat failed";
constexpr char kSetStep[] = "SetPixelFormat failed";
constexpr char kContextStep[] = "wglCreateContext failed";
constexpr char kRemedy[] = "; install the packages libegl1 and libgl1-mesa-dri, which draw without a window "
                           "and without a graphics card";

/// The error that EGL holds for the last call, as " (EGL error 0x3001)".
std::string TakeEglError()
{
    char text[32];
    std::snprintf(text, sizeof text, " (EGL error 0x%04X)", static_cast<unsigned>(eglGetError()));
    return text;
}

/// The one display of the process. EGL gives the same to all who ask, so it is never ended.
EGLDisplay OpenDisplay()
{
    EGLDisplay display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (display == EGL_NO_DISPLAY)
    {
        throw GLSurfaceError(kChooseStep,
                             "there is no driver that draws without a window" + TakeEglError() + kRemedy);
    }
    if (eglInitialize(display, nullptr, nullptr) == EGL_FALSE)
    {
        throw GLSurfaceError(kChooseStep, "the driver that draws without a window cannot be started" +
                                              TakeEglError() + kRemedy);
    }
    if (eglBindAPI(EGL_OPENGL_API) == EGL_FALSE)
    {
        throw GLSurfaceError(kChooseStep, "the driver has no desktop GL" + TakeEglError() + kRemedy);
    }
    return display;
}

int GetAttribute(EGLDisplay display, EGLConfig config, EGLint name)
{
    EGLint value = 0;
    eglGetConfigAttrib(display, config, name, &value);
    return value;
}

/// The format of a window: eight bits a colour, no alpha, no samples, and as near to 32 bits of depth as
/// there is. EGL's own order puts ten bits a colour first.
bool IsFormatOfWindow(EGLDisplay display, EGLConfig config)
{
    return GetAttribute(display, config, EGL_RED_SIZE) == 8 &&
           GetAttribute(display, config, EGL_GREEN_SIZE) == 8 &&
           GetAttribute(display, config, EGL_BLUE_SIZE) == 8 &&
           GetAttribute(display, config, EGL_ALPHA_SIZE) == 0 &&
           GetAttribute(display, config, EGL_SAMPLES) == 0;
}

EGLConfig ChooseFormat(EGLDisplay display)
{
    constexpr EGLint kWanted[] = {
        EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_DEPTH_SIZE, 24, EGL_NONE};
    EGLint count = 0;
    eglChooseConfig(display, kWanted, nullptr, 0, &count);
    std::vector<EGLConfig> configs(static_cast<std::size_t>(count));
    eglChooseConfig(display, kWanted, configs.data(), count, &count);

    EGLConfig best = nullptr;
    int bestDepth = 0;
    for (EGLConfig config : configs)
    {
        const int depth = GetAttribute(display, config, EGL_DEPTH_SIZE);
        if (depth > bestDepth && IsFormatOfWindow(display, config))
        {
            best = config;
            bestDepth = depth;
        }
    }
    if (best == nullptr)
    {
        throw GLSurfaceError(kChooseStep,
                             std::string("the driver has no format with 24 colour bits and depth") + kRemedy);
    }
    return best;
}
}

OffscreenSurface::OffscreenSurface(const OffscreenView& view)
    : m_View(view), m_pDisplay(OpenDisplay()), m_pConfig(ChooseFormat(m_pDisplay))
{
    m_pContext = eglCreateContext(m_pDisplay, m_pConfig, EGL_NO_CONTEXT, nullptr);
    if (m_pContext == EGL_NO_CONTEXT)
    {
        throw GLSurfaceError(kContextStep, "the driver gives no GL context" + TakeEglError() + kRemedy);
    }
    if (!CreateBuffer())
    {
        eglDestroyContext(m_pDisplay, m_pContext);
        throw GLSurfaceError(kSetStep, "the driver gives no buffer of " + std::to_string(view.width) + "x" +
                                           std::to_string(view.height) + " pixels; try a smaller view");
    }
}

OffscreenSurface::~OffscreenSurface()
{
    eglDestroySurface(m_pDisplay, m_pBuffer);
    eglDestroyContext(m_pDisplay, m_pContext);
}

/// A view without area still has a context that can be made current. Of one that is too large the driver
/// would say so only when the memory runs out.
bool OffscreenSurface::CreateBuffer()
{
    m_pBuffer = EGL_NO_SURFACE;
    if (std::max(m_View.width, m_View.height) > kMostPixelsASide)
    {
        return false;
    }
    const EGLint size[] = {EGL_WIDTH, std::max(1, m_View.width), EGL_HEIGHT, std::max(1, m_View.height),
                           EGL_NONE};
    m_pBuffer = eglCreatePbufferSurface(m_pDisplay, m_pConfig, size);
    m_nWidth = m_View.width;
    m_nHeight = m_View.height;
    return m_pBuffer != EGL_NO_SURFACE;
}

bool OffscreenSurface::MakeCurrent()
{
    if (m_nWidth != m_View.width || m_nHeight != m_View.height)
    {
        eglDestroySurface(m_pDisplay, m_pBuffer);
        CreateBuffer();
    }
    return m_pBuffer != EGL_NO_SURFACE &&
           eglMakeCurrent(m_pDisplay, m_pBuffer, m_pBuffer, m_pContext) == EGL_TRUE;
}

bool OffscreenSurface::Release()
{
    return eglMakeCurrent(m_pDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT) == EGL_TRUE;
}
}
