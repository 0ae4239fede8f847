#pragma once
#include "smVec3d.h"
#include <vector>

namespace tessarine
{
class ReplacingFile;

/// How far samples of a surface are from the points that they are to reach.
struct FitError
{
    double total = 0.0;   ///< the sum of the squared distances
    double largest = 0.0; ///< of the distances
    double average = 0.0; ///< the root of the mean square
};

/// Measures, and writes a line for each sample, with both points and their distance.
///
/// Needs   As many targets as samples (asserted).
/// Leaves  The file to be committed.
/// Fails   FileError.
FitError CheckFootPoints(const std::vector<smVec3d>& samples, const std::vector<smVec3d>& targets,
                         ReplacingFile& file);

/// Says    Total, maximum and average between two lines of stars.
void SayError(const FitError& error);
}
