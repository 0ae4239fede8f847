#pragma once
#include "smVec3d.h"
#include <string>
#include <vector>

namespace tessarine
{
class IODatasetText;

/// A cloud in the order of its file. A point's index is its identity; every command has a copy of its own.
class IAPointCloud
{
public:
    std::vector<smVec3d> m_Points;

    /// A point-cloud file (".txta"): the count, then the points, in single precision.
    ///
    /// Fails   FileError where the text is closed. Failure naming file and line: a negative count, one that is
    ///         larger than the file, what is no finite number.
    void ReadPoints(IODatasetText& text) { Read(text, false); }

    /// The same as the fits read it: where the file ends too early, the last values stand for those that are missing.
    void ReadPointsRepeatingTheLast(IODatasetText& text);

    /// Labelled points ("Data\man.data"): the same with a name in front of each point, which is dropped.
    void ReadLabelledPoints(IODatasetText& text) { Read(text, true); }

    /// Moves and scales the points so that the longest side of their box runs from -1 to 1, each step in
    /// single precision.
    ///
    /// Fails   Failure naming the source, where there is no point, or all are at one place.
    /// @param source the file that they come from
    void Unitize(const std::string& source);

    /// The same in double precision, as the fits do it.
    void Normalize(const std::string& source);

private:
    void Read(IODatasetText& text, bool isLabelled);
};

/// "pointDistance.dat": a line for each point, with the value of the distance field there.
/// Needs   As many distances as points (asserted).
/// Throws FileError.
void WritePointDistances(const std::vector<smVec3d>& points, const std::vector<float>& distances);
}
