#include "NativeGLWidget.h"
#include "QtGLSurface.h"
#include <QSurfaceFormat>
#include <QWindow>

namespace tessarine
{
namespace
{
/// What makes the driver give fixed-function GL: a version before the profiles came. Asking for a later one with
/// the compatibility profile gives the core profile without a word.
QSurfaceFormat FixedFunctionFormat()
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(2, 1);
    format.setProfile(QSurfaceFormat::NoProfile);
    format.setRedBufferSize(8);
    format.setGreenBufferSize(8);
    format.setBlueBufferSize(8);
    format.setAlphaBufferSize(0);
    format.setDepthBufferSize(32);
    format.setStencilBufferSize(0);
    format.setSamples(0);
    format.setSwapBehavior(QSurfaceFormat::DoubleBuffer);
    format.setSwapInterval(0);
    return format;
}
}

NativeGLWidget::NativeGLWidget(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_DontCreateNativeAncestors);
    setAttribute(Qt::WA_NativeWindow);
    // The surface's type and format count only before the window-system window is there.
    windowHandle()->setSurfaceType(QSurface::OpenGLSurface);
    windowHandle()->setFormat(FixedFunctionFormat());
    setAttribute(Qt::WA_PaintOnScreen);
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_OpaquePaintEvent);
    winId();
}

std::unique_ptr<GLSurface> NativeGLWidget::CreateSurface()
{
    return std::make_unique<QtGLSurface>(*windowHandle());
}

QSize NativeGLWidget::GetPixelSize() const
{
    return (QSizeF(size()) * devicePixelRatioF()).toSize();
}

QPoint NativeGLWidget::ToPixels(const QPointF& place) const
{
    return (place * devicePixelRatioF()).toPoint();
}

QPoint NativeGLWidget::FromPixels(QPoint pixel) const
{
    return (QPointF(pixel) / devicePixelRatioF()).toPoint();
}
}
