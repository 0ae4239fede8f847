#pragma once
#include "smVec3d.h"
#include <cstdint>
#include <vector>

/// The nodes of the scene tree: groups, and leaves that refer to one solid each.
/// All nodes are made and deleted by MANSceneManager, which owns them. The tree has no transforms.
namespace tessarine
{
class DSSolid;
class MANSceneGroup;

/// The kind of a node: the top bits of its id. The rest is the index in the manager's array of that kind.
/// Node ids are in a space of their own, although two tags are those of faces and solids.
namespace NodeKind
{
inline constexpr std::uint32_t Group = 0xC0000000;
inline constexpr std::uint32_t Leaf = 0xE0000000;
inline constexpr std::uint32_t Invalid = 0xF0000000;
}

/// What groups and leaves have in common.
class MANSceneNode
{
public:
    /// No node moves anything: positions live in the solids.
    virtual void Translate(const smVec3d& /*offset*/) {}
    virtual void Rotate(const smVec3d& /*axis*/, double /*angle*/) {}
    virtual void Scale(const smVec3d& /*factors*/) {}

    std::uint32_t GetID() const { return m_ID; }
    void SetID(std::uint32_t id) { m_ID = id; }
    MANSceneGroup* GetParent() const { return m_pParent; }
    void SetParent(MANSceneGroup* parent) { m_pParent = parent; }
    /// Drawing and picking skip an invisible node and all below it.
    bool IsVisible() const { return m_bVisible; }
    void SetVisible(bool visible) { m_bVisible = visible; }

protected:
    MANSceneNode() = default;
    MANSceneNode(const MANSceneNode&) = default;
    MANSceneNode& operator=(const MANSceneNode&) = default;
    MANSceneNode(MANSceneNode&&) = default;
    MANSceneNode& operator=(MANSceneNode&&) = default;
    ~MANSceneNode() = default; // a node is deleted as its own class

private:
    std::uint32_t m_ID = 0;
    bool m_bVisible = true;
    MANSceneGroup* m_pParent = nullptr;
};

class MANSceneGroup final : public MANSceneNode
{
public:
    const std::vector<MANSceneNode*>& GetChildren() const { return m_Children; }

    /// Appends. The child's parent is the caller's to set.
    void AddChild(MANSceneNode* node) { m_Children.push_back(node); }
    /// Removes the first match; no effect when there is none.
    void RemoveChild(const MANSceneNode* node);

private:
    std::vector<MANSceneNode*> m_Children; // not owning
};

class MANSceneLeaf final : public MANSceneNode
{
public:
    DSSolid* GetSolid() const { return m_pSolid; }
    void SetSolid(DSSolid* solid) { m_pSolid = solid; }

private:
    DSSolid* m_pSolid = nullptr; // the element manager's
};
}
