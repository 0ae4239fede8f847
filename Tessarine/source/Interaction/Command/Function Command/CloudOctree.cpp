#include "CloudOctree.h"
#include <algorithm>
#include <iterator>

namespace tessarine
{
namespace
{
/// Along which axes a child stands off the corner that the children are laid out from.
constexpr std::array<std::array<int, 3>, OCTNODE::kChildCount> kOffsets{
    {{0, 0, 0}, {0, 0, 1}, {1, 0, 1}, {1, 0, 0}, {0, 1, 0}, {0, 1, 1}, {1, 1, 1}, {1, 1, 0}}};

void PlaceChild(const OCTNODE& node, const std::array<int, 3>& offsets, bool fromTheTop, OCTNODE& child)
{
    const smVec3d half = (node.GetMax() - node.GetMin()) * 0.5;
    const smVec3d offset(offsets[0] * half.x, offsets[1] * half.y, offsets[2] * half.z);
    if (fromTheTop)
    {
        child.GetMax() = node.GetMax() - offset;
        child.GetMin() = child.GetMax() - half;
        return;
    }
    child.GetMin() = node.GetMin() + offset;
    child.GetMax() = child.GetMin() + half;
}
}

void CloudOctree::Build(const std::vector<smVec3d>& points, const OctreeVariant& variant)
{
    m_Nodes.clear();
    OCTNODE& root = NewNode();
    root.GetMin() = variant.min;
    root.GetMax() = variant.max;
    root.GetDepth() = 1;
    root.GetPoints() = points;
    SubdivideNode(root, variant);
}

const OCTNODE* CloudOctree::FindLeaf(const smVec3d& point) const
{
    const auto holds = [&point](const OCTNODE* pNode)
    { return point.IsInBox(pNode->GetMin(), pNode->GetMax()); };
    const OCTNODE* pNode = GetRoot();
    while (pNode != nullptr && !pNode->IsLeaf())
    {
        const auto& children = pNode->GetChildren();
        const auto* child = std::find_if(children.begin(), children.end(), holds);
        pNode = child == children.end() ? nullptr : *child;
    }
    return pNode;
}

OCTNODE& CloudOctree::NewNode()
{
    return *m_Nodes.emplace_back(std::make_unique<OCTNODE>());
}

void CloudOctree::SubdivideNode(OCTNODE& node, const OctreeVariant& variant)
{
    if (node.GetPoints().size() < variant.leastPoints || node.GetDepth() > variant.mostDepth)
    {
        return;
    }
    node.SetLeaf(false);
    for (std::size_t c = 0; c < OCTNODE::kChildCount; ++c)
    {
        OCTNODE& child = NewNode();
        child.GetParent() = &node;
        node.GetChildren()[c] = &child;
        PlaceChild(node, kOffsets[c], variant.fromTheTop, child);
        child.GetDepth() = node.GetDepth() + 1;
        std::copy_if(node.GetPoints().begin(), node.GetPoints().end(), std::back_inserter(child.GetPoints()),
                     [&child](const smVec3d& point)
                     { return point.IsInBox(child.GetMin(), child.GetMax()); });
        child.GetPoints().shrink_to_fit();
        SubdivideNode(child, variant);
    }
}
}
