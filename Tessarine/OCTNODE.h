#pragma once
#include "smVec3d.h"
#include <array>
#include <cstdint>
#include <vector>

namespace tessarine
{
/// One box of an octree over a point cloud. Whoever builds the tree owns the nodes; no destructor follows a
/// link.
class OCTNODE
{
public:
    static constexpr std::size_t kChildCount = 8;

    OCTNODE() = default;
    OCTNODE(const OCTNODE&) = delete;
    OCTNODE& operator=(const OCTNODE&) = delete;
    virtual ~OCTNODE();

    /// Null for the root.
    OCTNODE*& GetParent() { return m_pParent; }
    OCTNODE* GetParent() const { return m_pParent; }
    /// All null in a leaf, none in an inner node.
    std::array<OCTNODE*, kChildCount>& GetChildren() { return m_pChildren; }
    const std::array<OCTNODE*, kChildCount>& GetChildren() const { return m_pChildren; }
    /// Those of the cloud that fall into the box.
    std::vector<smVec3d>& GetPoints() { return m_Points; }
    const std::vector<smVec3d>& GetPoints() const { return m_Points; }
    smVec3d& GetMin() { return m_Min; }
    const smVec3d& GetMin() const { return m_Min; }
    smVec3d& GetMax() { return m_Max; }
    const smVec3d& GetMax() const { return m_Max; }
    std::int32_t& GetDepth() { return m_nDepth; }
    std::int32_t GetDepth() const { return m_nDepth; }
    void SetLeaf(bool leaf) { m_bLeaf = leaf; }
    bool IsLeaf() const { return m_bLeaf; }

private:
    OCTNODE* m_pParent = nullptr;
    std::array<OCTNODE*, kChildCount> m_pChildren{};
    std::vector<smVec3d> m_Points;
    smVec3d m_Min;
    smVec3d m_Max;
    std::int32_t m_nDepth = 0;
    bool m_bLeaf = true;
};
}
