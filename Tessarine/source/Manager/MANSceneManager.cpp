#include "MANSceneManager.h"
#include "Assert.h"
#include "Platform.h"
#include <type_traits>
#include <utility>

namespace tessarine
{
namespace
{
constexpr std::uint32_t kKindMask = 0xF0000000;
constexpr std::uint32_t kGroupIndexMask = 0x3FFFFFFF;
constexpr std::uint32_t kLeafIndexMask = 0x1FFFFFFF;

/// A new node with the next id of its kind, at the end of its list.
template <class TNode>
TNode* Append(std::vector<std::shared_ptr<TNode>>& nodes, std::uint32_t kind)
{
    const auto& node = nodes.emplace_back(std::make_shared<TNode>());
    node->SetID(static_cast<std::uint32_t>(nodes.size() - 1) | kind);
    return node.get();
}

/// Takes a node out of its parent and frees its slot.
template <class TNode>
void Remove(std::vector<std::shared_ptr<TNode>>& nodes, const TNode* node, std::uint32_t indexMask)
{
    if (MANSceneGroup* parent = node->GetParent())
    {
        parent->RemoveChild(node);
    }
    const std::uint32_t index = node->GetID() & indexMask;
    if (index < nodes.size())
    {
        nodes[index] = nullptr;
    }
}

template <class T>
MANSceneManager::Checkpoint::List<T> SaveList(const std::vector<std::shared_ptr<T>>& entries)
{
    MANSceneManager::Checkpoint::List<T> saved{entries, {}};
    saved.values.reserve(entries.size());
    for (const auto& entry : entries)
    {
        if (entry)
        {
            saved.values.push_back(*entry);
        }
    }
    return saved;
}

template <class T>
void RestoreList(std::vector<std::shared_ptr<T>>& entries,
                 MANSceneManager::Checkpoint::List<T>& saved) noexcept
{
    static_assert(std::is_nothrow_move_assignable_v<T>);
    entries = std::move(saved.entries);
    auto value = saved.values.begin();
    for (const auto& entry : entries)
    {
        if (entry)
        {
            *entry = std::move(*value++);
        }
    }
}

struct DefaultLight
{
    const char* name;
    float x, y, z;
};

constexpr DefaultLight kDefaultLights[] = {{"Main Light", 0.61237F, 0.5F, 0.61237F},
                                           {"Aid Light", -0.61237F, 0.5F, -0.61237F},
                                           {"Bot Light", 0.0F, -1.0F, 0.0F}};
}

MANSceneManager::MANSceneManager()
{
    m_RootID = NewGroup()->GetID();
    m_pRoot = GetGroup(m_RootID);
    for (const DefaultLight& light : kDefaultLights)
    {
        Open3DLight* added = NewLight();
        added->m_Name = light.name;
        added->m_Position = smVec4f(light.x, light.y, light.z, 0.0F);
    }
}

std::uint32_t MANSceneManager::GetKind(std::uint32_t id)
{
    const std::uint32_t kind = id & kKindMask;
    return kind == NodeKind::Leaf || kind == NodeKind::Group ? kind : NodeKind::Invalid;
}

MANSceneGroup* MANSceneManager::NewGroup()
{
    return Append(m_GroupList, NodeKind::Group);
}

MANSceneLeaf* MANSceneManager::NewLeaf()
{
    return Append(m_LeafList, NodeKind::Leaf);
}

MANSceneLeaf* MANSceneManager::AppendLeaf(DSSolid* solid)
{
    MANSceneGroup* pRoot = GetRootGroup();
    ASSERT(pRoot != nullptr);
    MANSceneLeaf* pLeaf = NewLeaf();
    pLeaf->SetSolid(solid);
    pRoot->AddChild(pLeaf);
    pLeaf->SetParent(pRoot);
    return pLeaf;
}

MANSceneGroup* MANSceneManager::GetGroup(std::uint32_t id) const
{
    ASSERT(GetKind(id) == NodeKind::Group);
    const std::uint32_t index = id & kGroupIndexMask;
    ASSERT(index < m_GroupList.size());
    if (!m_GroupList[index])
    {
        ShowMessage("The Group doesnot exsit!");
    }
    return m_GroupList[index].get();
}

MANSceneLeaf* MANSceneManager::GetLeaf(std::uint32_t id) const
{
    ASSERT(GetKind(id) == NodeKind::Leaf);
    const std::uint32_t index = id & kLeafIndexMask;
    ASSERT(index < m_LeafList.size());
    if (!m_LeafList[index])
    {
        ShowMessage("The leaf doesnot exsit!");
    }
    return m_LeafList[index].get();
}

DSSolid* MANSceneManager::GetCurrentSolid() const
{
    const MANSceneGroup* pRoot = GetRootGroup();
    ASSERT(pRoot != nullptr);
    const auto& children = pRoot->GetChildren();
    if (children.empty() || GetKind(children.front()->GetID()) != NodeKind::Leaf)
    {
        return nullptr;
    }
    return static_cast<const MANSceneLeaf*>(children.front())->GetSolid();
}

MANSceneNode* MANSceneManager::GetNode(std::uint32_t id) const
{
    switch (GetKind(id))
    {
    case NodeKind::Group: return GetGroup(id);
    case NodeKind::Leaf: return GetLeaf(id);
    default: ShowMessage("The node does not exist!"); return nullptr;
    }
}

void MANSceneManager::DeleteNode(std::uint32_t id)
{
    switch (GetKind(id))
    {
    case NodeKind::Group: DeleteGroup(id); break;
    case NodeKind::Leaf: DeleteLeaf(id); break;
    default: break;
    }
}

void MANSceneManager::DeleteLeaf(std::uint32_t id)
{
    DeleteLeaf(GetLeaf(id));
}

void MANSceneManager::DeleteLeaf(MANSceneLeaf* leaf)
{
    ASSERT(leaf != nullptr);
    Remove(m_LeafList, leaf, kLeafIndexMask);
}

void MANSceneManager::DeleteGroup(std::uint32_t id)
{
    DeleteGroup(GetGroup(id));
}

void MANSceneManager::DeleteGroup(MANSceneGroup* group)
{
    ASSERT(group != nullptr);
    for (std::size_t i = 0; i < group->GetChildren().size(); ++i)
    {
        const MANSceneNode* child = group->GetChildren()[i];
        ASSERT(child->GetParent() == group);
        DeleteNode(child->GetID());
    }
    for (MANSceneNode* passedOver : group->GetChildren())
    {
        passedOver->SetParent(nullptr);
    }
    if (m_pRoot == group)
    {
        m_pRoot = nullptr;
    }
    Remove(m_GroupList, group, kGroupIndexMask);
}

void MANSceneManager::Clear()
{
    m_LeafList.clear();
    m_GroupList.clear();
    m_pRoot = nullptr;
    m_RootID = NewGroup()->GetID();
}

void MANSceneManager::Reset()
{
    Clear();
    m_RootID = NewGroup()->GetID();
}

Open3DLight* MANSceneManager::NewLight()
{
    return m_LightList.emplace_back(std::make_shared<Open3DLight>()).get();
}

Open3DLight* MANSceneManager::GetLight(const std::string& name) const
{
    for (const auto& light : m_LightList)
    {
        if (light->m_Name == name)
        {
            return light.get();
        }
    }
    ShowMessage("The light doesnot exsit!");
    return nullptr;
}

template <class TMatch>
void MANSceneManager::DeleteLightsThat(TMatch matches)
{
    for (std::size_t i = 0; i < m_LightList.size(); ++i)
    {
        if (matches(*m_LightList[i]))
        {
            m_LightList.erase(m_LightList.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
}

void MANSceneManager::DeleteLight(const std::string& name)
{
    // A copy: the name may be that of a light which goes.
    DeleteLightsThat([name](const Open3DLight& light) { return light.m_Name == name; });
}

void MANSceneManager::DeleteLight(const Open3DLight* light)
{
    DeleteLightsThat([light](const Open3DLight& other) { return &other == light; });
}

MANSceneManager::Checkpoint MANSceneManager::Save() const
{
    return {m_RootID, SaveList(m_LeafList), SaveList(m_GroupList), SaveList(m_LightList),
            m_pRoot,  m_CutFaceList};
}

void MANSceneManager::Restore(Checkpoint&& checkpoint) noexcept
{
    m_RootID = checkpoint.rootID;
    RestoreList(m_LeafList, checkpoint.leaves);
    RestoreList(m_GroupList, checkpoint.groups);
    RestoreList(m_LightList, checkpoint.lights);
    m_pRoot = checkpoint.firstRoot;
    m_CutFaceList = std::move(checkpoint.cutFaces);
}
}
