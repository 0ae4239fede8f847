#pragma once
#include "OCTNODE.h"
#include <memory>
#include <vector>

namespace tessarine
{
/// An octree over a cloud in the box that a unitised body fits in. A box of up to eight levels that holds twenty
/// points or more is split into eight.
///
/// Kept    A point on a face between boxes belongs to all of them, and an inner node keeps its points.
class CloudOctree
{
public:
    /// In place of the tree before.
    void Build(const std::vector<smVec3d>& points);

    /// Null before the first Build.
    const OCTNODE* GetRoot() const { return m_Nodes.empty() ? nullptr : m_Nodes.front().get(); }
    /// In the order of their creation: the root, then each child followed by all below it.
    const std::vector<std::unique_ptr<OCTNODE>>& GetNodes() const { return m_Nodes; }

private:
    OCTNODE& NewNode();
    void Split(OCTNODE& node);

    std::vector<std::unique_ptr<OCTNODE>> m_Nodes;
};
}
