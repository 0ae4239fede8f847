#pragma once
#include "Shapes.h"
#include <string>
#include <vector>

namespace tessarine
{
/// A shape of the workspace, how fine its model is made, and how many points its cloud has.
struct ShapeSample
{
    std::string name;
    Shape shape;
    double cell; ///< see MakeShapeMesh
    int cloudSize;
};

/// Those that the fits work on.
std::vector<ShapeSample> GetFitSamples();

/// The one that is sampled by projection and marked.
ShapeSample GetManSample();
}
