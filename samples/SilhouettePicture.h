#pragma once
#include "Image.h"
#include "ShapeMesh.h"
#include "smMatrix44d.h"

namespace tessarine
{
/// The plane of an image: its pixels, and half of what it spans.
struct PicturePlane
{
    int width;
    int height;
    double halfWidth;
    double halfHeight;

    /// The pixel of a place on the plane, with its fraction.
    double ToColumn(double u) const { return u * (width / (2.0 * halfWidth)) + width / 2.0; }
    double ToRow(double v) const { return v * (height / (2.0 * halfHeight)) + height / 2.0; }
};

/// The mesh in white on black, one component, seen along the depth of a view: the pixels whose centres it
/// covers.
Image DrawSilhouette(const ShapeMesh& mesh, const smMatrix44d& view, const PicturePlane& plane);

/// The line of a user who marks where to cut, in an image of three components: without red, and with green.
/// @param from, to places on the plane
void DrawMarkerLine(Image& image, const PicturePlane& plane, const std::array<double, 2>& from,
                    const std::array<double, 2>& to);
}
