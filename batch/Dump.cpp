#include "Dump.h"
#include "BatchDocument.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "OCTNODE.h"
#include "Open3DView.h"
#include <unordered_map>

namespace tessarine
{
namespace
{
constexpr int kKeyIndent = 1;
constexpr int kRecordIndent = 2;

template <class T>
std::optional<std::uint32_t> IdOf(const T* element)
{
    return element != nullptr ? std::optional(element->GetID()) : std::nullopt;
}

std::array<float, 2> PartsOf(const smVec2f& v)
{
    return {v[0], v[1]};
}
std::array<float, 3> PartsOf(const smVec3f& v)
{
    return {v[0], v[1], v[2]};
}
std::array<double, 3> PartsOf(const smVec3d& v)
{
    return {v[0], v[1], v[2]};
}
std::array<float, 4> PartsOf(const smVec4f& v)
{
    return {v[0], v[1], v[2], v[3]};
}

/// The numbers by which the dump refers to materials and textures.
template <class T>
class IndexOf
{
public:
    template <class TOwner>
    explicit IndexOf(const std::vector<TOwner>& list)
    {
        for (const auto& pEntry : list)
        {
            m_Numbers.emplace(pEntry.get(), m_Numbers.size());
        }
    }

    std::size_t operator()(const T* entry) const
    {
        const auto found = m_Numbers.find(entry);
        ASSERT(found != m_Numbers.end());
        return found->second;
    }

private:
    std::unordered_map<const T*, std::size_t> m_Numbers;
};

class DumpWriter
{
public:
    DumpWriter(const BatchDocument& document, const JsonText::Sink& sink)
        : m_Document(document),
          m_Materials(document.elements.GetMaterialManager()),
          m_MaterialIndex(m_Materials.GetMaterialList()),
          m_TextureIndex(m_Materials.GetTextureList()),
          m_Text(sink)
    {
    }

    void Write()
    {
        m_Text.BeginObject();
        m_Text.Field("format", "tessarine-dump 1");
        WriteScene();
        WriteElements();
        WriteSelection();
        WriteMaterials();
        WriteLights();
        WriteView();
        WriteCutFaces();
        m_Text.EndObject();
        m_Text.Finish();
    }

private:
    void BeginKey(std::string_view name)
    {
        m_Text.BeginLine(kKeyIndent);
        m_Text.Key(name);
    }

    /// An array of objects, one a line. `fields` writes what stands between the braces of an entry.
    template <class TList, class TFields>
    void WriteRecords(std::string_view name, const TList& list, TFields fields)
    {
        BeginKey(name);
        m_Text.BeginArray();
        for (const auto& pEntry : list)
        {
            m_Text.BeginLine(kRecordIndent);
            if (pEntry == nullptr)
            {
                m_Text.Put(nullptr);
                continue;
            }
            m_Text.BeginObject();
            fields(*pEntry);
            m_Text.EndObject();
        }
        m_Text.EndArray();
    }

    template <class TList>
    void WriteIds(std::string_view name, const TList& list)
    {
        m_Text.Key(name);
        m_Text.BeginArray();
        for (const auto* pElement : list)
        {
            m_Text.Put(IdOf(pElement));
        }
        m_Text.EndArray();
    }

    void WritePoints(std::string_view name, const std::vector<smVec3d>& points)
    {
        m_Text.Key(name);
        m_Text.BeginArray();
        for (const smVec3d& point : points)
        {
            m_Text.Put(PartsOf(point));
        }
        m_Text.EndArray();
    }

    void WriteMaterialOf(const DSMaterial* material)
    {
        m_Text.Key("material");
        if (material == nullptr)
        {
            m_Text.Put(nullptr);
        }
        else if (material == &m_Materials.GetDefaultMaterial())
        {
            m_Text.Put("default");
        }
        else
        {
            m_Text.Put(m_MaterialIndex(material));
        }
    }

    void WriteScene()
    {
        const MANSceneGroup* pRoot = m_Document.scene.GetRootGroup();
        BeginKey("scene");
        m_Text.BeginObject();
        m_Text.Field("root", pRoot->GetID());
        WriteChildren(*pRoot);
        m_Text.EndObject();
    }

