#include "Picture.h"
#include "IAWorkbench.h"
#include <iomanip>
#include <sstream>

namespace tessarine
{
namespace
{
std::ostream& operator<<(std::ostream& out, const smVec2f& v)
{
    return out << '(' << v.x << ' ' << v.y << ')';
}

std::ostream& operator<<(std::ostream& out, const smVec3f& v)
{
    return out << '(' << v.x << ' ' << v.y << ' ' << v.z << ')';
}

std::ostream& operator<<(std::ostream& out, const smVec3d& v)
{
    return out << '(' << v.x << ' ' << v.y << ' ' << v.z << ')';
}

std::ostream& operator<<(std::ostream& out, const smVec4f& v)
{
    return out << '(' << v.x << ' ' << v.y << ' ' << v.z << ' ' << v.w << ')';
}

class Picture
{
public:
    Picture() { m_Out << std::setprecision(17); }

    std::string GetText() const { return m_Out.str(); }

    void AddElements(const MANBrepElementManager& elements)
    {
        AddArray("vertices", elements.GetVertexArray());
        AddArray("half-edges", elements.GetHalfEdgeArray());
        AddArray("edges", elements.GetEdgeArray());
        AddArray("loops", elements.GetLoopArray());
        AddArray("faces", elements.GetFaceArray());
        AddArray("solids", elements.GetSolidArray());
        AddList("selection", elements.GetSelectList());
        Add("selection type", elements.GetSelectType());
    }

    void AddMaterials(const MANMaterialManager& materials)
    {
        AddMaterial(materials.GetDefaultMaterial());
        for (const auto& material : materials.GetMaterialList())
        {
            AddMaterial(*material);
        }
        for (const auto& texture : materials.GetTextureList())
        {
            Add("texture", texture.get(), texture->GetFileName(), texture->GetWidth(), texture->GetHeight());
        }
        for (const auto& image : materials.GetImageList())
        {
            Add("image", image.get(), image->m_pTexture, image->m_nName);
        }
    }

    void AddScene(const MANSceneManager& scene)
    {
        Add("root", scene.GetRootGroup(), scene.GetFirstRoot());
        for (const auto& leaf : scene.GetLeafList())
        {
            AddNode(leaf.get());
            if (leaf)
            {
                Add("solid of it", leaf->GetSolid());
            }
        }
        for (const auto& group : scene.GetGroupList())
        {
            AddNode(group.get());
            if (group)
            {
                AddList("children", group->GetChildren());
            }
        }
        for (const auto& light : scene.GetLightList())
        {
            Add("light", light.get(), light->m_Name, light->m_bAmbient, light->m_bDiffuse, light->m_bSpecular,
                light->m_Ambient, light->m_Diffuse, light->m_Specular, light->m_Position, light->m_bEnabled);
        }
        for (const CutFace& face : scene.GetCutFaceList())
        {
            Add("cut face", face[0], face[1], face[2], face[3]);
        }
    }

    void AddView(const Open3DView& view)
    {
        AddList("point cloud", view.GetPointCloud());
        AddList("point normals", view.GetPointNormals());
        AddList("projected points", view.GetProjectedPoints());
        AddList("hover list", view.GetHoverList());
        Add("view", view.GetNewMesh(), view.GetOctree(), view.GetDisplayFlags(), view.GetController());
        const Open3DCamera& camera = *view.GetCamera();
        Add("camera", camera.GetPosition(), camera.GetTarget(), camera.GetUp(), camera.GetAspect());
    }

    template <class... T>
    void Add(const char* name, const T&... values)
    {
        m_Out << name << ':';
        (..., (m_Out << ' ' << values));
        m_Out << '\n';
    }

private:
    template <class T>
    void AddArray(const char* name, const RecordArray<T>& records)
    {
        Add(name, records.size());
        for (const T* record : records)
        {
            m_Out << record << ' ';
            if (record != nullptr)
            {
                m_Out << std::hex << record->GetID() << std::dec << ' ' << record->IsSelected();
                AddFields(*record);
            }
            m_Out << '\n';
        }
    }

    template <class TList>
    void AddList(const char* name, const TList& list)
    {
        m_Out << name << " [";
        for (const auto& entry : list)
        {
            m_Out << ' ' << entry;
        }
        m_Out << " ]\n";
    }

    void AddFields(const DSVertex& vertex)
    {
        m_Out << vertex.GetPosition() << vertex.GetNormal() << vertex.GetHalfEdge();
    }

    void AddFields(const DSHalfEdge& half)
    {
        m_Out << half.GetPrev() << ' ' << half.GetNext() << ' ' << half.GetVertex() << ' ' << half.GetEdge()
              << ' ' << half.GetLoop() << half.GetTexCoord();
    }

    void AddFields(const DSEdge& edge)
    {
        m_Out << edge.GetHalfEdge1() << ' ' << edge.GetHalfEdge2() << ' ' << edge.GetHighlight()
              << edge.GetSplit() << edge.IsBoundary() << edge.GetSplitVertex();
    }

    void AddFields(const DSLoop& loop) { m_Out << loop.GetHalfEdge() << ' ' << loop.GetFace(); }

    void AddFields(const DSFace& face)
    {
        m_Out << face.GetMaterial() << face.GetNormal() << face.GetSolid() << ' ' << face.GetTag();
        AddList("loops", face.GetLoopList());
        AddList("tags", face.GetTagList());
    }

    void AddFields(const DSSolid& solid)
    {
        m_Out << solid.IsVisible() << solid.GetMaterial();
        AddList("vertices", solid.GetVertexList());
        AddList("edges", solid.GetEdgeList());
        AddList("faces", solid.GetFaceList());
    }

    void AddMaterial(const DSMaterial& material)
    {
        Add("material", &material, material.m_Name, material.m_Ambient, material.m_Diffuse,
            material.m_Specular, material.m_fShininess, material.m_Emission, material.m_fTransparency,
            material.m_pTexture);
    }

    void AddNode(const MANSceneNode* node)
    {
        Add("node", node);
        if (node != nullptr)
        {
            Add("of it", node->GetID(), node->IsVisible(), node->GetParent());
        }
    }

    std::ostringstream m_Out;
};
}

std::string PictureOf(IAWorkbench& bench)
{
    Picture picture;
    const IAController& controller = bench.GetController();
    picture.AddElements(controller.GetElementManager());
    picture.AddMaterials(controller.GetElementManager().GetMaterialManager());
    picture.AddScene(controller.GetSceneManager());
    picture.AddView(bench.GetView());
    picture.Add("history", bench.GetCommandManager().GetHistorySize(),
                bench.GetCommandManager().GetCurrent());
    picture.Add("tool on top", bench.GetToolsManager().GetCurrentTool(),
                bench.GetToolsManager().GetToolStack().size());
    picture.Add("controller", &controller, controller.GetIncrementalCommand(),
                controller.GetTwoStepCommand());
    return picture.GetText();
}
}
