#pragma once
#include "Image.h"
#include "MANSceneManager.h"
#include "smMatrix44d.h"
#include <vector>

/// The lines that a user draws over silhouettes to say where to cut. A marker is a background pixel (first byte zero)
/// with a second byte that is not zero.
namespace tessarine
{
struct Pixel
{
    int x = 0;
    int y = 0;
};

struct PlanePoint
{
    double u = 0.0;
    double v = 0.0;
};

/// The first and the last marker, row by row; nothing where there is none.
/// @param image three components
std::vector<Pixel> FindMarkerEnds(const Image& image);

/// The quadrilateral on the line between two points of a view's plane, which reaches 0.2 to either side in depth.
/// @param inverse of the view
CutFace MakeCutFace(const PlanePoint& a, const PlanePoint& b, const smMatrix44d& inverse);
}
