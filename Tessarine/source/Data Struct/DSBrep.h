#pragma once
#include "ElementList.h"
#include "LoopList.h"
#include "smVec2f.h"
#include "smVec3d.h"
#include <cstdint>
#include <vector>

/// The six element records of the mesh kernel: a half-edge boundary representation (Mäntylä 1988).
///
/// The records are plain linked structures. Accessors return references, and the operators write the links
/// through them. All records are made and deleted by MANBrepElementManager, which owns them; no destructor
/// follows a link.
namespace tessarine
{
struct DSMaterial;
class DSEdge;
class DSFace;
class DSHalfEdge;
class DSLoop;
class DSSolid;
class DSVertex;

/// The kind of an element: the top four bits of its id. The rest is the index in the manager's array of that
/// kind. Ids are running numbers over all solids of a manager and are never reused.
namespace ElementKind
{
inline constexpr std::uint32_t Vertex = 0x00000000;
inline constexpr std::uint32_t HalfEdge = 0x20000000;
inline constexpr std::uint32_t Edge = 0x80000000;
inline constexpr std::uint32_t Loop = 0xA0000000;
inline constexpr std::uint32_t Face = 0xC0000000;
inline constexpr std::uint32_t Solid = 0xE0000000;
inline constexpr std::uint32_t Invalid = 0xF0000000;
}

/// What all elements have: the id and the mark of the selection.
class DSElement
{
public:
    std::uint32_t GetID() const { return m_ID; }
    void SetID(std::uint32_t id) { m_ID = id; }
    bool IsSelected() const { return m_bSelected; }
    void SetSelected(bool selected) { m_bSelected = selected; }

private:
    std::uint32_t m_ID = 0;
    bool m_bSelected = false;
};

/// One corner of a face and the edge side that runs from it to the next corner.
/// There is no twin link: the mate is found through the edge.
class DSHalfEdge : public DSElement
{
public:
    virtual ~DSHalfEdge() = default;

    DSHalfEdge*& GetPrev() { return m_pPrev; }
    DSHalfEdge* GetPrev() const { return m_pPrev; }
    DSHalfEdge*& GetNext() { return m_pNext; }
    DSHalfEdge* GetNext() const { return m_pNext; }
    /// Texture coordinate of this corner: a seam needs no second vertex.
    smVec2f& GetTexCoord() { return m_TexCoord; }
    const smVec2f& GetTexCoord() const { return m_TexCoord; }
    /// The vertex at which this half-edge starts.
    DSVertex*& GetVertex() { return m_pVertex; }
    DSVertex* GetVertex() const { return m_pVertex; }
    DSEdge*& GetEdge() { return m_pEdge; }
    DSEdge* GetEdge() const { return m_pEdge; }
    DSLoop*& GetLoop() { return m_pLoop; }
    DSLoop* GetLoop() const { return m_pLoop; }

    /// The other half-edge of the edge; null on a boundary. Ids are compared, not pointers.
    ///
    /// Needs   An edge, and a first half-edge of it (asserted).
    /// Says    "Border exist..", and gives null, when the edge lists neither as this one.
    DSHalfEdge* GetTwin() const;

    /// A circle of this half-edge alone.
    void MakeCircle() { m_pPrev = m_pNext = this; }
    /// Joins another's circle right in front of it.
    void InsertBefore(DSHalfEdge* other)
    {
        other->m_pPrev->m_pNext = this;
        m_pPrev = other->m_pPrev;
        other->m_pPrev = this;
        m_pNext = other;
    }
    /// Joins another's circle right behind it.
    void InsertBehind(DSHalfEdge* other)
    {
        m_pNext = other->m_pNext;
        other->m_pNext->m_pPrev = this;
        other->m_pNext = this;
        m_pPrev = other;
    }

private:
    static void SayBorder();

    DSHalfEdge* m_pPrev = nullptr;
    DSHalfEdge* m_pNext = nullptr;
    smVec2f m_TexCoord;
    DSVertex* m_pVertex = nullptr;
    DSEdge* m_pEdge = nullptr;
    DSLoop* m_pLoop = nullptr;
};

class DSEdge : public DSElement
{
public:
    virtual ~DSEdge() = default;

