#pragma once
#include "CloudOctree.h"
#include "IAFittingCommand.h"

namespace tessarine
{
/// Divides the cube around the cloud "Data\bunny.txta" into an octree, for the view to draw.
///
/// Needs   A model, which is brought into the cube from -1 to 1 as the cloud is. It may be open, and of any polygons.
/// Leaves  No vertex anywhere else. The view has the cloud and the octree, which belongs to this command.
/// Says    The number of points, twice.
/// Fails   As IAFittingCommand; Failure without a model.
class IAReconstructionSmoothOctreeCommand : public IAFittingCommand
{
public:
    void Execute() override;

    const CloudOctree& GetOctree() const { return m_Octree; }

private:
    void BuildOctree();

    CloudOctree m_Octree;
};
}
