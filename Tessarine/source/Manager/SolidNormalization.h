#pragma once

namespace tessarine
{
class DSSolid;

/// Moves and scales a solid into the cube from -1 to 1, its longest side from face to face, as the fitting commands
/// and the quality tool do it: the box in double precision, and each coordinate rounded to single precision before
/// the centre is taken off, afterwards, and once more when it is scaled.
///
/// Leaves  A solid without vertices as it is; one without any extent is only centred.
/// Fails   Failure for a coordinate that is no number or too large for single precision, and for an extent too small to
///         be scaled; nothing was moved then.
/// Kept    The rounding. It sets a solid apart from a point cloud, and from what an import does.
void NormalizeSolid(DSSolid& solid);
}
