#pragma once
#include "GLSurface.h"
#include <QOpenGLContext>
#include <QSurfaceFormat>

class QWindow;

namespace tessarine
{
/// Whether a context of this format has the fixed functions: every desktop GL before 3.1 has them, 3.1 by an
/// extension, and later ones in the compatibility profile.
bool HasFixedFunctions(const QSurfaceFormat& format);

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
