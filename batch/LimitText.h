#pragma once
#include <string>

namespace tessarine
{
class DSSolid;
class EigenTable;

/// A point of a face's limit surface, in four lines: the valence N of its irregular corner, the ids of the control
/// vertices, their weights, and the point. Numbers are in the shortest form that reads back as the same.
///
/// Fails   Failure for a face that is not there, and as EigenTable. What CollectPatch and LimitSample assert is
///         reported, and a Failure as well.
/// @param nFace place in the list of the solid's faces
std::string MakeLimitText(const DSSolid& solid, int nFace, double v, double w, const EigenTable& table);
}
