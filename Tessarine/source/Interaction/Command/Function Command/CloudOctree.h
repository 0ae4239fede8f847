#pragma once
#include "OCTNODE.h"
#include <memory>
#include <vector>

namespace tessarine
{
/// How the commands differ in their octrees.
struct OctreeVariant
{
    smVec3d min; ///< of the root
    smVec3d max;
    std::int32_t mostDepth;
    std::size_t leastPoints;
    bool fromTheTop; ///< children are laid out from the largest corner down, not from the smallest up
};

/// Of a unitised body with what may stand out of it.
inline constexpr OctreeVariant kBodyOctree{smVec3d(-1.2, -1.2, -1.0), smVec3d(1.2, 1.2, 1.0), 8, 20, false};
/// Of a cloud in the cube from -1 to 1. All its boxes are exact in single precision.
inline constexpr OctreeVariant kCloudOctree{smVec3d(-1, -1, -1), smVec3d(1, 1, 1), 8, 10, true};
/// The same, coarser.
inline constexpr OctreeVariant kCoarseCloudOctree{smVec3d(-1, -1, -1), smVec3d(1, 1, 1), 5, 100, true};

/// An octree over a cloud. A box that is not below the most depth and holds the least number of points is split into
/// eight, depth first.
///
/// Kept    A point on a face between boxes belongs to all of them, and an inner node keeps its points.
class CloudOctree
{
public:
    /// In place of the tree before.
    void Build(const std::vector<smVec3d>& points, const OctreeVariant& variant);

    /// Null before the first Build.
    const OCTNODE* GetRoot() const { return m_Nodes.empty() ? nullptr : m_Nodes.front().get(); }
    /// The leaf that a point falls into, by the first child of each box that holds it; null where none does.
    const OCTNODE* FindLeaf(const smVec3d& point) const;
    /// In the order of their creation: the root, then each child followed by all below it.
    const std::vector<std::unique_ptr<OCTNODE>>& GetNodes() const { return m_Nodes; }

private:
    OCTNODE& NewNode();
    void SubdivideNode(OCTNODE& node, const OctreeVariant& variant);

    std::vector<std::unique_ptr<OCTNODE>> m_Nodes;
};
}