    DSHalfEdge*& GetHalfEdge1() { return m_pHalfEdge1; }
    DSHalfEdge* GetHalfEdge1() const { return m_pHalfEdge1; }
    /// Null on a boundary edge.
    DSHalfEdge*& GetHalfEdge2() { return m_pHalfEdge2; }
    DSHalfEdge* GetHalfEdge2() const { return m_pHalfEdge2; }

    void SetBoundary(bool boundary) { m_bBoundary = boundary; }
    bool IsBoundary() const { return m_bBoundary; }

    /// More than two half-edges name this edge, or the one that it was split off: a builder has put a third
    /// in the place of the second. No link leads from the edge to the displaced one, so the edge cannot be
    /// killed.
    void SetRepeated(bool repeated) { m_bRepeated = repeated; }
    bool IsRepeated() const { return m_bRepeated; }

    /// The wire frame shows the edge in red.
    bool& GetHighlight() { return m_bHighlight; }
    bool GetHighlight() const { return m_bHighlight; }
    /// Adaptive subdivision: the edge is to be split, and the index of the new vertex on it.
    bool& GetSplit() { return m_bSplit; }
    bool GetSplit() const { return m_bSplit; }
    std::int32_t& GetSplitVertex() { return m_nSplitVertex; }
    std::int32_t GetSplitVertex() const { return m_nSplitVertex; }

private:
    bool m_bHighlight = false;
    bool m_bSplit = false;
    bool m_bBoundary = false;
    bool m_bRepeated = false;
    std::int32_t m_nSplitVertex = 0;
    DSHalfEdge* m_pHalfEdge1 = nullptr;
    DSHalfEdge* m_pHalfEdge2 = nullptr;
};

inline DSHalfEdge* DSHalfEdge::GetTwin() const
{
    ASSERT(m_pEdge != nullptr);
    DSHalfEdge* const pFirst = m_pEdge->GetHalfEdge1();
    DSHalfEdge* const pSecond = m_pEdge->GetHalfEdge2();
    ASSERT(pFirst != nullptr);
    // Which side this is cannot be foreseen, so nothing but the broken case branches.
    const bool isFirst = GetID() == pFirst->GetID();
    const DSHalfEdge* const pListed = isFirst ? pFirst : pSecond;
    if (pListed == nullptr || GetID() != pListed->GetID()) [[unlikely]]
    {
        SayBorder();
        return nullptr;
    }
    return isFirst ? pSecond : pFirst;
}

class DSLoop : public DSElement
{
public:
    virtual ~DSLoop() = default;

    /// Entry into the circular list of half-edges.
    DSHalfEdge*& GetHalfEdge() { return m_pHalfEdge; }
    DSHalfEdge* GetHalfEdge() const { return m_pHalfEdge; }
    DSFace*& GetFace() { return m_pFace; }
    DSFace* GetFace() const { return m_pFace; }

private:
    DSHalfEdge* m_pHalfEdge = nullptr;
    DSFace* m_pFace = nullptr;
};

class DSFace : public DSElement
{
public:
    DSFace() = default;
    DSFace(const DSFace&) = default;
    DSFace(DSFace&&) noexcept = default;
    DSFace& operator=(const DSFace&) = default;
    DSFace& operator=(DSFace&&) noexcept = default;
    virtual ~DSFace() = default;

    /// Null stands for the default material. A builder sets it on the first face of a run only.
    DSMaterial*& GetMaterial() { return m_pMaterial; }
    DSMaterial* GetMaterial() const { return m_pMaterial; }
    /// Every builder makes exactly one loop, and all code reads entry 0.
    LoopList& GetLoopList() { return m_LoopList; }
    const LoopList& GetLoopList() const { return m_LoopList; }
    smVec3d& GetNormal() { return m_Normal; }
    const smVec3d& GetNormal() const { return m_Normal; }
    DSSolid*& GetSolid() { return m_pSolid; }
    DSSolid* GetSolid() const { return m_pSolid; }
    /// Working values of the fitting commands.
    std::vector<std::int32_t>& GetTagList() { return m_TagList; }
    const std::vector<std::int32_t>& GetTagList() const { return m_TagList; }
    std::int32_t& GetTag() { return m_nTag; }
    std::int32_t GetTag() const { return m_nTag; }