    void WriteChildren(const MANSceneGroup& group)
    {
        m_Text.Key("children");
        m_Text.BeginArray();
        for (const MANSceneNode* pNode : group.GetChildren())
        {
            m_Text.BeginLine(kRecordIndent);
            m_Text.BeginObject();
            m_Text.Field("id", pNode->GetID());
            m_Text.Field("visible", pNode->IsVisible());
            if (MANSceneManager::GetKind(pNode->GetID()) == NodeKind::Leaf)
            {
                m_Text.Field("solid", IdOf(static_cast<const MANSceneLeaf*>(pNode)->GetSolid()));
            }
            else
            {
                WriteChildren(*static_cast<const MANSceneGroup*>(pNode));
            }
            m_Text.EndObject();
        }
        m_Text.EndArray();
    }

    void WriteElements()
    {
        const MANBrepElementManager& elements = m_Document.elements;
        WriteRecords("solids", elements.GetSolidArray(),
                     [this](const DSSolid& solid) { WriteFields(solid); });
        WriteRecords("vertices", elements.GetVertexArray(),
                     [this](const DSVertex& vertex) { WriteFields(vertex); });
        WriteRecords("halfedges", elements.GetHalfEdgeArray(),
                     [this](const DSHalfEdge& halfEdge) { WriteFields(halfEdge); });
        WriteRecords("edges", elements.GetEdgeArray(), [this](const DSEdge& edge) { WriteFields(edge); });
        WriteRecords("loops", elements.GetLoopArray(), [this](const DSLoop& loop) { WriteFields(loop); });
        WriteRecords("faces", elements.GetFaceArray(), [this](const DSFace& face) { WriteFields(face); });
    }

    void WriteFields(const DSSolid& solid)
    {
        m_Text.Field("id", solid.GetID());
        m_Text.Field("visible", solid.IsVisible());
        WriteMaterialOf(solid.GetMaterial());
        WriteIds("vertices", solid.GetVertexList());
        WriteIds("faces", solid.GetFaceList());
        WriteIds("edges", solid.GetEdgeList());
    }

    void WriteFields(const DSVertex& vertex)
    {
        m_Text.Field("id", vertex.GetID());
        m_Text.Field("p", PartsOf(vertex.GetPosition()));
        m_Text.Field("n", PartsOf(vertex.GetNormal()));
        m_Text.Field("h", IdOf(vertex.GetHalfEdge()));
        m_Text.Field("selected", vertex.IsSelected());
    }

    void WriteFields(const DSHalfEdge& halfEdge)
    {
        m_Text.Field("id", halfEdge.GetID());
        m_Text.Field("prev", IdOf(halfEdge.GetPrev()));
        m_Text.Field("next", IdOf(halfEdge.GetNext()));
        m_Text.Field("v", IdOf(halfEdge.GetVertex()));
        m_Text.Field("e", IdOf(halfEdge.GetEdge()));
        m_Text.Field("loop", IdOf(halfEdge.GetLoop()));
        m_Text.Field("t", PartsOf(halfEdge.GetTexCoord()));
    }

    void WriteFields(const DSEdge& edge)
    {
        m_Text.Field("id", edge.GetID());
        m_Text.Field("h1", IdOf(edge.GetHalfEdge1()));
        m_Text.Field("h2", IdOf(edge.GetHalfEdge2()));
        m_Text.Field("highlight", edge.GetHighlight());
        m_Text.Field("split", edge.GetSplit());
        m_Text.Field("splitVertex", edge.GetSplitVertex());
        m_Text.Field("boundary", edge.IsBoundary());
    }

    void WriteFields(const DSLoop& loop)
    {
        m_Text.Field("id", loop.GetID());
        m_Text.Field("h", IdOf(loop.GetHalfEdge()));
        m_Text.Field("face", IdOf(loop.GetFace()));
    }

    void WriteFields(const DSFace& face)
    {
        m_Text.Field("id", face.GetID());
        WriteIds("loops", face.GetLoopList());
        m_Text.Field("n", PartsOf(face.GetNormal()));
        m_Text.Field("solid", IdOf(face.GetSolid()));
        WriteMaterialOf(face.GetMaterial());
        m_Text.Field("tag", face.GetTag());
        m_Text.Field("tags", face.GetTagList());
    }

    void WriteSelection()
    {
        BeginKey("selection");
        m_Text.BeginObject();
        m_Text.Field("type", m_Document.elements.GetSelectType());
        m_Text.Field("ids", m_Document.elements.GetSelectList());
        m_Text.EndObject();
    }

    void WriteMaterials()
    {
        WriteRecords("materials", m_Materials.GetMaterialList(),
                     [this](const DSMaterial& material) { WriteFields(material); });
        WriteRecords("textures", m_Materials.GetTextureList(),
                     [this](const DSTexture& texture) { WriteFields(texture); });
    }

