#pragma once
#include "smVec3f.h"
#include <string>

namespace tessarine
{
class IODatasetText;

/// How a marked dataset was brought into the unit cube ("data\man\unitize.dat").
struct IODatasetUnitizing
{
    smVec3f m_UnitizeCenter;
    float m_fUnitizeScale = 1.0F;
    int m_nHalfWidth = 1; ///< of the plane of the images, in its units
    int m_nHalfHeight = 1;
    std::string m_strFile; ///< where it comes from, for the messages
    int m_nScaleLine = 0;  ///< on which the scale stands there
};

/// Fails   FileError without the file. Failure naming file and line: too few numbers, some that are not
///         finite, a scale of zero, a half extent that is not positive.
IODatasetUnitizing ReadUnitizing(const std::string& name);
IODatasetUnitizing ReadUnitizing(IODatasetText& text);
}
