#pragma once
#include "MANSceneNode.h"
#include "Open3DLight.h"
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tessarine
{
/// A quadrilateral of the splat commands, by its corners.
using CutFace = std::array<smVec3d, 4>;

/// What is displayed: a tree of groups whose leaves refer to one solid each, the lights, and the cut faces.
///
/// The current model is the solid of the root's first child; operators add hidden snapshot leaves behind it.
/// A node's id carries its index in the manager's list of that kind. The slot of a deleted node stays null,
/// and its index is not used again until Clear.
class MANSceneManager
{
public:
    /// One empty root, and the lights "Main Light", "Aid Light" and "Bot Light".
    MANSceneManager();
    MANSceneManager(const MANSceneManager&) = delete;
    MANSceneManager& operator=(const MANSceneManager&) = delete;

    /// NodeKind of an id; NodeKind::Invalid for all that is neither group nor leaf.
    static std::uint32_t GetKind(std::uint32_t id);

    MANSceneGroup* GetRootGroup() const { return GetGroup(m_RootID); }
    /// The solid of the root's first child; null where there is no child, or its first is no leaf with a solid.
    /// There must be a root (asserted).
    DSSolid* GetCurrentSolid() const;

    /// A new node, not linked into the tree: the caller does parent->AddChild(node), node->SetParent(parent).
    MANSceneGroup* NewGroup();
    MANSceneLeaf* NewLeaf();
    /// A new leaf of a solid behind the root's children. There must be a root (asserted).
    MANSceneLeaf* AppendLeaf(DSSolid* solid);

    /// Fails   A wrong kind or an index out of range is an assertion; a deleted node gives a message box and
    ///         null.
    MANSceneGroup* GetGroup(std::uint32_t id) const;
    MANSceneLeaf* GetLeaf(std::uint32_t id) const;
    MANSceneNode* GetNode(std::uint32_t id) const;

    /// By kind; an id of no kind does nothing.
    void DeleteNode(std::uint32_t id);

    /// Takes the leaf out of its parent and frees its slot. The solid is not touched.
    void DeleteLeaf(std::uint32_t id);
    void DeleteLeaf(MANSceneLeaf* leaf);

    /// Kept    The loop over the children walks on while they leave the list, so only every second one is
    ///         deleted. The others stay, without a parent, until Clear.
    void DeleteGroup(std::uint32_t id);
    void DeleteGroup(MANSceneGroup* group);

    /// Deletes all nodes and makes a new root. Lights and cut faces stay.
    void Clear();

    /// Clear, and one more root.
    ///
    /// Kept    The first one stays as an orphan, so that the root's id is 0xC0000001.
    void Reset();

    Open3DLight* NewLight();
    /// The first light of exactly this name; a message box and null where there is none.
    Open3DLight* GetLight(const std::string& name) const;
    /// Kept    The loop over the lights walks on after each removal: the entry behind a removed one is
    ///         skipped.
    void DeleteLight(const std::string& name);
    void DeleteLight(const Open3DLight* light);

    const std::vector<std::shared_ptr<Open3DLight>>& GetLightList() const { return m_LightList; }
    const std::vector<std::shared_ptr<MANSceneLeaf>>& GetLeafList() const { return m_LeafList; }
    const std::vector<std::shared_ptr<MANSceneGroup>>& GetGroupList() const { return m_GroupList; }
    std::vector<CutFace>& GetCutFaceList() { return m_CutFaceList; }
    const std::vector<CutFace>& GetCutFaceList() const { return m_CutFaceList; }

    /// The root that the constructor made; null once it is deleted. The live one is GetRootGroup.
    MANSceneGroup* GetFirstRoot() const { return m_pRoot; }

    /// Everything that a command can change, to go back to when it fails.
    struct Checkpoint;
    Checkpoint Save() const;
    /// Puts a checkpoint back: every node and light stands at its old address again. Allocates nothing.
    void Restore(Checkpoint&& checkpoint) noexcept;

private:
    template <class TMatch>
    void DeleteLightsThat(TMatch matches);

    std::uint32_t m_RootID = 0;
    // Shared with a checkpoint, and with nothing else: what is deleted can come back at its old address.
    std::vector<std::shared_ptr<MANSceneLeaf>> m_LeafList;
    std::vector<std::shared_ptr<MANSceneGroup>> m_GroupList;
    std::vector<std::shared_ptr<Open3DLight>> m_LightList;
    MANSceneGroup* m_pRoot = nullptr;
    std::vector<CutFace> m_CutFaceList;
};

struct MANSceneManager::Checkpoint
{
    /// A list as it stands, and what its entries hold.
    template <class T>
    struct List
    {
        std::vector<std::shared_ptr<T>> entries;
        std::vector<T> values; ///< of the entries that are not null, in list order
    };

    std::uint32_t rootID = 0;
    List<MANSceneLeaf> leaves;
    List<MANSceneGroup> groups;
    List<Open3DLight> lights;
    MANSceneGroup* firstRoot = nullptr;
    std::vector<CutFace> cutFaces;
};
}
