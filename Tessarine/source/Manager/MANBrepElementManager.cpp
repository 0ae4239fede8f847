#include "MANBrepElementManager.h"
#include "Console.h"
#include "CycleGuard.h"
#include "EdgeMatcher.h"
#include "MaterialBinder.h"
#include "Platform.h"
#include "SolidBuilder.h"
#include "SolidCopier.h"
#include "UnitCubeFit.h"
#include "VertexWalk.h"
#include <algorithm>

namespace tessarine
{
namespace
{
/// What clears the tag of each kind from an id. Only the bits that the tag sets are cleared.
namespace IndexMask
{
constexpr std::uint32_t Vertex = 0xFFFFFFFF;
constexpr std::uint32_t HalfEdge = 0xDFFFFFFF;
constexpr std::uint32_t Edge = 0x7FFFFFFF;
constexpr std::uint32_t Loop = 0x5FFFFFFF;
constexpr std::uint32_t Face = 0x3FFFFFFF;
constexpr std::uint32_t Solid = 0x1FFFFFFF;
}

template <class T>
T* LookUp(const RecordArray<T>& array, std::uint32_t index, const char* message)
{
    ASSERT(index < array.size());
    T* pRecord = array[index];
    if (pRecord == nullptr)
    {
        ShowRepeatingMessage(message);
    }
    return pRecord;
}

template <class T>
void DeleteRecord(RecordArray<T>& array, const T* element, std::uint32_t mask)
{
    ASSERT(element != nullptr);
    const std::uint32_t index = element->GetID() & mask;
    ASSERT(index < array.size());
    ASSERT(array[index] == nullptr || array[index] == element);
    array.Delete(index);
}

template <class T>
T* FindInSlots(const RecordArray<T>& array, std::uint32_t index)
{
    return index < array.size() ? array[index] : nullptr;
}

std::uint32_t StartOf(const DSHalfEdge* halfEdge)
{
    ASSERT(halfEdge != nullptr);
    ASSERT(halfEdge->GetVertex() != nullptr);
    return halfEdge->GetVertex()->GetID();
}

/// The edge of the first half-edge around the start's vertex that runs to the target.
DSEdge* FindEdgeAround(DSHalfEdge* start, std::uint32_t target)
{
    if (start == nullptr)
    {
        return nullptr;
    }
    for (VertexWalk walk(start); !walk.IsAtEnd(); walk.Step())
    {
        if (StartOf(walk.Get()->GetNext()) == target)
        {
            return walk.Get()->GetEdge();
        }
    }
    return nullptr;
}
}

void MANBrepElementManager::ReserveMore(const ElementCounts& counts)
{
    m_VertexArray.Reserve(m_VertexArray.size() + counts.vertices);
    m_HalfEdgeArray.Reserve(m_HalfEdgeArray.size() + counts.halfEdges);
    m_EdgeArray.Reserve(m_EdgeArray.size() + counts.edges);
    m_LoopArray.Reserve(m_LoopArray.size() + counts.loops);
    m_FaceArray.Reserve(m_FaceArray.size() + counts.faces);
}

DSSolid* MANBrepElementManager::GetSolid(std::uint32_t id) const
{
    ASSERT(GetElementType(id) == ElementKind::Solid);
    return LookUp(m_SolidList, id & IndexMask::Solid, "The solid does not exsit!");
}

DSFace* MANBrepElementManager::GetFace(std::uint32_t id) const
{
    ASSERT(GetElementType(id) == ElementKind::Face);
    return LookUp(m_FaceArray, id & IndexMask::Face, "The face doesnot exsit!");
}

DSEdge* MANBrepElementManager::GetEdge(std::uint32_t id) const
{
    ASSERT(GetElementType(id) == ElementKind::Edge);
    return LookUp(m_EdgeArray, id & IndexMask::Edge, "The edge doesnot exsit!");
}

DSHalfEdge* MANBrepElementManager::GetHalfEdge(std::uint32_t id) const
{
    ASSERT(GetElementType(id) == ElementKind::HalfEdge);
    return LookUp(m_HalfEdgeArray, id & IndexMask::HalfEdge, "The halfedge doesnot exsit!");
}

DSLoop* MANBrepElementManager::GetLoop(std::uint32_t id) const
{
    ASSERT(GetElementType(id) == ElementKind::Loop);
    return LookUp(m_LoopArray, id & IndexMask::Loop, "The loop doesnot exsit!");
}

DSVertex* MANBrepElementManager::GetVertex(std::uint32_t id) const
{
    ASSERT(GetElementType(id) == ElementKind::Vertex);
    return LookUp(m_VertexArray, id & IndexMask::Vertex, "The vertex doesnot exsit!");
}

DSElement* MANBrepElementManager::GetElement(std::uint32_t id) const
{
    switch (GetElementType(id))
    {
    case ElementKind::Vertex: return GetVertex(id);
    case ElementKind::HalfEdge: return GetHalfEdge(id);
    case ElementKind::Edge: return GetEdge(id);
    case ElementKind::Loop: return GetLoop(id);
    case ElementKind::Face: return GetFace(id);
    case ElementKind::Solid: return GetSolid(id);
    default: ShowMessage("The element doesnot exist!"); return nullptr;
    }
}

std::uint32_t MANBrepElementManager::GetElementType(std::uint32_t id)
{
    const std::uint32_t kind = id & 0xF0000000;
    switch (kind)
    {
    case ElementKind::Vertex:
    case ElementKind::HalfEdge:
    case ElementKind::Edge:
    case ElementKind::Loop:
    case ElementKind::Face:
    case ElementKind::Solid: return kind;
    default: return ElementKind::Invalid;
    }
}

void MANBrepElementManager::DeleteVertex(DSVertex* vertex)
{
    DeleteRecord(m_VertexArray, vertex, IndexMask::Vertex);
}

void MANBrepElementManager::DeleteHalfEdge(DSHalfEdge* halfEdge)
{
    DeleteRecord(m_HalfEdgeArray, halfEdge, IndexMask::HalfEdge);
}

void MANBrepElementManager::DeleteEdge(DSEdge* edge)
{
    DeleteRecord(m_EdgeArray, edge, IndexMask::Edge);
}

void MANBrepElementManager::DeleteLoop(DSLoop* loop)
{
    DeleteRecord(m_LoopArray, loop, IndexMask::Loop);
}

void MANBrepElementManager::DeleteFace(DSFace* face)
{
    DeleteRecord(m_FaceArray, face, IndexMask::Face);
}

void MANBrepElementManager::DeleteSolid(DSSolid* solid)
{
    DeleteRecord(m_SolidList, solid, IndexMask::Solid);
}

void MANBrepElementManager::Clear()
{
    m_VertexArray.Clear();
    m_HalfEdgeArray.Clear();
    m_EdgeArray.Clear();
    m_LoopArray.Clear();
    m_FaceArray.Clear();
    m_SolidList.Clear();
}

void MANBrepElementManager::ToggleSelect(std::uint32_t id)
{
    DSElement* pElement = GetElement(id);
    if (pElement == nullptr)
    {
        return;
    }
    if (!pElement->IsSelected())
    {
        m_SelectList.push_back(id);
        pElement->SetSelected(true);
        return;
    }
    pElement->SetSelected(false);
    if (const auto found = std::find(m_SelectList.begin(), m_SelectList.end(), id);
        found != m_SelectList.end())
    {
        m_SelectList.erase(found);
    }
}

void MANBrepElementManager::SetSelectType(std::uint32_t type)
{
    std::vector<DSElement*> selected; // all of them, before the first changes
    for (const std::uint32_t id : m_SelectList)
    {
        if (DSElement* pElement = FindLiveElement(id); pElement != nullptr)
        {
            selected.push_back(pElement);
        }
    }
    for (DSElement* pElement : selected)
    {
        pElement->SetSelected(false);
    }
    m_SelectList.clear();
    m_nSelectType = type;
}

DSElement* MANBrepElementManager::FindLiveElement(std::uint32_t id) const
{
    switch (GetElementType(id))
    {
    case ElementKind::Vertex: return FindInSlots(m_VertexArray, id & IndexMask::Vertex);
    case ElementKind::HalfEdge: return FindInSlots(m_HalfEdgeArray, id & IndexMask::HalfEdge);
    case ElementKind::Edge: return FindInSlots(m_EdgeArray, id & IndexMask::Edge);
    case ElementKind::Loop: return FindInSlots(m_LoopArray, id & IndexMask::Loop);
    case ElementKind::Face: return FindInSlots(m_FaceArray, id & IndexMask::Face);
    case ElementKind::Solid: return FindInSlots(m_SolidList, id & IndexMask::Solid);
    default: return nullptr;
    }
}

DSSolid* MANBrepElementManager::BuildSolid(const PositionList& positions, const IndexList& indices,
                                           const IndexList& faceSizes, bool reversed)
{
    SolidBuilder builder(*this, {positions, indices, faceSizes}, reversed);
    DSSolid* pSolid = builder.MakeSolid();
    builder.MakeVertices();
    DebugConsole() << "Number of halfedge: " << m_HalfEdgeArray.size() + builder.CountCorners() << '\n';
    builder.MakeFaces(EdgeMatcher::Reports::Yes);
    return pSolid;
}

DSSolid* MANBrepElementManager::BuildTexturedSolid(const PositionList& positions, const IndexList& indices,
                                                   const IndexList& faceSizes, const TexCoordList& texCoords,
                                                   const IndexList& texIndices, bool reversed)
{
    SolidBuilder builder(*this, {positions, indices, faceSizes, &texCoords, &texIndices}, reversed);
    DSSolid* pSolid = builder.MakeSolid();
    builder.MakeVertices();
    DebugConsole() << "texcoord number: " << texCoords.size() << '\n';
    DebugConsole() << "texcoord index number: " << texIndices.size() << '\n';
    builder.MakeFaces(EdgeMatcher::Reports::No);
    return pSolid;
}

DSSolid* MANBrepElementManager::LoadSolid(const PositionList& positions, const IndexList& indices,
                                          const IndexList& faceSizes, bool reversed)
{
    DSSolid* pSolid = BuildSolid(positions, indices, faceSizes, reversed);
    for (DSFace* pFace : pSolid->GetFaceList())
    {
        pFace->GetMaterial() = &m_MaterialManager.GetDefaultMaterial();
    }
    return pSolid;
}

DSSolid* MANBrepElementManager::LoadMaterialSolid(const PositionList& positions, const IndexList& indices,
                                                  const IndexList& faceSizes, const TexCoordList& texCoords,
                                                  const IndexList& texIndices, const IndexList& faceGroups,
                                                  const GroupNameMap& groupNames, bool reversed)
{
    DSSolid* pSolid = BuildTexturedSolid(positions, indices, faceSizes, texCoords, texIndices, reversed);
    MaterialBinder(m_MaterialManager).BindFaces(*pSolid, faceGroups, groupNames);
    return pSolid;
}

DSSolid* MANBrepElementManager::LoadTexturedSolid(const PositionList& positions, const IndexList& indices,
                                                  const IndexList& faceSizes, const TexCoordList& texCoords,
                                                  const IndexList& texIndices, const IndexList& faceGroups,
                                                  const GroupNameMap& groupNames,
                                                  const TextureNameMap& textureMaps, bool reversed)
{
    DSSolid* pSolid = BuildTexturedSolid(positions, indices, faceSizes, texCoords, texIndices, reversed);
    MaterialBinder binder(m_MaterialManager);
    binder.BindTextures(textureMaps);
    binder.SayComparisons(groupNames);
    binder.BindFaces(*pSolid, faceGroups, groupNames);
    return pSolid;
}

float MANBrepElementManager::UnitizeSolid(DSSolid* solid, float& cx, float& cy, float& cz)
{
    ASSERT(solid != nullptr);
    const UnitCubeFit fit(*solid);
    cx = fit.GetCentre(0);
    cy = fit.GetCentre(1);
    cz = fit.GetCentre(2);
    fit.Apply(*solid);
    return fit.GetScale();
}

void MANBrepElementManager::CopySolid(const DSSolid* source, DSSolid* target)
{
    ASSERT(source != nullptr);
    ASSERT(target != nullptr);
    SolidCopier copier(*this, *source, *target);
    copier.CopyVertices();
    copier.CopyFaces();
}

DSEdge* MANBrepElementManager::FindEdge(std::uint32_t v1, std::uint32_t v2) const
{
    const DSVertex* pFirst = FindInSlots(m_VertexArray, v1);
    const DSVertex* pSecond = FindInSlots(m_VertexArray, v2);
    if (pFirst != nullptr && pSecond != nullptr)
    {
        const bool turnRound = pFirst->GetHalfEdge() == nullptr;
        DSHalfEdge* pStart = turnRound ? pSecond->GetHalfEdge() : pFirst->GetHalfEdge();
        const std::uint32_t target = turnRound ? v1 : v2;
        if (DSEdge* pEdge = FindEdgeAround(pStart, target); pEdge != nullptr)
        {
            return pEdge;
        }
    }
    DebugConsole() << "V1 ID: " << v1 << '\n' << "V2 ID: " << v2 << '\n';
    return nullptr;
}

DSEdge* MANBrepElementManager::FindFaceEdge(const DSFace* face, std::uint32_t v1, std::uint32_t v2) const
{
    ASSERT(face != nullptr);
    for (const DSLoop* pLoop : face->GetLoopList())
    {
        ASSERT(pLoop != nullptr);
        CycleGuard guard;
        const DSHalfEdge* pHalfEdge = pLoop->GetHalfEdge();
        do
        {
            const std::uint32_t start = StartOf(pHalfEdge);
            const std::uint32_t end = StartOf(pHalfEdge->GetNext());
            guard.Visit(pHalfEdge);
            if ((start == v1 && end == v2) || (start == v2 && end == v1))
            {
                return pHalfEdge->GetEdge();
            }
            pHalfEdge = pHalfEdge->GetNext();
        } while (pHalfEdge != pLoop->GetHalfEdge());
    }
    return nullptr;
}

MANBrepElementManager::Checkpoint MANBrepElementManager::Save() const
{
    return {m_SolidList.Save(),       m_FaceArray.Save(), m_EdgeArray.Save(),
            m_HalfEdgeArray.Save(),   m_LoopArray.Save(), m_VertexArray.Save(),
            m_MaterialManager.Save(), m_SelectList,       m_nSelectType};
}

MANBrepElementManager::Checkpoint MANBrepElementManager::Take()
{
    // What can fail comes first: then nothing was taken out.
    auto materials = m_MaterialManager.Save();
    auto selectList = m_SelectList;
    return {m_SolidList.Take(),     m_FaceArray.Take(),    m_EdgeArray.Take(),
            m_HalfEdgeArray.Take(), m_LoopArray.Take(),    m_VertexArray.Take(),
            std::move(materials),   std::move(selectList), m_nSelectType};
}

void MANBrepElementManager::Restore(Checkpoint&& checkpoint) noexcept
{
    m_SolidList.Restore(std::move(checkpoint.solids));
    m_FaceArray.Restore(std::move(checkpoint.faces));
    m_EdgeArray.Restore(std::move(checkpoint.edges));
    m_HalfEdgeArray.Restore(std::move(checkpoint.halfEdges));
    m_LoopArray.Restore(std::move(checkpoint.loops));
    m_VertexArray.Restore(std::move(checkpoint.vertices));
    m_MaterialManager.Restore(std::move(checkpoint.materials));
    m_SelectList = std::move(checkpoint.selectList);
    m_nSelectType = checkpoint.selectType;
}

MANBrepElementManager::Mark MANBrepElementManager::GetMark() const
{
    Mark mark{
        m_SolidList.GetMark(), m_FaceArray.GetMark(),   m_EdgeArray.GetMark(),    m_HalfEdgeArray.GetMark(),
        m_LoopArray.GetMark(), m_VertexArray.GetMark(), m_MaterialManager.Save(), {}};
    for (const DSSolid* pSolid : m_SolidList)
    {
        mark.isShown.push_back(pSolid != nullptr && pSolid->IsVisible());
    }
    return mark;
}

void MANBrepElementManager::Rewind(Mark&& mark) noexcept
{
    m_SolidList.Rewind(mark.solids);
    m_FaceArray.Rewind(mark.faces);
    m_EdgeArray.Rewind(mark.edges);
    m_HalfEdgeArray.Rewind(mark.halfEdges);
    m_LoopArray.Rewind(mark.loops);
    m_VertexArray.Rewind(mark.vertices);
    m_MaterialManager.Restore(std::move(mark.materials));
    auto isShown = mark.isShown.begin();
    for (DSSolid* pSolid : m_SolidList)
    {
        const bool wasShown = *isShown++;
        if (pSolid != nullptr)
        {
            pSolid->SetVisible(wasShown);
        }
    }
}
}