    void WriteFields(const DSMaterial& material)
    {
        const DSTexture* pTexture =
            material.m_pTexture != nullptr ? material.m_pTexture->m_pTexture : nullptr;
        m_Text.Field("name", material.m_Name);
        m_Text.Field("ambient", PartsOf(material.m_Ambient));
        m_Text.Field("diffuse", PartsOf(material.m_Diffuse));
        m_Text.Field("specular", PartsOf(material.m_Specular));
        m_Text.Field("emission", PartsOf(material.m_Emission));
        m_Text.Field("shininess", material.m_fShininess);
        m_Text.Field("transparency", material.m_fTransparency);
        m_Text.Field("texture", pTexture != nullptr ? std::optional(m_TextureIndex(pTexture)) : std::nullopt);
    }

    void WriteFields(const DSTexture& texture)
    {
        m_Text.Field("file", texture.GetFileName());
        m_Text.Field("width", texture.GetWidth());
        m_Text.Field("height", texture.GetHeight());
        m_Text.Field("components", texture.GetComponents());
    }

    void WriteLights()
    {
        WriteRecords("lights", m_Document.scene.GetLightList(),
                     [this](const Open3DLight& light) { WriteFields(light); });
    }

    void WriteFields(const Open3DLight& light)
    {
        m_Text.Field("name", light.m_Name);
        m_Text.Field("ambient", PartsOf(light.m_Ambient));
        m_Text.Field("diffuse", PartsOf(light.m_Diffuse));
        m_Text.Field("specular", PartsOf(light.m_Specular));
        m_Text.Field("position", PartsOf(light.m_Position));
        m_Text.Field("flags", std::array{light.m_bAmbient, light.m_bDiffuse, light.m_bSpecular});
    }

    void WriteView()
    {
        const Open3DView& view = m_Document.view;
        BeginKey("view");
        m_Text.BeginObject();
        m_Text.Field("flags", view.GetDisplayFlags());
        WriteCamera(*view.GetCamera());
        m_Text.Field("hover", view.GetHoverList());
        WritePoints("pointCloud", view.GetPointCloud());
        WritePoints("pointNormals", view.GetPointNormals());
        WritePoints("projectedPoints", view.GetProjectedPoints());
        m_Text.Field("newMesh", IdOf(view.GetNewMesh()));
        m_Text.Key("octree");
        WriteOctree(view.GetOctree());
        m_Text.EndObject();
    }

    void WriteOctree(const OCTNODE* node)
    {
        if (node == nullptr)
        {
            m_Text.Put(nullptr);
            return;
        }
        m_Text.BeginObject();
        m_Text.Field("min", PartsOf(node->GetMin()));
        m_Text.Field("max", PartsOf(node->GetMax()));
        m_Text.Field("depth", node->GetDepth());
        m_Text.Field("leaf", node->IsLeaf());
        m_Text.Field("points", node->GetPoints().size());
        m_Text.Key("children");
        m_Text.BeginArray();
        if (!node->IsLeaf())
        {
            for (const OCTNODE* pChild : node->GetChildren())
            {
                m_Text.BeginLine(kRecordIndent);
                WriteOctree(pChild);
            }
        }
        m_Text.EndArray();
        m_Text.EndObject();
    }

    void WriteCamera(const Open3DCamera& camera)
    {
        m_Text.Key("camera");
        m_Text.BeginObject();
        m_Text.Field("position", PartsOf(camera.GetPosition()));
        m_Text.Field("target", PartsOf(camera.GetTarget()));
        m_Text.Field("up", PartsOf(camera.GetUp()));
        m_Text.Field("near", camera.GetNear());
        m_Text.Field("far", camera.GetFar());
        m_Text.Field("fovy", camera.GetFovy());
        m_Text.Field("aspect", camera.GetAspect());
        m_Text.EndObject();
    }

    void WriteCutFaces()
    {
        BeginKey("cutFaces");
        m_Text.BeginArray();
        for (const CutFace& face : m_Document.scene.GetCutFaceList())
        {
            m_Text.BeginLine(kRecordIndent);
            m_Text.BeginArray();
            for (const smVec3d& corner : face)
            {
                m_Text.Put(PartsOf(corner));
            }
            m_Text.EndArray();
        }
        m_Text.EndArray();
    }

    const BatchDocument& m_Document;
    const MANMaterialManager& m_Materials;
    IndexOf<DSMaterial> m_MaterialIndex;
    IndexOf<DSTexture> m_TextureIndex;
    JsonText m_Text;
};
}

void WriteDump(const BatchDocument& document, const JsonText::Sink& sink)
{
    DumpWriter(document, sink).Write();
}
}
