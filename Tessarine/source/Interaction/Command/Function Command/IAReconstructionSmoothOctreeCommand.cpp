#include "IAReconstructionSmoothOctreeCommand.h"
#include "Console.h"
#include "FreeList.h"
#include "Open3DView.h"

namespace tessarine
{
namespace
{
constexpr char kPartitionedCloud[] = "Data\\bunny.txta";
}

void IAReconstructionSmoothOctreeCommand::Execute()
{
    TakeSolid();
    NormalizeCurrentSolid();
    LoadPoints(kPartitionedCloud);
    m_pView->GetPointCloud() = m_Points;
    BuildOctree();
    m_pView->SetOctree(m_Octree.GetRoot());
    FreeList(m_Points); // the history keeps the command
}

void IAReconstructionSmoothOctreeCommand::BuildOctree()
{
    DebugConsole() << "total face number:" << m_Points.size() << '\n';
    m_Octree.Build(m_Points, kCloudOctree);
}
}