    /// The unit normal of the first three corners. A cross product within 1e-10 of zero in each component stays
    /// as it is.
    ///
    /// Needs   A loop with at least one corner (asserted).
    smVec3d ComputeNormal() const;

    /// Sets the normal to the same, and returns it.
    smVec3d CalcNormal() { return m_Normal = ComputeNormal(); }

    /// The mean of the corners of the first loop.
    ///
    /// Needs   A loop with at least one corner (asserted).
    smVec3d CalcCentroid() const;

private:
    DSMaterial* m_pMaterial = nullptr;
    LoopList m_LoopList;
    smVec3d m_Normal;
    DSSolid* m_pSolid = nullptr;
    std::vector<std::int32_t> m_TagList;
    std::int32_t m_nTag = -1;
};

class DSVertex : public DSElement
{
public:
    virtual ~DSVertex() { m_bFlagA = false; }

    smVec3d& GetPosition() { return m_Position; }
    const smVec3d& GetPosition() const { return m_Position; }
    void SetPosition(double x, double y, double z) { m_Position = smVec3d(x, y, z); }
    smVec3d& GetNormal() { return m_Normal; }
    const smVec3d& GetNormal() const { return m_Normal; }
    /// One half-edge that starts here; null on an isolated vertex.
    DSHalfEdge*& GetHalfEdge() { return m_pHalfEdge; }
    DSHalfEdge* GetHalfEdge() const { return m_pHalfEdge; }

    /// Adds the normals of the faces around the vertex to the normal, normalises it and returns a copy.
    ///
    /// Needs   A half-edge with an edge (asserted).
    /// Kept    The sum starts from what the normal already holds.
    smVec3d CalcNormal();

    /// Number of edges at the vertex, kept in the record's cache.
    ///
    /// Needs   A half-edge with an edge (asserted).
    int GetValence();

private:
    bool m_bFlagA = false;
    bool m_bFlagB = false;
    smVec3d m_Position;
    smVec3d m_Normal;
    DSHalfEdge* m_pHalfEdge = nullptr;
    std::int32_t m_nValence = 0;
};

class DSSolid : public DSElement
{
public:
    DSSolid() = default;
    DSSolid(const DSSolid&) = default;
    DSSolid(DSSolid&&) noexcept = default;
    DSSolid& operator=(const DSSolid&) = default;
    DSSolid& operator=(DSSolid&&) noexcept = default;
    virtual ~DSSolid() = default;

    ElementList<DSVertex>& GetVertexList() { return m_VertexList; }
    const ElementList<DSVertex>& GetVertexList() const { return m_VertexList; }
    ElementList<DSFace>& GetFaceList() { return m_FaceList; }
    const ElementList<DSFace>& GetFaceList() const { return m_FaceList; }
    ElementList<DSEdge>& GetEdgeList() { return m_EdgeList; }
    const ElementList<DSEdge>& GetEdgeList() const { return m_EdgeList; }

    bool IsVisible() const { return m_bVisible; }
    void SetVisible(bool visible) { m_bVisible = visible; }

    DSMaterial* GetMaterial() const { return m_pMaterial; }
    /// Writes the pointer into all faces, then into the solid.
    void SetMaterial(DSMaterial* material);

    /// Normals of all faces, then of all vertices that have a half-edge with an edge; those of the others
    /// stay.
    ///
    /// Cost    Linear. Where faces run the same way along an edge, the walk around a vertex wanders to
    ///         others: it is followed to its end until 30 million steps have been spent so (see
    ///         WanderingLimit); from then on a walk ends where it leaves its vertex, and standard error
    ///         tells how many did.
    void CalcNormals();
    /// The second part of it, where the normals of the faces stand.
    void CalcVertexNormals();

    /// Marks the boundary edges and prints what it finds, one item a line. Repairs nothing.
    /// @return vertices + faces - edges == 2
    bool CheckTopology();

private:
    DSMaterial* m_pMaterial = nullptr;
    ElementList<DSFace> m_FaceList;
    ElementList<DSEdge> m_EdgeList;
    ElementList<DSVertex> m_VertexList;
    bool m_bVisible = true;
};
}
