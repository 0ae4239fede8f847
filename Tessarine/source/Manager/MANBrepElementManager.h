#pragma once
#include "DSBrep.h"
#include "MANMaterialManager.h"
#include "RecordArray.h"
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tessarine
{
/// What the select tool takes: the types of selection.
namespace SelectType
{
inline constexpr std::uint32_t Vertices = 0x5000002;
inline constexpr std::uint32_t Edges = 0x5000003;
inline constexpr std::uint32_t Faces = 0x5000004;
inline constexpr std::uint32_t Solids = 0x5000005;
}

/// Plain index lists of a mesh, as an OBJ file writes them. Numbers are one-based; the numbers of all faces
/// stand one behind the other and faceSizes[i] tells how many belong to face i.
using PositionList = std::vector<smVec3d>;
using IndexList = std::vector<std::int32_t>;
using TexCoordList = std::vector<smVec2f>;
/// Group number to material name, and material name to texture file name.
using GroupNameMap = std::map<std::int32_t, std::string>;
using TextureNameMap = std::map<std::string, std::string>;

/// How many elements of each kind.
struct ElementCounts
{
    std::size_t vertices = 0;
    std::size_t halfEdges = 0;
    std::size_t edges = 0;
    std::size_t loops = 0;
    std::size_t faces = 0;
};

/// The one owner of all element records: makes them, hands out their ids, looks them up, deletes them,
/// builds linked solids from index lists, and keeps the selection.
///
/// A wrong kind or an index out of range is an assertion; the id of a deleted element gives a message box
/// and null.
class MANBrepElementManager
{
public:
    MANBrepElementManager() = default;
    MANBrepElementManager(const MANBrepElementManager&) = delete;
    MANBrepElementManager& operator=(const MANBrepElementManager&) = delete;

    /// A new record with the next id of its kind, linked to nothing.
    DSVertex* CreateVertex() { return CreateRecord(m_VertexArray, ElementKind::Vertex); }
    DSHalfEdge* CreateHalfEdge() { return CreateRecord(m_HalfEdgeArray, ElementKind::HalfEdge); }
    DSEdge* CreateEdge() { return CreateRecord(m_EdgeArray, ElementKind::Edge); }
    DSLoop* CreateLoop() { return CreateRecord(m_LoopArray, ElementKind::Loop); }
    DSFace* CreateFace() { return CreateRecord(m_FaceArray, ElementKind::Face); }
    DSSolid* CreateSolid() { return CreateRecord(m_SolidList, ElementKind::Solid); }

    /// Makes room for so many elements besides those that are there. For speed alone.
    void ReserveMore(const ElementCounts& counts);

    DSSolid* GetSolid(std::uint32_t id) const;
    DSFace* GetFace(std::uint32_t id) const;
    DSEdge* GetEdge(std::uint32_t id) const;
    DSHalfEdge* GetHalfEdge(std::uint32_t id) const;
    DSLoop* GetLoop(std::uint32_t id) const;
    DSVertex* GetVertex(std::uint32_t id) const;
    DSElement* GetElement(std::uint32_t id) const;
    /// The same without a report, null also where the id names none: a list of ids outlives its elements.
    DSElement* FindLiveElement(std::uint32_t id) const;

    /// The kind of an id (ElementKind), ElementKind::Invalid where its top four bits name none.
    static std::uint32_t GetElementType(std::uint32_t id);

    /// Destroys the record and leaves null in its slot. No link and no solid's list is touched.
    /// A slot that is null already is no error; another record in it is an assertion.
    void DeleteVertex(DSVertex* vertex);
    void DeleteHalfEdge(DSHalfEdge* halfEdge);
    void DeleteEdge(DSEdge* edge);
    void DeleteLoop(DSLoop* loop);
    void DeleteFace(DSFace* face);
    void DeleteSolid(DSSolid* solid);

    /// Destroys all records and starts the ids anew. Selection and materials stay.
    void Clear();

    /// Puts an element at the end of the selection, or takes it out. An id that names no element gives
    /// GetElement's message box or assertion, and changes nothing.
    void ToggleSelect(std::uint32_t id);
    /// Changes what the selection tool takes and drops the selection.
    void SetSelectType(std::uint32_t type);
    std::uint32_t GetSelectType() const { return m_nSelectType; }
    const std::vector<std::uint32_t>& GetSelectList() const { return m_SelectList; }

    /// A linked solid from index lists. Nothing rejects a non-manifold mesh: a third face on an edge takes
    /// the place of the second.
    ///
    /// Says    "Number of halfedge: " and what it finds wrong with the edges.
    /// Fails   Index numbers out of range throw std::out_of_range; nothing was made then.
    DSSolid* BuildSolid(const PositionList& positions, const IndexList& indices, const IndexList& faceSizes,
                        bool reversed);

    /// The same with texture coordinates on the half-edges, when texIndices is not empty.
    ///
    /// Says    "texcoord number: " and "texcoord index number: ", and nothing of the edges.
    DSSolid* BuildTexturedSolid(const PositionList& positions, const IndexList& indices,
                                const IndexList& faceSizes, const TexCoordList& texCoords,
                                const IndexList& texIndices, bool reversed);

    /// BuildSolid, and the default material on every face.
    DSSolid* LoadSolid(const PositionList& positions, const IndexList& indices, const IndexList& faceSizes,
                       bool reversed);

    /// BuildTexturedSolid, and the material of each run of faces on its first face.
    DSSolid* LoadMaterialSolid(const PositionList& positions, const IndexList& indices,
                               const IndexList& faceSizes, const TexCoordList& texCoords,
                               const IndexList& texIndices, const IndexList& faceGroups,
                               const GroupNameMap& groupNames, bool reversed);

    /// LoadMaterialSolid that also ties the loaded textures to the materials that name them.
    ///
    /// Says    The two names of every comparison.
    DSSolid* LoadTexturedSolid(const PositionList& positions, const IndexList& indices,
                               const IndexList& faceSizes, const TexCoordList& texCoords,
                               const IndexList& texIndices, const IndexList& faceGroups,
                               const GroupNameMap& groupNames, const TextureNameMap& textureMaps,
                               bool reversed);

    /// Moves and scales the solid so that its largest extent runs from -1 to 1, in single precision.
    /// An extent of zero, or a solid without vertices, is only centred (or left).
    /// @return the scale that was applied
    float UnitizeSolid(DSSolid* solid, float& cx, float& cy, float& cz);

    /// Copies positions and connectivity of `source` into `target`. Materials, normals and texture
    /// coordinates are not copied.
    ///
    /// Needs   Two solids, the target without vertices, edges and faces; each corner of the source starts at
    ///         a vertex of its list (all asserted).
    void CopySolid(const DSSolid* source, DSSolid* target);

    /// The edge between two vertices, found by walking around the first over the half-edges that leave it;
    /// around the second, where the first has none.
    ///
    /// Says    Both ids, and gives null, where there is no such edge.
    /// Kept    The rim edge that only arrives at an open vertex has no half-edge that leaves it, and is not
    ///         found from there; from its other end it is.
    DSEdge* FindEdge(std::uint32_t v1, std::uint32_t v2) const;

    /// The first edge over all loops of the face between two vertices, in either direction, or null.
    DSEdge* FindFaceEdge(const DSFace* face, std::uint32_t v1, std::uint32_t v2) const;

    MANMaterialManager& GetMaterialManager() { return m_MaterialManager; }
    const MANMaterialManager& GetMaterialManager() const { return m_MaterialManager; }

    /// The arrays, slot by slot; null where an element was deleted.
    const RecordArray<DSSolid>& GetSolidArray() const { return m_SolidList; }
    const RecordArray<DSFace>& GetFaceArray() const { return m_FaceArray; }
    const RecordArray<DSEdge>& GetEdgeArray() const { return m_EdgeArray; }
    const RecordArray<DSHalfEdge>& GetHalfEdgeArray() const { return m_HalfEdgeArray; }
    const RecordArray<DSLoop>& GetLoopArray() const { return m_LoopArray; }
    const RecordArray<DSVertex>& GetVertexArray() const { return m_VertexArray; }

    /// Everything that a command can change, to go back to when it fails. Pointers to records stay valid
    /// over a Restore: every record comes back at its old address.
    struct Checkpoint;
    /// A copy of all records; the model stays.
    Checkpoint Save() const;
    /// Moves all records out, at no cost in time or memory; the manager is then as after Clear.
    Checkpoint Take();
    /// Puts a checkpoint back in place of what the manager holds now. Allocates nothing.
    void Restore(Checkpoint&& checkpoint) noexcept;

    /// How many records there are, which solids are shown, and the materials: what to go back to from a command that
    /// only adds some. It copies no record.
    struct Mark;
    Mark GetMark() const;
    /// Destroys the records and materials that were made since the mark, and shows the solids that were shown. Allocates
    /// nothing.
    ///
    /// Needs   Nothing else has changed since.
    void Rewind(Mark&& mark) noexcept;

private:
    template <class T>
    static T* CreateRecord(RecordArray<T>& array, std::uint32_t kind)
    {
        // The index must not reach into the four bits of the kind.
        ASSERT(array.size() < 0x10000000);
        T* pRecord = array.Create();
        pRecord->SetID(static_cast<std::uint32_t>(array.size() - 1) | kind);
        return pRecord;
    }

    RecordArray<DSSolid> m_SolidList;
    RecordArray<DSFace> m_FaceArray;
    RecordArray<DSEdge> m_EdgeArray;
    RecordArray<DSHalfEdge> m_HalfEdgeArray;
    RecordArray<DSLoop> m_LoopArray;
    RecordArray<DSVertex> m_VertexArray;
    MANMaterialManager m_MaterialManager;
    std::vector<std::uint32_t> m_SelectList;
    std::uint32_t m_nSelectType = SelectType::Solids;
};

struct MANBrepElementManager::Checkpoint
{
    RecordArray<DSSolid>::Checkpoint solids;
    RecordArray<DSFace>::Checkpoint faces;
    RecordArray<DSEdge>::Checkpoint edges;
    RecordArray<DSHalfEdge>::Checkpoint halfEdges;
    RecordArray<DSLoop>::Checkpoint loops;
    RecordArray<DSVertex>::Checkpoint vertices;
    MANMaterialManager::Checkpoint materials;
    std::vector<std::uint32_t> selectList;
    std::uint32_t selectType = 0;
};

struct MANBrepElementManager::Mark
{
    RecordArray<DSSolid>::Mark solids;
    RecordArray<DSFace>::Mark faces;
    RecordArray<DSEdge>::Mark edges;
    RecordArray<DSHalfEdge>::Mark halfEdges;
    RecordArray<DSLoop>::Mark loops;
    RecordArray<DSVertex>::Mark vertices;
    MANMaterialManager::Checkpoint materials;
    std::vector<bool> isShown; ///< by slot, of the solids
};
}
