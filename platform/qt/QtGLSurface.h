#pragma once
#include "GLSurface.h"
#include <QOpenGLContext>

class QWindow;

namespace tessarine
{
/// GL on a window of the window system. The window must outlive it.
class QtGLSurface : public GLSurface
{
public:
    /// Throws GLSurfaceError.
    explicit QtGLSurface(QWindow& window);

    bool MakeCurrent() override;
    bool Release() override;
    /// A window that is not on the screen has nothing to show: nothing happens.
    void SwapBuffers() override;
    bool IsWatched() const override;

private:
    QWindow& m_Window;
    QOpenGLContext m_Context;
};
}
