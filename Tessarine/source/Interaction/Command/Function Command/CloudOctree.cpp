#include "CloudOctree.h"
#include <algorithm>
#include <iterator>

namespace tessarine
{
namespace
{
constexpr std::int32_t kMostDepth = 8;
constexpr std::size_t kLeastPoints = 20;
constexpr smVec3d kRootMin(-1.2, -1.2, -1.0);
constexpr smVec3d kRootMax(1.2, 1.2, 1.0);

/// Which half of its parent a child takes along each axis.
constexpr std::array<std::array<int, 3>, OCTNODE::kChildCount> kHalves{
    {{0, 0, 0}, {0, 0, 1}, {1, 0, 1}, {1, 0, 0}, {0, 1, 0}, {0, 1, 1}, {1, 1, 1}, {1, 1, 0}}};
}

void CloudOctree::Build(const std::vector<smVec3d>& points)
{
    m_Nodes.clear();
    OCTNODE& root = NewNode();
    root.GetMin() = kRootMin;
    root.GetMax() = kRootMax;
    root.GetDepth() = 1;
    root.GetPoints() = points;
    Split(root);
}

OCTNODE& CloudOctree::NewNode()
{
    return *m_Nodes.emplace_back(std::make_unique<OCTNODE>());
}

void CloudOctree::Split(OCTNODE& node)
{
    if (node.GetPoints().size() < kLeastPoints || node.GetDepth() > kMostDepth)
    {
        return;
    }
    node.SetLeaf(false);
    const smVec3d half = (node.GetMax() - node.GetMin()) * 0.5;
    for (std::size_t c = 0; c < OCTNODE::kChildCount; ++c)
    {
        OCTNODE& child = NewNode();
        child.GetParent() = &node;
        node.GetChildren()[c] = &child;
        for (int axis = 0; axis < 3; ++axis)
        {
            const double offset = kHalves[c][static_cast<std::size_t>(axis)] != 0 ? half[axis] : 0.0;
            child.GetMin()[axis] = node.GetMin()[axis] + offset;
        }
        child.GetMax() = child.GetMin() + half;
        child.GetDepth() = node.GetDepth() + 1;
        std::copy_if(node.GetPoints().begin(), node.GetPoints().end(), std::back_inserter(child.GetPoints()),
                     [&child](const smVec3d& point)
                     { return point.IsInBox(child.GetMin(), child.GetMax()); });
        child.GetPoints().shrink_to_fit();
        Split(child);
    }
}
}
