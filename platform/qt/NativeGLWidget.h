#pragma once
#include <QWidget>
#include <memory>

namespace tessarine
{
class GLSurface;

/// A widget with a window-system window of its own that GL draws on at any time, inside of paint events and
/// outside of them. Nothing else draws there.
class NativeGLWidget : public QWidget
{
public:
    /// The parent must be the one that the widget stays with: another would make the window anew.
    explicit NativeGLWidget(QWidget* parent);

    QPaintEngine* paintEngine() const override { return nullptr; }

    /// A surface on the widget. It must go before the widget. Throws GLSurfaceError.
    std::unique_ptr<GLSurface> CreateSurface();

    /// In pixels of the screen, which on dense screens are more than those of the window.
    QSize GetPixelSize() const;
    /// A place in the widget, in the same pixels.
    QPoint ToPixels(const QPointF& place) const;
    QPoint FromPixels(QPoint pixel) const;
};
}
