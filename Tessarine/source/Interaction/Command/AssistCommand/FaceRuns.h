#pragma once
#include "DSBrep.h"
#include <map>
#include <vector>

namespace tessarine
{
/// Some faces that follow each other in the list of a solid, and the box around their corners.
struct FaceRun
{
    ElementList<DSFace>::Iterator begin;
    ElementList<DSFace>::Iterator end;
    smVec3d centre;
    smVec3d halfExtent; ///< infinite where the faces need a look each
};

/// The runs of the solids of a model, for picks that follow each other.
///
/// They hold as long as nobody changes a solid: whoever keeps them clears them before anybody may.
class FaceRuns
{
public:
    /// The runs of a solid, made on first use.
    const std::vector<FaceRun>& Get(const DSSolid& solid);
    void Clear() { m_Runs.clear(); }

private:
    std::map<const DSSolid*, std::vector<FaceRun>> m_Runs;
};
}
